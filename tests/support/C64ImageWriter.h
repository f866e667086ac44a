#pragma once
// Small writers of C64 files with exact byte layouts, for tests: disk images whose directory
// sectors are placed by hand, T64 tapes, G64 images encoded from a D64, and the helpers that
// run cc1541 and cbmconvert for real images. Positions are written here from the formats'
// own documentation (track 18 of a 1541 starts at $16500, track 40 of a 1581 at $61800), not
// taken from the program's readers.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace vd::test {

// One directory slot.
struct Slot
{
    quint8 type = 0x82;
    QByteArray name; // up to 16 bytes; padded with $A0
    int blocks = 0;
    quint8 track = 17; // the file's first track and sector (read, never followed)
    quint8 sector = 0;
};

// A 16-byte C64 name: `name` followed by $A0 up to 16 bytes.
QByteArray padded(const QByteArray& name);

class DiskWriter
{
public:
    // An image of `length` bytes, zeros, with the directory track of a 1541 (D64, D71) or of a
    // 1581 (D81) at its place.
    static DiskWriter d64(qint64 length = 174848);
    static DiskWriter d71(qint64 length = 349696);
    static DiskWriter d81(qint64 length = 819200);

    // The disk name field (16 bytes as given, or padded()).
    DiskWriter& name(const QByteArray& sixteenBytes);
    // A slot of a sector of the directory track.
    DiskWriter& slot(int sector, int index, const Slot& slot);
    // The link of a sector of the directory track.
    DiskWriter& link(int sector, quint8 track, quint8 nextSector);
    // Fills sectors one after the other from the first directory sector with `slotList`, eight
    // per sector, linked in order (the last link is 0/255).
    DiskWriter& entries(const QVector<Slot>& slotList);

    QByteArray bytes() const { return m_bytes; }
    bool save(const QString& path) const;

private:
    DiskWriter(qint64 length, qint64 trackStart, qint64 nameOffset, int firstSector);
    qint64 sectorOffset(int sector) const { return m_trackStart + qint64(sector) * 256; }

    QByteArray m_bytes;
    qint64 m_trackStart;
    qint64 m_nameOffset;
    int m_firstSector;
};

// One T64 directory entry.
struct TapeSlot
{
    bool used = true;
    quint32 start = 0;
    QByteArray name;
};

// A T64: header text, the count at bytes 35 (high) and 36 (low) as the catalogue reads it,
// the tape name at 40, entries from 64, zeros up to `length` (at least the directory).
QByteArray t64(const QByteArray& header, int count, const QByteArray& tapeName,
               const QVector<TapeSlot>& slotList, qint64 length);

// The GCR encoding of a D64 (35 tracks, 683 sectors) as a G64 of 84 half-track slotList with
// standard gaps. `breakSector` (track, sector), when set, gets a wrong data checksum.
QByteArray g64FromD64(const QByteArray& d64, int breakTrack = 0, int breakSector = 0);

bool writeFile(const QString& path, const QByteArray& bytes);

// Runs a tool; returns its exit code (-1 when it did not start), with stderr in `output`.
int runTool(const QString& program, const QStringList& arguments, QString* output = nullptr);
bool haveTool(const QString& program);

// The folder of the shared real C64 files, "" when it is not there.
QString realC64Folder();

} // namespace vd::test
