// What the list shows beyond its cells, on a real catalogue: row colours from FetchStyle as they
// are painted, a frozen column that stays at the left edge while the rest scrolls sideways,
// cell tips, the click with its column, AutoRefresh, and the picture of a dragged row.

#include "catalogue/Database.h"
#include "controls/ui/FrozenColumns.h"
#include "controls/ui/SimpleReport.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QImage>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolTip>
#include <QtTest>

using namespace vd;
using namespace vd::controls;

namespace {

const QString kEntries =
    u"Select C64Files.ID,Category_File AS ParentKey,0 as Icon,tProgram as [File],"
    "tExtension as [Filetyp],lSize as [Blocks],lIndex as [Index] From C64Files"_qs;

constexpr int kFile = 3;
constexpr int kFiletyp = 4;
constexpr int kBlocks = 5;

QColor pixelAt(QWidget* viewport, const QPoint& at)
{
    return viewport->grab().toImage().pixelColor(at * viewport->devicePixelRatioF());
}

} // namespace

class TestReportLook : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::CatalogueFixture> m_cat;
    std::unique_ptr<SimpleReport> m_list;
    platform::ScriptedDialogService m_dialogs;

    qint64 rowOf(const QString& file)
    {
        for (qint64 r = 0; r < m_list->ItemCount(); ++r)
            if (m_list->cellText(r, kFile) == file)
                return r;
        return -1;
    }

    void chooseFromHeaderMenu(int column, const QString& action)
    {
        m_list->setMenuRunner([action](QMenu& menu) -> QAction* {
            for (QAction* a : menu.actions())
                if (a->objectName() == action)
                    return a;
            return nullptr;
        });
        QHeaderView* h = m_list->horizontalHeader();
        const QPoint at(h->sectionViewportPosition(column) + 5, h->height() / 2);
        QTest::mouseClick(h->viewport(), Qt::RightButton, {}, at);
    }

