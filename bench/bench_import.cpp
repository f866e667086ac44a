// What the importer costs: a folder scan of a synthetic collection through the batch code
// (clsFileManager, the Jet layer, a transaction every half second) beside a plain baseline that
// reads the same directory bytes and inserts the same rows with one prepared statement per
// table inside one transaction, in the same run, rounds alternating. The page cache is warmed
// by a first, unmeasured pass.
//
//   vellumdock-bench-import [--dir DIR] [--d64 N] [--seed S] [--rounds R]

#include "CollectionGenerator.h"

#include "app/Globals.h"
#include "catalogue/Catalogue.h"
#include "import/clsFileManager.h"
#include "import/ImportBatch.h"
#include "platform/Files.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include "formats/Gcr.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <cstring>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace {

QTextStream out(stdout);

// On a machine shared with other work the wall clock also counts the time the scheduler gave
// to others; the process's CPU time does not (the import runs on one thread).
double processCpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return double(ts.tv_sec) * 1e3 + double(ts.tv_nsec) / 1e6;
}

struct Round
{
    double ms = 0;
    double cpuMs = 0;
    qint64 files = 0;
    qint64 rows = 0;
};

// --- the baseline: plain reads, plain inserts ------------------------------------------------

struct Baseline
{
    sqlite3* db = nullptr;
    sqlite3_stmt* category = nullptr;
    sqlite3_stmt* entry = nullptr;
    qint64 categoryId = 0;
    qint64 entryId = 0;
    qint64 files = 0;
    qint64 rows = 0;

    void addCategory(const QByteArray& name, const QByteArray& path, const QByteArray& image,
                     int type)
    {
        ++categoryId;
        ++files;
        sqlite3_bind_int64(category, 1, categoryId);
        sqlite3_bind_text(category, 2, name.constData(), int(name.size()), SQLITE_STATIC);
        sqlite3_bind_text(category, 3, path.constData(), int(path.size()), SQLITE_STATIC);
        if (image.isEmpty())
            sqlite3_bind_null(category, 4);
        else
            sqlite3_bind_text(category, 4, image.constData(), int(image.size()), SQLITE_STATIC);
        sqlite3_bind_int(category, 5, type);
        sqlite3_step(category);
        sqlite3_reset(category);
    }
    void addEntry(const QByteArray& name, qint64 size, int index, const char* extension)
    {
        ++entryId;
        ++rows;
        sqlite3_bind_int64(entry, 1, entryId);
        sqlite3_bind_text(entry, 2, name.constData(), int(name.size()), SQLITE_STATIC);
        sqlite3_bind_text(entry, 3, extension, -1, SQLITE_STATIC);
        sqlite3_bind_int64(entry, 4, size);
        sqlite3_bind_int(entry, 5, index);
        sqlite3_bind_int64(entry, 6, categoryId);
        sqlite3_step(entry);
        sqlite3_reset(entry);
    }
};

// What the baseline reads from: a file on disk through pread, or a member of a ZIP in memory.
struct Source
{
    int fd = -1;
    const QByteArray* bytes = nullptr;
    qint64 size = 0;

    qint64 read(void* into, qint64 length, qint64 at) const
    {
        if (!bytes)
            return pread(fd, into, size_t(length), at);
        if (at >= bytes->size())
            return 0;
        const qint64 n = std::min(length, bytes->size() - at);
        memcpy(into, bytes->constData() + at, size_t(n));
        return n;
    }
};

QByteArray trimPad(const char* bytes, int length)
{
    int end = length;
    while (end > 0 && quint8(bytes[end - 1]) == 0xA0)
        --end;
    return QString::fromLatin1(bytes, end).toUtf8();
}

