// The batch driver without its window: each mode's rows and result lines, the check with its
// delete and new-path follow-ups, MD5 sums, directory exports, compacting, the upgrade's rows,
// the yields every 5 rows, Cancel, and the answer kModeChanged.

#include "app/Globals.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "import/BatchProcess.h"
#include "support/ArchiveWriter.h"
#include "support/C64ImageWriter.h"
#include "support/CatalogueFixture.h"
#include "support/ImportFixture.h"

#include <memory>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QtTest>

using namespace vd;
using import::BatchProcess;
using import::ResultRow;
using test::DiskWriter;

namespace {

// Records what a mode shows, and cancels after a number of yields when asked to.
class Recorder : public import::BatchReport
{
public:
    void setStatus(const QString& text) override { statuses << text; }
    void setRange(qint64 maximum) override { range = maximum; }
    void setValue(qint64 value) override { values << value; }
    bool cancelled() const override { return cancelAfter > 0 && yields >= cancelAfter; }
    void yield() override { ++yields; }
    void rowChanged(qsizetype index, const ResultRow&) override { changed << index; }

    QStringList statuses;
    QList<qint64> values;
    QList<qsizetype> changed;
    qint64 range = -1;
    int yields = 0;
    int cancelAfter = 0;
};

QStringList names(const QVector<ResultRow>& rows)
{
    QStringList out;
    for (const ResultRow& r : rows)
        out << r.Name;
    return out;
}

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class TestBatchProcess : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::ImportFixture> f;
    std::unique_ptr<Recorder> rec;
    QString m_root;

    QString put(const QString& relative, const QByteArray& bytes)
    {
        const QString path = m_root + QLatin1Char('/') + relative;
        QDir().mkpath(QFileInfo(path).absolutePath());
        if (!test::writeFile(path, bytes))
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }
    static QByteArray disk(const QByteArray& name, int entries)
    {
        QVector<test::Slot> list;
        for (int i = 0; i < entries; ++i)
            list << test::Slot{0x82, name + QByteArray::number(i), 10 + i};
        return DiskWriter::d64().name(name).entries(list).bytes();
    }
    std::unique_ptr<BatchProcess> batch(int mode, const QString& param = {})
    {
        auto p = std::make_unique<BatchProcess>(f->fm, *rec);
        p->iMode = mode;
        p->sParam = param;
        return p;
    }
    // Imports the files given (paths) one by one, as mode 5 would.
    void importAll(const QStringList& paths)
    {
        for (const QString& path : paths)
            QVERIFY(f->load(path) > 0);
        f->fm.CountFiles();
    }

private slots:
    void init()
    {
        f = std::make_unique<test::ImportFixture>();
        rec = std::make_unique<Recorder>();
        m_root = f->file(QStringLiteral("c64"));
        QDir().mkpath(m_root);
    }
    void cleanup()
    {
        f.reset();
        rec.reset();
    }

    void optionLinesOfEachMode_data();
    void optionLinesOfEachMode();
    void folderImportAndTheSameFolderAgain();
    void oneFileWithItsDuration();
    void checkListsMissingFilesOncePerMember();
    void checkYieldsEveryFiveRowsAndStopsAtCancel();
    void checkRereadsFilesWhenAsked();
    void deleteMissingRemovesExactlyThoseRows();
    void newPathByNameInSubfolders();
    void newPathWithOldPath();
    void md5SkipsFilesWithAHash();
    void directoryExport();
    void compactAndUpgrade();
};

