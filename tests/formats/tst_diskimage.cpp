// Disk image directories read byte for byte: the type texts, the pad rule, the accepted lengths
// and the walk of the directory chain with its guard.

#include "formats/DiskImage.h"
#include "support/C64ImageWriter.h"

#include <QtTest>

using namespace vd;
using namespace vd::formats;
using vd::test::DiskWriter;
using vd::test::Slot;

namespace {

DiskDirectory read(const DiskWriter& writer, DiskKind kind)
{
    const QByteArray bytes = writer.bytes();
    return readDiskDirectory(diskGeometry(kind), MemoryBytes(bytes));
}

QStringList names(const DiskDirectory& dir)
{
    QStringList list;
    for (const DirEntry& e : dir.entries)
        list << e.name;
    return list;
}

} // namespace

class TestDiskImage : public QObject
{
    Q_OBJECT

private slots:
    void typeText_data()
    {
        QTest::addColumn<int>("typeByte");
        QTest::addColumn<QString>("bits");
        QTest::addColumn<QString>("text");
        QTest::newRow("$80") << 0x80 << "10000000"
                             << "DEL";
        QTest::newRow("$81") << 0x81 << "10000001"
                             << "SEQ";
        QTest::newRow("$82") << 0x82 << "10000010"
                             << "PRG";
        QTest::newRow("$83") << 0x83 << "10000011"
                             << "USR";
        QTest::newRow("$84") << 0x84 << "10000100"
                             << "REL";
        QTest::newRow("$85") << 0x85 << "10000101"
                             << "???";
        QTest::newRow("$C2 locked") << 0xC2 << "11000010"
                                    << "<PRG";
        QTest::newRow("$42") << 0x42 << "1000010"
                             << "PRG";
        QTest::newRow("$60") << 0x60 << "1100000"
                             << "<DEL";
        QTest::newRow("$04") << 0x04 << "100"
                             << "REL";
        QTest::newRow("$02") << 0x02 << "10"
                             << "???";
        QTest::newRow("$01") << 0x01 << "1"
                             << "???";
        QTest::newRow("$03") << 0x03 << "11"
                             << "<???";
        QTest::newRow("$06") << 0x06 << "110"
                             << "<???";
    }
    void typeText()
    {
        QFETCH(int, typeByte);
        QFETCH(QString, bits);
        QFETCH(QString, text);
        QCOMPARE(ByteToBitString(quint8(typeByte)), bits);
        QCOMPARE(FileTypeText(bits), text);
    }

    void padRule_data()
    {
        QTest::addColumn<QByteArray>("raw");
        QTest::addColumn<QString>("name");
        const QByteArray pad(1, char(0xA0));
        QTest::newRow("trailing pad cut") << QByteArray("GAME") + pad.repeated(12) << "GAME";
        QTest::newRow("inner pad kept")
            << QByteArray("AB") + pad + "CD" + pad.repeated(11) << QStringLiteral("AB\u00A0CD");
        QTest::newRow("all pad") << pad.repeated(16) << "";
        QTest::newRow("no pad") << QByteArray("SIXTEEN CHARS!!!") << "SIXTEEN CHARS!!!";
        QTest::newRow("zero bytes stay")
            << QByteArray("A\0\0", 3) + pad.repeated(13) << QString::fromLatin1("A\0\0", 3);
        QTest::newRow("pad then text keeps all")
            << pad.repeated(15) + "X" << QString(15, QChar(0xA0)) + QLatin1Char('X');
    }
    void padRule()
    {
        QFETCH(QByteArray, raw);
        QFETCH(QString, name);
        QCOMPARE(trimPadding(QString::fromLatin1(raw)), name);
    }

