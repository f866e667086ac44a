// The main window on the offscreen platform, from start to exit: the remembered catalogue and
// the caption, a catalogue that is gone, a first run, a Temp folder that can't be emptied, the
// settings written once at the end, the frame (menus, toolbar, status bar, splitters, minimum
// size, geometry), opening and creating catalogues, compaction at exit, and the search boxes'
// 800 ms debounce.

#include "../StuckFile.h"
#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmLogo.h"
#include "browser/ui/frmMain.h"
#include "catalogue/Catalogue.h"
#include "platform/ScriptedDialogService.h"

#include <memory>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace vd;
using browser::frmMain;

namespace {

QByteArray readBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QStringList mainLines(const QString& path)
{
    QStringList out;
    bool in = false;
    for (const QString& line : QString::fromUtf8(readBytes(path)).split(QStringLiteral("\r\n"))) {
        if (line.startsWith(QLatin1Char('[')))
            in = line == QLatin1String("[MAIN]");
        else if (in && !line.isEmpty())
            out << line;
    }
    return out;
}

QStringList entryTexts(const QMenu* menu)
{
    QStringList texts;
    for (const QAction* a : menu->actions())
        texts << a->data().toString();
    return texts;
}

} // namespace

class TestFrmMain : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void remembersCatalogueInCaptionAndAtExit();
    void missingCatalogueRunsWithoutAndIsWrittenEmpty();
    void firstRunWithoutSettingsFile();
    void stuckTempAndCancelEndsWithoutSaving();
    void nothingIsSavedBeforeTheFirstActivation();
    void correctedValuesStartAndAreWritten();
    void menusCarryTheirCaptions_data();
    void menusCarryTheirCaptions();
    void laterCommandsArePresentAndDisabled();
    void aboutBoxTellsWhichCopyRuns();
    void toolbarAndStatusBarByKey();
    void catalogueEnablesItsCommands();
    void splittersTakeAndKeepTheirPositions();
    void geometryIsRestoredAndSaved();
    void shrinkingSnapsBackToTheMinimum();
    void openFromMenuAndRecentList();
    void newCatalogueIsCreatedAndOpened();
    void compactionAtExitKeepsTheOldFile();
    void typingRunsOneQueryAfterThePause();
    void enterAndStopSearchRunAtOnce();
    void cbmFontFromToolsOrTheC64Family();

private:
    void writeIni(const QByteArray& bytes);
    QString makeCatalogue(const QString& name);
    frmMain& start(bool activate = true);
    void closeWindow();

    std::unique_ptr<QTemporaryDir> m_home;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;
};

void TestFrmMain::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    app::setProgramFolder(m_home->path());
    QVERIFY(QDir().mkpath(app::gTempPath));
    app::reloadIni();
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
}

void TestFrmMain::cleanup()
{
    m_form.reset();
    catalogue::CloseCatalogue();
    app::gDatabasePath.clear();
    platform::setDialogService(nullptr);
    m_home.reset();
}

void TestFrmMain::writeIni(const QByteArray& bytes)
{
    QFile f(app::gIniFile);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
    f.close();
    app::reloadIni();
}

QString TestFrmMain::makeCatalogue(const QString& name)
{
    return catalogue::newCatalogue(m_home->filePath(name));
}

frmMain& TestFrmMain::start(bool activate)
{
    m_form = std::make_unique<frmMain>();
    m_form->show();
    if (activate)
        m_form->Form_Activate();
    return *m_form;
}

void TestFrmMain::closeWindow()
{
    m_form->close();
    QVERIFY(m_form->unloaded());
}

