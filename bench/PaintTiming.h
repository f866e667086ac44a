#pragma once
// Timing of paint events for the benchmarks of the widgets: every paint event a widget
// receives is delivered inside a stop watch, and the figures are summed up as percentiles.
// Beside the wall clock the thread's CPU time is kept: on a machine shared with other work
// the wall clock also counts the time the scheduler gave to others.

#include <algorithm>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QObject>
#include <QVector>
#include <QWidget>
#include <time.h>

namespace vd::bench {

// Install on the widget that paints (for a scroll area: its viewport).
inline double threadCpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return double(ts.tv_sec) * 1e3 + double(ts.tv_nsec) / 1e6;
}

// Milliseconds per event, by the wall clock and in CPU time.
struct PaintTimes
{
    QVector<double> ms;
    QVector<double> cpuMs;
};

class PaintTimer : public QObject
{
public:
    PaintTimes times;

    void clear() { times = {}; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        QElapsedTimer t;
        t.start();
        const double cpu = threadCpuMs();
        auto* w = static_cast<QWidget*>(watched);
        w->removeEventFilter(this);
        QCoreApplication::sendEvent(w, event);
        w->installEventFilter(this);
        times.ms << double(t.nsecsElapsed()) / 1e6;
        times.cpuMs << threadCpuMs() - cpu;
        return true;
    }
};

inline double percentile(QVector<double> v, double p)
{
    if (v.isEmpty())
        return 0;
    std::sort(v.begin(), v.end());
    return v[std::min<qsizetype>(v.size() - 1, qsizetype(p * double(v.size() - 1) + 0.5))];
}

} // namespace vd::bench
