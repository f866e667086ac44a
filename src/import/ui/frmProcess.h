#pragma once
// frmProcess, the window in which every long operation runs. The caller sets the mode and its
// parameter and shows the window modally; the work starts in the first activation and keeps
// the window alive by yielding to the event loop at fixed points. Cancel only sets a
// flag that the work reads at its next row. When the window has closed, the caller reads the
// mode back: kModeChanged says that the catalogue changed and the views must be read anew.
//
// The work itself is BatchProcess; this window shows its rows, labels and bar.

#include "import/BatchProcess.h"

#include <functional>
#include <memory>
#include <QDialog>
#include <QHash>
#include <QIcon>

class QLabel;
class QProgressBar;
class QPushButton;
class QTableView;

namespace vd::import {

class ResultListModel;

class frmProcess : public QDialog, private BatchReport
{
    Q_OBJECT

public:
    // Columns of lstResult; Key, File, Path and OrgType exist, hidden, in mode 2 only.
    enum Column
    {
        colName = 0,
        colFiletyp,
        colKey,
        colFile,
        colPath,
        colOrgType
    };
    static constexpr int kFiletypWidth = 64;
    // Every how many rows the list shows what was added.
    static constexpr int kRedrawRows = 10;

    explicit frmProcess(clsFileManager& fileManager, QWidget* parent = nullptr);
    ~frmProcess() override;

    // Properties, set before the window is shown.
    void setMode(int mode) { m_process.iMode = mode; }
    void setParam(const QString& param) { m_process.sParam = param; }
    void setSelectedIds(const QList<qint64>& ids) { m_process.selectedIds = ids; }
    void setUpgradeDatabase(db::Database* database) { m_process.upgradeDatabase = database; }
    void setClock(std::function<qint64()> clock) { m_process.clock = std::move(clock); }
    // What cmdNewPath asks; by default frmNewPath. Arguments: the folders of the missing files;
    // answers the old path (may be empty) and the new folder; false when the user cancelled.
    using NewPathAsker = std::function<bool(const QStringList&, QString&, QString&)>;
    void setNewPathAsker(NewPathAsker asker) { m_askNewPath = std::move(asker); }

    // Read back by the caller.
    int iMode() const { return m_process.iMode; }
    QString sResultText() const { return m_process.CallerText(); }
    qint64 lResultID() const { return m_process.lResultID; }
    qint64 lMissing() const { return m_process.lMissing; }
    bool bCancel() const { return m_cancel; }
    const BatchProcess& process() const { return m_process; }

    // Shows the window modally for one operation and returns the mode it ends with.
    struct Outcome
    {
        int iMode = 0;
        QString sResultText;
        qint64 lResultID = 0;
    };
    static Outcome Run(clsFileManager& fileManager, QWidget* parent, int mode, const QString& param,
                       const QList<qint64>& selectedIds = {});

    // The upgrade of a catalogue runs inside its opening: this progress shows the window of
    // mode 6 ("Datenbank wird aktualisiert...", a bar, no Cancel, not closable) from the
    // upgrade's first step until it is destroyed. Nothing shows when no upgrade runs.
    static std::unique_ptr<platform::Progress> UpgradeProgress(clsFileManager& fileManager,
                                                               QWidget* parent);

    // The controls, as the tests look at them.
    QLabel* lblProcess = nullptr;
    QLabel* lblStatus = nullptr;
    QProgressBar* prgProcess = nullptr;
    QTableView* lstResult = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdDelete = nullptr;
    QPushButton* cmdNewPath = nullptr;

    // Whether the first activation has run its work.
    bool workDone() const { return m_workDone; }

public slots:
    void reject() override; // Esc: closes the way the title bar's button does

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    friend class UpgradeDisplay;
    void Form_Load();
    void Form_Activate();
    bool Form_QueryUnload();
    void unload();
    void cmdCancel_Click();
    void cmdDelete_Click();
    void cmdNewPath_Click();
    void SetStatusText(const QString& text);
    void setupList();
    void flushRows();
    void afterMissingWork(const QString& status);
    QIcon iconFor(int type) const;
    bool askNewPath(const QStringList& oldPaths, QString& oldPath, QString& newPath);

    // BatchReport
    void setStatus(const QString& text) override { SetStatusText(text); }
    void setRange(qint64 maximum) override;
    void setValue(qint64 value) override;
    bool cancelled() const override { return m_cancel; }
    void yield() override;
    void rowAdded(qsizetype index, const ResultRow& row) override;
    void rowChanged(qsizetype index, const ResultRow& row) override;

    BatchProcess m_process;
    int m_startMode = 0;
    bool bFirstActivate = true;
    bool m_loaded = false;
    bool m_cancel = false; // bCancel
    bool m_working = false;
    bool m_workDone = false;
    bool m_forceClose = false;
    bool m_passive = false; // shows work that runs elsewhere (the upgrade in the opening)
    bool m_unloading = false;
    ResultListModel* m_model = nullptr;
    NewPathAsker m_askNewPath;
    mutable QHash<int, QIcon> m_icons; // by Filetyp; kNoIcon holds the icon of a file
};

} // namespace vd::import
