// The window-free steps of the start: emptying Temp with Retry and Cancel, recognising a first
// run, the caption, and deleting Temp's plain files after a catalogue was chosen.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Startup.h"
#include "platform/ScriptedDialogService.h"
#include "StuckFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace vd;
using namespace vd::app;

namespace {

void touch(const QString& path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write("x");
}

} // namespace

class TestStartup : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void cleanTempEmptiesTheFolder();
    void cleanTempAsksRetryOrCancel();
    void retryTriesAgain();
    void firstRunWhenNoEmulatorAndNoProfileIsStored_data();
    void firstRunWhenNoEmulatorAndNoProfileIsStored();
    void captionNamesTheCatalogue();
    void deleteTempFilesLeavesFolders();

private:
    QTemporaryDir m_dir;
    platform::ScriptedDialogService m_dialogs;
};

void TestStartup::init()
{
    QVERIFY(m_dir.isValid());
    setProgramFolder(m_dir.path());
    QDir(gTempPath).removeRecursively();
    QVERIFY(QDir().mkpath(gTempPath));
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
}

void TestStartup::cleanup()
{
    platform::setDialogService(nullptr);
}

void TestStartup::cleanTempEmptiesTheFolder()
{
    touch(gTempPath + QStringLiteral("/a.d64"));
    touch(gTempPath + QStringLiteral("/Game.zip/inner/b.prg"));
    bool ok = false;
    CleanTempFolder(ok);
    QVERIFY(ok);
    QVERIFY(QDir(gTempPath).exists());
    QVERIFY(QDir(gTempPath).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestStartup::cleanTempAsksRetryOrCancel()
{
    test::StuckFile stuck(gTempPath);
    if (!stuck.locked())
        QSKIP("This file system lets every file in Temp be deleted; nothing to refuse with.");
    m_dialogs.answer(platform::vbOK);     // the delete error
    m_dialogs.answer(platform::vbCancel); // Retry or Cancel?
    bool ok = true;
    CleanTempFolder(ok);
    QVERIFY(!ok);
    QCOMPARE(m_dialogs.calls.size(), 2);
    QVERIFY(m_dialogs.calls[0].text.startsWith(QStringLiteral("Delete-Error: ")));
    QCOMPARE(m_dialogs.calls[1].text,
             QStringLiteral("Temp-Verzeichnis kann nicht gelöscht werden: ") + gTempPath);
    QCOMPARE(m_dialogs.calls[1].style, 21);
    QVERIFY(m_dialogs.scriptErrors.isEmpty());
}

namespace {

// Answers Retry; at the second Retry/Cancel box the user has freed the file.
class ReleasingDialogs : public platform::ScriptedDialogService
{
public:
    test::StuckFile* file = nullptr;
    int prompts = 0;
    int msgBox(const QString& text, int style, const QString& title) override
    {
        if (style == 21 && ++prompts == 2)
            file->unlock();
        return ScriptedDialogService::msgBox(text, style, title);
    }
};

} // namespace

void TestStartup::retryTriesAgain()
{
    test::StuckFile stuck(gTempPath);
    if (!stuck.locked())
        QSKIP("This file system lets every file in Temp be deleted; nothing to refuse with.");
    ReleasingDialogs dialogs;
    dialogs.file = &stuck;
    for (int i = 0; i < 2; ++i) {
        dialogs.answer(platform::vbOK);    // the delete error
        dialogs.answer(platform::vbRetry); // try again
    }
    platform::setDialogService(&dialogs);
    bool ok = false;
    CleanTempFolder(ok);
    QVERIFY(ok);
    QCOMPARE(dialogs.prompts, 2);
    QCOMPARE(dialogs.pendingAnswers(), 0);
    QVERIFY(QDir(gTempPath).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot));
}

void TestStartup::firstRunWhenNoEmulatorAndNoProfileIsStored_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("firstRun");
    QTest::newRow("no file") << QByteArray() << true;
    QTest::newRow("MAIN only") << QByteArray("[MAIN]\r\nDatabase=/x.vdb\r\n") << true;
    QTest::newRow("an emulator") << QByteArray("[EMULATORS]\r\nEmulName1=VICE\r\n") << false;
    QTest::newRow("an empty emulator key still counts")
        << QByteArray("[EMULATORS]\r\nEmulName1=\r\n") << false;
    QTest::newRow("a profile count") << QByteArray("[PROFILS]\r\nProfilCount=0\r\n") << false;
    QTest::newRow("second emulator only")
        << QByteArray("[EMULATORS]\r\nEmulName2=VICE\r\n") << true;
}

void TestStartup::firstRunWhenNoEmulatorAndNoProfileIsStored()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, firstRun);
    QFile::remove(gIniFile);
    if (!file.isEmpty()) {
        QFile f(gIniFile);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(file);
    }
    reloadIni();
    QCOMPARE(isFirstRun(), firstRun);
}

void TestStartup::captionNamesTheCatalogue()
{
    QCOMPARE(mainCaption(QString()), QStringLiteral("Vellumdock"));
    QCOMPARE(mainCaption(QStringLiteral("/c64/Sammlung.vdb")),
             QStringLiteral("Vellumdock ") + programVersion() +
                 QStringLiteral(" Portable - /c64/Sammlung.vdb"));
}

void TestStartup::deleteTempFilesLeavesFolders()
{
    touch(gTempPath + QStringLiteral("/start.d64"));
    touch(gTempPath + QStringLiteral("/.hidden"));
    touch(gTempPath + QStringLiteral("/Game.zip/b.prg"));
    QVERIFY(deleteTempFiles());
    QCOMPARE(QDir(gTempPath).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{"Game.zip"});
    QVERIFY(QFile::exists(gTempPath + QStringLiteral("/Game.zip/b.prg")));
}

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
