// The list's data side on real catalogues: loading with filter and sort, paging through a
// long list, column decisions by field type, the layout string, the selection kept across a
// reload, Find and the search as the user types.

#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "controls/ReportEngine.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"

#include <QtTest>

using namespace vd;
using namespace vd::controls;

namespace {

// The fixture's entries with their file, as the main window's list shows them.
const QString kEntries =
    QStringLiteral("Select  C64Files.ID,Category_File AS ParentKey,F.iFileType as Icon,tProgram as "
                   "[File],tExtension as "
                   "[Filetyp],lSize as [Blocks] From (C64Files Left Join Category as F on "
                   "C64Files.Category_File=F.ID)");

class Events : public ReportEvents
{
public:
    void SelectionChange() override { ++selectionChanges; }
    void FetchColumn(int& col) override
    {
        if (sortColumn >= -1)
            col = sortColumn;
    }
    void ColumnClick(int col, int button, int) override
    {
        columnClicks << QStringLiteral("%1/%2").arg(col).arg(button);
    }
    void TranslateIcon(QVariant& icon) override { icon = icon.toInt() + 100; }
    void FetchContents(qint64 row, int col, QVariant& text, QVariant&) override
    {
        text = QStringLiteral("host %1/%2").arg(row).arg(col);
    }
    void autoSizeColumns(int column, int mode) override
    {
        autoSizes << QStringLiteral("%1/%2").arg(column).arg(mode);
    }
    void repaint() override { ++repaints; }
    void openHeaderMenu(int col) override { menus << col; }

    int selectionChanges = 0;
    int sortColumn = -2; // -2: leave the engine's choice
    QStringList columnClicks;
    QStringList autoSizes;
    QList<int> menus;
    int repaints = 0;
};

// A list of `n` entries "P0001".. in one file, IDs 1 to n.
void writeLongList(db::Database& db, int n)
{
    db.beginTrans();
    db.execute(QStringLiteral("Insert Into Category (ID,iType,tCategory,tFile,iFileType) Values "
                              "(1,1,'Long.d64','Long.d64',1)"));
    for (int i = 1; i <= n; ++i)
        db.execute(
            QStringLiteral(
                "Insert Into C64Files (ID,tProgram,tExtension,lSize,lIndex,Category_File) Values "
                "(%1,'P%2','PRG',%3,%1,1)")
                .arg(i)
                .arg(i, 4, 10, QLatin1Char('0'))
                .arg(i % 200));
    db.commitTrans();
}

// A table with one field of each kind the list aligns and formats differently.
void writeKinds(db::Database& db)
{
    db::TableDef t;
    t.name = QStringLiteral("Kinds");
    t.fields = {{QStringLiteral("ID"), db::type::Long},
                {QStringLiteral("Name"), db::type::Text, 50},
                {QStringLiteral("Price"), db::type::Currency},
                {QStringLiteral("Weight"), db::type::Double},
                {QStringLiteral("Added"), db::type::Date},
                {QStringLiteral("Note"), db::type::Memo},
                {QStringLiteral("Flag"), db::type::Boolean},
                {QStringLiteral("Amount"), db::type::Integer},
                {QStringLiteral("Data"), db::type::LongBinary}};
    db.createTable(t);
    db.execute(
        QStringLiteral("Insert Into Kinds (ID,Name,Price,Weight,Added,Note,Flag,Amount) Values "
                       "(1,'Anna',1234,1.5,#03/14/2024 09:05:00 pm#,'x',-1,3)"));
    db.execute(
        QStringLiteral("Insert Into Kinds (ID,Name,Price,Weight,Added,Note,Flag,Amount) Values "
                       "(2,'Bert''s',99,2.25,#01/02/2024#,Null,0,4)"));
}

QString column(const ReportColumn& c)
{
    const char* align = c.alignment == ColumnAlign::Left    ? "L"
                        : c.alignment == ColumnAlign::Right ? "R"
                                                            : "C";
    return QStringLiteral("%1 %2 %3%4%5")
        .arg(c.key, QLatin1String(align), c.format,
             c.fetchMode ? QStringLiteral(" fetch") : QString(),
             c.hidden ? QStringLiteral(" hidden%1").arg(c.hidden) : QString());
}

} // namespace

