#pragma once
// Starting a game of the GameBase window: a catalogue row of lstMyFiles goes through the
// catalogue's own start; a game row starts straight out of the GameBase's archive in the games
// folder, and its play statistics (DateLastPlayed, TimesPlayed) are written into the GameBase.

#include "launch/StartFile.h"

#include <QString>

namespace vd::db {
class Database;
}
namespace vd::import {
class clsFileManager;
}

namespace vd::gamebase {

// The selected row as StartGame reads it.
struct GameRow
{
    bool selected = false;
    bool inMyFiles = false; // lstMyFiles (iListMode 1), else lstGB
    int view = 1;           // the tab of tabViews
    qint64 id = 0;          // lstMyFiles: the row's ID (0 on the GameBase side of views 3, 4)
    qint64 gbId = 0;        // lstMyFiles: the row's GB_ID
    qint64 gaId = 0;        // lstGB: the row's GA_ID
    qint64 startId = 0;     // lStartID of UpdateStartButtons
};

struct GameStartResult
{
    QString status;       // for the panel "Msg"; "" when nothing was started
    bool started = false; // a process was handed over
    bool fromArchive = false;
};

// The catalogue row to start for a selected row (UpdateStartButtons): the row's ID in
// lstMyFiles; in lstGB the first catalogued container of the game that isn't a text; 0 for none.
qint64 StartIdFor(db::Database& catalogue, const GameRow& row);

// StartGame(profilKey, mode). `gamesFolder` is where the GameBase's Filename values root.
// Failures are reported through the dialog service; statistics are written only after a start.
GameStartResult StartGame(import::clsFileManager& fm, db::Database& catalogue, db::Database& gb,
                          const GameRow& row, QString profilKey, const QString& gamesFolder,
                          const launch::StartOptions& options = {});

// The file inside an unpacked game archive that StartGame runs: FileToRun when the folder holds
// it (any case; a name with a folder part never matches), or with an empty FileToRun the first
// file matching the archive's name up to its first "_" and ".*". "" when there is none.
QString FileToRunIn(const QString& folder, const QString& archiveName, const QString& fileToRun);

} // namespace vd::gamebase
