#pragma once
// How a directory is shown in the C64's manner: the disk header row and the size column.

#include <QString>

namespace vd::formats {

// Kinds whose lSize is a block count and whose listing has a disk header row: D64, D71, G64,
// D81.
bool isDiskKind(int fileType);
// Kinds whose lSize is a byte count: TAP, VSF, C64, text, PDF, picture, VFL.
bool isByteSizedKind(int fileType);

// The size column: bytes as "1.00 MB", "12.3 KB" or "100 Byte"; blocks as "8 Block(s)".
QString FormatSize(qint64 size, int fileType);

// The header row's name: a double quote, the disk name cut or padded with blanks to 16
// characters, a double quote.
QString diskHeaderName(const QString& diskName);

} // namespace vd::formats
