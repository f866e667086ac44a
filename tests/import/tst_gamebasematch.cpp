// Archives matched with the games of a GameBase while they are imported: the look-up by the end
// of Filename, the search for the game's own entry (ArchivOnlyGame on and off, an empty
// FileToRun), and what SetGBInfos writes (GB_ID, the game's name, the genre as user category,
// the 99-character rule of the text entry).

#include "app/Globals.h"
#include "catalogue/Database.h"
#include "gamebase/GameBase.h"
#include "import/ImportBatch.h"
#include "support/GameBaseImport.h"

#include <memory>
#include <QtTest>

using namespace vd;
using test::GameMember;

namespace {

// Every entry with its file: tProgram, tRealProgram, lIndex, GB_ID, Category_User, and the
// file's tCategory and GB_ID ("-" for Null).
const QString kEntries = QStringLiteral(
    "Select F.tProgram,F.tRealProgram,F.lIndex,F.GB_ID,F.Category_User,C.tCategory,C.GB_ID "
    "From C64Files as F Left Join Category as C on F.Category_File=C.ID order by F.ID");

const QVector<GameMember> kSanxionZip = {{"OTHER.D64", {"INTRO"}},
                                         {"README.TXT", {}},
                                         {"SANXION.D64", {"SANXION", "HISCORE", "TRAINER"}}};

} // namespace

class TestGameBaseMatch : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::GameBaseImport> g;

    QStringList entries() const { return g->f.rows(kEntries); }
    qint64 linkedEntries() const { return g->f.count("C64Files", "not isNull(GB_ID)"); }

