// G64 images decoded into D64s: byte for byte against images written by cc1541 and by our own
// encoder, sectors with errors, sectors across a track's end, and broken or hostile images.

#include "formats/ByteSource.h"
#include "formats/DiskImage.h"
#include "formats/Gcr.h"
#include "support/C64ImageWriter.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

using namespace vd::formats;
using vd::test::DiskWriter;

namespace {

QByteArray sampleD64()
{
    DiskWriter w = DiskWriter::d64();
    w.name("GCR TEST").entries({{0x82, "ONE", 10}, {0x81, "TWO", 2}, {0xC2, "THREE", 3}});
    QByteArray bytes = w.bytes();
    // Some data on every track, so that each sector's place is checked.
    for (qsizetype i = 0; i < bytes.size(); i += 97)
        if (i < 0x16500 || i >= 0x16500 + 19 * 256)
            bytes[i] = char(i / 97);
    return bytes;
}

qint64 trackOffsetInG64(const QByteArray& g64, int track)
{
    const qsizetype at = 12 + (track - 1) * 2 * 4;
    return quint8(g64[at]) | quint8(g64[at + 1]) << 8 | quint8(g64[at + 2]) << 16 |
           qint64(quint8(g64[at + 3])) << 24;
}

} // namespace

class TestGcr : public QObject
{
    Q_OBJECT

private slots:
    void geometry()
    {
        QCOMPARE(d64Sectors(35), 683);
        QCOMPARE(d64Sectors(40), 768);
        QCOMPARE(d64Offset(18, 0), qint64(0x16500));
        QCOMPARE(d64Offset(18, 1), qint64(0x16600));
        QCOMPARE(sectorsPerTrack(17), 21);
        QCOMPARE(sectorsPerTrack(18), 19);
        QCOMPARE(sectorsPerTrack(25), 18);
        QCOMPARE(sectorsPerTrack(31), 17);
    }

    void roundTripThroughOurEncoder()
    {
        const QByteArray d64 = sampleD64();
        const G64Conversion c = convertG64ToD64(vd::test::g64FromD64(d64));
        QVERIFY2(c.ok, qPrintable(c.problem));
        QCOMPARE(c.tracks, 35);
        QCOMPARE(c.sectorsFailed, 0);
        QCOMPARE(c.d64.size(), 174848);
        QVERIFY(c.d64 == d64);
    }

