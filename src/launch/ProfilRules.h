#pragma once
// The rules behind the emulator and profile tree of the options dialog, as plain logic: which
// profiles match keywords, the "Standard- Emulator" adaptation of the extension assignments,
// and the check and delete rules that keep one emulator and one profile active.

#include "launch/Profiles.h"

namespace vd::launch {

// What the options dialog edits: copies of the collections and the assignments.
struct ProfilConfig
{
    Emulators emulators;
    Profils profils;
    QString defaultProfil;
    std::array<QString, kStartExtensionCount> startProfils;

    // A deep copy of the global state, and the way back.
    static ProfilConfig fromGlobals();
    void toGlobals() const;
};

// True when every keyword of the ";"-separated list occurs in the upper-cased text of some
// item of the profile (flags play no part). A profile without items matches nothing.
bool ProfilMatches(const clsProfil& profil, const QString& keywords);
// The first profile of emulator `emulKey` that matches, or null.
ProfilPtr FindProfil(const Profils& profils, const QString& emulKey, const QString& keywords);
// The first matching profile of any named emulator of `type`, or null.
ProfilPtr FindProfilOfType(const ProfilConfig& config, int type, const QString& keywords);

// "Standard- Emulator": points the twelve extensions at the fitting profiles of emulator
// `emulKey`, or of VICE and CCS64 for the images its type cannot read; an extension without a
// candidate keeps its assignment. Reports "Die Profilzuordnung wurde für den Emulator
// angepasst!". False for an unknown emulator.
bool AdaptExtensionsToEmulator(ProfilConfig& config, const QString& emulKey);

// The check rules. Unchecking is refused with "Ein Profil muss aktiv sein!" or "Ein Emulator
// muss aktiv sein!" when it would leave none active; the result says whether the new state
// stands (false: the check mark is to be restored).
bool SetEmulatorChecked(ProfilConfig& config, const QString& emulKey, bool checked);
bool SetProfilChecked(ProfilConfig& config, const QString& profilKey, bool checked);
bool SetItemChecked(ProfilConfig& config, const QString& profilKey, int row, bool checked);

// The delete rules: a deleted record keeps its place with an empty Name until the dialog's OK
// removes it (RemoveDeleted). False when refused by the "last active" rules.
bool DeleteProfil(ProfilConfig& config, const QString& profilKey);
bool DeleteEmulator(ProfilConfig& config, const QString& emulKey);
void RemoveDeleted(ProfilConfig& config);

} // namespace vd::launch