void TestFrmMain::remembersCatalogueInCaptionAndAtExit()
{
    const QString path = makeCatalogue(QStringLiteral("Sammlung"));
    QVERIFY(!path.isEmpty());
    writeIni("[MAIN]\r\nDatabase=" + path.toUtf8() + "\r\n");
    frmMain& form = start();
    QCOMPARE(form.windowTitle(),
             QStringLiteral("Vellumdock ") + app::gVersion + QStringLiteral(" - ") + path);
    // The view built after the opening shows how long it took, behind the view's name.
    QVERIFY2(form.statusPanel(QStringLiteral("INFO"))->text().startsWith(u"Dauer: Dateien ("_qs),
             qPrintable(form.statusPanel(QStringLiteral("INFO"))->text()));
    QVERIFY(app::gDB != nullptr);
    QVERIFY(!form.firstActivationPending());
    QVERIFY(!form.firstRunSeen()); // a catalogue was remembered: no wizard
    QVERIFY(m_dialogs.messages().isEmpty());
    QCOMPARE(entryTexts(form.toolbarButton(QStringLiteral("OpenDB"))->menu()), QStringList{path});
    closeWindow();
    QVERIFY(app::gDB == nullptr);
    const QStringList main = mainLines(app::gIniFile);
    QVERIFY(main.contains(QStringLiteral("Database=") + path));
    QVERIFY(main.contains(QStringLiteral("Version=") + app::gVersion));
    QVERIFY(QString::fromUtf8(readBytes(app::gIniFile)).contains(QStringLiteral("\r\nfrmMain=")));
}

void TestFrmMain::missingCatalogueRunsWithoutAndIsWrittenEmpty()
{
    const QString other = makeCatalogue(QStringLiteral("Other"));
    const QString gone = m_home->filePath(QStringLiteral("Deleted.vdb"));
    writeIni("[MAIN]\r\nDatabase=" + gone.toUtf8() + "\r\nDatabase2=" + other.toUtf8() + "\r\n");
    frmMain& form = start();
    QCOMPARE(m_dialogs.messages(),
             QStringList{QStringLiteral("Die Datenbank liegt nicht im Pfad: ") + gone});
    QCOMPARE(m_dialogs.calls.first().style, int(platform::vbCritical));
    QCOMPARE(form.windowTitle(), QStringLiteral("Vellumdock"));
    QVERIFY(app::gDB == nullptr);
    QVERIFY(!form.firstRunSeen());
    QVERIFY(!form.menuEntry(QStringLiteral("mnuCompactDB"))->isEnabled());
    // The path left the recent list and its menu.
    QCOMPARE(entryTexts(form.toolbarButton(QStringLiteral("OpenDB"))->menu()), QStringList{other});
    closeWindow();
    const QStringList main = mainLines(app::gIniFile);
    QCOMPARE(main.filter(QStringLiteral("Database")),
             (QStringList{"Database=", "Database2=" + other}));
}

void TestFrmMain::firstRunWithoutSettingsFile()
{
    QVERIFY(!QFile::exists(app::gIniFile));
    frmMain& form = start();
    QVERIFY(form.firstRunSeen());
    QCOMPARE(form.windowTitle(), QStringLiteral("Vellumdock"));
    QVERIFY(m_dialogs.messages().isEmpty());
    closeWindow();
    const QString text = QString::fromUtf8(readBytes(app::gIniFile));
    // 27 keys and the default filters' ten lines (five filters, name and definition each).
    const QStringList lines = mainLines(app::gIniFile);
    QCOMPARE(lines.size(), 37);
    QVERIFY(lines.contains(u"FilterName1=Disketten"_qs));
    QVERIFY(lines.contains(u"FilterName5=Bilder"_qs));
    for (const char* heading : {"[MAIN]\r\n", "\r\n\r\n[EMULATORS]\r\n", "\r\n\r\n[PROFILS]\r\n",
                                "\r\n\r\n[EXTENSIONS]\r\nImportFiles=", "\r\n\r\n[GAMEBASE]\r\n",
                                "\r\n\r\n[WINDOWS]\r\nfrmMain="})
        QVERIFY2(text.contains(QString::fromUtf8(heading)), heading);
}