// A D64 or D71 (track 18 at $16500, 19 sectors), or a D81 (track 40 at $61800, 40 sectors,
// the directory from sector 3).
void baselineDisk(Baseline& b, const Source& src, const QByteArray& name, const QByteArray& path,
                  bool d81 = false, int type = 1)
{
    const int sectors = d81 ? 40 : 19;
    char track[40 * 256];
    const qint64 length = qint64(sectors) * 256;
    if (src.read(track, length, d81 ? 0x61800 : 0x16500) != length)
        return;
    const QByteArray disk = trimPad(track + (d81 ? 4 : 0x90), 16);
    int sector = d81 ? 3 : 1, index = 1;
    bool made = false;
    for (int read = 0; read < sectors && sector < sectors; ++read) {
        const char* s = track + sector * 256;
        for (int k = 0; k < 8; ++k) {
            const char* slot = s + k * 32;
            if (slot[2] == 0)
                continue;
            if (!made)
                b.addCategory(name, path, disk, type);
            made = true;
            b.addEntry(trimPad(slot + 5, 16), quint8(slot[30]) + 256 * quint8(slot[31]), index++,
                       "PRG");
        }
        if (s[0] == 0 || s[1] == 0)
            break;
        sector = quint8(s[1]);
    }
}

void baselineT64(Baseline& b, const Source& src, const QByteArray& name, const QByteArray& path)
{
    const qint64 size = src.size;
    char head[64];
    if (src.read(head, sizeof head, 0) != qint64(sizeof head))
        return;
    const int count = std::min(400, quint8(head[35]) * 256 + quint8(head[36]));
    QByteArray dir(count * 32, '\0');
    src.read(dir.data(), dir.size(), 64);
    b.addCategory(name, path, QByteArray(head + 40, 24).trimmed(), 3);
    for (int i = 0; i < count; ++i) {
        const char* e = dir.constData() + i * 32;
        const qint64 start = qint64(quint8(e[8]) | quint8(e[9]) << 8 | quint8(e[10]) << 16);
        const qint64 end =
            i + 1 < count ? qint64(quint8(e[40]) | quint8(e[41]) << 8 | quint8(e[42]) << 16) : size;
        b.addEntry(QByteArray(e + 16, 16).trimmed(), (end - start + 2) / 254, i + 1, "PRG");
    }
}

void baselineFile(Baseline& b, const Source& src, const QString& fileName, const QByteArray& p);

// Every member of a ZIP in memory, read whole, a ZIP inside it again.
void baselineZip(Baseline& b, const QByteArray& zip, const QByteArray& path)
{
    archive* a = archive_read_new();
    archive_read_support_format_zip(a);
    if (archive_read_open_memory(a, zip.constData(), size_t(zip.size())) == ARCHIVE_OK) {
        archive_entry* e = nullptr;
        while (archive_read_next_header(a, &e) == ARCHIVE_OK) {
            QByteArray member(qsizetype(archive_entry_size(e)), Qt::Uninitialized);
            if (archive_read_data(a, member.data(), size_t(member.size())) != member.size())
                break;
            const QString name = QString::fromUtf8(archive_entry_pathname(e));
            baselineFile(b, Source{-1, &member, member.size()}, name, path);
        }
    }
    archive_read_free(a);
}

