// The GameBase window at GameBase scale: a real frmGB, offscreen, over a generated GameBase of
// 30,000 games, timed from the action to the end of the first paint of lstGB: the tab
// "Gamebase" built with its two default extra columns (Kommentar, Jahr), and a search (the
// box's text set, the timer's slot fired), one narrow and one wide. Beside each figure, in the
// same run, the same statement in SQLite's dialect stepped by hand through the C API (every row
// counted, the first page kept), as the list needs it. Rounds alternate; medians are printed.
//
//   vellumdock-bench-gbwindow [--games N] [--rounds R] [--dir DIR] [--screenshot FILE]
//
// With --screenshot it takes the README's picture instead (run it under xvfb-run with
// QT_QPA_PLATFORM=xcb): a game selected with three generated screenshots.

#include "app/Globals.h"
#include "controls/ui/SimpleReport.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseSettings.h"
#include "gamebase/ui/frmGB.h"
#include "GameBaseGenerator.h"
#include "platform/ScriptedDialogService.h"

#include <algorithm>
#include <functional>
#include <QApplication>
#include <QComboBox>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPainter>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <sqlite3.h>
#include <time.h>

using namespace vd;

namespace {

QTextStream out(stdout);
constexpr int kFirstPage = 61;

double median(QVector<double> v)
{
    std::sort(v.begin(), v.end());
    if (v.isEmpty())
        return 0;
    return v.size() % 2 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2;
}

// Notes when a paint of the watched widget has ended.
class PaintWatch : public QObject
{
public:
    bool painted = false;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        auto* w = static_cast<QWidget*>(watched);
        w->removeEventFilter(this);
        QCoreApplication::sendEvent(w, event);
        w->installEventFilter(this);
        painted = true;
        return true;
    }
};

// On a machine shared with other work the wall clock also counts the time the scheduler gave
// to others; the thread's CPU time does not.
double threadCpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return double(ts.tv_sec) * 1e3 + double(ts.tv_nsec) / 1e6;
}

// Milliseconds from `action` to the end of the next paint of the list; `cpuMs` gets the
// thread's CPU time for the same span.
double untilPainted(gamebase::frmGB& form, const std::function<void()>& action, double& cpuMs)
{
    PaintWatch watch;
    QWidget* viewport = form.lstGB->viewport();
    viewport->installEventFilter(&watch);
    QElapsedTimer t;
    t.start();
    const double cpu = threadCpuMs();
    action();
    viewport->update();
    while (!watch.painted && t.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    const double ms = double(t.nsecsElapsed()) / 1e6;
    cpuMs = threadCpuMs() - cpu;
    viewport->removeEventFilter(&watch);
    return watch.painted ? ms : -1;
}

// The list's statement in SQLite's dialect: every row stepped (the list counts them), the
// first page kept.
qint64 byHand(const QString& path, const QString& nameFilter)
{
    const QString sql =
        QStringLiteral("SELECT G.GA_ID, CASE WHEN G.ScrnshotFilename='' THEN 0 ELSE 1 END AS "
                       "Icon, G.ScrnshotFilename AS Scr, G.V_LengthType, G.Name AS File, "
                       "G.Comment AS Kommentar, Y.Year AS Jahr FROM Games AS G LEFT JOIN Years "
                       "AS Y ON G.YE_Id=Y.YE_Id WHERE ") +
        (nameFilter.isEmpty()
             ? QString()
             : QStringLiteral("G.Name LIKE '%") + nameFilter + QStringLiteral("%' AND ")) +
        QStringLiteral("G.Adult=0");
    sqlite3* h = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &h, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(h, sql.toUtf8().constData(), -1, &st, nullptr);
    qint64 count = 0;
    QVector<QVariant> page;
    while (sqlite3_step(st) == SQLITE_ROW) {
        if (++count <= kFirstPage)
            for (int c = 0; c < sqlite3_column_count(st); ++c)
                page << QVariant(
                    QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, c))));
    }
    sqlite3_finalize(st);
    sqlite3_close(h);
    return count;
}

