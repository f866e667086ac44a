#include "app/cli/GameBaseCommands.h"

#include "app/cli/ImportCommands.h"
#include "app/Globals.h"
#include "app/Settings.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseCache.h"
#include "gamebase/GameBaseConnect.h"
#include "gamebase/GameBaseSettings.h"
#include "import/clsFileManager.h"
#include "platform/Files.h"
#include "platform/Progress.h"

#include <QFileInfo>
#include <QTextStream>

namespace vd::cli {

namespace {

int usage(Output& io, const QString& problem)
{
    io.err << problem << "\n\n" << usageText();
    return kExitUsage;
}

// The rows of every table of an SQLite GameBase (or cache), "table<TAB>rows", in the order
// the tables were made.
void printTableRows(const QString& file, Output& io)
{
    // Opened for writing, so that closing it leaves no journal files behind.
    auto db = db::Database::open(file);
    for (const QString& table : db->tableNames()) {
        const auto rs =
            db->openRecordset(QStringLiteral("Select Count(*) From [") + table + QLatin1Char(']'),
                              db::RecordsetType::Snapshot);
        io.out << table << '\t' << catalogue::ValueText(rs->value(0)) << '\n';
    }
}

int checkCommand(const QString& file, Output& io)
{
    if (!gamebase::CheckGameBaseFile(file))
        return kExitFailure; // the reason went out through the dialog service
    const QString data = gamebase::gameBaseDataFile(file, platform::noProgress(), nullptr);
    auto db = db::Database::open(data);
    const auto version = db->openRecordset(
        QStringLiteral("Select Max(MajorVersion) as Major,Max(MinorVersion) as Minor From Config"),
        db::RecordsetType::Snapshot);
    io.out << "Version: " << catalogue::ValueText(version->value(0)) << '.'
           << catalogue::ValueText(version->value(1)) << '\n';
    if (db->tableExists(QStringLiteral("Games"))) {
        const auto games = db->openRecordset(QStringLiteral("Select Count(*) From Games"),
                                             db::RecordsetType::Snapshot);
        io.out << "Games: " << catalogue::ValueText(games->value(0)) << '\n';
    }
    return kExitOk;
}

int cacheCommand(const QStringList& arguments, Output& io)
{
    const QString& file = arguments[0];
    bool rebuild = false;
    for (const QString& option : arguments.mid(1)) {
        if (option != QLatin1String("--rebuild"))
            return usage(io, QStringLiteral("Unknown option for gamebase cache: %1").arg(option));
        rebuild = true;
    }
    if (!platform::FileExistsMsg(file))
        return kExitFailure;
    QString data = gamebase::gameBaseDataFile(file, platform::noProgress(), nullptr);
    if (data != file) {
        // An Access file: its cache, built now when it is missing, out of date or not wanted.
        const gamebase::CacheResult cache =
            gamebase::ensureCache(file, app::gCachePath, platform::noProgress(), rebuild);
        if (!cache.ok) {
            io.err << cache.error << '\n';
            return kExitFailure;
        }
        data = cache.path;
    }
    io.out << data << '\n';
    printTableRows(data, io);
    return kExitOk;
}

struct Closer
{
    ~Closer()
    {
        gamebase::CloseGameBase();
        catalogue::CloseCatalogue();
    }
};

int connectCommand(const QStringList& arguments, Output& io)
{
    QString catalogueFile;
    QString gameBase;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1String("--gamebase") && i + 1 < arguments.size())
            gameBase = arguments[++i];
        else if (arguments[i].startsWith(QLatin1String("--")))
            return usage(
                io, QStringLiteral("Unknown option for gamebase connect: %1").arg(arguments[i]));
        else if (catalogueFile.isEmpty())
            catalogueFile = arguments[i];
        else
            return usage(io, QStringLiteral("gamebase connect needs one catalogue."));
    }
    if (catalogueFile.isEmpty())
        return usage(io, QStringLiteral("gamebase connect needs a catalogue."));

    import::clsFileManager fm;
    fm.options = importOptionsFromSettings(); // MAIN and GAMEBASE
    if (!gameBase.isEmpty())
        gamebase::gGameBaseDB = gameBase;
    if (!catalogue::OpenCatalogueFile(catalogueFile))
        return kExitFailure;
    Closer closer;
    // As the menu does: nothing happens when no GameBase can be opened.
    if (!gamebase::OpenGameBase(true))
        return kExitFailure;
    fm.InitCount();
    QObject::connect(&fm, &import::clsFileManager::ShowMessage, &fm,
                     [&](const QString& text, int type) {
                         if (type != import::kMessageStatus)
                             io.out << text << '\n';
                     });
    const gamebase::ConnectResult result = gamebase::ConnectToGameBase(fm, platform::noProgress());
    // The extraction folders of this run are of no use to a later one.
    platform::DeleteFiles(fm.extractionFolders());
    for (const QString& line : result.resultLines)
        io.out << line << '\n';
    if (!result.failure.isEmpty()) {
        io.err << result.failure << '\n';
        return kExitFailure;
    }
    return result.cancelled ? kExitFailure : kExitOk;
}

} // namespace

int gamebaseCommand(const QStringList& arguments, Output& io)
{
    const QString sub = arguments.value(0);
    const QStringList rest = arguments.mid(1);
    if (sub == QLatin1String("check") && rest.size() == 1)
        return checkCommand(rest[0], io);
    if (sub == QLatin1String("cache") && !rest.isEmpty())
        return cacheCommand(rest, io);
    if (sub == QLatin1String("connect") && !rest.isEmpty())
        return connectCommand(rest, io);
    return usage(io, QStringLiteral("gamebase needs check FILE, cache FILE [--rebuild] or "
                                    "connect CATALOGUE [--gamebase FILE]."));
}

} // namespace vd::cli
