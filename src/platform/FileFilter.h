#pragma once
// File dialog filters. The program writes them as "Caption|*.ext;*.ext2|Caption2|*.*"; Qt's
// dialogs take "Caption (*.ext *.ext2);;Caption2 (*)".

#include <QString>
#include <QStringList>

namespace vd::platform {

// One entry of a filter: its caption and its name patterns.
struct FileFilterEntry
{
    QString caption;
    QStringList patterns;
};

// Splits "Caption|*.a;*.b|Caption2|*.*" into its entries. A trailing caption without patterns
// gets "*.*".
QList<FileFilterEntry> parseFileFilter(const QString& filter);

// The filter in Qt's form. "*.*" means every file (Qt: "*"); file names on Linux differ in case
// while the patterns were written for a system that ignores it, so "*.d64" also lists "*.D64".
QString qtFileFilter(const QString& filter);

} // namespace vd::platform
