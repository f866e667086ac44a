// How long the tree takes to repaint while the user scrolls through the files of a big
// catalogue: the file view's tree (the root, every file by name, the entries of a file as the
// third level) over a catalogue written by vellumdock-bench-controls, scrolled page by page
// through all its files, line by line, by jumps of the scroll bar, with files opened on the
// way and with Page Down moving the current row; then a tree whose second level is every
// entry, opened and paged. Each paint event of the tree's surface is timed. The baseline is a plain
// widget that paints the same rows (icon and name) from names held in memory, scrolled by the same
// pages in the same run: what painting alone costs. Run by hand:
//   vellumdock-bench-controls --dir DIR --only tree        (writes DIR/controls-N-M.vdb once)
//   vellumdock-bench-paint-tree DIR/controls-N-M.vdb [--files N] [--lines L] [--jumps J]

#include "catalogue/Database.h"
#include "controls/ui/UserTree.h"
#include "PaintTiming.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QKeyEvent>
#include <QPainter>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTextStream>
#include <sqlite3.h>

using namespace vd;

namespace {

QTextStream out(stdout);

// The view builder's levels of view 1 with the entries as the third level.
const QStringList kLevels = {
    QStringLiteral(
        "SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,16 AS Icon,'Dateien' From Config"),
    QStringLiteral("SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,tCategory From "
                   "Category as F where iType=1 order by tCategory"),
    QStringLiteral("SELECT C64Files.ID AS ItemKey,Category_File AS ParentKey,F.iFileType as Icon, "
                   "tProgram & '.' & tExtension AS File  From (C64Files Left Join Category as F "
                   "on C64Files.Category_File=F.ID) order by lIndex")};
// A second level of every entry, by name.
const QString kEveryEntry = QStringLiteral(
    "SELECT C64Files.ID AS ItemKey,-1 AS ParentKey,F.iFileType as Icon, tProgram & '.' & "
    "tExtension AS File From (C64Files Left Join Category as F on C64Files.Category_File=F.ID) "
    "order by tProgram");

QVector<QIcon> makeIcons()
{
    QVector<QIcon> icons;
    for (int n = 1; n <= 40; ++n) {
        QPixmap pm(16, 16);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.fillRect(QRect(1, 1, 14, 14), QColor::fromHsv((n * 47) % 360, 200, 210));
        icons << QIcon(pm);
    }
    return icons;
}

// The baseline: rows of icon and text from a list in memory, 16 pixels each.
class PlainRows : public QWidget
{
public:
    QStringList names;
    QVector<QIcon> icons;
    int top = 0;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter p(this);
        p.fillRect(rect(), palette().color(QPalette::Base));
        p.setPen(palette().color(QPalette::Text));
        const int rows = (height() + 15) / 16;
        for (int r = 0; r < rows && top + r < names.size(); ++r) {
            icons[(top + r) % icons.size()].paint(&p, QRect(48, r * 16, 16, 16));
            p.drawText(QRect(64, r * 16, width() - 64, 16), Qt::AlignLeft | Qt::AlignVCenter,
                       QLatin1Char(' ') + names[top + r] + QLatin1Char(' '));
        }
    }
};

QStringList namesByHand(const QString& path, int limit)
{
    QStringList names;
    sqlite3* db = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db,
                       "SELECT tCategory FROM Category WHERE iType=1 ORDER BY tCategory COLLATE "
                       "NOCASE",
                       -1, &st, nullptr);
    while (names.size() < limit && sqlite3_step(st) == SQLITE_ROW)
        names << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
    sqlite3_finalize(st);
    sqlite3_close(db);
    return names;
}

