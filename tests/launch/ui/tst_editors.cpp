// The three small editors on the offscreen platform, driven by keys and clicks: each check with
// its message, OK writing back into the records, Cancel leaving them as they were.

#include "app/Globals.h"
#include "app/Settings.h"
#include "launch/Profiles.h"
#include "launch/ProfilRules.h"
#include "launch/ui/frmEditEmu.h"
#include "launch/ui/frmEditParams.h"
#include "launch/ui/frmEditProfil.h"
#include "platform/ScriptedDialogService.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using namespace vd;
using namespace vd::launch;

namespace {

template <typename T> T* child(QWidget& form, const char* name)
{
    return form.findChild<T*>(QString::fromUtf8(name));
}

void typeInto(QWidget* field, const QString& text)
{
    auto* box = qobject_cast<QComboBox*>(field);
    QLineEdit* line = box ? box->lineEdit() : qobject_cast<QLineEdit*>(field);
    line->selectAll();
    QTest::keyClick(line, Qt::Key_Delete);
    QTest::keyClicks(line, text);
}

void click(QWidget& form, const char* button)
{
    QTest::mouseClick(child<QPushButton>(form, button), Qt::LeftButton);
}

// The records as text, to see that nothing changed.
QString dump(const ProfilConfig& config)
{
    QStringList lines{config.defaultProfil};
    for (const EmulatorPtr& e : config.emulators)
        lines << QStringLiteral("%1|%2|%3|%4").arg(e->Key, e->Name, e->Path).arg(e->EmulType);
    for (const ProfilPtr& p : config.profils)
        lines << QStringLiteral("%1|%2|%3|%4|%5")
                     .arg(p->Key, p->EmulKey, p->Name, p->Options)
                     .arg(int(p->Aktiv));
    return lines.join(u'\n');
}

} // namespace

class TestEditors : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emulatorChecks_data();
    void emulatorChecks();
    void emulatorOkWritesBackCancelKeeps();
    void newAndCopiedEmulators();
    void profilChecksOkAndDefault();
    void newAndCopiedProfil();
    void paramListsAndExplains();
    void paramChecksAndWrites_data();
    void paramChecksAndWrites();

private:
    QString makeProgram(const QString& name);

    std::unique_ptr<QTemporaryDir> m_home;
    platform::ScriptedDialogService m_dialogs;
    ProfilConfig m_config;
};

void TestEditors::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    app::setProgramFolder(m_home->path());
    app::reloadIni();
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
    SetEmulTypeNames();
    // VICE (key 1) with its sets 3, 4, 5, 6, 9, 14 and CCS64 (key 2) with 1 and 2; the counter
    // stands where a first run leaves it.
    m_config = ProfilConfig{};
    AddDefaultEmulator(1, 1, m_config.emulators, m_config.profils, true);
    AddDefaultEmulator(2, 2, m_config.emulators, m_config.profils, true);
    m_config.defaultProfil = QStringLiteral("4");
    gProfilKeyCounter = 14;
    m_config.emulators.find(QStringLiteral("1"))->Path = makeProgram(QStringLiteral("x64sc"));
}

void TestEditors::cleanup()
{
    platform::setDialogService(nullptr);
    QVERIFY2(m_dialogs.scriptErrors.isEmpty(), qPrintable(m_dialogs.scriptErrors.join('\n')));
    m_home.reset();
}

QString TestEditors::makeProgram(const QString& name)
{
    QFile f(m_home->filePath(name));
    if (f.open(QIODevice::WriteOnly))
        f.write("#!/bin/sh\n");
    return f.fileName();
}

