// Starting from the main window on the offscreen platform: the default emulators and profiles of
// a first run written at the exit, the start menus (mnuProfil, the toolbar's drop-down, lvStart)
// built from the active profiles, a start from each of them reaching a fake emulator with the
// count on both rows, the status text, the views ordered by starts read anew, the emulator
// editor after a missing emulator, and documents handed to the desktop.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmMain.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "launch/Profiles.h"
#include "launch/ui/frmEditEmu.h"
#include "platform/ScriptedDialogService.h"
#include "support/C64ImageWriter.h"
#include "support/CatalogueFixture.h"

#include <QAction>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using browser::frmMain;

namespace {

constexpr int kDisk = 1, kPicture = 2;

QString readText(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

bool writeFile(const QString& path, const QByteArray& bytes, bool executable = false)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    f.write(bytes);
    f.close();
    return !executable || f.setPermissions(f.permissions() | QFile::ExeOwner);
}

int startCount(const QString& table, int id)
{
    auto rs = app::gDB->openRecordset("Select lStartCount From " + table +
                                      " where ID=" + QString::number(id));
    return rs->value(0).toInt();
}

// The tags of the profile entries of mnuEdit, in menu order, with their captions.
QStringList profilEntries(const frmMain& form)
{
    QStringList out;
    for (const QAction* a : form.menuEntry(QStringLiteral("mnuEdit"))->menu()->actions())
        if (a->data().toString().startsWith(QLatin1String("Profil")) && a->isVisible())
            out << a->data().toString() + u'=' + a->text();
    return out;
}

QAction* withTag(const QMenu* menu, const char* tag)
{
    for (QAction* a : menu->actions())
        if (a->data().toString() == QLatin1String(tag))
            return a;
    return nullptr;
}

QStringList dropDownEntries(const frmMain& form)
{
    QStringList out;
    for (const QAction* a : form.toolbarButton(QStringLiteral("Start"))->menu()->actions())
        out << a->data().toString() + u'=' + a->text();
    return out;
}

QStringList startRows(const QTreeWidget* list)
{
    QStringList out;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        out << list->topLevelItem(i)->text(2) + u'=' + list->topLevelItem(i)->text(0);
    return out;
}

// Receives the documents the desktop is asked to open.
class DesktopSpy : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> opened;
    bool busyWhileOpening = false;

public slots:
    void open(const QUrl& url)
    {
        opened << url;
        busyWhileOpening = QApplication::overrideCursor() &&
                           QApplication::overrideCursor()->shape() == Qt::WaitCursor;
    }
};

} // namespace

class TestStartWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstRunBuildsAndWritesTheDefaults();
    void startMenusFollowTheActiveProfiles();
    void startsFromMenuToolbarAndList();
    void viewsOrderedByStartsAreReadAgain();
    void missingEmulatorOpensTheEditor();
    void documentsGoToTheDesktop();

private:
    frmMain& start();
    void openCollection();
    QStringList waitForEmulator();

    std::unique_ptr<QTemporaryDir> m_home;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;
    QString m_emulator;
    QString m_out;
    QString m_disks;
};

void TestStartWindow::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    app::setProgramFolder(m_home->path());
    QVERIFY(QDir().mkpath(app::gTempPath));
    app::reloadIni();
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);

    // The fake emulator writes its working folder and its arguments, one a line.
    m_out = m_home->filePath(QStringLiteral("args.txt"));
    m_emulator = m_home->filePath(QStringLiteral("emu/fake-emu"));
    QVERIFY(QDir().mkpath(m_home->filePath(QStringLiteral("emu"))));
    QVERIFY(writeFile(m_emulator,
                      "#!/bin/sh\n{ pwd; for a in \"$@\"; do echo \"[$a]\"; done; } > \"" +
                          m_out.toUtf8() + ".part\"\nmv \"" + m_out.toUtf8() + ".part\" \"" +
                          m_out.toUtf8() + "\"\n",
                      true));
}

void TestStartWindow::cleanup()
{
    m_form.reset();
    catalogue::CloseCatalogue();
    app::gDatabasePath.clear();
    platform::setDialogService(nullptr);
    m_home.reset();
}

frmMain& TestStartWindow::start()
{
    m_form = std::make_unique<frmMain>();
    m_form->show();
    m_form->Form_Activate();
    return *m_form;
}

