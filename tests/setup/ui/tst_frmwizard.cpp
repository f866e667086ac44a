// The first-run wizard offscreen, shown by the main window's first activation without a
// settings file: its steps, buttons and keys, the test of each step on "Weiter", the finish for
// HOXS64, Cancel keeping what earlier steps did, and the whole first run: a new catalogue, VICE
// as a fake emulator, a folder of D64 files imported, the files listed, one started by a double
// click with the command line of its profile, and a second start from the settings then written.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/WindowPos.h"
#include "browser/ui/frmMain.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "controls/ui/ReportView.h"
#include "controls/ui/SimpleReport.h"
#include "controls/ui/UserTree.h"
#include "gamebase/GameBase.h"
#include "import/ui/frmProcess.h"
#include "launch/Profiles.h"
#include "platform/ScriptedDialogService.h"
#include "setup/ui/frmWizard.h"
#include "support/C64ImageWriter.h"
#include "support/GameBaseFixture.h"

#include <memory>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace vd;
using browser::frmMain;
using setup::frmWizard;
using Kind = platform::ScriptedDialogService::Kind;

namespace {

constexpr int kEntryColumn = 3; // the entry's name in the list's level statements

QByteArray readBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Lets the work of each batch window end and closes it with its button, as the user would.
class ProcessCloser : public QObject
{
public:
    ProcessCloser()
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            for (QWidget* w : QApplication::topLevelWidgets())
                if (auto* form = qobject_cast<import::frmProcess*>(w);
                    form && form->isVisible() && form->workDone()) {
                    ++closed;
                    form->cmdCancel->click();
                }
        });
        m_timer.start(10);
    }
    int closed = 0;

private:
    QTimer m_timer;
};

} // namespace

class TestFrmWizard : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void stepsShowOneFrameWithTheirButtons();
    void eachStepTestsItsInputOnWeiter();
    void hoxs64GetsItsDefaultProfileAndD71Assignment();
    void cancelKeepsWhatEarlierStepsDid();
    void firstRunFromCatalogueToStartAndSecondStart();

private:
    frmMain& start();
    frmWizard* wizard() const;
    template <typename T> T* control(const char* name) const
    {
        T* found = wizard() ? wizard()->findChild<T*>(QString::fromUtf8(name)) : nullptr;
        if (!found)
            qWarning("no control %s", name);
        return found;
    }
    void next() { control<QPushButton>("cmdNext")->click(); }
    QString catalogueIn(const QString& name) { return m_home->filePath(name); }
    QString stepText() const { return control<QLabel>("lblStep")->text(); }
    void createCatalogue(const QString& name);

    std::unique_ptr<QTemporaryDir> m_home;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;
};

void TestFrmWizard::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    app::setProgramFolder(m_home->filePath(u"program"_qs));
    QVERIFY(QDir().mkpath(app::gTempPath));
    app::reloadIni(); // no settings file: a first run
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
}

void TestFrmWizard::cleanup()
{
    m_form.reset();
    catalogue::CloseCatalogue();
    app::gDatabasePath.clear();
    app::gDialogPath.clear();
    platform::setDialogService(nullptr);
    m_home.reset();
    QVERIFY2(m_dialogs.scriptErrors.isEmpty(), qPrintable(m_dialogs.scriptErrors.join(u'\n')));
    QCOMPARE(m_dialogs.pendingAnswers(), 0); // every scripted answer was asked for
}

frmMain& TestFrmWizard::start()
{
    m_form = std::make_unique<frmMain>();
    m_form->resize(1000, 700);
    m_form->show();
    m_form->Form_Activate();
    return *m_form;
}

frmWizard* TestFrmWizard::wizard() const
{
    return m_form ? m_form->findChild<frmWizard*>(u"frmWizard"_qs) : nullptr;
}

// Step 1 with the save dialog answered: the catalogue is created and opened.
void TestFrmWizard::createCatalogue(const QString& name)
{
    m_dialogs.answerText(catalogueIn(name));
    next();
}

