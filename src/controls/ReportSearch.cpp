// The list's selection across reloads, Find and the search as the user types.

#include "catalogue/DaoTypes.h"
#include "catalogue/RowOps.h"
#include "controls/ControlErrors.h"
#include "controls/ReportEngine.h"
#include "controls/SqlTree.h"

#include <QDateTime>
#include <QTimer>

namespace vd::controls {

namespace {

constexpr qint64 kTypeAheadMs = 500;

QString bracketed(const QString& name)
{
    return QLatin1Char('[') + name + QLatin1Char(']');
}

} // namespace

// --- the selection across a reload ---------------------------------------------------------

void ReportEngine::clearSavedSelection()
{
    m_savedKey.reset();
    m_savedRow.reset();
    m_savedRowNumber = -1;
}

void ReportEngine::rememberSelection()
{
    clearSavedSelection();
    if (!m_rs || m_current < 0 || m_current >= m_rs->recordCount())
        return;
    m_rs->setAbsolutePosition(m_current);
    if (m_p.KeyColumn >= 0 && m_p.KeyColumn < m_rs->fieldCount())
        m_savedKey = MakeKeyLiteral(m_rs->field(m_p.KeyColumn).type, m_rs->value(m_p.KeyColumn));
    else
        m_savedRow = m_rs->getRows(1);
    m_savedRowNumber = m_current;
}

void ReportEngine::restoreSelection(bool allowFallback)
{
    if (!m_rs || m_rowCount == 0) {
        clearSavedSelection();
        return;
    }
    QString criteria;
    if (m_savedKey && m_p.KeyColumn >= 0 && m_p.KeyColumn < m_rs->fieldCount()) {
        if (!m_savedKey->isEmpty())
            criteria = m_rs->field(m_p.KeyColumn).name + QLatin1Char('=') + *m_savedKey;
    } else if (m_savedRow && m_savedRow->rowCount == 1) {
        for (int c = 0; c < m_savedRow->fieldCount && c < m_rs->fieldCount(); ++c) {
            const QVariant& v = m_savedRow->value(c, 0);
            if (v.isNull())
                continue;
            const QString literal = MakeKeyLiteral(m_rs->field(c).type, v);
            if (literal.isEmpty())
                continue; // binary and memo fields drop out this way
            criteria += (criteria.isEmpty() ? QStringLiteral("[") : QStringLiteral(" and [")) +
                        m_rs->field(c).name + QStringLiteral("] =") + literal;
        }
    }
    const qint64 savedRow = m_savedRowNumber;
    clearSavedSelection();
    if (criteria.isEmpty())
        return;
    bool found = false;
    try {
        found = m_rs->findFirst(criteria);
    } catch (const std::exception&) {
        return; // a criterion the engine cannot read: the row stays where it is
    }
    if (found)
        setSelectedIndex(m_rs->absolutePosition());
    else if (allowFallback && savedRow >= 0)
        setSelectedIndex(std::min(savedRow, m_rowCount - 1));
    else
        setSelectedIndex(0);
}

// --- Find ----------------------------------------------------------------------------------

qint64 ReportEngine::searchFrom(const QString& criteria, qint64 start, bool dryRun)
{
    if (!m_rs || m_rowCount == 0 || criteria.isEmpty())
        return -1;
    m_rs->setAbsolutePosition(std::clamp<qint64>(start, 0, m_rowCount - 1));
    if (!m_rs->findNext(criteria) && !m_rs->findFirst(criteria))
        return -1;
    const qint64 row = m_rs->absolutePosition();
    if (!dryRun)
        setSelectedIndex(row);
    return row;
}

qint64 ReportEngine::Find(const QVariant& column, const QString& value, qint64 start, int mode)
{
    if (!m_rs || m_rowCount == 0)
        return -1;
    return listGuard("Find", qint64(-1), [&]() -> qint64 {
        const int col = fieldOf(column);
        if (col < 0)
            return -1;
        const db::FieldInfo& f = m_rs->field(col);
        QString criteria = bracketed(f.name);
        if (db::type::isNumeric(f.type)) {
            QString v = value;
            criteria += QLatin1Char('=') + v.replace(QLatin1Char(','), QLatin1Char('.'));
        } else if (f.type == db::type::Date || f.type == 22) {
            const QString literal = MakeKeyLiteral(db::type::Date, value);
            if (literal.isEmpty())
                return -1;
            criteria += QLatin1Char('=') + literal;
        } else if (f.type == db::type::Text || f.type == db::type::Memo) {
            QString v = value;
            v.replace(QLatin1Char('\''), QStringLiteral("''"));
            criteria +=
                QStringLiteral(" like '") + v +
                (value.contains(QLatin1Char('*')) ? QStringLiteral("'") : QStringLiteral("*'"));
        } else {
            return -1;
        }
        return searchFrom(criteria, start, mode == DryRun);
    });
}

// --- the search as the user types ----------------------------------------------------------

QString ReportEngine::searchCriteria(const QString& text) const
{
    const int col = firstVisibleColumn();
    if (!m_rs || col >= m_rs->fieldCount())
        return {};
    const db::FieldInfo& f = m_rs->field(col);
    if (f.type == db::type::Text || f.type == db::type::Memo) {
        // Quotes are doubled, so that a name such as O'Brien can be typed.
        QString v = text;
        v.replace(QLatin1Char('\''), QStringLiteral("''"));
        return bracketed(f.name) + QStringLiteral(" like '") + v + QStringLiteral("*'");
    }
    if (f.type == db::type::Date || f.type == db::type::Boolean || f.type == db::type::Binary ||
        f.type == db::type::LongBinary)
        return {};
    QString v = text;
    v.replace(QLatin1Char(','), QLatin1Char('.'));
    if (!IsNumericText(v))
        return {};
    return bracketed(f.name) + QLatin1Char('=') + v.trimmed();
}

bool ReportEngine::typeAhead(QChar c, bool shift, bool ctrl)
{
    if ((m_p.MultiSelect && (shift || ctrl)) || !c.isPrint())
        return false;
    if (m_rowCount == 0)
        return true;
    const qint64 now = m_clock ? m_clock() : QDateTime::currentMSecsSinceEpoch();
    const qint64 elapsed = now - m_lastKey;
    if (elapsed > kTypeAheadMs)
        m_searchText.clear();
    m_lastKey = now;
    if (!m_searchText.isEmpty() && elapsed < kTypeAheadMs) {
        // More letters follow: the search waits for the pause.
        m_timer->stop();
        m_searchText += c;
        m_timer->start();
        return true;
    }
    if (!m_timer) {
        m_timer = std::make_unique<QTimer>();
        m_timer->setInterval(int(kTypeAheadMs));
        m_timer->callOnTimeout([this] { searchTimeout(); });
    }
    m_timer->stop();
    m_searchText = c;
    try {
        if (searchFrom(searchCriteria(m_searchText), 0, false) < 0)
            m_searchText.clear();
    } catch (const std::exception&) {
        m_searchText.clear();
    }
    return true;
}

void ReportEngine::searchTimeout()
{
    if (m_timer)
        m_timer->stop();
    try {
        searchFrom(searchCriteria(m_searchText), 0, false);
    } catch (const std::exception&) {
        // nothing found is all the user sees
    }
    m_searchText.clear();
    m_lastKey = 0;
}

} // namespace vd::controls
