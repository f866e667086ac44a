#include "controls/DBComboEngine.h"

#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "controls/SqlTree.h"

namespace vd::controls {

namespace {

// Every stored property with its key, for reading and writing alike.
template <typename P, typename Visit> void forEachProperty(P& p, Visit&& v)
{
    v("AutoSearch", p.AutoSearch);
    v("BibKey", p.BibKey);
    v("BorderStyle", p.BorderStyle);
    v("CaseSensitive", p.CaseSensitive);
    v("DisplayName", p.DisplayName);
    v("Enabled", p.Enabled);
    v("Locked", p.Locked);
    v("RecordSource", p.RecordSource);
    v("RecordSourceKey", p.RecordSourceKey);
    v("Rows", p.Rows);
    v("IgnoreWhere", p.IgnoreWhere);
    v("InvisibleColMode", p.InvisibleColMode);
    v("InvisibleCols", p.InvisibleCols);
    v("ShowButton", p.ShowButton);
    v("ShowChanges", p.ShowChanges);
    v("ShowDropDown", p.ShowDropDown);
    v("TextField", p.TextField);
    v("UseDelFlag", p.UseDelFlag);
    v("ValueField", p.ValueField);
    v("FilterField", p.FilterField);
    v("FilterValue", p.FilterValue);
    v("NullAllowed", p.NullAllowed);
    v("NullText", p.NullText);
}

QString unbracketed(QString name)
{
    name = name.trimmed();
    if (name.startsWith(QLatin1Char('[')) && name.endsWith(QLatin1Char(']')))
        name = name.mid(1, name.size() - 2);
    return name;
}

// Cuts the last `keyword` (any case) off `sql`: the tail from the keyword's leading blank on,
// "" when the statement has none.
QString cutTail(QString& sql, const QString& keyword)
{
    const int p = int(sql.lastIndexOf(keyword, -1, Qt::CaseInsensitive));
    if (p < 0)
        return {};
    const QString tail = sql.mid(p);
    sql.truncate(p);
    return tail;
}

void addCondition(QString& part, const QString& keyword, const QString& condition)
{
    if (condition.isEmpty())
        return;
    part += (part.isEmpty() ? keyword : QStringLiteral(" AND ")) + condition;
}

bool sameName(const QString& a, const QString& b)
{
    return !a.isEmpty() && unbracketed(a).compare(unbracketed(b), Qt::CaseInsensitive) == 0;
}

int findField(const QVector<clsDBField>& fields, const QString& name)
{
    for (int i = 0; i < fields.size(); ++i)
        if (sameName(fields[i].Name, name))
            return i;
    for (int i = 0; i < fields.size(); ++i)
        if (sameName(fields[i].Def, name))
            return i;
    return -1;
}

// The first field of an ORDER BY tail, without its direction.
QString orderField(const QString& order)
{
    QString text = order.mid(QStringLiteral(" ORDER BY ").size()).trimmed();
    const int comma = topLevelComma(text, 0);
    if (comma >= 0)
        text.truncate(comma);
    text = text.trimmed();
    for (const QString& dir : {QStringLiteral(" ASC"), QStringLiteral(" DESC")})
        if (text.endsWith(dir, Qt::CaseInsensitive))
            text.chop(dir.size());
    return text.trimmed();
}

} // namespace

// --- statement parts -----------------------------------------------------------------------

QVector<clsDBField> ParseDBFields(const QString& sql)
{
    QString text = sql.trimmed();
    if (text.startsWith(QLatin1String("SELECT"), Qt::CaseInsensitive))
        text = text.mid(6);
    for (const QString& word : {QStringLiteral(" DISTINCTROW "), QStringLiteral(" DISTINCT ")})
        if (text.startsWith(word, Qt::CaseInsensitive)) {
            text = text.mid(word.size() - 1);
            break;
        }
    const int from = FindNoCase(text, QStringLiteral(" FROM "));
    QString table;
    if (from >= 0) {
        const QString rest = text.mid(from + 6).trimmed();
        table = rest.section(QLatin1Char(' '), 0, 0);
        text.truncate(from);
    }
    QVector<clsDBField> fields;
    int start = 0;
    while (start <= text.size()) {
        const int comma = topLevelComma(text, start);
        const QString column = text.mid(start, comma < 0 ? -1 : comma - start).trimmed();
        if (!column.isEmpty()) {
            clsDBField f;
            f.Tablename = table;
            const int as = FindNoCase(column, QStringLiteral(" AS "));
            f.Def = (as < 0 ? column : column.left(as)).trimmed();
            f.Name = as < 0 ? unbracketed(f.Def.section(QLatin1Char('.'), -1))
                            : unbracketed(column.mid(as + 4));
            fields << f;
        }
        if (comma < 0)
            break;
        start = comma + 1;
    }
    return fields;
}

DBComboProperties DBComboProperties::read(const QVariantMap& bag)
{
    DBComboProperties p;
    forEachProperty(p, [&](const char* key, auto& field) {
        const auto it = bag.constFind(QLatin1String(key));
        if (it == bag.constEnd())
            return;
        using T = std::decay_t<decltype(field)>;
        if constexpr (std::is_same_v<T, QVariant>)
            field = it.value();
        else if (it.value().canConvert<T>())
            field = it.value().value<T>();
    });
    return p;
}

QVariantMap DBComboProperties::write() const
{
    QVariantMap bag;
    forEachProperty(*this, [&](const char* key, const auto& field) {
        bag.insert(QLatin1String(key), QVariant(field));
    });
    return bag;
}

QVariant DBComboRow::value(const QVariant& field) const
{
    int i = -1;
    if (field.typeId() == QMetaType::QString) {
        for (int n = 0; n < names.size() && i < 0; ++n)
            if (sameName(names[n], field.toString()))
                i = n;
    } else if (field.isValid()) {
        i = field.toInt();
    }
    return i >= 0 && i < values.size() ? values[i] : QVariant();
}

// --- the engine ----------------------------------------------------------------------------

void DBComboEngine::setDataBase(db::Database* database)
{
    m_db = database;
    m_fieldsKnown = false;
    m_keyFieldsFor.clear();
}

void DBComboEngine::setRecordSource(const QString& sql)
{
    m_p.RecordSource = sql;
    m_fieldsKnown = false;
}

QVector<clsDBField> DBComboEngine::typedFields(const QString& statement)
{
    QVector<clsDBField> fields = ParseDBFields(statement);
    if (!m_db || statement.isEmpty())
        return fields;
    const auto rs = m_db->openRecordset(statement, db::RecordsetType::Snapshot);
    if (rs->fieldCount() != fields.size()) {
        // "SELECT *" and the like: the recordset names the columns.
        const QString table = fields.isEmpty() ? QString() : fields[0].Tablename;
        fields.clear();
        for (int i = 0; i < rs->fieldCount(); ++i) {
            clsDBField f;
            f.Tablename = table;
            f.Def = f.Name = rs->field(i).name;
            fields << f;
        }
    }
    for (int i = 0; i < fields.size(); ++i)
        fields[i].FieldType = rs->field(i).type;
    return fields;
}

const QVector<clsDBField>& DBComboEngine::Fields()
{
    if (!m_fieldsKnown) {
        m_fields = typedFields(m_p.RecordSource);
        m_fieldsKnown = m_db != nullptr;
    }
    return m_fields;
}

int DBComboEngine::fieldIndex(const QString& name)
{
    return findField(Fields(), name);
}

QString DBComboEngine::BuildSQL(const QString& sortField, const QVariant& value, bool exact,
                                bool caseFlag, bool useDelFlag, bool ignoreWhere)
{
    Fields();
    return build(m_p.RecordSource, m_fields, sortField, value, exact, caseFlag, useDelFlag,
                 ignoreWhere);
}

QString DBComboEngine::build(const QString& statement, QVector<clsDBField>& fields,
                             const QString& sortField, const QVariant& value, bool exact,
                             bool caseFlag, bool useDelFlag, bool ignoreWhere)
{
    QString head = statement;
    QString order = cutTail(head, QStringLiteral(" ORDER BY "));
    QString having = cutTail(head, QStringLiteral(" HAVING "));
    if (!having.isEmpty())
        having = QStringLiteral(" HAVING (") + having.mid(8) + QLatin1Char(')');
    const QString group = cutTail(head, QStringLiteral(" GROUP BY "));
    QString where = cutTail(head, QStringLiteral(" WHERE "));
    if (!where.isEmpty())
        where = QStringLiteral(" WHERE (") + where.mid(7) + QLatin1Char(')');

    if (ignoreWhere) {
        where.clear();
    } else if (useDelFlag) {
        // Without an alias the flag is the plain field.
        addCondition(where, QStringLiteral(" WHERE "),
                     m_p.BibKey.isEmpty() ? QStringLiteral("fDeleted = 0")
                                          : m_p.BibKey + QStringLiteral(".fDeleted = 0"));
    }
    // A condition on a grouped statement belongs behind GROUP BY.
    auto condition = [&](const QString& text) {
        if (group.isEmpty())
            addCondition(where, QStringLiteral(" WHERE "), text);
        else
            addCondition(having, QStringLiteral(" HAVING "), text);
    };
    const QString filter = catalogue::ValueText(m_p.FilterValue);
    if (!filter.isEmpty()) {
        const int f = findField(fields, m_p.FilterField);
        if (f >= 0)
            condition(
                MakeFieldCondition(fields[f].Def, fields[f].FieldType, filter, true, true, false));
    }
    if (!sortField.isEmpty()) {
        const int f = findField(fields, sortField);
        if (f >= 0) {
            const QString own = orderField(order);
            const QString position = QString::number(f + 1);
            if (order.isEmpty() || !(sameName(own, sortField) || sameName(own, fields[f].Def) ||
                                     sameName(own, fields[f].Name) || own == position))
                order = QStringLiteral(" ORDER BY ") + position;
            if (value.isValid() && !value.isNull())
                condition(MakeFieldCondition(fields[f].Def, fields[f].FieldType,
                                             catalogue::ValueText(value), exact, caseFlag, false));
        }
    }
    return head + where + group + having + order;
}

DBComboRow DBComboEngine::firstRow(const QString& sql)
{
    DBComboRow row;
    if (!m_db || sql.isEmpty())
        return row;
    const auto rs = m_db->openRecordset(sql, db::RecordsetType::Snapshot);
    if (rs->recordCount() < 1 || rs->eof())
        return row;
    for (int i = 0; i < rs->fieldCount(); ++i) {
        row.names << rs->field(i).name;
        row.values << rs->value(i);
    }
    return row;
}

DBComboRow DBComboEngine::lookupValue(const QVariant& value)
{
    if (value.isNull() || !value.isValid() || m_p.ValueField.isEmpty())
        return {};
    if (!m_p.RecordSourceKey.isEmpty()) {
        if (m_keyFieldsFor != m_p.RecordSourceKey) {
            m_keyFields = typedFields(m_p.RecordSourceKey);
            m_keyFieldsFor = m_p.RecordSourceKey;
        }
        const DBComboRow row = firstRow(build(m_p.RecordSourceKey, m_keyFields, m_p.ValueField,
                                              value, true, true, m_p.UseDelFlag, m_p.IgnoreWhere));
        // A key statement without the text column only tells that the value exists.
        if (row.isEmpty() || m_p.TextField.isEmpty() || !row.value(m_p.TextField).isNull())
            return row;
    }
    Fields();
    return firstRow(build(m_p.RecordSource, m_fields, m_p.ValueField, value, true, true,
                          m_p.UseDelFlag, m_p.IgnoreWhere));
}

DBComboRow DBComboEngine::search(const QString& text)
{
    if (text.isEmpty() || m_p.TextField.isEmpty())
        return {};
    return firstRow(
        BuildSQL(m_p.TextField, text, false, m_p.CaseSensitive, m_p.UseDelFlag, m_p.IgnoreWhere));
}

} // namespace vd::controls
