#include "platform/Files.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "platform/DialogService.h"

#include <filesystem>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <system_error>
#include <utility>

namespace vd::platform {

namespace {

bool isInside(const QString& path, const QString& folder)
{
    return path == folder || path.startsWith(folder + QLatin1Char('/'));
}

bool hasWildcards(const QString& name)
{
    return name.contains(QLatin1Char('*')) || name.contains(QLatin1Char('?'));
}

// Exists as an entry of its folder, a dangling link included.
bool entryExists(const QString& path)
{
    std::error_code ec;
    return std::filesystem::exists(
        std::filesystem::symlink_status(QFile::encodeName(path).constData(), ec));
}

// Adds the entries that `path` names to `targets`. False when the path fails the guard.
bool collectTargets(const QString& path, const QString& tempText, const QString& tempReal,
                    QStringList& targets)
{
    if (!QDir::isAbsolutePath(path))
        return false;
    const QString clean = QDir::cleanPath(path);
    if (!clean.startsWith(tempText + QLatin1Char('/')))
        return false;
    const qsizetype slash = clean.lastIndexOf(QLatin1Char('/'));
    const QString parent = clean.left(slash);
    const QString name = clean.mid(slash + 1);
    if (name.isEmpty() || hasWildcards(parent))
        return false;

    // The folders above the last part are followed: one of them may be a link out of Temp.
    const QString parentReal = QFileInfo(parent).canonicalFilePath();
    if (parentReal.isEmpty())
        return true; // no such folder: nothing there to delete
    if (tempReal.isEmpty() || !isInside(parentReal, tempReal))
        return false;

    if (!hasWildcards(name)) {
        const QString target = parentReal + QLatin1Char('/') + name;
        if (entryExists(target))
            targets << target;
        return true;
    }
    const QString pattern = name == QLatin1String("*.*") ? QStringLiteral("*") : name;
    const QStringList names = QDir(parentReal)
                                  .entryList({pattern}, QDir::AllEntries | QDir::Hidden |
                                                            QDir::System | QDir::NoDotAndDotDot);
    for (const QString& entry : names)
        targets << parentReal + QLatin1Char('/') + entry;
    return true;
}

} // namespace

bool FileExists(const QString& path)
{
    if (path.isEmpty())
        return false;
    const QFileInfo info(path);
    return info.exists() && !info.isDir();
}

bool FolderExists(const QString& path)
{
    return !path.isEmpty() && QFileInfo(path).isDir();
}

bool FileExistsMsg(const QString& path)
{
    if (FileExists(path))
        return true;
    dialogs().msgBox(app::Translate(QStringLiteral("Datei nicht gefunden: ")) + path,
                     vbExclamation);
    return false;
}

bool DeleteFiles(const QStringList& paths)
{
    const QString& tempPath = app::gTempPath;
    if (!tempPath.contains(QLatin1String("Temp")) || !QDir::isAbsolutePath(tempPath))
        return false;
    const QString tempText = QDir::cleanPath(tempPath);
    const QString tempReal = QFileInfo(tempText).canonicalFilePath();

    QStringList targets;
    for (const QString& path : paths)
        if (!collectTargets(path, tempText, tempReal, targets))
            return false;

    QString failure;
    for (const QString& target : std::as_const(targets)) {
        std::error_code ec;
        // remove_all never follows a link: a link is removed, not what it points to.
        std::filesystem::remove_all(QFile::encodeName(target).constData(), ec);
        if (ec && failure.isEmpty())
            failure = QString::fromStdString(ec.message()) + QStringLiteral(": ") + target;
    }
    if (!failure.isEmpty()) {
        dialogs().msgBox(QStringLiteral("Delete-Error: ") + failure);
        return false;
    }
    return true;
}

bool DeleteFiles(const QString& path)
{
    return DeleteFiles(QStringList{path});
}

} // namespace vd::platform
