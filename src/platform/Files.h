#pragma once
// Existence checks and the guarded delete. Nothing outside the program's Temp folder can ever
// be deleted by this program.

#include <QString>
#include <QStringList>

namespace vd::platform {

// True for a path that exists and is not a folder (a link counts as what it points to).
bool FileExists(const QString& path);
// True for a folder.
bool FolderExists(const QString& path);
// FileExists; when the file is missing, a warning box "Datei nicht gefunden: " and the path.
bool FileExistsMsg(const QString& path);

// Deletes files and folders (with their contents) inside gTempPath. The last part of a path
// may hold the wildcards * and ? (case ignored; "*.*" is everything), so gTempPath + "/*.*"
// empties Temp. Guard, checked for every path before anything is deleted: gTempPath must hold
// "Temp", and each path must be absolute and lie inside gTempPath after "." and ".." are
// resolved and the folders above its last part are followed through their links. Otherwise
// nothing is done and the result is false. A link inside Temp is removed as a link; its target
// stays. Paths that match nothing are no failure. A failed removal shows "Delete-Error: " and
// the reason and gives false.
bool DeleteFiles(const QStringList& paths);
bool DeleteFiles(const QString& path);

} // namespace vd::platform
