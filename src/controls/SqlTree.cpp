#include "controls/SqlTree.h"

#include "app/Translate.h"
#include "catalogue/DaoTypes.h"
#include "catalogue/JetSql.h"
#include "catalogue/RowOps.h"
#include "controls/ControlErrors.h"
#include "platform/DialogService.h"

#include <QLocale>

namespace vd::controls {

namespace {

const QLatin1String kItemParameter("Parameters xxx Value;");
const QLatin1String kReportParameter("PARAMETERS XXX VALUE; ");

} // namespace

int topLevelComma(const QString& text, int from)
{
    int depth = 0;
    for (int i = from; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(')'))
            --depth;
        else if (c == QLatin1Char(',') && depth == 0)
            return i;
    }
    return -1;
}

namespace {

// Splits at commas outside parentheses; the text behind the last comma is the last piece.
QStringList splitTopLevel(const QString& text)
{
    QStringList out;
    int start = 0;
    for (int p = topLevelComma(text); p >= 0; p = topLevelComma(text, start)) {
        out << text.mid(start, p - start);
        start = p + 1;
    }
    if (start < text.size())
        out << text.mid(start);
    return out;
}

// A column trimmed and cut at its first " AS ".
QString withoutAlias(const QString& column)
{
    const QString c = column.trimmed();
    const int as = FindNoCase(c, QStringLiteral(" AS "));
    return as < 0 ? c : c.left(as);
}

// Removes the first occurrence of `what`, in any case.
QString removeFirst(const QString& text, const QString& what)
{
    const int p = FindNoCase(text, what);
    return p < 0 ? text : text.left(p) + text.mid(p + what.size());
}

// Replaces the first occurrence of `c` by "?".
void maskFirst(QString& text, QChar c)
{
    const int p = text.indexOf(c);
    if (p >= 0)
        text[p] = QLatin1Char('?');
}

// A date as the user or the program writes it: the stored form, German or US order.
bool parseDateText(const QString& text, QDateTime& out)
{
    const QString t = text.trimmed();
    out = db::dateFromStorage(t);
    if (out.isValid())
        return true;
    static const char* const german[] = {"d.M.yyyy H:mm:ss", "d.M.yyyy H:mm", "d.M.yyyy", "d.M.yy"};
    for (const char* f : german) {
        out = QDateTime::fromString(t, QLatin1String(f));
        if (out.isValid()) {
            if (out.date().year() < 1930)
                out = out.addYears(100);
            return true;
        }
    }
    return db::parseJetDate(t, out);
}

} // namespace

int FindNoCase(const QString& text, const QString& what, int from)
{
    return int(text.indexOf(what, from, Qt::CaseInsensitive));
}

bool IsNumericText(const QString& text)
{
    bool ok = false;
    const QString t = text.trimmed();
    t.toDouble(&ok);
    if (!ok)
        QLocale(QLocale::German).toDouble(t, &ok);
    return ok;
}

QStringList SplitUnionParts(const QString& sql)
{
    QStringList parts;
    QString rest = sql;
    for (int p = FindNoCase(rest, QStringLiteral("UNION")); p >= 0;
         p = FindNoCase(rest, QStringLiteral("UNION"))) {
        parts << rest.left(p).trimmed();
        rest = rest.mid(p + 6).trimmed(); // the keyword and the character behind it
    }
    if (!rest.isEmpty())
        parts << rest;
    return parts;
}

QString GetParentKey(const QString& sql)
{
    const int first = topLevelComma(sql);
    if (first < 0)
        return {};
    const QString rest = sql.mid(first + 1);
    const int second = topLevelComma(rest);
    if (second < 0)
        return {};
    return withoutAlias(rest.left(second));
}

QString CutSQLSuffix(QString& sql)
{
    int p = FindNoCase(sql, QStringLiteral(" GROUP "));
    if (p < 0)
        p = FindNoCase(sql, QStringLiteral(" HAVING "));
    if (p < 0)
        p = FindNoCase(sql, QStringLiteral(" ORDER "));
    if (p < 0)
        return {};
    const QString tail = sql.mid(p + 1);
    sql.truncate(p);
    return tail;
}

