#pragma once
// Every Jet SQL text that the program sends to a database, assembled the way the program builds
// it, with values from the test collection (support/CatalogueFixture.h, GameBaseFixture.h).
// Where a text is glued together from parts, the parts are glued here in the same way, so the
// blanks the program leaves (two after "Select", one before "order by" and so on) stay.

#include "catalogue/DaoTypes.h"

#include <QString>
#include <QVector>

namespace vd::test {

// In a statement this stands for the path of the GameBase file, as in "[;database=%GB%].Games".
inline const QString kGameBasePlaceholder = QStringLiteral("%GB%");

enum class On
{
    Catalogue,
    GameBase
};
enum class ParamBy
{
    None,
    Position,
    Name
};

struct JetStatement
{
    const char* label;
    QString sql;
    On on = On::Catalogue;
    db::RecordsetType type = db::RecordsetType::Snapshot;
    int options = 0;
    ParamBy paramBy = ParamBy::None;
    QString param;    // the one parameter's value, as text (the tree and the list pass text)
    qint64 rows = -1; // rows read, or rows an action statement touched; -1: not checked
    QString names;    // the leading field names, joined by ","
    QString find;     // criteria for FindFirst on the rows
    bool found = true;
    QString values;      // "Field=value;..." on the first (or found) row; "#n" names a column by
                         // position, "Null" is a Null value, dates read "yyyy-MM-dd hh:mm:ss"
    QString edit;        // "Field=value;..." written into that row through Edit and Update
    QString verify;      // a SELECT run afterwards; its first row's columns joined by "|" ...
    QString verifyValue; // ... must read so
    bool fails = false;  // the text is broken as the program builds it; the layer must say so
};

namespace jet {

// The columns of the main window's entry list (sColumns), with the German captions: the file
// column "File", the size column "Größe".
inline const QString kColumns = QStringLiteral(
    ",F.iFileType as Icon,tProgram as [File],tExtension as [Filetyp],lSize as [Größe],"
    "F.tImage as [Disk/Tape-Name],F.tCategory as [Disc_File],F.tPath as [Dateipfad]");
inline const QString kUserCategoryColumn = QStringLiteral(",C.tCategory as [Kategorie]");
inline const QString kLastStartedColumn =
    QStringLiteral(",C64Files.tsLastStarted as [Zuletzt gestartet]");
inline const QString kCountColumn = QStringLiteral(",C64Files.lStartCount as [Zähler]");
// sFrom, and sFrom with the join of the user category.
inline const QString kFrom =
    QStringLiteral(" From (C64Files Left Join Category as F on C64Files.Category_File=F.ID)");
inline const QString kFromWithCategory =
    kFrom + QStringLiteral(" Left Join Category as C on C64Files.Category_User=C.ID");
// sOrder of the views of last started and most started entries.
inline const QString kOrderLast = QStringLiteral(" order by C64Files.tsLastStarted desc");
inline const QString kOrderTop =
    QStringLiteral(" order by C64Files.lStartCount desc,C64Files.tsLastStarted desc");
inline const QString kListNames1 =
    QStringLiteral("ID,Expr1001,Icon,File,Filetyp,Größe,Disk/Tape-Name,Disc_File,Dateipfad");
inline const QString kListNames2 =
    QStringLiteral("ID,ParentKey,Icon,File,Filetyp,Größe,Disk/Tape-Name,Disc_File,Dateipfad");

// Level 1 and level 2 of the entry list in views 1, 3 and 4.
inline QString listLevel1(const QString& where, const QString& extra = {},
                          const QString& from = kFrom)
{
    return QStringLiteral("Select  C64Files.ID,-1") + kColumns + extra + from + where;
}
inline QString listLevel2(const QString& parentField, const QString& extra,
                          const QString& from = kFrom, const QString& where = {})
{
    return QStringLiteral("Select  C64Files.ID,") + parentField + QStringLiteral(" AS ParentKey ") +
           kColumns + extra + from + where;
}

// The tree's level 2 in views 1 and 4, and level 3 as the tree toolkit rewrites it.
inline QString treeFiles(const QString& where)
{
    return QStringLiteral("SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,tCategory "
                          "From Category as F") +
           where + QStringLiteral(" order by tCategory");
}
inline QString treeEntriesHead(const QString& parentField)
{
    return QStringLiteral("SELECT C64Files.ID AS ItemKey,") + parentField +
           QStringLiteral(" AS ParentKey,F.iFileType as Icon, tProgram & '.' & tExtension AS "
                          "File ") +
           kFrom;
}
inline QString treeLastStarted(const QString& pattern, const QString& where)
{
    return QStringLiteral("SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,'(' & "
                          "Format(F.tsLastStarted,'") +
           pattern + QStringLiteral("')& ') - ' & tCategory From Category as F") + where;
}

// The files list of view 2.
inline QString filesList(const QString& distinct, const QString& fileWhere)
{
    return QStringLiteral("SELECT ") + distinct +
           QStringLiteral(
               " F.ID,F.iFileType AS iTyp,IIF(isNull(tUnpackpath),0,24) as IsArchiv,"
               "ucase(Right(tCategory,3)) as [Filetyp],tCategory as [Disc_File],"
               "tPath as [Dateipfad],tUnpackpath as [Archivpfad],"
               "tHash as [MD5-Checksumme],F.tsCreated as [Erstellt] From Category as F") +
           fileWhere;
}

// The GameBase window: the prefix of a GameBase table seen from the catalogue, the head of the
// games list and of the list of own files.
inline const QString kPrefix = QStringLiteral("[;database=%GB%].");
inline const QString kGamesHead =
    QStringLiteral("Select G.GA_ID,iif(G.ScrnshotFilename='',0,1) as Icon,"
                   "G.ScrnshotFilename as Scr,G.V_LengthType,G.Name as [File]");
inline const QString kOwnHead = QStringLiteral(
    "Select A.ID as ID,A.GB_ID,AF.iFileType as Icon,G.V_LengthType,A.tProgram as [File]");
inline const QString kOwnFrom =
    QStringLiteral(
        "((C64Files as A Left Join Category as AF on A.Category_File=AF.ID) Left Join ") +
    kPrefix + QStringLiteral("Games as G on A.GB_ID=G.GA_ID)");
inline QString gbJoin(const QString& table)
{
    return QStringLiteral(" Left Join ") + kPrefix + table;
}

// The statement a list control runs for a level whose rows are narrowed to a parent key.
inline QString reportLevel(const QString& select)
{
    return QStringLiteral("PARAMETERS XXX VALUE; ") + select;
}
inline QString treeLevel(const QString& select)
{
    return QStringLiteral("Parameters xxx Value;") + select;
}

} // namespace jet

inline QVector<JetStatement> jetStatements()
{
    using namespace jet;
    using db::RecordsetType;
    const RecordsetType dynaset = RecordsetType::Dynaset;
    const QString searchSan = QStringLiteral(" where tProgram like'*san*'");
    const QString prgOrP00 = QStringLiteral(" where (  F.iFileType =4 Or F.iFileType =5)");
    const QString pictures = QStringLiteral(
        " where (  F.tFile Like '*.BMP' Or F.tFile Like '*.GIF' Or F.tFile Like '*.JPG' Or "
        "F.tFile Like '*.PNG' And F.tFile Like '*.TIFF')");
    const QString allLookups =
        QStringLiteral(",C.Cracker as [Cracker],GR.Genre as [Spielkategorie],"
                       "L.Language as [Sprache],M.Musician as [Musiker],"
                       "P.Publisher as [Herausgeber],Pr.Programmer as [Programmierer],"
                       "Y.Year as [Jahr]");
    const QString allLookupJoins =
        gbJoin("Crackers as C on G.Cr_ID=C.Cr_ID)") + gbJoin("Genres as GR on G.Ge_ID=GR.Ge_ID)") +
        gbJoin("Languages as L on G.La_ID=L.La_ID)") +
        gbJoin("Musicians as M on G.Mu_ID=M.Mu_ID)") +
        gbJoin("Publishers as P on G.Pu_ID=P.Pu_ID)") +
        gbJoin("Programmers as Pr on G.Pr_ID=Pr.Pr_ID)") + gbJoin("Years as Y on G.Ye_ID=Y.Ye_ID)");
    const QString yearJoin = gbJoin("Years as Y on G.Ye_ID=Y.Ye_ID)");
    const QString genreJoin = gbJoin("Genres as GR on G.Ge_ID=GR.Ge_ID)");
    const QString genreColumn = QStringLiteral(",GR.Genre as [Spielkategorie]");
    const QString lastStartedUnion =
        QStringLiteral(" Union SELECT 0 AS ID, G.GA_ID, 28 AS Icon, G.V_LengthType, G.Name AS "
                       "File,G.DateLastPlayed as DLP");
    const QString topUnion = QStringLiteral(" Union SELECT 0 AS ID, G.GA_ID, 28 AS Icon, "
                                            "G.V_LengthType, G.Name AS File,G.TimesPlayed as TP");
    const QString ownLastHead =
        kOwnHead + QStringLiteral(",A.tsLastStarted as [Zuletzt gestartet]");
    const QString ownTopHead = kOwnHead + QStringLiteral(",A.lStartCount as [Zähler]");

    return {
        // The catalogue file: creation, opening, upgrades.
        {.label = "catalogue creation version row",
         .sql = "Select * From Config",
         .type = dynaset,
         .rows = 1,
         .values = "tItem=Version;mConfig=3.4"},
        {.label = "catalogue opening version",
         .sql = "Select * From Config where tItem='Version' order by ID desc",
         .type = dynaset,
         .rows = 1,
         .values = "mConfig=3.4"},
        {.label = "upgrade 3.0 file types",
         .sql = "Select tFile,iFileType from Category where iType=1",
         .type = dynaset,
         .rows = 10,
         .names = "tFile,iFileType"},
        {.label = "upgrade 3.4 start counts",
         .sql = "Select tsLastStarted,lStartCount,Category_File from C64Files where not "
                "isNull(lStartCount) order by Category_File,tsLastStarted desc",
         .rows = 4,
         .values = "Category_File=1;tsLastStarted=2024-03-14 21:05:00;lStartCount=2"},
        {.label = "upgrade 3.4 file row",
         .sql = "Update Category Set lStartCount=3,tsLastStarted=#03/14/2024 09:05:00 pm# where "
                "ID=2",
         .rows = 1,
         .verify = "Select lStartCount,tsLastStarted From Category where ID=2",
         .verifyValue = "3|2024-03-14 21:05:00"},
        {.label = "upgrade 3.4 file row past midnight",
         .sql = "Update Category Set lStartCount=1,tsLastStarted=#01/02/2024 12:30:00 am# where "
                "ID=4",
         .rows = 1,
         .verify = "Select tsLastStarted From Category where ID=4",
         .verifyValue = "2024-01-02 00:30:00"},
        {.label = "upgrade 3.4 file row past noon",
         .sql = "Update Category Set lStartCount=2,tsLastStarted=#07/04/2024 12:15:07 pm# where "
                "ID=7",
         .rows = 1,
         .verify = "Select tsLastStarted From Category where ID=7",
         .verifyValue = "2024-07-04 12:15:07"},

        // Single values and the row helpers.
        {.label = "InitCount highest entry id",
         .sql = "Select Max(ID) As FldValue From C64Files ",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=12"},
        {.label = "InitCount highest file id",
         .sql = "Select Max(ID) As FldValue From Category ",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=22"},
        {.label = "CountFiles entries",
         .sql = "Select Count (ID) As FldValue From C64Files ",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=12"},
        {.label = "CountFiles files",
         .sql = "Select Count (ID) As FldValue From Category where iType=1",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=10"},
        {.label = "CategoryExists",
         .sql = "Select ID As FldValue From Category where iType=3 AND tCategory ='Shoot''em Up'",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=21"},
        {.label = "CategoryExists when renaming",
         .sql = "Select ID As FldValue From Category where iType=3 AND tCategory ='Shoot''em Up' "
                "AND ID<>21",
         .options = db::option::ForwardOnly,
         .rows = 0},
        {.label = "CategoryExists in another case",
         .sql = "Select ID As FldValue From Category where iType=3 AND tCategory ='shoot''em up'",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=21"},
        {.label = "FindOrAddCategory adding always",
         .sql = "Select * From Category",
         .type = dynaset,
         .rows = 13},
        {.label = "FindOrAddCategory by name",
         .sql = "Select * From Category where tCategory='Shoot''em Up' and iType=3",
         .type = dynaset,
         .rows = 1,
         .values = "ID=21;tFile=Null"},
        {.label = "DeleteEntry",
         .sql = "Delete from C64Files where ID=3",
         .rows = 1,
         .verify = "Select Count(ID) From C64Files where Category_File=1",
         .verifyValue = "2"},
        {.label = "DeleteCategoryRow user category entries",
         .sql = "Update C64Files Set Category_User=Null where Category_User=20",
         .rows = 2,
         .verify = "Select Count(ID) From C64Files where isNull(Category_User)",
         .verifyValue = "10"},
        {.label = "DeleteCategoryRow file entries",
         .sql = "Delete * From C64Files where Category_File=1",
         .rows = 3,
         .verify = "Select Count(ID) From C64Files",
         .verifyValue = "9"},
        {.label = "DeleteCategoryRow row",
         .sql = "Delete * from Category where ID=1",
         .rows = 1,
         .verify = "Select Count(ID) From Category where iType=1",
         .verifyValue = "9"},

        // The importer.
        {.label = "LoadFile duplicate test",
         .sql = "Select Top 1 ID,GB_ID From Category where tPath='/c64/disks/O''Brien''s Disk.d64'",
         .rows = 1,
         .values = "ID=6;GB_ID=Null"},
        {.label = "LoadFile duplicate test of an archive member",
         .sql = "Select Top 1 ID,GB_ID From Category where tPath='/c64/zips/Paradroid.zip' and "
                "tUnpackPath='docs\\readme.txt'",
         .rows = 1,
         .values = "ID=5;GB_ID=102"},
        {.label = "LoadFile duplicate test of an archive",
         .sql = "Select Top 1 ID,GB_ID From Category where tPath='/c64/zips/Paradroid.zip'",
         .rows = 1,
         .values = "GB_ID=102"},
        {.label = "LoadFile refresh entries of the file",
         .sql = "Select id,tRealProgram,lSize,lIndex From C64Files where Category_File=6",
         .rows = 2,
         .find = "lIndex=2",
         .values = "tRealProgram=Null;lSize=0"},
        {.label = "LoadFile GameBase id of the file",
         .sql = "Select Top 1 GB_ID As FldValue From Category where ID=3",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=102"},
        {.label = "LoadFile index of the game's entry",
         .sql = "Select Top 1 lIndex As FldValue From C64Files as C Left Join Category on "
                "C.Category_File=Category.ID where C.GB_ID=102 and iFileType<>10",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=1"},
        {.label = "LoadFile entry of a text file",
         .sql = "Select Top 1 ID As FldValue From C64Files where Category_File=5",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=7"},
        {.label = "LoadFile GameBase match",
         .sql = "Select GA_ID,Name,FileToRun,FileNameIndex,Ge_ID From Games where "
                "right(FileName,11) ='Sanxion.zip'",
         .on = On::GameBase,
         .rows = 1,
         .values = "GA_ID=101;Name=Sanxion;FileToRun=SANXION;FileNameIndex=0;Ge_ID=1"},
        {.label = "LoadFile GameBase match in another case",
         .sql = "Select GA_ID,Name,FileToRun,FileNameIndex,Ge_ID From Games where "
                "right(FileName,11) ='SANXION.ZIP'",
         .on = On::GameBase,
         .rows = 1,
         .values = "GA_ID=101"},
        {.label = "LoadFile GameBase match on the end of a name",
         .sql = "Select GA_ID,Name,FileToRun,FileNameIndex,Ge_ID From Games where "
                "right(FileName,6) ='BC.ZIP'",
         .on = On::GameBase,
         .rows = 1,
         .values = "GA_ID=105"},
        {.label = "LoadFile GameBase match of a name with a quote",
         .sql = "Select GA_ID,Name,FileToRun,FileNameIndex,Ge_ID From Games where "
                "right(FileName,18) ='O''Neils_Quest.zip'",
         .on = On::GameBase,
         .rows = 0},
        {.label = "AddDirEntry entry row",
         .sql = "Select * From C64Files",
         .type = dynaset,
         .rows = 12},

        // The batch window.
        {.label = "check catalogue",
         .sql = "Select * from Category where iType=1 order by tPath",
         .rows = 10,
         .values = "tPath=/c64/disks/Empty.d81"},
        {.label = "find moved files",
         .sql = "Update Category Set tPath='/c64/moved/O''Brien''s Disk.d64' where ID=6",
         .rows = 1,
         .verify = "Select tPath From Category where ID=6",
         .verifyValue = "/c64/moved/O'Brien's Disk.d64"},
        // A comparison with Null is never true in Jet, so these two counts stay 0.
        {.label = "GameBase connect count without texts",
         .sql = "Select Count (ID) As FldValue From Category where GB_ID<>NULL And iType=1 And "
                "iFileType<>10",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=0"},
        {.label = "GameBase connect count",
         .sql = "Select Count (ID) As FldValue From Category where GB_ID<> NULL AND iType=1",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=0"},
        {.label = "GameBase connect zip files",
         .sql = "Select Distinct tPath from Category where iType=1 And isNull(GB_ID) And tPath "
                "like '*.zip'",
         .rows = 1,
         .values = "tPath=/c64/zips/Commando.ZIP"},
        {.label = "MD5 sums",
         .sql = "Select * From Category where ID=2",
         .type = dynaset,
         .rows = 1,
         .values = "tHash=Null",
         .edit = "tHash=d41d8cd98f00b204e9800998ecf8427e",
         .verify = "Select tHash From Category where ID=2",
         .verifyValue = "d41d8cd98f00b204e9800998ecf8427e"},
        {.label = "directory export",
         .sql = "Select F.tProgram,F.tExtension,F.lSize,C.tCategory,C.tPath From C64Files as F "
                "Left Join Category as C on F.Category_File=C.ID where F.Category_File=1 order by "
                "lIndex",
         .rows = 3,
         .names = "tProgram,tExtension,lSize,tCategory,tPath",
         .values = "tProgram=SANXION;lSize=150;tCategory=Sanxion.d64"},

        // Starting.
        {.label = "StartFile entry",
         .sql = "Select F.*,C.* From C64Files as F Left Join Category as C on "
                "F.Category_File=C.ID where F.ID=8",
         .type = dynaset,
         .rows = 1,
         .values = "C.ID=6;lIndex=1;lSize=10;tRealProgram=O'BRIEN;iFileType=1;F.lStartCount=1",
         .edit = "F.tsLastStarted=2024-03-20 18:30:00;F.lStartCount=2",
         .verify = "Select lStartCount,tsLastStarted From C64Files where ID=8",
         .verifyValue = "2|2024-03-20 18:30:00"},
        {.label = "StartFile file",
         .sql = "Select * From Category where ID=1",
         .rows = 1,
         .values = "tPath=/c64/disks/Sanxion.d64;tUnpackPath=Null;iFileType=1"},
        {.label = "StartFile count of a file",
         .sql = "Update Category Set tsLastStarted=#03/20/2024 06:30:00 pm#,lStartCount=val('' & "
                "lStartCount) + 1 Where ID=1",
         .rows = 1,
         .verify = "Select lStartCount,tsLastStarted From Category where ID=1",
         .verifyValue = "4|2024-03-20 18:30:00"},
        {.label = "StartFile count of a file never started",
         .sql = "Update Category Set tsLastStarted=#03/20/2024 06:30:00 pm#,lStartCount=val('' & "
                "lStartCount) + 1 Where ID=2",
         .rows = 1,
         .verify = "Select lStartCount From Category where ID=2",
         .verifyValue = "1"},
        {.label = "flip list container of an entry",
         .sql = "Select Category_File As FldValue From C64Files where ID=5",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=3"},

        // The main window's tree: the root, the files or categories, the entries.
        {.label = "tree root view 1",
         .sql = "SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,16 AS Icon,'Dateien' From Config",
         .rows = 1,
         .names = "ItemKey,ParentKey,Icon,Expr1003",
         .values = "ItemKey=-1;ParentKey=-1;Icon=16;#3=Dateien"},
        {.label = "tree root view 3",
         .sql = "SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,18 AS Icon,'Kategorien' From "
                "Config",
         .rows = 1,
         .values = "Icon=18;#3=Kategorien"},
        {.label = "tree root view 4",
         .sql = "SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,16 AS Icon,'Neue Dateien' From "
                "Config",
         .rows = 1,
         .values = "#3=Neue Dateien"},
        {.label = "tree root view 5",
         .sql = "SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,20 AS Icon,'Zuletzt gestartet' From "
                "Config",
         .rows = 1,
         .values = "Icon=20;#3=Zuletzt gestartet"},
        {.label = "tree root view 6",
         .sql = "SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,21 AS Icon,'Top 100' From Config",
         .rows = 1,
         .values = "#3=Top 100"},
        {.label = "tree root with a quote in the view name",
         .sql = "SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,16 AS Icon,'Files'' view' From "
                "Config",
         .rows = 1,
         .values = "#3=Files' view"},
        {.label = "tree level 2 view 1",
         .sql = treeFiles(" where iType=1"),
         .rows = 10,
         .names = "ItemKey,ParentKey,Icon,tCategory",
         .values = "ItemKey=4;ParentKey=-1;Icon=6;tCategory=Boulder Dash.tap"},
        {.label = "tree level 2 view 3",
         .sql = "SELECT F.ID AS ItemKey,-1 AS ParentKey,18 AS Icon,tCategory From Category as F "
                "where iType=3 order by tCategory",
         .rows = 3,
         .values = "ItemKey=20;Icon=18;tCategory=Action"},
        {.label = "tree level 2 view 4",
         .sql = treeFiles(" where F.ID>8 And iType=1"),
         .rows = 2,
         .values = "ItemKey=9"},
        {.label = "tree level 2 view 5",
         .sql = treeLastStarted("dd.MM.yyyy", " where not isnull(F.tsLastStarted) And iType=1") +
                " order by F.tsLastStarted desc",
         .rows = 3,
         .values = "ItemKey=1;Icon=1;#3=(14.03.2024) - Sanxion.d64"},
        {.label = "tree level 2 view 5 with a US date pattern",
         .sql = treeLastStarted("M/d/yyyy", " where not isnull(F.tsLastStarted) And iType=1") +
                " order by F.tsLastStarted desc",
         .rows = 3,
         .values = "ItemKey=1"},
        {.label = "tree level 2 view 6",
         .sql = "SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,'(' & F.lStartCount& "
                "') - ' & tCategory From Category as F where not isnull(F.lStartCount) And "
                "iType=1 order by F.lStartCount desc,tCategory",
         .rows = 3,
         .values = "ItemKey=3;#3=(5) - Paradroid.prg"},
        {.label = "tree level 3 view 1",
         .sql = treeLevel(treeEntriesHead("Category_File") +
                          " WHERE Category_File=xxx order by lIndex"),
         .paramBy = ParamBy::Position,
         .param = "1",
         .rows = 3,
         .names = "ItemKey,ParentKey,Icon,File",
         .values = "ItemKey=1;ParentKey=1;Icon=1;File=SANXION.PRG"},
        {.label = "tree level 3 view 1 of a disk with an unnamed entry",
         .sql = treeLevel(treeEntriesHead("Category_File") +
                          " WHERE Category_File=xxx order by lIndex"),
         .paramBy = ParamBy::Position,
         .param = "6",
         .rows = 2,
         .values = "ItemKey=8;File=O'BRIEN.PRG"},
        {.label = "tree level 3 view 3",
         .sql = treeLevel(treeEntriesHead("Category_User") + " WHERE Category_User=xxx order by 4"),
         .paramBy = ParamBy::Position,
         .param = "20",
         .rows = 2,
         .values = "ItemKey=5;ParentKey=20;File=PARADROID.PRG"},
        {.label = "tree level 3 view 3 with the user category",
         .sql = treeLevel("SELECT C64Files.ID AS ItemKey,Category_User AS ParentKey,F.iFileType "
                          "as Icon, tProgram & '.' & tExtension AS File " +
                          kFromWithCategory + " WHERE Category_User=xxx order by 4"),
         .paramBy = ParamBy::Position,
         .param = "21",
         .rows = 2,
         .values = "ItemKey=8;ParentKey=21;File=O'BRIEN.PRG"},
        {.label = "tree level 3 view 1 search name",
         .sql = treeLevel(treeEntriesHead("Category_File") + " " + searchSan +
                          " And Category_File=xxx order by lIndex"),
         .paramBy = ParamBy::Position,
         .param = "1",
         .rows = 2,
         .values = "ItemKey=1"},
        {.label = "tree level 3 view 4",
         .sql = treeLevel(treeEntriesHead("Category_File") +
                          "  where C64Files.ID>9 And Category_File=xxx order by lIndex"),
         .paramBy = ParamBy::Position,
         .param = "6",
         .rows = 1,
         .values = "ItemKey=10;File=(NO NAME).PRG"},
        {.label = "tree level 3 view 1 filter PRG + P00",
         .sql = treeLevel(treeEntriesHead("Category_File") + " " + prgOrP00 +
                          " And Category_File=xxx order by lIndex"),
         .paramBy = ParamBy::Position,
         .param = "3",
         .rows = 1,
         .values = "ItemKey=5"},
        {.label = "tree parent keys of level 1",
         .sql = "SELECT DISTINCT -1 From Category as F where iType=1",
         .rows = 1,
         .names = "Expr1000",
         .values = "#0=-1"},
        {.label = "tree parent keys of level 1 view 5",
         .sql = "SELECT DISTINCT -1 From Category as F where not isnull(F.tsLastStarted) And "
                "iType=1",
         .rows = 1},
        {.label = "tree parent keys of level 2 view 1",
         .sql = "SELECT DISTINCT Category_File" + kFrom + " order by 1",
         .rows = 9,
         .values = "#0=1"},
        {.label = "tree parent keys of level 2 view 3",
         .sql = "SELECT DISTINCT Category_User" + kFrom + " order by 1",
         .rows = 3,
         .values = "#0=Null"},
        {.label = "tree parent keys of level 2 view 1 search name",
         .sql = "SELECT DISTINCT Category_File" + kFrom + searchSan + " order by 1",
         .rows = 1,
         .values = "#0=1"},
        {.label = "tree parent of an entry",
         .sql = treeEntriesHead("Category_File") + " WHERE  (C64Files.ID = 2) ",
         .type = dynaset,
         .rows = 1,
         .values = "ParentKey=1"},
        {.label = "tree parent of an entry found by name",
         .sql = treeEntriesHead("Category_File") +
                " WHERE  (tProgram like'*san*') AND (C64Files.ID = 2) ",
         .type = dynaset,
         .rows = 1,
         .values = "ParentKey=1"},
        {.label = "tree parent of an entry in a user category",
         .sql = treeEntriesHead("Category_User") + " WHERE  (C64Files.ID = 8) ",
         .type = dynaset,
         .rows = 1,
         .values = "ParentKey=21"},
        {.label = "tree parent of an entry gone",
         .sql = treeEntriesHead("Category_File") + " WHERE  (C64Files.ID = 99) ",
         .type = dynaset,
         .rows = 0},
        {.label = "tree parent of a file in view 5",
         .sql = treeLastStarted(
             "dd.MM.yyyy", " WHERE  (not isnull(F.tsLastStarted) And iType=1) AND (F.ID = 3) "),
         .type = dynaset,
         .rows = 1,
         .values = "ItemKey=3;ParentKey=-1"},
        {.label = "tree find local index",
         .sql = treeFiles(" where iType=1"),
         .find = "ItemKey=6",
         .values = "tCategory=O'Brien's Disk.d64"},
        {.label = "tree find string",
         .sql = "SELECT F.ID AS ItemKey,-1 AS ParentKey,18 AS Icon,tCategory From Category as F "
                "where iType=3 order by tCategory",
         .find = "ParentKey like '*1*'",
         .values = "ItemKey=20"},

        // The main window's entry list in views 1, 3 and 4.
        {.label = "view 1 list level 1", .sql = listLevel1({}), .rows = 12, .names = kListNames1},
        {.label = "view 1 list level 2",
         .sql = listLevel2("Category_File", ",lIndex"),
         .rows = 12,
         .names = kListNames2 + ",lIndex"},
        {.label = "view 1 list level 2 of a file",
         .sql = reportLevel(listLevel2("Category_File", ",lIndex") +
                            " WHERE Category_File = XXX ORDER BY 4 ASC"),
         .paramBy = ParamBy::Name,
         .param = "1",
         .rows = 3,
         .values = "ID=3;ParentKey=1;File=MY_GAME;Größe=33;Disc_File=Sanxion.d64"},
        {.label = "view 1 list level 2 of a file in directory order",
         .sql = reportLevel(listLevel2("Category_File", ",lIndex") +
                            " WHERE Category_File = XXX ORDER BY 10 ASC"),
         .paramBy = ParamBy::Name,
         .param = "1",
         .rows = 3,
         .values = "ID=1;lIndex=1;Disk/Tape-Name=SANXION;Dateipfad=/c64/disks/Sanxion.d64"},
        {.label = "view 1 list level 1 sorted by size",
         .sql = listLevel1(" ORDER BY 6 DESC"),
         .rows = 12,
         .values = "ID=9;Größe=4096;Filetyp=PNG"},
        {.label = "view 3 list level 1",
         .sql = listLevel1({}, kUserCategoryColumn, kFromWithCategory),
         .rows = 12,
         .names = kListNames1 + ",Kategorie"},
        {.label = "view 3 list level 2",
         .sql = listLevel2("Category_User", kUserCategoryColumn, kFromWithCategory),
         .rows = 12},
        {.label = "view 3 list level 2 of a category",
         .sql = reportLevel(listLevel2("Category_User", kUserCategoryColumn, kFromWithCategory) +
                            " WHERE Category_User = XXX ORDER BY 4 ASC"),
         .paramBy = ParamBy::Name,
         .param = "21",
         .rows = 2,
         .values = "ID=8;File=O'BRIEN;Kategorie=Shoot'em Up"},
        {.label = "view 3 list level 1 search name",
         .sql = listLevel1(" where tProgram like'*para*'", kUserCategoryColumn, kFromWithCategory),
         .rows = 1,
         .values = "ID=5;Kategorie=Action"},
        {.label = "view 3 list level 2 of a category search name",
         .sql = reportLevel(listLevel2("Category_User", kUserCategoryColumn, kFromWithCategory,
                                       " where tProgram like'*para*'") +
                            " AND Category_User = XXX ORDER BY 4 ASC"),
         .paramBy = ParamBy::Name,
         .param = "20",
         .rows = 1,
         .values = "ID=5"},
        {.label = "view 4 list level 1", .sql = listLevel1(" where C64Files.ID>9"), .rows = 3},
        {.label = "view 4 list level 2 of a file",
         .sql = reportLevel(listLevel2("Category_File", ",lIndex", kFrom, " where C64Files.ID>9") +
                            " AND Category_File = XXX ORDER BY 10 ASC"),
         .paramBy = ParamBy::Name,
         .param = "6",
         .rows = 1,
         .values = "ID=10;File=(NO NAME)"},

        // Views 5 and 6: last started and most started entries.
        {.label = "view 5 list level 1",
         .sql = "Select  C64Files.ID,-1" + kColumns + kLastStartedColumn + kFrom +
                " where not isnull(C64Files.tsLastStarted) " + kOrderLast,
         .rows = 4,
         .names = kListNames1 + ",Zuletzt gestartet",
         .values = "ID=1;Zuletzt gestartet=2024-03-14 21:05:00"},
        {.label = "view 5 list level 2",
         .sql = "Select C64Files.ID,Category_File AS ParentKey " + kColumns + kLastStartedColumn +
                kFrom + " where not isnull(C64Files.tsLastStarted) " + kOrderLast,
         .rows = 4,
         .values = "ID=1"},
        {.label = "view 5 list level 2 of a file",
         .sql = reportLevel("Select C64Files.ID,Category_File AS ParentKey " + kColumns +
                            kLastStartedColumn + kFrom +
                            " where not isnull(C64Files.tsLastStarted)  AND Category_File = XXX "
                            "ORDER BY C64Files.tsLastStarted desc"),
         .paramBy = ParamBy::Name,
         .param = "1",
         .rows = 2,
         .values = "ID=1;Zuletzt gestartet=2024-03-14 21:05:00"},
        {.label = "view 5 list level 1 search name",
         .sql = "Select  C64Files.ID,-1" + kColumns + kLastStartedColumn + kFrom +
                " where not isnull(C64Files.tsLastStarted)  And tProgram like'*san*'" + kOrderLast,
         .rows = 2,
         .values = "ID=1"},
        {.label = "view 5 list level 1 new files",
         .sql = "Select  C64Files.ID,-1" + kColumns + kLastStartedColumn + kFrom +
                " where not isnull(C64Files.tsLastStarted)  And C64Files.ID>9" + kOrderLast,
         .rows = 0},
        {.label = "view 5 list level 1 filter PRG + P00",
         .sql = "Select  C64Files.ID,-1" + kColumns + kLastStartedColumn + kFrom +
                " where not isnull(C64Files.tsLastStarted)  And (  F.iFileType =4 Or F.iFileType "
                "=5)" +
                kOrderLast,
         .rows = 1,
         .values = "ID=5"},
        {.label = "view 5 tree level 2 filter PRG + P00",
         .sql = treeLastStarted("dd.MM.yyyy", " where not isnull(F.tsLastStarted) And (  "
                                              "F.iFileType =4 Or F.iFileType =5) And iType=1") +
                " order by F.tsLastStarted desc",
         .rows = 1,
         .values = "ItemKey=3"},
        {.label = "view 6 list level 1",
         .sql = "Select TOP 100 C64Files.ID,-1" + kColumns + kCountColumn + kFrom +
                " where not isnull(C64Files.lStartCount) " + kOrderTop,
         .rows = 4,
         .names = kListNames1 + ",Zähler",
         .values = "ID=5;Zähler=5"},
        {.label = "view 6 list level 2",
         .sql = "Select C64Files.ID,Category_File AS ParentKey " + kColumns + kCountColumn + kFrom +
                " where not isnull(C64Files.lStartCount) " + kOrderTop,
         .rows = 4,
         .values = "ID=5"},
        {.label = "view 6 list level 2 of a file",
         .sql = reportLevel("Select C64Files.ID,Category_File AS ParentKey " + kColumns +
                            kCountColumn + kFrom +
                            " where not isnull(C64Files.lStartCount)  AND Category_File = XXX "
                            "ORDER BY C64Files.lStartCount desc,C64Files.tsLastStarted desc"),
         .paramBy = ParamBy::Name,
         .param = "1",
         .rows = 2,
         .values = "ID=1;Zähler=2"},
        {.label = "view 6 tree level 2 search file",
         .sql = "SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,'(' & F.lStartCount& "
                "') - ' & tCategory From Category as F where not isnull(F.lStartCount) And "
                "F.tFile like'*paradroid*' And iType=1 order by F.lStartCount desc,tCategory",
         .rows = 1,
         .values = "ItemKey=3"},

        // The search boxes.
        {.label = "view 1 list level 1 search name", .sql = listLevel1(searchSan), .rows = 2},
        {.label = "view 1 list level 1 search name with a quote",
         .sql = listLevel1(" where tProgram like'*O''BRIEN*'"),
         .rows = 1,
         .values = "ID=8;File=O'BRIEN"},
        {.label = "view 1 list level 1 search file pattern",
         .sql = listLevel1(" where F.tFile like'*.d64'"),
         .rows = 6},
        {.label = "view 1 list level 1 search path",
         .sql = listLevel1(" where F.tPath like'*zips*'"),
         .rows = 3},
        {.label = "view 1 list level 1 search name and file",
         .sql = listLevel1(" where tProgram like'*san*' And F.tFile like'*.d64'"),
         .rows = 2},
        {.label = "view 1 tree level 2 search file",
         .sql = treeFiles(" where F.tFile like'*paradroid*' And iType=1"),
         .rows = 1,
         .values = "ItemKey=3"},
        {.label = "view 1 tree level 2 search path",
         .sql = treeFiles(" where F.tPath like'*zips*' And iType=1"),
         .rows = 3,
         .values = "ItemKey=9"},

        // View 2, the files list.
        {.label = "view 2 files",
         .sql = filesList({}, " where iType=1"),
         .rows = 10,
         .names =
             "ID,iTyp,IsArchiv,Filetyp,Disc_File,Dateipfad,Archivpfad,MD5-Checksumme,Erstellt"},
        {.label = "view 2 files sorted",
         .sql = filesList({}, " where iType=1 ORDER BY 4 ASC"),
         .rows = 10,
         .values = "Filetyp=D64"},
        {.label = "view 2 files search name",
         .sql = filesList("Distinct", " Inner Join C64Files On F.ID=C64Files.Category_File where "
                                      "tProgram like'*san*' And iType=1"),
         .rows = 1,
         .values =
             "ID=1;iTyp=1;IsArchiv=0;Filetyp=D64;MD5-Checksumme=9e107d9d372bb6826bd81d3542a419d6"},
        {.label = "view 2 files search file",
         .sql = filesList({}, " where F.tFile like'*.d64' And iType=1"),
         .rows = 3},
        {.label = "view 2 files search path of an archive",
         .sql = filesList({}, " where F.tPath like'*Commando*' And iType=1"),
         .rows = 1,
         .values =
             "ID=9;IsArchiv=24;Filetyp=D64;Archivpfad=Commando.d64;Erstellt=2024-01-05 10:00:09"},
        {.label = "view 2 files filter Bilder",
         .sql = filesList({}, pictures + " And iType=1"),
         .rows = 1,
         .values = "ID=10;Filetyp=GIF"},

        // The filters.
        {.label = "view 1 list level 1 filter PRG + P00",
         .sql = listLevel1(prgOrP00),
         .rows = 1,
         .values = "ID=5"},
        {.label = "view 1 tree level 2 filter PRG + P00",
         .sql = treeFiles(prgOrP00 + " And iType=1"),
         .rows = 1,
         .values = "ItemKey=3"},
        // The PNG and the TIFF term exclude each other: the default filter finds no PNG.
        {.label = "view 1 list level 1 filter Bilder",
         .sql = listLevel1(pictures),
         .rows = 1,
         .values = "ID=12"},
        {.label = "view 1 list level 1 filter path contains",
         .sql = listLevel1(" where (  F.tPath Like'*readme*' Or F.tUnpackPath Like'*readme*')"),
         .rows = 1,
         .values = "ID=7"},
        {.label = "view 1 tree level 2 filter path contains",
         .sql = treeFiles(" where (  F.tPath Like'*readme*' Or F.tUnpackPath Like'*readme*') And "
                          "iType=1"),
         .rows = 1,
         .values = "ItemKey=5"},
        {.label = "view 1 list level 1 filter type ZIP",
         .sql = listLevel1(" where F.tPath Like '*.ZIP'"),
         .rows = 3},
        {.label = "view 1 list level 1 filter type TXT",
         .sql = listLevel1(" where F.tFile Like '*.TXT'"),
         .rows = 1,
         .values = "ID=7"},
        {.label = "view 1 list level 1 filter Disketten",
         .sql = listLevel1(" where F.iFileType =1"),
         .rows = 6},
        {.label = "view 1 list level 1 filter user category",
         .sql = listLevel1(" where Category_User =20"),
         .rows = 2},
        {.label = "view 1 list level 1 filter no user category",
         .sql = listLevel1(" where Category_User =0"),
         .rows = 0},
        {.label = "view 1 list level 1 filter category name",
         .sql = listLevel1(" where C.TCATEGORY Like'*shoot*'", {}, kFromWithCategory),
         .rows = 2},
        {.label = "view 1 list level 1 filter begins with",
         .sql = listLevel1(" where F.tFile Like'o''b*'"),
         .rows = 2},
        {.label = "view 1 list level 1 filter ends with",
         .sql = listLevel1(" where F.tImage Like'*TAPE'"),
         .rows = 1,
         .values = "ID=4"},
        {.label = "view 1 list level 1 filter not like",
         .sql = listLevel1(" where F.tImage Not Like'*SANXION*'"),
         .rows = 4},
        {.label = "view 1 list level 1 filter size below",
         .sql = listLevel1(" where lSize <100"),
         .rows = 5},
        // "Archiv-Dateien" compares with Null, which is never true in Jet.
        {.label = "view 1 list level 1 filter archive files",
         .sql = listLevel1(" where F.tUnpackPath <>NULL"),
         .rows = 0},
        {.label = "view 1 tree level 2 filter archive files",
         .sql = treeFiles(" where F.tUnpackPath <>NULL And iType=1"),
         .rows = 0},
        // The "=" compare does not double the quote: the list reports the broken text.
        {.label = "view 1 list level 1 filter exact name with a quote",
         .sql = listLevel1(" where F.tFile ='O'Brien's Disk.d64'"),
         .fails = true},

        // The list control: finding rows and putting the selection back.
        {.label = "list restore selection by key",
         .sql = listLevel1({}),
         .find = "ID=8",
         .values = "File=O'BRIEN;Expr1001=-1"},
        {.label = "list restore selection by row",
         .sql = listLevel1({}),
         .find = "[ID] =1 and [Expr1001] =-1 and [Icon] =1 and [File] ='SANXION' and [Größe] =150",
         .values = "ID=1"},
        {.label = "list incremental search",
         .sql = listLevel1({}),
         .find = "[File] like 'boul*'",
         .values = "ID=6"},
        {.label = "list find with a quote",
         .sql = listLevel1({}),
         .find = "[File] like 'O''BRIEN*'",
         .values = "ID=8"},
        {.label = "list find number",
         .sql = listLevel1({}),
         .find = "[Größe]=180",
         .values = "ID=4"},
        {.label = "list find date",
         .sql = "Select  C64Files.ID,-1" + kColumns + kLastStartedColumn + kFrom +
                " where not isnull(C64Files.tsLastStarted) " + kOrderLast,
         .find = "[Zuletzt gestartet]=#03/10/2024 08:00:00 am#",
         .values = "ID=5"},
        {.label = "list find without a match",
         .sql = listLevel1({}),
         .find = "[File] like 'zzz*'",
         .found = false},

        // The database combo box searching as the user types.
        {.label = "category combo search",
         .sql = "Select ID,tCategory From Category WHERE UCASE(tCategory )LIKE 'SHOOT?EM*' order "
                "by tCategory",
         .rows = 1,
         .values = "ID=21"},
        {.label = "category combo search within its condition",
         .sql = "Select ID,tCategory From Category WHERE (iType=3) AND UCASE(tCategory )LIKE 'A*' "
                "order by tCategory",
         .rows = 1,
         .values = "ID=20"},
        {.label = "file combo search",
         .sql = "Select Distinct tFile From Category WHERE UCASE(tFile )LIKE 'SAN*' ORDER BY 1",
         .rows = 1,
         .values = "tFile=Sanxion.d64"},
        {.label = "image combo search grouped",
         .sql = "Select tImage From Category GROUP BY tImage HAVING UCASE(tImage )LIKE 'O?B*' "
                "ORDER BY 1",
         .rows = 1,
         .values = "tImage=O'BRIEN"},
        {.label = "size combo search",
         .sql = "Select ID,lSize From C64Files WHERE lSize >= VAL('150') ORDER BY 2",
         .rows = 6,
         .values = "ID=1"},
        {.label = "date combo exact value",
         .sql = "Select ID,tsLastStarted From C64Files WHERE tsLastStarted = #03/14/2024 09:05:00 "
                "pm# ORDER BY 2",
         .rows = 1,
         .values = "ID=1"},
        {.label = "date combo search",
         .sql = "Select ID,tsLastStarted From C64Files WHERE '' & tsLastStarted LIKE '2024*' "
                "ORDER BY 2"},
        {.label = "GameBase year combo exact value",
         .sql = "Select YE_Id,Year From Years WHERE Year = 1986 ORDER BY 2",
         .on = On::GameBase,
         .rows = 1,
         .values = "YE_Id=1"},
        {.label = "GameBase year combo search",
         .sql = "Select YE_Id,Year From Years WHERE Year >= 9991 ORDER BY 2",
         .on = On::GameBase,
         .rows = 2,
         .values = "Year=9991"},

        // The preview and the commands of the main window.
        {.label = "preview directory",
         .sql = "Select F.ID,F.tProgram,F.tExtension,F.lSize,C.tCategory,C.tImage From C64Files "
                "as F Left Join Category as C on F.Category_File=C.ID where F.Category_File=1 "
                "order by lIndex",
         .rows = 3,
         .names = "ID,tProgram,tExtension,lSize,tCategory,tImage",
         .values = "ID=1;tCategory=Sanxion.d64;tImage=SANXION"},
        {.label = "preview text file",
         .sql = "Select * From Category where ID=5",
         .rows = 1,
         .values = "tUnpackPath=docs\\readme.txt;tPath=/c64/zips/Paradroid.zip"},
        {.label = "show in file manager",
         .sql = "Select tPath As FldValue From Category where ID=3",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=/c64/zips/Paradroid.zip"},
        {.label = "rename category",
         .sql = "Update Category Set tCategory ='Shoot''em All' where ID=21",
         .rows = 1,
         .verify = "Select tCategory From Category where ID=21",
         .verifyValue = "Shoot'em All"},
        {.label = "delete files and containers left empty",
         .sql = "Delete Category.* From Category Left Join C64Files on Category.ID = "
                "C64Files.Category_File where isNull(Category_File) and Category.iType=1",
         .rows = 1,
         .verify = "Select Count(ID),Max(ID) From Category where iType=1",
         .verifyValue = "9|10"},
        {.label = "delete chronicle of a file",
         .sql = "Update Category Set tsLastStarted=Null,lStartCount=Null where ID=1",
         .rows = 1,
         .verify = "Select Count(ID) From Category where not isNull(lStartCount)",
         .verifyValue = "2"},
        {.label = "delete chronicle of its entries",
         .sql = "Update C64Files Set tsLastStarted=Null,lStartCount=Null where Category_File=1",
         .rows = 3,
         .verify = "Select Count(ID) From C64Files where not isNull(tsLastStarted)",
         .verifyValue = "2"},
        {.label = "file properties entry count",
         .sql = "Select Count(ID) As FldValue From C64Files where Category_File=6",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=2"},
        {.label = "file properties",
         .sql = "Select * From Category where ID=6",
         .type = dynaset,
         .rows = 1,
         .values = "tFile=O'Brien's Disk.d64",
         .edit = "tFile=O'Brien 2.d64;tCategory=O'Brien 2.d64;tPath=/c64/disks/O'Brien 2.d64",
         .verify = "Select tCategory,tPath From Category where ID=6",
         .verifyValue = "O'Brien 2.d64|/c64/disks/O'Brien 2.d64"},
        {.label = "entry properties categories",
         .sql = "Select ID,tCategory From Category where iType=3",
         .rows = 3},
        {.label = "entry properties GameBase link",
         .sql = "Update Category Set GB_ID=105 where ID=9",
         .rows = 1,
         .verify = "Select GB_ID From Category where ID=9",
         .verifyValue = "105"},
        {.label = "entry properties GameBase link removed",
         .sql = "Update Category Set GB_ID=Null where ID=1",
         .rows = 1,
         .verify = "Select GB_ID From Category where ID=1",
         .verifyValue = "Null"},
        {.label = "assign category list",
         .sql = "Select ID,tCategory From Category where iType=3 order by tCategory",
         .rows = 3,
         .values = "ID=20;tCategory=Action"},
        {.label = "assign category",
         .sql = "Update C64Files Set Category_User = 22 where Category_File=1",
         .rows = 3,
         .verify = "Select Count(ID) From C64Files where Category_User=22",
         .verifyValue = "3"},
        {.label = "assign category none",
         .sql = "Update C64Files Set Category_User = Null where Category_File=6",
         .rows = 2,
         .verify = "Select Count(ID) From C64Files where Category_User=21",
         .verifyValue = "1"},

        // The GameBase connection and the matching of imported archives.
        {.label = "GameBase check",
         .sql = "Select Max(MajorVersion) as Major,Max(MinorVersion) as Minor From Config",
         .on = On::GameBase,
         .rows = 1,
         .values = "Major=2;Minor=5"},
        {.label = "SetGBInfos genre",
         .sql = "Select Genre from Genres where GE_ID=1",
         .on = On::GameBase,
         .rows = 1,
         .values = "Genre=Shoot'em Up"},
        {.label = "SetGBInfos entry",
         .sql = "Select * From C64Files where ID=11",
         .type = dynaset,
         .rows = 1,
         .values = "GB_ID=Null;Category_File=9",
         .edit = "GB_ID=105;tProgram=ABC;Category_User=20",
         .verify = "Select tProgram,tRealProgram,GB_ID,Category_User From C64Files where ID=11",
         .verifyValue = "ABC|COMMANDO|105|20"},
        {.label = "SetGBInfos container",
         .sql = "Select GB_ID,iFileType,tCategory From Category where ID=9",
         .type = dynaset,
         .rows = 1,
         .values = "iFileType=1",
         .edit = "GB_ID=105",
         .verify = "Select GB_ID From Category where ID=9",
         .verifyValue = "105"},
        {.label = "SetGBInfos text container",
         .sql = "Select GB_ID,iFileType,tCategory,tFile From Category where ID=5",
         .type = dynaset,
         .rows = 1,
         .values = "GB_ID=102;iFileType=10;tFile=readme.txt",
         .edit = "tCategory=Paradroid-readme.txt",
         .verify = "Select tCategory,tFile From Category where ID=5",
         .verifyValue = "Paradroid-readme.txt|readme.txt"},
        {.label = "result list genres",
         .sql = "Select Distinct Genre From Genres where Genre<>''",
         .on = On::GameBase,
         .rows = 3},

        // The GameBase window: the games list, run on the GameBase itself.
        {.label = "GameBase games",
         .sql = kGamesHead + " From Games as G  where Adult=0",
         .on = On::GameBase,
         .rows = 5,
         .names = "GA_ID,Icon,Scr,V_LengthType,File",
         .find = "GA_ID=103",
         .values = "Icon=0;Scr=;File=Uridium"},
        {.label = "GameBase games with adult content",
         .sql = kGamesHead + " From Games as G ",
         .on = On::GameBase,
         .rows = 6,
         .find = "GA_ID=101",
         .values = "Icon=1;Scr=S\\Sanxion.png"},
        {.label = "GameBase games search with a quote",
         .sql = kGamesHead + " From Games as G  where G.Name like'*O''Neil*'",
         .on = On::GameBase,
         .rows = 1,
         .values = "GA_ID=104;File=O'Neil's Quest"},
        {.label = "GameBase games search without adult content",
         .sql = kGamesHead + " From Games as G  where G.Name like'*o''neil*' And Adult=0",
         .on = On::GameBase,
         .rows = 0},
        {.label = "GameBase games search and filter",
         .sql = kGamesHead + " From Games as G  where G.Name like'*a*' And G.GE_ID =2 And Adult=0",
         .on = On::GameBase,
         .rows = 2},
        {.label = "GameBase games with all lookup columns",
         .sql = kGamesHead + allLookups + " From (((((((Games as G " + allLookupJoins,
         .on = On::GameBase,
         .rows = 6,
         .find = "GA_ID=104",
         .values = "Cracker=Zeta Cracks;Spielkategorie=Adventure;Sprache=German;Musiker=R. Tune;"
                   "Herausgeber=Nova Soft;Programmierer=C. Writer;Jahr=1987"},
        {.label = "GameBase games with plain columns",
         .sql = kGamesHead +
                ",G.Rating as [Bewertung],G.Control as [Control],G.V_Length as [Größe],"
                "G.V_PalNTSC as [Pal/NTSC],G.Comment as [Kommentar],"
                "G.DateLastPlayed as [Letzter Start mit GB],G.TimesPlayed as [Anzahl Starts mit "
                "GB],G.FileToRun as [Startdatei] From Games as G  where Adult=0",
         .on = On::GameBase,
         .rows = 5,
         .find = "GA_ID=101",
         .values = "Bewertung=5;Größe=150;Pal/NTSC=0;Kommentar=Horizontal shoot'em up;Letzter "
                   "Start mit GB=14-03-2024;Anzahl Starts mit GB=4;Startdatei=SANXION"},
        {.label = "GameBase filter genre",
         .sql = kGamesHead + " From Games as G  where G.GE_ID =1 And Adult=0",
         .on = On::GameBase,
         .rows = 2},
        {.label = "GameBase filter genre without a value",
         .sql = kGamesHead + " From Games as G  where G.GE_ID =Null And Adult=0",
         .on = On::GameBase,
         .rows = 0},
        {.label = "GameBase filter publisher",
         .sql = kGamesHead + " From Games as G  where G.PU_ID =2 And Adult=0",
         .on = On::GameBase,
         .rows = 3},
        {.label = "GameBase filter year after",
         .sql = kGamesHead + ",Y.Year as [Jahr] From (Games as G " + yearJoin +
                " where Y.YEAR >1985 And Adult=0",
         .on = On::GameBase,
         .rows = 3},
        {.label = "GameBase filter year before or comment",
         .sql = kGamesHead + ",Y.Year as [Jahr] From (Games as G " + yearJoin +
                " where (  Y.YEAR <1986 Or G.Comment Like'*shoot*') And Adult=0",
         .on = On::GameBase,
         .rows = 3},
        {.label = "GameBase filter size",
         .sql = kGamesHead + " From Games as G  where G.V_Length <100 And Adult=0",
         .on = On::GameBase,
         .rows = 3},
        {.label = "GameBase filter empty comment",
         .sql = kGamesHead + " From Games as G  where G.Comment ='' And Adult=0",
         .on = On::GameBase,
         .rows = 3},

        // The GameBase window: the own files, run on the catalogue.
        {.label = "GameBase own files",
         .sql = kOwnHead + " From " + kOwnFrom + " where not isnull(A.GB_ID) And Adult=0",
         .rows = 3,
         .names = "ID,GB_ID,Icon,V_LengthType,File",
         .find = "ID=7",
         .values = "GB_ID=102;Icon=10;V_LengthType=0;File=readme.txt"},
        {.label = "GameBase own files search",
         .sql = kOwnHead + " From " + kOwnFrom +
                " where A.tProgram like'*san*' And not isnull(A.GB_ID) And Adult=0",
         .rows = 1,
         .values = "ID=1"},
        {.label = "GameBase own files with genre",
         .sql = kOwnHead + genreColumn + " From (" + kOwnFrom + genreJoin +
                " where not isnull(A.GB_ID) And Adult=0",
         .rows = 3,
         .find = "ID=5",
         .values = "Spielkategorie=Action"},
        {.label = "GameBase last started",
         .sql = ownLastHead + genreColumn + " From (" + kOwnFrom + genreJoin +
                " where not isnull(A.GB_ID) And not isnull(A.tsLastStarted) And Adult=0" +
                lastStartedUnion + genreColumn + " From (" + kPrefix + "Games as G " + genreJoin +
                " where G.DateLastPlayed<>'' And Adult=0 order by [Zuletzt gestartet] desc",
         .rows = 4,
         .find = "GB_ID=103",
         .values = "ID=0;Icon=28;File=Uridium;Spielkategorie=Shoot'em Up"},
        {.label = "GameBase last started with adult content",
         .sql = ownLastHead + " From " + kOwnFrom +
                " where not isnull(A.GB_ID) And not isnull(A.tsLastStarted)" + lastStartedUnion +
                " From " + kPrefix +
                "Games as G  where G.DateLastPlayed<>'' order by [Zuletzt gestartet] desc",
         .rows = 5},
        {.label = "GameBase top 100",
         .sql = ownTopHead + " From " + kOwnFrom +
                " where not isnull(A.GB_ID) And not isnull(A.lStartCount)  And Adult=0" + topUnion +
                " From " + kPrefix +
                "Games as G  where G.TimesPlayed >0  And Adult=0 order by [Zähler] desc",
         .rows = 4,
         .values = "ID=5;Zähler=5"},
        {.label = "GameBase top 100 search",
         .sql = ownTopHead + " From " + kOwnFrom +
                " where A.tProgram like'*san*' And not isnull(A.GB_ID) And not "
                "isnull(A.lStartCount)  And Adult=0" +
                topUnion + " From " + kPrefix +
                "Games as G  where G.Name like'*san*' And G.TimesPlayed >0  And Adult=0 order by "
                "[Zähler] desc",
         .rows = 2,
         .values = "Zähler=4"},

        // The GameBase window: details, start, download.
        {.label = "GameBase screenshot of an own file",
         .sql = "Select ScrnshotFilename from Games where GA_ID=101",
         .on = On::GameBase,
         .rows = 1,
         .values = "ScrnshotFilename=S\\Sanxion.png"},
        {.label = "GameBase start catalogued container",
         .sql = "Select Top 1 ID As FldValue From Category where GB_ID=102 and iFileType<>10",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=3"},
        {.label = "GameBase start catalogued entry",
         .sql = "Select Top 1 C.ID As FldValue From C64Files as C Left Join Category on "
                "C.Category_File=Category.ID  where C.GB_ID=102 and iFileType<>10",
         .options = db::option::ForwardOnly,
         .rows = 1,
         .values = "FldValue=5"},
        {.label = "GameBase start play statistics",
         .sql = "Select Filename,FileToRun,FileNameIndex,V_Length,DateLastPlayed,TimesPlayed From "
                "Games where GA_ID=103",
         .on = On::GameBase,
         .type = dynaset,
         .rows = 1,
         .values = "Filename=U\\Uridium.zip;FileToRun=;TimesPlayed=2",
         .edit = "DateLastPlayed=21-03-2024;TimesPlayed=3",
         .verify = "Select DateLastPlayed,TimesPlayed From Games where GA_ID=103",
         .verifyValue = "21-03-2024|3"},
        {.label = "GameBase download",
         .sql = "Select Name,Filename,FileToRun,FileNameIndex,Ge_ID From Games where GA_ID=106",
         .on = On::GameBase,
         .rows = 1,
         .values = "Name=No File;Filename=;Ge_ID=3"},

        // The tree toolkit's own example, as quoted: it names C64Files behind the alias F and a
        // field C64Files does not have, so no engine can run it.
        {.label = "tree toolkit example level",
         .sql = "SELECT C64Files.ID AS ItemKey,C64Files.Category_File AS ParentKey,F.iFileType as "
                "Icon, tProgram & '.' & tExtension AS File From C64Files as F where iType=1 order "
                "by 4",
         .fails = true},
        {.label = "tree toolkit example rewritten",
         .sql = "Parameters xxx Value;SELECT C64Files.ID AS ItemKey,C64Files.Category_File AS "
                "ParentKey,F.iFileType as Icon, tProgram & '.' & tExtension AS File From C64Files "
                "as F  where iType=1 And C64Files.Category_File=xxx order by 4",
         .paramBy = ParamBy::Position,
         .param = "1",
         .fails = true},
    };
}

} // namespace vd::test
