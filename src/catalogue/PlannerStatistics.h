#pragma once
// Statistics for SQLite's query planner. Without them it guesses every table at a million rows
// and every index key at ten, and takes a search on the file table for as wide as no search at
// all; with them it starts a search in the files' table from the files and not from a million
// entries.

namespace vd::db {

class Database;

// Entries from which a catalogue gets statistics when it is opened: below, the engine's own
// guesses serve well, and plans stay as they were.
inline constexpr long long kStatisticsFromRows = 10000;

// Samples the indexes of a writable catalogue that holds at least kStatisticsFromRows entries
// (a few hundred rows each, some milliseconds at a million entries) into sqlite_stat1. True when
// the statistics were written; a failure leaves the catalogue as it was.
bool refreshPlannerStatistics(Database& db);

} // namespace vd::db