QString MakeSQLItemString(const QString& sql)
{
    const QStringList parts = SplitUnionParts(sql);
    if (parts.isEmpty())
        return sql;
    QStringList made;
    for (QString part : parts) {
        const QString parent = GetParentKey(part);
        const QString tail = CutSQLSuffix(part);
        QString cond;
        const int where = FindNoCase(part, QStringLiteral(" WHERE "));
        if (where >= 0) {
            cond = part.mid(where) + QStringLiteral(" And ") + parent + QStringLiteral("=xxx");
            part = part.left(where).trimmed();
        } else {
            cond = QStringLiteral("WHERE ") + parent + QStringLiteral("=xxx");
        }
        made << (part + QLatin1Char(' ') + cond + QLatin1Char(' ') + tail).trimmed();
    }
    return kItemParameter + made.join(QStringLiteral(" UNION "));
}

QString MakeSQLParentString(const QString& sql)
{
    return treeGuard("CTreeLevels_MakeSQLParentString", QString(), [&] {
        QStringList made;
        for (QString part : SplitUnionParts(sql)) {
            const QString parent = GetParentKey(part);
            CutSQLSuffix(part);
            const int from = FindNoCase(part, QStringLiteral(" FROM "));
            if (from < 0)
                invalidCall(QStringLiteral("FROM fehlt in \"%1\"").arg(part));
            made << QStringLiteral("SELECT DISTINCT ") + parent + QLatin1Char(' ') +
                        part.mid(from).trimmed();
        }
        return made.join(QStringLiteral(" UNION "));
    });
}

QStringList ParseFieldList(const QString& sql)
{
    QString s = sql.trimmed();
    if (s.startsWith(QLatin1String("SELECT DISTINCT "), Qt::CaseInsensitive))
        s = s.mid(16);
    else if (s.startsWith(QLatin1String("SELECT "), Qt::CaseInsensitive))
        s = s.mid(6);
    QStringList out{QString()};
    for (const QString& column : splitTopLevel(s))
        out << withoutAlias(column);
    return out;
}

QStringList ParseSelectColumns(const QString& sql)
{
    QString s = removeFirst(sql, QStringLiteral("SELECT"));
    s = removeFirst(s, QStringLiteral(" DISTINCTROW "));
    s = removeFirst(s, QStringLiteral(" DISTINCT "));
    const int from = FindNoCase(s, QStringLiteral(" FROM "));
    if (from >= 0)
        s.truncate(from);
    while (s.contains(QLatin1String("  ")))
        s.replace(QLatin1String("  "), QLatin1String(" "));
    s.replace(QLatin1String(", "), QLatin1String(","));
    s.replace(QLatin1String(" ,"), QLatin1String(","));
    QStringList out;
    for (const QString& column : splitTopLevel(s))
        out << withoutAlias(column);
    return out;
}

QString ApplyFilterAndSort(const QString& sql, int filterCol, int sortCol, bool ascending)
{
    QString head = sql;
    QString order;
    const int by = FindNoCase(sql, QStringLiteral(" ORDER BY "));
    if (by >= 0) {
        head = sql.left(by);
        order = sql.mid(by + 10);
    }
    if (sortCol != -1)
        order = QString::number(sortCol + 1) +
                (ascending ? QStringLiteral(" ASC") : QStringLiteral(" DESC"));
    if (filterCol != -1) {
        const QStringList columns = ParseSelectColumns(head);
        const QString column =
            filterCol >= 0 && filterCol < columns.size() ? columns[filterCol] : QString();
        if (!column.isEmpty()) {
            QString cond = column + QStringLiteral(" = XXX");
            const bool hasWhere = FindNoCase(head, QStringLiteral(" WHERE ")) >= 0;
            const int group = FindNoCase(head, QStringLiteral(" GROUP BY "));
            if (group >= 0) {
                cond += head.mid(group);
                head.truncate(group);
            }
            head += (hasWhere ? QStringLiteral(" AND ") : QStringLiteral(" WHERE ")) + cond;
        }
    }
    return order.isEmpty() ? head : head + QStringLiteral(" ORDER BY ") + order;
}

