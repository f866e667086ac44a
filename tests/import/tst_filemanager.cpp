// LoadFile into a real catalogue: the rows each reader writes, images from cc1541 and
// cbmconvert, duplicates, refreshes with their reconciliation, searches, and the id counters.

#include "app/Globals.h"
#include "catalogue/Database.h"
#include "support/C64ImageWriter.h"
#include "support/ImportFixture.h"

#include <memory>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QtTest>

using namespace vd;
using vd::test::DiskWriter;
using vd::test::Slot;

namespace {

const QString kEntries = QStringLiteral(
    "Select tProgram,tRealProgram,tExtension,lSize,lIndex From C64Files order by lIndex");

} // namespace

class TestFileManager : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::ImportFixture> f;

    QString payload(int bytes)
    {
        const QString path = f->file(QStringLiteral("payload%1.prg").arg(bytes));
        test::writeFile(path, QByteArray(bytes, 'x'));
        return path;
    }
    // A disk image written by cc1541 with these extra arguments.
    QString cc1541(const QString& name, const QStringList& args)
    {
        const QString path = f->file(name);
        QString out;
        const int rc = test::runTool(QStringLiteral("cc1541"),
                                     QStringList{"-q"} + args + QStringList{path}, &out);
        return rc == 0 ? path : QString();
    }

