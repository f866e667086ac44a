// The SQLite cache of an Access file: real .mdb files read through libmdb, and the play
// statistics carried over when a cache is built again.

#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "gamebase/GameBaseCache.h"
#include "gamebase/MdbReader.h"
#include "platform/Progress.h"
#include "support/GameBaseFixture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <sqlite3.h>

using namespace vd;

namespace {

QString mdbFolder()
{
    QString root = qEnvironmentVariable("VD_TESTDATA");
    if (root.isEmpty())
        root = QStringLiteral(VD_TESTDATA_DIR);
    const QString folder = QDir(root).filePath(QStringLiteral("mdb"));
    return QDir(folder).exists() ? QDir(folder).absolutePath() : QString();
}

QVariant scalar(db::Database& db, const QString& sql)
{
    auto rs = db.openRecordset(sql, db::RecordsetType::Snapshot);
    return rs->eof() ? QVariant() : rs->value(0);
}

class CountingProgress : public platform::Progress
{
public:
    void setStatus(const QString& text) override { statuses << text; }
    QStringList statuses;
};

} // namespace

#define NEED_REAL_FILES()                                                                          \
    do {                                                                                           \
        if (!haveRealFiles())                                                                      \
            QSKIP("The folder of real Access files (testdata/mdb) is absent.");                    \
    } while (false)

class TestGameBaseCache : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_cacheDir;
    QHash<QString, gamebase::CacheResult> m_built; // by .mdb file name

    // QSKIP ends only the function it stands in: each test calls this through
    // NEED_REAL_FILES, which returns from the test itself.
    static bool haveRealFiles() { return !mdbFolder().isEmpty(); }
    std::unique_ptr<db::Database> openCache(const QString& mdbName)
    {
        const gamebase::CacheResult& r = m_built[mdbName];
        if (!r.ok)
            qFatal("no cache of %s: %s", qPrintable(mdbName), qPrintable(r.error));
        return db::Database::open(r.path, true);
    }

