#include "support/C64ImageWriter.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace vd::test {

namespace {

constexpr int kD64Track18 = 0x16500; // track 18, sector 0 of a 1541 image
constexpr int kD81Track40 = 0x61800; // track 40, sector 0 of a 1581 image

void put(QByteArray& bytes, qint64 at, const QByteArray& data)
{
    bytes.replace(qsizetype(at), data.size(), data);
}

// The order in which a 1541 fills its directory track (interleave 3).
QVector<int> d64DirectoryOrder()
{
    return {1, 4, 7, 10, 13, 16, 2, 5, 8, 11, 14, 17, 3, 6, 9, 12, 15, 18};
}

QVector<int> d81DirectoryOrder()
{
    QVector<int> order;
    for (int s = 3; s < 40; ++s)
        order << s;
    return order;
}

// --- GCR ------------------------------------------------------------------------------------

// 4-bit value -> 5-bit code, as the 1541 writes it.
const quint8 kGcr[16] = {0x0A, 0x0B, 0x12, 0x13, 0x0E, 0x0F, 0x16, 0x17,
                         0x09, 0x19, 0x1A, 0x1B, 0x0D, 0x1D, 0x1E, 0x15};

class BitWriter
{
public:
    void bits(quint32 value, int count)
    {
        for (int i = count - 1; i >= 0; --i) {
            m_acc = quint8((m_acc << 1) | ((value >> i) & 1));
            if (++m_n == 8) {
                m_out.append(char(m_acc));
                m_n = 0;
                m_acc = 0;
            }
        }
    }
    void gcr(const QByteArray& plain)
    {
        for (char c : plain) {
            bits(kGcr[quint8(c) >> 4], 5);
            bits(kGcr[quint8(c) & 15], 5);
        }
    }
    void raw(quint8 byte, int count)
    {
        for (int i = 0; i < count; ++i)
            bits(byte, 8);
    }
    QByteArray take() { return m_out; }

private:
    QByteArray m_out;
    quint8 m_acc = 0;
    int m_n = 0;
};

int sectorsOn(int track)
{
    return track <= 17 ? 21 : track <= 24 ? 19 : track <= 30 ? 18 : 17;
}

QByteArray encodeTrack(const QByteArray& d64, int track, qint64 trackOffset, bool breakOne,
                       int breakSector)
{
    constexpr quint8 kId1 = '0', kId2 = '0';
    BitWriter w;
    for (int s = 0; s < sectorsOn(track); ++s) {
        QByteArray header;
        header.append(char(0x08));
        header.append(char(s ^ track ^ kId2 ^ kId1));
        header.append(char(s));
        header.append(char(track));
        header.append(char(kId2));
        header.append(char(kId1));
        header.append(char(0x0F));
        header.append(char(0x0F));
        w.raw(0xFF, 5);
        w.gcr(header);
        w.raw(0x55, 9);
        const QByteArray data = d64.mid(trackOffset + s * 256, 256);
        quint8 sum = 0;
        for (char c : data)
            sum ^= quint8(c);
        if (breakOne && s == breakSector)
            sum ^= 0xFF;
        QByteArray block;
        block.append(char(0x07));
        block.append(data);
        block.append(char(sum));
        block.append(char(0));
        block.append(char(0));
        w.raw(0xFF, 5);
        w.gcr(block);
        w.raw(0x55, 8);
    }
    return w.take();
}

} // namespace

QByteArray padded(const QByteArray& name)
{
    QByteArray n = name.left(16);
    return n + QByteArray(16 - n.size(), char(0xA0));
}

DiskWriter::DiskWriter(qint64 length, qint64 trackStart, qint64 nameOffset, int firstSector)
    : m_bytes(qsizetype(length), '\0'), m_trackStart(trackStart), m_nameOffset(nameOffset),
      m_firstSector(firstSector)
{}

DiskWriter DiskWriter::d64(qint64 length)
{
    return DiskWriter(length, kD64Track18, kD64Track18 + 0x90, 1);
}

DiskWriter DiskWriter::d71(qint64 length)
{
    return DiskWriter(length, kD64Track18, kD64Track18 + 0x90, 1);
}

DiskWriter DiskWriter::d81(qint64 length)
{
    return DiskWriter(length, kD81Track40, kD81Track40 + 4, 3);
}

DiskWriter& DiskWriter::name(const QByteArray& sixteenBytes)
{
    put(m_bytes, m_nameOffset, sixteenBytes.size() == 16 ? sixteenBytes : padded(sixteenBytes));
    return *this;
}

DiskWriter& DiskWriter::slot(int sector, int index, const Slot& s)
{
    const qint64 at = sectorOffset(sector) + index * 32;
    m_bytes[qsizetype(at + 2)] = char(s.type);
    m_bytes[qsizetype(at + 3)] = char(s.track);
    m_bytes[qsizetype(at + 4)] = char(s.sector);
    put(m_bytes, at + 5, s.name.size() == 16 ? s.name : padded(s.name));
    m_bytes[qsizetype(at + 30)] = char(s.blocks & 0xFF);
    m_bytes[qsizetype(at + 31)] = char((s.blocks >> 8) & 0xFF);
    return *this;
}

