#pragma once
// Commodore disk images (D64, D71, D81) as the catalogue reads them: the disk name and the
// directory sectors, at fixed byte positions, without any track/sector model. The chain of
// directory sectors is followed by the difference of sector numbers inside the directory's
// own track, and a walk reads at most a fixed number of sectors.

#include "formats/ByteSource.h"

#include <QString>
#include <QVector>
#include <span>

namespace vd::formats {

enum class DiskKind
{
    D64,
    D71,
    D81
};

constexpr int kSectorSize = 256;
constexpr int kSlotSize = 32;
constexpr int kSlotsPerSector = kSectorSize / kSlotSize;
constexpr int kCbmNameLength = 16;
constexpr quint8 kPadByte = 0xA0;
constexpr char16_t kPadChar = u'\u00A0'; // kPadByte as text

// Positions inside a directory sector. The link lies in slot 0 only.
constexpr int kLinkTrack = 0;
constexpr int kLinkSector = 1;
// Positions inside a slot.
constexpr int kSlotType = 2;
constexpr int kSlotFileTrack = 3;
constexpr int kSlotFileSector = 4;
constexpr int kSlotName = 5;
constexpr int kSlotBlocksLow = 30;
constexpr int kSlotBlocksHigh = 31;

struct DiskGeometry
{
    DiskKind kind;
    int fileType;                    // iFileType of the catalogue
    std::span<const qint64> lengths; // the accepted file lengths
    qint64 diskNameOffset;           // 16 bytes
    qint64 firstDirectoryOffset;     // the first directory sector
    int firstDirectorySector;        // its sector number
    int maxDirectorySectors;         // the guard of the walk
    bool cbmPartitions;              // type bits "101" read as "CBM" (1581 partitions)
};

const DiskGeometry& diskGeometry(DiskKind kind);
// Whether `length` is one of the lengths of that kind.
bool acceptsLength(const DiskGeometry& geometry, qint64 length);

// One directory entry as the walk finds it.
struct DirEntry
{
    QString name; // the 16 name bytes after the pad rule, one character per byte
    quint8 typeByte = 0;
    quint8 fileTrack = 0;
    quint8 fileSector = 0;
    int blocks = 0;    // high byte * 256 + low byte
    int index = 0;     // running number of existing entries, from 1
    int chainStep = 0; // which directory sector of the walk, from 1
    QString typeText;  // FileTypeText, or "CBM"
};

struct DiskDirectory
{
    QString diskName; // after the pad rule
    QVector<DirEntry> entries;
    int sectorsRead = 0;
};

// Reads the disk name and walks the directory. Bytes the source does not hold read as 0, so a
// short source ends the walk instead of reading past it.
DiskDirectory readDiskDirectory(const DiskGeometry& geometry, const ByteSource& image);

// The pad rule: the final unbroken run of 0xA0 is cut; 0xA0 inside the name and bytes 0 stay.
QString trimPadding(const QString& name);

// The value's binary digits, most significant first, without leading zeros ("10" for 2).
QString ByteToBitString(quint8 value);
// "PRG", "SEQ", ... from the last three digits, with "<" when the second digit is "1".
QString FileTypeText(const QString& bits);

} // namespace vd::formats
