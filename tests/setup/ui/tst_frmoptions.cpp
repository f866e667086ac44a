// The options dialog on the offscreen platform: tabs filled at their first showing, "OK"
// keeping the dialog open with its message, the tree's six commands on each level through the
// editors they open, the check rules with their messages and restored marks, "Standard-
// Emulator", and the preview's sample list following font, size and colours.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/PreviewPane.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseSettings.h"
#include "launch/OptionString.h"
#include "launch/Profiles.h"
#include "launch/ProfilSettings.h"
#include "platform/ScriptedDialogService.h"
#include "setup/ui/frmOptions.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using namespace vd::launch;
using vd::setup::frmOptions;

namespace {

template <typename T> T* child(QWidget* form, const QString& name)
{
    return form->findChild<T*>(name);
}

void click(QWidget* form, const QString& button)
{
    auto* b = child<QPushButton>(form, button);
    QVERIFY2(b, qPrintable(button));
    QTest::mouseClick(b, Qt::LeftButton);
}

// The node reached by its texts from the top node "Emulatoren".
QTreeWidgetItem* node(const frmOptions& form, const QStringList& texts)
{
    QTreeWidgetItem* n = form.tree()->topLevelItem(0);
    for (const QString& text : texts) {
        QTreeWidgetItem* next = nullptr;
        for (int i = 0; n && i < n->childCount(); ++i)
            if (n->child(i)->text(0) == text)
                next = n->child(i);
        n = next;
    }
    return n;
}

QStringList childTexts(QTreeWidgetItem* n)
{
    QStringList texts;
    for (int i = 0; n && i < n->childCount(); ++i)
        texts << n->child(i)->text(0);
    return texts;
}

// Runs the tree command `index` on the node; the editor it opens is answered by `answer`.
void runCommand(frmOptions& form, const QStringList& at, int index,
                std::function<void(QDialog*)> answer = {})
{
    QTreeWidgetItem* n = node(form, at);
    QVERIFY2(n, qPrintable(at.join(u'/')));
    form.tree()->setCurrentItem(n);
    bool seen = false;
    if (answer)
        QTimer::singleShot(0, &form, [&] {
            auto* editor = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            QVERIFY(editor && editor != &form);
            seen = true;
            answer(editor);
        });
    click(&form, QStringLiteral("cmdTree%1").arg(index));
    if (answer)
        QVERIFY(seen);
}

void setText(QDialog* editor, const char* field, const QString& text)
{
    if (auto* line = child<QLineEdit>(editor, QString::fromLatin1(field)))
        line->setText(text);
    else
        child<QComboBox>(editor, QString::fromLatin1(field))->setEditText(text);
}

QString optionsOf(const frmOptions& form, const QString& key)
{
    const ProfilPtr p = form.config().profils.find(key);
    return p ? p->Options : QStringLiteral("<none>");
}

// Takes the pages that would go to the browser.
class UrlCatcher : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl& url) { urls << url; }
};

} // namespace

class TestFrmOptions : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void tabsFilledAtFirstShowing();
    void missingScreenshotsKeepOpen();
    void badEditorKeepsOpenAfterFirstSteps();
    void captionsFollowTheLevel();
    void newOnEachLevel();
    void editAndDeleteOnEachLevel();
    void copyAndPasteOnEachLevel();
    void checkRules();
    void standardEmulator();
    void sampleFollowsTheLook();
    void pathButtons();

private:
    std::unique_ptr<QTemporaryDir> m_home;
    platform::ScriptedDialogService m_dialogs;
};

void TestFrmOptions::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    app::setProgramFolder(m_home->path());
    app::reloadIni();
    app::loadSettings();
    gamebase::loadGameBaseSettings();
    SetEmulTypeNames();
    LoadProfils(); // the six default emulators with the fourteen profiles
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
}

void TestFrmOptions::cleanup()
{
    platform::setDialogService(nullptr);
    QVERIFY2(m_dialogs.scriptErrors.isEmpty(), qPrintable(m_dialogs.scriptErrors.join('\n')));
    m_home.reset();
}

