#include "import/ArchiveReader.h"

#include "app/Translate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace vd::import {

namespace {

constexpr size_t kBlockSize = 10240;
constexpr qint64 kBufferSize = 64 * 1024;

struct ArchiveCloser
{
    void operator()(archive* a) const { archive_read_free(a); }
};
using ArchivePtr = std::unique_ptr<archive, ArchiveCloser>;

QString archiveReason(archive* a)
{
    const char* text = archive_error_string(a);
    return text ? QString::fromLocal8Bit(text)
                : app::Translate(QStringLiteral("Unbekannter Fehler"));
}

// The entry's name as text: UTF-8 when the archive says so, else its bytes one to one.
QString entryName(archive_entry* entry)
{
    if (const char* utf8 = archive_entry_pathname_utf8(entry))
        return QString::fromUtf8(utf8);
    const char* raw = archive_entry_pathname(entry);
    if (!raw)
        return {};
    const QByteArray bytes(raw);
    const QString decoded = QString::fromUtf8(bytes);
    return decoded.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(bytes) : decoded;
}

ArchivePtr openArchive(const QString& path, QString& error)
{
    ArchivePtr a(archive_read_new());
    archive_read_support_format_zip(a.get());
    archive_read_support_format_rar(a.get());
    archive_read_support_format_rar5(a.get());
    archive_read_support_format_7zip(a.get());
    archive_read_support_format_cab(a.get());
    const QByteArray native = QFile::encodeName(path);
    if (archive_read_open_filename(a.get(), native.constData(), kBlockSize) != ARCHIVE_OK) {
        error = archiveReason(a.get());
        return nullptr;
    }
    return a;
}

// Makes the folders of `parts` (all but the last) below `root`, refusing any that is a link.
bool makeFolders(const QString& root, const QStringList& parts, qsizetype count, QString& path)
{
    path = root;
    for (qsizetype i = 0; i < count; ++i) {
        path += QLatin1Char('/') + parts[i];
        const QByteArray native = QFile::encodeName(path);
        struct stat st = {};
        if (lstat(native.constData(), &st) == 0) {
            if (!S_ISDIR(st.st_mode))
                return false;
        } else if (mkdir(native.constData(), 0755) != 0 && errno != EEXIST) {
            return false;
        }
    }
    return true;
}

class Extractor
{
public:
    Extractor(archive* a, const QString& target, const QString& member, const ArchiveLimits& lim)
        : m_a(a), m_target(QDir::cleanPath(target)), m_member(member), m_limits(lim),
          m_buffer(kBufferSize, Qt::Uninitialized)
    {}

    UnpackResult run();

private:
    bool entry(archive_entry* e);
    bool writeFile(const QString& relative);
    bool fail(const QString& reason)
    {
        m_result.error = reason;
        return false;
    }

