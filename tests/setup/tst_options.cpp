// The steps of the options dialog's "OK" over its record of fields: which tab hands over what,
// the values that stand for others ("0", "notepad", no import type), the checks that keep the
// dialog open, and that steps 1 to 3 stand even then.

#include "app/Globals.h"
#include "app/Settings.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseSettings.h"
#include "launch/Profiles.h"
#include "launch/ProfilSettings.h"
#include "platform/ScriptedDialogService.h"
#include "setup/Options.h"
#include "support/GameBaseFixture.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using namespace vd;
using namespace vd::setup;

class TestOptions : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void untouchedTabsChangeNothing();
    void databaseTabValues_data();
    void databaseTabValues();
    void badEditorKeepsOpenAfterFirstSteps();
    void missingFoldersKeepOpen_data();
    void missingFoldersKeepOpen();
    void gameBasePathClosesTheOpenOne();
    void wrongGameBaseKeepsOpen();
    void previewLook();
    void importTypesAndFonts();

private:
    std::unique_ptr<QTemporaryDir> m_home;
    platform::ScriptedDialogService m_dialogs;
};

void TestOptions::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    app::setProgramFolder(m_home->path());
    app::reloadIni();
    app::loadSettings();
    gamebase::loadGameBaseSettings();
    launch::SetEmulTypeNames();
    launch::LoadProfils(); // a first run: the six default emulators
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
}

void TestOptions::cleanup()
{
    gamebase::CloseGameBase();
    platform::setDialogService(nullptr);
    QVERIFY2(m_dialogs.scriptErrors.isEmpty(), qPrintable(m_dialogs.scriptErrors.join('\n')));
    m_home.reset();
}

void TestOptions::untouchedTabsChangeNothing()
{
    gamebase::gScreenshots = m_home->path();
    gamebase::gArchivFile = true;
    app::gCreateMd5Hash = false;
    app::gFontSize = 8;
    OptionsState s = LoadOptionsState();
    // Values that would fail or change something, in tabs that were never shown.
    s.gameBaseDB = QStringLiteral("/nowhere/GBC_v18.mdb");
    s.screenshots = QStringLiteral("/nowhere/shots");
    s.archivFile = false;
    s.md5 = true;
    s.editor = QStringLiteral("/nowhere/editor");
    s.fontSize = 14;

    const OptionsResult r = ApplyOptions(s, [] { QFAIL("the GameBase was closed"); });

    QVERIFY(r.close);
    QVERIFY(m_dialogs.calls.isEmpty()); // no path was tested
    QCOMPARE(gamebase::gGameBaseDB, gamebase::kGameBaseHint);
    QCOMPARE(gamebase::gScreenshots, m_home->path());
    QVERIFY(gamebase::gArchivFile);
    QVERIFY(!app::gCreateMd5Hash);
    QCOMPARE(launch::gTextProgram, QStringLiteral("Notepad"));
    QCOMPARE(app::gFontSize, 8);
    QVERIFY(!s.startMenusChanged && !s.previewChanged && !s.gameBaseClosed);
}

void TestOptions::databaseTabValues_data()
{
    QTest::addColumn<QString>("size");
    QTest::addColumn<QString>("editor");
    QTest::addColumn<QStringList>("types");
    QTest::addColumn<QString>("storedSize");
    QTest::addColumn<QString>("storedEditor");
    QTest::addColumn<QString>("storedTypes");

    QTest::newRow("0 means no limit, no type means .D64") << "0"
                                                          << "Notepad" << QStringList() << ""
                                                          << "Notepad"
                                                          << ".D64";
    QTest::newRow("notepad in any case, without a file test")
        << "12"
        << "notepad" << QStringList{".d64", ".Zip"} << "12"
        << "Notepad"
        << ".D64;.ZIP";
    QTest::newRow("an emptied editor is Notepad") << "5"
                                                  << "" << QStringList{".TXT"} << "5"
                                                  << "Notepad"
                                                  << ".TXT";
    QTest::newRow("an existing program") << "5"
                                         << "%H/viewer" << QStringList{".PRG"} << "5"
                                         << "%H/viewer"
                                         << ".PRG";
}

