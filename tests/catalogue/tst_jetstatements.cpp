// Every SQL text the program sends runs through the data layer against a catalogue (or a
// GameBase) of the designed shape, and reads, counts, finds and writes what it should.

#include "JetStatementTable.h"

#include "catalogue/Database.h"
#include "catalogue/DbError.h"
#include "catalogue/QueryDef.h"
#include "catalogue/Recordset.h"
#include "support/CatalogueFixture.h"
#include "support/GameBaseFixture.h"

#include <cmath>
#include <QRegularExpression>
#include <QtTest>

using namespace vd;
using test::JetStatement;
using test::On;
using test::ParamBy;

namespace {

const QVector<JetStatement>& statements()
{
    static const QVector<JetStatement> table = test::jetStatements();
    return table;
}

// A value as the checks of the table spell it.
QString text(const QVariant& value)
{
    if (value.isNull())
        return QStringLiteral("Null");
    if (value.typeId() == QMetaType::QDateTime)
        return value.toDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    if (value.typeId() == QMetaType::Double) {
        const double d = value.toDouble();
        if (d == std::floor(d) && std::fabs(d) < 1e15)
            return QString::number(static_cast<qint64>(d));
    }
    return value.toString();
}

// A value to write, from its text in the table.
QVariant typedValue(const QString& spelled)
{
    static const QRegularExpression stampPattern(
        QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$"));
    if (spelled == QLatin1String("Null"))
        return {};
    if (stampPattern.match(spelled).hasMatch())
        return QDateTime::fromString(spelled, QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    bool isNumber = false;
    const qlonglong number = spelled.toLongLong(&isNumber);
    if (isNumber)
        return number;
    return spelled;
}

QVector<QPair<QString, QString>> pairs(const QString& list)
{
    QVector<QPair<QString, QString>> result;
    const QStringList parts = list.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        const qsizetype at = part.indexOf(QLatin1Char('='));
        result.append({part.left(at), part.mid(at + 1)});
    }
    return result;
}

bool isSelect(const QString& sql)
{
    QString body = sql.trimmed();
    if (body.startsWith(QLatin1String("parameters"), Qt::CaseInsensitive))
        body = body.mid(body.indexOf(QLatin1Char(';')) + 1).trimmed();
    return body.startsWith(QLatin1String("select"), Qt::CaseInsensitive);
}

QStringList checkNames(const db::Recordset& rs, const QString& names)
{
    if (names.isEmpty())
        return {};
    const QStringList expected = names.split(QLatin1Char(','));
    QStringList actual;
    for (int i = 0; i < rs.fieldCount(); ++i)
        actual << rs.field(i).name;
    if (actual.mid(0, expected.size()) != expected)
        return {QStringLiteral("field names: got %1, expected %2")
                    .arg(actual.join(QLatin1Char(',')), names)};
    return {};
}

QStringList checkValues(const db::Recordset& rs, const QString& values)
{
    QStringList problems;
    for (const auto& [field, expected] : pairs(values)) {
        const QVariant value =
            field.startsWith(QLatin1Char('#')) ? rs.value(field.mid(1).toInt()) : rs.value(field);
        if (text(value) != expected)
            problems
                << QStringLiteral("%1: got '%2', expected '%3'").arg(field, text(value), expected);
    }
    return problems;
}

void readRow(const db::Recordset& rs)
{
    for (int i = 0; i < rs.fieldCount(); ++i)
        (void)rs.value(i);
}

// Reads a forward-only recordset once; the checks apply to its first row.
QStringList readForward(db::Recordset& rs, const JetStatement& st, qint64& read)
{
    QStringList problems;
    while (!rs.eof()) {
        if (read == 0)
            problems << checkValues(rs, st.values);
        readRow(rs);
        ++read;
        rs.moveNext();
    }
    return problems;
}

// Reads every row, then goes to the first or the found row, checks it and edits it.
QStringList readAll(db::Recordset& rs, const JetStatement& st, qint64& read)
{
    QStringList problems;
    qint64 count = 0;
    if (!rs.eof()) {
        rs.moveLast();
        count = rs.recordCount();
        rs.moveFirst();
    }
    while (!rs.eof()) {
        readRow(rs);
        ++read;
        rs.moveNext();
    }
    if (read != count)
        problems << QStringLiteral("RecordCount after MoveLast is %1, but %2 rows came")
                        .arg(count)
                        .arg(read);
    bool positioned = read > 0;
    if (!st.find.isEmpty()) {
        const bool hit = rs.findFirst(st.find);
        if (hit == rs.noMatch())
            problems << QStringLiteral("FindFirst returned %1 but NoMatch is %2")
                            .arg(hit)
                            .arg(rs.noMatch());
        if (hit != st.found)
            problems
                << QStringLiteral("FindFirst \"%1\": %2").arg(st.find, hit ? "found" : "no match");
        positioned = hit;
    } else if (positioned) {
        rs.moveFirst();
    }
    if (!positioned) {
        if (!st.values.isEmpty() || !st.edit.isEmpty())
            problems << QStringLiteral("no row to check");
        return problems;
    }
    problems << checkValues(rs, st.values);
    if (!st.edit.isEmpty()) {
        rs.edit();
        for (const auto& [field, value] : pairs(st.edit))
            rs.setValue(field, typedValue(value));
        rs.update();
    }
    return problems;
}

QString firstRow(db::Database& db, const QString& select)
{
    auto rs = db.openRecordset(select, db::RecordsetType::Snapshot);
    if (rs->eof())
        return QStringLiteral("(no row)");
    QStringList values;
    for (int i = 0; i < rs->fieldCount(); ++i)
        values << text(rs->value(i));
    return values.join(QLatin1Char('|'));
}

// Runs the statement as the program would; the result lists what differs from the table.
QStringList run(db::Database& db, const JetStatement& st, const QString& sql)
{
    QStringList problems;
    std::unique_ptr<db::Recordset> rs;
    qint64 affected = -1;
    if (st.paramBy != ParamBy::None) {
        auto query = db.createQueryDef(sql);
        if (query->parameterCount() != 1 ||
            query->parameterName(0).compare(QLatin1String("xxx"), Qt::CaseInsensitive) != 0)
            problems << QStringLiteral("parameters: %1, the first named '%2'")
                            .arg(query->parameterCount())
                            .arg(query->parameterCount() > 0 ? query->parameterName(0) : "");
        if (st.paramBy == ParamBy::Position)
            query->setParameter(0, st.param);
        else
            query->setParameter(QStringLiteral("XXX"), st.param);
        if (isSelect(sql))
            rs = query->openRecordset(st.type, st.options);
        else
            affected = query->execute();
    } else if (isSelect(sql)) {
        rs = db.openRecordset(sql, st.type, st.options);
    } else {
        affected = db.execute(sql);
    }

    qint64 rows = affected;
    if (rs) {
        rows = 0;
        problems << checkNames(*rs, st.names);
        if (st.options & db::option::ForwardOnly)
            problems << readForward(*rs, st, rows);
        else
            problems << readAll(*rs, st, rows);
        rs->close();
    }
    if (st.rows >= 0 && rows != st.rows)
        problems << QStringLiteral("%1 rows, expected %2").arg(rows).arg(st.rows);
    if (!st.verify.isEmpty()) {
        const QString after = firstRow(db, st.verify);
        if (after != st.verifyValue)
            problems << QStringLiteral("afterwards \"%1\" reads '%2', expected '%3'")
                            .arg(st.verify, after, st.verifyValue);
    }
    return problems;
}

QString describe(db::Database& db, const QString& sql)
{
    QString translated;
    try {
        translated = db.translate(sql);
    } catch (const db::DbError& e) {
        translated = QStringLiteral("(no translation: %1 %2)").arg(e.number()).arg(e.description());
    }
    return QStringLiteral("\n  statement:  %1\n  translated: %2").arg(sql, translated);
}

} // namespace

class TestJetStatements : public QObject
{
    Q_OBJECT

private slots:
    void statement_data();
    void statement();
};

void TestJetStatements::statement_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < statements().size(); ++i)
        QTest::newRow(statements()[i].label) << i;
}