DiskWriter& DiskWriter::link(int sector, quint8 track, quint8 nextSector)
{
    m_bytes[qsizetype(sectorOffset(sector))] = char(track);
    m_bytes[qsizetype(sectorOffset(sector) + 1)] = char(nextSector);
    return *this;
}

DiskWriter& DiskWriter::entries(const QVector<Slot>& slotList)
{
    const bool d81 = m_firstSector == 3;
    const QVector<int> order = d81 ? d81DirectoryOrder() : d64DirectoryOrder();
    const quint8 track = d81 ? 40 : 18;
    const int sectors = std::max<int>(1, int((slotList.size() + 7) / 8));
    for (int i = 0; i < sectors && i < order.size(); ++i) {
        for (int k = 0; k < 8 && i * 8 + k < slotList.size(); ++k)
            slot(order[i], k, slotList[i * 8 + k]);
        if (i + 1 < sectors && i + 1 < order.size())
            link(order[i], track, quint8(order[i + 1]));
        else
            link(order[i], 0, 0xFF);
    }
    return *this;
}

bool DiskWriter::save(const QString& path) const
{
    return writeFile(path, m_bytes);
}

QByteArray t64(const QByteArray& header, int count, const QByteArray& tapeName,
               const QVector<TapeSlot>& slotList, qint64 length)
{
    const qint64 directoryEnd = 64 + qint64(slotList.size()) * 32;
    QByteArray bytes(qsizetype(std::max(length, directoryEnd)), '\0');
    put(bytes, 0, header.left(32));
    bytes[35] = char((count >> 8) & 0xFF);
    bytes[36] = char(count & 0xFF);
    put(bytes, 40, tapeName.left(24));
    for (qsizetype i = 0; i < slotList.size(); ++i) {
        const qint64 at = 64 + i * 32;
        bytes[qsizetype(at)] = char(slotList[i].used ? 1 : 0);
        bytes[qsizetype(at + 1)] = char(0x82);
        for (int b = 0; b < 4; ++b)
            bytes[qsizetype(at + 8 + b)] = char((slotList[i].start >> (8 * b)) & 0xFF);
        put(bytes, at + 16, slotList[i].name.left(16));
    }
    bytes.truncate(qsizetype(length));
    return bytes;
}

QByteArray g64FromD64(const QByteArray& d64, int breakTrack, int breakSector)
{
    constexpr int kHalfTracks = 84;
    constexpr int kMaxTrack = 7928;
    QByteArray g64("GCR-1541");
    g64.append(char(0));
    g64.append(char(kHalfTracks));
    g64.append(char(kMaxTrack & 0xFF));
    g64.append(char(kMaxTrack >> 8));
    const qint64 tableEnd = 12 + kHalfTracks * 8;
    QByteArray offsets(kHalfTracks * 4, '\0');
    QByteArray speeds(kHalfTracks * 4, '\0');
    QByteArray tracks;
    qint64 trackOffset = 0;
    for (int t = 1; t <= 35; ++t) {
        QByteArray bits = encodeTrack(d64, t, trackOffset, t == breakTrack, breakSector);
        trackOffset += sectorsOn(t) * 256;
        const qint64 at = tableEnd + tracks.size();
        const int half = (t - 1) * 2;
        for (int b = 0; b < 4; ++b)
            offsets[half * 4 + b] = char((at >> (8 * b)) & 0xFF);
        speeds[half * 4] = char(t <= 17 ? 3 : t <= 24 ? 2 : t <= 30 ? 1 : 0);
        tracks.append(char(bits.size() & 0xFF));
        tracks.append(char(bits.size() >> 8));
        tracks.append(bits);
        tracks.append(QByteArray(kMaxTrack - bits.size(), char(0x55)));
    }
    return g64 + offsets + speeds + tracks;
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

int runTool(const QString& program, const QStringList& arguments, QString* output)
{
    QProcess p;
    p.start(program, arguments);
    if (!p.waitForStarted(10000))
        return -1;
    p.waitForFinished(60000);
    if (output)
        *output = QString::fromLocal8Bit(p.readAllStandardError() + p.readAllStandardOutput());
    return p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
}

bool haveTool(const QString& program)
{
    return !QStandardPaths::findExecutable(program).isEmpty();
}

QString realC64Folder()
{
    QString root = qEnvironmentVariable("VD_TESTDATA");
    if (root.isEmpty())
        root = QStringLiteral(VD_TESTDATA_DIR);
    const QString folder = QDir(root).filePath(QStringLiteral("c64"));
    return QDir(folder).exists() ? QDir(folder).absolutePath() : QString();
}

} // namespace vd::test
