// Statistics for the planner: written for a large catalogue only, and with them a search on
// the file's name starts from the files, not from every entry.

#include "catalogue/CatalogueSchema.h"
#include "catalogue/Database.h"
#include "catalogue/PlannerStatistics.h"

#include <QTemporaryDir>
#include <QtTest>
#include <sqlite3.h>

using namespace vd;
using namespace vd::db;

namespace {

// A catalogue of `files` files with ten entries each, written straight through the engine.
std::unique_ptr<Database> catalogueOf(const QString& path, int files)
{
    auto db = Database::create(path);
    for (const TableDef& t : catalogue::catalogueTables())
        db->createTable(t);
    sqlite3* h = db->handle();
    sqlite3_exec(h, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* file = nullptr;
    sqlite3_stmt* entry = nullptr;
    sqlite3_prepare_v2(h,
                       "INSERT INTO Category (ID, iType, tCategory, tFile, tPath, iFileType) "
                       "VALUES (?1, 1, 'Game ' || ?1, 'Game ' || ?1 || '.d64', '/c/Game ' || ?1 "
                       "|| '.d64', 1)",
                       -1, &file, nullptr);
    sqlite3_prepare_v2(h,
                       "INSERT INTO C64Files (ID, tProgram, tExtension, lIndex, Category_File) "
                       "VALUES (?1, 'PRG ' || (?1 % 997), 'PRG', ?1 % 10, ?2)",
                       -1, &entry, nullptr);
    for (int f = 1; f <= files; ++f) {
        sqlite3_bind_int(file, 1, f);
        sqlite3_step(file);
        sqlite3_reset(file);
        for (int e = 0; e < 10; ++e) {
            sqlite3_bind_int(entry, 1, (f - 1) * 10 + e + 1);
            sqlite3_bind_int(entry, 2, f);
            sqlite3_step(entry);
            sqlite3_reset(entry);
        }
    }
    sqlite3_finalize(file);
    sqlite3_finalize(entry);
    sqlite3_exec(h, "COMMIT", nullptr, nullptr, nullptr);
    return db;
}

int statisticsRows(Database& db)
{
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db.handle(), "SELECT count(*) FROM sqlite_stat1 WHERE tbl='C64Files'",
                           -1, &st, nullptr) != SQLITE_OK)
        return 0; // no table: never analysed
    int n = 0;
    if (sqlite3_step(st) == SQLITE_ROW)
        n = sqlite3_column_int(st, 0);
    sqlite3_finalize(st);
    return n;
}

// The engine's plan of a statement, one step a line.
QString planOf(Database& db, const QString& sqlite)
{
    sqlite3_stmt* st = nullptr;
    const QByteArray text = "EXPLAIN QUERY PLAN " + sqlite.toUtf8();
    if (sqlite3_prepare_v2(db.handle(), text.constData(), -1, &st, nullptr) != SQLITE_OK)
        return QString::fromUtf8(sqlite3_errmsg(db.handle()));
    QStringList steps;
    while (sqlite3_step(st) == SQLITE_ROW)
        steps << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 3)));
    sqlite3_finalize(st);
    return steps.join(QLatin1Char('\n'));
}

} // namespace

class TestPlannerStatistics : public QObject
{
    Q_OBJECT

private slots:
    void smallCatalogueKeepsTheEngineGuesses()
    {
        QTemporaryDir dir;
        auto db = catalogueOf(dir.filePath(QStringLiteral("small.vdb")), 100);
        QVERIFY(!refreshPlannerStatistics(*db));
        QCOMPARE(statisticsRows(*db), 0);
    }

    void readOnlyCatalogueIsNotWritten()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("large.vdb"));
        catalogueOf(path, kStatisticsFromRows / 10)->close();
        auto db = Database::open(path, true);
        QVERIFY(db->isReadOnly());
        QVERIFY(!refreshPlannerStatistics(*db));
        QCOMPARE(statisticsRows(*db), 0);
    }

    // The list's search on the file's name, as the view builder writes it: with statistics
    // the engine reads the files first and the entries of the matching ones through their
    // index, instead of walking every entry.
    void searchOnTheFileStartsFromTheFiles()
    {
        QTemporaryDir dir;
        auto db = catalogueOf(dir.filePath(QStringLiteral("large.vdb")), kStatisticsFromRows / 10);
        QVERIFY(refreshPlannerStatistics(*db));
        QVERIFY(statisticsRows(*db) > 0);
        const QString sql = db->translate(
            QStringLiteral("Select  C64Files.ID,-1,F.iFileType as Icon,tProgram From (C64Files "
                           "Left Join Category as F on C64Files.Category_File=F.ID) where F.tFile "
                           "like '*Game 47*' order by tProgram"));
        const QString plan = planOf(*db, sql);
        QVERIFY2(plan.startsWith(QLatin1String("SCAN F")), qPrintable(sql + '\n' + plan));
        QVERIFY2(plan.contains(QLatin1String("C64Files_C1")), qPrintable(plan));
    }
};

QTEST_GUILESS_MAIN(TestPlannerStatistics)
#include "tst_plannerstatistics.moc"
