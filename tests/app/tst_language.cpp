// Language files: the lookup rules of Translate (hot keys, colons, case, the parameter), the
// lines that count, the encodings a file may come in, the way back to the German key, the
// messages for files that can't be used, and the language "NEW" that writes a new file.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "platform/ScriptedDialogService.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QtTest>

using namespace vd;
using app::Translate;
using app::TranslateText;

namespace {

const QString kLines = QStringLiteral("Dateien@@Files\r\n"
                                      "Abbrechen@@Cancel\r\n"
                                      "Größe@@Size\r\n"
                                      "Datei @1 fehlt@@File @1 is missing\r\n"
                                      "Speichern@@&Save\r\n"
                                      "Neu@@New@@x\r\n"
                                      "Nur ein Kommentar\r\n"
                                      "Öffnen@@Open\r\n"
                                      "öffnen@@open (second)\r\n");

QByteArray encoded(const QString& text, QStringConverter::Encoding encoding, bool bom)
{
    QStringEncoder encoder(encoding, bom ? QStringConverter::Flag::WriteBom
                                         : QStringConverter::Flag::Default);
    return encoder.encode(text);
}

QByteArray windows1252(const QString& text)
{
    QByteArray bytes;
    for (const QChar c : text)
        bytes += c == QChar(0x20AC) ? char(0x80) : char(c.unicode()); // the test's texts only
    return bytes;
}

QByteArray readBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class TestLanguage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void lookupKeepsColonsAndDropsHotKeys_data();
    void lookupKeepsColonsAndDropsHotKeys();
    void onlyLinesOfTwoPartsCount();
    void everyEncodingReadsTheSame_data();
    void everyEncodingReadsTheSame();
    void reverseGivesBackTheKey();
    void germanLeavesTextsAsTheyCame();
    void windowCachesFallBackToTheFile();
    void unusableFilesAreReportedAndGermanStays_data();
    void unusableFilesAreReportedAndGermanStays();
    void newCollectsEachTextOnceAndWritesTheFile();

private:
    bool load(const QString& name, const QByteArray& bytes);

    QTemporaryDir m_home;
    platform::ScriptedDialogService m_dialogs;
};

void TestLanguage::init()
{
    QVERIFY(m_home.isValid());
    app::setProgramFolder(m_home.path());
    QDir(app::gLangPath).removeRecursively();
    QVERIFY(QDir().mkpath(app::gLangPath));
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
}

void TestLanguage::cleanup()
{
    app::gLanguageFile.clear();
    QVERIFY(app::LoadLanguage());
    platform::setDialogService(nullptr);
}

bool TestLanguage::load(const QString& name, const QByteArray& bytes)
{
    QFile f(app::gLangPath + name);
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        return false;
    f.close();
    app::gLanguageFile = name;
    return app::LoadLanguage();
}

void TestLanguage::lookupKeepsColonsAndDropsHotKeys_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("param");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << "Dateien"
                           << ""
                           << "Files";
    QTest::newRow("colon") << "Dateien:"
                           << ""
                           << "Files:";
    QTest::newRow("colon and blank") << "Dateien: "
                                     << ""
                                     << "Files: ";
    QTest::newRow("hot key") << "&Abbrechen"
                             << ""
                             << "Cancel";
    QTest::newRow("other case") << "ABBRECHEN"
                                << ""
                                << "Cancel";
    QTest::newRow("umlaut") << "größe:"
                            << ""
                            << "Size:";
    QTest::newRow("translation brings its hot key") << "&Speichern"
                                                    << ""
                                                    << "&Save";
    QTest::newRow("parameter") << "Datei @1 fehlt"
                               << "a.d64"
                               << "File a.d64 is missing";
    QTest::newRow("unknown stays German") << "Unbekannt: "
                                          << ""
                                          << "Unbekannt: ";
    QTest::newRow("unknown loses its hot key") << "&Unbekannt"
                                               << ""
                                               << "Unbekannt";
    QTest::newRow("first of a repeated key") << "ÖFFNEN"
                                             << ""
                                             << "Open";
    QTest::newRow("empty") << ""
                           << ""
                           << "";
}

