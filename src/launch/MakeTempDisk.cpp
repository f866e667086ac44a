#include "launch/MakeTempDisk.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "formats/DiskImage.h"
#include "import/clsFileManager.h"
#include "platform/DialogService.h"
#include "platform/Latin1.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace vd::launch {

namespace {

constexpr int kD81FileType = 13;
constexpr int kSlotSize = 32;
constexpr int kSlotsPerSector = 8;
constexpr int kEntryStart = 2; // bytes 2..31 of a slot are swapped, the link stays
constexpr int kEntryLength = 30;
constexpr int kNameOffset = 5;
constexpr int kNameLength = 16;
constexpr int kBlocksOffset = 30;

// The directory as this routine walks it. The sector limits are the other way round from the
// directory readers' (18 for a 1581, 37 for a 1541): kept so on purpose.
struct WalkGeometry
{
    qint64 firstOffset;
    int firstSector;
    int maxSectors;
};

WalkGeometry walkGeometry(int iFileType)
{
    if (iFileType == kD81FileType)
        return {0x61B00, 3, 18};
    return {0x16600, 1, 37};
}

quint8 byteAt(const QByteArray& bytes, qint64 pos)
{
    return (pos >= 0 && pos < bytes.size()) ? quint8(bytes.at(pos)) : 0;
}

QByteArray sliceAt(const QByteArray& bytes, qint64 pos, int length)
{
    QByteArray slice(length, '\0');
    for (int i = 0; i < length; ++i)
        slice[i] = char(byteAt(bytes, pos + i));
    return slice;
}

QString slotName(const QByteArray& bytes, qint64 slot)
{
    const QString raw = platform::latin1ToText(sliceAt(bytes, slot + kNameOffset, kNameLength));
    return import::CleanEntryName(formats::trimPadding(raw));
}

// Position of the slot that holds `key`; -1 when none does or it is the first entry.
qint64 findSlot(const QByteArray& bytes, const WalkGeometry& geometry, const QString& key)
{
    qint64 sectorPos = geometry.firstOffset;
    int sector = geometry.firstSector;
    int number = 1;
    for (int visited = 1;; ++visited) {
        for (int i = 0; i < kSlotsPerSector; ++i) {
            const qint64 slot = sectorPos + qint64(i) * kSlotSize;
            if (byteAt(bytes, slot + 2) == 0)
                continue;
            QString name = slotName(bytes, slot);
            if (name.isEmpty())
                name = u'@' + QString::number(number);
            const int blocks =
                byteAt(bytes, slot + kBlocksOffset) + 256 * byteAt(bytes, slot + kBlocksOffset + 1);
            if (name + u'@' + QString::number(blocks) == key)
                return number == 1 ? -1 : slot;
            ++number;
        }
        const quint8 nextTrack = byteAt(bytes, sectorPos);
        const quint8 nextSector = byteAt(bytes, sectorPos + 1);
        if (nextTrack == 0 || nextSector == 0 || visited >= geometry.maxSectors)
            return -1;
        sectorPos += (qint64(nextSector) - sector) * 256;
        sector = nextSector;
    }
}

bool writeAt(QFile& file, qint64 pos, const QByteArray& bytes)
{
    return file.seek(pos) && file.write(bytes) == bytes.size();
}

QString failure(const QString& reason)
{
    platform::dialogs().msgBox(app::Translate("Fehler beim Erstellen der Temp-Datei: ") + reason);
    return {};
}

} // namespace

QString MakeTempDisk(const QString& path, qint64 categoryId, int iFileType, QString name, int lSize,
                     int lIndex)
{
    const QString temp = app::gTempPath + u'/' + QString::number(categoryId) + path.right(4);
    if (!QFileInfo::exists(temp)) {
        QDir().mkpath(app::gTempPath);
        QFile source(path);
        if (!source.copy(temp))
            return failure(source.errorString());
    }
    if (name.isEmpty())
        name = u'@' + QString::number(lIndex);
    const QString key = name + u'@' + QString::number(lSize);

    QFile file(temp);
    if (!file.open(QIODevice::ReadWrite))
        return failure(file.errorString());
    const QByteArray bytes = file.readAll();
    const WalkGeometry geometry = walkGeometry(iFileType);
    const qint64 found = findSlot(bytes, geometry, key);
    if (found >= 0) {
        const qint64 first = geometry.firstOffset + kEntryStart;
        const QByteArray firstEntry = sliceAt(bytes, first, kEntryLength);
        const QByteArray foundEntry = sliceAt(bytes, found + kEntryStart, kEntryLength);
        if (!writeAt(file, first, foundEntry) || !writeAt(file, found + kEntryStart, firstEntry))
            return failure(file.errorString());
    }
    return temp;
}

} // namespace vd::launch
