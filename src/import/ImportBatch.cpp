#include "import/ImportBatch.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "catalogue/Database.h"
#include "catalogue/PlannerStatistics.h"
#include "formats/FileBytes.h"
#include "gamebase/GameBase.h"
#include "import/clsFileManager.h"

#include <QDir>
#include <QFileInfo>

namespace vd::import {

namespace {

constexpr qint64 kCommitIntervalMs = 500;

QString absolute(const QString& path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

} // namespace

ImportBatch::ImportBatch(clsFileManager& fileManager, platform::Progress& progress)
    : m_fm(fileManager), m_progress(progress)
{
    connect(&m_fm, &clsFileManager::ShowMessage, this, &ImportBatch::onMessage);
}

ImportBatch::~ImportBatch()
{
    disconnect(&m_fm, nullptr, this, nullptr);
}

void ImportBatch::onMessage(const QString& text, int type)
{
    if (type == kMessageStatus)
        m_progress.setStatus(text);
    else
        emit resultLine(text, type);
}

BatchResult ImportBatch::run(int iMode, const QString& sParam)
{
    BatchResult result;
    result.iMode = iMode;
    m_cancelled = false;
    m_visited.clear();
    const qint64 entriesBefore = m_fm.lC64FileCount;
    const qint64 filesBefore = m_fm.lCategoryCount;
    m_fm.InitSearch(false, false, {}, 0);
    // Archives are matched with the GameBase: it is connected now (silently when no file is
    // set).
    if (m_fm.options.ConnectFilesToGB)
        gamebase::OpenGameBase(false);
    m_flags = 0;
    if (m_fm.options.RefreshC64Files)
        m_flags = kFlagRefresh + (m_fm.options.SerachArchivFiles ? kFlagRefreshArchives : 0);

    QElapsedTimer clock;
    clock.start();
    const clsFileManager::BatchScope batch(m_fm);
    QString searched;
    const QString path = absolute(sParam);
    try {
        beginTransaction();
        if (iMode == kModeAddFile) {
            searched = app::Translate(QStringLiteral("Durchsuchte Datei: ")) + path;
            result.lResultID = loadOne(QFileInfo(path).fileName(), path, m_flags + kFlagNamedFile);
        } else {
            m_flags += kFlagImportList;
            result.filesSeen = ScanFolder(path);
            searched = app::Translate(QStringLiteral("Durchsuchte Dateien: ")) +
                       QString::number(result.filesSeen);
        }
        endTransaction();
    } catch (const db::DbError& e) {
        result.failure = e.description();
        if (!e.statement().isEmpty())
            result.failure += QLatin1Char('\n') + e.statement();
        // The engine's own words name the fault; the line before them says what it means
        // for the user's catalogue.
        if (app::gDB && app::gDB->isReadOnly())
            result.failure = app::Translate(QStringLiteral(
                                 "Die Datenbank ist schreibgeschützt und kann nur gelesen "
                                 "werden: ")) +
                             app::gDatabasePath + QStringLiteral("\n\n") + result.failure;
        else if (e.number() == db::err::Engine)
            result.failure =
                app::Translate(QStringLiteral(
                    "Die Datenbank konnte nicht geschrieben werden, der Import "
                    "wurde beendet. Was bisher aufgenommen wurde, bleibt erhalten: ")) +
                app::gDatabasePath + QStringLiteral("\n\n") + result.failure;
        // What was written stays, as far as the engine still allows it.
        try {
            endTransaction();
        } catch (const db::DbError&) {
            m_inTransaction = false;
        }
    }
    result.elapsedMs = clock.elapsed();
    result.cancelled = m_cancelled;

    m_fm.CountFiles();
    if (m_fm.lC64FileCount != entriesBefore) {
        result.iMode = kModeChanged;
        // The planner's picture of a catalogue that grew is brought up to date, so that
        // searches after a large import don't wait for the next opening.
        if (app::gDB)
            db::refreshPlannerStatistics(*app::gDB);
    }
    result.resultLines << app::Translate(QStringLiteral("Hinzugefügte Dateien: ")) +
                              QString::number(m_fm.lCategoryCount - filesBefore)
                       << app::Translate(QStringLiteral("Hinzugefügte C64-Files: ")) +
                              QString::number(m_fm.lC64FileCount - entriesBefore);
    if (!searched.isEmpty())
        result.resultLines << searched;
    return result;
}

qint64 ImportBatch::ScanFolder(const QString& sFolder)
{
    QString folder = sFolder;
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    const QString real = QFileInfo(folder).canonicalFilePath();
    if (real.isEmpty() || m_visited.contains(real))
        return 0;
    m_visited.insert(real);
    m_progress.setStatus(folder);
    emit resultLine(folder, kMessageResult);
    m_progress.yield();

    qint64 count = 0;
    const QFileInfoList entries = QDir(folder).entryInfoList(
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo& info : entries) {
        const QString name = info.fileName();
        if (info.isDir()) {
            if (!name.startsWith(QLatin1Char('.')))
                count += ScanFolder(folder + name);
        } else {
            ++count;
            if (loadOne(name, folder + name, m_flags) != 0) {
                m_progress.setStatus(folder);
                m_progress.yield();
            }
            commitIfDue();
        }
        if (m_cancelled || m_progress.cancelled()) {
            m_cancelled = true;
            break;
        }
    }
    return count;
}

qint64 ImportBatch::loadOne(const QString& name, const QString& path, int flags)
{
    // A file that fails is reported and the batch goes on; only a fault of the database
    // engine itself ends it.
    QString reason;
    try {
        return m_fm.LoadFile(name, path, flags, {}, false, 0);
    } catch (const db::DbError& e) {
        // A catalogue that can't be written ends the batch as a fault of the engine does.
        if (IsCatalogueFault(e))
            throw;
        reason = e.description();
    } catch (const std::exception& e) {
        reason = QString::fromLocal8Bit(e.what());
    }
    m_fm.RaiseMessage(QStringLiteral("Fehler in der Datei: '@1'"), name,
                      QStringLiteral(" (") + reason + QLatin1Char(')'));
    return 0;
}

void ImportBatch::beginTransaction()
{
    if (!app::gDB || m_inTransaction)
        return;
    app::gDB->beginTrans();
    m_inTransaction = true;
    m_sinceCommit.start();
}

void ImportBatch::endTransaction()
{
    if (!m_inTransaction)
        return;
    m_inTransaction = false;
    app::gDB->commitTrans();
}

void ImportBatch::commitIfDue()
{
    if (m_inTransaction && m_sinceCommit.elapsed() >= kCommitIntervalMs) {
        endTransaction();
        beginTransaction();
    }
}

} // namespace vd::import
