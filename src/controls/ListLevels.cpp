#include "controls/ListLevels.h"

namespace vd::controls {

void cListLevels::Setup(const QStringList& statements)
{
    setLevels(statements, true);
}

void cListLevels::setLevels(const QStringList& statements, bool fire)
{
    m_statements = statements;
    if (fire)
        emit Changed();
}

QString cListLevels::sql(int level) const
{
    if (level < 1 || level > m_statements.size())
        return {};
    return m_statements[level - 1];
}

QStringList splitLevelLayouts(const QString& text, int count)
{
    QStringList layouts = text.isEmpty() ? QStringList() : text.split(QLatin1Char('@'));
    while (layouts.size() < count)
        layouts << QString();
    while (layouts.size() > count)
        layouts.removeLast();
    return layouts;
}

QString joinLevelLayouts(const QStringList& layouts)
{
    return layouts.join(QLatin1Char('@'));
}

} // namespace vd::controls