void TestBatchProcess::optionLinesOfEachMode_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("allOptions");
    QTest::addColumn<QStringList>("rows");
    const QString files = QStringLiteral("Dateien: ") + import::ImportOptions().ImportFiles;
    QTest::newRow("folder, no options")
        << 1 << false << QStringList{"Optionen:", files, "", "Neue Dateien:"};
    QTest::newRow("folder, all options")
        << 1 << true
        << QStringList{"Optionen:",
                       "MD5-Checksumme erzeugen (langsam)",
                       "Bestehende Dateien erneut aktualisieren (langsam)",
                       "Bestehende komprimierte Dateien '.ZIP;.RAR;.7Z;.CAB' erneut aktualisieren "
                       "(langsam)",
                       "Zip-Dateiname in der GameBase suchen (langsam)",
                       files,
                       "",
                       "Neue Dateien:"};
    // One file: no import list; the GameBase connection: no GameBase option.
    QTest::newRow("file") << 5 << true
                          << QStringList{"Optionen:",
                                         "MD5-Checksumme erzeugen (langsam)",
                                         "Bestehende Dateien erneut aktualisieren (langsam)",
                                         "Bestehende komprimierte Dateien '.ZIP;.RAR;.7Z;.CAB' "
                                         "erneut aktualisieren (langsam)",
                                         "Zip-Dateiname in der GameBase suchen (langsam)",
                                         "",
                                         "Neue Dateien:"};
    QTest::newRow("gamebase") << 7 << false << QStringList{"Optionen:", files, "", "Neue Dateien:"};
    QTest::newRow("check") << 2 << true << QStringList{"Nicht gefundene Dateien:"};
    QTest::newRow("md5") << 9 << false
                         << QStringList{"Fehlende MD5-Checksummen erzeugen",
                                        "Anzahl der markierten Dateien: 3", "",
                                        "Fehlende MD5-Checksummen erzeugen:"};
    QTest::newRow("export") << 10 << false
                            << QStringList{"Directory als txt-Datei speichern -> /out/",
                                           "Dateien: D64, D71, D81, G64",
                                           "Anzahl der markierten Dateien: 3", "",
                                           "Directory als txt-Datei speichern -> /out/:"};
    QTest::newRow("compact") << 3 << true << QStringList{};
    QTest::newRow("upgrade") << 6 << true << QStringList{};
}

void TestBatchProcess::optionLinesOfEachMode()
{
    QFETCH(int, mode);
    QFETCH(bool, allOptions);
    QFETCH(QStringList, rows);
    import::ImportOptions& o = f->fm.options;
    o.CreateMd5Hash = o.RefreshC64Files = o.SerachArchivFiles = o.ConnectFilesToGB = allOptions;
    auto p = batch(mode, QStringLiteral("/out/"));
    p->selectedIds = {4, 5, 6};
    p->AddOptionLines();
    QCOMPARE(names(p->rows()), rows);
    // None of them has an icon; the work's rows come after them.
    for (const ResultRow& r : p->rows())
        QCOMPARE(r.Filetyp, import::kNoIcon);
    QVERIFY(p->workRows().isEmpty());
}

void TestBatchProcess::folderImportAndTheSameFolderAgain()
{
    put(QStringLiteral("b.d64"), disk("B", 3));
    put(QStringLiteral("sub/a.prg"), QByteArray(300, 'a'));
    put(QStringLiteral("notes.xyz"), "x");
    auto p = batch(import::kModeAddFolder, m_root);
    p->Run();
    QCOMPARE(p->iMode, import::kModeChanged);
    QCOMPARE(p->sResultText, QStringLiteral("Hinzugefügte Dateien: 2\nHinzugefügte C64-Files: 4\n"
                                            "Durchsuchte Dateien: 3"));

    // The second time every file is a duplicate and nothing changes.
    auto again = batch(import::kModeAddFolder, m_root);
    again->Run();
    QCOMPARE(again->iMode, import::kModeAddFolder);
    QCOMPARE(again->sResultText, QStringLiteral("Hinzugefügte Dateien: 0\nHinzugefügte C64-Files: "
                                                "0\nDurchsuchte Dateien: 3"));
    QCOMPARE(names(again->workRows()),
             QStringList({m_root + "/", "Datei ist schon vorhanden: b.d64", m_root + "/sub/",
                          "Datei ist schon vorhanden: a.prg"}));
    QCOMPARE(f->count(QStringLiteral("Category")), qint64(2));
}

void TestBatchProcess::oneFileWithItsDuration()
{
    const QString path = put(QStringLiteral("one.d64"), disk("ONE", 2));
    auto p = batch(import::kModeAddFile, path);
    QList<qint64> ticks{1000, 61500};
    p->clock = [&ticks] { return ticks.takeFirst(); };
    p->Run();
    QCOMPARE(p->lResultID, qint64(1));
    QCOMPARE(p->sResultText, QStringLiteral("Hinzugefügte Dateien: 1\nHinzugefügte C64-Files: 2\n"
                                            "Durchsuchte Datei: ") +
                                 path);
    QCOMPARE(p->StatusText(), QStringLiteral("Dauer: 01:00"));
    QVERIFY(ticks.isEmpty());
}

