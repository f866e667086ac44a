// Languages in the running program, offscreen: the menu "Sprache" lists the files of Lang;
// choosing one turns the main window, the preview window and the flip list into it at once,
// "Deutsch" brings back exactly the German texts, and the choice is kept for the next start.
// Starts with a UTF-16 file, a file of random bytes, a file that is gone, and the language
// "NEW", which writes the texts in use as a new file at exit.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "browser/ui/frmMain.h"
#include "browser/ui/frmPreview.h"
#include "browser/ui/PreviewPane.h"
#include "catalogue/Catalogue.h"
#include "controls/ui/ReportView.h"
#include "controls/ui/SimpleReport.h"
#include "launch/ui/frmFlipList.h"
#include "platform/ScriptedDialogService.h"
#include "support/WindowHome.h"

#include <QAbstractButton>
#include <QAction>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QRandomGenerator>
#include <QStatusBar>
#include <QStringEncoder>
#include <QToolBar>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using browser::frmMain;

namespace {

// The test's own English: menu titles, entries, a tool tip, list headers and side lists.
const char kEnglish[] = "Datei@@&File\r\n"
                        "Bearbeiten@@&Edit\r\n"
                        "Ansicht@@View\r\n"
                        "Sprache@@Language\r\n"
                        "Deutsch@@German\r\n"
                        "Englisch@@English\r\n"
                        "Neue Datenbank@@&New database\r\n"
                        "Beenden@@E&xit\r\n"
                        "Dateien@@Files\r\n"
                        "Dateipfad@@File path\r\n"
                        "Disk, Tape,...@@Disk, tape,...\r\n"
                        "Suchen@@Search\r\n"
                        "Filter aus@@No filter\r\n"
                        "Flipliste@@Flip list\r\n"
                        "Neu@@New\r\n";

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

QByteArray readBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool inStatusBar(const QObject* o)
{
    for (; o; o = o->parent())
        if (qobject_cast<const QStatusBar*>(o))
            return true;
    return false;
}

// Every text a user can read in a window and the windows it owns, the status bar (live texts)
// aside: captions, menus, tool tips, labels, buttons, list headers and the rows of the side lists.
QStringList snapshot(QWidget* window)
{
    QStringList texts{window->windowTitle()};
    for (QAction* a : window->findChildren<QAction*>())
        if (!a->isSeparator())
            texts << a->objectName() + QLatin1Char('|') + a->text() + QLatin1Char('|') +
                         a->toolTip();
    for (QLabel* l : window->findChildren<QLabel*>())
        if (!inStatusBar(l))
            texts << l->objectName() + QLatin1Char('|') + l->text();
    for (QAbstractButton* b : window->findChildren<QAbstractButton*>())
        texts << b->objectName() + QLatin1Char('|') + b->text() + QLatin1Char('|') + b->toolTip();
    for (QTreeWidget* t : window->findChildren<QTreeWidget*>()) {
        for (int c = 0; c < t->columnCount(); ++c)
            texts << t->objectName() + QStringLiteral("|header|") + t->headerItem()->text(c);
        for (int r = 0; r < t->topLevelItemCount(); ++r)
            texts << t->objectName() + QStringLiteral("|row|") + t->topLevelItem(r)->text(0);
    }
    for (controls::SimpleReport* r : window->findChildren<controls::SimpleReport*>())
        for (int c = 0; c < r->model()->columnCount(); ++c)
            texts << r->objectName() + QStringLiteral("|column|") +
                         r->model()->headerData(c, Qt::Horizontal).toString();
    return texts;
}

} // namespace

class TestLanguageSwitch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void menuListsTheLanguageFiles();
    void switchingTranslatesOpenWindowsAndBack();
    void choiceIsKeptForTheNextStart();
    void startWithABadLanguageFile_data();
    void startWithABadLanguageFile();
    void languageNewWritesTheTextsInUse();
    void realEnglishFileTranslatesTheMenuTitles();

