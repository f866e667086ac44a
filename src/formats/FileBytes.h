#pragma once
// A file on disk as a ByteSource: opened read-only, read at the offsets asked for, never
// loaded whole. Only regular files open (a pipe or a device named like an image would block
// or never end).

#include "formats/ByteSource.h"

#include <QString>
#include <stdexcept>

namespace vd::formats {

// A file that could not be opened or read; what() says which and why.
class ReadError : public std::runtime_error
{
public:
    explicit ReadError(const QString& message) : std::runtime_error(message.toStdString()) {}
};

class FileBytes : public ByteSource
{
public:
    FileBytes() = default;
    explicit FileBytes(const QString& path) { open(path); }
    ~FileBytes() override;
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    // False when the file is missing, unreadable or not a regular file; error() says why.
    bool open(const QString& path);
    void close();
    bool isOpen() const { return m_fd >= 0; }
    QString error() const { return m_error; }

    qint64 size() const override { return m_size; }
    // Throws ReadError when the system fails to read (not for a short read at the end).
    qint64 readAt(qint64 offset, char* buffer, qint64 length) const override;

private:
    int m_fd = -1;
    qint64 m_size = 0;
    QString m_path;
    QString m_error;
};

// The length of a regular file; -1 when there is none at `path`.
qint64 fileLength(const QString& path);

// The whole file, when it is a regular file of at most `limit` bytes, with `ok` true;
// otherwise empty with `ok` false. Throws ReadError when reading fails half-way.
QByteArray readWholeFile(const QString& path, qint64 limit, bool* ok);

} // namespace vd::formats
