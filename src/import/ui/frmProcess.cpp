#include "import/ui/frmProcess.h"

#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "import/clsFileManager.h"
#include "import/ui/frmNewPath.h"
#include "import/ui/ResultListModel.h"
#include "platform/DialogService.h"
#include "platform/Files.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QTableView>
#include <QTimer>

namespace vd::import {

using app::Translate;

namespace {

QString okText()
{
    return Translate(QStringLiteral("OK"));
}

QString cancelText()
{
    return Translate(QStringLiteral("Abbrechen"));
}

} // namespace

frmProcess::frmProcess(clsFileManager& fileManager, QWidget* parent)
    : QDialog(parent), m_process(fileManager, *this)
{
    setObjectName(QStringLiteral("frmProcess"));
    setWindowTitle(QStringLiteral("Vellumdock"));
    setModal(true);

    lblProcess = new QLabel(this);
    lblProcess->setObjectName(QStringLiteral("lblProcess"));
    lblProcess->setWordWrap(true);
    prgProcess = new QProgressBar(this);
    prgProcess->setObjectName(QStringLiteral("prgProcess"));
    lstResult = new QTableView(this);
    lstResult->setObjectName(QStringLiteral("lstResult"));
    m_model = new ResultListModel(
        m_process, [this](int type) { return iconFor(type); }, this);
    lstResult->setModel(m_model);
    lstResult->setShowGrid(false);
    lstResult->setWordWrap(false);
    lstResult->setSelectionBehavior(QAbstractItemView::SelectRows);
    lstResult->verticalHeader()->hide();
    lstResult->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    lstResult->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    lblStatus = new QLabel(this);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    cmdNewPath = new QPushButton(Translate(QStringLiteral("Neuer Pfad...")), this);
    cmdNewPath->setObjectName(QStringLiteral("cmdNewPath"));
    cmdDelete = new QPushButton(Translate(QStringLiteral("Löschen")), this);
    cmdDelete->setObjectName(QStringLiteral("cmdDelete"));
    cmdCancel = new QPushButton(cancelText(), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdNewPath);
    buttons->addWidget(cmdDelete);
    buttons->addStretch(1);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblProcess);
    layout->addWidget(prgProcess);
    layout->addWidget(lstResult, 1);
    layout->addWidget(lblStatus);
    layout->addLayout(buttons);

    connect(cmdCancel, &QPushButton::clicked, this, &frmProcess::cmdCancel_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmProcess::cmdDelete_Click);
    connect(cmdNewPath, &QPushButton::clicked, this, &frmProcess::cmdNewPath_Click);
    app::ui::TranslateForm(this, true);
}

frmProcess::~frmProcess()
{
    // The model reads the rows of m_process, which goes before the child widgets do.
    lstResult->setModel(nullptr);
    delete m_model;
}

frmProcess::Outcome frmProcess::Run(clsFileManager& fileManager, QWidget* parent, int mode,
                                    const QString& param, const QList<qint64>& selectedIds)
{
    frmProcess form(fileManager, parent);
    form.setMode(mode);
    form.setParam(param);
    form.setSelectedIds(selectedIds);
    form.exec();
    return Outcome{form.iMode(), form.sResultText(), form.lResultID()};
}

// The window of mode 6 over an upgrade that the opening of a catalogue runs.
class UpgradeDisplay : public platform::Progress
{
public:
    UpgradeDisplay(clsFileManager& fileManager, QWidget* parent) : m_form(fileManager, parent)
    {
        m_form.m_passive = true;
        m_form.setMode(kModeUpgrade);
    }
    ~UpgradeDisplay() override
    {
        if (m_form.isVisible())
            m_form.unload();
    }
    UpgradeDisplay(const UpgradeDisplay&) = delete;
    UpgradeDisplay& operator=(const UpgradeDisplay&) = delete;

