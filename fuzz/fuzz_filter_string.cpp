// The stored form of a filter: any text splits into definitions, each gives compare text
// without failing, and a split of the joined form gives the same definitions back.

#include "browser/Filters.h"

#include <cstdint>

using namespace vd::browser;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    clsFilter filter;
    filter.Name = QStringLiteral("fuzz");
    filter.Key = 1;
    filter.Defs = splitFilterDefs(text);
    for (const clsFilterDef& d : filter.Defs)
        (void)CompareText(d);
    const clsFilter expanded = ExpandFilter(filter);
    if (expanded.Defs.size() < filter.Defs.size())
        __builtin_trap();
    (void)FilterIconKey(filter);
    const QVector<clsFilterDef> again = splitFilterDefs(joinFilterDefs(filter));
    if (again.size() != filter.Defs.size())
        __builtin_trap();
    for (qsizetype i = 0; i < again.size(); ++i)
        if (again[i].Field != filter.Defs[i].Field || again[i].Value != filter.Defs[i].Value)
            __builtin_trap();
    return 0;
}