class TestReportEngine : public QObject
{
    Q_OBJECT

    platform::ScriptedDialogService m_dialogs;

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
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

    void loadSortsByTheFirstVisibleColumn()
    {
        test::CatalogueFixture fx;
        Events ev;
        ReportEngine list(&ev);
        list.setDataBase(&fx.db());
        list.Setup(kEntries, 3, 1, QString(), 2, false, 0, 1);
        QCOMPARE(list.lastStatement(), kEntries + QStringLiteral(" ORDER BY 4 ASC"));
        QCOMPARE(list.ItemCount(), 12);
        QCOMPARE(list.SortColumn(), 3);
        QCOMPARE(list.cellValue(0, 3).toString(), QStringLiteral("(NO NAME)"));
        QCOMPARE(list.Columns().count(), 6);
        QCOMPARE(list.Columns()[3].sortPicture, -2);
        QVERIFY(list.Columns()[3].noHide);
        QCOMPARE(list.Columns()[3].imageField, QStringLiteral("Icon"));
        QCOMPARE(ev.autoSizes, QStringList{"-1/0"}); // no layout: the widget sizes the columns

        // The host may choose another sort column; sort mode 1 leaves the order to the host.
        ev.sortColumn = 5;
        list.setRecordSource(kEntries);
        QCOMPARE(list.lastStatement(), kEntries + QStringLiteral(" ORDER BY 6 ASC"));
        list.props().SortMode = 1;
        list.setRecordSource(kEntries);
        QCOMPARE(list.lastStatement(), kEntries);
        QCOMPARE(list.SortColumn(), -1);
    }

    void filterValueDrivesTheParameter()
    {
        test::CatalogueFixture fx;
        ReportEngine list;
        list.setDataBase(&fx.db());
        list.props().SortMode = 2; // sorts on click only
        list.Setup(kEntries, 3, 1, QString(), -1, false, 0, 1);
        // A filter column with an empty value: no filter and no parameter line.
        QCOMPARE(list.lastStatement(), kEntries);
        QCOMPARE(list.ItemCount(), 12);
        list.setFilterValue(QStringLiteral("1"));
        QCOMPARE(list.lastStatement(), QStringLiteral("PARAMETERS XXX VALUE; ") + kEntries +
                                           QStringLiteral(" WHERE Category_File = XXX"));
        QCOMPARE(list.ItemCount(), 3);
        list.setFilterValue(QStringLiteral("6"));
        QCOMPARE(list.ItemCount(), 2);
        QCOMPARE(list.FieldValue(QStringLiteral("File"), 1).toString(),
                 QStringLiteral("(NO NAME)"));
        list.setFilterColumn(1);
        QVERIFY(list.props().FilterValue.isNull());
        list.setFilterValue(QString());
        QCOMPARE(list.ItemCount(), 12);
    }

    void emptyRecordSourceClearsTheList()
    {
        test::CatalogueFixture fx;
        Events ev;
        ReportEngine list(&ev);
        list.setDataBase(nullptr); // ignored
        QVERIFY(!list.DataBase());
        list.setDataBase(&fx.db());
        list.setRecordSource(kEntries);
        QVERIFY(list.RecordSet());
        list.setRecordSource(QString());
        QVERIFY(!list.RecordSet());
        QCOMPARE(list.ItemCount(), 0);
        QCOMPARE(list.Columns().count(), 0);
        QCOMPARE(ev.repaints, 1);
        QCOMPARE(list.fetchRows(0, 10), -1);
        QVERIFY(list.FieldValue(0, 0).isNull());
    }