    void lengths_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<qint64>("length");
        QTest::addColumn<bool>("accepted");
        const int d64 = int(DiskKind::D64), d71 = int(DiskKind::D71), d81 = int(DiskKind::D81);
        QTest::newRow("D64 35 tracks") << d64 << qint64(174848) << true;
        QTest::newRow("D64 35 + errors") << d64 << qint64(175531) << true;
        QTest::newRow("D64 40 tracks") << d64 << qint64(196608) << true;
        QTest::newRow("D64 40 + errors") << d64 << qint64(197376) << true;
        QTest::newRow("D64 one byte short") << d64 << qint64(174847) << false;
        QTest::newRow("D64 empty") << d64 << qint64(0) << false;
        QTest::newRow("D64 with a D71 length") << d64 << qint64(349696) << false;
        QTest::newRow("D71") << d71 << qint64(349696) << true;
        QTest::newRow("D71 + errors") << d71 << qint64(351062) << true;
        QTest::newRow("D71 with a D64 length") << d71 << qint64(174848) << false;
        QTest::newRow("D81") << d81 << qint64(819200) << true;
        QTest::newRow("D81 + errors") << d81 << qint64(822400) << true;
        QTest::newRow("D81 with a D64 length") << d81 << qint64(174848) << false;
    }
    void lengths()
    {
        QFETCH(int, kind);
        QFETCH(qint64, length);
        QFETCH(bool, accepted);
        QCOMPARE(acceptsLength(diskGeometry(DiskKind(kind)), length), accepted);
    }

    void diskNameAndEntries()
    {
        DiskWriter w = DiskWriter::d64();
        w.name("MY DISK").entries({{0x82, "GAME", 150}, {0x81, "NOTES", 2}, {0xC2, "LOCKED", 3}});
        const DiskDirectory dir = read(w, DiskKind::D64);
        QCOMPARE(dir.diskName, QStringLiteral("MY DISK"));
        QCOMPARE(names(dir), QStringList({"GAME", "NOTES", "LOCKED"}));
        QCOMPARE(dir.entries[0].blocks, 150);
        QCOMPARE(dir.entries[2].typeText, QStringLiteral("<PRG"));
        QCOMPARE(dir.entries[2].index, 3);
    }

    void sizeHighByte()
    {
        DiskWriter w = DiskWriter::d64();
        w.entries({{0x82, "BIG", 0x0123}});
        QCOMPARE(read(w, DiskKind::D64).entries[0].blocks, 291);
    }

    void scratchedEntriesLeaveNoGap()
    {
        DiskWriter w = DiskWriter::d64();
        w.entries({{0x82, "ONE", 1},
                   {0x00, "GONE", 1},
                   {0x82, "TWO", 1},
                   {0x00, "", 0},
                   {0x81, "THREE", 1}});
        const DiskDirectory dir = read(w, DiskKind::D64);
        QCOMPARE(names(dir), QStringList({"ONE", "TWO", "THREE"}));
        QCOMPARE(dir.entries[1].index, 2);
        QCOMPARE(dir.entries[2].index, 3);
    }

    void linkIntoAnotherTrackStaysInTheDirectoryTrack()
    {
        DiskWriter w = DiskWriter::d64();
        w.slot(1, 0, {0x82, "FIRST", 1}).link(1, 19, 5);
        w.slot(5, 0, {0x82, "SECOND", 1}).link(5, 0, 255);
        const DiskDirectory dir = read(w, DiskKind::D64);
        QCOMPARE(names(dir), QStringList({"FIRST", "SECOND"}));
        QCOMPARE(dir.sectorsRead, 2);
    }

    void linkToSectorZeroEnds()
    {
        DiskWriter w = DiskWriter::d64();
        w.slot(1, 0, {0x82, "FIRST", 1}).link(1, 18, 0);
        w.slot(2, 0, {0x82, "NEVER", 1});
        const DiskDirectory dir = read(w, DiskKind::D64);
        QCOMPARE(names(dir), QStringList({"FIRST"}));
        QCOMPARE(dir.sectorsRead, 1);
    }

    void loopStopsAtTheGuard_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("sectors");
        QTest::newRow("D64: 18 sectors") << int(DiskKind::D64) << 18;
        QTest::newRow("D81: 37 sectors") << int(DiskKind::D81) << 37;
    }
    void loopStopsAtTheGuard()
    {
        QFETCH(int, kind);
        QFETCH(int, sectors);
        const bool d81 = DiskKind(kind) == DiskKind::D81;
        DiskWriter w = d81 ? DiskWriter::d81() : DiskWriter::d64();
        const int first = d81 ? 3 : 1;
        for (int k = 0; k < 8; ++k)
            w.slot(first, k, {0x82, "LOOP" + QByteArray::number(k), 1});
        w.link(first, d81 ? 40 : 18, quint8(first)); // the sector links to itself
        const DiskDirectory dir = read(w, DiskKind(kind));
        QCOMPARE(dir.sectorsRead, sectors);
        QCOMPARE(dir.entries.size(), sectors * 8);
        QCOMPARE(dir.entries.last().index, sectors * 8); // every repeat has its own index
        QCOMPARE(dir.entries.last().name, QStringLiteral("LOOP7"));
    }

    void errorBytesAnd40TracksReadAs35()
    {
        for (qint64 length : {qint64(174848), qint64(175531), qint64(196608), qint64(197376)}) {
            DiskWriter w = DiskWriter::d64(length);
            w.name("SAME").entries({{0x82, "ENTRY", 7}});
            const DiskDirectory dir = read(w, DiskKind::D64);
            QCOMPARE(dir.diskName, QStringLiteral("SAME"));
            QCOMPARE(names(dir), QStringList({"ENTRY"}));
        }
    }

    void d81PartitionsReadAsCbm()
    {
        DiskWriter w = DiskWriter::d81();
        w.name("BIG DISK")
            .entries({{0x85, "PART", 40}, {0xC5, "LOCKEDPART", 40}, {0xC2, "LOCKED", 1}});
        const DiskDirectory dir = read(w, DiskKind::D81);
        QCOMPARE(dir.diskName, QStringLiteral("BIG DISK"));
        QCOMPARE(dir.entries[0].typeText, QStringLiteral("CBM"));
        QCOMPARE(dir.entries[1].typeText, QStringLiteral("CBM"));
        QCOMPARE(dir.entries[2].typeText, QStringLiteral("<PRG"));
        // The same type byte on a 1541 disk has no name.
        DiskWriter d = DiskWriter::d64();
        d.entries({{0x85, "PART", 40}});
        QCOMPARE(read(d, DiskKind::D64).entries[0].typeText, QStringLiteral("???"));
    }

    void shortSourceEndsTheWalkWithoutReadingPast()
    {
        // Only the disk name and the first two slotList of the first directory sector are there.
        DiskWriter w = DiskWriter::d64();
        w.name("CUT").entries({{0x82, "A", 1},
                               {0x82, "B", 1},
                               {0x82, "C", 1},
                               {0x82, "D", 1},
                               {0x82, "E", 1},
                               {0x82, "F", 1}});
        const QByteArray cut = w.bytes().left(0x16600 + 64);
        const DiskDirectory dir = readDiskDirectory(diskGeometry(DiskKind::D64), MemoryBytes(cut));
        QCOMPARE(dir.diskName, QStringLiteral("CUT"));
        QCOMPARE(names(dir), QStringList({"A", "B"}));
        QCOMPARE(dir.sectorsRead, 1);
        const DiskDirectory none =
            readDiskDirectory(diskGeometry(DiskKind::D64), MemoryBytes(QByteArray()));
        QVERIFY(none.entries.isEmpty());
        QCOMPARE(none.diskName, QString());
    }
};

QTEST_GUILESS_MAIN(TestDiskImage)
#include "tst_diskimage.moc"
