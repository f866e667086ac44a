// Broken files met at start: a settings file of random bytes or with a line of 100,000
// characters, a catalogue without its Config table. The command line says what is wrong, keeps
// running for what it can do, and changes none of the files.

#include "support/CliRun.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>
#include <sqlite3.h>

namespace {

QByteArray digest(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly)
               ? QCryptographicHash::hash(f.readAll(), QCryptographicHash::Md5)
               : QByteArray();
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

} // namespace

class TestCorruptStart : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString home() const { return m_dir.filePath(QStringLiteral("home")); }
    QString ini() const { return home() + QStringLiteral("/Vellumdock.ini"); }
    vd::test::CliRun cli(const QStringList& args) { return vd::test::runCli(home(), args); }

private slots:
    void initTestCase()
    {
        if (!QFile::exists(vd::test::cliProgram()))
            QSKIP("vellumdock-cli is not built beside the tests");
        QVERIFY(QDir().mkpath(home()));
    }

    void settingsOfRandomBytes()
    {
        QByteArray noise(20000, Qt::Uninitialized);
        QRandomGenerator generator(7);
        for (char& c : noise)
            c = char(generator.bounded(256));
        QVERIFY(writeFile(ini(), noise));
        const QString cat = m_dir.filePath(QStringLiteral("noise.vdb"));
        vd::test::CliRun r = cli({QStringLiteral("new"), cat});
        QCOMPARE(r.code, 0);
        r = cli({QStringLiteral("list"), cat});
        QCOMPARE(r.code, 0);
        r = cli({QStringLiteral("settings"), QStringLiteral("get"), QStringLiteral("MAIN"),
                 QStringLiteral("Database")});
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err, QStringList{QStringLiteral("No key Database in [MAIN]")});
        QCOMPARE(digest(ini()), QCryptographicHash::hash(noise, QCryptographicHash::Md5));
    }

    // The reader takes what its buffer holds of a long value and goes on with the next line.
    void settingsWithAVeryLongLine()
    {
        QVERIFY(writeFile(ini(),
                          "[MAIN]\r\nDatabase=" + QByteArray(100000, 'x') + "\r\nFontSize=11\r\n"));
        vd::test::CliRun r = cli({QStringLiteral("settings"), QStringLiteral("get"),
                                  QStringLiteral("MAIN"), QStringLiteral("FontSize")});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, QStringList{QStringLiteral("11")});
        r = cli({QStringLiteral("settings"), QStringLiteral("get"), QStringLiteral("MAIN"),
                 QStringLiteral("Database")});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out.size(), 1);
        QVERIFY(r.out.first().size() < 100000);
        QVERIFY(!r.out.first().contains(QLatin1Char('\r')));
    }

    void catalogueWithoutConfig()
    {
        QFile::remove(ini());
        const QString cat = m_dir.filePath(QStringLiteral("noconfig.vdb"));
        QCOMPARE(cli({QStringLiteral("new"), cat}).code, 0);
        sqlite3* db = nullptr;
        QCOMPARE(sqlite3_open(QFile::encodeName(cat).constData(), &db), SQLITE_OK);
        QCOMPARE(sqlite3_exec(db, "DROP TABLE Config", nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
        const QByteArray before = digest(cat);
        for (const char* command : {"list", "check", "import"}) {
            QStringList args{QString::fromLatin1(command), cat};
            if (args.first() == u"import")
                args << m_dir.path();
            const vd::test::CliRun r = cli(args);
            QCOMPARE(r.code, 1);
            QVERIFY2(r.err.join(QLatin1Char('\n'))
                         .startsWith(QStringLiteral("Dies ist keine Vellumdock-Datenbank: ") + cat),
                     qPrintable(r.err.join(QLatin1Char('\n'))));
        }
        QCOMPARE(digest(cat), before);
    }
};

QTEST_GUILESS_MAIN(TestCorruptStart)
#include "tst_corruptstart.moc"
