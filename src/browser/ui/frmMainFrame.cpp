// The frame of the main window: menus, toolbar, status bar, the side panel and the splitters.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Startup.h"
#include "app/Translate.h"
#include "app/WindowPos.h"
#include "browser/ui/frmMain.h"

#include <cmath>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace vd::browser {

using app::Translate;

namespace {

// An entry of a menu table: a name and its German caption; "-" is a separator.
struct MenuEntry
{
    const char* name;
    const char* caption;
};

const char* const kSeparator = "-";

const MenuEntry kFileMenu[] = {
    {"mnuNewDB", "&Neue Datenbank"},
    {"mnuOpenDB", "&Datenbank öffnen"},
    {kSeparator, ""},
    {"mnuAddFile", "Datei importieren"},
    {"mnuAddDir", "Ordner importieren"},
    {kSeparator, ""},
    {"mnuExit", "&Beenden"},
};

const MenuEntry kEditMenu[] = {
    {"mnuStart", "&Starten"},
    {"mnuProfil", ""}, // one entry for each profile; the launcher fills them
    {"mnuDetails", "&Details"},
    {"mnuDel", "&Löschen"},
    {"mnuNewCat", "&Neue Kategorie"},
    {kSeparator, ""},
    {"mnuFlipList", "Flipliste"},
    {"mnuAddToFlipList", "Image zur Flipliste hinzufügen"},
    {kSeparator, ""},
    {"mnuFilter", "&Filter"},
    {"mnuFind", "&Suchen"},
    {kSeparator, ""},
    {"mnuFilepath", "Dateipfad"},
    {"mnuRefreshFile", "Datei aktualisieren"},
};

const MenuEntry kViewsMenuAfterLanguage[] = {
    {kSeparator, ""},
    {"mnuToggleToolbar", "Toolbar"},
    {"mnuHideTree", "Baum ausblenden"},
    {"mnuTreeOhnePlusMinus", "Baum mit Unterelementen (langsamer)"},
    {kSeparator, ""},
    {"mnuEditHeader", "&Spalten anordnen"},
    {"mnuPreview", "Voransicht"},
    {"mnuOpenPreview", "Voransicht öffnen"},
    {kSeparator, ""},
};

// mnuView(0) to mnuView(5), in the order of the rows of lvViews.
const MenuEntry kViewEntries[] = {
    {"mnuView0", "Disks, Tapes,..."}, {"mnuView1", "Dateien"},           {"mnuView2", "Kategorien"},
    {"mnuView3", "Neue Dateien"},     {"mnuView4", "Zuletzt gestartet"}, {"mnuView5", "Top 100"},
};

const MenuEntry kGameBaseMenu[] = {
    {"mnuGBOpen", "Ansicht öffnen"},
    {kSeparator, ""},
    {"mnuGBConnect", "Eigene Zip-Dateien mit Gamebase abgleichen"},
    {"mnuGBImportCat", "Spielkategorien importieren"},
};

const MenuEntry kExtrasBeforeSaveDir[] = {
    {"mnuCopyAll", "Gesamte Liste kopieren -> Zwischenablage"},
    {"mnuCopySelection", "Markierte Einträge kopieren -> Zwischenablage"},
    {kSeparator, ""},
    {"mnuCreateMD5", "Fehlende MD5-Checksummen erzeugen"},
};

const MenuEntry kSaveDirMenu[] = {
    {"mnuDirFilepath", "Speichern in Dateipfad"},
    {"mnuDirSelect", "Dateipfad auswählen"},
};

const MenuEntry kExtrasAfterSaveDir[] = {
    {kSeparator, ""},
    {"mnuCheckFiles", "&Datenbank überprüfen"},
    {"mnuCompactDB", "&Datenbank beim Beenden komprimieren"},
    {kSeparator, ""},
    {"mnuOption", "&Optionen"},
};

const MenuEntry kInfoMenu[] = {
    {"mnuHelp", "&Online Hilfe"},
    {"mnuHomepage", "&Homepage"},
    {kSeparator, ""},
    {"mnuLogo", "&Info"},
};

// The toolbar: key, tooltip, icon, whether it has a drop-down menu.
struct ButtonEntry
{
    const char* key;
    const char* caption;
    QStyle::StandardPixmap icon;
    bool dropDown;
};

const ButtonEntry kButtons[] = {
    {"NewDB", "Neue Datenbank", QStyle::SP_FileIcon, false},
    {"OpenDB", "Datenbank öffnen", QStyle::SP_DialogOpenButton, true},
    {"AddFile", "Datei importieren", QStyle::SP_FileLinkIcon, true},
    {"AddDir", "Ordner importieren", QStyle::SP_DirIcon, true},
    {"Filter", "Filter", QStyle::SP_FileDialogContentsView, false},
    {"Edit", "Details", QStyle::SP_FileDialogDetailedView, false},
    {"Del", "Löschen", QStyle::SP_TrashIcon, false},
    {"Start", "Starten", QStyle::SP_MediaPlay, true},
    {"GB", "Gamebase", QStyle::SP_DriveCDIcon, false},
    {"Options", "Optionen", QStyle::SP_ComputerIcon, false},
    {"Exit", "Beenden", QStyle::SP_DialogCloseButton, false},
    {"Action", "", QStyle::SP_ArrowRight, false},
};

// A command whose handler exists; the others stay disabled until their subsystem connects them.
const char* const kAvailable = "vdAvailable";

template <size_t N>
void addEntries(frmMain* form, QMenu* menu, const MenuEntry (&entries)[N],
                QAction* (frmMain::*add)(QMenu*, const QString&, const QString&))
{
    for (const MenuEntry& e : entries) {
        if (QLatin1String(e.name) == QLatin1String(kSeparator))
            menu->addSeparator();
        else
            (form->*add)(menu, QString::fromUtf8(e.name), QString::fromUtf8(e.caption));
    }
}

QFrame* placeFrame(const QString& name, QWidget* parent)
{
    auto* frame = new QFrame(parent);
    frame->setObjectName(name);
    frame->setFrameShape(QFrame::StyledPanel);
    return frame;
}

} // namespace

