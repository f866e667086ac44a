// Deleting marked files in the files view: the command as the main window runs it (each file's
// entries and row through the Jet layer, then the clean-up of empty containers), beside the
// same deletes written by hand against the SQLite C API, in the same run on equal copies of one
// catalogue. The question box is answered by a script.
//
//   vellumdock-bench-filecommands [--files N] [--entries M] [--marked K] [--dir DIR]

#include "app/Globals.h"
#include "browser/FileCommands.h"
#include "catalogue/Catalogue.h"
#include "import/clsFileManager.h"
#include "platform/ScriptedDialogService.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <sqlite3.h>

namespace {

QTextStream out(stdout);

// `files` disk images with `entries` entries spread evenly over them, written straight through
// SQLite in one transaction.
void fill(const QString& path, int files, int entries)
{
    vd::catalogue::createCatalogueFile(path);
    sqlite3* db = nullptr;
    sqlite3_open(path.toUtf8().constData(), &db);
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* cat = nullptr;
    sqlite3_prepare_v2(db,
                       "INSERT INTO Category (ID,iType,tCategory,tFile,tPath,iFileType) "
                       "VALUES (?1,1,'Game.d64','Game.d64','/c64/Game.d64',1)",
                       -1, &cat, nullptr);
    for (int i = 1; i <= files; ++i) {
        sqlite3_bind_int(cat, 1, i);
        sqlite3_step(cat);
        sqlite3_reset(cat);
    }
    sqlite3_stmt* ent = nullptr;
    sqlite3_prepare_v2(db,
                       "INSERT INTO C64Files (ID,tProgram,lIndex,Category_File) "
                       "VALUES (?1,'PROGRAM',?2,?3)",
                       -1, &ent, nullptr);
    for (int i = 1; i <= entries; ++i) {
        sqlite3_bind_int(ent, 1, i);
        sqlite3_bind_int(ent, 2, i % 144);
        sqlite3_bind_int(ent, 3, 1 + i % files);
        sqlite3_step(ent);
        sqlite3_reset(ent);
    }
    sqlite3_finalize(cat);
    sqlite3_finalize(ent);
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(db);
}

// The baseline: the same rows deleted by prepared statements in one transaction, and the
// clean-up as SQLite writes it.
double plainDelete(const QString& path, const QList<qint64>& ids)
{
    QElapsedTimer t;
    t.start();
    sqlite3* db = nullptr;
    sqlite3_open(path.toUtf8().constData(), &db);
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* entries = nullptr;
    sqlite3_stmt* row = nullptr;
    sqlite3_prepare_v2(db, "DELETE FROM C64Files WHERE Category_File=?1", -1, &entries, nullptr);
    sqlite3_prepare_v2(db, "DELETE FROM Category WHERE ID=?1", -1, &row, nullptr);
    for (qint64 id : ids) {
        for (sqlite3_stmt* s : {entries, row}) {
            sqlite3_bind_int64(s, 1, id);
            sqlite3_step(s);
            sqlite3_reset(s);
        }
    }
    sqlite3_exec(db,
                 "DELETE FROM Category WHERE iType=1 AND NOT EXISTS (SELECT 1 FROM C64Files "
                 "WHERE C64Files.Category_File=Category.ID)",
                 nullptr, nullptr, nullptr);
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_finalize(entries);
    sqlite3_finalize(row);
    sqlite3_close(db);
    return double(t.nsecsElapsed()) / 1e6;
}

double commandDelete(const QString& path, const QList<qint64>& ids)
{
    vd::platform::ScriptedDialogService dialogs;
    vd::platform::setDialogService(&dialogs);
    QString opened = path;
    vd::catalogue::OpenCatalogueFile(opened);
    vd::import::clsFileManager fm;
    fm.InitCount();
    dialogs.answer(vd::platform::vbYes);
    QString status;
    QElapsedTimer t;
    t.start();
    vd::browser::DeleteMainFiles(fm, ids, status);
    const double ms = double(t.nsecsElapsed()) / 1e6;
    vd::catalogue::CloseCatalogue();
    vd::platform::setDialogService(nullptr);
    out << "  command: " << status << Qt::endl;
    return ms;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"files", "Files in the catalogue.", "N", "20000"},
                       {"entries", "Entries in the catalogue.", "M", "150000"},
                       {"marked", "Files marked for deletion.", "K", "10000"},
                       {"dir", "Folder for the catalogues.", "DIR"}});
    parser.process(app);
    const int files = parser.value("files").toInt();
    const int entries = parser.value("entries").toInt();
    const int marked = std::min(files, parser.value("marked").toInt());
    QTemporaryDir temp;
    const QString dir = parser.isSet("dir") ? parser.value("dir") : temp.path();
    vd::app::setProgramFolder(dir);

    const QString source = dir + QStringLiteral("/source.vdb");
    QFile::remove(source);
    fill(source, files, entries);
    QList<qint64> ids;
    for (int i = 0; i < marked; ++i)
        ids << qint64(1 + i * (files / std::max(1, marked)));

    out << "Deleting " << marked << " of " << files << " files (" << entries << " entries)"
        << Qt::endl;
    const QString a = dir + QStringLiteral("/plain.vdb"), b = dir + QStringLiteral("/command.vdb");
    QFile::remove(a);
    QFile::remove(b);
    QFile::copy(source, a);
    QFile::copy(source, b);
    const double plain = plainDelete(a, ids);
    const double command = commandDelete(b, ids);
    out << QStringLiteral("  plain SQLite: %1 ms\n  mnuDel (view 2): %2 ms (%3x)")
               .arg(plain, 0, 'f', 1)
               .arg(command, 0, 'f', 1)
               .arg(command / std::max(plain, 0.001), 0, 'f', 1)
        << Qt::endl;
    return 0;
}
