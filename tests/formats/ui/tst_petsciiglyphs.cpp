// The table from a name's bytes to the glyphs of the C-64 font: every byte reaches a glyph the
// installed font really has, letters, digits and signs stay themselves, the C64's graphics are
// graphics (never the accented letters the same bytes are in ISO-8859-1), the byte ranges the
// C64 draws alike map alike, and control codes show reversed as inside a listing's quotes.

#include "formats/PetsciiGlyphs.h"

#include <QFileInfo>
#include <QRawFont>
#include <QtTest>

using vd::formats::petsciiGlyph;
using vd::formats::toC64Glyphs;

namespace {

const QString kFontFile = QStringLiteral("/usr/share/fonts/truetype/sixtyfour/C-64-Regular.ttf");

bool isGraphic(char16_t c)
{
    // Box drawing, blocks, geometric shapes, card suits, π, and the font's private graphics.
    return (c >= 0x2500 && c <= 0x25FF) || (c >= 0x2660 && c <= 0x2667) || c == 0x03C0 ||
           (c >= 0xE000 && c <= 0xE09D) || c == 0x00A0;
}

} // namespace

class TestPetsciiGlyphs : public QObject
{
    Q_OBJECT

private slots:
    void everyByteHasAGlyphInTheFont()
    {
        if (!QFileInfo::exists(kFontFile))
            QSKIP("fonts-sixtyfour is not installed (C-64-Regular.ttf missing)");
        const QRawFont font(kFontFile, 16);
        QVERIFY(font.isValid());
        for (int b = 0; b < 256; ++b) {
            const char16_t c = petsciiGlyph(quint8(b));
            QVERIFY2(font.supportsCharacter(QChar(c)),
                     qPrintable(QStringLiteral("byte %1 -> U+%2 not in the font")
                                    .arg(b, 2, 16, QLatin1Char('0'))
                                    .arg(uint(c), 4, 16, QLatin1Char('0'))));
        }
    }

    void lettersDigitsAndSignsStay()
    {
        for (int b = 0x20; b <= 0x5B; ++b)
            QCOMPARE(uint(petsciiGlyph(quint8(b))), uint(b));
        QCOMPARE(uint(petsciiGlyph(']')), uint(']'));
        for (int b = 'a'; b <= 'z'; ++b)
            QCOMPARE(uint(petsciiGlyph(quint8(b))), uint(b));
        // The C64's own signs where ASCII has others.
        QCOMPARE(uint(petsciiGlyph(0x5C)), 0x00A3u); // £
        QCOMPARE(uint(petsciiGlyph(0x5E)), 0x2191u); // ↑
        QCOMPARE(uint(petsciiGlyph(0x5F)), 0x2190u); // ←
    }

    void graphicsAreGraphics_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::newRow("0x60") << 0x60 << 0x60;
        QTest::newRow("0x7B-0x7F") << 0x7B << 0x7F;
        QTest::newRow("0xA0-0xBF") << 0xA0 << 0xBF;
        QTest::newRow("0xC0-0xDF") << 0xC0 << 0xDF;
        QTest::newRow("0xE0-0xFF") << 0xE0 << 0xFF;
    }
    void graphicsAreGraphics()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        for (int b = from; b <= to; ++b) {
            const char16_t c = petsciiGlyph(quint8(b));
            // π is the one graphic that Unicode counts as a letter.
            QVERIFY2(isGraphic(c) && (c == 0x03C0 || !QChar(c).isLetter()),
                     qPrintable(QStringLiteral("byte %1 -> U+%2")
                                    .arg(b, 2, 16)
                                    .arg(uint(c), 4, 16, QLatin1Char('0'))));
        }
    }

    void knownGraphics_data()
    {
        QTest::addColumn<int>("byte");
        QTest::addColumn<uint>("glyph");
        QTest::newRow("shifted A: spade") << 0xC1 << 0x2660u;
        QTest::newRow("shifted S: heart") << 0xD3 << 0x2665u;
        QTest::newRow("shifted Q: ball") << 0xD1 << 0x25CFu;
        QTest::newRow("shifted *: line") << 0xC0 << 0x2501u;
        QTest::newRow("shifted +: cross") << 0xDB << 0x254Bu;
        QTest::newRow("C= K: left half") << 0xA1 << 0x258Cu;
        QTest::newRow("C= I: lower half") << 0xA2 << 0x2584u;
        QTest::newRow("C= +: checker") << 0xA6 << 0x2593u;
        QTest::newRow("shifted blank") << 0xA0 << 0x00A0u;
        QTest::newRow("pi") << 0xFF << 0x03C0u;
        QTest::newRow("reversed A") << 0x01 << 0xE015u;
        QTest::newRow("reversed ←") << 0x1F << 0xE033u;
        QTest::newRow("reversed spade") << 0x81 << 0x2664u;
        QTest::newRow("reversed heart") << 0x93 << 0x2661u;
    }
    void knownGraphics()
    {
        QFETCH(int, byte);
        QFETCH(uint, glyph);
        QCOMPARE(uint(petsciiGlyph(quint8(byte))), glyph);
    }

    void rangesTheC64DrawsAlikeMapAlike()
    {
        for (int i = 0; i < 0x20; ++i) {
            QCOMPARE(petsciiGlyph(quint8(0x60 + i)) == petsciiGlyph(quint8(0xC0 + i)),
                     !(0x60 + i >= 'a' && 0x60 + i <= 'z'));
            if (0xE0 + i < 0xFF)
                QCOMPARE(petsciiGlyph(quint8(0xE0 + i)), petsciiGlyph(quint8(0xA0 + i)));
        }
        QCOMPARE(petsciiGlyph(0xFF), petsciiGlyph(0xDE));
        // Reversed graphics differ from the plain ones, and from each other but for the two
        // lines the C64 has twice (0x40/0x43 and 0x42/0x5D).
        QSet<char16_t> reversed;
        for (int b = 0x80; b < 0xA0; ++b) {
            QVERIFY(petsciiGlyph(quint8(b)) != petsciiGlyph(quint8(b + 0x40)));
            reversed.insert(petsciiGlyph(quint8(b)));
        }
        QCOMPARE(reversed.size(), 32);
    }

    void namesKeepLengthAndWideCharacters()
    {
        const QString stored = QString::fromLatin1("\xb0\xc3\xae GAME \xad\xc3\xbd");
        const QString drawn = toC64Glyphs(stored);
        QCOMPARE(drawn.size(), stored.size());
        QCOMPARE(drawn.mid(3, 6), QStringLiteral(" GAME "));
        QCOMPARE(drawn.at(0).unicode(), u'\u250F'); // ┌
        QCOMPARE(drawn.at(2).unicode(), u'\u2513'); // ┐
        QCOMPARE(toC64Glyphs(QStringLiteral("x\u20ACy")), QStringLiteral("x\u20ACy"));
        QVERIFY(toC64Glyphs(QString()).isEmpty());
    }
};

QTEST_MAIN(TestPetsciiGlyphs)
#include "tst_petsciiglyphs.moc"
