#include "platform/ProgramFolder.h"

#include "app/Globals.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace vd::platform {

namespace {

const QString kHomeOption = QStringLiteral("--home");

bool makeFolder(const QString& path, QString* error)
{
    if (QFileInfo(path).isDir() || QDir().mkpath(path))
        return true;
    if (error)
        *error = QStringLiteral("Cannot create the folder %1").arg(QDir::toNativeSeparators(path));
    return false;
}

} // namespace

HomeOption takeHomeOption(const QStringList& arguments)
{
    HomeOption result;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& arg = arguments[i];
        if (arg == QLatin1String("--")) {
            result.arguments << arguments.mid(i + 1);
            break;
        }
        if (arg == kHomeOption) {
            if (i + 1 < arguments.size()) {
                result.home = arguments[++i];
                result.missingValue = result.home.isEmpty();
            } else {
                result.missingValue = true;
            }
        } else if (arg.startsWith(kHomeOption + QLatin1Char('='))) {
            result.home = arg.mid(kHomeOption.size() + 1);
            result.missingValue = result.home.isEmpty();
        } else {
            result.arguments << arg;
        }
    }
    return result;
}

QString installedDataFolder(const QString& executableFolder)
{
    if (executableFolder.isEmpty())
        return {};
    const QString data = QDir::cleanPath(
        QDir(executableFolder).absoluteFilePath(QStringLiteral("../share/vellumdock")));
    return QFileInfo(data).isDir() ? data : QString();
}

QString defaultProgramFolder(const QString& executableFolder)
{
    const QFileInfo exe(executableFolder);
    if (!executableFolder.isEmpty() && exe.isDir() && exe.isWritable() &&
        installedDataFolder(executableFolder).isEmpty())
        return exe.absoluteFilePath();
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/vellumdock");
}

int syncLanguageFiles(const QString& from, const QString& to)
{
    int copied = 0;
    const QFileInfoList files =
        QDir(from).entryInfoList({QStringLiteral("*.lng")}, QDir::Files | QDir::Readable);
    for (const QFileInfo& source : files) {
        const QFileInfo target(QDir(to).filePath(source.fileName()));
        if (target.exists() && target.lastModified() >= source.lastModified())
            continue;
        if (!QDir().mkpath(to))
            return copied;
        // Copied beside the target first, so a failed copy never leaves half a language file.
        const QString part = target.filePath() + QStringLiteral(".part");
        QFile::remove(part);
        if (!QFile::copy(source.filePath(), part))
            continue;
        QFile copy(part);
        const bool timed =
            copy.open(QIODevice::ReadWrite) &&
            copy.setFileTime(source.lastModified(), QFileDevice::FileModificationTime);
        copy.close();
        if (!timed || (target.exists() && !QFile::remove(target.filePath())) ||
            !QFile::rename(part, target.filePath())) {
            QFile::remove(part);
            continue;
        }
        ++copied;
    }
    return copied;
}

bool initProgramFolder(const QString& home, const QString& executableFolder, QString* error)
{
    const QString folder =
        home.isEmpty() ? defaultProgramFolder(executableFolder) : QDir(home).absolutePath();
    if (!makeFolder(folder, error))
        return false;
    app::setProgramFolder(folder);
    if (!makeFolder(app::gTempPath, error))
        return false;
    const QString installed = installedDataFolder(executableFolder);
    if (!installed.isEmpty())
        syncLanguageFiles(installed + QStringLiteral("/Lang"), app::gLangPath);
    return true;
}

} // namespace vd::platform
