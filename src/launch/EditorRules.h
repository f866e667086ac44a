#pragma once
// The logic of the three small editors (emulator, profile, parameter), without their windows:
// what they check, in which order, and what they change.

#include "launch/ProfilRules.h"

#include <QStringList>

namespace vd::launch {

// frmEditParams: the texts of all items of all profiles of the emulator, each once, then the
// five suggestions that are not there yet.
QStringList ParamSuggestions(const Profils& profils, const QString& emulKey);

// frmEditParams.SaveParam: `row` -1 adds a new item (flag on; a profile without items reuses
// row 0), else renames that row keeping its flag. An empty text reports "Bitte geben Sie einen
// Parameter an!", a text that is there already "Dieser Parameter besteht schon!"; nothing
// changes then and the result is false.
bool SaveParam(clsProfil& profil, int row, const QString& text);

// frmEditProfil.SaveProfil: `profilKey` "" creates a profile of `emulKey` (Aktiv, key from the
// counter), else renames it. An empty name reports "Bitte geben Sie einen Profilnamen an!", a
// name another profile of the same emulator has "Dieser Name besteht schon!" (unless
// `silent`). With `makeDefault` the default moves to the profile. The key, or "".
QString SaveProfil(ProfilConfig& config, const QString& emulKey, const QString& profilKey,
                   const QString& name, bool silent, bool makeDefault);

// frmEditEmu's OK: an empty name, a changed name that another emulator has, and an empty or
// (when changed) missing path are reported as designed; "" when all is well, else the message.
QString CheckEmulatorInput(const Emulators& emulators, const QString& emulKey, const QString& name,
                           const QString& path);
// The key of a new emulator: one above the highest numeric key, from 1.
int NextEmulatorKey(const Emulators& emulators);

} // namespace vd::launch
