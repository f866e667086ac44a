#include "formats/FileBytes.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vd::formats {

namespace {

QString systemError(int code)
{
    return QString::fromLocal8Bit(std::strerror(code));
}

} // namespace

FileBytes::~FileBytes()
{
    close();
}

bool FileBytes::open(const QString& path)
{
    close();
    m_path = path;
    m_error.clear();
    const QByteArray name = QFile::encodeName(path);
    // Non-blocking, so that opening a pipe cannot hang; it is refused below anyway.
    const int fd = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        m_error = systemError(errno);
        return false;
    }
    struct stat st = {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        m_error = QStringLiteral("not a regular file");
        ::close(fd);
        return false;
    }
    m_fd = fd;
    m_size = qint64(st.st_size);
    return true;
}

void FileBytes::close()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
    m_size = 0;
}

qint64 FileBytes::readAt(qint64 offset, char* buffer, qint64 length) const
{
    if (m_fd < 0 || offset < 0 || length <= 0)
        return 0;
    qint64 done = 0;
    while (done < length) {
        const ssize_t n = ::pread(m_fd, buffer + done, size_t(length - done), off_t(offset + done));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            throw ReadError(QStringLiteral("%1: %2").arg(m_path, systemError(errno)));
        }
        if (n == 0)
            break; // end of the file
        done += n;
    }
    return done;
}

qint64 fileLength(const QString& path)
{
    struct stat st = {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0 || !S_ISREG(st.st_mode))
        return -1;
    return qint64(st.st_size);
}

QByteArray readWholeFile(const QString& path, qint64 limit, bool* ok)
{
    *ok = false;
    FileBytes file;
    if (!file.open(path) || file.size() > limit)
        return {};
    QByteArray bytes = file.bytes(0, file.size());
    *ok = bytes.size() == file.size();
    return *ok ? bytes : QByteArray();
}

} // namespace vd::formats
