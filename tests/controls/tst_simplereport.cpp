// The list control on a real catalogue, driven by clicks and keys: sorting by a header click,
// the search while typing, Ctrl+C, the header menu, the layout string and the selection over
// a requery.

#include "catalogue/Database.h"
#include "controls/ui/frmColumnHeader.h"
#include "controls/ui/frmSearch.h"
#include "controls/ui/SimpleReport.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QMenu>
#include <QSignalSpy>
#include <QtTest>

using namespace vd;
using namespace vd::controls;

namespace {

const QString kEntries = QStringLiteral(
    "Select C64Files.ID,Category_File AS ParentKey,F.iFileType as Icon,tProgram as [File],"
    "tExtension as [Filetyp],lSize as [Blocks] From (C64Files Left Join Category as F on "
    "C64Files.Category_File=F.ID)");

constexpr int kFile = 3;
constexpr int kBlocks = 5;

QPoint headerPoint(SimpleReport& r, int column)
{
    QHeaderView* h = r.horizontalHeader();
    return QPoint(h->sectionViewportPosition(column) + h->sectionSize(column) / 2, h->height() / 2);
}

void clickHeader(SimpleReport& r, int column, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mouseClick(r.horizontalHeader()->viewport(), button, {}, headerPoint(r, column));
}

} // namespace

class TestSimpleReport : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::CatalogueFixture> m_cat;
    std::unique_ptr<SimpleReport> m_list;
    platform::ScriptedDialogService m_dialogs;

    QString fileAt(qint64 row) { return m_list->cellText(row, kFile); }

