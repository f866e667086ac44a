// What the preview reads for a selected row, on real imported files: a disk's directory with
// its header row (name cut or padded to 16), a tape's and an archived disk's rows, the size
// column of byte-sized kinds, a text cut at 1000 lines, missing files and archives, and the
// flip-list hand-over.

#include "app/Globals.h"
#include "browser/Preview.h"
#include "catalogue/Database.h"
#include "support/ArchiveWriter.h"
#include "support/C64ImageWriter.h"
#include "support/ImportFixture.h"

#include <memory>
#include <QFile>
#include <QtTest>

using namespace vd;
using browser::PreviewContent;
using browser::PreviewKind;
using test::DiskWriter;

namespace {

QByteArray gamesDisk(const QByteArray& name)
{
    DiskWriter w = DiskWriter::d64();
    w.name(test::padded(name)).entries({{0x82, "INTRO", 12}, {0x82, "GAME", 150}, {0x81, "HI", 1}});
    return w.bytes();
}

QStringList rowTexts(const PreviewContent& c)
{
    QStringList out;
    for (const browser::PreviewRow& r : c.rows)
        out << QStringLiteral("%1|%2|%3|%4").arg(r.key).arg(r.size, r.file, r.extension);
    return out;
}

QByteArray linesOf(int count, const char* end)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += "line " + QByteArray::number(i) + end;
    return text;
}

} // namespace

class TestPreview : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::ImportFixture> f;

    qint64 import(const QString& name, const QByteArray& bytes)
    {
        const QString path = f->file(name);
        if (!test::writeFile(path, bytes))
            return 0;
        return f->load(path);
    }
    PreviewContent preview(qint64 container) { return browser::readPreview(f->fm, container); }

