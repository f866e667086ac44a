// The readers of clsFileManager: each turns one file into its rows through AddDirEntry. The
// byte work is done by the format readers of formats/; here are the messages, the file access
// and the rows.

#include "app/Globals.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/Recordset.h"
#include "formats/CbmText.h"
#include "formats/DiskImage.h"
#include "formats/FileBytes.h"
#include "formats/Gcr.h"
#include "formats/SingleFile.h"
#include "formats/TapeImage.h"
#include "import/clsFileManager.h"
#include "platform/Latin1.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace vd::import {

namespace {

// A G64 of any sane layout is far below this: 84 tracks of 7,928 bytes and the tables.
constexpr qint64 kMaxG64Bytes = 4 * 1024 * 1024;

const QString kWrongKind = QStringLiteral("Kein korrektes '@1'-File: ");

void openOrThrow(formats::FileBytes& file, const QString& path)
{
    if (!file.open(path))
        throw formats::ReadError(path + QStringLiteral(": ") + file.error());
}

// The name without its last extension, usable as a file name.
QString baseName(const QString& sName)
{
    const qsizetype dot = sName.lastIndexOf(QLatin1Char('.'));
    QString base = dot < 0 ? sName : sName.left(dot);
    base.replace(QLatin1Char('/'), QLatin1Char('_'));
    return base;
}

} // namespace

qint64 clsFileManager::ReadD64Directory(const QString& sName, const QString& sPath, int& lFlags,
                                        qint64& lID)
{
    const QString kind = formats::upperLatin1(sName.right(3));
    const bool g64 = kind == QLatin1String("G64");
    const formats::DiskGeometry& geometry = formats::diskGeometry(
        kind == QLatin1String("D71") ? formats::DiskKind::D71 : formats::DiskKind::D64);
    QString readPath = sPath;
    try {
        if (g64) {
            const QString inArchive = sArchivePath.isEmpty() ? QString() : messageName(sPath);
            readPath = ConvertG64(sName, sPath, inArchive);
            if (readPath.isEmpty()) {
                RaiseMessage(kWrongKind, kind, messageName(sPath));
                return 0;
            }
        } else {
            const qint64 length = formats::fileLength(sPath);
            if (length < 0)
                throw formats::ReadError(sPath);
            if (!formats::acceptsLength(geometry, length)) {
                RaiseMessage(kWrongKind, kind, messageName(sPath));
                return 0;
            }
        }
    } catch (const db::DbError& e) {
        if (IsCatalogueFault(e))
            throw;
        reportFileError(sName);
        return 0;
    } catch (const std::exception&) {
        reportFileError(sName);
        return 0;
    }
    const int fileType = g64 ? catalogue::kFileG64 : geometry.fileType;
    return readDirectory(geometry, fileType, sName, sPath, readPath, lFlags, lID);
}

qint64 clsFileManager::ReadD81Directory(const QString& sName, const QString& sPath, int& lFlags,
                                        qint64& lID)
{
    const formats::DiskGeometry& geometry = formats::diskGeometry(formats::DiskKind::D81);
    const qint64 length = formats::fileLength(sPath);
    if (length < 0) {
        reportFileError(sName);
        return 0;
    }
    if (!formats::acceptsLength(geometry, length)) {
        RaiseMessage(kWrongKind, QStringLiteral("D81"), messageName(sPath));
        return 0;
    }
    return readDirectory(geometry, geometry.fileType, sName, sPath, sPath, lFlags, lID);
}