void TestEditors::emulatorChecks_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("path"); // %H the program folder
    QTest::addColumn<QString>("message");

    QTest::newRow("empty name") << "1"
                                << ""
                                << "%H/x64sc"
                                << "Bitte geben Sie einen Emulator an!";
    QTest::newRow("name of another emulator") << "1"
                                              << "CCS64"
                                              << "%H/x64sc"
                                              << "Dieser Name besteht schon!";
    QTest::newRow("names differ in case: no clash") << "1"
                                                    << "ccs64"
                                                    << "%H/x64sc"
                                                    << "";
    QTest::newRow("empty path") << "1"
                                << "VICE"
                                << ""
                                << "Ungültiger Emulator-Pfad: ";
    QTest::newRow("changed path that is missing") << "1"
                                                  << "VICE"
                                                  << "/nowhere/x64"
                                                  << "Ungültiger Emulator-Pfad: /nowhere/x64";
    QTest::newRow("unchanged placeholder path is not tested") << "2"
                                                              << "CCS 3"
                                                              << "CCS64"
                                                              << "";
    QTest::newRow("new emulator, placeholder path is tested") << ""
                                                              << "Mine"
                                                              << "CCS64"
                                                              << "Ungültiger Emulator-Pfad: CCS64";
}

void TestEditors::emulatorChecks()
{
    QFETCH(QString, key);
    QFETCH(QString, name);
    QFETCH(QString, path);
    QFETCH(QString, message);
    const QString before = dump(m_config);

    frmEditEmu form(m_config.emulators, m_config.profils, key, false);
    form.show();
    typeInto(child<QLineEdit>(form, "txtName"), name);
    typeInto(child<QComboBox>(form, "cboPath"), QString(path).replace("%H", m_home->path()));
    click(form, "cmdOk");

    QCOMPARE(m_dialogs.messages(), message.isEmpty() ? QStringList() : QStringList{message});
    QCOMPARE(form.isVisible(), !message.isEmpty()); // a refused OK stays in the dialog
    if (!message.isEmpty()) {
        QCOMPARE(m_dialogs.calls.first().style, int(platform::vbInformation));
        QCOMPARE(dump(m_config), before);
    }
}