void TestFrmMain::stuckTempAndCancelEndsWithoutSaving()
{
    const QString path = makeCatalogue(QStringLiteral("Sammlung"));
    const QByteArray ini = "[MAIN]\r\nDatabase=" + path.toUtf8() + "\r\nFontSize=30\r\n; mine\r\n";
    writeIni(ini);
    test::StuckFile stuck(app::gTempPath);
    if (!stuck.locked())
        QSKIP("This file system lets every file in Temp be deleted; nothing to refuse with.");
    m_dialogs.answer(platform::vbOK);     // the delete error
    m_dialogs.answer(platform::vbCancel); // give up
    frmMain& form = start();
    QVERIFY(form.unloaded());
    QVERIFY(!form.isVisible());
    QVERIFY(app::gDB == nullptr);
    QCOMPARE(m_dialogs.messages().last(),
             QStringLiteral("Temp-Verzeichnis kann nicht gelöscht werden: ") + app::gTempPath);
    QCOMPARE(readBytes(app::gIniFile), ini);
}

void TestFrmMain::nothingIsSavedBeforeTheFirstActivation()
{
    start(false);
    closeWindow();
    QVERIFY(!QFile::exists(app::gIniFile));
}

void TestFrmMain::correctedValuesStartAndAreWritten()
{
    writeIni("[MAIN]\r\nFontSize=30\r\nViewMode=4\r\nDatabase=\r\nDatabase2=/x.vdb\r\n");
    frmMain& form = start();
    QCOMPARE(app::gFontSize, 6);
    QCOMPARE(form.viewMode(), 1);
    QVERIFY(form.toolbarButton(QStringLiteral("OpenDB"))->menu()->isEmpty());
    closeWindow();
    const QStringList main = mainLines(app::gIniFile);
    QVERIFY(main.contains(QStringLiteral("FontSize=6")));
    QVERIFY(main.contains(QStringLiteral("ViewMode=1")));
    QCOMPARE(main.filter(QStringLiteral("Database")), QStringList{"Database="});
}

void TestFrmMain::menusCarryTheirCaptions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    const char* const rows[][2] = {
        {"mnuFile", "&Datei"},
        {"mnuNewDB", "&Neue Datenbank"},
        {"mnuOpenDB", "&Datenbank öffnen"},
        {"mnuAddFile", "Datei importieren"},
        {"mnuAddDir", "Ordner importieren"},
        {"mnuExit", "&Beenden"},
        {"mnuEdit", "&Bearbeiten"},
        {"mnuStart", "&Starten"},
        {"mnuDetails", "&Details"},
        {"mnuDel", "&Löschen"},
        {"mnuNewCat", "&Neue Kategorie"},
        {"mnuFlipList", "Flipliste"},
        {"mnuAddToFlipList", "Image zur Flipliste hinzufügen"},
        {"mnuFilter", "&Filter"},
        {"mnuFind", "&Suchen"},
        {"mnuFilepath", "Dateipfad"},
        {"mnuRefreshFile", "Datei aktualisieren"},
        {"mnuViews", "&Ansicht"},
        {"mnuLanguage", "Sprache"},
        {"mnuLang", "Deutsch"},
        {"mnuToggleToolbar", "Toolbar"},
        {"mnuHideTree", "Baum ausblenden"},
        {"mnuTreeOhnePlusMinus", "Baum mit Unterelementen (langsamer)"},
        {"mnuEditHeader", "&Spalten anordnen"},
        {"mnuPreview", "Voransicht"},
        {"mnuOpenPreview", "Voransicht öffnen"},
        {"mnuView0", "Disks, Tapes,..."},
        {"mnuView5", "Top 100"},
        {"mnuGB", "&Gamebase"},
        {"mnuGBOpen", "Ansicht öffnen"},
        {"mnuGBConnect", "Eigene Zip-Dateien mit Gamebase abgleichen"},
        {"mnuGBImportCat", "Spielkategorien importieren"},
        {"mnuExtras", "&Extras"},
        {"mnuCopyAll", "Gesamte Liste kopieren -> Zwischenablage"},
        {"mnuCopySelection", "Markierte Einträge kopieren -> Zwischenablage"},
        {"mnuCreateMD5", "Fehlende MD5-Checksummen erzeugen"},
        {"mnuSaveDir", "Directory als txt-Datei speichern"},
        {"mnuDirFilepath", "Speichern in Dateipfad"},
        {"mnuDirSelect", "Dateipfad auswählen"},
        {"mnuCheckFiles", "&Datenbank überprüfen"},
        {"mnuCompactDB", "&Datenbank beim Beenden komprimieren"},
        {"mnuOption", "&Optionen"},
        {"mnuHelp", "&Online Hilfe"},
        {"mnuHomepage", "&Homepage"},
        {"mnuLogo", "&Info"},
    };
    for (const auto& row : rows)
        QTest::newRow(row[0]) << QString::fromUtf8(row[0]) << QString::fromUtf8(row[1]);
}

