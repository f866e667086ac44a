// The GameBase connection: how fast an Access file becomes its SQLite cache, beside mdb-export
// of the same tables, and how fast an existing cache of a 30,000-game GameBase opens and runs
// the game window's list of all games, beside the same statement stepped through SQLite by
// hand. Rounds alternate; medians are printed.
//
//   vellumdock-bench-gamebase [--mdb FILE] [--games N] [--rounds R] [--dir DIR]
//                             [--only cache|list]

#include "app/Globals.h"
#include "catalogue/Database.h"
#include "catalogue/QueryDef.h"
#include "catalogue/Recordset.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseCache.h"
#include "GameBaseGenerator.h"
#include "platform/Progress.h"

#include <algorithm>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextStream>
#include <sqlite3.h>

namespace {

QTextStream out(stdout);

double median(QVector<double> v)
{
    std::sort(v.begin(), v.end());
    if (v.isEmpty())
        return 0;
    return v.size() % 2 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2;
}

double msSince(const QElapsedTimer& t)
{
    return double(t.nsecsElapsed()) / 1e6;
}

// ---- (a) the cache of an Access file -------------------------------------------------------

struct MdbShape
{
    QStringList tables;
    qint64 rows = 0;
    qint64 values = 0; // rows times columns, over all tables
};

MdbShape shapeOf(const QString& cache)
{
    MdbShape shape;
    auto db = vd::db::Database::open(cache);
    for (const QString& table : db->tableNames()) {
        auto rs = db->openRecordset(QStringLiteral("Select * From [") + table + QLatin1Char(']'),
                                    vd::db::RecordsetType::Snapshot);
        if (!rs->eof())
            rs->moveLast();
        shape.tables << table;
        shape.rows += rs->recordCount();
        shape.values += rs->recordCount() * rs->fieldCount();
    }
    return shape;
}

// mdb-export of every table, its CSV read from the pipe and dropped.
bool exportAll(const QString& tool, const QString& mdb, const QStringList& tables)
{
    for (const QString& table : tables) {
        QProcess p;
        p.setStandardOutputFile(QProcess::nullDevice());
        p.start(tool, {mdb, table});
        if (!p.waitForFinished(60000) || p.exitCode() != 0)
            return false;
    }
    return true;
}

void benchCache(const QString& mdb, const QString& dir, int rounds)
{
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("mdb-export"));
    if (tool.isEmpty()) {
        out << "cache: mdb-export is not installed (Debian package mdbtools), no baseline\n";
        return;
    }
    const QString target = dir + QStringLiteral("/bench-cache.sqlite");
    const vd::gamebase::CacheResult first =
        vd::gamebase::buildCache(mdb, target, vd::platform::noProgress());
    if (!first.ok) {
        out << "cache: " << first.error << '\n';
        return;
    }
    const MdbShape shape = shapeOf(target);
    // A first export warms the page cache for both.
    exportAll(tool, mdb, shape.tables);
    QVector<double> ours, export_;
    for (int r = 0; r < rounds; ++r) {
        QElapsedTimer t;
        t.start();
        const bool built = vd::gamebase::buildCache(mdb, target, vd::platform::noProgress()).ok;
        ours << msSince(t);
        t.restart();
        const bool exported = exportAll(tool, mdb, shape.tables);
        export_ << msSince(t);
        if (!built || !exported) {
            out << "cache: a round failed\n";
            return;
        }
    }
    const double a = median(ours);
    const double b = median(export_);
    out << QStringLiteral("cache of %1: %2 tables, %3 rows, %4 values\n")
               .arg(QFileInfo(mdb).fileName())
               .arg(shape.tables.size())
               .arg(shape.rows)
               .arg(shape.values);
    out << QStringLiteral("  cache built: %1 ms, %2 rows/s, %3 values/s\n")
               .arg(a, 0, 'f', 1)
               .arg(double(shape.rows) / a * 1000, 0, 'f', 0)
               .arg(double(shape.values) / a * 1000, 0, 'f', 0);
    out << QStringLiteral("  mdb-export:  %1 ms, %2 rows/s (one process per table)\n")
               .arg(b, 0, 'f', 1)
               .arg(double(shape.rows) / b * 1000, 0, 'f', 0);
    out << QStringLiteral("  ratio %1 (medians of %2)\n").arg(a / b, 0, 'f', 2).arg(rounds);
    // A GameBase of 30,000 games: Games with 43 columns, and about 60,000 rows of four values
    // in the other tables (lookups, Music, Extras).
    const double gameBaseValues = 30000.0 * 43 + 60000.0 * 4;
    out << QStringLiteral("  extrapolated for 30,000 games (%1 values): %2 s\n")
               .arg(gameBaseValues, 0, 'f', 0)
               .arg(gameBaseValues / (double(shape.values) / a) / 1000, 0, 'f', 1);
}

// ---- (b) the list of all games over an existing cache --------------------------------------

// lstGB as the game window builds it with the default columns (COMMENT@@@YEAR) and without
// adult content; its lookup joins name the GameBase by its path.
QString listStatement(const QString& gameBasePath)
{
    return QStringLiteral("Select G.GA_ID,iif(G.ScrnshotFilename='',0,1) as Icon,"
                          "G.ScrnshotFilename as Scr,G.V_LengthType,G.Name as [File],"
                          "G.Comment as [Kommentar],Y.Year as [Jahr] From (Games as G  Left Join "
                          "[;database=%1].Years as Y on G.Ye_ID=Y.Ye_ID) where Adult=0")
        .arg(gameBasePath);
}
const char* kListByHand =
    "SELECT G.GA_ID, CASE WHEN G.ScrnshotFilename='' THEN 0 ELSE 1 END AS Icon, "
    "G.ScrnshotFilename AS Scr, G.V_LengthType, G.Name AS File, G.Comment AS Kommentar, "
    "Y.Year AS Jahr FROM Games AS G LEFT JOIN Years AS Y ON G.YE_Id=Y.YE_Id WHERE G.Adult=0";

