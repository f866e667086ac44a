#pragma once
// The work of the batch window when it adds a folder (mode 1) or one file (mode 5): the counts
// before and after, the walk of the folder, the result list and the result lines. The window
// and the command line drive this same code; status and Cancel reach it through a Progress,
// the result list through the resultLine signal.
//
// The writes of a batch are grouped into transactions that are committed at least every half
// second and at the end, so a crash loses at most that last half second and never damages
// the catalogue.

#include "platform/Progress.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

namespace vd::import {

class clsFileManager;

constexpr int kModeAddFolder = 1;
constexpr int kModeChanged = 4; // the answer to the caller: the catalogue changed
constexpr int kModeAddFile = 5;

struct BatchResult
{
    int iMode = 0;           // the mode run, or kModeChanged when entries were added or removed
    qint64 lResultID = 0;    // mode 5: the LoadFile result
    qint64 filesSeen = 0;    // mode 1: the files the walk met
    QStringList resultLines; // added files, added entries, what was searched
    bool cancelled = false;
    QString failure; // a database fault that ended the batch early, "" when none
    qint64 elapsedMs = 0;

    // The result lines joined by line breaks, as the window's result text.
    QString sResultText() const { return resultLines.join(QLatin1Char('\n')); }
};

class ImportBatch : public QObject
{
    Q_OBJECT

public:
    ImportBatch(clsFileManager& fileManager, platform::Progress& progress = platform::noProgress());
    ~ImportBatch() override;

    // Runs mode 1 (sParam a folder) or mode 5 (sParam a file).
    BatchResult run(int iMode, const QString& sParam);

    // Walks a folder recursively in name order and loads each file; returns the files seen.
    // Subfolders whose names begin with a dot are left out; a folder met again through a link
    // is not walked twice.
    qint64 ScanFolder(const QString& sFolder);

signals:
    // A row of the result list: type -1 a plain line, any other type the iFileType of a file
    // just added. Status texts go to the Progress.
    void resultLine(const QString& text, int type);

private:
    void onMessage(const QString& text, int type);
    qint64 loadOne(const QString& name, const QString& path, int flags);
    void beginTransaction();
    void commitIfDue();
    void endTransaction();

    clsFileManager& m_fm;
    platform::Progress& m_progress;
    int m_flags = 0;
    bool m_cancelled = false;
    QSet<QString> m_visited; // canonical folders walked
    QElapsedTimer m_sinceCommit;
    bool m_inTransaction = false;
};

} // namespace vd::import
