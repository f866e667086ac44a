#pragma once
// The files that become exactly one catalogue entry: program files, tapes as raw pulses,
// snapshots, cartridges, texts, PDFs, pictures and flip lists. Each is known by its extension
// and, for most, by a header text; its entry's name comes from the header or the file name and
// its size from the file length. The content is never decoded.

#include "formats/ByteSource.h"

#include <QString>

namespace vd::formats {

enum class SingleKind
{
    Prg,
    P00,
    Tap,
    Vsf,
    C64,
    Crt,
    Text,
    Pdf,
    Picture,
    Vfl
};

// How the entry's name is made.
enum class NameRule
{
    DropLastFour, // the file name minus its last 4 characters
    UpToLastDot,  // the file name up to its last dot
    Header,       // a field of the header, up to its first byte 0
};

// How lSize is made.
enum class SizeRule
{
    Bytes,               // the file length
    Blocks,              // file length / 254, rounded
    BlocksAfterP00Header // (file length - 25) / 254, rounded
};

// How the extension column is made.
enum class ExtensionRule
{
    Prg,      // "PRG"
    Pdf,      // "PDF"
    LastThree // the last 3 characters of the file name, upper-cased ("IFF" for a TIFF)
};

struct SingleFormat
{
    SingleKind kind;
    int fileType;         // iFileType of the catalogue
    const char* magic;    // the header text expected, nullptr: no header test
    int magicLength;      // how many bytes from 0 are the header text
    bool magicUntilZero;  // the header text ends at its first byte 0
    bool magicTrimBlanks; // blanks at the right end are cut before the test
    NameRule name;
    qint64 nameOffset; // NameRule::Header
    int nameLength;
    SizeRule size;
    ExtensionRule extension;
};

const SingleFormat& singleFormat(SingleKind kind);

// The header text as the test compares it (before upper-casing).
QString readMagic(const SingleFormat& format, const ByteSource& file);

struct SingleEntry
{
    QString program;
    qint64 size = 0;
    QString extension;
};

// The one entry of a file whose header (if any) has passed. `fileName` is the name with its
// extension, no folder.
SingleEntry readSingleEntry(const SingleFormat& format, const QString& fileName,
                            const ByteSource& file);

} // namespace vd::formats
