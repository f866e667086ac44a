#include "browser/FileCommands.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/Database.h"
#include "catalogue/DbError.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "import/clsFileManager.h"
#include "import/ImportOptions.h"
#include "platform/DialogService.h"
#include "platform/Files.h"

#include <functional>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace vd::browser {

using app::Translate;
using catalogue::SqlQuote;

namespace {

QString idText(qint64 id)
{
    return QString::number(id);
}

// Runs `work` in one transaction, so that thousands of marked rows go at once; what was
// deleted before a failure stays deleted. A failure of the catalogue is shown with the prefix
// of the delete commands.
bool guardedDelete(const std::function<void()>& work)
{
    try {
        app::gDB->beginTrans();
        try {
            work();
        } catch (const db::DbError&) {
            app::gDB->commitTrans();
            throw;
        }
        app::gDB->commitTrans();
        return true;
    } catch (const db::DbError& e) {
        if (app::gDB->inTransaction())
            app::gDB->rollback();
        platform::dialogs().msgBox(Translate(QStringLiteral("Del-Error: ")) + e.description(),
                                   platform::vbCritical);
        return false;
    }
}

bool askCount(const QString& question, qsizetype count)
{
    return platform::dialogs().yesNo(Translate(question) + QString::number(count));
}

bool askName(const QString& question, const QString& name)
{
    return platform::dialogs().yesNo(Translate(question, name));
}

} // namespace

void DeleteEmptyContainers()
{
    app::gDB->execute(
        QStringLiteral("Delete Category.* From Category Left Join C64Files on Category.ID = "
                       "C64Files.Category_File where isNull(Category_File) and Category.iType=") +
        idText(catalogue::kTypeFile));
}

bool DeleteMainFiles(import::clsFileManager& fm, const QList<qint64>& ids, QString& status)
{
    if (ids.isEmpty() ||
        !askCount(QStringLiteral("Anzahl der zu löschenden Dateien aus der Datenbank: "),
                  ids.size()))
        return false;
    // The counts of before are read now: the last count may lie behind the catalogue.
    fm.CountFiles();
    const qint64 before = fm.lCategoryCount;
    const bool ok = guardedDelete([&ids] {
        for (qint64 id : ids)
            catalogue::DeleteCategoryRow(id, 2);
        DeleteEmptyContainers();
    });
    fm.CountFiles();
    status = Translate(QStringLiteral("Gelöschte Dateien: ")) +
             QString::number(before - fm.lCategoryCount);
    return ok;
}

bool DeleteEntries(const QList<qint64>& ids)
{
    if (ids.isEmpty() ||
        !askCount(QStringLiteral("Anzahl der zu löschenden Dateien: "), ids.size()))
        return false;
    return guardedDelete([&ids] {
        for (qint64 id : ids)
            catalogue::DeleteEntry(id);
    });
}

bool DeleteUserCategory(qint64 id, const QString& name)
{
    if (!askName(QStringLiteral("Möchten Sie die Kategorie '@1' löschen?"), name))
        return false;
    return guardedDelete([id] { catalogue::DeleteCategoryRow(id, catalogue::kTypeUserCategory); });
}

bool DeleteChronicle(qint64 fileId, const QString& name)
{
    if (!askName(QStringLiteral("Möchten Sie die Chronik der Datei '@1' löschen?"), name))
        return false;
    return guardedDelete([fileId] {
        app::gDB->execute(
            QStringLiteral("Update Category Set tsLastStarted=Null,lStartCount=Null where ID=") +
            idText(fileId));
        app::gDB->execute(QStringLiteral("Update C64Files Set tsLastStarted=Null,lStartCount=Null "
                                         "where Category_File=") +
                          idText(fileId));
    });
}

bool DeleteSelected(qint64 tag, const QString& name)
{
    if (tag == 0 ||
        !askName(QStringLiteral("Möchten Sie die Datei '@1' aus der Datenbank löschen?"), name))
        return false;
    return guardedDelete([tag] {
        if (tag < 0)
            catalogue::DeleteCategoryRow(-tag, catalogue::kTypeFile);
        else
            catalogue::DeleteEntry(tag);
    });
}

