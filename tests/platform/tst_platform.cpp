// Single-byte text, the scripted dialogs, file dialog filters and the program folder.

#include "app/Globals.h"
#include "platform/DialogService.h"
#include "platform/FileFilter.h"
#include "platform/Latin1.h"
#include "platform/ProgramFolder.h"
#include "platform/ScriptedDialogService.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

using namespace vd::platform;

class TestPlatform : public QObject
{
    Q_OBJECT

private slots:
    void latin1RoundTripsEveryByte();
    void latin1ReplacesWideCharacters_data();
    void latin1ReplacesWideCharacters();

    void defaultAnswerFollowsDefaultButton_data();
    void defaultAnswerFollowsDefaultButton();
    void scriptedAnswersComeInOrder();
    void scriptedAnswersOfTheWrongKindAreReported();
    void echoWritesOneLinePerMessage();
    void unsetServiceAnswersDefaults();

    void fileFilterToQt_data();
    void fileFilterToQt();

    void homeOptionIsTakenOut_data();
    void homeOptionIsTakenOut();
    void homeFolderIsCreatedWithTemp();
    void defaultFolderIsExecutableFolderWhenWritable();
    void defaultFolderFallsBackToUserData();
    void homeThatIsAFileFails();
};

void TestPlatform::latin1RoundTripsEveryByte()
{
    QByteArray bytes;
    for (int b = 0; b < 256; ++b)
        bytes.append(char(b));
    const QString text = latin1ToText(bytes);
    QCOMPARE(text.size(), 256);
    for (int b = 0; b < 256; ++b)
        QCOMPARE(text[b].unicode(), ushort(b));
    QCOMPARE(text[0xA0], QChar(0x00A0)); // the padding of C64 names
    QCOMPARE(textToLatin1(text), bytes);
}

void TestPlatform::latin1ReplacesWideCharacters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("euro") << QStringLiteral("5 \u20AC") << QByteArray("5 ?");
    QTest::newRow("last latin1 then first beyond")
        << QStringLiteral("\u00FF\u0100") << QByteArray("\xFF?");
    QTest::newRow("surrogate pair is one character")
        << (QStringLiteral("a") + QString::fromUcs4(U"\U0001F600") + QStringLiteral("b"))
        << QByteArray("a?b");
    QTest::newRow("lone surrogate") << QString(QChar(0xD800)) << QByteArray("?");
}

void TestPlatform::latin1ReplacesWideCharacters()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QCOMPARE(textToLatin1(text), bytes);
}

void TestPlatform::defaultAnswerFollowsDefaultButton_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("answer");
    QTest::newRow("ok only") << int(vbOKOnly) << int(vbOK);
    QTest::newRow("ok only, icon") << int(vbExclamation) << int(vbOK);
    QTest::newRow("ok cancel") << int(vbOKCancel) << int(vbOK);
    QTest::newRow("ok cancel, 2nd") << int(vbOKCancel | vbDefaultButton2) << int(vbCancel);
    QTest::newRow("yes no") << int(vbYesNo | vbQuestion) << int(vbYes);
    QTest::newRow("yes no, 2nd") << int(vbYesNo | vbQuestion | vbDefaultButton2) << int(vbNo);
    QTest::newRow("yes no, 3rd is beyond") << int(vbYesNo | vbDefaultButton3) << int(vbYes);
    QTest::newRow("yes no cancel, 3rd") << int(vbYesNoCancel | vbDefaultButton3) << int(vbCancel);
    QTest::newRow("retry cancel, style 21") << 21 << int(vbRetry);
    QTest::newRow("retry cancel, 2nd") << int(vbRetryCancel | vbDefaultButton2) << int(vbCancel);
    QTest::newRow("abort retry ignore") << int(vbAbortRetryIgnore) << int(vbAbort);
    QTest::newRow("abort retry ignore, 2nd")
        << int(vbAbortRetryIgnore | vbDefaultButton2) << int(vbRetry);
}