private:
    frmMain& open();
    QMenu* languageMenu() { return m_form->menuEntry(QStringLiteral("mnuLanguage"))->menu(); }
    QAction* languageEntry(const QString& caption);
    QString title(const char* menu)
    {
        return m_form->menuEntry(QString::fromUtf8(menu))->menu()->title();
    }
    QString listHeader(const QString& key)
    {
        controls::SimpleReport& r = m_form->list()->report();
        return r.model()
            ->headerData(m_form->list()->Columns().indexOf(key), Qt::Horizontal)
            .toString();
    }
    QString lang(const QString& name) const { return app::gLangPath + name; }
    QStringList mainKeys();

    std::unique_ptr<test::WindowHome> m_home;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;
};

void TestLanguageSwitch::init()
{
    m_home = std::make_unique<test::WindowHome>(m_dialogs);
    QVERIFY(m_home->isValid());
    QVERIFY(QDir().mkpath(app::gLangPath));
    QVERIFY(writeFile(lang(QStringLiteral("English.lng")), kEnglish));
    QVERIFY(writeFile(lang(QStringLiteral("French.lng")), "Datei@@&Fichier\r\n"));
    QVERIFY(writeFile(lang(QStringLiteral("Zulu.lng")), "Datei@@Ifayela\r\n"));
    QVERIFY(writeFile(lang(QStringLiteral("Liesmich.txt")), "Datei@@File\r\n"));
}

void TestLanguageSwitch::cleanup()
{
    m_form.reset();
    m_home.reset();
    app::gLanguageFile.clear();
    app::LoadLanguage();
}

frmMain& TestLanguageSwitch::open()
{
    m_form = std::make_unique<frmMain>();
    m_form->resize(1100, 700);
    m_form->show();
    m_form->Form_Activate();
    return *m_form;
}

QAction* TestLanguageSwitch::languageEntry(const QString& caption)
{
    for (QAction* a : languageMenu()->actions())
        if (a->text() == caption)
            return a;
    return nullptr;
}

QStringList TestLanguageSwitch::mainKeys()
{
    m_form->close();
    m_form.reset();
    catalogue::CloseCatalogue();
    QStringList lines;
    for (const QString& line : QString::fromUtf8(readBytes(app::gIniFile)).split("\r\n"))
        if (line.startsWith(QLatin1String("LanguageFile=")))
            lines << line;
    return lines;
}

