// The option string of a profile: parsing any text never fails, and joining and parsing again
// keeps the rows that have a text.

#include "launch/OptionString.h"

#include <algorithm>
#include <cstdint>

using namespace vd::launch;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    const OptionTable rows = ParseOptions(text);
    if (rows.isEmpty())
        __builtin_trap();
    const QString joined = JoinOptions(rows);
    const OptionTable again = ParseOptions(joined);
    // Joining drops rows without text; what remains must survive a second round unchanged,
    // unless a text holds "@", which can run into a separator (the stored form has no escape).
    const bool plain = std::none_of(rows.begin(), rows.end(),
                                    [](const OptionRow& r) { return r.text.contains(u'@'); });
    if (plain && JoinOptions(again) != joined)
        __builtin_trap();
    (void)HasNoItems(again);
    return 0;
}
