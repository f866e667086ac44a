#include "formats/PetsciiGlyphs.h"

#include <array>

namespace vd::formats {

namespace {

// Layout of the table. A name's bytes are PETSCII as a C64 prints them in the upper-case and
// graphics set, inside the quotes of a directory listing:
//
//   0x00-0x1F  control codes; inside quotes the C64 shows them reversed: @ A..Z [ £ ] ↑ ←,
//              which the font has at U+E014..U+E033 in that order.
//   0x20-0x5B  ASCII signs, digits and capitals: the same code point.
//   0x5C       the C64 has £ where ASCII has a backslash; 0x5E is ↑ and 0x5F is ←.
//   0x60-0x7F  graphics (as 0xC0-0xDF), except 0x61-0x7A: lower-case letters come from file
//              names of other systems far more often than from a C64, so they stay letters.
//   0x80-0x9F  control codes, shown reversed: the graphics of 0xC0-0xDF inverted.
//   0xA0-0xBF  graphics, screen codes 0x60-0x7F (0xA0, the shifted blank, stays U+00A0).
//   0xC0-0xDF  graphics, screen codes 0x40-0x5F.
//   0xE0-0xFE  as 0xA0-0xBE; 0xFF is π.
//
// The font puts a C64 graphic on its Unicode look-alike where one exists (box drawing in the
// heavy weight, block elements, card suits) and the twenty without one on U+E000..U+E013;
// reversed glyphs follow from U+E014. The positions were read from the font's glyphs.

// Screen codes 0x40-0x7F of the upper-case set.
constexpr std::array<char16_t, 64> kGraphics = {
    0x2501, 0x2660, 0x2503, 0xE000, 0xE001, 0xE002, 0xE003, 0xE004, // ─ ♠ │ and lines
    0xE005, 0x256E, 0x2570, 0x256F, 0xE006, 0x2572, 0x2571, 0xE007, // ╮ ╰ ╯ ╲ ╱ corners
    0xE008, 0x25CF, 0xE009, 0x2665, 0xE00A, 0x256D, 0x2573, 0x25CB, // ● ♥ ╭ ╳ ○
    0x2663, 0xE00B, 0x2666, 0x254B, 0xE00C, 0xE00D, 0x03C0, 0x25E5, // ♣ ♦ ┼ π ◥
    0x00A0, 0x258C, 0x2584, 0x2594, 0x2581, 0x258F, 0x2593, 0x2595, // blank ▌ ▄ ▔ ▁ ▏ ▒ ▕
    0xE00E, 0x25E4, 0xE00F, 0x2523, 0x2597, 0x2517, 0x2513, 0x2582, // ◤ ├ ▗ └ ┐ ▂
    0x250F, 0x253B, 0x2533, 0x252B, 0x258E, 0x258D, 0xE010, 0xE011, // ┌ ┴ ┬ ┤ ▎ ▍
    0xE012, 0x2583, 0xE013, 0x2596, 0x259D, 0x251B, 0x2598, 0x259A, // ▃ ▖ ▝ ┘ ▘ ▚
};

// Screen codes 0xC0-0xDF: the first 32 of kGraphics, reversed.
constexpr std::array<char16_t, 32> kReversedGraphics = {
    0xE053, 0x2664, 0xE054, 0xE055, 0xE056, 0xE057, 0xE058, 0xE059, 0xE05A, 0xE05B, 0xE05C,
    0xE05D, 0xE05E, 0xE05F, 0xE060, 0xE061, 0xE062, 0x25D8, 0xE063, 0x2661, 0xE064, 0xE065,
    0xE066, 0x25D9, 0x2667, 0xE067, 0x2662, 0xE068, 0xE069, 0xE06A, 0xE06B, 0x25E3,
};

constexpr char16_t kReversedLetters = 0xE014;

constexpr char16_t glyphOf(int byte)
{
    if (byte < 0x20)
        return char16_t(kReversedLetters + byte);
    switch (byte) {
    case 0x5C:
        return 0x00A3; // £
    case 0x5E:
        return 0x2191; // ↑
    case 0x5F:
        return 0x2190; // ←
    case 0xFF:
        return kGraphics[0x1E]; // π
    default:
        break;
    }
    if (byte < 0x60 || (byte >= 0x61 && byte <= 0x7A))
        return char16_t(byte);
    if (byte < 0x80)
        return kGraphics[size_t(byte - 0x60)];
    if (byte < 0xA0)
        return kReversedGraphics[size_t(byte - 0x80)];
    if (byte < 0xC0)
        return kGraphics[size_t(byte - 0xA0 + 0x20)];
    if (byte < 0xE0)
        return kGraphics[size_t(byte - 0xC0)];
    return kGraphics[size_t(byte - 0xE0 + 0x20)];
}

constexpr std::array<char16_t, 256> makeTable()
{
    std::array<char16_t, 256> table{};
    for (int b = 0; b < 256; ++b)
        table[size_t(b)] = glyphOf(b);
    return table;
}

constexpr std::array<char16_t, 256> kTable = makeTable();

} // namespace

char16_t petsciiGlyph(quint8 byte)
{
    return kTable[byte];
}

QString toC64Glyphs(const QString& name)
{
    QString out = name;
    for (QChar& c : out) {
        if (c.unicode() < 0x100)
            c = QChar(kTable[c.unicode()]);
    }
    return out;
}

} // namespace vd::formats
