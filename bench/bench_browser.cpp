// The main window at collection scale: a real frmMain, offscreen, over a catalogue of 100,000
// files and 1,000,000 entries, timed from the user's action to the first paint of the list that
// shows its result: each switch of view, a search (the box's text set, the timer's slot fired)
// in views 1 and 3, and a file node selected in the tree. Beside each figure, in the same run,
// the same statements in SQLite's dialect stepped by hand through the C API. A timer ticking
// every 10 ms records how long the window went without processing events during each action.
//
//   vellumdock-bench-browser [--files N] [--entries M] [--rounds R] [--nodes K] [--dir DIR]
//                            [--catalogue FILE] [--search TEXT] [--search-file TEXT]
//                            [--search-path TEXT] [--scroll-pages P] [--scroll-jumps J]
//                            [--only views|search|nodes|scroll] [--views 2,3,4,5,6,1]
//                            [--no-plain] [--show-sql]
//
// With --catalogue an imported catalogue is used instead (a copy in DIR, given 40 user
// categories and a few starts once, so that views 3, 5 and 6 have rows). Besides the views and
// searches it times the list scrolled to its end, each step to its paint, a file node's
// entries opened in the tree (its third level), and prints the process's peak memory.

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
#include <QFileInfo>
#include <QLineEdit>
#include <QMap>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <sqlite3.h>

#include <algorithm>
#include <functional>
#include <time.h>

using namespace vd;
using vd::controls::UserTree;

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

// Gives an imported catalogue what the views 3, 5 and 6 show: 40 user categories holding one
// entry in ten, one file and one entry in a hundred started. Done once; a catalogue that has
// user categories already is left as it is.
bool decorate(const QString& path)
{
    sqlite3* db = nullptr;
    if (sqlite3_open(path.toUtf8().constData(), &db) != SQLITE_OK)
        return false;
    const auto one = [db](const char* sql) {
        sqlite3_stmt* st = nullptr;
        qint64 v = -1;
        if (sqlite3_prepare_v2(db, sql, -1, &st, nullptr) == SQLITE_OK &&
            sqlite3_step(st) == SQLITE_ROW)
            v = sqlite3_column_int64(st, 0);
        sqlite3_finalize(st);
        return v;
    };
    bool ok = true;
    if (one("SELECT count(*) FROM Category WHERE iType=3") == 0) {
        const qint64 base = one("SELECT max(ID) FROM Category");
        QByteArray sql = "BEGIN;";
        for (int k = 1; k <= kUserCategories; ++k)
            sql += QStringLiteral("INSERT INTO Category (ID,iType,tCategory,tFile,tsCreated,"
                                  "iFileType) VALUES (%1,3,'Kategorie %2','Kategorie %2',"
                                  "'2024-01-01 10:00:00',0);")
                       .arg(base + k)
                       .arg(k)
                       .toUtf8();
        sql += "UPDATE C64Files SET Category_User=" + QByteArray::number(base + 1) + "+(ID/10)%" +
               QByteArray::number(kUserCategories) +
               " WHERE ID%10=0;"
               "UPDATE C64Files SET tsLastStarted=printf('2025-%02d-%02d %02d:00:00',1+ID%12,"
               "1+ID%28,ID%24),lStartCount=1+ID%50 WHERE ID%100=0;"
               "UPDATE Category SET tsLastStarted=printf('2025-%02d-%02d %02d:00:00',1+ID%12,"
               "1+ID%28,ID%24),lStartCount=1+ID%50 WHERE iType=1 AND ID%100=0;"
               "COMMIT;";
        ok = sqlite3_exec(db, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
        if (!ok)
            out << "decorating the catalogue: " << sqlite3_errmsg(db) << Qt::endl;
    }
    sqlite3_close(db);
    return ok;
}

QVector<qint64> idsOf(const QString& path, const char* sql)
{
    QVector<qint64> ids;
    sqlite3* db = nullptr;
    sqlite3_stmt* st = nullptr;
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) ==
            SQLITE_OK &&
        sqlite3_prepare_v2(db, sql, -1, &st, nullptr) == SQLITE_OK)
        while (sqlite3_step(st) == SQLITE_ROW)
            ids << sqlite3_column_int64(st, 0);
    sqlite3_finalize(st);
    sqlite3_close(db);
    return ids;
}

