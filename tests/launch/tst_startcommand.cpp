// The raw parameter string of a start: keywords, placeholders and the wildcard name.

#include "launch/Profiles.h"
#include "launch/StartCommand.h"
#include "platform/ScriptedDialogService.h"

#include <QTest>

using namespace vd::launch;
using vd::platform::ScriptedDialogService;

class TestStartCommand : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void wildcardName_data();
    void wildcardName();
    void defaultProfiles_data();
    void defaultProfiles();
    void keywordsAndFlags_data();
    void keywordsAndFlags();
    void badPlaceholders_data();
    void badPlaceholders();
    void inputAsksTheUser();

private:
    ScriptedDialogService m_dialogs;
};

void TestStartCommand::init()
{
    m_dialogs.clear();
    vd::platform::setDialogService(&m_dialogs);
}

void TestStartCommand::cleanup()
{
    vd::platform::setDialogService(nullptr);
}

void TestStartCommand::wildcardName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("wildcard");
    QTest::newRow("underscore") << "MY_GAME"
                                << "my*";
    QTest::newRow("dollar") << "LIST$"
                            << "list*";
    QTest::newRow("underscore wins over an earlier dollar") << "A$B_C"
                                                            << "a$b*";
    QTest::newRow("blank kept") << "GAME 1"
                                << "game 1";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("leading underscore") << "_X"
                                        << "*";
}

void TestStartCommand::wildcardName()
{
    QFETCH(QString, name);
    QFETCH(QString, wildcard);
    QCOMPARE(C64WildcardName(name), wildcard);
}

void TestStartCommand::defaultProfiles_data()
{
    QTest::addColumn<int>("set");
    QTest::addColumn<bool>("isEntry");
    QTest::addColumn<int>("lIndex");
    QTest::addColumn<int>("iFileType");
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<bool>("useTemp");

    const QString fp = kFilePathMarker;
    QTest::newRow("set 1, entry 5")
        << 1 << true << 5 << 1 << " \"" + fp + ",4\" -autorun -fastload -window" << false;
    QTest::newRow("set 1, whole file")
        << 1 << false << 0 << 1 << " \"" + fp + ",\" -autorun -fastload -window" << false;
    QTest::newRow("set 2, entry 1")
        << 2 << true << 1 << 1 << " \"" + fp + ",0\" -manualrun -window" << false;
    QTest::newRow("set 3, entry 1 keeps the colon")
        << 3 << true << 1 << 1 << " -confirmexit -autostart \"" + fp + ":\" -VICIIdsize" << false;
    QTest::newRow("set 3, entry 5")
        << 3 << true << 5 << 1 << " -confirmexit -autostart \"" + fp + ":my*\" -VICIIdsize"
        << false;
    QTest::newRow("set 4, entry 5 wants a copy")
        << 4 << true << 5 << 1 << " +confirmexit -autostart \"" + fp + "\"  -VICIIdsize" << true;
    QTest::newRow("set 4, whole file wants none")
        << 4 << false << 0 << 1 << " +confirmexit -autostart \"" + fp + "\"  -VICIIdsize" << false;
    QTest::newRow("set 6, tape") << 6 << true << 2 << 6
                                 << " +confirmexit -1 \"" + fp + "\" -VICIIdsize" << false;
    QTest::newRow("set 7, entry 3")
        << 7 << true << 3 << 1 << " -autoload \"" + fp + "\" 0 " << true;
    QTest::newRow("set 9, cartridge")
        << 9 << false << 0 << 9 << " -cartcrt \"" + fp + "\" -VICIIdsize" << false;
    QTest::newRow("set 10, entry 5")
        << 10 << true << 5 << 1 << " \"" + fp + "\" 4 -nokernal" << false;
    QTest::newRow("set 12") << 12 << false << 0 << 10 << " \"" + fp + "\"" << false;
    QTest::newRow("set 13") << 13 << true << 2 << 1 << " +link \"" + fp + "\"" << false;
    QTest::newRow("set 14, flip list")
        << 14 << false << 0 << 15 << " -flipname \"" + fp + "\" -VICIIdsize" << false;
}

