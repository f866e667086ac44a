// How often the batch window lets the user in: a folder import of a synthetic collection runs
// in the real frmProcess (offscreen unless a display is given), and a zero-interval timer
// stamps every pass of the event loop. The gap between two passes is how long a click on
// Cancel or a repaint waits at worst. The baseline in the same run is the plainest loop that
// yields as often: the same files walked and read, a label updated and the events let through
// after each file, in a window with a label and a list of the same kind.
//
//   vellumdock-bench-batchyield [--dir DIR] [--d64 N] [--seed S] [--rounds R]

#include "CollectionGenerator.h"

#include "app/Globals.h"
#include "catalogue/Catalogue.h"
#include "import/clsFileManager.h"
#include "import/ui/frmProcess.h"
#include "platform/ScriptedDialogService.h"

#include <algorithm>
#include <numeric>
#include <QApplication>
#include <QCommandLineParser>
#include <QDialog>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

QTextStream out(stdout);

// Stamps each pass of the event loop while it is on.
class GapRecorder : public QObject
{
public:
    GapRecorder()
    {
        m_timer.setInterval(0);
        connect(&m_timer, &QTimer::timeout, this, [this] { tick(); });
        m_clock.start();
    }
    void start()
    {
        gaps.clear();
        m_last = m_clock.nsecsElapsed();
        m_on = true;
        m_timer.start();
    }
    void stop()
    {
        m_on = false;
        m_timer.stop();
    }
    QVector<double> gaps; // milliseconds

private:
    void tick()
    {
        const qint64 now = m_clock.nsecsElapsed();
        if (m_on)
            gaps << double(now - m_last) / 1e6;
        m_last = now;
    }
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_last = 0;
    bool m_on = false;
};

struct Figures
{
    double totalMs = 0;
    qint64 passes = 0;
    double median = 0;
    double p99 = 0;
    double max = 0;
    qint64 over100 = 0;
};

// The largest gaps and where they fell (the pass number), for a look at what causes them.
QString largestGaps(const QVector<double>& gaps, int count)
{
    QVector<int> order(gaps.size());
    std::iota(order.begin(), order.end(), 0);
    std::partial_sort(order.begin(), order.begin() + std::min<qsizetype>(count, order.size()),
                      order.end(), [&](int a, int b) { return gaps[a] > gaps[b]; });
    QStringList parts;
    for (int i = 0; i < std::min<qsizetype>(count, order.size()); ++i)
        parts << QStringLiteral("%1 ms at %2").arg(gaps[order[i]], 0, 'f', 1).arg(order[i]);
    return parts.join(QStringLiteral(", "));
}

Figures figuresOf(QVector<double> gaps, double totalMs)
{
    Figures f;
    f.totalMs = totalMs;
    f.passes = gaps.size();
    if (gaps.isEmpty())
        return f;
    std::sort(gaps.begin(), gaps.end());
    f.median = gaps[gaps.size() / 2];
    f.p99 = gaps[std::min<qsizetype>(gaps.size() - 1, gaps.size() * 99 / 100)];
    f.max = gaps.last();
    f.over100 = std::count_if(gaps.begin(), gaps.end(), [](double g) { return g > 100; });
    return f;
}

void removeCatalogue(const QString& path)
{
    for (const char* suffix : {"", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(suffix));
}

Figures runWindow(const QString& catalogue, const QString& folder, GapRecorder& gaps, qint64* files)
{
    vd::catalogue::createCatalogueFile(catalogue);
    QString path = catalogue;
    if (!vd::catalogue::OpenCatalogueFile(path))
        return {};
    vd::import::clsFileManager fm;
    fm.InitCount();
    vd::import::frmProcess form(fm);
    form.setMode(vd::import::kModeAddFolder);
    form.setParam(folder);
    QElapsedTimer t;
    t.start();
    gaps.start();
    form.show();
    while (!form.workDone())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    gaps.stop();
    const double ms = double(t.nsecsElapsed()) / 1e6;
    fm.CountFiles();
    *files = fm.lCategoryCount;
    form.close();
    vd::catalogue::CloseCatalogue();
    return figuresOf(gaps.gaps, ms);
}

// The same batch without a window: what the import itself leaves between two yields.
class YieldOnly : public vd::import::BatchReport
{
public:
    void yield() override { QCoreApplication::processEvents(); }
};

Figures runCore(const QString& catalogue, const QString& folder, GapRecorder& gaps)
{
    vd::catalogue::createCatalogueFile(catalogue);
    QString path = catalogue;
    if (!vd::catalogue::OpenCatalogueFile(path))
        return {};
    vd::import::clsFileManager fm;
    fm.InitCount();
    YieldOnly report;
    vd::import::BatchProcess process(fm, report);
    process.iMode = vd::import::kModeAddFolder;
    process.sParam = folder;
    QElapsedTimer t;
    t.start();
    gaps.start();
    process.Run();
    gaps.stop();
    const double ms = double(t.nsecsElapsed()) / 1e6;
    vd::catalogue::CloseCatalogue();
    return figuresOf(gaps.gaps, ms);
}

Figures runBaseline(const QString& folder, GapRecorder& gaps)
{
    QDialog window;
    auto* label = new QLabel(&window);
    auto* list = new QTreeWidget(&window);
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(label);
    layout->addWidget(list, 1);
    window.resize(640, 460);
    window.show();
    QElapsedTimer t;
    t.start();
    gaps.start();
    QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories);
    QByteArray buffer;
    qint64 n = 0;
    while (it.hasNext()) {
        const QString path = it.next();
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            buffer = file.read(0x16500 + 19 * 256); // as far as a D64's directory track
        label->setText(it.fileInfo().absolutePath());
        if (++n % 10 == 0)
            list->addTopLevelItem(new QTreeWidgetItem(QStringList{it.fileName()}));
        QCoreApplication::processEvents();
    }
    gaps.stop();
    return figuresOf(gaps.gaps, double(t.nsecsElapsed()) / 1e6);
}