void TestFrmOptions::tabsFilledAtFirstShowing()
{
    frmOptions form;
    form.show();
    QCOMPARE(form.windowTitle(), QStringLiteral("Optionen"));
    QCOMPARE(form.tabs()->count(), 5);
    auto* combo = child<QComboBox>(&form, QStringLiteral("cboProfils0"));
    auto* size = child<QLineEdit>(&form, QStringLiteral("txtSize"));
    QCOMPARE(combo->count(), 0);
    QCOMPARE(size->text(), QString());

    form.tabs()->setCurrentIndex(frmOptions::FILES);
    QCOMPARE(child<QLabel>(&form, QStringLiteral("lblExtension0"))->text(), QStringLiteral(".D64"));
    QCOMPARE(combo->count(), 15); // "Standardprofil" and the fourteen active profiles
    QCOMPARE(combo->itemText(0),
             QStringLiteral("Standardprofil (VICE - Autostart Disc (Temporary File))"));
    QCOMPARE(combo->currentData().toString(), QStringLiteral("4"));
    combo->setCurrentIndex(combo->findText(QStringLiteral("HOXS64 - Attach")));
    // The tree's changes reach the filled tab: a deleted emulator's profile is offered no more.
    runCommand(form, {QStringLiteral("MICRO64")}, frmOptions::kDelete);
    QCOMPARE(combo->count(), 14);
    QCOMPARE(combo->findText(QStringLiteral("MICRO64 - Attach")), -1);
    QCOMPARE(combo->currentData().toString(), QStringLiteral("8"));

    form.tabs()->setCurrentIndex(frmOptions::DB);
    QCOMPARE(size->text(), QStringLiteral("5"));
    auto* archiv = child<QCheckBox>(&form, QStringLiteral("chkArchiv"));
    QVERIFY(archiv->text().contains(QStringLiteral("'.ZIP,.RAR,.7Z,.CAB'")));
    QVERIFY(!archiv->isEnabled()); // only with chkRefreshFiles
    child<QCheckBox>(&form, QStringLiteral("chkRefreshFiles"))->click();
    QVERIFY(archiv->isEnabled());
    // "Alle" switches every type off and on.
    auto* all = child<QCheckBox>(&form, QStringLiteral("chkAllFiles"));
    all->setChecked(true);
    all->click();
    QVERIFY(!child<QCheckBox>(&form, QStringLiteral("chkFiles0"))->isChecked());
    size->setText(QStringLiteral("0"));

    click(&form, QStringLiteral("cmdOk"));
    QVERIFY(!form.isVisible());
    QCOMPARE(gStartProfils[0], QStringLiteral("8"));
    QCOMPARE(app::gImportFiles, QStringLiteral(".D64"));
    QCOMPARE(app::gSkipZipSize, QString());
    QVERIFY(app::gRefreshC64Files);
    QVERIFY(form.startMenusChanged());
    QVERIFY(!form.previewChanged());
}

void TestFrmOptions::missingScreenshotsKeepOpen()
{
    frmOptions form;
    form.show();
    form.tabs()->setCurrentIndex(frmOptions::GB);
    child<QLineEdit>(&form, QStringLiteral("txtGBShots"))->setText(QStringLiteral("/nowhere/pics"));
    form.tabs()->setCurrentIndex(frmOptions::EMUL);
    click(&form, QStringLiteral("cmdOk"));

    QVERIFY(form.isVisible());
    QCOMPARE(form.tabs()->currentIndex(), int(frmOptions::GB)); // back where the fault is
    QCOMPARE(m_dialogs.calls.size(), 1);
    QCOMPARE(m_dialogs.calls.first().title, QStringLiteral("Screenshots:"));
    QCOMPARE(m_dialogs.calls.first().text, QStringLiteral("Pfad nicht gefunden: /nowhere/pics"));
    QCOMPARE(gamebase::gScreenshots, QString());
    click(&form, QStringLiteral("cmdCancel"));
    QVERIFY(!form.isVisible());
}

void TestFrmOptions::badEditorKeepsOpenAfterFirstSteps()
{
    frmOptions form;
    form.show();
    runCommand(form, {QStringLiteral("MICRO64")}, frmOptions::kDelete);
    form.tabs()->setCurrentIndex(frmOptions::DB);
    child<QLineEdit>(&form, QStringLiteral("txtEditor"))->setText(QStringLiteral("/nowhere/ed"));
    click(&form, QStringLiteral("cmdOk"));

    QVERIFY(form.isVisible());
    QCOMPARE(m_dialogs.messages(), QStringList{"Datei nicht gefunden: /nowhere/ed"});
    click(&form, QStringLiteral("cmdCancel"));
    // "Abbrechen" doesn't bring the emulator back: step 2 had run.
    QCOMPARE(gEmulators.count(), 5);
    QVERIFY(!gProfils.find(QStringLiteral("13")));
    QCOMPARE(gTextProgram, QStringLiteral("Notepad"));
    QVERIFY(form.startMenusChanged());
}

