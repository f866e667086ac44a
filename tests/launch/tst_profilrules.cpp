// The rules of the emulator and profile tree: keyword matching, the "Standard- Emulator"
// adaptation, and the check and delete rules that keep something active.

#include "launch/OptionString.h"
#include "launch/ProfilRules.h"
#include "launch/StartMenu.h"
#include "platform/ScriptedDialogService.h"

#include <QTest>

using namespace vd::launch;

namespace {

// The first-run defaults, as a configuration of their own.
ProfilConfig firstRun()
{
    gProfilKeyCounter = 0;
    ProfilConfig config;
    const int keyAndType[6][2] = {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {6, 0}};
    for (const auto& kt : keyAndType)
        AddDefaultEmulator(kt[0], kt[1], config.emulators, config.profils, true);
    config.defaultProfil = "4";
    for (int i = 0; i < kStartExtensionCount; ++i)
        config.startProfils[size_t(i)] = QString::number(DefaultProfilForExtension(1, i));
    return config;
}

QString assignments(const ProfilConfig& config)
{
    QStringList keys;
    for (const QString& key : config.startProfils)
        keys << (key.isEmpty() ? "-" : key);
    return keys.join(',');
}

} // namespace

class TestProfilRules : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void keywordMatch_data();
    void keywordMatch();
    void standardEmulator_data();
    void standardEmulator();
    void checkRules();
    void lastActiveIsKept();
    void deleteRules();
    void startMenuOffersActiveProfiles();

private:
    vd::platform::ScriptedDialogService m_dialogs;
};

void TestProfilRules::init()
{
    m_dialogs.clear();
    vd::platform::setDialogService(&m_dialogs);
}

void TestProfilRules::cleanup()
{
    vd::platform::setDialogService(nullptr);
}

void TestProfilRules::keywordMatch_data()
{
    QTest::addColumn<int>("set");
    QTest::addColumn<QString>("keywords");
    QTest::addColumn<bool>("matches");
    QTest::newRow("both in different items") << 4 << "AUTOSTART;USETEMPFILE" << true;
    QTest::newRow("one missing") << 3 << "AUTOSTART;USETEMPFILE" << false;
    QTest::newRow("flag off counts too") << 1 << "MANUALRUN" << true;
    QTest::newRow("placeholder text") << 10 << "<$C64FILEINDEX$>" << true;
    QTest::newRow("case ignored in the item") << 4 << "VICIIDSIZE" << true;
    QTest::newRow("no items") << 0 << "AUTOSTART" << false;
}

void TestProfilRules::keywordMatch()
{
    QFETCH(int, set);
    QFETCH(QString, keywords);
    QFETCH(bool, matches);
    clsProfil profil;
    profil.Options = DefaultProfilOptions(set);
    QCOMPARE(ProfilMatches(profil, keywords), matches);
}

void TestProfilRules::standardEmulator_data()
{
    QTest::addColumn<QString>("emulKey");
    QTest::addColumn<QString>(
        "expected"); // .D64 .D71 .T64 .PRG .P00 .TAP .VSF .C64 .CRT .G64 .D81 .VFL

    QTest::newRow("VICE") << "1"
                          << "4,4,4,4,4,4,3,1,9,4,4,14";
    QTest::newRow("CCS64") << "2"
                           << "1,4,1,1,1,1,3,1,1,1,4,14";
    QTest::newRow("HOXS64") << "3"
                            << "7,4,7,7,7,7,3,1,7,7,4,14";
    QTest::newRow("EMU64: base by its index") << "4"
                                              << "10,4,10,10,10,10,3,1,10,10,4,14";
    QTest::newRow("MICRO64") << "5"
                             << "13,4,13,13,13,13,3,1,13,13,4,14";
    // The file tool has no AUTOSTART or AUTORUN profile: its extensions keep what they had.
    QTest::newRow("file tool") << "6"
                               << "4,4,3,3,3,3,3,1,9,3,3,14";
}

void TestProfilRules::standardEmulator()
{
    QFETCH(QString, emulKey);
    QFETCH(QString, expected);
    ProfilConfig config = firstRun();
    QVERIFY(AdaptExtensionsToEmulator(config, emulKey));
    QCOMPARE(assignments(config), expected);
    QCOMPARE(m_dialogs.messages(),
             QStringList{"Die Profilzuordnung wurde für den Emulator angepasst!"});
}