void baselineFile(Baseline& b, const Source& src, const QString& fileName, const QByteArray& p)
{
    const QString ext = fileName.right(4).toUpper();
    const QByteArray name = fileName.toUtf8();
    if (ext == QLatin1String(".D64")) {
        baselineDisk(b, src, name, p);
    } else if (ext == QLatin1String(".D71")) {
        baselineDisk(b, src, name, p, false, 2);
    } else if (ext == QLatin1String(".D81")) {
        baselineDisk(b, src, name, p, true, 13);
    } else if (ext == QLatin1String(".G64")) {
        // The GCR stream decoded by the program's own decoder: no plainer way to the sectors.
        QByteArray g64(qsizetype(src.size), Qt::Uninitialized);
        src.read(g64.data(), g64.size(), 0);
        const vd::formats::G64Conversion d64 = vd::formats::convertG64ToD64(g64);
        baselineDisk(b, Source{-1, &d64.d64, d64.d64.size()}, name, p, false, 12);
    } else if (ext == QLatin1String(".T64")) {
        baselineT64(b, src, name, p);
    } else if (ext == QLatin1String(".ZIP")) {
        QByteArray zip(qsizetype(src.size), Qt::Uninitialized);
        src.read(zip.data(), zip.size(), 0);
        baselineZip(b, zip, p);
    } else if (ext == QLatin1String(".PRG") || ext == QLatin1String(".TAP") ||
               ext == QLatin1String(".CRT")) {
        char head[48] = {};
        src.read(head, sizeof head, 0);
        const bool prg = ext == QLatin1String(".PRG");
        b.addCategory(name, p, {}, prg ? 4 : ext == QLatin1String(".TAP") ? 6 : 9);
        const QByteArray program =
            ext == QLatin1String(".CRT") ? QByteArray(head + 32, 16) : name.left(name.size() - 4);
        b.addEntry(program, ext == QLatin1String(".TAP") ? src.size : src.size / 254, 1, "PRG");
    }
}

Round runBaseline(const QString& catalogue, const QString& folder)
{
    vd::catalogue::createCatalogueFile(catalogue);
    Baseline b;
    sqlite3_open(QFile::encodeName(catalogue).constData(), &b.db);
    sqlite3_exec(b.db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;", nullptr, nullptr,
                 nullptr);
    QElapsedTimer t;
    t.start();
    const double cpu = processCpuMs();
    sqlite3_exec(b.db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_prepare_v2(b.db,
                       "INSERT INTO Category (ID,iType,tCategory,tFile,tPath,tImage,tsCreated,"
                       "iFileType) VALUES (?1,1,?2,?2,?3,?4,datetime('now','localtime'),?5)",
                       -1, &b.category, nullptr);
    sqlite3_prepare_v2(b.db,
                       "INSERT INTO C64Files (ID,tProgram,tRealProgram,tExtension,lSize,lIndex,"
                       "Category_File,tsCreated) VALUES (?1,?2,?2,?3,?4,?5,?6,"
                       "datetime('now','localtime'))",
                       -1, &b.entry, nullptr);
    QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const int fd = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
        if (fd < 0)
            continue;
        struct stat st = {};
        fstat(fd, &st);
        baselineFile(b, Source{fd, nullptr, st.st_size}, it.fileName(), path.toUtf8());
        close(fd);
    }
    sqlite3_finalize(b.category);
    sqlite3_finalize(b.entry);
    sqlite3_exec(b.db, "COMMIT", nullptr, nullptr, nullptr);
    Round r{double(t.nsecsElapsed()) / 1e6, processCpuMs() - cpu, b.files, b.rows};
    sqlite3_close(b.db);
    return r;
}

// --- the importer ---------------------------------------------------------------------------

Round runImporter(const QString& catalogue, const QString& folder)
{
    vd::catalogue::createCatalogueFile(catalogue);
    QString path = catalogue;
    if (!vd::catalogue::OpenCatalogueFile(path))
        return {};
    vd::import::clsFileManager fm;
    fm.InitCount();
    vd::import::ImportBatch batch(fm);
    QElapsedTimer t;
    t.start();
    const double cpu = processCpuMs();
    batch.run(vd::import::kModeAddFolder, folder);
    const double ms = double(t.nsecsElapsed()) / 1e6;
    const double cpuMs = processCpuMs() - cpu;
    fm.CountFiles();
    vd::catalogue::CloseCatalogue();
    vd::platform::DeleteFiles(vd::app::gTempPath + QStringLiteral("/*.*"));
    return {ms, cpuMs, fm.lCategoryCount, fm.lC64FileCount};
}

