// The tree control on a real catalogue, driven by keys and clicks: the keyboard table with its
// edges, the zones of a row, the double click, opening the tree down to a key, the order of
// the events, and what is painted (connector lines, icons, the highlight, one line of text).

#include "catalogue/Database.h"
#include "controls/ui/SimpleReport.h"
#include "controls/ui/UserTree.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"
#include "support/FileViewLevels.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QScrollBar>
#include <QtTest>

using namespace vd;
using namespace vd::controls;

namespace {

const QStringList kLevels = {test::kRootLevel, test::kFilesLevel, test::kEntriesLevel};
constexpr int kRows = 8; // the tree's window: 8 rows of 16 pixels, no frame

// The file view over the fixture with every file open (ExpandAll):
//    0 Dateien            8 O'Brien's Disk.d64   16   SANXION.PRG
//    1 Boulder Dash.tap   9   O'BRIEN.PRG        17   SANXION HISCORE.SEQ
//    2   BOULDER DASH.PRG 10  (NO NAME).PRG      18   MY_GAME.PRG
//    3 Commando.d64       11 Paradroid.prg       19 title.gif
//    4   COMMANDO.PRG     12   PARADROID.PRG     20   title.gif.GIF
//    5 cover.png          13 readme.txt          21 Uridium.t64
//    6   cover.png.PNG    14   readme.txt.TXT    22   URIDIUM.PRG
//    7 Empty.d81          15 Sanxion.d64
// With only the root open the files are rows 1 to 10 in the same order.
constexpr int kAllRows = 23;
constexpr int kFileRows = 11;

QColor iconColor(int n)
{
    return QColor::fromHsv((n * 47) % 360, 200, 210);
}

// Icon n is a square of its own colour, drawn for 1x and 2x screens.
QVector<QIcon> makeIcons()
{
    QVector<QIcon> icons;
    for (int n = 1; n <= 40; ++n) {
        QIcon icon;
        for (int scale : {1, 2}) {
            QPixmap pm(16 * scale, 16 * scale);
            pm.setDevicePixelRatio(scale);
            pm.fill(Qt::transparent);
            QPainter p(&pm);
            p.fillRect(QRect(1, 1, 14, 14), iconColor(n).darker(150));
            p.fillRect(QRect(2, 2, 12, 12), iconColor(n));
            icon.addPixmap(pm);
        }
        icons << icon;
    }
    return icons;
}

QPoint zonePoint(UserTree& tree, int bufferRow, int zone)
{
    const TreeItemP item = tree.TreeItems(tree.TopRow() + bufferRow);
    const int w = tree.Indentation() * 16 + 16;
    const int left = item ? (item->Level - 1) * w : 0;
    const int y = bufferRow * 16 + 8;
    if (zone == UserTree::SignZone)
        return {left + 8, y};
    if (zone == UserTree::ItemZone)
        return {left + w + 20, y};
    return {left + w + 16 + 300, y}; // far behind the text
}

} // namespace

class TestUserTree : public QObject
{
    Q_OBJECT

    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<test::CatalogueFixture> m_cat;
    std::unique_ptr<UserTree> m_tree;
    QStringList m_events;

    void record(UserTree& t)
    {
        auto add = [this](const QString& e) { m_events << e; };
        connect(&t, &UserTree::selectionChange, this, [=] { add(u"selectionChange"_qs); });
        connect(&t, &UserTree::itemDblClick, this, [=] { add(u"itemDblClick"_qs); });
        connect(&t, &UserTree::beforeExpand, this, [=] { add(u"beforeExpand"_qs); });
        connect(&t, &UserTree::afterExpand, this, [=] { add(u"afterExpand"_qs); });
        connect(&t, &UserTree::beforeSetup, this, [=] { add(u"beforeSetup"_qs); });
        connect(&t, &UserTree::afterSetup, this, [=] { add(u"afterSetup"_qs); });
        connect(&t, &UserTree::keydown, this, [=](int key, int shift) {
            add(QStringLiteral("keydown:%1:%2").arg(key).arg(shift));
        });
        connect(&t, &UserTree::mouseDown, this, [=](int button, int, int, int) {
            add(QStringLiteral("mouseDown:%1").arg(button));
        });
        connect(&t, &UserTree::mouseUp, this,
                [=](int button, int, int, int) { add(QStringLiteral("mouseUp:%1").arg(button)); });
        connect(&t, &UserTree::mouseMove, this, [=](int button, int shift, int x, int y) {
            add(QStringLiteral("mouseMove:%1:%2:%3:%4").arg(button).arg(shift).arg(x).arg(y));
        });
    }

    QString current()
    {
        const TreeItemP item = m_tree->SelectedItem();
        return item ? item->Caption : u"-"_qs;
    }

    // "open" opens the root, "all" every file, "at N" makes row N current, "dbl" turns
    // DblClickOnReturn on.
    void prepare(const QString& script)
    {
        for (const QString& step : script.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            if (step == u"open")
                m_tree->ToggleItem(m_tree->TreeItems(0), UserTree::ExpandOnly);
            else if (step == u"all")
                m_tree->ExpandAll();
            else if (step == u"dbl")
                m_tree->setDblClickOnReturn(true);
            else if (step.startsWith(u"at "))
                m_tree->ActivateItem(m_tree->TreeItems(step.mid(3).toInt()));
        }
        QCoreApplication::processEvents();
        m_events.clear();
    }