void report(const QString& what, qint64 rows, const QVector<double>& ours,
            const QVector<double>& cpu, const QVector<double>& plain, double limit)
{
    const double m = median(ours);
    out << QStringLiteral("%1 (%2 rows): window %3 ms (max %4, CPU %9 ms), plain SQLite %5 ms, "
                          "ratio %6; limit %7 ms: %8\n")
               .arg(what)
               .arg(rows)
               .arg(m, 0, 'f', 1)
               .arg(*std::max_element(ours.begin(), ours.end()), 0, 'f', 1)
               .arg(median(plain), 0, 'f', 1)
               .arg(m / std::max(0.001, median(plain)), 0, 'f', 2)
               .arg(limit, 0, 'f', 0)
               .arg(m < limit ? QStringLiteral("met") : QStringLiteral("MISSED"))
               .arg(median(cpu), 0, 'f', 1);
    // The line bench/scale.sh collects into its table.
    out << QStringLiteral(
               "TABLE|GameBase window: %1 (%2 rows)|%3 ms (max %4, CPU %5)|%6 ms|%7 ms|%8\n")
               .arg(what)
               .arg(rows)
               .arg(m, 0, 'f', 1)
               .arg(*std::max_element(ours.begin(), ours.end()), 0, 'f', 1)
               .arg(median(cpu), 0, 'f', 1)
               .arg(median(plain), 0, 'f', 1)
               .arg(limit, 0, 'f', 0)
               .arg(m < limit ? QStringLiteral("met") : QStringLiteral("NOT met"));
}

// A picture in the manner of a C64 title screen, for the screenshot folder.
void drawShot(const QString& file, const QString& title, int variant)
{
    static const QColor palette[] = {QColor(0x40, 0x31, 0x8D), QColor(0x88, 0x39, 0x32),
                                     QColor(0x55, 0xA0, 0x49)};
    QImage image(320, 200, QImage::Format_RGB32);
    image.fill(QColor(0x78, 0x69, 0xC4));
    QPainter p(&image);
    p.fillRect(QRect(32, 20, 256, 160), palette[variant % 3]);
    for (int i = 0; i < 8; ++i)
        p.fillRect(QRect(40 + i * 30, 120 - (i * 37 + variant * 11) % 50, 22, 50),
                   QColor::fromHsv((i * 40 + variant * 90) % 360, 160, 230));
    p.setPen(Qt::white);
    QFont font(QStringLiteral("C-64"));
    font.setPixelSize(10);
    p.setFont(font);
    p.drawText(QRect(32, 30, 256, 20), Qt::AlignCenter, title.toUpper());
    p.drawText(QRect(32, 150, 256, 20), Qt::AlignCenter,
               variant == 0 ? QStringLiteral("PRESS FIRE")
                            : QStringLiteral("LEVEL %1").arg(variant));
    p.end();
    QDir().mkpath(QFileInfo(file).absolutePath());
    image.save(file);
}

