#pragma once
// The work of the batch window without the window. Every long operation of the program runs in
// one of its modes: adding a folder or a file, checking the catalogue (with deleting or finding
// again what is missing), compacting, upgrading an old catalogue's rows, MD5 sums, directory
// exports, the GameBase connection. The window and the command line drive this same object;
// the status, the progress bar and Cancel reach it through its BatchReport, and it keeps the
// rows of the result list, so that the window only has to show them.
//
// Each mode yields at fixed points: every 5 rows of a table loop, after every file of a
// folder walk. Cancel is read at the next row. When the catalogue changed, iMode comes back as
// kModeChanged and the caller reads its views anew.

#include "import/ImportBatch.h"
#include "import/ImportOptions.h"

#include <functional>
#include <QList>
#include <QString>
#include <QVector>

namespace vd::db {
class Database;
}

namespace vd::import {

class clsFileManager;

constexpr int kModeCheck = 2;
constexpr int kModeCompact = 3;
constexpr int kModeUpgrade = 6;
constexpr int kModeConnectGameBase = 7;
constexpr int kModeMd5 = 9;
constexpr int kModeExportDirs = 10;

// Filetyp of a result row besides an iFileType and kMessageResult (-1, a plain line).
constexpr int kTypeMissing = 27; // the mark of a catalogued file that is not on disk
constexpr int kTypeDeleted = -2; // a missing file whose rows were deleted
constexpr int kNoIcon = 65535;   // from here on a row has no Filetyp and no icon

// One row of the result list. Key, File, Path and OrgType are set on the rows of missing files
// only (the hidden columns of the check).
struct ResultRow
{
    QString Name;
    int Filetyp = kNoIcon;
    qint64 Key = 0;  // the Category id
    QString File;    // the file name of tPath
    QString Path;    // tPath
    int OrgType = 0; // iFileType, given back when the file is found again
};

// Where a batch shows its work. The Progress part carries the status text (lblProcess), the
// bar, Cancel and the yields; the rows of the result list arrive as they are added or change.
class BatchReport : public platform::Progress
{
public:
    virtual void rowAdded(qsizetype index, const ResultRow& row)
    {
        (void)index;
        (void)row;
    }
    virtual void rowChanged(qsizetype index, const ResultRow& row)
    {
        (void)index;
        (void)row;
    }
};

class BatchProcess
{
public:
    BatchProcess(clsFileManager& fileManager, BatchReport& report);
    ~BatchProcess();
    BatchProcess(const BatchProcess&) = delete;
    BatchProcess& operator=(const BatchProcess&) = delete;

    // Set by the caller before Run.
    int iMode = 0;
    QString sParam; // the folder or file; mode 6 the version to leave; mode 10 the target folder
    QList<qint64> selectedIds; // modes 9 and 10: the Category ids of the selected files
    // Mode 6 works on this database (the one being opened); the others on gDB.
    db::Database* upgradeDatabase = nullptr;
    // Milliseconds of a monotonic clock; the tests set their own.
    std::function<qint64()> clock;

    // Read back after Run.
    qint64 lResultID = 0; // mode 5: the LoadFile result
    QString sResultText;  // the result lines, with their line breaks
    qint64 lMissing = 0;  // mode 2: files not found
    QString failure;      // a fault that ended the work early, "" when none
    bool cancelled = false;

    // The heading of the result list ("Neue Dateien", ...); "" for modes 3 and 6.
    static QString Heading(int mode, const QString& sParam);
    // The first text of lblProcess: the operation of modes 3, 6, 9 and 10, else "".
    static QString InitialStatus(int mode, const QString& sParam);
    // Whether the mode shows the progress bar.
    static bool ShowsProgress(int mode);
    // The duration as lblStatus shows it: "Dauer: 59s", "Dauer: 01:00".
    static QString DurationText(qint64 milliseconds);

    // Form_Load's rows: the options of modes 1, 5 and 7, the operation of modes 9 and 10, then
    // an empty row and the heading with ":".
    void AddOptionLines();
    // The work of the first activation: dispatches the mode. Never throws.
    void Run();
    // lblStatus after the work: the duration of modes 1 and 5, else "Status:" and the result.
    QString StatusText() const;
    // sResultText with its line breaks replaced, as the caller reads it.
    QString CallerText() const;
    // After a check: the missing files may be deleted or looked for elsewhere.
    bool OffersMissing() const { return m_checked && lMissing != 0; }

    // cmdDelete: removes every row still marked missing from the catalogue. Returns the status
    // text ("Nicht gefundene Dateien: " the rest, "Gelöschte Dateien: " the number).
    QString DeleteMissing();
    // cmdNewPath, after frmNewPath: looks for the missing files in `folder` and its subfolders
    // (not those beginning with a dot). With `oldPath` set, a file whose path holds it is
    // sought at that path with `oldPath` replaced by the folder; otherwise by its name. Returns
    // the status text ("Nicht gefundene Dateien: ", "Wiedergefundene Dateien: ").
    QString FindMissingFiles(const QString& folder, const QString& oldPath);
    // The distinct folders of the missing files, offered as old paths.
    QStringList MissingFolders() const;

    // Adds a row: Name = sText, and Filetyp = iType when iType is below kNoIcon.
    void AddResultLine(const QString& sText, int iType);
    const QVector<ResultRow>& rows() const { return m_rows; }
    // The rows the work added (after Form_Load's).
    QVector<ResultRow> workRows() const { return m_rows.mid(m_firstWorkRow); }

private:
    void runImport();
    void CheckCatalogue();
    void rereadFile(qint64 id, const QString& name, const QString& path, const QString& unpack,
                    QString& lastPath);
    void MatchFolder(const QString& folder, const QString& oldPath, qint64& found);
    void runCompact();
    void runUpgrade();
    void runConnectGameBase();
    void runMd5();
    void runExportDirs();
    bool exportDirectory(qint64 id, int& written);
    // The table loops' yield: every 5 rows the bar, "Dateien: n/total" and the messages.
    void tableStep(qint64 done, qint64 total);
    bool stopRequested();
    void changeRow(qsizetype index);
    void addWorkOptions(const ImportOptions& o);
    void reportFailure(const QString& text);

    clsFileManager& m_fm;
    BatchReport& m_report;
    QVector<ResultRow> m_rows;
    qsizetype m_firstWorkRow = 0;
    bool m_timed = false; // modes 1 and 5 take the time
    qint64 m_elapsedMs = 0;
    bool m_checked = false;
    bool m_changed = false; // a mode without counts changed the catalogue
};

} // namespace vd::import
