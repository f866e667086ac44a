#pragma once
// The tables of a catalogue, the code tables and the extension lists.

#include "catalogue/DaoTypes.h"

#include <QString>
#include <QVector>

namespace vd::catalogue {

// C64Files, Config and Category, in the order a new catalogue creates them.
QVector<db::TableDef> catalogueTables();

// Category.iType
constexpr int kTypeFile = 1;
constexpr int kTypeUserCategory = 3;

// Category.iFileType; an entry inside an archive adds kArchiveIconOffset to it for its icon.
enum FileType : int {
    kFileD64 = 1,
    kFileD71 = 2,
    kFileT64 = 3,
    kFilePrg = 4,
    kFileP00 = 5,
    kFileTap = 6,
    kFileVsf = 7,
    kFileC64 = 8,
    kFileCrt = 9,
    kFileText = 10,
    kFilePdf = 11,
    kFileG64 = 12,
    kFileD81 = 13,
    kFilePicture = 14,
    kFileVfl = 15,
};
constexpr int kArchiveIconOffset = 24;

inline const QString kStartExtensions =
    QStringLiteral(".D64;.D71;.T64;.PRG;.P00;.TAP;.VSF;.C64;.CRT;.G64;.D81;.VFL");
inline const QString kArchiveExtensions = QStringLiteral(".ZIP;.RAR;.7Z;.CAB");
inline const QString kPictureExtensions = QStringLiteral(".BMP;.GIF;.JPG;.PNG;.TIFF");
inline const QString kTextExtensions = QStringLiteral(".TXT;.NFO;.DIZ");
inline const QString kPdfExtensions = QStringLiteral(".PDF");

} // namespace vd::catalogue
