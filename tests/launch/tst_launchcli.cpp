// The launcher's commands of vellumdock-cli: the settings file and starting catalogued items.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/SettingsWriter.h"
#include "launch/ProfilSettings.h"
#include "support/C64ImageWriter.h"
#include "support/CliRun.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace vd;

namespace {

using Run = vd::test::CliRun;

QByteArray bytesOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class TestLaunchCli : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void initWritesWhatTheExitWrites();
    void getAndSetOneKey_data();
    void getAndSetOneKey();
    void wrongUsage_data();
    void wrongUsage();
    void startDryRunAndStart();

private:
    Run cli(const QStringList& args) { return vd::test::runCli(m_dir.filePath("home"), args); }
    QTemporaryDir m_dir;
    QString m_cli;
};

void TestLaunchCli::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_cli = QCoreApplication::applicationDirPath() + "/../src/vellumdock-cli";
    if (!QFile::exists(m_cli))
        QSKIP("vellumdock-cli is not built beside the tests");
}

void TestLaunchCli::initWritesWhatTheExitWrites()
{
    QCOMPARE(cli({"settings", "init"}).code, 0);
    const QByteArray written = bytesOf(m_dir.filePath("home/Vellumdock.ini"));

    // The same first run in this process: defaults, then the writer.
    app::setProgramFolder(m_dir.filePath("here"));
    app::reloadIni();
    app::loadSettings();
    QVERIFY(launch::LoadProfils());
    launch::InstallProfilWriters();
    QCOMPARE(QString::fromUtf8(written), app::settingsText());
    QVERIFY(written.contains("\r\nProfilCount=14\r\n"));
    QVERIFY(written.contains("\r\n.VFL=6\r\n"));

    // A second init keeps what the first wrote.
    QCOMPARE(cli({"settings", "init"}).code, 0);
    QCOMPARE(bytesOf(m_dir.filePath("home/Vellumdock.ini")), written);
}

void TestLaunchCli::getAndSetOneKey_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("readBack");

    QTest::newRow("emulator path") << "EMULATORS"
                                   << "EmulPath1"
                                   << "/usr/bin/x64sc"
                                   << "/usr/bin/x64sc";
    QTest::newRow("default profile") << "PROFILS"
                                     << "ProfilDefault"
                                     << "5"
                                     << "5";
    QTest::newRow("default profile out of range is corrected") << "PROFILS"
                                                               << "ProfilDefault"
                                                               << "99"
                                                               << "1";
    QTest::newRow("extension") << "EXTENSIONS"
                               << ".d64"
                               << "3"
                               << "3";
    QTest::newRow("value with blanks and =") << "GAMEBASE"
                                             << "Note"
                                             << "a = b"
                                             << "a = b";
}

void TestLaunchCli::getAndSetOneKey()
{
    QFETCH(QString, section);
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QString, readBack);
    QCOMPARE(cli({"settings", "init"}).code, 0);
    const Run set = cli({"settings", "set", section, key, value});
    QCOMPARE(set.code, 0);
    const Run get = cli({"settings", "get", section, key});
    QCOMPARE(get.code, 0);
    QCOMPARE(get.out, QStringList{readBack});
    // Everything else survived: the profiles are all there.
    QCOMPARE(cli({"settings", "get", "PROFILS", "ProfilCount"}).out, QStringList{"14"});
    QVERIFY(!QFile::exists(m_dir.filePath("home/Vellumdock.ini.set")));
}

void TestLaunchCli::wrongUsage_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("code");
    QTest::newRow("settings without a verb") << QStringList{"settings", "frob"} << 2;
    QTest::newRow("set without a value") << QStringList{"settings", "set", "MAIN", "Font"} << 2;
    QTest::newRow("missing key") << QStringList{"settings", "get", "MAIN", "NoSuchKey"} << 1;
    QTest::newRow("start id 0") << QStringList{"start", "x.vdb", "0"} << 2;
    QTest::newRow("start id not a number") << QStringList{"start", "x.vdb", "abc"} << 2;
}