    archive* m_a;
    QString m_target;
    QString m_member; // safe form of the member sought, "" for all
    ArchiveLimits m_limits;
    QByteArray m_buffer;
    UnpackResult m_result;
    qint64 m_seen = 0;
    bool m_found = false;
};

UnpackResult Extractor::run()
{
    for (;;) {
        archive_entry* e = nullptr;
        const int status = archive_read_next_header(m_a, &e);
        if (status == ARCHIVE_EOF)
            break;
        if (status < ARCHIVE_WARN) {
            fail(archiveReason(m_a));
            return m_result;
        }
        if (!entry(e))
            return m_result;
        if (m_found)
            break;
    }
    if (!m_member.isEmpty() && !m_found) {
        fail(app::Translate(QStringLiteral("Datei nicht im Archiv: @1"), m_member));
        return m_result;
    }
    m_result.ok = true;
    return m_result;
}

bool Extractor::entry(archive_entry* e)
{
    if (++m_seen > m_limits.maxMembers)
        return fail(app::Translate(QStringLiteral("Mehr als @1 Dateien im Archiv"),
                                   QString::number(m_limits.maxMembers)));
    const QString name = entryName(e);
    const QString relative = safeMemberPath(name);
    if (!m_member.isEmpty() && relative.compare(m_member, Qt::CaseInsensitive) != 0)
        return true;
    const mode_t type = archive_entry_filetype(e);
    if (relative.isEmpty()) {
        m_result.skipped << app::Translate(QStringLiteral("Unsicherer Pfad übersprungen: @1"),
                                           name);
        return true;
    }
    if (type == AE_IFLNK || archive_entry_hardlink(e)) {
        m_result.skipped << app::Translate(QStringLiteral("Verknüpfung übersprungen: @1"), name);
        return true;
    }
    if (archive_entry_is_encrypted(e))
        return fail(app::Translate(QStringLiteral("Das Archiv ist mit einem Passwort geschützt")));
    if (type == AE_IFDIR) {
        QString path;
        const QStringList parts = relative.split(QLatin1Char('/'));
        if (!makeFolders(m_target, parts, parts.size(), path))
            m_result.skipped << app::Translate(QStringLiteral("Ordner nicht angelegt: @1"), name);
        return true;
    }
    if (type != AE_IFREG)
        return true;
    m_found = !m_member.isEmpty();
    return writeFile(relative);
}

bool Extractor::writeFile(const QString& relative)
{
    const QStringList parts = relative.split(QLatin1Char('/'));
    QString folder;
    if (!makeFolders(m_target, parts, parts.size() - 1, folder))
        return fail(app::Translate(QStringLiteral("Ordner nicht angelegt: @1"), relative));
    const QString path = folder + QLatin1Char('/') + parts.last();
    const QByteArray native = QFile::encodeName(path);
    // O_NOFOLLOW: a link planted at the member's place is never written through.
    const int fd =
        ::open(native.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (fd < 0)
        return fail(
            app::Translate(QStringLiteral("Datei kann nicht geschrieben werden: @1"), path) +
            QStringLiteral(" (") + QString::fromLocal8Bit(std::strerror(errno)) + QLatin1Char(')'));
    bool ok = true;
    for (;;) {
        const la_ssize_t n = archive_read_data(m_a, m_buffer.data(), size_t(m_buffer.size()));
        if (n == 0)
            break;
        if (n < 0) {
            ok = fail(archiveReason(m_a));
            break;
        }
        m_result.bytes += n;
        if (m_result.bytes > m_limits.maxBytes) {
            ok = fail(app::Translate(QStringLiteral("Das Archiv entpackt mehr als @1 MiB"),
                                     QString::number(m_limits.maxBytes / (1024 * 1024))));
            break;
        }
        if (::write(fd, m_buffer.constData(), size_t(n)) != n) {
            ok = fail(
                app::Translate(QStringLiteral("Datei kann nicht geschrieben werden: @1"), path));
            break;
        }
    }
    ::close(fd);
    if (!ok) {
        // A half-written member is worse than none.
        ::unlink(native.constData());
        return false;
    }
    ++m_result.members;
    return true;
}

} // namespace

QString safeMemberPath(const QString& name)
{
    QString path = name;
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (path.startsWith(QLatin1Char('/')) ||
        (path.size() >= 2 && path[1] == QLatin1Char(':') && path[0].isLetter()))
        return {};
    QStringList kept;
    for (const QString& part : path.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (part == QLatin1String("."))
            continue;
        if (part == QLatin1String("..") || part.contains(QChar(0)))
            return {};
        kept << part;
    }
    return kept.join(QLatin1Char('/'));
}

bool isArchiveName(const QString& name)
{
    const QString ext = name.mid(name.lastIndexOf(QLatin1Char('.')) + 1).toUpper();
    return name.contains(QLatin1Char('.')) &&
           (ext == QLatin1String("ZIP") || ext == QLatin1String("RAR") ||
            ext == QLatin1String("7Z") || ext == QLatin1String("CAB"));
}

QString findOnDisk(const QString& folder, const QString& relative)
{
    const QString exact = folder + QLatin1Char('/') + relative;
    if (QFileInfo::exists(exact))
        return exact;
    QString path = folder;
    for (const QString& part : relative.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        const QStringList names =
            QDir(path).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
        const auto it = std::find_if(names.begin(), names.end(), [&](const QString& n) {
            return n.compare(part, Qt::CaseInsensitive) == 0;
        });
        if (it == names.end())
            return {};
        path += QLatin1Char('/') + *it;
    }
    return path;
}

UnpackResult unpackArchive(const QString& archivePath, const QString& member,
                           const QString& targetFolder, const ArchiveLimits& limits)
{
    UnpackResult result;
    QString safeMember;
    if (!member.isEmpty()) {
        safeMember = safeMemberPath(member);
        if (safeMember.isEmpty()) {
            result.error =
                app::Translate(QStringLiteral("Unsicherer Pfad übersprungen: @1"), member);
            return result;
        }
    }
    if (!QFileInfo(targetFolder).isDir()) {
        result.error = app::Translate(QStringLiteral("Ordner nicht angelegt: @1"), targetFolder);
        return result;
    }
    const ArchivePtr a = openArchive(archivePath, result.error);
    if (!a)
        return result;
    Extractor extractor(a.get(), targetFolder, safeMember, limits);
    return extractor.run();
}

} // namespace vd::import
