// The splitter and the plain container: the position rule, the centre on an empty position,
// dragging with a ghost bar, the events, and the stored keys.

#include "controls/ui/CAQSplit.h"

#include <QSignalSpy>
#include <QtTest>

using namespace vd::controls;

class TestCAQSplit : public QObject
{
    Q_OBJECT

private slots:
    void positionRule_data()
    {
        QTest::addColumn<double>("wanted");
        QTest::addColumn<double>("total");
        QTest::addColumn<double>("marginA");
        QTest::addColumn<double>("marginB");
        QTest::addColumn<double>("expected");
        QTest::newRow("inside") << 1500.0 << 6000.0 << 300.0 << 300.0 << 1500.0;
        QTest::newRow("below margin A") << 100.0 << 6000.0 << 300.0 << 300.0 << 300.0;
        QTest::newRow("past margin B") << 5900.0 << 6000.0 << 300.0 << 300.0 << 5620.0;
        // 1000 twips cannot hold 600 + 600 + 80: the far margin wins.
        QTest::newRow("container too small") << 700.0 << 1000.0 << 600.0 << 600.0 << 320.0;
    }
    void positionRule()
    {
        QFETCH(double, wanted);
        QFETCH(double, total);
        QFETCH(double, marginA);
        QFETCH(double, marginB);
        QFETCH(double, expected);
        QCOMPARE(ClampSplitPos(wanted, total, marginA, marginB, 80), expected);
    }

    void panesFollowTheBar()
    {
        CAQSplit split;
        split.resize(400, 300);
        auto* a = new QWidget;
        a->setObjectName(QStringLiteral("lstA"));
        auto* b = new QWidget;
        b->setObjectName(QStringLiteral("lstB"));
        split.Arrange(a, b);
        // Null: centred, (6000 - 80) / 2 twips = 197 pixels.
        QVERIFY(split.SplitPos().isNull());
        QCOMPARE(split.barRect(), QRect(197, 0, 5, 300));
        QCOMPARE(a->geometry(), QRect(0, 0, 197, 300));
        QCOMPARE(b->geometry(), QRect(202, 0, 198, 300));

        split.setSplitPos(1500);
        QCOMPARE(split.SplitPos().toDouble(), 1500.0);
        QCOMPARE(a->geometry().width(), 100);
        QCOMPARE(b->geometry().left(), 105);

        split.setSplitPos(QString());
        QVERIFY(split.SplitPos().isNull());
        QCOMPARE(a->geometry().width(), 197);

        split.setSplitStyle(1);
        QCOMPARE(split.barRect(), QRect(0, 147, 400, 5));
        QCOMPARE(a->geometry(), QRect(0, 0, 400, 147));
        QCOMPARE(b->geometry(), QRect(0, 152, 400, 148));
    }

    void smallContainerPutsTheBarBelowMarginA()
    {
        CAQSplit split;
        split.setMarginA(3000);
        split.setMarginB(3000);
        split.resize(300, 100); // 4500 twips
        split.setSplitPos(3000);
        QCOMPARE(split.SplitPos().toDouble(), 4500.0 - 3000 - 80);
    }

    void dragMovesTheBarWithAGhost()
    {
        CAQSplit split;
        split.resize(400, 300);
        split.setMarginA(600);
        auto* a = new QWidget;
        auto* b = new QWidget;
        split.Arrange(a, b);
        split.show();
        QVERIFY(QTest::qWaitForWindowExposed(&split));
        QSignalSpy changed(&split, &CAQSplit::SplitChange);

        const QPoint onBar(199, 150);
        QTest::mousePress(&split, Qt::LeftButton, {}, onBar);
        QVERIFY(split.dragging());
        QTest::mouseMove(&split, onBar + QPoint(-50, 0));
        QCOMPARE(split.ghostRect(), QRect(147, 0, 5, 300));
        QCOMPARE(changed.count(), 0);
        // Far to the left: the ghost stops at margin A (600 twips = 40 pixels).
        QTest::mouseMove(&split, QPoint(2, 150));
        QCOMPARE(split.ghostRect().left(), 40);
        QTest::mouseRelease(&split, Qt::LeftButton, {}, QPoint(2, 150));
        QVERIFY(!split.dragging());
        QVERIFY(split.ghostRect().isNull());
        QCOMPARE(changed.count(), 1);
        QCOMPARE(split.SplitPos().toDouble(), 600.0);
        QCOMPARE(a->width(), 40);
        // First ghost, erase + draw, erase at the end.
        QCOMPARE(split.ghostDraws(), 4);
    }

    void doubleStartWithoutMoveDrawsNothing()
    {
        CAQSplit split;
        split.resize(400, 300);
        split.Arrange(new QWidget, new QWidget);
        split.setSplitPos(1500);
        split.show();
        QVERIFY(QTest::qWaitForWindowExposed(&split));
        QSignalSpy changed(&split, &CAQSplit::SplitChange);
        QTest::mouseClick(&split, Qt::LeftButton, {}, QPoint(102, 10));
        QTest::mouseClick(&split, Qt::LeftButton, {}, QPoint(102, 10));
        QCOMPARE(split.ghostDraws(), 0);
        QVERIFY(split.ghostRect().isNull());
        QCOMPARE(split.SplitPos().toDouble(), 1500.0);
        QCOMPARE(changed.count(), 2);
    }

    void storedKeysRoundTrip()
    {
        CAQSplit split;
        split.resize(400, 300);
        const QVariantMap bag{{QStringLiteral("SplitStyle"), 1},
                              {QStringLiteral("SplitSize"), 60},
                              {QStringLiteral("MarginA"), 150.0},
                              {QStringLiteral("SplitPos"), 900},
                              {QStringLiteral("BackColor"), 0x0000FFu}};
        split.ReadProperties(bag);
        QCOMPARE(split.SplitStyle(), 1);
        QCOMPARE(split.SplitSize(), 60);
        QCOMPARE(split.BackColor(), QColor(255, 0, 0));
        QCOMPARE(split.BackStyle(), 1); // missing key: default
        const QVariantMap out = split.WriteProperties();
        for (const char* key : {"SplitStyle", "SplitSize", "MarginA", "SplitPos", "BackColor"})
            QCOMPARE(out.value(QLatin1String(key)).toDouble(),
                     bag.value(QLatin1String(key)).toDouble());

        CAQSimpleContainer box;
        box.ReadProperties({{QStringLiteral("BackColor"), 0x00FF00u}});
        QCOMPARE(box.BackColor(), QColor(0, 255, 0));
        QCOMPARE(box.WriteProperties().value(QStringLiteral("BackColor")).toUInt(), 0x00FF00u);
    }
};

QTEST_MAIN(TestCAQSplit)
#include "tst_caqsplit.moc"
