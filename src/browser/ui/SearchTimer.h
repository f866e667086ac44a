#pragma once
// moTimer, the debounce of the search boxes: each change switches it off and on again, and it
// fires once, its interval after the last change. Its clock can be replaced, so that a test
// moves the time by hand instead of waiting for it.

#include <functional>
#include <QObject>

class QTimer;

namespace vd::browser {

class SearchTimer : public QObject
{
    Q_OBJECT
public:
    using Clock = std::function<qint64()>; // milliseconds, never going back

    explicit SearchTimer(int intervalMs, QObject* parent = nullptr);

    int interval() const { return m_interval; }
    // Off and on again: the interval starts anew from now.
    void restart();
    void stop();
    bool isActive() const;

    // Runs the timer on the caller's clock: it no longer fires by itself; poll() fires it once
    // when the clock has passed the interval since the last restart().
    void setClock(Clock clock);
    void poll();

signals:
    void timeout();

private:
    QTimer* m_timer;
    Clock m_clock;
    qint64 m_due = -1; // with a clock of the caller's: when it fires, -1 when off
    int m_interval;
};

} // namespace vd::browser
