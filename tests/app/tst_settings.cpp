// The settings file: how a value is read (the profile-file rules, Val, flags, the 3200-character
// buffer, ISO-8859-1 files), the keys of MAIN with their defaults and corrections, the version
// migrations, the recent lists, and the writer: section and key order, CR LF, keys passed on for
// the subsystems that don't write theirs yet, and a file that reads and writes back unchanged.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/SettingsWriter.h"
#include "app/WindowPos.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace vd::app;

namespace {

const QString kDefaultImport =
    QStringLiteral(".D64;.D71;.T64;.PRG;.P00;.TAP;.VSF;.C64;.CRT;.G64;.D81;.VFL;.ZIP;.RAR;.7Z;.CAB;"
                   ".BMP;.GIF;.JPG;.PNG;.TIFF;.TXT;.NFO;.DIZ;.PDF");

QByteArray readBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The lines of a written settings text.
QStringList lines(const QString& text)
{
    QStringList l = text.split(QStringLiteral("\r\n"));
    if (!l.isEmpty() && l.last().isEmpty())
        l.removeLast();
    return l;
}

// The lines of one section, without its heading.
QStringList sectionLines(const QString& text, const QString& section)
{
    QStringList out;
    bool in = false;
    for (const QString& line : lines(text)) {
        if (line.startsWith(QLatin1Char('['))) {
            in = line == QLatin1Char('[') + section + QLatin1Char(']');
            continue;
        }
        if (in && !line.isEmpty())
            out << line;
    }
    return out;
}

QStringList keysOf(const QStringList& sectionLines)
{
    QStringList keys;
    for (const QString& line : sectionLines)
        keys << line.section(QLatin1Char('='), 0, 0);
    return keys;
}

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void readsValuesAsTheProfileFunctionsDo_data();
    void readsValuesAsTheProfileFunctionsDo();
    void valTakesTheLeadingNumber_data();
    void valTakesTheLeadingNumber();
    void aChangedFileIsReadAgain();
    void anotherFileIsReadWithItsOwnLimit();
    void windowsFileInIso88591ReadsCorrectly();
    void noFileGivesDefaultsAndACompleteFile();
    void correctionsOnReadAreWrittenBack_data();
    void correctionsOnReadAreWrittenBack();
    void versionMigrationsCompareText_data();
    void versionMigrationsCompareText();
    void recentListsStopAtTheFirstEmptyValue();
    void emptyDatabaseDropsTheOthersAtTheNextExit();
    void addRecentKeepsTwentyNewestFirst();
    void listLayoutIsSplitIntoFour_data();
    void listLayoutIsSplitIntoFour();
    void previewColoursTakeTheBuiltInForMinusOne();
    void writtenFileReadsAndWritesBackIdentical();
    void keysOfLaterSubsystemsArePassedOn();
    void installedPartWriterReplacesPassingOn();
    void garbageFileStartsWithDefaults();

private:
    void writeIni(const QByteArray& bytes);
    QTemporaryDir m_dir;
};

void TestSettings::init()
{
    QVERIFY(m_dir.isValid());
    setProgramFolder(m_dir.path());
    QFile::remove(gIniFile);
    reloadIni();
    gDatabasePath.clear();
    gDialogPath.clear();
}

void TestSettings::cleanup()
{
    for (IniPart part : {IniPart::MainFilters, IniPart::Emulators, IniPart::Profils,
                         IniPart::ExtensionProfiles, IniPart::GameBase})
        setIniPartWriter(part, {});
}

void TestSettings::writeIni(const QByteArray& bytes)
{
    QFile f(gIniFile);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
    f.close();
    reloadIni();
}

