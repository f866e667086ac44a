// The view builder's SQL texts, compared with the statements the views are defined by.

#include "browser/Filters.h"
#include "browser/ViewBuilder.h"

#include <QTest>

using namespace vd::browser;

namespace {

const QString kCols = QStringLiteral(
    ",F.iFileType as Icon,tProgram as [File],tExtension as [Filetyp],lSize as [Größe],"
    "F.tImage as [Disk/Tape-Name],F.tCategory as [Disc_File],F.tPath as [Dateipfad]");
const QString kFrom =
    QStringLiteral(" From (C64Files Left Join Category as F on C64Files.Category_File=F.ID)");
const QString kCatJoin = QStringLiteral(" Left Join Category as C on C64Files.Category_User=C.ID");

ViewInput input(int view)
{
    ViewInput in;
    in.view = view;
    in.captions = ViewCaptions::current();
    in.startCategoryID = 8;
    in.startC64FileID = 9;
    in.shortDatePattern = QStringLiteral("dd.MM.yyyy");
    return in;
}

} // namespace

class TestViewBuilder : public QObject
{
    Q_OBJECT

private slots:
    void columnAlias_data();
    void columnAlias();
    void viewsWithoutSearch_data();
    void viewsWithoutSearch();
    void searchBoxesAndNewFiles_data();
    void searchBoxesAndNewFiles();
    void mainFilesView();
    void filtersInBothClauses_data();
    void filtersInBothClauses();
    void userCategoryColumn();
    void layoutsAndColumns();
};

void TestViewBuilder::columnAlias_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<bool>("translate");
    QTest::addColumn<QString>("expected");
    QTest::newRow("other caption") << "tProgram"
                                   << "File" << false << "tProgram as [File]";
    QTest::newRow("same name any case") << "tCategory"
                                        << "TCATEGORY" << false << "Tcategory";
    QTest::newRow("brackets and points") << "x"
                                         << "a[b].c" << true << "x as [a-b- c]";
    QTest::newRow("untranslated keeps signs") << "x"
                                              << "a.b" << false << "x as [a.b]";
}

void TestViewBuilder::columnAlias()
{
    QFETCH(QString, field);
    QFETCH(QString, caption);
    QFETCH(bool, translate);
    QFETCH(QString, expected);
    QCOMPARE(ColumnAlias(field, caption, translate), expected);
}

void TestViewBuilder::viewsWithoutSearch_data()
{
    QTest::addColumn<int>("view");
    QTest::addColumn<QStringList>("tree");
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<int>("sortMode");

    QTest::newRow("1 files")
        << 1
        << QStringList{"SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,16 AS Icon,'Dateien' From "
                       "Config",
                       "SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,tCategory From "
                       "Category as F where iType=1 order by tCategory"}
        << QStringList{"Select  C64Files.ID,-1" + kCols + kFrom,
                       "Select  C64Files.ID,Category_File AS ParentKey " + kCols + ",lIndex" +
                           kFrom}
        << 0;
    QTest::newRow("3 categories")
        << 3
        << QStringList{"SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,18 AS Icon,'Kategorien' "
                       "From Config",
                       "SELECT F.ID AS ItemKey,-1 AS ParentKey,18 AS Icon,tCategory From "
                       "Category as F where iType=3 order by tCategory"}
        << QStringList{"Select  C64Files.ID,-1" + kCols + kFrom,
                       "Select  C64Files.ID,Category_User AS ParentKey " + kCols + kFrom}
        << 0;
    QTest::newRow("4 new files, built as view 1")
        << 4
        << QStringList{"SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,16 AS Icon,'Neue Dateien' "
                       "From Config",
                       "SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,tCategory From "
                       "Category as F where F.ID>8 And iType=1 order by tCategory"}
        << QStringList{"Select  C64Files.ID,-1" + kCols + kFrom + " where C64Files.ID>9",
                       "Select  C64Files.ID,Category_File AS ParentKey " + kCols + ",lIndex" +
                           kFrom + " where C64Files.ID>9"}
        << 0;
    QTest::newRow("5 last started")
        << 5
        << QStringList{"SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,20 AS Icon,'Zuletzt "
                       "gestartet' From Config",
                       "SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,'(' & "
                       "Format(F.tsLastStarted,'dd.MM.yyyy')& ') - ' & tCategory From Category "
                       "as F where not isnull(F.tsLastStarted) And iType=1 order by "
                       "F.tsLastStarted desc"}
        << QStringList{"Select  C64Files.ID,-1" + kCols +
                           ",C64Files.tsLastStarted as [Zuletzt gestartet]" + kFrom +
                           " where not isnull(C64Files.tsLastStarted)  order by "
                           "C64Files.tsLastStarted desc",
                       "Select C64Files.ID,Category_File AS ParentKey " + kCols +
                           ",C64Files.tsLastStarted as [Zuletzt gestartet]" + kFrom +
                           " where not isnull(C64Files.tsLastStarted)  order by "
                           "C64Files.tsLastStarted desc"}
        << 1;
    QTest::newRow("6 top 100")
        << 6
        << QStringList{"SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,21 AS Icon,'Top 100' From "
                       "Config",
                       "SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,'(' & "
                       "F.lStartCount& ') - ' & tCategory From Category as F where not "
                       "isnull(F.lStartCount) And iType=1 order by F.lStartCount desc,tCategory"}
        << QStringList{"Select TOP 100 C64Files.ID,-1" + kCols +
                           ",C64Files.lStartCount as [Zähler]" + kFrom +
                           " where not isnull(C64Files.lStartCount)  order by "
                           "C64Files.lStartCount desc,C64Files.tsLastStarted desc",
                       "Select C64Files.ID,Category_File AS ParentKey " + kCols +
                           ",C64Files.lStartCount as [Zähler]" + kFrom +
                           " where not isnull(C64Files.lStartCount)  order by "
                           "C64Files.lStartCount desc,C64Files.tsLastStarted desc"}
        << 1;
}

