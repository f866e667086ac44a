// LEFT joins that the WHERE clause makes inner: which ones the translation writes as INNER
// JOIN, and that the rows and their order stay those of the outer join, ties included.

#include "catalogue/Database.h"
#include "catalogue/DbError.h"
#include "catalogue/JetSql.h"
#include "catalogue/Recordset.h"

#include <QtTest>

using namespace vd::db;

namespace {

class Columns : public TranslationContext
{
public:
    QString attachAlias(const QString&) override { return {}; }
    QStringList tableColumns(const QString&, const QString& table) override
    {
        if (table.compare(QLatin1String("Entries"), Qt::CaseInsensitive) == 0)
            return {QStringLiteral("ID"), QStringLiteral("Name"), QStringLiteral("File_ID"),
                    QStringLiteral("N")};
        if (table.compare(QLatin1String("Files"), Qt::CaseInsensitive) == 0)
            return {QStringLiteral("ID"), QStringLiteral("T"), QStringLiteral("N")};
        return {};
    }
};

QString translated(const QString& jet)
{
    Columns ctx;
    return translateJet(jet, jet, 0, ctx, true)->sqlite;
}

// Entries with names that repeat (in other case too), pointing at files, at a file that is
// missing (99) and at none: the last two give null-extended rows in a LEFT JOIN.
std::unique_ptr<Database> entriesDb()
{
    auto db = Database::openMemory();
    TableDef files;
    files.name = QStringLiteral("Files");
    files.fields = {{QStringLiteral("ID"), type::Long},
                    {QStringLiteral("T"), type::Text, 50},
                    {QStringLiteral("N"), type::Long}};
    files.indexes = {{QStringLiteral("IDIndex"), {QStringLiteral("ID")}, true, true}};
    db->createTable(files);
    TableDef entries;
    entries.name = QStringLiteral("Entries");
    entries.fields = {{QStringLiteral("ID"), type::Long},
                      {QStringLiteral("Name"), type::Text, 50},
                      {QStringLiteral("File_ID"), type::Long},
                      {QStringLiteral("N"), type::Long}};
    entries.indexes = {{QStringLiteral("IDIndex"), {QStringLiteral("ID")}, true, true},
                       {QStringLiteral("C1"), {QStringLiteral("File_ID")}, false, false},
                       {QStringLiteral("C3"), {QStringLiteral("Name")}, false, false}};
    db->createTable(entries);
    db->execute(QStringLiteral("Insert Into Files (ID, T, N) Values (1, 'one.d64', 1)"));
    db->execute(QStringLiteral("Insert Into Files (ID, T, N) Values (2, 'two.T64', 2)"));
    db->execute(QStringLiteral("Insert Into Files (ID, T, N) Values (3, 'Three.D64', 3)"));
    db->execute(QStringLiteral("Insert Into Files (ID, N) Values (4, 4)"));
    db->execute(QStringLiteral("Insert Into Files (ID, T, N) Values (5, 'five.zip', 5)"));
    const char* names[] = {"alpha", "Beta", "ALPHA", "gamma", "beta", "Alpha", "delta"};
    const int fileOf[] = {1, 2, 3, 4, 5, 99, 0}; // 0: no file at all
    // Ids not in insertion order, so that the rowid is not the order rows were written in.
    for (int i = 0; i < 49; ++i) {
        const int id = (i * 17) % 49 + 1;
        const int file = fileOf[(i * 3) % 7];
        db->execute(
            QStringLiteral("Insert Into Entries (ID, Name, File_ID, N) Values (%1, '%2', %3, %4)")
                .arg(id)
                .arg(QLatin1String(names[i % 7]))
                .arg(file ? QString::number(file) : QStringLiteral("Null"))
                .arg(i % 10));
    }
    return db;
}

QStringList ids(Database& db, const QString& sql, RecordsetType type)
{
    QStringList out;
    auto rs = db.openRecordset(sql, type);
    while (!rs->eof()) {
        out << rs->value(0).toString();
        rs->moveNext();
    }
    return out;
}

const QString kSelect = QStringLiteral(
    "Select E.ID, E.Name, F.T From (Entries as E Left Join Files as F on E.File_ID=F.ID)");

} // namespace

