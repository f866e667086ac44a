// What the Jet layer costs over plain SQLite: the main window's list statement read in full,
// and one-row look-ups as the program does them by the thousand, each beside the same work
// written by hand against the SQLite C API, in the same run, rounds alternating.
//
//   vellumdock-bench-datalayer [--files N] [--entries M] [--rounds R] [--dir DIR]

#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>
#include <sqlite3.h>

#include <algorithm>

namespace {

QTextStream out(stdout);

// A catalogue of `files` disk images with `entries` entries spread over them, written straight
// through SQLite in one transaction (the import is measured elsewhere).
void fill(const QString& path, int files, int entries)
{
    vd::catalogue::createCatalogueFile(path);
    sqlite3* db = nullptr;
    sqlite3_open(path.toUtf8().constData(), &db);
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* cat = nullptr;
    sqlite3_prepare_v2(db,
                       "INSERT INTO Category (ID,iType,tCategory,tFile,tPath,tImage,tsCreated,iFileType) "
                       "VALUES (?1,1,?2,?2,?3,?4,'2024-01-01 10:00:00',1)",
                       -1, &cat, nullptr);
    QRandomGenerator rng(64);
    for (int i = 1; i <= files; ++i) {
        const QByteArray name = QStringLiteral("Game %1 (Side %2).d64").arg(i).arg(i % 2 + 1).toUtf8();
        const QByteArray p = QStringLiteral("/home/collector/c64/Games/%1/%2").arg(QChar(u'A' + i % 26)).arg(QString::fromUtf8(name)).toUtf8();
        const QByteArray img = QStringLiteral("DISK %1").arg(i).toUtf8();
        sqlite3_bind_int(cat, 1, i);
        sqlite3_bind_text(cat, 2, name.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(cat, 3, p.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(cat, 4, img.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_step(cat);
        sqlite3_reset(cat);
    }
    sqlite3_stmt* ent = nullptr;
    sqlite3_prepare_v2(db,
                       "INSERT INTO C64Files (ID,tProgram,tRealProgram,tExtension,lSize,lIndex,Category_File,"
                       "tsCreated) VALUES (?1,?2,?2,'PRG',?3,?4,?5,'2024-01-01 10:00:00')",
                       -1, &ent, nullptr);
    for (int i = 1; i <= entries; ++i) {
        const int file = 1 + int(rng.bounded(quint32(files)));
        const QByteArray prog = QStringLiteral("PROGRAM %1").arg(i).toUtf8();
        sqlite3_bind_int(ent, 1, i);
        sqlite3_bind_text(ent, 2, prog.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(ent, 3, int(rng.bounded(200u)));
        sqlite3_bind_int(ent, 4, i % 144);
        sqlite3_bind_int(ent, 5, file);
        sqlite3_step(ent);
        sqlite3_reset(ent);
    }
    sqlite3_finalize(cat);
    sqlite3_finalize(ent);
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(db);
}

// The main window's list of every entry (view 1, first level), as the view builder writes it.
const QString kJetList = QStringLiteral(
    "Select  C64Files.ID,-1,F.iFileType as Icon,tProgram as [File],tExtension as [Filetyp],"
    "lSize as [Blocks],F.tImage as [Disk/Tape-Name],F.tCategory as [Disc_File],F.tPath as [Dateipfad] "
    "From (C64Files Left Join Category as F on C64Files.Category_File=F.ID)");
const char* kSqliteList =
    "SELECT C64Files.ID,-1 AS Expr1001,F.iFileType AS Icon,tProgram AS File,tExtension AS Filetyp,"
    "lSize AS Blocks,F.tImage AS \"Disk/Tape-Name\",F.tCategory AS Disc_File,F.tPath AS Dateipfad "
    "FROM C64Files LEFT JOIN Category AS F ON C64Files.Category_File=F.ID";

QVariant columnValue(sqlite3_stmt* st, int c)
{
    switch (sqlite3_column_type(st, c)) {
    case SQLITE_INTEGER:
        return QVariant(qlonglong(sqlite3_column_int64(st, c)));
    case SQLITE_FLOAT:
        return QVariant(sqlite3_column_double(st, c));
    case SQLITE_NULL:
        return {};
    default:
        return QVariant(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, c)),
                                          sqlite3_column_bytes(st, c)));
    }
}

// Every row and value of the list: through the layer, as the list control pages through it.
qint64 listThroughLayer(const QString& path)
{
    auto db = vd::db::Database::open(path);
    auto rs = db->openRecordset(kJetList, vd::db::RecordsetType::Snapshot, vd::db::option::SeeChanges);
    qint64 sum = 0;
    if (rs->eof())
        return 0;
    rs->moveLast();
    const qint64 count = rs->recordCount();
    for (qint64 start = 0; start < count; start += 64) {
        rs->setAbsolutePosition(start);
        const vd::db::RowBlock page = rs->getRows(64);
        for (int r = 0; r < page.rowCount; ++r)
            sum += page.value(0, r).toLongLong() + page.value(3, r).toString().size();
    }
    return sum;
}

qint64 listByHand(const QString& path)
{
    sqlite3* db = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db, kSqliteList, -1, &st, nullptr);
    qint64 sum = 0;
    const int cols = sqlite3_column_count(st);
    QVector<QVariant> row(cols);
    while (sqlite3_step(st) == SQLITE_ROW) {
        for (int c = 0; c < cols; ++c)
            row[c] = columnValue(st, c);
        sum += row[0].toLongLong() + row[3].toString().size();
    }
    sqlite3_finalize(st);
    sqlite3_close(db);
    return sum;
}

// What the list does to show itself: count every row, read the first two screens.
qint64 openThroughLayer(const QString& path)
{
    auto db = vd::db::Database::open(path);
    auto rs = db->openRecordset(kJetList, vd::db::RecordsetType::Snapshot, vd::db::option::SeeChanges);
    rs->moveLast();
    qint64 sum = rs->recordCount();
    rs->setAbsolutePosition(0);
    const vd::db::RowBlock page = rs->getRows(60);
    for (int r = 0; r < page.rowCount; ++r)
        sum += page.value(0, r).toLongLong() + page.value(3, r).toString().size();
    return sum;
}

qint64 openByHand(const QString& path)
{
    sqlite3* db = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db, kSqliteList, -1, &st, nullptr);
    qint64 sum = 0;
    while (sqlite3_step(st) == SQLITE_ROW)
        ++sum;
    sqlite3_reset(st);
    const int cols = sqlite3_column_count(st);
    QVector<QVariant> row(cols);
    for (int r = 0; r < 60 && sqlite3_step(st) == SQLITE_ROW; ++r) {
        for (int c = 0; c < cols; ++c)
            row[c] = columnValue(st, c);
        sum += row[0].toLongLong() + row[3].toString().size();
    }
    sqlite3_finalize(st);
    sqlite3_close(db);
    return sum;
}

