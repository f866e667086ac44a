#pragma once
// Splitting a raw parameter string into program arguments. Profiles carry command lines in the
// form Windows programs receive them, so the string is split by the rules of the Windows C
// runtime, never by a shell: nothing is expanded, redirected or substituted.

#include <QString>
#include <QStringList>

namespace vd::launch {

// Splits `params` into arguments:
// - blanks and tabs outside double quotes separate arguments; runs of them count as one;
// - a double quote switches quoting on or off and is dropped; inside quotes two double quotes
//   in a row give one literal double quote and quoting goes on;
// - 2n backslashes before a double quote give n backslashes, and the quote acts as above;
//   2n+1 backslashes before a double quote give n backslashes and a literal double quote;
// - backslashes not followed by a double quote are kept as they stand;
// - a pair of quotes with nothing between them is an empty argument ("" gives one argument "").
QStringList SplitCommandLine(const QString& params);

// Puts `value` (a path or a C64 name, which may hold double quotes and backslashes) in place of
// every `marker` in `commandLine` so that SplitCommandLine gives it back unchanged, quoted or
// not: a double quote becomes \" with the backslashes before it doubled, and backslashes at the
// end are doubled where a double quote follows the marker.
void ReplaceWithLiteral(QString& commandLine, const QString& marker, const QString& value);

} // namespace vd::launch