void TestSettings::readsValuesAsTheProfileFunctionsDo_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << QByteArray("[MAIN]\r\nFont=CBM\r\n") << "MAIN"
                           << "Font"
                           << "CBM";
    QTest::newRow("missing key gives the default") << QByteArray("[MAIN]\r\nFont=CBM\r\n") << "MAIN"
                                                   << "FontSize"
                                                   << "<default>";
    QTest::newRow("missing section gives the default")
        << QByteArray("[MAIN]\r\nFont=CBM\r\n") << "GAMEBASE"
        << "Font"
        << "<default>";
    QTest::newRow("empty value is empty, not the default")
        << QByteArray("[MAIN]\nDatabase=\n") << "MAIN"
        << "Database"
        << "";
    QTest::newRow("names ignore case") << QByteArray("[main]\nfONT=X\n") << "MAIN"
                                       << "Font"
                                       << "X";
    QTest::newRow("blanks around names and value")
        << QByteArray("  [ MAIN ]  \n  Font  =  C 64  \n") << "MAIN"
        << "Font"
        << "C 64";
    QTest::newRow("enclosing quotes dropped") << QByteArray("[MAIN]\nFont=\"CBM\"\n") << "MAIN"
                                              << "Font"
                                              << "CBM";
    QTest::newRow("a lone quote stays") << QByteArray("[MAIN]\nFont=\"CBM\n") << "MAIN"
                                        << "Font"
                                        << "\"CBM";
    QTest::newRow("first duplicate wins") << QByteArray("[MAIN]\nFont=A\nFont=B\n") << "MAIN"
                                          << "Font"
                                          << "A";
    QTest::newRow("value holds equals signs") << QByteArray("[MAIN]\nListLayout=a=b=c\n") << "MAIN"
                                              << "ListLayout"
                                              << "a=b=c";
    QTest::newRow("line without equals is no key") << QByteArray("[MAIN]\nFont\nFont=Y\n") << "MAIN"
                                                   << "Font"
                                                   << "Y";
    QTest::newRow("key before any section is ignored") << QByteArray("Font=Z\n[MAIN]\n") << "MAIN"
                                                       << "Font"
                                                       << "<default>";
    QTest::newRow("section repeated later is searched too")
        << QByteArray("[MAIN]\nA=1\n[WINDOWS]\n[MAIN]\nFont=W\n") << "MAIN"
        << "Font"
        << "W";
    QTest::newRow("other section's key is not taken")
        << QByteArray("[WINDOWS]\nFont=W\n[MAIN]\n") << "MAIN"
        << "Font"
        << "<default>";
    QTest::newRow("UTF-8 byte order mark") << QByteArray("\xEF\xBB\xBF[MAIN]\nFont=U\n") << "MAIN"
                                           << "Font"
                                           << "U";
    QTest::newRow("UTF-8 umlaut") << QByteArray("[MAIN]\nDialog=/home/j\xC3\xBCrgen\n") << "MAIN"
                                  << "Dialog" << QStringLiteral("/home/jürgen");
}

void TestSettings::readsValuesAsTheProfileFunctionsDo()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, section);
    QFETCH(QString, key);
    QFETCH(QString, expected);
    writeIni(file);
    QCOMPARE(ReadIni(section, key, QStringLiteral("<default>")), expected);
}

void TestSettings::valTakesTheLeadingNumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::newRow("integer") << "2000" << 2000.0;
    QTest::newRow("trailing letters") << "12abc" << 12.0;
    QTest::newRow("word") << "True" << 0.0;
    QTest::newRow("empty") << "" << 0.0;
    QTest::newRow("blanks inside are skipped") << " 1 2 3" << 123.0;
    QTest::newRow("negative") << "-1" << -1.0;
    QTest::newRow("decimal") << "-3.5x" << -3.5;
    QTest::newRow("leading point") << ".5" << 0.5;
    QTest::newRow("exponent") << "1e3" << 1000.0;
    QTest::newRow("exponent without digits") << "7e" << 7.0;
    QTest::newRow("hexadecimal") << "&H1F" << 31.0;
    QTest::newRow("octal") << "&O17" << 15.0;
    QTest::newRow("sign alone") << "-" << 0.0;
    QTest::newRow("comma is no decimal point") << "1,5" << 1.0;
}

void TestSettings::valTakesTheLeadingNumber()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QCOMPARE(Val(text), value);
    QCOMPARE(flag(text), value != 0.0);
}

void TestSettings::aChangedFileIsReadAgain()
{
    writeIni("[MAIN]\r\nFont=First\r\n");
    QCOMPARE(ReadIni(kSectionMain, QStringLiteral("Font"), QString()), QStringLiteral("First"));
    // Written behind the reader's back, without reloadIni: the change on disk is noticed.
    QFile f(gIniFile);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write("[MAIN]\r\nFont=Second one\r\n");
    f.close();
    QCOMPARE(ReadIni(kSectionMain, QStringLiteral("Font"), QString()),
             QStringLiteral("Second one"));
    QVERIFY(QFile::remove(gIniFile));
    QCOMPARE(ReadIni(kSectionMain, QStringLiteral("Font"), QStringLiteral("gone")),
             QStringLiteral("gone"));
}