// One row by its key, many times over, as the commands read the row they act on.
qint64 lookupsThroughLayer(vd::db::Database& db, int files, int n)
{
    qint64 sum = 0;
    for (int i = 0; i < n; ++i) {
        const int id = 1 + (i * 7919) % files;
        auto rs = db.openRecordset(QStringLiteral("Select * From Category where ID=") + QString::number(id),
                                   vd::db::RecordsetType::Snapshot);
        sum += rs->value(QStringLiteral("tPath")).toString().size();
    }
    return sum;
}

qint64 lookupsByHand(sqlite3* db, int files, int n)
{
    qint64 sum = 0;
    for (int i = 0; i < n; ++i) {
        const int id = 1 + (i * 7919) % files;
        const QByteArray sql = ("SELECT * FROM Category WHERE ID=" + QString::number(id)).toUtf8();
        sqlite3_stmt* st = nullptr;
        sqlite3_prepare_v2(db, sql.constData(), -1, &st, nullptr);
        if (sqlite3_step(st) == SQLITE_ROW) {
            QVector<QVariant> row(sqlite3_column_count(st));
            for (int c = 0; c < row.size(); ++c)
                row[c] = columnValue(st, c);
            sum += row[4].toString().size();
        }
        sqlite3_finalize(st);
    }
    return sum;
}