void TestBatchProcess::checkListsMissingFilesOncePerMember()
{
    const QString kept = put(QStringLiteral("kept.prg"), "k");
    const QString gone = put(QStringLiteral("O'Gone.d64"), disk("G", 2));
    const QString zip =
        put(QStringLiteral("pack.zip"),
            test::rawZip({{"one.prg", QByteArray(10, '1')}, {"sub/two.prg", QByteArray(20, '2')}}));
    importAll({kept, gone, zip});
    QCOMPARE(f->count(QStringLiteral("Category")), qint64(4));
    QVERIFY(QFile::remove(gone));
    QVERIFY(QFile::remove(zip));

    auto p = batch(import::kModeCheck);
    p->Run();
    QCOMPARE(p->lMissing, qint64(3));
    QVERIFY(p->OffersMissing());
    QCOMPARE(p->sResultText,
             QStringLiteral("Datenbank wurde überprüft:\nNicht gefundene Dateien: 3"));
    // In the order of tPath; a member carries its path inside the archive.
    const QVector<ResultRow> rows = p->workRows();
    QCOMPARE(names(rows), QStringList({gone, zip + "\\one.prg", zip + "\\sub\\two.prg"}));
    for (qsizetype i = 0; i < rows.size(); ++i) {
        QCOMPARE(rows[i].Filetyp, import::kTypeMissing);
        QCOMPARE(rows[i].Path, i == 0 ? gone : zip);
        QCOMPARE(rows[i].File, i == 0 ? QStringLiteral("O'Gone.d64") : QStringLiteral("pack.zip"));
    }
    QCOMPARE(rows[0].OrgType, 1);
    QCOMPARE(rows[1].OrgType, 4);
    QCOMPARE(QList<qint64>({rows[0].Key, rows[1].Key, rows[2].Key}), QList<qint64>({2, 3, 4}));
    QCOMPARE(p->MissingFolders(), QStringList({m_root + "/"}));
}

void TestBatchProcess::checkYieldsEveryFiveRowsAndStopsAtCancel()
{
    for (int i = 0; i < 12; ++i)
        test::appendRow(*app::gDB, QStringLiteral("Category"),
                        {{"ID", i + 1},
                         {"iType", 1},
                         {"tFile", "f.prg"},
                         {"tPath", QStringLiteral("/nowhere/f%1.prg").arg(i, 2, 10, QChar('0'))},
                         {"iFileType", 4}});
    auto p = batch(import::kModeCheck);
    p->Run();
    QCOMPARE(rec->yields, 3); // before rows 1, 6 and 11
    QCOMPARE(rec->statuses, QStringList({"Dateien: 0/12", "Dateien: 5/12", "Dateien: 10/12"}));
    QCOMPARE(rec->values, QList<qint64>({0, 5, 10, 12}));
    QCOMPARE(p->lMissing, qint64(12));

    // Cancel pressed during the second yield: the rows before it stay listed.
    rec = std::make_unique<Recorder>();
    rec->cancelAfter = 2;
    auto stopped = batch(import::kModeCheck);
    stopped->Run();
    QVERIFY(stopped->cancelled);
    QCOMPARE(stopped->lMissing, qint64(5));
    QCOMPARE(stopped->workRows().size(), 5);
}

void TestBatchProcess::checkRereadsFilesWhenAsked()
{
    const QString path = put(QStringLiteral("grow.d64"), disk("GROW", 2));
    importAll({path});
    put(QStringLiteral("grow.d64"), disk("GROW", 3));
    auto plain = batch(import::kModeCheck);
    plain->Run();
    QCOMPARE(plain->iMode, import::kModeCheck);
    QCOMPARE(f->count(QStringLiteral("C64Files")), qint64(2));

    f->fm.options.CheckC64Files = true;
    auto reread = batch(import::kModeCheck);
    reread->Run();
    QCOMPARE(f->count(QStringLiteral("C64Files")), qint64(3));
    QCOMPARE(reread->lMissing, qint64(0));
    QCOMPARE(reread->iMode, import::kModeChanged); // the views show the new entry
}

