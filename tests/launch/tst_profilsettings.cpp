// Emulators, profiles and extension assignments in the settings file: first run, the round
// trip with renumbering, and the upgrades of settings written by older versions.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/SettingsWriter.h"
#include "launch/Profiles.h"
#include "launch/ProfilSettings.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace vd::app;
using namespace vd::launch;

namespace {

QString captionOf(const QString& profilKey)
{
    return GetProfilCaption(gEmulators, gProfils, profilKey);
}

QString extensionCaption(const char* ext)
{
    const QString key = gStartProfils[size_t(StartExtensionIndex(ext))];
    return key.isEmpty() ? QStringLiteral("<default>") : captionOf(key);
}

// Every record as one line, independent of the keys.
QStringList snapshot()
{
    QStringList lines;
    for (const EmulatorPtr& e : gEmulators)
        lines << QString("E %1|%2|%3|%4").arg(e->Name, e->Path).arg(e->EmulType).arg(e->Aktiv);
    for (const ProfilPtr& p : gProfils)
        lines << QString("P %1|%2|%3").arg(captionOf(p->Key), p->Options).arg(p->Aktiv);
    lines << "D " + captionOf(gDefaultProfil);
    for (const QString& ext : StartExtensions())
        lines << ext + " " + extensionCaption(qPrintable(ext));
    return lines;
}

} // namespace

class TestProfilSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstRunBuildsDefaultsThatSurvive();
    void deletionRenumbersEverything();
    void oldFormatProfilesGetEmulators();
    void newExtensionsFollowD64_data();
    void newExtensionsFollowD64();
    void defaultProfilOutOfRange_data();
    void defaultProfilOutOfRange();

private:
    void writeIni(const QByteArray& bytes);
    void saveAndReload();
    QTemporaryDir m_dir;
};

void TestProfilSettings::init()
{
    QVERIFY(m_dir.isValid());
    setProgramFolder(m_dir.path());
    QFile::remove(gIniFile);
    reloadIni();
    InstallProfilWriters();
}

void TestProfilSettings::cleanup()
{
    for (IniPart part : {IniPart::Emulators, IniPart::Profils, IniPart::ExtensionProfiles})
        setIniPartWriter(part, {});
}

void TestProfilSettings::writeIni(const QByteArray& bytes)
{
    QFile f(gIniFile);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
    f.close();
    reloadIni();
}

void TestProfilSettings::saveAndReload()
{
    QVERIFY(writeSettings());
    reloadIni();
    QVERIFY(!LoadProfils());
}

void TestProfilSettings::firstRunBuildsDefaultsThatSurvive()
{
    QVERIFY(LoadProfils());
    QCOMPARE(gEmulators.count(), 6);
    QCOMPARE(gProfils.count(), 14);
    QCOMPARE(captionOf(gDefaultProfil), QString("VICE - Autostart Disc (Temporary File)"));
    QCOMPARE(extensionCaption(".D64"), QString("VICE - Autostart Disc (Temporary File)"));
    QCOMPARE(extensionCaption(".C64"), QString("CCS64 - Autorun"));
    QCOMPARE(extensionCaption(".CRT"), QString("VICE - Cartridge"));
    QCOMPARE(extensionCaption(".VFL"), QString("VICE - Attach Flip list"));
    QCOMPARE(extensionCaption(".D81"), QString("VICE - Autostart (Original File)"));

    const QStringList before = snapshot();
    saveAndReload();
    QCOMPARE(snapshot(), before);

    // On disk the keys are running numbers: VICE's sets come first, so set 4 is number 2.
    QCOMPARE(ReadIni(kSectionProfils, "ProfilDefault", ""), QString("2"));
    QCOMPARE(ReadIni(kSectionExtensions, ".D64", "x"), QString("2"));
    QCOMPARE(ReadIni(kSectionProfils, "ProfilOptions2", ""), DefaultProfilOptions(4));
    QCOMPARE(ReadIni(kSectionEmulators, "EmulName6", ""), QString("File-Tool"));
    QCOMPARE(ReadIni(kSectionEmulators, "EmulAktiv1", ""), QString("1"));
    QCOMPARE(ReadIni(kSectionExtensions, ".txt", ""), QString("Notepad"));
}