void TestLanguage::lookupKeepsColonsAndDropsHotKeys()
{
    QFETCH(QString, text);
    QFETCH(QString, param);
    QFETCH(QString, expected);
    QVERIFY(load(QStringLiteral("English.lng"), kLines.toUtf8()));
    QCOMPARE(Translate(text, param), expected);
    QCOMPARE(Translate(text, param), expected); // the second time from the cache
}

void TestLanguage::onlyLinesOfTwoPartsCount()
{
    QVERIFY(load(QStringLiteral("Lines.lng"),
                 "Neu@@New@@x\nNur ein Kommentar\n@@no key\nAbbrechen@@@Cancel\nEnde@@End"));
    QCOMPARE(Translate(QStringLiteral("Neu")), QStringLiteral("Neu")); // three parts
    QCOMPARE(Translate(QStringLiteral("Nur ein Kommentar")), QStringLiteral("Nur ein Kommentar"));
    QCOMPARE(Translate(QStringLiteral("Abbrechen")), QStringLiteral("@Cancel"));
    QCOMPARE(Translate(QStringLiteral("Ende")), QStringLiteral("End")); // the last line, no LF
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestLanguage::everyEncodingReadsTheSame_data()
{
    const QString text = QStringLiteral("Größe@@Taille €\r\nÄndern@@Modifier\r\n");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("UTF-8") << text.toUtf8();
    QTest::newRow("UTF-8, BOM") << encoded(text, QStringConverter::Utf8, true);
    QTest::newRow("UTF-16 LE, BOM") << encoded(text, QStringConverter::Utf16LE, true);
    QTest::newRow("UTF-16 BE, BOM") << encoded(text, QStringConverter::Utf16BE, true);
    QTest::newRow("Windows-1252") << windows1252(text);
    QTest::newRow("LF only") << QString(text).remove(QLatin1Char('\r')).toUtf8();
}

void TestLanguage::everyEncodingReadsTheSame()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(load(QStringLiteral("French.lng"), bytes));
    QCOMPARE(Translate(QStringLiteral("Größe: ")), QStringLiteral("Taille €: "));
    QCOMPARE(Translate(QStringLiteral("ändern")), QStringLiteral("Modifier"));
    QCOMPARE(TranslateText(QStringLiteral("taille €"), true), QStringLiteral("Größe"));
}

void TestLanguage::reverseGivesBackTheKey()
{
    QVERIFY(load(QStringLiteral("English.lng"), kLines.toUtf8()));
    QCOMPARE(TranslateText(QStringLiteral("Files"), true), QStringLiteral("Dateien"));
    QCOMPARE(TranslateText(QStringLiteral("FILES: "), true), QStringLiteral("Dateien: "));
    QCOMPARE(TranslateText(QStringLiteral("&Cancel"), true), QStringLiteral("Abbrechen"));
    QCOMPARE(TranslateText(QStringLiteral("&Save"), true), QStringLiteral("Speichern"));
    QCOMPARE(TranslateText(QStringLiteral("File @1 is missing"), true),
             QStringLiteral("Datei @1 fehlt"));
    QCOMPARE(TranslateText(QStringLiteral("&Nowhere"), true), QStringLiteral("&Nowhere"));
    // Forward and back again ends where it started.
    for (const QString& german : {QStringLiteral("Dateien:"), QStringLiteral("Größe: ")})
        QCOMPARE(TranslateText(TranslateText(german, false), true), german);
}

void TestLanguage::germanLeavesTextsAsTheyCame()
{
    QCOMPARE(app::CurrentLanguage(), QString());
    QCOMPARE(Translate(QStringLiteral("&Abbrechen:")), QStringLiteral("&Abbrechen:"));
    QCOMPARE(Translate(QStringLiteral("Datei @1 fehlt"), QStringLiteral("x")),
             QStringLiteral("Datei x fehlt"));
    QCOMPARE(Translate(QStringLiteral("Datei @1 fehlt")), QStringLiteral("Datei @1 fehlt"));
    QCOMPARE(TranslateText(QStringLiteral("Files"), true), QStringLiteral("Files"));
    QVERIFY(!app::WriteNewLanguageFile());
}

