// The tree engine on real catalogues: the arithmetic between absolute and local rows, opening
// and closing, walking, requeries that keep the opened shape and the selection, and handles
// that outlive their rows.

#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "controls/SubTree.h"
#include "controls/TreeItem.h"
#include "controls/TreeLevels.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"
#include "support/FileViewLevels.h"

#include <QtTest>

using namespace vd;
using namespace vd::controls;

namespace {

const QString& kRoot = test::kRootLevel;
const QString& kFiles = test::kFilesLevel;
const QString& kEntries = test::kEntriesLevel;

// The file view over the fixture, files ordered by name:
//   0 Dateien
//   1 Boulder Dash.tap (4)  2 Commando.d64 (9)  3 cover.png (7)  4 Empty.d81 (8)
//   5 O'Brien's Disk.d64 (6: O'BRIEN, (NO NAME))  6 Paradroid.prg (3: PARADROID)
//   7 readme.txt (5)  8 Sanxion.d64 (1: three)  9 title.gif (10)  10 Uridium.t64 (2)

// A tree over a fresh catalogue, listening to its root.
class Tree : public TreeEvents
{
public:
    explicit Tree(const QStringList& levelSql, int plusMinusMode = 0)
    {
        levels.Create(&fx.db(), plusMinusMode);
        levels.Setup(levelSql);
        root = CSubTree::make();
        root->setEvents(this);
        root->Create(nullptr, QString(), -1);
    }
    ~Tree() override { root->ClearReferences(); }

    CTreeLevels* LevelInfo() override { return &levels; }
    void SelectionChange() override { ++selectionChanges; }
    void SubItemSelect(const TreeItemP& item) override
    {
        subItemSelects << (item ? item->Key : QStringLiteral("-"));
        if (activate && item) // as the control makes the row current
            item->setSelected(true);
    }
    void Redraw(int mode) override { redraws << mode; }

    // Every row from the top as "level:caption", through absolute indexes; checked against the
    // walk by NextItem, and each handle against its own index.
    QStringList rows()
    {
        QStringList out, walked;
        const qint32 n = root->NodesCount(false);
        for (qint32 i = 0; i < n; ++i) {
            TreeItemP item = root->FindTreeItem(i);
            if (!item)
                return {QStringLiteral("no handle at %1").arg(i)};
            if (item->Index() != i)
                return {QStringLiteral("row %1 says it is %2").arg(i).arg(item->Index())};
            out << QStringLiteral("%1:%2").arg(item->Level).arg(item->Caption);
        }
        for (TreeItemP item = root->FindTreeItem(0); item; item = item->NextItem())
            walked << QStringLiteral("%1:%2").arg(item->Level).arg(item->Caption);
        if (walked != out)
            return {QStringLiteral("walk differs: ") + walked.join(QLatin1Char('|'))};
        if (root->NodesCount(true) != n)
            return {
                QStringLiteral("cached count %1, recounted %2").arg(n).arg(root->NodesCount(true))};
        return out;
    }

    std::shared_ptr<CSubTree> files() { return root->SubTrees.Item(QStringLiteral("-1")); }

    test::CatalogueFixture fx;
    CTreeLevels levels;
    std::shared_ptr<CSubTree> root;
    int selectionChanges = 0;
    bool activate = false;
    QStringList subItemSelects;
    QList<int> redraws;
};

QStringList fileRows()
{
    return {"1:Dateien",     "2:Boulder Dash.tap",   "2:Commando.d64",  "2:cover.png",
            "2:Empty.d81",   "2:O'Brien's Disk.d64", "2:Paradroid.prg", "2:readme.txt",
            "2:Sanxion.d64", "2:title.gif",          "2:Uridium.t64"};
}

} // namespace

class TestTreeEngine : public QObject
{
    Q_OBJECT

    platform::ScriptedDialogService m_dialogs;

private slots:
    void init()
    {
        m_dialogs.clear();
        platform::setDialogService(&m_dialogs);
    }
    void cleanup()
    {
        QVERIFY2(m_dialogs.calls.isEmpty(),
                 qPrintable(m_dialogs.messages().join(QLatin1Char('\n'))));
        platform::setDialogService(nullptr);
    }

