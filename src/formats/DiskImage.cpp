#include "formats/DiskImage.h"

#include "catalogue/CatalogueSchema.h"
#include "platform/Latin1.h"

#include <array>

namespace vd::formats {

namespace {

// 35 tracks, 35 tracks with error bytes, 40 tracks, 40 tracks with error bytes.
constexpr std::array<qint64, 4> kD64Lengths = {174848, 175531, 196608, 197376};
// Double-sided, without and with error bytes.
constexpr std::array<qint64, 2> kD71Lengths = {349696, 351062};
// 80 tracks, without and with error bytes.
constexpr std::array<qint64, 2> kD81Lengths = {819200, 822400};

// Track 18 of a 1541 disk: the disk name at $16590, the directory from sector 1 at $16600.
constexpr qint64 kD64DiskName = 0x16590;
constexpr qint64 kD64Directory = 0x16600;
constexpr int kD64DirectorySector = 1;
constexpr int kD64MaxDirectorySectors = 18;
// Track 40 of a 1581 disk: the header at $61800 (name at +4), the directory from sector 3.
constexpr qint64 kD81DiskName = 0x61804;
constexpr qint64 kD81Directory = 0x61B00;
constexpr int kD81DirectorySector = 3;
constexpr int kD81MaxDirectorySectors = 37;

constexpr DiskGeometry kD64 = {
    DiskKind::D64,       catalogue::kFileD64,     kD64Lengths, kD64DiskName, kD64Directory,
    kD64DirectorySector, kD64MaxDirectorySectors, false};
constexpr DiskGeometry kD71 = {
    DiskKind::D71,       catalogue::kFileD71,     kD71Lengths, kD64DiskName, kD64Directory,
    kD64DirectorySector, kD64MaxDirectorySectors, false};
constexpr DiskGeometry kD81 = {
    DiskKind::D81,       catalogue::kFileD81,     kD81Lengths, kD81DiskName, kD81Directory,
    kD81DirectorySector, kD81MaxDirectorySectors, true};

QString nameText(const QByteArray& bytes)
{
    return trimPadding(platform::latin1ToText(bytes));
}

DirEntry readSlot(const QByteArray& sector, int slot, const DiskGeometry& geometry)
{
    const int base = slot * kSlotSize;
    auto at = [&](int offset) { return quint8(sector[base + offset]); };
    DirEntry e;
    e.typeByte = at(kSlotType);
    e.fileTrack = at(kSlotFileTrack);
    e.fileSector = at(kSlotFileSector);
    e.blocks = at(kSlotBlocksHigh) * 256 + at(kSlotBlocksLow);
    e.name = nameText(sector.mid(base + kSlotName, kCbmNameLength));
    if (e.typeByte != 0) {
        const QString bits = ByteToBitString(e.typeByte);
        e.typeText = geometry.cbmPartitions && bits.endsWith(QLatin1String("101"))
                         ? QStringLiteral("CBM")
                         : FileTypeText(bits);
    }
    return e;
}

} // namespace

const DiskGeometry& diskGeometry(DiskKind kind)
{
    switch (kind) {
    case DiskKind::D71:
        return kD71;
    case DiskKind::D81:
        return kD81;
    case DiskKind::D64:
        break;
    }
    return kD64;
}

bool acceptsLength(const DiskGeometry& geometry, qint64 length)
{
    for (const qint64 accepted : geometry.lengths)
        if (accepted == length)
            return true;
    return false;
}

DiskDirectory readDiskDirectory(const DiskGeometry& geometry, const ByteSource& image)
{
    DiskDirectory dir;
    dir.diskName = nameText(image.bytes(geometry.diskNameOffset, kCbmNameLength));
    qint64 position = geometry.firstDirectoryOffset;
    int sector = geometry.firstDirectorySector;
    int index = 1;
    for (int read = 1; read <= geometry.maxDirectorySectors; ++read) {
        QByteArray bytes = image.bytes(position, kSectorSize);
        bytes.append(QByteArray(kSectorSize - bytes.size(), '\0')); // missing bytes read as 0
        dir.sectorsRead = read;
        for (int slot = 0; slot < kSlotsPerSector; ++slot) {
            DirEntry e = readSlot(bytes, slot, geometry);
            if (e.typeByte == 0)
                continue; // no entry: no row, and the index stays
            e.index = index++;
            e.chainStep = read;
            dir.entries.push_back(e);
        }
        const quint8 linkTrack = quint8(bytes[kLinkTrack]);
        const quint8 linkSector = quint8(bytes[kLinkSector]);
        if (linkTrack == 0 || linkSector == 0)
            break;
        // The link is followed inside the directory's own track, whatever track it names.
        position += qint64(linkSector - sector) * kSectorSize;
        sector = linkSector;
    }
    return dir;
}

QString trimPadding(const QString& name)
{
    qsizetype runStart = -1;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (name[i] == QChar(kPadChar)) {
            if (runStart < 0)
                runStart = i;
        } else {
            runStart = -1;
        }
    }
    return runStart < 0 ? name : name.left(runStart);
}

QString ByteToBitString(quint8 value)
{
    if (value == 0)
        return QStringLiteral("0");
    QString bits;
    for (; value != 0; value >>= 1)
        bits.prepend(value & 1 ? QLatin1Char('1') : QLatin1Char('0'));
    return bits;
}

QString FileTypeText(const QString& bits)
{
    const QString last = bits.right(3);
    QString text;
    if (last == QLatin1String("100"))
        text = QStringLiteral("REL");
    else if (last == QLatin1String("011"))
        text = QStringLiteral("USR");
    else if (last == QLatin1String("010"))
        text = QStringLiteral("PRG");
    else if (last == QLatin1String("001"))
        text = QStringLiteral("SEQ");
    else if (last == QLatin1String("000"))
        text = QStringLiteral("DEL");
    else
        text = QStringLiteral("???");
    if (bits.size() > 1 && bits[1] == QLatin1Char('1'))
        text.prepend(QLatin1Char('<'));
    return text;
}

} // namespace vd::formats
