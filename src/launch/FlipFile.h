#pragma once
// Flip lists: the disks of a multi-disk game in the emulator's list file, written, read back,
// and started without being catalogued.

#include "launch/StartFile.h"

#include <QString>
#include <QStringList>

namespace vd::launch {

inline const QString kFlipFileHeader = QStringLiteral("# Vice fliplist file\n\nUNIT 8");
// The list that StartFlipList writes into Temp, the same name every time.
inline const QString kTempFlipFileName = QStringLiteral("Vellumdock-FlipFile.vfl");
// A flip file longer than this is read only up to it.
inline constexpr qint64 kMaxFlipFileBytes = 1024 * 1024;

// Writes the header and one path per line, lines ending in a line feed and no line end after
// the last one; paths in the file system's encoding, unquoted. On failure the message
// "CreateFlipFile: " with the reason and false.
bool CreateFlipFile(const QString& fileName, const QStringList& paths);

// The paths of a flip file: the first 28 characters are skipped, the rest split at line feeds,
// each part trimmed, empty parts dropped. A missing file gives an empty list.
QStringList ReadFlipFile(const QString& path);

// Starts a list that is not catalogued: Temp/Vellumdock-FlipFile.vfl under the profile of
// ".VFL" (no fall-back to the default profile), with only FILEPATH and INPUT known. Nothing is
// counted. Result: the status text, "" when nothing was started.
QString StartFlipList(const QStringList& paths, const StartOptions& options = {});

} // namespace vd::launch