bool picture(gamebase::frmGB& form, const QString& dir, const QString& target)
{
    form.resize(1100, 640);
    form.BuildView(gamebase::kGBViewGameBase);
    QCoreApplication::processEvents();
    const qint64 row = 3;
    const QString relative = form.lstGB->engine().FieldValue(QStringLiteral("Scr"), row).toString();
    const QString name = form.lstGB->engine().FieldValue(4, row).toString();
    for (int n = 0; n < 3; ++n)
        drawShot(gamebase::ScreenshotFile(gamebase::gScreenshots, relative, n), name, n);
    form.lstGB->setSelectedIndex(row);
    form.tabFilter->setCurrentIndex(0);
    QTest::qWait(300);
    const bool saved = form.grab().save(target);
    out << (saved ? QStringLiteral("wrote ") : QStringLiteral("could not write ")) << target
        << "\n";
    (void)dir;
    return saved;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCommandLineParser cli;
    cli.addHelpOption();
    cli.addOption({QStringLiteral("games"), QStringLiteral("Games of the generated GameBase."),
                   QStringLiteral("n"), QStringLiteral("30000")});
    cli.addOption({QStringLiteral("rounds"), QStringLiteral("Rounds of each measurement."),
                   QStringLiteral("n"), QStringLiteral("9")});
    cli.addOption(
        {QStringLiteral("dir"), QStringLiteral("Folder for the GameBase."), QStringLiteral("dir")});
    cli.addOption({QStringLiteral("screenshot"),
                   QStringLiteral("Instead of timing: a picture of the window with a game and its "
                                  "three screenshots selected, written to this PNG file."),
                   QStringLiteral("file")});
    cli.process(app);
    const int games = std::max(1, cli.value(QStringLiteral("games")).toInt());
    const int rounds = std::max(1, cli.value(QStringLiteral("rounds")).toInt());
    QTemporaryDir temp;
    const QString dir =
        cli.isSet(QStringLiteral("dir")) ? cli.value(QStringLiteral("dir")) : temp.path();
    QDir().mkpath(dir);
    app::setProgramFolder(dir);
    platform::ScriptedDialogService dialogs;
    platform::setDialogService(&dialogs);

    // An SQLite GameBase is opened as it is, without a cache.
    const QString path = QDir(dir).filePath(QStringLiteral("GBC_bench_%1.db").arg(games));
    if (!QFileInfo::exists(path)) {
        QElapsedTimer t;
        t.start();
        bench::writeGameBase(path, games);
        // The version row that makes it a GameBase the program accepts.
        sqlite3* h = nullptr;
        sqlite3_open(path.toUtf8().constData(), &h);
        sqlite3_exec(h,
                     "CREATE TABLE Config (MajorVersion INTEGER, MinorVersion INTEGER);"
                     "INSERT INTO Config VALUES (2, 5);",
                     nullptr, nullptr, nullptr);
        sqlite3_close(h);
        out << QStringLiteral("wrote a GameBase of %1 games in %2 ms\n")
                   .arg(games)
                   .arg(t.elapsed());
    }
    gamebase::gGameBaseDB = path;
    gamebase::gGBListColumns = gamebase::kDefaultGBListColumns; // COMMENT@@@YEAR
    gamebase::gAdultContent = false;
    if (!gamebase::OpenGameBase(false)) {
        out << "the GameBase did not open: " << dialogs.messages().join(QLatin1Char(' ')) << "\n";
        return 1;
    }
    gamebase::gGBFilters = {
        {QStringLiteral("Klassiker"), QStringLiteral("Classic!@!=!@!1!@!")},
        {QStringLiteral("Achtziger"), QStringLiteral("Y.YEAR!@!<!@!1990!@!")},
        {QStringLiteral("Mit Kommentar"), QStringLiteral("Comment!@!( )!@!comment!@!")}};
    gamebase::gScreenshots = QDir(dir).filePath(QStringLiteral("Screenshots"));
    gamebase::frmGB form(nullptr);
    form.resize(1200, 800);
    form.show();
    if (!QTest::qWaitForWindowExposed(&form))
        out << "the window was not exposed\n";

    if (cli.isSet(QStringLiteral("screenshot")))
        return picture(form, dir, cli.value(QStringLiteral("screenshot"))) ? 0 : 1;

    struct Case
    {
        QString name;
        QString search; // "" builds the tab itself
        double limit;
    };
    const Case cases[] = {
        {QStringLiteral("tab \"Gamebase\""), QString(), 300},
        {QStringLiteral("search \"Number 2999\""), QStringLiteral("Number 2999"), 200},
        {QStringLiteral("search \"Number 1\""), QStringLiteral("Number 1"), 200}};
    for (const Case& c : cases) {
        const std::function<void()> action = [&] {
            if (c.search.isEmpty()) {
                form.BuildView(gamebase::kGBViewGameBase);
            } else {
                form.cboSearch->setEditText(c.search);
                form.moTimer_Timer();
            }
        };
        QVector<double> ours, cpu, plain;
        qint64 rows = byHand(path, c.search);
        for (int r = 0; r < rounds; ++r) {
            // Each round starts from the whole list without a search; the tab is built anew
            // by its action anyway.
            if (!c.search.isEmpty()) {
                form.cmdStopSearch_Click();
                QCoreApplication::processEvents();
            }
            double cpuMs = 0;
            ours << untilPainted(form, action, cpuMs);
            cpu << cpuMs;
            QElapsedTimer t;
            t.start();
            rows = byHand(path, c.search);
            plain << double(t.nsecsElapsed()) / 1e6;
        }
        if (form.lstGB->ItemCount() != rows)
            out << QStringLiteral("  the window shows %1 rows, SQLite %2\n")
                       .arg(form.lstGB->ItemCount())
                       .arg(rows);
        report(c.name, rows, ours, cpu, plain, c.limit);
    }
    form.close();
    gamebase::CloseGameBase();
    platform::setDialogService(nullptr);
    return 0;
}
