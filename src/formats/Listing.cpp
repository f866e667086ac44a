#include "formats/Listing.h"

#include "catalogue/CatalogueSchema.h"
#include "formats/DiskImage.h"

namespace vd::formats {

namespace {
constexpr qint64 kKilo = 1024;
constexpr qint64 kMega = 1024 * 1024;
} // namespace

bool isDiskKind(int fileType)
{
    using namespace catalogue;
    return fileType == kFileD64 || fileType == kFileD71 || fileType == kFileG64 ||
           fileType == kFileD81;
}

bool isByteSizedKind(int fileType)
{
    using namespace catalogue;
    switch (fileType) {
    case kFileTap:
    case kFileVsf:
    case kFileC64:
    case kFileText:
    case kFilePdf:
    case kFilePicture:
    case kFileVfl:
        return true;
    default:
        return false;
    }
}

QString FormatSize(qint64 size, int fileType)
{
    if (!isByteSizedKind(fileType))
        return QString::number(size) + QStringLiteral(" Block(s)");
    if (size >= kMega) {
        const double mb = double(size) / kKilo / kKilo;
        const int decimals = mb < 10 ? 2 : (mb < 100 ? 1 : 0);
        return QString::number(mb, 'f', decimals) + QStringLiteral(" MB");
    }
    if (size >= kKilo)
        return QString::number(double(size) / kKilo, 'f', 1) + QStringLiteral(" KB");
    return QString::number(size) + QStringLiteral(" Byte");
}

QString diskHeaderName(const QString& diskName)
{
    return QLatin1Char('"') + diskName.left(kCbmNameLength).leftJustified(kCbmNameLength) +
           QLatin1Char('"');
}

} // namespace vd::formats
