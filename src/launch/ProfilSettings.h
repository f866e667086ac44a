#pragma once
// Emulators, profiles and the profile of each start extension in the settings file: read at
// the start (with the upgrades of settings written by older versions) and written at the end
// through the settings writer, renumbered 1..n in collection order.

#include <QString>

namespace vd::app {
class IniText;
}

namespace vd::launch {

// A file with more emulators or profiles than this is read up to the limit.
inline constexpr int kMaxSettingsRecords = 10000;

// The program that opens text files (key ".txt" of EXTENSIONS).
extern QString gTextProgram;

// Fills gEmulators, gProfils, gDefaultProfil, gStartProfils and gTextProgram from gIniFile;
// builds the default emulators and profiles when the file has none. Returns true when the
// defaults were built (a first run). Never shows anything.
bool LoadProfils();

// Renumbers emulators and profiles 1..n in collection order, following every reference to
// them (profiles' EmulKey, the default profile, the extension assignments). A profile whose
// emulator is gone gets EmulKey "-1"; an assignment to a missing profile becomes "".
void RenumberProfils();

// The three parts of the settings file; each renumbers first.
void WriteEmulators(app::IniText& ini);
void WriteProfils(app::IniText& ini);
void WriteExtensionProfils(app::IniText& ini);
// Installs the three writers above with the settings writer.
void InstallProfilWriters();

} // namespace vd::launch
