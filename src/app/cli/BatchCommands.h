#pragma once
// The batch window's modes on the command line: the check of a catalogue (with deleting or
// finding again what is missing), compacting, MD5 sums and directory exports. Each prints the
// rows of the result list as the window lists them, then the result lines.

#include "app/cli/Cli.h"

namespace vd::cli {

// check CATALOGUE [--delete-missing | --new-path DIR [--old-path PATH]]
int checkCatalogueCommand(const QStringList& arguments, Output& io);
// compact CATALOGUE
int compactCommand(const QStringList& arguments, Output& io);
// md5 CATALOGUE ID...
int md5Command(const QStringList& arguments, Output& io);
// export-dirs CATALOGUE ID... [--to DIR]
int exportDirsCommand(const QStringList& arguments, Output& io);

} // namespace vd::cli
