// What importing archives costs: 2,000 ZIP files, each holding one D64 of the synthetic
// collection and one text, imported through the batch code (unpacking into Temp, the scan of
// the folder, the rows) beside a baseline that only unpacks the same archives with libarchive
// into folders, in the same run, rounds alternating. A first, unmeasured pass warms the page
// cache.
//
//   vellumdock-bench-archives [--dir DIR] [--zips N] [--rounds R]

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

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <vector>

namespace {

QTextStream out(stdout);

bool addMember(archive* a, const QString& name, const QByteArray& data)
{
    archive_entry* e = archive_entry_new();
    archive_entry_set_pathname(e, name.toUtf8().constData());
    archive_entry_set_filetype(e, AE_IFREG);
    archive_entry_set_perm(e, 0644);
    archive_entry_set_size(e, data.size());
    const bool ok = archive_write_header(a, e) == ARCHIVE_OK &&
                    archive_write_data(a, data.constData(), size_t(data.size())) == data.size();
    archive_entry_free(e);
    return ok;
}

// One ZIP (deflate) per D64 of the collection, with a text beside the image.
int writeZips(const QString& collection, const QString& zips)
{
    QDir().mkpath(zips);
    int count = 0;
    QDirIterator it(collection, {"*.d64"}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString d64 = it.next();
        QFile file(d64);
        if (!file.open(QIODevice::ReadOnly))
            return -1;
        const QString base = QFileInfo(d64).completeBaseName();
        archive* a = archive_write_new();
        archive_write_set_format_zip(a);
        const QByteArray zip = QFile::encodeName(zips + "/" + base + ".zip");
        bool ok = archive_write_open_filename(a, zip.constData()) == ARCHIVE_OK &&
                  addMember(a, base + ".d64", file.readAll()) &&
                  addMember(a, "readme.txt", "About " + base.toLatin1() + "\r\n");
        ok = archive_write_close(a) == ARCHIVE_OK && ok;
        archive_write_free(a);
        if (!ok)
            return -1;
        ++count;
    }
    return count;
}

// The baseline: every archive unpacked whole into a folder of its own, nothing else.
double baselineRound(const QStringList& zips, const QString& target)
{
    QElapsedTimer clock;
    clock.start();
    QByteArray buffer(64 * 1024, Qt::Uninitialized);
    int n = 0;
    for (const QString& zip : zips) {
        const QString folder = target + "/B" + QString::number(++n);
        QDir().mkpath(folder);
        archive* a = archive_read_new();
        archive_read_support_format_zip(a);
        if (archive_read_open_filename(a, QFile::encodeName(zip).constData(), 10240) ==
            ARCHIVE_OK) {
            archive_entry* e = nullptr;
            while (archive_read_next_header(a, &e) == ARCHIVE_OK) {
                QFile file(folder + "/" + QString::fromUtf8(archive_entry_pathname(e)));
                if (!file.open(QIODevice::WriteOnly))
                    break;
                la_ssize_t got;
                while ((got = archive_read_data(a, buffer.data(), size_t(buffer.size()))) > 0)
                    file.write(buffer.constData(), got);
            }
        }
        archive_read_free(a);
    }
    return double(clock.nsecsElapsed()) / 1e6;
}

struct ImportRound
{
    double ms = 0;
    qint64 files = 0;
};

ImportRound importRound(const QString& zips, const QString& catalogue)
{
    QFile::remove(catalogue);
    vd::catalogue::createCatalogueFile(catalogue);
    QString path = catalogue;
    if (!vd::catalogue::OpenCatalogueFile(path))
        return {};
    vd::import::clsFileManager fm;
    fm.options.SkipZipSize = QStringLiteral("0");
    fm.InitCount();
    vd::import::ImportBatch batch(fm);
    QElapsedTimer clock;
    clock.start();
    batch.run(vd::import::kModeAddFolder, zips);
    ImportRound r;
    r.ms = double(clock.nsecsElapsed()) / 1e6;
    fm.CountFiles();
    r.files = fm.lCategoryCount;
    vd::catalogue::CloseCatalogue();
    vd::platform::DeleteFiles(vd::app::gTempPath + "/*.*");
    return r;
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({"dir", "Keep the archives and catalogues in DIR.", "DIR"});
    parser.addOption({"zips", "Number of ZIP files (default 2000).", "N", "2000"});
    parser.addOption({"rounds", "Measured rounds of each (default 3).", "R", "3"});
    parser.process(app);

    QTemporaryDir temp;
    const QString dir = parser.isSet("dir") ? parser.value("dir") : temp.path();
    vd::app::setProgramFolder(dir + "/home");
    QDir().mkpath(vd::app::gTempPath);
    const QString zips = dir + "/zips";
    QDir(zips).removeRecursively();

    vd::bench::CollectionRecipe recipe;
    recipe.d64 = parser.value("zips").toInt();
    recipe.t64 = recipe.prg = recipe.tap = recipe.crt = 0;
    QString error;
    if (!vd::bench::generateCollection(dir + "/collection", recipe, nullptr, &error)) {
        out << "The collection could not be written: " << error << Qt::endl;
        return 1;
    }
    const int count = writeZips(dir + "/collection", zips);
    if (count <= 0) {
        out << "The archives could not be written." << Qt::endl;
        return 1;
    }
    QStringList zipList;
    for (const QString& name : QDir(zips).entryList({"*.zip"}, QDir::Files, QDir::Name))
        zipList << zips + "/" + name;
    // Images of the same name in two letter folders share one archive.
    const qsizetype archives = zipList.size();

    const QString baselineFolder = vd::app::gTempPath + "/baseline";
    const QString catalogue = dir + "/archives.vdb";
    // Warm-up.
    baselineRound(zipList, baselineFolder);
    vd::platform::DeleteFiles(baselineFolder);
    importRound(zips, catalogue);

    std::vector<double> importMs, baselineMs;
    qint64 files = 0;
    const int rounds = std::max(1, parser.value("rounds").toInt());
    for (int i = 0; i < rounds; ++i) {
        const ImportRound r = importRound(zips, catalogue);
        importMs.push_back(r.ms);
        files = r.files;
        baselineMs.push_back(baselineRound(zipList, baselineFolder));
        vd::platform::DeleteFiles(baselineFolder);
    }
    const double imp = median(importMs), base = median(baselineMs);
    out << "archives: " << archives << ", Category rows per import: " << files << Qt::endl;
    out << QString("import   median %1 ms  %2 archives/s")
               .arg(imp, 0, 'f', 0)
               .arg(archives / imp * 1000, 0, 'f', 0)
        << Qt::endl;
    out << QString("baseline median %1 ms  %2 archives/s")
               .arg(base, 0, 'f', 0)
               .arg(archives / base * 1000, 0, 'f', 0)
        << Qt::endl;
    out << QString("import / baseline: %1x").arg(imp / base, 0, 'f', 2) << Qt::endl;
    return 0;
}
