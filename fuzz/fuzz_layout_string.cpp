// Column layout strings as stored in the settings, in the new and the old form, and the level
// layouts of a multi-level list: applying any text leaves a consistent set of columns.

#include "controls/ListLevels.h"
#include "controls/ReportColumns.h"

#include <cstdint>

using namespace vd::controls;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    ReportColumns cols;
    for (const char* key : {"ID", "tFile", "tPath", "lSize", "iFileType", "Expr1000"})
        cols.add(QString::fromLatin1(key), 80);
    cols.applyLayout(text);
    (void)cols.applyOldLayout(text, 1, 0);
    // Every column keeps one display place.
    const QList<int> order = cols.displayOrder();
    if (order.size() != cols.count())
        __builtin_trap();
    QList<int> sorted = order;
    std::sort(sorted.begin(), sorted.end());
    for (int i = 0; i < sorted.size(); ++i)
        if (sorted[i] != i)
            __builtin_trap();
    // A layout written out reads back to itself.
    const QString written = cols.layout();
    ReportColumns copy = cols;
    copy.applyLayout(written);
    if (copy.layout() != written)
        __builtin_trap();
    const QStringList levels = splitLevelLayouts(text, 3);
    if (levels.size() != 3)
        __builtin_trap();
    (void)joinLevelLayouts(levels);
    return 0;
}
