// A command-line import killed with SIGKILL at any moment leaves a catalogue that opens, passes
// the engine's integrity check, has no entry without its file row, and that a second import
// completes without duplicates.

#include "support/C64ImageWriter.h"
#include "support/CliRun.h"

#include <csignal>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>
#include <sqlite3.h>
#include <sys/resource.h>
#include <unistd.h>

using vd::test::DiskWriter;
using vd::test::Slot;

namespace {

constexpr int kFolders = 4;
constexpr int kDisksPerFolder = 75;
constexpr int kEntriesPerDisk = 24;
constexpr int kDisks = kFolders * kDisksPerFolder;
// Small programs beside the disks make the import outlast a few of its half-second commits,
// so that kills hit it in its middle.
constexpr int kProgramsPerFolder = 2500;
constexpr int kFiles = kDisks + kFolders * kProgramsPerFolder;

// One integer from a statement over the catalogue file, read with the engine alone.
QString scalar(const QString& file, const char* sql)
{
    sqlite3* db = nullptr;
    QString result = QStringLiteral("<open failed>");
    if (sqlite3_open_v2(QFile::encodeName(file).constData(), &db, SQLITE_OPEN_READWRITE, nullptr) ==
        SQLITE_OK) {
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &st, nullptr) == SQLITE_OK) {
            result =
                sqlite3_step(st) == SQLITE_ROW
                    ? QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)))
                    : QStringLiteral("<no row>");
        } else {
            result = QString::fromUtf8(sqlite3_errmsg(db));
        }
        sqlite3_finalize(st);
    }
    sqlite3_close(db);
    return result;
}

} // namespace

class TestCrashSafety : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_folder;
    qint64 m_fullImportMs = 0;

    QString path(const QString& name) const { return m_dir.filePath(name); }
    QString home() const { return path(QStringLiteral("home")); }

    QString newCatalogue(const QString& name)
    {
        const QString cat = path(name);
        const vd::test::CliRun r = vd::test::runCli(home(), {QStringLiteral("new"), cat});
        return r.code == 0 ? cat : QString();
    }

    // Runs an import as a slow machine would: the process is stopped for three quarters of
    // the time, so that it outlasts several of its half-second commits however fast it is
    // here. After `killAfterMs` (unless negative) it is killed; returns its exit code, or -1
    // when it was killed.
    int throttledImport(const QString& cat, int killAfterMs)
    {
        QProcess p;
        p.start(vd::test::cliProgram(),
                {QStringLiteral("--home"), home(), QStringLiteral("import"), cat, m_folder});
        if (!p.waitForStarted())
            return -2;
        QElapsedTimer t;
        t.start();
        while (!p.waitForFinished(10)) {
            if (killAfterMs >= 0 && t.elapsed() >= killAfterMs) {
                p.kill(); // SIGKILL: no handler, no commit, no clean-up
                p.waitForFinished();
                return -1;
            }
            ::kill(pid_t(p.processId()), SIGSTOP);
            QThread::msleep(30);
            ::kill(pid_t(p.processId()), SIGCONT);
        }
        return p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    }

    // What must hold after any crash.
    void verifyConsistent(const QString& cat)
    {
        QCOMPARE(scalar(cat, "PRAGMA integrity_check"), QStringLiteral("ok"));
        QCOMPARE(scalar(cat, "SELECT count(*) FROM C64Files F LEFT JOIN Category C ON "
                             "F.Category_File=C.ID WHERE C.ID IS NULL"),
                 QStringLiteral("0"));
        QCOMPARE(scalar(cat, "SELECT count(*) FROM (SELECT tPath FROM Category WHERE "
                             "iType=1 GROUP BY tPath HAVING count(*)>1)"),
                 QStringLiteral("0"));
        // A disk is written with its entries or not at all.
        const QByteArray partial =
            "SELECT count(*) FROM Category C WHERE C.iFileType=1 AND (SELECT "
            "count(*) FROM C64Files F WHERE F.Category_File=C.ID)<>" +
            QByteArray::number(kEntriesPerDisk);
        QCOMPARE(scalar(cat, partial.constData()), QStringLiteral("0"));
    }

    void verifyComplete(const QString& cat)
    {
        verifyConsistent(cat);
        QCOMPARE(scalar(cat, "SELECT count(*) FROM Category WHERE iFileType=1"),
                 QString::number(kDisks));
        QCOMPARE(scalar(cat, "SELECT count(*) FROM Category WHERE iType=1"),
                 QString::number(kFiles));
        QCOMPARE(scalar(cat, "SELECT count(*) FROM C64Files"),
                 QString::number(kDisks * kEntriesPerDisk + kFiles - kDisks));
    }