void TestPlatform::defaultAnswerFollowsDefaultButton()
{
    QFETCH(int, style);
    QFETCH(int, answer);
    QCOMPARE(defaultAnswer(style), answer);
    ScriptedDialogService service;
    QCOMPARE(service.msgBox(QStringLiteral("?"), style), answer);
}

void TestPlatform::scriptedAnswersComeInOrder()
{
    ScriptedDialogService s;
    s.answer(vbNo);
    s.answerText(QStringLiteral("Disk 1"));
    s.answerCancel();
    s.answerText(QStringLiteral("/c64/new.vdb"));
    QCOMPARE(s.pendingAnswers(), 4);

    QCOMPARE(s.msgBox(QStringLiteral("Löschen?"), vbYesNo | vbQuestion, QStringLiteral("T")),
             int(vbNo));
    QCOMPARE(s.inputBox(QStringLiteral("Name:"), QStringLiteral("Eingabe"), QStringLiteral("x")),
             std::optional<QString>(QStringLiteral("Disk 1")));
    QCOMPARE(
        s.openFile(QStringLiteral("Öffnen"), QStringLiteral("D64|*.d64"), QStringLiteral("/c64")),
        QString());
    QCOMPARE(s.saveFile(QStringLiteral("Neu"), QStringLiteral("Datenbank|*.vdb"), {}),
             QStringLiteral("/c64/new.vdb"));
    // The script is used up: default buttons and cancelled dialogs from here on.
    QCOMPARE(s.pendingAnswers(), 0);
    QCOMPARE(s.msgBox(QStringLiteral("Weiter?"), vbYesNo), int(vbYes));
    QCOMPARE(s.inputBox(QStringLiteral("Kennwort:"), {}), std::nullopt);
    QCOMPARE(s.chooseFolder(QStringLiteral("Ordner"), QStringLiteral("/c64")), QString());

    // What was asked and what was answered, in order.
    QStringList record;
    for (const ScriptedDialogService::Call& c : s.calls)
        record << QStringLiteral("%1|%2|%3|%4|%5|%6|%7|%8")
                      .arg(int(c.kind))
                      .arg(c.text, c.title)
                      .arg(c.style)
                      .arg(c.start)
                      .arg(c.answer)
                      .arg(c.answerText)
                      .arg(c.cancelled);
    QCOMPARE(record, QStringList({
                         "0|Löschen?|T|36||7||0",
                         "1|Name:|Eingabe|0|x|0|Disk 1|0",
                         "2|D64|*.d64|Öffnen|0|/c64|0||1",
                         "3|Datenbank|*.vdb|Neu|0||0|/c64/new.vdb|0",
                         "0|Weiter?||4||6||0",
                         "1|Kennwort:||0||0||1",
                         "4||Ordner|0|/c64|0||1",
                     }));
    QCOMPARE(s.messages(), QStringList({QStringLiteral("Löschen?"), QStringLiteral("Weiter?")}));
    QVERIFY(s.scriptErrors.isEmpty());

    s.clear();
    QVERIFY(s.calls.isEmpty());
}

void TestPlatform::scriptedAnswersOfTheWrongKindAreReported()
{
    ScriptedDialogService s;
    s.answerText(QStringLiteral("oops"));
    s.answer(vbOK);
    s.answerCancel();
    QCOMPARE(s.msgBox(QStringLiteral("A"), vbOKCancel | vbDefaultButton2), int(vbCancel));
    QCOMPARE(s.inputBox(QStringLiteral("B"), {}), std::nullopt);
    QCOMPARE(s.scriptErrors.size(), 2);
    QVERIFY(s.scriptErrors[0].contains(QStringLiteral("oops")));
    // Cancel fits a message box too: it answers vbCancel even where the box has no Cancel.
    QCOMPARE(s.msgBox(QStringLiteral("C"), vbYesNo), int(vbCancel));
    QCOMPARE(s.scriptErrors.size(), 2);
}

