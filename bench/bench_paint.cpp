// How long the list takes to repaint while the user pages through it: the list of every entry
// (view 1's first level) on a catalogue written by vellumdock-bench-controls, scrolled page by
// page, each paint event of its surface timed. Run by hand:
//   vellumdock-bench-controls --dir DIR --only list      (writes DIR/controls-N-M.vdb once)
//   vellumdock-bench-paint DIR/controls-N-M.vdb [--pages P]

#include "catalogue/Database.h"
#include "controls/ui/SimpleReport.h"

#include <algorithm>
#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QScrollBar>
#include <QTextStream>
#include <QVector>

using namespace vd;

namespace {

const QString kList = QStringLiteral(
    "Select  C64Files.ID,-1,F.iFileType as Icon,tProgram as [File],tExtension as [Filetyp],"
    "lSize as [Blocks],F.tImage as [Disk] From (C64Files Left Join Category as F on "
    "C64Files.Category_File=F.ID)");

// Times every paint event of one widget.
class PaintTimer : public QObject
{
public:
    QVector<double> ms;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        QElapsedTimer t;
        t.start();
        auto* w = static_cast<QWidget*>(watched);
        w->removeEventFilter(this);
        QCoreApplication::sendEvent(w, event);
        w->installEventFilter(this);
        ms << double(t.nsecsElapsed()) / 1e6;
        return true;
    }
};

double percentile(QVector<double> v, double p)
{
    if (v.isEmpty())
        return 0;
    std::sort(v.begin(), v.end());
    return v[std::min<qsizetype>(v.size() - 1, qsizetype(p * (v.size() - 1) + 0.5))];
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QCommandLineParser cli;
    cli.addHelpOption();
    cli.addPositionalArgument(QStringLiteral("catalogue"), QStringLiteral("A .vdb catalogue."));
    cli.addOption({QStringLiteral("pages"), QStringLiteral("Pages to scroll."), QStringLiteral("n"),
                   QStringLiteral("200")});
    cli.process(app);
    QTextStream out(stdout);
    if (cli.positionalArguments().isEmpty() || !QFile::exists(cli.positionalArguments()[0])) {
        out << "give the path of a catalogue written by vellumdock-bench-controls --dir\n";
        return 1;
    }
    auto database = db::Database::open(cli.positionalArguments()[0]);
    controls::SimpleReport list;
    list.resize(900, 700);
    list.show();
    QCoreApplication::processEvents();
    QElapsedTimer open;
    open.start();
    list.setDataBase(database.get());
    list.Setup(kList, 3, 1, {}, -2, false, 0, -1);
    const double openMs = double(open.nsecsElapsed()) / 1e6;

    PaintTimer timer;
    list.viewport()->installEventFilter(&timer);
    const int pages = std::max(1, cli.value(QStringLiteral("pages")).toInt());
    QScrollBar* bar = list.verticalScrollBar();
    for (int i = 0; i < pages; ++i) {
        bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
        list.viewport()->repaint();
    }
    // Jumps far into the list, as a drag of the scroll bar does.
    for (int i = 0; i < 20; ++i) {
        bar->setValue(int(qint64(bar->maximum()) * (i * 7919 % 20) / 20));
        list.viewport()->repaint();
    }
    QVector<double> steps = timer.ms.mid(1);
    out << QStringLiteral("list of %1 rows opened in %2 ms; %3 paints after the first: median "
                          "%4 ms, 95th percentile %5 ms, max %6 ms\n")
               .arg(list.ItemCount())
               .arg(openMs, 0, 'f', 1)
               .arg(steps.size())
               .arg(percentile(steps, 0.5), 0, 'f', 2)
               .arg(percentile(steps, 0.95), 0, 'f', 2)
               .arg(percentile(steps, 1.0), 0, 'f', 2);
    return 0;
}
