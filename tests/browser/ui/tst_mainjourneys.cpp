// The main window's journeys that span its parts, offscreen on the known collection: column
// layouts kept across view switches, levels and restarts; the search boxes on a clock the test
// moves (one query 800 ms after the last key, history, one query for clearing); mnuEdit as the
// context menu; the enabling rules and the tag of INFO in each view; the counts; the recent
// catalogues; the toggles, the size limit, the splitters and the web page addresses.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmMain.h"
#include "browser/ui/SearchTimer.h"
#include "catalogue/Catalogue.h"
#include "controls/TreeItem.h"
#include "controls/ui/ReportView.h"
#include "controls/ui/SimpleReport.h"
#include "controls/ui/UserTree.h"
#include "platform/ScriptedDialogService.h"
#include "support/WindowHome.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QSplitter>
#include <QTemporaryDir>
#include <QToolBar>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using browser::frmMain;

// Receives the addresses the window hands to the desktop.
class UrlCatcher : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl& url) { urls << url; }
};

class TestMainJourneys : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void columnLayoutsSurviveSwitchesLevelsAndRestarts();
    void columnEditorAndFindDialogWorkOnTheListOfTheView();
    void searchRunsOnceAfterThePauseWithHistory();
    void editMenuPopsUpOnTreeAndLists();
    void enablingRulesAndTagFollowTheSelection();
    void countsFollowViewAndSearch();
    void recentCataloguesOpenAndMoveToTheFront();
    void togglesLimitsSplittersAndWebPages();
    void lastFilterRowIsAppliedAndKept();

private:
    void writeIni(const QByteArray& extra);
    frmMain& open();
    QByteArray closeAndReadIni();
    int listColumn(const QString& key) { return m_form->list()->Columns().indexOf(key); }
    QString listHeader(const QString& key)
    {
        controls::SimpleReport& r = m_form->list()->report();
        return r.model()->headerData(listColumn(key), Qt::Horizontal).toString();
    }

    std::unique_ptr<test::WindowHome> m_home;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;
};

void TestMainJourneys::init()
{
    m_home = std::make_unique<test::WindowHome>(m_dialogs);
    QVERIFY(m_home->isValid());
}

void TestMainJourneys::cleanup()
{
    m_form.reset();
    m_home.reset();
}

void TestMainJourneys::writeIni(const QByteArray& extra)
{
    QVERIFY(m_home->writeIni("ViewMode=1\r\n" + extra));
}

frmMain& TestMainJourneys::open()
{
    m_form = std::make_unique<frmMain>();
    m_form->resize(1100, 700);
    m_form->show();
    m_form->Form_Activate();
    return *m_form;
}

QByteArray TestMainJourneys::closeAndReadIni()
{
    m_form->close();
    m_form.reset();
    catalogue::CloseCatalogue();
    QFile ini(app::gIniFile);
    if (!ini.open(QIODevice::ReadOnly))
        return {};
    app::reloadIni();
    return ini.readAll();
}

