// The menu "Gamebase" of the main window: "Ansicht öffnen" opens the GameBase window on the
// configured GameBase and keeps it for the next time; without a GameBase nothing opens.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmMain.h"
#include "catalogue/Catalogue.h"
#include "controls/ui/SimpleReport.h"
#include "gamebase/GameBase.h"
#include "gamebase/ui/frmGB.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"
#include "support/GameBaseFixture.h"

#include <QAction>
#include <QDir>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace vd;
using browser::frmMain;

class TestGBMenu : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<test::CatalogueFixture> m_cat;
    std::unique_ptr<test::GameBaseFixture> m_gb;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;

    void open(const QString& gameBase)
    {
        QFile ini(app::gIniFile);
        QVERIFY(ini.open(QIODevice::WriteOnly));
        ini.write("[MAIN]\r\nDatabase=" + m_cat->path().toUtf8() +
                  "\r\nViewMode=1\r\n[GAMEBASE]\r\nGameBaseDB=" + gameBase.toUtf8() + "\r\n");
        ini.close();
        app::reloadIni();
        m_form = std::make_unique<frmMain>();
        m_form->resize(1000, 700);
        m_form->show();
        m_form->Form_Activate();
    }
    gamebase::frmGB* gameWindow() const
    {
        return m_form->findChild<gamebase::frmGB*>(QStringLiteral("frmGB"));
    }

private slots:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        app::setProgramFolder(m_home->path());
        QVERIFY(QDir().mkpath(app::gTempPath));
        m_dialogs.clear();
        platform::setDialogService(&m_dialogs);
        m_cat = std::make_unique<test::CatalogueFixture>();
        m_cat->close();
        m_gb = std::make_unique<test::GameBaseFixture>();
        m_gb->close();
    }
    void cleanup()
    {
        m_form.reset();
        gamebase::CloseGameBase();
        catalogue::CloseCatalogue();
        app::gDatabasePath.clear();
        platform::setDialogService(nullptr);
        m_cat.reset();
        m_gb.reset();
        m_home.reset();
    }

    void openShowsTheGamesAndKeepsTheWindow()
    {
        open(m_gb->path());
        QAction* entry = m_form->menuEntry(QStringLiteral("mnuGBOpen"));
        QVERIFY(entry->isEnabled());
        qint64 rows = -1;
        QTimer::singleShot(0, this, [&] {
            if (gamebase::frmGB* form = gameWindow()) {
                QTRY_VERIFY(form->isVisible());
                rows = form->lstGB->ItemCount();
                form->close();
            }
        });
        entry->trigger();
        QCOMPARE(rows, 5); // six games, one adult
        gamebase::frmGB* first = gameWindow();
        QVERIFY(first);
        QVERIFY(!first->isVisible());

        QTimer::singleShot(0, this, [&] {
            if (gamebase::frmGB* form = gameWindow())
                form->close();
        });
        entry->trigger();
        QCOMPARE(gameWindow(), first); // kept, not made anew
        QCOMPARE(m_form->findChildren<gamebase::frmGB*>().size(), 1);
        QVERIFY(m_dialogs.calls.isEmpty());
    }

    void withoutAGameBaseNothingOpens()
    {
        open(QStringLiteral("/nowhere/GBC_v18.mdb"));
        m_dialogs.answer(platform::vbOK);
        m_dialogs.answerCancel(); // the file dialog that offers another GameBase
        m_form->menuEntry(QStringLiteral("mnuGBOpen"))->trigger();
        QCOMPARE(m_dialogs.messages(), QStringList{"Datei nicht gefunden: /nowhere/GBC_v18.mdb"});
        QCOMPARE(m_dialogs.calls.last().title, QStringLiteral("GameBase-Datenbank auswählen"));
        QVERIFY(!gameWindow());
        QVERIFY(!gamebase::gGB);
    }
};

QTEST_MAIN(TestGBMenu)
#include "tst_gbmenu.moc"