    // Each step of the upgrade begins with its status; the bar runs busy until a range comes.
    void setStatus(const QString&) override { showWindow(); }
    void setRange(qint64 maximum) override
    {
        showWindow();
        m_form.setRange(maximum);
    }
    void setValue(qint64 value) override
    {
        showWindow();
        m_form.setValue(value);
    }
    void yield() override { QCoreApplication::processEvents(); }

private:
    void showWindow()
    {
        if (m_form.isVisible())
            return;
        m_form.show();
        m_form.prgProcess->setRange(0, 0);
        QCoreApplication::processEvents();
    }
    frmProcess m_form;
};

std::unique_ptr<platform::Progress> frmProcess::UpgradeProgress(clsFileManager& fileManager,
                                                                QWidget* parent)
{
    return std::make_unique<UpgradeDisplay>(fileManager, parent);
}

void frmProcess::showEvent(QShowEvent* event)
{
    if (!m_loaded)
        Form_Load();
    QDialog::showEvent(event);
    if (bFirstActivate && !m_passive)
        QTimer::singleShot(0, this, &frmProcess::Form_Activate);
}

void frmProcess::Form_Load()
{
    m_loaded = true;
    bFirstActivate = true;
    m_startMode = m_process.iMode;
    cmdDelete->hide();
    cmdNewPath->hide();
    setupList();
    prgProcess->setValue(0);
    prgProcess->setVisible(BatchProcess::ShowsProgress(m_startMode));
    m_process.AddOptionLines();
    flushRows();
    SetStatusText(BatchProcess::InitialStatus(m_startMode, m_process.sParam));
    const bool quiet = m_startMode == kModeCompact || m_startMode == kModeUpgrade;
    if (quiet) {
        // Nothing to list and nothing to cancel: a small window with the label.
        lstResult->hide();
        cmdCancel->hide();
        lblStatus->hide();
        resize(420, sizeHint().height());
    } else {
        resize(640, 460);
    }
}

void frmProcess::setupList()
{
    QStringList headers{Translate(QStringLiteral("Name")), Translate(QStringLiteral("Filetyp"))};
    if (m_startMode == kModeCheck)
        headers << QStringLiteral("Key") << QStringLiteral("File") << QStringLiteral("Path")
                << QStringLiteral("OrgType");
    m_model->setHeaders(headers);
    for (int c = colKey; c < m_model->columnCount(); ++c)
        lstResult->setColumnHidden(c, true);
    QHeaderView* header = lstResult->horizontalHeader();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(colName, QHeaderView::Stretch);
    header->setSectionResizeMode(colFiletyp, QHeaderView::Fixed);
    lstResult->setColumnWidth(colFiletyp, kFiletypWidth);
    // The icon stands at the left although its column is the second.
    header->moveSection(colFiletyp, 0);
}

void frmProcess::Form_Activate()
{
    if (!bFirstActivate || m_working)
        return;
    bFirstActivate = false;
    m_working = true;
    QCoreApplication::processEvents(); // the window is drawn before the work begins
    m_process.Run();
    m_working = false;
    m_workDone = true;
    flushRows();
    if (m_startMode == kModeCompact || m_startMode == kModeUpgrade) {
        unload();
        return;
    }
    SetStatusText(m_process.sResultText);
    lblStatus->setText(m_process.StatusText());
    if (m_process.OffersMissing()) {
        cmdNewPath->show();
        cmdDelete->show();
    }
    // Finished: the one button closes the window. (While the work ran it was Cancel.)
    cmdCancel->setText(okText());
}

void frmProcess::cmdCancel_Click()
{
    const int mode = m_process.iMode;
    if (cmdCancel->text() == okText() || mode == kModeChanged || mode == 0) {
        unload();
        return;
    }
    m_cancel = true;
}

void frmProcess::unload()
{
    m_forceClose = true;
    close();
}

