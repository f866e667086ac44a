#pragma once
// The one table between a catalogued name and the glyphs of the "C-64" font. Names are kept as
// the container held them (byte n is U+00nn); only the drawing goes through this table, so a
// directory's art shows as the C64 shows it while letters, digits and signs stay readable.

#include <QString>

namespace vd::formats {

// The family whose code points the table names.
inline const QString kC64GlyphFamily = QStringLiteral("C-64");

// The code point of the "C-64" font that draws byte `byte` of a name.
char16_t petsciiGlyph(quint8 byte);

// A name as drawn: each character below U+0100 through petsciiGlyph, others as they are.
QString toC64Glyphs(const QString& name);

} // namespace vd::formats