QAction* frmMain::addEntry(QMenu* menu, const QString& name, const QString& caption)
{
    QAction* action = menu->addAction(Translate(caption));
    action->setObjectName(name);
    action->setProperty(kAvailable, false);
    action->setEnabled(false);
    m_entries.insert(name, action);
    return action;
}

void frmMain::buildMenus()
{
    auto topMenu = [this](const QString& name, const QString& caption) {
        QMenu* menu = menuBar()->addMenu(Translate(caption));
        menu->setObjectName(name);
        menu->menuAction()->setObjectName(name);
        menu->menuAction()->setProperty(kAvailable, true);
        m_entries.insert(name, menu->menuAction());
        return menu;
    };
    auto subMenu = [this](QMenu* parent, const QString& name, const QString& caption) {
        QMenu* menu = parent->addMenu(Translate(caption));
        menu->setObjectName(name);
        menu->menuAction()->setObjectName(name);
        menu->menuAction()->setProperty(kAvailable, true);
        m_entries.insert(name, menu->menuAction());
        return menu;
    };

    addEntries(this, topMenu(QStringLiteral("mnuFile"), QStringLiteral("&Datei")), kFileMenu,
               &frmMain::addEntry);
    QMenu* edit = topMenu(QStringLiteral("mnuEdit"), QStringLiteral("&Bearbeiten"));
    addEntries(this, edit, kEditMenu, &frmMain::addEntry);
    m_entries.value(QStringLiteral("mnuProfil"))->setVisible(false);

    QMenu* views = topMenu(QStringLiteral("mnuViews"), QStringLiteral("&Ansicht"));
    QMenu* language = subMenu(views, QStringLiteral("mnuLanguage"), QStringLiteral("Sprache"));
    addEntry(language, QStringLiteral("mnuLang"), QStringLiteral("Deutsch"))->setCheckable(true);
    addEntries(this, views, kViewsMenuAfterLanguage, &frmMain::addEntry);
    addEntries(this, views, kViewEntries, &frmMain::addEntry);

    addEntries(this, topMenu(QStringLiteral("mnuGB"), QStringLiteral("&Gamebase")), kGameBaseMenu,
               &frmMain::addEntry);
    QMenu* extras = topMenu(QStringLiteral("mnuExtras"), QStringLiteral("&Extras"));
    addEntries(this, extras, kExtrasBeforeSaveDir, &frmMain::addEntry);
    addEntries(this,
               subMenu(extras, QStringLiteral("mnuSaveDir"),
                       QStringLiteral("Directory als txt-Datei speichern")),
               kSaveDirMenu, &frmMain::addEntry);
    addEntries(this, extras, kExtrasAfterSaveDir, &frmMain::addEntry);
    addEntries(this, topMenu(QStringLiteral("mnuInfo"), QStringLiteral("&?")), kInfoMenu,
               &frmMain::addEntry);

    for (const char* name : {"mnuCompactDB", "mnuToggleToolbar", "mnuHideTree",
                             "mnuTreeOhnePlusMinus", "mnuPreview", "mnuOpenPreview"})
        m_entries.value(QString::fromUtf8(name))->setCheckable(true);
}

