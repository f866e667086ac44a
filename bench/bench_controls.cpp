// The data-bound controls at collection scale: the tree of the file view and the main list of
// every entry, opened, paged and searched through the engines, each beside the same statement
// run by hand against the SQLite C API in the same run.
//
//   vellumdock-bench-controls [--files N] [--entries M] [--rounds R] [--dir DIR] [--only tree|list]

#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "controls/ReportEngine.h"
#include "controls/SubTree.h"
#include "controls/TreeItem.h"
#include "controls/TreeLevels.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>
#include <sqlite3.h>

#include <algorithm>

namespace {

using namespace vd;

QTextStream out(stdout);

// The view builder's statements for view 1 ("Dateien").
const QString kTreeRoot = QStringLiteral(
    "SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,16 AS Icon,'Dateien' From Config");
const QString kTreeFiles = QStringLiteral("SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS "
                                          "Icon,tCategory From Category as F where iType=1 "
                                          "order by tCategory");
const QString kListLevel1 =
    QStringLiteral("Select  C64Files.ID,-1,F.iFileType as Icon,tProgram as [File],tExtension as "
                   "[Filetyp],lSize as "
                   "[Blocks],F.tImage as [Disk/Tape-Name],F.tCategory as [Disc_File],F.tPath as "
                   "[Dateipfad] From (C64Files "
                   "Left Join Category as F on C64Files.Category_File=F.ID)");

// The same statements in SQLite's dialect, written by hand.
const char* kPlainRoot =
    "SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,16 AS Icon,'Dateien' FROM Config";
const char* kPlainBuffer = "SELECT DISTINCT -1 FROM Category AS F WHERE iType=1";
const char* kPlainFiles =
    "SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,tCategory FROM Category AS F "
    "WHERE iType=1 ORDER BY tCategory COLLATE NOCASE";
const char* kPlainList = "SELECT C64Files.ID,-1 AS Expr1001,F.iFileType AS Icon,tProgram AS "
                         "File,tExtension AS Filetyp,lSize AS Blocks,"
                         "F.tImage AS \"Disk/Tape-Name\",F.tCategory AS Disc_File,F.tPath AS "
                         "Dateipfad FROM C64Files LEFT JOIN "
                         "Category AS F ON C64Files.Category_File=F.ID ORDER BY 4 COLLATE NOCASE";

constexpr int kScreenRows = 30; // a window of 480 pixels
constexpr int kViewHeight = kScreenRows * 16;

// A collection of `files` disk images and `entries` entries spread over them, written straight
// through SQLite in one transaction.
void fill(const QString& path, int files, int entries)
{
    catalogue::createCatalogueFile(path);
    sqlite3* db = nullptr;
    sqlite3_open(path.toUtf8().constData(), &db);
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* cat = nullptr;
    sqlite3_prepare_v2(
        db,
        "INSERT INTO Category (ID,iType,tCategory,tFile,tPath,tImage,tsCreated,iFileType) "
        "VALUES (?1,1,?2,?2,?3,?4,'2024-01-01 10:00:00',?5)",
        -1, &cat, nullptr);
    QRandomGenerator rng(8);
    for (int i = 1; i <= files; ++i) {
        // Names in no particular order, so that the tree's ORDER BY has work to do.
        const quint32 n = rng.bounded(1000000u);
        const QByteArray name =
            QStringLiteral("%1 Game %2.d64").arg(QChar(u'A' + n % 26)).arg(n).toUtf8();
        const QByteArray p = QStringLiteral("/home/collector/c64/%1/%2")
                                 .arg(i % 97)
                                 .arg(QString::fromUtf8(name))
                                 .toUtf8();
        const QByteArray img = QStringLiteral("DISK %1").arg(i).toUtf8();
        sqlite3_bind_int(cat, 1, i);
        sqlite3_bind_text(cat, 2, name.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(cat, 3, p.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(cat, 4, img.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(cat, 5, 1 + i % 15);
        sqlite3_step(cat);
        sqlite3_reset(cat);
    }
    sqlite3_stmt* ent = nullptr;
    sqlite3_prepare_v2(
        db,
        "INSERT INTO C64Files (ID,tProgram,tRealProgram,tExtension,lSize,lIndex,Category_File,"
        "tsCreated) VALUES (?1,?2,?2,'PRG',?3,?4,?5,'2024-01-01 10:00:00')",
        -1, &ent, nullptr);
    for (int i = 1; i <= entries; ++i) {
        const QByteArray prog = QStringLiteral("PROGRAM %1").arg(rng.bounded(10000000u)).toUtf8();
        sqlite3_bind_int(ent, 1, i);
        sqlite3_bind_text(ent, 2, prog.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(ent, 3, int(rng.bounded(200u)));
        sqlite3_bind_int(ent, 4, i % 144);
        sqlite3_bind_int(ent, 5, 1 + int(rng.bounded(quint32(files))));
        sqlite3_step(ent);
        sqlite3_reset(ent);
    }
    sqlite3_finalize(cat);
    sqlite3_finalize(ent);
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(db);
}

double median(QVector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.isEmpty()
               ? 0
               : (v.size() % 2 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2);
}

double msSince(const QElapsedTimer& t)
{
    return double(t.nsecsElapsed()) / 1e6;
}

qint64 peakKiB()
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    return -1;
}

// --- by hand -------------------------------------------------------------------------------

struct Plain
{
    explicit Plain(const QString& path)
    {
        sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    }
    ~Plain() { sqlite3_close(db); }

    // Steps a statement to the end; reads the first `keep` rows' values into variants.
    qint64 run(const QByteArray& sql, int keep, qint64 offset = 0)
    {
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(db, sql.constData(), -1, &st, nullptr) != SQLITE_OK) {
            out << "by hand: " << sqlite3_errmsg(db) << "\n";
            return -1;
        }
        qint64 n = 0;
        QVector<QVariant> row(sqlite3_column_count(st));
        while (sqlite3_step(st) == SQLITE_ROW) {
            if (n >= offset && n < offset + keep)
                for (int c = 0; c < row.size(); ++c)
                    row[c] = sqlite3_column_type(st, c) == SQLITE_TEXT
                                 ? QVariant(QString::fromUtf8(
                                       reinterpret_cast<const char*>(sqlite3_column_text(st, c))))
                                 : QVariant(sqlite3_column_int64(st, c));
            ++n;
        }
        sqlite3_finalize(st);
        return n;
    }

    sqlite3* db = nullptr;
};

// --- the measurements ----------------------------------------------------------------------

struct Tree : controls::TreeEvents
{
    controls::CTreeLevels levels;
    controls::CTreeLevels* LevelInfo() override { return &levels; }
};

// The tree as the main window opens it: levels set up, root made and opened, a screen filled.
qint64 treeThroughEngine(db::Database& db)
{
    Tree tree;
    tree.levels.Create(&db, 0);
    tree.levels.Setup({kTreeRoot, kTreeFiles});
    auto root = controls::CSubTree::make();
    root->setEvents(&tree);
    root->Create(nullptr, QString(), -1);
    root->Expand(0);
    controls::CScreenBuffer screen;
    screen.Fill(root, 0, kScreenRows);
    const qint64 n = root->NodesCount(false) + screen.Count();
    root->ClearReferences();
    return n;
}

qint64 treeByHand(Plain& plain, const QByteArray& rootSql, const QByteArray& bufferSql,
                  const QByteArray& filesSql)
{
    const qint64 rows = plain.run(rootSql, 1) + plain.run(filesSql, kScreenRows);
    plain.run(bufferSql, 1);
    return rows + kScreenRows;
}

struct Timing
{
    QVector<double> ours, plain;
    void print(const char* what, double limitMs) const
    {
        const double a = median(ours), b = median(plain);
        out << QStringLiteral("%1: ours %2 ms (max %3), by hand %4 ms, ratio %5, limit %6%7\n")
                   .arg(QLatin1String(what))
                   .arg(a, 0, 'f', 2)
                   .arg(*std::max_element(ours.begin(), ours.end()), 0, 'f', 2)
                   .arg(b, 0, 'f', 2)
                   .arg(b > 0 ? a / b : 0, 0, 'f', 3)
                   .arg(limitMs < 1e9 ? QString::number(limitMs, 'f', 0) + QStringLiteral(" ms")
                                      : QStringLiteral("none"))
                   .arg(a <= limitMs ? QString() : QStringLiteral("  [OVER THE LIMIT]"));
        out.flush();
    }
};

void benchTree(const QString& path, int rounds)
{
    auto db = db::Database::open(path);
    Plain plain(path);
    const QByteArray rootSql(kPlainRoot), bufferSql(kPlainBuffer), filesSql(kPlainFiles);
    Timing t;
    treeThroughEngine(*db); // warm the page cache and the code
    for (int r = 0; r < rounds; ++r) {
        QElapsedTimer clock;
        clock.start();
        const qint64 a = treeThroughEngine(*db);
        t.ours << msSince(clock);
        clock.restart();
        const qint64 b = treeByHand(plain, rootSql, bufferSql, filesSql);
        t.plain << msSince(clock);
        if (a != b)
            out << QStringLiteral("  [rows differ: %1 / %2]\n").arg(a).arg(b);
    }
    t.print("tree of view 1 ready (root and every file, a screen filled)", 300);
}

void benchList(const QString& path, int rounds)
{
    auto db = db::Database::open(path);
    Plain plain(path);
    controls::ReportEngine list;
    list.setViewHeight(kViewHeight);
    list.setDataBase(db.get());
    // As the main window's list shows level 1: key, parent and icon hidden, sorted by name.
    auto open = [&] {
        list.Setup(kListLevel1, 3, 1, QString(), 2, false, 0, 1);
        list.fetchRows(0, kScreenRows - 1);
        return list.ItemCount();
    };
    open();
    out << "the list runs: " << list.lastStatement() << "\n";
    const QByteArray sql(kPlainList);
    Timing opened;
    for (int r = 0; r < rounds; ++r) {
        QElapsedTimer clock;
        clock.start();
        const qint64 a = open();
        opened.ours << msSince(clock);
        clock.restart();
        const qint64 b = plain.run(sql, 2 * kScreenRows + 1);
        opened.plain << msSince(clock);
        if (a != b)
            out << QStringLiteral("  [counts differ: %1 / %2]\n").arg(a).arg(b);
    }
    opened.print("list of every entry opened, exact count, first page", 1000);

    // Pages anywhere in the list, as a scroll bar dragged about reads them.
    Timing pages;
    QRandomGenerator rng(30);
    const qint64 count = list.ItemCount();
    for (int r = 0; r < std::max(rounds, 20); ++r) {
        const qint64 first = rng.bounded(count - kScreenRows);
        QElapsedTimer clock;
        clock.start();
        list.fetchRows(first, first + kScreenRows - 1);
        const QString name = list.cellValue(first, 3).toString();
        pages.ours << msSince(clock);
        clock.restart();
        plain.run(sql + QByteArray(" LIMIT 61 OFFSET ") + QByteArray::number(first), 61);
        pages.plain << msSince(clock);
        if (name.isEmpty())
            out << "  [empty row]\n";
    }
    pages.print("one page anywhere in the list", 30);

    // FindFirst of a name, as the search of the list runs it.
    Timing finds;
    for (int r = 0; r < std::max(rounds, 5); ++r) {
        const qint64 at = rng.bounded(count);
        list.fetchRows(at, at);
        const QString name = list.cellValue(at, 3).toString();
        QElapsedTimer clock;
        clock.start();
        const qint64 found = list.Find(QStringLiteral("File"), name, 0);
        finds.ours << msSince(clock);
        clock.restart();
        sqlite3_stmt* st = nullptr;
        sqlite3_prepare_v2(plain.db, sql.constData(), -1, &st, nullptr);
        const QByteArray want = name.toUtf8();
        qint64 row = 0, hit = -1;
        while (sqlite3_step(st) == SQLITE_ROW && hit < 0) {
            if (qstrnicmp(reinterpret_cast<const char*>(sqlite3_column_text(st, 3)),
                          want.constData(), want.size()) == 0)
                hit = row;
            ++row;
        }
        sqlite3_finalize(st);
        finds.plain << msSince(clock);
        if (list.FieldValue(3, found).toString().compare(name, Qt::CaseInsensitive) != 0 || hit < 0)
            out << QStringLiteral("  [find of %1 gave row %2, by hand %3]\n")
                       .arg(name)
                       .arg(found)
                       .arg(hit);
    }
    finds.print("FindFirst of a name", 200);

    // A click on another column's header: the list runs again, sorted by the disk's name.
    Timing resorted;
    const QByteArray byDisk = QByteArray(kPlainList).replace("ORDER BY 4", "ORDER BY 7");
    for (int r = 0; r < rounds; ++r) {
        list.Resort(3, true);
        QElapsedTimer clock;
        clock.start();
        list.Resort(6, true);
        list.fetchRows(0, kScreenRows - 1);
        resorted.ours << msSince(clock);
        clock.restart();
        plain.run(byDisk, 2 * kScreenRows + 1);
        resorted.plain << msSince(clock);
    }
    resorted.print("list sorted again by the disk's name (no target)", 1e9);
    out << QStringLiteral("peak memory of the process: %1 MB (limit 300 MB)\n")
               .arg(double(peakKiB()) / 1024, 0, 'f', 1);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser cli;
    cli.setApplicationDescription(QStringLiteral("The tree and the list at collection scale."));
    cli.addHelpOption();
    cli.addOption({QStringLiteral("files"), QStringLiteral("Files in the catalogue."),
                   QStringLiteral("n"), QStringLiteral("100000")});
    cli.addOption({QStringLiteral("entries"), QStringLiteral("Entries in the catalogue."),
                   QStringLiteral("n"), QStringLiteral("1000000")});
    cli.addOption({QStringLiteral("rounds"), QStringLiteral("Rounds of each measurement."),
                   QStringLiteral("n"), QStringLiteral("5")});
    cli.addOption({QStringLiteral("only"), QStringLiteral("Run one part: tree or list."),
                   QStringLiteral("name")});
    cli.addOption({QStringLiteral("dir"),
                   QStringLiteral("Folder for the catalogue (default: a temporary one)."),
                   QStringLiteral("dir")});
    cli.process(app);
    const int files = std::max(1, cli.value(QStringLiteral("files")).toInt());
    const int entries = std::max(1, cli.value(QStringLiteral("entries")).toInt());
    const int rounds = std::max(1, cli.value(QStringLiteral("rounds")).toInt());

    QTemporaryDir tmp;
    const QString dir =
        cli.isSet(QStringLiteral("dir")) ? cli.value(QStringLiteral("dir")) : tmp.path();
    const QString path = dir + QStringLiteral("/controls-%1-%2.vdb").arg(files).arg(entries);
    if (!QFile::exists(path)) {
        QElapsedTimer t;
        t.start();
        fill(path, files, entries);
        out << QStringLiteral("catalogue: %1 files, %2 entries, written in %3 s\n")
                   .arg(files)
                   .arg(entries)
                   .arg(double(t.elapsed()) / 1000, 0, 'f', 2);
    }
    const QString only = cli.value(QStringLiteral("only"));
    if (only.isEmpty() || only == QLatin1String("tree"))
        benchTree(path, rounds);
    if (only.isEmpty() || only == QLatin1String("list"))
        benchList(path, rounds);
    return 0;
}