private slots:
    void init() { f = std::make_unique<test::ImportFixture>(); }
    void cleanup() { f.reset(); }

    void diskShowsHeaderRowAndEntries()
    {
        const qint64 id = import(QStringLiteral("games.d64"), gamesDisk("GAMES"));
        QVERIFY(id > 0);
        const PreviewContent c = preview(id);
        QCOMPARE(c.kind, PreviewKind::Directory);
        QCOMPARE(c.label, QStringLiteral("games.d64"));
        const QStringList ids = f->rows(QStringLiteral("Select ID From C64Files order by lIndex"));
        QCOMPARE(ids.size(), 3);
        // Header: key 0, size 0, the disk name padded to 16 between quotes; sizes in blocks as
        // plain numbers, names between quotes without padding.
        QCOMPARE(rowTexts(c), (QStringList{QStringLiteral("0|0|\"GAMES           \"|"),
                                           ids[0] + QStringLiteral("|12|\"INTRO\"|PRG"),
                                           ids[1] + QStringLiteral("|150|\"GAME\"|PRG"),
                                           ids[2] + QStringLiteral("|1|\"HI\"|SEQ")}));
    }

    void headerCutsLongImageNameAndKeepsSixteen_data()
    {
        QTest::addColumn<QString>("image");
        QTest::addColumn<QString>("header");
        QTest::newRow("exactly 16") << "SIXTEEN CHARS!!!"
                                    << "\"SIXTEEN CHARS!!!\"";
        QTest::newRow("longer") << "A NAME OF TWENTY-ONE"
                                << "\"A NAME OF TWENTY\"";
        QTest::newRow("empty") << ""
                               << "\"                \"";
    }
    void headerCutsLongImageNameAndKeepsSixteen()
    {
        QFETCH(QString, image);
        QFETCH(QString, header);
        const qint64 id = import(QStringLiteral("d.d64"), gamesDisk("X"));
        QVERIFY(id > 0);
        app::gDB->execute(
            QStringLiteral("Update Category Set tImage='%1' where ID=%2").arg(image).arg(id));
        const PreviewContent c = preview(id);
        QVERIFY(!c.rows.isEmpty());
        QCOMPARE(c.rows.first().key, 0);
        QCOMPARE(c.rows.first().file, header);
    }

    void tapeAndArchivedDiskHaveRowsOnlyDisksAHeader()
    {
        const qint64 tape = import(QStringLiteral("tape.t64"),
                                   test::t64("C64S tape image file", 2, "TAPE",
                                             {{true, 96, "FIRST"}, {true, 200, "SECOND"}}, 4096));
        QVERIFY(tape > 0);
        const PreviewContent t = preview(tape);
        QCOMPARE(t.kind, PreviewKind::Directory);
        QCOMPARE(t.rows.size(), 2);
        QCOMPARE(t.rows[0].file, QStringLiteral("\"FIRST\""));
        QVERIFY(t.rows[0].key > 0);
        QVERIFY(t.rows[0].size.endsWith(QStringLiteral(" Block(s)")));

        const QString zip = f->file(QStringLiteral("held.zip"));
        QVERIFY(test::writeFile(zip, test::rawZip({{"inner/held.d64", gamesDisk("HELD")}})));
        QVERIFY(f->load(zip) > 0);
        const qint64 disk =
            f->value(QStringLiteral("Select ID From Category where iFileType=1")).toLongLong();
        QVERIFY(disk > 0);
        const PreviewContent d = preview(disk);
        QCOMPARE(d.rows.size(), 4);
        QCOMPARE(d.rows[0].file, QStringLiteral("\"HELD            \""));
        QCOMPARE(d.rows[2].file, QStringLiteral("\"GAME\""));
        QCOMPARE(d.rows[2].size, QStringLiteral("150"));
    }

    void byteSizedKindsFormatTheirSize_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<QString>("text");
        QTest::newRow("empty tape") << qint64(0) << "0 Byte";
        QTest::newRow("below a kilobyte") << qint64(1023) << "1023 Byte";
        QTest::newRow("kilobytes") << qint64(1536) << "1.5 KB";
        QTest::newRow("one megabyte") << qint64(1048576) << "1.00 MB";
        QTest::newRow("ten megabytes") << qint64(10485760) << "10.0 MB";
        QTest::newRow("hundred megabytes") << qint64(104857600) << "100 MB";
    }
    void byteSizedKindsFormatTheirSize()
    {
        QFETCH(qint64, size);
        QFETCH(QString, text);
        const qint64 id =
            import(QStringLiteral("tape.tap"), QByteArray("C64-TAPE-RAW") + QByteArray(100, 1));
        QVERIFY(id > 0);
        app::gDB->execute(QStringLiteral("Update C64Files Set lSize=%1").arg(size));
        const PreviewContent c = preview(id);
        QCOMPARE(c.kind, PreviewKind::Directory);
        QCOMPARE(c.rows.size(), 1); // a tape has no header row
        QCOMPARE(c.rows[0].size, text);
    }

    void textIsCutAtAThousandLines_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("last");
        QTest::newRow("999 lines") << linesOf(999, "\r\n") << 999 << "line 0"
                                   << "line 998";
        QTest::newRow("exactly 1000") << linesOf(1000, "\r\n") << 1001 << "line 0"
                                      << "...";
        QTest::newRow("1000 without last end") << linesOf(1000, "\n").chopped(1) << 1001 << "line 0"
                                               << "...";
        QTest::newRow("5000 lines") << linesOf(5000, "\n") << 1001 << "line 0"
                                    << "...";
        QTest::newRow("CR ends") << linesOf(3, "\r") << 3 << "line 0"
                                 << "line 2";
        QTest::newRow("empty lines kept") << QByteArray("a\n\nb") << 3 << "a"
                                          << "b";
    }
    void textIsCutAtAThousandLines()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, rows);
        QFETCH(QString, first);
        QFETCH(QString, last);
        const qint64 id = import(QStringLiteral("notes.txt"), bytes);
        QVERIFY(id > 0);
        const PreviewContent c = preview(id);
        QCOMPARE(c.kind, PreviewKind::Text);
        QCOMPARE(c.label, QStringLiteral("notes.txt"));
        QCOMPARE(c.lines.size(), rows);
        QCOMPARE(c.lines.last(), last);
        QCOMPARE(c.lines.first(), first);
        if (rows == 1001)
            QCOMPARE(c.lines[999], QStringLiteral("line 999"));
    }

    void textKeepsItsLatin1Bytes()
    {
        const qint64 id = import(QStringLiteral("umlaut.txt"), QByteArray("Gr\xfc\xdf"
                                                                          "e\r\n"));
        QVERIFY(id > 0);
        QCOMPARE(preview(id).lines, QStringList{QStringLiteral("Grüße")});
    }

    void missingFilesNameTheirPath()
    {
        const qint64 text = import(QStringLiteral("gone.txt"), "soon gone\n");
        const qint64 picture = import(QStringLiteral("gone.png"), "not really a picture");
        QVERIFY(text > 0 && picture > 0);
        QVERIFY(QFile::remove(f->file(QStringLiteral("gone.txt"))));
        QVERIFY(QFile::remove(f->file(QStringLiteral("gone.png"))));
        for (const auto& [id, name] : {std::pair{text, QStringLiteral("gone.txt")},
                                       std::pair{picture, QStringLiteral("gone.png")}}) {
            const PreviewContent c = preview(id);
            QCOMPARE(c.kind, PreviewKind::Missing);
            QCOMPARE(c.label, QStringLiteral("Datei nicht gefunden: ") + f->file(name));
            QVERIFY(c.rows.isEmpty() && c.lines.isEmpty());
        }

        // A member whose archive is gone names the archive, not the member.
        const QString zip = f->file(QStringLiteral("docs.zip"));
        QVERIFY(test::writeFile(zip, test::rawZip({{"docs/readme.txt", "hello\n"}})));
        QVERIFY(f->load(zip) > 0);
        const qint64 member =
            f->value(QStringLiteral("Select ID From Category where tUnpackPath is not null"))
                .toLongLong();
        QCOMPARE(preview(member).lines, QStringList{QStringLiteral("hello")});
        QVERIFY(QFile::remove(zip));
        const PreviewContent c = preview(member);
        QCOMPARE(c.kind, PreviewKind::Missing);
        QCOMPARE(c.label, QStringLiteral("Datei nicht gefunden: ") + zip);
    }

    void containerOfASelection()
    {
        const qint64 id = import(QStringLiteral("games.d64"), gamesDisk("GAMES"));
        const qint64 entry = f->value(QStringLiteral("Select Max(ID) From C64Files")).toLongLong();
        QVERIFY(id > 0 && entry > 0);
        QCOMPARE(browser::previewContainer(entry), id);
        QCOMPARE(browser::previewContainer(-id), id);
        QCOMPARE(browser::previewContainer(0), 0);
        QCOMPARE(browser::previewContainer(entry + 100), 0); // a row that is gone
        QCOMPARE(preview(id + 100).kind, PreviewKind::None);
    }

    void flipListGoesToItsWindow()
    {
        const qint64 id = import(QStringLiteral("game.vfl"),
                                 "# Vice fliplist file\n\nUNIT 8\n/disks/a.d64\n/disks/b.d64");
        QVERIFY(id > 0);
        PreviewContent c = preview(id);
        QCOMPARE(c.kind, PreviewKind::FlipList);
        QCOMPARE(c.flipListId, id);
        QVERIFY(QFile::remove(f->file(QStringLiteral("game.vfl"))));
        c = preview(id);
        QCOMPARE(c.kind, PreviewKind::FlipList);
        QCOMPARE(c.flipListId, 0); // the window opens with no list
    }
};

QTEST_GUILESS_MAIN(TestPreview)
#include "tst_preview.moc"
