#include "formats/ByteSource.h"

#include <algorithm>
#include <cstring>

namespace vd::formats {

QByteArray ByteSource::bytes(qint64 offset, qint64 length) const
{
    if (offset < 0 || length <= 0 || offset >= size())
        return {};
    QByteArray result(qsizetype(std::min(length, size() - offset)), Qt::Uninitialized);
    const qint64 got = readAt(offset, result.data(), result.size());
    result.truncate(qsizetype(std::max<qint64>(got, 0)));
    return result;
}

quint8 ByteSource::byteAt(qint64 offset) const
{
    char c = 0;
    return readAt(offset, &c, 1) == 1 ? quint8(c) : 0;
}

qint64 MemoryBytes::readAt(qint64 offset, char* buffer, qint64 length) const
{
    if (offset < 0 || length <= 0 || offset >= m_bytes.size())
        return 0;
    const qint64 n = std::min(length, qint64(m_bytes.size()) - offset);
    std::memcpy(buffer, m_bytes.data() + offset, size_t(n));
    return n;
}

QByteArray untilZero(const QByteArray& bytes)
{
    const qsizetype zero = bytes.indexOf('\0');
    return zero < 0 ? bytes : bytes.left(zero);
}

quint32 littleEndian(QByteArrayView bytes, qsizetype offset, int width)
{
    quint32 value = 0;
    for (int i = width - 1; i >= 0; --i) {
        const qsizetype at = offset + i;
        const quint8 b = at >= 0 && at < bytes.size() ? quint8(bytes[at]) : 0;
        value = (value << 8) | b;
    }
    return value;
}

} // namespace vd::formats