void TestEditors::emulatorOkWritesBackCancelKeeps()
{
    const QString program = makeProgram(QStringLiteral("ccs-wrapper"));
    const QString before = dump(m_config);
    for (const char* button : {"cmdCancel", "cmdOk"}) {
        frmEditEmu form(m_config.emulators, m_config.profils, QStringLiteral("2"), false);
        form.show();
        QCOMPARE(form.windowTitle(), QStringLiteral("Emulator\\File-Tool"));
        QCOMPARE(child<QComboBox>(form, "cboTyp")->currentIndex(), 2);
        QVERIFY(!child<QCheckBox>(form, "chkDefault")->isEnabled());
        typeInto(child<QLineEdit>(form, "txtName"), QStringLiteral("CCS 3.9"));
        // The path comes from the file dialog, with the title and filter it is opened with.
        m_dialogs.answerText(program);
        click(form, "cmdPfad");
        QCOMPARE(m_dialogs.calls.last().title, QStringLiteral("C64-Emulator auswählen"));
        QCOMPARE(m_dialogs.calls.last().text,
                 QStringLiteral("C64-Emulator|*|C64-Emulator (*.exe)|*.exe"));
        child<QComboBox>(form, "cboTyp")->setCurrentIndex(0);
        click(form, button);
        if (QLatin1String(button) == QLatin1String("cmdCancel"))
            QCOMPARE(dump(m_config), before);
        else
            QCOMPARE(form.resultKey(), QStringLiteral("2"));
    }
    const EmulatorPtr e = m_config.emulators.find(QStringLiteral("2"));
    QCOMPARE(e->Name, QStringLiteral("CCS 3.9"));
    QCOMPARE(e->Path, program);
    QCOMPARE(e->EmulType, 0);
    QCOMPARE(m_config.emulators.count(), 2);
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestEditors::newAndCopiedEmulators()
{
    const QString program = makeProgram(QStringLiteral("hoxs"));
    {
        frmEditEmu form(m_config.emulators, m_config.profils, QString(), false);
        form.show();
        QCOMPARE(form.windowTitle(), QStringLiteral("Neuer Emulator\\File-Tool"));
        QCOMPARE(child<QComboBox>(form, "cboTyp")->currentIndex(), 1);
        QCOMPARE(child<QComboBox>(form, "cboTyp")->itemText(0),
                 QStringLiteral("Sonstige\\File-Tool"));
        QVERIFY(child<QCheckBox>(form, "chkDefault")->isChecked());
        QCOMPARE(child<QComboBox>(form, "cboPath")->itemText(1), QStringLiteral("CCS64"));
        child<QComboBox>(form, "cboTyp")->setCurrentIndex(3);
        typeInto(child<QLineEdit>(form, "txtName"), QStringLiteral("HOXS"));
        typeInto(child<QComboBox>(form, "cboPath"), program);
        click(form, "cmdOk");
        QCOMPARE(form.resultKey(), QStringLiteral("3"));
    }
    const EmulatorPtr hoxs = m_config.emulators.find(QStringLiteral("3"));
    QCOMPARE(hoxs->Name, QStringLiteral("HOXS")); // set over the type's default name
    QCOMPARE(hoxs->Path, program);
    QCOMPARE(hoxs->EmulType, 3);
    // The type's sets 7 and 8, keyed by the counter, not by the set numbers.
    QCOMPARE(m_config.profils.find(QStringLiteral("15"))->Name,
             QStringLiteral("Autoload (Temporary File)"));
    QCOMPARE(m_config.profils.find(QStringLiteral("16"))->EmulKey, QStringLiteral("3"));

    // A copy starts from VICE, without default profiles, and needs a name of its own.
    frmEditEmu copy(m_config.emulators, m_config.profils, QStringLiteral("1"), true);
    copy.show();
    QCOMPARE(copy.windowTitle(), QStringLiteral("Neuer Emulator\\File-Tool"));
    QCOMPARE(child<QLineEdit>(copy, "txtName")->text(), QStringLiteral("VICE"));
    QVERIFY(!child<QCheckBox>(copy, "chkDefault")->isChecked());
    QVERIFY(!child<QCheckBox>(copy, "chkDefault")->isEnabled());
    click(copy, "cmdOk");
    QCOMPARE(m_dialogs.messages(), QStringList{"Dieser Name besteht schon!"});
    typeInto(child<QLineEdit>(copy, "txtName"), QStringLiteral("VICE 2"));
    click(copy, "cmdOk");
    QCOMPARE(copy.resultKey(), QStringLiteral("4"));
    QCOMPARE(m_config.emulators.find(QStringLiteral("4"))->EmulType, 1);
    QCOMPARE(m_config.emulators.find(QStringLiteral("1"))->Name, QStringLiteral("VICE"));
    QCOMPARE(m_config.profils.count(), 10); // the copy's profiles are the caller's to make
}

void TestEditors::profilChecksOkAndDefault()
{
    const QString before = dump(m_config);
    frmEditProfil form(m_config, QStringLiteral("1"), QStringLiteral("4"),
                       frmEditProfil::Mode::Edit);
    form.show();
    QCOMPARE(form.windowTitle(), QStringLiteral("Profil"));
    QCOMPARE(child<QLabel>(form, "lblEmu")->text(), QStringLiteral("VICE"));
    auto* chk = child<QCheckBox>(form, "chkDefEmul");
    QVERIFY(chk->isChecked() && !chk->isEnabled()); // the default is only ever moved
    typeInto(child<QLineEdit>(form, "txtName"), QString());
    click(form, "cmdOk");
    typeInto(child<QLineEdit>(form, "txtName"), QStringLiteral("Attach Tape"));
    click(form, "cmdOk");
    QCOMPARE(m_dialogs.messages(),
             (QStringList{"Bitte geben Sie einen Profilnamen an!", "Dieser Name besteht schon!"}));
    QVERIFY(form.isVisible());
    QVERIFY(!form.SaveProfil(QStringLiteral("Attach Disc"), true)); // silent: no message
    QCOMPARE(m_dialogs.messages().size(), 2);
    click(form, "cmdCancel");
    QCOMPARE(dump(m_config), before);

    // CCS64's "Autorun": another emulator's name is free, and checking the box with the name
    // left alone moves the default.
    frmEditProfil other(m_config, QStringLiteral("2"), QStringLiteral("1"),
                        frmEditProfil::Mode::Edit);
    other.show();
    QVERIFY(!child<QCheckBox>(other, "chkDefEmul")->isChecked());
    QTest::keyClick(child<QCheckBox>(other, "chkDefEmul"), Qt::Key_Space);
    click(other, "cmdOk");
    QCOMPARE(m_config.defaultProfil, QStringLiteral("1"));
    frmEditProfil rename(m_config, QString(), QStringLiteral("3"), frmEditProfil::Mode::Edit);
    rename.show();
    typeInto(child<QLineEdit>(rename, "txtName"), QStringLiteral("Attach"));
    click(rename, "cmdOk");
    QCOMPARE(m_config.profils.find(QStringLiteral("3"))->Name, QStringLiteral("Attach"));
    QCOMPARE(m_config.profils.count(), 8);
    QCOMPARE(m_dialogs.messages().size(), 2);
}

void TestEditors::newAndCopiedProfil()
{
    {
        frmEditProfil form(m_config, QStringLiteral("2"), QString(), frmEditProfil::Mode::New);
        form.show();
        QCOMPARE(form.windowTitle(), QStringLiteral("Neues Profil"));
        QTest::keyClicks(child<QLineEdit>(form, "txtName"), QStringLiteral("Warp"));
        click(form, "cmdOk");
        QCOMPARE(form.resultKey(), QStringLiteral("15"));
    }
    const ProfilPtr warp = m_config.profils.find(QStringLiteral("15"));
    QCOMPARE(warp->EmulKey, QStringLiteral("2"));
    QCOMPARE(warp->Options, QString());
    QVERIFY(warp->Aktiv);

    // A copy of VICE's "Attach Disc" under CCS64, made the default on the way.
    frmEditProfil form(m_config, QStringLiteral("2"), QStringLiteral("5"),
                       frmEditProfil::Mode::Copy);
    form.show();
    QCOMPARE(form.windowTitle(), QStringLiteral("Neues Profil"));
    QCOMPARE(child<QLineEdit>(form, "txtName")->text(), QStringLiteral("Attach Disc"));
    QCOMPARE(child<QLabel>(form, "lblEmu")->text(), QStringLiteral("CCS64"));
    child<QCheckBox>(form, "chkDefEmul")->setChecked(true);
    click(form, "cmdOk");
    const ProfilPtr copy = m_config.profils.find(QStringLiteral("16"));
    QCOMPARE(copy->EmulKey, QStringLiteral("2"));
    QCOMPARE(copy->Options, DefaultProfilOptions(5));
    QCOMPARE(m_config.defaultProfil, QStringLiteral("16"));
    QCOMPARE(m_config.profils.find(QStringLiteral("5"))->EmulKey, QStringLiteral("1"));
}

void TestEditors::paramListsAndExplains()
{
    frmEditParams form(m_config.emulators, m_config.profils, QStringLiteral("2"), 0);
    QCOMPARE(form.windowTitle(), QStringLiteral("Parameter"));
    QCOMPARE(child<QLabel>(form, "lblProfil")->text(), QStringLiteral("CCS64 - Attach"));
    auto* box = child<QComboBox>(form, "cboParam");
    QCOMPARE(box->currentText(), QStringLiteral("\"<$filepath$>,<$c64fileindex$>\""));
    QStringList texts;
    for (int i = 0; i < box->count(); ++i)
        texts << box->itemText(i);
    // Every item of CCS64's two profiles once, then the suggestions that are not there yet.
    QCOMPARE(texts,
             (QStringList{"\"<$filepath$>,<$c64fileindex$>\"", "-autorun", "-fastload",
                          "-manualrun", "-normalload", "-window", "<$C64FileName$>",
                          "<$C64FileIndex$>", "\"<$filepath$>\"", "<$input$>", "UseTempFile"}));
    QCOMPARE(child<QLabel>(form, "lblExtras")->text(),
             QStringLiteral("Folgende Parameter stehen zur Verfügung:\n"
                            "<$C64FileName$> = C64-Dateiname\n"
                            "<$C64FileIndex$> = Nr des C64-File\n"
                            "<$filepath$> = Dateipfad\n"
                            "<$input$> = Eingabe beim Start\n"
                            "UseTempFile = Temporäre Datei anlegen"));
    frmEditParams fresh(m_config.emulators, m_config.profils, QStringLiteral("2"), -1);
    QCOMPARE(fresh.windowTitle(), QStringLiteral("Neuer Parameter"));
    QCOMPARE(child<QComboBox>(fresh, "cboParam")->currentText(), QString());
}

void TestEditors::paramChecksAndWrites_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("copied");
    QTest::addColumn<QString>("typed"); // "=" leaves the text as it came
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("message"); // "" when OK closes the dialog

    QTest::newRow("empty text") << "a=@=1" << 0 << ""
                                << ""
                                << "a=@=1"
                                << "Bitte geben Sie einen Parameter an!";
    QTest::newRow("text of another item") << "a=@=1@@@b=@=0" << 0 << ""
                                          << "b"
                                          << "a=@=1@@@b=@=0"
                                          << "Dieser Parameter besteht schon!";
    QTest::newRow("unchanged closes") << "a=@=0@@@b=@=1" << 1 << ""
                                      << "="
                                      << "a=@=0@@@b=@=1"
                                      << "";
    QTest::newRow("renamed keeps its flag") << "a=@=0@@@b=@=1" << 0 << ""
                                            << "-warp"
                                            << "-warp=@=0@@@b=@=1"
                                            << "";
    QTest::newRow("new item goes last, on") << "a=@=0" << -1 << ""
                                            << "<$input$>"
                                            << "a=@=0@@@<$input$>=@=1"
                                            << "";
    QTest::newRow("first item reuses row 0") << "" << -1 << ""
                                             << "-8 \"<$filepath$>\""
                                             << "-8 \"<$filepath$>\"=@=1"
                                             << "";
    QTest::newRow("copied item") << "a=@=0" << -1 << "-warp"
                                 << "="
                                 << "a=@=0@@@-warp=@=1"
                                 << "";
    QTest::newRow("copied item that is there") << "-warp=@=0" << -1 << "-warp"
                                               << "="
                                               << "-warp=@=0"
                                               << "Dieser Parameter besteht schon!";
}

void TestEditors::paramChecksAndWrites()
{
    QFETCH(QString, options);
    QFETCH(int, row);
    QFETCH(QString, copied);
    QFETCH(QString, typed);
    QFETCH(QString, after);
    QFETCH(QString, message);

    const ProfilPtr profil = m_config.profils.find(QStringLiteral("1"));
    profil->Options = options;
    frmEditParams form(m_config.emulators, m_config.profils, QStringLiteral("1"), row, copied);
    form.show();
    if (typed != QLatin1String("="))
        typeInto(child<QComboBox>(form, "cboParam"), typed);
    click(form, "cmdOk");
    QCOMPARE(profil->Options, after);
    QCOMPARE(m_dialogs.messages(), message.isEmpty() ? QStringList() : QStringList{message});
    QCOMPARE(form.isVisible(), !message.isEmpty());
    if (form.isVisible()) { // Cancel after a further change leaves the options alone
        typeInto(child<QComboBox>(form, "cboParam"), QStringLiteral("-other"));
        click(form, "cmdCancel");
        QCOMPARE(profil->Options, after);
    }
}

QTEST_MAIN(TestEditors)
#include "tst_editors.moc"
