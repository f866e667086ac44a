#pragma once
// The temporary disk copy of a start: the wanted program is swapped into the first directory
// slot, where LOAD"*",8,1 and an emulator's autostart look. The source image is never written.

#include <QString>

namespace vd::launch {

// Copies `path` to Temp/<categoryId><last 4 characters of path> unless that copy exists (an
// existing copy is used as it is), then swaps the directory entry `name` with `lSize` blocks
// (or, for an empty name, the `lIndex`-th entry) into the first slot. iFileType 13 is a D81.
// Returns the copy's path, also when no entry matched; "" after the message
// "Fehler beim Erstellen der Temp-Datei: " with the reason.
QString MakeTempDisk(const QString& path, qint64 categoryId, int iFileType, QString name, int lSize,
                     int lIndex);

} // namespace vd::launch