void TestLaunchCli::wrongUsage()
{
    QFETCH(QStringList, args);
    QFETCH(int, code);
    const Run r = cli(args);
    QCOMPARE(r.code, code);
    QVERIFY(!r.err.isEmpty());
}

void TestLaunchCli::startDryRunAndStart()
{
    const QString emulator = m_dir.filePath("emu/fake");
    const QString out = m_dir.filePath("emu/args.txt");
    QDir().mkpath(m_dir.filePath("emu"));
    {
        QFile f(emulator);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("#!/bin/sh\npwd > \"" + out.toUtf8() +
                ".part\"\nfor a in \"$@\"; do echo \"$a\" >> \"" + out.toUtf8() +
                ".part\"; done\nmv \"" + out.toUtf8() + ".part\" \"" + out.toUtf8() + "\"\n");
        f.close();
        f.setPermissions(f.permissions() | QFile::ExeOwner);
    }
    const QString disk = m_dir.filePath("games/Two Disks.d64");
    QDir().mkpath(m_dir.filePath("games"));
    QVector<test::Slot> entries{{0x82, "INTRO", 4, 17, 0}, {0x82, "MY_GAME", 20, 17, 1}};
    QVERIFY(test::DiskWriter::d64().entries(entries).save(disk));

    const QString cat = m_dir.filePath("start.vdb");
    QCOMPARE(cli({"new", cat}).code, 0);
    QCOMPARE(cli({"sql", cat,
                  "Insert Into Category (ID,iType,tCategory,tFile,tPath,iFileType) Values "
                  "(4,1,'Two Disks','Two Disks.d64','" +
                      disk + "',1)"})
                 .code,
             0);
    QCOMPARE(cli({"sql", cat,
                  "Insert Into C64Files (ID,tProgram,tRealProgram,lIndex,lSize,Category_File) "
                  "Values (9,'MY_GAME','MY_GAME',2,20,4)"})
                 .code,
             0);
    QFile::remove(m_dir.filePath("home/Vellumdock.ini")); // a first run again
    QCOMPARE(cli({"settings", "init"}).code, 0);
    QCOMPARE(cli({"settings", "set", "EMULATORS", "EmulPath1", emulator}).code, 0);

    const QString copy = m_dir.filePath("home/Temp/4.d64");
    const Run dry = cli({"start", cat, "9", "--dry-run"});
    QCOMPARE(dry.code, 0);
    QCOMPARE(dry.out,
             (QStringList{"Temporäre Datei! Profil: VICE - Autostart Disc (Temporary File)",
                          emulator, m_dir.filePath("emu") + "/", "+confirmexit", "-autostart", copy,
                          "-VICIIdsize"}));
    QVERIFY(QFile::exists(copy)); // the copy is made in a dry run too
    QVERIFY(!QFile::exists(out));
    const Run count = cli({"sql", cat, "Select lStartCount From C64Files where ID=9"});
    QCOMPARE(count.out.value(1), QString());

    const Run run = cli({"start", cat, "-4", "--profile", "1"});
    QCOMPARE(run.code, 0);
    QCOMPARE(run.out, QStringList{"Profil: VICE - Autostart (Original File)"});
    QVERIFY(QTest::qWaitFor([&] { return QFile::exists(out); }, 5000));
    QCOMPARE(QString::fromUtf8(bytesOf(out)).split('\n', Qt::SkipEmptyParts),
             (QStringList{m_dir.filePath("emu"), "-confirmexit", "-autostart", disk + ":",
                          "-VICIIdsize"}));
    QCOMPARE(cli({"sql", cat, "Select lStartCount From Category where ID=4"}).out.value(1),
             QString("1"));

    const Run missing = cli({"start", cat, "77"});
    QCOMPARE(missing.code, 1);
    QCOMPARE(missing.out, QStringList{});
}

QTEST_GUILESS_MAIN(TestLaunchCli)
#include "tst_launchcli.moc"
