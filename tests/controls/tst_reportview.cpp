// The drill-down list on a real catalogue, driven by double clicks and Return: user categories,
// their entries, one entry; the way down takes the row's key, the way back brings the level's
// filter value and column layout again, and a row without a key stays where it is.

#include "catalogue/Database.h"
#include "controls/SubTree.h"
#include "controls/TreeItem.h"
#include "controls/TreeLevels.h"
#include "controls/ui/ReportView.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"
#include "support/FileViewLevels.h"

#include <QHeaderView>
#include <QSignalSpy>
#include <QtTest>

using namespace vd;
using namespace vd::controls;

namespace {

// Level 1: the user categories; level 2: the entries of one (by Category_User); level 3: one
// entry with its details. Column 1 is what the next level is filtered on.
const QStringList kLevels = {
    u"Select C.ID,-1 AS ParentKey,16 AS Icon,tCategory AS [Category] From Category as C "
    "where iType=3"_qs,
    u"Select C64Files.ID,Category_User AS ParentKey,F.iFileType AS Icon,tProgram AS [File],"
    "lSize AS [Blocks] From (C64Files Left Join Category as F on C64Files.Category_File=F.ID)"_qs,
    u"Select ID,ID AS ParentKey,0 AS Icon,tProgram AS [File],tExtension AS [Filetyp],lIndex "
    "From C64Files"_qs};

constexpr int kText = 3;
constexpr int kBlocks = 4;

// The file view's tree: root, files, entries; opened by the engine as the tree control does.
class FileTree : public TreeEvents
{
public:
    explicit FileTree(db::Database& db)
    {
        levels.Create(&db, 0);
        levels.Setup({test::kRootLevel, test::kFilesLevel, test::kEntriesLevel});
        root = CSubTree::make();
        root->setEvents(this);
        root->Create(nullptr, QString(), -1);
    }
    ~FileTree() override { root->ClearReferences(); }
    CTreeLevels* LevelInfo() override { return &levels; }

    // The first row with this caption, from the top.
    TreeItemP item(const QString& caption)
    {
        for (TreeItemP i = root->FindTreeItem(0); i; i = i->NextItem())
            if (i->Caption == caption)
                return i;
        return nullptr;
    }

    CTreeLevels levels;
    std::shared_ptr<CSubTree> root;
};

} // namespace

class TestReportView : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::CatalogueFixture> m_cat;
    std::unique_ptr<ReportView> m_view;
    platform::ScriptedDialogService m_dialogs;

    SimpleReport& list() { return m_view->report(); }

    QStringList texts()
    {
        QStringList out;
        for (qint64 r = 0; r < list().ItemCount(); ++r)
            out << list().cellText(r, kText);
        out.sort();
        return out;
    }

    qint64 rowOf(const QString& text)
    {
        for (qint64 r = 0; r < list().ItemCount(); ++r)
            if (list().cellText(r, kText) == text)
                return r;
        return -1;
    }

    void doubleClickRow(const QString& text)
    {
        const qint64 row = rowOf(text);
        QVERIFY2(row >= 0, qPrintable(text));
        const QRect cell = list().visualRect(list().model()->index(int(row), kText));
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, cell.center());
    }