// A catalogue with one disk of three entries and a picture, opened in the window; every
// emulator is the fake one.
void TestStartWindow::openCollection()
{
    m_disks = m_home->filePath(QStringLiteral("c64/"));
    QVERIFY(QDir().mkpath(m_disks));
    QVector<test::Slot> entries;
    for (const char* name : {"INTRO", "MY_GAME", "OUTRO"})
        entries.append(test::Slot{0x82, name, 10, 17, 0});
    QVERIFY(test::DiskWriter::d64().entries(entries).save(m_disks + "Games.d64"));
    QVERIFY(writeFile(m_disks + "cover.png", "png"));

    const QString path = catalogue::newCatalogue(m_home->filePath(QStringLiteral("Sammlung")));
    QVERIFY(!path.isEmpty());
    bool ok = false;
    m_form->OpenCatalogue(path, ok);
    QVERIFY(ok);
    db::Database& db = *app::gDB;
    test::appendRow(db, "Category",
                    {{"ID", kDisk},
                     {"iType", 1},
                     {"tCategory", "Games.d64"},
                     {"tFile", "Games.d64"},
                     {"tPath", m_disks + "Games.d64"},
                     {"iFileType", 1}});
    test::appendRow(db, "Category",
                    {{"ID", kPicture},
                     {"iType", 1},
                     {"tCategory", "cover.png"},
                     {"tFile", "cover.png"},
                     {"tPath", m_disks + "cover.png"},
                     {"iFileType", 14}});
    const char* names[] = {"INTRO", "MY_GAME", "OUTRO"};
    for (int i = 1; i <= 3; ++i)
        test::appendRow(db, "C64Files",
                        {{"ID", i},
                         {"tProgram", names[i - 1]},
                         {"tRealProgram", names[i - 1]},
                         {"lSize", 10},
                         {"lIndex", i},
                         {"Category_File", kDisk}});
    for (const launch::EmulatorPtr& e : launch::gEmulators)
        e->Path = m_emulator;
}

QStringList TestStartWindow::waitForEmulator()
{
    if (!QTest::qWaitFor([&] { return QFile::exists(m_out); }, 5000))
        return {QStringLiteral("<emulator did not run>")};
    const QStringList lines = readText(m_out).split(u'\n', Qt::SkipEmptyParts);
    QFile::remove(m_out);
    return lines;
}

void TestStartWindow::firstRunBuildsAndWritesTheDefaults()
{
    frmMain& form = start();
    QVERIFY(form.firstRunSeen());
    QCOMPARE(launch::gEmulators.count(), 6);
    QCOMPARE(launch::gProfils.count(), 14);
    QCOMPARE(launch::gDefaultProfil, QStringLiteral("4"));
    form.close();
    const QString ini = readText(app::gIniFile);
    for (const char* line :
         {"[EMULATORS]\r\nEmulName1=VICE\r\nEmulPath1=VICE\r\nEmulType1=1\r\nEmulAktiv1=1\r\n",
          "EmulName6=File-Tool\r\nEmulPath6=xxxTool.exe\r\nEmulType6=0\r\n",
          "[PROFILS]\r\nProfilCount=14\r\n", "\r\nProfilDefault=2\r\nProfilEmul2=1\r\n",
          "ProfilEmul7=2\r\n", "ProfilName14=Open\r\n", "\r\n.D64=2\r\n", "\r\n.C64=7\r\n",
          "\r\n.VFL=6\r\n"})
        QVERIFY2(ini.contains(QString::fromUtf8(line)), line);
}

