// The command line's import, extract and dir, end to end through the built program: the printed
// lines, the exit codes, the flags and the importer options of the settings file.

#include "support/ArchiveWriter.h"
#include "support/C64ImageWriter.h"
#include "support/CliRun.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using vd::test::DiskWriter;

namespace {

using Run = vd::test::CliRun;

} // namespace

class TestImportCli : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_cli;
    int m_runs = 0;

    QString path(const QString& name) const { return m_dir.filePath(name); }
    Run cli(const QStringList& args)
    {
        return vd::test::runCli(path(QStringLiteral("home")), args);
    }
    QString newCatalogue()
    {
        const QString cat = path(QStringLiteral("cat%1.vdb").arg(++m_runs));
        const Run r = cli({"new", cat});
        return r.code == 0 ? cat : QString();
    }
    QString makeFolder()
    {
        const QString folder = path(QStringLiteral("games%1").arg(m_runs));
        QDir().mkpath(folder + QStringLiteral("/tapes"));
        DiskWriter w = DiskWriter::d64();
        w.name("DISK").entries({{0x82, "GAME", 100}, {0x81, "NOTES", 2}});
        w.save(folder + QStringLiteral("/disk.d64"));
        vd::test::writeFile(
            folder + QStringLiteral("/tapes/t.t64"),
            vd::test::t64("C64S tape image file", 1, "TAPE", {{true, 96, "T"}}, 2128));
        vd::test::writeFile(folder + QStringLiteral("/intro.prg"), QByteArray(600, 'p'));
        return folder;
    }
    void settings(const QByteArray& text)
    {
        QDir().mkpath(path(QStringLiteral("home")));
        vd::test::writeFile(path(QStringLiteral("home/Vellumdock.ini")), text);
    }

