// frmMain: the emulators and profiles of the load, the start menus (mnuProfil, the drop-down
// of the toolbar button "Start", lvStart), and the hand-over of a selection to the start.

#include "app/Globals.h"
#include "app/Translate.h"
#include "app/ui/IconSet.h"
#include "browser/ui/frmMain.h"
#include "import/clsFileManager.h"
#include "launch/ProcessStarter.h"
#include "launch/ProfilSettings.h"
#include "launch/StartFile.h"
#include "launch/StartMenu.h"
#include "launch/ui/frmEditEmu.h"
#include "platform/DialogService.h"

#include <functional>
#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QTreeWidget>
#include <QUrl>

namespace vd::browser {

using app::Translate;

namespace {

// Shows the normal pointer while the user is asked something during a busy start.
class NormalPointer
{
public:
    NormalPointer() : m_pushed(QApplication::overrideCursor() != nullptr)
    {
        if (m_pushed)
            QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~NormalPointer()
    {
        if (m_pushed)
            QApplication::restoreOverrideCursor();
    }
    NormalPointer(const NormalPointer&) = delete;
    NormalPointer& operator=(const NormalPointer&) = delete;

private:
    bool m_pushed;
};

// The busy pointer for the time of a start. The start asks its questions through the dialog
// service, so the service in force is wrapped meanwhile to give each box the normal pointer.
class BusyStart : public platform::DialogService
{
public:
    BusyStart() : m_inner(platform::dialogs())
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        platform::setDialogService(this);
    }
    ~BusyStart() override
    {
        platform::setDialogService(&m_inner);
        QApplication::restoreOverrideCursor();
    }
    BusyStart(const BusyStart&) = delete;
    BusyStart& operator=(const BusyStart&) = delete;

    int msgBox(const QString& text, int style, const QString& title) override
    {
        NormalPointer pointer;
        return m_inner.msgBox(text, style, title);
    }
    std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                    const QString& defaultText) override
    {
        NormalPointer pointer;
        return m_inner.inputBox(prompt, title, defaultText);
    }
    QString openFile(const QString& title, const QString& filter, const QString& start) override
    {
        NormalPointer pointer;
        return m_inner.openFile(title, filter, start);
    }
    QString saveFile(const QString& title, const QString& filter, const QString& start) override
    {
        NormalPointer pointer;
        return m_inner.saveFile(title, filter, start);
    }
    QString chooseFolder(const QString& title, const QString& start) override
    {
        NormalPointer pointer;
        return m_inner.chooseFolder(title, start);
    }

private:
    platform::DialogService& m_inner;
};

// Documents and texts without an editor of their own go to the desktop's default application;
// programs are started as the core starts them.
class DesktopStarter : public launch::ProcessStarter
{
public:
    explicit DesktopStarter(launch::ProcessStarter& programs) : m_programs(programs) {}

    bool start(const launch::LaunchPlan& plan) override
    {
        if (plan.document)
            return QDesktopServices::openUrl(QUrl::fromLocalFile(plan.program));
        return m_programs.start(plan);
    }

private:
    launch::ProcessStarter& m_programs;
};

// What the window installs in the core for the time it lives: the desktop for documents, and
// the emulator editor for a start whose emulator is missing.
class LaunchHooks : public QObject
{
public:
    LaunchHooks(QObject* parent, std::function<void(const QString&)> editEmulator)
        : QObject(parent), m_programs(s_current ? s_current->m_programs : launch::processStarter()),
          m_starter(m_programs)
    {
        setObjectName(QStringLiteral("launchHooks"));
        s_current = this;
        launch::setProcessStarter(&m_starter);
        launch::gEditEmulatorHook = std::move(editEmulator);
    }
    ~LaunchHooks() override
    {
        if (s_current != this)
            return; // a newer window has installed its own
        s_current = nullptr;
        launch::setProcessStarter(&m_programs);
        launch::gEditEmulatorHook = nullptr;
    }
    LaunchHooks(const LaunchHooks&) = delete;
    LaunchHooks& operator=(const LaunchHooks&) = delete;

private:
    static inline LaunchHooks* s_current = nullptr;
    launch::ProcessStarter& m_programs;
    DesktopStarter m_starter;
};

QString menuText(QString caption)
{
    return caption.replace(u'&', QStringLiteral("&&"));
}

// Brings the start entries `actions` of `menu` (standing in front of `before`, or at the end)
// to one for each entry, with its caption and tag. Entries are reused: the one whose click led
// here may be among them.
void arrangeEntries(QMenu* menu, QAction* before, QList<QAction*>& actions,
                    const QList<launch::StartMenuEntry>& entries,
                    const std::function<void(QAction*)>& connectEntry)
{
    while (actions.size() > entries.size()) {
        QAction* surplus = actions.takeLast();
        menu->removeAction(surplus);
        surplus->deleteLater();
    }
    while (actions.size() < entries.size()) {
        auto* entry = new QAction(menu);
        menu->insertAction(before, entry);
        connectEntry(entry);
        actions.append(entry);
    }
    for (qsizetype i = 0; i < entries.size(); ++i) {
        actions[i]->setText(menuText(entries[i].caption));
        actions[i]->setData(entries[i].tag);
    }
}

} // namespace

