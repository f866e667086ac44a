// The section GAMEBASE of the settings file: every key read with its default and written back
// in the designed order, the list layout held to four elements, the filters renumbered.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/SettingsWriter.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseSettings.h"
#include "support/C64ImageWriter.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace vd;

namespace {

// The lines of one section of a settings text.
QStringList sectionLines(const QString& text, const QString& section)
{
    QStringList lines;
    bool inside = false;
    for (const QString& line : text.split(QStringLiteral("\r\n"))) {
        if (line.startsWith(QLatin1Char('[')))
            inside = line == QLatin1Char('[') + section + QLatin1Char(']');
        else if (inside && !line.isEmpty())
            lines << line;
    }
    return lines;
}

} // namespace

class TestGameBaseSettings : public QObject
{
    Q_OBJECT

    QTemporaryDir m_home;

    QStringList gameBaseSection(const QByteArray& ini)
    {
        test::writeFile(app::gIniFile, ini);
        app::reloadIni();
        gamebase::loadGameBaseSettings();
        return sectionLines(app::settingsText(), app::kSectionGameBase);
    }

private slots:
    void initTestCase()
    {
        app::setProgramFolder(m_home.path());
        gamebase::InstallGameBaseWriter();
    }
    void cleanupTestCase() { app::setIniPartWriter(app::IniPart::GameBase, {}); }

    void aNewFileWritesEveryKeyWithItsDefault()
    {
        const QStringList lines = gameBaseSection("[MAIN]\r\nFont=CBM\r\n");
        QCOMPARE(lines,
                 QStringList({"GameBaseDB=Gamebase (GBC_v05.mdb,GBC_v07.mdb,...)", "AdultContent=0",
                              "AskForPath=0", "ArchivFile=1", "ArchivOnlyGame=1",
                              "DownloadPath=", "Screenshots=", "GBListColumns=COMMENT@@@YEAR",
                              "GBListLayout=" + gamebase::kDefaultGBListLayout + "@@@@@@@@@",
                              "GBSplitPos=6000", "GBSplitStyle=0"}));
        QVERIFY(gamebase::gArchivOnlyGame && gamebase::gArchivFile && !gamebase::gAskForPath);
        QCOMPARE(gamebase::gGBListLayouts.size(), 4);
    }

    void storedValuesComeBackInTheirOrder()
    {
        const QByteArray ini =
            "[GAMEBASE]\r\nFilterDef2=G.GE_ID!@!=!@!2!@!\r\nGBSplitStyle=1\r\nNote=gone\r\n"
            "GBSplitPos=4321\r\nGBListLayout=A@@@B\r\nGBListColumns=GENRE@@@YEAR@@@RATING\r\n"
            "Screenshots=/gb/Shots\r\nDownloadPath=/gb/Games\r\nArchivOnlyGame=True\r\n"
            "ArchivFile=0\r\nAskForPath=2\r\nAdultContent=1\r\nGameBaseDB=/gb/GBC_v18.mdb\r\n"
            "GBDownloadUrl=http://example.invalid/gb/\r\nFilterName1=Action\r\n"
            "FilterDef1=G.GE_ID!@!=!@!1!@!\r\nFilterName2=Zwei\r\nFilterName4=Lost\r\n"
            "FilterDef4=x\r\n";
        const QStringList lines = gameBaseSection(ini);
        // Flags are written as 1 and 0 ("True" reads as 0); an unknown key disappears; the
        // filters end at the first missing name and are numbered anew.
        QCOMPARE(lines, QStringList({"GameBaseDB=/gb/GBC_v18.mdb", "AdultContent=1", "AskForPath=1",
                                     "ArchivFile=0", "ArchivOnlyGame=0", "DownloadPath=/gb/Games",
                                     "Screenshots=/gb/Shots", "GBListColumns=GENRE@@@YEAR@@@RATING",
                                     "GBListLayout=A@@@B@@@@@@", "GBSplitPos=4321",
                                     "GBSplitStyle=1", "GBDownloadUrl=http://example.invalid/gb/",
                                     "FilterName1=Action", "FilterDef1=G.GE_ID!@!=!@!1!@!",
                                     "FilterName2=Zwei", "FilterDef2=G.GE_ID!@!=!@!2!@!"}));
        QCOMPARE(gamebase::gGBFilters.size(), 2);
        QVERIFY(!gamebase::gArchivOnlyGame);
        // What was written reads back to the same text.
        QVERIFY(app::writeSettings());
        gamebase::loadGameBaseSettings();
        QCOMPARE(sectionLines(app::settingsText(), app::kSectionGameBase), lines);
    }
};

QTEST_GUILESS_MAIN(TestGameBaseSettings)
#include "tst_gamebasesettings.moc"
