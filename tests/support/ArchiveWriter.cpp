#include "support/ArchiveWriter.h"

#include "support/C64ImageWriter.h"

#include <array>
#include <QProcess>

namespace vd::test {

namespace {

quint32 crc32(const QByteArray& data)
{
    static const auto table = [] {
        std::array<quint32, 256> t{};
        for (quint32 i = 0; i < 256; ++i) {
            quint32 c = i;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[i] = c;
        }
        return t;
    }();
    quint32 crc = 0xFFFFFFFFu;
    for (const char ch : data)
        crc = table[(crc ^ quint8(ch)) & 0xFF] ^ (crc >> 8);
    return crc ^ 0xFFFFFFFFu;
}

void put16(QByteArray& out, quint32 v)
{
    out.append(char(v & 0xFF)).append(char((v >> 8) & 0xFF));
}

void put32(QByteArray& out, quint32 v)
{
    put16(out, v & 0xFFFF);
    put16(out, v >> 16);
}

// Raw deflate: qCompress gives a 4-byte length, a 2-byte zlib header, the stream and a
// 4-byte Adler-32.
QByteArray deflateRaw(const QByteArray& data)
{
    const QByteArray z = qCompress(data, 9);
    return z.mid(6, z.size() - 10);
}

} // namespace

QString archiveTool(const QString& type)
{
    return type == QLatin1String("cab") ? QStringLiteral("gcab") : QStringLiteral("7z");
}

bool packArchive(const QString& type, const QString& archive, const QString& folder,
                 const QStringList& members, const QStringList& extraOptions)
{
    QProcess p;
    p.setWorkingDirectory(folder);
    if (type == QLatin1String("cab"))
        p.start(QStringLiteral("gcab"), QStringList{"-c", "-z", archive} + members);
    else
        p.start(QStringLiteral("7z"), QStringList{"a", "-bd", "-y", "-t" + type} + extraOptions +
                                          QStringList{archive} + members);
    if (!p.waitForStarted())
        return false;
    p.waitForFinished(120000);
    return p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

QByteArray rawZip(const QVector<RawZipMember>& members)
{
    QByteArray out;
    QByteArray central;
    for (const RawZipMember& m : members) {
        const QByteArray body = m.deflate ? deflateRaw(m.data) : m.data;
        const quint32 crc = crc32(m.data);
        const quint32 offset = quint32(out.size());
        const quint32 method = m.deflate ? 8 : 0;
        put32(out, 0x04034b50);
        put16(out, 20);
        put16(out, 0);
        put16(out, method);
        put32(out, 0); // time and date
        put32(out, crc);
        put32(out, quint32(body.size()));
        put32(out, quint32(m.data.size()));
        put16(out, quint32(m.name.size()));
        put16(out, 0);
        out += m.name + body;

        put32(central, 0x02014b50);
        put16(central, m.unixMode ? 0x0314 : 20); // made by Unix when it carries a mode
        put16(central, 20);
        put16(central, 0);
        put16(central, method);
        put32(central, 0);
        put32(central, crc);
        put32(central, quint32(body.size()));
        put32(central, quint32(m.data.size()));
        put16(central, quint32(m.name.size()));
        put32(central, 0); // extra and comment lengths
        put16(central, 0); // disk
        put16(central, 0); // internal attributes
        put32(central, m.unixMode << 16);
        put32(central, offset);
        central += m.name;
    }
    const quint32 centralOffset = quint32(out.size());
    out += central;
    put32(out, 0x06054b50);
    put32(out, 0);
    put16(out, quint32(members.size()));
    put16(out, quint32(members.size()));
    put32(out, quint32(central.size()));
    put32(out, centralOffset);
    put16(out, 0);
    return out;
}

} // namespace vd::test