void TestViewBuilder::viewsWithoutSearch()
{
    QFETCH(int, view);
    QFETCH(QStringList, tree);
    QFETCH(QStringList, list);
    QFETCH(int, sortMode);
    const ViewSql sql = BuildViewSql(input(view));
    QCOMPARE(sql.treeLevels, tree);
    QCOMPARE(sql.listLevels, list);
    QCOMPARE(sql.sortMode, sortMode);
    QVERIFY(sql.recordSource.isEmpty());

    // The third tree level only with mnuTreeOhnePlusMinus, and only in the tree views.
    ViewInput in = input(view);
    in.treeSubItems = true;
    const ViewSql withEntries = BuildViewSql(in);
    if (view == 5 || view == 6) {
        QCOMPARE(withEntries.treeLevels.size(), 2);
    } else {
        QCOMPARE(withEntries.treeLevels.size(), 3);
        QVERIFY(withEntries.treeLevels[2].startsWith(
            "SELECT C64Files.ID AS ItemKey," +
            QString(view == 3 ? "Category_User" : "Category_File") +
            " AS ParentKey,F.iFileType as Icon, tProgram & '.' & tExtension AS File " + kFrom));
        QVERIFY(withEntries.treeLevels[2].endsWith(view == 3 ? " order by 4" : " order by lIndex"));
    }
}

void TestViewBuilder::searchBoxesAndNewFiles_data()
{
    QTest::addColumn<int>("view");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("newFiles");
    QTest::addColumn<QString>("entryWhere");
    QTest::addColumn<QString>("fileWhere");

    QTest::newRow("name only narrows entries") << 1 << "sanx"
                                               << ""
                                               << "" << false << " where tProgram like'*sanx*'"
                                               << "";
    QTest::newRow("quote doubled, star kept as pattern")
        << 1 << "O'B*"
        << ""
        << "" << false << " where tProgram like'O''B*'"
        << "";
    QTest::newRow("file and path into both")
        << 1 << ""
        << "dash"
        << "/c64/*" << false << " where F.tFile like'*dash*' And F.tPath like'/c64/*'"
        << " where F.tFile like'*dash*' And F.tPath like'/c64/*'";
    QTest::newRow("new files in view 1") << 1 << ""
                                         << ""
                                         << "" << true << " where C64Files.ID>9"
                                         << " where F.ID>8";
    QTest::newRow("new files box ignored in view 4")
        << 4 << "x"
        << ""
        << "" << true << " where C64Files.ID>9 And tProgram like'*x*'"
        << " where F.ID>8";
    QTest::newRow("search behind view 5's condition")
        << 5 << ""
        << "zip"
        << "" << false << " where not isnull(C64Files.tsLastStarted)  And F.tFile like'*zip*'"
        << " where not isnull(F.tsLastStarted) And F.tFile like'*zip*'";
}

