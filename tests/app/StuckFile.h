#pragma once
// A file inside a folder that can't be deleted, so that emptying Temp fails: the folder above
// it is made read-only, and for root, who ignores that, the file is marked immutable.

#include <QDir>
#include <QFile>
#include <QString>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vd::test {

class StuckFile
{
public:
    // Creates `folder`/locked/stuck.txt and locks it.
    explicit StuckFile(const QString& folder)
        : m_dir(folder + QStringLiteral("/locked")), m_file(m_dir + QStringLiteral("/stuck.txt"))
    {
        QDir().mkpath(m_dir);
        QFile f(m_file);
        if (f.open(QIODevice::WriteOnly))
            f.write("stuck");
        f.close();
        m_immutable = setImmutable(true);
        ::chmod(QFile::encodeName(m_dir).constData(), 0555);
        m_locked = QFile::exists(m_file) && !QFile(m_file).remove() && QFile::exists(m_file);
    }
    ~StuckFile() { unlock(); }
    StuckFile(const StuckFile&) = delete;
    StuckFile& operator=(const StuckFile&) = delete;

    // Whether the file really can't be deleted here.
    bool locked() const { return m_locked; }

    void unlock()
    {
        if (m_immutable)
            setImmutable(false);
        m_immutable = false;
        ::chmod(QFile::encodeName(m_dir).constData(), 0755);
    }

private:
    bool setImmutable(bool on)
    {
        const int fd = ::open(QFile::encodeName(m_file).constData(), O_RDONLY | O_NONBLOCK);
        if (fd < 0)
            return false;
        int flags = 0;
        bool ok = ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
        if (ok) {
            flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
            ok = ::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
        }
        ::close(fd);
        return ok;
    }

    QString m_dir;
    QString m_file;
    bool m_immutable = false;
    bool m_locked = false;
};

} // namespace vd::test