void TestPlatform::echoWritesOneLinePerMessage()
{
    QString echoed;
    QTextStream stream(&echoed);
    ScriptedDialogService s;
    s.setEcho(&stream);
    s.msgBox(QStringLiteral("Dies ist keine Vellumdock-Datenbank: /x.vdb\r\nno database"),
             vbCritical);
    s.inputBox(QStringLiteral("not echoed"), {});
    s.msgBox(QStringLiteral("zwei\nZeilen"));
    QCOMPARE(echoed, QStringLiteral(
                         "Dies ist keine Vellumdock-Datenbank: /x.vdb no database\nzwei Zeilen\n"));
    QCOMPARE(s.calls.size(), 3);

    // The command line's service: the same lines, default answers, no record.
    echoed.clear();
    ConsoleDialogService console(&stream);
    QCOMPARE(console.msgBox(QStringLiteral("Temp-Verzeichnis kann nicht gelöscht werden: /t"), 21),
             int(vbRetry));
    QCOMPARE(console.msgBox(QStringLiteral("Sicher?"), vbYesNo | vbDefaultButton2), int(vbNo));
    QCOMPARE(console.saveFile(QStringLiteral("Neu"), {}, {}), QString());
    QCOMPARE(echoed, QStringLiteral("Temp-Verzeichnis kann nicht gelöscht werden: /t\nSicher?\n"));
    QVERIFY(console.calls.isEmpty());
}

void TestPlatform::unsetServiceAnswersDefaults()
{
    setDialogService(nullptr);
    QCOMPARE(dialogs().msgBox(QStringLiteral("?"), vbYesNo | vbDefaultButton2), int(vbNo));
    QVERIFY(dialogs().retryCancel(QStringLiteral("?")));
    QCOMPARE(dialogs().inputBox(QStringLiteral("?"), {}), std::nullopt);
    QCOMPARE(dialogs().openFile({}, {}, {}), QString());

    ScriptedDialogService scripted;
    scripted.answer(vbNo);
    setDialogService(&scripted);
    QVERIFY(!dialogs().yesNo(QStringLiteral("Wirklich?")));
    QCOMPARE(scripted.messages(), QStringList{QStringLiteral("Wirklich?")});
    QCOMPARE(scripted.calls[0].style, int(vbYesNo | vbQuestion));
    setDialogService(nullptr);
    dialogs().msgBox(QStringLiteral("after"));
    QCOMPARE(scripted.calls.size(), 1);
}

void TestPlatform::fileFilterToQt_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("qt");
    QTest::newRow("one") << QStringLiteral("Datenbank|*.vdb")
                         << QStringLiteral("Datenbank (*.vdb *.VDB)");
    QTest::newRow("several, all files")
        << QStringLiteral("C64-Files|*.d64;*.T64|Alle Dateien|*.*")
        << QStringLiteral("C64-Files (*.d64 *.D64 *.t64 *.T64);;Alle Dateien (*)");
    QTest::newRow("pattern without letters")
        << QStringLiteral("Nummern|*.1") << QStringLiteral("Nummern (*.1)");
    QTest::newRow("trailing bar") << QStringLiteral("Text|*.txt|")
                                  << QStringLiteral("Text (*.txt *.TXT)");
    QTest::newRow("caption only") << QStringLiteral("Alles") << QStringLiteral("Alles (*)");
    QTest::newRow("empty") << QString() << QString();
}

void TestPlatform::fileFilterToQt()
{
    QFETCH(QString, filter);
    QFETCH(QString, qt);
    QCOMPARE(qtFileFilter(filter), qt);
}

void TestPlatform::homeOptionIsTakenOut_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("home");
    QTest::addColumn<bool>("missing");
    QTest::addColumn<QStringList>("rest");
    QTest::newRow("none") << QStringList{"new", "x"} << QString() << false
                          << QStringList{"new", "x"};
    QTest::newRow("separate") << QStringList{"--home", "/h", "new", "x"} << QStringLiteral("/h")
                              << false << QStringList{"new", "x"};
    QTest::newRow("joined") << QStringList{"--home=/h b", "sql"} << QStringLiteral("/h b") << false
                            << QStringList{"sql"};
    QTest::newRow("behind the command") << QStringList{"new", "x", "--home", "/h"}
                                        << QStringLiteral("/h") << false << QStringList{"new", "x"};
    QTest::newRow("last wins") << QStringList{"--home=/a", "--home", "/b"} << QStringLiteral("/b")
                               << false << QStringList{};
    QTest::newRow("no folder") << QStringList{"new", "--home"} << QString() << true
                               << QStringList{"new"};
    QTest::newRow("empty folder") << QStringList{"--home="} << QString() << true << QStringList{};
    QTest::newRow("after --") << QStringList{"sql", "--", "--home", "/h"} << QString() << false
                              << QStringList{"sql", "--home", "/h"};
}

