#pragma once
// Where a reader gets its bytes from: a view of bytes in memory, or a file read piece by piece
// (FileBytes.h). A reader asks only for the pieces it needs and never sees more than the
// source holds: bytes beyond the end simply are not there.

#include <QByteArray>
#include <QByteArrayView>
#include <QtGlobal>

namespace vd::formats {

class ByteSource
{
public:
    virtual ~ByteSource() = default;
    // The length of the whole file or view.
    virtual qint64 size() const = 0;
    // Copies up to `length` bytes from `offset` into `buffer` and returns how many were there
    // (0 past the end). A source on a file throws ReadError when the file cannot be read.
    virtual qint64 readAt(qint64 offset, char* buffer, qint64 length) const = 0;

    // The bytes from `offset`, at most `length`; shorter near the end, empty past it.
    QByteArray bytes(qint64 offset, qint64 length) const;
    // One byte; 0 past the end.
    quint8 byteAt(qint64 offset) const;
};

// A source over bytes in memory. The view must outlive the source.
class MemoryBytes : public ByteSource
{
public:
    explicit MemoryBytes(QByteArrayView bytes) : m_bytes(bytes) {}
    qint64 size() const override { return m_bytes.size(); }
    qint64 readAt(qint64 offset, char* buffer, qint64 length) const override;

private:
    QByteArrayView m_bytes;
};

// A file known by its length alone, for readers that need no bytes: every read gives nothing.
class LengthOnly : public ByteSource
{
public:
    explicit LengthOnly(qint64 length) : m_length(length) {}
    qint64 size() const override { return m_length; }
    qint64 readAt(qint64, char*, qint64) const override { return 0; }

private:
    qint64 m_length;
};

// Bytes up to the first byte 0 (all of them when there is none), as the readers take header
// texts and names: "up to N bytes, ending at the first byte 0".
QByteArray untilZero(const QByteArray& bytes);

// A little-endian unsigned number of `width` bytes (1 to 4) at `offset` of `bytes`; missing
// bytes count as 0.
quint32 littleEndian(QByteArrayView bytes, qsizetype offset, int width);

} // namespace vd::formats
