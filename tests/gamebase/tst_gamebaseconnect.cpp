// Mode 7 of the batch: ZIP files catalogued without the matching are read again and linked to
// their games; the counts with GB_ID<>NULL, the result lines, the status every 5 files, Cancel.

#include "app/Globals.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseConnect.h"
#include "import/ImportBatch.h"
#include "platform/Progress.h"
#include "support/GameBaseImport.h"

#include <memory>
#include <QFile>
#include <QtTest>

using namespace vd;

namespace {

class RecordingProgress : public platform::Progress
{
public:
    void setStatus(const QString& text) override { statuses << text; }
    void setRange(qint64 maximum) override { range = maximum; }
    void yield() override { ++yields; }
    bool cancelled() const override { return cancelAfterYields > 0 && yields >= cancelAfterYields; }

    QStringList statuses;
    qint64 range = -1;
    int yields = 0;
    int cancelAfterYields = 0;
};

} // namespace

class TestGameBaseConnect : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::GameBaseImport> g;

    // Seven ZIP files in files/games, imported without the matching: Sanxion.zip and BC.ZIP
    // belong to games, Gone.zip is deleted afterwards, the others belong to none.
    void importCollection()
    {
        g->changeGameBase("Update Games Set FileToRun='SANXION.D64' where GA_Id=101");
        g->changeGameBase("Update Games Set FileToRun='ABC.PRG' where GA_Id=105");
        g->zip("games/Sanxion.zip", {{"SANXION.D64", {"SANXION", "HISCORE"}}});
        g->zip("games/BC.ZIP", {{"ABC.PRG", {}}});
        for (const char* name : {"Gone.zip", "One.zip", "Two.zip", "Three.zip", "Four.zip"})
            g->zip(QStringLiteral("games/") + name, {{"X.PRG", {}}});
        g->f.fm.options.ConnectFilesToGB = false;
        import::ImportBatch batch(g->f.fm);
        batch.run(import::kModeAddFolder, g->f.file("games"));
        QVERIFY(QFile::remove(g->f.file("games/Gone.zip")));
        QCOMPARE(g->f.count("C64Files", "not isNull(GB_ID)"), 0);
        g->f.messages.clear();
    }

private slots:
    void init() { g = std::make_unique<test::GameBaseImport>(); }
    void cleanup() { g.reset(); }

    void zipFilesAreLinkedToTheirGames()
    {
        importCollection();
        RecordingProgress progress;
        const gamebase::ConnectResult r = gamebase::ConnectToGameBase(g->f.fm, progress);
        QVERIFY(r.failure.isEmpty());
        QVERIFY(!r.cancelled);
        QCOMPARE(r.filesSeen, 7);
        // The counts compare GB_ID with Null as Jet does: never true, so no growth is seen and
        // the caller is not told to read its views anew.
        QCOMPARE(r.resultLines,
                 QStringList({"Datenbank wurde überprüft:", "Hinzugefügte C64-Files: 0/0"}));
        QVERIFY(!r.changed);
        // A refresh under ArchivOnlyGame keeps only the game's own entry.
        QCOMPARE(g->f.rows("Select tProgram,GB_ID From C64Files where not isNull(GB_ID) "
                           "order by GB_ID"),
                 QStringList({"Sanxion|101", "ABC|105"}));
        QCOMPARE(g->f.count("C64Files", "tProgram='HISCORE'"), 0);
        QStringList lines = g->gameBaseLines();
        lines.sort();
        QCOMPARE(lines, QStringList({"Gamebase: ABC|4", "Gamebase: Sanxion|1"}));
        QVERIFY(!g->f.fm.options.ConnectFilesToGB);
        QCOMPARE(progress.range, 7);
        QCOMPARE(progress.statuses.filter("Dateien: "), QStringList{"Dateien: 5/7"});
    }

    void cancelStopsAtTheNextFile()
    {
        importCollection();
        // The files in the order the batch reads them; the first five come before the stop.
        const QStringList order = g->f.rows("Select Distinct tPath from Category where iType=1 "
                                            "And isNull(GB_ID) And tPath like '*.zip'");
        QCOMPARE(order.size(), 7);
        int present = 0;
        for (const QString& path : order.mid(0, 5))
            present += QFile::exists(path) ? 1 : 0;
        const int unpackedBefore = g->f.fm.unpackCount();
        RecordingProgress progress;
        progress.cancelAfterYields = 1;
        const gamebase::ConnectResult r = gamebase::ConnectToGameBase(g->f.fm, progress);
        QVERIFY(r.cancelled);
        QCOMPARE(g->f.fm.unpackCount() - unpackedBefore, present);
        QCOMPARE(r.resultLines.size(), 2);
        QVERIFY(!g->f.fm.options.ConnectFilesToGB);
    }

    void withoutAGameBaseNothingIsRead()
    {
        importCollection();
        gamebase::CloseGameBase();
        RecordingProgress progress;
        const gamebase::ConnectResult r = gamebase::ConnectToGameBase(g->f.fm, progress);
        QVERIFY(!r.failure.isEmpty());
        QVERIFY(r.resultLines.isEmpty());
        QCOMPARE(progress.range, -1);
    }
};

QTEST_GUILESS_MAIN(TestGameBaseConnect)
#include "tst_gamebaseconnect.moc"