void report(const QString& what, const bench::PaintTimes& t, double baseline = 0)
{
    using bench::percentile;
    out << QStringLiteral("%1 %2 paints: median %3 ms, p95 %4 ms, max %5 ms; CPU median %6 ms, "
                          "p95 %7 ms, max %8 ms")
               .arg(what + QLatin1Char(':'), -38)
               .arg(t.ms.size(), 5)
               .arg(percentile(t.ms, 0.5), 0, 'f', 2)
               .arg(percentile(t.ms, 0.95), 0, 'f', 2)
               .arg(percentile(t.ms, 1.0), 0, 'f', 2)
               .arg(percentile(t.cpuMs, 0.5), 0, 'f', 2)
               .arg(percentile(t.cpuMs, 0.95), 0, 'f', 2)
               .arg(percentile(t.cpuMs, 1.0), 0, 'f', 2);
    if (baseline > 0)
        out << QStringLiteral("; median / baseline %1")
                   .arg(percentile(t.ms, 0.5) / baseline, 0, 'f', 1);
    out << (percentile(t.cpuMs, 1.0) < 16 ? " (CPU under 16 ms)\n" : " (CPU OVER 16 ms)\n");
    out.flush();
}

// Scrolls page by page from the top to `lastTop` (or the end), painting each step.
void pageThrough(controls::UserTree& tree, int lastTop)
{
    QScrollBar* bar = tree.verticalScrollBar();
    lastTop = std::min(lastTop, bar->maximum());
    while (bar->value() < lastTop) {
        bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
        tree.viewport()->repaint();
    }
}

double msSince(const QElapsedTimer& clock)
{
    return double(clock.nsecsElapsed()) / 1e6;
}

// Page Down moves the current row: the key's work and the paint together.
void benchPageDown(controls::UserTree& tree, double baseline)
{
    bench::PaintTimes keys;
    tree.setFocus();
    tree.ActivateItem(tree.TreeItems(0));
    tree.viewport()->repaint();
    for (int i = 0; i < 300; ++i) {
        QElapsedTimer clock;
        clock.start();
        const double cpu = bench::threadCpuMs();
        QKeyEvent press(QEvent::KeyPress, Qt::Key_PageDown, Qt::NoModifier);
        QCoreApplication::sendEvent(&tree, &press);
        tree.viewport()->repaint();
        keys.ms << msSince(clock);
        keys.cpuMs << bench::threadCpuMs() - cpu;
    }
    report(QStringLiteral("Page Down key, key and paint"), keys, baseline);
}

// The file view: set up, the root opened, then scrolled by pages, lines and jumps, with files
// opened, and moved through by Page Down.
void benchFileTree(db::Database& database, int files, int lines, int jumps, double baseline)
{
    controls::UserTree tree;
    tree.resize(420, 700);
    tree.setStandardIcons(makeIcons());
    tree.show();
    QCoreApplication::processEvents();
    bench::PaintTimer timer;
    tree.viewport()->installEventFilter(&timer);
    QScrollBar* bar = tree.verticalScrollBar();

    QElapsedTimer clock;
    clock.start();
    tree.setDataBase(&database);
    tree.levels()->Setup(kLevels);
    tree.viewport()->repaint();
    const double readyMs = msSince(clock);
    clock.restart();
    tree.ToggleItem(tree.TreeItems(0), controls::UserTree::ExpandOnly);
    tree.viewport()->repaint();
    out << QStringLiteral("file tree ready (levels, parent buffers, first paint): %1 ms; root "
                          "opened on %2 rows: %3 ms; %4 rows fit\n")
               .arg(readyMs, 0, 'f', 1)
               .arg(tree.ItemCount() - 1)
               .arg(msSince(clock), 0, 'f', 1)
               .arg(tree.VisibleRows());
    // A file is current, so that every paint looks for it among the files.
    tree.ActivateItem(tree.TreeItems(1));
    tree.viewport()->repaint();

    timer.clear();
    pageThrough(tree, files);
    report(QStringLiteral("pages through the files"), timer.times, baseline);

    bar->setValue(bar->maximum() / 2);
    tree.viewport()->repaint();
    timer.clear();
    for (int i = 0; i < lines; ++i) {
        bar->triggerAction(i % 400 < 200 ? QAbstractSlider::SliderSingleStepAdd
                                         : QAbstractSlider::SliderSingleStepSub);
        tree.viewport()->repaint();
    }
    report(QStringLiteral("single lines"), timer.times, baseline);

    timer.clear();
    QRandomGenerator rng(16);
    for (int i = 0; i < jumps; ++i) {
        bar->setValue(int(rng.bounded(quint32(bar->maximum() + 1))));
        tree.viewport()->repaint();
    }
    report(QStringLiteral("jumps of the scroll bar"), timer.times, baseline);

    // One file in 500 opened (from the bottom, so the rows above keep their numbers).
    clock.restart();
    int opened = 0;
    for (int row = tree.ItemCount() - 500; row > 0; row -= 500, ++opened)
        tree.TreeItems(row)->setExpanded(true);
    out << QStringLiteral("%1 files opened in %2 ms, tree now %3 rows\n")
               .arg(opened)
               .arg(msSince(clock), 0, 'f', 1)
               .arg(tree.ItemCount());
    bar->setValue(0);
    timer.clear();
    pageThrough(tree, bar->maximum());
    report(QStringLiteral("pages with files open"), timer.times, baseline);

    benchPageDown(tree, baseline);
}

