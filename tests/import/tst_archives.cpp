// Archives in the importer: members of ZIP, 7Z and CAB files become rows of their own with the
// outermost archive as tPath and the member path as tUnpackPath, at any depth; members come
// back to disk through ExtractFileFromArchiv with one unpack per level; the size question,
// duplicates and refreshes of archives, and MD5 sums of files and members.

#include "app/Globals.h"
#include "platform/DialogService.h"
#include "platform/Files.h"
#include "support/ArchiveWriter.h"
#include "support/C64ImageWriter.h"
#include "support/ImportFixture.h"

#include <memory>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QtTest>

using namespace vd;
using vd::test::DiskWriter;

namespace {

const QString kMembers =
    QStringLiteral("Select tPath,tUnpackPath,iFileType From Category order by tUnpackPath");

QByteArray diskBytes()
{
    DiskWriter w = DiskWriter::d64();
    w.name("ARCHIVED").entries({{0x82, "GAME", 100}, {0x81, "DATA", 3}});
    return w.bytes();
}

QString md5sumOf(const QString& path)
{
    QProcess p;
    p.start(QStringLiteral("md5sum"), {path});
    p.waitForFinished();
    return QString::fromLatin1(p.readAllStandardOutput()).section(QLatin1Char(' '), 0, 0);
}

} // namespace

class TestArchives : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::ImportFixture> f;

    // A folder "src<n>" holding game.d64, tape.t64 and readme.txt (and sub/ for ZIP).
    QString sources()
    {
        static int n = 0;
        const QString folder = f->file(QStringLiteral("src%1").arg(++n));
        QDir().mkpath(folder);
        test::writeFile(folder + "/game.d64", diskBytes());
        test::writeFile(folder + "/tape.t64",
                        test::t64("C64S tape image file", 1, "TAPE", {{true, 96, "T"}}, 2128));
        test::writeFile(folder + "/readme.txt", "just text\r\n");
        return folder;
    }
    void requireTool(const QString& type)
    {
        if (!test::haveTool(test::archiveTool(type)))
            QSKIP(qPrintable(test::archiveTool(type) + " is not installed (scripts/deps.sh)"));
    }
    // A new run of the program: Temp emptied and the extraction folders forgotten.
    void newRun()
    {
        QVERIFY(platform::DeleteFiles(app::gTempPath + "/*.*"));
        f->fm.DeleteTempCol();
    }
    QStringList statusLines() const
    {
        QStringList lines;
        for (const auto& [text, type] : f->messages)
            if (type == import::kMessageStatus)
                lines << text;
        return lines;
    }

