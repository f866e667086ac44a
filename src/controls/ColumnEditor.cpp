#include "controls/ColumnEditor.h"

#include <QSet>
#include <QStringList>

namespace vd::controls {

namespace {

const QString kJoin = QStringLiteral("@@@");

QSet<QString> listedKeys(const QString& columnList)
{
    QSet<QString> keys;
    for (const QString& k : columnList.split(kJoin, Qt::SkipEmptyParts))
        keys.insert(k.trimmed().toUpper());
    return keys;
}

} // namespace

void ColumnEditor::takePresent()
{
    m_present.clear();
    for (const Row& r : m_rows)
        m_present << r.Hidden;
}

void ColumnEditor::loadColumns(const ReportColumns& cols, const QString& nameCaption)
{
    m_gb = false;
    m_rows.clear();
    for (int c : cols.displayOrder()) {
        const ReportColumn& col = cols[c];
        if (col.hidden == 2)
            continue;
        Row r;
        r.Name = col.caption;
        r.Hidden = col.hidden == 0 ? 1 : 0;
        r.Key = col.key;
        r.column = c;
        r.mayHide = !col.noHide || (!nameCaption.isEmpty() && col.key == nameCaption);
        m_rows << r;
    }
    takePresent();
}

void ColumnEditor::loadGB(const GBColumnSource& source)
{
    m_gb = true;
    m_rows.clear();
    const QSet<QString> shown = listedKeys(source.read ? source.read() : QString());
    for (const auto& [field, caption] : source.fields) {
        Row r;
        r.Key = field.toUpper();
        r.Name = caption;
        r.mayHide = r.Key != kGBNameKey;
        r.Hidden = !r.mayHide || shown.contains(r.Key) ? 1 : 0;
        m_rows << r;
    }
    takePresent();
}

bool ColumnEditor::differs() const
{
    for (int i = 0; i < m_rows.size(); ++i)
        if (i >= m_present.size() || m_rows[i].Hidden != m_present[i])
            return true;
    return false;
}

void ColumnEditor::apply(ReportColumns& cols)
{
    for (const Row& r : std::as_const(m_rows)) {
        if (r.column < 0 || r.column >= cols.count() || cols[r.column].hidden == 2)
            continue;
        cols[r.column].hidden = r.Hidden == 1 ? 0 : 1;
    }
    takePresent();
}

QString ColumnEditor::gbColumnList() const
{
    QStringList keys;
    for (const Row& r : m_rows)
        if (r.Hidden == 1 && r.Key != kGBNameKey)
            keys << r.Key;
    return keys.join(kJoin);
}

void ColumnEditor::applyGB(const GBColumnSource& source)
{
    if (source.write)
        source.write(gbColumnList());
    takePresent();
    if (source.changed)
        source.changed();
}

void ColumnEditor::restoreDefaults(ReportColumns& cols, const QString& nameCaption)
{
    for (int c = 0; c < cols.count(); ++c)
        if (cols[c].hidden != 2)
            cols[c].hidden = 0;
    loadColumns(cols, nameCaption);
}

void ColumnEditor::restoreGBDefaults(const GBColumnSource& source)
{
    if (source.write)
        source.write(kGBDefaultColumns);
    loadGB(source);
    if (source.changed)
        source.changed();
}

} // namespace vd::controls
