// The views on a real catalogue: what the tree and the list show for a search, the new-files
// box, a filter and a selected node, read through the same statements the window runs; and the
// command line's list of the same state.

#include "app/SettingsWriter.h"
#include "browser/Filters.h"
#include "browser/ViewBuilder.h"
#include "browser/ViewRows.h"
#include "catalogue/Database.h"
#include "catalogue/DbError.h"
#include "catalogue/Recordset.h"
#include "support/CatalogueFixture.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTest>

using namespace vd;
using namespace vd::browser;
using vd::test::CatalogueFixture;

namespace {

const QStringList kNoLayouts{QString(), QString(), QString(), QString()};

ViewInput input(int view, const QString& name = {})
{
    ViewInput in;
    in.view = view;
    in.search[0] = name;
    in.captions = ViewCaptions::current();
    in.startCategoryID = CatalogueFixture::kStartCategoryID;
    in.startC64FileID = CatalogueFixture::kStartC64FileID;
    in.shortDatePattern = QStringLiteral("dd.MM.yyyy");
    return in;
}

// One column of what the list shows, as text.
QStringList column(const ViewRows& rows, const QString& caption)
{
    const qsizetype c = rows.captions.indexOf(caption);
    QStringList out;
    for (const auto& row : rows.rows)
        out << (c < 0 ? QStringLiteral("?") : row[c].toString());
    return out;
}

QStringList texts(db::Database& db, const QString& statement, int field)
{
    QStringList out;
    const auto rs = db.openRecordset(statement, db::RecordsetType::Snapshot);
    for (; !rs->eof(); rs->moveNext())
        out << rs->value(field).toString();
    rs->close();
    return out;
}

} // namespace

class TestViewRows : public QObject
{
    Q_OBJECT

private slots:
    void fileViewAndNode();
    void searchInCategoriesNarrowsOnlyTheList();
    void mainFilesListEachFileOnce();
    void newFilesView();
    void emptyCatalogueShowsTheRootAlone();
    void startedViews();
    void filtersOnRows();
    void cliListsWhatTheListShows();
};

void TestViewRows::fileViewAndNode()
{
    CatalogueFixture f;
    const ViewSql sql = BuildViewSql(input(1));
    QCOMPARE(texts(f.db(), sql.treeLevels[0], 3), QStringList{"Dateien"});
    QCOMPARE(ReadTreeKeys(f.db(), sql).size(), CatalogueFixture::kFileCount);
    QCOMPARE(ReadViewRows(f.db(), sql, -1, kNoLayouts, input(1).captions).rows.size(),
             CatalogueFixture::kEntryCount);

    // A file node: its entries in directory order.
    const ViewRows rows = ReadViewRows(f.db(), sql, 1, kNoLayouts, input(1).captions);
    QCOMPARE(column(rows, "File"), (QStringList{"SANXION", "SANXION HISCORE", "MY_GAME"}));
    QCOMPARE(column(rows, "Disk, Tape,..."), QStringList(3, "Sanxion.d64"));
}

void TestViewRows::searchInCategoriesNarrowsOnlyTheList()
{
    CatalogueFixture f;
    const ViewSql all = BuildViewSql(input(3));
    const ViewSql found = BuildViewSql(input(3, "PARA"));
    const QVector<qint64> tree{20, 22, 21}; // Action, Puzzle, Shoot'em Up
    QCOMPARE(ReadTreeKeys(f.db(), all), tree);
    QCOMPARE(ReadTreeKeys(f.db(), found), tree);
    QCOMPARE(column(ReadViewRows(f.db(), found, -1, kNoLayouts, input(3).captions), "File"),
             QStringList{"PARADROID"});
    // A category node lists its entries.
    QCOMPARE(ReadViewRows(f.db(), all, 21, kNoLayouts, input(3).captions).rows.size(), 2);
    QCOMPARE(column(ReadViewRows(f.db(), found, 20, kNoLayouts, input(3).captions), "File"),
             QStringList{"PARADROID"});
}

void TestViewRows::mainFilesListEachFileOnce()
{
    CatalogueFixture f;
    ViewInput in = input(2, "SANXION"); // two entries of Sanxion.d64 match
    ViewRows rows = ReadViewRows(f.db(), BuildViewSql(in), 0, kNoLayouts, in.captions);
    QCOMPARE(column(rows, "Disk, Tape,..."), QStringList{"Sanxion.d64"});
    QCOMPARE(column(rows, "Filetyp"), QStringList{"D64"});

    in.search[0].clear();
    rows = ReadViewRows(f.db(), BuildViewSql(in), 0, kNoLayouts, in.captions);
    QCOMPARE(rows.rows.size(), CatalogueFixture::kFileCount);
    QVERIFY(rows.captions.contains("MD5-Checksumme"));
}

void TestViewRows::newFilesView()
{
    CatalogueFixture f;
    ViewInput in = input(4);
    ViewSql sql = BuildViewSql(in);
    QCOMPARE(ReadTreeKeys(f.db(), sql), (QVector<qint64>{9, 10})); // Commando, title.gif
    QCOMPARE(ReadViewRows(f.db(), sql, -1, kNoLayouts, in.captions).rows.size(), 3);

    // Nothing added since the catalogue was opened: the root alone, an empty list.
    in.startCategoryID = CatalogueFixture::kFileCount + CatalogueFixture::kUserCategoryCount + 20;
    in.startC64FileID = CatalogueFixture::kEntryCount;
    sql = BuildViewSql(in);
    QCOMPARE(texts(f.db(), sql.treeLevels[0], 0), QStringList{"-1"});
    QVERIFY(ReadTreeKeys(f.db(), sql).isEmpty());
    QVERIFY(ReadViewRows(f.db(), sql, -1, kNoLayouts, in.captions).rows.isEmpty());
}

