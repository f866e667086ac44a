// Remembered window geometry: each rule that puts a window back (twips, negative positions,
// the designed size, fixed dialogs, maximised and minimised windows, a screen that is gone),
// the order of the section WINDOWS, and the old key of MAIN.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/WindowPos.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace vd::app;

Q_DECLARE_METATYPE(vd::app::TwipRect)

namespace {

// A screen of 1920 x 1080 pixels, in twips.
const TwipRect kScreen{0, 0, 28800, 16200};
const TwipRect kDesktop = kScreen;

} // namespace

class TestWindowPos : public QObject
{
    Q_OBJECT

private slots:
    void placesAfterTheRules_data();
    void placesAfterTheRules();
    void centresOnTheScreenItOpensOn();
    void entryTextIsTopLeftHeightWidthState();
    void savingMovesTheEntryToTheEnd();
    void sectionIsReadInTheDesignedOrder();
    void oldKeyOfMainServesWhenWindowsHasNone();
};

void TestWindowPos::placesAfterTheRules_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("fixed");
    QTest::addColumn<TwipRect>("rect");
    QTest::addColumn<bool>("maximised");
    QTest::addColumn<bool>("centred");
    QTest::addColumn<bool>("dropped");
    // The form's designed size is 9000 wide, 6000 high.
    const TwipRect centre{(28800 - 9000) / 2.0, (16200 - 6000) / 2.0, 9000, 6000};
    QTest::newRow("no entry: centred") << "" << false << centre << false << true << false;
    QTest::newRow("moved to the four values")
        << "1500;3000;7500;12000;0" << false << TwipRect{3000, 1500, 12000, 7500} << false << false
        << false;
    QTest::newRow("negative top and left become 0")
        << "-120;-45;7500;12000;0" << false << TwipRect{0, 0, 12000, 7500} << false << false
        << false;
    QTest::newRow("smaller than designed becomes designed")
        << "150;300;100;200;0" << false << TwipRect{300, 150, 9000, 6000} << false << false
        << false;
    QTest::newRow("maximised: normal size kept, then maximised")
        << "150;300;7500;12000;2" << false << TwipRect{300, 150, 12000, 7500} << true << false
        << false;
    QTest::newRow("minimised comes back normal")
        << "150;300;7500;12000;1" << false << TwipRect{300, 150, 12000, 7500} << false << false
        << false;
    QTest::newRow("without a state field")
        << "150;300;7500;12000" << false << TwipRect{300, 150, 12000, 7500} << false << false
        << false;
    QTest::newRow("single-precision texts")
        << "150.5;300.25;7500;12000;0" << false << TwipRect{300.25, 150.5, 12000, 7500} << false
        << false << false;
    QTest::newRow("fixed dialog of the designed size stays")
        << "150;300;6000;9000;0" << true << TwipRect{300, 150, 9000, 6000} << false << false
        << false;
    QTest::newRow("fixed dialog whose size changed: centred, entry dropped")
        << "150;300;6500;9000;0" << true << centre << false << true << true;
    QTest::newRow("fixed dialog smaller than designed is raised, not dropped")
        << "150;300;5000;8000;0" << true << TwipRect{300, 150, 9000, 6000} << false << false
        << false;
    QTest::newRow("too few fields: centred")
        << "150;300;6000" << false << centre << false << true << false;
    QTest::newRow("garbage: centred") << "abc" << false << centre << false << true << false;
    QTest::newRow("on a screen that is gone: centred")
        << "1500;60000;7500;12000;0" << false << centre << false << true << false;
}

void TestWindowPos::placesAfterTheRules()
{
    QFETCH(QString, entry);
    QFETCH(bool, fixed);
    QFETCH(TwipRect, rect);
    QFETCH(bool, maximised);
    QFETCH(bool, centred);
    QFETCH(bool, dropped);
    const FormDesign form{QStringLiteral("frmTest"), 9000, 6000, fixed};
    const WindowPlacement p = placeWindow(entry, form, kScreen, kDesktop);
    QCOMPARE(p.rect.left, rect.left);
    QCOMPARE(p.rect.top, rect.top);
    QCOMPARE(p.rect.width, rect.width);
    QCOMPARE(p.rect.height, rect.height);
    QCOMPARE(p.maximised, maximised);
    QCOMPARE(p.centred, centred);
    QCOMPARE(p.dropEntry, dropped);
}