void TestBatchProcess::deleteMissingRemovesExactlyThoseRows()
{
    const QString a = put(QStringLiteral("a.d64"), disk("A", 2));
    const QString b = put(QStringLiteral("b.d64"), disk("B", 3));
    const QString c = put(QStringLiteral("c.prg"), "cc");
    importAll({a, b, c});
    QVERIFY(QFile::remove(a));
    QVERIFY(QFile::remove(c));
    auto p = batch(import::kModeCheck);
    p->Run();
    QCOMPARE(p->lMissing, qint64(2));
    const QString status = p->DeleteMissing();
    QCOMPARE(status, QStringLiteral("Nicht gefundene Dateien: 0\nGelöschte Dateien: 2"));
    QCOMPARE(p->iMode, import::kModeChanged);
    QCOMPARE(f->rows(QStringLiteral("Select tPath From Category")), QStringList({b}));
    QCOMPARE(f->rows(QStringLiteral("Select Distinct Category_File From C64Files")),
             QStringList({"2"}));
    QCOMPARE(p->workRows()[0].Filetyp, import::kTypeDeleted);
    QCOMPARE(p->workRows()[1].Filetyp, import::kTypeDeleted);
    QCOMPARE(rec->changed, QList<qsizetype>({0, 1}));
    // The importer counts what is left, so the next batch measures its growth right.
    QCOMPARE(f->fm.lCategoryCount, qint64(1));
    QCOMPARE(f->fm.lC64FileCount, qint64(3));
}

void TestBatchProcess::newPathByNameInSubfolders()
{
    const QString a = put(QStringLiteral("old/o'brien.d64"), disk("A", 1));
    const QString b = put(QStringLiteral("old/deep/b.prg"), "b");
    const QString zip =
        put(QStringLiteral("old/pack.zip"), test::rawZip({{"x.prg", "x"}, {"y.prg", "y"}}));
    const QString c = put(QStringLiteral("old/c.prg"), "c");
    importAll({a, b, zip, c});
    // a and the archive moved into subfolders of new/; b lies only in a folder whose name
    // begins with a dot; c is gone.
    const QString moved = m_root + QStringLiteral("/new");
    QDir().mkpath(moved + QStringLiteral("/x/y"));
    QDir().mkpath(moved + QStringLiteral("/.hidden"));
    QVERIFY(QFile::rename(a, moved + QStringLiteral("/x/o'brien.d64")));
    QVERIFY(QFile::rename(zip, moved + QStringLiteral("/x/y/pack.zip")));
    QVERIFY(QFile::rename(b, moved + QStringLiteral("/.hidden/b.prg")));
    QVERIFY(QFile::remove(c));

    auto p = batch(import::kModeCheck);
    p->Run();
    QCOMPARE(p->lMissing, qint64(5));
    const QString status = p->FindMissingFiles(moved + QLatin1Char('/'), QString());
    QCOMPARE(status, QStringLiteral("Nicht gefundene Dateien: 2\nWiedergefundene Dateien: 3"));
    QCOMPARE(p->iMode, import::kModeChanged);
    QCOMPARE(f->rows(QStringLiteral("Select tPath From Category order by ID")),
             QStringList({moved + "/x/o'brien.d64", b, moved + "/x/y/pack.zip",
                          moved + "/x/y/pack.zip", c}));
    QStringList found;
    for (const ResultRow& r : p->workRows())
        if (r.Filetyp != import::kTypeMissing)
            found << r.Name + QLatin1Char('|') + QString::number(r.Filetyp);
    QCOMPARE(found,
             QStringList({"Datei gefunden: " + a + "|1", "Datei gefunden: " + zip + "\\x.prg|4",
                          "Datei gefunden: " + zip + "\\y.prg|4"}));
}