void TestStartWindow::startMenusFollowTheActiveProfiles()
{
    QVERIFY(writeFile(app::gIniFile,
                      "[EMULATORS]\r\nEmulName1=VICE & Co\r\nEmulPath1=x64sc\r\nEmulType1=1\r\n"
                      "EmulAktiv1=1\r\nEmulName2=CCS64\r\nEmulPath2=ccs\r\nEmulType2=2\r\n"
                      "EmulAktiv2=1\r\n[PROFILS]\r\nProfilCount=3\r\nProfilDefault=1\r\n"
                      "ProfilEmul1=2\r\nProfilName1=Autorun\r\nProfilOptions1=-autorun=@=1\r\n"
                      "ProfilEmul2=1\r\nProfilName2=Hidden\r\nProfilAktiv2=0\r\n"
                      "ProfilEmul3=1\r\nProfilName3=Attach\r\nProfilOptions3=-8=@=1\r\n"
                      "[EXTENSIONS]\r\n.CRT=\r\n.VFL=\r\n"));
    app::reloadIni();
    frmMain& form = start();
    const QStringList two{"Profil1=CCS64 - Autorun", "Profil3=VICE && Co - Attach"};
    QCOMPARE(profilEntries(form), two);
    QCOMPARE(dropDownEntries(form), two);
    auto* list = form.findChild<QTreeWidget*>(QStringLiteral("lvStart"));
    QVERIFY(list);
    QCOMPARE(list->headerItem()->text(0), QStringLiteral("Start"));
    QCOMPARE(startRows(list),
             (QStringList{"Profil1=CCS64 - Autorun", "Profil3=VICE & Co - Attach"}));
    // The entries stand between mnuStart and mnuDetails.
    const QList<QAction*> edit = form.menuEntry(QStringLiteral("mnuEdit"))->menu()->actions();
    const qsizetype at = edit.indexOf(form.menuEntry(QStringLiteral("mnuStart")));
    QCOMPARE(edit.value(at + 1)->data().toString(), QStringLiteral("Profil1"));
    QCOMPARE(edit.value(at + 2)->data().toString(), QStringLiteral("Profil3"));
    QVERIFY(edit.indexOf(form.menuEntry(QStringLiteral("mnuDetails"))) > at + 2);
    // Nothing is selected: the list is off and grey.
    QVERIFY(!list->isEnabled());
    QCOMPARE(list->palette().color(QPalette::Base),
             QApplication::palette().color(QPalette::Button));

    // The profiles change (as the options dialog changes them): the menus are rebuilt.
    launch::gProfils.find(QStringLiteral("2"))->Aktiv = true;
    launch::gProfils.find(QStringLiteral("1"))->Aktiv = false;
    launch::gProfils.find(QStringLiteral("3"))->Name = QStringLiteral("Attach Disc");
    launch::AddProfil(launch::gProfils, QStringLiteral("2"), QStringLiteral("Manual"), QString(),
                      true, 0);
    form.BuildStartMenu();
    const QStringList three{"Profil2=VICE && Co - Hidden", "Profil3=VICE && Co - Attach Disc",
                            "Profil4=CCS64 - Manual"};
    QCOMPARE(profilEntries(form), three);
    QCOMPARE(dropDownEntries(form), three);
    QCOMPARE(startRows(list).size(), 3);
    QCOMPARE(startRows(list).first(), QStringLiteral("Profil2=VICE & Co - Hidden"));
    launch::gProfils.find(QStringLiteral("2"))->Aktiv = false;
    form.BuildStartMenu();
    QCOMPARE(profilEntries(form).size(), 2);
    QCOMPARE(dropDownEntries(form).size(), 2);
}

void TestStartWindow::startsFromMenuToolbarAndList()
{
    frmMain& form = start();
    openCollection();
    QLabel* info = form.statusPanel(QStringLiteral("INFO"));

    // MY_GAME (entry 2) from the menu entry of set 3.
    info->setProperty("tag", QStringLiteral("2"));
    QAction* set3 = withTag(form.menuEntry(QStringLiteral("mnuEdit"))->menu(), "Profil3");
    QVERIFY(set3);
    QCOMPARE(set3->text(), QStringLiteral("VICE - Autostart (Original File)"));
    set3->trigger();
    QStringList lines = waitForEmulator();
    QCOMPARE(lines.value(0), QFileInfo(m_emulator).absolutePath());
    QCOMPARE(lines.mid(1), (QStringList{"[-confirmexit]", "[-autostart]",
                                        "[" + m_disks + "Games.d64:my*]", "[-VICIIdsize]"}));
    QCOMPARE(info->text(), QStringLiteral("Profil: VICE - Autostart (Original File)"));
    QCOMPARE(startCount("C64Files", 2), 1);
    QCOMPARE(startCount("Category", kDisk), 1);
    QVERIFY(!QApplication::overrideCursor()); // the busy pointer is gone again

    // The whole disk from the toolbar's drop-down, set 5.
    info->setProperty("tag", QStringLiteral("-1"));
    QAction* set5 = withTag(form.toolbarButton(QStringLiteral("Start"))->menu(), "Profil5");
    QVERIFY(set5);
    set5->trigger();
    lines = waitForEmulator();
    QCOMPARE(lines.mid(1), (QStringList{"[+confirmexit]", "[-8]", "[" + m_disks + "Games.d64]",
                                        "[-VICIIdsize]"}));
    QCOMPARE(info->text(), QStringLiteral("Profil: VICE - Attach Disc"));
    QCOMPARE(startCount("C64Files", 2), 1);
    QCOMPARE(startCount("Category", kDisk), 2);

    // OUTRO (entry 3) by a click in lvStart on set 4: a temporary copy, and the status says so.
    info->setProperty("tag", QStringLiteral("3"));
    auto* list = form.findChild<QTreeWidget*>(QStringLiteral("lvStart"));
    list->setEnabled(true); // as a selection enables it
    QTreeWidgetItem* row = nullptr;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        if (list->topLevelItem(i)->text(2) == QLatin1String("Profil4"))
            row = list->topLevelItem(i);
    QVERIFY(row);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(row).center());
    lines = waitForEmulator();
    QCOMPARE(lines.mid(1), (QStringList{"[+confirmexit]", "[-autostart]",
                                        "[" + app::gTempPath + "/1.d64]", "[-VICIIdsize]"}));
    QCOMPARE(info->text(),
             QStringLiteral("Temporäre Datei! Profil: VICE - Autostart Disc (Temporary File)"));
    QCOMPARE(startCount("C64Files", 3), 1);
    QCOMPARE(startCount("Category", kDisk), 3);
    QVERIFY(m_dialogs.messages().isEmpty());

    // Nothing selected: nothing starts, nothing is asked.
    info->setProperty("tag", QStringLiteral("0"));
    set3->trigger();
    QCOMPARE(startCount("Category", kDisk), 3);
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestStartWindow::viewsOrderedByStartsAreReadAgain()
{
    frmMain& form = start();
    openCollection();
    QSignalSpy built(&form, &frmMain::viewBuilt);
    for (int view : {1, 5, 6, 3}) {
        form.BuildView(view, 0, 0);
        // A rebuild selects the tree's root, which clears the tag: entry 1 is chosen again.
        form.statusPanel(QStringLiteral("INFO"))->setProperty("tag", QStringLiteral("1"));
        built.clear();
        form.StartSelected(QStringLiteral("5"));
        QVERIFY(!waitForEmulator().isEmpty());
        QCOMPARE(built.count(), view == 5 || view == 6 ? 1 : 0);
        QCOMPARE(form.viewMode(), view);
    }
    QCOMPARE(startCount("C64Files", 1), 4);
}