void TestFrmMain::menusCarryTheirCaptions()
{
    QFETCH(QString, name);
    QFETCH(QString, caption);
    if (!m_form)
        start(false);
    QAction* entry = m_form->menuEntry(name);
    QVERIFY2(entry, qPrintable(name));
    QCOMPARE(entry->text(), caption);
}

void TestFrmMain::laterCommandsArePresentAndDisabled()
{
    const QString path = makeCatalogue(QStringLiteral("Sammlung"));
    writeIni("[MAIN]\r\nDatabase=" + path.toUtf8() + "\r\n");
    frmMain& form = start();
    QVERIFY(app::gDB != nullptr);
    // With nothing selected, the commands on a selection are off; so is the help without an
    // address.
    for (const char* name : {"mnuStart", "mnuDetails", "mnuDel", "mnuHelp"})
        QVERIFY2(!form.menuEntry(QString::fromUtf8(name))->isEnabled(), name);
    for (const char* name :
         {"mnuNewDB",      "mnuOpenDB",     "mnuExit",   "mnuCompactDB", "mnuToggleToolbar",
          "mnuHideTree",   "mnuPreview",    "mnuExtras", "mnuGB",        "mnuAddFile",
          "mnuAddDir",     "mnuCheckFiles", "mnuView0",  "mnuView5",     "mnuFind",
          "mnuEditHeader", "mnuFlipList",   "mnuFilter", "mnuCopyAll",   "mnuOption"})
        QVERIFY2(form.menuEntry(QString::fromUtf8(name))->isEnabled(), name);
    QVERIFY(!form.menuEntry(QStringLiteral("mnuProfil"))->isVisible());
    QVERIFY(!form.menuEntry(QStringLiteral("mnuNewCat"))->isVisible()); // view 3 alone
    QVERIFY(form.menuEntry(QStringLiteral("mnuLang"))->isChecked());
}

// "Info" shows the version, the program folder, the settings file and the open catalogue,
// and closes with Escape.
void TestFrmMain::aboutBoxTellsWhichCopyRuns()
{
    const QString path = makeCatalogue(QStringLiteral("Sammlung"));
    writeIni("[MAIN]\r\nDatabase=" + path.toUtf8() + "\r\n");
    frmMain& form = start();
    QString version, info;
    bool closed = false;
    QTimer::singleShot(0, [&] {
        auto* logo = form.findChild<browser::frmLogo*>(QStringLiteral("frmLogo"));
        if (!logo)
            return;
        version = logo->lblVersion->text();
        info = logo->lblInfo->text();
        QTest::keyClick(logo, Qt::Key_Escape);
        closed = !logo->isVisible();
    });
    QAction* entry = form.menuEntry(QStringLiteral("mnuLogo"));
    QVERIFY(entry->isEnabled());
    entry->trigger();
    QVERIFY(closed);
    QVERIFY2(version.contains(app::gVersion), qPrintable(version));
    QVERIFY2(info.contains(QDir::toNativeSeparators(path)), qPrintable(info));
    QVERIFY2(info.contains(QDir::toNativeSeparators(app::gIniFile)), qPrintable(info));
    QVERIFY(info.contains(QStringLiteral("SQLite 3.")));
}

