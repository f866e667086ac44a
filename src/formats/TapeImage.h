#pragma once
// T64 tape images as the catalogue reads them: the header text, the entry count, the tape name
// and, for each directory slot, its start offset and name. Sizes come from the distance to the
// next entry in file order, found with one exchange per entry (not a full sort).

#include "formats/ByteSource.h"

#include <QString>
#include <QVector>

namespace vd::formats {

constexpr qint64 kT64HeaderText = 0;
constexpr int kT64HeaderTextLength = 32;
constexpr qint64 kT64CountHigh = 35; // one byte below a 16-bit field at 36, as the design reads
constexpr qint64 kT64CountLow = 36;
constexpr qint64 kT64TapeName = 40;
constexpr int kT64TapeNameLength = 24;
constexpr qint64 kT64Directory = 64;
constexpr int kT64EntrySize = 32;
constexpr int kT64EntryUsed = 0;  // inside an entry
constexpr int kT64EntryStart = 8; // 4 bytes, little-endian
constexpr int kT64EntryName = 16; // up to 16 bytes
constexpr int kT64EntryNameLength = 16;
constexpr int kT64MaxEntries = 400;
constexpr int kBlockBytes = 254;     // data bytes of a disk block
constexpr int kLoadAddressBytes = 2; // what the tape data lacks against a file on disk

struct TapeEntry
{
    QString name; // blanks cut at the right end; "" for an unused slot
    qint64 blocks = 0;
    int index = 0; // slot number + 1
    bool used = false;
};

struct TapeDirectory
{
    QString header; // the header text as it stands
    QString tapeName;
    int count = 0;              // after the limit
    QVector<TapeEntry> entries; // every slot up to the count, used or not
};

// The header test: holds "TAPE" and not "RAW" (upper-cased), and begins with "C64" as it is.
bool isT64Header(const QString& header);
// The header text alone (what the test looks at).
QString readT64Header(const ByteSource& tape);
// The whole directory; the header is not tested here.
TapeDirectory readT64Directory(const ByteSource& tape);

// Rounds to the nearest whole number, exact halves to the even neighbour.
qint64 roundHalfEven(double value);

} // namespace vd::formats