void TestFrmWizard::stepsShowOneFrameWithTheirButtons()
{
    frmMain& form = start();
    QVERIFY(form.firstRunSeen());
    QPointer<frmWizard> w = wizard();
    QVERIFY(w && w->isVisible());
    QVERIFY(w->windowModality() != Qt::NonModal);
    QCOMPARE(w->parentWidget(), &form);
    QCOMPARE(control<QLabel>("lblStart")->text(), u"Willkommen beim Vellumdock!"_qs);
    // The emulator types without "Sonstige", each row's data its type; VICE first.
    auto* emulators = control<QComboBox>("cboEmulators");
    QStringList rows;
    for (int i = 0; i < emulators->count(); ++i)
        rows << emulators->itemText(i) + u'=' + emulators->itemData(i).toString();
    QCOMPARE(rows, (QStringList{"VICE=1", "CCS64=2", "HOXS64=3", "EMU64=4", "MICRO64=5"}));
    QCOMPARE(emulators->currentIndex(), 0);

    const QStringList headings{"Neue Datenbank erstellen",       "Standard-Emulator auswählen",
                               "Emulatorpfad festlegen",         "",
                               "Optional: GameBase64-Datenbank", "Fertig! Viel Spaß!"};
    auto* back = control<QPushButton>("cmdBack");
    auto* nextButton = control<QPushButton>("cmdNext");
    auto* cancel = control<QPushButton>("cmdCancel");
    for (int step = 1; step <= 6; ++step) {
        w->ShowStep(step);
        QCOMPARE(w->step(), step);
        QCOMPARE(stepText(), u"Schritt: %1 / 6"_qs.arg(step));
        for (int i = 1; i <= 6; ++i) {
            auto* frame = control<QGroupBox>(qPrintable(u"fraStep%1"_qs.arg(i)));
            QCOMPARE(frame->isVisible(), i == step);
            QCOMPARE(frame->title(), headings[i - 1]);
        }
        QCOMPARE(back->isEnabled(), step >= 2);
        QCOMPARE(nextButton->text(), step < 6 ? u"Weiter"_qs : u"Starten"_qs);
        QCOMPARE(cancel->isEnabled(), step < 6);
    }
    QCOMPARE(control<QPushButton>("cmdAddFile")->text(), u"Datei importieren"_qs);
    QCOMPARE(control<QPushButton>("cmdAddFolder")->text(), u"Ordner importieren"_qs);

    // On the last step Escape does not cancel; on the others it does.
    QTest::keyClick(w, Qt::Key_Escape);
    QVERIFY(w->isVisible());
    QCOMPARE(w->step(), 6);
    back->click();
    QCOMPARE(w->step(), 5);
    QTest::keyClick(w, Qt::Key_Escape);
    QTRY_VERIFY(w.isNull());
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestFrmWizard::eachStepTestsItsInputOnWeiter()
{
    start();
    QPointer<frmWizard> w = wizard();
    QVERIFY(w);

    // Step 1: a cancelled save dialog stays; Enter is "Weiter".
    m_dialogs.answerCancel();
    QTest::keyClick(w, Qt::Key_Return);
    QCOMPARE(m_dialogs.calls.size(), 1);
    QCOMPARE(m_dialogs.calls[0].kind, Kind::SaveFile);
    QCOMPARE(m_dialogs.calls[0].title, u"Neue Datenbank erstellen"_qs);
    QCOMPARE(w->step(), 1);
    QVERIFY(!app::gDB);
    m_dialogs.answerText(catalogueIn(u"Erste"_qs));
    QTest::keyClick(w, Qt::Key_Return);
    QCOMPARE(w->step(), 2);
    QCOMPARE(app::gDatabasePath, catalogueIn(u"Erste.vdb"_qs));
    QVERIFY(app::gDB);

    // Back to step 1: "Weiter" asks for a catalogue again and opens the new one.
    control<QPushButton>("cmdBack")->click();
    QCOMPARE(w->step(), 1);
    createCatalogue(u"Zweite"_qs);
    QCOMPARE(m_dialogs.calls.size(), 3);
    QCOMPARE(m_dialogs.calls[2].kind, Kind::SaveFile);
    QCOMPARE(w->step(), 2);
    QCOMPARE(app::gDatabasePath, catalogueIn(u"Zweite.vdb"_qs));
    QVERIFY(QFile::exists(catalogueIn(u"Erste.vdb"_qs)));
    next();

    // Step 3: the file dialog fills the path; a missing path stays with its message.
    QCOMPARE(w->step(), 3);
    const QString missing = m_home->filePath(u"emu/x64sc"_qs);
    m_dialogs.answerText(missing);
    control<QPushButton>("cmdPfad")->click();
    QCOMPARE(m_dialogs.calls.last().kind, Kind::OpenFile);
    QCOMPARE(m_dialogs.calls.last().title, u"C64-Emulator auswählen"_qs);
    QCOMPARE(m_dialogs.calls.last().text, u"Programme|*"_qs);
    QCOMPARE(control<QLineEdit>("txtEmulPath")->text(), missing);
    m_dialogs.calls.clear();
    next();
    QCOMPARE(w->step(), 3);
    QCOMPARE(m_dialogs.messages(), QStringList{u"Datei nicht gefunden: "_qs + missing});
    // An empty path goes on: the emulator keeps its placeholder.
    control<QLineEdit>("txtEmulPath")->clear();
    next();
    QCOMPARE(w->step(), 4);
    next();

    // Step 5: the GameBase must pass the check; an empty text goes on.
    QCOMPARE(w->step(), 5);
    m_dialogs.calls.clear();
    const QString notGameBase = catalogueIn(u"Erste.vdb"_qs);
    control<QLineEdit>("txtGB")->setText(notGameBase);
    next();
    QCOMPARE(w->step(), 5);
    QCOMPARE(m_dialogs.messages(), QStringList{u"Wrong GameBase64-Database: "_qs + notGameBase});
    QCOMPARE(stepText(), u"Schritt: 5 / 6"_qs);
    test::GameBaseFixture gameBase;
    gameBase.close();
    m_dialogs.calls.clear();
    m_dialogs.answerText(gameBase.path());
    control<QPushButton>("cmdGB")->click();
    QCOMPARE(m_dialogs.calls.value(0).title, u"GameBase-Datenbank auswählen"_qs);
    QCOMPARE(control<QLineEdit>("txtGB")->text(), gameBase.path());
    next();
    QCOMPARE(w->step(), 6);
    QCOMPARE(m_dialogs.messages(), QStringList());

    // "Starten": VICE keeps the first-run default and its placeholder path; the GameBase is set.
    next();
    QTRY_VERIFY(w.isNull());
    QCOMPARE(launch::gDefaultProfil, u"4"_qs);
    QCOMPARE(launch::gEmulators.at(0)->Path, u"VICE"_qs);
    QCOMPARE(gamebase::gGameBaseDB, gameBase.path());
    QVERIFY(!app::windowEntry(u"frmWizard"_qs).isEmpty());
}

void TestFrmWizard::hoxs64GetsItsDefaultProfileAndD71Assignment()
{
    start();
    QPointer<frmWizard> w = wizard();
    createCatalogue(u"Sammlung"_qs);
    auto* emulators = control<QComboBox>("cboEmulators");
    emulators->setCurrentIndex(emulators->findText(u"HOXS64"_qs));
    next();
    const QString hoxs = m_home->filePath(u"hoxs64-wrapper"_qs);
    QVERIFY(test::writeFile(hoxs, "#!/bin/sh\n"));
    control<QLineEdit>("txtEmulPath")->setText(hoxs);
    next();
    next();
    next();
    QCOMPARE(w->step(), 6);
    next();
    QTRY_VERIFY(w.isNull());

    QCOMPARE(launch::gDefaultProfil, u"7"_qs);
    const int d71 = launch::StartExtensionIndex(u".D71"_qs);
    QCOMPARE(launch::gStartProfils[size_t(d71)], u"4"_qs); // HOXS64 can't read it: VICE's set 4
    QCOMPARE(
        launch::GetProfilCaption(launch::gEmulators, launch::gProfils, launch::gStartProfils[0]),
        u"HOXS64 - Autoload (Temporary File)"_qs);
    QCOMPARE(launch::gEmulators.find(u"3"_qs)->Path, hoxs);
    QCOMPARE(launch::gEmulators.find(u"1"_qs)->Path, u"VICE"_qs);
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestFrmWizard::cancelKeepsWhatEarlierStepsDid()
{
    frmMain& form = start();
    QPointer<frmWizard> w = wizard();
    createCatalogue(u"Sammlung"_qs);
    QCOMPARE(w->step(), 2);
    auto* emulators = control<QComboBox>("cboEmulators");
    emulators->setCurrentIndex(emulators->findText(u"CCS64"_qs));
    next();
    control<QLineEdit>("txtEmulPath")->setText(u"/bin/sh"_qs);
    control<QPushButton>("cmdCancel")->click();
    QTRY_VERIFY(w.isNull());

    // The catalogue of step 1 stays open and shown; nothing of the finish happened.
    QCOMPARE(app::gDatabasePath, catalogueIn(u"Sammlung.vdb"_qs));
    QVERIFY(app::gDB);
    QVERIFY(form.windowTitle().endsWith(catalogueIn(u"Sammlung.vdb"_qs)));
    QVERIFY(form.menuEntry(u"mnuAddDir"_qs)->isEnabled());
    QCOMPARE(launch::gDefaultProfil, u"4"_qs);
    QCOMPARE(launch::gStartProfils[0], u"4"_qs);
    QCOMPARE(launch::gEmulators.find(u"2"_qs)->Path, u"CCS64"_qs);
}

void TestFrmWizard::firstRunFromCatalogueToStartAndSecondStart()
{
    // A folder of three D64 files, and a fake emulator that writes its folder and arguments.
    const QString games = m_home->filePath(u"games"_qs);
    QVERIFY(QDir().mkpath(games));
    const QVector<test::Slot> gameSlots{
        {0x82, "INTRO", 4, 17, 0}, {0x82, "MY GAME", 120, 17, 4}, {0x82, "HISCORE", 2, 19, 0}};
    QVERIFY(test::DiskWriter::d64()
                .name(test::padded("GAMES"))
                .entries(gameSlots)
                .save(games + u"/Games.d64"_qs));
    QVERIFY(
        test::DiskWriter::d64().entries({{0x82, "COPY", 8, 17, 0}}).save(games + u"/Tools.d64"_qs));
    QVERIFY(
        test::DiskWriter::d64().entries({{0x82, "DEMO", 30, 17, 0}}).save(games + u"/Demo.d64"_qs));
    const QString out = m_home->filePath(u"args.txt"_qs);
    const QString emulator = m_home->filePath(u"emu/x64sc"_qs);
    QVERIFY(QDir().mkpath(m_home->filePath(u"emu"_qs)));
    QVERIFY(test::writeFile(emulator,
                            "#!/bin/sh\n{ pwd; for a in \"$@\"; do echo \"[$a]\"; done; } > \"" +
                                out.toUtf8() + ".part\"\nmv \"" + out.toUtf8() + ".part\" \"" +
                                out.toUtf8() + "\"\n"));
    QVERIFY(QFile::setPermissions(emulator, QFile::permissions(emulator) | QFile::ExeOwner));

    // The main window starts without a settings file, and the wizard comes up over it.
    QVERIFY(!QFile::exists(app::gIniFile));
    frmMain& form = start();
    QPointer<frmWizard> w = wizard();
    QVERIFY(w && w->isVisible());
    createCatalogue(u"Sammlung"_qs);
    const QString catalogue = catalogueIn(u"Sammlung.vdb"_qs);
    QCOMPARE(app::gDatabasePath, catalogue);
    next(); // VICE
    control<QLineEdit>("txtEmulPath")->setText(emulator);
    next();
    QCOMPARE(w->step(), 4);
    {
        ProcessCloser closer;
        m_dialogs.answerText(games);
        control<QPushButton>("cmdAddFolder")->click();
        QCOMPARE(closer.closed, 1);
    }
    QCOMPARE(m_dialogs.calls.last().kind, Kind::Folder);
    next();
    next();
    next(); // "Starten"
    QTRY_VERIFY(w.isNull());
    QVERIFY(m_dialogs.messages().isEmpty());

    // The main window lists the three files and their five entries.
    QCOMPARE(form.viewMode(), 1);
    QCOMPARE(form.tree()->ItemCount(), 1 + 3);
    QCOMPARE(form.list()->ItemCount(), qint64(5));
    const qint64 disk = app::gDB
                            ->openRecordset(u"Select ID From Category where tFile='Games.d64'"_qs,
                                            db::RecordsetType::Snapshot)
                            ->value(0)
                            .toLongLong();
    QVERIFY(disk > 0);

    // A double click on the second entry of Games.d64 starts it with the profile of .D64, VICE's
    // set 4: a copy of the disk in Temp, with the entry moved to the front of the directory.
    QVERIFY(form.tree()->SelectItem(QString::number(disk), 2));
    controls::SimpleReport& list = form.list()->report();
    QCOMPARE(list.cellText(1, kEntryColumn), u"MY GAME"_qs);
    const QRect cell = list.visualRect(list.model()->index(1, kEntryColumn));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, cell.center());
    QVERIFY2(QTest::qWaitFor([&] { return QFile::exists(out); }, 5000), "no emulator ran");
    const QString copy = app::gTempPath + u'/' + QString::number(disk) + u".d64"_qs;
    const QStringList args = QString::fromUtf8(readBytes(out)).split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(args, (QStringList{m_home->filePath(u"emu"_qs), "[+confirmexit]", "[-autostart]",
                                "[" + copy + "]", "[-VICIIdsize]"}));
    // The first slot's name lies at $16605 (track 18, sector 1, byte 5), padded with $A0.
    QCOMPARE(readBytes(copy).mid(0x16605, 16), test::padded("MY GAME"));
    QCOMPARE(readBytes(games + u"/Games.d64"_qs).mid(0x16605, 16), test::padded("INTRO"));
    QVERIFY(form.statusPanel(u"INFO"_qs)->text().startsWith(u"Temporäre Datei!"_qs));

    // Closing writes the settings; the next start opens the catalogue without the wizard.
    // Profiles are written by position: VICE's sets 3, 4, 5, 6, 9, 14 stand first.
    form.close();
    m_form.reset();
    const QString ini = QString::fromUtf8(readBytes(app::gIniFile));
    for (const QString& line :
         {u"\r\nDatabase="_qs + catalogue + u"\r\n"_qs,
          u"\r\nEmulPath1="_qs + emulator + u"\r\n"_qs, u"\r\nProfilDefault=2\r\n"_qs,
          u"\r\n.D64=2\r\n"_qs, u"\r\n.CRT=5\r\n"_qs})
        QVERIFY2(ini.contains(line), qPrintable(line));
    app::reloadIni();
    frmMain& again = start();
    QVERIFY(!again.firstRunSeen());
    QVERIFY(!wizard());
    QCOMPARE(app::gDatabasePath, catalogue);
    QCOMPARE(again.list()->ItemCount(), qint64(5));
    QCOMPARE(launch::gEmulators.find(u"1"_qs)->Path, emulator);
    QVERIFY(m_dialogs.messages().isEmpty());
}

QTEST_MAIN(TestFrmWizard)
#include "tst_frmwizard.moc"
