#include "formats/Gcr.h"

#include "formats/ByteSource.h"
#include "formats/CbmText.h"

#include <array>
#include <bit>
#include <vector>

namespace vd::formats {

namespace {

// The G64 header: signature, version, number of half-track slotCount, longest track; then one
// 32-bit offset per half-track slot (0: no data), each pointing at a 16-bit length and the
// track's bytes.
constexpr qsizetype kG64TrackCount = 9;
constexpr qsizetype kG64TrackTable = 12;
constexpr int kTrackOffsetSize = 4;
constexpr int kTrackLengthSize = 2;
constexpr int kMaxTrackBytes = 0x4000; // a real track holds at most about 7,900 bytes

constexpr int kSyncBits = 10; // a sync mark is at least this many 1 bits
constexpr quint8 kHeaderBlockId = 0x08;
constexpr quint8 kDataBlockId = 0x07;
constexpr int kHeaderBlockBytes = 6; // id, checksum, sector, track, id2, id1
constexpr int kDataBlockBytes = 258; // id, 256 data bytes, checksum
constexpr int kDirectoryTrack = 18;
constexpr int kMaxDataAttempts = 4; // data blocks decoded per sector, so repeats cost little

// 5-bit group -> 4-bit value; -1 marks the 16 groups that encode nothing.
constexpr std::array<int, 32> kGcrDecode = {
    -1, -1, -1, -1, -1, -1, -1, -1, -1, 8, 0,  1,  -1, 12, 4,  5,
    -1, -1, 2,  3,  -1, 15, 6,  7,  -1, 9, 10, 11, -1, 13, 14, -1,
};

// One track's bytes as a circular bit stream.
class TrackBits
{
public:
    explicit TrackBits(QByteArrayView bytes) : m_bytes(bytes), m_bits(qint64(bytes.size()) * 8) {}
    qint64 bits() const { return m_bits; }
    int bit(qint64 position) const
    {
        const qint64 p = position % m_bits;
        return (quint8(m_bytes[qsizetype(p / 8)]) >> (7 - p % 8)) & 1;
    }
    // The 5-bit group at `position`. Inside the track two bytes are read at once; only a group
    // across the track's end goes bit by bit (a sector is 2,600 groups, a track 70,000 bits).
    int group(qint64 position) const
    {
        const qint64 p = position < m_bits ? position : position % m_bits;
        if (p + 5 <= m_bits) {
            const qsizetype i = qsizetype(p >> 3);
            const int shift = int(p & 7);
            unsigned word = unsigned(quint8(m_bytes[i])) << 8;
            if (shift > 3)
                word |= quint8(m_bytes[i + 1]);
            return int((word >> (11 - shift)) & 0x1F);
        }
        int g = 0;
        for (int b = 0; b < 5; ++b)
            g = (g << 1) | bit(p + b);
        return g;
    }
    // Decodes `count` bytes from the groups starting at `position`; false on a group that
    // encodes nothing.
    bool decode(qint64 position, int count, quint8* out) const
    {
        for (int i = 0; i < count * 2; ++i) {
            const int nibble = kGcrDecode[size_t(group(position + qint64(i) * 5))];
            if (nibble < 0)
                return false;
            out[i / 2] = quint8(i % 2 == 0 ? nibble << 4 : out[i / 2] | nibble);
        }
        return true;
    }
    // Where the data behind each sync mark begins, in order, once per revolution. A mark
    // across the track's end counts whole: the run of 1 bits at the end of the track leads
    // into the first byte.
    std::vector<qint64> syncEnds() const
    {
        std::vector<qint64> ends;
        const qsizetype size = m_bytes.size();
        int run = 0;
        for (qsizetype i = size - 1; i >= 0 && run < kSyncBits; --i) {
            const quint8 byte = quint8(m_bytes[i]);
            run += std::countr_one(byte);
            if (byte != 0xFF)
                break;
        }
        for (qsizetype i = 0; i < size; ++i) {
            const quint8 byte = quint8(m_bytes[i]);
            if (byte == 0xFF) { // the common case inside a sync mark: no 0 bit to look at
                run += 8;
                continue;
            }
            for (int b = 7; b >= 0; --b) {
                if ((byte >> b) & 1) {
                    ++run;
                    continue;
                }
                if (run >= kSyncBits)
                    ends.push_back(qint64(i) * 8 + (7 - b));
                run = 0;
            }
        }
        return ends;
    }

private:
    QByteArrayView m_bytes;
    qint64 m_bits;
};

struct Sector
{
    quint8 status = kHeaderNotFound;
    int attempts = 0;
};

struct Image
{
    QByteArray data = QByteArray(d64Sectors(kD64ExtendedTracks) * 256, '\0');
    std::vector<Sector> sectors = std::vector<Sector>(size_t(d64Sectors(kD64ExtendedTracks)));
    Sector& at(int track, int sector) { return sectors[size_t(d64Offset(track, sector) / 256)]; }
};

// The bytes of a full track (1 to 40) inside the G64, or an empty view when it has none.
QByteArrayView trackBytes(QByteArrayView g64, int track)
{
    const int halfTrack = (track - 1) * 2;
    const int slotCount = quint8(g64[kG64TrackCount]);
    if (halfTrack >= slotCount)
        return {};
    const qint64 offset = littleEndian(
        g64, kG64TrackTable + qsizetype(halfTrack) * kTrackOffsetSize, kTrackOffsetSize);
    if (offset < kG64TrackTable || offset + kTrackLengthSize > g64.size())
        return {};
    const qint64 length = littleEndian(g64, qsizetype(offset), kTrackLengthSize);
    if (length == 0 || length > kMaxTrackBytes || offset + kTrackLengthSize + length > g64.size())
        return {};
    return g64.sliced(qsizetype(offset + kTrackLengthSize), qsizetype(length));
}

void readDataBlock(const TrackBits& bits, qint64 position, int track, int sector, Image& image)
{
    Sector& s = image.at(track, sector);
    if (s.status == kSectorOk || s.attempts >= kMaxDataAttempts)
        return;
    ++s.attempts;
    std::array<quint8, kDataBlockBytes> block{};
    if (!bits.decode(position, kDataBlockBytes, block.data()) || block[0] != kDataBlockId) {
        if (s.status != kDataChecksum)
            s.status = kDataNotFound;
        return;
    }
    quint8 sum = 0;
    for (int i = 1; i <= 256; ++i)
        sum ^= block[size_t(i)];
    if (s.status == kDataChecksum && sum != block[257])
        return; // keep the first damaged copy
    s.status = sum == block[257] ? kSectorOk : kDataChecksum;
    std::copy(block.begin() + 1, block.begin() + 257,
              image.data.begin() + qsizetype(d64Offset(track, sector)));
}

void readTrack(QByteArrayView bytes, int track, Image& image)
{
    const int sectors = sectorsPerTrack(track);
    const TrackBits bits(bytes);
    const std::vector<qint64> syncs = bits.bits() > 0 ? bits.syncEnds() : std::vector<qint64>();
    if (syncs.empty()) {
        for (int s = 0; s < sectors; ++s)
            image.at(track, s).status = kNoSync;
        return;
    }
    for (size_t k = 0; k < syncs.size(); ++k) {
        std::array<quint8, kHeaderBlockBytes> h{};
        if (!bits.decode(syncs[k], kHeaderBlockBytes, h.data()) || h[0] != kHeaderBlockId)
            continue;
        const int sector = h[2];
        if (h[1] != quint8(h[2] ^ h[3] ^ h[4] ^ h[5]) || h[3] != track || sector >= sectors)
            continue;
        // The data block follows behind the next sync mark.
        readDataBlock(bits, syncs[(k + 1) % syncs.size()], track, sector, image);
    }
}

bool anySectorRead(Image& image, int fromTrack, int toTrack)
{
    for (int t = fromTrack; t <= toTrack; ++t)
        for (int s = 0; s < sectorsPerTrack(t); ++s) {
            const quint8 st = image.at(t, s).status;
            if (st == kSectorOk || st == kDataChecksum)
                return true;
        }
    return false;
}

} // namespace

int sectorsPerTrack(int track)
{
    if (track <= 17)
        return 21;
    if (track <= 24)
        return 19;
    if (track <= 30)
        return 18;
    return 17;
}

qint64 d64Offset(int track, int sector)
{
    qint64 before = 0;
    for (int t = 1; t < track; ++t)
        before += sectorsPerTrack(t);
    return (before + sector) * 256;
}

int d64Sectors(int tracks)
{
    return int(d64Offset(tracks + 1, 0) / 256);
}

G64Conversion convertG64ToD64(QByteArrayView g64)
{
    G64Conversion result;
    if (g64.size() < kG64TrackTable ||
        upperLatin1(QString::fromLatin1(g64.first(kG64MagicLength))) != QLatin1String(kG64Magic)) {
        result.problem = QStringLiteral("no G64 signature");
        return result;
    }
    const int slotCount = quint8(g64[kG64TrackCount]);
    if (slotCount == 0 || kG64TrackTable + qint64(slotCount) * kTrackOffsetSize > g64.size()) {
        result.problem = QStringLiteral("broken track table");
        return result;
    }
    Image image;
    for (int track = 1; track <= kD64ExtendedTracks; ++track) {
        const QByteArrayView bytes = trackBytes(g64, track);
        readTrack(bytes, track, image);
    }
    if (!anySectorRead(image, kDirectoryTrack, kDirectoryTrack)) {
        result.problem = QStringLiteral("the directory track could not be read");
        return result;
    }
    result.tracks =
        anySectorRead(image, kD64Tracks + 1, kD64ExtendedTracks) ? kD64ExtendedTracks : kD64Tracks;
    const int count = d64Sectors(result.tracks);
    QByteArray errors(count, char(kSectorOk));
    for (int i = 0; i < count; ++i) {
        const quint8 st = image.sectors[size_t(i)].status;
        errors[i] = char(st);
        if (st == kSectorOk || st == kDataChecksum)
            ++result.sectorsRead;
        if (st != kSectorOk)
            ++result.sectorsFailed;
    }
    result.d64 = image.data.left(qsizetype(count) * 256);
    if (result.sectorsFailed > 0)
        result.d64 += errors;
    result.ok = true;
    return result;
}

} // namespace vd::formats
