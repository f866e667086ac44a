// The English language file: every German text the program can show has a line in it, and each
// line is one the language engine reads as meant (CR LF, two parts, one key once, "@1" kept).
// The texts are gathered from the sources by the rules of support/SourceTexts.

#include "support/LanguageFile.h"
#include "support/SourceTexts.h"

#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

using vd::test::GatherTexts;
using vd::test::IsLeftGerman;
using vd::test::LanguageFile;
using vd::test::LanguageKey;
using vd::test::ReadLanguageFile;
using vd::test::SourceText;

namespace {

const QString kSourceDir = QStringLiteral(VD_SOURCE_DIR);

// Literals that a text sink receives but that are not German user texts: the fixed English
// prefixes and title of error boxes, shown as they are; the program's own name; the "X" of a
// compare button; the suffix of the emulator editor's title; a column key that ColumnAlias is
// told not to translate.
const QSet<QString> kNotTranslated{
    QStringLiteral("Load error: 0-"),    QStringLiteral("Load error: %1-%2"),
    QStringLiteral("CompactDB-Error: "), QStringLiteral("Delete-Error: "),
    QStringLiteral("CreateFlipFile: "),  QStringLiteral("Error"),
    QStringLiteral("Vellumdock"),        QStringLiteral("X"),
    QStringLiteral("\\File-Tool"),       QStringLiteral("Disc_File"),
};

QString readAll(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(f.readAll());
}

QList<QPair<QString, QString>> programSources()
{
    QList<QPair<QString, QString>> files;
    QDirIterator it(kSourceDir + QStringLiteral("/src"),
                    {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        files.push_back({path.mid(kSourceDir.size() + 1), readAll(path)});
    }
    std::sort(files.begin(), files.end());
    return files;
}

QStringList gathered(const QString& content)
{
    QStringList texts;
    for (const SourceText& t : GatherTexts(QStringLiteral("x.cpp"), content))
        texts << t.text;
    texts.sort();
    return texts;
}

} // namespace

class TestLanguageFile : public QObject
{
    Q_OBJECT

private slots:
    void keyDropsHotKeyAndColon_data();
    void keyDropsHotKeyAndColon();
    void gathersWhatReachesTheUser_data();
    void gathersWhatReachesTheUser();
    void followsHelpersAcrossFiles();
    void readerFindsEachFault_data();
    void readerFindsEachFault();
    void leftGermanIsAKeyTranslatedOtherwise();
    void fileLinesAreWellFormed();
    void everyTextOfTheProgramIsTranslated();
};

void TestLanguageFile::keyDropsHotKeyAndColon_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("key");
    QTest::newRow("hot key") << "&Optionen"
                             << "Optionen";
    QTest::newRow("colon") << "Dateien:"
                           << "Dateien";
    QTest::newRow("colon and blank") << "Dateien: "
                                     << "Dateien";
    QTest::newRow("both") << "&Name:"
                          << "Name";
    QTest::newRow("inner ampersand stays") << "Disk & Tape"
                                           << "Disk & Tape";
    QTest::newRow("only one colon goes") << "Status::"
                                         << "Status:";
}

void TestLanguageFile::keyDropsHotKeyAndColon()
{
    QFETCH(QString, text);
    QFETCH(QString, key);
    QCOMPARE(LanguageKey(text), key);
}