void TestJetStatements::statement()
{
    QFETCH(int, index);
    const JetStatement& st = statements()[index];

    std::unique_ptr<test::CatalogueFixture> catalogue;
    std::unique_ptr<test::GameBaseFixture> gameBase;
    QString sql = st.sql;
    try {
        catalogue = std::make_unique<test::CatalogueFixture>();
        if (st.on == On::GameBase || sql.contains(test::kGameBasePlaceholder)) {
            gameBase = std::make_unique<test::GameBaseFixture>();
            sql.replace(test::kGameBasePlaceholder, gameBase->path());
            if (st.on == On::Catalogue)
                gameBase->close();
        }
    } catch (const db::DbError& e) {
        QFAIL(qPrintable(QStringLiteral("the fixtures could not be made: %1 %2 (%3)")
                             .arg(e.number())
                             .arg(e.description(), e.statement())));
    }
    db::Database& db = st.on == On::GameBase ? gameBase->db() : catalogue->db();

    QStringList problems;
    try {
        problems = run(db, st, sql);
        if (st.fails)
            problems << QStringLiteral("the broken statement ran without an error");
    } catch (const db::DbError& e) {
        if (!st.fails)
            problems << QStringLiteral("error %1: %2").arg(e.number()).arg(e.description());
        else if (e.statement().isEmpty())
            problems << QStringLiteral("error %1 does not carry its statement").arg(e.number());
    }
    if (!problems.isEmpty())
        QFAIL(qPrintable(problems.join(QStringLiteral("; ")) + describe(db, sql)));
}

QTEST_GUILESS_MAIN(TestJetStatements)
#include "tst_jetstatements.moc"