void TestViewBuilder::searchBoxesAndNewFiles()
{
    QFETCH(int, view);
    QFETCH(QString, name);
    QFETCH(QString, file);
    QFETCH(QString, path);
    QFETCH(bool, newFiles);
    QFETCH(QString, entryWhere);
    QFETCH(QString, fileWhere);
    ViewInput in = input(view);
    in.search[0] = name;
    in.search[1] = file;
    in.search[2] = path;
    in.newFiles = newFiles;
    const ViewSql sql = BuildViewSql(in);
    QCOMPARE(sql.sEntryWhere, entryWhere);
    QCOMPARE(sql.sFileWhere, fileWhere);
    QVERIFY(sql.listLevels[0].endsWith(kFrom + entryWhere +
                                       (view == 5 ? " order by C64Files.tsLastStarted desc" : "")));
    QVERIFY(HasSearch(in));
}

void TestViewBuilder::mainFilesView()
{
    const QString head = QStringLiteral(
        " F.ID,F.iFileType AS iTyp,IIF(isNull(tUnpackpath),0,24) as IsArchiv,"
        "ucase(Right(tCategory,3)) as [Filetyp],tCategory as [Disc_File],tPath as [Dateipfad],"
        "tUnpackpath as [Archivpfad],tHash as [MD5-Checksumme],F.tsCreated as [Erstellt] From "
        "Category as F");
    ViewInput in = input(2);
    ViewSql sql = BuildViewSql(in);
    QCOMPARE(sql.recordSource, "SELECT " + head + " where iType=1");
    QVERIFY(sql.treeLevels.isEmpty());
    QVERIFY(sql.listLevels.isEmpty());

    // Box 0 joins the entries in and lists each file once.
    in.search[0] = QStringLiteral("sanx");
    in.search[2] = QStringLiteral("disks");
    sql = BuildViewSql(in);
    QCOMPARE(sql.recordSource,
             "SELECT Distinct" + head +
                 " Inner Join C64Files On F.ID=C64Files.Category_File where tProgram "
                 "like'*sanx*' And F.tPath like'*disks*' And iType=1");
}

void TestViewBuilder::filtersInBothClauses_data()
{
    QTest::addColumn<QStringList>("defs"); // field|compare|value|join
    QTest::addColumn<QString>("entryWhere");
    QTest::addColumn<QString>("fileWhere");
    QTest::addColumn<bool>("categoryJoin");

    QTest::newRow("path in archives too")
        << QStringList{"tPath|( )|game|"}
        << " where (  F.tPath Like'*game*' Or F.tUnpackPath Like'*game*')"
        << " where (  F.tPath Like'*game*' Or F.tUnpackPath Like'*game*')" << false;
    QTest::newRow("PRG + P00") << QStringList{"iFileType|=|4|", "iFileType|=|5|Or"}
                               << " where (  F.iFileType =4 Or F.iFileType =5)"
                               << " where (  F.iFileType =4 Or F.iFileType =5)" << false;
    QTest::newRow("Bilder: PNG and TIFF exclude each other")
        << QStringList{"Type|=|BMP|Or", "Type|=|GIF|Or", "Type|=|JPG|Or", "Type|=|PNG|Or",
                       "Type|=|TIFF|"}
        << " where (  F.tFile Like '*.BMP' Or F.tFile Like '*.GIF' Or F.tFile Like '*.JPG' Or "
           "F.tFile Like '*.PNG' And F.tFile Like '*.TIFF')"
        << " where (  F.tFile Like '*.BMP' Or F.tFile Like '*.GIF' Or F.tFile Like '*.JPG' Or "
           "F.tFile Like '*.PNG' And F.tFile Like '*.TIFF')"
        << false;
    QTest::newRow("TXT in the name, ZIP in the path")
        << QStringList{"Type|=|TXT|", "Type|=|ZIP|Or"}
        << " where (  F.tFile Like '*.TXT' Or F.tPath Like '*.ZIP')"
        << " where (  F.tFile Like '*.TXT' Or F.tPath Like '*.ZIP')" << false;
    QTest::newRow("entry fields narrow only the entries")
        << QStringList{"tProgram|>|SAN|", "lSize|<|100|And"}
        << " where tProgram Like'SAN*' And lSize <100"
        << "" << false;
    // lSize counts for entries only, so only their clause is wiped.
    QTest::newRow("empty lSize wipes what came before")
        << QStringList{"tFile|( )|a|", "lSize|=||And", "iFileType|=|1|And"}
        << " where F.iFileType =1"
        << " where F.tFile Like'*a*' And F.iFileType =1" << false;
    QTest::newRow("user category name joins C")
        << QStringList{"C.TCATEGORY|=|Action|"} << " where C.TCATEGORY ='Action'"
        << "" << true;
}

