#pragma once
// A GameBase for the benchmarks, written straight through SQLite: the Games table of a
// GameBase64 file (43 columns) and the Years it joins, with rows of plausible width.

#include <QString>

namespace vd::bench {

// Writes `games` games into the new SQLite file `path`: "Game Number 00001", ..., files
// <letter>\Game_Number_<n>.zip, a screenshot for nine games in ten, one game in fifty adult.
void writeGameBase(const QString& path, int games);

} // namespace vd::bench
