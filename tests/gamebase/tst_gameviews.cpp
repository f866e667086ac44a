// The statements of the GameBase window's views: the designed text for each tab, and the rows
// they give on a GameBase-shaped database beside a real catalogue. Also the decoded columns
// and the screenshot names.

#include "browser/Filters.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseViews.h"
#include "support/CatalogueFixture.h"
#include "support/GameBaseFixture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace vd;
using gamebase::GBViewInput;

namespace {

const QString kGB = QStringLiteral("/gb/GBC.mdb");
const QString kPrefix = QStringLiteral("[;database=/gb/GBC.mdb].");

GBViewInput input(int view, const QString& search = {}, const QString& columns = {},
                  bool adult = false)
{
    GBViewInput in;
    in.view = view;
    in.search = search;
    in.listColumns = columns;
    in.adultContent = adult;
    in.gameBasePath = kGB;
    return in;
}

browser::clsFilter filterOf(const QVector<browser::clsFilterDef>& defs)
{
    browser::clsFilter f;
    f.Name = QStringLiteral("Test");
    f.Key = 1;
    f.Defs = defs;
    return f;
}

struct Rows
{
    int count = 0;
    QVariantMap first;
};

Rows run(db::Database& db, const QString& sql)
{
    Rows r;
    auto rs = db.openRecordset(sql, db::RecordsetType::Snapshot);
    if (!rs->eof())
        for (const auto& f : rs->fields())
            r.first.insert(f.name, rs->value(f.name));
    while (!rs->eof()) {
        ++r.count;
        rs->moveNext();
    }
    return r;
}

} // namespace

class TestGameViews : public QObject
{
    Q_OBJECT

private slots:
    void statementsAsDesigned_data()
    {
        QTest::addColumn<int>("view");
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("columns");
        QTest::addColumn<QString>("expected");

        const QString gbHead = QStringLiteral(
            "Select G.GA_ID,iif(G.ScrnshotFilename='',0,1) as Icon,G.ScrnshotFilename as Scr,"
            "G.V_LengthType,G.Name as [File]");
        const QString myHead = QStringLiteral(
            "Select A.ID as ID,A.GB_ID,AF.iFileType as Icon,G.V_LengthType,A.tProgram as [File]");
        const QString myFrom =
            QStringLiteral("((C64Files as A Left Join Category as AF on A.Category_File=AF.ID)"
                           " Left Join ") +
            kPrefix + QStringLiteral("Games as G on A.GB_ID=G.GA_ID)");

        QTest::addRow("games, no search, no columns")
            << 1 << ""
            << "" << gbHead + " From Games as G  where Adult=0";
        QTest::addRow("games, search wrapped in stars, quote doubled")
            << 1 << "O'Neil"
            << "" << gbHead + " From Games as G  where G.Name like'*O''Neil*' And Adult=0";
        QTest::addRow("games, own pattern kept")
            << 1 << "*id"
            << "" << gbHead + " From Games as G  where G.Name like'*id' And Adult=0";
        QTest::addRow("games, comment and year")
            << 1 << ""
            << "COMMENT@@@YEAR"
            << gbHead + ",G.Comment as [Kommentar],Y.Year as [Jahr] From (Games as G  Left Join " +
                   kPrefix + "Years as Y on G.Ye_ID=Y.Ye_ID) where Adult=0";
        QTest::addRow("games, lookups in column order, year once")
            << 1 << ""
            << "genre@@@Y.YEAR@@@publisher@@@YEAR@@@Rating"
            << gbHead +
                   ",GR.Genre as [Spielkategorie],Y.Year as [Jahr],P.Publisher as [Herausgeber],"
                   "G.Rating as [Bewertung] From (((Games as G  Left Join " +
                   kPrefix + "Genres as GR on G.Ge_ID=GR.Ge_ID) Left Join " + kPrefix +
                   "Years as Y on G.Ye_ID=Y.Ye_ID) Left Join " + kPrefix +
                   "Publishers as P on G.Pu_ID=P.Pu_ID) where Adult=0";
        QTest::addRow("games, unknown column left out")
            << 1 << ""
            << "NOSUCHFIELD@@@Control"
            << gbHead + ",G.Control as [Control] From Games as G  where Adult=0";
        QTest::addRow("own files")
            << 2 << ""
            << "" << myHead + " From " + myFrom + " where not isnull(A.GB_ID) And Adult=0";
        QTest::addRow("own files, search and a lookup")
            << 2 << "para"
            << "CRACKER"
            << myHead + ",C.Cracker as [Cracker] From (" + myFrom + " Left Join " + kPrefix +
                   "Crackers as C on G.Cr_ID=C.Cr_ID) where A.tProgram like'*para*' And not "
                   "isnull(A.GB_ID) And Adult=0";
        QTest::addRow("last started, both halves searched and filtered")
            << 3 << "o'neil"
            << ""
            << myHead + ",A.tsLastStarted as [Zuletzt gestartet] From " + myFrom +
                   " where A.tProgram like'*o''neil*' And not isnull(A.GB_ID) And not "
                   "isnull(A.tsLastStarted) And Adult=0 Union SELECT 0 AS ID, G.GA_ID, 28 AS "
                   "Icon, G.V_LengthType, G.Name AS File,G.DateLastPlayed as DLP From " +
                   kPrefix +
                   "Games as G  where G.Name like'*o''neil*' And G.DateLastPlayed<>'' And "
                   "Adult=0 order by [Zuletzt gestartet] desc";
        QTest::addRow("top 100 with a column in both halves")
            << 4 << ""
            << "YEAR"
            << myHead + ",A.lStartCount as [Zähler],Y.Year as [Jahr] From (" + myFrom +
                   " Left Join " + kPrefix +
                   "Years as Y on G.Ye_ID=Y.Ye_ID) where not isnull(A.GB_ID) And not "
                   "isnull(A.lStartCount)  And Adult=0 Union SELECT 0 AS ID, G.GA_ID, 28 AS "
                   "Icon, G.V_LengthType, G.Name AS File,G.TimesPlayed as TP,Y.Year as [Jahr] "
                   "From (" +
                   kPrefix + "Games as G  Left Join " + kPrefix +
                   "Years as Y on G.Ye_ID=Y.Ye_ID) where G.TimesPlayed >0  And Adult=0 order by "
                   "[Zähler] desc";
    }
    void statementsAsDesigned()
    {
        QFETCH(int, view);
        QFETCH(QString, search);
        QFETCH(QString, columns);
        QFETCH(QString, expected);
        const gamebase::GBViewSql sql = gamebase::BuildGBViewSql(input(view, search, columns));
        QCOMPARE(sql.statement, expected);
        QCOMPARE(sql.onGameBase, view == 1);
    }