void TestViewBuilder::filtersInBothClauses()
{
    QFETCH(QStringList, defs);
    QFETCH(QString, entryWhere);
    QFETCH(QString, fileWhere);
    QFETCH(bool, categoryJoin);
    clsFilter filter;
    for (const QString& d : defs) {
        const QStringList p = d.split('|');
        filter.Add(p[0], p[1], p[2], p[3]);
    }
    ViewInput in = input(1);
    in.filter = &filter;
    const ViewSql sql = BuildViewSql(in);
    QCOMPARE(sql.sEntryWhere, entryWhere);
    QCOMPARE(sql.sFileWhere, fileWhere);
    QCOMPARE(sql.listLevels[0].contains(kCatJoin), categoryJoin);
    // The stored filter is not changed by applying it (the joins are made "And" on a copy).
    QCOMPARE(filter.Defs.size(), defs.size());
    QCOMPARE(filter.Defs.last().Join, defs.last().section('|', 3));
    // In view 3 the tree lists every category whatever the filter says.
    in.view = 3;
    QVERIFY(BuildViewSql(in).treeLevels[1].endsWith(" where iType=3 order by tCategory"));
}

void TestViewBuilder::userCategoryColumn()
{
    ViewInput in = input(1);
    in.withCategory = true;
    in.mainListColumns = QStringLiteral("tExtension@@@lSize");
    ViewSql sql = BuildViewSql(in);
    QVERIFY(sql.withCategory);
    QCOMPARE(sql.mainListColumns, QStringLiteral("tExtension@@@lSize@@@tCategory"));
    QVERIFY(sql.listLevels[0].endsWith(kCols + ",C.tCategory as [Kategorie]" + kFrom + kCatJoin));

    // MainListColumns alone turns it on; the file's own name column (F.tCategory) does not.
    in.withCategory = false;
    in.mainListColumns = QStringLiteral("F.tCategory@@@tCategory");
    QVERIFY(BuildViewSql(in).withCategory);
    in.mainListColumns = QStringLiteral("F.tCategory@@@tPath");
    sql = BuildViewSql(in);
    QVERIFY(!sql.withCategory);
    QVERIFY(!sql.listLevels[0].contains(kCatJoin));
}

void TestViewBuilder::layoutsAndColumns()
{
    QCOMPARE(LayoutIndex(1), 0);
    QCOMPARE(LayoutIndex(5), 1);
    QCOMPARE(LayoutIndex(6), 2);
    QCOMPARE(LayoutIndex(2), 3);
    const QStringList layouts{"L0", "", "L2", ""};
    QCOMPARE(ViewLayout(layouts, 5), QStringLiteral("L0")); // empty takes layout 0
    QCOMPARE(ViewLayout(layouts, 6), QStringLiteral("L2"));
    QCOMPARE(ViewLayout(layouts, 2), QString()); // but view 2 never does
    for (int view = 1; view <= 6; ++view)
        QCOMPARE(ViewOfRow(ViewRow(view)), view);

    const ViewCaptions captions = ViewCaptions::current();
    QVector<ListColumnState> cols = ColumnsFromLayout(
        {"ID", "Expr1001", "Icon", "File", "Filetyp", "Größe", "Disc_File", "Kategorie",
         "Zuletzt gestartet"},
        "File!Hidden=1;Width=90;Fixed=0;Order=4$Filetyp!Hidden=0;Width=30;Fixed=0;Order=3$"
        "Größe!Hidden=1;Width=20;Fixed=0;Order=5$Gone!Hidden=0;Width=1;Order=0");
    SetColumnsLayout(cols, 5, captions);
    QCOMPARE(cols[3].hidden, 0); // the file column can't be hidden by the user
    QCOMPARE(cols[3].width, 90);
    QCOMPARE(cols[6].caption, captions.disk);
    QCOMPARE(cols[8].sortDirection, 1);
    QVERIFY(!cols[8].sortable);
    // Placed columns first, by their order; the rest in field order.
    QCOMPARE(cols[4].order, 0);
    QCOMPARE(cols[3].order, 1);
    QCOMPARE(cols[0].order, 3);
    QCOMPARE(MainListColumnsOf(cols, captions),
             QStringLiteral("tExtension@@@F.tCategory@@@tCategory"));

    const auto widths = FetchColumnWidths(cols);
    QVector<ListColumnState> rebuilt = ColumnsFromLayout({"File", "Kategorie"}, QString());
    RestoreColumnWidths(rebuilt, widths, true, captions);
    QCOMPARE(rebuilt[0].width, 90);
    QCOMPARE(rebuilt[1].width, 64); // not shown: its width is left alone
}

QTEST_GUILESS_MAIN(TestViewBuilder)
#include "tst_viewbuilder.moc"