void TestLanguageFile::gathersWhatReachesTheUser_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("texts");

    QTest::newRow("translated literal, pieces joined")
        << R"(x = app::Translate(QStringLiteral("Datei nicht " "gefunden: ")) + path;
              db.Execute(QStringLiteral("DELETE FROM Category WHERE lID = 1"));)"
        << QStringList{"Datei nicht gefunden: "};
    QTest::newRow("message box prompt and title, not a file filter")
        << R"(dialogs().msgBox(QStringLiteral("Fehler beim Lesen"), vbCritical, QStringLiteral("Titel"));
              dialogs().openFile(Translate(QStringLiteral("Datenbank öffnen")),
                                 Translate(QStringLiteral("Datenbank")) + QStringLiteral("|*.mdb"), p);)"
        << QStringList{"Datenbank", "Datenbank öffnen", "Fehler beim Lesen", "Titel"};
    QTest::newRow("widget captions, not object names or settings keys")
        << R"(auto* b = new QPushButton(Translate(QStringLiteral("Abbrechen")), this);
              b->setObjectName(QStringLiteral("cmdCancel"));
              auto* l = new QLabel(QStringLiteral("Alter Pfad:"), this);
              list->setHeaderLabels({Translate(QStringLiteral("Name")), QStringLiteral("Typ")});
              gSkip = ReadIni(QStringLiteral("Options"), QStringLiteral("SkipZipSize"), {});)"
        << QStringList{"Abbrechen", "Alter Pfad:", "Name", "Typ"};
    QTest::newRow("comments and preprocessor lines are no code")
        << "// Translate(QStringLiteral(\"Kommentar\"))\n#define X Translate(\"Makro\")\n"
           "/* msgBox(\"Block\") */ setWindowTitle(QStringLiteral(\"Kategorie\"));"
        << QStringList{"Kategorie"};
    QTest::newRow("constant of the file")
        << R"(const QString kUnpacking = QStringLiteral("Entpacke Archiv: ");
              const QString kTable = QStringLiteral("C64Files");
              emit ShowMessage(app::Translate(kUnpacking) + shown, 0);)"
        << QStringList{"Entpacke Archiv: "};
    QTest::newRow("lambda handing its parameter on")
        << R"(const auto row = [&](const QString& key, const QString& caption, QWidget* w) {
                  grid->addWidget(new QLabel(Translate(caption), this), r, 0);
                  w->setObjectName(key);
              };
              row(QStringLiteral("lblSize"), QStringLiteral("Größe:"), lblSize);)"
        << QStringList{"Größe:"};
    QTest::newRow("struct table by its caption field")
        << R"(struct MenuEntry { const char* name; const char* caption; };
              const MenuEntry kFileMenu[] = {{"mnuNewDB", "&Neue Datenbank"}, {"-", ""},
                                             {"mnuExit", "&Beenden"}};)"
        << QStringList{"&Beenden", "&Neue Datenbank"};
    QTest::newRow("anonymous struct table")
        << R"(const struct { const char* key; const char* caption; int icon; } entries[] = {
                  {"Start", "Starten", 1}, {"Down", "Herunterladen", 2}};)"
        << QStringList{"Herunterladen", "Starten"};
    QTest::newRow("pair table walked by a loop")
        << R"(const std::pair<const char*, const char*> tools[] = {{"cmdNew", "Neu"},
                                                                 {"cmdEdit", "Umbenennen"}};
              for (const auto& [key, caption] : tools) {
                  QAction* a = bar->addAction(Translate(QString::fromUtf8(caption)));
                  a->setObjectName(QString::fromUtf8(key));
              })"
        << QStringList{"Neu", "Umbenennen"};
    QTest::newRow("array table by subscript")
        << R"(const char* const lines[][2] = {{"%1", "Dateiname"}, {"%2", "Pfad"}};
              for (const auto& line : lines)
                  text << QString::fromUtf8(line[0]) + Translate(QString::fromUtf8(line[1]));)"
        << QStringList{"Dateiname", "Pfad"};
    QTest::newRow("list a function returns, walked by a loop")
        << R"(struct Group { QString caption; QString tag; };
              QVector<Group> Groups() { return {{QStringLiteral("Bilder"), QStringLiteral("GFX")},
                                                {QStringLiteral("Texte"), QStringLiteral("TXT")}}; }
              void fill() { for (const Group& g : Groups()) add(Translate(g.caption)); })"
        << QStringList{"Bilder", "Texte"};
    QTest::newRow("result of a function goes into Translate")
        << R"(QString Tip(int i) { static const QStringList tips{QStringLiteral("enthält"),
                                                                QStringLiteral("ist gleich")};
                                  return tips.value(i); }
              b->setToolTip(Translate(Tip(2)));)"
        << QStringList{"enthält", "ist gleich"};
}

