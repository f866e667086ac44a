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

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QTextStream out(stdout);

struct Round
{
    double ms = 0;
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

QByteArray trimPad(const char* bytes, int length)
{
    int end = length;
    while (end > 0 && quint8(bytes[end - 1]) == 0xA0)
        --end;
    return QString::fromLatin1(bytes, end).toUtf8();
}

void baselineD64(Baseline& b, int fd, const QByteArray& name, const QByteArray& path)
{
    char track[19 * 256];
    if (pread(fd, track, sizeof track, 0x16500) != qint64(sizeof track))
        return;
    const QByteArray disk = trimPad(track + 0x90, 16);
    int sector = 1, index = 1;
    bool made = false;
    for (int read = 0; read < 18 && sector < 19; ++read) {
        const char* s = track + sector * 256;
        for (int k = 0; k < 8; ++k) {
            const char* slot = s + k * 32;
            if (slot[2] == 0)
                continue;
            if (!made)
                b.addCategory(name, path, disk, 1);
            made = true;
            b.addEntry(trimPad(slot + 5, 16), quint8(slot[30]) + 256 * quint8(slot[31]), index++,
                       "PRG");
        }
        if (s[0] == 0 || s[1] == 0)
            break;
        sector = quint8(s[1]);
    }
}

void baselineT64(Baseline& b, int fd, const QByteArray& name, const QByteArray& path, qint64 size)
{
    char head[64];
    if (pread(fd, head, sizeof head, 0) != qint64(sizeof head))
        return;
    const int count = std::min(400, quint8(head[35]) * 256 + quint8(head[36]));
    QByteArray dir(count * 32, '\0');
    pread(fd, dir.data(), size_t(dir.size()), 64);
    b.addCategory(name, path, QByteArray(head + 40, 24).trimmed(), 3);
    for (int i = 0; i < count; ++i) {
        const char* e = dir.constData() + i * 32;
        const qint64 start = qint64(quint8(e[8]) | quint8(e[9]) << 8 | quint8(e[10]) << 16);
        const qint64 end =
            i + 1 < count ? qint64(quint8(e[40]) | quint8(e[41]) << 8 | quint8(e[42]) << 16) : size;
        b.addEntry(QByteArray(e + 16, 16).trimmed(), (end - start + 2) / 254, i + 1, "PRG");
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
        const QString ext = path.right(4).toUpper();
        const QByteArray name = it.fileName().toUtf8();
        const QByteArray p = path.toUtf8();
        const int fd = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
        if (fd < 0)
            continue;
        struct stat st = {};
        fstat(fd, &st);
        if (ext == QLatin1String(".D64")) {
            baselineD64(b, fd, name, p);
        } else if (ext == QLatin1String(".T64")) {
            baselineT64(b, fd, name, p, st.st_size);
        } else if (ext == QLatin1String(".PRG") || ext == QLatin1String(".TAP") ||
                   ext == QLatin1String(".CRT")) {
            char head[48] = {};
            pread(fd, head, sizeof head, 0);
            const bool prg = ext == QLatin1String(".PRG");
            b.addCategory(name, p, {}, prg ? 4 : ext == QLatin1String(".TAP") ? 6 : 9);
            const QByteArray program = ext == QLatin1String(".CRT") ? QByteArray(head + 32, 16)
                                                                    : name.left(name.size() - 4);
            b.addEntry(program, ext == QLatin1String(".TAP") ? st.st_size : st.st_size / 254, 1,
                       "PRG");
        }
        close(fd);
    }
    sqlite3_finalize(b.category);
    sqlite3_finalize(b.entry);
    sqlite3_exec(b.db, "COMMIT", nullptr, nullptr, nullptr);
    Round r{double(t.nsecsElapsed()) / 1e6, b.files, b.rows};
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
    batch.run(vd::import::kModeAddFolder, folder);
    const double ms = double(t.nsecsElapsed()) / 1e6;
    fm.CountFiles();
    vd::catalogue::CloseCatalogue();
    return {ms, fm.lCategoryCount, fm.lC64FileCount};
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
    recipe.d64 = parser.value("d64").toInt();
    recipe.seed = parser.value("seed").toUInt();
    recipe.t64 = recipe.d64 / 40;
    recipe.prg = recipe.d64 * 3 / 40;
    recipe.tap = recipe.d64 / 100;
    recipe.crt = recipe.d64 / 100;
    vd::bench::CollectionRecipe had;
    vd::bench::CollectionStats stats;
    if (!vd::bench::readCollectionMarker(folder, &had, &stats) || had.seed != recipe.seed ||
        had.d64 != recipe.d64) {
        out << "Writing the collection (seed " << recipe.seed << ")..." << Qt::endl;
        QString error;
        if (!vd::bench::generateCollection(folder, recipe, &stats, &error)) {
            out << error << Qt::endl;
            return 1;
        }
    }
    out << "Collection: " << stats.files << " files with entries (" << stats.d64Files << " D64), "
        << stats.entries << " entries" << Qt::endl;

    const QString ours = dir + QStringLiteral("/importer.vdb");
    const QString plain = dir + QStringLiteral("/baseline.vdb");
    const QString only = parser.value("only");
    const bool importer = only != QLatin1String("baseline");
    const bool baseline = only != QLatin1String("importer");
    removeCatalogue(plain);
    runBaseline(plain, folder); // warms the page cache
    const int rounds = std::max(1, parser.value("rounds").toInt());
    QVector<double> oursMs, plainMs;
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
        out << QStringLiteral("round %1: importer %2 ms, baseline %3 ms")
                   .arg(i + 1)
                   .arg(last.ms, 0, 'f', 0)
                   .arg(lastPlain.ms, 0, 'f', 0)
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
    return 0;
}
