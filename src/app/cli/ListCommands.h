#pragma once
// The catalogue browser on the command line.

#include "app/cli/Cli.h"

namespace vd::cli {

// list CATALOGUE [--view N] [--name T] [--file T] [--path T] [--new] [--filter NAME]
// [--node ID]: the rows the main window's list shows in that state, its visible columns in
// display order, tab-separated after a header line.
int listCommand(const QStringList& arguments, Output& io);

} // namespace vd::cli
