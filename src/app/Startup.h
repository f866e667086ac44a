#pragma once
// The window-free steps of the program's start and stop: emptying Temp, recognising a first
// run, the main window's caption.

#include <QString>

namespace vd::app {

// Empties the Temp folder (gTempPath). When that fails the user is asked, with Retry and
// Cancel, "Temp-Verzeichnis kann nicht gelöscht werden: " and the folder; Retry tries again,
// Cancel gives ok = false.
void CleanTempFolder(bool& ok);

// A first run: the settings file names no emulator (EmulName1 of EMULATORS) and no profile
// count (ProfilCount of PROFILS).
bool isFirstRun();

// The main window's caption: "Vellumdock " & gVersion & " - " & the catalogue, or
// "Vellumdock" without one.
QString mainCaption(const QString& databasePath);

// Deletes the plain files that lie directly in Temp, one at a time; folders stay. Returns
// whether every file went.
bool deleteTempFiles();

} // namespace vd::app