    void cc1541ImageDecodesToItsD64()
    {
        if (!vd::test::haveTool(QStringLiteral("cc1541")))
            QSKIP("cc1541 is not installed");
        QTemporaryDir dir;
        const QString prg = dir.filePath(QStringLiteral("game.prg"));
        QByteArray data(5000, '\0');
        for (int i = 0; i < data.size(); ++i)
            data[i] = char(QRandomGenerator::global()->bounded(256));
        QVERIFY(vd::test::writeFile(prg, data));
        const QString d64 = dir.filePath(QStringLiteral("t.d64"));
        const QString g64 = dir.filePath(QStringLiteral("t.g64"));
        QString out;
        QCOMPARE(vd::test::runTool(QStringLiteral("cc1541"),
                                   {"-q", "-n", "gcr disk", "-f", "game", "-w", prg, "-f", "more",
                                    "-w", prg, "-g", g64, d64},
                                   &out),
                 0);
        QFile a(d64), b(g64);
        QVERIFY(a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly));
        const G64Conversion c = convertG64ToD64(b.readAll());
        QVERIFY2(c.ok, qPrintable(c.problem));
        QCOMPARE(c.sectorsFailed, 0);
        QVERIFY(c.d64 == a.readAll());
    }

    void checksumErrorGetsItsErrorByte()
    {
        const QByteArray d64 = sampleD64();
        const G64Conversion c = convertG64ToD64(vd::test::g64FromD64(d64, 20, 3));
        QVERIFY(c.ok);
        QCOMPARE(c.d64.size(), 175531); // 35 tracks with error bytes
        QCOMPARE(c.sectorsFailed, 1);
        const qsizetype sectorIndex = qsizetype(d64Offset(20, 3) / 256);
        QCOMPARE(quint8(c.d64[683 * 256 + sectorIndex]), quint8(kDataChecksum));
        QCOMPARE(quint8(c.d64[683 * 256 + sectorIndex + 1]), quint8(kSectorOk));
        // The data is kept as read.
        QVERIFY(c.d64.mid(qsizetype(d64Offset(20, 3)), 256) ==
                d64.mid(qsizetype(d64Offset(20, 3)), 256));
    }

    void sectorAcrossTheTrackEnd()
    {
        const QByteArray d64 = sampleD64();
        QByteArray g64 = vd::test::g64FromD64(d64);
        const qint64 at = trackOffsetInG64(g64, 18);
        const int length = quint8(g64[at]) | quint8(g64[at + 1]) << 8;
        QByteArray track = g64.mid(at + 2, length);
        track = track.mid(100) + track.left(100); // sector 0 now wraps around the end
        g64.replace(at + 2, length, track);
        const G64Conversion c = convertG64ToD64(g64);
        QVERIFY(c.ok);
        QCOMPARE(c.sectorsFailed, 0);
        QVERIFY(c.d64 == d64);
    }

    // The track turned by a number of bits that is no multiple of 8: a sync mark, a header and
    // a data block each cut at the track's end in the middle of a byte.
    void trackTurnedByBits_data()
    {
        QTest::addColumn<int>("bits");
        QTest::newRow("3 bits of the first sync mark at the end") << 3;
        QTest::newRow("3 bits of it at the start") << 37;
        QTest::newRow("a header cut at an odd bit") << 45;
        QTest::newRow("a data block cut at an odd bit") << 1003;
    }
    void trackTurnedByBits()
    {
        QFETCH(int, bits);
        const QByteArray d64 = sampleD64();
        QByteArray g64 = vd::test::g64FromD64(d64);
        const qint64 at = trackOffsetInG64(g64, 18);
        const int length = quint8(g64[at]) | quint8(g64[at + 1]) << 8;
        const QByteArray track = g64.mid(at + 2, length);
        const qint64 total = qint64(length) * 8;
        QByteArray turned(length, '\0');
        for (qint64 p = 0; p < total; ++p) {
            const qint64 from = (p + bits) % total;
            if ((quint8(track[from / 8]) >> (7 - from % 8)) & 1)
                turned[p / 8] = char(quint8(turned[p / 8]) | (0x80 >> (p % 8)));
        }
        g64.replace(at + 2, length, turned);
        const G64Conversion c = convertG64ToD64(g64);
        QVERIFY(c.ok);
        QCOMPARE(c.sectorsFailed, 0);
        QVERIFY(c.d64 == d64);
    }

    void refused_data()
    {
        QTest::addColumn<QByteArray>("g64");
        QTest::addColumn<QString>("problem");
        const QByteArray good = vd::test::g64FromD64(sampleD64());
        QByteArray wrongSignature = good;
        wrongSignature[3] = 'X';
        QByteArray noDirectory = good;
        for (int b = 0; b < 4; ++b)
            noDirectory[12 + 34 * 4 + b] = 0; // the slot of track 18 points nowhere
        QByteArray garbage = good.left(12 + 84 * 8);
        QRandomGenerator rng(1541);
        while (garbage.size() < good.size())
            garbage.append(char(rng.bounded(256)));
        QByteArray noTracks = good;
        noTracks[9] = 0;
        QTest::newRow("empty") << QByteArray() << "no G64 signature";
        QTest::newRow("signature only") << QByteArray("GCR-1541") << "no G64 signature";
        QTest::newRow("wrong signature") << wrongSignature << "no G64 signature";
        QTest::newRow("no half-tracks") << noTracks << "broken track table";
        QTest::newRow("table cut") << good.left(40) << "broken track table";
        QTest::newRow("no directory track")
            << noDirectory << "the directory track could not be read";
        QTest::newRow("garbage GCR") << garbage << "the directory track could not be read";
        QTest::newRow("cut before track 18")
            << good.left(12 + 84 * 8 + 10 * 7930) << "the directory track could not be read";
    }
    void refused()
    {
        QFETCH(QByteArray, g64);
        QFETCH(QString, problem);
        const G64Conversion c = convertG64ToD64(g64);
        QVERIFY(!c.ok);
        QCOMPARE(c.problem, problem);
        QVERIFY(c.d64.isEmpty());
    }

    void lowerCaseSignaturePasses()
    {
        QByteArray g64 = vd::test::g64FromD64(sampleD64());
        g64.replace(0, 8, "gcr-1541");
        QVERIFY(convertG64ToD64(g64).ok);
    }

    void everyCutOfAnImageIsSafe()
    {
        // Cut anywhere, an image either converts to a D64 length or is refused with a reason.
        const QByteArray good = vd::test::g64FromD64(sampleD64());
        for (qsizetype cut = 0; cut < good.size(); cut += 7919) {
            const G64Conversion c = convertG64ToD64(good.left(cut));
            if (c.ok)
                QVERIFY(c.d64.size() == 174848 || c.d64.size() == 175531);
            else
                QVERIFY(!c.problem.isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(TestGcr)
#include "tst_gcr.moc"