void TestViewRows::emptyCatalogueShowsTheRootAlone()
{
    CatalogueFixture f(false);
    for (int view : {1, 3, 5, 6}) {
        ViewInput in = input(view);
        in.treeSubItems = true;
        const ViewSql sql = BuildViewSql(in);
        QCOMPARE(texts(f.db(), sql.treeLevels[0], 3), QStringList{ViewName(view)});
        QVERIFY(ReadTreeKeys(f.db(), sql).isEmpty());
        QVERIFY(ReadViewRows(f.db(), sql, -1, kNoLayouts, in.captions).rows.isEmpty());
    }
}

void TestViewRows::startedViews()
{
    CatalogueFixture f;
    ViewSql sql = BuildViewSql(input(5));
    QCOMPARE(texts(f.db(), sql.treeLevels[1], 3),
             (QStringList{"(14.03.2024) - Sanxion.d64", "(10.03.2024) - Paradroid.prg",
                          "(31.12.2023) - O'Brien's Disk.d64"}));
    QCOMPARE(column(ReadViewRows(f.db(), sql, -1, kNoLayouts, input(5).captions), "File"),
             (QStringList{"SANXION", "PARADROID", "SANXION HISCORE", "O'BRIEN"}));

    sql = BuildViewSql(input(6));
    QCOMPARE(texts(f.db(), sql.treeLevels[1], 3),
             (QStringList{"(5) - Paradroid.prg", "(3) - Sanxion.d64", "(1) - O'Brien's Disk.d64"}));
    const ViewRows top = ReadViewRows(f.db(), sql, -1, kNoLayouts, input(6).captions);
    QCOMPARE(column(top, "File"),
             (QStringList{"PARADROID", "SANXION", "SANXION HISCORE", "O'BRIEN"}));
    QCOMPARE(column(top, "Zähler"), (QStringList{"5", "2", "1", "1"}));
}

void TestViewRows::filtersOnRows()
{
    CatalogueFixture f;
    ViewInput in = input(1);
    clsFilter readme;
    readme.Add("tPath", "( )", "readme", ""); // only the member path inside the ZIP holds it
    in.filter = &readme;
    ViewSql sql = BuildViewSql(in);
    QCOMPARE(ReadTreeKeys(f.db(), sql), QVector<qint64>{5});
    QCOMPARE(column(ReadViewRows(f.db(), sql, -1, kNoLayouts, in.captions), "File"),
             QStringList{"readme.txt"});

    clsFilter contains;
    contains.Add("tFile", "( )", "O'Brien", "");
    in.filter = &contains;
    sql = BuildViewSql(in);
    QCOMPARE(ReadTreeKeys(f.db(), sql), QVector<qint64>{6});

    // "=" keeps the quote as typed: the statement breaks and the data layer reports it.
    clsFilter equals;
    equals.Add("tFile", "=", "O'Brien's Disk.d64", "");
    in.filter = &equals;
    sql = BuildViewSql(in);
    QVERIFY_THROWS_EXCEPTION(db::DbError, ReadViewRows(f.db(), sql, -1, kNoLayouts, in.captions));

    // The default "Bilder" never finds the PNG: its last term is joined with "And".
    LoadMainFilters();
    const clsFilter* pictures = gFilters.findByName("Bilder");
    QVERIFY(pictures);
    in.filter = pictures;
    sql = BuildViewSql(in);
    QCOMPARE(column(ReadViewRows(f.db(), sql, -1, kNoLayouts, in.captions), "File"),
             QStringList{"title.gif"});
    app::setIniPartWriter(app::IniPart::MainFilters, {});
}

void TestViewRows::cliListsWhatTheListShows()
{
    const QString cli = QCoreApplication::applicationDirPath() + "/../src/vellumdock-cli";
    if (!QFile::exists(cli))
        QSKIP("vellumdock-cli is not built beside the tests");
    CatalogueFixture f;
    f.close();
    const auto run = [&](const QStringList& args) {
        QProcess p;
        p.start(cli, QStringList{"--home", f.folder() + "/home", "list", f.path()} + args);
        p.waitForFinished(60000);
        return std::make_pair(p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()));
    };
    auto [code, out] = run({"--node", "1"});
    QCOMPARE(code, 0);
    QCOMPARE(out,
             QStringLiteral("File\tFiletyp\tGröße\tDisk/Tape-Name\tDisk, Tape,...\tDateipfad\n"
                            "SANXION\tPRG\t150\tSANXION\tSanxion.d64\t/c64/disks/Sanxion.d64\n"
                            "SANXION HISCORE\tSEQ\t2\tSANXION\tSanxion.d64\t/c64/disks/"
                            "Sanxion.d64\n"
                            "MY_GAME\tPRG\t33\tSANXION\tSanxion.d64\t/c64/disks/Sanxion.d64\n"));
    std::tie(code, out) = run({"--view", "3", "--name", "para"});
    QCOMPARE(code, 0);
    QCOMPARE(out.count('\n'), 2);
    QVERIFY(out.contains("\nPARADROID\tPRG\t200\t"));
    std::tie(code, out) = run({"--filter", "Kassetten"});
    QCOMPARE(out.section('\n', 1), QStringLiteral("BOULDER DASH\tPRG\t90\t\tBoulder Dash.tap\t"
                                                  "/c64/tapes/Boulder Dash.tap\n"));
    std::tie(code, out) = run({"--filter", "Nope"});
    QCOMPARE(code, 1);
    std::tie(code, out) = run({"--view", "9"});
    QCOMPARE(code, 2);
}

QTEST_GUILESS_MAIN(TestViewRows)
#include "tst_viewrows.moc"
