// T64 directories: the header test, the count read from bytes 35 and 36 with its limit, the
// one-exchange ordering and the sizes with the two load-address bytes.

#include "formats/TapeImage.h"
#include "support/C64ImageWriter.h"

#include <QtTest>

using namespace vd::formats;
using vd::test::t64;
using vd::test::TapeSlot;

namespace {

const QByteArray kHeader("C64S tape image file");

TapeDirectory read(const QByteArray& bytes)
{
    return readT64Directory(MemoryBytes(bytes));
}

QVector<qint64> sizes(const TapeDirectory& dir)
{
    QVector<qint64> list;
    for (const TapeEntry& e : dir.entries)
        list << e.blocks;
    return list;
}

} // namespace

class TestTapeImage : public QObject
{
    Q_OBJECT

private slots:
    void headerTest_data()
    {
        QTest::addColumn<QString>("header");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("usual") << "C64S tape image file" << true;
        QTest::newRow("any spelling of the rest") << "C64 Tape File" << true;
        QTest::newRow("tape in lower case") << "C64S tape" << true;
        QTest::newRow("raw is a TAP file") << "C64-TAPE-RAW" << false;
        QTest::newRow("must begin with C64") << "TAPE C64" << false;
        QTest::newRow("C64 as it stands") << "c64s tape image file" << false;
        QTest::newRow("no TAPE") << "C64S image file" << false;
        QTest::newRow("empty") << "" << false;
    }
    void headerTest()
    {
        QFETCH(QString, header);
        QFETCH(bool, accepted);
        QCOMPARE(isT64Header(header), accepted);
    }

    void headerEndsAtByteZero()
    {
        const QByteArray bytes = t64(QByteArray("C64S tape\0RAW", 13), 0, "", {}, 64);
        QCOMPARE(readT64Header(MemoryBytes(bytes)), QStringLiteral("C64S tape"));
    }

    void sizesInFileOrder()
    {
        // Starts 1000, 3000, 5000 in a file of 7000 bytes: (2000 + 2) / 254 rounds to 8 each.
        const QByteArray bytes =
            t64(kHeader, 3, "MY TAPE   ",
                {{true, 1000, "ONE"}, {true, 3000, "TWO"}, {true, 5000, "THREE  "}}, 7000);
        const TapeDirectory dir = read(bytes);
        QCOMPARE(dir.tapeName, QStringLiteral("MY TAPE"));
        QCOMPARE(sizes(dir), QVector<qint64>({8, 8, 8}));
        QCOMPARE(dir.entries[2].name, QStringLiteral("THREE"));
        QCOMPARE(dir.entries[2].index, 3);
    }

    void oneStepOutOfOrder()
    {
        // The second entry lies before the first in the file: one exchange puts them right.
        const QByteArray bytes =
            t64(kHeader, 3, "T", {{true, 3000, "B"}, {true, 1000, "A"}, {true, 5000, "C"}}, 6000);
        const TapeDirectory dir = read(bytes);
        QCOMPARE(sizes(dir), QVector<qint64>({8, 8, 4})); // 2002/254, 2002/254, 1002/254
    }

    void twoStepsOutOfOrderKeepsTheLimit()
    {
        // The third entry lies before both others: only one exchange is made, with the first
        // later entry, so the second entry's size comes out negative. That limit is kept.
        const QByteArray bytes =
            t64(kHeader, 3, "T", {{true, 3000, "B"}, {true, 5000, "C"}, {true, 1000, "A"}}, 7000);
        QCOMPARE(sizes(read(bytes)), QVector<qint64>({16, -8, 16}));
    }

    void countFromBytes35And36()
    {
        QVector<TapeSlot> slotList;
        for (int i = 0; i < 3; ++i)
            slotList << TapeSlot{true, quint32(1000 + i * 254), "E" + QByteArray::number(i)};
        QByteArray bytes = t64(kHeader, 2, "", slotList, 2000);
        bytes[34] = char(7); // the low byte of a 16-bit field at 34 plays no part
        QCOMPARE(read(bytes).entries.size(), 2);
        bytes[35] = char(1); // high byte: 256 + 2
        bytes[36] = char(2);
        QCOMPARE(read(bytes).count, 258);
    }

    void countLimits_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("entries");
        QTest::newRow("0: no entries") << 0 << 0;
        QTest::newRow("1000 is cut to 400") << 1000 << 400;
        QTest::newRow("65535 is cut to 400") << 65535 << 400;
    }
    void countLimits()
    {
        QFETCH(int, count);
        QFETCH(int, entries);
        QVector<TapeSlot> slotList;
        for (int i = 0; i < 400; ++i)
            slotList << TapeSlot{true, quint32(20000 + i * 254), "P" + QByteArray::number(i)};
        const QByteArray bytes = t64(kHeader, count, "BIG", slotList, 20000 + 399 * 254 + 508);
        const TapeDirectory dir = read(bytes);
        QCOMPARE(dir.entries.size(), entries);
        if (entries > 0) {
            // The file's length closes entry 399: 508 + 2 bytes.
            QCOMPARE(dir.entries.last().blocks, 2);
            QCOMPARE(dir.entries.last().name, QStringLiteral("P399"));
        }
    }

    void unusedSlotsAreRowsWithoutName()
    {
        const QByteArray bytes =
            t64(kHeader, 3, "T", {{true, 1000, "A"}, {false, 0, "JUNK"}, {true, 2000, "C"}}, 3000);
        const TapeDirectory dir = read(bytes);
        QCOMPARE(dir.entries.size(), 3);
        QVERIFY(!dir.entries[1].used);
        QCOMPARE(dir.entries[1].name, QString());
        QCOMPARE(dir.entries[1].index, 2);
    }

    void truncatedDirectoryReadsZeros()
    {
        // The count promises 10 entries; the file ends behind the first one.
        const QByteArray bytes = t64(kHeader, 10, "CUT", {{true, 100, "A"}, {true, 200, "B"}}, 96);
        const TapeDirectory dir = read(bytes);
        QCOMPARE(dir.entries.size(), 10);
        QCOMPARE(dir.entries[0].name, QStringLiteral("A"));
        QVERIFY(dir.entries[0].used);
        QVERIFY(!dir.entries[1].used);
    }

    void bankersRounding_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<qint64>("rounded");
        QTest::newRow("0.5 to 0") << 0.5 << qint64(0);
        QTest::newRow("1.5 to 2") << 1.5 << qint64(2);
        QTest::newRow("2.5 to 2") << 2.5 << qint64(2);
        QTest::newRow("2.51 to 3") << 2.51 << qint64(3);
        QTest::newRow("-0.5 to 0") << -0.5 << qint64(0);
        QTest::newRow("-1.5 to -2") << -1.5 << qint64(-2);
        QTest::newRow("7.88 to 8") << 2002.0 / 254 << qint64(8);
    }
    void bankersRounding()
    {
        QFETCH(double, value);
        QFETCH(qint64, rounded);
        QCOMPARE(roundHalfEven(value), rounded);
    }
};

QTEST_GUILESS_MAIN(TestTapeImage)
#include "tst_tapeimage.moc"
