#pragma once
// The emulators and profiles the program knows: the built-in types and profile sets, the
// global collections, and the routines that create records.

#include "launch/clsEmulator.h"

#include <array>
#include <QString>
#include <QStringList>

namespace vd::launch {

// Emulator types: 0 "Sonstige" (any file tool), 1 "VICE", 2 "CCS64", 3 "HOXS64", 4 "EMU64",
// 5 "MICRO64".
inline constexpr int kEmulTypeCount = 6;
inline constexpr int kProfilSetCount = 14;
inline constexpr int kStartExtensionCount = 12;

// The start extensions in their fixed order: ".D64", ".D71", ..., ".VFL".
const QStringList& StartExtensions();
// Index of `extension` (with its point, any case) among the start extensions, or -1.
int StartExtensionIndex(const QString& extension);

// Global state, from the load of the main window to its close.
extern Emulators gEmulators;
extern Profils gProfils;
extern QString gDefaultProfil; // Key of the default profile
extern int gProfilKeyCounter;  // goes up at every AddProfil
// Assigned profile key per start extension, parallel to StartExtensions(); "" = default.
extern std::array<QString, kStartExtensionCount> gStartProfils;
// Type names; index 0 goes through Translate (SetEmulTypeNames).
extern std::array<QString, kEmulTypeCount> gEmulTypeNames;

// Fills gEmulTypeNames; index 0 is translated, so call it after the language is loaded.
void SetEmulTypeNames();
// The type name as combo boxes show it: type 0 gets "\File-Tool" appended.
QString EmulTypeCaption(int type);

// The built-in profile set `set` (1..14): its name and option string; empty for other sets.
QString DefaultProfilName(int set);
QString DefaultProfilOptions(int set);
// The sets AddDefaultEmulator adds for `type`, in order; empty outside 0..5.
QList<int> DefaultProfilSets(int type);

EmulatorPtr AddEmulator(int key, int type, const QString& name, const QString& path,
                        Emulators& emulators, bool aktiv);
// Increments gProfilKeyCounter; the new Key is `key` when not 0, else the counter.
ProfilPtr AddProfil(Profils& profils, const QString& emulKey, const QString& name,
                    const QString& options, bool aktiv, int key);
// Null for a type outside 0..5. With `useSetNumbers` the profiles' keys are the set numbers.
EmulatorPtr AddDefaultEmulator(int key, int type, Emulators& emulators, Profils& profils,
                               bool useSetNumbers);
// Null for a set outside 1..14.
ProfilPtr AddDefaultProfile(const QString& emulKey, int set, Profils& profils, bool useSetNumbers);

// The profile set assigned by default to start extension `index` for an emulator of `type`;
// 0 for a type outside 1..5 or an index outside 0..11.
int DefaultProfilForExtension(int type, int index);

// Emulator name, " - ", profile name; "" when the profile is unknown. An unknown emulator
// leaves its part empty.
QString GetProfilCaption(const Emulators& emulators, const Profils& profils,
                         const QString& profilKey);

} // namespace vd::launch