private slots:
    void init()
    {
        platform::setDialogService(&m_dialogs);
        m_dialogs.clear();
        m_cat = std::make_unique<test::CatalogueFixture>();
        m_view = std::make_unique<ReportView>();
        m_view->resize(500, 300);
        list().props().InvisibleCols = 3;
        list().props().InvisibleColMode = 1;
        list().props().KeyColumn = 0;
        list().props().DblClickOnReturn = true;
        list().setFilterColumn(1);
        m_view->setDataBase(&m_cat->db());
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    }
    void cleanup()
    {
        m_view.reset();
        m_cat.reset();
        platform::setDialogService(nullptr);
    }

    void downAndBackKeepFilterAndLayoutPerLevel()
    {
        QSignalSpy levels(m_view.get(), &ReportView::activeLevelChange);
        m_view->levels().Setup(kLevels);
        QCOMPARE(m_view->CurLevel(), 1);
        QCOMPARE(levels.count(), 1);
        QCOMPARE(texts(), (QStringList{u"Action"_qs, u"Puzzle"_qs, u"Shoot'em Up"_qs}));
        list().horizontalHeader()->resizeSection(kText, 140);

        // Down by a double click: the category's key filters level 2.
        doubleClickRow(u"Shoot'em Up"_qs);
        QCOMPARE(m_view->CurLevel(), 2);
        QCOMPARE(levels.last()[0].toInt(), 2);
        QCOMPARE(m_view->levelFilterValue(2), u"21"_qs);
        QCOMPARE(texts(), (QStringList{u"O'BRIEN"_qs, u"SANXION"_qs}));
        list().horizontalHeader()->resizeSection(kBlocks, 77);

        // Down by Return, which acts as a double click.
        list().setSelectedIndex(rowOf(u"O'BRIEN"_qs));
        QTest::keyClick(&list(), Qt::Key_Return);
        QCOMPARE(m_view->CurLevel(), 3);
        QCOMPARE(m_view->levelFilterValue(3), u"8"_qs);
        QCOMPARE(texts(), QStringList{u"O'BRIEN"_qs});
        // The last level goes no further.
        list().setSelectedIndex(0);
        m_view->NextLevel();
        QCOMPARE(m_view->CurLevel(), 3);

        // Back: level 2 with its filter value and its column widths.
        m_view->PrevLevel();
        QCOMPARE(m_view->CurLevel(), 2);
        QCOMPARE(list().FilterValue().toString(), u"21"_qs);
        QCOMPARE(texts(), (QStringList{u"O'BRIEN"_qs, u"SANXION"_qs}));
        QCOMPARE(list().horizontalHeader()->sectionSize(kBlocks), 77);
        m_view->PrevLevel();
        QCOMPARE(m_view->CurLevel(), 1);
        QCOMPARE(list().ItemCount(), 3);
        QCOMPARE(list().horizontalHeader()->sectionSize(kText), 140);
        m_view->PrevLevel();
        QCOMPARE(m_view->CurLevel(), 1);

        // The layouts of all three levels, joined by "@".
        const QStringList pieces = m_view->Layout().split(u'@');
        QCOMPARE(pieces.size(), 3);
        QVERIFY(pieces[0].contains(u"Category!Hidden=0;Width=140;"_qs));
        QVERIFY(pieces[1].contains(u"Blocks!Hidden=0;Width=77;"_qs));
        QVERIFY(pieces[2].contains(u"Filetyp!Hidden=0;"_qs));
    }

    void aNullKeyDoesNotGoDown()
    {
        // Only Sanxion.d64 has an MD5 sum; the others have no key to go down with.
        m_view->levels().Setup(
            {u"Select tHash,-1 AS ParentKey,F.iFileType AS Icon,tCategory AS [File] From "
             "Category as F where iType=1"_qs,
             u"Select C64Files.ID,F.tHash AS ParentKey,F.iFileType AS Icon,tProgram AS [File] "
             "From (C64Files Left Join Category as F on C64Files.Category_File=F.ID)"_qs});
        QCOMPARE(list().ItemCount(), test::CatalogueFixture::kFileCount);
        doubleClickRow(u"Uridium.t64"_qs);
        QCOMPARE(m_view->CurLevel(), 1);
        QCOMPARE(list().ItemCount(), test::CatalogueFixture::kFileCount);
        list().setSelectedIndex(rowOf(u"Empty.d81"_qs));
        m_view->NextLevel();
        QCOMPARE(m_view->CurLevel(), 1);

        doubleClickRow(u"Sanxion.d64"_qs);
        QCOMPARE(m_view->CurLevel(), 2);
        QCOMPARE(texts(), (QStringList{u"MY_GAME"_qs, u"SANXION"_qs, u"SANXION HISCORE"_qs}));
    }

    void setupAgainKeepsTheLevelUnlessReInit()
    {
        m_view->levels().Setup(kLevels);
        doubleClickRow(u"Action"_qs);
        QCOMPARE(m_view->CurLevel(), 2);

        // A reload with ReInit off comes back to level 2 with its filter value.
        m_view->levels().setReInit(false);
        m_view->levels().Setup(kLevels);
        QCOMPARE(m_view->CurLevel(), 2);
        QCOMPARE(texts(), (QStringList{u"PARADROID"_qs, u"URIDIUM"_qs}));
        // The list form fires nothing with ReInit off: the list stays as it is.
        QSignalSpy levels(m_view.get(), &ReportView::activeLevelChange);
        m_view->levels().Setup(kLevels[0], kLevels[1]);
        QCOMPARE(levels.count(), 0);

        // With ReInit on it starts at level 1, and the host's layouts come through
        // FetchColumnLayout; levels without a piece size their columns themselves.
        m_view->levels().setReInit(true);
        connect(m_view.get(), &ReportView::fetchColumnLayout, this, [](QString& layout) {
            layout = u"Category!Hidden=0;Width=111;Fixed=0;Order=3"_qs;
        });
        m_view->levels().Setup(kLevels);
        QCOMPARE(m_view->CurLevel(), 1);
        QCOMPARE(list().horizontalHeader()->sectionSize(kText), 111);
        doubleClickRow(u"Action"_qs);
        QCOMPARE(m_view->CurLevel(), 2);
        const int blocks = list().horizontalHeader()->sectionSize(kBlocks);
        QVERIFY2(blocks != 64, "level 2 had no layout and was sized to its contents");
    }

    void doubleClickGoesToTheHostWithDblClickMode()
    {
        m_view->setDblClickMode(1);
        m_view->levels().Setup(kLevels);
        QSignalSpy dbl(m_view.get(), &ReportView::itemDblClick);
        doubleClickRow(u"Puzzle"_qs);
        QCOMPARE(dbl.count(), 1);
        QCOMPARE(dbl[0][0].toLongLong(), rowOf(u"Puzzle"_qs));
        QCOMPARE(m_view->CurLevel(), 1);
        QCOMPARE(m_view->SelectedItemKey(), u"22"_qs);
        const cListItem item = m_view->SelectedItem();
        QCOMPARE(item.Level, 1);
        QCOMPARE(item.Caption, u"Puzzle"_qs);
    }

    void synchronizeShowsWhatBelongsToATreeNode()
    {
        // The main window's pairing: list level 1 every entry, level 2 the entries of a file.
        m_view->levels().Setup(
            {u"Select C64Files.ID,-1 AS ParentKey,0 AS Icon,tProgram AS [File] From C64Files"_qs,
             u"Select C64Files.ID,Category_File AS ParentKey,0 AS Icon,tProgram AS [File] From "
             "C64Files"_qs});
        FileTree tree(m_cat->db());
        auto files = tree.root->Expand(0);
        QVERIFY(files);
        QVERIFY(files->Expand(u"1"_qs)); // Sanxion.d64 open

        m_view->Synchronize(tree.item(u"Paradroid.prg"_qs));
        QCOMPARE(m_view->CurLevel(), 2);
        QCOMPARE(texts(), QStringList{u"PARADROID"_qs});
        QCOMPARE(m_view->levelFilterValue(2), u"3"_qs);
        // An entry (tree level 3) is deeper than the list: its file's list shows.
        const TreeItemP entry = tree.item(u"MY_GAME.PRG"_qs);
        QVERIFY(entry);
        QCOMPARE(entry->Level, 3);
        m_view->Synchronize(entry);
        QCOMPARE(m_view->CurLevel(), 2);
        QCOMPARE(list().FilterValue().toString(), u"1"_qs);
        QCOMPARE(texts(), (QStringList{u"MY_GAME"_qs, u"SANXION"_qs, u"SANXION HISCORE"_qs}));
        // The root shows level 1, every entry.
        m_view->Synchronize(tree.item(u"Dateien"_qs));
        QCOMPARE(m_view->CurLevel(), 1);
        QCOMPARE(list().ItemCount(), test::CatalogueFixture::kEntryCount);
    }

    void nothingHappensWithoutLevelsOrTreeItem()
    {
        m_view->Synchronize(nullptr);
        m_view->NextLevel();
        m_view->PrevLevel();
        QCOMPARE(m_view->CurLevel(), 0);
        QCOMPARE(list().ItemCount(), 0);
        m_view->levels().Setup(QStringList());
        QCOMPARE(m_view->CurLevel(), 0);
    }
};

QTEST_MAIN(TestReportView)
#include "tst_reportview.moc"