void TestFrmOptions::captionsFollowTheLevel()
{
    frmOptions form;
    form.show();
    QTreeWidgetItem* top = form.tree()->topLevelItem(0);
    QCOMPARE(top->text(0), QStringLiteral("Emulatoren"));
    QCOMPARE(childTexts(top),
             (QStringList{"VICE", "CCS64", "HOXS64", "EMU64", "MICRO64", "File-Tool"}));
    auto* newButton = child<QPushButton>(&form, QStringLiteral("cmdTree0"));
    auto* standard = child<QPushButton>(&form, QStringLiteral("cmdTree5"));
    const struct
    {
        QStringList at;
        const char* caption;
        bool standard;
    } cases[] = {
        {{}, "Neuer Emulator", false},
        {{"VICE"}, "Neuer Emulator", true},
        {{"VICE", "Attach Disc"}, "Neues Profil", false},
        {{"VICE", "Attach Disc", "-fullscreen"}, "Neuer Parameter", false},
    };
    for (const auto& c : cases) {
        form.tree()->setCurrentItem(node(form, c.at));
        QCOMPARE(newButton->text(), QString::fromUtf8(c.caption));
        QCOMPARE(standard->isEnabled(), c.standard);
    }
    QVERIFY(!child<QPushButton>(&form, QStringLiteral("cmdTree4"))->isEnabled()); // nothing copied

    // The popup offers the same commands on the node under the mouse.
    QStringList shown;
    form.setPopupRunner([&shown](QMenu& menu) {
        for (QAction* a : menu.actions())
            if (a->isVisible())
                shown << a->text();
        menu.actions().at(frmOptions::kCopy)->trigger();
    });
    const QRect rect = form.tree()->visualItemRect(node(form, {"CCS64"}));
    emit form.tree()->customContextMenuRequested(rect.center());
    QCOMPARE(shown, (QStringList{"Neuer Emulator", "Bearbeiten", "Löschen", "Kopieren", "Einfügen",
                                 "Standard- Emulator"}));
    QCOMPARE(form.tree()->currentItem()->text(0), QStringLiteral("CCS64"));
    QVERIFY(child<QPushButton>(&form, QStringLiteral("cmdTree4"))->isEnabled()); // copied
}

void TestFrmOptions::newOnEachLevel()
{
    QFile program(m_home->filePath(QStringLiteral("opener")));
    QVERIFY(program.open(QIODevice::WriteOnly));
    program.close();
    frmOptions form;
    form.show();

    runCommand(form, {QStringLiteral("VICE")}, frmOptions::kNew, [&](QDialog* editor) {
        setText(editor, "txtName", QStringLiteral("Opener"));
        setText(editor, "cboPath", program.fileName());
        child<QComboBox>(editor, QStringLiteral("cboTyp"))->setCurrentIndex(0);
        click(editor, QStringLiteral("cmdOk"));
    });
    QCOMPARE(form.tree()->currentItem()->text(0), QStringLiteral("Opener"));
    QCOMPARE(childTexts(node(form, {"Opener"})), QStringList{"Open"}); // its default profile

    runCommand(form, {QStringLiteral("VICE"), QStringLiteral("Attach Disc")}, frmOptions::kNew,
               [](QDialog* editor) {
                   setText(editor, "txtName", QStringLiteral("Warp"));
                   click(editor, QStringLiteral("cmdOk"));
               });
    QCOMPARE(form.tree()->currentItem()->text(0), QStringLiteral("Warp"));
    QCOMPARE(childTexts(node(form, {"VICE"})).last(), QStringLiteral("Warp"));

    // A profile without items offers its first item.
    form.tree()->setCurrentItem(node(form, {"VICE", "Warp"}));
    QCOMPARE(child<QPushButton>(&form, QStringLiteral("cmdTree0"))->text(),
             QStringLiteral("Neuer Parameter"));
    runCommand(form, {QStringLiteral("VICE"), QStringLiteral("Warp")}, frmOptions::kNew,
               [](QDialog* editor) {
                   setText(editor, "cboParam", QStringLiteral("-warp"));
                   click(editor, QStringLiteral("cmdOk"));
               });
    QTreeWidgetItem* warp = node(form, {"VICE", "Warp", "-warp"});
    QVERIFY(warp);
    QCOMPARE(warp->checkState(0), Qt::Checked);
    QCOMPARE(form.tree()->currentItem(), warp);
    // An editor left with "Abbrechen" adds nothing.
    runCommand(form, {QStringLiteral("VICE"), QStringLiteral("Warp"), QStringLiteral("-warp")},
               frmOptions::kNew,
               [](QDialog* editor) { click(editor, QStringLiteral("cmdCancel")); });
    QCOMPARE(childTexts(node(form, {"VICE", "Warp"})), QStringList{"-warp"});

    QCOMPARE(gEmulators.count(), 6); // only "OK" moves the copies
    click(&form, QStringLiteral("cmdOk"));
    QCOMPARE(gEmulators.count(), 7);
    QCOMPARE(gEmulators.at(6)->Path, program.fileName());
    bool found = false;
    for (const ProfilPtr& p : gProfils)
        found = found || (p->Name == u"Warp" && p->EmulKey == u"1" && p->Options == u"-warp=@=1");
    QVERIFY(found);
}