void TestLanguageFile::gathersWhatReachesTheUser()
{
    QFETCH(QString, source);
    QFETCH(QStringList, texts);
    QCOMPARE(gathered(source), texts);
}

void TestLanguageFile::followsHelpersAcrossFiles()
{
    // A function a header declares that hands its text on is a sink for callers in another
    // file; a lambda of the same name elsewhere is not, and neither is a call of a dialog
    // service's name that is no member call.
    const QList<QPair<QString, QString>> files{
        {"a.h", "bool Ask(const QString& question, int n);"},
        {"a.cpp", R"(bool Ask(const QString& question, int n) {
                         return dialogs().yesNo(Translate(question) + QString::number(n)); })"},
        {"b.cpp", R"(if (Ask(QStringLiteral("Dateien löschen? "), 3)) {}
                     auto put = [](const QString& text) { cell->setText(text); };
                     put(QStringLiteral("Zelle"));)"},
        {"c.cpp", R"(auto put = [](const QString& sql) { db.Execute(sql); };
                     put(QStringLiteral("UPDATE Config SET tValue = 1"));
                     auto conn = openFile(QStringLiteral("Vellumdock.mdb"), flags);)"}};
    QStringList texts;
    for (const SourceText& t : GatherTexts(files))
        texts << t.file + u':' + QString::number(t.line) + u':' + t.text;
    texts.sort();
    QCOMPARE(texts, (QStringList{"b.cpp:1:Dateien löschen? ", "b.cpp:3:Zelle"}));
}

void TestLanguageFile::readerFindsEachFault_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("problem"); // "" for a sound file
    QTest::newRow("sound") << QByteArray("Datei@@File\r\nNeue Dateien@@New Files\r\n") << "";
    QTest::newRow("three parts") << QByteArray("Abbrechen@@Cancel@@x\r\n")
                                 << "not one key and one translation";
    QTest::newRow("no translation")
        << QByteArray("Abbrechen@@\r\n") << "not one key and one translation";
    QTest::newRow("key twice, case aside")
        << QByteArray("Datei@@File\r\ndatei@@File\r\n") << "the key comes twice";
    QTest::newRow("placeholder dropped")
        << QByteArray("Ordner nicht angelegt: @1@@Folder not created\r\n") << "\"@1\" not in both";
    QTest::newRow("placeholder added") << QByteArray("Datei@@File @1\r\n") << "\"@1\" not in both";
    QTest::newRow("key with hot key") << QByteArray("&Datei@@&File\r\n") << "keeps its";
    QTest::newRow("key with colon") << QByteArray("Dateien:@@Files:\r\n") << "keeps its";
    QTest::newRow("bare LF") << QByteArray("Datei@@File\nStart@@Start\r\n") << "bare LF";
    QTest::newRow("last line open") << QByteArray("Datei@@File") << "CR LF";
    QTest::newRow("not UTF-8") << QByteArray("L\xf6schen@@Delete\r\n") << "not UTF-8";
    QTest::newRow("translated twice")
        << QByteArray("Typ@@Start\r\nStart@@Begin\r\n") << "translated twice";
}

void TestLanguageFile::readerFindsEachFault()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, problem);
    QTemporaryDir dir;
    QFile f(dir.filePath(QStringLiteral("Test.lng")));
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
    f.close();
    const LanguageFile lng = ReadLanguageFile(f.fileName());
    if (problem.isEmpty()) {
        QVERIFY2(lng.problems.isEmpty(), qPrintable(lng.problems.join(u'\n')));
        QCOMPARE(lng.byKey.value(QStringLiteral("neue dateien")), QStringLiteral("New Files"));
    } else {
        QCOMPARE(lng.problems.size(), 1);
        QVERIFY2(lng.problems[0].contains(problem), qPrintable(lng.problems[0]));
    }
}

