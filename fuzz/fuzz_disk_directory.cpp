// Disk directories from any bytes. The first byte chooses the kind; with its top bit set the
// rest is read as a whole (short) image, otherwise it is laid over the directory track of an
// image of an accepted length, where the walk really goes.

#include "formats/DiskImage.h"

#include <cstdint>
#include <cstring>

using namespace vd::formats;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const DiskGeometry& g = diskGeometry(DiskKind(data[0] % 3));
    const QByteArrayView rest(reinterpret_cast<const char*>(data) + 1, qsizetype(size - 1));
    QByteArray image;
    if (data[0] & 0x80) {
        image = rest.toByteArray();
    } else {
        image = QByteArray(qsizetype(g.lengths[0]), '\0');
        const qint64 track = g.diskNameOffset & ~qint64(0xFF); // sector 0 of the track
        const qint64 n = std::min<qint64>(rest.size(), image.size() - track);
        std::memcpy(image.data() + track, rest.data(), size_t(n));
    }
    const DiskDirectory dir = readDiskDirectory(g, MemoryBytes(image));
    if (dir.sectorsRead > g.maxDirectorySectors || dir.diskName.size() > kCbmNameLength ||
        dir.entries.size() > qsizetype(dir.sectorsRead) * kSlotsPerSector)
        __builtin_trap();
    for (qsizetype i = 0; i < dir.entries.size(); ++i) {
        const DirEntry& e = dir.entries[i];
        if (e.index != i + 1 || e.name.size() > kCbmNameLength || e.typeText.isEmpty() ||
            e.typeByte == 0)
            __builtin_trap();
    }
    return 0;
}