private slots:
    void init()
    {
        platform::setDialogService(&m_dialogs);
        m_dialogs.clear();
        m_cat = std::make_unique<test::CatalogueFixture>();
        m_list = std::make_unique<SimpleReport>();
        m_list->resize(500, 300);
        m_list->props().ShowContextMenu = true;
        m_list->props().KeyColumn = 0;
        m_list->setDataBase(&m_cat->db());
        m_list->Setup(kEntries, 3, 1, {}, -2, false, 0, -1);
        m_list->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));
    }
    void cleanup()
    {
        m_list.reset();
        m_cat.reset();
        platform::setDialogService(nullptr);
    }

    void loadsSortedByTheFirstVisibleColumn()
    {
        QCOMPARE(m_list->model()->rowCount(), test::CatalogueFixture::kEntryCount);
        QCOMPARE(m_list->model()->columnCount(), 6);
        for (int c = 0; c < 3; ++c)
            QVERIFY(m_list->isColumnHidden(c));
        QCOMPARE(m_list->model()->headerData(kFile, Qt::Horizontal).toString(), u"File"_qs);
        QCOMPARE(fileAt(0), u"(NO NAME)"_qs);
        QCOMPARE(m_list->horizontalHeader()->sortIndicatorSection(), kFile);
    }

    void headerClickTogglesTheSort()
    {
        clickHeader(*m_list, kBlocks);
        QCOMPARE(m_list->cellText(0, kBlocks), u"0"_qs);
        QCOMPARE(m_list->horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
        clickHeader(*m_list, kBlocks);
        QCOMPARE(m_list->cellText(0, kBlocks), u"4096"_qs);
        QCOMPARE(m_list->horizontalHeader()->sortIndicatorSection(), kBlocks);
        QCOMPARE(m_list->horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);
        // Another column starts ascending again.
        clickHeader(*m_list, kFile);
        QCOMPARE(fileAt(0), u"(NO NAME)"_qs);
    }

    void typingSearchesTheFirstVisibleColumn()
    {
        qint64 now = 1'000'000;
        m_list->engine().setClock([&now] { return now; });
        QTest::keyClick(m_list.get(), Qt::Key_S, Qt::NoModifier);
        QCOMPARE(fileAt(m_list->SelectedIndex()), u"SANXION"_qs);
        // After a pause a letter starts anew.
        now += 600;
        QTest::keyClicks(m_list.get(), u"b"_qs);
        QCOMPARE(fileAt(m_list->SelectedIndex()), u"BOULDER DASH"_qs);
        now += 600;
        QTest::keyClicks(m_list.get(), u"c"_qs);
        QCOMPARE(fileAt(m_list->SelectedIndex()), u"COMMANDO"_qs);
        now += 100;
        QTest::keyClicks(m_list.get(), u"o"_qs);
        now += 100;
        QTest::keyClicks(m_list.get(), u"v"_qs);
        QVERIFY(m_list->engine().searchPending());
        QCOMPARE(fileAt(m_list->SelectedIndex()), u"COMMANDO"_qs);
        QTRY_VERIFY(!m_list->engine().searchPending());
        QCOMPARE(fileAt(m_list->SelectedIndex()), u"cover.png"_qs);
    }

    void ctrlCCopiesTheVisibleColumns()
    {
        m_list->setSelectedIndex(0);
        QTest::keyClick(m_list.get(), Qt::Key_C, Qt::ControlModifier);
        const QStringList lines = QApplication::clipboard()->text().split(u"\r\n"_qs);
        QCOMPARE(lines.size(), test::CatalogueFixture::kEntryCount + 2);
        QCOMPARE(lines[0], u"File\tFiletyp\tBlocks"_qs);
        QCOMPARE(lines[1], u"(NO NAME)\tPRG\t0"_qs);
        QCOMPARE(lines.last(), QString());

        // Off: Ctrl+C goes out as a key.
        QApplication::clipboard()->clear();
        m_list->props().EnableHotKeys = false;
        QSignalSpy keys(m_list.get(), &SimpleReport::keydown);
        QTest::keyClick(m_list.get(), Qt::Key_C, Qt::ControlModifier);
        QVERIFY(!keys.isEmpty());
        QCOMPARE(keys.last()[0].toInt(), int(Qt::Key_C));
        QCOMPARE(keys.last()[1].toInt(), 2);
        QVERIFY(QApplication::clipboard()->text().isEmpty());
    }

    void longCopyOffersToStop()
    {
        m_list->setCopyCheckInterval(4);
        m_list->requestCopyStop(); // cleared at the start: nothing asked
        QVERIFY(!m_list->ClipboardText(false).isNull());
        QCOMPARE(m_dialogs.messages().size(), 0);

        m_dialogs.answer(platform::vbYes);
        QTimer::singleShot(0, m_list.get(), [this] { m_list->requestCopyStop(); });
        QVERIFY(m_list->ClipboardText(false).isNull());
        QCOMPARE(m_dialogs.messages().size(), 1);
        QCOMPARE(m_dialogs.messages()[0], u"Kopiervorgang abbrechen?"_qs);
        QCOMPARE(m_dialogs.calls[0].title, u"Vellumdock-Report"_qs);
    }

    void headerMenuItems_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("check");
        QTest::newRow("ascending") << "mnuSortAsc" << kBlocks << "first=0";
        QTest::newRow("descending") << "mnuSortDesc" << kBlocks << "first=4096";
        QTest::newRow("hide") << "mnuHide" << kBlocks << "hidden";
        QTest::newRow("fix") << "mnuFix" << kBlocks << "fixed";
        QTest::newRow("to the front") << "mnuFirst" << kBlocks << "order=0";
        QTest::newRow("to the end") << "mnuLast" << kFile << "order=5";
        QTest::newRow("copy all") << "mnuCopyAll" << kFile << "clipboard=13";
        QTest::newRow("copy selection") << "mnuCopySel" << kFile << "clipboard=2";
        QTest::newRow("auto size") << "mnuAutoSize" << kFile << "width";
        QTest::newRow("configuration") << "mnuConfig" << kFile << "config";
        QTest::newRow("find") << "mnuFind" << kFile << "find";
    }
    void headerMenuItems()
    {
        QFETCH(QString, action);
        QFETCH(int, column);
        QFETCH(QString, check);
        m_list->setSelectedIndex(0);
        m_list->horizontalHeader()->resizeSection(kFile, 30);
        QStringList offered;
        m_list->setMenuRunner([&](QMenu& menu) -> QAction* {
            QAction* chosen = nullptr;
            for (QAction* a : menu.findChildren<QAction*>()) {
                if (!a->objectName().isEmpty())
                    offered << a->text();
                if (a->objectName() == action)
                    chosen = a;
            }
            return chosen;
        });
        // The column editor opens modal: close it as soon as it shows.
        QString configTitle;
        if (check == u"config")
            QTimer::singleShot(0, this, [&configTitle] {
                if (auto* d = qobject_cast<frmColumnHeader*>(QApplication::activeModalWidget())) {
                    configTitle = d->windowTitle();
                    d->reject();
                }
            });
        QApplication::clipboard()->clear();
        clickHeader(*m_list, column, Qt::RightButton);
        QCOMPARE(offered.size(), 11);
        QVERIFY(offered.contains(u"Spalte fixieren"_qs));
        const ReportColumn& c = m_list->engine().Columns()[column];
        if (check.startsWith(u"first="_qs))
            QCOMPARE(m_list->cellText(0, kBlocks), check.mid(6));
        else if (check == u"hidden")
            QVERIFY(m_list->isColumnHidden(column) &&
                    m_list->Layout().contains(u"Blocks!Hidden=1;"_qs));
        else if (check == u"fixed")
            QCOMPARE(c.fixed, 2);
        else if (check.startsWith(u"order="_qs))
            QCOMPARE(m_list->horizontalHeader()->visualIndex(column), check.mid(6).toInt());
        else if (check.startsWith(u"clipboard="_qs))
            QCOMPARE(QApplication::clipboard()->text().count(u"\r\n"_qs), check.mid(10).toInt());
        else if (check == u"width")
            QVERIFY(m_list->horizontalHeader()->sectionSize(kFile) > 30);
        else if (check == u"config")
            QCOMPARE(configTitle, u"Spalten konfigurieren"_qs);
        else {
            // A list not named "SimpleReport" gets the find dialog without modality.
            auto* search = m_list->findChild<frmSearch*>();
            QVERIFY(search && search->isVisible() && !search->isModal());
            search->close();
        }
    }

    void hideIsGreyedForTheFirstVisibleColumn()
    {
        bool hideEnabled = true;
        m_list->setMenuRunner([&](QMenu& menu) -> QAction* {
            for (QAction* a : menu.actions())
                if (a->objectName() == u"mnuHide")
                    hideEnabled = a->isEnabled();
            return nullptr;
        });
        clickHeader(*m_list, kFile, Qt::RightButton);
        QVERIFY(!hideEnabled);
    }

    void layoutRoundTrip()
    {
        m_list->horizontalHeader()->resizeSection(kBlocks, 77);
        m_list->horizontalHeader()->moveSection(m_list->horizontalHeader()->visualIndex(kBlocks),
                                                3);
        const QString layout = m_list->Layout();
        QVERIFY(layout.contains(u"Blocks!Hidden=0;Width=77;Fixed=0;Order=3"_qs));

        SimpleReport other;
        other.resize(500, 300);
        other.setDataBase(&m_cat->db());
        other.Setup(kEntries, 3, 1, layout, -2, false, 0, -1);
        QCOMPARE(other.horizontalHeader()->sectionSize(kBlocks), 77);
        QCOMPARE(other.horizontalHeader()->visualIndex(kBlocks), 3);
        QCOMPARE(other.Layout(), layout);
    }

    void selectionSurvivesARequery()
    {
        m_list->setSelectedIndex(4);
        const QString name = fileAt(4);
        m_cat->db().execute(u"Insert Into C64Files (ID,tProgram,tExtension,lSize,lIndex,"
                            "Category_File) Values (50,'AAA','PRG',1,1,1)"_qs);
        m_list->Requery();
        QCOMPARE(m_list->model()->rowCount(), test::CatalogueFixture::kEntryCount + 1);
        QCOMPARE(fileAt(m_list->SelectedIndex()), name);
        QCOMPARE(m_list->currentIndex().row(), int(m_list->SelectedIndex()));

        // The row deleted: the same row number becomes current.
        const qint64 row = m_list->SelectedIndex();
        const QVariant id = m_list->engine().FieldValue(0, row);
        m_cat->db().execute(u"Delete From C64Files Where ID="_qs + id.toString());
        m_list->Requery();
        QCOMPARE(m_list->SelectedIndex(), row);
        QCOMPARE(m_list->currentIndex().row(), int(row));
    }

    void returnActsAsDoubleClick()
    {
        m_list->props().DblClickOnReturn = true;
        m_list->setSelectedIndex(2);
        QSignalSpy dbl(m_list.get(), &SimpleReport::itemDblClick);
        QTest::keyClick(m_list.get(), Qt::Key_Return);
        QCOMPARE(dbl.count(), 1);
        QCOMPARE(dbl[0][0].toLongLong(), 2);
    }
};

QTEST_MAIN(TestSimpleReport)
#include "tst_simplereport.moc"
