// The command line's batch commands end to end through the built program: check (with
// --delete-missing and --new-path), compact, md5 and export-dirs; their printed rows and result
// lines, exit codes and usage errors.

#include "support/C64ImageWriter.h"
#include "support/CliRun.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

namespace {

using Run = vd::test::CliRun;

} // namespace

class TestBatchCli : public QObject
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
    // A new catalogue holding a folder of a D64 (two entries), a T64 and two PRG files, in
    // this order of ids: 1 disk.d64, 2 one.prg, 3 tape.t64, 4 two.prg.
    QString collection(QString* folder)
    {
        const QString cat = path(QStringLiteral("cat%1.vdb").arg(++m_runs));
        *folder = path(QStringLiteral("games%1").arg(m_runs));
        QDir().mkpath(*folder);
        vd::test::DiskWriter::d64()
            .name("DISK")
            .entries({{0x82, "GAME", 100}, {0x81, "NOTES", 2}})
            .save(*folder + QStringLiteral("/disk.d64"));
        vd::test::writeFile(*folder + QStringLiteral("/one.prg"), QByteArray(600, '1'));
        vd::test::writeFile(
            *folder + QStringLiteral("/tape.t64"),
            vd::test::t64("C64S tape image file", 1, "TAPE", {{true, 96, "T"}}, 2128));
        vd::test::writeFile(*folder + QStringLiteral("/two.prg"), QByteArray(300, '2'));
        if (cli({"new", cat}).code != 0 || cli({"import", cat, *folder}).code != 0)
            return {};
        return cat;
    }
    QStringList paths(const QString& cat)
    {
        return cli({"sql", cat, "Select tPath From Category order by ID"}).out.mid(1);
    }

private slots:
    void initTestCase()
    {
        m_cli = QCoreApplication::applicationDirPath() + QStringLiteral("/../src/vellumdock-cli");
        if (!QFile::exists(m_cli))
            QSKIP("vellumdock-cli is not built beside the tests");
        QVERIFY(m_dir.isValid());
    }

    void checkAndDeleteMissing()
    {
        QString folder;
        const QString cat = collection(&folder);
        QVERIFY(!cat.isEmpty());
        Run r = cli({"check", cat});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringList({"Datenbank wurde überprüft:", "Nicht gefundene Dateien: 0"}));

        QVERIFY(QFile::remove(folder + QStringLiteral("/one.prg")));
        QVERIFY(QFile::remove(folder + QStringLiteral("/disk.d64")));
        r = cli({"check", cat});
        QCOMPARE(r.out, QStringList({folder + "/disk.d64", folder + "/one.prg",
                                     "Datenbank wurde überprüft:", "Nicht gefundene Dateien: 2"}));
        QCOMPARE(paths(cat).size(), 4); // a check alone deletes nothing

        r = cli({"check", cat, "--delete-missing"});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out.mid(2),
                 QStringList({"Datenbank wurde überprüft:", "Nicht gefundene Dateien: 2",
                              "Nicht gefundene Dateien: 0", "Gelöschte Dateien: 2"}));
        QCOMPARE(paths(cat), QStringList({folder + "/tape.t64", folder + "/two.prg"}));
        QCOMPARE(cli({"sql", cat, "Select Count(ID) From C64Files"}).out.value(1),
                 QStringLiteral("2"));
    }

    void checkWithNewPath()
    {
        QString folder;
        const QString cat = collection(&folder);
        QVERIFY(!cat.isEmpty());
        const QString moved = path(QStringLiteral("moved%1").arg(m_runs));
        QVERIFY(QDir().rename(folder, moved));

        Run r = cli({"check", cat, "--new-path", path("nowhere")});
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err, QStringList({"Ungültiger Dateipfad: " + path("nowhere")}));

        r = cli({"check", cat, "--new-path", moved, "--old-path", folder});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out.mid(4),
                 QStringList({"Datenbank wurde überprüft:", "Nicht gefundene Dateien: 4",
                              "Datei gefunden: " + folder + "/disk.d64",
                              "Datei gefunden: " + folder + "/one.prg",
                              "Datei gefunden: " + folder + "/tape.t64",
                              "Datei gefunden: " + folder + "/two.prg",
                              "Nicht gefundene Dateien: 0", "Wiedergefundene Dateien: 4"}));
        QCOMPARE(paths(cat), QStringList({moved + "/disk.d64", moved + "/one.prg",
                                          moved + "/tape.t64", moved + "/two.prg"}));
    }

    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("old path alone") << QStringList{"check", "c.vdb", "--old-path", "/x"};
        QTest::newRow("both follow-ups")
            << QStringList{"check", "c.vdb", "--delete-missing", "--new-path", "/x"};
        QTest::newRow("id not a number") << QStringList{"md5", "c.vdb", "x"};
        QTest::newRow("to without folder") << QStringList{"export-dirs", "c.vdb", "1", "--to"};
    }
    void usageErrors()
    {
        QFETCH(QStringList, arguments);
        const Run r = cli(arguments);
        QCOMPARE(r.code, 2);
        QVERIFY(r.err.contains(QStringLiteral("Usage: vellumdock-cli [--home DIR] COMMAND "
                                              "[ARGUMENTS]")));
    }

    void compact()
    {
        QString folder;
        const QString cat = collection(&folder);
        QVERIFY(!cat.isEmpty());
        Run r = cli({"compact", cat});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringList{"Datenbank wurde erfolgreich komprimiert!"});
        QVERIFY(QFile::exists(cat.left(cat.size() - 3) + QStringLiteral("OLD")));
        QCOMPARE(paths(cat).size(), 4);
        r = cli({"compact", path("none.vdb")});
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err, QStringList{"Datei nicht gefunden: " + path("none.vdb")});
    }

    void md5AndExport()
    {
        QString folder;
        const QString cat = collection(&folder);
        QVERIFY(!cat.isEmpty());
        const QString md5 = QString::fromLatin1(
            QCryptographicHash::hash(QByteArray(600, '1'), QCryptographicHash::Md5).toHex());
        Run r = cli({"md5", cat, "2", "-999"});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringList({"one.prg: " + md5, "Dateien: 1"}));
        r = cli({"md5", cat, "2"});
        QCOMPARE(r.out, QStringList({"Dateien: 0"}));

        const QString out = path(QStringLiteral("dirs%1").arg(m_runs));
        QDir().mkpath(out);
        r = cli({"export-dirs", cat, "3", "--to", out});
        QCOMPARE(r.out, QStringList({"Dateien: 0"})); // a tape has no directory to save
        r = cli({"export-dirs", cat, "--to", out, "1", "3"});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringList({out + "/disk.d64.txt: ", "Dateien: 1"}));
        QFile text(out + QStringLiteral("/disk.d64.txt"));
        QVERIFY(text.open(QIODevice::ReadOnly));
        QCOMPARE(text.readAll(), QByteArray("100\tGAME\tPRG\n2\tNOTES\tSEQ"));
    }
};

QTEST_GUILESS_MAIN(TestBatchCli)
#include "tst_batchcli.moc"