class TestJoinOrder : public QObject
{
    Q_OBJECT

private slots:
    void whereDecidesTheJoin_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<bool>("inner");
        QTest::newRow("like on the file") << "F.T like '*.d64'" << true;
        QTest::newRow("not like on the file") << "F.T not like '*.d64'" << true;
        QTest::newRow("unqualified column of the file") << "T like '*.d64'" << true;
        QTest::newRow("comparison") << "F.N > 2" << true;
        QTest::newRow("comparison, column on the right") << "3 <= F.N" << true;
        QTest::newRow("between") << "F.N between 2 and 4" << true;
        QTest::newRow("in a list") << "F.ID in (1,3)" << true;
        QTest::newRow("is not null") << "F.T is not null" << true;
        QTest::newRow("not isnull") << "not isnull(F.T)" << true;
        QTest::newRow("and with an entry term") << "E.N > 3 and F.T like '*4'" << true;
        QTest::newRow("or, both on the file") << "(F.T like 'o*' or F.N = 5)" << true;
        QTest::newRow("is null") << "F.T is null" << false;
        QTest::newRow("isnull") << "isnull(F.T)" << false;
        QTest::newRow("or with an entry term") << "F.T like '*.d64' or E.N > 7" << false;
        QTest::newRow("not in") << "F.ID not in (1,3)" << false;
        QTest::newRow("through Nz") << "Nz(F.T,'') = ''" << false;
        QTest::newRow("through IIF") << "IIF(F.T like '*.d64', True, False)" << false;
        QTest::newRow("entry terms only") << "E.N > 3 and E.Name like 'a*'" << false;
    }

    void whereDecidesTheJoin()
    {
        QFETCH(QString, where);
        QFETCH(bool, inner);
        const QString sql = translated(kSelect + QStringLiteral(" where ") + where);
        QCOMPARE(sql.contains(QLatin1String(" INNER JOIN ")), inner);
        QCOMPARE(sql.contains(QLatin1String(" LEFT JOIN ")), !inner);
    }

    void rowsAndOrderStay_data() { whereDecidesTheJoin_data(); }

    // The reference hides the condition from the rule inside IIF, which keeps the outer join,
    // and spells out the order the outer join's walk gives equal rows: by the entry's id.
    void rowsAndOrderStay()
    {
        QFETCH(QString, where);
        auto db = entriesDb();
        const QString hidden = QStringLiteral(" where IIF(%1, True, False)").arg(where);
        const QString plain = QStringLiteral(" where ") + where;
        struct Order
        {
            const char* given;
            const char* reference;
        };
        const Order orders[] = {{" order by E.Name", " order by E.Name, E.ID"},
                                {" order by E.Name desc", " order by E.Name desc, E.ID desc"},
                                {" order by F.T, E.Name", " order by F.T, E.Name, E.ID"},
                                {"", " order by E.ID"}};
        for (RecordsetType type : {RecordsetType::Snapshot, RecordsetType::Dynaset}) {
            for (const Order& o : orders) {
                const QStringList expected = ids(*db, kSelect + hidden + QLatin1String(o.reference),
                                                 RecordsetType::Snapshot);
                const QStringList got = ids(*db, kSelect + plain + QLatin1String(o.given), type);
                QCOMPARE(got, expected);
            }
        }
        // TOP without an order takes the first rows of the outer join's walk.
        QCOMPARE(ids(*db,
                     QStringLiteral("Select Top 3 E.ID From (Entries as E Left Join Files as F "
                                    "on E.File_ID=F.ID)") +
                         plain,
                     RecordsetType::Snapshot),
                 ids(*db,
                     QStringLiteral("Select Top 3 E.ID From (Entries as E Left Join Files as F "
                                    "on E.File_ID=F.ID)") +
                         hidden + QStringLiteral(" order by E.ID"),
                     RecordsetType::Snapshot));
    }

    // Only the join that the WHERE clause names turns inner; an aggregate, DISTINCT or a
    // column number in the order keep their meaning.
    void otherShapes()
    {
        auto db = entriesDb();
        const QString twoJoins = QStringLiteral(
            "Select E.ID From ((Entries as E Left Join Files as F on E.File_ID=F.ID) "
            "Left Join Files as G on E.N=G.ID) where F.T like '*.d64' order by E.Name");
        const QString sql = translated(twoJoins);
        QVERIFY2(sql.contains(QLatin1String("INNER JOIN \"Files\" AS \"F\"")), qPrintable(sql));
        QVERIFY2(sql.contains(QLatin1String("LEFT JOIN \"Files\" AS \"G\"")), qPrintable(sql));
        QCOMPARE(ids(*db, twoJoins, RecordsetType::Dynaset),
                 ids(*db,
                     QStringLiteral("Select E.ID From ((Entries as E Left Join Files as F on "
                                    "E.File_ID=F.ID) Left Join Files as G on E.N=G.ID) where "
                                    "IIF(F.T like '*.d64', True, False) order by E.Name, E.ID"),
                     RecordsetType::Snapshot));

        const QString count =
            QStringLiteral("Select Count(*) From (Entries as E Left Join Files as F on "
                           "E.File_ID=F.ID) where F.T like '*.d64'");
        QVERIFY(!translated(count).contains(QLatin1String("ORDER BY")));
        QCOMPARE(ids(*db, count, RecordsetType::Snapshot),
                 ids(*db,
                     QStringLiteral("Select Count(*) From (Entries as E Left Join Files as F on "
                                    "E.File_ID=F.ID) where IIF(F.T like '*.d64', True, False)"),
                     RecordsetType::Snapshot));

        const QString distinct =
            QStringLiteral("Select Distinct E.Name From (Entries as E Left Join Files as F on "
                           "E.File_ID=F.ID) where F.N > 1 order by E.Name");
        QVERIFY(!translated(distinct).contains(QLatin1String("rowid")));
        QCOMPARE(ids(*db, distinct, RecordsetType::Snapshot),
                 ids(*db,
                     QStringLiteral("Select Distinct E.Name From (Entries as E Left Join Files as "
                                    "F on E.File_ID=F.ID) where IIF(F.N > 1, True, False) order "
                                    "by E.Name"),
                     RecordsetType::Snapshot));

        const QString byNumber = kSelect + QStringLiteral(" where F.N > 1 order by 2");
        QCOMPARE(ids(*db, byNumber, RecordsetType::Snapshot),
                 ids(*db,
                     kSelect + QStringLiteral(" where IIF(F.N > 1, True, False) order by 2, 1"),
                     RecordsetType::Snapshot));
    }
};

QTEST_GUILESS_MAIN(TestJoinOrder)
#include "tst_joinorder.moc"