    void adultContentOnLeavesBothHalvesOpen()
    {
        const QString sql = gamebase::BuildGBViewSql(input(3, {}, {}, true)).statement;
        QVERIFY(!sql.contains(QStringLiteral("Adult")));
        QVERIFY(sql.contains(QStringLiteral(" where not isnull(A.GB_ID) And not "
                                            "isnull(A.tsLastStarted) Union")));
        QVERIFY(sql.contains(QStringLiteral("Games as G  where G.DateLastPlayed<>'' order by")));
    }

    void filterNarrowsBothHalves()
    {
        // A year above 1985, and GE_ID 1 or 3: a bracket around the "Or" run, the keys with
        // "G.", the year as it is, and the table of years joined for it.
        const browser::clsFilter f = filterOf(
            {{"Y.YEAR", ">", "1985", ""}, {"GE_ID", "=", "1", ""}, {"GE_ID", "=", "3", "Or"}});
        GBViewInput in = input(3);
        in.filter = &f;
        const QString sql = gamebase::BuildGBViewSql(in).statement;
        const QString terms = QStringLiteral("Y.YEAR >1985 And (  G.GE_ID =1 Or G.GE_ID =3)");
        QCOMPARE(sql.count(terms), 2);
        QCOMPARE(sql.count(QStringLiteral("Years as Y on")), 2); // once in each half
        QVERIFY(sql.contains(QStringLiteral("G.DateLastPlayed<>'' And ") + terms +
                             QStringLiteral(" And Adult=0 order by")));
    }

    void decodedColumnsAreReported()
    {
        const auto sql = gamebase::BuildGBViewSql(
            input(1, {}, QStringLiteral("CONTROL@@@Comment@@@v_length@@@RATING@@@V_PALNTSC")));
        QCOMPARE(sql.decodedColumns, (QStringList{"CONTROL", "V_LENGTH", "RATING", "V_PALNTSC"}));
    }