void TestFrmMain::toolbarAndStatusBarByKey()
{
    frmMain& form = start(false);
    const QStringList keys{"NewDB", "OpenDB", "AddFile", "AddDir",  "Filter", "Edit",
                           "Del",   "Start",  "GB",      "Options", "Exit",   "Action"};
    for (const QString& key : keys) {
        QAction* button = form.toolbarButton(key);
        QVERIFY2(button, qPrintable(key));
        const bool dropDown = key == QLatin1String("OpenDB") || key == QLatin1String("AddFile") ||
                              key == QLatin1String("AddDir") || key == QLatin1String("Start");
        QCOMPARE(button->menu() != nullptr, dropDown);
    }
    QVERIFY(!form.toolbarButton(QStringLiteral("Action"))->isVisible());
    QVERIFY(form.toolbarButton(QStringLiteral("NewDB"))->isEnabled());
    QVERIFY(!form.toolbarButton(QStringLiteral("AddDir"))->isEnabled());
    for (const char* key : {"INFO", "SumFiles", "SumList"})
        QVERIFY2(form.statusPanel(QString::fromUtf8(key)), key);
    QCOMPARE(form.infoTag(), QStringLiteral("0"));
    // The toolbar button runs the menu's command: Exit closes.
    form.toolbarButton(QStringLiteral("Exit"))->trigger();
    QVERIFY(form.unloaded());
}

