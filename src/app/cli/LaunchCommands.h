#pragma once
// Commands of the launcher: the settings file and starting catalogued items.

#include "app/cli/Cli.h"

namespace vd::cli {

// settings init | settings get SECTION KEY | settings set SECTION KEY VALUE: the settings
// file written as the program's exit writes it (with the default emulators and profiles on a
// first run), one key read, or one key changed through the same reader and writer.
int settingsCommand(const QStringList& arguments, Output& io);
// start CATALOGUE ID [--profile KEY] [--dry-run]: starts an entry (ID above 0) or a file (ID
// below 0) and prints the status text; a dry run prints the program, the working folder and
// each argument instead of starting, and counts nothing.
int startCommand(const QStringList& arguments, Output& io);

} // namespace vd::cli
