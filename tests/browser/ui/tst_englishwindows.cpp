// The windows in English: with LanguageFile=English.lng each window shows no German text that
// the English file translates, in its caption, labels, buttons, menus, tool tips, headers and
// tabs. Set VD_GRAB_DIR to a folder to get a picture of each window there.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "browser/Filters.h"
#include "browser/ui/frmLegend.h"
#include "browser/ui/frmMain.h"
#include "browser/ui/frmMainFilter.h"
#include "browser/ui/frmResult.h"
#include "import/ui/frmNewPath.h"
#include "launch/clsEmulator.h"
#include "launch/ui/frmEditEmu.h"
#include "platform/ScriptedDialogService.h"
#include "support/LanguageFile.h"
#include "support/WindowHome.h"

#include <memory>
#include <QAbstractButton>
#include <QAction>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QTabBar>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;

namespace {

const QString kEnglish =
    QStringLiteral(VD_SOURCE_DIR) + QStringLiteral("/src/app/Lang/English.lng");

// Every text of `form` a user can read, each with the object that shows it.
QStringList shownTexts(QWidget* form)
{
    QStringList out;
    const auto add = [&out](const QObject* o, const QString& text) {
        if (!text.trimmed().isEmpty())
            out << o->objectName() + QStringLiteral(": ") + text;
    };
    add(form, form->windowTitle());
    for (const QLabel* l : form->findChildren<QLabel*>())
        add(l, l->text());
    for (const QAbstractButton* b : form->findChildren<QAbstractButton*>()) {
        add(b, b->text());
        add(b, b->toolTip());
    }
    for (const QGroupBox* g : form->findChildren<QGroupBox*>())
        add(g, g->title());
    for (const QAction* a : form->findChildren<QAction*>()) {
        add(a, a->text());
        add(a, a->toolTip());
    }
    for (const QMenu* m : form->findChildren<QMenu*>())
        add(m, m->title());
    for (const QTabBar* t : form->findChildren<QTabBar*>())
        for (int i = 0; i < t->count(); ++i)
            add(t, t->tabText(i));
    for (const QHeaderView* h : form->findChildren<QHeaderView*>()) {
        if (!h->model() || h->isHidden())
            continue;
        for (int c = 0; c < h->count(); ++c)
            if (!h->isSectionHidden(c))
                add(h->parent(), h->model()->headerData(c, h->orientation()).toString());
    }
    return out;
}

} // namespace

class TestEnglishWindows : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void mainWindowShowsNoGerman();
    void dialogsShowNoGerman();

private:
    void checkEnglish(QWidget* form);

    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<test::WindowHome> m_home;
    test::LanguageFile m_lng;
};

void TestEnglishWindows::init()
{
    m_lng = test::ReadLanguageFile(kEnglish);
    QVERIFY2(!m_lng.byKey.isEmpty(), qPrintable(m_lng.problems.join(u'\n')));
    m_home = std::make_unique<test::WindowHome>(m_dialogs, "LanguageFile=English.lng\r\n");
    QVERIFY(m_home->isValid());
    QVERIFY(QDir().mkpath(app::gLangPath));
    QVERIFY(QFile::copy(kEnglish, app::gLangPath + QStringLiteral("English.lng")));
}

void TestEnglishWindows::cleanup()
{
    m_home.reset();
    app::gLanguageFile.clear();
    app::LoadLanguage();
}

void TestEnglishWindows::checkEnglish(QWidget* form)
{
    const QByteArray grabs = qgetenv("VD_GRAB_DIR");
    if (!grabs.isEmpty())
        form->grab().save(QString::fromLocal8Bit(grabs) + u'/' + form->objectName() +
                          QStringLiteral(".png"));
    QStringList german;
    for (const QString& shown : shownTexts(form))
        if (test::IsLeftGerman(m_lng, shown.mid(shown.indexOf(QStringLiteral(": ")) + 2)))
            german << shown;
    german.removeDuplicates();
    for (const QString& g : std::as_const(german))
        qWarning().noquote() << form->objectName() << "left German:" << g;
    QVERIFY2(german.isEmpty(), qPrintable(QStringLiteral("%1 German texts").arg(german.size())));
}

void TestEnglishWindows::mainWindowShowsNoGerman()
{
    browser::frmMain form;
    form.show();
    form.Form_Activate();
    QVERIFY(app::gDB != nullptr);
    QCOMPARE(app::gLanguageFile, QStringLiteral("English.lng"));
    QVERIFY(m_dialogs.messages().isEmpty());
    checkEnglish(&form);
    form.close();
}

void TestEnglishWindows::dialogsShowNoGerman()
{
    // The main window loads the language; the dialogs are opened over it.
    browser::frmMain main;
    main.show();
    main.Form_Activate();
    QVERIFY(app::gDB != nullptr);

    browser::frmLegend legend(&main);
    checkEnglish(&legend);
    import::frmNewPath newPath({QStringLiteral("/old")}, &main);
    checkEnglish(&newPath);
    QList<browser::ResultItem> items{{QStringLiteral("tFile"), true}};
    browser::frmResult result(QStringLiteral("Spalten"), items, &main);
    checkEnglish(&result);
    browser::FilterCollection filters;
    browser::frmMainFilter filter(filters, app::gDB.get(), &main);
    checkEnglish(&filter);
    launch::Emulators emulators;
    launch::Profils profils;
    launch::frmEditEmu emulator(emulators, profils, QString(), false, &main);
    checkEnglish(&emulator);
    main.close();
}

QTEST_MAIN(TestEnglishWindows)
#include "tst_englishwindows.moc"