private slots:
    void initTestCase()
    {
        if (!QFile::exists(vd::test::cliProgram()))
            QSKIP("vellumdock-cli is not built beside the tests");
        m_folder = path(QStringLiteral("collection"));
        QVector<Slot> listing;
        for (int e = 0; e < kEntriesPerDisk; ++e)
            listing.append({0x82, QByteArray("FILE ") + QByteArray::number(e), 10 + e});
        for (int f = 0; f < kFolders; ++f) {
            const QString folder = m_folder + QStringLiteral("/part%1").arg(f);
            QVERIFY(QDir().mkpath(folder));
            for (int d = 0; d < kDisksPerFolder; ++d) {
                DiskWriter w = DiskWriter::d64();
                w.name("DISK " + QByteArray::number(f * 100 + d)).entries(listing);
                QVERIFY(w.save(folder + QStringLiteral("/disk%1.d64").arg(d, 3, 10, QChar('0'))));
            }
            for (int p = 0; p < kProgramsPerFolder; ++p) {
                QFile prg(folder + QStringLiteral("/prog%1.prg").arg(p, 4, 10, QChar('0')));
                QVERIFY(prg.open(QIODevice::WriteOnly));
                prg.write(QByteArray("\x01\x08") + QByteArray(200 + p, char(p)));
            }
        }
        // How long a whole import takes here decides where the kills fall.
        const QString cat = newCatalogue(QStringLiteral("probe.vdb"));
        QVERIFY(!cat.isEmpty());
        QElapsedTimer t;
        t.start();
        QCOMPARE(throttledImport(cat, -1), 0);
        m_fullImportMs = t.elapsed();
        verifyComplete(cat);
    }

    // Several runs, each killing the first import and then a second one at random moments,
    // before a third import finishes the collection.
    void killedImportsLeaveAUsableCatalogue()
    {
        const quint32 seed = QRandomGenerator::global()->generate();
        qInfo("seed %u, a whole import takes %lld ms", seed, m_fullImportMs);
        QRandomGenerator random(seed);
        int midway = 0;
        for (int run = 0; run < 4; ++run) {
            const QString cat = newCatalogue(QStringLiteral("crash%1.vdb").arg(run));
            QVERIFY(!cat.isEmpty());
            for (int attempt = 0; attempt < 2; ++attempt) {
                // The eight kills spread over a whole import's time, each moved a little.
                const double at = (run * 2 + attempt + 0.5) / 8.0;
                const int ms = 10 + int(m_fullImportMs * at) +
                               int(random.bounded(int(m_fullImportMs / 10) + 1));
                throttledImport(cat, ms);
                verifyConsistent(cat);
                const int files =
                    scalar(cat, "SELECT count(*) FROM Category WHERE iType=1").toInt();
                if (files > 0 && files < kFiles)
                    ++midway;
            }
            const vd::test::CliRun r =
                vd::test::runCli(home(), {QStringLiteral("import"), cat, m_folder});
            QCOMPARE(r.code, 0);
            verifyComplete(cat);
        }
        qInfo("%d of 8 kills cut an import short", midway);
        // At least one kill must have cut an import short, or nothing was shown.
        QVERIFY2(midway > 0, "no kill hit an import in its middle");
    }

    // A disk that fills up during an import (a file-size limit stands in for it): the import
    // ends with the engine's message and a failure code, what was catalogued before stays, and
    // once there is room again the next import completes the collection.
    void aFullDiskKeepsWhatWasCatalogued()
    {
        const QString cat = newCatalogue(QStringLiteral("full.vdb"));
        QVERIFY(!cat.isEmpty());
        const QString first = m_folder + QStringLiteral("/part0");
        vd::test::CliRun r = vd::test::runCli(home(), {QStringLiteral("import"), cat, first});
        QCOMPARE(r.code, 0);
        const QString before = scalar(cat, "SELECT count(*) FROM Category WHERE iType=1");
        const qint64 size = QFileInfo(cat).size() + QFileInfo(cat + QStringLiteral("-wal")).size();

        QProcess p;
        p.setChildProcessModifier([size] {
            // Room for a little more than the catalogue holds now; writes beyond fail with EFBIG
            // instead of ending the process.
            const rlimit limit{rlim_t(size + 64 * 1024), rlim_t(size + 64 * 1024)};
            setrlimit(RLIMIT_FSIZE, &limit);
            signal(SIGXFSZ, SIG_IGN);
        });
        p.start(vd::test::cliProgram(),
                {QStringLiteral("--home"), home(), QStringLiteral("import"), cat, m_folder});
        QVERIFY(p.waitForFinished(120000));
        const QString err = QString::fromUtf8(p.readAllStandardError());
        QCOMPARE(p.exitCode(), 1);
        QVERIFY2(err.contains(QStringLiteral("disk I/O error")) ||
                     err.contains(QStringLiteral("disk is full")),
                 qPrintable(err));
        verifyConsistent(cat);
        QVERIFY(scalar(cat, "SELECT count(*) FROM Category WHERE iType=1").toInt() >=
                before.toInt());

        r = vd::test::runCli(home(), {QStringLiteral("import"), cat, m_folder});
        QCOMPARE(r.code, 0);
        verifyComplete(cat);
    }

    // A catalogue the user may not write, in a folder the user may not write: reading works,
    // an import says so and changes nothing. Root writes anything, so as root the program runs
    // as the user "nobody" for this.
    void aReadOnlyCatalogue()
    {
        const QString cat = newCatalogue(QStringLiteral("readonly.vdb"));
        QVERIFY(!cat.isEmpty());
        QCOMPARE(vd::test::runCli(
                     home(), {QStringLiteral("import"), cat, m_folder + QStringLiteral("/part1")})
                     .code,
                 0);
        // A closed catalogue has no -wal or -shm beside it; the folder and the file are then
        // made read-only, the folder of the settings writable for anyone.
        const QString locked = path(QStringLiteral("locked"));
        QVERIFY(QDir().mkpath(locked));
        const QString ro = locked + QStringLiteral("/readonly.vdb");
        QVERIFY(QFile::copy(cat, ro));
        const QString roHome = path(QStringLiteral("rohome"));
        QVERIFY(QDir().mkpath(roHome));
        const auto all = QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther;
        const auto enter = QFileDevice::ExeOwner | QFileDevice::ExeGroup | QFileDevice::ExeOther;
        const auto write =
            QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
        QVERIFY(QFile::setPermissions(ro, all));
        QVERIFY(QFile::setPermissions(locked, all | enter));
        QVERIFY(QFile::setPermissions(roHome, all | enter | write));
        QVERIFY(QFile::setPermissions(m_dir.path(), all | enter));
        const bool asNobody = ::geteuid() == 0;
        const QString rows = scalar(ro, "SELECT count(*) FROM Category");

        auto run = [&](const QStringList& args) {
            QProcess p;
            if (asNobody)
                p.setChildProcessModifier([] {
                    if (::setgid(65534) != 0 || ::setuid(65534) != 0)
                        ::_exit(99);
                });
            p.start(vd::test::cliProgram(), QStringList{QStringLiteral("--home"), roHome} + args);
            p.waitForFinished(60000);
            return std::make_pair(p.exitCode(), QString::fromUtf8(p.readAllStandardError()));
        };
        const auto list = run({QStringLiteral("list"), ro});
        const auto import = run({QStringLiteral("import"), ro, m_folder});
        QFile::setPermissions(locked, all | enter | QFileDevice::WriteOwner);
        QFile::setPermissions(ro, all | QFileDevice::WriteOwner);
        QFile::setPermissions(m_dir.path(), all | enter | QFileDevice::WriteOwner);
        QVERIFY2(list.first == 0, qPrintable(list.second));
        QCOMPARE(import.first, 1);
        QVERIFY2(!import.second.isEmpty(), "no message for a read-only catalogue");
        qInfo("the import said: %s", qPrintable(import.second.trimmed()));
        QCOMPARE(scalar(ro, "SELECT count(*) FROM Category"), rows);
    }
};

QTEST_GUILESS_MAIN(TestCrashSafety)
#include "tst_crashsafety.moc"
