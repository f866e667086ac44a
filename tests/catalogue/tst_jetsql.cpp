// The Jet dialect as callers write it: wildcards, operators, functions, dates, names of
// columns, parameters and other databases, run for real through the data layer.

#include "catalogue/Database.h"
#include "catalogue/QueryDef.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace vd::db;

namespace {

// One value from a one-row statement.
QVariant one(Database& db, const QString& sql)
{
    try {
        auto rs = db.openRecordset(sql, RecordsetType::Snapshot);
        if (rs->eof())
            return QStringLiteral("<no row>");
        return rs->value(0);
    } catch (const DbError& e) {
        return QStringLiteral("<error %1: %2>").arg(e.number()).arg(e.description());
    }
}

QStringList column(Database& db, const QString& sql, int col = 0)
{
    QStringList out;
    auto rs = db.openRecordset(sql, RecordsetType::Snapshot);
    while (!rs->eof()) {
        out << rs->value(col).toString();
        rs->moveNext();
    }
    return out;
}

std::unique_ptr<Database> wordsDb()
{
    auto db = Database::openMemory();
    TableDef t;
    t.name = QStringLiteral("Words");
    t.fields = {{QStringLiteral("ID"), type::Long}, {QStringLiteral("W"), type::Text, 50},
                {QStringLiteral("N"), type::Long}, {QStringLiteral("D"), type::Date}};
    t.indexes = {{QStringLiteral("IDIndex"), {QStringLiteral("ID")}, true, true}};
    db->createTable(t);
    const char* words[] = {"apple", "Banana", "cherry", "50%", "a_b", "axb", "Ärger", "zebra", "B12", "b7"};
    // Row i holds N = i * 10.
    for (int id = 1; id <= 10; ++id)
        db->execute(QStringLiteral("Insert Into Words (ID, W, N) Values (%1, '%2', %3)")
                        .arg(id)
                        .arg(QString::fromUtf8(words[id - 1]))
                        .arg(id * 10));
    return db;
}

} // namespace

