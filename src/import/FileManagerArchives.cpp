// The archive part of clsFileManager: extraction folders, unpacking, reaching a member through
// any depth of archives, and the scan of an unpacked folder back into LoadFile.
//
// Member paths (tUnpackPath) and the keys of the extraction folders keep "\" between levels;
// paths on disk use "/".

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "catalogue/DbError.h"
#include "import/ArchiveReader.h"
#include "import/clsFileManager.h"
#include "platform/DialogService.h"

#include <cmath>
#include <QDir>
#include <QFileInfo>

namespace vd::import {

namespace {

const QString kUnpacking = QStringLiteral("Entpacke Archiv: ");
const QString kUnpackError = QStringLiteral("Fehler beim Entpacken: ");
const QString kScanError = QStringLiteral("Error Archiv-File-Scan: ");
constexpr QChar kLevel = QLatin1Char('\\');
constexpr double kMiB = 1024.0 * 1024.0;

// Archives named in a member path, each a level below the outermost archive.
int innerArchives(const QString& sUnpack)
{
    int count = 0;
    for (const QString& part : sUnpack.split(kLevel, Qt::SkipEmptyParts))
        if (isArchiveName(part))
            ++count;
    return count;
}

} // namespace

bool clsFileManager::depthAllowed(int depth, const QString& sShownName)
{
    if (depth <= archiveLimits.maxDepth)
        return true;
    RaiseMessage(kUnpackError, {},
                 sShownName + QStringLiteral(": ") +
                     app::Translate(QStringLiteral("Mehr als @1 Archive ineinander verschachtelt"),
                                    QString::number(archiveLimits.maxDepth)));
    return false;
}

bool clsFileManager::UnpackArchive(const QString& sArchive, const QString& sMember,
                                   const QString& sTargetFolder, const QString& sShownName)
{
    ++m_unpackCount;
    const UnpackResult result = unpackArchive(sArchive, sMember, sTargetFolder, archiveLimits);
    for (const QString& skipped : result.skipped)
        RaiseMessage(kUnpackError, {}, sShownName + QStringLiteral(": ") + skipped);
    if (!result.ok)
        RaiseMessage(kUnpackError, {}, sShownName + QStringLiteral(": ") + result.error);
    return result.ok;
}

bool clsFileManager::acceptArchiveSize(const QString& sPath)
{
    const double limit = app::Val(options.SkipZipSize);
    if (limit == 0)
        return true;
    const qint64 length = QFileInfo(sPath).size();
    if (length <= 0) {
        RaiseMessage(QStringLiteral("Fehler in der Datei: '@1'"), sPath, {});
        return false;
    }
    const double mib = double(length) / kMiB;
    if (mib <= limit)
        return true;
    const QString text =
        app::Translate(QStringLiteral("Die Datei '@1' hat eine Größe von"), sPath) +
        QLatin1Char(' ') + QString::number(std::round(mib * 10) / 10, 'g', 15) +
        QStringLiteral(" Mb.\n") +
        app::Translate(QStringLiteral("Soll die Datei entpackt werden?"));
    return platform::dialogs().msgBox(text, platform::vbYesNo | platform::vbQuestion,
                                      QStringLiteral("Vellumdock")) == platform::vbYes;
}

QString clsFileManager::newTempFolder(const QString& parent)
{
    // A folder left by an earlier run is never taken over: its content is not this archive's.
    QString folder;
    do
        folder = QDir::cleanPath(parent + QStringLiteral("/A") + QString::number(++iTempCount));
    while (QFileInfo::exists(folder));
    if (!QDir().mkpath(folder)) {
        RaiseMessage(kUnpackError, {},
                     app::Translate(QStringLiteral("Ordner nicht angelegt: @1"), folder));
        return {};
    }
    return folder;
}

bool clsFileManager::isTempFolder(const QString& path) const
{
    const QString clean = QDir::cleanPath(path);
    for (const QString& folder : colTempPaths)
        if (folder == clean)
            return true;
    return false;
}

QString clsFileManager::CreateTempPathIfFileArchiv(const QString& sName, const QString& sUnpack,
                                                   const QString& sPath)
{
    Q_UNUSED(sName);
    if (!acceptArchiveSize(sPath))
        return {};
    const QString shown = sUnpack.isEmpty() ? sPath : sArchivePath + kLevel + sUnpack;
    const QString key = shown.toUpper();
    const auto known = colTempPaths.constFind(key);
    if (known != colTempPaths.constEnd())
        return known.value();
    if (!depthAllowed(1 + innerArchives(sUnpack), shown))
        return {};
    const QString folder =
        newTempFolder(sUnpack.isEmpty() ? app::gTempPath : QFileInfo(sPath).absolutePath());
    if (folder.isEmpty())
        return {};
    colTempPaths.insert(key, folder);
    emit ShowMessage(app::Translate(kUnpacking) + shown, kMessageStatus);
    if (!UnpackArchive(sPath, {}, folder, shown))
        return {};
    return folder;
}

QString clsFileManager::ExtractFileFromArchiv(const QString& sName, const QString& sUnpack,
                                              const QString& sPath)
{
    Q_UNUSED(sName);
    if (sUnpack.isEmpty())
        return QFileInfo(sPath).isFile() ? sPath : QString();
    const QStringList parts =
        (QFileInfo(sPath).fileName() + kLevel + sUnpack).split(kLevel, Qt::SkipEmptyParts);
    QString folder;   // extraction folder of the current archive
    QString current;  // the current archive on disk
    QString relative; // path inside the current archive, "/" between folders
    QString keyPath;
    int depth = 0;
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const QString& part = parts[i];
        keyPath = i == 0 ? sPath : keyPath + kLevel + part;
        const QString previous = relative;
        relative = relative.isEmpty() ? part : relative + QLatin1Char('/') + part;
        if (i == parts.size() - 1) {
            QString onDisk = findOnDisk(folder, relative);
            if (onDisk.isEmpty() || !QFileInfo(onDisk).isFile()) {
                if (current.isEmpty() || !UnpackArchive(current, relative, folder, keyPath))
                    return {};
                onDisk = findOnDisk(folder, relative);
            }
            return onDisk;
        }
        if (!isArchiveName(part))
            continue;
        if (!depthAllowed(++depth, keyPath))
            return {};
        QString place = i == 0 ? sPath : findOnDisk(folder, relative);
        const auto known = colTempPaths.constFind(keyPath.toUpper());
        if (known != colTempPaths.constEnd()) {
            folder = known.value();
        } else {
            if (!current.isEmpty() && place.isEmpty()) {
                emit ShowMessage(app::Translate(kUnpacking) + keyPath, kMessageStatus);
                if (!UnpackArchive(current, relative, folder, keyPath))
                    return {};
                place = findOnDisk(folder, relative);
            }
            QString parent = folder.isEmpty() ? app::gTempPath : folder;
            if (!previous.isEmpty())
                parent += QLatin1Char('/') + previous;
            folder = newTempFolder(parent);
            if (folder.isEmpty())
                return {};
            colTempPaths.insert(keyPath.toUpper(), folder);
        }
        current = place;
        relative.clear();
    }
    return {};
}

