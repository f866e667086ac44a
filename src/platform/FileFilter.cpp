#include "platform/FileFilter.h"

namespace vd::platform {

QList<FileFilterEntry> parseFileFilter(const QString& filter)
{
    QList<FileFilterEntry> entries;
    const QStringList parts = filter.split(QLatin1Char('|'));
    for (qsizetype i = 0; i < parts.size(); i += 2) {
        FileFilterEntry entry;
        entry.caption = parts[i].trimmed();
        if (entry.caption.isEmpty() && i + 1 >= parts.size())
            break; // a trailing "|"
        const QString patterns = i + 1 < parts.size() ? parts[i + 1] : QStringLiteral("*.*");
        for (const QString& pattern : patterns.split(QLatin1Char(';'), Qt::SkipEmptyParts))
            if (!pattern.trimmed().isEmpty())
                entry.patterns << pattern.trimmed();
        if (entry.caption.isEmpty() && entry.patterns.isEmpty())
            continue;
        entries << entry;
    }
    return entries;
}

QString qtFileFilter(const QString& filter)
{
    QStringList qtEntries;
    for (const FileFilterEntry& entry : parseFileFilter(filter)) {
        QStringList patterns;
        for (const QString& pattern : entry.patterns) {
            if (pattern == QLatin1String("*.*") || pattern == QLatin1String("*")) {
                patterns << QStringLiteral("*");
                continue;
            }
            patterns << pattern.toLower() << pattern.toUpper();
        }
        patterns.removeDuplicates();
        const QString caption =
            entry.caption.isEmpty() ? patterns.join(QLatin1Char(' ')) : entry.caption;
        qtEntries << QStringLiteral("%1 (%2)").arg(caption, patterns.join(QLatin1Char(' ')));
    }
    return qtEntries.join(QLatin1String(";;"));
}

} // namespace vd::platform
