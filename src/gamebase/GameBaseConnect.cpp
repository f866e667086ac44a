#include "gamebase/GameBaseConnect.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "gamebase/GameBase.h"
#include "import/BatchTransaction.h"
#include "import/clsFileManager.h"
#include "platform/Files.h"
#include "platform/Progress.h"

#include <exception>
#include <QFileInfo>

namespace vd::gamebase {

namespace {

// The status, the bar and the message pump every 5 files, never each one.
constexpr qint64 kYieldEveryRows = 5;

// Both counts compare GB_ID with Null, which Jet never finds true: they stay 0, and with them
// the growth that the result line reports and the change the caller is told of. Kept so.
const QString kLinkedEntriesWhere = QStringLiteral("GB_ID<>NULL And iType=1 And iFileType<>10");
const QString kLinkedFilesWhere = QStringLiteral("GB_ID<> NULL AND iType=1");

qint64 countOf(const QString& where)
{
    return catalogue::GetDbValue(QStringLiteral("Count (ID)"), QStringLiteral("Category"), where)
        .toLongLong();
}

QStringList unlinkedArchives()
{
    QStringList paths;
    const auto rs = app::gDB->openRecordset(
        QStringLiteral("Select Distinct tPath from Category where iType=1 And isNull(GB_ID) And "
                       "tPath like '*.zip'"),
        db::RecordsetType::Snapshot);
    for (; !rs->eof(); rs->moveNext())
        paths << catalogue::ValueText(rs->value(0));
    rs->close();
    return paths;
}

// ConnectFilesToGB is on for the walk and as it was afterwards, however the walk ends.
class MatchingOn
{
public:
    explicit MatchingOn(import::ImportOptions& options)
        : m_options(options), m_saved(options.ConnectFilesToGB)
    {
        m_options.ConnectFilesToGB = true;
    }
    ~MatchingOn() { m_options.ConnectFilesToGB = m_saved; }
    MatchingOn(const MatchingOn&) = delete;
    MatchingOn& operator=(const MatchingOn&) = delete;

private:
    import::ImportOptions& m_options;
    bool m_saved;
};

// An archive read again as a refreshed one (flags 12): its extraction folder of this run is
// made anew and its members are matched. A file that fails is reported and the walk goes on;
// only a fault of the database engine itself ends it.
void reread(import::clsFileManager& fm, const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    QString reason;
    try {
        fm.LoadFile(name, path, import::kFlagRefresh + import::kFlagRefreshArchives, {}, false, 0);
        return;
    } catch (const db::DbError& e) {
        if (e.number() == db::err::Engine)
            throw;
        reason = e.description();
    } catch (const std::exception& e) {
        reason = QString::fromLocal8Bit(e.what());
    }
    fm.RaiseMessage(QStringLiteral("Fehler in der Datei: '@1'"), name,
                    QStringLiteral(" (") + reason + QLatin1Char(')'));
}

bool walk(import::clsFileManager& fm, platform::Progress& progress, const QStringList& paths)
{
    const qint64 total = paths.size();
    progress.setRange(total);
    import::BatchTransaction transaction;
    for (qint64 done = 0; done < total;) {
        const QString& path = paths[done];
        if (platform::FileExists(path))
            reread(fm, path);
        transaction.commitIfDue();
        if (++done % kYieldEveryRows == 0) {
            progress.setValue(done);
            progress.setStatus(app::Translate(QStringLiteral("Dateien")) + QStringLiteral(": ") +
                               QString::number(done) + QLatin1Char('/') + QString::number(total));
            progress.yield();
        }
        if (progress.cancelled())
            return false;
    }
    progress.setValue(total);
    transaction.finish();
    return true;
}

} // namespace

ConnectResult ConnectToGameBase(import::clsFileManager& fm, platform::Progress& progress)
{
    ConnectResult result;
    if (!app::gDB || !gGB) {
        result.failure = QStringLiteral("No catalogue or no GameBase is open.");
        return result;
    }
    fm.InitSearch(false, false, {}, 0);
    const qint64 entriesBefore = countOf(kLinkedEntriesWhere);
    const qint64 filesBefore = countOf(kLinkedFilesWhere);
    try {
        const MatchingOn matching(fm.options);
        const import::clsFileManager::BatchScope batch(fm);
        const QStringList paths = unlinkedArchives();
        result.filesSeen = paths.size();
        result.cancelled = !walk(fm, progress, paths);
    } catch (const db::DbError& e) {
        result.failure = e.description();
        if (!e.statement().isEmpty())
            result.failure += QLatin1Char('\n') + e.statement();
    }
    const qint64 entriesAfter = countOf(kLinkedEntriesWhere);
    const qint64 filesAfter = countOf(kLinkedFilesWhere);
    result.changed = filesAfter > filesBefore;
    result.resultLines << app::Translate(QStringLiteral("Datenbank wurde überprüft:"))
                       << app::Translate(QStringLiteral("Hinzugefügte C64-Files: ")) +
                              QString::number(entriesAfter - entriesBefore) + QLatin1Char('/') +
                              QString::number(filesAfter - filesBefore);
    return result;
}

} // namespace vd::gamebase