// The highest resident size of this process so far, in MiB.
double peakMemoryMb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024.0;
    return -1;
}

double percentile(QVector<double> v, double p)
{
    if (v.isEmpty())
        return 0;
    std::sort(v.begin(), v.end());
    return v[std::min<qsizetype>(v.size() - 1, qsizetype(p * double(v.size() - 1) + 0.5))];
}

// One line of the summary table that bench/scale.sh collects.
void tableLine(const QString& what, const QString& ours, const QString& plain,
               const QString& target, bool met)
{
    out << "TABLE|" << what << '|' << ours << '|' << plain << '|' << target << '|'
        << (met ? "met" : "NOT met") << Qt::endl;
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

PlainView plainView(int view, qint64 maxFile, qint64 maxEntry, const QByteArray& search,
                    int box = 0)
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
    if (!search.isEmpty() && box == 0)
        add(entryWhere, "tProgram LIKE '%" + search + "%'");
    if (!search.isEmpty() && box > 0) {
        const QByteArray term =
            (box == 1 ? "F.tFile" : "F.tPath") + QByteArray(" LIKE '%") + search + "%'";
        add(entryWhere, term);
        add(fileWhere, term);
    }
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
    QString byHand = QStringLiteral("%1 ms").arg(median(r.list), 0, 'f', 1);
    if (!r.tree.isEmpty())
        byHand += QStringLiteral(" + tree %1 ms").arg(median(r.tree), 0, 'f', 1);
    tableLine(r.what + (r.rows >= 0 ? QStringLiteral(" (%1 rows)").arg(r.rows) : QString()),
              QStringLiteral("%1 ms (max %2, CPU %3)")
                  .arg(m, 0, 'f', 1)
                  .arg(maxOf(r.ours), 0, 'f', 1)
                  .arg(median(r.cpu), 0, 'f', 1),
              r.list.isEmpty() ? QString() : byHand, QStringLiteral("%1 ms").arg(r.target), met);
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
    parser.addOption({"catalogue",
                      "Use this catalogue (copied into DIR once) instead of writing "
                      "one.",
                      "FILE"});
    parser.addOption({"search", "Text searched for (default 4711).", "TEXT", "4711"});
    parser.addOption({"search-file",
                      "Text searched for in the box of the file's name (default "
                      "\"Game 47\").",
                      "TEXT", "Game 47"});
    parser.addOption({"search-path",
                      "Text searched for in the box of the path (default "
                      "\"/47/\").",
                      "TEXT", "/47/"});
    parser.addOption(
        {"scroll-pages", "Pages scrolled down from the top (default 100).", "P", "100"});
    parser.addOption(
        {"scroll-jumps", "Jumps of the scroll bar on to the end (default 50).", "J", "50"});
    parser.addOption({"show-sql", "Print the statements of each view."});
    parser.addOption({"only", "Measure only views, search or nodes.", "WHAT"});
    parser.addOption(
        {"views", "The views switched to, in order (default 2,3,4,5,6,1).", "LIST", "2,3,4,5,6,1"});
    parser.addOption({"no-plain", "Leave out the statements by hand."});
    parser.process(app);

    int files = parser.value("files").toInt();
    int entries = parser.value("entries").toInt();
    const int rounds = std::max(1, parser.value("rounds").toInt());
    const QString dir = parser.value("dir");
    QDir().mkpath(dir);
    QString path = QStringLiteral("%1/browser-%2-%3.vdb").arg(dir).arg(files).arg(entries);
    if (parser.isSet("catalogue")) {
        const QString source = parser.value("catalogue");
        path = dir + QStringLiteral("/shown-") + QFileInfo(source).fileName();
        if (!QFile::exists(path) ||
            QFileInfo(source).lastModified() > QFileInfo(path).lastModified()) {
            QFile::remove(path);
            if (!QFile::copy(source, path)) {
                out << "The catalogue " << source << " could not be copied." << Qt::endl;
                return 1;
            }
        }
        if (!decorate(path))
            return 1;
    } else if (!QFile::exists(path)) {
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
    form->tree()->viewport()->installEventFilter(&paints);
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
    const QVector<qint64> fileIds = idsOf(path, "SELECT ID FROM Category WHERE iType=1");
    files = int(fileIds.size());
    entries = int(idsOf(path, "SELECT count(*) FROM C64Files").value(0));
    const qint64 maxFile = idsOf(path, "SELECT max(ID) FROM Category").value(0);
    const qint64 maxEntry = idsOf(path, "SELECT max(ID) FROM C64Files").value(0);
    tableLine(
        QStringLiteral("window shown, catalogue opened in view 1"),
        QStringLiteral("%1 ms (CPU %2)").arg(opened.ms, 0, 'f', 1).arg(opened.cpuMs, 0, 'f', 1), {},
        QStringLiteral("1500 ms"), opened.ms >= 0 && opened.ms < 1500);

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

    // The boxes of the file's name and of the path, in view 1.
    const QString boxText[] = {{}, parser.value("search-file"), parser.value("search-path")};
    QMap<int, Row> boxes;
    bench.switchTo(1);
    for (int box = 1; box <= 2 && measured("search"); ++box) {
        Row& r = boxes[box];
        r.what = QStringLiteral("search box %1 in view 1").arg(box);
        r.target = 300;
        for (int round = 0; round < rounds; ++round) {
            const Timed t =
                bench.time(bench.surfaceOf(1), [&] { bench.search(box, boxText[box]); });
            r.add(t);
            r.rows = itemCount();
            if (byHand) {
                const PlainView p = plainView(1, maxFile, maxEntry, boxText[box].toUtf8(), box);
                const Plain::Result list = plain.run(p.list, 61);
                const Plain::Result tree = plain.run(p.tree, 30);
                r.addPlain(list, &tree);
            }
            bench.time(bench.surfaceOf(1), [&] { bench.search(box, QString()); });
        }
    }

    // The list of every entry scrolled to its end: pages from the top, then jumps of the
    // scroll bar, each step timed to the end of its paint.
    QVector<double> scrollMs, scrollCpu;
    if (measured("scroll")) {
        QScrollBar* bar = form->list()->report().verticalScrollBar();
        const int pages = std::max(0, parser.value("scroll-pages").toInt());
        const int jumps = std::max(1, parser.value("scroll-jumps").toInt());
        for (int i = 0; i < pages + jumps; ++i) {
            const int start = bar->value();
            const Timed t = bench.time(bench.surfaceOf(1), [&] {
                if (i < pages)
                    bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
                else
                    bar->setValue(
                        int(start + qint64(bar->maximum() - start) / (pages + jumps - i)));
            });
            if (t.ms >= 0) {
                scrollMs << t.ms;
                scrollCpu << t.cpuMs;
            }
        }
        const bool atEnd = bar->value() == bar->maximum();
        out << QStringLiteral("list scrolled to its end (%1): %2 steps, median %3 ms, 95th "
                              "percentile %4 ms, max %5 ms (CPU: median %6, max %7)")
                   .arg(atEnd ? QStringLiteral("reached") : QStringLiteral("NOT reached"))
                   .arg(scrollMs.size())
                   .arg(percentile(scrollMs, 0.5), 0, 'f', 2)
                   .arg(percentile(scrollMs, 0.95), 0, 'f', 2)
                   .arg(maxOf(scrollMs), 0, 'f', 2)
                   .arg(percentile(scrollCpu, 0.5), 0, 'f', 2)
                   .arg(maxOf(scrollCpu), 0, 'f', 2)
            << Qt::endl;
    }

    // File nodes in view 1, chosen at random.
    bench.switchTo(1);
    Row node;
    node.what = QStringLiteral("file node selected");
    node.target = 50;
    QRandomGenerator rng(11);
    const int nodes = std::max(1, parser.value("nodes").toInt());
    QVector<double> expandMs, expandCpu;
    qint64 expandedRows = 0;
    for (int i = 0; i < nodes && measured("nodes") && !fileIds.isEmpty(); ++i) {
        const qint64 file = fileIds[rng.bounded(int(fileIds.size()))];
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

    // The tree with its third level (the check mark "Baum mit Unterelementen", off by default,
    // taken up by the next build of the view): a file node opened on its entries.
    if (measured("nodes") && !fileIds.isEmpty()) {
        form->menuEntry(QStringLiteral("mnuTreeOhnePlusMinus"))->setChecked(true);
        bench.time(bench.surfaceOf(3),
                   [&] { bench.switchTo(3); }); // the same view is not built again
        bench.time(bench.surfaceOf(1), [&] { bench.switchTo(1); });
        UserTree* tree = form->tree();
        for (int i = 0; i < nodes; ++i) {
            const qint64 file = fileIds[rng.bounded(int(fileIds.size()))];
            if (!tree->SelectItem(QString::number(file), 2)) {
                out << "file node " << file << " not found in the tree of three levels" << Qt::endl;
                continue;
            }
            bench.time(tree->viewport(), [] {}); // the selection's own paint, not measured
            const qint32 before = tree->ItemCount();
            const Timed e = bench.time(tree->viewport(), [&] {
                tree->ToggleItem(tree->SelectedItem(), UserTree::ExpandOnly);
            });
            if (e.ms >= 0) {
                expandMs << e.ms;
                expandCpu << e.cpuMs;
            }
            expandedRows += tree->ItemCount() - before;
            if (qEnvironmentVariableIsSet("VD_BENCH_DEBUG"))
                out << "expand " << file << ": " << e.ms << " ms, rows " << before << " -> "
                    << tree->ItemCount() << ", levels " << form->viewSql().treeLevels.size()
                    << Qt::endl;
        }
        form->menuEntry(QStringLiteral("mnuTreeOhnePlusMinus"))->setChecked(false);
    }

    out << "\n"
        << files << " files, " << entries << " entries; medians of " << rounds << " rounds ("
        << nodes << " nodes); time to the end of the first paint of the list\n";
    for (int view : order)
        printRow(views[view]);
    for (int view : {1, 3})
        printRow(searches[view]);
    for (int box = 1; box <= 2; ++box)
        printRow(boxes[box]);
    printRow(node);
    if (!expandMs.isEmpty()) {
        out << QStringLiteral("file node opened in the tree (%1 rows in %2 nodes): median %3 ms, "
                              "max %4 ms (CPU %5)")
                   .arg(expandedRows)
                   .arg(expandMs.size())
                   .arg(median(expandMs), 0, 'f', 1)
                   .arg(maxOf(expandMs), 0, 'f', 1)
                   .arg(median(expandCpu), 0, 'f', 1)
            << Qt::endl;
        tableLine(QStringLiteral("tree's third level opened (%1 rows in %2 nodes)")
                      .arg(expandedRows)
                      .arg(expandMs.size()),
                  QStringLiteral("%1 ms (max %2, CPU %3)")
                      .arg(median(expandMs), 0, 'f', 1)
                      .arg(maxOf(expandMs), 0, 'f', 1)
                      .arg(median(expandCpu), 0, 'f', 1),
                  {}, QStringLiteral("50 ms"), median(expandMs) < 50);
    }
    if (!scrollMs.isEmpty())
        tableLine(
            QStringLiteral("list scrolled to its end, one step (%1 steps)").arg(scrollMs.size()),
            QStringLiteral("median %1 ms, 95th pct. %2 ms, max %3 ms (CPU max %4)")
                .arg(percentile(scrollMs, 0.5), 0, 'f', 2)
                .arg(percentile(scrollMs, 0.95), 0, 'f', 2)
                .arg(maxOf(scrollMs), 0, 'f', 2)
                .arg(maxOf(scrollCpu), 0, 'f', 2),
            {}, QStringLiteral("16 ms"), percentile(scrollMs, 0.95) < 16);

    const double peak = peakMemoryMb();
    out << "peak memory of the process (VmHWM): " << peak << " MiB" << Qt::endl;
    tableLine(QStringLiteral("peak memory of the window's process (VmHWM)"),
              QStringLiteral("%1 MiB").arg(peak, 0, 'f', 0), {}, QStringLiteral("400 MB"),
              peak > 0 && peak * 1.048576 < 400);
    form.reset();
    catalogue::CloseCatalogue();
    platform::setDialogService(nullptr);
    return 0;
}
