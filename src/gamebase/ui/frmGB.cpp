// frmGB: building the form, the views, the filter tabs and the search box. Screenshots, start
// and download are in frmGBActions.cpp.

#include "gamebase/ui/frmGB.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "app/ui/IconSet.h"
#include "app/ui/TranslateForm.h"
#include "app/ui/WindowGeometry.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "controls/ui/CAQSplit.h"
#include "controls/ui/SimpleReport.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseSettings.h"
#include "gamebase/ui/frmGBFilter.h"
#include "launch/StartMenu.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace vd::gamebase {

using app::Translate;

namespace {

// The fields in front of the name column: GA_ID, Icon, Scr, V_LengthType in lstGB; ID, GB_ID,
// Icon, V_LengthType in lstMyFiles.
constexpr int kHiddenColumns = 4;
constexpr int kLengthTypeColumn = 3;

struct ViewTab
{
    const char* caption;
    const char* key;
};
const ViewTab kViewTabs[] = {{"Gamebase", "GB"},
                             {"Vellumdock", "ARCHIV"},
                             {"Zuletzt gestartet", "LAST"},
                             {"Top 100", "TOP"}};

int listModeOf(int view)
{
    return view == kGBViewGameBase ? 0 : 1;
}

} // namespace

frmGB::frmGB(import::clsFileManager* fm, QWidget* owner) : QDialog(owner), m_fm(fm)
{
    setObjectName(QStringLiteral("frmGB"));
    setWindowTitle(QStringLiteral("Gamebase"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    m_downloadUrl = gGBDownloadUrl;
    buildForm();
    InitGBForm();
    app::RestoreWindowPos(*this, app::FormDesign{QStringLiteral("frmGB"), 15000, 9000, false});
    app::ui::TranslateForm(this, true);
}

frmGB::~frmGB() = default;

void frmGB::buildForm()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    buildToolbar();
    layout->setMenuBar(buildMenu());
    layout->addWidget(tlbMain);

    auto* top = new QHBoxLayout;
    lblMode = new QLabel(Translate(QStringLiteral("Ansicht:")), this);
    tabViews = new QTabBar(this);
    tabViews->setObjectName(QStringLiteral("tabViews"));
    for (const ViewTab& t : kViewTabs) {
        const int i = tabViews->addTab(Translate(QString::fromUtf8(t.caption)));
        tabViews->setTabData(i, QString::fromLatin1(t.key));
    }
    top->addWidget(lblMode);
    top->addWidget(tabViews);
    top->addStretch();
    lblSearch = new QLabel(Translate(QStringLiteral("Suche:")), this);
    cboSearch = new QComboBox(this);
    cboSearch->setObjectName(QStringLiteral("cboSearch"));
    cboSearch->setEditable(true);
    cboSearch->setInsertPolicy(QComboBox::NoInsert);
    cboSearch->setMinimumWidth(180);
    cmdStopSearch = new QPushButton(Translate(QStringLiteral("Filter löschen")), this);
    cmdStopSearch->setObjectName(QStringLiteral("cmdStopSearch"));
    top->addWidget(lblSearch);
    top->addWidget(cboSearch);
    top->addWidget(cmdStopSearch);
    layout->addLayout(top);

    auto* filterRow = new QHBoxLayout;
    lblFilter = new QLabel(Translate(QStringLiteral("Filter:")), this);
    tabFilter = new QTabBar(this);
    tabFilter->setObjectName(QStringLiteral("tabFilter"));
    tabFilter->setExpanding(false);
    filterRow->addWidget(lblFilter);
    filterRow->addWidget(tabFilter, 1);
    layout->addLayout(filterRow);

    splitGB = new controls::CAQSplit(this);
    splitGB->setObjectName(QStringLiteral("splitGB"));
    m_lists = new QStackedWidget(splitGB);
    m_lists->setObjectName(QStringLiteral("GBLists"));
    lstGB = new controls::SimpleReport(m_lists);
    lstGB->setObjectName(QStringLiteral("lstGB"));
    lstMyFiles = new controls::SimpleReport(m_lists);
    lstMyFiles->setObjectName(QStringLiteral("lstMyFiles"));
    m_lists->addWidget(lstGB);
    m_lists->addWidget(lstMyFiles);

    fraScreenshots = new QWidget(splitGB);
    fraScreenshots->setObjectName(QStringLiteral("fraScreenshots"));
    auto* shots = new QVBoxLayout(fraScreenshots);
    lblMsg = new QLabel(fraScreenshots);
    lblMsg->setObjectName(QStringLiteral("lblMsg"));
    lblMsg->setWordWrap(true);
    shots->addWidget(lblMsg);
    for (size_t n = 0; n < imgScr.size(); ++n) {
        imgScr[n] = new QLabel(fraScreenshots);
        imgScr[n]->setObjectName(QStringLiteral("imgScr%1").arg(n));
        imgScr[n]->setAlignment(Qt::AlignCenter);
        imgScr[n]->setMinimumSize(160, 100);
        imgScr[n]->hide();
        shots->addWidget(imgScr[n]);
    }
    shots->addStretch();
    splitGB->Arrange(m_lists, fraScreenshots);
    layout->addWidget(splitGB, 1);

    auto* status = new QHBoxLayout;
    panelMsg = new QLabel(this);
    panelMsg->setObjectName(QStringLiteral("Msg"));
    panelSum = new QLabel(this);
    panelSum->setObjectName(QStringLiteral("SumFiles"));
    status->addWidget(panelMsg, 1);
    status->addWidget(panelSum);
    layout->addLayout(status);

    moTimer = new QTimer(this);
    moTimer->setSingleShot(true);
    moTimer->setInterval(kSearchDelayMs);
    connect(moTimer, &QTimer::timeout, this, &frmGB::moTimer_Timer);
    connect(cboSearch, &QComboBox::editTextChanged, this, [this] { moTimer->start(); });
    connect(cboSearch, &QComboBox::activated, this, [this] { moTimer_Timer(); });
    connect(cboSearch->lineEdit(), &QLineEdit::returnPressed, this, [this] { moTimer_Timer(); });
    connect(cmdStopSearch, &QPushButton::clicked, this, &frmGB::cmdStopSearch_Click);
    connect(tabViews, &QTabBar::tabBarClicked, this, &frmGB::tabViews_Click);
    connect(tabFilter, &QTabBar::tabBarClicked, this, &frmGB::tabFilter_Click);
}

void frmGB::buildToolbar()
{
    tlbMain = new QToolBar(this);
    tlbMain->setObjectName(QStringLiteral("tlbMain"));
    tlbMain->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const struct
    {
        const char* key;
        const char* caption;
        QStyle::StandardPixmap icon;
    } entries[] = {
        {"Start", "Starten", QStyle::SP_MediaPlay},
        {"Download", "Download", QStyle::SP_ArrowDown},
        {"Filter", "Filter", QStyle::SP_FileDialogContentsView},
        {"Columns", "Spalten", QStyle::SP_FileDialogDetailedView},
        {"Options", "Optionen", QStyle::SP_ComputerIcon},
        {"Exit", "Beenden", QStyle::SP_DialogCloseButton},
    };
    for (const auto& e : entries) {
        QAction* a = tlbMain->addAction(style()->standardIcon(e.icon),
                                        Translate(QString::fromUtf8(e.caption)));
        a->setObjectName(QStringLiteral("tlb") + QString::fromLatin1(e.key));
        buttons.insert(QString::fromLatin1(e.key), a);
    }
    mnuProfil = new QMenu(this);
    mnuProfil->setObjectName(QStringLiteral("mnuProfil"));
    buttons.value(QStringLiteral("Start"))->setMenu(mnuProfil);
    auto* down = new QMenu(this);
    down->setObjectName(QStringLiteral("mnuDown"));
    const struct
    {
        const char* key;
        const char* caption;
        bool ask;
        bool import;
    } downloads[] = {
        {"DefaultPath", "In Download-Pfad speichern", false, false},
        {"SelectPath", "Download-Pfad auswählen", true, false},
        {"Import", "Download und importieren", false, true},
    };
    for (const auto& d : downloads) {
        QAction* a = down->addAction(Translate(QString::fromUtf8(d.caption)));
        a->setObjectName(QStringLiteral("mnu") + QString::fromLatin1(d.key));
        const bool ask = d.ask, import = d.import;
        connect(a, &QAction::triggered, this, [this, ask, import] { DownloadGames(ask, import); });
    }
    buttons.value(QStringLiteral("Download"))->setMenu(down);
    for (const char* key : {"Start", "Download"})
        if (auto* tool = qobject_cast<QToolButton*>(
                tlbMain->widgetForAction(buttons.value(QString::fromLatin1(key)))))
            tool->setPopupMode(QToolButton::MenuButtonPopup);

    connect(buttons.value(QStringLiteral("Start")), &QAction::triggered, this,
            [this] { StartGame(QString(), 0); });
    connect(buttons.value(QStringLiteral("Download")), &QAction::triggered, this,
            [this] { DownloadGames(gAskForPath, false); });
    connect(buttons.value(QStringLiteral("Filter")), &QAction::triggered, this,
            &frmGB::ShowFilterEditor);
    connect(buttons.value(QStringLiteral("Columns")), &QAction::triggered, this,
            [this] { lstGB->EditHeaders(controls::ColumnEditor::kGBView); });
    connect(buttons.value(QStringLiteral("Options")), &QAction::triggered, this,
            &frmGB::optionsRequested);
    connect(buttons.value(QStringLiteral("Exit")), &QAction::triggered, this, &QDialog::close);
}

QMenuBar* frmGB::buildMenu()
{
    auto* bar = new QMenuBar(this);
    QMenu* edit = bar->addMenu(Translate(QStringLiteral("&Bearbeiten")));
    edit->setObjectName(QStringLiteral("mnuEdit"));
    QAction* start = edit->addAction(Translate(QStringLiteral("Starten")));
    start->setObjectName(QStringLiteral("mnuStart"));
    connect(start, &QAction::triggered, this, [this] { StartGame(QString(), 0); });
    QAction* profil = edit->addMenu(mnuProfil);
    profil->setText(Translate(QStringLiteral("Starten mit")));
    QAction* down = edit->addMenu(buttons.value(QStringLiteral("Download"))->menu());
    down->setText(Translate(QStringLiteral("Download")));
    down->setObjectName(QStringLiteral("mnuDown"));
    edit->addSeparator();
    QAction* columns = edit->addAction(Translate(QStringLiteral("&Spalten anordnen")));
    columns->setObjectName(QStringLiteral("mnuEditColumns"));
    connect(columns, &QAction::triggered, buttons.value(QStringLiteral("Columns")),
            &QAction::trigger);
    return bar;
}

void frmGB::fillProfilMenu()
{
    mnuProfil->clear();
    for (const launch::StartMenuEntry& e :
         launch::StartMenuEntries(launch::gEmulators, launch::gProfils)) {
        QAction* a = mnuProfil->addAction(e.caption);
        a->setData(e.tag);
        const QString key = launch::ProfilKeyFromTag(e.tag);
        connect(a, &QAction::triggered, this, [this, key] { StartGame(key, 0); });
    }
}

void frmGB::setupList(controls::SimpleReport* list, bool games)
{
    list->props().InvisibleCols = kHiddenColumns;
    list->props().InvisibleColMode = 1;
    list->props().KeyColumn = 0;
    list->props().ImageColumn = games ? 1 : 2;
    if (games) {
        // Icon 1: the game has a screenshot.
        list->setIcons({app::IconSet::icon(14)});
    } else {
        list->setIcons(app::IconSet::imageList());
    }
    connect(list, &controls::SimpleReport::selectionChange, this, [this, list] {
        if (list != activeList())
            return;
        ShowScreenshots();
        UpdateStartButtons();
    });
    connect(list, &controls::SimpleReport::itemDblClick, this, [this] { StartGame(QString(), 0); });
    connect(list, &controls::SimpleReport::fetchContents, this,
            [this, list](qint64 row, int colIndex, QVariant& text, QVariant&) {
                formatCell(list, row, colIndex, text);
            });
}

void frmGB::InitGBForm()
{
    if (m_inited)
        return;
    m_inited = true;
    setupList(lstGB, true);
    setupList(lstMyFiles, false);

    controls::GBColumnSource source;
    for (const QString& item : GBFieldTableText().split(QStringLiteral("@@@"))) {
        const qsizetype at = item.indexOf(QLatin1Char('@'));
        source.fields.append({item.left(at).toUpper(), item.mid(at + 1)});
    }
    source.read = [] { return gGBListColumns; };
    source.write = [](const QString& value) { gGBListColumns = value; };
    source.changed = [this] { BuildView(m_view); };
    lstGB->setGBColumnSource(source);
    lstMyFiles->setGBColumnSource(source);

    splitGB->setSplitStyle(gGBSplitStyle.toInt());

    m_filters.clear();
    qint32 key = 1;
    for (const StoredFilter& stored : gGBFilters) {
        browser::clsFilter& f = browser::AddFilter(m_filters, Translate(stored.name), key++);
        f.Defs = browser::splitFilterDefs(stored.definition);
    }
    fillProfilMenu();
    CreateFilter();
    showList(0);
    tabViews->setCurrentIndex(0);
}

void frmGB::storeFilters()
{
    gGBFilters.clear();
    for (int i = 0; i < m_filters.count(); ++i)
        gGBFilters.append({m_filters.at(i).Name, browser::joinFilterDefs(m_filters.at(i))});
}

controls::SimpleReport* frmGB::activeList() const
{
    return iListMode == 0 ? lstGB : lstMyFiles;
}

void frmGB::showList(int mode)
{
    iListMode = mode;
    m_lists->setCurrentWidget(activeList());
}

QString frmGB::filterTag(int index) const
{
    return index < 0 ? QStringLiteral("OFF") : tabFilter->tabData(index).toString();
}

const browser::clsFilter* frmGB::currentFilter() const
{
    const QString tag = filterTag(tabFilter->currentIndex());
    if (tag == u"OFF")
        return nullptr;
    return m_filters.find(tag.toInt());
}

void frmGB::BuildView(int view)
{
    m_view = view;
    // The search text is remembered in the box's list.
    const QString search = cboSearch->currentText();
    GBViewInput in;
    in.view = view;
    in.search = search;
    in.filter = currentFilter();
    in.adultContent = gAdultContent;
    in.listColumns = gGBListColumns;
    in.gameBasePath = gGameBaseDB;
    m_sql = BuildGBViewSql(in);

    controls::SimpleReport* list = activeList();
    db::Database* db = m_sql.onGameBase ? gGB.get() : app::gDB.get();
    if (!db)
        return;
    QString layout = view - 1 < gGBListLayouts.size() ? gGBListLayouts[view - 1] : QString();
    if (layout.isEmpty())
        layout = gGBListLayouts.value(0);
    list->setDataBase(db);
    list->setAutoRefresh(false);
    list->setRecordSource(QString());
    list->setLayout(layout);
    list->setRecordSource(m_sql.statement);
    m_decodedCaptions.clear();
    if (db::Recordset* rs = list->engine().RecordSet()) {
        for (const QString& column : m_sql.decodedColumns) {
            const int index = rs->fieldIndex(GBFieldCaption(column));
            if (index < 0 || index >= list->Columns().count())
                continue;
            m_decodedCaptions.insert(index, column);
            list->Columns()[index].fetchMode = true; // the cell's text comes through formatCell
        }
    }
    list->setAutoRefresh(true);
    panelSum->setText(Translate(QStringLiteral("Dateien: ")) + QString::number(list->ItemCount()));
    ShowScreenshots();
    UpdateStartButtons();
}

void frmGB::formatCell(controls::SimpleReport* list, qint64 row, int colIndex, QVariant& text)
{
    if (list != activeList())
        return;
    const auto it = m_decodedCaptions.constFind(colIndex);
    if (it == m_decodedCaptions.constEnd())
        return;
    text = GetFormattedValue(it.value(), text, list->engine().cellValue(row, kLengthTypeColumn));
}

void frmGB::CreateFilter()
{
    const QString remembered = m_filterTags[size_t(iListMode)];
    while (tabFilter->count() > 0)
        tabFilter->removeTab(tabFilter->count() - 1);
    tabFilter->addTab(Translate(QStringLiteral("Filter aus")));
    tabFilter->setTabData(0, QStringLiteral("OFF"));
    for (int i = 0; i < m_filters.count(); ++i) {
        const int tab = tabFilter->addTab(app::IconSet::keyIcon(QStringLiteral("FILTER")),
                                          m_filters.at(i).Name);
        tabFilter->setTabData(tab, QString::number(m_filters.at(i).Key));
    }
    int select = 0;
    for (int i = 0; i < tabFilter->count(); ++i)
        if (filterTag(i) == remembered)
            select = i;
    tabFilter->setCurrentIndex(select);
    m_filterTags[size_t(iListMode)] = filterTag(select);
}

void frmGB::tabViews_Click(int index)
{
    const int view = index + 1;
    if (index < 0 || view == m_view)
        return;
    m_filterTags[size_t(iListMode)] = filterTag(tabFilter->currentIndex());
    saveLayout();
    tabViews->setCurrentIndex(index);
    const int mode = listModeOf(view);
    if (mode != iListMode) {
        showList(mode);
        const QString tag = m_filterTags[size_t(mode)];
        int select = 0;
        for (int i = 0; i < tabFilter->count(); ++i)
            if (filterTag(i) == tag)
                select = i;
        tabFilter->setCurrentIndex(select);
    }
    BuildView(view);
}

void frmGB::tabFilter_Click(int index)
{
    if (index < 0)
        return;
    tabFilter->setCurrentIndex(index);
    m_filterTags[size_t(iListMode)] = filterTag(index);
    BuildView(m_view);
}

void frmGB::moTimer_Timer()
{
    moTimer->stop();
    const QString text = cboSearch->currentText();
    if (!text.isEmpty() && cboSearch->findText(text, Qt::MatchFixedString) < 0) {
        const QSignalBlocker block(cboSearch);
        cboSearch->insertItem(0, text);
        cboSearch->setCurrentIndex(0);
    }
    BuildView(m_view);
}

void frmGB::cmdStopSearch_Click()
{
    moTimer->stop();
    {
        const QSignalBlocker block(cboSearch);
        cboSearch->setEditText(QString());
    }
    BuildView(m_view);
}

void frmGB::ShowFilterEditor()
{
    frmGBFilter editor(m_filters, this);
    editor.InitForm(filterTag(tabFilter->currentIndex()).toInt());
    connect(&editor, &frmGBFilter::applied, this, [this](qint32 key) {
        storeFilters();
        m_filterTags[size_t(iListMode)] = QString::number(key);
        CreateFilter();
        BuildView(m_view);
    });
    editor.exec();
    storeFilters();
    CreateFilter();
}

void frmGB::saveLayout()
{
    controls::SimpleReport* list = activeList();
    if (list->Columns().count() == 0)
        return;
    while (gGBListLayouts.size() < 4)
        gGBListLayouts.append(QString());
    gGBListLayouts[m_view - 1] = list->Layout();
}

void frmGB::closeEvent(QCloseEvent* event)
{
    saveLayout();
    const QVariant pos = splitGB->SplitPos();
    gGBSplitPos = pos.isNull() ? QString() : QString::number(pos.toDouble(), 'f', 0);
    gGBSplitStyle = QString::number(splitGB->SplitStyle());
    storeFilters();
    app::SaveWindowPos(*this, QStringLiteral("frmGB"));
    QDialog::closeEvent(event);
}

void frmGB::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (m_splitPlaced)
        return;
    // The bar's position is kept within the splitter's size, which it only has now.
    m_splitPlaced = true;
    layout()->activate();
    splitGB->setSplitPos(gGBSplitPos.isEmpty() ? QVariant() : QVariant(gGBSplitPos.toDouble()));
}

void frmGB::keyPressEvent(QKeyEvent* event)
{
    // Esc during a download only stops it (seen before the next file).
    if (event->key() == Qt::Key_Escape && m_downloading) {
        m_escPressed = true;
        return;
    }
    QDialog::keyPressEvent(event);
}

QString frmGB::statusText() const
{
    return panelMsg->text();
}

void frmGB::setStatusText(const QString& text)
{
    panelMsg->setText(text);
}

} // namespace vd::gamebase