private slots:
    void initTestCase()
    {
        m_cli = QCoreApplication::applicationDirPath() + QStringLiteral("/../src/vellumdock-cli");
        if (!QFile::exists(m_cli))
            QSKIP("vellumdock-cli is not built beside the tests");
    }
    void cleanup() { QFile::remove(path(QStringLiteral("home/Vellumdock.ini"))); }

    void importFolder()
    {
        const QString cat = newCatalogue();
        const QString folder = makeFolder();
        Run r = cli({"import", cat, folder});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringList({folder + "/", "disk.d64", "intro.prg", folder + "/tapes/",
                                     "t.t64", "Hinzugefügte Dateien: 3",
                                     "Hinzugefügte C64-Files: 4", "Durchsuchte Dateien: 3"}));
        r = cli({"import", cat, folder});
        QCOMPARE(r.code, 0);
        QVERIFY(r.out.contains(QStringLiteral("Datei ist schon vorhanden: disk.d64")));
        QCOMPARE(r.out.mid(r.out.size() - 3, 2),
                 QStringList({"Hinzugefügte Dateien: 0", "Hinzugefügte C64-Files: 0"}));
    }

    void importArchiveAndExtract()
    {
        if (!vd::test::haveTool(QStringLiteral("7z")))
            QSKIP("7z is not installed (scripts/deps.sh)");
        const QString cat = newCatalogue();
        const QString folder = makeFolder();
        const QString zip = path(QStringLiteral("games%1.zip").arg(m_runs));
        QVERIFY(vd::test::packArchive("zip", zip, folder, {"disk.d64", "tapes"}));
        Run r = cli({"import", cat, zip});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out.mid(r.out.size() - 3, 2),
                 QStringList({"Hinzugefügte Dateien: 2", "Hinzugefügte C64-Files: 3"}));
        // The extraction folders of the import are gone afterwards.
        QCOMPARE(QDir(path("home/Temp")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList());
        const Run ids = cli({"sql", cat,
                             "Select C.ID,F.ID From Category as C, C64Files as F where "
                             "F.Category_File=C.ID and C.tUnpackPath='tapes\\t.t64'"});
        const QStringList idPair = ids.out.value(1).split(QLatin1Char('\t'));
        QCOMPARE(idPair.size(), 2);
        for (const QString& id : {"-" + idPair[0], idPair[1]}) {
            r = cli({"extract", cat, id});
            QCOMPARE(r.code, 0);
            QCOMPARE(r.out.size(), 1);
            QFile extracted(r.out.first());
            QVERIFY(extracted.open(QIODevice::ReadOnly));
            QFile original(folder + "/tapes/t.t64");
            QVERIFY(original.open(QIODevice::ReadOnly));
            QCOMPARE(extracted.readAll(), original.readAll());
        }
        r = cli({"extract", cat, "-999"});
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err, QStringList{"Kein Eintrag mit der ID: -999"});
        QCOMPARE(cli({"extract", cat, "x"}).code, 2);
    }

    void importOneFileAndRefresh()
    {
        const QString cat = newCatalogue();
        const QString disk = path(QStringLiteral("one.d64"));
        DiskWriter w = DiskWriter::d64();
        w.entries({{0x82, "A", 1}});
        QVERIFY(w.save(disk));
        Run r = cli({"import", cat, disk});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringList({"one.d64", "Hinzugefügte Dateien: 1",
                                     "Hinzugefügte C64-Files: 1", "Durchsuchte Datei: " + disk}));
        w.entries({{0x82, "A", 1}, {0x82, "B", 2}});
        QVERIFY(w.save(disk));
        r = cli({"import", cat, disk, "--refresh"});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out.mid(0, 2),
                 QStringList({"Hinzugefügte Dateien: 0", "Hinzugefügte C64-Files: 1"}));
    }

    void settingsApply()
    {
        settings("[MAIN]\r\nCreateMd5Hash=1\r\n[EXTENSIONS]\r\nImportFiles=.D64\r\n");
        const QString cat = newCatalogue();
        const QString folder = makeFolder();
        const Run r = cli({"import", cat, folder});
        QCOMPARE(r.code, 0);
        QVERIFY(r.out.contains(QStringLiteral("Hinzugefügte Dateien: 1")));
        const Run hash = cli({"sql", cat, "Select len(tHash) From Category"});
        QCOMPARE(hash.out.value(1), QStringLiteral("32"));
    }

    void md5Flag()
    {
        const QString cat = newCatalogue();
        const QString prg = path(QStringLiteral("h.prg"));
        QVERIFY(vd::test::writeFile(prg, "hash me"));
        QCOMPARE(cli({"import", cat, prg, "--md5"}).code, 0);
        const QString expected = QString::fromLatin1(
            QCryptographicHash::hash("hash me", QCryptographicHash::Md5).toHex());
        QCOMPARE(cli({"sql", cat, "Select tHash From Category"}).out.value(1), expected);
    }

    void usage_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("code");
        QTest::newRow("import without a path") << QStringList{"import", "x.vdb"} << 2;
        QTest::newRow("unknown option") << QStringList{"import", "x.vdb", "y", "--fast"} << 2;
        QTest::newRow("dir without a file") << QStringList{"dir"} << 2;
        QTest::newRow("import of a missing path")
            << QStringList{"import", "x.vdb", "/no/such"} << 1;
        QTest::newRow("dir of a missing file") << QStringList{"dir", "/no/such.d64"} << 1;
    }
    void usage()
    {
        QFETCH(QStringList, args);
        QFETCH(int, code);
        const Run r = cli(args);
        QCOMPARE(r.code, code);
        QVERIFY(!r.err.isEmpty());
        QVERIFY(r.out.isEmpty());
    }

    void dirOfADisk()
    {
        const QString disk = path(QStringLiteral("dir.d64"));
        DiskWriter w = DiskWriter::d64();
        w.name("A VERY LONG NAME")
            .entries({{0x82, "GAME", 100},
                      {0xC1, "DATA", 2},
                      {0x00, "X", 1},
                      {0x82, QByteArray(16, char(0xA0)), 0}});
        QVERIFY(w.save(disk));
        const Run r = cli({"dir", disk});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringList({"0 \"A VERY LONG NAME\"", "100 \"GAME\" PRG",
                                     "2 \"DATA\" <SEQ", "0 \"(NO NAME)\" PRG"}));
        w.name("SHORT");
        QVERIFY(w.save(disk));
        QCOMPARE(cli({"dir", disk}).out.first(), QStringLiteral("0 \"SHORT           \""));
    }

    void dirOfOtherKinds()
    {
        const QString tape = path(QStringLiteral("t.t64"));
        QVERIFY(vd::test::writeFile(
            tape, vd::test::t64("C64S tape image file", 1, "T", {{true, 96, "GAME"}}, 96 + 2030)));
        QCOMPARE(cli({"dir", tape}).out, QStringList({"8 Block(s) \"GAME\" PRG"}));
        const QString tap = path(QStringLiteral("Raw.tap"));
        QVERIFY(vd::test::writeFile(tap, QByteArray("C64-TAPE-RAW") + QByteArray(1524, 1)));
        QCOMPARE(cli({"dir", tap}).out, QStringList({"1.5 KB \"Raw\" PRG"}));
        const QString bad = path(QStringLiteral("bad.d64"));
        QVERIFY(vd::test::writeFile(bad, "short"));
        const Run r = cli({"dir", bad});
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err, QStringList({"Kein korrektes 'D64'-File: " + bad}));
    }
};

QTEST_GUILESS_MAIN(TestImportCli)
#include "tst_importcli.moc"