qint64 clsFileManager::readDirectory(const formats::DiskGeometry& geometry, int iFileType,
                                     const QString& sName, const QString& sPath,
                                     const QString& sReadPath, int& lFlags, qint64& lID)
{
    qint64 result = 0;
    try {
        formats::FileBytes file;
        openOrThrow(file, sReadPath);
        const formats::DiskDirectory dir = formats::readDiskDirectory(geometry, file);
        file.close();
        int lIndex = 1;
        int skippedSector = 0;
        for (const formats::DirEntry& e : dir.entries) {
            if (e.chainStep == skippedSector)
                continue;
            NewEntry* record = AddDirEntry(e.name, e.blocks, dir.diskName, sName, sPath, iFileType,
                                           lIndex, lID, lFlags);
            if (record) {
                finishEntry(*record, e.typeText);
                result = lID;
            } else if (lID == 0) {
                skippedSector = e.chainStep; // the rest of this sector's slots is left
                continue;
            }
            ++lIndex;
        }
    } catch (const db::DbError& e) {
        if (IsCatalogueFault(e))
            throw;
        reportFileError(sName);
        return 0;
    } catch (const std::exception&) {
        reportFileError(sName);
        return 0;
    }
    return result;
}

QString clsFileManager::ConvertG64(const QString& sName, const QString& sPath,
                                   const QString& sInArchive)
{
    formats::FileBytes file;
    openOrThrow(file, sPath);
    const QString header =
        platform::latin1ToText(formats::untilZero(file.bytes(0, formats::kG64MagicLength)));
    if (!CheckFileMagic(sPath, header, QLatin1String(formats::kG64Magic)))
        return {};
    bool ok = false;
    const QByteArray g64 = formats::readWholeFile(sPath, kMaxG64Bytes, &ok);
    if (!ok)
        return {};
    const formats::G64Conversion converted = formats::convertG64ToD64(g64);
    if (!converted.ok)
        return {};
    const QString folder = sInArchive.isEmpty() ? app::gTempPath : QFileInfo(sPath).absolutePath();
    if (folder.isEmpty())
        return {}; // no Temp folder to write into
    const QString target = folder + QLatin1Char('/') + baseName(sName) + QStringLiteral(".D64");
    QDir().mkpath(folder);
    // A scratch copy, read once and thrown away: written plainly, since QSaveFile's commit
    // waits for the disk (an fsync of 10 ms or more per G64 on a busy machine).
    QFile out(target);
    const bool written = out.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                         out.write(converted.d64) == converted.d64.size() && out.flush();
    out.close();
    if (!written) {
        QFile::remove(target); // no half-written image for the reader to find
        return {};
    }
    const formats::DiskGeometry& d64 = formats::diskGeometry(formats::DiskKind::D64);
    return formats::acceptsLength(d64, formats::fileLength(target)) ? target : QString();
}

qint64 clsFileManager::ReadT64Directory(const QString& sName, const QString& sPath, int& lFlags,
                                        qint64& lID)
{
    try {
        formats::FileBytes file;
        openOrThrow(file, sPath);
        if (!formats::isT64Header(formats::readT64Header(file))) {
            RaiseMessage(QStringLiteral("Fehlerhaftes C64-File: "), {}, messageName(sPath));
            return 0;
        }
        return readTape(file, sName, sPath, lFlags, lID);
    } catch (const db::DbError& e) {
        if (IsCatalogueFault(e))
            throw;
        reportFileError(sName);
        return 0;
    } catch (const std::exception&) {
        reportFileError(sName);
        return 0;
    }
}

qint64 clsFileManager::readTape(const formats::ByteSource& file, const QString& sName,
                                const QString& sPath, int& lFlags, qint64& lID)
{
    const formats::TapeDirectory dir = formats::readT64Directory(file);
    qint64 result = 0;
    // Every slot up to the count becomes a row, the unused ones too.
    for (const formats::TapeEntry& e : dir.entries) {
        NewEntry* record = AddDirEntry(e.name, e.blocks, dir.tapeName, sName, sPath,
                                       catalogue::kFileT64, e.index, lID, lFlags);
        if (record) {
            finishEntry(*record, QStringLiteral("PRG"));
            result = lID;
        } else if (lID == 0) {
            break;
        }
    }
    return result;
}

qint64 clsFileManager::readCheckedSingle(const formats::SingleFormat& format, const QString& sName,
                                         const QString& sPath, int& lFlags, qint64& lID)
{
    try {
        formats::FileBytes file;
        openOrThrow(file, sPath);
        if (format.magic &&
            !CheckFileMagic(sPath, formats::readMagic(format, file), QLatin1String(format.magic)))
            return 0;
        return writeSingle(format, sName, sPath, file, lFlags, lID);
    } catch (const db::DbError& e) {
        if (IsCatalogueFault(e))
            throw;
        reportFileError(sName);
        return 0;
    } catch (const std::exception&) {
        reportFileError(sName);
        return 0;
    }
}