void TestStartWindow::missingEmulatorOpensTheEditor()
{
    frmMain& form = start();
    openCollection();
    launch::gEmulators.find(QStringLiteral("1"))->Path = QStringLiteral("/nowhere/x64sc");
    const QString mended = m_home->filePath(QStringLiteral("emu/x64sc"));
    QVERIFY(QFile::copy(m_emulator, mended));

    bool editorSeen = false;
    bool normalPointer = false;
    QTimer::singleShot(0, this, [&] {
        auto* editor = qobject_cast<launch::frmEditEmu*>(QApplication::activeModalWidget());
        QVERIFY(editor);
        editorSeen = true;
        normalPointer = QApplication::overrideCursor() &&
                        QApplication::overrideCursor()->shape() == Qt::ArrowCursor;
        QCOMPARE(editor->findChild<QComboBox*>(QStringLiteral("cboPath"))->currentText(),
                 QStringLiteral("/nowhere/x64sc"));
        auto* path = editor->findChild<QComboBox*>(QStringLiteral("cboPath"));
        path->setEditText(mended);
        auto* name = editor->findChild<QLineEdit*>(QStringLiteral("txtName"));
        name->setText(QStringLiteral("VICE 3.8"));
        QTest::mouseClick(editor->findChild<QPushButton*>(QStringLiteral("cmdOk")), Qt::LeftButton);
    });
    form.StartSelected(QStringLiteral("3"), 2);
    QVERIFY(editorSeen);
    QVERIFY(normalPointer);
    QCOMPARE(m_dialogs.messages(), QStringList{"Datei nicht gefunden: /nowhere/x64sc"});
    QCOMPARE(m_dialogs.calls.first().title, QStringLiteral("Profil: Autostart (Original File)"));
    QCOMPARE(m_dialogs.calls.first().style, int(platform::vbExclamation));
    QCOMPARE(startCount("C64Files", 2), 0);
    QCOMPARE(startCount("Category", kDisk), 0);
    QVERIFY(!QApplication::overrideCursor());
    // The mended emulator is in force, and the menus show its new name.
    QCOMPARE(launch::gEmulators.find(QStringLiteral("1"))->Path, mended);
    QVERIFY(profilEntries(form).contains(
        QStringLiteral("Profil3=VICE 3.8 - Autostart (Original File)")));
    form.StartSelected(QStringLiteral("3"), 2);
    QVERIFY(!waitForEmulator().isEmpty());
    QCOMPARE(startCount("C64Files", 2), 1);
}

void TestStartWindow::documentsGoToTheDesktop()
{
    DesktopSpy desktop;
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &desktop, "open");
    frmMain& form = start();
    openCollection();
    form.StartSelected(QString(), -kPicture);
    QCOMPARE(desktop.opened, QList<QUrl>{QUrl::fromLocalFile(m_disks + "cover.png")});
    QVERIFY(desktop.busyWhileOpening);
    QCOMPARE(form.statusPanel(QStringLiteral("INFO"))->text(), QStringLiteral("cover.png"));
    QCOMPARE(startCount("Category", kPicture), 1);
    QVERIFY(!QFile::exists(m_out)); // no emulator for a document
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

QTEST_MAIN(TestStartWindow)
#include "tst_startwindow.moc"
