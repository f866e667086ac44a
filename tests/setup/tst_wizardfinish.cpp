// The first-run wizard's decisions without its window: the finish for each emulator type on
// the first-run emulators and profiles (path, the twelve assignments, the default profile, the
// GameBase and its picture folder), sets above the number of profiles, and the test of the
// emulator path with its message.

#include "app/Globals.h"
#include "app/Settings.h"
#include "gamebase/GameBase.h"
#include "launch/Profiles.h"
#include "launch/ProfilSettings.h"
#include "platform/ScriptedDialogService.h"
#include "setup/WizardFinish.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace vd;
using namespace vd::launch;
using setup::FinishWizard;
using setup::WizardChoice;

namespace {

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

QString assignments()
{
    QStringList keys;
    for (const QString& key : gStartProfils)
        keys << key;
    return keys.join(u',');
}

} // namespace

class TestWizardFinish : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void finishSetsUpTheChosenEmulator_data();
    void finishSetsUpTheChosenEmulator();
    void setsAboveTheProfileCountTakeTheDefault();
    void gameBaseAndItsPictureFolder();
    void emulatorPathOfStepThree_data();
    void emulatorPathOfStepThree();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    platform::ScriptedDialogService m_dialogs;
};

void TestWizardFinish::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    app::setProgramFolder(m_dir->path());
    app::reloadIni();
    QVERIFY(LoadProfils()); // no settings file: the first-run emulators and profiles
    QCOMPARE(gDefaultProfil, u"4"_qs);
    gamebase::gGameBaseDB = gamebase::kGameBaseHint;
    gamebase::gScreenshots = u"/old/shots"_qs;
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
}

void TestWizardFinish::cleanup()
{
    platform::setDialogService(nullptr);
    m_dir.reset();
}

void TestWizardFinish::finishSetsUpTheChosenEmulator_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("emulator"); // the one that takes the path
    QTest::addColumn<QString>("defaultKey");
    QTest::addColumn<QString>("d64"); // the profile .D64 starts with

    QTest::newRow("VICE keeps the default 4") << 1 << "VICE"
                                              << "4"
                                              << "VICE - Autostart Disc (Temporary File)";
    QTest::newRow("CCS64") << 2 << "CCS64"
                           << "1"
                           << "CCS64 - Autorun";
    QTest::newRow("HOXS64") << 3 << "HOXS64"
                            << "7"
                            << "HOXS64 - Autoload (Temporary File)";
    QTest::newRow("EMU64") << 4 << "EMU64"
                           << "10"
                           << "EMU64 - Autoload";
    QTest::newRow("MICRO64") << 5 << "MICRO64"
                             << "13"
                             << "MICRO64 - Attach";
}

