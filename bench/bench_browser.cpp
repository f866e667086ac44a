// The main window at collection scale: a real frmMain, offscreen, over a catalogue of 100,000
// files and 1,000,000 entries, timed from the user's action to the first paint of the list that
// shows its result: each switch of view, a search (the box's text set, the timer's slot fired)
// in views 1 and 3, and a file node selected in the tree. Beside each figure, in the same run,
// the same statements in SQLite's dialect stepped by hand through the C API. A timer ticking
// every 10 ms records how long the window went without processing events during each action.
//
//   vellumdock-bench-browser [--files N] [--entries M] [--rounds R] [--nodes K] [--dir DIR]
//                            [--search TEXT] [--only views|search|nodes] [--views 2,3,4,5,6,1]
//                            [--no-plain] [--show-sql]

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmMain.h"
#include "catalogue/Catalogue.h"
#include "controls/ui/ReportView.h"
#include "controls/ui/SimpleReport.h"
#include "controls/ui/UserTree.h"
#include "platform/ScriptedDialogService.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QMap>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <sqlite3.h>

#include <algorithm>
#include <functional>
#include <time.h>

using namespace vd;

namespace {

QTextStream out(stdout);

// On a machine shared with other work the wall clock also counts the time the scheduler gave
// to others; the thread's CPU time does not.
double threadCpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return double(ts.tv_sec) * 1e3 + double(ts.tv_nsec) / 1e6;
}

constexpr int kUserCategories = 40;