qint64 clsFileManager::readPlainSingle(const formats::SingleFormat& format, const QString& sName,
                                       const QString& sPath, int& lFlags, qint64& lID)
{
    // No handler of its own: a file that is gone is the caller's failure.
    const qint64 length = formats::fileLength(sPath);
    if (length < 0)
        throw LoadFailure(sPath);
    return writeSingle(format, sName, sPath, formats::LengthOnly(length), lFlags, lID);
}

qint64 clsFileManager::writeSingle(const formats::SingleFormat& format, const QString& sName,
                                   const QString& sPath, const formats::ByteSource& file,
                                   int& lFlags, qint64& lID)
{
    const formats::SingleEntry entry = formats::readSingleEntry(format, sName, file);
    NewEntry* record =
        AddDirEntry(entry.program, entry.size, {}, sName, sPath, format.fileType, 1, lID, lFlags);
    if (!record)
        return 0;
    finishEntry(*record, entry.extension);
    return lID;
}

qint64 clsFileManager::ReadPrgFile(const QString& sName, const QString& sPath, int& lFlags,
                                   qint64& lID)
{
    return readPlainSingle(formats::singleFormat(formats::SingleKind::Prg), sName, sPath, lFlags,
                           lID);
}

qint64 clsFileManager::ReadP00File(const QString& sName, const QString& sPath, int& lFlags,
                                   qint64& lID)
{
    return readCheckedSingle(formats::singleFormat(formats::SingleKind::P00), sName, sPath, lFlags,
                             lID);
}

qint64 clsFileManager::ReadTapFile(const QString& sName, const QString& sPath, int& lFlags,
                                   qint64& lID)
{
    return readCheckedSingle(formats::singleFormat(formats::SingleKind::Tap), sName, sPath, lFlags,
                             lID);
}

qint64 clsFileManager::ReadVsfFile(const QString& sName, const QString& sPath, int& lFlags,
                                   qint64& lID)
{
    return readCheckedSingle(formats::singleFormat(formats::SingleKind::Vsf), sName, sPath, lFlags,
                             lID);
}

qint64 clsFileManager::ReadC64Snapshot(const QString& sName, const QString& sPath, int& lFlags,
                                       qint64& lID)
{
    return readCheckedSingle(formats::singleFormat(formats::SingleKind::C64), sName, sPath, lFlags,
                             lID);
}

qint64 clsFileManager::ReadCrtFile(const QString& sName, const QString& sPath, int& lFlags,
                                   qint64& lID)
{
    return readCheckedSingle(formats::singleFormat(formats::SingleKind::Crt), sName, sPath, lFlags,
                             lID);
}

qint64 clsFileManager::ReadVflFile(const QString& sName, const QString& sPath, int& lFlags,
                                   qint64& lID)
{
    return readCheckedSingle(formats::singleFormat(formats::SingleKind::Vfl), sName, sPath, lFlags,
                             lID);
}

qint64 clsFileManager::ReadTextFile(const QString& sName, const QString& sPath, int& lFlags,
                                    qint64& lID)
{
    return readPlainSingle(formats::singleFormat(formats::SingleKind::Text), sName, sPath, lFlags,
                           lID);
}

qint64 clsFileManager::ReadPdfFile(const QString& sName, const QString& sPath, int& lFlags,
                                   qint64& lID)
{
    return readPlainSingle(formats::singleFormat(formats::SingleKind::Pdf), sName, sPath, lFlags,
                           lID);
}

qint64 clsFileManager::ReadPictureFile(const QString& sName, const QString& sPath, int& lFlags,
                                       qint64& lID)
{
    return readPlainSingle(formats::singleFormat(formats::SingleKind::Picture), sName, sPath,
                           lFlags, lID);
}

} // namespace vd::import
