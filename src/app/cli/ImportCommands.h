#pragma once
// Commands that read C64 files: import into a catalogue, and a directory listing.

#include "app/cli/Cli.h"

namespace vd::import {
struct ImportOptions;
}

namespace vd::cli {

// import CATALOGUE PATH [--refresh] [--md5]: catalogues a folder (recursively) or one file as
// the batch window does; prints the result list, then the result lines.
int importCommand(const QStringList& arguments, Output& io);
// extract CATALOGUE ID: the path on disk of the file behind a C64Files id (positive) or a
// Category id (negative), an archive member extracted first.
int extractCommand(const QStringList& arguments, Output& io);
// dir FILE: the directory of an image, tape or file in the C64's manner.
int dirCommand(const QStringList& arguments, Output& io);

// The importer options of the settings file (MAIN and GAMEBASE sections).
import::ImportOptions importOptionsFromSettings();

} // namespace vd::cli
