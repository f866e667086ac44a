// The one-entry files: header tests, names, sizes with their rounding, and the extension text.

#include "formats/CbmText.h"
#include "formats/SingleFile.h"

#include <QtTest>

using namespace vd::formats;

Q_DECLARE_METATYPE(vd::formats::SingleKind)

namespace {

QByteArray withLength(QByteArray head, int length)
{
    head.append(QByteArray(std::max<qsizetype>(0, length - head.size()), '\x01'));
    return head.left(length);
}

QByteArray p00(const QByteArray& magic, const QByteArray& name, int length)
{
    QByteArray h = magic + QByteArray(1, '\0') + name;
    h.append(QByteArray(std::max<qsizetype>(0, 26 - h.size()), '\0'));
    return withLength(h, length);
}

QByteArray crt(const QByteArray& signature, const QByteArray& name, int length)
{
    QByteArray h = signature.leftJustified(16, ' ', true) + QByteArray(16, '\0') + name;
    h.append(QByteArray(std::max<qsizetype>(0, 64 - h.size()), '\0'));
    return withLength(h, length);
}

} // namespace

class TestSingleFile : public QObject
{
    Q_OBJECT

private slots:
    void entries_data()
    {
        QTest::addColumn<SingleKind>("kind");
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("headerOk");
        QTest::addColumn<QString>("program");
        QTest::addColumn<qint64>("size");
        QTest::addColumn<QString>("extension");
        const QByteArray none;
        QTest::newRow("PRG 381 bytes: 1.5 rounds to 2")
            << SingleKind::Prg << "x.prg" << withLength(none, 381) << true << "x" << qint64(2)
            << "PRG";
        QTest::newRow("P00 name from the header, 25 off")
            << SingleKind::P00 << "TEMPLTSM.P00" << p00("C64File", "TEMPLATE.ASM", 25 + 381) << true
            << "TEMPLATE.ASM" << qint64(2) << "PRG";
        QTest::newRow("P00 header in lower case")
            << SingleKind::P00 << "a.p00" << p00("c64file", "A", 300) << true << "A" << qint64(1)
            << "PRG";
        QTest::newRow("P00 name of 17 bytes")
            << SingleKind::P00 << "a.p00" << p00("C64File", "SEVENTEEN-CHARS!!", 100) << true
            << "SEVENTEEN-CHARS!!" << qint64(0) << "PRG";
        QTest::newRow("TAP header ends at byte 0")
            << SingleKind::Tap << "x.tap" << withLength(QByteArray("C64-TAPE\0RAW", 12), 20)
            << false << "" << qint64(0) << "";
        QTest::newRow("C64 snapshot, name up to the last dot")
            << SingleKind::C64 << "my.game.c64" << withLength("C64", 70000) << true << "my.game"
            << qint64(70000) << "PRG";
        QTest::newRow("CRT with three blanks behind the signature")
            << SingleKind::Crt << "cart.crt" << crt("C64 CARTRIDGE   ", "VICE CART", 8272) << true
            << "VICE CART" << qint64(33) << "PRG";
        QTest::newRow("CRT name: only 16 bytes of the field")
            << SingleKind::Crt << "c.crt" << crt("C64 CARTRIDGE", "Generic C64 Cartridge", 4176)
            << true << "Generic C64 Cart" << qint64(16) << "PRG";
        QTest::newRow("text keeps its extension")
            << SingleKind::Text << "Read Me.nfo" << withLength(none, 1234) << true << "Read Me"
            << qint64(1234) << "NFO";
        QTest::newRow("VFL in mixed case")
            << SingleKind::Vfl << "disks.vfl" << withLength("# Vice fliplist file\n", 40) << true
            << "disks" << qint64(40) << "VFL";
    }
    void entries()
    {
        QFETCH(SingleKind, kind);
        QFETCH(QString, fileName);
        QFETCH(QByteArray, bytes);
        QFETCH(bool, headerOk);
        QFETCH(QString, program);
        QFETCH(qint64, size);
        QFETCH(QString, extension);
        const SingleFormat& format = singleFormat(kind);
        const MemoryBytes file(bytes);
        const bool passed =
            !format.magic || readMagic(format, file).toUpper() == QLatin1String(format.magic);
        QCOMPARE(passed, headerOk);
        if (!headerOk)
            return;
        const SingleEntry e = readSingleEntry(format, fileName, file);
        QCOMPARE(e.program, program);
        QCOMPARE(e.size, size);
        QCOMPARE(e.extension, extension);
    }

    void upperCaseStaysInTheCodePage_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("upper");
        QTest::newRow("ASCII") << "c64 tape"
                               << "C64 TAPE";
        QTest::newRow("umlauts") << QStringLiteral("\u00e4\u00f6\u00fc")
                                 << QStringLiteral("\u00c4\u00d6\u00dc");
        QTest::newRow("sharp s stays one character")
            << QStringLiteral("pa\u00df") << QStringLiteral("PA\u00df");
        QTest::newRow("y diaeresis has no capital here")
            << QStringLiteral("\u00ff") << QStringLiteral("\u00ff");
        QTest::newRow("micro sign") << QStringLiteral("\u00b5") << QStringLiteral("\u00b5");
    }
    void upperCaseStaysInTheCodePage()
    {
        QFETCH(QString, text);
        QFETCH(QString, upper);
        QCOMPARE(upperLatin1(text), upper);
        // And so the extension column of a picture keeps three characters.
        const SingleEntry e = readSingleEntry(singleFormat(SingleKind::Picture),
                                              QStringLiteral("x.") + text, LengthOnly(1));
        QCOMPARE(e.extension, (QStringLiteral("X.") + upper).right(3));
    }
};

QTEST_GUILESS_MAIN(TestSingleFile)
#include "tst_singlefile.moc"