void removeCatalogue(const QString& path)
{
    for (const char* suffix : {"", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(suffix));
}

double median(QVector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.isEmpty() ? 0 : v[v.size() / 2];
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({"dir", "Keep the collection and catalogues in DIR.", "DIR"});
    parser.addOption({"d64", "Number of D64 images (default 20000).", "N", "20000"});
    parser.addOption({"files",
                      "The collection at scale of about N files of all kinds, one in "
                      "ten inside a ZIP (replaces --d64).",
                      "N"});
    parser.addOption({"keep", "Keep the last catalogue the importer wrote as FILE.", "FILE"});
    parser.addOption({"seed", "Seed of the collection (default 64).", "S", "64"});
    parser.addOption({"rounds", "Measured rounds of each (default 5).", "R", "5"});
    parser.addOption({"only", "Run only the importer or only the baseline (for profiling).",
                      "importer|baseline"});
    parser.process(app);

    QTemporaryDir temp;
    const QString dir = parser.isSet("dir") ? parser.value("dir") : temp.path();
    const QString folder = dir + QStringLiteral("/collection");
    vd::app::setProgramFolder(dir + QStringLiteral("/home"));
    QDir().mkpath(vd::app::gTempPath);

    vd::bench::CollectionRecipe recipe;
    if (parser.isSet("files")) {
        recipe =
            vd::bench::scaleRecipe(parser.value("files").toInt(), parser.value("seed").toUInt());
    } else {
        recipe.d64 = parser.value("d64").toInt();
        recipe.seed = parser.value("seed").toUInt();
        recipe.t64 = recipe.d64 / 40;
        recipe.prg = recipe.d64 * 3 / 40;
        recipe.tap = recipe.d64 / 100;
        recipe.crt = recipe.d64 / 100;
    }
    vd::bench::CollectionRecipe had;
    vd::bench::CollectionStats stats;
    if (!vd::bench::readCollectionMarker(folder, &had, &stats) ||
        !vd::bench::sameRecipe(had, recipe)) {
        out << "Writing the collection (seed " << recipe.seed << ")..." << Qt::endl;
        QString error;
        if (!vd::bench::generateCollection(folder, recipe, &stats, &error)) {
            out << error << Qt::endl;
            return 1;
        }
    }
    out << "Collection: " << stats.files << " files with entries (" << stats.d64Files << " D64), "
        << stats.entries << " entries, " << stats.zips << " ZIPs (" << stats.nestedZips
        << " nested)" << Qt::endl;

    const QString ours = dir + QStringLiteral("/importer.vdb");
    const QString plain = dir + QStringLiteral("/baseline.vdb");
    const QString only = parser.value("only");
    const bool importer = only != QLatin1String("baseline");
    const bool baseline = only != QLatin1String("importer");
    removeCatalogue(plain);
    runBaseline(plain, folder); // warms the page cache
    const int rounds = std::max(1, parser.value("rounds").toInt());
    QVector<double> oursMs, plainMs, oursCpu, plainCpu;
    Round last, lastPlain;
    for (int i = 0; i < rounds; ++i) {
        removeCatalogue(ours);
        if (importer)
            last = runImporter(ours, folder);
        removeCatalogue(plain);
        if (baseline)
            lastPlain = runBaseline(plain, folder);
        oursMs << last.ms;
        plainMs << lastPlain.ms;
        oursCpu << last.cpuMs;
        plainCpu << lastPlain.cpuMs;
        out << QStringLiteral("round %1: importer %2 ms (CPU %4), baseline %3 ms (CPU %5)")
                   .arg(i + 1)
                   .arg(last.ms, 0, 'f', 0)
                   .arg(lastPlain.ms, 0, 'f', 0)
                   .arg(last.cpuMs, 0, 'f', 0)
                   .arg(lastPlain.cpuMs, 0, 'f', 0)
            << Qt::endl;
    }
    if (importer && (last.files != stats.files || last.rows != stats.entries))
        out << "WARNING: the importer wrote " << last.files << " files and " << last.rows
            << " entries" << Qt::endl;
    const double m = median(oursMs), p = median(plainMs);
    out << QStringLiteral("importer: %1 ms, %2 files/s, %3 rows/s")
               .arg(m, 0, 'f', 0)
               .arg(double(last.files) / m * 1000, 0, 'f', 0)
               .arg(double(last.rows) / m * 1000, 0, 'f', 0)
        << Qt::endl;
    out << QStringLiteral("baseline: %1 ms, %2 files/s, %3 rows/s")
               .arg(p, 0, 'f', 0)
               .arg(double(lastPlain.files) / p * 1000, 0, 'f', 0)
               .arg(double(lastPlain.rows) / p * 1000, 0, 'f', 0)
        << Qt::endl;
    out << QStringLiteral("ratio (importer / baseline): %1").arg(m / p, 0, 'f', 2) << Qt::endl;
    // The whole folder's time over its D64 images alone: the other kinds count against it.
    out << QStringLiteral("D64 per second (whole import): importer %1, baseline %2")
               .arg(double(stats.d64Files) / m * 1000, 0, 'f', 0)
               .arg(double(stats.d64Files) / p * 1000, 0, 'f', 0)
        << Qt::endl;
    const double mc = median(oursCpu), pc = median(plainCpu);
    out << QStringLiteral("CPU time: importer %1 ms (%2 files/s, %3 D64/s), baseline %4 ms (%5 "
                          "files/s, %6 D64/s), ratio %7")
               .arg(mc, 0, 'f', 0)
               .arg(double(last.files) / mc * 1000, 0, 'f', 0)
               .arg(double(stats.d64Files) / mc * 1000, 0, 'f', 0)
               .arg(pc, 0, 'f', 0)
               .arg(double(lastPlain.files) / pc * 1000, 0, 'f', 0)
               .arg(double(stats.d64Files) / pc * 1000, 0, 'f', 0)
               .arg(mc / pc, 0, 'f', 2)
        << Qt::endl;
    // The lines bench/scale.sh collects into its table.
    out << QStringLiteral("TABLE|import of %1 files, %2 entries (%3 D64)|%4 s, %5 files/s, %6 "
                          "rows/s; CPU %7 s|%8 s, %9 files/s; CPU %10 s|")
               .arg(last.files)
               .arg(last.rows)
               .arg(stats.d64Files)
               .arg(m / 1000, 0, 'f', 1)
               .arg(double(last.files) / m * 1000, 0, 'f', 0)
               .arg(double(last.rows) / m * 1000, 0, 'f', 0)
               .arg(mc / 1000, 0, 'f', 1)
               .arg(p / 1000, 0, 'f', 1)
               .arg(double(lastPlain.files) / p * 1000, 0, 'f', 0)
               .arg(pc / 1000, 0, 'f', 1)
        << "|ratio " << QString::number(m / p, 'f', 2) << Qt::endl;
    const double d64Wall = double(stats.d64Files) / m * 1000,
                 d64Cpu = double(stats.d64Files) / mc * 1000;
    out << QStringLiteral("TABLE|D64 per second (whole import's time)|%1 (per CPU second %2)|%3 "
                          "(per CPU second %4)|3,000/s|%5")
               .arg(d64Wall, 0, 'f', 0)
               .arg(d64Cpu, 0, 'f', 0)
               .arg(double(stats.d64Files) / p * 1000, 0, 'f', 0)
               .arg(double(stats.d64Files) / pc * 1000, 0, 'f', 0)
               .arg(d64Wall >= 3000  ? QStringLiteral("met")
                    : d64Cpu >= 3000 ? QStringLiteral("met in CPU time")
                                     : QStringLiteral("NOT met"))
        << Qt::endl;
    if (importer && parser.isSet("keep")) {
        const QString keep = parser.value("keep");
        removeCatalogue(keep);
        if (!QFile::copy(ours, keep)) {
            out << "The catalogue could not be kept as " << keep << Qt::endl;
            return 1;
        }
        out << "catalogue kept: " << keep << Qt::endl;
    }
    return 0;
}
