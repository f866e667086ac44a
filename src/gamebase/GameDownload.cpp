#include "gamebase/GameDownload.h"

#include "app/Settings.h"
#include "app/Translate.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "import/clsFileManager.h"
#include "import/ImportOptions.h"
#include "platform/DialogService.h"

#include <QDir>
#include <QFileInfo>
#include <stdexcept>

namespace vd::gamebase {

QString gDownloadFallbackFirst;
QString gDownloadFallbackSecond;

using app::Translate;

namespace {

QString text(const QVariant& v)
{
    return v.isNull() ? QString() : v.toString();
}

// Why a command ends early: the message was shown already, or none is due.
struct EndCommand
{};

class Run
{
public:
    Run(db::Database& gb, import::clsFileManager& fm, const DownloadRequest& request,
        DownloadState& state, DownloadHost& host)
        : m_gb(gb), m_fm(fm), m_req(request), m_state(state), m_host(host)
    {}

    DownloadResult result;

    void execute()
    {
        m_host.setStatus(QString());
        if (m_state.baseUrl.isEmpty())
            m_state.baseUrl = catalogue::XorHexText(gDownloadFallbackFirst, kDownloadUrlKey, false);
        if (!m_req.downloadFolder.isEmpty() && !m_req.askPath &&
            !QFileInfo(m_req.downloadFolder).isDir()) {
            platform::dialogs().msgBox(Translate(QStringLiteral("Download-Pfad nicht gefunden: ")) +
                                           m_req.downloadFolder,
                                       platform::vbCritical);
            throw EndCommand{};
        }
        m_single = m_req.gameIds.size() == 1;
        for (const qint64 id : m_req.gameIds) {
            if (m_host.escapePressed())
                break;
            ++result.done;
            auto rs = m_gb.openRecordset(
                QStringLiteral("Select Name,Filename,FileToRun,FileNameIndex,Ge_ID From Games "
                               "where GA_ID=") +
                    QString::number(id),
                db::RecordsetType::Snapshot);
            for (; !rs->eof(); rs->moveNext())
                record(id, *rs);
        }
        m_host.setStatus(Translate(QStringLiteral("Neue Dateien: ")) +
                         QString::number(result.saved) + QLatin1Char('/') +
                         QString::number(result.done));
    }

private:
    void record(qint64 id, db::Recordset& rs)
    {
        const QString filename = text(rs.value(QStringLiteral("Filename")));
        if (filename.isEmpty()) {
            if (!m_single)
                return;
            platform::dialogs().msgBox(Translate(QStringLiteral("Keine Download-Datei vorhanden!")),
                                       platform::vbInformation);
            throw EndCommand{};
        }
        const QString target = targetOf(filename);
        bool importIt = false;
        if (QFileInfo::exists(target)) {
            if (m_req.importNow && m_req.startId > 0) {
                m_host.setStatus(target + QStringLiteral(": ") +
                                 Translate(QStringLiteral("Datei ist schon vorhanden")));
            } else if (m_req.importNow) {
                importIt = true;
            } else if (m_single) {
                m_host.startGame();
                throw EndCommand{};
            } else {
                importIt = m_req.startId == 0 && m_req.archivFile;
            }
        } else {
            importIt = fetch(filename, target) && m_req.archivFile;
        }
        if (importIt)
            importFile(id, rs, target);
    }

    // Step 4.3.2: asked through the save dialog, or the download folder and Filename.
    QString targetOf(const QString& filename)
    {
        QString relative = filename;
        relative.replace(QLatin1Char('\\'), QLatin1Char('/'));
        if (!m_req.downloadFolder.isEmpty() && !m_req.askPath)
            return QDir(m_req.downloadFolder).filePath(relative);
        const QString name = QFileInfo(relative).fileName();
        const QString folder =
            m_state.lastFolder.isEmpty() ? m_req.startFolder : m_state.lastFolder;
        QString answer = platform::dialogs().saveFile(Translate(QStringLiteral("Download-Pfad")),
                                                      QFileInfo(name).completeBaseName() +
                                                          QStringLiteral("|*.zip"),
                                                      QDir(folder).filePath(name));
        if (answer.isEmpty())
            throw EndCommand{};
        if (!answer.toUpper().endsWith(QStringLiteral(".ZIP")))
            answer += QStringLiteral(".zip");
        m_state.lastFolder = QFileInfo(answer).absolutePath();
        return answer;
    }