void TestFrmOptions::editAndDeleteOnEachLevel()
{
    frmOptions form;
    form.show();
    const QString attach = QStringLiteral("-8 \"<$filepath$>\"");
    runCommand(form, {"VICE", "Attach Disc", attach}, frmOptions::kEdit, [](QDialog* editor) {
        setText(editor, "cboParam", QStringLiteral("-9 \"<$filepath$>\""));
        click(editor, QStringLiteral("cmdOk"));
    });
    QCOMPARE(form.tree()->currentItem()->text(0), QStringLiteral("-9 \"<$filepath$>\""));
    runCommand(form, {"VICE", "Attach Tape"}, frmOptions::kEdit, [](QDialog* editor) {
        setText(editor, "txtName", QStringLiteral("Tape"));
        click(editor, QStringLiteral("cmdOk"));
    });
    QVERIFY(node(form, {"VICE", "Tape"}));
    runCommand(form, {"EMU64"}, frmOptions::kEdit, [](QDialog* editor) {
        setText(editor, "txtName", QStringLiteral("Emu 64"));
        click(editor, QStringLiteral("cmdOk"));
    });
    QVERIFY(node(form, {"Emu 64"}));

    runCommand(form, {"VICE", "Attach Disc", "-fullscreen"}, frmOptions::kDelete);
    QCOMPARE(childTexts(node(form, {"VICE", "Attach Disc"})),
             (QStringList{"+confirmexit", "-9 \"<$filepath$>\"", "-VICIIdsize"}));
    QCOMPARE(optionsOf(form, "5"),
             QStringLiteral("+confirmexit=@=1@@@-9 \"<$filepath$>\"=@=1@@@-VICIIdsize=@=1"));
    // The default profile, also the profile of ".D64": the default moves to the first
    // active one, the extension goes back to the default.
    runCommand(form, {"VICE", "Autostart Disc (Temporary File)"}, frmOptions::kDelete);
    QVERIFY(!node(form, {"VICE", "Autostart Disc (Temporary File)"}));
    QCOMPARE(form.tree()->currentItem()->text(0), QStringLiteral("VICE"));
    runCommand(form, {"MICRO64"}, frmOptions::kDelete);
    QVERIFY(!node(form, {"MICRO64"}));
    QVERIFY(m_dialogs.messages().isEmpty());

    click(&form, QStringLiteral("cmdOk"));
    QCOMPARE(gEmulators.count(), 5);
    QCOMPARE(gEmulators.find("4")->Name, QStringLiteral("Emu 64"));
    QVERIFY(!gProfils.find("4") && !gProfils.find("13"));
    QCOMPARE(gProfils.find("6")->Name, QStringLiteral("Tape"));
    QCOMPARE(gDefaultProfil, QStringLiteral("3"));
    QCOMPARE(gStartProfils[0], QString());
}

