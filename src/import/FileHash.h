#pragma once
// MD5 sums of catalogued files, as tHash stores them.

#include <QString>

namespace vd::import {

class clsFileManager;

// The MD5 of a file as 32 lower-case hexadecimal digits. sPath is the file, or for a member
// of an archive (sUnpack set) the outermost archive, whose member is reached through
// ExtractFileFromArchiv. A missing file gives "" and the warning "Datei nicht gefunden: ";
// an unreadable one gives "".
QString GetFileHash(clsFileManager& fileManager, const QString& sName, const QString& sPath,
                    const QString& sUnpack);

// The MD5 of the file at `path`, or "" when it cannot be read.
QString fileMd5(const QString& path);

} // namespace vd::import
