#pragma once
// The connection to the user's GameBase64 database: the settings of the section GAMEBASE that
// the connection needs, the check of a file, opening it (through its SQLite cache) and the
// picture folder that the GameBase tools note beside it.

#include <memory>
#include <QString>

namespace vd::db {
class Database;
}
namespace vd::platform {
class Progress;
}

namespace vd::gamebase {

// The default of GameBaseDB: a hint shown in the options, which counts as "no file set".
inline const QString kGameBaseHint = QStringLiteral("Gamebase (GBC_v05.mdb,GBC_v07.mdb,...)");

extern QString gGameBaseDB;  // GameBaseDB: the .mdb (or an SQLite GameBase)
extern QString gScreenshots; // Screenshots: the screenshot folder
extern bool gArchivOnlyGame; // ArchivOnlyGame: of a GameBase archive only the game's entry
extern bool gAdultContent;   // AdultContent

// The open GameBase (its cache), or null while unconnected.
extern std::unique_ptr<db::Database> gGB;

// Reads every key of the section GAMEBASE (defaults when absent): the keys above and those of
// GameBaseSettings.h.
void loadGameBaseSettings();

// The SQLite file that stands for a GameBase: the file itself when it is SQLite already, or
// its cache (built when missing or out of date). Empty on failure, `error` then says why.
QString gameBaseDataFile(const QString& path, platform::Progress& progress, QString* error);

bool CheckGameBaseFile(const QString& path);
// The check builds the cache of an .mdb first; `progress` sees that build.
bool CheckGameBaseFile(const QString& path, platform::Progress& progress);
bool OpenGameBase(bool force);
// The same, with the cache build (a new or changed .mdb) reporting to `progress`.
bool OpenGameBase(bool force, platform::Progress& progress);
void CloseGameBase();
QString SelectGameBaseFile(const QString& startPath);
QString GetGameBasePictures(const QString& mdbPath);

// Lets "[;database=PATH].Table" in the statements of `catalogue` reach the GameBase named
// PATH through its data file.
void installAttachResolver(db::Database& catalogue);

// Makes every catalogue opened from now on resolve that form (the window and the command line
// call it once at start).
void connectCatalogues();

} // namespace vd::gamebase