// A tree whose second level is every entry of the catalogue, opened and paged.
void benchEntryTree(db::Database& database, int pages, double baseline)
{
    controls::UserTree tree;
    tree.resize(420, 700);
    tree.setStandardIcons(makeIcons());
    tree.show();
    QCoreApplication::processEvents();
    bench::PaintTimer timer;
    tree.viewport()->installEventFilter(&timer);
    QElapsedTimer clock;
    clock.start();
    tree.setDataBase(&database);
    tree.levels()->Setup({kLevels[0], kEveryEntry});
    tree.ToggleItem(tree.TreeItems(0), controls::UserTree::ExpandOnly);
    tree.viewport()->repaint();
    out << QStringLiteral("tree of every entry: set up, root opened on %1 rows, first paint: "
                          "%2 ms\n")
               .arg(tree.ItemCount() - 1)
               .arg(msSince(clock), 0, 'f', 1);
    timer.clear();
    pageThrough(tree, pages * tree.VisibleRows());
    report(QStringLiteral("pages through the entries"), timer.times, baseline);
}

// The baseline: the same pages of file names painted from memory.
bench::PaintTimes benchPlain(const QString& path, int files, QSize size)
{
    PlainRows plain;
    plain.names = namesByHand(path, files);
    plain.icons = makeIcons();
    plain.resize(size);
    plain.show();
    QCoreApplication::processEvents();
    bench::PaintTimer timer;
    plain.installEventFilter(&timer);
    const int rows = std::max(1, size.height() / 16);
    timer.clear();
    for (plain.top = 0; plain.top + rows < plain.names.size(); plain.top += rows)
        plain.repaint();
    return timer.times;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QCommandLineParser cli;
    cli.addHelpOption();
    cli.addPositionalArgument(QStringLiteral("catalogue"), QStringLiteral("A .vdb catalogue."));
    cli.addOption({QStringLiteral("files"), QStringLiteral("Files to scroll through."),
                   QStringLiteral("n"), QStringLiteral("100000")});
    cli.addOption({QStringLiteral("lines"), QStringLiteral("Single-line scroll steps."),
                   QStringLiteral("n"), QStringLiteral("2000")});
    cli.addOption({QStringLiteral("jumps"), QStringLiteral("Jumps of the scroll bar."),
                   QStringLiteral("n"), QStringLiteral("40")});
    cli.process(app);
    if (cli.positionalArguments().isEmpty() || !QFile::exists(cli.positionalArguments()[0])) {
        out << "give the path of a catalogue written by vellumdock-bench-controls --dir\n";
        return 1;
    }
    const QString path = cli.positionalArguments()[0];
    const int files = std::max(1, cli.value(QStringLiteral("files")).toInt());
    auto database = db::Database::open(path);

    // The baseline first, so that its median can stand beside each of ours.
    const bench::PaintTimes plain = benchPlain(path, files, QSize(420, 700));
    const double baseline = bench::percentile(plain.ms, 0.5);
    report(QStringLiteral("baseline: pages painted from memory"), plain);
    benchFileTree(*database, files, cli.value(QStringLiteral("lines")).toInt(),
                  cli.value(QStringLiteral("jumps")).toInt(), baseline);
    benchEntryTree(*database, 500, baseline);
    return 0;
}
