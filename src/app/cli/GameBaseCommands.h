#pragma once
// The GameBase from the command line: checking a file, building its cache, and connecting the
// catalogued ZIP files with its games (mode 7 of the batch window).

#include "app/cli/Cli.h"

namespace vd::cli {

// gamebase check FILE | cache FILE [--rebuild] | connect CATALOGUE [--gamebase FILE]
int gamebaseCommand(const QStringList& arguments, Output& io);

} // namespace vd::cli