void TestSettings::anotherFileIsReadWithItsOwnLimit()
{
    // "Paths.ini" of a GameBase: read, never cached as the settings, cut at 2047 characters.
    const QString paths = m_dir.filePath(QStringLiteral("Paths.ini"));
    QFile f(paths);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("[Pictures]\r\n1=/gb/Screenshots\r\n[Long]\r\nx=" + QByteArray(5000, 'x') + "\r\n");
    f.close();
    writeIni("[Pictures]\r\n1=/not/this/one\r\n");
    QCOMPARE(ReadIniFile(paths, QStringLiteral("Pictures"), QStringLiteral("1"), QString()),
             QStringLiteral("/gb/Screenshots"));
    QCOMPARE(ReadIniFile(paths, QStringLiteral("Long"), QStringLiteral("x"), QString()).size(),
             kIniFileValueLimit);
    QCOMPARE(ReadIniFile(m_dir.filePath(QStringLiteral("none.ini")), QStringLiteral("Pictures"),
                         QStringLiteral("1"), QStringLiteral("-")),
             QStringLiteral("-"));
    QCOMPARE(ReadIni(QStringLiteral("Pictures"), QStringLiteral("1"), QString()),
             QStringLiteral("/not/this/one"));
}

void TestSettings::windowsFileInIso88591ReadsCorrectly()
{
    // Written by the Windows program: ANSI bytes, 0xFC is "ü", 0xDF is "ß".
    writeIni("[MAIN]\r\nDatabase=C:\\Spiele\\J\xFCrgen\\Sammlung.vdb\r\n"
             "Dialog=D:\\Gr\xF6\xDF"
             "e\r\nVersion=3.4\r\n");
    loadSettings();
    QCOMPARE(gDatabasePath, QStringLiteral("C:\\Spiele\\Jürgen\\Sammlung.vdb"));
    QCOMPARE(gDialogPath, QStringLiteral("D:\\Größe"));
    // Written back as UTF-8.
    QVERIFY(writeSettings());
    const QByteArray bytes = readBytes(gIniFile);
    QVERIFY(bytes.contains("Database=C:\\Spiele\\J\xC3\xBCrgen\\Sammlung.vdb\r\n"));
    loadSettings();
    QCOMPARE(gDatabasePath, QStringLiteral("C:\\Spiele\\Jürgen\\Sammlung.vdb"));
}