    // The worked example: a root of 10 rows with 3 children under row 2.
    void absoluteAndLocalIndexes()
    {
        Tree t(
            {QStringLiteral(
                 "SELECT F.ID AS ItemKey,-1 AS ParentKey,1 AS Icon,tCategory From Category as F "
                 "where iType=1 order by tCategory desc"),
             QStringLiteral(
                 "SELECT ID AS ItemKey,Category_File AS ParentKey,2 AS Icon,tProgram From C64Files "
                 "where Category_File=1 order by lIndex")});
        QCOMPARE(t.root->NodesCountEx(), 10);
        QCOMPARE(t.root->NodeText(2), QStringLiteral("Sanxion.d64"));
        QVERIFY(t.root->IsParent(2));
        QVERIFY(!t.root->IsParent(3));
        auto child = t.root->Expand(2);
        QVERIFY(child);
        QCOMPARE(child->ParentIndex, 2);
        QCOMPARE(t.root->NodesCount(false), 13);

        const QList<QPair<int, int>> where = {{0, 0}, {2, 2}, {3, 0}, {4, 1},
                                              {5, 2}, {6, 3}, {12, 9}};
        for (const auto& [abs, local] : where) {
            auto tree = t.root->FindSubTree(abs);
            QCOMPARE(tree == child, abs >= 3 && abs <= 5);
            QCOMPARE(tree->ResultNode, local);
            QCOMPARE(tree->GetAbsoluteIndex(local), abs);
        }
        QVERIFY(!t.root->FindTreeItem(-1));
        QVERIFY(!t.root->FindTreeItem(13));
        QCOMPARE(t.root->FindTreeItem(12)->Caption, QStringLiteral("Boulder Dash.tap"));
        QCOMPARE(child->FindTreeItem(4)->Caption,
                 QStringLiteral("SANXION HISCORE")); // from any subtree
    }

    void twoAdjacentExpandedRows()
    {
        Tree t({kRoot, kFiles, kEntries});
        QCOMPARE(t.rows(), QStringList{"1:Dateien"});
        auto files = t.root->Expand(0);
        QVERIFY(files);
        QCOMPARE(t.rows(), fileRows());
        auto obrien = files->Expand(QStringLiteral("6"));
        auto paradroid = files->Expand(5);
        QVERIFY(obrien && paradroid);
        QCOMPARE(paradroid->ParentIndex, obrien->ParentIndex + 1);
        QStringList expected = fileRows();
        expected.insert(6, QStringLiteral("3:O'BRIEN.PRG"));
        expected.insert(7, QStringLiteral("3:(NO NAME).PRG"));
        expected.insert(9, QStringLiteral("3:PARADROID.PRG"));
        QCOMPARE(t.rows(), expected);
        QCOMPARE(files->GetAbsoluteIndex(5), 8);
        QCOMPARE(paradroid->GetAbsoluteIndex(0), 9);
        QCOMPARE(files->SubTrees.Item(1), obrien); // kept in row order
        QCOMPARE(files->SubTrees.Item(2), paradroid);

        // Walking the edges.
        QVERIFY(!t.root->FindTreeItem(0)->PrevItem());
        QVERIFY(!t.root->FindTreeItem(0)->ParentItem());
        TreeItemP last = t.root->FindTreeItem(13);
        QCOMPARE(last->Caption, QStringLiteral("Uridium.t64"));
        QVERIFY(!last->NextItem());
        TreeItemP entry = t.root->FindTreeItem(7);
        QCOMPARE(entry->ParentItem()->Caption, QStringLiteral("O'Brien's Disk.d64"));
        QCOMPARE(entry->NextItem()->Caption, QStringLiteral("Paradroid.prg")); // climbs out
        QCOMPARE(entry->PrevItem()->Caption, QStringLiteral("O'BRIEN.PRG"));
        QCOMPARE(entry->GetFieldValue(QStringLiteral("ParentKey")).toInt(), 6);
        QCOMPARE(entry->Icon, qint16(1));
        QCOMPARE(entry->ParentKey, QStringLiteral("6"));

        // Collapsing the first gives its rows back; the second child moves up with its row.
        TreeItemP obrienRow = t.root->FindTreeItem(5);
        QCOMPARE(obrienRow->SubItemCount(), 2);
        obrienRow->setExpanded(false);
        QCOMPARE(t.redraws, QList<int>{2});
        QVERIFY(!files->SubTrees.Item(QStringLiteral("6")));
        QCOMPARE(t.root->FindTreeItem(7)->Caption, QStringLiteral("PARADROID.PRG"));
        QCOMPARE(t.root->NodesCount(false), 12);
        QCOMPARE(t.rows().size(), 12);
    }

