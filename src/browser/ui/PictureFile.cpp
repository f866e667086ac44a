#include "browser/ui/PictureFile.h"

#include "app/Translate.h"

#include <QFileInfo>
#include <QImageReader>

namespace vd::browser {

namespace {

// Larger pictures are refused rather than decoded into gigabytes.
constexpr int kMaxPictureAllocationMb = 256;

} // namespace

bool isPictureExtension(const QString& path)
{
    static const QStringList kAccepted = {
        QStringLiteral("bmp"), QStringLiteral("dib"),  QStringLiteral("rle"),
        QStringLiteral("ico"), QStringLiteral("cur"),  QStringLiteral("emf"),
        QStringLiteral("wmf"), QStringLiteral("gif"),  QStringLiteral("png"),
        QStringLiteral("tif"), QStringLiteral("tiff"), QStringLiteral("jpe"),
        QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("jfif")};
    return kAccepted.contains(QFileInfo(path).suffix().toLower());
}

QImage LoadPictureFile(const QString& path, QString& message)
{
    message.clear();
    if (QFileInfo(path).size() == 0) {
        message = app::Translate(QStringLiteral("Leere Datei"));
        return {};
    }
    if (!isPictureExtension(path)) {
        message = app::Translate(QStringLiteral("Bildformat wird nicht unterstützt"));
        return {};
    }
    QImageReader::setAllocationLimit(kMaxPictureAllocationMb);
    // The content decides the decoder, as with any picture viewer: a PNG named .gif still shows.
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    QImage image = reader.read();
    if (image.isNull())
        message =
            app::Translate(QStringLiteral("Bitmap kann nicht aus Bild-Datei erstellt werden"));
    return image;
}

} // namespace vd::browser