private slots:
    void init()
    {
        g = std::make_unique<test::GameBaseImport>();
        // The fixture's FileToRun values carry no extension; a real one names the member.
        g->changeGameBase("Update Games Set FileToRun='SANXION.D64' where GA_Id=101");
        g->changeGameBase("Update Games Set FileToRun='ABC.PRG' where GA_Id=105");
        g->changeGameBase("Update Games Set FileToRun='QUEST.D64' where GA_Id=104");
    }
    void cleanup() { g.reset(); }

    void theGamesEntryIsLinked_data()
    {
        QTest::addColumn<bool>("onlyGame");
        QTest::addColumn<QStringList>("expected");
        // The text is read beside the game; OTHER.D64 is not the game's file and is left out.
        const QStringList linked = {"Sanxion-README|README|1|101|3|Sanxion-README.TXT|101",
                                    "Sanxion|SANXION|1|101|3|SANXION.D64|101"};
        QTest::addRow("ArchivOnlyGame on") << true << linked;
        QTest::addRow("ArchivOnlyGame off")
            << false
            << linked + QStringList{"HISCORE|HISCORE|2|-|-|SANXION.D64|101",
                                    "TRAINER|TRAINER|3|-|-|SANXION.D64|101"};
    }
    void theGamesEntryIsLinked()
    {
        QFETCH(bool, onlyGame);
        QFETCH(QStringList, expected);
        g->f.fm.options.ArchivOnlyGame = onlyGame;
        QVERIFY(g->f.load(g->zip("Sanxion.zip", kSanxionZip)) > 0);
        QCOMPARE(entries(), expected);
        QCOMPARE(g->f.count("Category", "tUnpackPath='OTHER.D64'"), 0);
        // The genre became a user category (its quote doubled in the look-up).
        QCOMPARE(g->f.rows("Select ID,tCategory From Category where iType=3"),
                 QStringList{"3|Shoot'em Up"});
        QCOMPARE(g->gameBaseLines(), QStringList({"Gamebase: Sanxion|1", "Gamebase: Sanxion|10"}));
        QVERIFY(!g->f.fm.bSearch);
    }

    void theEndOfFilenameMatches_data()
    {
        QTest::addColumn<QString>("archive");
        // Game 105 has the Filename X\ABC.ZIP: no separator is asked for, case is ignored.
        QTest::addRow("whole name") << "ABC.ZIP";
        QTest::addRow("end of the name") << "BC.ZIP";
        QTest::addRow("other case") << "bc.zip";
    }
    void theEndOfFilenameMatches()
    {
        QFETCH(QString, archive);
        QVERIFY(g->f.load(g->zip(archive, {{"ABC.PRG", {}}})) > 0);
        QCOMPARE(entries(), QStringList{"ABC|ABC|1|105|2|ABC.PRG|105"});
        QCOMPARE(g->f.value("Select tCategory From Category where ID=2"), QStringLiteral("Action"));
    }

    void otherArchivesAreReadAsUsual_data()
    {
        QTest::addColumn<QString>("archive");
        QTest::addColumn<QString>("change");
        // O'Neils_Quest.zip: the doubled quote makes the compared text one character too long.
        QTest::addRow("quote in the name") << "O'Neils_Quest.zip"
                                           << "";
        QTest::addRow("no game of that name") << "Sanxion2.zip"
                                              << "";
        QTest::addRow("matching off") << "Sanxion.zip"
                                      << "off";
        QTest::addRow("no GameBase open") << "Sanxion.zip"
                                          << "closed";
    }
    void otherArchivesAreReadAsUsual()
    {
        QFETCH(QString, archive);
        QFETCH(QString, change);
        if (change == "off")
            g->f.fm.options.ConnectFilesToGB = false;
        if (change == "closed")
            gamebase::CloseGameBase();
        QVERIFY(g->f.load(g->zip(archive,
                                 kSanxionZip + QVector<GameMember>{{"QUEST.D64", {"QUEST"}}})) > 0);
        QCOMPARE(g->f.count("C64Files"), 6);
        QCOMPARE(linkedEntries(), 0);
        QCOMPARE(g->f.count("Category", "iType=3"), 0);
        QVERIFY(g->gameBaseLines().isEmpty());
    }

    void anEmptyFileToRunTakesTheIndexInEveryFile()
    {
        // Uridium (103): FileToRun "", FileNameIndex 0. With no name to compare, each disk's
        // first entry is taken, and the last one met is the game's.
        QVERIFY(g->f.load(g->zip("Uridium.zip", {{"MANUAL.D64", {"PAGE1", "PAGE2"}},
                                                 {"URIDIUM.D64", {"URIDIUM", "HISCORE"}}})) > 0);
        QCOMPARE(entries(), QStringList({"PAGE1|PAGE1|1|-|-|MANUAL.D64|-",
                                         "Uridium|URIDIUM|1|103|3|URIDIUM.D64|103"}));
    }

    void aFolderImportConnectsTheGameBase()
    {
        gamebase::CloseGameBase();
        g->zip("games/Sanxion.zip", kSanxionZip);
        import::ImportBatch batch(g->f.fm);
        const import::BatchResult r = batch.run(import::kModeAddFolder, g->f.file("games"));
        QVERIFY(gamebase::gGB);
        QCOMPARE(r.resultLines.mid(0, 2),
                 QStringList({"Hinzugefügte Dateien: 2", "Hinzugefügte C64-Files: 2"}));
        QCOMPARE(linkedEntries(), 2);
    }

    void setGBInfosOnCatalogueRows_data()
    {
        QTest::addColumn<QVariant>("realName"); // tRealProgram of the text entry
        QTest::addColumn<int>("genre");
        QTest::addColumn<QString>("game"); // the game's entry: tProgram|GB_ID|Category_User
        QTest::addColumn<QString>("text"); // the text entry: tProgram|GB_ID|Category_User
        QTest::addColumn<QString>("file"); // the text's file: tCategory|GB_ID
        const QString x98(98, 'x');
        QTest::addRow("98 characters leave one of the game's")
            << QVariant(x98) << 1 << "Sanxion|101|4"
            << "S-" + x98 + "|101|4"
            << "Sanxion-notes.txt|101";
        QTest::addRow("99 characters leave none") << QVariant(x98 + 'x') << 1 << "Sanxion|101|4"
                                                  << "-x" + x98 + "|101|4"
                                                  << "Sanxion-notes.txt|101";
        // Left with a negative length: the trap ends the routine before the text row changes.
        QTest::addRow("100 characters end it") << QVariant(x98 + "xx") << 1 << "Sanxion|101|4"
                                               << "old|-|3"
                                               << "notes.txt|-";
        QTest::addRow("no name ends it") << QVariant() << 1 << "Sanxion|101|4"
                                         << "old|-|3"
                                         << "notes.txt|-";
        QTest::addRow("genre missing from Genres") << QVariant("notes") << 99 << "Sanxion|101|3"
                                                   << "Sanxion-notes|101|3"
                                                   << "Sanxion-notes.txt|101";
    }
    void setGBInfosOnCatalogueRows()
    {
        QFETCH(QVariant, realName);
        QFETCH(int, genre);
        QFETCH(QString, game);
        QFETCH(QString, text);
        QFETCH(QString, file);
        db::Database& cat = *app::gDB;
        cat.execute("Insert Into Category (ID,iType,tCategory,tFile,tPath,iFileType) Values "
                    "(1,1,'game.d64','game.d64','/c64/game.d64',1)");
        cat.execute("Insert Into Category (ID,iType,tCategory,tFile,tPath,iFileType) Values "
                    "(2,1,'notes.txt','notes.txt','/c64/notes.txt',10)");
        cat.execute("Insert Into Category (ID,iType,tCategory) Values (3,3,'Mine')");
        cat.execute("Insert Into C64Files (ID,Category_File,Category_User,tProgram,tRealProgram,"
                    "lIndex) Values (1,1,3,'GAME','GAME',1)");
        cat.execute("Insert Into C64Files (ID,Category_File,Category_User,tProgram,lIndex) "
                    "Values (2,2,3,'old',1)");
        if (!realName.isNull())
            cat.execute("Update C64Files Set tRealProgram='" + realName.toString() +
                        "' where ID=2");
        g->f.fm.InitCount();
        g->f.fm.lFoundC64FileID = 1;
        g->f.fm.lFoundTextID = 2;
        g->f.fm.SetGBInfos(101, QStringLiteral("Sanxion"), genre);
        const QString row = "Select tProgram,GB_ID,Category_User From C64Files where ID=";
        QCOMPARE(g->f.value(row + "1"), game);
        QCOMPARE(g->f.value(row + "2"), text);
        QCOMPARE(g->f.value("Select tCategory,GB_ID From Category where ID=2"), file);
        QCOMPARE(g->f.count("Category", "iType=3"), genre == 99 ? 1 : 2);
    }
};

QTEST_GUILESS_MAIN(TestGameBaseMatch)
#include "tst_gamebasematch.moc"