    void connectorPictures_data()
    {
        QTest::addColumn<int>("absolute");
        QTest::addColumn<int>("icon");
        QTest::newRow("only row, open") << 0 << 12;
        QTest::newRow("middle, closed parent") << 1 << 5;
        QTest::newRow("middle leaf") << 4 << 4;
        QTest::newRow("middle, open") << 8 << 6;
        QTest::newRow("last entry of a subtree") << 11 << 7;
        QTest::newRow("last row, closed parent") << 13 << 8;
    }
    void connectorPictures()
    {
        QFETCH(int, absolute);
        QFETCH(int, icon);
        Tree t({kRoot, kFiles, kEntries});
        t.root->Expand(0)->Expand(QStringLiteral("1"));
        QCOMPARE(t.root->FindTreeItem(absolute)->TreeLineIcon(), icon);
    }

    void selectionIsKeptOnce()
    {
        Tree t({kRoot, kFiles, kEntries});
        auto files = t.root->Expand(0);
        auto sanxion = files->Expand(QStringLiteral("1"));
        sanxion->SelectItem(1);
        QCOMPARE(sanxion->SelKey, QStringLiteral("2"));
        files->SelectItem(0);
        QVERIFY(sanxion->SelKey.isEmpty());
        QVERIFY(!sanxion->flags.fSelected(1));
        QCOMPARE(files->SelKey, QStringLiteral("4"));
        qint32 index = -1;
        std::shared_ptr<CSubTree> where;
        QVERIFY(t.root->FindSelectedItem(index, where));
        QCOMPARE(where, files);
        QCOMPARE(index, 0);
        QCOMPARE(files->FindString(QStringLiteral("1"), where), 0); // column 1, not the text
    }

    void requeryRemovesTheSelectedRow()
    {
        Tree t({kRoot, kFiles, kEntries});
        auto files = t.root->Expand(0);
        auto obrien = files->Expand(QStringLiteral("6"));
        obrien->SelectItem(1); // (NO NAME), the last row
        t.fx.db().execute(QStringLiteral("Delete From C64Files where ID=10"));
        t.levels.CreateParentBuffers(true);
        QCOMPARE(t.root->Requery(), 1);
        QCOMPARE(t.selectionChanges, 1);
        QCOMPARE(obrien->SelKey, QStringLiteral("8")); // the last row is the one left
        QVERIFY(obrien->flags.fSelected(0));
        QStringList expected = fileRows();
        expected.insert(6, QStringLiteral("3:O'BRIEN.PRG"));
        QCOMPARE(t.rows(), expected);
    }

    void requeryThatEmptiesASubtree()
    {
        Tree t({kRoot, kFiles, kEntries});
        auto files = t.root->Expand(0);
        auto paradroid = files->Expand(QStringLiteral("3"));
        paradroid->SelectItem(0);
        t.fx.db().execute(QStringLiteral("Delete From C64Files where Category_File=3"));
        t.levels.CreateParentBuffers(true);
        t.root->Requery();
        QVERIFY(!files->SubTrees.Item(QStringLiteral("3")));
        QVERIFY(!files->flags.fExpanded(5));
        QVERIFY(!files->IsParent(5));
        QCOMPARE(files->SelKey, QStringLiteral("3")); // the owning row took the selection
        QVERIFY(files->flags.fSelected(5));
        QCOMPARE(t.selectionChanges, 1);
        QCOMPARE(t.rows(), fileRows());
    }

    void requeryThatReordersRows()
    {
        Tree t({kRoot, kFiles, kEntries});
        auto files = t.root->Expand(0);
        files->Expand(QStringLiteral("1")); // Sanxion, row 7
        files->Expand(QStringLiteral("4")); // Boulder Dash, row 0
        files->SelectItem(9);               // Uridium
        t.fx.db().execute(
            QStringLiteral("Update Category Set tCategory='AAA Sanxion.d64' where ID=1"));
        t.fx.db().execute(
            QStringLiteral("Update Category Set tCategory='zzz Boulder.tap' where ID=4"));
        t.root->Requery();
        QCOMPARE(files->SubTrees.Item(1)->KeyStr, QStringLiteral("1"));
        QCOMPARE(files->SubTrees.Item(1)->ParentIndex, 0);
        QCOMPARE(files->SubTrees.Item(2)->KeyStr, QStringLiteral("4"));
        QCOMPARE(files->SubTrees.Item(2)->ParentIndex, 9);
        QCOMPARE(
            t.rows(),
            (QStringList{"1:Dateien", "2:AAA Sanxion.d64", "3:SANXION.PRG", "3:SANXION HISCORE.SEQ",
                         "3:MY_GAME.PRG", "2:Commando.d64", "2:cover.png", "2:Empty.d81",
                         "2:O'Brien's Disk.d64", "2:Paradroid.prg", "2:readme.txt", "2:title.gif",
                         "2:Uridium.t64", "2:zzz Boulder.tap", "3:BOULDER DASH.PRG"}));
        QCOMPARE(files->SelKey, QStringLiteral("2")); // Uridium still, at its new row
        QVERIFY(files->flags.fSelected(8));
        QCOMPARE(t.selectionChanges, 0);
    }

