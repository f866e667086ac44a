// Starting games of the GameBase window in a fake emulator, from a games folder of ZIP files:
// a game row starts from its archive even when a catalogued copy exists, and only the
// GameBase's play statistics move.

#include "app/Globals.h"
#include "app/Settings.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameStart.h"
#include "import/clsFileManager.h"
#include "launch/Profiles.h"
#include "launch/ProfilSettings.h"
#include "platform/ScriptedDialogService.h"
#include "support/ArchiveWriter.h"
#include "support/CatalogueFixture.h"
#include "support/GameBaseFixture.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QTest>

using namespace vd;
using gamebase::GameRow;

namespace {

void writeFile(const QString& path, const QByteArray& bytes, bool executable = false)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
    f.close();
    if (executable)
        f.setPermissions(f.permissions() | QFile::ExeOwner);
}

QVariant value(db::Database& db, const QString& sql)
{
    auto rs = db.openRecordset(sql, db::RecordsetType::Snapshot);
    return rs->eof() ? QVariant() : rs->value(0);
}

GameRow gameRow(qint64 gaId)
{
    GameRow row;
    row.selected = true;
    row.gaId = gaId;
    return row;
}

} // namespace

class TestGameStart : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::CatalogueFixture> m_cat;
    std::unique_ptr<test::GameBaseFixture> m_gb;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<import::clsFileManager> m_fm;
    QString m_games;
    QString m_out;

    // Starts and waits for the fake emulator's report; its lines, or empty when none ran.
    QStringList startAndRead(const GameRow& row, gamebase::GameStartResult* result = nullptr)
    {
        QFile::remove(m_out);
        const auto r = gamebase::StartGame(*m_fm, m_cat->db(), m_gb->db(), row, QString(), m_games);
        if (result)
            *result = r;
        if (!r.started)
            return {};
        if (!QTest::qWaitFor([&] { return QFile::exists(m_out); }, 5000))
            return {QStringLiteral("<emulator did not run>")};
        QFile f(m_out);
        if (!f.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    QVariant gbValue(const QString& field, int id)
    {
        return value(m_gb->db(), QStringLiteral("Select ") + field +
                                     QStringLiteral(" From Games where GA_ID=") +
                                     QString::number(id));
    }

private slots:
    void init()
    {
        m_cat = std::make_unique<test::CatalogueFixture>();
        m_gb = std::make_unique<test::GameBaseFixture>();
        const QString home = m_cat->folder() + QStringLiteral("/home");
        QDir().mkpath(home);
        app::setProgramFolder(home);
        QFile::remove(app::gIniFile);
        app::reloadIni();
        QVERIFY(launch::LoadProfils());
        m_dialogs.clear();
        platform::setDialogService(&m_dialogs);
        m_fm = std::make_unique<import::clsFileManager>();

        m_out = m_cat->folder() + QStringLiteral("/args.txt");
        const QString emulator = home + QStringLiteral("/emu/fake-emu");
        writeFile(emulator,
                  "#!/bin/sh\n{ for a in \"$@\"; do echo \"[$a]\"; done; } > \"" + m_out.toUtf8() +
                      ".part\"\nmv \"" + m_out.toUtf8() + ".part\" \"" + m_out.toUtf8() + "\"\n",
                  true);
        for (const launch::EmulatorPtr& e : launch::gEmulators)
            e->Path = emulator;

        // The games folder: each game's archive where its Filename says.
        m_games = m_cat->folder() + QStringLiteral("/games folder");
        const auto zip = [&](const QString& relative, const QByteArray& member) {
            writeFile(m_games + QLatin1Char('/') + relative,
                      test::rawZip({{member, QByteArray(174848, '\0')}}));
        };
        zip(QStringLiteral("S/Sanxion.zip"), "Sanxion.d64");
        zip(QStringLiteral("P/Paradroid.zip"), "PARADROID.D64");
        zip(QStringLiteral("U/Uridium.zip"), "Uridium.d64");
        zip(QStringLiteral("O/O'Neils_Quest.zip"), "O'Neils.d64");
        zip(QStringLiteral("X/ABC.ZIP"), "abc.d64");
        db::Database& gb = m_gb->db();
        gb.execute(QStringLiteral("Update Games Set FileToRun='Sanxion.d64' where GA_ID=101"));
        gb.execute(
            QStringLiteral("Update Games Set FileToRun='sub\\PARADROID.D64' where GA_ID=102"));
        gb.execute(QStringLiteral("Update Games Set FileToRun='' where GA_ID=104"));
        gb.execute(QStringLiteral(
            "Update Games Set TimesPlayed=Null, FileToRun='ABC.D64' where GA_ID=105"));
    }
    void cleanup()
    {
        platform::setDialogService(nullptr);
        m_fm.reset();
        m_gb.reset();
        m_cat.reset();
    }

    void gameRowStartsFromTheArchiveAndCountsInTheGameBase()
    {
        // Sanxion has a catalogued copy (file 1, entry 1): still the archive is started.
        QCOMPARE(gamebase::StartIdFor(m_cat->db(), gameRow(101)), 1);
        gamebase::GameStartResult result;
        const QStringList args = startAndRead(gameRow(101), &result);
        QVERIFY2(!args.isEmpty(), qPrintable(m_dialogs.messages().join('\n')));
        QVERIFY(result.fromArchive);
        QVERIFY(result.status.startsWith(QStringLiteral("Profil: ")));
        const QStringList paths = args.filter(QStringLiteral("/Sanxion.d64]"));
        QCOMPARE(paths.size(), 1);
        const QString started = paths.first().mid(1).chopped(1);
        QVERIFY2(started.startsWith(app::gTempPath), qPrintable(started));
        QVERIFY(started.endsWith(QStringLiteral("/Sanxion.d64")));
        QVERIFY(QFileInfo(started).isFile());

        QCOMPARE(gbValue(QStringLiteral("TimesPlayed"), 101).toInt(), 5);
        QCOMPARE(gbValue(QStringLiteral("DateLastPlayed"), 101).toString(),
                 QDate::currentDate().toString(QStringLiteral("dd-MM-yyyy")));
        // The catalogue's counts stay.
        db::Database& cat = m_cat->db();
        QCOMPARE(value(cat, QStringLiteral("Select lStartCount From C64Files where ID=1")).toInt(),
                 2);
        QCOMPARE(value(cat, QStringLiteral("Select lStartCount From Category where ID=1")).toInt(),
                 3);
        QVERIFY(m_dialogs.calls.isEmpty());
    }

    void nullTimesPlayedBecomesOne()
    {
        QVERIFY2(!startAndRead(gameRow(105)).isEmpty(),
                 qPrintable(m_dialogs.messages().join('\n')));
        QCOMPARE(gbValue(QStringLiteral("TimesPlayed"), 105).toInt(), 1);
    }

    void usageViewRowOfTheGameBaseSideStartsFromTheArchive()
    {
        GameRow row;
        row.selected = true;
        row.inMyFiles = true;
        row.view = 3;
        row.id = 0;
        row.gbId = 104;
        QCOMPARE(gamebase::StartIdFor(m_cat->db(), row), 0);
        const QStringList args = startAndRead(row);
        QVERIFY2(!args.isEmpty(), qPrintable(m_dialogs.messages().join('\n')));
        // An empty FileToRun: the archive's name up to its first "_", then ".*".
        QCOMPARE(args.filter(QStringLiteral("/O'Neils.d64]")).size(), 1);
        QCOMPARE(gbValue(QStringLiteral("TimesPlayed"), 104).toInt(), 2);
    }

    void failuresStartNothingAndCountNothing_data()
    {
        QTest::addColumn<int>("game");
        QTest::addColumn<QString>("message");
        QTest::addRow("FileToRun with a folder part") << 102 << "";
        QTest::addRow("no FileToRun, no \"_\": \".*\" finds nothing") << 103 << "";
        QTest::addRow("no Filename") << 106 << "Keine Download-Datei vorhanden!";
        QTest::addRow("archive missing") << 107 << "Datei nicht gefunden: %G/Z/Gone.zip";
    }
    void failuresStartNothingAndCountNothing()
    {
        QFETCH(int, game);
        QFETCH(QString, message);
        if (game == 107)
            test::appendRow(m_gb->db(), QStringLiteral("Games"),
                            {{"GA_Id", 107},
                             {"Name", "Gone"},
                             {"Filename", "Z\\Gone.zip"},
                             {"FileToRun", "GONE.D64"},
                             {"TimesPlayed", 3}});
        const QVariant before = gbValue(QStringLiteral("TimesPlayed"), game);
        gamebase::GameStartResult result;
        QVERIFY(startAndRead(gameRow(game), &result).isEmpty());
        QVERIFY(!result.started);
        QCOMPARE(gbValue(QStringLiteral("TimesPlayed"), game), before);
        QCOMPARE(m_dialogs.messages().join('\n'), message.replace("%G", m_games));
    }

    void indexIsZeroWhateverFileNameIndexSays()
    {
        m_gb->db().execute(QStringLiteral("Update Games Set FileNameIndex=3 where GA_ID=101"));
        const launch::ProfilPtr profil = launch::gProfils.find(launch::gDefaultProfil);
        QVERIFY(profil);
        profil->Options = QStringLiteral("-i <$c64fileindex$>=@=1@@@-n<$c64filename$>=@=1@@@"
                                         "USETEMPFILE=@=1@@@<$filepath$>=@=1");
        for (QString& key : launch::gStartProfils)
            key.clear();
        launch::LaunchPlan plan;
        launch::StartOptions options;
        options.dryRun = true;
        options.plan = &plan;
        const auto result = gamebase::StartGame(*m_fm, m_cat->db(), m_gb->db(), gameRow(101),
                                                QString(), m_games, options);
        QVERIFY(!result.status.isEmpty());
        QCOMPARE(plan.arguments.mid(0, 3), (QStringList{"-i", "0", "-n"}));
        QVERIFY(plan.arguments.last().endsWith(QStringLiteral("/Sanxion.d64")));
        QVERIFY(plan.arguments.last().startsWith(app::gTempPath)); // no temporary disk copy
        QCOMPARE(gbValue(QStringLiteral("TimesPlayed"), 101).toInt(),
                 4); // a dry run counts nothing
    }

    void fileToRunLookup()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(QStringLiteral("GAME.D64")), "x");
        writeFile(dir.filePath(QStringLiteral("Game_2.d64")), "x");
        writeFile(dir.filePath(QStringLiteral("Other.prg")), "x");
        QCOMPARE(gamebase::FileToRunIn(dir.path(), "Game_Disk.zip", "game.d64"), "GAME.D64");
        QCOMPARE(gamebase::FileToRunIn(dir.path(), "Game_Disk.zip", "x\\GAME.D64"), QString());
        QCOMPARE(gamebase::FileToRunIn(dir.path(), "Game_Disk.zip", ""), "GAME.D64");
        QCOMPARE(gamebase::FileToRunIn(dir.path(), "Other_1.zip", ""), "Other.prg");
        QCOMPARE(gamebase::FileToRunIn(dir.path(), "Other.zip", ""), QString());
    }
};

QTEST_GUILESS_MAIN(TestGameStart)
#include "tst_gamestart.moc"
