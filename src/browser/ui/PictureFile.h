#pragma once
// Loading a picture for the preview. The extension decides whether it is tried at all; the
// texts of a failure are the ones the user sees in place of the picture.

#include <QImage>
#include <QString>

namespace vd::browser {

// The lower-case extensions (with their point) a picture may have.
bool isPictureExtension(const QString& path);

// The picture of `path`, or a null image with `message` set: "Leere Datei", "Bildformat wird
// nicht unterstützt", "Bitmap kann nicht aus Bild-Datei erstellt werden" (all translated).
QImage LoadPictureFile(const QString& path, QString& message);

} // namespace vd::browser