QString InputText(const QString& prompt, const QString& title, const QString& defaultText)
{
    return platform::dialogs().inputBox(prompt, title, defaultText).value_or(QString());
}

qint64 NewCategory(qint64& lastCategoryID)
{
    const QString name = InputText(Translate(QStringLiteral("Neue Kategorie:")), {});
    if (name.isEmpty() || catalogue::CategoryExists(name, {}, true))
        return 0;
    return catalogue::FindOrAddCategory(name, true, lastCategoryID);
}

QString RenameCategory(qint64 id, const QString& oldName)
{
    const QString name =
        InputText(Translate(QStringLiteral("Umbenennung der Kategorie: ")), {}, oldName);
    if (name.isEmpty() ||
        catalogue::CategoryExists(name, QStringLiteral(" AND ID<>") + idText(id), true))
        return {};
    // The field holds 255 characters, as a new category does.
    const QString stored = name.left(255);
    app::gDB->execute(QStringLiteral("Update Category Set tCategory ='") + SqlQuote(stored) +
                      QStringLiteral("' where ID=") + idText(id));
    return stored;
}

QString RefreshFile(import::clsFileManager& fm, qint64 id, bool& changed)
{
    changed = false;
    const auto rs =
        app::gDB->openRecordset(QStringLiteral("Select * From Category where ID=") + idText(id),
                                db::RecordsetType::Snapshot);
    if (rs->eof())
        return {};
    const QString tFile = catalogue::ValueText(rs->value(QStringLiteral("tFile")));
    const QString tPath = catalogue::ValueText(rs->value(QStringLiteral("tPath")));
    const QString tUnpackPath = catalogue::ValueText(rs->value(QStringLiteral("tUnpackPath")));
    const int iFileType = rs->value(QStringLiteral("iFileType")).toInt();
    rs->close();
    if (!platform::FileExistsMsg(tPath))
        return {};

    fm.InitSearch(false, false, QString(), 0);
    fm.CountFiles(); // the difference is measured from the catalogue as it is now
    const qint64 entriesBefore = fm.lC64FileCount;
    const qint64 result = fm.LoadFile(
        tFile, tPath, import::kFlagRefresh | import::kFlagRefreshArchives, tUnpackPath, false, id);
    if (result < 0)
        return Translate(QStringLiteral("Datei ist unverändert"));

    changed = true;
    // The copies a start made of the old disk would start the old contents.
    if (iFileType == 1 || iFileType == 2)
        platform::DeleteFiles(app::gTempPath + QLatin1Char('/') + idText(id) +
                              QStringLiteral(".*"));
    fm.CountFiles();
    const qint64 difference = fm.lC64FileCount - entriesBefore;
    if (difference < 0)
        return Translate(QStringLiteral("Gelöschte Dateien: ")) + QString::number(-difference);
    return Translate(QStringLiteral("Hinzugefügte C64-Files: ")) + QString::number(difference);
}

QString FilePathOfTag(qint64 tag)
{
    QString fileId = idText(-tag);
    if (tag > 0)
        fileId = catalogue::GetDbValue(QStringLiteral("Category_File"), QStringLiteral("C64Files"),
                                       QStringLiteral("where ID=") + idText(tag));
    if (tag == 0 || fileId.isEmpty())
        return {};
    return catalogue::GetDbValue(QStringLiteral("tPath"), QStringLiteral("Category"),
                                 QStringLiteral("where ID=") + fileId);
}

QString FileProperties::baseName() const
{
    const qsizetype dot = tFile.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? tFile.left(dot) : tFile;
}

QString FileProperties::extension() const
{
    const qsizetype dot = tFile.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? tFile.mid(dot) : QString();
}

