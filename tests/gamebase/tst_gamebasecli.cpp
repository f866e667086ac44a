// The command line's gamebase check, cache and connect, and the import's matching through the
// settings file, end to end through the built program.

#include "catalogue/Database.h"
#include "support/ArchiveWriter.h"
#include "support/C64ImageWriter.h"
#include "support/CliRun.h"
#include "support/GameBaseFixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using namespace vd;

namespace {

using Run = vd::test::CliRun;

QString mdbFolder()
{
    QString root = qEnvironmentVariable("VD_TESTDATA");
    if (root.isEmpty())
        root = QStringLiteral(VD_TESTDATA_DIR);
    return QDir(root).filePath(QStringLiteral("mdb"));
}

} // namespace

class TestGameBaseCli : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_cli;
    std::unique_ptr<test::GameBaseFixture> m_gb;

    QString path(const QString& name) const { return m_dir.filePath(name); }
    Run cli(const QStringList& args)
    {
        return vd::test::runCli(path(QStringLiteral("home")), args);
    }
    void settings(const QByteArray& text)
    {
        QDir().mkpath(path(QStringLiteral("home")));
        test::writeFile(path(QStringLiteral("home/Vellumdock.ini")), text);
    }
    // A catalogue and a folder with Sanxion.zip (game 101) and Other.zip (no game).
    QString catalogueWithZips(const QString& name)
    {
        const QString folder = path(name);
        QDir().mkpath(folder);
        const QByteArray disk =
            test::DiskWriter::d64().entries({{0x82, "SANXION", 10}, {0x82, "HISCORE", 1}}).bytes();
        test::writeFile(folder + "/Sanxion.zip", test::rawZip({{"SANXION.D64", disk, true}}));
        test::writeFile(folder + "/Other.zip", test::rawZip({{"OTHER.D64", disk, true}}));
        const QString catalogue = path(name + ".vdb");
        return cli({"new", catalogue}).code == 0 ? catalogue : QString();
    }

private slots:
    void initTestCase()
    {
        m_cli = QCoreApplication::applicationDirPath() + QStringLiteral("/../src/vellumdock-cli");
        if (!QFile::exists(m_cli))
            QSKIP("vellumdock-cli is not built beside the tests");
        m_gb = std::make_unique<test::GameBaseFixture>();
        m_gb->db().execute("Update Games Set FileToRun='SANXION.D64' where GA_Id=101");
        m_gb->close();
    }
    void init() { QDir(path(QStringLiteral("home"))).removeRecursively(); }

    void checkTellsVersionAndGames()
    {
        const Run ok = cli({"gamebase", "check", m_gb->path()});
        QCOMPARE(ok.code, 0);
        QCOMPARE(ok.out, QStringList({"Version: 2.5", "Games: 6"}));
        const QString missing = path("none.mdb");
        const Run gone = cli({"gamebase", "check", missing});
        QCOMPARE(gone.code, 1);
        QCOMPARE(gone.err, QStringList{"Datei nicht gefunden: " + missing});
        test::writeFile(path("wrong.mdb"), "not a database");
        const Run wrong = cli({"gamebase", "check", path("wrong.mdb")});
        QCOMPARE(wrong.code, 1);
        QCOMPARE(wrong.err, QStringList{"Wrong GameBase64-Database: " + path("wrong.mdb")});
    }

    void cacheOfAnAccessFile()
    {
        const QString mdb = mdbFolder() + "/nwind.mdb";
        if (!QFileInfo(mdb).isFile())
            QSKIP("The folder of real Access files (testdata/mdb) is absent.");
        const Run first = cli({"gamebase", "cache", mdb});
        QCOMPARE(first.code, 0);
        QVERIFY(first.out.value(0).startsWith(path("home/Cache/GB-")));
        QCOMPARE(first.out.mid(1),
                 QStringList({"Order Details\t2155", "Orders\t830", "Products\t77", "Shippers\t3",
                              "Categories\t8", "Customers\t91", "Employees\t9", "Suppliers\t29",
                              "Umsätze\t830"}));
        // The cache is kept and named the same again; --rebuild makes it anew in its place.
        QCOMPARE(cli({"gamebase", "cache", mdb}).out, first.out);
        QCOMPARE(cli({"gamebase", "cache", mdb, "--rebuild"}).out, first.out);
        QCOMPARE(QDir(path("home/Cache")).entryList({"*.sqlite*"}, QDir::Files),
                 QStringList{QFileInfo(first.out.value(0)).fileName()});
    }

    void cacheOfAnSqliteGameBaseIsTheFileItself()
    {
        const Run r = cli({"gamebase", "cache", m_gb->path()});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out.value(0), m_gb->path());
        QVERIFY(r.out.contains("Games\t6"));
        QVERIFY(!QDir(path("home/Cache")).exists());
    }

    void connectLinksCataloguedZipFiles()
    {
        const QString catalogue = catalogueWithZips("connect");
        QCOMPARE(cli({"import", catalogue, path("connect")}).code, 0);
        const Run r = cli({"gamebase", "connect", catalogue, "--gamebase", m_gb->path()});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringList({"Gamebase: Sanxion",
                                     "Datenbank wurde überprüft:", "Hinzugefügte C64-Files: 0/0"}));
        const Run rows =
            cli({"sql", catalogue, "Select tProgram,GB_ID From C64Files where not isNull(GB_ID)"});
        QCOMPARE(rows.out, QStringList({"tProgram\tGB_ID", "Sanxion\t101"}));
    }

    void connectWithoutAGameBaseDoesNothing()
    {
        const QString catalogue = catalogueWithZips("none");
        const Run r = cli({"gamebase", "connect", catalogue});
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err.value(0),
                 QStringLiteral("Datei nicht gefunden: Gamebase (GBC_v05.mdb,GBC_v07.mdb,...)"));
        QVERIFY(r.out.isEmpty());
    }

    void importMatchesWhenTheSettingsSaySo()
    {
        const QString catalogue = catalogueWithZips("settings");
        settings("[MAIN]\r\nConnectFilesToGB=1\r\n[GAMEBASE]\r\nGameBaseDB=" +
                 m_gb->path().toUtf8() + "\r\nArchivOnlyGame=0\r\n");
        const Run r = cli({"import", catalogue, path("settings")});
        QCOMPARE(r.code, 0);
        QVERIFY(r.out.contains("Gamebase: Sanxion"));
        const Run rows =
            cli({"sql", catalogue, "Select tProgram,GB_ID From C64Files order by tRealProgram,ID"});
        QCOMPARE(rows.out, QStringList({"tProgram\tGB_ID", "HISCORE\t", "HISCORE\t", "SANXION\t",
                                        "Sanxion\t101"}));
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addRow("no subcommand") << QStringList{"gamebase", "x"};
        QTest::addRow("unknown subcommand") << QStringList{"gamebase", "drop", "x"};
        QTest::addRow("check with two files") << QStringList{"gamebase", "check", "a", "b"};
        QTest::addRow("unknown option") << QStringList{"gamebase", "cache", "a", "--fast"};
        QTest::addRow("connect without a catalogue")
            << QStringList{"gamebase", "connect", "--gamebase", "a"};
    }
    void wrongUsage()
    {
        QFETCH(QStringList, args);
        const Run r = cli(args);
        QCOMPARE(r.code, 2);
        QVERIFY(r.err.join('\n').contains("Usage: vellumdock-cli"));
    }
};

QTEST_GUILESS_MAIN(TestGameBaseCli)
#include "tst_gamebasecli.moc"