void TestBatchProcess::newPathWithOldPath()
{
    // Two files of one name in different folders, and one catalogued elsewhere.
    importAll({put(QStringLiteral("games/x/a.prg"), "ax"),
               put(QStringLiteral("games/y/a.prg"), "ay"),
               put(QStringLiteral("elsewhere/z.prg"), "z")});
    QVERIFY(QFile::remove(m_root + QStringLiteral("/elsewhere/z.prg")));
    // A row of a catalogue written on Windows.
    test::appendRow(*app::gDB, QStringLiteral("Category"),
                    {{"ID", 4},
                     {"iType", 1},
                     {"tFile", "w.prg"},
                     {"tPath", "C:\\GAMES\\sub\\w.prg"},
                     {"iFileType", 4}});
    // The tree moved as a whole; z.prg and w.prg were put into it, w.prg twice.
    const QString target = m_root + QStringLiteral("/moved/games");
    QDir().mkpath(m_root + QStringLiteral("/moved"));
    QVERIFY(QDir().rename(m_root + QStringLiteral("/games"), target));
    put(QStringLiteral("moved/games/y/z.prg"), "z");
    put(QStringLiteral("moved/games/aaa/w.prg"), "w");
    put(QStringLiteral("moved/games/sub/w.prg"), "w");
    const QString byOrder = QStringLiteral("Select tPath From Category order by ID");
    const auto setPath = [](int id, const QString& path) {
        app::gDB->execute(QStringLiteral("Update Category Set tPath='") + path +
                          QStringLiteral("' where ID=") + QString::number(id));
    };

    // By name alone, both a.prg rows end in the first folder that holds such a name.
    auto byName = batch(import::kModeCheck);
    byName->Run();
    QCOMPARE(byName->lMissing, qint64(4));
    QCOMPARE(byName->FindMissingFiles(target, QString()),
             QStringLiteral("Nicht gefundene Dateien: 0\nWiedergefundene Dateien: 4"));
    QCOMPARE(f->rows(byOrder), QStringList({target + "/x/a.prg", target + "/x/a.prg",
                                            target + "/y/z.prg", target + "/aaa/w.prg"}));

    // With the old path each keeps its place below the new folder; a path without the old
    // one (z.prg) is still sought by name.
    setPath(1, m_root + QStringLiteral("/games/x/a.prg"));
    setPath(2, m_root + QStringLiteral("/games/y/a.prg"));
    setPath(3, m_root + QStringLiteral("/elsewhere/z.prg"));
    setPath(4, QStringLiteral("C:\\GAMES\\sub\\w.prg"));
    auto withOld = batch(import::kModeCheck);
    withOld->Run();
    QCOMPARE(withOld->lMissing, qint64(4));
    QCOMPARE(
        withOld->FindMissingFiles(target + QLatin1Char('/'), m_root + QStringLiteral("/games/")),
        QStringLiteral("Nicht gefundene Dateien: 0\nWiedergefundene Dateien: 4"));
    QCOMPARE(f->rows(byOrder), QStringList({target + "/x/a.prg", target + "/y/a.prg",
                                            target + "/y/z.prg", target + "/aaa/w.prg"}));

    // A Windows path continues with "/" behind the part replaced.
    setPath(4, QStringLiteral("C:\\GAMES\\sub\\w.prg"));
    auto windows = batch(import::kModeCheck);
    windows->Run();
    QCOMPARE(windows->lMissing, qint64(1));
    QCOMPARE(windows->FindMissingFiles(target, QStringLiteral("C:\\GAMES")),
             QStringLiteral("Nicht gefundene Dateien: 0\nWiedergefundene Dateien: 1"));
    QCOMPARE(f->value(QStringLiteral("Select tPath From Category where ID=4")),
             target + "/sub/w.prg");
}

void TestBatchProcess::md5SkipsFilesWithAHash()
{
    const QByteArray bytes(1000, 'm');
    importAll({put(QStringLiteral("a.prg"), bytes), put(QStringLiteral("b.prg"), "bb"),
               put(QStringLiteral("c.prg"), "cc")});
    app::gDB->execute(QStringLiteral("Update Category Set tHash='given' where ID=2"));
    auto p = batch(import::kModeMd5);
    p->selectedIds = {1, 2};
    p->Run();
    const QString md5 =
        QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
    QCOMPARE(names(p->workRows()), QStringList({"a.prg: " + md5}));
    QCOMPARE(p->workRows()[0].Filetyp, 4);
    QCOMPARE(p->sResultText, QStringLiteral("Dateien: 1"));
    QCOMPARE(p->iMode, import::kModeChanged);
    QCOMPARE(f->rows(QStringLiteral("Select tHash From Category order by ID")),
             QStringList({md5, "given", "-"}));

    // Everything hashed already: nothing to do, nothing changed.
    auto again = batch(import::kModeMd5);
    again->selectedIds = {1, 2};
    again->Run();
    QCOMPARE(again->sResultText, QStringLiteral("Dateien: 0"));
    QCOMPARE(again->iMode, import::kModeMd5);
}