void TestStartCommand::defaultProfiles()
{
    QFETCH(int, set);
    QFETCH(bool, isEntry);
    QFETCH(int, lIndex);
    QFETCH(int, iFileType);
    QFETCH(QString, commandLine);
    QFETCH(bool, useTemp);

    StartItem item{isEntry, lIndex, "MY_GAME", iFileType, false};
    QString built;
    QVERIFY(BuildCommandLine(DefaultProfilOptions(set), item, built));
    QCOMPARE(built, commandLine);
    QCOMPARE(item.useTemp, useTemp);
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestStartCommand::keywordsAndFlags_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("iFileType");
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<bool>("useTemp");

    QTest::newRow("-fastload vanishes on tape, double blank kept")
        << "-a=@=1@@@-FastLoad=@=1@@@-b=@=1" << 6 << " -a  -b" << false;
    QTest::newRow("-fastload stays on disk")
        << "-a=@=1@@@-fastload=@=1" << 1 << " -a -fastload" << false;
    QTest::newRow("index after UseTempFile clears it")
        << "usetempfile=@=1@@@<$C64FileIndex$>=@=1" << 1 << "  2" << false;
    QTest::newRow("UseTempFile after index sets it")
        << "<$C64FileIndex$>=@=1@@@UseTempFile=@=1" << 1 << " 2 " << true;
    QTest::newRow("off items are left out") << "a=@=0@@@b=@=1@@@c" << 1 << " b" << false;
    QTest::newRow("no items: empty") << "" << 1 << "" << false;
    QTest::newRow("placeholder twice, case apart")
        << "<$filepath$>-<$FILEPATH$>-<$filepath$>=@=1" << 1
        << " " + kFilePathMarker + "-" + kFilePathMarker + "-" + kFilePathMarker << false;
    QTest::newRow("one character is not looked at") << "<=@=1" << 1 << " <" << false;
}

void TestStartCommand::keywordsAndFlags()
{
    QFETCH(QString, options);
    QFETCH(int, iFileType);
    QFETCH(QString, commandLine);
    QFETCH(bool, useTemp);

    StartItem item{true, 3, "X", iFileType, false};
    QString built;
    QVERIFY(BuildCommandLine(options, item, built));
    QCOMPARE(built, commandLine);
    QCOMPARE(item.useTemp, useTemp);
}

void TestStartCommand::badPlaceholders_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("message");

    QTest::newRow("<$ alone") << "<$=@=1"
                              << "Unvollständiger Parameter: <$";
    QTest::newRow("no $>") << "-x \"<$filepath\"=@=1"
                           << "Unvollständiger Parameter: <$filepath\"";
    QTest::newRow("unknown") << "-a=@=1@@@-x <$disk$> <$filepath$>=@=1"
                             << "Unbekannter Parameter: <$disk$>";
    QTest::newRow("100 KB item") << QString(100 * 1024, u'x') + "<$nothing=@=1"
                                 << "Unvollständiger Parameter: <$nothing";
}

void TestStartCommand::badPlaceholders()
{
    QFETCH(QString, options);
    QFETCH(QString, message);
    StartItem item{true, 3, "X", 1, false};
    QString built;
    QVERIFY(!BuildCommandLine(options, item, built));
    QCOMPARE(m_dialogs.messages(), QStringList{message});
    QCOMPARE(m_dialogs.calls.first().style, int(vd::platform::vbInformation));
}

void TestStartCommand::inputAsksTheUser()
{
    m_dialogs.answerText("fast");
    m_dialogs.answerCancel();
    m_dialogs.answerText("<$input$>"); // a value holding a placeholder is expanded in turn
    m_dialogs.answerText("x");
    StartItem item{true, 3, "X", 1, false};
    QString built;
    QVERIFY(
        BuildCommandLine("-mode <$input$>=@=1@@@-b<$INPUT$>-=@=1@@@-c <$input$>=@=1", item, built));
    QCOMPARE(built, QString(" -mode fast -b- -c x"));
    QCOMPARE(m_dialogs.calls.size(), 4);
    QCOMPARE(m_dialogs.calls[0].text, QString("Bitte geben Sie einen Wert ein: -mode <$input$>"));
    QCOMPARE(m_dialogs.calls[0].title, QString("Optionsparameter"));
    QCOMPARE(m_dialogs.calls[1].text, QString("Bitte geben Sie einen Wert ein: -b<$INPUT$>"));
    QVERIFY(m_dialogs.scriptErrors.isEmpty());
}

QTEST_GUILESS_MAIN(TestStartCommand)
#include "tst_startcommand.moc"
