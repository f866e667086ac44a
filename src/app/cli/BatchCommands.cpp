#include "app/cli/BatchCommands.h"

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "catalogue/Catalogue.h"
#include "import/BatchProcess.h"
#include "import/clsFileManager.h"
#include "import/ImportSettings.h"
#include "platform/Files.h"

#include <QFileInfo>
#include <QTextStream>

namespace vd::cli {

namespace {

// Prints each row of the result list as it comes, and each row that changes afterwards
// (a file found again); a row whose mark alone changed (deleted) is not printed again.
class PrintedReport : public import::BatchReport
{
public:
    explicit PrintedReport(QTextStream& out) : m_out(out) {}
    void rowAdded(qsizetype, const import::ResultRow& row) override { m_out << row.Name << '\n'; }
    void rowChanged(qsizetype, const import::ResultRow& row) override
    {
        if (row.Filetyp != import::kTypeDeleted)
            m_out << row.Name << '\n';
    }

private:
    QTextStream& m_out;
};

struct CatalogueCloser
{
    ~CatalogueCloser() { catalogue::CloseCatalogue(); }
};

void printLines(const QString& text, Output& io)
{
    if (text.isEmpty())
        return;
    for (const QString& line : text.split(QLatin1Char('\n')))
        io.out << line << '\n';
}

int usage(Output& io, const QString& problem)
{
    io.err << problem << "\n\n" << usageText();
    return kExitUsage;
}

// A batch over an open catalogue: the importer with the settings' options and its counters.
struct Batch
{
    explicit Batch(Output& io) : report(io.out), process(fm, report)
    {
        app::loadSettings();
        fm.options = import::importOptionsInForce();
        if (app::gDB) // the compaction works on a closed catalogue
            fm.InitCount();
    }
    ~Batch()
    {
        // The extraction folders of this run are of no use to a later one.
        platform::DeleteFiles(fm.extractionFolders());
    }
    int finish(Output& io)
    {
        printLines(process.sResultText, io);
        return process.failure.isEmpty() ? kExitOk : kExitFailure;
    }

    import::clsFileManager fm;
    PrintedReport report;
    import::BatchProcess process;
};

// "ID..." of the selection commands: file ids (Category.ID); "-N" is taken as file N too, as
// the other commands write a file's id.
bool parseIds(const QStringList& texts, QList<qint64>& ids)
{
    for (const QString& text : texts) {
        bool ok = false;
        const qint64 id = text.toLongLong(&ok);
        if (!ok || id == 0)
            return false;
        ids << (id < 0 ? -id : id);
    }
    return true;
}

// Splits "--to DIR" out of the arguments; false on a "--to" without a folder or another option.
bool takeTarget(QStringList& arguments, QString& target, QString& problem)
{
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1String("--to")) {
            if (i + 1 >= arguments.size()) {
                problem = QStringLiteral("--to needs a folder.");
                return false;
            }
            target = arguments[i + 1];
            arguments.remove(i, 2);
            --i;
        } else if (arguments[i].startsWith(QLatin1String("--"))) {
            problem = QStringLiteral("Unknown option: %1").arg(arguments[i]);
            return false;
        }
    }
    return true;
}

struct CheckArguments
{
    QString catalogue;
    bool deleteMissing = false;
    QString newPath;
    QString oldPath;
    QString problem;
};