void TestSettings::noFileGivesDefaultsAndACompleteFile()
{
    loadSettings();
    QCOMPARE(gFontName, QStringLiteral("CBM"));
    QCOMPARE(gFontSize, 8);
    QCOMPARE(gViewMode, 1);
    QVERIFY(gPreview);
    QVERIFY(gShowToolbar);
    QVERIFY(!gHideTree && !gCreateMd5Hash && !gCheckC64Files && !gConnectFilesToGB &&
            !gRefreshC64Files && !gSerachArchivFiles && !gTreeSubItems && !gPreviewWindow);
    QCOMPARE(gSkipZipSize, QStringLiteral("5"));
    QCOMPARE(gIniVersion, QString());
    QVERIFY(gDatabases.isEmpty());
    QCOMPARE(gDatabasePath, QString());
    QCOMPARE(gListLayouts, (QStringList{kDefaultListLayout, {}, {}, {}}));
    QCOMPARE(gArchiveExtensions, (QStringList{".ZIP", ".RAR", ".7Z", ".CAB"}));
    // A new file runs the migrations of 3.3 and 3.4.
    QCOMPARE(gImportFiles,
             kDefaultImport + QStringLiteral(";.G64;.D81;.RAR;.BMP;.GIF;.JPG;.PNG;.TIFF"));

    const QString text = settingsText();
    QVERIFY(text.endsWith(QStringLiteral("\r\n")));
    QVERIFY(!text.contains(QRegularExpression(QStringLiteral("[^\r]\n"))));
    const QStringList expectedMain{
        "CreateMd5Hash=0",
        "CheckC64Files=0",
        "ConnectFilesToGB=0",
        "Database=",
        "Dialog=",
        "Font=CBM",
        "FontSize=8",
        "HideTree=0",
        "LanguageFile=",
        "LastFilterRow=0",
        "ListSplitPos=3000",
        "MenuSplitPos=2000",
        "Preview=1",
        "PreviewBackColor=7940149",
        "PreviewForeColor=16744576",
        "PreviewSelectColor=16777215",
        "PreviewSplitPos=9000",
        "PreviewWindow=0",
        "RefreshC64Files=0",
        "SerachArchivFiles=0",
        "ShowToolbar=1",
        "SkipZipSize=5",
        "TreeSubItems=0",
        "ViewMode=1",
        "Version=" + gVersion,
        "ListLayout=" + kDefaultListLayout + "@@@@@@@@@",
        "MainListColumns=",
    };
    QCOMPARE(sectionLines(text, kSectionMain), expectedMain);
    QStringList headings;
    for (const QString& line : lines(text)) {
        if (line.startsWith(QLatin1Char('[')))
            headings << line;
    }
    QCOMPARE(headings, (QStringList{"[MAIN]", "[EMULATORS]", "[PROFILS]", "[EXTENSIONS]",
                                    "[GAMEBASE]", "[WINDOWS]"}));
    QVERIFY(text.contains(QStringLiteral("\r\n\r\n[EMULATORS]\r\n")));
    QCOMPARE(sectionLines(text, kSectionExtensions), QStringList{"ImportFiles=" + gImportFiles});
}

void TestSettings::correctionsOnReadAreWrittenBack_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("written");
    QTest::newRow("FontSize over 20") << QByteArray("FontSize=30") << "FontSize=6";
    QTest::newRow("FontSize under 6") << QByteArray("FontSize=5") << "FontSize=6";
    QTest::newRow("FontSize not a number") << QByteArray("FontSize=big") << "FontSize=6";
    QTest::newRow("FontSize 20 stays") << QByteArray("FontSize=20") << "FontSize=20";
    QTest::newRow("ViewMode 4 (new files)") << QByteArray("ViewMode=4") << "ViewMode=1";
    QTest::newRow("ViewMode 7") << QByteArray("ViewMode=7") << "ViewMode=1";
    QTest::newRow("ViewMode 0") << QByteArray("ViewMode=0") << "ViewMode=1";
    QTest::newRow("ViewMode 6 stays") << QByteArray("ViewMode=6") << "ViewMode=6";
    QTest::newRow("empty Font is CBM") << QByteArray("Font=") << "Font=CBM";
    QTest::newRow("flag True reads as 0") << QByteArray("Preview=True") << "Preview=0";
    QTest::newRow("any number is a set flag") << QByteArray("HideTree=-1") << "HideTree=1";
    QTest::newRow("SkipZipSize kept as text") << QByteArray("SkipZipSize=") << "SkipZipSize=";
    QTest::newRow("split position keeps fractions")
        << QByteArray("MenuSplitPos=2500.5") << "MenuSplitPos=2500.5";
}

void TestSettings::correctionsOnReadAreWrittenBack()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, written);
    writeIni("[MAIN]\r\n" + line + "\r\n");
    loadSettings();
    QVERIFY2(sectionLines(settingsText(), kSectionMain).contains(written),
             qPrintable(sectionLines(settingsText(), kSectionMain).join(QLatin1Char('|'))));
}

void TestSettings::versionMigrationsCompareText_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("importFiles");
    QTest::addColumn<QString>("expected");
    const QString both = QStringLiteral(";.G64;.D81;.RAR;.BMP;.GIF;.JPG;.PNG;.TIFF");
    const QString pictures = QStringLiteral(";.BMP;.GIF;.JPG;.PNG;.TIFF");
    QTest::newRow("3.2 gets both") << "3.2"
                                   << ".d64;.zip"
                                   << ".D64;.ZIP" + both;
    QTest::newRow("3.3 gets the pictures") << "3.3"
                                           << ".D64"
                                           << ".D64" + pictures;
    QTest::newRow("3.4 gets nothing") << "3.4"
                                      << ".D64"
                                      << ".D64";
    QTest::newRow("3.5 Portable gets nothing") << "3.5 Portable"
                                               << ".D64"
                                               << ".D64";
    // Compared as text: "3.10" sorts before "3.3".
    QTest::newRow("3.10 is older than 3.3 as text") << "3.10"
                                                    << ".D64"
                                                    << ".D64" + both;
}