void TestWindowPos::centresOnTheScreenItOpensOn()
{
    // A second screen to the right of the first: centred on it, not on the whole desktop.
    const TwipRect second{28800, 0, 19200, 14400};
    const TwipRect desktop{0, 0, 48000, 16200};
    const FormDesign form{QStringLiteral("frmMain"), 13500, 9000, false};
    const WindowPlacement p = placeWindow(QString(), form, second, desktop);
    QCOMPARE(p.rect.left, 28800 + (19200 - 13500) / 2.0);
    QCOMPARE(p.rect.top, (14400 - 9000) / 2.0);
    // An entry on the second screen is kept while that screen exists.
    const WindowPlacement kept =
        placeWindow(QStringLiteral("150;30000;9000;13500;0"), form, kScreen, desktop);
    QVERIFY(!kept.centred);
    QCOMPARE(kept.rect.left, 30000.0);
}

void TestWindowPos::entryTextIsTopLeftHeightWidthState()
{
    QCOMPARE(windowPosText(TwipRect{300, 150, 12000, 7500}, kWindowMaximised),
             QStringLiteral("150;300;7500;12000;2"));
    QCOMPARE(windowPosText(TwipRect{300.25, 0, 9000, 6000}, kWindowNormal),
             QStringLiteral("0;300.25;6000;9000;0"));
    // Read back through the rules, the text gives the same rectangle.
    const FormDesign form{QStringLiteral("frmTest"), 9000, 6000, false};
    const WindowPlacement p = placeWindow(
        windowPosText(TwipRect{4500, 1500, 12000, 7500}, kWindowNormal), form, kScreen, kDesktop);
    QCOMPARE(p.rect.left, 4500.0);
    QCOMPARE(p.rect.height, 7500.0);
}

void TestWindowPos::savingMovesTheEntryToTheEnd()
{
    gWindows.clear();
    setWindowEntry(QStringLiteral("frmMain"), QStringLiteral("1;1;1;1;0"));
    setWindowEntry(QStringLiteral("frmOptions"), QStringLiteral("2;2;2;2;0"));
    setWindowEntry(QStringLiteral("frmMain"), QStringLiteral("3;3;3;3;0"));
    QCOMPARE(gWindows.size(), 2);
    QCOMPARE(gWindows[0].form, QStringLiteral("frmOptions"));
    QCOMPARE(gWindows[1].value, QStringLiteral("3;3;3;3;0"));
    QCOMPARE(windowEntry(QStringLiteral("FRMMAIN")), QStringLiteral("3;3;3;3;0"));
    removeWindowEntry(QStringLiteral("frmOptions"));
    QCOMPARE(windowEntry(QStringLiteral("frmOptions")), QString());
    QCOMPARE(gWindows.size(), 1);
}

void TestWindowPos::sectionIsReadInTheDesignedOrder()
{
    QTemporaryDir dir;
    setProgramFolder(dir.path());
    QFile f(gIniFile);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("[WINDOWS]\r\nfrmFlipList=5;5;5;5;0\r\nfrmUnknown=1;1;1;1;0\r\nfrmMain=4;4;4;4;0\r\n"
            "frmC64File=3;3;3;3;0\r\nfrmOptions=\r\n[MAIN]\r\nfrmMain=9;9;9;9;0\r\n");
    f.close();
    reloadIni();
    loadWindowPositions();
    QStringList forms;
    for (const WindowEntry& w : gWindows)
        forms << w.form;
    // Only known forms, empty values left out, in the order of the list.
    QCOMPARE(forms, (QStringList{"frmC64File", "frmMain", "frmFlipList"}));
    QCOMPARE(windowEntry(QStringLiteral("frmMain")), QStringLiteral("4;4;4;4;0"));
    QCOMPARE(rememberedForms().size(), 19);
}

void TestWindowPos::oldKeyOfMainServesWhenWindowsHasNone()
{
    QTemporaryDir dir;
    setProgramFolder(dir.path());
    QFile f(gIniFile);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("[MAIN]\r\nfrmMain=9;9;9;9;2\r\n[WINDOWS]\r\nfrmGB=1;1;1;1;0\r\n");
    f.close();
    reloadIni();
    loadWindowPositions();
    QCOMPARE(gWindows.size(), 2);
    QCOMPARE(gWindows.last().form, QStringLiteral("frmMain"));
    QCOMPARE(windowEntry(QStringLiteral("frmMain")), QStringLiteral("9;9;9;9;2"));
}

QTEST_GUILESS_MAIN(TestWindowPos)
#include "tst_windowpos.moc"
