// The modes of the batch window that are not imports or the check: compacting (3), the rows of
// an upgrade (6), the GameBase connection (7), MD5 sums (9) and directory exports (10).

#include "import/BatchProcess.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "catalogue/Catalogue.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseConnect.h"
#include "import/BatchTransaction.h"
#include "import/clsFileManager.h"
#include "import/FileHash.h"
#include "platform/Files.h"

#include <QFile>
#include <QFileInfo>

namespace vd::import {

using app::Translate;
using catalogue::ValueText;

namespace {

// The upgrade's own loops move the bar and yield; the label keeps "Datenbank wird
// aktualisiert..." and nothing can be cancelled.
class UpgradeProgress : public platform::Progress
{
public:
    explicit UpgradeProgress(platform::Progress& target) : m_target(target) {}
    void setRange(qint64 maximum) override { m_target.setRange(maximum); }
    void setValue(qint64 value) override { m_target.setValue(value); }
    void yield() override { m_target.yield(); }

private:
    platform::Progress& m_target;
};

qint64 countOf(db::Database& db, const QString& statement)
{
    const auto rs = db.openRecordset(statement, db::RecordsetType::ForwardOnly);
    return rs->eof() ? 0 : rs->value(0).toLongLong();
}

bool hasDirectory(int fileType)
{
    return fileType == catalogue::kFileD64 || fileType == catalogue::kFileD71 ||
           fileType == catalogue::kFileG64 || fileType == catalogue::kFileD81;
}

QString filesText(qint64 count)
{
    return Translate(QStringLiteral("Dateien:")) + QLatin1Char(' ') + QString::number(count);
}

} // namespace

void BatchProcess::runCompact()
{
    if (catalogue::CompactCatalogue())
        sResultText = Translate(QStringLiteral("Datenbank wurde erfolgreich komprimiert!"));
    else
        failure = QStringLiteral("CompactDB-Error"); // the message was shown by the compaction
}

void BatchProcess::runUpgrade()
{
    db::Database* database = upgradeDatabase ? upgradeDatabase : app::gDB.get();
    if (!database)
        return;
    UpgradeProgress progress(m_report);
    if (sParam == QLatin1String("3.0")) {
        progress.setRange(
            countOf(*database, QStringLiteral("Select Count(ID) from Category where iType=1")));
        catalogue::migrateFileTypes(*database, progress);
    } else if (sParam == QLatin1String("3.4")) {
        progress.setRange(countOf(
            *database,
            QStringLiteral("Select Count(ID) from C64Files where not isNull(lStartCount)")));
        catalogue::migrateStartCounts(*database, progress);
    }
}

void BatchProcess::runConnectGameBase()
{
    // Nothing happens without a GameBase; opening it reports its own failure.
    if (!gamebase::OpenGameBase(true)) {
        failure = QStringLiteral("No GameBase");
        return;
    }
    const gamebase::ConnectResult r = gamebase::ConnectToGameBase(m_fm, m_report);
    sResultText = r.sResultText();
    cancelled = r.cancelled;
    if (r.changed)
        m_changed = true;
    if (!r.failure.isEmpty())
        reportFailure(r.failure);
}

void BatchProcess::runMd5()
{
    const qint64 total = selectedIds.size();
    m_report.setRange(total);
    qint64 count = 0;
    BatchTransaction transaction;
    for (qint64 i = 0; i < total; ++i) {
        tableStep(i, total);
        if (stopRequested())
            break;
        const auto rs = app::gDB->openRecordset(QStringLiteral("Select * From Category where ID=") +
                                                    QString::number(selectedIds[i]),
                                                db::RecordsetType::Dynaset);
        if (rs->eof() || !rs->value(QStringLiteral("tHash")).isNull())
            continue;
        const QString name = ValueText(rs->value(QStringLiteral("tFile")));
        const QString hash = GetFileHash(m_fm, name, ValueText(rs->value(QStringLiteral("tPath"))),
                                         ValueText(rs->value(QStringLiteral("tUnpackPath"))));
        if (hash.isEmpty())
            continue;
        rs->edit();
        rs->setValue(QStringLiteral("tHash"), hash);
        rs->update();
        AddResultLine(name + QStringLiteral(": ") + hash,
                      rs->value(QStringLiteral("iFileType")).toInt());
        ++count;
        transaction.commitIfDue();
    }
    transaction.finish();
    m_report.setValue(total);
    sResultText = filesText(count);
    if (count > 0)
        m_changed = true;
}

void BatchProcess::runExportDirs()
{
    const qint64 total = selectedIds.size();
    m_report.setRange(total);
    int written = 0;
    for (qint64 i = 0; i < total; ++i) {
        tableStep(i, total);
        if (stopRequested())
            break;
        const int type =
            catalogue::GetDbValue(QStringLiteral("iFileType"), QStringLiteral("Category"),
                                  QStringLiteral("ID=") + QString::number(selectedIds[i]))
                .toInt();
        if (hasDirectory(type))
            exportDirectory(selectedIds[i], written);
    }
    m_report.setValue(total);
    sResultText = filesText(written);
}

bool BatchProcess::exportDirectory(qint64 id, int& written)
{
    const auto rs = app::gDB->openRecordset(
        QStringLiteral("Select F.tProgram,F.tExtension,F.lSize,C.tCategory,C.tPath From C64Files "
                       "as F Left Join Category as C on F.Category_File=C.ID where "
                       "F.Category_File=") +
            QString::number(id) + QStringLiteral(" order by lIndex"),
        db::RecordsetType::Snapshot);
    if (rs->eof())
        return false;
    const QString category = ValueText(rs->value(3));
    QString folder = sParam;
    if (folder.isEmpty())
        folder = QFileInfo(ValueText(rs->value(4))).absolutePath();
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    if (!platform::FolderExists(folder)) {
        AddResultLine(Translate(QStringLiteral("Datei nicht gefunden")) + QStringLiteral(": ") +
                          folder,
                      kMessageResult);
        return false;
    }
    QStringList lines;
    for (; !rs->eof(); rs->moveNext())
        lines << ValueText(rs->value(2)) + QLatin1Char('\t') + ValueText(rs->value(0)) +
                     QLatin1Char('\t') + ValueText(rs->value(1));
    const QString target = folder + category + QStringLiteral(".txt");
    QFile file(target);
    // The names are the container's bytes one to one: written back as the same bytes.
    const QByteArray bytes = lines.join(QLatin1Char('\n')).toLatin1();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(bytes) != bytes.size() || !file.flush()) {
        AddResultLine(target + QStringLiteral(": ") + file.errorString(), kMessageResult);
        return false;
    }
    const int type = catalogue::GetDbValue(QStringLiteral("iFileType"), QStringLiteral("Category"),
                                           QStringLiteral("ID=") + QString::number(id))
                         .toInt();
    AddResultLine(target + QStringLiteral(": "), type);
    ++written;
    return true;
}

} // namespace vd::import