    void paging_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<int>("pageFirst");
        QTest::addColumn<int>("pageLast");
        // 480 pixels of 16-pixel rows: a page of 60 rows around the middle of what is wanted.
        QTest::newRow("start: grows downwards") << 1000 << 0 << 29 << 0 << 60;
        QTest::newRow("middle") << 1000 << 500 << 529 << 485 << 545;
        QTest::newRow("end: shifted up, not shortened") << 1000 << 980 << 999 << 940 << 999;
        QTest::newRow("one row deep in the list") << 1000 << 700 << 700 << 670 << 730;
        QTest::newRow("list shorter than a page") << 25 << 0 << 24 << 0 << 24;
    }
    void paging()
    {
        QFETCH(int, rows);
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(int, pageFirst);
        QFETCH(int, pageLast);
        test::CatalogueFixture fx(false);
        writeLongList(fx.db(), rows);
        ReportEngine list;
        list.props().SortMode = 1;
        list.setViewHeight(480);
        list.setDataBase(&fx.db());
        list.setRecordSource(QStringLiteral("Select ID,tProgram From C64Files order by ID"));
        QCOMPARE(list.ItemCount(), rows);
        QCOMPARE(list.fetchRows(first, last), pageFirst);
        QCOMPARE(list.pageFirst(), pageFirst);
        QCOMPARE(list.pageLast(), pageLast);
        // Rows inside the page are served from it; the values are the rows asked for.
        QCOMPARE(list.fetchRows(first, last), pageFirst);
        QCOMPARE(list.cellValue(pageLast, 0).toInt(), pageLast + 1);
        QCOMPARE(list.cellValue(first, 1).toString(),
                 QStringLiteral("P%1").arg(first + 1, 4, 10, QLatin1Char('0')));
        QCOMPARE(list.pageFirst(), pageFirst);
        // A row outside it moves the page; FieldValue reads either way.
        QCOMPARE(list.FieldValue(1, 0).toString(), QStringLiteral("P0001"));
        QCOMPARE(list.FieldValue(QStringLiteral("ID"), rows - 1).toInt(), rows);
    }

    void columnDecisions_data()
    {
        QTest::addColumn<bool>("thousands");
        QTest::addColumn<double>("factor");
        QTest::addColumn<QStringList>("columns");
        QTest::newRow("plain") << false << 1.0
                               << QStringList{"ID R  hidden2", "Name L  fetch", "Price R Currency",
                                              "Weight R ",     "Added C ",      "Note L RPL",
                                              "Flag R Yes/No", "Amount R ",     "Data L "};
        QTest::newRow("thousands, currency divided")
            << true << 100.0 << QStringList{"ID R #,0 hidden2", "Name L  fetch",
                                            "Price R  fetch",   "Weight R #,0.0#################",
                                            "Added C ",         "Note L RPL",
                                            "Flag R Yes/No",    "Amount R #,0",
                                            "Data L "};
    }
    void columnDecisions()
    {
        QFETCH(bool, thousands);
        QFETCH(double, factor);
        QFETCH(QStringList, columns);
        test::CatalogueFixture fx(false);
        writeKinds(fx.db());
        Events ev;
        ReportEngine list(&ev);
        list.props().ShowThousands = thousands;
        list.setCurrencyFactor(factor);
        list.setCurrencyFactor(0); // ignored
        list.setDataBase(&fx.db());
        // The first visible column shows the icons of column 7 and is aligned plainly.
        list.Setup(QStringLiteral("Select * From Kinds"), 1, 1, QString(), 7, true, 0, -1);
        QStringList got;
        for (int i = 0; i < list.Columns().count(); ++i)
            got << column(list.Columns()[i]);
        QCOMPARE(got, columns);
        QCOMPARE(list.Columns()[1].imageField, QStringLiteral("Amount"));
        QVERIFY(list.Columns()[1].fetchMode); // icons are translated through the host
        QVERIFY(list.Columns()[0].invisible);

        QVariant value(1234), image;
        list.cellContents(0, 2, value, image);
        if (factor == 100.0)
            QCOMPARE(value.toString(), QLocale().toCurrencyString(12.34));
        else
            QCOMPARE(value.toString(), QLocale().toCurrencyString(1234.0));
        image = 3;
        list.cellContents(0, 1, value, image);
        QCOMPARE(image.toInt(), 103);
        QVariant text(QStringLiteral("a")), none;
        list.cellContents(1, 1, text, none);
        QCOMPARE(text.toString(), QStringLiteral("host 1/1"));
    }

    void layoutIsWrittenBackNormalised_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<QString>("expected");
        QTest::newRow("missing column and unknown column")
            << "ID!Hidden=2;Width=64;Fixed=0;Order=0$Gone!Hidden=0;Width=99;Fixed=0;Order=1$"
               "File!Hidden=0;Width=169;Fixed=2;Order=2"
            << "ID!Hidden=2;Width=64;Fixed=0;Order=0$File!Hidden=0;Width=169;Fixed=2;Order=1$"
               "Blocks!Hidden=0;Width=64;Fixed=0;Order=2";
        QTest::newRow("orders with gaps, broken entries skipped")
            << "Blocks!Hidden=1;Width=80;Fixed=0;Order=7$File!Width=abc;Order=3$$nonsense$ID!"
               "Hidden=0"
            << "ID!Hidden=2;Width=64;Fixed=0;Order=2$File!Hidden=0;Width=64;Fixed=0;Order=0$"
               "Blocks!Hidden=1;Width=80;Fixed=0;Order=1";
        // Old form from the end with InvisibleColMode 1: Blocks, then File; a width of 0 hides.
        QTest::newRow("old form")
            << "2;1;0;100;0"
            << "ID!Hidden=2;Width=64;Fixed=0;Order=2$File!Hidden=1;Width=26;Fixed=0;Order=0$"
               "Blocks!Hidden=0;Width=100;Fixed=0;Order=1";
        QTest::newRow("old form of another width is ignored")
            << "3,0,1,2,50,50,50"
            << "ID!Hidden=2;Width=64;Fixed=0;Order=0$File!Hidden=0;Width=64;Fixed=0;Order=1$"
               "Blocks!Hidden=0;Width=64;Fixed=0;Order=2";
    }
    void layoutIsWrittenBackNormalised()
    {
        QFETCH(QString, layout);
        QFETCH(QString, expected);
        test::CatalogueFixture fx;
        Events ev;
        ReportEngine list(&ev);
        list.setDataBase(&fx.db());
        list.Setup(QStringLiteral("Select ID,tProgram as [File],lSize as [Blocks] From C64Files"),
                   1, 1, layout, -1, false, 0, -1);
        QCOMPARE(list.Layout(), expected);
        QVERIFY(ev.autoSizes.isEmpty());
        QCOMPARE(list.Columns().displayOrder().size(), 3);
    }

    void restoringTheSelection_data()
    {
        QTest::addColumn<int>("keyColumn");
        QTest::newRow("by key") << 0;
        QTest::newRow("by whole row") << -1;
    }
    void restoringTheSelection()
    {
        QFETCH(int, keyColumn);
        test::CatalogueFixture fx;
        Events ev;
        ReportEngine list(&ev);
        list.setDataBase(&fx.db());
        list.Setup(kEntries, 3, 1, QString(), -1, false, keyColumn, -1);
        // Sorted by name: (NO NAME), BOULDER DASH, COMMANDO, cover.png, MY_GAME, O'BRIEN, ...
        list.setSelectedIndex(2);
        QCOMPARE(list.FieldValue(0).toInt(), 11); // COMMANDO
        QCOMPARE(ev.selectionChanges, 1);
        list.Resort(3, false); // by name, descending
        QCOMPARE(list.FieldValue(QStringLiteral("File")).toString(), QStringLiteral("COMMANDO"));
        QCOMPARE(list.SelectedIndex(), 9);
        QCOMPARE(ev.selectionChanges, 1); // the resort's move is no change

        // The selected row deleted: a requery keeps the row number, a resort goes to row 0.
        fx.db().execute(QStringLiteral("Delete From C64Files where ID=11"));
        list.Requery();
        QCOMPARE(list.ItemCount(), 11);
        QCOMPARE(list.SelectedIndex(), 9);
        QCOMPARE(list.FieldValue(QStringLiteral("File")).toString(),
                 QStringLiteral("BOULDER DASH"));
        list.setSelectedIndex(10);
        fx.db().execute(QStringLiteral("Delete From C64Files where ID=10"));
        list.Requery(); // it was the last row: the new last row
        QCOMPARE(list.SelectedIndex(), 9);
        fx.db().execute(QStringLiteral("Delete From C64Files where ID=6"));
        list.Resort(3, true);
        QCOMPARE(list.SelectedIndex(), 0);
    }

    void rowWithoutUsableValuesKeepsItsNumber()
    {
        test::CatalogueFixture fx;
        fx.db().execute(QStringLiteral("Insert Into Config (tItem) Values (Null)"));
        ReportEngine list;
        list.props().SortMode = 1;
        list.setDataBase(&fx.db());
        list.setRecordSource(QStringLiteral("Select tItem, mConfig From Config order by ID desc"));
        list.setSelectedIndex(0); // every value Null: no criterion
        fx.db().execute(QStringLiteral("Insert Into Config (tItem) Values ('later')"));
        list.Requery();
        QCOMPARE(list.SelectedIndex(), 0);
        QCOMPARE(list.FieldValue(0).toString(), QStringLiteral("later"));
    }

    void headerClicks()
    {
        test::CatalogueFixture fx;
        Events ev;
        ReportEngine list(&ev);
        list.props().ShowContextMenu = true;
        list.setDataBase(&fx.db());
        list.Setup(kEntries, 3, 1, QString(), -1, false, 0, -1);
        QCOMPARE(list.columnClicked(5, ReportEngine::LeftButton),
                 ReportEngine::HeaderAction::Sorted);
        QCOMPARE(list.lastStatement(), kEntries + QStringLiteral(" ORDER BY 6 ASC"));
        QCOMPARE(list.columnClicked(5, ReportEngine::LeftButton),
                 ReportEngine::HeaderAction::Sorted);
        QCOMPARE(list.lastStatement(), kEntries + QStringLiteral(" ORDER BY 6 DESC"));
        QCOMPARE(list.Columns()[5].sortPicture, -1);
        QCOMPARE(list.Columns()[3].sortPicture, 0);
        QCOMPARE(list.cellValue(0, 5).toInt(), 4096);
        QCOMPARE(list.columnClicked(4, ReportEngine::RightButton),
                 ReportEngine::HeaderAction::ContextMenu);
        QCOMPARE(ev.menus, QList<int>{4});
        list.props().ShowContextMenu = false;
        QCOMPARE(list.columnClicked(4, ReportEngine::RightButton),
                 ReportEngine::HeaderAction::ColumnClick);
        list.props().SortMode = 1;
        QCOMPARE(list.columnClicked(3, ReportEngine::LeftButton),
                 ReportEngine::HeaderAction::ColumnClick);
        QCOMPARE(ev.columnClicks, (QStringList{"4/2", "3/1"}));
        int col = 0;
        bool asc = true;
        list.SortInfo(col, asc);
        QCOMPARE(col, 5);
        QVERIFY(!asc);
    }

    void find_data()
    {
        QTest::addColumn<QVariant>("column");
        QTest::addColumn<QString>("value");
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("row");
        // Sorted by ID: row n is entry n + 1.
        QTest::newRow("number") << QVariant(5) << "90" << 0 << 5;
        QTest::newRow("text, wildcard added") << QVariant("File") << "sanx" << 0 << 1;
        QTest::newRow("after the start") << QVariant("File") << "SANX" << 1 << 0;
        QTest::newRow("quote doubled") << QVariant("File") << "o'b" << 0 << 7;
        QTest::newRow("own wildcard") << QVariant(3) << "*.png" << 0 << 8;
        QTest::newRow("no match") << QVariant("Filetyp") << "D64" << 0 << -1;
        QTest::newRow("unknown column") << QVariant("Nope") << "x" << 0 << -1;
        QTest::newRow("past the end starts at the last row")
            << QVariant("File") << "title" << 99 << 11;
    }
    void find()
    {
        QFETCH(QVariant, column);
        QFETCH(QString, value);
        QFETCH(int, start);
        QFETCH(int, row);
        test::CatalogueFixture fx;
        ReportEngine list;
        list.setDataBase(&fx.db());
        list.Setup(kEntries, 3, 1, QString(), -1, false, 0, -1);
        list.Resort(0, true);
        list.setSelectedIndex(0);
        QCOMPARE(list.Find(column, value, start, ReportEngine::DryRun), row);
        QCOMPARE(list.SelectedIndex(), 0); // a dry run moves nothing
        QCOMPARE(list.Find(column, value, start), row);
        QCOMPARE(list.SelectedIndex(), row < 0 ? 0 : row);
    }

    void findByDate()
    {
        test::CatalogueFixture fx(false);
        writeKinds(fx.db());
        ReportEngine list;
        list.props().SortMode = 1;
        list.setDataBase(&fx.db());
        list.setRecordSource(QStringLiteral("Select ID,Name,Added,Flag From Kinds order by ID"));
        QCOMPARE(list.Find(QStringLiteral("Added"), QStringLiteral("2024-01-02"), 0), 1);
        QCOMPARE(list.Find(QStringLiteral("Added"), QStringLiteral("14.03.2024 21:05:00"), 0), 0);
        QCOMPARE(list.Find(QStringLiteral("Added"), QStringLiteral("no date"), 0), -1);
        QCOMPARE(list.Find(QStringLiteral("Flag"), QStringLiteral("-1"), 0), -1); // not searchable
    }

    void typeAhead()
    {
        test::CatalogueFixture fx;
        Events ev;
        ReportEngine list(&ev);
        qint64 now = 10000;
        list.setClock([&] { return now; });
        list.setDataBase(&fx.db());
        list.Setup(kEntries, 3, 1, QString(), -1, false, 0, -1);
        // By name: (NO NAME), BOULDER DASH, COMMANDO, cover.png, MY_GAME, O'BRIEN, PARADROID,
        // readme.txt, SANXION, SANXION HISCORE, title.gif, URIDIUM.
        QVERIFY(list.typeAhead(QLatin1Char('s')));
        QCOMPARE(list.SelectedIndex(), 8); // at once, the first letter
        now += 200;
        QVERIFY(list.typeAhead(QLatin1Char('a')));
        now += 200;
        list.typeAhead(QLatin1Char('n'));
        now += 200;
        list.typeAhead(QLatin1Char('x'));
        now += 200;
        list.typeAhead(QLatin1Char('i'));
        now += 200;
        list.typeAhead(QLatin1Char('o'));
        now += 200;
        list.typeAhead(QLatin1Char('n'));
        now += 200;
        list.typeAhead(QLatin1Char(' '));
        QVERIFY(list.searchPending()); // the narrowed search waits for the pause
        QCOMPARE(list.searchText(), QStringLiteral("sanxion "));
        QCOMPARE(list.SelectedIndex(), 8);
        list.searchTimeout();
        QCOMPARE(list.SelectedIndex(), 9);
        QVERIFY(list.searchText().isEmpty());

        // After a pause the first letter starts anew; a quote can be typed.
        now += 2000;
        list.typeAhead(QLatin1Char('o'));
        QCOMPARE(list.SelectedIndex(), 5);
        now += 100;
        list.typeAhead(QLatin1Char('\''));
        list.searchTimeout();
        QCOMPARE(list.SelectedIndex(), 5);
        now += 2000;
        list.typeAhead(QLatin1Char('q')); // nothing starts with q
        QCOMPARE(list.SelectedIndex(), 5);
        QVERIFY(list.searchText().isEmpty());

        QVERIFY(!list.typeAhead(QChar(8)));
        list.props().MultiSelect = true;
        QVERIFY(!list.typeAhead(QLatin1Char('b'), true));
        QVERIFY(list.typeAhead(QLatin1Char('b')));
        QCOMPARE(list.SelectedIndex(), 1);
    }

    void typeAheadOnANumberColumn()
    {
        test::CatalogueFixture fx;
        ReportEngine list;
        list.setDataBase(&fx.db());
        list.Setup(QStringLiteral("Select lSize,tProgram From C64Files"), 0, 0, QString(), -1,
                   false, -1, -1);
        QCOMPARE(list.searchCriteria(QStringLiteral("1,5")), QStringLiteral("[lSize]=1.5"));
        QCOMPARE(list.searchCriteria(QStringLiteral("abc")), QString());
        list.typeAhead(QLatin1Char('2'));
        QCOMPARE(list.FieldValue(1).toString(), QStringLiteral("SANXION HISCORE")); // 2 blocks
    }

    void optimizeLoadWaitsUntilShown()
    {
        test::CatalogueFixture fx;
        ReportEngine list;
        list.props().OptimizeLoad = true;
        list.setShown(false);
        list.setDataBase(&fx.db());
        list.setRecordSource(kEntries);
        QVERIFY(!list.RecordSet());
        QVERIFY(!list.ShouldLoad());
        list.forceLoad();
        QCOMPARE(list.ItemCount(), 12);
        list.setRecordSource(kEntries + QStringLiteral(" where lSize>100"));
        QVERIFY(!list.RecordSet());
        list.setShown(true);
        QVERIFY(list.ShouldLoad());
        list.Load();
        QCOMPARE(list.ItemCount(), 7);
    }

    void errorsAreReportedAndTheListStays()
    {
        test::CatalogueFixture fx;
        ReportEngine list;
        list.setDataBase(&fx.db());
        list.setRecordSource(kEntries);
        QCOMPARE(list.ItemCount(), 12);
        list.setRecordSource(QStringLiteral("Select ID, From (C64Files"));
        QCOMPARE(m_dialogs.calls.size(), 1);
        QCOMPARE(m_dialogs.calls[0].title, QStringLiteral("C64-Report-Fehler: DataSetup"));
        QCOMPARE(m_dialogs.calls[0].style, int(platform::vbCritical));
        QVERIFY(!m_dialogs.calls[0].text.isEmpty());
        QCOMPARE(list.Columns().count(), 6);
        QVERIFY(list.RecordSet());
        m_dialogs.clear();
    }

    void properties()
    {
        const ReportProperties missing = ReportProperties::read({});
        QCOMPARE(missing.InvisibleColMode, 0);
        QCOMPARE(missing.RowHeight, 16);
        QCOMPARE(missing.CurrencyFormat, QStringLiteral("Currency"));
        QVERIFY(missing.SnapMode && missing.EmptyRows && !missing.ShowContextMenu);
        const ReportProperties placed = ReportProperties::newControl();
        QVERIFY(placed.DblClickOnReturn && placed.ShowContextMenu);
        QCOMPARE(placed.RecordsetType, 1);
        QCOMPARE(placed.AutoSizeMode, 1);
        QCOMPARE(placed.InvisibleColMode, 1);

        QVariantMap bag = placed.write();
        QCOMPARE(bag.value(QStringLiteral("CurrencyFaktor")).toDouble(), 1.0);
        bag.insert(QStringLiteral("CurrencyFaktor"), 100.0);
        bag.insert(QStringLiteral("SnapMode"), false);
        bag.insert(QStringLiteral("KeyColumn"), 2);
        const ReportProperties back = ReportProperties::read(bag);
        QCOMPARE(back.CurrencyFactor, 100.0);
        QVERIFY(!back.SnapMode);
        QCOMPARE(back.KeyColumn, 2);
        QVERIFY(back.DblClickOnReturn);
        bag.insert(QStringLiteral("CurrencyFaktor"), -3.0);
        QCOMPARE(ReportProperties::read(bag).CurrencyFactor, 1.0);
    }
};

QTEST_GUILESS_MAIN(TestReportEngine)
#include "tst_reportengine.moc"