void TestOptions::databaseTabValues()
{
    QFETCH(QString, size);
    QFETCH(QString, editor);
    QFETCH(QStringList, types);
    QFETCH(QString, storedSize);
    QFETCH(QString, storedEditor);
    QFETCH(QString, storedTypes);
    QFile program(m_home->filePath(QStringLiteral("viewer")));
    QVERIFY(program.open(QIODevice::WriteOnly));
    program.close();

    OptionsState s = LoadOptionsState();
    s.dbShown = true;
    s.size = size;
    s.editor = QString(editor).replace("%H", m_home->path());
    s.importTypes = types;
    s.md5 = true;
    QVERIFY(ApplyOptions(s, {}).close);

    QCOMPARE(app::gSkipZipSize, storedSize);
    QCOMPARE(launch::gTextProgram, QString(storedEditor).replace("%H", m_home->path()));
    QCOMPARE(app::gImportFiles, storedTypes);
    QVERIFY(app::gCreateMd5Hash);
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestOptions::badEditorKeepsOpenAfterFirstSteps()
{
    const QString importBefore = app::gImportFiles;
    OptionsState s = LoadOptionsState();
    // The tree deleted the CCS64 emulator (key 2) with its profiles; D64 points to HOXS64.
    QVERIFY(launch::DeleteEmulator(s.config, QStringLiteral("2")));
    s.emulatorsChanged = s.profilsChanged = true;
    s.config.defaultProfil = QStringLiteral("7");
    s.config.startProfils[0] = QStringLiteral("7");
    s.dbShown = true;
    s.md5 = true;
    s.editor = QStringLiteral("/nowhere/editor");
    s.importTypes = QStringList{QStringLiteral(".PRG")};

    const OptionsResult r = ApplyOptions(s, {});

    QVERIFY(!r.close);
    QCOMPARE(r.focus, OptionsField::Editor);
    QCOMPARE(m_dialogs.messages(), QStringList{"Datei nicht gefunden: /nowhere/editor"});
    // Steps 1 to 3 and step 4 stand; steps 6 and later did not run.
    QCOMPARE(launch::gDefaultProfil, QStringLiteral("7"));
    QCOMPARE(launch::gStartProfils[0], QStringLiteral("7"));
    QCOMPARE(launch::gEmulators.count(), 5);
    QVERIFY(!launch::gEmulators.find(QStringLiteral("2")));
    QVERIFY(!launch::gProfils.find(QStringLiteral("1")) && !launch::gProfils.find("2"));
    QVERIFY(app::gCreateMd5Hash);
    QCOMPARE(launch::gTextProgram, QStringLiteral("Notepad"));
    QCOMPARE(app::gImportFiles, importBefore);
    QVERIFY(s.startMenusChanged);
}

void TestOptions::missingFoldersKeepOpen_data()
{
    QTest::addColumn<bool>("shots");
    QTest::newRow("screenshots") << true;
    QTest::newRow("download") << false;
}

void TestOptions::missingFoldersKeepOpen()
{
    QFETCH(bool, shots);
    gamebase::gScreenshots.clear();
    gamebase::gDownloadPath.clear();
    gamebase::gAdultContent = false;
    OptionsState s = LoadOptionsState();
    s.gbShown = true;
    s.adultContent = true;
    (shots ? s.screenshots : s.download) = QStringLiteral("/nowhere/folder");
    (shots ? s.download : s.screenshots) = m_home->path();

    const OptionsResult r = ApplyOptions(s, {});

    QVERIFY(!r.close);
    QCOMPARE(r.focus, shots ? OptionsField::Screenshots : OptionsField::Download);
    QCOMPARE(m_dialogs.calls.size(), 1);
    const auto& box = m_dialogs.calls.first();
    QCOMPARE(box.text, QStringLiteral("Pfad nicht gefunden: /nowhere/folder"));
    QCOMPARE(box.title,
             shots ? QStringLiteral("Screenshots:") : QStringLiteral("Games bzw. Download-Pfad:"));
    QCOMPARE(box.style & platform::kIconMask, int(platform::vbExclamation));
    QVERIFY(!gamebase::gAdultContent); // the options after the folders did not move
    QCOMPARE(gamebase::gDownloadPath, QString());
    // The screenshots stand before the download folder: a good one is taken and noted.
    QCOMPARE(gamebase::gScreenshots, shots ? QString() : m_home->path());
    QCOMPARE(s.screenshotsChanged, !shots);

    // Mended, the next "OK" passes.
    (shots ? s.screenshots : s.download) = m_home->path();
    m_dialogs.clear();
    QVERIFY(ApplyOptions(s, {}).close);
    QVERIFY(gamebase::gAdultContent);
    QCOMPARE(gamebase::gDownloadPath, m_home->path());
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestOptions::gameBasePathClosesTheOpenOne()
{
    test::GameBaseFixture first;
    test::GameBaseFixture second;
    first.close();
    second.close();
    gamebase::gGameBaseDB = first.path();
    QVERIFY(gamebase::OpenGameBase(false));

    OptionsState s = LoadOptionsState();
    QCOMPARE(s.gameBaseDB, first.path());
    s.gbShown = true;
    s.gameBaseDB = second.path();
    int closed = 0;
    QVERIFY(ApplyOptions(s, [&closed] {
                ++closed;
                gamebase::CloseGameBase();
            }).close);
    QCOMPARE(closed, 1);
    QVERIFY(s.gameBaseClosed);
    QVERIFY(!gamebase::gGB);
    QCOMPARE(gamebase::gGameBaseDB, second.path());

    // Emptied, the path goes back to the hint, which counts as no file.
    s.gameBaseDB.clear();
    QVERIFY(ApplyOptions(s, {}).close);
    QCOMPARE(gamebase::gGameBaseDB, gamebase::kGameBaseHint);
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestOptions::wrongGameBaseKeepsOpen()
{
    gamebase::gArchivFile = true;
    OptionsState s = LoadOptionsState();
    s.gbShown = true;
    s.gameBaseDB = m_home->filePath(QStringLiteral("missing.mdb"));
    s.archivFile = false;
    const OptionsResult r = ApplyOptions(s, [] { QFAIL("nothing was open to close"); });
    QVERIFY(!r.close);
    QCOMPARE(r.focus, OptionsField::GameBaseDB);
    QCOMPARE(m_dialogs.messages(), QStringList{"Datei nicht gefunden: " + s.gameBaseDB});
    QCOMPARE(gamebase::gGameBaseDB, gamebase::kGameBaseHint);
    QVERIFY(gamebase::gArchivFile);
}

void TestOptions::previewLook()
{
    app::gFontName = QStringLiteral("CBM");
    app::gFontSize = 8;
    OptionsState s = LoadOptionsState();
    s.previewShown = true;
    QVERIFY(ApplyOptions(s, {}).close);
    QVERIFY(!s.previewChanged); // shown but unchanged

    s.fontName = QStringLiteral("Monospace");
    s.fontSize = 12;
    s.foreColor = 0x0000FF;
    s.backColor = 0x000000;
    s.selectColor = 0x00FF00;
    QVERIFY(ApplyOptions(s, {}).close);
    QVERIFY(s.previewChanged);
    QCOMPARE(app::gFontName, QStringLiteral("Monospace"));
    QCOMPARE(app::gFontSize, 12);
    QCOMPARE(app::gPreviewForeColor, qint64(0x0000FF));
    QCOMPARE(app::gPreviewBackColor, qint64(0));
    QCOMPARE(app::gPreviewSelectColor, qint64(0x00FF00));
}

void TestOptions::importTypesAndFonts()
{
    // Every type an import can take, then the list's own extras; each once.
    const QStringList captions = ImportTypeCaptions(QStringLiteral(".d64;.XYZ;.ZIP;.xyz"));
    QCOMPARE(captions.first(), QStringLiteral(".D64"));
    QCOMPARE(captions.last(), QStringLiteral(".XYZ"));
    QCOMPARE(captions.count(QStringLiteral(".ZIP")), 1);
    QVERIFY(captions.contains(QStringLiteral(".PDF")));
    QVERIFY(ImportTypeChecked(QStringLiteral(".D64;.zip"), QStringLiteral(".ZIP")));
    QVERIFY(!ImportTypeChecked(QStringLiteral(".D64;.ZIP"), QStringLiteral(".ZI")));

    // The cut below "Symbol", compared as text, keeps the system's order.
    QCOMPARE(FontsBelowSymbol({QStringLiteral("Sans"), QStringLiteral("Tahoma"),
                               QStringLiteral("symbol"), QStringLiteral("CBM"),
                               QStringLiteral("Symbola"), QStringLiteral("swiss")}),
             (QStringList{QStringLiteral("Sans"), QStringLiteral("CBM"), QStringLiteral("swiss")}));
}

QTEST_GUILESS_MAIN(TestOptions)
#include "tst_options.moc"