void TestPlatform::homeOptionIsTakenOut()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, home);
    QFETCH(bool, missing);
    QFETCH(QStringList, rest);
    const HomeOption option = takeHomeOption(arguments);
    QCOMPARE(option.home, home);
    QCOMPARE(option.missingValue, missing);
    QCOMPARE(option.arguments, rest);
}

void TestPlatform::homeFolderIsCreatedWithTemp()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString home = tmp.filePath(QStringLiteral("deep/home"));
    QString error;
    QVERIFY(initProgramFolder(home, tmp.path(), &error));
    QVERIFY(error.isEmpty());
    QCOMPARE(vd::app::gAppPath, home + QLatin1Char('/'));
    QCOMPARE(vd::app::gTempPath, home + QStringLiteral("/Temp"));
    QVERIFY(QFileInfo(home + QStringLiteral("/Temp")).isDir());
    QVERIFY(!QFileInfo::exists(home + QStringLiteral("/Lang")));
    QVERIFY(!QFileInfo::exists(home + QStringLiteral("/Tools")));

    // A relative folder is taken from the current folder; an existing Temp is kept.
    QFile keep(home + QStringLiteral("/Temp/keep"));
    QVERIFY(keep.open(QIODevice::WriteOnly));
    keep.close();
    const QString previous = QDir::currentPath();
    QVERIFY(QDir::setCurrent(tmp.filePath(QStringLiteral("deep"))));
    const bool ok = initProgramFolder(QStringLiteral("home"), {});
    QDir::setCurrent(previous);
    QVERIFY(ok);
    QCOMPARE(vd::app::gAppPath, home + QLatin1Char('/'));
    QVERIFY(keep.exists());
}

void TestPlatform::defaultFolderIsExecutableFolderWhenWritable()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    QVERIFY(initProgramFolder({}, tmp.path()));
    QCOMPARE(vd::app::gAppPath, tmp.path() + QLatin1Char('/'));
    QVERIFY(QFileInfo(tmp.filePath(QStringLiteral("Temp"))).isDir());
}

void TestPlatform::defaultFolderFallsBackToUserData()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QByteArray saved = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", QFile::encodeName(tmp.filePath(QStringLiteral("data"))));
    // A folder that does not exist cannot be written to.
    const QString missingExeFolder = tmp.filePath(QStringLiteral("no/such/bin"));
    const QString expected = tmp.filePath(QStringLiteral("data/vellumdock"));
    QCOMPARE(defaultProgramFolder(missingExeFolder), expected);
    const bool ok = initProgramFolder({}, missingExeFolder);
    if (saved.isNull())
        qunsetenv("XDG_DATA_HOME");
    else
        qputenv("XDG_DATA_HOME", saved);
    QVERIFY(ok);
    QCOMPARE(vd::app::gAppPath, expected + QLatin1Char('/'));
    QVERIFY(QFileInfo(expected + QStringLiteral("/Temp")).isDir());
    QVERIFY(!QFileInfo::exists(missingExeFolder));
}

void TestPlatform::homeThatIsAFileFails()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString file = tmp.filePath(QStringLiteral("plain"));
    QFile f(file);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.close();
    vd::app::setProgramFolder(tmp.path());
    QString error;
    QVERIFY(!initProgramFolder(file, {}, &error));
    QVERIFY2(error.contains(file), qPrintable(error));
    QCOMPARE(vd::app::gAppPath, tmp.path() + QLatin1Char('/')); // left as it was
}

QTEST_GUILESS_MAIN(TestPlatform)
#include "tst_platform.moc"
