#pragma once
// G64 images (the raw GCR bit stream of each track of a 1541 disk) decoded into the D64 that
// the catalogue reads: each track's sync marks are found, header and data blocks are decoded
// from their 5-bit groups, and every sector lands at its place in a 35- or 40-track image.
// Sectors that could not be read get an error byte, as in a D64 with error bytes.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace vd::formats {

inline constexpr char kG64Magic[] = "GCR-1541";
constexpr int kG64MagicLength = 8;

// The error bytes of a D64, one per sector.
enum SectorStatus : quint8
{
    kSectorOk = 0x01,
    kHeaderNotFound = 0x02, // 20 READ ERROR
    kNoSync = 0x03,         // 21 READ ERROR
    kDataNotFound = 0x04,   // 22 READ ERROR
    kDataChecksum = 0x05,   // 23 READ ERROR
};

constexpr int kD64Tracks = 35;
constexpr int kD64ExtendedTracks = 40;
// Sectors of a 1541 track (1 to 40).
int sectorsPerTrack(int track);
// Offset of a sector in a D64.
qint64 d64Offset(int track, int sector);
// Sectors of a D64 of that many tracks.
int d64Sectors(int tracks);

struct G64Conversion
{
    bool ok = false;
    QByteArray d64; // 174848, 175531, 196608 or 197376 bytes when ok
    int tracks = 0;
    int sectorsRead = 0; // sectors with their data (checksum errors included)
    int sectorsFailed = 0;
    QString problem; // why ok is false
};

// Decodes a whole G64. It fails on a wrong signature, a broken track table, or when no sector
// of the directory track (18) could be read; otherwise unreadable sectors are zeros with their
// error byte. Every walk is bounded by the image's own length.
G64Conversion convertG64ToD64(QByteArrayView g64);

} // namespace vd::formats