QString row(const char* name, const Figures& f)
{
    return QStringLiteral("%1 total %2 ms, %3 passes, gap median %4 ms, p99 %5 ms, max %6 ms, "
                          "over 100 ms: %7")
        .arg(QLatin1String(name))
        .arg(f.totalMs, 0, 'f', 0)
        .arg(f.passes)
        .arg(f.median, 0, 'f', 2)
        .arg(f.p99, 0, 'f', 2)
        .arg(f.max, 0, 'f', 1)
        .arg(f.over100);
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({"dir", "Keep the collection and catalogues in DIR.", "DIR"});
    parser.addOption({"d64", "Number of D64 images (default 20000).", "N", "20000"});
    parser.addOption({"seed", "Seed of the collection (default 64).", "S", "64"});
    parser.addOption({"rounds", "Measured rounds of each (default 3).", "R", "3"});
    parser.process(app);

    QTemporaryDir temp;
    const QString dir = parser.isSet("dir") ? parser.value("dir") : temp.path();
    const QString folder = dir + QStringLiteral("/collection");
    vd::app::setProgramFolder(dir + QStringLiteral("/home"));
    QDir().mkpath(vd::app::gTempPath);
    vd::platform::ScriptedDialogService dialogs;
    dialogs.setRecording(false);
    vd::platform::setDialogService(&dialogs);

    vd::bench::CollectionRecipe recipe;
    recipe.d64 = parser.value("d64").toInt();
    recipe.seed = parser.value("seed").toUInt();
    recipe.t64 = recipe.d64 / 40;
    recipe.prg = recipe.d64 * 3 / 40;
    recipe.tap = recipe.d64 / 100;
    recipe.crt = recipe.d64 / 100;
    vd::bench::CollectionRecipe had;
    vd::bench::CollectionStats stats;
    if (!vd::bench::readCollectionMarker(folder, &had, &stats) || had.seed != recipe.seed ||
        had.d64 != recipe.d64) {
        out << "Writing the collection (seed " << recipe.seed << ")..." << Qt::endl;
        QString error;
        if (!vd::bench::generateCollection(folder, recipe, &stats, &error)) {
            out << error << Qt::endl;
            return 1;
        }
    }
    out << "Collection: " << stats.files << " files (" << stats.d64Files << " D64), "
        << stats.entries << " entries" << Qt::endl;

    GapRecorder gaps;
    runBaseline(folder, gaps); // warms the page cache
    const QString catalogue = dir + QStringLiteral("/yield.vdb");
    const int rounds = std::max(1, parser.value("rounds").toInt());
    Figures worstOurs, worstPlain;
    for (int i = 0; i < rounds; ++i) {
        removeCatalogue(catalogue);
        qint64 files = 0;
        const Figures ours = runWindow(catalogue, folder, gaps, &files);
        const QString largest = largestGaps(gaps.gaps, 5);
        removeCatalogue(catalogue);
        const Figures core = runCore(catalogue, folder, gaps);
        const QString largestCore = largestGaps(gaps.gaps, 5);
        const Figures plain = runBaseline(folder, gaps);
        out << "round " << i + 1 << ":\n  " << row("window   ", ours) << "\n  "
            << row("no window", core) << "\n  " << row("baseline ", plain)
            << "\n  largest gaps of the window: " << largest
            << "\n  largest gaps without it: " << largestCore << Qt::endl;
        if (files != stats.files)
            out << "WARNING: the window catalogued " << files << " files" << Qt::endl;
        if (ours.max > worstOurs.max)
            worstOurs = ours;
        if (plain.max > worstPlain.max)
            worstPlain = plain;
    }
    out << "worst round:\n  " << row("window   ", worstOurs) << "\n  "
        << row("baseline ", worstPlain) << Qt::endl;
    out << "target: every gap under 100 ms: " << (worstOurs.over100 == 0 ? "met" : "NOT met")
        << Qt::endl;
    vd::platform::setDialogService(nullptr);
    return 0;
}