bool frmProcess::Form_QueryUnload()
{
    if (m_forceClose)
        return true;
    if (m_startMode == kModeCompact || m_startMode == kModeUpgrade)
        return false;
    const int mode = m_process.iMode;
    if (cmdCancel->text() != okText() && mode != 0 && mode != kModeChanged) {
        if (!platform::dialogs().yesNo(
                Translate(QStringLiteral("Möchten Sie den Vorgang wirklich abbrechen?"))))
            return false;
        m_cancel = true;
    }
    return true;
}

void frmProcess::closeEvent(QCloseEvent* event)
{
    if (!Form_QueryUnload()) {
        event->ignore();
        return;
    }
    m_unloading = true;
    QDialog::closeEvent(event);
    m_unloading = false;
}

void frmProcess::reject()
{
    if (m_unloading)
        QDialog::reject();
    else
        close();
}

void frmProcess::cmdDelete_Click()
{
    cmdCancel->setText(cancelText());
    cmdDelete->setEnabled(false);
    cmdNewPath->setEnabled(false);
    m_cancel = false;
    m_working = true;
    const QString status = m_process.DeleteMissing();
    m_working = false;
    afterMissingWork(status);
}

void frmProcess::cmdNewPath_Click()
{
    QString oldPath;
    QString newPath;
    if (!askNewPath(m_process.MissingFolders(), oldPath, newPath) ||
        !platform::FolderExists(newPath))
        return;
    cmdCancel->setText(cancelText());
    cmdDelete->setEnabled(false);
    cmdNewPath->setEnabled(false);
    m_cancel = false;
    m_working = true;
    const QString status = m_process.FindMissingFiles(newPath, oldPath);
    m_working = false;
    afterMissingWork(status);
}

bool frmProcess::askNewPath(const QStringList& oldPaths, QString& oldPath, QString& newPath)
{
    if (m_askNewPath)
        return m_askNewPath(oldPaths, oldPath, newPath);
    frmNewPath form(oldPaths, this);
    form.exec();
    if (form.iMode != frmNewPath::kModeConfirmed)
        return false;
    oldPath = form.oldPath();
    newPath = form.newPath();
    return true;
}

void frmProcess::afterMissingWork(const QString& status)
{
    flushRows();
    SetStatusText(status);
    cmdCancel->setText(okText());
    // What is still missing may be tried again.
    const bool more = m_process.lMissing > 0;
    cmdDelete->setEnabled(more);
    cmdNewPath->setEnabled(more);
}

void frmProcess::SetStatusText(const QString& text)
{
    lblProcess->setText(text);
}

void frmProcess::setRange(qint64 maximum)
{
    prgProcess->setRange(0, int(std::clamp<qint64>(maximum, 0, INT_MAX)));
}

void frmProcess::setValue(qint64 value)
{
    prgProcess->setValue(int(std::clamp<qint64>(value, 0, prgProcess->maximum())));
}

void frmProcess::yield()
{
    QCoreApplication::processEvents();
}

QIcon frmProcess::iconFor(int type) const
{
    // One icon object per kind: each new one would decode its picture again when painted.
    if (m_icons.isEmpty()) {
        m_icons.insert(kMessageResult, style()->standardIcon(QStyle::SP_MessageBoxInformation));
        m_icons.insert(kTypeMissing, style()->standardIcon(QStyle::SP_MessageBoxWarning));
        m_icons.insert(kTypeDeleted, style()->standardIcon(QStyle::SP_TrashIcon));
        m_icons.insert(kNoIcon, style()->standardIcon(QStyle::SP_FileIcon));
    }
    if (type >= kNoIcon)
        return {};
    return m_icons.value(type, m_icons.value(kNoIcon));
}

void frmProcess::rowAdded(qsizetype index, const ResultRow& row)
{
    (void)index;
    (void)row;
    if (m_model->pendingRows() >= kRedrawRows)
        flushRows();
}

void frmProcess::rowChanged(qsizetype index, const ResultRow& row)
{
    (void)row;
    m_model->rowChanged(index);
}

void frmProcess::flushRows()
{
    if (m_model->pendingRows() == 0)
        return;
    m_model->showAll();
    lstResult->scrollToBottom();
}

} // namespace vd::import