void TestSettings::versionMigrationsCompareText()
{
    QFETCH(QString, version);
    QFETCH(QString, importFiles);
    QFETCH(QString, expected);
    writeIni(QStringLiteral("[MAIN]\r\nVersion=%1\r\n[EXTENSIONS]\r\nImportFiles=%2\r\n")
                 .arg(version, importFiles)
                 .toUtf8());
    loadSettings();
    QCOMPARE(gIniVersion, version);
    QCOMPARE(gImportFiles, expected);
}

void TestSettings::recentListsStopAtTheFirstEmptyValue()
{
    QByteArray file = "[MAIN]\r\nDatabase=/a.vdb\r\nDatabase2=/b.vdb\r\nDatabase3=/a.vdb\r\n"
                      "Database4=/c.vdb\r\nDatabase5=\r\nDatabase6=/lost.vdb\r\n"
                      "Dialog=/in\r\nDialog3=/skipped\r\n";
    for (int n = 1; n <= 25; ++n)
        file += QStringLiteral("Dialog%1=/d%1\r\n").arg(n).toUtf8();
    writeIni(file);
    loadSettings();
    QCOMPARE(gDatabases, (QStringList{"/a.vdb", "/b.vdb", "/c.vdb"}));
    QCOMPARE(gDatabasePath, QStringLiteral("/a.vdb"));
    // Dialog is the first of its family (Dialog1 is no key of it); the first Dialog3 wins; the
    // list holds 20 at most.
    QCOMPARE(gDialogPath, QStringLiteral("/in"));
    QCOMPARE(gDialogs.size(), kRecentLimit);
    QCOMPARE(gDialogs.value(1), QStringLiteral("/d2"));

    // The current catalogue is written as Database, the others from 2 on.
    gDatabasePath = QStringLiteral("/b.vdb");
    const QStringList main = sectionLines(settingsText(), kSectionMain);
    const QStringList databaseLines =
        main.filter(QRegularExpression(QStringLiteral("^Database\\d*=")));
    QCOMPARE(databaseLines,
             (QStringList{"Database=/b.vdb", "Database2=/a.vdb", "Database3=/c.vdb"}));
}

void TestSettings::emptyDatabaseDropsTheOthersAtTheNextExit()
{
    writeIni("[MAIN]\r\nDatabase=\r\nDatabase2=/b.vdb\r\nDatabase3=/c.vdb\r\n");
    loadSettings();
    QVERIFY(gDatabases.isEmpty());
    QVERIFY(writeSettings());
    const QStringList main = sectionLines(QString::fromUtf8(readBytes(gIniFile)), kSectionMain);
    QCOMPARE(main.filter(QStringLiteral("Database")), QStringList{"Database="});
}

void TestSettings::addRecentKeepsTwentyNewestFirst()
{
    QStringList list;
    for (int i = 1; i <= kRecentLimit; ++i)
        AddRecent(list, QStringLiteral("/p%1").arg(i));
    QCOMPARE(list.size(), kRecentLimit);
    QCOMPARE(list.first(), QStringLiteral("/p20"));
    AddRecent(list, QStringLiteral("/new"));
    QCOMPARE(list.size(), kRecentLimit);
    QCOMPARE(list.first(), QStringLiteral("/new"));
    QVERIFY(!list.contains(QStringLiteral("/p1"))); // the oldest left
    AddRecent(list, QStringLiteral("/p10"));        // chosen again: moves to the front
    QCOMPARE(list.first(), QStringLiteral("/p10"));
    QCOMPARE(list.count(QStringLiteral("/p10")), 1);
    QCOMPARE(list.size(), kRecentLimit);
    AddRecent(list, QString());
    QCOMPARE(list.first(), QStringLiteral("/p10"));
}