void TestLanguageFile::leftGermanIsAKeyTranslatedOtherwise()
{
    LanguageFile lng;
    lng.byKey = {{QStringLiteral("datei"), QStringLiteral("&File")},
                 {QStringLiteral("filter"), QStringLiteral("Filter")},
                 {QStringLiteral("dateien"), QStringLiteral("Files")}};
    QVERIFY(IsLeftGerman(lng, QStringLiteral("&Datei")));
    QVERIFY(IsLeftGerman(lng, QStringLiteral("Dateien: ")));
    QVERIFY(!IsLeftGerman(lng, QStringLiteral("File")));        // translated, hot key aside
    QVERIFY(!IsLeftGerman(lng, QStringLiteral("Files:")));      // translated, colon kept
    QVERIFY(!IsLeftGerman(lng, QStringLiteral("Filter")));      // the same in both languages
    QVERIFY(!IsLeftGerman(lng, QStringLiteral("Sanxion.d64"))); // no text of the program
}

void TestLanguageFile::fileLinesAreWellFormed()
{
    const QString path = kSourceDir + QStringLiteral("/src/app/Lang/English.lng");
    const LanguageFile lng = ReadLanguageFile(path);
    QVERIFY2(lng.problems.isEmpty(), qPrintable(lng.problems.join(u'\n')));
    QVERIFY2(lng.byKey.size() > 100, "the English file holds hardly any lines");
}

void TestLanguageFile::everyTextOfTheProgramIsTranslated()
{
    const QList<QPair<QString, QString>> sources = programSources();
    QVERIFY2(sources.size() > 50, qPrintable(QStringLiteral("no sources under ") + kSourceDir));
    const LanguageFile lng =
        ReadLanguageFile(kSourceDir + QStringLiteral("/src/app/Lang/English.lng"));
    QVERIFY2(!lng.byKey.isEmpty(), qPrintable(lng.problems.join(u'\n')));

    QStringList missing;
    QStringList wrongHotKeys;
    QHash<QString, bool> alwaysHotKey; // key -> every use of it has a hot key
    QSet<QString> reported;
    for (const SourceText& t : GatherTexts(sources)) {
        if (kNotTranslated.contains(t.text))
            continue;
        const QString key = LanguageKey(t.text).toLower();
        if (key.contains(u'\n')) {
            missing << QStringLiteral("%1:%2: a text with a line break can't be a key: %3")
                           .arg(t.file)
                           .arg(t.line)
                           .arg(t.text);
            continue;
        }
        const bool hot = t.text.startsWith(u'&') || key.contains(u'&');
        alwaysHotKey[key] = alwaysHotKey.value(key, true) && hot;
        if (!lng.byKey.contains(key) && !reported.contains(key)) {
            reported.insert(key);
            missing << QStringLiteral("%1:%2: %3").arg(t.file).arg(t.line).arg(LanguageKey(t.text));
        }
    }
    // A hot key belongs to a text that is a menu entry wherever it is used: one shown also as a
    // title, a header or a message would show its "&".
    for (auto it = alwaysHotKey.cbegin(); it != alwaysHotKey.cend(); ++it) {
        if (!lng.byKey.contains(it.key()))
            continue;
        const bool hasHotKey =
            QString(lng.byKey[it.key()]).remove(QStringLiteral("&&")).contains(u'&');
        if (it.value() != hasHotKey)
            wrongHotKeys << (it.value() ? QStringLiteral("lost: ") : QStringLiteral("shown: ")) +
                                it.key();
    }
    missing.sort();
    wrongHotKeys.sort();
    // One line each: a failure message of its own would be cut short.
    for (const QString& m : std::as_const(missing))
        qWarning().noquote() << "not in English.lng:" << m;
    for (const QString& k : std::as_const(wrongHotKeys))
        qWarning().noquote() << "hot key of a translation" << k;
    QVERIFY2(missing.isEmpty(),
             qPrintable(QStringLiteral("%1 texts are not in English.lng").arg(missing.size())));
    QVERIFY2(wrongHotKeys.isEmpty(),
             qPrintable(QStringLiteral("%1 hot keys lost or shown").arg(wrongHotKeys.size())));
}

QTEST_GUILESS_MAIN(TestLanguageFile)
#include "tst_languagefile.moc"
