#include "catalogue/Catalogue.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/Database.h"
#include "catalogue/PlannerStatistics.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "platform/DialogService.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace vd::catalogue {

using app::Translate;
using platform::dialogs;

namespace {

// Adds one "Version" row to the trail.
void addVersionRow(db::Database& db, const QString& version)
{
    auto rs = db.openRecordset(QStringLiteral("Select * From Config"), db::RecordsetType::Dynaset);
    rs->addNew();
    rs->setValue(QStringLiteral("tItem"), QStringLiteral("Version"));
    rs->setValue(QStringLiteral("mConfig"), version);
    rs->setValue(QStringLiteral("tsCreated"), QDateTime::currentDateTime());
    rs->update();
    rs->close();
}

std::function<void(db::Database&)>& openedHook()
{
    static std::function<void(db::Database&)> hook;
    return hook;
}

QString extensionOf(const QString& fileName)
{
    const int dot = fileName.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QString() : fileName.mid(dot).toUpper();
}

} // namespace

void setCatalogueOpenedHook(std::function<void(db::Database&)> hook)
{
    openedHook() = std::move(hook);
}

int compareVersionText(const QString& a, const QString& b)
{
    const int c = QString::compare(a, b, Qt::CaseSensitive);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

QString catalogueFileName(const QString& chosen)
{
    if (chosen.right(4).toUpper() == kCatalogueExtension.toUpper())
        return chosen;
    return chosen + kCatalogueExtension;
}

void createCatalogueFile(const QString& path)
{
    auto db = db::Database::create(path);
    try {
        for (const db::TableDef& t : catalogueTables())
            db->createTable(t);
        addVersionRow(*db, kNewCatalogueVersion);
        db->close();
    } catch (...) {
        // A file that never became a catalogue is not left behind.
        db->close();
        QFile::remove(path);
        QFile::remove(path + QStringLiteral("-wal"));
        QFile::remove(path + QStringLiteral("-shm"));
        throw;
    }
}

QString newCatalogue(const QString& chosenPath)
{
    const QString path = catalogueFileName(chosenPath);
    try {
        createCatalogueFile(path);
    } catch (const db::DbError& e) {
        if (e.number() == db::err::DatabaseExists)
            dialogs().msgBox(Translate(QStringLiteral("Der Datenbankname ist schon vorhanden!")),
                             platform::vbExclamation, QStringLiteral("Error"));
        else
            dialogs().msgBox(Translate(QStringLiteral("Fehler: ")) + e.description(),
                             platform::vbCritical, QStringLiteral("Error"));
        return {};
    }
    return path;
}

QString CreateCatalogue()
{
    const QString chosen = dialogs().saveFile(Translate(QStringLiteral("Neue Datenbank erstellen")),
                                              Translate(QStringLiteral("Datenbank")) +
                                                  QStringLiteral("|*") + kCatalogueExtension,
                                              app::gDatabasePath);
    if (chosen.isEmpty())
        return {};
    app::gDialogPath = QFileInfo(chosen).absolutePath();
    return newCatalogue(chosen);
}

bool OpenCatalogueFile(QString& path, platform::Progress& progress)
{
    std::unique_ptr<db::Database> db;
    try {
        db = db::Database::open(path);
        QString version;
        {
            auto rs = db->openRecordset(
                QStringLiteral("Select * From Config where tItem='Version' order by ID desc"),
                db::RecordsetType::Dynaset);
            if (!rs->eof())
                version = rs->value(QStringLiteral("mConfig")).toString();
        }
        if (compareVersionText(version, app::programVersion()) > 0) {
            dialogs().msgBox(
                Translate(QStringLiteral("Please update the Vellumdock to run this database!")),
                platform::vbCritical);
            return false;
        }
        if (compareVersionText(version, kNewCatalogueVersion) < 0) {
            // The whole upgrade lands, or nothing of it.
            db->beginTrans();
            try {
                const QString recorded = upgradeCatalogue(*db, version, progress);
                if (!recorded.isEmpty())
                    addVersionRow(*db, recorded);
                db->commitTrans();
            } catch (...) {
                db->rollback();
                throw;
            }
        }
    } catch (const db::DbError& e) {
        dialogs().msgBox(Translate(QStringLiteral("Dies ist keine Vellumdock-Datenbank: ")) + path +
                             QLatin1Char('\n') + e.description(),
                         platform::vbCritical);
        return false;
    }
    // Searches on the files of a large catalogue need the planner to know its tables.
    db::refreshPlannerStatistics(*db);
    if (openedHook())
        openedHook()(*db);
    CloseCatalogue();
    app::gDB = std::move(db);
    return true;
}

void CloseCatalogue()
{
    if (app::gDB) {
        app::gDB->close();
        app::gDB.reset();
    }
}

QString upgradeCatalogue(db::Database& db, const QString& version, platform::Progress& progress)
{
    using db::FieldDef;
    using db::IndexDef;
    namespace type = db::type;
    const QString category = QStringLiteral("Category");
    const QString files = QStringLiteral("C64Files");
    auto index = [](const char* name, const char* field) {
        return IndexDef{QLatin1String(name), {QLatin1String(field)}, false, false};
    };
    QString recorded;
    if (compareVersionText(version, QStringLiteral("2")) < 0)
        db.appendField(category, FieldDef{QStringLiteral("tUnpackPath"), type::Text, 255});
    if (compareVersionText(version, QStringLiteral("3.0")) < 0) {
        db.appendField(files, FieldDef{QStringLiteral("GB_ID"), type::Long});
        db.createIndex(files, index("C4", "GB_ID"));
        db.appendField(category, FieldDef{QStringLiteral("GB_ID"), type::Long});
        db.createIndex(category, index("C5", "GB_ID"));
    }
    if (compareVersionText(version, QStringLiteral("3.1")) < 0) {
        db.appendField(category, FieldDef{QStringLiteral("iFileType"), type::Integer});
        db.createIndex(category, index("C6", "iFileType"));
        db.appendField(files, FieldDef{QStringLiteral("tsLastStarted"), type::Date});
        db.appendField(files, FieldDef{QStringLiteral("lStartCount"), type::Long});
        db.createIndex(files, index("C5", "tsLastStarted"));
        db.createIndex(files, index("C6", "lStartCount"));
        migrateFileTypes(db, progress);
        recorded = QStringLiteral("3.1");
    }
    if (compareVersionText(version, QStringLiteral("3.4")) < 0) {
        db.appendField(category, FieldDef{QStringLiteral("tHash"), type::Text, 100});
        db.appendField(category, FieldDef{QStringLiteral("tsLastStarted"), type::Date});
        db.appendField(category, FieldDef{QStringLiteral("lStartCount"), type::Long});
        db.createIndex(category, index("C7", "tsLastStarted"));
        db.createIndex(category, index("C8", "lStartCount"));
        migrateStartCounts(db, progress);
        recorded = QStringLiteral("3.4");
    }
    return recorded;
}

void migrateFileTypes(db::Database& db, platform::Progress& progress)
{
    // Catalogues of that age knew the file types only by the order of the start extensions.
    const QStringList extensions = kStartExtensions.split(QLatin1Char(';'));
    auto rs = db.openRecordset(QStringLiteral("Select tFile,iFileType from Category where iType=1"),
                               db::RecordsetType::Dynaset);
    progress.setStatus(QStringLiteral("3.0"));
    qint64 done = 0;
    while (!rs->eof()) {
        const int pos = extensions.indexOf(extensionOf(rs->value(0).toString()));
        if (pos >= 0) {
            rs->edit();
            rs->setValue(QStringLiteral("iFileType"), pos + 1);
            rs->update();
        }
        rs->moveNext();
        if (++done % 200 == 0) {
            progress.setValue(done);
            progress.yield();
        }
    }
}

void migrateStartCounts(db::Database& db, platform::Progress& progress)
{
    auto rs = db.openRecordset(
        QStringLiteral("Select tsLastStarted,lStartCount,Category_File from C64Files where not "
                       "isNull(lStartCount) order by Category_File,tsLastStarted desc"),
        db::RecordsetType::Snapshot);
    progress.setStatus(QStringLiteral("3.4"));
    qint64 done = 0;
    while (!rs->eof()) {
        const QVariant file = rs->value(2);
        const QVariant latest = rs->value(0);
        qint64 sum = 0;
        while (!rs->eof() && rs->value(2) == file) {
            sum += rs->value(1).toLongLong();
            rs->moveNext();
            ++done;
        }
        if (file.isNull())
            continue;
        const QString date =
            latest.isNull() ? QStringLiteral("Null") : FormatDateLiteral(latest.toDateTime());
        db.execute(QStringLiteral("Update Category Set lStartCount=") + QString::number(sum) +
                   QStringLiteral(",tsLastStarted=") + date + QStringLiteral(" where ID=") +
                   file.toString());
        progress.setValue(done);
        progress.yield();
    }
}

bool CompactCatalogue()
{
    const QString path = app::gDatabasePath;
    const int dot = path.lastIndexOf(QLatin1Char('.'));
    const QString stem = dot < 0 || dot < path.lastIndexOf(QLatin1Char('/'))
                             ? path + QLatin1Char('.')
                             : path.left(dot + 1);
    const QString work = stem + QStringLiteral("MDR");
    const QString backup = stem + QStringLiteral("OLD");
    try {
        if (QFile::exists(work) && !QFile::remove(work))
            throw db::DbError(db::err::Engine, QStringLiteral("Could not delete '%1'.").arg(work));
        db::compactDatabase(path, work);
        QFile::setPermissions(path,
                              QFile::permissions(path) | QFile::WriteOwner | QFile::ReadOwner);
        if (QFile::exists(backup) && !QFile::remove(backup))
            throw db::DbError(db::err::Engine,
                              QStringLiteral("Could not delete '%1'.").arg(backup));
        if (!QFile::rename(path, backup))
            throw db::DbError(db::err::Engine,
                              QStringLiteral("Could not rename '%1' to '%2'.").arg(path, backup));
        if (!QFile::rename(work, path))
            throw db::DbError(db::err::Engine,
                              QStringLiteral("Could not rename '%1' to '%2'.").arg(work, path));
    } catch (const db::DbError& e) {
        dialogs().msgBox(QStringLiteral("CompactDB-Error: ") + e.description(), platform::vbOKOnly,
                         QString());
        return false;
    }
    return true;
}

} // namespace vd::catalogue