void TestProfilSettings::deletionRenumbersEverything()
{
    QVERIFY(LoadProfils());
    // Remove CCS64 (emulator 2) with its two profiles, sets 1 and 2; .C64 pointed to set 1.
    gEmulators.removeAt(1);
    for (qsizetype i = gProfils.count() - 1; i >= 0; --i)
        if (gProfils.at(i)->EmulKey == "2")
            gProfils.removeAt(i);
    gProfils.find("4")->Aktiv = false;
    gEmulators.find("3")->Path = "/opt/hoxs/hoxs64";

    const QString text = settingsText();
    QVERIFY(text.contains("EmulName2=HOXS64\r\nEmulPath2=/opt/hoxs/hoxs64\r\nEmulType2=3\r\n"));
    QVERIFY(!text.contains("EmulName6="));
    QVERIFY(text.contains("ProfilCount=12\r\n"));
    QVERIFY(text.contains("ProfilDefault=2\r\nProfilEmul2=1\r\n"));
    // HOXS64's "Autoload (Temporary File)" is profile 7 now and points to emulator 2.
    QVERIFY(text.contains("ProfilEmul7=2\r\nProfilName7=Autoload (Temporary File)\r\n"));
    QVERIFY(text.contains("\r\n.C64=\r\n"));
    QVERIFY(text.contains("\r\n.D64=2\r\n"));

    saveAndReload();
    QCOMPARE(gEmulators.count(), 5);
    QCOMPARE(captionOf("7"), QString("HOXS64 - Autoload (Temporary File)"));
    QVERIFY(!gProfils.find("2")->Aktiv);
    QCOMPARE(extensionCaption(".C64"), QString("<default>"));
    QCOMPARE(captionOf(gDefaultProfil), QString("VICE - Autostart Disc (Temporary File)"));
}

void TestProfilSettings::oldFormatProfilesGetEmulators()
{
    writeIni("[MAIN]\r\nVersion=3.1\r\n[PROFILS]\r\nProfilCount=6\r\nProfilDefault=1\r\n"
             "ProfilName1=VICE Autostart\r\nProfilPath1=C:\\Emu\\x64.exe\r\n"
             "ProfilOptions1=-autostart \"<$filepath$>\"=@=1\r\n"
             "ProfilName2=\r\nProfilPath2=C:\\CCS\\CCS64.EXE\r\nProfilAktiv2=0\r\n"
             "ProfilName3=css64 Fast\r\nProfilPath3=C:\\CCS\\CCS.EXE\r\n"
             "ProfilName4=Tool\r\nProfilPath4=/a/tool\r\n"
             "ProfilName5=Other Tool\r\nProfilPath5=/b/TOOL\r\n"
             "ProfilName6=vice again\r\nProfilPath6=C:\\Emu\\x64.exe\r\n"
             "[EXTENSIONS]\r\n.D64=1\r\n.T64=9\r\n.PRG=-1\r\n.TAP=abc\r\n");
    QVERIFY(!LoadProfils());

    QStringList emulators;
    for (const EmulatorPtr& e : gEmulators)
        emulators << QString("%1:%2:%3:%4").arg(e->Key, e->Name).arg(e->EmulType).arg(e->Path);
    QCOMPARE(emulators, (QStringList{"1:VICE:1:C:\\Emu\\x64.exe", "2:CCS64:2:C:\\CCS\\CCS64.EXE",
                                     "3:CCS64 (1):2:C:\\CCS\\CCS.EXE", "4:TOOL:0:/a/tool",
                                     "5:TOOL (1):0:/b/TOOL",
                                     // version 3.1 gets the file tool
                                     "6:File-Tool:0:xxxTool.exe"}));
    QCOMPARE(captionOf("1"), QString("VICE - Autostart"));
    QCOMPARE(captionOf("2"), QString("CCS64 - Profil 2"));
    QVERIFY(!gProfils.find("2")->Aktiv);
    QCOMPARE(captionOf("3"), QString("CCS64 (1) - Fast"));
    QCOMPARE(captionOf("5"), QString("TOOL (1) - Other Tool"));
    QCOMPARE(captionOf("6"), QString("VICE - again"));

    QCOMPARE(extensionCaption(".D64"), QString("VICE - Autostart"));
    QCOMPARE(extensionCaption(".T64"), QString("<default>")); // above the count
    QCOMPARE(extensionCaption(".PRG"), QString("<default>"));
    QCOMPARE(extensionCaption(".TAP"), QString("<default>"));
    // Absent in the file: VICE gets the cartridge and flip-list sets and both are assigned.
    QCOMPARE(extensionCaption(".CRT"), QString("VICE - Cartridge"));
    QCOMPARE(extensionCaption(".VFL"), QString("VICE - Attach Flip list"));
    QCOMPARE(extensionCaption(".G64"), QString("VICE - Autostart"));
    QCOMPARE(extensionCaption(".D81"), QString("<default>"));
}

