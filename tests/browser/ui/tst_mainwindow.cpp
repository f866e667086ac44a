// The main window's tree and lists on the known collection, offscreen: each view's tree and
// list as its statements say, switching by the side list and the menu, a search box narrowing
// the list once after the pause, a filter from lvFilter, a file node listing its entries in
// directory order with the selection in the tag of INFO, and a double click on an entry
// reaching a fake emulator.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmMain.h"
#include "browser/ui/frmMainFilter.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "controls/TreeItem.h"
#include "controls/ui/ReportView.h"
#include "controls/ui/SimpleReport.h"
#include "controls/ui/UserTree.h"
#include "launch/Profiles.h"
#include "platform/ScriptedDialogService.h"
#include "support/C64ImageWriter.h"
#include "support/WindowHome.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using browser::frmMain;

namespace {

constexpr int kFileColumn = 3; // the entry's name in the list's level statements

bool writeFile(const QString& path, const QByteArray& bytes, bool executable = false)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size())
        return false;
    f.close();
    return !executable || f.setPermissions(f.permissions() | QFile::ExeOwner);
}

} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void eachViewShowsItsTreeAndList();
    void searchNarrowsTheListOnceAfterThePause();
    void filterRowNarrowsTreeAndList();
    void fileNodeListsItsEntriesInDirectoryOrder();
    void doubleClickOnAnEntryStartsIt();

private:
    frmMain& open();
    QStringList listTexts();
    int treeRows() { return m_form->tree()->ItemCount(); }
    qint64 listRows() { return m_form->list()->ItemCount(); }

    std::unique_ptr<test::WindowHome> m_home;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;
};

void TestMainWindow::init()
{
    m_home = std::make_unique<test::WindowHome>(m_dialogs);
    QVERIFY(m_home->isValid());
}

void TestMainWindow::cleanup()
{
    m_form.reset();
    m_home.reset();
}

frmMain& TestMainWindow::open()
{
    m_form = std::make_unique<frmMain>();
    m_form->resize(1000, 700);
    m_form->show();
    m_form->Form_Activate();
    return *m_form;
}

QStringList TestMainWindow::listTexts()
{
    QStringList out;
    controls::SimpleReport& list = m_form->list()->report();
    for (qint64 r = 0; r < list.ItemCount(); ++r)
        out << list.cellText(r, kFileColumn);
    return out;
}

