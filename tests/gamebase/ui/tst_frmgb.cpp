// The GameBase window offscreen on a GameBase-shaped database beside the known catalogue:
// the views and their rows, the search box's delay, the filter tab remembered per list, the
// decoded columns, the screenshots of a row and the catalogued copy found for a game.

#include "app/Globals.h"
#include "app/Settings.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "controls/ui/DBCombo.h"
#include "controls/ui/SimpleReport.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseSettings.h"
#include "gamebase/ui/frmGB.h"
#include "gamebase/ui/frmGBFilter.h"
#include "import/clsFileManager.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"
#include "support/GameBaseFixture.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace vd;
using gamebase::frmGB;

class TestFrmGB : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<test::CatalogueFixture> m_cat;
    std::unique_ptr<test::GameBaseFixture> m_gb;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<import::clsFileManager> m_fm;
    std::unique_ptr<frmGB> m_form;

    frmGB& open()
    {
        m_form = std::make_unique<frmGB>(m_fm.get());
        m_form->resize(1000, 700);
        m_form->show();
        if (!QTest::qWaitForWindowExposed(m_form.get()))
            qWarning("window not exposed");
        m_form->BuildView(1);
        return *m_form;
    }
    // The row of the active list whose name column holds `name`, selected; -1 when absent.
    qint64 select(const QString& name)
    {
        controls::SimpleReport* list = m_form->activeList();
        for (qint64 row = 0; row < list->ItemCount(); ++row)
            if (list->engine().FieldValue(4, row).toString() == name) {
                list->setSelectedIndex(row);
                return row;
            }
        return -1;
    }
    QString cell(qint64 row, const QString& caption)
    {
        controls::SimpleReport* list = m_form->activeList();
        const int column = list->engine().RecordSet()->fieldIndex(caption);
        return list->cellText(row, column);
    }

