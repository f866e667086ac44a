#include "gamebase/GameBase.h"

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/DbError.h"
#include "catalogue/Recordset.h"
#include "gamebase/GameBaseCache.h"
#include "platform/DialogService.h"
#include "platform/Files.h"
#include "platform/Progress.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace vd::gamebase {

QString gGameBaseDB;
QString gScreenshots;
bool gArchivOnlyGame = true;
bool gAdultContent = false;
std::unique_ptr<db::Database> gGB;

namespace {

const QByteArray kSqliteMagic("SQLite format 3\0", 16);
constexpr int kMinMajor = 2;
constexpr int kMinMinor = 5;

bool isSqliteFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) && f.read(kSqliteMagic.size()) == kSqliteMagic;
}

void wrongGameBase(const QString& path)
{
    platform::dialogs().msgBox(app::Translate(QStringLiteral("Wrong GameBase64-Database: ")) + path,
                               platform::vbExclamation);
}

// Max(MajorVersion) and Max(MinorVersion) of Config, each at least its minimum.
bool versionAccepted(db::Database& gb)
{
    auto rs = gb.openRecordset(
        QStringLiteral("Select Max(MajorVersion) as Major,Max(MinorVersion) as Minor From Config"),
        db::RecordsetType::Snapshot);
    if (rs->eof())
        return false;
    const double major = app::Val(rs->value(QStringLiteral("Major")).toString());
    const double minor = app::Val(rs->value(QStringLiteral("Minor")).toString());
    return major >= kMinMajor && minor >= kMinMinor;
}

} // namespace

QString gameBaseDataFile(const QString& path, platform::Progress& progress, QString* error)
{
    if (isSqliteFile(path))
        return path;
    const CacheResult cache = ensureCache(path, app::gCachePath, progress);
    if (error)
        *error = cache.error;
    return cache.ok ? cache.path : QString();
}

bool CheckGameBaseFile(const QString& path)
{
    return CheckGameBaseFile(path, platform::noProgress());
}

bool CheckGameBaseFile(const QString& path, platform::Progress& progress)
{
    if (!platform::FileExistsMsg(path))
        return false;
    bool accepted = false;
    const QString file = gameBaseDataFile(path, progress, nullptr);
    if (!file.isEmpty()) {
        try {
            auto gb = db::Database::open(file, true);
            accepted = versionAccepted(*gb);
        } catch (const db::DbError&) {
            accepted = false; // no Config table: the same words as a wrong version
        }
    }
    if (!accepted)
        wrongGameBase(path);
    return accepted;
}

bool OpenGameBase(bool force)
{
    return OpenGameBase(force, platform::noProgress());
}

bool OpenGameBase(bool force, platform::Progress& progress)
{
    if (gGB)
        return true;
    QString path = gGameBaseDB;
    if ((path.isEmpty() || path == kGameBaseHint) && !force)
        return false;
    if (!CheckGameBaseFile(path, progress)) {
        path = SelectGameBaseFile(path);
        if (path.isEmpty() || !CheckGameBaseFile(path, progress))
            return false;
        gGameBaseDB = path;
        gScreenshots = GetGameBasePictures(path);
    }
    try {
        QString error;
        const QString file = gameBaseDataFile(path, progress, &error);
        if (file.isEmpty())
            throw db::DbError(0, error);
        gGB = db::Database::open(file);
        // The GameBase's own statements name its tables with "[;database=PATH]." too.
        installAttachResolver(*gGB);
    } catch (const db::DbError& e) {
        gGB.reset();
        platform::dialogs().msgBox(app::Translate(QStringLiteral("Init-Error GB64: ")) +
                                   e.description());
        return false;
    }
    return true;
}

void CloseGameBase()
{
    gGB.reset();
}

QString SelectGameBaseFile(const QString& startPath)
{
    return platform::dialogs().openFile(
        app::Translate(QStringLiteral("GameBase-Datenbank auswählen")),
        app::Translate(QStringLiteral("Datenbank")) + QStringLiteral("|*.MDB;*.mdb"), startPath);
}

QString GetGameBasePictures(const QString& mdbPath)
{
    const QString ini =
        QDir(QFileInfo(mdbPath).absolutePath()).filePath(QStringLiteral("Paths.ini"));
    if (!QFileInfo(ini).isFile())
        return {};
    const QString folder =
        app::ReadIniFile(ini, QStringLiteral("Pictures"), QStringLiteral("1"), QString());
    return !folder.isEmpty() && QFileInfo(folder).isDir() ? folder : QString();
}

void connectCatalogues()
{
    catalogue::setCatalogueOpenedHook([](db::Database& db) { installAttachResolver(db); });
}

void installAttachResolver(db::Database& catalogue)
{
    catalogue.setAttachResolver([](const QString& written) {
        const QString file = gameBaseDataFile(written, platform::noProgress(), nullptr);
        return file.isEmpty() ? written : file;
    });
}

} // namespace vd::gamebase