void TestProfilSettings::newExtensionsFollowD64_data()
{
    QTest::addColumn<QByteArray>("d64");
    QTest::addColumn<QString>("crt");

    QTest::newRow("D64 on a file tool") << QByteArray("2") << "Tool - Open";
    QTest::newRow("D64 on the default") << QByteArray("") << "<default>";
}

void TestProfilSettings::newExtensionsFollowD64()
{
    QFETCH(QByteArray, d64);
    QFETCH(QString, crt);
    writeIni(
        "[MAIN]\r\nVersion=3.5\r\n[EMULATORS]\r\nEmulName1=VICE\r\nEmulPath1=/usr/bin/x64sc\r\n"
        "EmulType1=1\r\nEmulAktiv1=1\r\nEmulName2=Tool\r\nEmulType2=0\r\nEmulAktiv2=1\r\n"
        "[PROFILS]\r\nProfilCount=2\r\nProfilEmul1=1\r\nProfilName1=Attach\r\n"
        "ProfilOptions1=-8 \"<$filepath$>\"=@=1\r\nProfilEmul2=2\r\nProfilName2=Open\r\n"
        "[EXTENSIONS]\r\n.D64=" +
        d64 + "\r\n.D81=1\r\n");
    QVERIFY(!LoadProfils());
    QCOMPARE(gEmulators.count(), 2); // no file tool added for 3.5
    QCOMPARE(extensionCaption(".CRT"), crt);
    QCOMPARE(extensionCaption(".G64"), crt);
    QCOMPARE(extensionCaption(".D81"), QString("VICE - Attach"));
    // The VICE emulator got its new sets all the same.
    QCOMPARE(gProfils.count(), 4);
    QCOMPARE(captionOf("3"), QString("VICE - Cartridge"));
    QCOMPARE(captionOf("4"), QString("VICE - Attach Flip list"));
}

void TestProfilSettings::defaultProfilOutOfRange_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("0") << QByteArray("0") << "1";
    QTest::newRow("above the count") << QByteArray("3") << "1";
    QTest::newRow("garbage") << QByteArray("x") << "1";
    QTest::newRow("in range") << QByteArray("2") << "2";
}

void TestProfilSettings::defaultProfilOutOfRange()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, expected);
    writeIni("[EMULATORS]\r\nEmulName1=V\r\nEmulType1=1\r\nEmulAktiv1=1\r\n[PROFILS]\r\n"
             "ProfilCount=2\r\nProfilDefault=" +
             value +
             "\r\nProfilEmul1=1\r\nProfilName1=A\r\n"
             "ProfilEmul2=1\r\nProfilName2=B\r\n");
    QVERIFY(!LoadProfils());
    QCOMPARE(gDefaultProfil, expected);
}

QTEST_GUILESS_MAIN(TestProfilSettings)
#include "tst_profilsettings.moc"