void TestFrmOptions::copyAndPasteOnEachLevel()
{
    frmOptions form;
    form.show();
    node(form, {"HOXS64", "Attach"})->setCheckState(0, Qt::Unchecked);

    // An emulator: the editor in copy mode wants a name of its own.
    runCommand(form, {"HOXS64"}, frmOptions::kCopy);
    int tries = 0;
    const QString program = m_home->filePath(QStringLiteral("hoxs"));
    QFile file(program);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    runCommand(form, {}, frmOptions::kPaste, [&tries, &program](QDialog* editor) {
        click(editor, QStringLiteral("cmdOk")); // "HOXS64" is taken
        ++tries;
        setText(editor, "txtName", QStringLiteral("HOXS64 b"));
        setText(editor, "cboPath", program);
        click(editor, QStringLiteral("cmdOk"));
    });
    QCOMPARE(tries, 1);
    QCOMPARE(m_dialogs.messages(), QStringList{"Dieser Name besteht schon!"});
    QTreeWidgetItem* copy = node(form, {"HOXS64 b"});
    QVERIFY(copy);
    QCOMPARE(childTexts(copy), (QStringList{"Autoload (Temporary File)", "Attach"}));
    QCOMPARE(copy->child(1)->checkState(0), Qt::Unchecked); // the Aktiv states came along
    QCOMPARE(copy->child(0)->checkState(0), Qt::Checked);

    // A profile, under the emulator of the node it is pasted on.
    runCommand(form, {"VICE", "Attach Disc"}, frmOptions::kCopy);
    runCommand(form, {"CCS64", "Attach"}, frmOptions::kPaste, [](QDialog* editor) {
        QCOMPARE(child<QLineEdit>(editor, QStringLiteral("txtName"))->text(),
                 QStringLiteral("Attach Disc"));
        click(editor, QStringLiteral("cmdOk"));
    });
    QCOMPARE(childTexts(node(form, {"CCS64"})), (QStringList{"Autorun", "Attach", "Attach Disc"}));
    const QString pasted = form.tree()->currentItem()->data(0, Qt::UserRole).toString();
    QCOMPARE(optionsOf(form, pasted), optionsOf(form, "5"));

    // An item, at the end of the current profile, switched on.
    runCommand(form, {"HOXS64", "Attach", "-quickload"}, frmOptions::kCopy);
    runCommand(form, {"VICE", "Cartridge"}, frmOptions::kPaste, [](QDialog* editor) {
        QCOMPARE(child<QComboBox>(editor, QStringLiteral("cboParam"))->currentText(),
                 QStringLiteral("-quickload"));
        click(editor, QStringLiteral("cmdOk"));
    });
    QVERIFY(optionsOf(form, "9").endsWith(QStringLiteral("@@@-quickload=@=1")));

    // Deleting what was copied forgets it.
    runCommand(form, {"HOXS64", "Attach", "-quickload"}, frmOptions::kDelete);
    form.tree()->setCurrentItem(node(form, {"VICE", "Cartridge"}));
    QVERIFY(!child<QPushButton>(&form, QStringLiteral("cmdTree4"))->isEnabled());
}