qint64 clsFileManager::archiveRule(const QString& sName, const QString& sPath, int lFlags,
                                   const QString& sUnpack, bool bExtracted)
{
    const QString folder =
        CreateTempPathIfFileArchiv(sName, bExtracted ? sUnpack : QString(), sPath);
    if (!bExtracted && !folder.isEmpty())
        sArchivePath = sPath;
    if (folder.isEmpty())
        return 0;
    // An archive that is a game of the GameBase is read with a search for the game's own
    // entry (FileToRun at FileNameIndex, counted from 1 here).
    const std::optional<GameMatch> game = findGame(sName);
    if (game)
        InitSearch(true, options.ArchivOnlyGame, game->fileToRun, game->fileNameIndex + 1);
    qint64 result = 0;
    try {
        result = ScanArchiveFolder(folder, sUnpackPath, lFlags | kFlagImportList);
    } catch (...) {
        // A search left on would filter the files the batch reads next.
        if (game)
            InitSearch(false, false, {}, 0);
        throw;
    }
    if (game) {
        if (lFoundC64FileID != 0)
            SetGBInfos(game->id, game->name, game->genre);
        InitSearch(false, false, {}, 0);
    }
    return result;
}

qint64 clsFileManager::ScanArchiveFolder(const QString& sFolder, const QString& sRelPathIn,
                                         int lFlags)
{
    // A copy: the caller may hand in sUnpackPath itself, which changes below.
    const QString sRelPath = sRelPathIn;
    const QFileInfoList entries = QDir(sFolder).entryInfoList(
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System, QDir::Name);
    qint64 total = 0;
    for (const QFileInfo& info : entries) {
        const QString name = info.fileName();
        const QString rel = sRelPath.isEmpty() ? name : sRelPath + kLevel + name;
        if (info.isSymLink())
            continue; // never made by the unpacking, and never followed
        if (info.isDir()) {
            if (name.startsWith(QLatin1Char('.')) || isTempFolder(info.absoluteFilePath()))
                continue;
            sUnpackPath = rel;
            total = ScanArchiveFolder(info.absoluteFilePath(), rel, lFlags);
            continue;
        }
        sUnpackPath = rel;
        if (!sSearchName.isEmpty() &&
            !QStringLiteral(".TXT;.NFO;.DIZ")
                 .contains(name.mid(name.lastIndexOf(QLatin1Char('.')))) &&
            name != sSearchName)
            continue;
        const qint64 result = scanArchiveMember(name, info.absoluteFilePath(), lFlags, rel);
        if (result != 0 && (total == 0 || (total < 0 && result > 0)))
            total = result;
    }
    return total;
}

qint64 clsFileManager::scanArchiveMember(const QString& sName, const QString& sPath, int lFlags,
                                         const QString& sRelPath)
{
    // A member that fails is reported and the rest of the archive is still read; only a fault
    // of the database engine itself goes up.
    try {
        return LoadFile(sName, sPath, lFlags, sRelPath, true, 0);
    } catch (const db::DbError& e) {
        if (IsCatalogueFault(e))
            throw;
        RaiseMessage(kScanError, {}, e.description());
    } catch (const std::exception& e) {
        RaiseMessage(kScanError, {}, QString::fromLocal8Bit(e.what()));
    }
    return 0;
}

void clsFileManager::DeleteTempCol()
{
    colTempPaths.clear();
}

} // namespace vd::import
