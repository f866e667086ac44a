#include "formats/SingleFile.h"

#include "catalogue/CatalogueSchema.h"
#include "formats/CbmText.h"
#include "formats/TapeImage.h"
#include "platform/Latin1.h"

#include <algorithm>
#include <array>

namespace vd::formats {

namespace {

// PC64 files: "C64File", a byte 0, the CBM name (bytes 8-24 as read here), then the data.
constexpr qint64 kP00Name = 8;
constexpr int kP00NameLength = 17;
constexpr qint64 kP00HeaderBytes = 25; // what is taken off before counting blocks
// Cartridges: a 16-byte signature, then at 32 the name field (only 16 of its 32 bytes read).
constexpr qint64 kCrtName = 32;
constexpr int kCrtNameLength = 16;

constexpr std::array<SingleFormat, 10> kFormats = {{
    {SingleKind::Prg, catalogue::kFilePrg, nullptr, 0, false, false, NameRule::DropLastFour, 0, 0,
     SizeRule::Blocks, ExtensionRule::Prg},
    {SingleKind::P00, catalogue::kFileP00, "C64FILE", 7, false, false, NameRule::Header, kP00Name,
     kP00NameLength, SizeRule::BlocksAfterP00Header, ExtensionRule::Prg},
    {SingleKind::Tap, catalogue::kFileTap, "C64-TAPE-RAW", 12, true, false, NameRule::DropLastFour,
     0, 0, SizeRule::Bytes, ExtensionRule::Prg},
    {SingleKind::Vsf, catalogue::kFileVsf, "VICE SNAPSHOT FILE", 18, true, false,
     NameRule::DropLastFour, 0, 0, SizeRule::Bytes, ExtensionRule::Prg},
    {SingleKind::C64, catalogue::kFileC64, "C64", 3, true, false, NameRule::UpToLastDot, 0, 0,
     SizeRule::Bytes, ExtensionRule::Prg},
    {SingleKind::Crt, catalogue::kFileCrt, "C64 CARTRIDGE", 16, false, true, NameRule::Header,
     kCrtName, kCrtNameLength, SizeRule::Blocks, ExtensionRule::Prg},
    {SingleKind::Text, catalogue::kFileText, nullptr, 0, false, false, NameRule::UpToLastDot, 0, 0,
     SizeRule::Bytes, ExtensionRule::LastThree},
    {SingleKind::Pdf, catalogue::kFilePdf, nullptr, 0, false, false, NameRule::UpToLastDot, 0, 0,
     SizeRule::Bytes, ExtensionRule::Pdf},
    {SingleKind::Picture, catalogue::kFilePicture, nullptr, 0, false, false, NameRule::UpToLastDot,
     0, 0, SizeRule::Bytes, ExtensionRule::LastThree},
    {SingleKind::Vfl, catalogue::kFileVfl, "# VICE FLIPLIST FILE", 20, true, false,
     NameRule::UpToLastDot, 0, 0, SizeRule::Bytes, ExtensionRule::LastThree},
}};

QString programName(const SingleFormat& format, const QString& fileName, const ByteSource& file)
{
    switch (format.name) {
    case NameRule::DropLastFour:
        return fileName.left(std::max<qsizetype>(fileName.size() - 4, 0));
    case NameRule::UpToLastDot: {
        const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
        return dot < 0 ? fileName : fileName.left(dot);
    }
    case NameRule::Header:
        break;
    }
    return platform::latin1ToText(untilZero(file.bytes(format.nameOffset, format.nameLength)));
}

qint64 entrySize(const SingleFormat& format, qint64 length)
{
    switch (format.size) {
    case SizeRule::Blocks:
        return roundHalfEven(double(length) / kBlockBytes);
    case SizeRule::BlocksAfterP00Header:
        return roundHalfEven(double(length - kP00HeaderBytes) / kBlockBytes);
    case SizeRule::Bytes:
        break;
    }
    return length;
}

} // namespace

const SingleFormat& singleFormat(SingleKind kind)
{
    for (const SingleFormat& f : kFormats)
        if (f.kind == kind)
            return f;
    return kFormats[0];
}

QString readMagic(const SingleFormat& format, const ByteSource& file)
{
    QByteArray bytes = file.bytes(0, format.magicLength);
    if (format.magicUntilZero)
        bytes = untilZero(bytes);
    QString text = platform::latin1ToText(bytes);
    return format.magicTrimBlanks ? trimRightBlanks(text) : text;
}

SingleEntry readSingleEntry(const SingleFormat& format, const QString& fileName,
                            const ByteSource& file)
{
    SingleEntry e;
    e.program = programName(format, fileName, file);
    e.size = entrySize(format, file.size());
    switch (format.extension) {
    case ExtensionRule::Prg:
        e.extension = QStringLiteral("PRG");
        break;
    case ExtensionRule::Pdf:
        e.extension = QStringLiteral("PDF");
        break;
    case ExtensionRule::LastThree:
        e.extension = upperLatin1(fileName.right(3));
        break;
    }
    return e;
}

} // namespace vd::formats
