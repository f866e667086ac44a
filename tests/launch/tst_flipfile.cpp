// Flip list files: the exact bytes written, the tolerant reader, and starting a list that is
// not catalogued.

#include "app/Globals.h"
#include "app/Settings.h"
#include "launch/FlipFile.h"
#include "launch/Profiles.h"
#include "launch/ProfilSettings.h"
#include "platform/ScriptedDialogService.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace vd;
using namespace vd::launch;

namespace {

QByteArray bytesOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class TestFlipFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void writesExactBytes_data();
    void writesExactBytes();
    void readerIsTolerant_data();
    void readerIsTolerant();
    void writeFailureIsReported();
    void startsTheTemporaryList();
    void onlyFilePathAndInputAreKnown();
    void noProfileForVflIsAFailure();

private:
    QTemporaryDir m_dir;
    platform::ScriptedDialogService m_dialogs;
    QString m_emulator;
};

void TestFlipFile::init()
{
    QVERIFY(m_dir.isValid());
    app::setProgramFolder(m_dir.path());
    QFile::remove(app::gIniFile);
    app::reloadIni();
    QVERIFY(LoadProfils());
    m_emulator = m_dir.filePath("bin/x64sc");
    QDir().mkpath(m_dir.filePath("bin"));
    QFile f(m_emulator);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.close();
    gEmulators.find("1")->Path = m_emulator;
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
}

void TestFlipFile::cleanup()
{
    platform::setDialogService(nullptr);
}

void TestFlipFile::writesExactBytes_data()
{
    QTest::addColumn<QStringList>("paths");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("empty list: three lines, no end")
        << QStringList{} << QByteArray("# Vice fliplist file\n\nUNIT 8");
    QTest::newRow("blanks unquoted, duplicates kept")
        << QStringList{"/games/Disk 1.d64", "/games/Disk 2.d64", "/games/Disk 1.d64"}
        << QByteArray("# Vice fliplist file\n\nUNIT 8\n/games/Disk 1.d64\n/games/Disk 2.d64\n"
                      "/games/Disk 1.d64");
    QTest::newRow("non-ASCII in the file system's encoding")
        << QStringList{"/spiele/Jürgen.d64"}
        << QByteArray("# Vice fliplist file\n\nUNIT 8\n/spiele/J\xc3\xbcrgen.d64");
}

void TestFlipFile::writesExactBytes()
{
    QFETCH(QStringList, paths);
    QFETCH(QByteArray, bytes);
    const QString file = m_dir.filePath("list.vfl");
    QVERIFY(CreateFlipFile(file, paths));
    QCOMPARE(bytesOf(file), bytes);
    QCOMPARE(ReadFlipFile(file), paths);
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestFlipFile::readerIsTolerant_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("paths");

    QTest::newRow("CR LF lines and another unit")
        << QByteArray("# Vice fliplist file\n\nUNIT 9\r\n/a.d64\r\n  /b c.d64  \r\n\r\n")
        << QStringList{"/a.d64", "/b c.d64"};
    QTest::newRow("header only") << QByteArray("# Vice fliplist file\n\nUNIT 8") << QStringList{};
    QTest::newRow("shorter than the header") << QByteArray("# Vice") << QStringList{};
    QTest::newRow("header not checked")
        << QByteArray("xxxxxxxxxxxxxxxxxxxxxxxxxxxx/x.d64") << QStringList{"/x.d64"};
}

void TestFlipFile::readerIsTolerant()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, paths);
    const QString file = m_dir.filePath("in.vfl");
    QFile f(file);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
    f.close();
    QCOMPARE(ReadFlipFile(file), paths);
}

void TestFlipFile::writeFailureIsReported()
{
    QVERIFY(!CreateFlipFile(m_dir.filePath("no/such/folder/list.vfl"), {"/a.d64"}));
    QCOMPARE(m_dialogs.messages().size(), 1);
    QVERIFY(m_dialogs.messages().first().startsWith("CreateFlipFile: "));
}

void TestFlipFile::startsTheTemporaryList()
{
    LaunchPlan plan;
    const QString status = StartFlipList({"/d/One.d64", "/d/Two.d64"}, {true, &plan});
    const QString list = app::gTempPath + "/Vellumdock-FlipFile.vfl";
    QCOMPARE(status, QString("Profil: VICE - Attach Flip list"));
    QCOMPARE(plan.program, m_emulator);
    QCOMPARE(plan.workingFolder, m_dir.filePath("bin") + "/");
    QCOMPARE(plan.arguments, (QStringList{"-flipname", list, "-VICIIdsize"}));
    QCOMPARE(ReadFlipFile(list), (QStringList{"/d/One.d64", "/d/Two.d64"}));
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestFlipFile::onlyFilePathAndInputAreKnown()
{
    const ProfilPtr flip = gProfils.find("14");
    flip->Options = "UseTempFile=@=1@@@-fastload=@=1@@@-l <$FilePath$>=@=1@@@<$input$>=@=1";
    m_dialogs.answerText("-warp");
    LaunchPlan plan;
    QVERIFY(!StartFlipList({"/a.d64"}, {true, &plan}).isEmpty());
    QCOMPARE(plan.arguments, (QStringList{"UseTempFile", "-fastload", "-l",
                                          app::gTempPath + "/Vellumdock-FlipFile.vfl", "-warp"}));

    for (const char* placeholder : {"<$c64filename$>", "<$C64FileIndex$>"}) {
        m_dialogs.clear();
        flip->Options = QString("-x %1=@=1").arg(placeholder);
        QCOMPARE(StartFlipList({"/a.d64"}, {true, &plan}), QString());
        QCOMPARE(m_dialogs.messages(),
                 QStringList{QString("Unbekannter Parameter: ") + placeholder});
    }
}

void TestFlipFile::noProfileForVflIsAFailure()
{
    gStartProfils[11].clear(); // no fall-back to the default profile
    LaunchPlan plan;
    QCOMPARE(StartFlipList({"/a.d64"}, {true, &plan}), QString());
    QCOMPARE(m_dialogs.messages(), QStringList{"Start-Error: Unbekanntes Profil: "});
    QVERIFY(plan.program.isEmpty());

    m_dialogs.clear();
    gStartProfils[11] = "14";
    gEmulators.find("1")->Path = m_dir.filePath("gone");
    QCOMPARE(StartFlipList({"/a.d64"}, {true, &plan}), QString());
    QCOMPARE(m_dialogs.calls.size(), 1);
    QCOMPARE(m_dialogs.calls.first().text, "Datei nicht gefunden: " + m_dir.filePath("gone"));
    QCOMPARE(m_dialogs.calls.first().title, QString("Profil: Attach Flip list"));
}

QTEST_GUILESS_MAIN(TestFlipFile)
#include "tst_flipfile.moc"