void frmMain::buildToolbar()
{
    tlbMain = addToolBar(QStringLiteral("tlbMain"));
    tlbMain->setObjectName(QStringLiteral("tlbMain"));
    tlbMain->setMovable(false);
    tlbMain->toggleViewAction()->setVisible(false);
    setContextMenuPolicy(Qt::NoContextMenu);
    // A white toolbar, as the buttons' images are drawn for.
    tlbMain->setStyleSheet(QStringLiteral("QToolBar { background: white; border: none; }"));
    for (const ButtonEntry& b : kButtons) {
        const QString key = QString::fromUtf8(b.key);
        QAction* button = tlbMain->addAction(style()->standardIcon(b.icon),
                                             Translate(QString::fromUtf8(b.caption)));
        button->setObjectName(QStringLiteral("tlb") + key);
        button->setProperty(kAvailable, false);
        button->setEnabled(false);
        if (b.dropDown) {
            auto* menu = new QMenu(this);
            menu->setObjectName(QStringLiteral("tlb") + key + QStringLiteral("Menu"));
            button->setMenu(menu);
            if (auto* tool = qobject_cast<QToolButton*>(tlbMain->widgetForAction(button)))
                tool->setPopupMode(QToolButton::MenuButtonPopup);
        }
        m_buttons.insert(key, button);
    }
    m_buttons.value(QStringLiteral("Action"))->setVisible(false);
}

void frmMain::buildStatusBar()
{
    for (const char* key : {"INFO", "SumFiles", "SumList"}) {
        auto* panel = new QLabel(this);
        panel->setObjectName(QString::fromUtf8(key));
        panel->setProperty("tag", QStringLiteral("0"));
        statusBar()->addWidget(panel, key == std::string_view("INFO") ? 1 : 0);
        m_panels.insert(QString::fromUtf8(key), panel);
    }
}

void frmMain::buildPanes()
{
    splitMenu = new QSplitter(Qt::Horizontal, this);
    splitMenu->setObjectName(QStringLiteral("splitMenu"));
    fraMain = new QFrame(splitMenu);
    fraMain->setObjectName(QStringLiteral("fraMain"));
    buildSearchPanel(fraMain);
    splitPreview = new QSplitter(Qt::Horizontal, splitMenu);
    splitPreview->setObjectName(QStringLiteral("splitPreview"));
    // splitPreview's first pane is splitList, or lstMainFiles in view 2: one page of a stack.
    m_listPages = new QStackedWidget(splitPreview);
    m_listPages->setObjectName(QStringLiteral("listPages"));
    splitList = new QSplitter(Qt::Horizontal, m_listPages);
    splitList->setObjectName(QStringLiteral("splitList"));
    m_listPages->addWidget(splitList);
    buildViewControls();
    Container = placeFrame(QStringLiteral("Container"), splitPreview);
    Container->setAutoFillBackground(true);
    for (QSplitter* split : {splitMenu, splitPreview, splitList}) {
        split->setChildrenCollapsible(false);
        split->setStretchFactor(0, 0);
        split->setStretchFactor(1, 1);
    }
    setCentralWidget(splitMenu);
}

void frmMain::buildSearchPanel(QFrame* panel)
{
    // The side lists lvViews, lvFilter, lvSearch and lvStart take their places in this panel
    // with the catalogue browser's views; the search boxes are here already.
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(2, 2, 2, 2);
    lvViews = buildSideList(panel, QStringLiteral("lvViews"), QStringLiteral("Ansicht"));
    layout->addWidget(lvViews);
    lvFilter = buildSideList(panel, QStringLiteral("lvFilter"), QStringLiteral("Filter"));
    layout->addWidget(lvFilter);
    layout->addWidget(buildSearchList(panel)); // lvSearch with the boxes cboSearch, chkNewFiles
    cmdStopSearch = new QPushButton(Translate(QStringLiteral("Filter löschen")), panel);
    cmdStopSearch->setObjectName(QStringLiteral("cmdStopSearch"));
    cmdStopSearch->setEnabled(false);
    layout->addWidget(cmdStopSearch);
    layout->addWidget(buildStartList(panel), 1); // lvStart, at the foot of the panel
}