void TestLanguage::windowCachesFallBackToTheFile()
{
    QVERIFY(load(QStringLiteral("English.lng"), kLines.toUtf8()));
    app::EnterForm(QStringLiteral("frmOptions"));
    QCOMPARE(Translate(QStringLiteral("&Abbrechen")), QStringLiteral("Cancel"));
    QCOMPARE(Translate(QStringLiteral("Unbekannt")), QStringLiteral("Unbekannt"));
    app::EnterForm(QStringLiteral("frmWizard"));
    QCOMPARE(Translate(QStringLiteral("Dateien: ")), QStringLiteral("Files: "));
    app::LeaveForm();
    app::LeaveForm();
    app::LeaveForm(); // one too many: frmMain stays at the bottom
    QCOMPARE(Translate(QStringLiteral("Abbrechen")), QStringLiteral("Cancel"));
}

void TestLanguage::unusableFilesAreReportedAndGermanStays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("write");
    QTest::newRow("empty") << "Leer.lng" << QByteArray() << true;
    QTest::newRow("no translation in it")
        << "Text.lng" << QByteArray("Nur Text\r\nA@@B@@C") << true;
    QByteArray noise(4000, Qt::Uninitialized);
    QRandomGenerator generator(11);
    for (char& c : noise) {
        c = char(generator.bounded(256));
        if (c == '@') // no line can split into two parts
            c = 'x';
    }
    QTest::newRow("random bytes") << "Noise.lng" << noise << true;
    QTest::newRow("missing") << "Fehlt.lng" << QByteArray() << false;
}

void TestLanguage::unusableFilesAreReportedAndGermanStays()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, write);
    QVERIFY(load(QStringLiteral("English.lng"), kLines.toUtf8()));
    if (write) {
        QVERIFY(!load(name, bytes));
    } else {
        app::gLanguageFile = name;
        QVERIFY(!app::LoadLanguage());
    }
    QCOMPARE(m_dialogs.messages(),
             QStringList{QStringLiteral("Fehler beim Einlesen der Sprachdatei: ") + name});
    QCOMPARE(app::CurrentLanguage(), QString());
    QCOMPARE(Translate(QStringLiteral("&Abbrechen")), QStringLiteral("&Abbrechen"));
}

void TestLanguage::newCollectsEachTextOnceAndWritesTheFile()
{
    app::gLanguageFile = app::kNewLanguage;
    QVERIFY(app::LoadLanguage());
    QCOMPARE(Translate(QStringLiteral("&Datei öffnen")), QStringLiteral("Datei öffnen"));
    QCOMPARE(Translate(QStringLiteral("Dateien: ")), QStringLiteral("Dateien: "));
    app::EnterForm(QStringLiteral("frmOptions"));
    QCOMPARE(Translate(QStringLiteral("datei öffnen")), QStringLiteral("datei öffnen"));
    QCOMPARE(Translate(QStringLiteral("Neu @1"), QStringLiteral("x")), QStringLiteral("Neu x"));
    app::LeaveForm();
    // Not collected: no letter in them, or a path of the user's.
    Translate(QStringLiteral("1234"));
    Translate(QStringLiteral("/home/sam/c64/Spiele.d64"));
    Translate(QStringLiteral("C:\\C64\\Spiele.d64"));
    Translate(QStringLiteral("Dateien"));
    QVERIFY(app::LoadLanguage()); // loading "NEW" again keeps what was collected
    QVERIFY(app::WriteNewLanguageFile());
    const QByteArray written = readBytes(app::gLangPath + QStringLiteral("NEW.lng"));
    QCOMPARE(written, QStringLiteral("Datei öffnen@@Datei öffnen\r\nDateien@@Dateien\r\n"
                                     "Neu @1@@Neu @1\r\n")
                          .toUtf8());
    // The new file is a language file.
    QVERIFY(load(QStringLiteral("NEW.lng"), written));
    QCOMPARE(Translate(QStringLiteral("DATEIEN:")), QStringLiteral("Dateien:"));
}

QTEST_GUILESS_MAIN(TestLanguage)
#include "tst_language.moc"