void TestSettings::listLayoutIsSplitIntoFour_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("layouts");
    QTest::newRow("one layout") << "A" << QStringList{"A", "", "", ""};
    QTest::newRow("four") << "A@@@B@@@C@@@DD" << QStringList{"A", "B", "C", "DD"};
    QTest::newRow("element 3 of one character is emptied")
        << "A@@@B@@@C@@@x" << QStringList{"A", "B", "C", ""};
    QTest::newRow("element 3 of two characters stays")
        << "A@@@B@@@C@@@xy" << QStringList{"A", "B", "C", "xy"};
    QTest::newRow("levels joined by @ stay together")
        << "L1@L2@@@B" << QStringList{"L1@L2", "B", "", ""};
    QTest::newRow("more than four are kept")
        << "A@@@B@@@C@@@DD@@@E" << QStringList{"A", "B", "C", "DD", "E"};
}

void TestSettings::listLayoutIsSplitIntoFour()
{
    QFETCH(QString, value);
    QFETCH(QStringList, layouts);
    QCOMPARE(splitListLayout(value), layouts);
}

void TestSettings::previewColoursTakeTheBuiltInForMinusOne()
{
    writeIni("[MAIN]\r\nPreviewForeColor=-1\r\nPreviewBackColor=255\r\n");
    loadSettings();
    QCOMPARE(gPreviewForeColor, qint64(0xFF8080));
    QCOMPARE(gPreviewBackColor, qint64(255));
    QCOMPARE(gPreviewSelectColor, qint64(0xFFFFFF)); // missing key: -1
    QCOMPARE(previewColor(-1, 42), qint64(42));
    QCOMPARE(previewColor(0, 42), qint64(0)); // black is a colour
}

void TestSettings::writtenFileReadsAndWritesBackIdentical()
{
    writeIni(QStringLiteral(
                 "[MAIN]\r\nCreateMd5Hash=1\r\nDatabase=/c/Sammlung.vdb\r\nDatabase2=/c/Alt.vdb\r\n"
                 "Dialog=/in/Spiele\r\nFont=C-64\r\nFontSize=11\r\nHideTree=1\r\n"
                 "LanguageFile=English.lng\r\nLastFilterRow=2\r\nMenuSplitPos=2430\r\n"
                 "PreviewBackColor=0\r\nViewMode=5\r\nSkipZipSize=12\r\n"
                 "ListLayout=A@B@@@C@@@@@@Z9\r\nMainListColumns=tPath@@@lSize\r\n"
                 "FilterName1=Bilder\r\nFilterDef1=tExtension!@!=!@!PNG!@!And\r\n"
                 "[EMULATORS]\r\nEmulName1=VICE\r\nEmulPath1=/usr/bin/x64sc\r\nEmulType1=1\r\n"
                 "EmulAktiv1=1\r\n[PROFILS]\r\nProfilCount=1\r\nProfilDefault=1\r\n"
                 "[EXTENSIONS]\r\nImportFiles=.D64;.T64\r\n.D64=1\r\n.txt=Notepad\r\n"
                 "[GAMEBASE]\r\nGameBaseDB=/gb/GBC_v07.mdb\r\n"
                 "[WINDOWS]\r\nfrmOptions=1500;1500;6000;9000;0\r\n"
                 "frmMain=0;0;9000;13500;2\r\n")
                 .toUtf8());
    loadSettings();
    QVERIFY(writeSettings());
    const QByteArray first = readBytes(gIniFile);
    loadSettings();
    QCOMPARE(QString::fromUtf8(settingsText().toUtf8()), QString::fromUtf8(first));
    QVERIFY(writeSettings());
    QCOMPARE(readBytes(gIniFile), first);
    // What the first file held survived the way through.
    const QString text = QString::fromUtf8(first);
    for (const char* line :
         {"Database2=/c/Alt.vdb", "FontSize=11", "ViewMode=5", "ListLayout=A@B@@@C@@@@@@Z9",
          "FilterDef1=tExtension!@!=!@!PNG!@!And", "EmulPath1=/usr/bin/x64sc", ".D64=1",
          "GameBaseDB=/gb/GBC_v07.mdb", "frmMain=0;0;9000;13500;2"})
        QVERIFY2(text.contains(QString::fromUtf8(line) + QStringLiteral("\r\n")), line);
}

