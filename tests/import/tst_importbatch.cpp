// The batch modes 1 (a folder) and 5 (one file): the walk, the result list and the result
// lines, Cancel, links that loop, the grouped commits, and the real files of other people.

#include "app/Globals.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "import/ImportBatch.h"
#include "support/C64ImageWriter.h"
#include "support/ImportFixture.h"

#include <memory>
#include <QDir>
#include <QFile>
#include <QThread>
#include <QtTest>

using namespace vd;
using vd::test::DiskWriter;

namespace {

struct Line
{
    QString text;
    int type;
    bool operator==(const Line& o) const { return text == o.text && type == o.type; }
};

// Stops the walk after a number of yields.
class CancelAfter : public platform::Progress
{
public:
    explicit CancelAfter(int yields) : m_left(yields) {}
    void yield() override { --m_left; }
    bool cancelled() const override { return m_left <= 0; }

private:
    int m_left;
};

} // namespace

class TestImportBatch : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::ImportFixture> f;
    QString m_root;

    void put(const QString& relative, const QByteArray& bytes)
    {
        const QString path = m_root + QLatin1Char('/') + relative;
        QDir().mkpath(QFileInfo(path).absolutePath());
        QVERIFY(test::writeFile(path, bytes));
    }
    QByteArray disk(const QByteArray& name, int entries)
    {
        QVector<test::Slot> list;
        for (int i = 0; i < entries; ++i)
            list << test::Slot{0x82, name + QByteArray::number(i), i + 1};
        DiskWriter w = DiskWriter::d64();
        w.name(name).entries(list);
        return w.bytes();
    }
    // The usual tree: three catalogued files, one unknown, one hidden folder.
    void makeTree()
    {
        put(QStringLiteral("b.d64"), disk("B", 3));
        put(QStringLiteral("A.prg"), QByteArray(254, 'a'));
        put(QStringLiteral("notes.xyz"), "n");
        put(QStringLiteral("sub/c.t64"),
            test::t64("C64S tape image file", 1, "TAPE", {{true, 100, "C"}}, 400));
        put(QStringLiteral(".hidden/skip.prg"), "s");
        put(QStringLiteral(".dot.prg"), "d");
    }
    import::BatchResult run(int mode, const QString& param, QList<Line>* lines = nullptr,
                            platform::Progress& progress = platform::noProgress()) {
        import::ImportBatch batch(f->fm, progress);
    if (lines)
        connect(&batch, &import::ImportBatch::resultLine, &batch,
                [lines](const QString& text, int type) {
                    lines->append({text, type});
                });
    return batch.run(mode, param);
}

private slots : void
                init()
{
    f = std::make_unique<test::ImportFixture>();
    m_root = f->file(QStringLiteral("collection"));
    QDir().mkpath(m_root);
}
void cleanup()
{
    f.reset();
}

void folder()
{
    makeTree();
    QList<Line> lines;
    const import::BatchResult r = run(import::kModeAddFolder, m_root, &lines);
    QCOMPARE(r.iMode, import::kModeChanged);
    QCOMPARE(r.filesSeen, qint64(5));
    QCOMPARE(r.resultLines, QStringList({"Hinzugefügte Dateien: 4", "Hinzugefügte C64-Files: 6",
                                         "Durchsuchte Dateien: 5"}));
    QCOMPARE(r.sResultText(), r.resultLines.join(QLatin1Char('\n')));
    // Folders as plain lines, files under the icon of their kind, in name order.
    const QList<Line> expected = {{m_root + "/", -1}, {".dot.prg", 4},        {"A.prg", 4},
                                  {"b.d64", 1},       {m_root + "/sub/", -1}, {"c.t64", 3}};
    QCOMPARE(lines, expected);
    QCOMPARE(f->rows(QStringLiteral("Select tPath From Category where iFileType=3")),
             QStringList({m_root + "/sub/c.t64"}));
}

void sameFolderTwice()
{
    makeTree();
    run(import::kModeAddFolder, m_root);
    QList<Line> lines;
    const import::BatchResult r = run(import::kModeAddFolder, m_root, &lines);
    QCOMPARE(r.iMode, import::kModeAddFolder);
    QCOMPARE(r.resultLines.mid(0, 2),
             QStringList({"Hinzugefügte Dateien: 0", "Hinzugefügte C64-Files: 0"}));
    QStringList duplicates;
    for (const Line& l : lines)
        if (l.text.startsWith(QLatin1String("Datei ist schon vorhanden: ")))
            duplicates << l.text.mid(27);
    QCOMPARE(duplicates, QStringList({".dot.prg", "A.prg", "b.d64", "c.t64"}));
}

