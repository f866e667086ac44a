#pragma once
// Mode 7 of the batch window, "Eigene Zip-Dateien mit Gamebase abgleichen": every catalogued
// ZIP file that no game is linked to yet is read again with the GameBase matching on, so that a
// game's archive gets its GB_ID, the game's name and its genre. The batch window and the
// command line both run this.

#include <QString>
#include <QStringList>

namespace vd::import {
class clsFileManager;
}
namespace vd::platform {
class Progress;
}

namespace vd::gamebase {

struct ConnectResult
{
    bool changed = false;    // the count of linked files grew: the views are read anew (mode 4)
    bool cancelled = false;  // Cancel stopped the walk; what was linked stays
    qint64 filesSeen = 0;    // the ZIP files read again
    QStringList resultLines; // "Datenbank wurde überprüft:", "Hinzugefügte C64-Files: a/b"
    QString failure;         // a database fault that ended the work early, "" when none

    QString sResultText() const { return resultLines.join(QLatin1Char('\n')); }
};

// Runs mode 7 on gDB with `fm` (InitCount done). The GameBase must be open: the callers call
// OpenGameBase(true) first and do nothing when it fails. The event lines ("Gamebase: " and the
// game's name, with the file's iFileType) and the importer's messages reach the caller through
// fm's ShowMessage; "Dateien: n/total", the bar and Cancel go through `progress` every 5 files.
ConnectResult ConnectToGameBase(import::clsFileManager& fm, platform::Progress& progress);

} // namespace vd::gamebase
