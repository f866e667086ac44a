#pragma once
// The commands of the main window that change what the catalogue holds: deleting rows by view,
// the chronicle of a file, user categories, refreshing one file, and what the property dialogs
// store. They ask through the dialog service and work on gDB, so the windows only gather the
// selection and read the views anew. No command here deletes a file on disk; only the
// properties of a file rename one.

#include <QList>
#include <QString>

namespace vd::import {
class clsFileManager;
}

namespace vd::browser {

// The question box with the count of rows, then a row operation for each. All delete
// routines return true when rows were deleted; a failure of the catalogue shows "Del-Error: "
// and its description and gives false.

// The view of files: DeleteCategoryRow for each file, then containers without entries go.
// `status` gets "Gelöschte Dateien: " and the number of files that left the catalogue.
bool DeleteMainFiles(import::clsFileManager& fm, const QList<qint64>& ids, QString& status);
// Several entries of the other views.
bool DeleteEntries(const QList<qint64>& ids);
// One user category; its entries stay with Category_User Null.
bool DeleteUserCategory(qint64 id, const QString& name);
// The start history of a file and of all its entries; no row is removed.
bool DeleteChronicle(qint64 fileId, const QString& name);
// One row by the sign rule of the INFO tag: negative a file, positive an entry.
bool DeleteSelected(qint64 tag, const QString& name);
// Removes every file row that has no entry left.
void DeleteEmptyContainers();

// The text of the input box, or "" after Cancel.
QString InputText(const QString& prompt, const QString& title, const QString& defaultText = {});

// mnuNewCat: asks for a name; a taken name gets "Diese Kategorie besteht schon!". The id of
// the new category, or 0 when none was added.
qint64 NewCategory(qint64& lastCategoryID);
// Renames user category `id`; its own name is no conflict. The new name, or "" when nothing
// was stored.
QString RenameCategory(qint64 id, const QString& oldName);

// mnuRefreshFile for file `id`: reads the file again with both refresh bits. The status text,
// or "" when the row or the file is missing (FileExistsMsg has warned). `changed` tells
// whether rows came or went.
QString RefreshFile(import::clsFileManager& fm, qint64 id, bool& changed);

// mnuFilepath: the path on disk (an archive member's archive) of the row of an INFO tag, or ""
// when the row is gone.
QString FilePathOfTag(qint64 tag);

// The Category row as frmFile shows it.
struct FileProperties
{
    qint64 id = 0;
    QString tCategory;
    QString tFile;
    QString tPath;
    QString tUnpackPath;
    QString tHash;
    int iFileType = 0;
    qint64 entryCount = 0;

    // tFile without its extension, and the extension with its point ("" when none).
    QString baseName() const;
    QString extension() const;
};
bool ReadFileProperties(qint64 id, FileProperties& row);
// frmFile's OK: `name` is the new name without `extension`. A changed name renames the file
// on disk in its folder first (not an archive member, whose archive keeps its name); when that
// fails nothing is stored. `hash` is stored when not empty. False with the message shown.
bool SaveFileProperties(const FileProperties& row, const QString& name, const QString& hash);

// frmC64File's OK for one or several entries. With one entry `name` is its new tProgram (and
// must not be empty); with several it is ignored. `category` is the name of a user category
// (added when new) or "" for none; `gbId` 0 means no GameBase link. With `gbChanged` the
// files of the entries take the link too.
struct EntryChange
{
    QString name;
    QString category;
    qint64 gbId = 0;
    bool gbChanged = false;
};
bool SaveEntries(const QList<qint64>& ids, const EntryChange& change, qint64& lastCategoryID);

// frmCategory's OK: every entry of each file takes the user category `name` (added when
// new); the item "Löschen" takes it away.
void AssignCategory(const QList<qint64>& fileIds, const QString& name, qint64& lastCategoryID);

} // namespace vd::browser
