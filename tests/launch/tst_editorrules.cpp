// What the emulator, profile and parameter editors check and change.

#include "launch/EditorRules.h"
#include "launch/OptionString.h"
#include "platform/ScriptedDialogService.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace vd::launch;

class TestEditorRules : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void saveParam_data();
    void saveParam();
    void suggestions();
    void saveProfil();
    void emulatorInput();

private:
    vd::platform::ScriptedDialogService m_dialogs;
};

void TestEditorRules::init()
{
    m_dialogs.clear();
    vd::platform::setDialogService(&m_dialogs);
    gProfilKeyCounter = 0;
}

void TestEditorRules::cleanup()
{
    vd::platform::setDialogService(nullptr);
}

void TestEditorRules::saveParam_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("message");

    QTest::newRow("first item reuses row 0") << "" << -1 << "-warp" << true << "-warp=@=1"
                                             << "";
    QTest::newRow("new item goes last, on") << "a=@=0" << -1 << "b" << true << "a=@=0@@@b=@=1"
                                            << "";
    QTest::newRow("rename keeps the flag") << "a=@=0@@@b=@=1" << 0 << "c" << true << "c=@=0@@@b=@=1"
                                           << "";
    QTest::newRow("duplicate") << "a=@=0@@@b=@=1" << -1 << "b" << false << "a=@=0@@@b=@=1"
                               << "Dieser Parameter besteht schon!";
    QTest::newRow("empty") << "a=@=1" << -1 << "" << false << "a=@=1"
                           << "Bitte geben Sie einen Parameter an!";
}

void TestEditorRules::saveParam()
{
    QFETCH(QString, options);
    QFETCH(int, row);
    QFETCH(QString, text);
    QFETCH(bool, ok);
    QFETCH(QString, after);
    QFETCH(QString, message);
    clsProfil profil;
    profil.Options = options;
    QCOMPARE(SaveParam(profil, row, text), ok);
    QCOMPARE(profil.Options, after);
    QCOMPARE(m_dialogs.messages(), message.isEmpty() ? QStringList{} : QStringList{message});
}

void TestEditorRules::suggestions()
{
    Profils profils;
    AddProfil(profils, "1", "A", "-x=@=1@@@<$input$>=@=0", true, 0);
    AddProfil(profils, "1", "B", "-x=@=0@@@-y=@=1", true, 0);
    AddProfil(profils, "2", "C", "-z=@=1", true, 0);
    QCOMPARE(ParamSuggestions(profils, "1"),
             (QStringList{"-x", "<$input$>", "-y", "<$C64FileName$>", "<$C64FileIndex$>",
                          "\"<$filepath$>\"", "UseTempFile"}));
}

void TestEditorRules::saveProfil()
{
    ProfilConfig config;
    AddDefaultEmulator(1, 1, config.emulators, config.profils, true);
    config.defaultProfil = "4";
    QCOMPARE(SaveProfil(config, "1", "", "Attach Disc", false, false), QString());
    QCOMPARE(m_dialogs.messages(), QStringList{"Dieser Name besteht schon!"});
    QCOMPARE(SaveProfil(config, "1", "", "Attach Disc", true, false), QString());
    QCOMPARE(m_dialogs.messages().size(), 1); // silent
    // Names differing in case are different names.
    const QString key = SaveProfil(config, "1", "", "attach disc", false, true);
    QCOMPARE(key, QString("7"));
    QCOMPARE(config.defaultProfil, key);
    QVERIFY(config.profils.find(key)->Aktiv);
    QCOMPARE(SaveProfil(config, "1", "3", "Renamed", false, false), QString("3"));
    QCOMPARE(config.profils.find("3")->Name, QString("Renamed"));
    QCOMPARE(SaveProfil(config, "1", "3", "", false, false), QString());
    QCOMPARE(m_dialogs.messages().last(), QString("Bitte geben Sie einen Profilnamen an!"));
}

void TestEditorRules::emulatorInput()
{
    QTemporaryDir dir;
    const QString program = dir.filePath("x64sc");
    QFile f(program);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.close();
    Emulators emulators;
    Profils profils;
    AddDefaultEmulator(1, 1, emulators, profils, true);
    AddDefaultEmulator(4, 2, emulators, profils, true);

    QCOMPARE(CheckEmulatorInput(emulators, "", "", program),
             QString("Bitte geben Sie einen Emulator an!"));
    QCOMPARE(CheckEmulatorInput(emulators, "", "CCS64", program),
             QString("Dieser Name besteht schon!"));
    QCOMPARE(CheckEmulatorInput(emulators, "", "vice", program), QString());
    QCOMPARE(CheckEmulatorInput(emulators, "", "New", dir.path()),
             "Ungültiger Emulator-Pfad: " + dir.path());
    // A bare program name passes when the start would find it on PATH.
    QCOMPARE(CheckEmulatorInput(emulators, "", "Shell", "sh"), QString());
    QCOMPARE(CheckEmulatorInput(emulators, "", "Shell", "no-such-emulator-x64"),
             QString("Ungültiger Emulator-Pfad: no-such-emulator-x64"));
    // The unchanged placeholder path of a built-in emulator is not tested; a changed one is.
    QCOMPARE(CheckEmulatorInput(emulators, "1", "VICE", "VICE"), QString());
    QCOMPARE(CheckEmulatorInput(emulators, "1", "VICE", "/no/x64"),
             QString("Ungültiger Emulator-Pfad: /no/x64"));
    QCOMPARE(CheckEmulatorInput(emulators, "1", "VICE", ""), QString("Ungültiger Emulator-Pfad: "));
    QCOMPARE(NextEmulatorKey(emulators), 5);
    QCOMPARE(NextEmulatorKey(Emulators{}), 1);
}

QTEST_GUILESS_MAIN(TestEditorRules)
#include "tst_editorrules.moc"
