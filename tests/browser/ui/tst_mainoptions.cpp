// The options dialog as the main window and the GameBase window show it: from mnuOption, the
// toolbar button of either window, and what follows its "OK": the start menus anew, the
// preview's look, and a GameBase window that starts over on the GameBase the dialog set.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmMain.h"
#include "browser/ui/PreviewPane.h"
#include "catalogue/Catalogue.h"
#include "controls/ui/SimpleReport.h"
#include "gamebase/GameBase.h"
#include "gamebase/ui/frmGB.h"
#include "platform/ScriptedDialogService.h"
#include "setup/ui/frmOptions.h"
#include "support/CatalogueFixture.h"
#include "support/GameBaseFixture.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using browser::frmMain;
using setup::frmOptions;

class TestMainOptions : public QObject
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
    // The next options dialog that opens is handed to `answer`.
    void whenOptionsOpen(std::function<void(frmOptions&)> answer, bool& seen)
    {
        QTimer::singleShot(0, this, [this, answer, &seen] {
            auto* form = qobject_cast<frmOptions*>(QApplication::activeModalWidget());
            QVERIFY(form);
            seen = true;
            answer(*form);
        });
    }
    QStringList startList() const
    {
        QStringList captions;
        auto* list = m_form->findChild<QTreeWidget*>(QStringLiteral("lvStart"));
        for (int i = 0; list && i < list->topLevelItemCount(); ++i)
            captions << list->topLevelItem(i)->text(0);
        return captions;
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

    void menuAndToolbarOpenTheOptions()
    {
        open(m_gb->path());
        QVERIFY(startList().contains(QStringLiteral("MICRO64 - Attach")));
        const int fontSize = m_form->previewPane()->list()->font().pointSize();
        bool seen = false;
        whenOptionsOpen(
            [](frmOptions& form) {
                QTreeWidgetItem* top = form.tree()->topLevelItem(0);
                for (int i = 0; i < top->childCount(); ++i)
                    if (top->child(i)->text(0) == u"MICRO64")
                        form.tree()->setCurrentItem(top->child(i));
                form.cmdTree_Click(frmOptions::kDelete);
                form.tabs()->setCurrentIndex(frmOptions::Preview);
                form.findChild<QScrollBar*>(QStringLiteral("SizeScroll"))->setValue(10);
                QTest::mouseClick(form.findChild<QPushButton*>(QStringLiteral("cmdOk")),
                                  Qt::LeftButton);
            },
            seen);
        QAction* entry = m_form->menuEntry(QStringLiteral("mnuOption"));
        QVERIFY(entry->isEnabled());
        entry->trigger();
        QVERIFY(seen);
        QCOMPARE(startList().size(), 13);
        QVERIFY(!startList().contains(QStringLiteral("MICRO64 - Attach")));
        QCOMPARE(app::gFontSize, 16);
        QVERIFY(m_form->previewPane()->list()->font().pointSize() != fontSize);
        QCOMPARE(m_form->previewPane()->list()->font().pointSize(), 16);

        // The toolbar button opens the same dialog; "Abbrechen" changes nothing.
        seen = false;
        whenOptionsOpen(
            [](frmOptions& form) {
                QTest::mouseClick(form.findChild<QPushButton*>(QStringLiteral("cmdCancel")),
                                  Qt::LeftButton);
            },
            seen);
        QAction* button = m_form->toolbarButton(QStringLiteral("Options"));
        QVERIFY(button->isEnabled());
        button->trigger();
        QVERIFY(seen);
        QCOMPARE(startList().size(), 13);
        QVERIFY(m_dialogs.calls.isEmpty());
    }

    void gameBaseWindowStartsOverOnTheNewGameBase()
    {
        test::GameBaseFixture second;
        second.close();
        open(m_gb->path());
        bool gbSeen = false;
        bool optionsSeen = false;
        qint64 rowsBefore = -1;
        QString searchAfter = QStringLiteral("?");
        qint64 rowsAfter = -1;
        QTimer::singleShot(0, this, [&] {
            auto* gb = m_form->findChild<gamebase::frmGB*>(QStringLiteral("frmGB"));
            QVERIFY(gb);
            gbSeen = true;
            gb->cboSearch->setEditText(QStringLiteral("Sanxion"));
            gb->moTimer_Timer();
            rowsBefore = gb->lstGB->ItemCount();
            whenOptionsOpen(
                [&second](frmOptions& form) {
                    form.tabs()->setCurrentIndex(frmOptions::GB);
                    form.findChild<QLineEdit*>(QStringLiteral("txtGBDB"))->setText(second.path());
                    QTest::mouseClick(form.findChild<QPushButton*>(QStringLiteral("cmdOk")),
                                      Qt::LeftButton);
                },
                optionsSeen);
            gb->buttons.value(QStringLiteral("Options"))->trigger();
            searchAfter = gb->cboSearch->currentText();
            rowsAfter = gb->lstGB->ItemCount();
            gb->close();
        });
        m_form->menuEntry(QStringLiteral("mnuGBOpen"))->trigger();
        QVERIFY(gbSeen);
        QVERIFY(optionsSeen);
        QCOMPARE(rowsBefore, 1);
        QCOMPARE(searchAfter, QString());
        QCOMPARE(rowsAfter, 5); // all games but the adult one, of the new GameBase
        QCOMPARE(gamebase::gGameBaseDB, second.path());
        QVERIFY(gamebase::gGB);
        QVERIFY(m_dialogs.calls.isEmpty());
    }
};

QTEST_MAIN(TestMainOptions)
#include "tst_mainoptions.moc"