    void rootRequeryWithNothingSelectedSelectsRowZero()
    {
        Tree t({kRoot, kFiles});
        QCOMPARE(t.root->Requery(), 1);
        QCOMPARE(t.root->SelKey, QStringLiteral("-1"));
        QCOMPARE(t.selectionChanges, 1);
        QCOMPARE(t.subItemSelects, QStringList{"-1"});
    }

    void cascadeExpand()
    {
        Tree t({kRoot, kFiles, kEntries});
        QStringList keys{"-1", "6"};
        auto obrien = t.root->CascadeExpand(keys);
        QVERIFY(obrien);
        QVERIFY(keys.isEmpty()); // consumed
        QCOMPARE(obrien->KeyStr, QStringLiteral("6"));
        QCOMPARE(t.root->NodesCount(false), 13);

        // A key that does not exist stops there; what was opened stays open.
        t.root->Collapse(0);
        keys = QStringList{"-1", "999", "5"};
        QVERIFY(!t.root->CascadeExpand(keys));
        QCOMPARE(keys, (QStringList{"999", "5"}));
        QCOMPARE(t.rows(), fileRows());

        keys = QStringList{"-1", "1"};
        auto sanxion = t.root->CascadeExpand(keys);
        QVERIFY(sanxion);
        sanxion->ResultNode = 2;
        QCOMPARE(sanxion->CascadeExpandEx(keys)->Caption, QStringLiteral("MY_GAME.PRG"));
    }

    void expandAll()
    {
        Tree t({kRoot, kFiles, kEntries});
        TreeItemP top = t.root->FindTreeItem(0);
        top->ExpandAll();
        QCOMPARE(t.root->NodesCount(false), 1 + 10 + 12);
        QCOMPARE(t.rows().size(), 23);
        QCOMPARE(t.files()->SubTrees.Count(), 9);
        QCOMPARE(top->SubItemCount(), 22);
        QCOMPARE(top->SubItemCountEx(true), 10);
        QCOMPARE(t.redraws, QList<int>{1});
    }

    void staleHandleAfterShrinking()
    {
        Tree t({kRoot, kFiles, kEntries});
        t.root->Expand(0);
        TreeItemP last = t.root->FindTreeItem(10);
        QCOMPARE(last->Caption, QStringLiteral("Uridium.t64"));
        QVERIFY(last->IsLastItem());
        last->setVisible(true);
        QVERIFY(last->Visible());
        t.fx.db().execute(QStringLiteral("Delete From Category where ID in (2,10,5,1,3)"));
        t.root->Requery();
        QCOMPARE(t.files()->NodesCountEx(), 5);
        // The handle still points at local row 9 of a list that now ends at 4.
        QVERIFY(!last->IsLastItem());
        QVERIFY(!last->Selected());
        QVERIFY(!last->Expanded());
        QVERIFY(!last->Visible());
        QVERIFY(!last->RedrawFlag());
        last->setRedrawFlag(true); // does nothing, and does not fail
        QVERIFY(!last->RedrawFlag());
        QCOMPARE(t.files()->flags.Item(9), quint8(0));
    }

    void expandingAnEmptyRowDropsThePlus()
    {
        Tree t({kRoot, kFiles, kEntries});
        auto files = t.root->Expand(0);
        t.fx.db().execute(QStringLiteral("Delete From C64Files where Category_File=4"));
        TreeItemP boulder = t.root->FindTreeItem(1);
        QVERIFY(boulder->IsParent()); // the buffer does not know yet
        boulder->setExpanded(true);
        QVERIFY(!files->SubTrees.Item(QStringLiteral("4")));
        QVERIFY(!boulder->IsParent()); // buffers rebuilt, level read again
        QCOMPARE(t.redraws, QList<int>{0});
    }

