// Switching views in the main window runs the statements of the view it goes to, and no more:
// coming back to the flat list of files must not run the list's last statement again while the
// list is still hidden (on a big catalogue that sized its columns over every row and took
// seconds), and the list shows the catalogue's files each time.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmMain.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "controls/ui/SimpleReport.h"
#include "platform/ScriptedDialogService.h"
#include "support/WindowHome.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <sqlite3.h>

using namespace vd;
using browser::frmMain;

namespace {

// Counts the runs of the statements whose text holds a marker, and the rows they step.
class StatementCounter
{
public:
    StatementCounter(sqlite3* db, QByteArray marker) : m_db(db), m_marker(std::move(marker))
    {
        sqlite3_trace_v2(m_db, SQLITE_TRACE_STMT | SQLITE_TRACE_ROW, &StatementCounter::trace,
                         this);
    }
    ~StatementCounter() { sqlite3_trace_v2(m_db, 0, nullptr, nullptr); }
    // The runs and the rows stepped since the last call.
    std::pair<int, int> take()
    {
        const std::pair<int, int> n{m_runs, m_rows};
        m_runs = m_rows = 0;
        return n;
    }

private:
    static int trace(unsigned what, void* self, void* stmt, void*)
    {
        auto* c = static_cast<StatementCounter*>(self);
        const char* sql = sqlite3_sql(static_cast<sqlite3_stmt*>(stmt));
        if (sql && QByteArray(sql).contains(c->m_marker))
            ++(what == SQLITE_TRACE_ROW ? c->m_rows : c->m_runs);
        return 0;
    }
    sqlite3* m_db;
    QByteArray m_marker;
    int m_runs = 0;
    int m_rows = 0;
};

} // namespace

class TestMainViewSwitch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void flatListRunsOnlyItsNewStatement();

private:
    void switchTo(int menuIndex)
    {
        m_form->menuEntry(QStringLiteral("mnuView%1").arg(menuIndex))->trigger();
        QCoreApplication::processEvents();
    }

    std::unique_ptr<test::WindowHome> m_home;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;
};

void TestMainViewSwitch::init()
{
    m_home = std::make_unique<test::WindowHome>(m_dialogs);
    QVERIFY(m_home->isValid());
    m_form = std::make_unique<frmMain>();
    m_form->resize(1000, 700);
    m_form->show();
    m_form->Form_Activate();
    QVERIFY(app::gDB != nullptr);
    QCOMPARE(m_form->viewMode(), 1);
}

void TestMainViewSwitch::cleanup()
{
    m_form.reset();
    m_home.reset();
}

void TestMainViewSwitch::flatListRunsOnlyItsNewStatement()
{
    // "IsArchiv" names a column of the flat list's statement alone.
    StatementCounter runs(app::gDB->handle(), "IsArchiv");
    switchTo(0); // view 2
    QCOMPARE(m_form->viewMode(), 2);
    QCOMPARE(m_form->filesList()->ItemCount(), test::CatalogueFixture::kFileCount);
    const std::pair<int, int> first = runs.take();
    QVERIFY(first.first > 0);
    QVERIFY(first.second >= test::CatalogueFixture::kFileCount);

    switchTo(1); // view 1: the flat list is hidden and keeps its statement
    QCOMPARE(m_form->viewMode(), 1);
    QCOMPARE(runs.take(), std::make_pair(0, 0));

    switchTo(0); // back: the same work as the first time
    QCOMPARE(m_form->viewMode(), 2);
    QCOMPARE(m_form->filesList()->ItemCount(), test::CatalogueFixture::kFileCount);
    QCOMPARE(runs.take(), first);
}

QTEST_MAIN(TestMainViewSwitch)
#include "tst_mainviewswitch.moc"
