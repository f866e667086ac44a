// The GCR decoder from any bytes. With the first byte's top bit set the rest is a whole G64
// file; otherwise the rest becomes the bits of track 18 (and the byte's low bits pick how many
// other tracks repeat it) inside a well-formed G64, so the decoder's sync search and block
// decoding see arbitrary bit streams.

#include "formats/Gcr.h"

#include <cstdint>

using namespace vd::formats;

namespace {

QByteArray g64Around(QByteArrayView track, int copies)
{
    constexpr int kHalfTracks = 84;
    QByteArray g64("GCR-1541");
    g64.append(char(0));
    g64.append(char(kHalfTracks));
    g64.append(char(0xF8));
    g64.append(char(0x1E));
    QByteArray table(kHalfTracks * 8, '\0');
    const qint64 data = 12 + table.size();
    for (int t = 18; t < 18 + copies && t <= 40; ++t) {
        const qint64 at = data;
        for (int b = 0; b < 4; ++b)
            table[(t - 1) * 2 * 4 + b] = char((at >> (8 * b)) & 0xFF);
    }
    g64 += table;
    g64.append(char(track.size() & 0xFF));
    g64.append(char((track.size() >> 8) & 0xFF));
    g64 += track.toByteArray();
    return g64;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const QByteArrayView rest(reinterpret_cast<const char*>(data) + 1, qsizetype(size - 1));
    const QByteArray g64 =
        (data[0] & 0x80)
            ? rest.toByteArray()
            : g64Around(rest.first(std::min<qsizetype>(rest.size(), 0x4000)), 1 + data[0] % 23);
    const G64Conversion c = convertG64ToD64(g64);
    if (c.ok) {
        const qsizetype n = c.d64.size();
        if (n != 174848 && n != 175531 && n != 196608 && n != 197376)
            __builtin_trap();
    } else if (c.problem.isEmpty() || !c.d64.isEmpty()) {
        __builtin_trap();
    }
    return 0;
}
