#include "app/cli/ImportCommands.h"

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "catalogue/Catalogue.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "formats/Listing.h"
#include "gamebase/GameBase.h"
#include "import/clsFileManager.h"
#include "import/ImportBatch.h"
#include "import/ImportSettings.h"
#include "platform/Files.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTextStream>

#include <csignal>
#include <unistd.h>

namespace vd::cli {

namespace {

volatile std::sig_atomic_t gInterrupted = 0;

extern "C" void onInterrupt(int)
{
    gInterrupted = 1;
}

// Ctrl+C asks the batch to stop at its next file instead of ending the program half-way.
class InterruptGuard
{
public:
    InterruptGuard()
    {
        gInterrupted = 0;
        struct sigaction action = {};
        action.sa_handler = onInterrupt;
        sigemptyset(&action.sa_mask);
        sigaction(SIGINT, &action, &m_previous);
    }
    ~InterruptGuard() { sigaction(SIGINT, &m_previous, nullptr); }
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    struct sigaction m_previous = {};
};

// The status text on one line of stderr, rewritten in place, when stderr is a terminal.
class TerminalProgress : public platform::Progress
{
public:
    explicit TerminalProgress(QTextStream& err) : m_err(err), m_live(isatty(STDERR_FILENO) != 0)
    {
        m_shown.start();
    }
    ~TerminalProgress() override { clear(); }
    TerminalProgress(const TerminalProgress&) = delete;
    TerminalProgress& operator=(const TerminalProgress&) = delete;

