#pragma once
// Fetching the archives of selected games over HTTP into the download folder, one file at a
// time, and cataloguing each at once. The transfer itself and the keyboard belong to the
// window; this is the command's walk over the rows with its targets, folders, messages and
// counters.

#include <QString>
#include <QVector>

namespace vd::db {
class Database;
}
namespace vd::import {
class clsFileManager;
}

namespace vd::gamebase {

// What the window gives the command.
class DownloadHost
{
public:
    virtual ~DownloadHost() = default;
    // One blocking transfer of `url` into `target`; true when the file was saved.
    virtual bool DownloadFile(const QString& url, const QString& target) = 0;
    // Esc held down since the last look (seen between files).
    virtual bool escapePressed() = 0;
    // The status panel "Msg".
    virtual void setStatus(const QString& text) = 0;
    // One existing target of a single row without import: StartGame with an empty profile.
    virtual void startGame() = 0;
    virtual void setBusy(bool busy) { (void)busy; }
};

// The two built-in fall-back addresses, scrambled with XorHexText. Both are empty: nothing is
// contacted until the user sets GBDownloadUrl (or a test puts a server here).
extern QString gDownloadFallbackFirst;
extern QString gDownloadFallbackSecond;
// The key of the scrambling.
inline const QString kDownloadUrlKey = QStringLiteral("V7d");

struct DownloadRequest
{
    QVector<qint64> gameIds; // GA_ID of the selected rows, in order
    bool askPath = false;
    bool importNow = false;
    QString downloadFolder; // DownloadPath
    bool archivFile = true; // ArchivFile: catalogue what was downloaded
    bool archivOnlyGame = true;
    qint64 startId = 0;  // lStartID of the window
    QString startFolder; // the first folder the save dialog offers
};

// What lives in the window from one run to the next.
struct DownloadState
{
    QString baseUrl;    // GBDownloadUrl, or the fall-back once decoded
    QString lastFolder; // the save dialog's last folder
};

struct DownloadResult
{
    int done = 0;
    int saved = 0;
    bool catalogueChanged = false; // the window's flag 4
    bool ended = false;            // ended early by a message, a cancelled dialog or an error
    qint64 filesAdded = 0;         // Category rows the imports added
    qint64 entriesAdded = 0;       // C64Files rows the imports added
};

// DownloadGames(askPath, importNow). `gb` is the GameBase, `fm` the importer of the catalogue
// (InitCount done). Messages go through the dialog service.
DownloadResult DownloadGames(db::Database& gb, import::clsFileManager& fm,
                             const DownloadRequest& request, DownloadState& state,
                             DownloadHost& host);

} // namespace vd::gamebase
