#pragma once
// What the first-run wizard decides, without its window: the test of the emulator path on
// "Weiter", and the finish that puts the choices into the emulators, the profile of each start
// extension, the default profile and the GameBase settings. Everything changes globals only;
// the settings file is written at the program's end, as always.

#include <QString>

namespace vd::setup {

// The emulator type offered first (VICE), and the number of the wizard's steps.
inline constexpr int kWizardFirstType = 1;
inline constexpr int kWizardStepCount = 6;

// The test of step 3. An empty path passes: the emulator keeps its placeholder and the first
// start asks for it. A bare program name passes when PATH holds it, as the start would find it
// there. Any other path must be an existing file; if not, "Datei nicht gefunden: " and the path
// are shown and the result is false.
bool CheckEmulatorPath(const QString& path);

// The default profile key the finish sets for an emulator type: 2 "1", 3 "7", 4 "10", 5 "13".
// "" for VICE (type 1), whose first-run default "4" stays, and for every other type.
QString WizardDefaultProfil(int type);

struct WizardChoice
{
    int emulType = kWizardFirstType; // the item data of the chosen row of cboEmulators
    QString emulPath;                // txtEmulPath; "" keeps the emulator's path
    QString gameBasePath;            // txtGB; "" leaves the GameBase settings alone
};

// The finish on "Starten": the emulator at position `emulType` (counted from 1; on a first run
// that is the emulator of that type) takes the path; each of the twelve start extensions gets
// DefaultProfilForExtension(emulType, index), or the default profile when that number is above
// the number of profiles; the default profile key follows WizardDefaultProfil; a GameBase path
// becomes GameBaseDB, and the picture folder noted beside it the screenshot folder.
void FinishWizard(const WizardChoice& choice);

} // namespace vd::setup
