#include "controls/ReportColumns.h"

#include <algorithm>
#include <numeric>
#include <QStringList>

namespace vd::controls {

namespace {

constexpr int kNoOrder = -1;

// "Hidden=1" and friends; false when the text is no whole number.
bool numberOf(const QString& text, int& out)
{
    bool ok = false;
    const int v = text.trimmed().toInt(&ok);
    if (ok)
        out = v;
    return ok;
}

} // namespace

int ReportColumns::indexOf(const QString& key) const
{
    for (int i = 0; i < m_cols.size(); ++i)
        if (m_cols[i].key.compare(key, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

ReportColumn& ReportColumns::add(const QString& key, int width)
{
    ReportColumn c;
    c.key = key;
    c.caption = key;
    c.width = width;
    c.order = int(m_cols.size());
    m_cols.push_back(c);
    return m_cols.back();
}

QString ReportColumns::layout() const
{
    QStringList entries;
    for (const ReportColumn& c : m_cols)
        entries << QStringLiteral("%1!Hidden=%2;Width=%3;Fixed=%4;Order=%5")
                       .arg(c.key)
                       .arg(c.hidden)
                       .arg(c.width)
                       .arg(c.fixed)
                       .arg(c.order);
    return entries.join(QLatin1Char('$'));
}

void ReportColumns::applyLayout(const QString& layout)
{
    QVector<int> given(m_cols.size(), kNoOrder);
    for (const QString& entry : layout.split(QLatin1Char('$'), Qt::SkipEmptyParts)) {
        const int bang = int(entry.indexOf(QLatin1Char('!')));
        if (bang <= 0)
            continue;
        const int col = indexOf(entry.left(bang).trimmed());
        if (col < 0)
            continue; // a column the statement no longer has
        ReportColumn& c = m_cols[col];
        for (const QString& prop :
             entry.mid(bang + 1).split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            const int eq = int(prop.indexOf(QLatin1Char('=')));
            if (eq <= 0)
                continue;
            const QString name = prop.left(eq).trimmed();
            int value = 0;
            if (!numberOf(prop.mid(eq + 1), value))
                continue;
            if (name.compare(QLatin1String("Hidden"), Qt::CaseInsensitive) == 0 && value >= 0 &&
                value <= 2)
                c.hidden = c.invisible ? 2 : (c.noHide && value == 1 ? 0 : value);
            else if (name.compare(QLatin1String("Width"), Qt::CaseInsensitive) == 0 && value >= 0)
                c.width = value;
            else if (name.compare(QLatin1String("Fixed"), Qt::CaseInsensitive) == 0 && value >= 0)
                c.fixed = value;
            else if (name.compare(QLatin1String("Order"), Qt::CaseInsensitive) == 0 && value >= 0)
                given[col] = value;
        }
    }
    renumber(given);
}

bool ReportColumns::applyOldLayout(const QString& layout, int invisibleCols, int invisibleColMode)
{
    const QChar sep = layout.contains(QLatin1Char(';')) ? QLatin1Char(';') : QLatin1Char(',');
    QList<int> values;
    for (const QString& part : layout.split(sep)) {
        int v = 0;
        if (!numberOf(part, v))
            return false;
        values << v;
    }
    if (values.isEmpty())
        return false;
    const int n = values[0];
    const int visible = count() - std::max(invisibleCols, 0);
    if (n != visible || n < 0 || values.size() < 1 + 2 * n)
        return false;
    QVector<int> given(m_cols.size(), kNoOrder);
    for (int i = 0; i < n; ++i) {
        const int col = invisibleColMode != 0 ? count() - 1 - i : i;
        ReportColumn& c = m_cols[col];
        const int width = values[1 + n + i];
        given[col] = values[1 + i];
        c.width = std::max(width, c.minWidth);
        if (width == 0 && c.hidden == 0)
            c.hidden = 1;
    }
    renumber(given);
    return true;
}

void ReportColumns::renumber(const QVector<int>& given)
{
    QVector<int> cols(m_cols.size());
    std::iota(cols.begin(), cols.end(), 0);
    std::stable_sort(cols.begin(), cols.end(), [&](int a, int b) {
        const bool ha = given[a] != kNoOrder, hb = given[b] != kNoOrder;
        if (ha != hb)
            return ha;
        return ha ? given[a] < given[b] : m_cols[a].order < m_cols[b].order;
    });
    for (int pos = 0; pos < cols.size(); ++pos)
        m_cols[cols[pos]].order = pos;
}

QList<int> ReportColumns::displayOrder() const
{
    QList<int> cols;
    for (int i = 0; i < m_cols.size(); ++i)
        cols << i;
    std::stable_sort(cols.begin(), cols.end(),
                     [&](int a, int b) { return m_cols[a].order < m_cols[b].order; });
    return cols;
}

} // namespace vd::controls