private slots:
    void init()
    {
        platform::setDialogService(&m_dialogs);
        m_dialogs.clear();
        m_cat = std::make_unique<test::CatalogueFixture>();
        m_list = std::make_unique<SimpleReport>();
        m_list->resize(500, 300);
        m_list->props().ShowContextMenu = true;
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

    void fetchStyleColoursRows()
    {
        const QColor big(200, 30, 30);
        int asked = 0;
        connect(m_list.get(), &SimpleReport::fetchStyle, this, [&](qint64 row, cStyle& style) {
            ++asked;
            if (m_list->engine().FieldValue(kBlocks, row).toInt() > 1000) {
                style.BackColor = big;
                style.TextColor = Qt::white;
                style.FontStyle = 1;
            }
        });
        m_list->props().FetchRowStyle = true;
        m_list->Requery();
        m_list->ClearSelection();
        m_list->setCurrentIndex({});

        const qint64 readme = rowOf(u"readme.txt"_qs); // 1234 blocks
        const qint64 sanxion = rowOf(u"SANXION"_qs);   // 150 blocks
        const QModelIndex styled = m_list->model()->index(int(readme), kFiletyp);
        const QModelIndex plain = m_list->model()->index(int(sanxion), kFiletyp);
        QCOMPARE(styled.data(Qt::BackgroundRole).value<QBrush>().color(), big);
        QVERIFY(styled.data(Qt::FontRole).value<QFont>().bold());
        QVERIFY(!plain.data(Qt::BackgroundRole).isValid());

        // As painted: the cell's edge shows the row's colour, the other row the list's.
        const QPoint edge(1, 2);
        QCOMPARE(pixelAt(m_list->viewport(), m_list->visualRect(styled).topLeft() + edge), big);
        QCOMPARE(pixelAt(m_list->viewport(), m_list->visualRect(plain).topLeft() + edge),
                 m_list->palette().color(QPalette::Base));
        QVERIFY(asked > 0);
        // Asked once per row until the next refresh.
        const int before = asked;
        m_list->viewport()->repaint();
        QCOMPARE(asked, before);

        m_list->props().FetchRowStyle = false;
        QVERIFY(!styled.data(Qt::BackgroundRole).isValid());
    }

    void aFrozenColumnStaysWhileTheRestScrolls()
    {
        m_list->resize(260, 150);
        for (int c = kFile; c <= kBlocks + 1; ++c)
            m_list->horizontalHeader()->resizeSection(c, 120);
        chooseFromHeaderMenu(kBlocks, u"mnuFix"_qs);

        // The fixed column leads, and the frozen view covers exactly it.
        FrozenColumnView* frozen = m_list->frozenView();
        QVERIFY(frozen->isVisible());
        QCOMPARE(frozen->frozenColumns(), QList<int>{kBlocks});
        QCOMPARE(m_list->horizontalHeader()->visualIndex(kBlocks), 0);
        QVERIFY(m_list->Layout().contains(u"Blocks!Hidden=0;Width=120;Fixed=2;Order=0"_qs));
        const QRect before = frozen->geometry();
        QCOMPARE(before.width(), 120);

        QScrollBar* sideways = m_list->horizontalScrollBar();
        QVERIFY(sideways->maximum() > 0);
        sideways->setValue(sideways->maximum());
        QCoreApplication::processEvents();
        // The other columns moved; the frozen one did not.
        QVERIFY(m_list->visualRect(m_list->model()->index(0, kFile)).left() < 0);
        QCOMPARE(frozen->geometry(), before);
        QCOMPARE(frozen->indexAt(QPoint(5, 5)).column(), kBlocks);
        const QPoint leftEdge(5, frozen->horizontalHeader()->height() + 5);
        QWidget* under = m_list->childAt(leftEdge + before.topLeft());
        QVERIFY(under && (under == frozen || frozen->isAncestorOf(under)));

        // Up and down in step; a click on the frozen part selects that row.
        m_list->verticalScrollBar()->setValue(3);
        QCOMPARE(frozen->verticalScrollBar()->value(), 3);
        QSignalSpy clicks(m_list.get(), &SimpleReport::itemClickEx);
        const QRect cell = frozen->visualRect(frozen->model()->index(4, kBlocks));
        QTest::mouseClick(frozen->viewport(), Qt::LeftButton, {}, cell.center());
        QCOMPARE(m_list->SelectedIndex(), 4);
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(clicks[0][1].toInt(), kBlocks);

        // Unfixed, the view goes.
        chooseFromHeaderMenu(kBlocks, u"mnuFix"_qs);
        QVERIFY(!frozen->isVisible());
        QVERIFY(m_list->Layout().contains(u"Blocks!Hidden=0;Width=120;Fixed=0;"_qs));
    }

    void aStoredFixedColumnIsFrozenOnLoad()
    {
        const QString layout = u"File!Hidden=0;Width=90;Fixed=2;Order=0$Blocks!Hidden=0;Width=60;"
                               "Fixed=0;Order=1"_qs;
        m_list->Setup(kEntries, 3, 1, layout, -2, false, 0, -1);
        QCOMPARE(m_list->frozenView()->frozenColumns(), QList<int>{kFile});
        QCOMPARE(m_list->frozenView()->geometry().width(), 90);
    }

    void cellTips()
    {
        m_list->horizontalHeader()->resizeSection(kFile, 30);
        m_list->horizontalHeader()->resizeSection(kBlocks, 200);
        const qint64 row = rowOf(u"SANXION HISCORE"_qs);
        auto tipAt = [&](int column) -> QString {
            QToolTip::hideText();
            if (!QTest::qWaitFor([] { return !QToolTip::isVisible(); }, 2000))
                return u"(the last tip stayed)"_qs;
            const QRect r = m_list->visualRect(m_list->model()->index(int(row), column));
            QHelpEvent help(QEvent::ToolTip, r.center(),
                            m_list->viewport()->mapToGlobal(r.center()));
            QCoreApplication::sendEvent(m_list->viewport(), &help);
            return QToolTip::isVisible() ? QToolTip::text() : QString();
        };
        // Off: no tip at all.
        QCOMPARE(tipAt(kFile), QString());
        // Mode 1: only what the cell cannot show.
        m_list->props().ShowCellTips = true;
        QCOMPARE(tipAt(kFile), u"SANXION HISCORE"_qs);
        QCOMPARE(tipAt(kBlocks), QString());
        // Mode 2: the host gives the text.
        m_list->props().FetchToolTips = true;
        connect(m_list.get(), &SimpleReport::cellTip, this, [](qint64, int col, QString& text) {
            text = QString::number(col) + u": "_qs + text;
        });
        QCOMPARE(tipAt(kBlocks), u"5: 2"_qs);
    }

    void autoRefreshHoldsTheViewBack()
    {
        m_list->setAutoRefresh(false);
        m_list->setRecordSource(kEntries + u" Where lSize > 1000"_qs);
        QCOMPARE(m_list->ItemCount(), 3);
        QCOMPARE(m_list->model()->rowCount(), test::CatalogueFixture::kEntryCount);
        QVERIFY(!m_list->model()->index(0, kFile).data().isValid());
        // Switched on: what changed shows, once.
        m_list->setAutoRefresh(true);
        QCOMPARE(m_list->model()->rowCount(), 3);
        QCOMPARE(m_list->cellText(0, kFile), u"cover.png"_qs);
    }

    void dragImageIsTheCurrentRow()
    {
        m_list->setSelectedIndex(1);
        const QPixmap picture = m_list->CreateDragImage();
        QVERIFY(!picture.isNull());
        QCOMPARE(picture.height() / picture.devicePixelRatio(), m_list->rowHeight(1));
        QCOMPARE(picture.width() / picture.devicePixelRatio(), m_list->viewport()->width());
    }
};

QTEST_MAIN(TestReportLook)
#include "tst_reportlook.moc"