CheckArguments parseCheckArguments(const QStringList& arguments)
{
    CheckArguments a;
    QStringList positional;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& arg = arguments[i];
        const bool takesValue =
            arg == QLatin1String("--new-path") || arg == QLatin1String("--old-path");
        if (takesValue && i + 1 >= arguments.size()) {
            a.problem = QStringLiteral("%1 needs a path.").arg(arg);
            return a;
        }
        if (arg == QLatin1String("--delete-missing"))
            a.deleteMissing = true;
        else if (arg == QLatin1String("--new-path"))
            a.newPath = arguments[++i];
        else if (arg == QLatin1String("--old-path"))
            a.oldPath = arguments[++i];
        else if (arg.startsWith(QLatin1String("--")))
            a.problem = QStringLiteral("Unknown option for check: %1").arg(arg);
        else
            positional << arg;
    }
    if (a.problem.isEmpty() && positional.size() != 1)
        a.problem = QStringLiteral("check needs one catalogue.");
    else if (a.problem.isEmpty() && a.deleteMissing && !a.newPath.isEmpty())
        a.problem = QStringLiteral("--delete-missing and --new-path exclude each other.");
    else if (a.problem.isEmpty() && !a.oldPath.isEmpty() && a.newPath.isEmpty())
        a.problem = QStringLiteral("--old-path needs --new-path.");
    if (a.problem.isEmpty())
        a.catalogue = positional[0];
    return a;
}

} // namespace

int checkCatalogueCommand(const QStringList& arguments, Output& io)
{
    const CheckArguments args = parseCheckArguments(arguments);
    if (!args.problem.isEmpty())
        return usage(io, args.problem);
    if (!args.newPath.isEmpty() && !platform::FolderExists(args.newPath)) {
        io.err << app::Translate(QStringLiteral("Ungültiger Dateipfad: ")) << args.newPath << '\n';
        return kExitFailure;
    }
    QString path = args.catalogue;
    if (!catalogue::OpenCatalogueFile(path))
        return kExitFailure;
    CatalogueCloser closer;
    Batch batch(io);
    batch.process.iMode = import::kModeCheck;
    batch.process.Run();
    const int code = batch.finish(io);
    if (code != kExitOk || batch.process.lMissing == 0)
        return code;
    QString status;
    if (args.deleteMissing)
        status = batch.process.DeleteMissing();
    else if (!args.newPath.isEmpty())
        status = batch.process.FindMissingFiles(QFileInfo(args.newPath).absoluteFilePath(),
                                                args.oldPath);
    if (!status.isEmpty())
        printLines(status, io);
    return batch.process.failure.isEmpty() ? kExitOk : kExitFailure;
}

int compactCommand(const QStringList& arguments, Output& io)
{
    const QFileInfo file(arguments[0]);
    if (!file.isFile()) {
        io.err << app::Translate(QStringLiteral("Datei nicht gefunden: ")) << arguments[0] << '\n';
        return kExitFailure;
    }
    Batch batch(io);
    // The compaction works on the closed file at gDatabasePath.
    app::gDatabasePath = file.absoluteFilePath();
    batch.process.iMode = import::kModeCompact;
    batch.process.Run();
    return batch.finish(io);
}

int md5Command(const QStringList& arguments, Output& io)
{
    QList<qint64> ids;
    if (!parseIds(arguments.mid(1), ids))
        return usage(io, QStringLiteral("md5 needs the ids of catalogued files."));
    QString path = arguments[0];
    if (!catalogue::OpenCatalogueFile(path))
        return kExitFailure;
    CatalogueCloser closer;
    Batch batch(io);
    batch.process.iMode = import::kModeMd5;
    batch.process.selectedIds = ids;
    batch.process.Run();
    return batch.finish(io);
}

int exportDirsCommand(const QStringList& arguments, Output& io)
{
    QStringList rest = arguments;
    QString target;
    QString problem;
    if (!takeTarget(rest, target, problem))
        return usage(io, problem);
    QList<qint64> ids;
    if (rest.size() < 2 || !parseIds(rest.mid(1), ids))
        return usage(io, QStringLiteral("export-dirs needs a catalogue and the ids of files."));
    QString path = rest[0];
    if (!catalogue::OpenCatalogueFile(path))
        return kExitFailure;
    CatalogueCloser closer;
    Batch batch(io);
    batch.process.iMode = import::kModeExportDirs;
    batch.process.sParam = target.isEmpty() ? QString() : QFileInfo(target).absoluteFilePath();
    batch.process.selectedIds = ids;
    batch.process.Run();
    return batch.finish(io);
}

} // namespace vd::cli