void frmMain::setCommand(const QString& name, std::function<void()> handler)
{
    QAction* action = m_entries.value(name);
    action->setProperty(kAvailable, true);
    action->setEnabled(true);
    connect(action, &QAction::triggered, this, [handler] { handler(); });
}

void frmMain::setEntryEnabled(const QString& name, bool enabled)
{
    if (QAction* action = m_entries.value(name))
        action->setEnabled(enabled && action->property(kAvailable).toBool());
}

void frmMain::setButtonEnabled(const QString& key, bool enabled)
{
    if (QAction* button = m_buttons.value(key))
        button->setEnabled(enabled && button->property(kAvailable).toBool());
}

void frmMain::connectCommands()
{
    setCommand(QStringLiteral("mnuNewDB"), [this] { mnuNewDB_Click(); });
    setCommand(QStringLiteral("mnuOpenDB"), [this] { mnuOpenDB_Click(); });
    setCommand(QStringLiteral("mnuExit"), [this] { mnuExit_Click(); });
    setCommand(QStringLiteral("mnuToggleToolbar"), [this] { mnuToggleToolbar_Click(); });
    setCommand(QStringLiteral("mnuHideTree"), [this] { mnuHideTree_Click(); });
    setCommand(QStringLiteral("mnuPreview"), [this] { mnuPreview_Click(); });
    // Check marks whose effect lies elsewhere: the compaction at exit, the next tree.
    setCommand(QStringLiteral("mnuCompactDB"), [] {});
    setCommand(QStringLiteral("mnuTreeOhnePlusMinus"), [] {});
    m_entries.value(QStringLiteral("mnuLang"))->setProperty(kAvailable, true);

    const auto button = [this](const char* key, const char* entry) {
        QAction* b = m_buttons.value(QString::fromUtf8(key));
        b->setProperty(kAvailable, true);
        b->setEnabled(true);
        connect(b, &QAction::triggered, m_entries.value(QString::fromUtf8(entry)),
                &QAction::trigger);
    };
    button("NewDB", "mnuNewDB");
    button("OpenDB", "mnuOpenDB");
    button("Exit", "mnuExit");
    connectStartCommands();
    button("Start", "mnuStart");
    connectBatchCommands();
    button("AddFile", "mnuAddFile");
    button("AddDir", "mnuAddDir");
    connectGameBaseCommands();
    button("GB", "mnuGBOpen");
    connectPreviewCommands();
    connectFilterCommands();
    button("Filter", "mnuFilter");
    connectFileCommands();
    button("Edit", "mnuDetails");
    button("Del", "mnuDel");
    connectOptionCommands();
    button("Options", "mnuOption");

    for (size_t i = 0; i < cboSearch.size(); ++i) {
        QComboBox* box = cboSearch[i];
        connect(box, &QComboBox::editTextChanged, this, [this, i] { searchTextChanged(int(i)); });
        connect(box, &QComboBox::activated, this, [this] { moTimer_Timer(); });
        connect(box->lineEdit(), &QLineEdit::returnPressed, this, [this] { moTimer_Timer(); });
    }
    connect(chkNewFiles, &QCheckBox::clicked, this, [this] { moTimer_Timer(); });
    connect(cmdStopSearch, &QPushButton::clicked, this, &frmMain::cmdStopSearch_Click);
}

void frmMain::setSplitPosition(QSplitter* split, double twips)
{
    const int total =
        std::max(0, split->orientation() == Qt::Horizontal ? split->width() : split->height()) -
        split->handleWidth();
    const int first =
        std::clamp(int(std::lround(twips / app::kTwipsPerPixel)), 0, std::max(0, total));
    split->setSizes({first, std::max(0, total - first)});
}

double frmMain::splitPosition(const QSplitter* split, double previous) const
{
    // A hidden pane has no position of its own: the one it had is kept.
    if (!split->isVisible() || !split->widget(0)->isVisible() || !split->widget(1)->isVisible())
        return previous;
    return split->sizes().value(0) * app::kTwipsPerPixel;
}

void frmMain::applySplitPositions()
{
    setSplitPosition(splitMenu, app::gMenuSplitPos);
    setSplitPosition(splitPreview, app::gPreviewSplitPos);
    setSplitPosition(splitList, app::gListSplitPos);
    m_splitsApplied = true;
}

void frmMain::showCaption()
{
    setWindowTitle(app::mainCaption(app::gDatabasePath));
}

} // namespace vd::browser
