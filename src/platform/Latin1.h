#pragma once
// The program's single-byte text: ISO-8859-1, where byte n is the character U+00nn. Disk
// names, file names inside images and old settings files come as such bytes.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

namespace vd::platform {

// Byte n becomes U+00nn, so 0xA0 becomes U+00A0 (the no-break space that pads C64 names).
QString latin1ToText(QByteArrayView bytes);

// The way back: U+00nn becomes byte n, so bytes -> text -> bytes is exact. A character above
// U+00FF (a surrogate pair counts as one) becomes '?'.
QByteArray textToLatin1(QStringView text);

} // namespace vd::platform