    bool fetch(const QString& filename, const QString& target)
    {
        // One level is made: a missing level above it is a failure of the command.
        const QString folder = QFileInfo(target).absolutePath();
        if (!QFileInfo(folder).isDir() && !QDir().mkdir(folder))
            throw std::runtime_error(
                (Translate(QStringLiteral("Pfad nicht gefunden: ")) + folder).toStdString());
        const QString status = Translate(QStringLiteral("Starte Download...")) +
                               QStringLiteral(" (") +
                               Translate(QStringLiteral("ESC-Taste zum Abbrechen")) +
                               QLatin1Char(' ') + QString::number(result.done) + QLatin1Char('/') +
                               QString::number(m_req.gameIds.size()) + QStringLiteral(") -> ") +
                               QFileInfo(target).fileName();
        m_host.setStatus(status);
        m_host.setBusy(true);
        // The name goes into the address as it stands.
        bool ok = m_host.DownloadFile(m_state.baseUrl + filename, target);
        if (!ok) {
            m_host.setStatus(QStringLiteral("2. ") + status);
            m_state.baseUrl =
                catalogue::XorHexText(gDownloadFallbackSecond, kDownloadUrlKey, false);
            ok = m_host.DownloadFile(m_state.baseUrl + filename, target);
        }
        m_host.setBusy(false);
        if (!ok) {
            m_host.setStatus(Translate(QStringLiteral("Fehler beim Download")));
            return false;
        }
        m_host.setStatus(target + QStringLiteral(": ") +
                         Translate(QStringLiteral("Datei gespeichert")));
        ++result.saved;
        return true;
    }

    void importFile(qint64 id, db::Recordset& rs, const QString& target)
    {
        const qint64 filesBefore = m_fm.lLastCategoryID;
        const qint64 entriesBefore = m_fm.lLastC64FileID;
        m_fm.InitSearch(true, m_req.archivOnlyGame, text(rs.value(QStringLiteral("FileToRun"))),
                        int(app::Val(text(rs.value(QStringLiteral("FileNameIndex"))))) + 1);
        const qint64 loaded = m_fm.LoadFile(QFileInfo(target).fileName(), target,
                                            import::kFlagNamedFile, QString(), false, 0);
        if (loaded <= 0) {
            m_fm.InitSearch(false, false, QString(), 0);
            m_host.setStatus(Translate(QStringLiteral("Datei ist schon vorhanden")) +
                             QStringLiteral(": ") + target);
            return;
        }
        m_fm.SetGBInfos(id, text(rs.value(QStringLiteral("Name"))),
                        qint64(app::Val(text(rs.value(QStringLiteral("Ge_ID"))))));
        m_fm.InitSearch(false, false, QString(), 0);
        result.filesAdded += m_fm.lLastCategoryID - filesBefore;
        result.entriesAdded += m_fm.lLastC64FileID - entriesBefore;
        result.catalogueChanged = true;
        m_host.setStatus(target + QStringLiteral(": ") +
                         Translate(QStringLiteral("Datei gespeichert")));
    }

    db::Database& m_gb;
    import::clsFileManager& m_fm;
    const DownloadRequest& m_req;
    DownloadState& m_state;
    DownloadHost& m_host;
    bool m_single = false;
};

} // namespace

DownloadResult DownloadGames(db::Database& gb, import::clsFileManager& fm,
                             const DownloadRequest& request, DownloadState& state,
                             DownloadHost& host)
{
    Run run(gb, fm, request, state, host);
    try {
        run.execute();
    } catch (const EndCommand&) {
        run.result.ended = true;
        host.setBusy(false);
    } catch (const std::exception& e) {
        run.result.ended = true;
        host.setBusy(false);
        platform::dialogs().msgBox(Translate(QStringLiteral("Download-Error: ")) +
                                   QString::fromStdString(e.what()));
    }
    return run.result;
}

} // namespace vd::gamebase