private slots:
    void init()
    {
        f = std::make_unique<test::ImportFixture>();
        f->fm.options.SkipZipSize = QStringLiteral("0");
    }
    void cleanup() { f.reset(); }

    void eachFormatHoldsDiskTapeAndText_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("fileName");
        QTest::newRow("zip") << "zip"
                             << "games.zip";
        QTest::newRow("7z") << "7z"
                            << "games.7z";
        QTest::newRow("cab") << "cab"
                             << "games.cab";
        // The format is told by the content: a ZIP named .7z is read all the same.
        QTest::newRow("zip named 7z") << "zip"
                                      << "misnamed.7z";
    }
    void eachFormatHoldsDiskTapeAndText()
    {
        QFETCH(QString, type);
        QFETCH(QString, fileName);
        requireTool(type);
        const QString archive = f->file(fileName);
        QVERIFY(
            test::packArchive(type, archive, sources(), {"game.d64", "tape.t64", "readme.txt"}));
        QVERIFY(f->load(archive) > 0);
        QCOMPARE(f->rows(kMembers),
                 QStringList({archive + "|game.d64|1", archive + "|readme.txt|10",
                              archive + "|tape.t64|3"}));
        // The disk's two entries, the tape's one, the text's one.
        QCOMPARE(f->count("C64Files"), 4);
        QCOMPARE(f->value("Select tImage From Category where tUnpackPath='game.d64'"),
                 QStringLiteral("ARCHIVED"));
        QCOMPARE(statusLines(), QStringList{"Entpacke Archiv: " + archive});
    }

    void fiveNestedLevelsAreReachedWithOneUnpackEach()
    {
        requireTool("zip");
        const QString work = f->file("nest");
        QDir().mkpath(work + "/sub");
        test::writeFile(work + "/game.d64", diskBytes());
        // l5.zip > l4.7z > l3.zip > sub/l2.7z > outer.zip, the innermost holding the disk.
        QVERIFY(test::packArchive("zip", work + "/l5.zip", work, {"game.d64"}));
        QVERIFY(test::packArchive("7z", work + "/l4.7z", work, {"l5.zip"}));
        QVERIFY(test::packArchive("zip", work + "/l3.zip", work, {"l4.7z"}));
        QVERIFY(test::packArchive("7z", work + "/sub/l2.7z", work, {"l3.zip"}));
        const QString outer = f->file("outer.zip");
        QVERIFY(test::packArchive("zip", outer, work, {"sub/l2.7z"}));

        QVERIFY(f->load(outer) > 0);
        const QString member = QStringLiteral("sub\\l2.7z\\l3.zip\\l4.7z\\l5.zip\\game.d64");
        QCOMPARE(f->rows(kMembers), QStringList{outer + "|" + member + "|1"});
        QCOMPARE(f->fm.unpackCount(), 5);
        // Within the run the member is on disk already.
        QVERIFY(!f->fm.ExtractFileFromArchiv("game.d64", member, outer).isEmpty());
        QCOMPARE(f->fm.unpackCount(), 5);

        newRun();
        const int before = f->fm.unpackCount();
        const QString path = f->fm.ExtractFileFromArchiv("game.d64", member, outer);
        QVERIFY(path.startsWith(app::gTempPath + "/"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), diskBytes());
        QCOMPARE(f->fm.unpackCount() - before, 5);
        QCOMPARE(f->fm.ExtractFileFromArchiv("game.d64", member, outer), path);
        QCOMPARE(f->fm.unpackCount() - before, 5);
        // Member paths match without regard to case, as they did where the design came from.
        QCOMPARE(f->fm.ExtractFileFromArchiv("game.d64", member.toUpper(), outer), path);
    }

    void aMemberAloneIsExtractedAlone()
    {
        requireTool("zip");
        const QString archive = f->file("two.zip");
        QVERIFY(test::packArchive("zip", archive, sources(), {"game.d64", "readme.txt"}));
        const QString path = f->fm.ExtractFileFromArchiv("readme.txt", "readme.txt", archive);
        QVERIFY(!path.isEmpty());
        QCOMPARE(QDir(QFileInfo(path).absolutePath()).entryList(QDir::Files),
                 QStringList{"readme.txt"});
        QVERIFY(f->fm.ExtractFileFromArchiv("x.d64", "missing.d64", archive).isEmpty());
        QCOMPARE(f->resultLines().last(), "Fehler beim Entpacken: " + archive +
                                              "\\missing.d64: Datei nicht im Archiv: missing.d64");
    }

    void sizeQuestion_data()
    {
        QTest::addColumn<QString>("skipZipSize");
        QTest::addColumn<qint64>("length");
        QTest::addColumn<int>("answer"); // 0: no question expected
        QTest::addColumn<int>("rows");
        constexpr qint64 kMiB = 1024 * 1024;
        QTest::newRow("0 never asks") << "0" << 6 * kMiB << 0 << 1;
        QTest::newRow("exactly 5 MiB") << "5" << 5 * kMiB << 0 << 1;
        QTest::newRow("one byte more, yes") << "5" << 5 * kMiB + 1 << int(platform::vbYes) << 1;
        QTest::newRow("one byte more, no") << "5" << 5 * kMiB + 1 << int(platform::vbNo) << 0;
    }
    void sizeQuestion()
    {
        QFETCH(QString, skipZipSize);
        QFETCH(qint64, length);
        QFETCH(int, answer);
        QFETCH(int, rows);
        // A stored member sized so that the whole archive has exactly `length` bytes.
        const QByteArray name = "big.txt";
        const qint64 overhead = 30 + 46 + 22 + 2 * name.size();
        const QByteArray zip = test::rawZip({{name, QByteArray(length - overhead, 'x')}});
        QCOMPARE(qint64(zip.size()), length);
        const QString archive = f->file("big.zip");
        QVERIFY(test::writeFile(archive, zip));
        f->fm.options.SkipZipSize = skipZipSize;
        if (answer)
            f->dialogs.answer(answer);
        f->load(archive);
        QCOMPARE(f->count("Category"), rows);
        if (!answer) {
            QVERIFY(f->dialogs.calls.isEmpty());
            return;
        }
        QCOMPARE(f->dialogs.messages(),
                 QStringList{"Die Datei '" + archive +
                             "' hat eine Größe von 5 Mb.\nSoll die Datei entpackt werden?"});
        QCOMPARE(f->dialogs.calls.first().title, QStringLiteral("Vellumdock"));
        QCOMPARE(f->dialogs.calls.first().style, int(platform::vbYesNo | platform::vbQuestion));
    }

    void zeroLengthArchive()
    {
        const QString archive = f->file("empty.zip");
        QVERIFY(test::writeFile(archive, {}));
        f->fm.options.SkipZipSize = QStringLiteral("5");
        QCOMPARE(f->load(archive), 0);
        QCOMPARE(f->resultLines(), QStringList{"Fehler in der Datei: '" + archive + "'"});
        QCOMPARE(f->fm.unpackCount(), 0);
    }

    void duplicatesAndRefreshOfArchives_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<int>("unpacks");
        QTest::newRow("plain re-add") << int(import::kFlagNamedFile) << 0;
        QTest::newRow("refresh without archives") << int(import::kFlagRefresh) << 0;
        QTest::newRow("refresh with archives")
            << int(import::kFlagRefresh | import::kFlagRefreshArchives) << 1;
    }
    void duplicatesAndRefreshOfArchives()
    {
        QFETCH(int, flags);
        QFETCH(int, unpacks);
        requireTool("zip");
        const QString archive = f->file("pair.zip");
        QVERIFY(test::packArchive("zip", archive, sources(), {"game.d64", "readme.txt"}));
        const qint64 id = f->load(archive);
        QVERIFY(id > 0);
        const QStringList before = f->rows("Select ID,tUnpackPath From Category order by ID");
        const int unpacked = f->fm.unpackCount();
        f->messages.clear();

        const qint64 again = f->load(archive, flags);
        QVERIFY(again < 0);
        QCOMPARE(f->fm.unpackCount() - unpacked, unpacks);
        QCOMPARE(f->rows("Select ID,tUnpackPath From Category order by ID"), before);
        QCOMPARE(f->count("C64Files"), 3);
        if (flags == import::kFlagNamedFile)
            QCOMPARE(f->resultLines(), QStringList{"Datei ist schon vorhanden: pair.zip"});
        if (unpacks)
            QCOMPARE(statusLines(), QStringList{"Entpacke Archiv: " + archive});
    }

    void md5OfFilesAndMembers()
    {
        requireTool("zip");
        if (!test::haveTool("md5sum"))
            QSKIP("md5sum is not installed");
        const QString folder = sources();
        const QString archive = f->file("hashed.zip");
        QVERIFY(test::packArchive("zip", archive, folder, {"game.d64", "readme.txt"}));
        f->fm.options.CreateMd5Hash = true;
        QVERIFY(f->load(folder + "/tape.t64") > 0);
        QVERIFY(f->load(archive) > 0);
        QCOMPARE(f->rows("Select tUnpackPath,tHash From Category order by ID"),
                 QStringList({"-|" + md5sumOf(folder + "/tape.t64"),
                              "game.d64|" + md5sumOf(folder + "/game.d64"),
                              "readme.txt|" + md5sumOf(folder + "/readme.txt")}));
        QCOMPARE(md5sumOf(folder + "/game.d64").size(), 32);
    }

    void rarNeedsAFixture()
    {
        // No free tool writes RAR; a real one is read when the shared test data has it.
        const QString data = test::realC64Folder();
        const QStringList rars =
            data.isEmpty() ? QStringList() : QDir(data).entryList({"*.rar", "*.RAR"}, QDir::Files);
        if (rars.isEmpty())
            QSKIP("no RAR archive in the shared test data; RAR reading is not tested");
        const QString archive = data + "/" + rars.first();
        QVERIFY(f->load(archive) > 0);
        QVERIFY(f->count("Category", "tPath='" + archive + "'") > 0);
    }
};

QTEST_GUILESS_MAIN(TestArchives)
#include "tst_archives.moc"