private slots:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        app::setProgramFolder(m_home->path());
        QVERIFY(QDir().mkpath(app::gTempPath));
        app::reloadIni();
        m_dialogs.clear();
        platform::setDialogService(&m_dialogs);
        m_gb = std::make_unique<test::GameBaseFixture>();
        m_gb->close();
        m_cat = std::make_unique<test::CatalogueFixture>();
        m_cat->close();
        gamebase::loadGameBaseSettings();
        gamebase::connectCatalogues();
        QString path = m_cat->path();
        QVERIFY(catalogue::OpenCatalogueFile(path));
        gamebase::gGameBaseDB = m_gb->path();
        QVERIFY(gamebase::OpenGameBase(true));
        m_fm = std::make_unique<import::clsFileManager>();
    }
    void cleanup()
    {
        m_form.reset();
        m_fm.reset();
        gamebase::CloseGameBase();
        catalogue::CloseCatalogue();
        catalogue::setCatalogueOpenedHook({});
        platform::setDialogService(nullptr);
        m_cat.reset();
        m_gb.reset();
    }

    void opensOnTheGamesOfTheGameBase()
    {
        frmGB& form = open();
        QCOMPARE(form.tabViews->count(), 4);
        QCOMPARE(form.tabViews->tabText(0), QStringLiteral("Gamebase"));
        QCOMPARE(form.tabViews->tabText(3), QStringLiteral("Top 100"));
        QCOMPARE(form.tabFilter->tabText(0), QStringLiteral("Filter aus"));
        QCOMPARE(form.cmdStopSearch->text(), QStringLiteral("Filter löschen"));
        QVERIFY(form.lstGB->isVisible());
        QVERIFY(!form.lstMyFiles->isVisible());
        // Six games, one of them adult.
        QCOMPARE(form.lstGB->ItemCount(), 5);
        QCOMPARE(form.panelSum->text(), QStringLiteral("Dateien: 5"));
        QVERIFY(m_dialogs.calls.isEmpty());
    }

    void searchWaitsForTheTypingToStop()
    {
        frmGB& form = open();
        form.moTimer->setInterval(50);
        QTest::keyClicks(form.cboSearch->lineEdit(), QStringLiteral("para"));
        QCOMPARE(form.lstGB->ItemCount(), 5); // not yet
        QTRY_COMPARE(form.lstGB->ItemCount(), 1);
        QCOMPARE(form.cboSearch->findText(QStringLiteral("para")), 0); // remembered
        QTest::mouseClick(form.cmdStopSearch, Qt::LeftButton);
        QCOMPARE(form.cboSearch->currentText(), QString());
        QCOMPARE(form.lstGB->ItemCount(), 5);
    }

    void viewsSwitchListsAndKeepEachListsFilter()
    {
        gamebase::gGBFilters = {{QStringLiteral("Action"), QStringLiteral("GE_ID!@!=!@!2!@!")}};
        frmGB& form = open();
        QCOMPARE(form.tabFilter->count(), 2);
        form.tabFilter_Click(1);
        QCOMPARE(form.lstGB->ItemCount(), 2); // Paradroid, ABC

        form.tabViews_Click(1); // "Vellumdock": the catalogue's linked entries
        QVERIFY(form.lstMyFiles->isVisible());
        QVERIFY(!form.lstGB->isVisible());
        QCOMPARE(form.listMode(), 1);
        QCOMPARE(form.tabFilter->currentIndex(), 0); // this list had no filter yet
        QCOMPARE(form.lstMyFiles->ItemCount(), 3);

        form.tabViews_Click(2); // last started, both sides, same list
        QCOMPARE(form.lstMyFiles->ItemCount(), 4);
        form.tabViews_Click(0);
        QCOMPARE(form.tabFilter->currentIndex(), 1); // the games list's filter is back
        QCOMPARE(form.lstGB->ItemCount(), 2);
    }

    void decodedColumnsShowTheirTexts()
    {
        gamebase::gGBListColumns = QStringLiteral("RATING@@@V_LENGTH@@@GENRE");
        frmGB& form = open();
        const qint64 sanxion = select(QStringLiteral("Sanxion"));
        QVERIFY(sanxion >= 0);
        QCOMPARE(cell(sanxion, QStringLiteral("Bewertung")), QStringLiteral("Very Good"));
        QCOMPARE(cell(sanxion, QStringLiteral("Größe")), QStringLiteral("150 Block(s)"));
        QCOMPARE(cell(sanxion, QStringLiteral("Spielkategorie")), QStringLiteral("Shoot'em Up"));
        const qint64 abc = select(QStringLiteral("ABC"));
        QCOMPARE(cell(abc, QStringLiteral("Bewertung")), QString()); // rating 0
        QCOMPARE(form.viewSql().decodedColumns, (QStringList{"RATING", "V_LENGTH"}));
    }

    void screenshotsStopAtTheFirstMissingOne()
    {
        QTemporaryDir shots;
        QVERIFY(QDir(shots.path()).mkdir(QStringLiteral("S")));
        QImage image(32, 20, QImage::Format_RGB32);
        image.fill(Qt::blue);
        QVERIFY(image.save(shots.filePath(QStringLiteral("S/Sanxion.png"))));
        QVERIFY(image.save(shots.filePath(QStringLiteral("S/Sanxion_2.png")))); // no _1
        QVERIFY(QDir(shots.path()).mkdir(QStringLiteral("P")));
        QVERIFY(image.save(shots.filePath(QStringLiteral("P/Paradroid.png"))));
        QVERIFY(image.save(shots.filePath(QStringLiteral("P/Paradroid_1.png"))));
        gamebase::gScreenshots = shots.path();
        frmGB& form = open();

        QVERIFY(select(QStringLiteral("Sanxion")) >= 0);
        QVERIFY(form.imgScr[0]->isVisible());
        QVERIFY(!form.imgScr[1]->isVisible());
        QVERIFY(!form.imgScr[2]->isVisible());
        QVERIFY(select(QStringLiteral("Paradroid")) >= 0);
        QVERIFY(form.imgScr[0]->isVisible() && form.imgScr[1]->isVisible());
        QVERIFY(!form.imgScr[2]->isVisible());
        QVERIFY(select(QStringLiteral("Uridium")) >= 0); // no ScrnshotFilename
        QCOMPARE(form.lblMsg->text(), QStringLiteral("Keine Screenshots vorhanden"));
        QVERIFY(!form.imgScr[0]->isVisible());

        // The linked entries take the picture of their game.
        form.tabViews_Click(1);
        QVERIFY(select(QStringLiteral("PARADROID")) >= 0);
        QVERIFY(form.imgScr[1]->isVisible());
    }

    void startButtonsFollowTheRow()
    {
        frmGB& form = open();
        QVERIFY(select(QStringLiteral("Paradroid")) >= 0);
        // The first catalogued container of the game that isn't a text: file 3, not 5.
        QCOMPARE(form.startId(), 3);
        QVERIFY(form.buttons.value(QStringLiteral("Start"))->isEnabled());
        QVERIFY(select(QStringLiteral("Uridium")) >= 0);
        QCOMPARE(form.startId(), 0);
        form.tabViews_Click(1);
        QVERIFY(select(QStringLiteral("SANXION")) >= 0);
        QCOMPARE(form.startId(), 1); // the entry's own ID
    }

    void filterEditorWritesAndApplies()
    {
        gamebase::gGBFilters.clear();
        frmGB& form = open();
        gamebase::frmGBFilter editor(form.filters(), &form);
        editor.InitForm(0);
        QCOMPARE(editor.cboFilter->currentText(), QStringLiteral("Neue Selektion"));
        const int genre = editor.rowOf(QStringLiteral("GE_ID"));
        QTest::mouseClick(editor.rows[genre].cmdCompare, Qt::LeftButton);
        QCOMPARE(editor.rows[genre].cmdCompare->text(), QStringLiteral("="));
        editor.rows[genre].combo->setValue(2);
        const int year = editor.rowOf(QStringLiteral("Y.YEAR"));
        for (int i = 0; i < 2; ++i) // "=", then ">"
            QTest::mouseClick(editor.rows[year].cmdCompare, Qt::LeftButton);
        editor.rows[year].combo->setValue(2); // 1985: a year greater than the year 1985
        qint32 applied = -1;
        connect(&editor, &gamebase::frmGBFilter::applied, this, [&](qint32 key) { applied = key; });
        QTest::mouseClick(editor.cmdApply, Qt::LeftButton);
        QCOMPARE(applied, editor.currentKey());
        form.storeFilters();
        QCOMPARE(gamebase::gGBFilters.size(), 1);
        QCOMPARE(gamebase::gGBFilters[0].definition,
                 QStringLiteral("GE_ID!@!=!@!2!@!@@@Y.YEAR!@!>!@!1985!@!"));
        form.CreateFilter();
        form.tabFilter_Click(1);
        QCOMPARE(form.lstGB->ItemCount(), 1); // ABC, 9994; Paradroid is of 1985

        // A name that exists is refused and asked again.
        m_dialogs.answerText(QStringLiteral("Neue Selektion"));
        m_dialogs.answer(platform::vbOK);
        m_dialogs.answerText(QStringLiteral("Shooter"));
        editor.cmdNew_Click();
        QVERIFY(m_dialogs.messages().contains(QStringLiteral("Dieser Name besteht schon!")));
        QCOMPARE(editor.cboFilter->count(), 2);
        QCOMPARE(editor.cboFilter->currentText(), QStringLiteral("Shooter"));
        QVERIFY(m_dialogs.scriptErrors.isEmpty());
    }
};

QTEST_MAIN(TestFrmGB)
#include "tst_frmgb.moc"