void oneFile()
{
    put(QStringLiteral("one.d64"), disk("ONE", 2));
    const QString path = m_root + QStringLiteral("/one.d64");
    const import::BatchResult r = run(import::kModeAddFile, path);
    QCOMPARE(r.lResultID, qint64(1));
    QCOMPARE(r.resultLines, QStringList({"Hinzugefügte Dateien: 1", "Hinzugefügte C64-Files: 2",
                                         "Durchsuchte Datei: " + path}));
    // Named directly, a file needs no place in ImportFiles.
    f->fm.options.ImportFiles = QStringLiteral(".T64");
    put(QStringLiteral("two.d64"), disk("TWO", 1));
    QCOMPARE(run(import::kModeAddFile, m_root + QStringLiteral("/two.d64")).lResultID, qint64(2));
}

void importListAppliesToFolders()
{
    makeTree();
    f->fm.options.ImportFiles = QStringLiteral(".D64");
    const import::BatchResult r = run(import::kModeAddFolder, m_root);
    QCOMPARE(r.resultLines.first(), QStringLiteral("Hinzugefügte Dateien: 1"));
    QCOMPARE(r.filesSeen, qint64(5));
}

void refreshOption()
{
    put(QStringLiteral("r.d64"), disk("R", 2));
    run(import::kModeAddFolder, m_root);
    put(QStringLiteral("r.d64"), disk("R", 3));
    QCOMPARE(run(import::kModeAddFolder, m_root).resultLines.mid(0, 2),
             QStringList({"Hinzugefügte Dateien: 0", "Hinzugefügte C64-Files: 0"}));
    f->fm.options.RefreshC64Files = true;
    const import::BatchResult r = run(import::kModeAddFolder, m_root);
    QCOMPARE(r.resultLines.mid(0, 2),
             QStringList({"Hinzugefügte Dateien: 0", "Hinzugefügte C64-Files: 1"}));
    QCOMPARE(r.iMode, import::kModeChanged);
}

void cancelKeepsWhatWasAdded()
{
    for (int i = 0; i < 6; ++i)
        put(QStringLiteral("f%1.d64").arg(i), disk("F", 2));
    // One yield for the folder, then one after each file added: stop after two files.
    CancelAfter progress(3);
    const import::BatchResult r = run(import::kModeAddFolder, m_root, nullptr, progress);
    QVERIFY(r.cancelled);
    QCOMPARE(r.iMode, import::kModeChanged);
    QCOMPARE(r.filesSeen, qint64(2));
    QCOMPARE(r.resultLines, QStringList({"Hinzugefügte Dateien: 2", "Hinzugefügte C64-Files: 4",
                                         "Durchsuchte Dateien: 2"}));
    QCOMPARE(f->count(QStringLiteral("Category")), qint64(2));
}

void linkLoopIsWalkedOnce()
{
    put(QStringLiteral("a/x.prg"), "x");
    QVERIFY(QFile::link(m_root, m_root + QStringLiteral("/a/back")));
    QVERIFY(QFile::link(m_root + QStringLiteral("/a"), m_root + QStringLiteral("/again")));
    const import::BatchResult r = run(import::kModeAddFolder, m_root);
    QCOMPARE(r.filesSeen, qint64(1));
    QCOMPARE(f->count(QStringLiteral("Category")), qint64(1));
}

void writesAreCommittedDuringTheBatch()
{
    for (int i = 0; i < 3; ++i)
        put(QStringLiteral("f%1.prg").arg(i), "x");
    // The first pause lasts longer than the commit interval; at the third file another
    // connection must see the first one's row.
    class Watch : public platform::Progress
    {
    public:
        explicit Watch(QString path) : m_path(std::move(path)) {}
        void yield() override
        {
            if (++m_calls == 2)
                QThread::msleep(600);
            if (m_calls == 4) {
                auto other = db::Database::open(m_path, true);
                auto rs = other->openRecordset(QStringLiteral("Select Count(*) From Category"),
                                               db::RecordsetType::Snapshot);
                seen = rs->value(0).toInt();
            }
        }
        int seen = -1;

    private:
        QString m_path;
        int m_calls = 0;
    } watch(f->catalogue());
    run(import::kModeAddFolder, m_root, nullptr, watch);
    QVERIFY2(watch.seen >= 1, qPrintable(QString::number(watch.seen)));
    auto other = db::Database::open(f->catalogue(), true);
    QCOMPARE(
        other->openRecordset(QStringLiteral("Select Count(*) From Category"))->value(0).toInt(), 3);
}