    QImage shot() { return m_tree->viewport()->grab().toImage(); }

private slots:
    void init()
    {
        m_dialogs.clear();
        platform::setDialogService(&m_dialogs);
        m_cat = std::make_unique<test::CatalogueFixture>();
        m_tree = std::make_unique<UserTree>();
        m_tree->setBorderStyle(0);
        m_tree->resize(360, kRows * 16);
        m_tree->setStandardIcons(makeIcons());
        m_tree->setDataBase(&m_cat->db());
        m_events.clear();
        record(*m_tree);
        m_tree->levels()->Setup(kLevels);
        m_tree->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_tree.get()));
    }
    void cleanup()
    {
        m_tree.reset();
        m_cat.reset();
        QVERIFY2(m_dialogs.calls.isEmpty(), qPrintable(m_dialogs.messages().join(u'\n')));
        platform::setDialogService(nullptr);
    }

    void setupOpensTheFirstRowOnly()
    {
        QCOMPARE(m_events, QStringList({"beforeSetup", "selectionChange", "afterSetup"}));
        QCOMPARE(m_tree->ItemCount(), 1);
        QCOMPARE(current(), u"Dateien"_qs);
        QVERIFY(m_tree->isEnabled());
        QCOMPARE(m_tree->Style(), 1);
        QCOMPARE(m_tree->DataBase(), &m_cat->db());
    }

    void noLevelsIsToldAndLeavesTheTreeEmpty()
    {
        m_events.clear();
        m_tree->levels()->Setup({});
        QCOMPARE(
            m_dialogs.messages(),
            QStringList{u"Keine Levels vorhanden, oder Fehler bei Erstellung aufgetreten!"_qs});
        m_dialogs.clear();
        QCOMPARE(m_events, QStringList({"beforeSetup", "afterSetup"}));
        QVERIFY(!m_tree->isEnabled());
        QCOMPARE(m_tree->ItemCount(), 0);
        QVERIFY(!m_tree->SelectedItem());
        QVERIFY(!m_tree->ToggleItem(m_tree->TreeItems(0)));
        QVERIFY(!m_tree->SelectItem(u"-1"_qs, 1));
        QVERIFY(!shot().isNull());
    }

    void withoutIconsTheStyleFallsBackToLines()
    {
        UserTree plain;
        plain.setDataBase(&m_cat->db());
        plain.levels()->Setup(kLevels);
        QCOMPARE(plain.Style(), 0);
        QCOMPARE(plain.ItemCount(), 1);
        // Nothing: the levels and the rows go.
        plain.setDataBase(nullptr);
        QCOMPARE(plain.ItemCount(), 0);
        QVERIFY(!plain.SelectedItem());
        QVERIFY(!plain.DataBase());
    }

    void propertiesReadBackAndFallBackToTheDefaults()
    {
        const QVariantMap stored{{"Enabled", false},
                                 {"BorderStyle", 0},
                                 {"HideSelection", -1},
                                 {"Indentation", 2},
                                 {"Style", 0},
                                 {"TextSpacer", 4},
                                 {"TranslateIcons", true},
                                 {"PlusMinusMode", 1},
                                 {"DblClickOnReturn", "1"},
                                 {"Font", QFont(u"Sans Serif"_qs, 11, QFont::Bold).toString()}};
        UserTree t;
        t.ReadProperties(stored);
        QVERIFY(!t.isEnabled());
        QCOMPARE(t.frameStyle(), int(QFrame::NoFrame));
        QVERIFY(t.HideSelection() && t.TranslateIcons() && t.DblClickOnReturn());
        QCOMPARE(t.Indentation() * 100 + t.TextSpacer() * 10 + t.PlusMinusMode(), 241);
        QCOMPARE(t.font().pointSize(), 11);
        QVERIFY(t.font().bold());
        QCOMPARE(t.WriteProperties().value("Style").toInt(), 0);
        // Missing keys are the defaults of a new tree, whatever was read before.
        t.ReadProperties({{"Font", t.font().toString()}});
        UserTree fresh;
        fresh.setFont(t.font());
        QCOMPARE(t.WriteProperties(), fresh.WriteProperties());
        QCOMPARE(fresh.WriteProperties().value("BorderStyle").toInt(), 1);
        QCOMPARE(fresh.WriteProperties().value("Indentation").toInt(), 1);
        QCOMPARE(fresh.WriteProperties().value("Style").toInt(), 1);
    }

    void keys_data()
    {
        QTest::addColumn<QString>("prep");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("mods");
        QTest::addColumn<QString>("row");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("top"); // -1: not checked
        QTest::addColumn<QStringList>("events");
        const int none = Qt::NoModifier, ctrl = Qt::ControlModifier, pad = Qt::KeypadModifier;
        const QStringList moved{"selectionChange"}, expanded{"beforeExpand", "afterExpand"}, quiet;
        auto key = [](int k, int shift) {
            return QStringLiteral("keydown:%1:%2").arg(k).arg(shift);
        };
        // clang-format off
        QTest::newRow("down") << "open;at 0" << int(Qt::Key_Down) << none << "Boulder Dash.tap" << kFileRows << 0 << moved;
        QTest::newRow("down on the last row") << "open;at 10" << int(Qt::Key_Down) << none << "Uridium.t64" << kFileRows << -1 << quiet;
        QTest::newRow("up") << "open;at 2" << int(Qt::Key_Up) << none << "Boulder Dash.tap" << kFileRows << -1 << moved;
        QTest::newRow("up on the first row") << "open;at 0" << int(Qt::Key_Up) << none << "Dateien" << kFileRows << 0 << quiet;
        QTest::newRow("down into an open row") << "all;at 15" << int(Qt::Key_Down) << none << "SANXION.PRG" << kAllRows << -1 << moved;
        QTest::newRow("down out of a subtree") << "all;at 18" << int(Qt::Key_Down) << none << "title.gif" << kAllRows << -1 << moved;
        QTest::newRow("home") << "all;at 12" << int(Qt::Key_Home) << none << "Dateien" << kAllRows << 0 << moved;
        QTest::newRow("end") << "all;at 0" << int(Qt::Key_End) << none << "URIDIUM.PRG" << kAllRows << kAllRows - kRows << moved;
        QTest::newRow("page down") << "all;at 0" << int(Qt::Key_PageDown) << none << "O'Brien's Disk.d64" << kAllRows << 1 << moved;
        QTest::newRow("page down near the end") << "all;at 20" << int(Qt::Key_PageDown) << none << "URIDIUM.PRG" << kAllRows << -1 << moved;
        QTest::newRow("page up") << "all;at 20" << int(Qt::Key_PageUp) << none << "PARADROID.PRG" << kAllRows << 12 << moved;
        QTest::newRow("page up near the top") << "all;at 3" << int(Qt::Key_PageUp) << none << "Dateien" << kAllRows << 0 << moved;
        QTest::newRow("page up on the first row") << "all;at 0" << int(Qt::Key_PageUp) << none << "Dateien" << kAllRows << 0 << quiet;
        QTest::newRow("grey plus opens") << "open;at 8" << int(Qt::Key_Plus) << pad << "Sanxion.d64" << kFileRows + 3 << -1 << expanded;
        QTest::newRow("grey plus on a leaf") << "open;at 4" << int(Qt::Key_Plus) << pad << "Empty.d81" << kFileRows << -1 << quiet;
        QTest::newRow("grey plus on an open row") << "all;at 15" << int(Qt::Key_Plus) << pad << "Sanxion.d64" << kAllRows << -1 << quiet;
        QTest::newRow("grey minus closes") << "all;at 15" << int(Qt::Key_Minus) << pad << "Sanxion.d64" << kAllRows - 3 << -1 << quiet;
        QTest::newRow("grey minus on a closed row") << "open;at 8" << int(Qt::Key_Minus) << pad << "Sanxion.d64" << kFileRows << -1 << quiet;
        QTest::newRow("right opens") << "open;at 8" << int(Qt::Key_Right) << none << "Sanxion.d64" << kFileRows + 3 << -1 << expanded;
        QTest::newRow("right on an open row") << "all;at 15" << int(Qt::Key_Right) << none << "SANXION.PRG" << kAllRows << -1 << moved;
        QTest::newRow("right on a leaf") << "open;at 4" << int(Qt::Key_Right) << none << "O'Brien's Disk.d64" << kFileRows << -1 << moved;
        QTest::newRow("right on the last leaf") << "all;at 22" << int(Qt::Key_Right) << none << "URIDIUM.PRG" << kAllRows << -1 << quiet;
        QTest::newRow("left closes") << "all;at 15" << int(Qt::Key_Left) << none << "Sanxion.d64" << kAllRows - 3 << -1 << quiet;
        QTest::newRow("left on a closed row") << "open;at 4" << int(Qt::Key_Left) << none << "Dateien" << kFileRows << 0 << moved;
        QTest::newRow("left on an entry") << "all;at 17" << int(Qt::Key_Left) << none << "Sanxion.d64" << kAllRows << -1 << moved;
        QTest::newRow("left on the root row") << "" << int(Qt::Key_Left) << none << "Dateien" << 1 << 0 << quiet;
        QTest::newRow("return") << "dbl;open;at 3" << int(Qt::Key_Return) << none << "cover.png" << kFileRows << -1 << QStringList{"itemDblClick"};
        QTest::newRow("enter on the keypad") << "dbl;open;at 3" << int(Qt::Key_Enter) << pad << "cover.png" << kFileRows << -1 << QStringList{"itemDblClick"};
        QTest::newRow("return without DblClickOnReturn") << "open;at 3" << int(Qt::Key_Return) << none << "cover.png" << kFileRows << -1 << quiet;
        QTest::newRow("ctrl down scrolls") << "all;at 0" << int(Qt::Key_Down) << ctrl << "Dateien" << kAllRows << 1 << quiet;
        QTest::newRow("ctrl up at the top") << "all;at 0" << int(Qt::Key_Up) << ctrl << "Dateien" << kAllRows << 0 << quiet;
        QTest::newRow("ctrl page down") << "all;at 0" << int(Qt::Key_PageDown) << ctrl << "Dateien" << kAllRows << kRows << quiet;
        QTest::newRow("ctrl end") << "all;at 0" << int(Qt::Key_End) << ctrl << "Dateien" << kAllRows << kAllRows - kRows << quiet;
        QTest::newRow("ctrl home") << "all;at 22" << int(Qt::Key_Home) << ctrl << "URIDIUM.PRG" << kAllRows << 0 << quiet;
        QTest::newRow("ctrl page up") << "all;at 22" << int(Qt::Key_PageUp) << ctrl << "URIDIUM.PRG" << kAllRows << kAllRows - 2 * kRows << quiet;
        QTest::newRow("ctrl with a letter") << "open;at 2" << int(Qt::Key_A) << ctrl << "Commando.d64" << kFileRows << -1 << QStringList{key(Qt::Key_A, 2)};
        QTest::newRow("shift down") << "open;at 2" << int(Qt::Key_Down) << int(Qt::ShiftModifier) << "Commando.d64" << kFileRows << -1 << QStringList{key(Qt::Key_Down, 1)};
        QTest::newRow("alt right") << "open;at 8" << int(Qt::Key_Right) << int(Qt::AltModifier) << "Sanxion.d64" << kFileRows << -1 << QStringList{key(Qt::Key_Right, 4)};
        QTest::newRow("another key") << "open;at 2" << int(Qt::Key_F5) << none << "Commando.d64" << kFileRows << -1 << QStringList{key(Qt::Key_F5, 0)};
        // clang-format on
    }
    void keys()
    {
        QFETCH(QString, prep);
        QFETCH(int, key);
        QFETCH(int, mods);
        QFETCH(QString, row);
        QFETCH(int, count);
        QFETCH(int, top);
        QFETCH(QStringList, events);
        prepare(prep);
        QTest::keyClick(m_tree.get(), Qt::Key(key), Qt::KeyboardModifiers(mods));
        // A modifier key goes out as a key of its own when it is pressed; not the point here.
        m_events.removeIf([](const QString& e) {
            return e.startsWith(QStringLiteral("keydown:%1:").arg(Qt::Key_Control)) ||
                   e.startsWith(QStringLiteral("keydown:%1:").arg(Qt::Key_Shift)) ||
                   e.startsWith(QStringLiteral("keydown:%1:").arg(Qt::Key_Alt));
        });
        QCOMPARE(current(), row);
        QCOMPARE(m_tree->ItemCount(), count);
        if (top >= 0)
            QCOMPARE(m_tree->TopRow(), top);
        QCOMPARE(m_events, events);
        // The current row is always on screen, unless Ctrl moved the window only.
        const qint32 at = m_tree->SelectedItem()->AbsoluteIndex();
        if (!(mods & Qt::ControlModifier))
            QVERIFY(at >= m_tree->TopRow() && at < m_tree->TopRow() + kRows);
    }

    void clicks_data()
    {
        QTest::addColumn<QString>("prep");
        QTest::addColumn<int>("row"); // on screen
        QTest::addColumn<int>("zone");
        QTest::addColumn<int>("button");
        QTest::addColumn<QString>("current");
        QTest::addColumn<int>("count");
        QTest::addColumn<QStringList>("events");
        const int left = Qt::LeftButton, right = Qt::RightButton;
        const QStringList click{"mouseDown:1", "mouseUp:1"};
        // clang-format off
        QTest::newRow("text makes the row current") << "open;at 0" << 3 << 1 << left << "cover.png" << kFileRows << QStringList{"selectionChange", "mouseDown:1", "mouseUp:1"};
        QTest::newRow("right button too") << "open;at 0" << 3 << 1 << right << "cover.png" << kFileRows << QStringList{"selectionChange", "mouseDown:2", "mouseUp:2"};
        QTest::newRow("text of the current row") << "open;at 3" << 3 << 1 << left << "cover.png" << kFileRows << click;
        QTest::newRow("plus opens") << "open;at 0" << 7 << 2 << left << "Dateien" << kFileRows + 1 << QStringList{"beforeExpand", "afterExpand", "mouseDown:1", "mouseUp:1"};
        QTest::newRow("plus of a leaf") << "open;at 0" << 4 << 2 << left << "Dateien" << kFileRows << click;
        QTest::newRow("minus closes") << "all;at 0" << 1 << 2 << left << "Dateien" << kAllRows - 1 << click;
        QTest::newRow("minus of the current row's file") << "all;at 17" << 5 << 2 << left << "Sanxion.d64" << kAllRows - 3 << QStringList{"selectionChange", "mouseDown:1", "mouseUp:1"};
        QTest::newRow("behind the text") << "open;at 0" << 3 << 0 << left << "Dateien" << kFileRows << click;
        QTest::newRow("below the last row") << "" << 5 << 1 << left << "Dateien" << 1 << click;
        // clang-format on
    }
    void clicks()
    {
        QFETCH(QString, prep);
        QFETCH(int, row);
        QFETCH(int, zone);
        QFETCH(int, button);
        QFETCH(QString, current);
        QFETCH(int, count);
        QFETCH(QStringList, events);
        prepare(prep);
        const QPoint at = zonePoint(*m_tree, row, zone);
        if (m_tree->ItemCount() > m_tree->TopRow() + row)
            QCOMPARE(m_tree->Hittest(at.x(), at.y()), zone);
        QTest::mouseClick(m_tree->viewport(), Qt::MouseButton(button), {}, at);
        QCOMPARE(this->current(), current);
        QCOMPARE(m_tree->ItemCount(), count);
        QCOMPARE(m_events, events);
    }

    void hittestZonesFollowIndentationAndText()
    {
        prepare(u"open"_qs);
        const QFontMetrics fm = m_tree->viewport()->fontMetrics();
        for (int indentation : {0, 1, 2}) {
            for (int spacer : {0, 5}) {
                m_tree->setIndentation(indentation);
                m_tree->setTextSpacer(spacer);
                const int w = indentation * 16 + 16;
                const int left = w; // row 3, cover.png, is at level 2
                const int text = spacer + fm.horizontalAdvance(u" cover.png "_qs);
                const int y = 3 * 16 + 15;
                int row = -1;
                QCOMPARE(m_tree->Hittest(left - 1, y, &row), 0);
                QCOMPARE(row, 3);
                QCOMPARE(m_tree->Hittest(left, y), 2);
                QCOMPARE(m_tree->Hittest(left + w, y), 2);
                QCOMPARE(m_tree->Hittest(left + w + 1, y), 1);
                QCOMPARE(m_tree->Hittest(left + w + 16 + text, y), 1);
                QCOMPARE(m_tree->Hittest(left + w + 17 + text, y), 0);
            }
        }
        QCOMPARE(m_tree->Hittest(40, kFileRows * 16), 0); // no row there
    }

    void doubleClickOnlyOnTheText_data()
    {
        QTest::addColumn<int>("zone");
        QTest::addColumn<int>("dblClicks");
        QTest::addColumn<int>("count");
        QTest::newRow("text") << 1 << 1 << kFileRows;
        QTest::newRow("plus") << 2 << 0 << kFileRows + 1;
        QTest::newRow("behind the text") << 0 << 0 << kFileRows;
    }
    void doubleClickOnlyOnTheText()
    {
        QFETCH(int, zone);
        QFETCH(int, dblClicks);
        QFETCH(int, count);
        prepare(u"open;at 0"_qs);
        QSignalSpy dbl(m_tree.get(), &UserTree::itemDblClick);
        const QPoint at = zonePoint(*m_tree, 7, zone); // Paradroid.prg
        // As the window system delivers it: the second press comes as the double click.
        QTest::mouseClick(m_tree->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(m_tree->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseRelease(m_tree->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(dbl.count(), dblClicks);
        QCOMPARE(m_tree->ItemCount(), count);
    }

    void eventsComeInOrder()
    {
        prepare(u"open;at 0"_qs);
        // A double click on a row's text.
        const QPoint text = zonePoint(*m_tree, 6, UserTree::ItemZone);
        QTest::mouseClick(m_tree->viewport(), Qt::LeftButton, {}, text);
        QTest::mouseDClick(m_tree->viewport(), Qt::LeftButton, {}, text);
        QTest::mouseRelease(m_tree->viewport(), Qt::LeftButton, {}, text);
        QCOMPARE(m_events, QStringList({"selectionChange", "mouseDown:1", "mouseUp:1",
                                        "itemDblClick", "mouseUp:1"}));
        // An expansion by key or from a row's own ExpandAll is one pair, not two.
        m_events.clear();
        QTest::keyClick(m_tree.get(), Qt::Key_Right);
        QCOMPARE(m_events, QStringList({"beforeExpand", "afterExpand"}));
        m_events.clear();
        m_tree->TreeItems(9)->ExpandAll(); // Sanxion.d64
        QCOMPARE(m_events, QStringList({"beforeExpand", "afterExpand"}));
        QCOMPARE(m_tree->ItemCount(), kFileRows + 1 + 3);
        // Moving the mouse reports buttons, keys and the point.
        m_events.clear();
        QMouseEvent move(QEvent::MouseMove, QPointF(30, 20),
                         m_tree->viewport()->mapToGlobal(QPointF(30, 20)), Qt::NoButton,
                         Qt::RightButton, Qt::ShiftModifier);
        QCoreApplication::sendEvent(m_tree->viewport(), &move);
        QCOMPARE(m_events, QStringList{u"mouseMove:2:1:30:20"_qs});
    }

    void selectItemOpensTheTreeDownToTheKey()
    {
        // Level 1 opens nothing and selects in the root.
        prepare(u"open;at 5"_qs);
        QVERIFY(m_tree->SelectItem(u"-1"_qs, 1));
        QCOMPARE(current(), u"Dateien"_qs);
        QCOMPARE(m_tree->ItemCount(), kFileRows);
        QCOMPARE(m_events, QStringList{u"selectionChange"_qs});

        // Level 3 from a closed tree: the root and Sanxion.d64 open, MY_GAME is scrolled in.
        m_tree->ToggleItem(m_tree->TreeItems(0), UserTree::CollapseOnly);
        m_events.clear();
        QVERIFY(m_tree->SelectItem(u"3"_qs, 3));
        QCOMPARE(current(), u"MY_GAME.PRG"_qs);
        QCOMPARE(m_tree->SelectedItem()->AbsoluteIndex(), 11);
        QCOMPARE(m_tree->ItemCount(), kFileRows + 3);
        QCOMPARE(m_tree->TopRow(), 11 - kRows + 1);
        QCOMPARE(m_events, QStringList{u"selectionChange"_qs});

        // A key that is not there changes nothing.
        m_events.clear();
        QVERIFY(!m_tree->SelectItem(u"999"_qs, 3));
        QVERIFY(!m_tree->SelectItem(u"999"_qs, 2));
        QCOMPARE(current(), u"MY_GAME.PRG"_qs);
        QCOMPARE(m_tree->ItemCount(), kFileRows + 3);
        QVERIFY(m_events.isEmpty());

        // The list's row: its parent key is the key of the tree's row at its level.
        cListItem listRow;
        listRow.Row = 0;
        listRow.Level = 3;
        listRow.ParentKey = 8;
        m_tree->Synchronize(listRow);
        QCOMPARE(current(), u"O'BRIEN.PRG"_qs);
        m_tree->Synchronize(cListItem());
        QCOMPARE(current(), u"O'BRIEN.PRG"_qs);

        // Keys are kept for 33 levels at most.
        QVERIFY(!m_tree->SelectItem(u"1"_qs, 34));
        QCOMPARE(m_dialogs.calls.size(), 1);
        QCOMPARE(m_dialogs.calls[0].title, u"Tree: UserTree_SelectItem"_qs);
        m_dialogs.clear();
    }

    void requeryKeepsTheCurrentRow()
    {
        prepare(u"open;at 6"_qs);
        QCOMPARE(current(), u"Paradroid.prg"_qs);
        test::appendRow(
            m_cat->db(), u"Category"_qs,
            {{"ID", 40}, {"iType", 1}, {"tCategory", "Alleykat.d64"}, {"iFileType", 1}});
        m_tree->Requery();
        QCOMPARE(m_tree->ItemCount(), kFileRows + 1);
        QCOMPARE(current(), u"Paradroid.prg"_qs);
        QCOMPARE(m_tree->TreeItems(1)->Caption, u"Alleykat.d64"_qs);
        // The keys act on the row where it is now.
        QTest::keyClick(m_tree.get(), Qt::Key_Up);
        QCOMPARE(current(), u"O'Brien's Disk.d64"_qs);
    }

    void plusMinusModeFindsOutOnOpening()
    {
        m_tree.reset();
        m_tree = std::make_unique<UserTree>();
        m_tree->setPlusMinusMode(1);
        m_tree->resize(360, kRows * 16);
        m_tree->setDataBase(&m_cat->db());
        m_tree->levels()->Setup(kLevels);
        m_tree->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_tree.get()));
        prepare(u"open;at 4"_qs);
        TreeItemP empty = m_tree->TreeItems(4);
        QCOMPARE(empty->Caption, u"Empty.d81"_qs);
        QCOMPARE(empty->TreeLineIcon(), 5); // a middle row that claims children
        QTest::keyClick(m_tree.get(), Qt::Key_Right);
        QCOMPARE(current(), u"O'Brien's Disk.d64"_qs);
        QCOMPARE(m_tree->ItemCount(), kFileRows);
        QCOMPARE(empty->TreeLineIcon(), 4);
    }

    // --- what is painted -----------------------------------------------------------------

    void onlyTheFirstLineOfACaptionIsShown()
    {
        for (const auto& [id, name] : {std::pair{41, "Alpha"}, std::pair{42, "Alpha\rSecond line"},
                                       std::pair{43, "Alpha\nThird line"}})
            test::appendRow(m_cat->db(), u"Category"_qs,
                            {{"ID", id}, {"iType", 1}, {"tCategory", name}, {"iFileType", 1}});
        m_tree->Requery();
        prepare(u"open;at 0"_qs);
        QCOMPARE(m_tree->TreeItems(3)->Caption, u"Alpha\rSecond line"_qs);
        const QImage img = shot();
        const QImage first = img.copy(0, 16, img.width(), 16);
        QCOMPARE(img.copy(0, 32, img.width(), 16), first);
        QCOMPARE(img.copy(0, 48, img.width(), 16), first);
        QVERIFY(first != img.copy(0, 64, img.width(), 16)); // a different name looks different
        const int end =
            32 + 32 + 16 + m_tree->viewport()->fontMetrics().horizontalAdvance(u" Alpha "_qs);
        QCOMPARE(m_tree->Hittest(end, 2 * 16 + 4), 1);
        QCOMPARE(m_tree->Hittest(end + 1, 2 * 16 + 4), 0);
    }

    void iconsComeFromTheListsAndCanBeTranslated()
    {
        prepare(u"open;at 0"_qs);
        QVector<QIcon> open;
        for (int n = 0; n < 40; ++n)
            open << makeIcons()[(n + 20) % 40];
        m_tree->setExpandedIcons(open);
        // Row 0, the root (icon 16), is open; row 2, Commando.d64 (icon 1), is closed.
        QImage img = shot();
        QCOMPARE(img.pixelColor(32 + 8, 8).name(), QColor(iconColor(36)).name());
        QCOMPARE(img.pixelColor(64 + 8, 2 * 16 + 8).name(), QColor(iconColor(1)).name());

        QList<QPair<int, int>> asked;
        m_tree->setTranslateIcons(true);
        connect(m_tree.get(), &UserTree::translateIcon, this, [&](qint16& icon, int level) {
            asked << qMakePair(int(icon), level);
            icon = 3;
        });
        m_tree->setExpandedIcons({});
        img = shot();
        QCOMPARE(asked.size(), kRows);
        QCOMPARE(asked[0], qMakePair(16, 1));
        QCOMPARE(asked[2], qMakePair(1, 2));
        QCOMPARE(img.pixelColor(32 + 8, 8).name(), QColor(iconColor(3)).name());
        QCOMPARE(img.pixelColor(64 + 8, 2 * 16 + 8).name(), QColor(iconColor(3)).name());

        m_tree->setStyle(0); // lines and text only
        asked.clear();
        img = shot();
        QVERIFY(asked.isEmpty());
        QVERIFY(img.pixelColor(64 + 8, 2 * 16 + 8).name() != iconColor(3).name());
    }

    void highlightFollowsFocusAndHideSelection()
    {
        prepare(u"open;at 3"_qs);
        // In the fill, above the letters of "cover.png", none of which rises above the others.
        const int textWidth =
            m_tree->viewport()->fontMetrics().horizontalAdvance(u" cover.png "_qs);
        const QPoint inText(32 + 32 + 16 + textWidth / 2, 3 * 16 + 3);
        const QPalette pal = m_tree->palette();
        m_tree->activateWindow();
        m_tree->setFocus();
        QTRY_VERIFY(m_tree->hasFocus());
        QCOMPARE(shot().pixelColor(inText).name(),
                 QColor(pal.color(QPalette::Active, QPalette::Highlight)).name());
        m_tree->clearFocus();
        QTRY_VERIFY(!m_tree->hasFocus());
        QCOMPARE(shot().pixelColor(inText).name(),
                 QColor(pal.color(QPalette::Active, QPalette::Dark)).name());
        m_tree->setHideSelection(true);
        QCOMPARE(shot().pixelColor(inText).name(),
                 QColor(pal.color(QPalette::Active, QPalette::Base)).name());
        // Other rows never carry a fill.
        QCOMPARE(shot().pixelColor(inText + QPoint(0, 16)).name(),
                 QColor(pal.color(QPalette::Active, QPalette::Base)).name());
    }

    void connectorsStayCrispAtAnyScale_data()
    {
        QTest::addColumn<double>("dpr");
        QTest::newRow("1x") << 1.0;
        QTest::newRow("1.25x") << 1.25;
        QTest::newRow("1.5x") << 1.5;
        QTest::newRow("2x") << 2.0;
    }
    void connectorsStayCrispAtAnyScale()
    {
        QFETCH(double, dpr);
        const TreeLineColors colors{Qt::red, Qt::green, Qt::white, Qt::blue};
        const QSet<QRgb> allowed{qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(255, 255, 255),
                                 qRgb(0, 0, 255), qRgb(0, 0, 0)};
        const int cell = int(std::lround(16 * dpr));
        QImage img(cell * treeline::kCount, cell * 2, QImage::Format_RGB32);
        img.setDevicePixelRatio(dpr);
        img.fill(Qt::black);
        {
            QPainter p(&img);
            for (int i = 0; i < treeline::kCount; ++i) {
                DrawTreeLine(p, i, QPoint(i * 16, 0), colors);
                DrawTreeLine(p, treeline::kVertical, QPoint(i * 16, 16), colors);
            }
        }
        for (int y = 0; y < img.height(); ++y)
            for (int x = 0; x < img.width(); ++x)
                QVERIFY2(allowed.contains(img.pixel(x, y)),
                         qPrintable(QStringLiteral("blended pixel at %1,%2").arg(x).arg(y)));
        // The vertical line lies in the same columns in every cell and runs on through the
        // cell below; the horizontal line of a middle row meets the extension's at the edge.
        const QRgb red = qRgb(255, 0, 0);
        const int middle = 3 * cell; // picture 4: a middle row without a sign
        QList<int> columns, rows;
        for (int x = middle; x < middle + cell; ++x)
            if (img.pixel(x, cell / 4) == red)
                columns << x - middle;
        for (int y = 0; y < cell; ++y)
            if (img.pixel(middle + cell - 1, y) == red)
                rows << y;
        QCOMPARE(columns.size(), std::max(1, int(dpr)));
        QCOMPARE(rows.size(), columns.size());
        for (int picture : {3, treeline::kVertical})
            for (int y = 0; y < 2 * cell; ++y)
                for (int x : columns)
                    QCOMPARE(img.pixel(picture * cell + x, y), red);
        for (int y : rows)
            for (int x = 0; x < cell; ++x)
                QCOMPARE(img.pixel(treeline::kHorizontal * cell + x, y), red);
    }

    // A picture of the tree beside the list for a reviewer, with the lines checked where
    // they must be.
    void screenshotOfTreeAndList()
    {
        QWidget host;
        auto* layout = new QHBoxLayout(&host);
        auto* tree = new UserTree;
        auto* list = new SimpleReport;
        layout->addWidget(tree);
        layout->addWidget(list);
        host.resize(760, 420);
        tree->setStandardIcons(makeIcons());
        tree->setDataBase(&m_cat->db());
        tree->levels()->Setup(kLevels);
        list->setDataBase(&m_cat->db());
        list->Setup(u"Select C64Files.ID,Category_File AS ParentKey,F.iFileType as Icon,tProgram "
                    "as [File],tExtension as [Filetyp],lSize as [Blocks] From (C64Files Left Join "
                    "Category as F on C64Files.Category_File=F.ID)"_qs,
                    3, 1, {}, -2, false, 0, -1);
        host.show();
        QVERIFY(QTest::qWaitForWindowExposed(&host));
        tree->ToggleItem(tree->TreeItems(0), UserTree::ExpandOnly);
        tree->ToggleItem(tree->TreeItems(5), UserTree::ExpandOnly);  // O'Brien's Disk.d64
        tree->ToggleItem(tree->TreeItems(10), UserTree::ExpandOnly); // Sanxion.d64
        QVERIFY(tree->SelectItem(u"2"_qs, 3));                       // SANXION HISCORE
        tree->setFocus();
        QCoreApplication::processEvents();

        const QString dir = qEnvironmentVariableIsSet("VD_SHOTS")
                                ? qEnvironmentVariable("VD_SHOTS")
                                : QCoreApplication::applicationDirPath();
        const QImage whole = host.grab().toImage();
        QVERIFY(whole.save(dir + u"/usertree.png"_qs));
        QImage twice(host.size() * 2, QImage::Format_ARGB32);
        twice.setDevicePixelRatio(2);
        twice.fill(Qt::white);
        host.render(&twice);
        QVERIFY(twice.save(dir + u"/usertree@2x.png"_qs));
        qInfo("pictures in %s", qPrintable(dir));

        // Checked on the tree's own surface: rows 1 to 10 are the files (level 2, column 32);
        // O'Brien's entries are rows 6 and 7, Sanxion's 11 to 13, Uridium.t64 is row 15.
        const QImage img = tree->viewport()->grab().toImage();
        const QColor line = tree->palette().color(QPalette::Active, QPalette::Mid);
        const QColor base = tree->palette().color(QPalette::Active, QPalette::Base);
        const int column = 32 + 8;
        for (int row = 1; row <= 15; ++row) {
            const int y = row * 16;
            QCOMPARE(img.pixelColor(column, y + 1).name(),
                     line.name()); // up to the row above
            if (row < 15)
                QCOMPARE(img.pixelColor(column, y + 14).name(),
                         line.name()); // down to the next file
            if (tree->TreeItems(row)->Level == 2)
                QCOMPARE(img.pixelColor(32 + 16 + 8, y + 8).name(),
                         line.name()); // the indentation
        }
        QCOMPARE(img.pixelColor(column, 15 * 16 + 14).name(),
                 base.name()); // the last file ends the line
        QCOMPARE(img.pixelColor(8, 16 + 8).name(),
                 base.name()); // the root has no line below
        // The entries have their own column, closed by the last of them.
        QCOMPARE(img.pixelColor(64 + 8, 12 * 16 + 14).name(), line.name());
        QCOMPARE(img.pixelColor(64 + 8, 13 * 16 + 14).name(), base.name());
        // Every row's text is painted.
        for (int row = 0; row < 16; ++row) {
            const TreeItemP item = tree->TreeItems(row);
            const int x0 = item->Level * 32 + 16;
            int ink = 0;
            for (int y = row * 16; y < row * 16 + 16; ++y)
                for (int x = x0; x < x0 + 60; ++x)
                    ink += qGray(img.pixel(x, y)) < 128 ? 1 : 0;
            QVERIFY2(ink > 10, qPrintable(item->Caption));
        }
        // At twice the pixels the line is two pixels wide and nothing beside it is smeared.
        QImage big2(tree->viewport()->size() * 2, QImage::Format_RGB32);
        big2.setDevicePixelRatio(2);
        tree->viewport()->render(&big2);
        const int y2 = 2 * (2 * 16 + 1);
        QCOMPARE(big2.pixelColor(2 * column - 1, y2).name(), base.name());
        QCOMPARE(big2.pixelColor(2 * column, y2).name(), line.name());
        QCOMPARE(big2.pixelColor(2 * column + 1, y2).name(), line.name());
        QCOMPARE(big2.pixelColor(2 * column + 2, y2).name(), base.name());
        QVERIFY(list->model()->rowCount() > 0);
    }
};

QTEST_MAIN(TestUserTree)
#include "tst_usertree.moc"