void TestFrmOptions::checkRules()
{
    // VICE with two active profiles, CCS64 switched off with both of its profiles.
    gEmulators.clear();
    gProfils.clear();
    AddDefaultEmulator(1, 1, gEmulators, gProfils, true);
    AddDefaultEmulator(2, 2, gEmulators, gProfils, true);
    for (const char* key : {"5", "6", "9", "14"})
        gProfils.find(QString::fromLatin1(key))->Aktiv = false;
    gEmulators.find("2")->Aktiv = false;
    gProfils.find("1")->Aktiv = false;
    gProfils.find("2")->Aktiv = false;
    frmOptions form;
    form.show();
    const auto profil = [&form](const char* emul, const char* name) {
        return node(form, {QString::fromLatin1(emul), QString::fromLatin1(name)});
    };

    profil("VICE", "Autostart (Original File)")->setCheckState(0, Qt::Unchecked);
    QVERIFY(m_dialogs.messages().isEmpty());
    QTreeWidgetItem* last = profil("VICE", "Autostart Disc (Temporary File)");
    last->setCheckState(0, Qt::Unchecked);
    QCOMPARE(m_dialogs.messages(), QStringList{"Ein Profil muss aktiv sein!"});
    QCOMPARE(last->checkState(0), Qt::Checked);
    QVERIFY(form.config().profils.find("4")->Aktiv);

    m_dialogs.clear();
    QTreeWidgetItem* vice = node(form, {"VICE"});
    vice->setCheckState(0, Qt::Unchecked);
    QCOMPARE(m_dialogs.messages(), QStringList{"Ein Emulator muss aktiv sein!"});
    QCOMPARE(vice->checkState(0), Qt::Checked);
    QVERIFY(form.config().emulators.find("1")->Aktiv);

    // An item switched on activates its profile, not the emulator.
    m_dialogs.clear();
    QTreeWidgetItem* manual = node(form, {"CCS64", "Autorun", "-manualrun"});
    manual->setCheckState(0, Qt::Checked);
    QCOMPARE(profil("CCS64", "Autorun")->checkState(0), Qt::Checked);
    QCOMPARE(node(form, {"CCS64"})->checkState(0), Qt::Unchecked);
    QVERIFY(optionsOf(form, "1").contains(QStringLiteral("-manualrun=@=1")));
    // A profile switched on activates its emulator; an emulator all its profiles.
    profil("CCS64", "Attach")->setCheckState(0, Qt::Checked);
    QCOMPARE(node(form, {"CCS64"})->checkState(0), Qt::Checked);
    vice->setCheckState(0, Qt::Unchecked);
    QCOMPARE(profil("VICE", "Autostart Disc (Temporary File)")->checkState(0), Qt::Unchecked);
    vice->setCheckState(0, Qt::Checked);
    for (int i = 0; i < vice->childCount(); ++i)
        QCOMPARE(vice->child(i)->checkState(0), Qt::Checked);
    QVERIFY(m_dialogs.messages().isEmpty());

    // The last active profile can't be deleted either.
    node(form, {"CCS64"})->setCheckState(0, Qt::Unchecked);
    for (const char* name : {"Autostart (Original File)", "Attach Disc", "Attach Tape", "Cartridge",
                             "Attach Flip list"})
        profil("VICE", name)->setCheckState(0, Qt::Unchecked);
    QVERIFY(m_dialogs.messages().isEmpty());
    runCommand(form, {"VICE", "Autostart Disc (Temporary File)"}, frmOptions::kDelete);
    QCOMPARE(m_dialogs.messages(), QStringList{"Ein Profil muss aktiv sein!"});
    QVERIFY(profil("VICE", "Autostart Disc (Temporary File)"));

    click(&form, QStringLiteral("cmdOk"));
    QVERIFY(!gEmulators.find("2")->Aktiv);
    QCOMPARE(gProfils.find("1")->Options, optionsOf(form, "1"));
    QVERIFY(gProfils.find("4")->Aktiv && !gProfils.find("3")->Aktiv);
}

void TestFrmOptions::standardEmulator()
{
    frmOptions form;
    form.show();
    form.tabs()->setCurrentIndex(frmOptions::FILES);
    runCommand(form, {"HOXS64"}, frmOptions::kStandard);
    QCOMPARE(m_dialogs.messages(),
             QStringList{"Die Profilzuordnung wurde für den Emulator angepasst!"});
    // .D64 HOXS64's autoload with a temporary file; .D71 and .D81 what VICE can read; .C64
    // CCS64's autorun; .VFL and .VSF VICE; the others HOXS64's base profile.
    const QStringList expected{"7", "4", "7", "7", "7", "7", "3", "1", "7", "7", "4", "14"};
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(form.config().startProfils[size_t(i)], expected[i]);
        QCOMPARE(child<QComboBox>(&form, QStringLiteral("cboProfils%1").arg(i))
                     ->currentData()
                     .toString(),
                 expected[i]);
    }
    click(&form, QStringLiteral("cmdOk"));
    QCOMPARE(gStartProfils[0], QStringLiteral("7"));
    QCOMPARE(gStartProfils[7], QStringLiteral("1"));
}