void TestLanguageSwitch::menuListsTheLanguageFiles()
{
    open();
    QStringList captions;
    QStringList files;
    for (QAction* a : languageMenu()->actions()) {
        captions << a->text();
        files << a->data().toString();
        QCOMPARE(a->isChecked(), a->text() == QLatin1String("Deutsch"));
    }
    QCOMPARE(captions, (QStringList{"Deutsch", "Englisch", "Französisch", "Zulu"}));
    QCOMPARE(files, (QStringList{"", "English.lng", "French.lng", "Zulu.lng"}));
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestLanguageSwitch::switchingTranslatesOpenWindowsAndBack()
{
    frmMain& form = open();
    form.menuEntry(QStringLiteral("mnuOpenPreview"))->trigger();
    QVERIFY(form.previewWindow());
    form.menuEntry(QStringLiteral("mnuFlipList"))->trigger();
    QVERIFY(form.flipListWindow());
    const QString previewTitle = form.previewWindow()->windowTitle();
    const QStringList german = snapshot(&form);
    QCOMPARE(listHeader(QStringLiteral("Disc_File")), QStringLiteral("Disk, Tape,..."));

    languageEntry(QStringLiteral("Englisch"))->trigger();
    QCOMPARE(app::gLanguageFile, QStringLiteral("English.lng"));
    QCOMPARE(title("mnuFile"), QStringLiteral("&File"));
    QCOMPARE(title("mnuEdit"), QStringLiteral("&Edit"));
    QCOMPARE(title("mnuViews"), QStringLiteral("View"));
    QCOMPARE(title("mnuLanguage"), QStringLiteral("Language"));
    QCOMPARE(form.menuEntry(QStringLiteral("mnuExit"))->text(), QStringLiteral("E&xit"));
    QCOMPARE(form.toolbarButton(QStringLiteral("NewDB"))->toolTip(),
             QStringLiteral("New database"));
    // A text the file doesn't know stays German, without its hot key.
    QCOMPARE(form.menuEntry(QStringLiteral("mnuOpenDB"))->text(),
             QStringLiteral("Datenbank öffnen"));
    QVERIFY(languageEntry(QStringLiteral("English"))->isChecked());
    QVERIFY(!languageEntry(QStringLiteral("German"))->isChecked());
    // List headers, the side lists' titles and rows.
    QCOMPARE(listHeader(QStringLiteral("Disc_File")), QStringLiteral("Disk, tape,..."));
    QVERIFY(form.list()->Columns().indexOf(QStringLiteral("File path")) >= 0);
    QCOMPARE(form.viewsList()->headerItem()->text(0), QStringLiteral("View"));
    QCOMPARE(form.viewsList()->topLevelItem(1)->text(0), QStringLiteral("Files"));
    QCOMPARE(form.searchList()->headerItem()->text(0), QStringLiteral("Search"));
    QCOMPARE(form.searchList()->topLevelItem(2)->text(0), QStringLiteral("File path"));
    QCOMPARE(form.filterList()->topLevelItem(0)->text(0), QStringLiteral("No filter"));
    // The open windows: the flip list's caption and toolbar; the preview keeps the name it shows.
    QCOMPARE(form.flipListWindow()->windowTitle(), QStringLiteral("Flip list"));
    QCOMPARE(form.flipListWindow()->command(QStringLiteral("cmdNew"))->text(),
             QStringLiteral("New"));
    QCOMPARE(form.previewWindow()->windowTitle(), previewTitle);

    languageEntry(QStringLiteral("German"))->trigger();
    QCOMPARE(app::gLanguageFile, QString());
    QCOMPARE(snapshot(&form), german);
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestLanguageSwitch::choiceIsKeptForTheNextStart()
{
    open();
    languageEntry(QStringLiteral("Zulu"))->trigger();
    QCOMPARE(title("mnuFile"), QStringLiteral("Ifayela"));
    languageEntry(QStringLiteral("Englisch"))->trigger(); // not translated by Zulu.lng
    QCOMPARE(title("mnuFile"), QStringLiteral("&File"));
    QCOMPARE(mainKeys(), QStringList{QStringLiteral("LanguageFile=English.lng")});

    app::gLanguageFile.clear(); // a new start begins in German, before the settings are read
    QVERIFY(app::LoadLanguage());
    open();
    QCOMPARE(title("mnuFile"), QStringLiteral("&File"));
    QVERIFY(languageEntry(QStringLiteral("English"))->isChecked());
    languageEntry(QStringLiteral("German"))->trigger();
    QCOMPARE(title("mnuFile"), QStringLiteral("&Datei"));
    QCOMPARE(mainKeys(), QStringList{QStringLiteral("LanguageFile=")});
}

void TestLanguageSwitch::startWithABadLanguageFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("fileTitle");

    QStringEncoder utf16(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
    const QByteArray wide = utf16.encode(QString::fromUtf8(kEnglish));
    QTest::newRow("UTF-16") << "English.lng" << wide << ""
                            << "&File";

    QByteArray noise(20000, Qt::Uninitialized);
    QRandomGenerator generator(7);
    for (char& c : noise) {
        c = char(generator.bounded(256));
        if (c == '@')
            c = '#';
    }
    QTest::newRow("random bytes") << "Noise.lng" << noise
                                  << "Fehler beim Einlesen der Sprachdatei: Noise.lng"
                                  << "&Datei";
    QTest::newRow("file gone") << "Gone.lng" << QByteArray() << "Ungültiger Pfad der Sprachdatei: "
                               << "&Datei";
}

void TestLanguageSwitch::startWithABadLanguageFile()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    QFETCH(QString, fileTitle);
    if (!bytes.isEmpty())
        QVERIFY(writeFile(lang(name), bytes));
    QVERIFY(m_home->writeIni("ViewMode=1\r\nLanguageFile=" + name.toUtf8() + "\r\n"));
    open();
    if (message.isEmpty()) {
        QVERIFY(m_dialogs.messages().isEmpty());
    } else {
        QCOMPARE(m_dialogs.messages().size(), 1);
        if (bytes.isEmpty()) { // the folder and the name, with the warning icon
            QCOMPARE(m_dialogs.messages()[0], message + lang(name));
            QCOMPARE(m_dialogs.calls[0].style, int(platform::vbExclamation));
        } else {
            QCOMPARE(m_dialogs.messages()[0], message);
        }
    }
    QCOMPARE(title("mnuFile"), fileTitle);
    QVERIFY(app::gDB != nullptr); // the program runs on, with its catalogue
    QCOMPARE(mainKeys(),
             QStringList{QStringLiteral("LanguageFile=") + (message.isEmpty() ? name : QString())});
}

void TestLanguageSwitch::languageNewWritesTheTextsInUse()
{
    QVERIFY(m_home->writeIni("ViewMode=1\r\nLanguageFile=NEW\r\n"));
    open();
    QVERIFY(m_dialogs.messages().isEmpty());
    QCOMPARE(title("mnuFile"), QStringLiteral("Datei")); // collected, and its hot key gone
    QCOMPARE(mainKeys(), QStringList{QStringLiteral("LanguageFile=NEW")});
    const QString written = QString::fromUtf8(readBytes(lang(QStringLiteral("NEW.lng"))));
    QVERIFY(written.endsWith(QLatin1String("\r\n")));
    const QStringList lines = written.chopped(2).split(QStringLiteral("\r\n"));
    for (const QString& text : {QStringLiteral("Datei"), QStringLiteral("Neue Datenbank"),
                                QStringLiteral("Dateien"), QStringLiteral("Filter aus")})
        QCOMPARE(lines.count(text + QStringLiteral("@@") + text), 1);
    for (const QString& line : lines) {
        const QStringList parts = line.split(QStringLiteral("@@"));
        QCOMPARE(parts.size(), 2);
        QCOMPARE(parts[0], parts[1]);
        QVERIFY2(app::IsProgramText(parts[0]), qPrintable(line));
    }
    QStringList unique = lines;
    QCOMPARE(unique.removeDuplicates(), 0);
}

void TestLanguageSwitch::realEnglishFileTranslatesTheMenuTitles()
{
    const QString real = QFileInfo(QStringLiteral(__FILE__))
                             .dir()
                             .absoluteFilePath(QStringLiteral("../../../src/app/Lang/English.lng"));
    if (!QFile::exists(real))
        QSKIP("src/app/Lang/English.lng is not in the source tree");
    QFile::remove(lang(QStringLiteral("English.lng")));
    QVERIFY(QFile::copy(real, lang(QStringLiteral("English.lng"))));
    // The titles as the file has them, read here without the program's reader.
    QHash<QString, QString> file;
    for (QString line : QString::fromUtf8(readBytes(real)).split(QLatin1Char('\n'))) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        const QStringList parts = line.split(QStringLiteral("@@"));
        if (parts.size() == 2)
            file.insert(parts[0].toLower(), parts[1]);
    }
    open();
    languageEntry(QStringLiteral("Englisch"))->trigger();
    const QList<QPair<const char*, QString>> titles{{"mnuFile", QStringLiteral("datei")},
                                                    {"mnuEdit", QStringLiteral("bearbeiten")},
                                                    {"mnuViews", QStringLiteral("ansicht")},
                                                    {"mnuExtras", QStringLiteral("extras")}};
    for (const auto& [menu, german] : titles) {
        QVERIFY2(file.contains(german), qPrintable("English.lng has no line for " + german));
        QCOMPARE(title(menu), file.value(german));
    }
}

QTEST_MAIN(TestLanguageSwitch)
#include "tst_languageswitch.moc"