void TestMainJourneys::columnLayoutsSurviveSwitchesLevelsAndRestarts()
{
    frmMain& form = open();
    controls::SimpleReport& list = form.list()->report();
    // The column of the file's name is captioned as the disks are called, in both lists.
    QCOMPARE(listHeader(u"Disc_File"_qs), QStringLiteral("Disk, Tape,..."));

    // The user widens the path and takes the type out, as the column editor does.
    const int path = listColumn(u"Dateipfad"_qs);
    QVERIFY(path >= 0);
    list.horizontalHeader()->resizeSection(path, 333);
    controls::ReportColumns& columns = form.list()->Columns();
    columns[listColumn(u"Filetyp"_qs)].hidden = 1;
    list.columnsChanged();

    // View 2 and back: the list of view 1 comes back as the user left it.
    form.menuEntry(u"mnuView0"_qs)->trigger();
    QCOMPARE(form.viewMode(), 2);
    controls::SimpleReport* files = form.filesList();
    const int disc = files->Columns().indexOf(u"Disc_File"_qs);
    QVERIFY(disc >= 0);
    QCOMPARE(files->model()->headerData(disc, Qt::Horizontal).toString(), u"Disk, Tape,..."_qs);
    const int filesPath = files->Columns().indexOf(u"Dateipfad"_qs);
    files->horizontalHeader()->resizeSection(filesPath, 277);
    form.menuEntry(u"mnuView1"_qs)->trigger();
    QCOMPARE(form.list()->Columns()[listColumn(u"Dateipfad"_qs)].width, 333);
    QCOMPARE(form.list()->Columns()[listColumn(u"Filetyp"_qs)].hidden, 1);
    // The columns shown, in display order, are the optional columns of the list.
    QCOMPARE(app::gMainListColumns, u"lSize@@@tImage@@@F.tCategory@@@tPath"_qs);

    // A file node shows level 2, whose columns take the widths of level 1.
    QVERIFY(form.tree()->SelectItem(u"1"_qs, 2));
    QCOMPARE(form.list()->CurLevel(), 2);
    QCOMPARE(form.list()->Columns()[listColumn(u"Dateipfad"_qs)].width, 333);
    QCOMPARE(listHeader(u"Disc_File"_qs), QStringLiteral("Disk, Tape,..."));

    // View 5 starts from the layout of view 1, and its start column sorts one way.
    form.menuEntry(u"mnuView4"_qs)->trigger();
    QCOMPARE(form.viewMode(), 5);
    const int last = listColumn(u"Zuletzt gestartet"_qs);
    QVERIFY(last >= 0);
    QCOMPARE(form.list()->Columns()[last].sortPicture, -1);
    QCOMPARE(form.list()->Columns()[listColumn(u"Dateipfad"_qs)].width, 333);
    form.menuEntry(u"mnuView0"_qs)->trigger();

    // Written at the end and read at the next start: both lists as they were.
    const QByteArray ini = closeAndReadIni();
    QVERIFY2(ini.contains("Dateipfad!Hidden=0;Width=333"), ini.constData());
    QVERIFY2(ini.contains("Dateipfad!Hidden=0;Width=277"), ini.constData());
    QVERIFY(ini.contains("MainListColumns=lSize@@@tImage@@@F.tCategory@@@tPath\r\n"));
    frmMain& again = open();
    QCOMPARE(again.viewMode(), 2);
    QCOMPARE(again.filesList()->Columns()[filesPath].width, 277);
    again.menuEntry(u"mnuView1"_qs)->trigger();
    QCOMPARE(again.list()->Columns()[listColumn(u"Dateipfad"_qs)].width, 333);
    QCOMPARE(again.list()->Columns()[listColumn(u"Filetyp"_qs)].hidden, 1);
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestMainJourneys::columnEditorAndFindDialogWorkOnTheListOfTheView()
{
    frmMain& form = open();
    // The column editor takes the path out; the list's optional columns follow at once.
    bool edited = false;
    QTimer::singleShot(0, this, [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        QVERIFY(dialog && dialog->objectName() == u"frmColumnHeader"_qs);
        auto* rows = dialog->findChild<QTreeWidget*>(u"lvHeaders"_qs);
        const QList<QTreeWidgetItem*> path = rows->findItems(u"Dateipfad"_qs, Qt::MatchExactly);
        QCOMPARE(path.size(), 1);
        rows->setCurrentItem(path[0]);
        dialog->findChild<QPushButton*>(u"cmdAction3"_qs)->click();
        dialog->findChild<QPushButton*>(u"cmdOk"_qs)->click();
        edited = true;
    });
    form.menuEntry(u"mnuEditHeader"_qs)->trigger();
    QVERIFY(edited);
    QCOMPARE(form.list()->Columns()[listColumn(u"Dateipfad"_qs)].hidden, 1);
    QVERIFY(!app::gMainListColumns.split(u"@@@"_qs).contains(u"tPath"_qs));
    QVERIFY(app::gMainListColumns.contains(u"tImage"_qs));
    QCOMPARE(listHeader(u"Disc_File"_qs), QStringLiteral("Disk, Tape,..."));

    // mnuFind opens the find dialog on the list of the view, without holding the window.
    form.menuEntry(u"mnuFind"_qs)->trigger();
    auto* find = form.list()->report().findChild<QWidget*>(u"frmSearch"_qs);
    QVERIFY(find && find->isVisible());
    find->close();
    form.menuEntry(u"mnuView0"_qs)->trigger();
    form.menuEntry(u"mnuFind"_qs)->trigger();
    find = form.filesList()->findChild<QWidget*>(u"frmSearch"_qs);
    QVERIFY(find && find->isVisible());
    find->close();
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestMainJourneys::searchRunsOnceAfterThePauseWithHistory()
{
    frmMain& form = open();
    qint64 now = 0;
    form.searchTimer()->setClock([&now] { return now; });
    QCOMPARE(form.searchTimer()->interval(), 800);
    QSignalSpy built(&form, &frmMain::viewBuilt);
    const auto advance = [&](qint64 ms) {
        now += ms;
        form.searchTimer()->poll();
    };

    // Three keys with pauses under 800 ms: one query, 800 ms after the last.
    QLineEdit* name = form.searchBox(0)->lineEdit();
    QTest::keyClicks(name, u"S"_qs);
    advance(500);
    QTest::keyClicks(name, u"A"_qs);
    advance(700);
    QTest::keyClicks(name, u"N"_qs);
    advance(799);
    QCOMPARE(built.count(), 0);
    advance(1);
    QCOMPARE(built.count(), 1);
    advance(5000);
    QCOMPARE(built.count(), 1);
    QCOMPARE(form.list()->ItemCount(), qint64(2));
    QCOMPARE(form.searchTexts().value(0), u"SAN"_qs);
    // The text went into the box's history, once.
    QCOMPARE(form.searchBox(0)->count(), 1);
    QCOMPARE(form.searchBox(0)->itemText(0), u"SAN"_qs);
    QVERIFY(form.findChild<QPushButton*>(u"cmdStopSearch"_qs)->isEnabled());

    // Enter in the path box runs at once; the newest text stands first in its history.
    QLineEdit* pathBox = form.searchBox(2)->lineEdit();
    QTest::keyClicks(pathBox, u"disks"_qs);
    QTest::keyClick(pathBox, Qt::Key_Return);
    QCOMPARE(built.count(), 2);
    pathBox->clear();
    QTest::keyClicks(pathBox, u"zips"_qs);
    QTest::keyClick(pathBox, Qt::Key_Return);
    QCOMPARE(built.count(), 3);
    QCOMPARE(form.searchBox(2)->itemText(0), u"zips"_qs);
    QCOMPARE(form.searchBox(2)->itemText(1), u"disks"_qs);
    QVERIFY(!form.searchTimer()->isActive());
    advance(1000);
    QCOMPARE(built.count(), 3);

    // Choosing a text from the history runs at once, and only then.
    form.searchBox(2)->setCurrentIndex(1);
    emit form.searchBox(2)->activated(1);
    QCOMPARE(built.count(), 4);
    QCOMPARE(form.searchTexts().value(2), u"disks"_qs);
    advance(1000);
    QCOMPARE(built.count(), 4);

    // "Filter löschen" empties every box with one query, and the history stays.
    form.newFilesBox()->setEnabled(true);
    form.newFilesBox()->click();
    QCOMPARE(built.count(), 5);
    QTest::mouseClick(form.findChild<QPushButton*>(u"cmdStopSearch"_qs), Qt::LeftButton);
    QCOMPARE(built.count(), 6);
    advance(1000);
    QCOMPARE(built.count(), 6);
    for (int i = 0; i < 3; ++i)
        QVERIFY(form.searchBox(i)->currentText().isEmpty());
    QVERIFY(!form.newFilesBox()->isChecked());
    QCOMPARE(form.searchTexts(), (QStringList{{}, {}, {}, u"0"_qs}));
    QCOMPARE(form.list()->ItemCount(), qint64(test::CatalogueFixture::kEntryCount));
    QCOMPARE(form.searchBox(2)->count(), 2);
    QVERIFY(!form.findChild<QPushButton*>(u"cmdStopSearch"_qs)->isEnabled());

    // lvSearch: the captions beside the boxes.
    QTreeWidget* captions = form.searchList();
    QCOMPARE(captions->headerItem()->text(0), u"Suchen"_qs);
    QCOMPARE(captions->topLevelItemCount(), 4);
    const QStringList expected{u"File"_qs, u"Disk, Tape,..."_qs, u"Dateipfad"_qs,
                               u"Neue Dateien"_qs};
    for (int row = 0; row < 4; ++row) {
        QTreeWidgetItem* item = captions->topLevelItem(row);
        QCOMPARE(item->text(0), expected[row]);
        QWidget* box = captions->itemWidget(item, 3);
        QCOMPARE(box, row < 3 ? static_cast<QWidget*>(form.searchBox(row))
                              : static_cast<QWidget*>(form.newFilesBox()));
    }
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestMainJourneys::editMenuPopsUpOnTreeAndLists()
{
    frmMain& form = open();
    QStringList popups;
    bool startOn = false;
    form.setPopupRunner([&](QMenu& menu) {
        popups << menu.objectName();
        startOn = form.menuEntry(u"mnuStart"_qs)->isEnabled();
    });

    // The tree: the right button on a file node.
    QVERIFY(form.tree()->SelectItem(u"6"_qs, 2));
    emit form.tree()->mouseUp(2, 0, 5, 5);
    QCOMPARE(popups, QStringList{u"mnuEdit"_qs});
    QVERIFY(startOn);
    QCOMPARE(form.infoTag(), u"-6"_qs);
    emit form.tree()->mouseUp(1, 0, 5, 5);
    QCOMPARE(popups.size(), 1);

    // lstMain: the right button on a row selects it first.
    controls::SimpleReport& list = form.list()->report();
    const QRect cell = list.visualRect(list.model()->index(1, 3));
    QVERIFY(cell.isValid());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(popups.size(), 1);
    QTest::mouseClick(list.viewport(), Qt::RightButton, {}, cell.center());
    QCOMPARE(popups.size(), 2);
    QCOMPARE(form.infoTag(), u"10"_qs);

    // lstMainFiles in view 2: a file, with "-".
    form.menuEntry(u"mnuView0"_qs)->trigger();
    controls::SimpleReport* files = form.filesList();
    const QRect row = files->visualRect(files->model()->index(0, 4));
    QVERIFY(row.isValid());
    QTest::mouseClick(files->viewport(), Qt::RightButton, {}, row.center());
    QCOMPARE(popups.size(), 3);
    QVERIFY(form.infoTag().startsWith(QLatin1Char('-')));
    QVERIFY(startOn);
}

void TestMainJourneys::enablingRulesAndTagFollowTheSelection()
{
    writeIni("TreeSubItems=1\r\n");
    frmMain& form = open();
    controls::UserTree* tree = form.tree();
    QAction* start = form.menuEntry(u"mnuStart"_qs);
    QAction* startButton = form.toolbarButton(u"Start"_qs);
    QTreeWidget* startList = form.findChild<QTreeWidget*>(u"lvStart"_qs);
    QVERIFY(startList);

    // An entry by the tree's third level: its ID without "-".
    QVERIFY(tree->SelectItem(u"3"_qs, 3));
    QCOMPARE(tree->SelectedItem()->Level, 3);
    QCOMPARE(form.infoTag(), u"3"_qs);
    QCOMPARE(form.statusPanel(u"INFO"_qs)->text(), u"MY_GAME.PRG"_qs);
    QVERIFY(start->isEnabled() && startButton->isEnabled() && startList->isEnabled());
    QVERIFY(!form.toolbarButton(u"Action"_qs)->isVisible());
    // A file: "-" and its ID.
    QVERIFY(tree->SelectItem(u"9"_qs, 2));
    QCOMPARE(form.infoTag(), u"-9"_qs);
    QVERIFY(start->isEnabled());
    // The root: nothing.
    QVERIFY(tree->SelectItem(u"-1"_qs, 1));
    QCOMPARE(form.infoTag(), u"0"_qs);
    QVERIFY(!start->isEnabled() && !startButton->isEnabled() && !startList->isEnabled());

    // View 3: a category can't be started and keeps the tag at 0.
    form.menuEntry(u"mnuView2"_qs)->trigger();
    QVERIFY(tree->SelectItem(u"21"_qs, 2));
    QCOMPARE(form.statusPanel(u"INFO"_qs)->text(), u"Shoot'em Up"_qs);
    QCOMPARE(form.infoTag(), u"0"_qs);
    QVERIFY(!start->isEnabled());
    QVERIFY(!form.menuEntry(u"mnuRefreshFile"_qs)->isEnabled());

    // mnuNewCat in view 3 alone; the MD5 and directory commands in view 2 alone.
    for (int row = 0; row < 6; ++row) {
        form.menuEntry(QStringLiteral("mnuView%1").arg(row))->trigger();
        const int view = form.viewMode();
        QCOMPARE(form.menuEntry(u"mnuNewCat"_qs)->isVisible(), view == 3);
        QCOMPARE(form.menuEntry(u"mnuSaveDir"_qs)->isEnabled(), view == 2);
        QCOMPARE(form.menuEntry(u"mnuHideTree"_qs)->isEnabled(), view != 2);
    }
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestMainJourneys::countsFollowViewAndSearch()
{
    frmMain& form = open();
    QLabel* sumFiles = form.statusPanel(u"SumFiles"_qs);
    QLabel* sumList = form.statusPanel(u"SumList"_qs);
    QCOMPARE(sumFiles->text(), u"Disks, Tapes,...: 10/10"_qs);
    QCOMPARE(sumList->text(), u"Dateien: 12/12"_qs);

    form.menuEntry(u"mnuView2"_qs)->trigger();
    QCOMPARE(sumFiles->text(), u"Kategorien: 3"_qs);

    form.menuEntry(u"mnuView0"_qs)->trigger();
    QCOMPARE(sumFiles->text(), u"Disks, Tapes,...: 10/10"_qs);
    // The file's name narrows the flat list; the total stays.
    QTest::keyClicks(form.searchBox(1)->lineEdit(), u"Sanx"_qs);
    QTest::keyClick(form.searchBox(1)->lineEdit(), Qt::Key_Return);
    QCOMPARE(sumFiles->text(), u"Disks, Tapes,...: 1/10"_qs);

    form.menuEntry(u"mnuView1"_qs)->trigger();
    QCOMPARE(sumFiles->text(), u"Disks, Tapes,...: 1/10"_qs);
    QCOMPARE(sumList->text(), u"Dateien: 3/12"_qs);
}

void TestMainJourneys::recentCataloguesOpenAndMoveToTheFront()
{
    test::CatalogueFixture second;
    second.close();
    const QString missing = m_home->filePath(u"gone.vdb"_qs);
    writeIni("Database2=" + second.path().toUtf8() + "\r\nDatabase3=" + missing.toUtf8() + "\r\n");
    frmMain& form = open();
    QMenu* recent = form.toolbarButton(u"OpenDB"_qs)->menu();
    const auto paths = [recent] {
        QStringList out;
        for (QAction* a : recent->actions())
            out << a->data().toString();
        return out;
    };
    QCOMPARE(paths(), (QStringList{m_home->cat().path(), second.path(), missing}));

    // The second catalogue opens and goes to the front.
    recent->actions().at(1)->trigger();
    QCOMPARE(app::gDatabasePath, second.path());
    QVERIFY(form.windowTitle().endsWith(second.path()));
    QCOMPARE(paths(), (QStringList{second.path(), m_home->cat().path(), missing}));
    QCOMPARE(recent->actions().at(0)->text(), second.path());

    // A catalogue that is gone: one message, it leaves the menu, the open one stays.
    recent->actions().at(2)->trigger();
    QCOMPARE(m_dialogs.messages().size(), 1);
    QVERIFY(m_dialogs.messages().at(0).startsWith(u"Die Datenbank liegt nicht im Pfad: "_qs));
    QCOMPARE(paths(), (QStringList{second.path(), m_home->cat().path()}));
    QCOMPARE(app::gDatabasePath, second.path());

    // mnuOpenDB: the chosen catalogue opens; one already in the list keeps its place there.
    m_dialogs.answerText(m_home->cat().path());
    form.menuEntry(u"mnuOpenDB"_qs)->trigger();
    QCOMPARE(app::gDatabasePath, m_home->cat().path());
    QCOMPARE(paths(), (QStringList{second.path(), m_home->cat().path()}));
    QCOMPARE(form.tree()->ItemCount(), 1 + test::CatalogueFixture::kFileCount);
    form.menuEntry(u"mnuOpenDB"_qs)->trigger(); // the dialog is cancelled: nothing changes
    QCOMPARE(app::gDatabasePath, m_home->cat().path());

    recent->actions().at(0)->trigger();
    QCOMPARE(app::gDatabasePath, second.path());
    const QByteArray ini = closeAndReadIni();
    QVERIFY(ini.contains("Database=" + second.path().toUtf8() +
                         "\r\nDatabase2=" + m_home->cat().path().toUtf8() + "\r\n"));
    QVERIFY(!ini.contains("gone.vdb"));
}

void TestMainJourneys::togglesLimitsSplittersAndWebPages()
{
    writeIni("HelpUrl=https://help.example/de|https://help.example/en\r\n");
    frmMain& form = open();

    // The window can't be made smaller than 10000 by 5970 twips.
    form.resize(200, 100);
    QCOMPARE(form.width(), 667);
    QCOMPARE(form.height(), 398);
    form.resize(1100, 700);

    QToolBar* toolbar = form.findChild<QToolBar*>(u"tlbMain"_qs);
    form.menuEntry(u"mnuToggleToolbar"_qs)->trigger();
    QVERIFY(!toolbar->isVisible());
    form.menuEntry(u"mnuToggleToolbar"_qs)->trigger();
    QVERIFY(toolbar->isVisible());
    form.menuEntry(u"mnuHideTree"_qs)->trigger();
    QVERIFY(!form.tree()->isVisible());
    QVERIFY(form.list()->isVisible());

    // The help page opens through the desktop; no home page is set, so that entry is off.
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler(u"https"_qs, &catcher, "open");
    QVERIFY(!form.menuEntry(u"mnuHomepage"_qs)->isEnabled());
    QVERIFY(form.menuEntry(u"mnuHelp"_qs)->isEnabled());
    form.menuEntry(u"mnuHelp"_qs)->trigger();
    QDesktopServices::unsetUrlHandler(u"https"_qs);
    QCOMPARE(catcher.urls, QList<QUrl>{QUrl(u"https://help.example/de"_qs)});

    // German again is no change at all.
    QSignalSpy built(&form, &frmMain::viewBuilt);
    form.menuEntry(u"mnuLang"_qs)->trigger();
    QVERIFY(form.menuEntry(u"mnuLang"_qs)->isChecked());
    QCOMPARE(built.count(), 0);

    form.splitter(u"splitMenu"_qs)->setSizes({300, 780});
    const int menuWidth = form.splitter(u"splitMenu"_qs)->sizes().at(0);
    const QByteArray ini = closeAndReadIni();
    QVERIFY(ini.contains("HideTree=1\r\n"));
    QVERIFY(ini.contains("MenuSplitPos=" + QByteArray::number(menuWidth * 15) + "\r\n"));
    QVERIFY(ini.contains("HelpUrl=https://help.example/de|https://help.example/en\r\n"));
    QVERIFY(!ini.contains("HomepageUrl"));
}

void TestMainJourneys::lastFilterRowIsAppliedAndKept()
{
    // Row 1, "Disketten", from the last run: the first view is narrowed to the D64 files.
    writeIni("LastFilterRow=1\r\n");
    frmMain& form = open();
    QCOMPARE(form.filterKey(), 1);
    QCOMPARE(form.filterList()->currentItem(), form.filterList()->topLevelItem(1));
    QCOMPARE(form.tree()->ItemCount(), 1 + 3);
    // Row 3 is kept for the next run.
    const QRect row = form.filterList()->visualItemRect(form.filterList()->topLevelItem(3));
    QTest::mouseClick(form.filterList()->viewport(), Qt::LeftButton, {}, row.center());
    QCOMPARE(form.filterKey(), form.filterList()->topLevelItem(3)->text(2).toInt());
    QVERIFY(closeAndReadIni().contains("LastFilterRow=3\r\n"));

    // A row that is gone selects "Filter aus".
    writeIni("LastFilterRow=99\r\n");
    frmMain& again = open();
    QCOMPARE(again.filterKey(), 0);
    QCOMPARE(again.filterList()->currentItem(), again.filterList()->topLevelItem(0));
    QCOMPARE(again.tree()->ItemCount(), 1 + test::CatalogueFixture::kFileCount);
    QVERIFY(m_dialogs.messages().isEmpty());
}

QTEST_MAIN(TestMainJourneys)
#include "tst_mainjourneys.moc"
