#include "catalogue/PlannerStatistics.h"

#include "catalogue/Database.h"

#include <sqlite3.h>

namespace vd::db {

namespace {

// The highest id of the entries: the importer counts them up, so it stands for their number
// without a walk through the table.
long long entryEstimate(sqlite3* handle)
{
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(handle, "SELECT max(rowid) FROM main.\"C64Files\"", -1, &st, nullptr) !=
        SQLITE_OK)
        return 0;
    long long n = 0;
    if (sqlite3_step(st) == SQLITE_ROW)
        n = sqlite3_column_int64(st, 0);
    sqlite3_finalize(st);
    return n;
}

} // namespace

bool refreshPlannerStatistics(Database& db)
{
    sqlite3* handle = db.handle();
    if (!handle || db.isReadOnly() || db.inTransaction() ||
        entryEstimate(handle) < kStatisticsFromRows)
        return false;
    // A sample of each index is enough for the planner to tell a file from its entries; a
    // full ANALYZE would read the whole file.
    const int rc =
        sqlite3_exec(handle, "PRAGMA analysis_limit=400; ANALYZE main; PRAGMA analysis_limit=0;",
                     nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_exec(handle, "PRAGMA analysis_limit=0;", nullptr, nullptr, nullptr);
        return false;
    }
    return true;
}

} // namespace vd::db