private slots:
    void init() { f = std::make_unique<test::ImportFixture>(); }
    void cleanup() { f.reset(); }

    void diskImageFromCc1541()
    {
        if (!test::haveTool(QStringLiteral("cc1541")))
            QSKIP("cc1541 is not installed");
        const QString big = payload(1000), small = payload(300);
        const QString d64 =
            cc1541(QStringLiteral("Games.d64"),
                   {"-n",  "my disk", "-f",  "game", "-w",     big,  "-f",       "notes", "-T",
                    "SEQ", "-w",      small, "-f",   "locked", "-P", "-w",       small,   "-f",
                    "odd", "-T",      "133", "-w",   small,    "-f", "in#a0ner", "-w",    small});
        QVERIFY(!d64.isEmpty());
        const qint64 id = f->load(d64);
        QCOMPARE(id, qint64(1));
        QCOMPARE(f->rows(QStringLiteral("Select ID,iType,tCategory,tFile,tPath,tImage,iFileType,"
                                        "tUnpackPath,tHash From Category")),
                 QStringList({"1|1|Games.d64|Games.d64|" + d64 + "|MY DISK|1|-|-"}));
        QCOMPARE(
            f->rows(kEntries),
            QStringList({"GAME|GAME|PRG|4|1", "NOTES|NOTES|SEQ|2|2", "LOCKED|LOCKED|<PRG|2|3",
                         "ODD|ODD|???|2|4", QStringLiteral("IN\u00A0NER|IN\u00A0NER|PRG|2|5")}));
        QCOMPARE(f->messages.first(), qMakePair(QStringLiteral("Games.d64"), 1));
        QCOMPARE(f->fm.lLastCategoryID, qint64(1));
        QCOMPARE(f->fm.lLastC64FileID, qint64(5));
    }

    void d71AndD81FromCc1541()
    {
        if (!test::haveTool(QStringLiteral("cc1541")))
            QSKIP("cc1541 is not installed");
        const QString p = payload(600);
        const QString d71 = cc1541(QStringLiteral("Two.d71"), {"-n", "sides", "-f", "a", "-w", p});
        const QString d81 = cc1541(QStringLiteral("Big.d81"), {"-n", "big", "-f", "b", "-w", p});
        QVERIFY(!d71.isEmpty() && !d81.isEmpty());
        QCOMPARE(f->load(d71), qint64(1));
        QCOMPARE(f->load(d81), qint64(2));
        QCOMPARE(f->rows(QStringLiteral("Select tImage,iFileType From Category order by ID")),
                 QStringList({"SIDES|2", "BIG|13"}));
        QCOMPARE(f->rows(QStringLiteral("Select tProgram,lSize From C64Files order by ID")),
                 QStringList({"A|3", "B|3"}));
    }

    void namesAndPadding()
    {
        const QByteArray pad(16, char(0xA0));
        DiskWriter w = DiskWriter::d64();
        w.name(pad).entries({{0x82, pad, 1},
                             {0x82,
                              QByteArray("AB\xA0"
                                         "CD"),
                              2},
                             {0x82,
                              QByteArray("\x05"
                                         "CTRL"),
                              3},
                             {0x82, QByteArray("SEVENTEEN CHARS!"), 4}});
        QVERIFY(w.save(f->file(QStringLiteral("names.d64"))));
        QCOMPARE(f->load(f->file(QStringLiteral("names.d64"))), qint64(1));
        QCOMPARE(f->value(QStringLiteral("Select tImage From Category")), QStringLiteral("-"));
        QCOMPARE(
            f->rows(kEntries),
            QStringList({"(NO NAME)|-|PRG|1|1", QStringLiteral("AB\u00A0CD|AB\u00A0CD|PRG|2|2"),
                         "(NO NAME)|-|PRG|3|3", "SEVENTEEN CHARS!|SEVENTEEN CHARS!|PRG|4|4"}));
    }

    void imageWithoutEntriesMakesNoRow()
    {
        DiskWriter w = DiskWriter::d64();
        w.name("EMPTY").entries({{0x00, "GONE", 1}, {0x00, "ALSO", 1}});
        QVERIFY(w.save(f->file(QStringLiteral("empty.d64"))));
        QCOMPARE(f->load(f->file(QStringLiteral("empty.d64"))), qint64(0));
        QCOMPARE(f->count(QStringLiteral("Category")), qint64(0));
        QVERIFY(f->messages.isEmpty());
    }

    void d81Partitions()
    {
        DiskWriter w = DiskWriter::d81();
        w.name("PARTS").entries({{0x85, "PART", 100}, {0xC5, "LOCKED PART", 50}});
        QVERIFY(w.save(f->file(QStringLiteral("p.d81"))));
        QCOMPARE(f->load(f->file(QStringLiteral("p.d81"))), qint64(1));
        QCOMPARE(f->rows(QStringLiteral("Select tExtension From C64Files order by lIndex")),
                 QStringList({"CBM", "CBM"}));
    }

    void wrongLengths_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("kind");
        QTest::newRow("D64 one byte short") << "a.d64" << 174847 << "D64";
        QTest::newRow("D64 empty") << "b.D64" << 0 << "D64";
        QTest::newRow("D71 with a D64 length") << "c.d71" << 174848 << "D71";
        QTest::newRow("D81 with a D71 length") << "d.d81" << 349696 << "D81";
    }
    void wrongLengths()
    {
        QFETCH(QString, name);
        QFETCH(int, length);
        QFETCH(QString, kind);
        const QString path = f->file(name);
        QVERIFY(test::writeFile(path, QByteArray(length, '\0')));
        QCOMPARE(f->load(path), qint64(0));
        QCOMPARE(f->resultLines(), QStringList({"Kein korrektes '" + kind + "'-File: " + path}));
        QCOMPARE(f->count(QStringLiteral("Category")), qint64(0));
    }

    void g64FromCc1541HasTheRowsOfItsD64()
    {
        if (!test::haveTool(QStringLiteral("cc1541")))
            QSKIP("cc1541 is not installed");
        const QString p = payload(2000);
        const QString g64 = f->file(QStringLiteral("Disk.g64"));
        const QString d64 = cc1541(QStringLiteral("Disk.d64"),
                                   {"-n", "gcr", "-f", "one", "-w", p, "-f", "two", "-T", "USR",
                                    "-w", p, "-f", "three", "-P", "-w", p, "-g", g64});
        QVERIFY(!d64.isEmpty());
        QCOMPARE(f->load(d64), qint64(1));
        QCOMPARE(f->load(g64), qint64(2));
        const QString select =
            QStringLiteral("Select tProgram,tRealProgram,tExtension,lSize,lIndex From C64Files "
                           "where Category_File=%1 order by lIndex");
        const QStringList fromD64 = f->rows(select.arg(1));
        QCOMPARE(fromD64.size(), 3);
        QCOMPARE(f->rows(select.arg(2)), fromD64);
        QCOMPARE(f->rows(QStringLiteral("Select tPath,tImage,iFileType From Category where ID=2")),
                 QStringList({g64 + "|GCR|12"}));
        QVERIFY(QFile::exists(f->tempFolder() + QStringLiteral("/Disk.D64")));
    }

    void g64Refused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("badHeader");
        QByteArray garbage("GCR-1541\0\x54\xF8\x1E", 12);
        garbage.append(QByteArray(84 * 8, '\0'));
        garbage.append(QByteArray(5000, '\x55'));
        QTest::newRow("wrong header") << QByteArray(300000, 'x') << true;
        QTest::newRow("empty") << QByteArray() << true;
        QTest::newRow("header, no tracks") << garbage << false;
    }
    void g64Refused()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, badHeader);
        const QString path = f->file(QStringLiteral("bad.g64"));
        QVERIFY(test::writeFile(path, bytes));
        QCOMPARE(f->load(path), qint64(0));
        QStringList expected;
        if (badHeader)
            expected << "Fehlerhaftes C64-File: " + path;
        expected << "Kein korrektes 'G64'-File: " + path;
        QCOMPARE(f->resultLines(), expected);
    }

    void tapeImage()
    {
        const QByteArray t64 =
            test::t64("C64S tape image file", 3, "MY TAPE",
                      {{true, 1000, "ONE"}, {false, 0, ""}, {true, 3000, "THREE"}}, 5000);
        QVERIFY(test::writeFile(f->file(QStringLiteral("t.t64")), t64));
        QCOMPARE(f->load(f->file(QStringLiteral("t.t64"))), qint64(1));
        QCOMPARE(f->value(QStringLiteral("Select tImage,iFileType From Category")),
                 QStringLiteral("MY TAPE|3"));
        // The unused slot is a row too, and the index is the slot's number + 1.
        // The unused slot keeps order number 0, so no entry follows ONE in the order: size 0.
        QCOMPARE(f->rows(kEntries),
                 QStringList({"ONE|ONE|PRG|0|1", "(NO NAME)|-|PRG|0|2", "THREE|THREE|PRG|8|3"}));
    }

    void tapeWithoutEntries()
    {
        QVERIFY(test::writeFile(f->file(QStringLiteral("none.t64")),
                                test::t64("C64S tape image file", 0, "T", {}, 64)));
        QCOMPARE(f->load(f->file(QStringLiteral("none.t64"))), qint64(0));
        QCOMPARE(f->count(QStringLiteral("Category")), qint64(0));
    }

    void singleFiles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("entry");
        QTest::addColumn<int>("fileType");
        QTest::newRow("PRG 127") << "GAME.PRG" << QByteArray(127, 'x') << "GAME|GAME|PRG|0|1" << 4;
        QTest::newRow("PRG 381") << "big.prg" << QByteArray(381, 'x') << "big|big|PRG|2|1" << 4;
        QTest::newRow("PRG empty") << "Empty.prg" << QByteArray() << "Empty|Empty|PRG|0|1" << 4;
        QTest::newRow("P00") << "x.p00" << QByteArray("c64File\0HELLO\0", 14) + QByteArray(270, 'd')
                             << "HELLO|HELLO|PRG|1|1" << 5;
        QTest::newRow("TAP") << "Tape.tap" << QByteArray("C64-TAPE-RAW") + QByteArray(100, 1)
                             << "Tape|Tape|PRG|112|1" << 6;
        QTest::newRow("VSF") << "S.vsf" << QByteArray("VICE Snapshot File") + QByteArray(2, 1)
                             << "S|S|PRG|20|1" << 7;
        QTest::newRow("C64") << "S.c64" << QByteArray("C64") << "S|S|PRG|3|1" << 8;
        QTest::newRow("CRT") << "c.crt"
                             << QByteArray("C64 CARTRIDGE   ") + QByteArray(16, '\0') +
                                    QByteArray("CART NAME") + QByteArray(1000, '\0')
                             << "CART NAME|CART NAME|PRG|4|1" << 9;
        QTest::newRow("TXT") << "Read Me.txt" << QByteArray(10, 'r') << "Read Me|Read Me|TXT|10|1"
                             << 10;
        QTest::newRow("DIZ") << "FILE_ID.DIZ" << QByteArray(5, 'r') << "FILE_ID|FILE_ID|DIZ|5|1"
                             << 10;
        QTest::newRow("PDF") << "Manual.pdf" << QByteArray(7, 'p') << "Manual|Manual|PDF|7|1" << 11;
        QTest::newRow("TIFF") << "Photo.TIFF" << QByteArray(9, 'p') << "Photo|Photo|IFF|9|1" << 14;
        QTest::newRow("VFL") << "Disks.vfl" << QByteArray("# Vice Fliplist File\n")
                             << "Disks|Disks|VFL|21|1" << 15;
    }
    void singleFiles()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, entry);
        QFETCH(int, fileType);
        QVERIFY(test::writeFile(f->file(name), bytes));
        QCOMPARE(f->load(f->file(name)), qint64(1));
        QCOMPARE(f->rows(kEntries), QStringList({entry}));
        QCOMPARE(f->value(QStringLiteral("Select tImage,iFileType From Category")),
                 QStringLiteral("-|%1").arg(fileType));
    }

    void headerTestsFail_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("P00") << "x.p00" << QByteArray("C65File\0", 8);
        QTest::newRow("TAP") << "x.tap" << QByteArray("C64-TAPE-RAX");
        QTest::newRow("VSF") << "x.vsf" << QByteArray("VICE SNAPSHOT");
        QTest::newRow("C64") << "x.c64" << QByteArray("C6");
        QTest::newRow("CRT") << "x.crt" << QByteArray("VIC20 CARTRIDGE ");
        QTest::newRow("VFL") << "x.vfl" << QByteArray("UNIT 8");
        QTest::newRow("T64 holding RAW") << "x.t64" << QByteArray("C64-TAPE-RAW");
        QTest::newRow("T64 not beginning with C64") << "x.t64" << QByteArray("TAPE C64");
    }
    void headerTestsFail()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QVERIFY(test::writeFile(f->file(name), bytes + QByteArray(100, '\0')));
        QCOMPARE(f->load(f->file(name)), qint64(0));
        QCOMPARE(f->resultLines(), QStringList({"Fehlerhaftes C64-File: " + f->file(name)}));
        QCOMPARE(f->count(QStringLiteral("C64Files")), qint64(0));
    }

    void p00FromCbmconvert()
    {
        if (!test::haveTool(QStringLiteral("cbmconvert")))
            QSKIP("cbmconvert is not installed");
        const QString folder = f->file(QStringLiteral("pc64"));
        QDir().mkpath(folder);
        const QString prg = folder + QStringLiteral("/hello world.prg");
        QVERIFY(test::writeFile(prg, QByteArray(600, 'h')));
        QProcess p;
        p.setWorkingDirectory(folder);
        p.start(QStringLiteral("cbmconvert"), {"-P", "-n", "hello world.prg"});
        QVERIFY(p.waitForFinished(30000));
        const QStringList made =
            QDir(folder).entryList({QStringLiteral("*.p00"), QStringLiteral("*.P00")});
        QCOMPARE(made.size(), 1);
        const QString p00 = folder + QLatin1Char('/') + made.first();
        QVERIFY(f->load(p00) > 0);
        // The CBM name runs up to the first byte 0, its $A0 padding included; 626 - 25 bytes
        // are 2.37 blocks.
        QCOMPARE(made.first(), QStringLiteral("hellwrld.p00"));
        QCOMPARE(f->value(QStringLiteral("Select tProgram,tExtension,lSize From C64Files")),
                 QStringLiteral("HELLO WORLD") + QString(5, QChar(0xA0)) +
                     QStringLiteral("|PRG|2"));
    }

    void duplicates()
    {
        const QString path = f->file(QStringLiteral("O'Brien's Game.prg"));
        QVERIFY(test::writeFile(path, QByteArray(500, 'o')));
        QCOMPARE(f->load(path), qint64(1));
        f->messages.clear();
        QCOMPARE(f->load(path), qint64(-1));
        QCOMPARE(f->resultLines(),
                 QStringList({QStringLiteral("Datei ist schon vorhanden: O'Brien's Game.prg")}));
        QCOMPARE(f->count(QStringLiteral("C64Files")), qint64(1));
        // A caller that knows the id and does not refresh only gets minus the id.
        f->messages.clear();
        QCOMPARE(f->load(path, import::kFlagNamedFile, 1), qint64(-1));
    }

    void unknownExtension()
    {
        QVERIFY(test::writeFile(f->file(QStringLiteral("notes.xyz")), "x"));
        QVERIFY(test::writeFile(f->file(QStringLiteral("README")), "x"));
        QCOMPARE(f->load(f->file(QStringLiteral("notes.xyz"))), qint64(0));
        QCOMPARE(f->load(f->file(QStringLiteral("README"))), qint64(0));
        QVERIFY(f->messages.isEmpty());
        QCOMPARE(f->count(QStringLiteral("Category")), qint64(0));
    }

    void importListFlag()
    {
        QVERIFY(test::writeFile(f->file(QStringLiteral("a.prg")), "x"));
        f->fm.options.ImportFiles = QStringLiteral(".D64;.T64");
        QCOMPARE(f->load(f->file(QStringLiteral("a.prg")), import::kFlagImportList), qint64(0));
        // A plain substring test: a fragment of a listed extension passes.
        f->fm.options.ImportFiles = QStringLiteral(".D64;.PRGX");
        QCOMPARE(f->load(f->file(QStringLiteral("a.prg")), import::kFlagImportList), qint64(1));
    }

    void refresh()
    {
        const QString path = f->file(QStringLiteral("r.d64"));
        DiskWriter w = DiskWriter::d64();
        w.name("R").entries({{0x82, "KEEP", 5}, {0x82, "", 1}, {0x82, "GOES", 3}});
        QVERIFY(w.save(path));
        QCOMPARE(f->load(path), qint64(1));
        const QStringList ids = f->rows(QStringLiteral("Select ID From C64Files order by ID"));
        QCOMPARE(ids, QStringList({"1", "2", "3"}));
        const int refresh = import::kFlagNamedFile | import::kFlagRefresh;

        // Nothing changed: minus the id, and the nameless entry matched by its index.
        QCOMPARE(f->load(path, refresh), qint64(-1));
        QCOMPARE(f->rows(QStringLiteral("Select ID From C64Files order by ID")), ids);

        // One entry added.
        DiskWriter added = DiskWriter::d64();
        added.name("R").entries(
            {{0x82, "KEEP", 5}, {0x82, "", 1}, {0x82, "GOES", 3}, {0x81, "NEW", 9}});
        QVERIFY(added.save(path));
        QCOMPARE(f->load(path, refresh), qint64(1));
        QCOMPARE(f->rows(QStringLiteral("Select ID,tProgram,lIndex From C64Files order by ID")),
                 QStringList({"1|KEEP|1", "2|(NO NAME)|2", "3|GOES|3", "4|NEW|4"}));

        // One entry scratched: its row goes.
        DiskWriter scratched = DiskWriter::d64();
        scratched.name("R").entries(
            {{0x82, "KEEP", 5}, {0x82, "", 1}, {0x00, "GOES", 3}, {0x81, "NEW", 9}});
        QVERIFY(scratched.save(path));
        QCOMPARE(f->load(path, refresh), qint64(1));
        QCOMPARE(f->rows(QStringLiteral("Select ID,tProgram From C64Files order by ID")),
                 QStringList({"1|KEEP", "2|(NO NAME)", "4|NEW"}));
        QCOMPARE(f->count(QStringLiteral("Category")), qint64(1));
    }

    void refreshOfAFileThatLostAllEntries()
    {
        const QString path = f->file(QStringLiteral("gone.d64"));
        DiskWriter w = DiskWriter::d64();
        w.entries({{0x82, "A", 1}, {0x82, "B", 1}});
        QVERIFY(w.save(path));
        QCOMPARE(f->load(path), qint64(1));
        QVERIFY(DiskWriter::d64().save(path));
        QCOMPARE(f->load(path, import::kFlagNamedFile | import::kFlagRefresh), qint64(1));
        QCOMPARE(f->count(QStringLiteral("C64Files")), qint64(0));
        QCOMPARE(f->count(QStringLiteral("Category")), qint64(1));
    }

    void searchWritesOnlyTheEntrySought()
    {
        const QString path = f->file(QStringLiteral("game.d64"));
        DiskWriter w = DiskWriter::d64();
        w.entries({{0x82, "LOADER", 1}, {0x82, "GAME", 100}, {0x81, "HISCORE", 1}});
        QVERIFY(w.save(path));
        f->fm.InitSearch(true, true, QStringLiteral("game.d64"), 2);
        QCOMPARE(f->load(path), qint64(1));
        QCOMPARE(f->rows(QStringLiteral("Select ID,tProgram,lIndex From C64Files")),
                 QStringList({"1|GAME|2"}));
        QCOMPARE(f->fm.lFoundC64FileID, qint64(1));
    }

    void searchWithoutIndexWritesAllAndNotesOne()
    {
        const QString path = f->file(QStringLiteral("game.d64"));
        DiskWriter w = DiskWriter::d64();
        w.entries({{0x82, "LOADER", 1}, {0x82, "GAME", 100}, {0x81, "HISCORE", 1}});
        QVERIFY(w.save(path));
        f->fm.InitSearch(true, false, QStringLiteral("game.d64"), 2);
        QCOMPARE(f->load(path), qint64(1));
        QCOMPARE(f->count(QStringLiteral("C64Files")), qint64(3));
        QCOMPARE(f->fm.lFoundC64FileID, qint64(2));
    }

    void textIsCataloguedDuringASearch()
    {
        QVERIFY(test::writeFile(f->file(QStringLiteral("readme.txt")), "hello"));
        f->fm.InitSearch(true, true, QStringLiteral("other.d64"), 1);
        QCOMPARE(f->load(f->file(QStringLiteral("readme.txt"))), qint64(1));
        QCOMPARE(f->fm.lFoundTextID, qint64(1));
        QVERIFY(f->fm.bSearch); // the search is on again afterwards
        // Known already: the id of its first entry.
        QCOMPARE(f->load(f->file(QStringLiteral("readme.txt")),
                         import::kFlagNamedFile | import::kFlagRefresh, 1),
                 qint64(-1));
        QCOMPARE(f->fm.lFoundTextID, qint64(1));
    }

    void idsStayUniqueAcrossBatches()
    {
        for (int i = 0; i < 3; ++i)
            QVERIFY(test::writeFile(f->file(QStringLiteral("f%1.prg").arg(i)), "x"));
        QCOMPARE(f->load(f->file(QStringLiteral("f0.prg"))), qint64(1));
        // Another batch reads the maxima again; rows deleted meanwhile by others do not make
        // the counters go back within a run.
        f->fm.InitCount();
        QCOMPARE(f->fm.lStartCategoryID, qint64(1));
        QCOMPARE(f->load(f->file(QStringLiteral("f1.prg"))), qint64(2));
        app::gDB->execute(QStringLiteral("Delete from C64Files where ID=2"));
        QCOMPARE(f->load(f->file(QStringLiteral("f2.prg"))), qint64(3));
        QCOMPARE(f->rows(QStringLiteral("Select ID,Category_File From C64Files order by ID")),
                 QStringList({"1|1", "3|3"}));
        QCOMPARE(f->fm.lC64FileCount, qint64(1)); // counted at InitCount, not since
        f->fm.CountFiles();
        QCOMPARE(f->fm.lC64FileCount, qint64(2));
        QCOMPARE(f->fm.lCategoryCount, qint64(3));
    }

    void md5Sums()
    {
        const QByteArray bytes(777, 'm');
        QVERIFY(test::writeFile(f->file(QStringLiteral("h.prg")), bytes));
        f->fm.options.CreateMd5Hash = true;
        QCOMPARE(f->load(f->file(QStringLiteral("h.prg"))), qint64(1));
        QCOMPARE(
            f->value(QStringLiteral("Select tHash From Category")),
            QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex()));
    }
};

QTEST_GUILESS_MAIN(TestFileManager)
#include "tst_filemanager.moc"
