#pragma once
// Commands on catalogue files.

#include "app/cli/Cli.h"

#include <QVariant>

namespace vd::cli {

// new CATALOGUE: creates the catalogue and prints its path.
int newCommand(const QStringList& arguments, Output& io);
// sql CATALOGUE STATEMENT: runs one Jet SQL statement; a query prints its rows.
int sqlCommand(const QStringList& arguments, Output& io);

// Whether a statement gives rows: SELECT, TRANSFORM, or either behind a PARAMETERS clause.
bool returnsRows(const QString& statement);
// A value as a cell of the tab-separated output: Null is "", a date "YYYY-MM-DD HH:MM:SS";
// tabs and line breaks inside are written as \t, \r and \n so that a row stays one line.
QString cellText(const QVariant& value);

} // namespace vd::cli