void TestMainWindow::eachViewShowsItsTreeAndList()
{
    frmMain& form = open();
    QVERIFY(app::gDB != nullptr);
    QCOMPARE(form.viewMode(), 1);
    // View 1: the root and the ten files under it, every entry in the list.
    QCOMPARE(treeRows(), 1 + test::CatalogueFixture::kFileCount);
    QCOMPARE(listRows(), qint64(test::CatalogueFixture::kEntryCount));
    QCOMPARE(form.tree()->TreeItems(0)->Caption, QStringLiteral("Dateien"));
    QVERIFY(form.menuEntry(QStringLiteral("mnuView1"))->isChecked());
    QVERIFY(!form.menuEntry(QStringLiteral("mnuNewCat"))->isVisible());
    QVERIFY(form.statusPanel(QStringLiteral("SumList"))->text().startsWith(u"Dateien: 12/"_qs));

    // View 3 by its row in lvViews: the three user categories; the list keeps every entry.
    QSignalSpy built(&form, &frmMain::viewBuilt);
    QTreeWidget* views = form.viewsList();
    QCOMPARE(views->topLevelItemCount(), 6);
    const QRect categories = views->visualItemRect(views->topLevelItem(2));
    QTest::mouseClick(views->viewport(), Qt::LeftButton, {}, categories.center());
    QCOMPARE(built.count(), 1);
    QCOMPARE(form.viewMode(), 3);
    QCOMPARE(treeRows(), 1 + test::CatalogueFixture::kUserCategoryCount);
    QCOMPARE(listRows(), qint64(test::CatalogueFixture::kEntryCount));
    QVERIFY(form.menuEntry(QStringLiteral("mnuNewCat"))->isVisible());
    QVERIFY(form.statusPanel(QStringLiteral("INFO"))->text().startsWith(u"Dauer: Kategorien ("_qs));
    // A click on the view already shown does nothing.
    QTest::mouseClick(views->viewport(), Qt::LeftButton, {}, categories.center());
    QCOMPARE(built.count(), 1);

    // View 5 by the menu: the started files, and the started entries newest first.
    form.menuEntry(QStringLiteral("mnuView4"))->trigger();
    QCOMPARE(form.viewMode(), 5);
    QCOMPARE(views->currentItem(), views->topLevelItem(4));
    QVERIFY(!form.menuEntry(QStringLiteral("mnuNewCat"))->isVisible());
    QCOMPARE(treeRows(), 1 + 3);
    QCOMPARE(listTexts(), (QStringList{"SANXION", "PARADROID", "SANXION HISCORE", "O'BRIEN"}));

    // View 6: by the number of starts.
    form.menuEntry(QStringLiteral("mnuView5"))->trigger();
    QCOMPARE(form.viewMode(), 6);
    QCOMPARE(listTexts().value(0), QStringLiteral("PARADROID"));
    QCOMPARE(listRows(), qint64(4));

    // View 2: the flat list of files instead of tree and list.
    form.menuEntry(QStringLiteral("mnuView0"))->trigger();
    QCOMPARE(form.viewMode(), 2);
    QVERIFY(form.filesList()->isVisible());
    QVERIFY(!form.tree()->isVisible());
    QCOMPARE(form.filesList()->ItemCount(), qint64(test::CatalogueFixture::kFileCount));
    QVERIFY(!form.menuEntry(QStringLiteral("mnuHideTree"))->isEnabled());

    // And back to the files: the tree is there again.
    form.menuEntry(QStringLiteral("mnuView1"))->trigger();
    QVERIFY(form.tree()->isVisible());
    QCOMPARE(treeRows(), 1 + test::CatalogueFixture::kFileCount);
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestMainWindow::searchNarrowsTheListOnceAfterThePause()
{
    frmMain& form = open();
    QSignalSpy built(&form, &frmMain::viewBuilt);
    QTest::keyClicks(form.searchBox(0)->lineEdit(), QStringLiteral("SAN"));
    QCOMPARE(built.count(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(built.count(), 1, 2000);
    QTest::qWait(900);
    QCOMPARE(built.count(), 1);
    // The entry's name narrows the list; the tree of files stays whole.
    QCOMPARE(listRows(), qint64(2));
    QCOMPARE(treeRows(), 1 + test::CatalogueFixture::kFileCount);

    // The file's name (Enter runs at once) narrows the tree as well.
    QTest::keyClicks(form.searchBox(1)->lineEdit(), QStringLiteral("O'Brien"));
    QTest::keyClick(form.searchBox(1)->lineEdit(), Qt::Key_Return);
    QCOMPARE(built.count(), 2);
    QCOMPARE(treeRows(), 1 + 1);
    QCOMPARE(listRows(), qint64(0)); // no entry of that file is called SAN...
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestMainWindow::filterRowNarrowsTreeAndList()
{
    frmMain& form = open();
    QTreeWidget* filters = form.filterList();
    // "Filter aus", then the five default filters.
    QCOMPARE(filters->topLevelItemCount(), 6);
    QCOMPARE(filters->topLevelItem(0)->text(0), QStringLiteral("Filter aus"));
    QCOMPARE(filters->topLevelItem(1)->text(0), QStringLiteral("Disketten"));
    QSignalSpy built(&form, &frmMain::viewBuilt);
    const QRect disks = filters->visualItemRect(filters->topLevelItem(1));
    QTest::mouseClick(filters->viewport(), Qt::LeftButton, {}, disks.center());
    QCOMPARE(built.count(), 1);
    QCOMPARE(form.filterKey(), 1);
    // D64 files: Sanxion, O'Brien's Disk, Commando; their entries.
    QCOMPARE(treeRows(), 1 + 3);
    QCOMPARE(listRows(), qint64(3 + 2 + 1));
    // The same row again opens the editor on that filter; left unchanged, nothing is rebuilt.
    QList<qint32> editorKeys;
    browser::setFilterEditorRunner([&](browser::frmMainFilter& editor) {
        editorKeys << editor.currentKey();
        editor.exitButton()->click();
    });
    QTest::mouseClick(filters->viewport(), Qt::LeftButton, {}, disks.center());
    browser::setFilterEditorRunner(nullptr);
    QCOMPARE(editorKeys, QList<qint32>{1});
    QCOMPARE(built.count(), 1);
    // Escape turns the filter off.
    filters->setFocus();
    QTest::keyClick(filters, Qt::Key_Escape);
    QCOMPARE(form.filterKey(), 0);
    QCOMPARE(built.count(), 2);
    QCOMPARE(treeRows(), 1 + test::CatalogueFixture::kFileCount);
}

void TestMainWindow::fileNodeListsItsEntriesInDirectoryOrder()
{
    frmMain& form = open();
    controls::UserTree* tree = form.tree();
    // Sanxion.d64: by name MY_GAME would come first; the directory has it last.
    QVERIFY(tree->SelectItem(QStringLiteral("1"), 2));
    QCOMPARE(listTexts(), (QStringList{"SANXION", "SANXION HISCORE", "MY_GAME"}));
    QCOMPARE(form.infoTag(), QStringLiteral("-1"));
    QCOMPARE(form.statusPanel(QStringLiteral("INFO"))->text(), QStringLiteral("Sanxion.d64"));
    QVERIFY(form.menuEntry(QStringLiteral("mnuStart"))->isEnabled());
    QVERIFY(form.toolbarButton(QStringLiteral("Start"))->isEnabled());
    // O'Brien's Disk: "(NO NAME)" sorts first by name, second on the disk.
    QVERIFY(tree->SelectItem(QStringLiteral("6"), 2));
    QCOMPARE(listTexts(), (QStringList{"O'BRIEN", "(NO NAME)"}));
    QCOMPARE(form.infoTag(), QStringLiteral("-6"));

    // A row of the list is the selection now: its entry's ID without "-".
    form.list()->report().setFocus();
    form.list()->setSelectedIndex(1);
    QTRY_COMPARE(form.infoTag(), QStringLiteral("10"));
    QCOMPARE(form.statusPanel(QStringLiteral("INFO"))->text(), QStringLiteral("(NO NAME)"));
    QVERIFY(form.menuEntry(QStringLiteral("mnuStart"))->isEnabled());

    // The root lists every entry again.
    tree->setFocus();
    QVERIFY(tree->SelectItem(QStringLiteral("-1"), 1));
    QCOMPARE(listRows(), qint64(test::CatalogueFixture::kEntryCount));
    QCOMPARE(form.infoTag(), QStringLiteral("0"));
    QVERIFY(!form.menuEntry(QStringLiteral("mnuStart"))->isEnabled());
}

void TestMainWindow::doubleClickOnAnEntryStartsIt()
{
    // Sanxion.d64 becomes a real disk, and every emulator the fake one, which writes its
    // arguments.
    const QString disk = m_home->filePath(QStringLiteral("Sanxion.d64"));
    QVector<test::Slot> entrySlots;
    for (const char* name : {"SANXION", "SANXION HISCORE", "MY_GAME"})
        entrySlots.append(test::Slot{0x82, name, 10, 17, 0});
    QVERIFY(test::DiskWriter::d64().entries(entrySlots).save(disk));
    const QString out = m_home->filePath(QStringLiteral("args.txt"));
    const QString emulator = m_home->filePath(QStringLiteral("fake-emu"));
    QVERIFY(writeFile(emulator,
                      "#!/bin/sh\n{ for a in \"$@\"; do echo \"[$a]\"; done; } > \"" +
                          out.toUtf8() + ".part\"\nmv \"" + out.toUtf8() + ".part\" \"" +
                          out.toUtf8() + "\"\n",
                      true));

    frmMain& form = open();
    app::gDB->execute("UPDATE Category SET tPath='" + disk + "' WHERE ID=1");
    for (const launch::EmulatorPtr& e : launch::gEmulators)
        e->Path = emulator;

    QVERIFY(form.tree()->SelectItem(QStringLiteral("1"), 2));
    controls::SimpleReport& list = form.list()->report();
    QCOMPARE(list.cellText(2, kFileColumn), QStringLiteral("MY_GAME"));
    const QRect cell = list.visualRect(list.model()->index(2, kFileColumn));
    QVERIFY(cell.isValid());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(form.infoTag(), QStringLiteral("3"));

    QVERIFY2(QTest::qWaitFor([&] { return QFile::exists(out); }, 5000), "no emulator ran");
    QFile f(out);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QString args = QString::fromUtf8(f.readAll());
    // The profile of .D64 starts a copy of the disk in Temp.
    QVERIFY2(args.contains(u"[-autostart]"_qs) && args.contains(app::gTempPath) &&
                 args.contains(u".d64]"_qs),
             qPrintable(args));
    auto rs =
        app::gDB->openRecordset(QStringLiteral("Select lStartCount From C64Files where ID=3"));
    QCOMPARE(rs->value(0).toInt(), 1);
    QVERIFY(m_dialogs.messages().isEmpty());
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