double median(QVector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.isEmpty() ? 0 : (v.size() % 2 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2);
}

template <typename A, typename B>
void compare(const char* what, int rounds, A layer, B plain)
{
    QVector<double> ta, tb, ratio;
    qint64 ca = 0, cb = 0;
    layer(); // warm the page cache and the code
    plain();
    for (int r = 0; r < rounds; ++r) {
        QElapsedTimer t;
        t.start();
        ca = layer();
        const double a = double(t.nsecsElapsed()) / 1e6;
        t.restart();
        cb = plain();
        const double b = double(t.nsecsElapsed()) / 1e6;
        ta << a;
        tb << b;
        ratio << a / b;
    }
    out << QStringLiteral("%1: layer %2 ms, by hand %3 ms (medians of %4), ratio %5 (min %6, max %7)%8\n")
               .arg(QLatin1String(what))
               .arg(median(ta), 0, 'f', 2)
               .arg(median(tb), 0, 'f', 2)
               .arg(rounds)
               .arg(median(ratio), 0, 'f', 3)
               .arg(*std::min_element(ratio.begin(), ratio.end()), 0, 'f', 3)
               .arg(*std::max_element(ratio.begin(), ratio.end()), 0, 'f', 3)
               .arg(ca == cb ? QString() : QStringLiteral("  [RESULTS DIFFER]"));
    out.flush();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser cli;
    cli.setApplicationDescription(QStringLiteral("Cost of the Jet layer over plain SQLite."));
    cli.addHelpOption();
    cli.addOption({QStringLiteral("files"), QStringLiteral("Files in the catalogue."), QStringLiteral("n"), QStringLiteral("10000")});
    cli.addOption({QStringLiteral("entries"), QStringLiteral("Entries in the catalogue."), QStringLiteral("n"), QStringLiteral("100000")});
    cli.addOption({QStringLiteral("rounds"), QStringLiteral("Rounds of each measurement."), QStringLiteral("n"), QStringLiteral("7")});
    cli.addOption({QStringLiteral("only"), QStringLiteral("Run one measurement: list, open or lookups."), QStringLiteral("name")});
    cli.addOption({QStringLiteral("dir"), QStringLiteral("Folder for the catalogue (default: a temporary one)."), QStringLiteral("dir")});
    cli.process(app);
    const int files = std::max(1, cli.value(QStringLiteral("files")).toInt());
    const int entries = std::max(1, cli.value(QStringLiteral("entries")).toInt());
    const int rounds = std::max(1, cli.value(QStringLiteral("rounds")).toInt());

    QTemporaryDir tmp;
    const QString dir = cli.isSet(QStringLiteral("dir")) ? cli.value(QStringLiteral("dir")) : tmp.path();
    const QString path = dir + QStringLiteral("/bench-%1-%2.vdb").arg(files).arg(entries);
    if (!QFile::exists(path)) {
        QElapsedTimer t;
        t.start();
        fill(path, files, entries);
        out << QStringLiteral("catalogue: %1 files, %2 entries, written in %3 s\n")
                   .arg(files).arg(entries).arg(double(t.elapsed()) / 1000, 0, 'f', 2);
    }

    const QString only = cli.value(QStringLiteral("only"));
    if (only.isEmpty() || only == QLatin1String("list"))
    compare("list of all entries, every row and value", rounds, [&] { return listThroughLayer(path); },
            [&] { return listByHand(path); });

    if (only.isEmpty() || only == QLatin1String("open"))
        compare("list opened: all rows counted, first two screens read", rounds,
                [&] { return openThroughLayer(path); }, [&] { return openByHand(path); });

    auto db = vd::db::Database::open(path);
    sqlite3* raw = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &raw, SQLITE_OPEN_READWRITE, nullptr);
    const int lookups = 20000;
    if (only.isEmpty() || only == QLatin1String("lookups"))
    compare("20000 one-row look-ups by key", rounds, [&] { return lookupsThroughLayer(*db, files, lookups); },
            [&] { return lookupsByHand(raw, files, lookups); });
    sqlite3_close(raw);
    return 0;
}
