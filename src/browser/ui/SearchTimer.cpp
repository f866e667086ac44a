#include "browser/ui/SearchTimer.h"

#include <QTimer>

namespace vd::browser {

SearchTimer::SearchTimer(int intervalMs, QObject* parent)
    : QObject(parent), m_timer(new QTimer(this)), m_interval(intervalMs)
{
    m_timer->setSingleShot(true);
    m_timer->setInterval(intervalMs);
    connect(m_timer, &QTimer::timeout, this, &SearchTimer::timeout);
}

void SearchTimer::restart()
{
    if (m_clock) {
        m_due = m_clock() + m_interval;
        return;
    }
    m_timer->start();
}

void SearchTimer::stop()
{
    m_due = -1;
    m_timer->stop();
}

bool SearchTimer::isActive() const
{
    return m_clock ? m_due >= 0 : m_timer->isActive();
}

void SearchTimer::setClock(Clock clock)
{
    const bool active = isActive();
    stop();
    m_clock = std::move(clock);
    if (active)
        restart();
}

void SearchTimer::poll()
{
    if (!m_clock || m_due < 0 || m_clock() < m_due)
        return;
    m_due = -1;
    emit timeout();
}

} // namespace vd::browser
