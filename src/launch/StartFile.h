#pragma once
// Starting a catalogued item: an entry inside a container or a whole file goes to the
// emulator of its profile (or, for texts and documents, to the editor or the desktop), and the
// start is counted on its rows.

#include "launch/ProcessStarter.h"

#include <functional>
#include <QString>

namespace vd::db {
class Database;
}
namespace vd::import {
class clsFileManager;
}

namespace vd::launch {

struct StartOptions
{
    // Everything but the start itself and the counting (the temporary copy is made).
    bool dryRun = false;
    // Receives what was (or, in a dry run, would have been) started.
    LaunchPlan* plan = nullptr;
};

// Starts the item `id` of `db`: above 0 a C64Files entry, below 0 the Category row -id, 0
// does nothing. `profilKey` "" asks for the profile of the file's extension (or the default);
// on return it holds the profile used. Result: the status text, which starts with a blank when
// a temporary disk copy was made; "" when nothing was started. Every failure is reported
// through the dialog service and leaves the counts alone.
QString StartFile(import::clsFileManager& fm, db::Database& db, qint32 id, QString& profilKey,
                  const StartOptions& options = {});

class clsProfil;

// The emulator program of `profil` (a bare name looked up on PATH). When it is not set or not
// a file: the message "Datei nicht gefunden: " with the path, titled "Profil: " and the
// profile's name, then gEditEmulatorHook; the result is "".
QString EmulatorProgram(const clsProfil& profil);

// The status-bar text for a result of StartFile: a leading blank becomes
// "Temporäre Datei!" in front of the rest.
QString StartStatusText(const QString& result);

// Called with the emulator's key when its path is missing, so that the user can mend it; the
// windows install the emulator editor here. Unset, nothing more happens.
extern std::function<void(const QString& emulKey)> gEditEmulatorHook;

} // namespace vd::launch