    void plusMinusModeTrustsTheFlag()
    {
        Tree t({kRoot, kFiles, kEntries}, 1);
        auto files = t.root->Expand(0);
        QVERIFY(files);
        TreeItemP empty = t.root->FindTreeItem(4);
        QCOMPARE(empty->Caption, QStringLiteral("Empty.d81"));
        QVERIFY(empty->IsParent()); // every row of a level with a level below claims children
        QCOMPARE(empty->TreeLineIcon(), 5);
        empty->setExpanded(true);
        QVERIFY(!empty->IsParent());
        QCOMPARE(empty->TreeLineIcon(), 4);
        TreeItemP sanxion = t.root->FindTreeItem(8);
        sanxion->setExpanded(true);
        QCOMPARE(sanxion->SubItemCount(), 3);
        QCOMPARE(t.redraws, (QList<int>{0, 1}));
        // The last level claims nothing.
        QVERIFY(!t.root->FindTreeItem(9)->IsParent());
    }

    void selectSubItem()
    {
        Tree t({kRoot, kFiles, kEntries});
        t.root->Expand(0);
        TreeItemP sanxion = t.root->FindTreeItem(8);
        QVERIFY(!sanxion->SelectSubItem(QStringLiteral("999")));
        QVERIFY(t.subItemSelects.isEmpty());
        QVERIFY(sanxion->Expanded());                          // opened on the way
        QVERIFY(!sanxion->SelectSubItem(QStringLiteral("3"))); // told; the host did not select it
        QCOMPARE(t.subItemSelects, QStringList{"3"});
        t.activate = true;
        QVERIFY(sanxion->SelectSubItem(QStringLiteral("2")));
        QCOMPARE(t.files()->SubTrees.Item(QStringLiteral("1"))->SelKey, QStringLiteral("2"));
    }

    void screenBuffer()
    {
        Tree t({kRoot, kFiles, kEntries});
        t.root->Expand(0)->Expand(QStringLiteral("1"));
        CScreenBuffer buf;
        buf.Fill(t.root, 6, 5);
        QCOMPARE(buf.Count(), 5);
        QCOMPARE(buf.Item(0)->Caption, QStringLiteral("Paradroid.prg"));
        QCOMPARE(buf.Item(4)->Caption, QStringLiteral("SANXION HISCORE.SEQ"));
        QVERIFY(buf.Item(0)->Visible());
        QVERIFY(!buf.Item(5));
        QVERIFY(!buf.SelectedItem);

        TreeItemP top = buf.Item(0);
        buf.ScrollDownBuffer();
        QCOMPARE(buf.BufAbsIndex, 7);
        QCOMPARE(buf.RedrawMode, 1);
        QVERIFY(!top->Visible());
        QCOMPARE(buf.Item(4)->Caption, QStringLiteral("MY_GAME.PRG"));
        buf.ScrollUpBuffer();
        QCOMPARE(buf.BufAbsIndex, 6);
        QCOMPARE(buf.RedrawMode, 2);
        QCOMPARE(buf.Item(0)->Caption, QStringLiteral("Paradroid.prg"));
        QCOMPARE(buf.Count(), 5);

        QVERIFY(buf.SelectRow(2));
        QVERIFY(!buf.SelectRow(2)); // same row again
        QVERIFY(!buf.SelectRow(5));
        QCOMPARE(buf.RedrawMode, 4);
        QVERIFY(buf.Item(2)->Selected());
        QVERIFY(buf.MakeSelection(buf.Item(3)));
        QVERIFY(!buf.Item(2)->Selected());
        CScreenBuffer other;
        other.Fill(t.root, 0, 40); // more rows asked than exist
        QCOMPARE(other.Count(), 14);
        QCOMPARE(other.SelectedItem->Caption, QStringLiteral("SANXION.PRG"));

        buf.Fill(t.root, 0, 3);
        buf.ScrollUpBuffer(); // already at the top
        QCOMPARE(buf.BufAbsIndex, 0);
        QCOMPARE(buf.Item(0)->Caption, QStringLiteral("Dateien"));
    }

    void failingLevelIsReportedAndRowStaysClosed()
    {
        Tree t({kRoot, kFiles,
                QStringLiteral("SELECT ID AS ItemKey,Category_File AS ParentKey,1 AS Icon,"
                               "tProgram FROM C64Files where NoSuchField=1")});
        QCOMPARE(m_dialogs.calls.size(), 1); // the parent buffer could not be built
        QCOMPARE(m_dialogs.calls[0].title, QStringLiteral("Tree: CTreeLevels_Setup"));
        m_dialogs.clear();
        QCOMPARE(t.levels.Count(), 3); // added, but without the buffer above it
        QVERIFY(t.levels.inSetup());
        auto files = t.root->Expand(0);
        QVERIFY(files);
        QVERIFY(!files->IsParent(0));
        QVERIFY(!files->Expand(0));
    }
};

QTEST_GUILESS_MAIN(TestTreeEngine)
#include "tst_treeengine.moc"