QTreeWidget* frmMain::buildStartList(QWidget* panel)
{
    lvStart = new QTreeWidget(panel);
    lvStart->setObjectName(QStringLiteral("lvStart"));
    // Name as the list's title, then the hidden columns Typ and Key.
    lvStart->setColumnCount(3);
    lvStart->setHeaderLabels(
        {Translate(QStringLiteral("Start")), QStringLiteral("Typ"), QStringLiteral("Key")});
    lvStart->setColumnHidden(1, true);
    lvStart->setColumnHidden(2, true);
    lvStart->header()->setStretchLastSection(false);
    lvStart->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    lvStart->setRootIsDecorated(false);
    lvStart->setUniformRowHeights(true);
    lvStart->setSelectionMode(QAbstractItemView::SingleSelection);
    lvStart->setEnabled(false);
    return lvStart;
}

void frmMain::connectStartCommands()
{
    setCommand(QStringLiteral("mnuStart"), [this] { StartSelected(QString()); });
    connect(lvStart, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) {
        StartSelected(launch::ProfilKeyFromTag(item->text(2)));
    });
}

// Load step 21: emulators and profiles with their upgrades, the default ones on a first run;
// they are written with the settings at the end.
void frmMain::loadEmulatorsAndProfiles()
{
    launch::LoadProfils();
    launch::InstallProfilWriters();
    installLaunchHooks();
}

// Load step 22: the extensions' profiles came with step 21; lvStart gets the profiles.
void frmMain::loadExtensionProfiles()
{
    BuildStartMenu();
}

void frmMain::installLaunchHooks()
{
    if (findChild<LaunchHooks*>(QStringLiteral("launchHooks"), Qt::FindDirectChildrenOnly))
        return;
    // A start whose emulator is missing lets the user mend the path at once.
    new LaunchHooks(this, [this](const QString& emulKey) {
        NormalPointer pointer;
        const QString key =
            launch::EditEmulator(launch::gEmulators, launch::gProfils, emulKey, false, this);
        if (!key.isEmpty())
            BuildStartMenu(); // the emulator's name is part of the captions
    });
}

void frmMain::enableStartList(bool enabled)
{
    if (!lvStart)
        return;
    lvStart->setEnabled(enabled);
    QPalette colours = lvStart->palette();
    colours.setColor(QPalette::Base,
                     QApplication::palette().color(enabled ? QPalette::Base : QPalette::Button));
    lvStart->setPalette(colours);
    lvStart->viewport()->update();
}

void frmMain::BuildStartMenu()
{
    const QList<launch::StartMenuEntry> entries =
        launch::StartMenuEntries(launch::gEmulators, launch::gProfils);

    lvStart->clear();
    for (const launch::StartMenuEntry& e : entries) {
        auto* item = new QTreeWidgetItem(QStringList{e.caption, QStringLiteral("START"), e.tag});
        item->setIcon(0, app::IconSet::keyIcon(QStringLiteral("START")));
        lvStart->addTopLevelItem(item);
    }

    const auto connectEntry = [this](QAction* entry) {
        connect(entry, &QAction::triggered, this, [this, entry] {
            StartSelected(launch::ProfilKeyFromTag(entry->data().toString()));
        });
    };
    // mnuProfil: as many entries as profiles, in front of the hidden entry of that name.
    arrangeEntries(m_entries.value(QStringLiteral("mnuEdit"))->menu(),
                   m_entries.value(QStringLiteral("mnuProfil")), m_profilEntries, entries,
                   connectEntry);
    for (qsizetype i = 0; i < m_profilEntries.size(); ++i)
        m_profilEntries[i]->setObjectName(QStringLiteral("mnuProfil%1").arg(i + 1));

    QMenu* drop = m_buttons.value(QStringLiteral("Start"))->menu();
    QList<QAction*> dropEntries = drop->actions();
    arrangeEntries(drop, nullptr, dropEntries, entries, connectEntry);
}

void frmMain::StartSelected(const QString& profilKey, qint32 id)
{
    if (id == 0)
        id = infoTag().toInt();
    if (id == 0 || !app::gDB || !gFileManager)
        return;
    QString key = profilKey;
    QString result;
    {
        BusyStart busy;
        result = launch::StartFile(*gFileManager, *app::gDB, id, key);
    }
    if (!result.isEmpty())
        ShowStatus(launch::StartStatusText(result));
    refreshStartedViews();
}

// Views 5 and 6 are ordered by the starts: the tree and the list read their rows again.
void frmMain::refreshStartedViews()
{
    if (iViewMode == 5 || iViewMode == 6)
        BuildView(0, 0, 0);
}

} // namespace vd::browser