void TestWizardFinish::finishSetsUpTheChosenEmulator()
{
    QFETCH(int, type);
    QFETCH(QString, emulator);
    QFETCH(QString, defaultKey);
    QFETCH(QString, d64);

    FinishWizard(WizardChoice{type, u"/opt/emu/run-it"_qs, QString()});
    QCOMPARE(gDefaultProfil, defaultKey);
    // The assigned keys name the profiles of the first run: .D71, .VSF and .VFL stay with VICE
    // and .C64 with CCS64, whichever emulator was chosen.
    const auto caption = [](const char* extension) {
        return GetProfilCaption(gEmulators, gProfils,
                                gStartProfils[size_t(StartExtensionIndex(extension))]);
    };
    QCOMPARE(caption(".D64"), d64);
    QCOMPARE(caption(".D71"), u"VICE - Autostart Disc (Temporary File)"_qs);
    QCOMPARE(caption(".VSF"), u"VICE - Autostart (Original File)"_qs);
    QCOMPARE(caption(".C64"), u"CCS64 - Autorun"_qs);
    QCOMPARE(caption(".VFL"), u"VICE - Attach Flip list"_qs);
    // Only the chosen emulator takes the path; the others keep their placeholders.
    for (const EmulatorPtr& e : gEmulators)
        QCOMPARE(e->Path == u"/opt/emu/run-it"_qs, e->Name == emulator);
    // Without a GameBase path its settings stay as they were.
    QCOMPARE(gamebase::gGameBaseDB, gamebase::kGameBaseHint);
    QCOMPARE(gamebase::gScreenshots, u"/old/shots"_qs);
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestWizardFinish::setsAboveTheProfileCountTakeTheDefault()
{
    // Two profiles fewer than the fourteen sets: sets 13 and 14 name no profile.
    gProfils.removeAt(gProfils.count() - 1);
    gProfils.removeAt(gProfils.count() - 1);
    QCOMPARE(gProfils.count(), 12);
    FinishWizard(WizardChoice{5, QString(), QString()});
    QCOMPARE(assignments(), u",4,,,,,3,1,,,3,"_qs);
    QCOMPARE(gDefaultProfil, u"13"_qs); // the default key is set all the same

    FinishWizard(WizardChoice{1, QString(), QString()});
    QCOMPARE(assignments(), u"4,4,3,3,3,3,3,1,9,3,3,"_qs);
}

void TestWizardFinish::gameBaseAndItsPictureFolder()
{
    const QString gbFolder = m_dir->filePath(u"GB"_qs);
    const QString shots = m_dir->filePath(u"GB/Screenshots"_qs);
    QVERIFY(QDir().mkpath(shots));
    const QString mdb = gbFolder + u"/GBC_v18.mdb"_qs;
    QVERIFY(writeFile(mdb, "not read by the finish"));

    // Without Paths.ini the screenshot folder is emptied.
    FinishWizard(WizardChoice{1, QString(), mdb});
    QCOMPARE(gamebase::gGameBaseDB, mdb);
    QCOMPARE(gamebase::gScreenshots, QString());

    QVERIFY(writeFile(gbFolder + u"/Paths.ini"_qs,
                      "[Pictures]\r\n1=" + shots.toUtf8() + "\r\n[Music]\r\n1=/x\r\n"));
    FinishWizard(WizardChoice{1, QString(), mdb});
    QCOMPARE(gamebase::gScreenshots, shots);

    // A folder that is gone counts as none.
    QVERIFY(writeFile(gbFolder + u"/Paths.ini"_qs, "[Pictures]\r\n1=" + shots.toUtf8() + "X\r\n"));
    FinishWizard(WizardChoice{1, QString(), mdb});
    QCOMPARE(gamebase::gScreenshots, QString());
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestWizardFinish::emulatorPathOfStepThree_data()
{
    QTest::addColumn<QString>("path"); // %H the test's folder
    QTest::addColumn<bool>("passes");

    QTest::newRow("empty") << "" << true;
    QTest::newRow("existing file") << "%H/x64sc" << true;
    QTest::newRow("missing file") << "%H/emu/x64sc" << false;
    QTest::newRow("a folder") << "%H" << false;
    QTest::newRow("bare name on PATH") << "sh" << true;
    QTest::newRow("bare name nowhere") << "vd-no-such-emulator" << false;
}

void TestWizardFinish::emulatorPathOfStepThree()
{
    QFETCH(QString, path);
    QFETCH(bool, passes);
    QVERIFY(writeFile(m_dir->filePath(u"x64sc"_qs), "#!/bin/sh\n"));
    path.replace(u"%H"_qs, m_dir->path());

    QCOMPARE(setup::CheckEmulatorPath(path), passes);
    if (passes) {
        QVERIFY(m_dialogs.calls.isEmpty());
    } else {
        QCOMPARE(m_dialogs.messages(), QStringList{u"Datei nicht gefunden: "_qs + path});
        QCOMPARE(m_dialogs.calls[0].style & platform::kIconMask, int(platform::vbExclamation));
    }
}

QTEST_GUILESS_MAIN(TestWizardFinish)
#include "tst_wizardfinish.moc"