void TestBatchProcess::directoryExport()
{
    QVector<test::Slot> dirSlots{{0x82, "FIRST", 17}, {0x81, QByteArray("N\xC4ME"), 2}};
    const QString d64 =
        put(QStringLiteral("x.d64"), DiskWriter::d64().name("X").entries(dirSlots).bytes());
    const QString t64 = put(QStringLiteral("t.t64"),
                            test::t64("C64S tape image file", 1, "T", {{true, 100, "TAPE"}}, 400));
    importAll({d64, t64});
    const QString out = m_root + QStringLiteral("/out");
    QDir().mkpath(out);

    // A tape has no directory to save.
    auto tape = batch(import::kModeExportDirs, out);
    tape->selectedIds = {2};
    tape->Run();
    QCOMPARE(tape->sResultText, QStringLiteral("Dateien: 0"));
    QVERIFY(tape->workRows().isEmpty());
    QCOMPARE(QDir(out).entryList(QDir::Files), QStringList());

    auto p = batch(import::kModeExportDirs, out);
    p->selectedIds = {2, 1};
    p->Run();
    QCOMPARE(p->sResultText, QStringLiteral("Dateien: 1"));
    QCOMPARE(names(p->workRows()), QStringList({out + "/x.d64.txt: "}));
    QCOMPARE(readAll(out + QStringLiteral("/x.d64.txt")),
             QByteArray("17\tFIRST\tPRG\n2\tN\xC4ME\tSEQ"));

    // Without a folder the text lies beside the image; a folder that is not there is told.
    auto beside = batch(import::kModeExportDirs);
    beside->selectedIds = {1};
    beside->Run();
    QVERIFY(QFile::exists(d64 + QStringLiteral(".txt")));
    auto nowhere = batch(import::kModeExportDirs, m_root + QStringLiteral("/missing"));
    nowhere->selectedIds = {1};
    nowhere->Run();
    QCOMPARE(names(nowhere->workRows()),
             QStringList({"Datei nicht gefunden: " + m_root + "/missing/"}));
    QCOMPARE(nowhere->sResultText, QStringLiteral("Dateien: 0"));
}

void TestBatchProcess::compactAndUpgrade()
{
    // Mode 6 with "3.0": the file types by the old list, where .G64 was the tenth and .VFL
    // the twelfth. The label keeps its text and the bar moves.
    const QStringList files{"a.g64", "b.prg", "c.VFL", "d.xyz"};
    for (int i = 0; i < files.size(); ++i)
        test::appendRow(*app::gDB, QStringLiteral("Category"),
                        {{"ID", i + 1}, {"iType", 1}, {"tFile", files[i]}});
    auto up = batch(import::kModeUpgrade, QStringLiteral("3.0"));
    up->Run();
    QVERIFY(up->failure.isEmpty());
    QCOMPARE(f->rows(QStringLiteral("Select iFileType From Category order by ID")),
             QStringList({"10", "4", "12", "-"}));
    QVERIFY(rec->statuses.isEmpty());
    QCOMPARE(rec->range, qint64(4));

    // Mode 3 on the closed catalogue.
    catalogue::CloseCatalogue();
    app::gDatabasePath = f->catalogue();
    auto compact = batch(import::kModeCompact);
    compact->Run();
    QCOMPARE(compact->sResultText, QStringLiteral("Datenbank wurde erfolgreich komprimiert!"));
    QVERIFY(QFile::exists(f->catalogue().left(f->catalogue().size() - 3) + QStringLiteral("OLD")));
    app::gDatabasePath.clear();
    QVERIFY(f->dialogs.messages().isEmpty());
}

QTEST_GUILESS_MAIN(TestBatchProcess)
#include "tst_batchprocess.moc"