QString MakeReportSQL(const QString& sql, int filterCol, int sortCol, bool ascending)
{
    if (sql.isEmpty())
        return {};
    QStringList parts;
    int start = 0;
    for (int p = FindNoCase(sql, QStringLiteral(" UNION ")); p >= 0;
         p = FindNoCase(sql, QStringLiteral(" UNION "), start)) {
        parts << sql.mid(start, p - start);
        start = p + 7;
    }
    parts << sql.mid(start);
    for (QString& part : parts)
        part = ApplyFilterAndSort(part, filterCol, sortCol, ascending);
    const QString joined = parts.join(QStringLiteral(" UNION "));
    return filterCol != -1 ? kReportParameter + joined : joined;
}

QString FormatDateLiteral(const QDateTime& date)
{
    return catalogue::FormatDateLiteral(date);
}

QString MakeKeyLiteral(int fieldType, const QVariant& value)
{
    namespace type = db::type;
    if (value.isNull() || !value.isValid())
        return fieldType == type::Text ? QStringLiteral("''") : QString();
    switch (fieldType) {
    case type::Boolean:
        return value.toBool() ? QStringLiteral("-1") : QStringLiteral("0");
    case type::Date: {
        QDateTime dt = value.toDateTime();
        if (value.typeId() == QMetaType::QString && !parseDateText(value.toString(), dt))
            return QString();
        return FormatDateLiteral(dt);
    }
    case type::Binary:
    case type::LongBinary:
    case type::Memo:
    case 17: // VarBinary
        return {};
    case type::Text:
        return QLatin1Char('\'') + catalogue::ValueText(value) + QLatin1Char('\'');
    default: {
        QString text = catalogue::ValueText(value);
        text.replace(QLatin1Char(','), QLatin1Char('.'));
        return text;
    }
    }
}

QString MakeFieldCondition(const QString& name, int fieldType, const QString& value, bool exact,
                           bool caseSensitive, bool bracket)
{
    QString field =
        bracket ? QLatin1Char('[') + name + QStringLiteral("] ") : name + QLatin1Char(' ');
    switch (fieldType) {
    case db::type::Byte:
    case db::type::Integer:
    case db::type::Long:
        return field + (exact ? QStringLiteral(" = ") : QStringLiteral(" >= ")) + value;
    case db::type::Currency:
    case db::type::Single:
    case db::type::Double:
    case 19: // Numeric
    case 20: // Decimal
        return field + (exact ? QStringLiteral(" = VAL('") : QStringLiteral(" >= VAL('")) +
               value.trimmed() + QStringLiteral("')");
    case db::type::Date: {
        if (!exact)
            return QStringLiteral("'' & ") + field + QStringLiteral("LIKE '") + value +
                   QStringLiteral("*'");
        QDateTime dt;
        if (!parseDateText(value, dt))
            dt = QDateTime::currentDateTime();
        return field + QStringLiteral(" = ") + FormatDateLiteral(dt);
    }
    case db::type::Text: {
        QString v = value;
        for (QChar c : {QLatin1Char('\''), QLatin1Char('"'), QLatin1Char('['), QLatin1Char(']'),
                        QLatin1Char('*')})
            maskFirst(v, c);
        if (!caseSensitive) {
            field = QStringLiteral("UCASE(") + field + QLatin1Char(')');
            v = v.toUpper();
        }
        return exact ? field + QStringLiteral("= '") + v + QLatin1Char('\'')
                     : field + QStringLiteral("LIKE '") + v + QStringLiteral("*'");
    }
    default:
        return {};
    }
}

void ReportTreeError(const QString& place, int number, const QString& description)
{
    platform::dialogs().msgBox(QString::number(number) + QStringLiteral(": ") + description,
                               platform::vbCritical,
                               app::Translate(QStringLiteral("Tree: ")) + place);
}

void ReportListError(const QString& marker, const QString& description)
{
    platform::dialogs().msgBox(description, platform::vbCritical,
                               app::Translate(QStringLiteral("C64-Report-Fehler: ")) + marker);
}

void invalidCall(const QString& what)
{
    throw db::DbError(
        rterr::InvalidCall,
        app::Translate(QStringLiteral("Ungültiger Prozeduraufruf oder ungültiges Argument: @1"),
                       what));
}

} // namespace vd::controls