private slots:
    void initTestCase()
    {
        const QString folder = mdbFolder();
        if (folder.isEmpty())
            return;
        for (const QString& name :
             {QStringLiteral("nwind.mdb"), QStringLiteral("DateTestDatabase.mdb"),
              QStringLiteral("ASampleDatabase.accdb")}) {
            CountingProgress progress;
            m_built[name] =
                gamebase::ensureCache(QDir(folder).filePath(name), m_cacheDir.path(), progress);
            QVERIFY2(m_built[name].ok,
                     qPrintable(name + QStringLiteral(": ") + m_built[name].error));
            QVERIFY(m_built[name].built);
            QCOMPARE(progress.statuses.size(), m_built[name].tableRows.size());
        }
    }

    void rowCountsMatchTheFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("table");
        QTest::addColumn<qint64>("rows");
        const QString nwind = QStringLiteral("nwind.mdb");
        const QVector<QPair<QString, qint64>> tables = {
            {"Order Details", 2155}, {"Orders", 830},   {"Products", 77},
            {"Shippers", 3},         {"Categories", 8}, {"Customers", 91},
            {"Employees", 9},        {"Suppliers", 29}, {QStringLiteral("Umsätze"), 830}};
        for (const auto& [table, rows] : tables)
            QTest::addRow("%s", qPrintable(table)) << nwind << table << rows;
        QTest::addRow("DateTest") << QStringLiteral("DateTestDatabase.mdb")
                                  << QStringLiteral("DateTest") << qint64(6);
        QTest::addRow("accdb Asset Items") << QStringLiteral("ASampleDatabase.accdb")
                                           << QStringLiteral("Asset Items") << qint64(65);
    }
    void rowCountsMatchTheFiles()
    {
        NEED_REAL_FILES();
        QFETCH(QString, file);
        QFETCH(QString, table);
        QFETCH(qint64, rows);
        QVERIFY(m_built[file].tableRows.contains({table, rows}));
        auto cache = openCache(file);
        QCOMPARE(
            scalar(*cache, QStringLiteral("Select Count(*) From [%1]").arg(table)).toLongLong(),
            rows);
    }

    void everyTableIsCopied()
    {
        NEED_REAL_FILES();
        auto cache = openCache(QStringLiteral("nwind.mdb"));
        QStringList names = cache->tableNames();
        names.sort();
        QStringList expected = {"Categories",    "Customers", "Employees",
                                "Order Details", "Orders",    "Products",
                                "Shippers",      "Suppliers", QStringLiteral("Umsätze")};
        QCOMPARE(names, expected);
    }

    void valuesKeepTheirTypes_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QVariant>("expected");
        QTest::addRow("non-ASCII text")
            << "Select Address From Customers where CustomerID='ANATR'"
            << QVariant(QStringLiteral("Avda. de la Constitución 2222"));
        QTest::addRow("non-ASCII city") << "Select City From Customers where CustomerID='ANATR'"
                                        << QVariant(QStringLiteral("México D.F."));
        QTest::addRow("non-ASCII table")
            << QStringLiteral("Select ShipCity From [Umsätze] where OrderID=10330")
            << QVariant(QStringLiteral("Barquisimeto"));
        QTest::addRow("date") << "Select OrderDate From Orders where OrderID=10330"
                              << QVariant(QDateTime(QDate(1994, 11, 16), QTime(0, 0)));
        QTest::addRow("double")
            << "Select UnitPrice From [Order Details] where OrderID=10248 and ProductID=42"
            << QVariant(9.8);
        QTest::addRow("integer")
            << "Select Quantity From [Order Details] where OrderID=10248 and ProductID=42"
            << QVariant(qlonglong(10));
        QTest::addRow("booleans are 0 or -1")
            << "Select Count(*) From Products where Discontinued<>0 and Discontinued<>-1"
            << QVariant(qlonglong(0));
        QTest::addRow("a true boolean")
            << "Select Min(Discontinued) From Products" << QVariant(qlonglong(-1));
        QTest::addRow("null text")
            << "Select Count(*) From Customers where isNull(Region)" << QVariant(qlonglong(60));
    }
    void valuesKeepTheirTypes()
    {
        NEED_REAL_FILES();
        QFETCH(QString, sql);
        QFETCH(QVariant, expected);
        auto cache = openCache(QStringLiteral("nwind.mdb"));
        const QVariant value = scalar(*cache, sql);
        if (expected.typeId() == QMetaType::QDateTime)
            QCOMPARE(value.toDateTime(), expected.toDateTime());
        else if (expected.typeId() == QMetaType::Double)
            QCOMPARE(value.toDouble(), expected.toDouble());
        else if (expected.typeId() == QMetaType::LongLong)
            QCOMPARE(value.toLongLong(), expected.toLongLong());
        else
            QCOMPARE(value.toString(), expected.toString());
    }

    void columnTypesFollowTheFile()
    {
        NEED_REAL_FILES();
        auto cache = openCache(QStringLiteral("nwind.mdb"));
        const db::TableDef products = cache->tableDef(QStringLiteral("Products"));
        const QVector<QPair<QString, int>> expected = {{"ProductID", db::type::Long},
                                                       {"ProductName", db::type::Text},
                                                       {"UnitsInStock", db::type::Integer},
                                                       {"UnitPrice", db::type::Double},
                                                       {"Discontinued", db::type::Boolean}};
        for (const auto& [name, type] : expected)
            QCOMPARE(products.fields[products.fieldIndex(name)].type, type);
        QCOMPARE(products.fields[products.fieldIndex(QStringLiteral("ProductName"))].size, 40);
    }

    void datesOutsideTheUsualRange()
    {
        NEED_REAL_FILES();
        auto cache = openCache(QStringLiteral("DateTestDatabase.mdb"));
        auto rs = cache->openRecordset(
            QStringLiteral("Select IDCol,DateTimeCol,DateCol,TimeCol From DateTest Order By IDCol"),
            db::RecordsetType::Snapshot);
        const auto text = [&](int i) {
            return rs->value(i).toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        };
        QStringList rows;
        for (; !rs->eof(); rs->moveNext())
            rows << QStringLiteral("%1 %2 %3 %4")
                        .arg(rs->value(0).toInt())
                        .arg(text(1), text(2), text(3));
        QCOMPARE(rows.value(1),
                 QStringLiteral("2 9999-01-01 00:00:00 9999-01-01 00:00:00 9999-01-01 00:00:00"));
        QCOMPARE(rows.value(2),
                 QStringLiteral("3 1898-01-01 00:00:00 1899-01-01 00:00:00 1900-01-01 00:00:00"));
        QCOMPARE(rows.value(3),
                 QStringLiteral("4 0632-01-01 00:00:00 0633-01-01 00:00:00 0634-01-01 00:00:00"));
        QCOMPARE(scalar(*cache, QStringLiteral("Select LongTextCol From DateTest where IDCol=6"))
                     .toString(),
                 QStringLiteral("New line\r\nin field"));
    }

    void jetDateNumbers_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::addRow("day zero") << 0.0 << "1899-12-30 00:00:00";
        QTest::addRow("before zero keeps the time") << -1.25 << "1899-12-29 06:00:00";
        QTest::addRow("noon") << 2.5 << "1900-01-01 12:00:00";
        QTest::addRow("last day") << 2958465.5 << "9999-12-31 12:00:00";
        QTest::addRow("seconds round") << 1.0 + 59.6 / 86400.0 << "1899-12-31 00:01:00";
        QTest::addRow("past year 9999") << 2958467.0 << "";
        QTest::addRow("not a number") << std::nan("") << "";
    }
    void jetDateNumbers()
    {
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(gamebase::jetDateText(value), text);
    }

    void brokenFilesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addRow("text") << QByteArray("this is not a database\n");
        QTest::addRow("empty") << QByteArray();
        QTest::addRow("zeros") << QByteArray(8192, '\0');
    }
    void brokenFilesAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QTemporaryDir dir;
        const QString mdb = dir.filePath(QStringLiteral("broken.mdb"));
        QFile f(mdb);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(bytes);
        f.close();
        const gamebase::CacheResult r = gamebase::ensureCache(
            mdb, dir.filePath(QStringLiteral("Cache")), platform::noProgress());
        QVERIFY(!r.ok);
        QCOMPARE(r.error, QStringLiteral("Not an Access database that can be read: %1").arg(mdb));
        QVERIFY(QDir(dir.filePath(QStringLiteral("Cache"))).entryList(QDir::Files).isEmpty());
    }

    void cacheIsReusedUntilTheFileChanges()
    {
        NEED_REAL_FILES();
        QTemporaryDir dir;
        const QString mdb = dir.filePath(QStringLiteral("copy.mdb"));
        QVERIFY(
            QFile::copy(QDir(mdbFolder()).filePath(QStringLiteral("DateTestDatabase.mdb")), mdb));
        const QString cacheDir = dir.filePath(QStringLiteral("Cache"));
        const auto first = gamebase::ensureCache(mdb, cacheDir, platform::noProgress());
        QVERIFY(first.ok && first.built);
        const auto again = gamebase::ensureCache(mdb, cacheDir, platform::noProgress());
        QVERIFY(again.ok && !again.built);
        QCOMPARE(again.path, first.path);

        QFile f(mdb);
        QVERIFY(f.open(QIODevice::ReadWrite));
        QVERIFY(f.setFileTime(QDateTime::currentDateTime().addSecs(60),
                              QFileDevice::FileModificationTime));
        f.close();
        const auto changed = gamebase::ensureCache(mdb, cacheDir, platform::noProgress());
        QVERIFY(changed.ok && changed.built);
        QVERIFY(changed.path != first.path);
        QVERIFY(!QFile::exists(first.path));
        QCOMPARE(QDir(cacheDir).entryList(QDir::Files).size(), 1);
    }

    void aRebuiltCacheTakesNoJournalOfTheOldOne()
    {
        NEED_REAL_FILES();
        QTemporaryDir dir;
        const QString mdb = dir.filePath(QStringLiteral("copy.mdb"));
        QVERIFY(
            QFile::copy(QDir(mdbFolder()).filePath(QStringLiteral("DateTestDatabase.mdb")), mdb));
        const QString cacheDir = dir.filePath(QStringLiteral("Cache"));
        const QString cache = gamebase::ensureCache(mdb, cacheDir, platform::noProgress()).path;
        // A journal that a crash left beside the cache: its pages hold a table "Stale".
        sqlite3* h = nullptr;
        QCOMPARE(sqlite3_open(cache.toUtf8().constData(), &h), SQLITE_OK);
        for (const char* sql : {"PRAGMA journal_mode=WAL", "PRAGMA wal_autocheckpoint=0",
                                "CREATE TABLE Stale(x)", "INSERT INTO Stale VALUES (1)"})
            QCOMPARE(sqlite3_exec(h, sql, nullptr, nullptr, nullptr), SQLITE_OK);
        const QString wal = cache + QStringLiteral("-wal");
        QVERIFY(QFile::copy(wal, wal + QStringLiteral(".kept")));
        sqlite3_close(h);
        QFile::remove(wal);
        QVERIFY(QFile::rename(wal + QStringLiteral(".kept"), wal));

        QVERIFY(gamebase::ensureCache(mdb, cacheDir, platform::noProgress(), true).ok);
        auto rebuilt = db::Database::open(cache);
        QCOMPARE(rebuilt->tableNames(), QStringList{"DateTest"});
        QCOMPARE(scalar(*rebuilt, QStringLiteral("Select Count(*) From DateTest")).toInt(), 6);
    }

    void playStatisticsAreCarriedOver()
    {
        // The old cache counts more plays for 102 and fewer for 101 than the new one.
        test::GameBaseFixture oldGb;
        test::GameBaseFixture newGb;
        oldGb.db().execute(QStringLiteral(
            "Update Games Set TimesPlayed=7, DateLastPlayed='20-05-2024' where GA_Id=102"));
        oldGb.db().execute(QStringLiteral("Update Games Set TimesPlayed=1 where GA_Id=101"));
        oldGb.close();
        newGb.close();
        QCOMPARE(gamebase::carryPlayStatistics(oldGb.path(), newGb.path()), 1);
        auto db = db::Database::open(newGb.path(), true);
        auto rs = db->openRecordset(QStringLiteral("Select GA_Id,TimesPlayed,DateLastPlayed From "
                                                   "Games where GA_Id in (101,102) Order By GA_Id"),
                                    db::RecordsetType::Snapshot);
        QStringList rows;
        for (; !rs->eof(); rs->moveNext())
            rows << QStringLiteral("%1 %2 %3")
                        .arg(rs->value(0).toInt())
                        .arg(rs->value(1).toInt())
                        .arg(rs->value(2).toString());
        QCOMPARE(rows, QStringList({"101 4 14-03-2024", "102 7 20-05-2024"}));
    }
};

QTEST_GUILESS_MAIN(TestGameBaseCache)
#include "tst_gamebasecache.moc"