bool ReadFileProperties(qint64 id, FileProperties& row)
{
    const auto rs =
        app::gDB->openRecordset(QStringLiteral("Select * From Category where ID=") + idText(id),
                                db::RecordsetType::Snapshot);
    if (rs->eof())
        return false;
    const auto text = [&rs](const char* field) {
        return catalogue::ValueText(rs->value(QString::fromLatin1(field)));
    };
    row.id = id;
    row.tCategory = text("tCategory");
    row.tFile = text("tFile");
    row.tPath = text("tPath");
    row.tUnpackPath = text("tUnpackPath");
    row.tHash = text("tHash");
    row.iFileType = rs->value(QStringLiteral("iFileType")).toInt();
    rs->close();
    row.entryCount = catalogue::GetDbValue(QStringLiteral("Count(ID)"), QStringLiteral("C64Files"),
                                           QStringLiteral("where Category_File=") + idText(id))
                         .toLongLong();
    return true;
}

bool SaveFileProperties(const FileProperties& row, const QString& name, const QString& hash)
{
    if (name.isEmpty()) {
        platform::dialogs().msgBox(
            Translate(QStringLiteral("Bitte geben Sie einen Dateinamen an!")),
            platform::vbExclamation);
        return false;
    }
    const QString newFile = name + row.extension();
    QString newPath = row.tPath;
    // A member's path is its archive's, which keeps its name.
    if (newFile != row.tFile && row.tUnpackPath.isEmpty()) {
        newPath = QFileInfo(row.tPath).dir().filePath(newFile);
        if (platform::FileExists(row.tPath) && !QFile::rename(row.tPath, newPath)) {
            platform::dialogs().msgBox(
                Translate(QStringLiteral("Datei konnte nicht umbenannt werden!")),
                platform::vbExclamation);
            return false;
        }
    }
    const auto rs =
        app::gDB->openRecordset(QStringLiteral("Select * From Category where ID=") + idText(row.id),
                                db::RecordsetType::Dynaset);
    if (rs->eof())
        return false;
    rs->edit();
    rs->setValue(QStringLiteral("tFile"), newFile);
    rs->setValue(QStringLiteral("tPath"), newPath);
    // A name of its own (a game's, say) stays; a name that was the file's follows it.
    if (row.tCategory == row.tFile)
        rs->setValue(QStringLiteral("tCategory"), newFile);
    if (!hash.isEmpty())
        rs->setValue(QStringLiteral("tHash"), hash);
    rs->update();
    rs->close();
    return true;
}

bool SaveEntries(const QList<qint64>& ids, const EntryChange& change, qint64& lastCategoryID)
{
    const bool one = ids.size() == 1;
    if (one && change.name.isEmpty()) {
        platform::dialogs().msgBox(Translate(QStringLiteral("Bitte geben Sie einen Filenamen an!")),
                                   platform::vbExclamation);
        return false;
    }
    const QVariant category =
        change.category.isEmpty()
            ? QVariant()
            : QVariant(catalogue::FindOrAddCategory(change.category, false, lastCategoryID));
    const QVariant gb = change.gbId != 0 ? QVariant(change.gbId) : QVariant();
    for (qint64 id : ids) {
        const auto rs =
            app::gDB->openRecordset(QStringLiteral("Select * From C64Files where ID=") + idText(id),
                                    db::RecordsetType::Dynaset);
        if (rs->eof())
            continue;
        const QString fileId = catalogue::ValueText(rs->value(QStringLiteral("Category_File")));
        rs->edit();
        rs->setValue(QStringLiteral("Category_User"), category);
        if (one)
            rs->setValue(QStringLiteral("tProgram"), change.name);
        rs->setValue(QStringLiteral("GB_ID"), gb);
        rs->update();
        rs->close();
        if (change.gbChanged && !fileId.isEmpty())
            app::gDB->execute(QStringLiteral("Update Category Set GB_ID=") +
                              (change.gbId != 0 ? idText(change.gbId) : QStringLiteral("Null")) +
                              QStringLiteral(" where ID=") + fileId);
    }
    return true;
}

void AssignCategory(const QList<qint64>& fileIds, const QString& name, qint64& lastCategoryID)
{
    QString value = QStringLiteral("Null");
    if (!name.isEmpty() && name != Translate(QStringLiteral("Löschen")))
        value = idText(catalogue::FindOrAddCategory(name, false, lastCategoryID));
    for (qint64 id : fileIds)
        app::gDB->execute(QStringLiteral("Update C64Files Set Category_User = ") + value +
                          QStringLiteral(" where Category_File=") + idText(id));
}

} // namespace vd::browser
