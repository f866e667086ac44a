// The main window's batch commands on the offscreen platform: importing a folder and a file,
// a folder of the recent list, and the check, each in the batch window; the views read anew
// when the catalogue changed, the result in the status bar, the recent folders.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmMain.h"
#include "catalogue/Catalogue.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "import/ui/frmProcess.h"
#include "platform/ScriptedDialogService.h"
#include "support/C64ImageWriter.h"

#include <memory>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace vd;
using browser::frmMain;

namespace {

// Waits for the batch window, lets its work end and closes it with its button; records the
// mode it was shown in.
class ProcessCloser : public QObject
{
public:
    ProcessCloser()
    {
        m_timer.setInterval(10);
        connect(&m_timer, &QTimer::timeout, this, &ProcessCloser::poll);
        m_timer.start();
    }
    QList<int> modes;
    QStringList firstRows;

private:
    void poll()
    {
        for (QWidget* w : QApplication::topLevelWidgets()) {
            auto* form = qobject_cast<import::frmProcess*>(w);
            if (!form || !form->isVisible() || !form->workDone())
                continue;
            modes << form->iMode();
            firstRows << form->process().rows().value(0).Name;
            form->cmdCancel->click();
        }
    }
    QTimer m_timer;
};

// Notes every batch window that was shown, when it goes: its label, and whether Cancel could
// be pressed.
class ShownWindows : public QObject
{
public:
    ShownWindows() { qApp->installEventFilter(this); }
    ~ShownWindows() override { qApp->removeEventFilter(this); }
    QStringList shown;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Hide)
            if (auto* form = qobject_cast<import::frmProcess*>(watched))
                shown << form->lblProcess->text() + (form->cmdCancel->isHidden() ? "" : " +Cancel");
        return false;
    }
};

// A catalogue of version 3.1: Category without tHash and the start fields, two started
// entries of file 1.
void writeCatalogueOf31(const QString& path)
{
    auto d = db::Database::create(path);
    for (db::TableDef t : catalogue::catalogueTables()) {
        if (t.name == QLatin1String("Category")) {
            for (const char* field : {"tHash", "tsLastStarted", "lStartCount"})
                t.fields.removeAt(t.fieldIndex(QLatin1String(field)));
            for (qsizetype i = t.indexes.size() - 1; i >= 0; --i)
                if (t.fieldIndex(t.indexes[i].fields[0]) < 0)
                    t.indexes.removeAt(i);
        }
        d->createTable(t);
    }
    d->execute(QStringLiteral("Insert Into Config (tItem, mConfig) Values ('Version', '3.1')"));
    d->execute(QStringLiteral("Insert Into Category (ID, iType, tFile) Values (1, 1, 'a.d64')"));
    d->execute(QStringLiteral("Insert Into C64Files (ID, Category_File, lStartCount, "
                              "tsLastStarted) Values (1, 1, 2, #03/14/2024 09:05:00 pm#)"));
    d->execute(QStringLiteral("Insert Into C64Files (ID, Category_File, lStartCount, "
                              "tsLastStarted) Values (2, 1, 3, #03/01/2024 10:00:00 am#)"));
    d->close();
}

} // namespace

class TestFrmMainBatch : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_home;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;
    QString m_games;

    frmMain& start(QString cat = {})
    {
        if (cat.isEmpty())
            cat = catalogue::newCatalogue(m_home->filePath(QStringLiteral("Sammlung")));
        QFile ini(app::gIniFile);
        if (!ini.open(QIODevice::WriteOnly))
            qFatal("no settings file");
        ini.write("[MAIN]\r\nDatabase=" + cat.toUtf8() + "\r\n");
        ini.close();
        app::reloadIni();
        m_form = std::make_unique<frmMain>();
        m_form->show();
        m_form->Form_Activate();
        return *m_form;
    }
    QString info() const { return m_form->statusPanel(QStringLiteral("INFO"))->text(); }