void TestFrmMain::catalogueEnablesItsCommands()
{
    frmMain& form = start();
    QVERIFY(!form.searchBox(0)->isEnabled());
    QVERIFY(!form.menuEntry(QStringLiteral("mnuCompactDB"))->isEnabled());
    QVERIFY(!form.menuEntry(QStringLiteral("mnuExtras"))->isEnabled());
    QVERIFY(!form.menuEntry(QStringLiteral("mnuView1"))->isEnabled()); // no view without one
    const QString path = makeCatalogue(QStringLiteral("Sammlung"));
    bool ok = false;
    form.OpenCatalogue(path, ok);
    QVERIFY(ok);
    for (int i = 0; i < 3; ++i)
        QVERIFY(form.searchBox(i)->isEnabled());
    QVERIFY(!form.newFilesBox()->isEnabled()); // nothing is new after an opening
    QVERIFY(form.menuEntry(QStringLiteral("mnuCompactDB"))->isEnabled());
    QVERIFY(form.menuEntry(QStringLiteral("mnuView1"))->isEnabled());
    QVERIFY(!form.menuEntry(QStringLiteral("mnuSaveDir"))->isEnabled()); // view 2 alone
    // The same path again does nothing, not even a message.
    form.OpenCatalogue(path, ok);
    QVERIFY(!ok);
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestFrmMain::splittersTakeAndKeepTheirPositions()
{
    writeIni("[MAIN]\r\nMenuSplitPos=3000\r\nPreviewSplitPos=6000\r\nListSplitPos=1500\r\n"
             "[WINDOWS]\r\nfrmMain=0;0;12000;18000;0\r\n");
    frmMain& form = start();
    QCOMPARE(form.splitter(QStringLiteral("splitMenu"))->sizes().value(0), 200);
    QCOMPARE(form.splitter(QStringLiteral("splitPreview"))->sizes().value(0), 400);
    QCOMPARE(form.splitter(QStringLiteral("splitList"))->sizes().value(0), 100);
    // A hidden tree keeps its position for the next run.
    form.menuEntry(QStringLiteral("mnuHideTree"))->trigger();
    QVERIFY(form.findChild<QFrame*>(QStringLiteral("treeMain"))->isHidden());
    // The first pane of splitMenu is dragged 30 pixels wider.
    QSplitter* menu = form.splitter(QStringLiteral("splitMenu"));
    const QList<int> sizes = menu->sizes();
    menu->setSizes({sizes[0] + 30, sizes[1] - 30});
    closeWindow();
    const QStringList main = mainLines(app::gIniFile);
    QVERIFY(main.contains(QStringLiteral("MenuSplitPos=3450")));
    QVERIFY(main.contains(QStringLiteral("PreviewSplitPos=6000")));
    QVERIFY(main.contains(QStringLiteral("ListSplitPos=1500")));
    QVERIFY(main.contains(QStringLiteral("HideTree=1")));
}

void TestFrmMain::geometryIsRestoredAndSaved()
{
    writeIni("[WINDOWS]\r\nfrmMain=1500;3000;9750;15000;0\r\n");
    frmMain& form = start();
    QCOMPARE(form.size(), QSize(1000, 650));
    QCOMPARE(form.pos(), QPoint(200, 100));
    form.resize(1100, 700);
    closeWindow();
    QVERIFY(QString::fromUtf8(readBytes(app::gIniFile))
                .contains(QStringLiteral("[WINDOWS]\r\nfrmMain=1500;3000;10500;16500;0\r\n")));
}

void TestFrmMain::shrinkingSnapsBackToTheMinimum()
{
    frmMain& form = start(false);
    form.resize(300, 200);
    QVERIFY(form.width() * 15 >= frmMain::kMinWidthTwips);
    QVERIFY(form.height() * 15 >= frmMain::kMinHeightTwips);
    QCOMPARE(form.minimumSize(), QSize(667, 398));
}

void TestFrmMain::openFromMenuAndRecentList()
{
    const QString first = makeCatalogue(QStringLiteral("Eins"));
    const QString second = makeCatalogue(QStringLiteral("Zwei"));
    frmMain& form = start();
    // A plain file in Temp goes when a catalogue is chosen; a folder stays.
    QFile plain(app::gTempPath + QStringLiteral("/copy.d64"));
    QVERIFY(plain.open(QIODevice::WriteOnly));
    plain.close();
    QVERIFY(QDir().mkpath(app::gTempPath + QStringLiteral("/Game.zip")));

    m_dialogs.answerText(first);
    form.menuEntry(QStringLiteral("mnuOpenDB"))->trigger();
    QCOMPARE(m_dialogs.calls.last().title, QStringLiteral("Datenbank öffnen"));
    QVERIFY(form.windowTitle().endsWith(first));
    QVERIFY(!QFile::exists(plain.fileName()));
    QVERIFY(QDir(app::gTempPath + QStringLiteral("/Game.zip")).exists());

    form.OpenCatalogueDialog(second);
    QMenu* recent = form.toolbarButton(QStringLiteral("OpenDB"))->menu();
    QCOMPARE(entryTexts(recent), (QStringList{second, first}));
    // Choosing an entry of the drop-down opens it and moves it to the front.
    recent->actions().at(1)->trigger();
    QVERIFY(form.windowTitle().endsWith(first));
    QCOMPARE(entryTexts(recent), (QStringList{first, second}));
    closeWindow();
    QCOMPARE(mainLines(app::gIniFile).filter(QStringLiteral("Database")),
             (QStringList{"Database=" + first, "Database2=" + second}));
}

void TestFrmMain::newCatalogueIsCreatedAndOpened()
{
    frmMain& form = start();
    m_dialogs.answerText(m_home->filePath(QStringLiteral("Neu")));
    form.menuEntry(QStringLiteral("mnuNewDB"))->trigger();
    const QString path = m_home->filePath(QStringLiteral("Neu.vdb"));
    QVERIFY(QFile::exists(path));
    QCOMPARE(app::gDatabasePath, path);
    QVERIFY(form.windowTitle().endsWith(path));
    QVERIFY(app::gDB != nullptr);
}

void TestFrmMain::compactionAtExitKeepsTheOldFile()
{
    const QString path = makeCatalogue(QStringLiteral("Sammlung"));
    writeIni("[MAIN]\r\nDatabase=" + path.toUtf8() + "\r\n");
    frmMain& form = start();
    QAction* compact = form.menuEntry(QStringLiteral("mnuCompactDB"));
    compact->trigger();
    QVERIFY(compact->isChecked());
    closeWindow();
    QVERIFY(QFile::exists(m_home->filePath(QStringLiteral("Sammlung.OLD"))));
    QVERIFY(QFile::exists(path));
    QVERIFY(m_dialogs.messages().isEmpty());
    // The check mark is not remembered: the next run doesn't compact.
    QVERIFY(!QString::fromUtf8(readBytes(app::gIniFile)).contains(QStringLiteral("Compact")));
}

void TestFrmMain::typingRunsOneQueryAfterThePause()
{
    const QString path = makeCatalogue(QStringLiteral("Sammlung"));
    writeIni("[MAIN]\r\nDatabase=" + path.toUtf8() + "\r\n");
    frmMain& form = start();
    QSignalSpy queries(&form, &frmMain::viewBuilt);
    QComboBox* box = form.searchBox(0);
    for (const char* part : {"Bou", "lder", " Da"}) {
        QTest::keyClicks(box->lineEdit(), QString::fromUtf8(part));
        QTest::qWait(300); // pauses shorter than 800 ms
        QCOMPARE(queries.count(), 0);
    }
    QTest::keyClicks(box->lineEdit(), QStringLiteral("sh"));
    QTRY_COMPARE_WITH_TIMEOUT(queries.count(), 1, 2000);
    QTest::qWait(900);
    QCOMPARE(queries.count(), 1);
    QCOMPARE(form.searchTexts().value(0), QStringLiteral("Boulder Dash"));
    QCOMPARE(box->itemText(0), QStringLiteral("Boulder Dash"));
    QCOMPARE(box->currentText(), QStringLiteral("Boulder Dash"));
}

void TestFrmMain::enterAndStopSearchRunAtOnce()
{
    const QString path = makeCatalogue(QStringLiteral("Sammlung"));
    writeIni("[MAIN]\r\nDatabase=" + path.toUtf8() + "\r\n");
    frmMain& form = start();
    QSignalSpy queries(&form, &frmMain::viewBuilt);
    QTest::keyClicks(form.searchBox(1)->lineEdit(), QStringLiteral("SANXION"));
    QTest::keyClick(form.searchBox(1)->lineEdit(), Qt::Key_Return);
    QCOMPARE(queries.count(), 1); // at once, not after 800 ms
    QTest::keyClicks(form.searchBox(2)->lineEdit(), QStringLiteral("/c64"));
    QTest::keyClick(form.searchBox(2)->lineEdit(), Qt::Key_Return);
    QCOMPARE(queries.count(), 2);
    auto* stop = form.findChild<QPushButton*>(QStringLiteral("cmdStopSearch"));
    QVERIFY(stop->isEnabled());
    // Enter again with nothing changed runs nothing.
    QTest::keyClick(form.searchBox(2)->lineEdit(), Qt::Key_Return);
    QCOMPARE(queries.count(), 2);
    QTest::mouseClick(stop, Qt::LeftButton);
    QCOMPARE(queries.count(), 3);
    QCOMPARE(form.searchTexts(), (QStringList{"", "", "", "0"}));
    QTest::qWait(1000); // the timer restarted by the last box finds nothing changed
    QCOMPARE(queries.count(), 3);
    QVERIFY(!stop->isEnabled());
}

void TestFrmMain::cbmFontFromToolsOrTheC64Family()
{
    if (QFontDatabase::hasFamily(QStringLiteral("CBM")))
        QSKIP("A font named CBM is installed on this system; it would win over both.");
    const QString sixtyfour =
        QStringLiteral("/usr/share/fonts/truetype/sixtyfour/C-64-Regular.ttf");
    if (!QFile::exists(sixtyfour) || !QFontDatabase::hasFamily(QStringLiteral("C-64")))
        QSKIP("fonts-sixtyfour is not installed: no C-64 family to fall back to.");
    {
        frmMain& form = start();
        QCOMPARE(form.fontSetup().name, QStringLiteral("C-64"));
        QCOMPARE(form.fontSetup().fontId, -1);
        closeWindow();
        QVERIFY(mainLines(app::gIniFile).contains(QStringLiteral("Font=C-64")));
    }
    // A font file in Tools is added for the run, named by its own family, and taken out again.
    QVERIFY(QDir().mkpath(app::gToolsPath));
    QVERIFY(QFile::copy(sixtyfour, app::gToolsPath + QStringLiteral("CBM.ttf")));
    writeIni("[MAIN]\r\nFont=Courier\r\n");
    frmMain& form = start();
    QVERIFY(form.fontSetup().fontId >= 0);
    QCOMPARE(form.fontSetup().name, QStringLiteral("C-64"));
    closeWindow();
    QCOMPARE(form.fontSetup().fontId, -1);
}

QTEST_MAIN(TestFrmMain)
#include "tst_frmmain.moc"