void TestFrmOptions::sampleFollowsTheLook()
{
    app::gFontName = QStringLiteral("CBM");
    app::gFontSize = 8;
    frmOptions form;
    form.show();
    form.tabs()->setCurrentIndex(frmOptions::Preview);
    auto* fonts = child<QListWidget>(&form, QStringLiteral("lstFont"));
    auto* size = child<QLineEdit>(&form, QStringLiteral("txtFontSize"));
    auto* scroll = child<QScrollBar>(&form, QStringLiteral("SizeScroll"));
    QTreeWidget* sample = form.sample()->list();
    QCOMPARE(fonts->currentItem()->text(), QStringLiteral("CBM"));
    QCOMPARE(scroll->value(), 2);
    QCOMPARE(size->text(), QStringLiteral("8"));
    QCOMPARE(sample->topLevelItemCount(), 5);
    QCOMPARE(sample->topLevelItem(1)->text(browser::PreviewPane::kColFile),
             QStringLiteral("\"   VELLUMDOCK   \""));
    QCOMPARE(sample->topLevelItem(0)->text(browser::PreviewPane::kColExtension),
             QStringLiteral("PRG"));

    scroll->setValue(6);
    QCOMPARE(size->text(), QStringLiteral("12"));
    QCOMPARE(sample->font().pointSize(), 12);
    m_dialogs.answerColor(0x00FF00);
    click(&form, QStringLiteral("picBackColor"));
    QCOMPARE(m_dialogs.calls.last().start, QString::number(app::kPreviewBackColor));
    QCOMPARE(sample->palette().color(QPalette::Base), QColor(0, 255, 0));
    m_dialogs.answerCancel();
    click(&form, QStringLiteral("picForeColor"));
    QCOMPARE(sample->palette().color(QPalette::Text),
             browser::settingsColor(app::kPreviewForeColor));

    click(&form, QStringLiteral("cmdOk"));
    QVERIFY(form.previewChanged());
    QCOMPARE(app::gFontSize, 12);
    QCOMPARE(app::gPreviewBackColor, qint64(0x00FF00));

    frmOptions again;
    again.show();
    again.tabs()->setCurrentIndex(frmOptions::Preview);
    QCOMPARE(again.sample()->list()->palette().color(QPalette::Base), QColor(0, 255, 0));
    click(&again, QStringLiteral("cmdReset"));
    QCOMPARE(child<QLineEdit>(&again, QStringLiteral("txtFontSize"))->text(), QStringLiteral("8"));
    QCOMPARE(again.sample()->list()->palette().color(QPalette::Base),
             browser::settingsColor(app::kPreviewBackColor));
    click(&again, QStringLiteral("cmdOk"));
    QCOMPARE(app::gPreviewBackColor, app::kPreviewBackColor);
    QCOMPARE(app::gFontSize, 8);
}

void TestFrmOptions::pathButtons()
{
    frmOptions form;
    form.show();
    form.tabs()->setCurrentIndex(frmOptions::DB);
    m_dialogs.answerText(QStringLiteral("/usr/bin/mousepad"));
    click(&form, QStringLiteral("cmdEditor"));
    QCOMPARE(m_dialogs.calls.last().title, QStringLiteral("Text-Editor auswählen"));
    QCOMPARE(m_dialogs.calls.last().text, QStringLiteral("Programme (*)|*"));
    QCOMPARE(child<QLineEdit>(&form, QStringLiteral("txtEditor"))->text(),
             QStringLiteral("/usr/bin/mousepad"));

    form.tabs()->setCurrentIndex(frmOptions::GB);
    m_dialogs.answerText(m_home->path());
    click(&form, QStringLiteral("cmdGBShots"));
    QCOMPARE(m_dialogs.calls.last().title, QStringLiteral("Bitte wählen Sie einen Ordner aus"));
    m_dialogs.answerCancel();
    click(&form, QStringLiteral("cmdDownloadPath"));
    QCOMPARE(child<QLineEdit>(&form, QStringLiteral("txtGBShots"))->text(), m_home->path());
    QCOMPARE(child<QLineEdit>(&form, QStringLiteral("txtDownload"))->text(), QString());
    m_dialogs.answerCancel();
    click(&form, QStringLiteral("cmdGBDB"));
    QCOMPARE(m_dialogs.calls.last().title, QStringLiteral("GameBase-Datenbank auswählen"));
    QVERIFY(child<QLineEdit>(&form, QStringLiteral("txtGBDB"))->text().isEmpty()); // the hint

    // "Download" opens the page of the settings.
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler(QStringLiteral("https"), &catcher, "open");
    click(&form, QStringLiteral("cmdGB"));
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    QCOMPARE(catcher.urls, QList<QUrl>{QUrl(gamebase::kDefaultGBHomepageUrl)});
}

QTEST_MAIN(TestFrmOptions)
#include "tst_frmoptions.moc"
