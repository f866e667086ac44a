// T64 directories from any bytes: the count limit, the ordering and the sizes must hold for
// any header, any count and any start offsets.

#include "formats/TapeImage.h"

#include <cstdint>

using namespace vd::formats;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArrayView bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const MemoryBytes tape(bytes);
    (void)isT64Header(readT64Header(tape));
    const TapeDirectory dir = readT64Directory(tape);
    if (dir.count > kT64MaxEntries || dir.entries.size() != dir.count ||
        dir.tapeName.size() > kT64TapeNameLength)
        __builtin_trap();
    for (qsizetype i = 0; i < dir.entries.size(); ++i)
        if (dir.entries[i].index != i + 1 || dir.entries[i].name.size() > kT64EntryNameLength)
            __builtin_trap();
    return 0;
}