constexpr int kFirstPage = 61;

// The GameBase connection opened on its existing cache, and the list run as the list control
// runs it: a snapshot, its exact count, the first page.
qint64 listThroughCache(const QString& mdb)
{
    const QString file = vd::gamebase::gameBaseDataFile(mdb, vd::platform::noProgress(), nullptr);
    auto gb = vd::db::Database::open(file);
    vd::gamebase::installAttachResolver(*gb);
    auto query = gb->createQueryDef(listStatement(mdb));
    auto rs = query->openRecordset(vd::db::RecordsetType::Snapshot, vd::db::option::SeeChanges);
    if (rs->recordCount() > 0)
        rs->moveLast();
    const qint64 count = rs->recordCount();
    rs->setAbsolutePosition(0);
    const vd::db::RowBlock page = rs->getRows(kFirstPage);
    return page.rowCount == std::min<qint64>(count, kFirstPage) ? count : -1;
}

qint64 listByHand(const QString& cache)
{
    sqlite3* h = nullptr;
    sqlite3_open_v2(cache.toUtf8().constData(), &h, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(h, kListByHand, -1, &st, nullptr);
    qint64 count = 0;
    QVector<QVariant> page;
    while (sqlite3_step(st) == SQLITE_ROW) {
        if (++count <= kFirstPage)
            for (int c = 0; c < sqlite3_column_count(st); ++c)
                page << (sqlite3_column_type(st, c) == SQLITE_INTEGER
                             ? QVariant(qlonglong(sqlite3_column_int64(st, c)))
                             : QVariant(QString::fromUtf8(
                                   reinterpret_cast<const char*>(sqlite3_column_text(st, c)))));
    }
    sqlite3_finalize(st);
    sqlite3_close(h);
    return page.size() == std::min<qint64>(count, kFirstPage) * 7 ? count : -1;
}

void benchList(const QString& dir, int games, int rounds)
{
    vd::app::setProgramFolder(dir);
    // A stand-in for the user's .mdb: only its path, size and time name the cache.
    const QString mdb = dir + QStringLiteral("/GBC_v18.mdb");
    QFile stub(mdb);
    if (!stub.exists() && stub.open(QIODevice::WriteOnly)) {
        stub.write("Standard Jet DB stand-in");
        stub.close();
    }
    QDir().mkpath(vd::app::gCachePath);
    const QString cache = vd::gamebase::cacheFileName(mdb, vd::app::gCachePath);
    if (!QFileInfo::exists(cache)) {
        QElapsedTimer t;
        t.start();
        vd::bench::writeGameBase(cache, games);
        out << QStringLiteral("list: wrote a GameBase of %1 games in %2 ms\n")
                   .arg(games)
                   .arg(t.elapsed());
    }
    const qint64 expected = listByHand(cache);
    if (expected < 0 || listThroughCache(mdb) != expected) {
        out << "list: the two ways read different rows\n";
        return;
    }
    QVector<double> ours, byHand;
    for (int r = 0; r < rounds; ++r) {
        QElapsedTimer t;
        t.start();
        listThroughCache(mdb);
        ours << msSince(t);
        t.restart();
        listByHand(cache);
        byHand << msSince(t);
    }
    out << QStringLiteral("list of all games (%1 games, %2 rows without adult content): opened "
                          "through the cache %3 ms (max %4), by hand %5 ms, ratio %6 (medians of "
                          "%7)\n")
               .arg(games)
               .arg(expected)
               .arg(median(ours), 0, 'f', 1)
               .arg(*std::max_element(ours.begin(), ours.end()), 0, 'f', 1)
               .arg(median(byHand), 0, 'f', 1)
               .arg(median(ours) / median(byHand), 0, 'f', 2)
               .arg(rounds);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser cli;
    cli.addHelpOption();
    cli.addOption({QStringLiteral("mdb"), QStringLiteral("The Access file to cache."),
                   QStringLiteral("file"),
                   QStringLiteral(VD_TESTDATA_DIR) + QStringLiteral("/mdb/nwind.mdb")});
    cli.addOption({QStringLiteral("games"), QStringLiteral("Games of the generated GameBase."),
                   QStringLiteral("n"), QStringLiteral("30000")});
    cli.addOption({QStringLiteral("rounds"), QStringLiteral("Rounds of each measurement."),
                   QStringLiteral("n"), QStringLiteral("9")});
    cli.addOption({QStringLiteral("dir"),
                   QStringLiteral("Folder for the caches (default: a temporary one)."),
                   QStringLiteral("dir")});
    cli.addOption({QStringLiteral("only"), QStringLiteral("Run one measurement: cache or list."),
                   QStringLiteral("name")});
    cli.process(app);
    const int rounds = std::max(1, cli.value(QStringLiteral("rounds")).toInt());
    QTemporaryDir temp;
    const QString dir =
        cli.isSet(QStringLiteral("dir")) ? cli.value(QStringLiteral("dir")) : temp.path();
    QDir().mkpath(dir);
    const QString only = cli.value(QStringLiteral("only"));
    if (only.isEmpty() || only == QLatin1String("cache")) {
        const QString mdb = cli.value(QStringLiteral("mdb"));
        if (QFileInfo(mdb).isFile())
            benchCache(mdb, dir, rounds);
        else
            out << "cache: " << mdb << " is not there\n";
    }
    if (only.isEmpty() || only == QLatin1String("list"))
        benchList(dir, std::max(1, cli.value(QStringLiteral("games")).toInt()), rounds);
    return 0;
}