    void fieldSql_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<bool>("translate");
        QTest::addColumn<QString>("expected");
        QTest::addRow("plain") << "G.Name"
                               << "File" << false << "G.Name as [File]";
        QTest::addRow("brackets and dots made safe") << "X"
                                                     << "[a].b" << true << "X as [-a- b]";
        QTest::addRow("untranslated keeps them") << "X"
                                                 << "a.b" << false << "X as [a.b]";
        QTest::addRow("no name: caption alone") << ""
                                                << "jAHR" << false << "Jahr";
    }
    void fieldSql()
    {
        QFETCH(QString, name);
        QFETCH(QString, caption);
        QFETCH(bool, translate);
        QFETCH(QString, expected);
        QCOMPARE(gamebase::FieldSql(name, caption, translate), expected);
    }

    void fieldTable()
    {
        const QStringList items = gamebase::GBFieldTableText().split(QStringLiteral("@@@"));
        QCOMPARE(items.size(), 35);
        QCOMPARE(items.first(), QStringLiteral("FILE@File"));
        QCOMPARE(items[8], QStringLiteral("V_Length@Größe"));
        QCOMPARE(items.last(), QStringLiteral("Control@Control"));
        QCOMPARE(gamebase::GBFieldCaption(QStringLiteral("DATELASTPLAYED")),
                 QStringLiteral("Letzter Start mit GB"));
        QCOMPARE(gamebase::GBFieldCaption(QStringLiteral("nothing")), QString());
    }

    void formattedValues_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QVariant>("lengthType");
        QTest::addColumn<QString>("shown");
        const QVariant none;
        QTest::addRow("zero cartridges")
            << "V_Length" << QVariant(0) << QVariant(2) << "0 Cartridge(s)";
        QTest::addRow("blocks") << "V_LENGTH" << QVariant(150) << QVariant(0) << "150 Block(s)";
        QTest::addRow("tapes") << "V_Length" << QVariant(2) << QVariant(3) << "2 Tape(s)";
        QTest::addRow("unknown length type") << "V_Length" << QVariant(7) << QVariant(19) << "7";
        QTest::addRow("rating 0 empty") << "Rating" << QVariant(0) << none << "";
        QTest::addRow("rating 1") << "Rating" << QVariant(1) << none << "Terrible";
        QTest::addRow("rating 5") << "RATING" << QVariant(5) << none << "Very Good";
        QTest::addRow("rating 6 empty") << "Rating" << QVariant(6) << none << "";
        QTest::addRow("control 0") << "Control" << QVariant(0) << none << "JoyPort2";
        QTest::addRow("control 8") << "Control" << QVariant(8) << none << "LightGun";
        QTest::addRow("control unknown") << "Control" << QVariant(9) << none << "9";
        QTest::addRow("pal ntsc 3") << "V_PalNTSC" << QVariant(3) << none << "PAL[+NTSC?]";
        QTest::addRow("pal ntsc unknown") << "V_PalNTSC" << QVariant(-1) << none << "-1";
        QTest::addRow("other field as is") << "Comment" << QVariant("x") << none << "x";
        QTest::addRow("null rating") << "Rating" << none << none << "";
    }
    void formattedValues()
    {
        QFETCH(QString, field);
        QFETCH(QVariant, value);
        QFETCH(QVariant, lengthType);
        QFETCH(QString, shown);
        QCOMPARE(gamebase::GetFormattedValue(field, value, lengthType), shown);
    }

    void rowsOnARealCatalogue_data()
    {
        QTest::addColumn<int>("view");
        QTest::addColumn<QString>("search");
        QTest::addColumn<bool>("adult");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QString>("firstName");
        // Six games, O'Neil's Quest adult; three entries linked (Sanxion, Paradroid and its
        // readme); entries 1 and 5 started; games 101, 103, 104 played.
        QTest::addRow("all games but the adult one") << 1 << "" << false << 5 << "";
        QTest::addRow("a quote in the search") << 1 << "o'neil" << true << 1 << "O'Neil's Quest";
        QTest::addRow("own pattern") << 1 << "*r*d*" << false << 2 << "";
        QTest::addRow("linked entries") << 2 << "" << false << 3 << "";
        QTest::addRow("linked entries searched") << 2 << "para" << false << 1 << "PARADROID";
        QTest::addRow("last started, newest first") << 3 << "" << false << 4 << "SANXION";
        QTest::addRow("last started with adult") << 3 << "" << true << 5 << "SANXION";
        QTest::addRow("top, highest count first") << 4 << "" << false << 4 << "PARADROID";
    }
    void rowsOnARealCatalogue()
    {
        QFETCH(int, view);
        QFETCH(QString, search);
        QFETCH(bool, adult);
        QFETCH(int, rows);
        QFETCH(QString, firstName);
        test::GameBaseFixture gb;
        test::CatalogueFixture cat;
        gamebase::installAttachResolver(gb.db());
        gamebase::installAttachResolver(cat.db());
        GBViewInput in = input(view, search, QStringLiteral("COMMENT@@@YEAR@@@GENRE"), adult);
        in.gameBasePath = gb.path();
        const auto sql = gamebase::BuildGBViewSql(in);
        const Rows r = run(sql.onGameBase ? gb.db() : cat.db(), sql.statement);
        QCOMPARE(r.count, rows);
        if (!firstName.isEmpty())
            QCOMPARE(r.first.value(QStringLiteral("File")).toString(), firstName);
    }

    void lookupColumnsCarryTheirTexts()
    {
        test::GameBaseFixture gb;
        gamebase::installAttachResolver(gb.db());
        GBViewInput in = input(1, QStringLiteral("Sanxion"),
                               QStringLiteral("GENRE@@@YEAR@@@PUBLISHER@@@V_LENGTH"));
        in.gameBasePath = gb.path();
        const Rows r = run(gb.db(), gamebase::BuildGBViewSql(in).statement);
        QCOMPARE(r.count, 1);
        QCOMPARE(r.first.value(QStringLiteral("Spielkategorie")).toString(),
                 QStringLiteral("Shoot'em Up"));
        QCOMPARE(r.first.value(QStringLiteral("Jahr")).toInt(), 1986);
        QCOMPARE(r.first.value(QStringLiteral("Herausgeber")).toString(),
                 QStringLiteral("Nova Soft"));
        QCOMPARE(r.first.value(QStringLiteral("Scr")).toString(), QStringLiteral("S\\Sanxion.png"));
        QCOMPARE(r.first.value(QStringLiteral("Icon")).toInt(), 1);
    }

    void filterRowsOnTheGameBase_data()
    {
        QTest::addColumn<QString>("definition");
        QTest::addColumn<int>("rows");
        QTest::addRow("genre key") << "GE_ID!@!=!@!2!@!" << 2;
        QTest::addRow("year above, adult left out") << "Y.YEAR!@!>!@!1985!@!" << 3;
        QTest::addRow("comment contains")
            << "Comment!@!( )!@!shoot!@!" << 2; // "Horizontal shoot'em up", "Robot puzzle shooter"
        QTest::addRow("or run") << "GE_ID!@!=!@!1!@!@@@GE_ID!@!=!@!3!@!Or" << 3; // 101, 103, 106
        // An "Or" run followed by one last condition keeps its bracket open to the end, as
        // the main window's filters do: (1 Or 3 And year > 1985) gives 101, 103.
        QTest::addRow("or run, last condition inside")
            << "GE_ID!@!=!@!1!@!@@@GE_ID!@!=!@!3!@!Or@@@Y.YEAR!@!>!@!1985!@!" << 2;
    }
    void filterRowsOnTheGameBase()
    {
        QFETCH(QString, definition);
        QFETCH(int, rows);
        test::GameBaseFixture gb;
        gamebase::installAttachResolver(gb.db());
        const browser::clsFilter f = filterOf(browser::splitFilterDefs(definition));
        GBViewInput in = input(1);
        in.gameBasePath = gb.path();
        in.filter = &f;
        QCOMPARE(run(gb.db(), gamebase::BuildGBViewSql(in).statement).count, rows);
    }

    void emptyCatalogueGivesAnEmptyList()
    {
        test::GameBaseFixture gb;
        test::CatalogueFixture cat(false);
        gamebase::installAttachResolver(cat.db());
        GBViewInput in = input(2);
        in.gameBasePath = gb.path();
        QCOMPARE(run(cat.db(), gamebase::BuildGBViewSql(in).statement).count, 0);
    }

    void screenshotNames()
    {
        QCOMPARE(
            gamebase::ScreenshotFile(QStringLiteral("/shots"), QStringLiteral("A\\Alien.png"), 0),
            QStringLiteral("/shots/A/Alien.png"));
        QCOMPARE(
            gamebase::ScreenshotFile(QStringLiteral("/shots/"), QStringLiteral("A\\Alien.png"), 2),
            QStringLiteral("/shots/A/Alien_2.png"));
        // The four-character rule cuts a longer extension wrongly, as it always did.
        QCOMPARE(gamebase::ScreenshotFile(QStringLiteral("/s"), QStringLiteral("x.jpeg"), 1),
                 QStringLiteral("/s/x._1jpeg"));
        QCOMPARE(gamebase::ScreenshotFile(QStringLiteral("/s"), QString(), 0), QString());
    }

    void aMissingScreenshotStopsTheRest()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("A")));
        for (const char* name : {"A/Alien.png", "A/Alien_2.png", "A/Boing.png", "A/Boing_1.png"}) {
            QFile f(dir.filePath(QString::fromLatin1(name)));
            QVERIFY(f.open(QIODevice::WriteOnly));
        }
        const QStringList alien =
            gamebase::ExistingScreenshots(dir.path(), QStringLiteral("A\\Alien.png"));
        QCOMPARE(alien, QStringList{dir.filePath(QStringLiteral("A/Alien.png"))});
        QCOMPARE(gamebase::ExistingScreenshots(dir.path(), QStringLiteral("A\\Boing.png")).size(),
                 2);
        QVERIFY(gamebase::ExistingScreenshots(dir.path(), QStringLiteral("A\\None.png")).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestGameViews)
#include "tst_gameviews.moc"