void realFiles()
{
    const QString folder = test::realC64Folder();
    if (folder.isEmpty())
        QSKIP("the shared real C64 files (../shared/testdata/c64) are not there");
    QList<Line> lines;
    const import::BatchResult r = run(import::kModeAddFolder, folder, &lines);
    QCOMPARE(r.filesSeen, qint64(16));
    QCOMPARE(r.resultLines.first(), QStringLiteral("Hinzugefügte Dateien: 15"));
    QVERIFY(lines.contains(Line{"Fehlerhaftes C64-File: " + folder + "/vtp_vic20-pass.crt", -1}));
    auto entries = [&](const QString& file) {
        return f->rows(QStringLiteral("Select F.tProgram,F.tExtension,F.lSize From C64Files "
                                      "as F Left Join Category as C on F.Category_File=C.ID "
                                      "where C.tFile='%1' order by F.lIndex")
                           .arg(file));
    };
    auto image = [&](const QString& file) {
        return f->value(
            QStringLiteral("Select tImage,iFileType From Category where tFile='%1'").arg(file));
    };
    // Locked entries, scratched ones left out, upper-case extension (5 live of 12).
    QCOMPARE(entries(QStringLiteral("vtp_BB-RTC.D64")),
             QStringList({"BBRTCtoGEOS|<USR|5", "GEOStoBBRTC|<USR|5", "RTCRBOOT|<PRG|16",
                          "READBBRTC|PRG|33", "SETBBRTC|PRG|34"}));
    // One PRG and four USR files; the names' letters are PETSCII lower case, so they are
    // stored as the bytes' upper-case Latin-1 characters.
    const QStringList ts = entries(QStringLiteral("vtp_1541ts_framework.d64"));
    QCOMPARE(ts.size(), 5);
    QCOMPARE(ts.first().section(QLatin1Char('|'), 1, 1), QStringLiteral("PRG"));
    QCOMPARE(ts.at(1), QStringLiteral("&00>DUMMY-TRUE0|USR|1"));
    QCOMPARE(image(QStringLiteral("vtp_bustakeover.d64")), QStringLiteral("TEST|1"));
    QVERIFY(
        entries(QStringLiteral("vtp_bustakeover.d64")).contains(QStringLiteral("TESTSEQ|SEQ|4")));
    QCOMPARE(entries(QStringLiteral("vtp_Lorenz.d81")).size(), 262);
    QCOMPARE(image(QStringLiteral("vtp_scan35err.d64")), QStringLiteral("SCANNER|1"));
    QCOMPARE(image(QStringLiteral("vtp_scan35.d71")), QStringLiteral("SCANNER|2"));
    QCOMPARE(image(QStringLiteral("vtp_scan35err.d71")), QStringLiteral("SCANNER|2"));
    QCOMPARE(image(QStringLiteral("vtp_scan35.g64")), QStringLiteral("SCANNER|12"));
    QCOMPARE(entries(QStringLiteral("vtp_scan35.g64")), QStringList({"SCANNER35|PRG|4"}));
    QCOMPARE(image(QStringLiteral("vtp_autostart-c64-none.t64")),
             QStringLiteral("AUTOSTART-C64-NONE|3"));
    QCOMPARE(entries(QStringLiteral("vtp_autostart-c64-none.t64")),
             QStringList({"AUTOSTART-C64-NO|PRG|9"}));
    QCOMPARE(entries(QStringLiteral("vtp_Templtsm.p00")), QStringList({"TEMPLATE.ASM|PRG|20"}));
    QCOMPARE(entries(QStringLiteral("vtp_8kgame.crt")), QStringList({"VICE CART|PRG|33"}));
    QCOMPARE(entries(QStringLiteral("vtp_c64-pass.crt")), QStringList({"Generic C64 Cart|PRG|16"}));
    QCOMPARE(entries(QStringLiteral("vtp_vic20-pass.crt")), QStringList());
}
}
;

QTEST_GUILESS_MAIN(TestImportBatch)
#include "tst_importbatch.moc"