void TestSettings::keysOfLaterSubsystemsArePassedOn()
{
    writeIni(
        "[MAIN]\r\nVersion=3.4\r\nFilterDef1=x\r\nUnknownKey=1\r\nFilterName1=Eins\r\nfrmMain=1;2;"
        "3;4;0\r\n"
        "FilterName2=Zwei\r\n[EXTENSIONS]\r\n.D64=4\r\nIMPORTFILES=.d64\r\n.txt=\"my viewer\"\r\n"
        "[EMULATORS]\r\nEmulName1=A\r\nEmulName1=B\r\n");
    loadSettings();
    const QString text = settingsText();
    const QStringList main = keysOf(sectionLines(text, kSectionMain));
    // The filters stand last in MAIN, in the order of the file; unknown keys and the old
    // geometry key disappear; the old geometry moved to WINDOWS.
    QCOMPARE(main.mid(main.indexOf(QStringLiteral("MainListColumns")) + 1),
             (QStringList{"FilterDef1", "FilterName1", "FilterName2"}));
    QVERIFY(!main.contains(QStringLiteral("UnknownKey")));
    QVERIFY(!main.contains(QStringLiteral("frmMain")));
    QCOMPARE(sectionLines(text, kSectionWindows), QStringList{"frmMain=1;2;3;4;0"});
    // ImportFiles first, the extension keys after it as they stood, quotes and all.
    QCOMPARE(sectionLines(text, kSectionExtensions),
             (QStringList{"ImportFiles=.D64", ".D64=4", ".txt=\"my viewer\""}));
    // A duplicate key is written once, with the value that was read.
    QCOMPARE(sectionLines(text, kSectionEmulators), QStringList{"EmulName1=A"});
}

void TestSettings::installedPartWriterReplacesPassingOn()
{
    writeIni("[EMULATORS]\r\nEmulName1=Old\r\n[GAMEBASE]\r\nAdultContent=1\r\n");
    loadSettings();
    setIniPartWriter(IniPart::Emulators, [](IniText& ini) {
        ini.add(QStringLiteral("EmulName1"), QStringLiteral("VICE"));
        ini.add(QStringLiteral("EmulAktiv1"), true);
    });
    const QString text = settingsText();
    QCOMPARE(sectionLines(text, kSectionEmulators),
             (QStringList{"EmulName1=VICE", "EmulAktiv1=1"}));
    QCOMPARE(sectionLines(text, kSectionGameBase), QStringList{"AdultContent=1"});
    // A value can't break a line.
    IniText ini;
    ini.section(QStringLiteral("S"));
    ini.add(QStringLiteral("k"), QStringLiteral("a\r\nb\nc"));
    QCOMPARE(ini.text(), QStringLiteral("[S]\r\nk=a  b c\r\n"));
}

void TestSettings::garbageFileStartsWithDefaults()
{
    const char binary[] = "\x00\x01garbage\xFF\xFE\r\n";
    QByteArray file(binary, sizeof(binary) - 1);
    file += "=novalue\r\n[MAIN\r\nFontSize\r\n"
            "[MAIN]\r\n=\r\nFontSize==9\r\nViewMode=3\r\nViewMode=abc\r\nPreview=\r\n"
            "Database=/x.vdb\r\nDatabase=/y.vdb\r\n]\r\nListLayout=";
    file += QByteArray(10000, 'L');
    file += "\r\nMainListColumns=";
    file += QByteArray(3199, 'M');
    file += "\r\n[]\r\nHideTree=1\r\n"; // a section without a name is no MAIN
    writeIni(file);
    loadSettings();
    QCOMPARE(gFontSize, 6); // "=9" has no leading number
    QCOMPARE(gViewMode, 3); // the first ViewMode wins
    QCOMPARE(gDatabases, QStringList{"/x.vdb"});
    QVERIFY(!gPreview); // present but empty: 0
    QCOMPARE(gListLayouts.value(0).size(), kIniValueLimit);
    QCOMPARE(gMainListColumns.size(), kIniValueLimit);
    QCOMPARE(gFontName, QStringLiteral("CBM"));
    QVERIFY(!gHideTree);
    QVERIFY(writeSettings());
    loadSettings();
    QCOMPARE(gViewMode, 3);
    QCOMPARE(gDatabasePath, QStringLiteral("/x.vdb"));
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