private slots:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        QVERIFY(m_home->isValid());
        app::setProgramFolder(m_home->path());
        QVERIFY(QDir().mkpath(app::gTempPath));
        app::reloadIni();
        m_dialogs.clear();
        platform::setDialogService(&m_dialogs);
        m_games = m_home->filePath(QStringLiteral("games"));
        QDir().mkpath(m_games);
        test::writeFile(m_games + QStringLiteral("/a.prg"), "aa");
        test::writeFile(m_games + QStringLiteral("/b.prg"), "bb");
    }
    void cleanup()
    {
        m_form.reset();
        catalogue::CloseCatalogue();
        app::gDatabasePath.clear();
        platform::setDialogService(nullptr);
        m_home.reset();
    }

    void addFolderRunsTheBatchAndReadsTheViews()
    {
        frmMain& form = start();
        QVERIFY(app::gDB);
        QVERIFY(form.menuEntry(QStringLiteral("mnuAddDir"))->isEnabled());
        QVERIFY(form.toolbarButton(QStringLiteral("AddDir"))->isEnabled());
        QSignalSpy views(&form, &frmMain::viewBuilt);
        m_dialogs.answerText(m_games);
        ProcessCloser closer;
        form.menuEntry(QStringLiteral("mnuAddDir"))->trigger();
        QCOMPARE(closer.modes, QList<int>{import::kModeChanged});
        QCOMPARE(m_dialogs.calls.size(), 1);
        QCOMPARE(m_dialogs.calls[0].kind, platform::ScriptedDialogService::Kind::Folder);
        QCOMPARE(views.count(), 1);
        QCOMPARE(info(), QStringLiteral("Hinzugefügte Dateien: 2 Hinzugefügte C64-Files: 2 "
                                        "Durchsuchte Dateien: 2"));
        QCOMPARE(app::gDialogs.value(0), m_games);
        QCOMPARE(app::gDialogPath, m_games);
        const QList<QAction*> recent =
            form.toolbarButton(QStringLiteral("AddDir"))->menu()->actions();
        QCOMPARE(recent.value(0)->data().toString(), m_games);

        // The recent folder imports at once: nothing new, the views stay.
        recent.value(0)->trigger();
        QCOMPARE(closer.modes, QList<int>({import::kModeChanged, import::kModeAddFolder}));
        QCOMPARE(views.count(), 1);
        QCOMPARE(m_dialogs.calls.size(), 1);
    }

    void addFileAndCheck()
    {
        frmMain& form = start();
        QSignalSpy views(&form, &frmMain::viewBuilt);
        m_dialogs.answerText(m_games + QStringLiteral("/a.prg"));
        ProcessCloser closer;
        form.menuEntry(QStringLiteral("mnuAddFile"))->trigger();
        QCOMPARE(m_dialogs.calls.value(0).kind, platform::ScriptedDialogService::Kind::OpenFile);
        QVERIFY(m_dialogs.calls.value(0).text.contains(QStringLiteral("*.PRG")));
        QCOMPARE(closer.modes, QList<int>{import::kModeChanged});
        QCOMPARE(views.count(), 1);

        QVERIFY(QFile::remove(m_games + QStringLiteral("/a.prg")));
        form.menuEntry(QStringLiteral("mnuCheckFiles"))->trigger();
        QCOMPARE(closer.modes, QList<int>({import::kModeChanged, import::kModeCheck}));
        QCOMPARE(closer.firstRows.last(), QStringLiteral("Nicht gefundene Dateien:"));
        QCOMPARE(info(), QStringLiteral("Datenbank wurde überprüft: Nicht gefundene Dateien: 1"));
        QCOMPARE(views.count(), 1);
    }

    void oldCatalogueIsUpgradedUnderTheBatchWindow()
    {
        const QString path = m_home->filePath(QStringLiteral("Alt.vdb"));
        writeCatalogueOf31(path);
        ShownWindows windows;
        start(path);
        QCOMPARE(app::gDatabasePath, path);
        QCOMPARE(windows.shown, QStringList{"Datenbank wird aktualisiert..."});
        for (QWidget* w : QApplication::topLevelWidgets())
            QVERIFY(!qobject_cast<import::frmProcess*>(w) || !w->isVisible());
        const auto rs = app::gDB->openRecordset(
            QStringLiteral("Select lStartCount, tsLastStarted From Category where ID=1"),
            db::RecordsetType::Snapshot);
        QCOMPARE(rs->value(0).toInt(), 5);
        QCOMPARE(rs->value(1).toDateTime(), QDateTime(QDate(2024, 3, 14), QTime(21, 5)));
        QVERIFY(m_dialogs.calls.isEmpty());
    }
};

QTEST_MAIN(TestFrmMainBatch)
#include "tst_frmmainbatch.moc"