    void setStatus(const QString& text) override
    {
        constexpr qint64 kIntervalMs = 100;
        constexpr int kWidth = 78;
        if (!m_live || (m_used && m_shown.elapsed() < kIntervalMs))
            return;
        const QString count = QString::number(m_added) + QStringLiteral("  ");
        const qsizetype room = kWidth - count.size();
        const QString line =
            text.size() > room ? QStringLiteral("...") + text.right(room - 3) : text;
        m_err << "\r\x1b[K" << count << line;
        m_err.flush();
        m_used = true;
        m_shown.restart();
    }
    bool cancelled() const override { return gInterrupted != 0; }
    // A file was added: the count in front of the status.
    void added() { ++m_added; }
    void clear()
    {
        if (m_live && m_used) {
            m_err << "\r\x1b[K";
            m_err.flush();
            m_used = false;
        }
    }

private:
    QTextStream& m_err;
    bool m_live;
    bool m_used = false;
    qint64 m_added = 0;
    QElapsedTimer m_shown;
};

struct CatalogueCloser
{
    ~CatalogueCloser() { catalogue::CloseCatalogue(); }
};

// Puts an empty catalogue in memory in place of gDB for as long as it lives.
class ScratchCatalogue
{
public:
    ScratchCatalogue() : m_saved(std::move(app::gDB))
    {
        app::gDB = db::Database::openMemory();
        for (const db::TableDef& table : catalogue::catalogueTables())
            app::gDB->createTable(table);
    }
    ~ScratchCatalogue() { app::gDB = std::move(m_saved); }
    ScratchCatalogue(const ScratchCatalogue&) = delete;
    ScratchCatalogue& operator=(const ScratchCatalogue&) = delete;

private:
    std::unique_ptr<db::Database> m_saved;
};

struct ImportArguments
{
    QString catalogue;
    QString path;
    bool refresh = false;
    bool md5 = false;
    QString problem; // a usage problem, "" when none
};

ImportArguments parseImportArguments(const QStringList& arguments)
{
    ImportArguments a;
    QStringList positional;
    for (const QString& arg : arguments) {
        if (arg == QLatin1String("--refresh"))
            a.refresh = true;
        else if (arg == QLatin1String("--md5"))
            a.md5 = true;
        else if (arg.startsWith(QLatin1String("--")))
            a.problem = QStringLiteral("Unknown option for import: %1").arg(arg);
        else
            positional << arg;
    }
    if (a.problem.isEmpty() && positional.size() != 2)
        a.problem = QStringLiteral("import needs a catalogue and a file or folder.");
    if (a.problem.isEmpty()) {
        a.catalogue = positional[0];
        a.path = positional[1];
    }
    return a;
}

// "0 "DISKNAME        "" for a disk, then "size "name" type" for each entry.
void printDirectory(qint64 id, Output& io)
{
    const auto rs = app::gDB->openRecordset(
        QStringLiteral("Select F.ID,F.tProgram,F.tExtension,F.lSize,C.tCategory,C.tImage,"
                       "C.iFileType From C64Files as F Left Join Category as C on "
                       "F.Category_File=C.ID where F.Category_File=") +
            QString::number(id) + QStringLiteral(" order by lIndex"),
        db::RecordsetType::Snapshot);
    if (rs->eof())
        return;
    const int kind = rs->value(6).toInt();
    if (formats::isDiskKind(kind))
        io.out << "0 " << formats::diskHeaderName(catalogue::ValueText(rs->value(5))) << '\n';
    for (; !rs->eof(); rs->moveNext()) {
        const qint64 size = rs->value(3).toLongLong();
        const QString sizeText =
            formats::isDiskKind(kind) ? QString::number(size) : formats::FormatSize(size, kind);
        io.out << sizeText << " \"" << catalogue::ValueText(rs->value(1)) << '"';
        const QString extension = catalogue::ValueText(rs->value(2));
        if (!extension.isEmpty())
            io.out << ' ' << extension;
        io.out << '\n';
    }
    rs->close();
}

} // namespace

import::ImportOptions importOptionsFromSettings(){app::loadSettings();
// The GameBase that archives are matched with (ConnectFilesToGB) is the one of the settings.
gamebase::loadGameBaseSettings();
return import::importOptionsInForce();
} // namespace vd::cli

int importCommand(const QStringList& arguments, Output& io)
{
    const ImportArguments args = parseImportArguments(arguments);
    if (!args.problem.isEmpty()) {
        io.err << args.problem << "\n\n" << usageText();
        return kExitUsage;
    }
    const QFileInfo target(args.path);
    if (!target.exists()) {
        io.err << app::Translate(QStringLiteral("Datei nicht gefunden: ")) << args.path << '\n';
        return kExitFailure;
    }
    import::clsFileManager fm;
    fm.options = importOptionsFromSettings();
    fm.options.RefreshC64Files = fm.options.RefreshC64Files || args.refresh;
    fm.options.CreateMd5Hash = fm.options.CreateMd5Hash || args.md5;

    QString path = args.catalogue;
    if (!catalogue::OpenCatalogueFile(path))
        return kExitFailure;
    CatalogueCloser closer;
    fm.InitCount();

    InterruptGuard interrupt;
    TerminalProgress progress(io.err);
    import::ImportBatch batch(fm, progress);
    // The status line is taken away before a result line only when both share the terminal.
    const bool sharedTerminal = isatty(STDOUT_FILENO) != 0;
    QObject::connect(&batch, &import::ImportBatch::resultLine, &batch,
                     [&](const QString& text, int type) {
                         if (type != import::kMessageResult)
                             progress.added();
                         if (sharedTerminal)
                             progress.clear();
                         io.out << text << '\n';
                     });
    const int mode = target.isDir() ? import::kModeAddFolder : import::kModeAddFile;
    const import::BatchResult result = batch.run(mode, args.path);
    progress.clear();
    // The extraction folders of this run are of no use to a later one.
    platform::DeleteFiles(fm.extractionFolders());
    for (const QString& line : result.resultLines)
        io.out << line << '\n';
    if (!result.failure.isEmpty()) {
        io.err << result.failure << '\n';
        return kExitFailure;
    }
    // Stopped by Ctrl+C: what was added stays, but the folder was not read to its end.
    return result.cancelled ? kExitFailure : kExitOk;
}

namespace {

// The Category row behind an id: minus a Category id, or a C64Files id; 0 when there is none.
qint64 categoryOf(qint64 id)
{
    if (id < 0)
        return -id;
    const QString file =
        catalogue::GetDbValue(QStringLiteral("Category_File"), QStringLiteral("C64Files"),
                              QStringLiteral("ID=") + QString::number(id));
    return file.toLongLong();
}

} // namespace

int extractCommand(const QStringList& arguments, Output& io)
{
    bool isNumber = false;
    const qint64 id = arguments[1].toLongLong(&isNumber);
    if (!isNumber || id == 0) {
        io.err << "extract needs an id: a C64Files id, or minus a Category id.\n\n" << usageText();
        return kExitUsage;
    }
    QString path = arguments[0];
    if (!catalogue::OpenCatalogueFile(path))
        return kExitFailure;
    CatalogueCloser closer;
    const qint64 category = categoryOf(id);
    const auto rs = app::gDB->openRecordset(
        QStringLiteral("Select tFile,tPath,tUnpackPath From Category where iType=1 and ID=") +
            QString::number(category),
        db::RecordsetType::Snapshot);
    if (category <= 0 || rs->eof()) {
        io.err << app::Translate(QStringLiteral("Kein Eintrag mit der ID: ")) << id << '\n';
        return kExitFailure;
    }
    const QString name = catalogue::ValueText(rs->value(0));
    const QString archive = catalogue::ValueText(rs->value(1));
    const QString member = catalogue::ValueText(rs->value(2));
    rs->close();

    import::clsFileManager fm;
    fm.options = importOptionsFromSettings();
    QObject::connect(&fm, &import::clsFileManager::ShowMessage, &fm,
                     [&](const QString& text, int type) {
                         if (type == import::kMessageResult)
                             io.err << text << '\n';
                     });
    const QString onDisk = fm.ExtractFileFromArchiv(name, member, archive);
    if (onDisk.isEmpty()) {
        io.err << app::Translate(QStringLiteral("Datei nicht gefunden: "))
               << (member.isEmpty() ? archive : archive + QLatin1Char('\\') + member) << '\n';
        return kExitFailure;
    }
    io.out << onDisk << '\n';
    return kExitOk;
}

int dirCommand(const QStringList& arguments, Output& io)
{
    const QFileInfo file(arguments[0]);
    if (!file.isFile()) {
        io.err << app::Translate(QStringLiteral("Datei nicht gefunden: ")) << arguments[0] << '\n';
        return kExitFailure;
    }
    ScratchCatalogue scratch;
    import::clsFileManager fm;
    bool reported = false;
    QObject::connect(&fm, &import::clsFileManager::ShowMessage, &fm,
                     [&](const QString& text, int type) {
                         if (type != import::kMessageResult)
                             return;
                         io.err << text << '\n';
                         reported = true;
                     });
    const qint64 id =
        fm.LoadFile(file.fileName(), file.absoluteFilePath(), import::kFlagNamedFile, {}, false, 0);
    if (id <= 0) {
        if (reported)
            return kExitFailure;
        io.err << app::Translate(QStringLiteral("Kein Verzeichnis in der Datei: ")) << arguments[0]
               << '\n';
        return kExitFailure;
    }
    printDirectory(id, io);
    return kExitOk;
}

} // namespace vd::cli