// Writes the catalogue straight through SQLite in one transaction: `files` disk images named in
// no particular order, `entries` entries spread over them in directory order, one entry in ten
// in a user category, one file and one entry in a hundred started (views 5 and 6).
bool fill(const QString& path, int files, int entries)
{
    catalogue::createCatalogueFile(path);
    sqlite3* db = nullptr;
    if (sqlite3_open(path.toUtf8().constData(), &db) != SQLITE_OK)
        return false;
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* cat = nullptr;
    sqlite3_prepare_v2(db,
                       "INSERT INTO Category (ID,iType,tCategory,tFile,tPath,tImage,tsCreated,"
                       "iFileType,tsLastStarted,lStartCount) VALUES (?1,?2,?3,?3,?4,?5,"
                       "'2024-01-01 10:00:00',?6,?7,?8)",
                       -1, &cat, nullptr);
    QRandomGenerator rng(64);
    const auto started = [&](sqlite3_stmt* st, int dateCol, bool on) {
        if (!on) {
            sqlite3_bind_null(st, dateCol);
            sqlite3_bind_null(st, dateCol + 1);
            return;
        }
        const QByteArray when = QStringLiteral("2025-%1-%2 %3:%4:00")
                                    .arg(1 + rng.bounded(12), 2, 10, QLatin1Char('0'))
                                    .arg(1 + rng.bounded(28), 2, 10, QLatin1Char('0'))
                                    .arg(rng.bounded(24), 2, 10, QLatin1Char('0'))
                                    .arg(rng.bounded(60), 2, 10, QLatin1Char('0'))
                                    .toUtf8();
        sqlite3_bind_text(st, dateCol, when.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(st, dateCol + 1, 1 + int(rng.bounded(50u)));
    };
    for (int i = 1; i <= files; ++i) {
        const quint32 n = rng.bounded(1000000u);
        const QByteArray name =
            QStringLiteral("%1 Game %2.d64").arg(QChar(u'A' + n % 26)).arg(n).toUtf8();
        const QByteArray p = QStringLiteral("/home/collector/c64/%1/%2")
                                 .arg(i % 97)
                                 .arg(QString::fromUtf8(name))
                                 .toUtf8();
        const QByteArray img = QStringLiteral("DISK %1").arg(i).toUtf8();
        sqlite3_bind_int(cat, 1, i);
        sqlite3_bind_int(cat, 2, 1);
        sqlite3_bind_text(cat, 3, name.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(cat, 4, p.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(cat, 5, img.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(cat, 6, 1 + i % 15);
        started(cat, 7, i % 100 == 0);
        sqlite3_step(cat);
        sqlite3_reset(cat);
    }
    for (int k = 1; k <= kUserCategories; ++k) {
        const QByteArray name = QStringLiteral("Kategorie %1").arg(k).toUtf8();
        sqlite3_bind_int(cat, 1, files + k);
        sqlite3_bind_int(cat, 2, 3);
        sqlite3_bind_text(cat, 3, name.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_null(cat, 4);
        sqlite3_bind_null(cat, 5);
        sqlite3_bind_int(cat, 6, 0);
        started(cat, 7, false);
        sqlite3_step(cat);
        sqlite3_reset(cat);
    }
    sqlite3_stmt* ent = nullptr;
    sqlite3_prepare_v2(db,
                       "INSERT INTO C64Files (ID,tProgram,tRealProgram,tExtension,lSize,lIndex,"
                       "Category_File,Category_User,tsCreated,tsLastStarted,lStartCount) VALUES "
                       "(?1,?2,?2,'PRG',?3,?4,?5,?6,'2024-01-01 10:00:00',?7,?8)",
                       -1, &ent, nullptr);
    // Each file gets a run of entries, so that lIndex counts its directory.
    const int perFile = std::max(1, entries / std::max(1, files));
    for (int i = 1; i <= entries; ++i) {
        const int file = std::min(files, 1 + (i - 1) / perFile);
        const QByteArray prog = QStringLiteral("PROGRAM %1").arg(rng.bounded(10000000u)).toUtf8();
        sqlite3_bind_int(ent, 1, i);
        sqlite3_bind_text(ent, 2, prog.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(ent, 3, int(rng.bounded(200u)));
        sqlite3_bind_int(ent, 4, (i - 1) % perFile);
        sqlite3_bind_int(ent, 5, file);
        if (i % 10 == 0)
            sqlite3_bind_int(ent, 6, files + 1 + int(rng.bounded(quint32(kUserCategories))));
        else
            sqlite3_bind_null(ent, 6);
        started(ent, 7, i % 100 == 0);
        sqlite3_step(ent);
        sqlite3_reset(ent);
    }
    sqlite3_finalize(cat);
    sqlite3_finalize(ent);
    const bool ok = sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(db);
    return ok;
}

double median(QVector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.isEmpty()
               ? 0
               : (v.size() % 2 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2);
}

double maxOf(const QVector<double>& v)
{
    return v.isEmpty() ? 0 : *std::max_element(v.begin(), v.end());
}

// --- by hand -------------------------------------------------------------------------------

struct Plain
{
    explicit Plain(const QString& path)
    {
        sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    }
    ~Plain() { sqlite3_close(db); }

    // Steps a statement to the end, reading the first `keep` rows' values into variants as a
    // list on screen would; returns the rows and the milliseconds.
    struct Result
    {
        qint64 rows = -1;
        double ms = 0;
        double cpuMs = 0;
    };
    Result run(const QByteArray& sql, int keep)
    {
        QElapsedTimer t;
        t.start();
        const double cpu = threadCpuMs();
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(db, sql.constData(), -1, &st, nullptr) != SQLITE_OK) {
            out << "by hand: " << sqlite3_errmsg(db) << "\n  " << sql << "\n";
            return {};
        }
        qint64 n = 0;
        QVector<QVariant> row(sqlite3_column_count(st));
        while (sqlite3_step(st) == SQLITE_ROW) {
            if (n < keep)
                for (int c = 0; c < row.size(); ++c)
                    row[c] = sqlite3_column_type(st, c) == SQLITE_TEXT
                                 ? QVariant(QString::fromUtf8(
                                       reinterpret_cast<const char*>(sqlite3_column_text(st, c))))
                                 : QVariant(sqlite3_column_int64(st, c));
            ++n;
        }
        sqlite3_finalize(st);
        return {n, double(t.nsecsElapsed()) / 1e6, threadCpuMs() - cpu};
    }

    sqlite3* db = nullptr;
};

// The view builder's statements written by hand in SQLite's dialect. The list sorts by its first
// visible column (the entry's name), the tree by the file's name.
const QByteArray kEntryColumns =
    "C64Files.ID,-1 AS ParentKey,F.iFileType AS Icon,tProgram AS File,tExtension AS Filetyp,"
    "lSize AS Blocks,F.tImage AS \"Disk/Tape-Name\",F.tCategory AS Disc_File,F.tPath AS "
    "Dateipfad";
const QByteArray kEntryFrom =
    " FROM C64Files LEFT JOIN Category AS F ON C64Files.Category_File=F.ID";

struct PlainView
{
    QByteArray tree; // the tree's second level
    QByteArray list; // the list's first level
};

PlainView plainView(int view, qint64 maxFile, qint64 maxEntry, const QByteArray& search)
{
    QByteArray entryWhere;
    QByteArray fileWhere = " WHERE iType=1";
    QByteArray order = " ORDER BY 4 COLLATE NOCASE";
    QByteArray top;
    QByteArray treeOrder = " ORDER BY tCategory COLLATE NOCASE";
    QByteArray treeText = "tCategory";
    const auto add = [](QByteArray& where, const QByteArray& term) {
        where += (where.isEmpty() ? " WHERE " : " AND ") + term;
    };
    if (view == 3)
        fileWhere = " WHERE iType=3";
    if (view == 4) {
        add(entryWhere, "C64Files.ID>" + QByteArray::number(maxEntry));
        add(fileWhere, "F.ID>" + QByteArray::number(maxFile));
    }
    if (view == 5) {
        add(entryWhere, "C64Files.tsLastStarted IS NOT NULL");
        add(fileWhere, "F.tsLastStarted IS NOT NULL");
        order = " ORDER BY C64Files.tsLastStarted DESC";
        treeText = "'(' || strftime('%d.%m.%Y',F.tsLastStarted) || ') - ' || tCategory";
        treeOrder = " ORDER BY F.tsLastStarted DESC";
    }
    if (view == 6) {
        add(entryWhere, "C64Files.lStartCount IS NOT NULL");
        add(fileWhere, "F.lStartCount IS NOT NULL");
        order = " ORDER BY C64Files.lStartCount DESC,C64Files.tsLastStarted DESC";
        top = " LIMIT 100";
        treeText = "'(' || F.lStartCount || ') - ' || tCategory";
        treeOrder = " ORDER BY F.lStartCount DESC,tCategory COLLATE NOCASE";
    }
    if (!search.isEmpty())
        add(entryWhere, "tProgram LIKE '%" + search + "%'");
    PlainView p;
    if (view == 2) {
        p.list = "SELECT F.ID,F.iFileType AS iTyp,CASE WHEN tUnpackPath IS NULL THEN 0 ELSE 24 "
                 "END AS IsArchiv,upper(substr(tCategory,-3)) AS Filetyp,tCategory AS Disc_File,"
                 "tPath AS Dateipfad,tUnpackPath AS Archivpfad,tHash AS \"MD5-Checksumme\","
                 "F.tsCreated AS Erstellt FROM Category AS F WHERE iType=1 ORDER BY 4";
        return p;
    }
    p.tree = "SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon," + treeText +
             " FROM Category AS F" + fileWhere + treeOrder;
    p.list = "SELECT " + kEntryColumns + kEntryFrom + entryWhere + order + top;
    return p;
}

QByteArray plainFileNode(qint64 file)
{
    return "SELECT " + kEntryColumns + ",lIndex" + kEntryFrom +
           " WHERE Category_File=" + QByteArray::number(file) + " ORDER BY lIndex";
}

// --- the window ----------------------------------------------------------------------------

// Notes the end of every paint of the lists' surfaces.
class PaintWatch : public QObject
{
public:
    QElapsedTimer clock;
    QObject* surface = nullptr; // the one whose paints count
    qint64 lastPaintEnd = -1;   // ns on `clock`
    double lastPaintCpu = 0;    // the thread's CPU time then
    int paints = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        auto* w = static_cast<QWidget*>(watched);
        w->removeEventFilter(this);
        QCoreApplication::sendEvent(w, event);
        w->installEventFilter(this);
        if (watched == surface) {
            lastPaintEnd = clock.nsecsElapsed();
            lastPaintCpu = threadCpuMs();
            ++paints;
        }
        return true;
    }
};

// Ticks every 10 ms; the largest gap between two ticks is how long the window did not let
// events through.
class GapWatch : public QObject
{
public:
    GapWatch()
    {
        m_timer.setInterval(10);
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            const qint64 now = m_clock.nsecsElapsed();
            m_largest = std::max(m_largest, double(now - m_last) / 1e6);
            m_last = now;
        });
        m_clock.start();
        m_timer.start();
    }
    void reset()
    {
        m_last = m_clock.nsecsElapsed();
        m_largest = 0;
    }
    // The gap still open counts too.
    double largest() const
    {
        return std::max(m_largest, double(m_clock.nsecsElapsed() - m_last) / 1e6);
    }

private:
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_last = 0;
    double m_largest = 0;
};

struct Timed
{
    double ms = -1; // to the end of the first paint after the action; -1: no paint
    double cpuMs = 0;
    double gapMs = 0;
};

class Bench
{
public:
    Bench(browser::frmMain& form, PaintWatch& paints, GapWatch& gaps)
        : m_form(form), m_paints(paints), m_gaps(gaps)
    {}

    // Runs the action as the user's event would, then lets the events through until the list
    // of the view has painted (the first paint after the action returned; a paint inside the
    // action counts when none follows).
    Timed time(QWidget* surface, const std::function<void()>& action)
    {
        m_paints.surface = surface;
        for (int i = 0; i < 5; ++i) // nothing left over from before
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        m_gaps.reset();
        const qint64 start = m_paints.clock.nsecsElapsed();
        const double cpu = threadCpuMs();
        const int paintsBefore = m_paints.paints;
        action();
        const int paintsInside = m_paints.paints;
        QElapsedTimer wait;
        wait.start();
        while (m_paints.paints == paintsInside && wait.elapsed() < 3000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        Timed t;
        t.gapMs = m_gaps.largest();
        if (m_paints.paints > paintsInside || paintsInside > paintsBefore) {
            t.ms = double(m_paints.lastPaintEnd - start) / 1e6;
            t.cpuMs = m_paints.lastPaintCpu - cpu;
        }
        return t;
    }

    void switchTo(int view)
    {
        const int index = view == 2 ? 0 : view == 1 ? 1 : view - 1;
        m_form.menuEntry(QStringLiteral("mnuView%1").arg(index))->trigger();
    }

    // A search as the user's pause ends it: the box's text, then the timer's slot.
    void search(int box, const QString& text)
    {
        QComboBox* combo = m_form.searchBox(box);
        combo->setEditText(text);
        QTimer* timer = searchTimer();
        if (!timer || !QMetaObject::invokeMethod(timer, "timeout"))
            emit combo->lineEdit()->returnPressed(); // calls the same slot at once
    }

    QWidget* surfaceOf(int view) const
    {
        return view == 2 ? m_form.filesList()->viewport() : m_form.list()->report().viewport();
    }

private:
    QTimer* searchTimer()
    {
        for (QTimer* t : m_form.findChildren<QTimer*>(Qt::FindDirectChildrenOnly))
            if (t->interval() == 800)
                return t;
        return nullptr;
    }

    browser::frmMain& m_form;
    PaintWatch& m_paints;
    GapWatch& m_gaps;
};

struct Row
{
    QString what;
    QVector<double> ours;
    QVector<double> cpu;
    QVector<double> gaps;
    // By hand: the list's statement and, where the action runs one, the tree's.
    QVector<double> list, listCpu, tree, treeCpu;
    double target = 0;
    qint64 rows = -1;

    void add(const Timed& t)
    {
        ours << t.ms;
        cpu << t.cpuMs;
        gaps << t.gapMs;
    }
    void addPlain(const Plain::Result& l, const Plain::Result* t = nullptr)
    {
        list << l.ms;
        listCpu << l.cpuMs;
        if (t) {
            tree << t->ms;
            treeCpu << t->cpuMs;
        }
    }
};

void printRow(const Row& r)
{
    if (r.ours.isEmpty())
        return;
    const double m = median(r.ours);
    QString plain;
    if (!r.list.isEmpty())
        plain = QStringLiteral("list %1 ms (CPU %2)")
                    .arg(median(r.list), 0, 'f', 1)
                    .arg(median(r.listCpu), 0, 'f', 1);
    if (!r.tree.isEmpty())
        plain += QStringLiteral(" + tree %1 ms (CPU %2)")
                     .arg(median(r.tree), 0, 'f', 1)
                     .arg(median(r.treeCpu), 0, 'f', 1);
    const bool met = !r.ours.contains(-1) && m < r.target;
    out << QStringLiteral("%1 %2 ms (max %3, CPU %4), gap max %5 ms, rows %6, %7 | by hand %8")
               .arg(r.what, -22)
               .arg(m, 7, 'f', 1)
               .arg(maxOf(r.ours), 0, 'f', 1)
               .arg(median(r.cpu), 0, 'f', 1)
               .arg(maxOf(r.gaps), 0, 'f', 1)
               .arg(r.rows)
               .arg(met ? QStringLiteral("target %1 ms met").arg(r.target)
                        : QStringLiteral("target %1 ms NOT met").arg(r.target))
               .arg(plain)
        << Qt::endl;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({"files", "Files in the catalogue (default 100000).", "N", "100000"});
    parser.addOption({"entries", "Entries in the catalogue (default 1000000).", "M", "1000000"});
    parser.addOption({"rounds", "Rounds of each measurement (default 5).", "R", "5"});
    parser.addOption({"nodes", "File nodes selected (default 20).", "K", "20"});
    parser.addOption({"dir", "Keep the catalogue in DIR (default /tmp/vellumdock-bench-browser).",
                      "DIR", "/tmp/vellumdock-bench-browser"});
    parser.addOption({"search", "Text searched for (default 4711).", "TEXT", "4711"});
    parser.addOption({"show-sql", "Print the statements of each view."});
    parser.addOption({"only", "Measure only views, search or nodes.", "WHAT"});
    parser.addOption(
        {"views", "The views switched to, in order (default 2,3,4,5,6,1).", "LIST", "2,3,4,5,6,1"});
    parser.addOption({"no-plain", "Leave out the statements by hand."});
    parser.process(app);

    const int files = parser.value("files").toInt();
    const int entries = parser.value("entries").toInt();
    const int rounds = std::max(1, parser.value("rounds").toInt());
    const QString dir = parser.value("dir");
    QDir().mkpath(dir);
    const QString path = QStringLiteral("%1/browser-%2-%3.vdb").arg(dir).arg(files).arg(entries);
    if (!QFile::exists(path)) {
        out << "Writing " << path << "..." << Qt::endl;
        QElapsedTimer t;
        t.start();
        if (!fill(path + QStringLiteral(".part"), files, entries) ||
            !QFile::rename(path + QStringLiteral(".part"), path)) {
            out << "The catalogue could not be written." << Qt::endl;
            return 1;
        }
        out << "  written in " << t.elapsed() / 1000.0 << " s" << Qt::endl;
    }

    QTemporaryDir home;
    app::setProgramFolder(home.path());
    QDir().mkpath(app::gTempPath);
    platform::ScriptedDialogService dialogs;
    dialogs.setRecording(false);
    platform::setDialogService(&dialogs);
    {
        QFile ini(app::gIniFile);
        if (!ini.open(QIODevice::WriteOnly))
            return 1;
        ini.write("[MAIN]\r\nDatabase=" + path.toUtf8() + "\r\nViewMode=1\r\n");
    }
    app::reloadIni();

    Plain plain(path);
    // Warm the page cache for both sides.
    plain.run("SELECT count(*) FROM C64Files LEFT JOIN Category ON Category_File=Category.ID", 0);

    PaintWatch paints;
    paints.clock.start();
    GapWatch gaps;
    auto form = std::make_unique<browser::frmMain>();
    form->resize(1200, 800);
    form->list()->report().viewport()->installEventFilter(&paints);
    form->filesList()->viewport()->installEventFilter(&paints);
    Bench bench(*form, paints, gaps);
    // The window shown and its first activation, which opens the catalogue in view 1.
    const Timed opened = bench.time(bench.surfaceOf(1), [&] {
        form->show();
        form->Form_Activate();
    });
    if (!app::gDB) {
        out << "The catalogue did not open." << Qt::endl;
        return 1;
    }
    out << "window shown, catalogue opened in view 1, first paint of the list: " << opened.ms
        << " ms (CPU " << opened.cpuMs << " ms, largest gap " << opened.gapMs << " ms)" << Qt::endl;
    const qint64 maxFile = files + kUserCategories;
    const qint64 maxEntry = entries;

    const auto itemCount = [&] {
        return form->viewMode() == 2 ? form->filesList()->ItemCount() : form->list()->ItemCount();
    };

    // View switches: 2, 3, 4, 5, 6 and back to 1, each round.
    QMap<int, Row> views;
    QVector<int> order;
    for (const QString& v : parser.value("views").split(QLatin1Char(',')))
        if (v.toInt() >= 1 && v.toInt() <= 6)
            order << v.toInt();
    const bool byHand = !parser.isSet("no-plain");
    for (int view : order) {
        Row& r = views[view];
        r.what = QStringLiteral("switch to view %1").arg(view);
        r.target = 1000;
    }
    const QString only = parser.value("only");
    const auto measured = [&](const char* what) { return only.isEmpty() || only == what; };
    for (int round = 0; round < rounds && measured("views"); ++round) {
        for (int view : order) {
            Row& r = views[view];
            const Timed t = bench.time(bench.surfaceOf(view), [&] { bench.switchTo(view); });
            r.add(t);
            r.rows = itemCount();
            if (round == 0 && parser.isSet("show-sql")) {
                const browser::ViewSql& sql = form->viewSql();
                out << "view " << view << ":\n  " << sql.treeLevels.join(QStringLiteral("\n  "))
                    << "\n  " << sql.listLevels.join(QStringLiteral("\n  ")) << "\n  "
                    << sql.recordSource << Qt::endl;
            }
            if (!byHand)
                continue;
            const PlainView p = plainView(view, maxFile, maxEntry, {});
            const Plain::Result list = plain.run(p.list, 61);
            if (p.tree.isEmpty()) {
                r.addPlain(list);
            } else {
                const Plain::Result tree = plain.run(p.tree, 30);
                r.addPlain(list, &tree);
            }
        }
    }

    // Searches in views 1 and 3: the text, then clearing the box again (not measured).
    const QString text = parser.value("search");
    QMap<int, Row> searches;
    for (int view : {1, 3}) {
        Row& r = searches[view];
        r.what = QStringLiteral("search in view %1").arg(view);
        r.target = 300;
        bench.switchTo(view);
        for (int round = 0; round < rounds && measured("search"); ++round) {
            const Timed t = bench.time(bench.surfaceOf(view), [&] { bench.search(0, text); });
            r.add(t);
            r.rows = itemCount();
            const PlainView p = plainView(view, maxFile, maxEntry, text.toUtf8());
            if (byHand) {
                const Plain::Result list = plain.run(p.list, 61);
                const Plain::Result tree = plain.run(p.tree, 30);
                r.addPlain(list, &tree);
            }
            bench.time(bench.surfaceOf(view), [&] { bench.search(0, QString()); });
        }
    }

    // File nodes in view 1, chosen at random.
    bench.switchTo(1);
    Row node;
    node.what = QStringLiteral("file node selected");
    node.target = 50;
    QRandomGenerator rng(11);
    const int nodes = std::max(1, parser.value("nodes").toInt());
    for (int i = 0; i < nodes && measured("nodes"); ++i) {
        const qint64 file = 1 + rng.bounded(files);
        bool found = false;
        const Timed t = bench.time(bench.surfaceOf(1), [&] {
            found = form->tree()->SelectItem(QString::number(file), 2);
        });
        if (!found) {
            out << "file node " << file << " not found" << Qt::endl;
            continue;
        }
        node.add(t);
        node.rows = form->list()->ItemCount();
        if (byHand)
            node.addPlain(plain.run(plainFileNode(file), 61));
    }

    out << "\n"
        << files << " files, " << entries << " entries; medians of " << rounds << " rounds ("
        << nodes << " nodes); time to the end of the first paint of the list\n";
    for (int view : order)
        printRow(views[view]);
    for (int view : {1, 3})
        printRow(searches[view]);
    printRow(node);

    form.reset();
    catalogue::CloseCatalogue();
    platform::setDialogService(nullptr);
    return 0;
}