class TestJetSql : public QObject
{
    Q_OBJECT

private slots:
    void likeFollowsJetWildcards_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QStringList>("matches");
        QTest::newRow("star, any case") << "b*" << QStringList{"Banana", "B12", "b7"};
        QTest::newRow("star inside") << "*an*" << QStringList{"Banana"};
        QTest::newRow("question mark") << "a?b" << QStringList{"a_b", "axb"};
        QTest::newRow("hash is a digit") << "b#" << QStringList{"b7"};
        QTest::newRow("two hashes") << "b##" << QStringList{"B12"};
        QTest::newRow("range") << "[a-c]*" << QStringList{"apple", "Banana", "cherry", "a_b", "axb", "B12", "b7"};
        QTest::newRow("negated set") << "[!abc]*" << QStringList{"50%", "Ärger", "zebra"};
        QTest::newRow("percent is literal") << "50%" << QStringList{"50%"};
        QTest::newRow("underscore is literal") << "a_b" << QStringList{"a_b"};
        QTest::newRow("umlaut without case") << "ä*" << QStringList{"Ärger"};
        QTest::newRow("bracketed star is literal") << "[*]*" << QStringList{};
    }
    void likeFollowsJetWildcards()
    {
        QFETCH(QString, pattern);
        QFETCH(QStringList, matches);
        auto db = wordsDb();
        QCOMPARE(column(*db, QStringLiteral("Select W From Words where W like '%1' order by ID").arg(pattern)),
                 matches);
        const QStringList rest = column(
            *db, QStringLiteral("Select W From Words where W not like '%1' order by ID").arg(pattern));
        QCOMPARE(rest.size() + matches.size(), 10);
    }

    void operatorsBehaveAsInJet_data()
    {
        QTest::addColumn<QString>("expr");
        QTest::addColumn<QVariant>("expected");
        QTest::newRow("& reads Null as empty") << "'a' & Null & 'b'" << QVariant("ab");
        QTest::newRow("& binds looser than +") << "1 + 2 & 'x'" << QVariant("3x");
        QTest::newRow("+ joins two texts") << "'a' + chr(9) + 'b'" << QVariant("a\tb");
        QTest::newRow("+ adds numbers") << "val('2') + val('3')" << QVariant(5);
        QTest::newRow("+ with Null is Null") << "IIF(isNull('a' + Null), 'null', 'x')" << QVariant("null");
        QTest::newRow("/ divides exactly") << "7/2" << QVariant(3.5);
        QTest::newRow("\\ divides whole") << "7\\2" << QVariant(3);
        QTest::newRow("Mod") << "7 Mod 3" << QVariant(1);
        QTest::newRow("^") << "2^10" << QVariant(1024.0);
        QTest::newRow("True is -1") << "True" << QVariant(-1);
        QTest::newRow("IIF") << "IIF(2>1,'yes','no')" << QVariant("yes");
        QTest::newRow("isNull") << "IIF(isNull(Null),1,0)" << QVariant(1);
        QTest::newRow("Nz") << "Nz(Null,'none')" << QVariant("none");
        QTest::newRow("ucase with umlaut") << "ucase('ärger')" << QVariant("ÄRGER");
        QTest::newRow("lcase") << "lcase('ABC')" << QVariant("abc");
        QTest::newRow("left") << "left('Commodore',4)" << QVariant("Comm");
        QTest::newRow("right") << "Right('game.d64',3)" << QVariant("d64");
        QTest::newRow("mid") << "mid('Commodore',3,3)" << QVariant("mmo");
        QTest::newRow("len") << "len('abc')" << QVariant(3);
        QTest::newRow("instr without case") << "instr('Hello World','WORLD')" << QVariant(7);
        QTest::newRow("instr with start") << "instr(3,'abcabc','a')" << QVariant(4);
        QTest::newRow("trim") << "trim('  x  ')" << QVariant("x");
        QTest::newRow("val stops at letters") << "val('12abc')" << QVariant(12);
        QTest::newRow("val passes blanks") << "val(' 1 2.5')" << QVariant(12.5);
        QTest::newRow("val of nothing") << "val('abc')" << QVariant(0);
        QTest::newRow("Format date") << "Format(#03/14/2024 09:05:00 pm#,'dd.mm.yyyy hh:nn')"
                                     << QVariant("14.03.2024 21:05");
        QTest::newRow("Format number") << "Format(1234.5,'#,0.00')" << QVariant("1,234.50");
        QTest::newRow("Format leading zeros") << "Format(7,'00')" << QVariant("07");
        QTest::newRow("double quotes are text") << "\"it's\"" << QVariant("it's");
        QTest::newRow("<> with Null is Null") << "IIF(Null <> 1, 'x', 'null')" << QVariant("null");
    }
    void operatorsBehaveAsInJet()
    {
        QFETCH(QString, expr);
        QFETCH(QVariant, expected);
        auto db = Database::openMemory();
        const QVariant got = one(*db, QStringLiteral("Select ") + expr + QStringLiteral(" As V"));
        if (expected.typeId() == QMetaType::Double)
            QCOMPARE(got.toDouble(), expected.toDouble());
        else
            QCOMPARE(got.toString(), expected.toString());
    }

    void textComparesWithoutCase()
    {
        auto db = wordsDb();
        QCOMPARE(one(*db, QStringLiteral("Select ID From Words where W='BANANA'")).toInt(), 2);
        QCOMPARE(column(*db, QStringLiteral("Select W From Words where ID<=3 order by W desc")),
                 (QStringList{"cherry", "Banana", "apple"}));
    }

    void topLimitsRows()
    {
        auto db = wordsDb();
        QCOMPARE(column(*db, QStringLiteral("Select Top 3 ID From Words order by ID desc")),
                 (QStringList{"10", "9", "8"}));
        QCOMPARE(column(*db, QStringLiteral("Select TOP 4 W From Words")).size(), 4);
        QCOMPARE(column(*db, QStringLiteral("Select Distinct Top 2 ID From Words order by ID")),
                 (QStringList{"1", "2"}));
        // TOP belongs to its own part of a UNION, not to the whole.
        QCOMPARE(column(*db, QStringLiteral("Select Top 1 ID From Words order by ID UNION "
                                            "Select ID From Words where ID>8"))
                     .size(),
                 3);
    }

    void unnamedExpressionsGetEngineNames()
    {
        auto db = wordsDb();
        auto rs = db->openRecordset(
            QStringLiteral("Select  Words.ID,-1,W as File,ucase(W),N From Words"), RecordsetType::Snapshot);
        QStringList names;
        for (const FieldInfo& f : rs->fields())
            names << f.name;
        QCOMPARE(names, (QStringList{"ID", "Expr1001", "File", "Expr1003", "N"}));
        QCOMPARE(rs->field(1).type, type::Long);
    }

    void sameNamesInAJoinAreQualified()
    {
        auto db = wordsDb();
        auto rs = db->openRecordset(
            QStringLiteral("Select A.*,B.* From Words as A Left Join Words as B on A.ID=B.ID+1 where A.ID=2"),
            RecordsetType::Snapshot);
        QCOMPARE(rs->fieldIndex(QStringLiteral("A.ID")), 0);
        QCOMPARE(rs->value(QStringLiteral("A.W")).toString(), QStringLiteral("Banana"));
        QCOMPARE(rs->value(QStringLiteral("B.W")).toString(), QStringLiteral("apple"));
    }

    void datesGoInAndComeOut()
    {
        auto db = wordsDb();
        db->execute(QStringLiteral("Update Words Set D=#03/14/2024 09:05:00 pm# where ID=1"));
        db->execute(QStringLiteral("Update Words Set D=#2024-01-02# where ID=2"));
        db->execute(QStringLiteral("Update Words Set D=#12/31/99 12:00:00 am# where ID=3"));
        QCOMPARE(one(*db, QStringLiteral("Select D From Words where ID=1")).toDateTime(),
                 QDateTime(QDate(2024, 3, 14), QTime(21, 5, 0)));
        QCOMPARE(one(*db, QStringLiteral("Select D From Words where ID=2")).toDateTime(),
                 QDateTime(QDate(2024, 1, 2), QTime(0, 0)));
        QCOMPARE(one(*db, QStringLiteral("Select D From Words where ID=3")).toDateTime(),
                 QDateTime(QDate(1999, 12, 31), QTime(0, 0)));
        QCOMPARE(column(*db, QStringLiteral("Select ID From Words where D > #01/01/2024# order by D")),
                 (QStringList{"2", "1"}));
        // What the program writes comes back as the same moment.
        const QDateTime t(QDate(2023, 12, 31), QTime(12, 30, 59));
        QCOMPARE(vd::catalogue::FormatDateLiteral(t), QStringLiteral("#12/31/2023 12:30:59 pm#"));
        QCOMPARE(vd::catalogue::FormatDateLiteral(QDateTime(QDate(2024, 2, 1), QTime(0, 0, 1))),
                 QStringLiteral("#02/01/2024 12:00:01 am#"));
        db->execute(QStringLiteral("Update Words Set D=") + vd::catalogue::FormatDateLiteral(t) +
                    QStringLiteral(" where ID=4"));
        QCOMPARE(one(*db, QStringLiteral("Select D From Words where ID=4")).toDateTime(), t);
    }

    void parametersByNameAndPosition()
    {
        auto db = wordsDb();
        // The list's spelling, set by name.
        auto q = db->createQueryDef(QStringLiteral("PARAMETERS XXX VALUE; Select W From Words where ID = XXX"));
        QCOMPARE(q->parameterCount(), 1);
        q->setParameter(QStringLiteral("xxx"), 3);
        QCOMPARE(q->openRecordset(RecordsetType::Snapshot)->value(0).toString(), QStringLiteral("cherry"));
        // The tree's spelling, set by position, the key given as text.
        q->setSql(QStringLiteral("Parameters xxx Value;SELECT ID,W From Words  where N>0 And Words.ID=xxx order by 2"));
        q->setParameter(0, QStringLiteral("2"));
        auto rs = q->openRecordset(RecordsetType::Snapshot);
        QCOMPARE(rs->value(1).toString(), QStringLiteral("Banana"));
        // A statement with parameters cannot be opened without them.
        try {
            db->openRecordset(QStringLiteral("PARAMETERS XXX VALUE; Select W From Words where ID = XXX"));
            QFAIL("opened without its parameter");
        } catch (const DbError& e) {
            QCOMPARE(e.number(), err::TooFewParameters);
        }
    }

    void anotherDatabaseIsReachedByItsPath()
    {
        QTemporaryDir dir;
        const QString other = dir.filePath(QStringLiteral("other base.db"));
        {
            auto gb = Database::create(other);
            TableDef t;
            t.name = QStringLiteral("Games");
            t.fields = {{QStringLiteral("GA_ID"), type::Long}, {QStringLiteral("Name"), type::Text, 255}};
            gb->createTable(t);
            gb->execute(QStringLiteral("Insert Into Games (GA_ID, Name) Values (7, 'Sanxion')"));
        }
        auto db = wordsDb();
        QCOMPARE(one(*db, QStringLiteral("Select G.Name From [;database=%1].Games as G where G.GA_ID=7").arg(other))
                     .toString(),
                 QStringLiteral("Sanxion"));
        // A resolver maps the path written in the statement to the file that is opened.
        db->setAttachResolver([&](const QString& p) { return p == QLatin1String("C:\\GB\\gb.mdb") ? other : p; });
        QCOMPARE(one(*db, QStringLiteral("Select Count(*) From [;database=C:\\GB\\gb.mdb].Games")).toInt(), 1);
        try {
            db->openRecordset(QStringLiteral("Select * From [;database=%1].Games").arg(dir.filePath(QStringLiteral("gone.db"))));
            QFAIL("a missing database was reached");
        } catch (const DbError& e) {
            QCOMPARE(e.number(), err::FileNotFound);
        }
    }

    void deleteStatements()
    {
        auto db = wordsDb();
        QCOMPARE(db->execute(QStringLiteral("Delete * From Words where ID>8")), 2);
        // Delete T.* From T Left Join ...: only the rows of T without a partner go. Each row
        // points at its own ID through N, but for the two whose N is cleared.
        db->execute(QStringLiteral("Update Words Set N=Null where ID in (1,3)"));
        QCOMPARE(db->execute(QStringLiteral("Delete Words.* From Words Left Join Words as P on Words.N = P.ID*10 "
                                            "where isNull(P.ID) and Words.ID<5")),
                 2);
        QCOMPARE(column(*db, QStringLiteral("Select ID From Words order by ID")),
                 (QStringList{"2", "4", "5", "6", "7", "8"}));
    }

    void statementsThatDifferOnlyInValues()
    {
        // Values are taken out of the text so that such statements share their preparation;
        // each must still give its own answer, and what shapes a statement must stay in it.
        auto db = wordsDb();
        for (int id = 1; id <= 10; ++id)
            QCOMPARE(one(*db, QStringLiteral("Select N From Words where ID=%1").arg(id)).toInt(), id * 10);
        QCOMPARE(one(*db, QStringLiteral("Select W From Words where W='apple'")).toString(), QStringLiteral("apple"));
        QCOMPARE(one(*db, QStringLiteral("Select W From Words where W=\"zebra\"")).toString(), QStringLiteral("zebra"));
        QCOMPARE(column(*db, QStringLiteral("Select W, N From Words where ID<4 order by 1")),
                 (QStringList{"apple", "Banana", "cherry"}));
        QCOMPARE(column(*db, QStringLiteral("Select W, N From Words where ID<4 order by 2 desc")),
                 (QStringList{"cherry", "Banana", "apple"}));
        QCOMPARE(column(*db, QStringLiteral("Select Top 2 ID From Words order by ID")).size(), 2);
        QCOMPARE(column(*db, QStringLiteral("Select Top 5 ID From Words order by ID")).size(), 5);
        QCOMPARE(column(*db, QStringLiteral("Select ID From Words group by ID, N having N > 80 order by 1")),
                 (QStringList{"9", "10"}));
        auto rs = db->openRecordset(QStringLiteral("Select W As 'Word', 7 As [Seven] From Words where ID=2"),
                                    RecordsetType::Snapshot);
        QCOMPARE(rs->field(0).name, QStringLiteral("Word"));
        QCOMPARE(rs->value(1).toInt(), 7);
        QCOMPARE(one(*db, QStringLiteral("Select W From Words where W like '5#%' or W like 'B1#'")).toString(),
                 QStringLiteral("50%"));
        QCOMPARE(one(*db, QStringLiteral("Select Count(*) From Words where D is null and ID>=#01/01/1900#")).toInt(), 0);
        // Text that looks like numbers and dates stays text.
        QCOMPARE(one(*db, QStringLiteral("Select '007' & '#1#' As V")).toString(), QStringLiteral("007#1#"));
    }

    void errorsCarryTheStatement()
    {
        auto db = wordsDb();
        const QString bad = QStringLiteral("Select W From Words where");
        try {
            db->openRecordset(bad);
            QFAIL("a broken statement ran");
        } catch (const DbError& e) {
            QCOMPARE(e.statement(), bad);
            QCOMPARE(e.number(), err::SyntaxError);
        }
        const QString unknown = QStringLiteral("Select Nothing From Words");
        try {
            db->openRecordset(unknown);
            QFAIL("an unknown field was read");
        } catch (const DbError& e) {
            QCOMPARE(e.statement(), unknown);
            QVERIFY(e.description().contains(QLatin1String("Nothing")));
        }
    }
};

QTEST_GUILESS_MAIN(TestJetSql)
#include "tst_jetsql.moc"