void TestProfilRules::checkRules()
{
    ProfilConfig config = firstRun();
    // Unchecking VICE clears it and all its profiles.
    QVERIFY(SetEmulatorChecked(config, "1", false));
    QVERIFY(!config.emulators.find("1")->Aktiv);
    for (const char* key : {"3", "4", "5", "6", "9", "14"})
        QVERIFY(!config.profils.find(key)->Aktiv);
    // Checking one profile brings its emulator back, not its sibling profiles.
    QVERIFY(SetProfilChecked(config, "9", true));
    QVERIFY(config.emulators.find("1")->Aktiv);
    QVERIFY(!config.profils.find("3")->Aktiv);
    // Checking an item sets its flag and activates the profile.
    QVERIFY(SetItemChecked(config, "4", 2, true)); // -fullscreen
    QCOMPARE(ParseOptions(config.profils.find("4")->Options).at(2).flag, QString("1"));
    QVERIFY(config.profils.find("4")->Aktiv);
    QVERIFY(SetItemChecked(config, "4", 0, false));
    QCOMPARE(ParseOptions(config.profils.find("4")->Options).at(0).flag, QString("0"));
    // Checking the emulator activates every profile of it.
    QVERIFY(SetEmulatorChecked(config, "1", true));
    QVERIFY(config.profils.find("3")->Aktiv);
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestProfilRules::lastActiveIsKept()
{
    ProfilConfig config = firstRun();
    for (const char* key : {"2", "3", "4", "5", "6"})
        QVERIFY(SetEmulatorChecked(config, key, false));
    QVERIFY(!SetEmulatorChecked(config, "1", false));
    QCOMPARE(m_dialogs.messages(), QStringList{"Ein Emulator muss aktiv sein!"});
    QVERIFY(config.emulators.find("1")->Aktiv);

    m_dialogs.clear();
    for (const char* key : {"3", "4", "5", "6", "9"})
        QVERIFY(SetProfilChecked(config, key, false));
    QVERIFY(!SetProfilChecked(config, "14", false));
    QVERIFY(config.profils.find("14")->Aktiv);
    QVERIFY(!DeleteProfil(config, "14"));
    QCOMPARE(m_dialogs.messages(),
             (QStringList{"Ein Profil muss aktiv sein!", "Ein Profil muss aktiv sein!"}));
    QCOMPARE(m_dialogs.calls.first().style, int(vd::platform::vbInformation));
}

void TestProfilRules::deleteRules()
{
    ProfilConfig config = firstRun();
    // Deleting the default profile moves the default to the first named active profile, and
    // the extensions that used it go back to the default.
    QVERIFY(DeleteProfil(config, "4"));
    QCOMPARE(config.defaultProfil, QString("3"));
    QCOMPARE(config.startProfils[0], QString());
    QCOMPARE(config.startProfils[1], QString());
    QVERIFY(config.profils.find("4")->Name.isEmpty());

    // Deleting CCS64 deletes its two profiles; .C64 pointed to set 1.
    QVERIFY(DeleteEmulator(config, "2"));
    QVERIFY(config.emulators.find("2")->Name.isEmpty());
    QVERIFY(config.profils.find("1")->Name.isEmpty());
    QVERIFY(config.profils.find("2")->Name.isEmpty());
    QCOMPARE(config.startProfils[7], QString());

    RemoveDeleted(config);
    QCOMPARE(config.emulators.count(), 5);
    QCOMPARE(config.profils.count(), 11);
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestProfilRules::startMenuOffersActiveProfiles()
{
    ProfilConfig config = firstRun();
    QVERIFY(SetEmulatorChecked(config, "1", false)); // VICE and its six profiles
    QVERIFY(SetProfilChecked(config, "2", false));
    const QList<StartMenuEntry> entries = StartMenuEntries(config.emulators, config.profils);
    QStringList shown;
    for (const StartMenuEntry& e : entries)
        shown << e.tag + "=" + e.caption;
    QCOMPARE(shown,
             (QStringList{"Profil1=CCS64 - Autorun", "Profil7=HOXS64 - Autoload (Temporary File)",
                          "Profil8=HOXS64 - Attach", "Profil10=EMU64 - Autoload",
                          "Profil11=EMU64 - Mount Disc", "Profil13=MICRO64 - Attach",
                          "Profil12=File-Tool - Open"}));
    QCOMPARE(ProfilKeyFromTag(entries.first().tag), QString("1"));
}

QTEST_GUILESS_MAIN(TestProfilRules)
#include "tst_profilrules.moc"
