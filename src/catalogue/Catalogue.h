#pragma once
// The catalogue file: creating, opening with its version check and upgrades, closing, compacting.

#include "platform/Progress.h"

#include <QString>

#include <functional>

namespace vd::db {
class Database;
}

namespace vd::catalogue {

// The version a new catalogue records, whatever the program's own version is.
inline const QString kNewCatalogueVersion = QStringLiteral("3.4");
// The extension of a catalogue file; a chosen name that ends in it, in any case, keeps it.
inline const QString kCatalogueExtension = QStringLiteral(".vdb");

// The name a chosen file name becomes: ".vdb" appended unless it already ends so.
QString catalogueFileName(const QString& chosen);

// Writes a new, empty catalogue at `path` (no dialog). Throws db::DbError.
void createCatalogueFile(const QString& path);

// Creates a catalogue at the chosen path after the extension rule; reports a failure through
// the dialog service ("Der Datenbankname ist schon vorhanden!" and the like) and returns "".
// On success returns the path; the file is left closed.
QString newCatalogue(const QString& chosenPath);

// CreateCatalogue: asks for the file name with the save dialog, then newCatalogue.
QString CreateCatalogue();

// Opens the catalogue at `path`, checks and upgrades its version and on success makes it gDB
// (closing the one open before). On failure the message is shown through the dialog service
// and gDB stays as it was. The caller keeps gDatabasePath.
bool OpenCatalogueFile(QString& path, platform::Progress& progress = platform::noProgress());

// Closes gDB if one is open.
void CloseCatalogue();

// Called with each catalogue just opened, before it becomes gDB: lets other subsystems teach it
// what their statements need (the GameBase's "[;database=PATH]" form).
void setCatalogueOpenedHook(std::function<void(db::Database&)> hook);

// Compacts the (closed) catalogue at gDatabasePath through the ".MDR" work file, leaving the
// previous file as ".OLD".
bool CompactCatalogue();

// The version checks and upgrades, on an open database; return the version recorded last
// ("" when nothing new was recorded). Exposed for the batch window and the tests.
QString upgradeCatalogue(db::Database& db, const QString& version, platform::Progress& progress);
// The data migrations that upgrades run: "3.0" (file types from the old extension list) and
// "3.4" (start counts moved up to the file's row).
void migrateFileTypes(db::Database& db, platform::Progress& progress);
void migrateStartCounts(db::Database& db, platform::Progress& progress);

// Text comparison as the program compares version texts ("3.10" < "3.4").
int compareVersionText(const QString& a, const QString& b);

} // namespace vd::catalogue
