// Checking and opening a GameBase, its picture folder, and statements on the catalogue that
// reach the GameBase's tables.

#include "app/Globals.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "gamebase/GameBase.h"
#include "platform/DialogService.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"
#include "support/GameBaseFixture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <sqlite3.h>

using namespace vd;
using gamebase::gGB;

namespace {

QVariant scalar(db::Database& db, const QString& sql)
{
    auto rs = db.openRecordset(sql, db::RecordsetType::Snapshot);
    return rs->eof() ? QVariant() : rs->value(0);
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

} // namespace

class TestGameBase : public QObject
{
    Q_OBJECT

    QTemporaryDir m_home;
    platform::ScriptedDialogService m_dialogs;

private slots:
    void initTestCase()
    {
        app::setProgramFolder(m_home.path());
        platform::setDialogService(&m_dialogs);
    }
    void cleanupTestCase() { platform::setDialogService(nullptr); }
    void init()
    {
        m_dialogs.clear();
        gamebase::CloseGameBase();
        gamebase::gGameBaseDB = gamebase::kGameBaseHint;
        gamebase::gScreenshots.clear();
    }

    void versionCheck_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<bool>("accepted");
        QTest::addRow("2.4 refused") << "Update Config Set MinorVersion=4" << false;
        QTest::addRow("2.5 passes") << "" << true;
        QTest::addRow("3.5 passes") << "Update Config Set MajorVersion=3" << true;
        QTest::addRow("3.0 refused") << "Update Config Set MajorVersion=3, MinorVersion=0" << false;
        QTest::addRow("1.9 refused") << "Update Config Set MajorVersion=1, MinorVersion=9" << false;
        QTest::addRow("highest row counts")
            << "Insert Into Config (MajorVersion,MinorVersion) Values (3,1)" << true;
        QTest::addRow("empty Config refused") << "Delete * From Config" << false;
        QTest::addRow("no Config table") << "Drop Table Config" << false;
    }
    void versionCheck()
    {
        QFETCH(QString, change);
        QFETCH(bool, accepted);
        test::GameBaseFixture gb;
        if (change.startsWith(QLatin1String("Drop"))) // the data layer has no Drop Table
            QCOMPARE(sqlite3_exec(gb.db().handle(), change.toUtf8().constData(), nullptr, nullptr,
                                  nullptr),
                     SQLITE_OK);
        else if (!change.isEmpty())
            gb.db().execute(change);
        gb.close();
        QCOMPARE(gamebase::CheckGameBaseFile(gb.path()), accepted);
        const QStringList expected =
            accepted ? QStringList() : QStringList{"Wrong GameBase64-Database: " + gb.path()};
        QCOMPARE(m_dialogs.messages(), expected);
    }

    void missingOrBrokenFiles()
    {
        QTemporaryDir dir;
        const QString missing = dir.filePath(QStringLiteral("none.mdb"));
        QVERIFY(!gamebase::CheckGameBaseFile(missing));
        const QString broken = dir.filePath(QStringLiteral("broken.mdb"));
        writeFile(broken, "not an Access file");
        QVERIFY(!gamebase::CheckGameBaseFile(broken));
        QCOMPARE(m_dialogs.messages(), QStringList({"Datei nicht gefunden: " + missing,
                                                    "Wrong GameBase64-Database: " + broken}));
    }

    void picturesFolder_data()
    {
        QTest::addColumn<QString>("ini"); // "" for no Paths.ini; %1 is an existing folder
        QTest::addColumn<bool>("found");
        QTest::addRow("no Paths.ini") << "" << false;
        QTest::addRow("existing folder") << "[Pictures]\r\n1=%1\r\n" << true;
        QTest::addRow("missing folder") << "[Pictures]\r\n1=%1/gone\r\n" << false;
        QTest::addRow("empty value") << "[Pictures]\r\n1=\r\n" << false;
        QTest::addRow("other section") << "[Music]\r\n1=%1\r\n" << false;
    }
    void picturesFolder()
    {
        QFETCH(QString, ini);
        QFETCH(bool, found);
        QTemporaryDir dir;
        const QString shots = dir.filePath(QStringLiteral("Screen shots"));
        QVERIFY(QDir().mkpath(shots));
        if (!ini.isEmpty())
            writeFile(dir.filePath(QStringLiteral("Paths.ini")), ini.arg(shots).toUtf8());
        const QString mdb = dir.filePath(QStringLiteral("GBC_v18.mdb"));
        QCOMPARE(gamebase::GetGameBasePictures(mdb), found ? shots : QString());
        QVERIFY(m_dialogs.messages().isEmpty());
    }

    void openingWithoutAFileIsSilent()
    {
        QVERIFY(!gamebase::OpenGameBase(false));
        gamebase::gGameBaseDB.clear();
        QVERIFY(!gamebase::OpenGameBase(false));
        QVERIFY(m_dialogs.calls.isEmpty());
        QVERIFY(!gGB);
    }

    void openingTheConfiguredFile()
    {
        test::GameBaseFixture gb;
        gb.close();
        gamebase::gGameBaseDB = gb.path();
        QVERIFY(gamebase::OpenGameBase(false));
        QVERIFY(gGB);
        QCOMPARE(scalar(*gGB, QStringLiteral("Select Count(*) From Games")).toInt(),
                 test::GameBaseFixture::kGameCount);
        QVERIFY(gamebase::OpenGameBase(true)); // already open: nothing asked
        QVERIFY(m_dialogs.calls.isEmpty());
    }

    void aWrongFileAsksForAnother_data()
    {
        QTest::addColumn<bool>("choose");
        QTest::addRow("a GameBase chosen") << true;
        QTest::addRow("dialog cancelled") << false;
    }
    void aWrongFileAsksForAnother()
    {
        QFETCH(bool, choose);
        test::GameBaseFixture gb;
        gb.close();
        const QString shots = QFileInfo(gb.path()).absolutePath() + QStringLiteral("/Shots");
        QVERIFY(QDir().mkpath(shots));
        writeFile(QFileInfo(gb.path()).absolutePath() + QStringLiteral("/Paths.ini"),
                  "[Pictures]\r\n1=" + shots.toUtf8() + "\r\n");
        m_dialogs.answer(platform::vbOK); // "Datei nicht gefunden"
        if (choose)
            m_dialogs.answerText(gb.path());
        else
            m_dialogs.answerCancel();
        QCOMPARE(gamebase::OpenGameBase(true), choose);
        QCOMPARE(m_dialogs.messages(),
                 QStringList({"Datei nicht gefunden: " + gamebase::kGameBaseHint}));
        QCOMPARE(m_dialogs.calls.size(), 2);
        QCOMPARE(m_dialogs.calls[1].title, QStringLiteral("GameBase-Datenbank auswählen"));
        QCOMPARE(gamebase::gGameBaseDB, choose ? gb.path() : gamebase::kGameBaseHint);
        QCOMPARE(gamebase::gScreenshots, choose ? shots : QString());
        QCOMPARE(bool(gGB), choose);
        QVERIFY(m_dialogs.scriptErrors.isEmpty());
    }

    void catalogueStatementsReachTheGameBase()
    {
        // The way the window and the command line go: every catalogue opened learns the form.
        test::GameBaseFixture gb;
        gb.close();
        test::CatalogueFixture fixture(false);
        fixture.close();
        gamebase::connectCatalogues();
        QString path = fixture.path();
        QVERIFY(catalogue::OpenCatalogueFile(path));
        const QString sql =
            QStringLiteral("Select Count(*) From [;database=%1].Games where Adult=0");
        QCOMPARE(scalar(*app::gDB, sql.arg(gb.path())).toInt(),
                 test::GameBaseFixture::kGameCount - test::GameBaseFixture::kAdultGameCount);
        catalogue::CloseCatalogue();
        catalogue::setCatalogueOpenedHook({});
    }

    void anMdbIsReachedThroughItsCache()
    {
        QString root = qEnvironmentVariable("VD_TESTDATA");
        if (root.isEmpty())
            root = QStringLiteral(VD_TESTDATA_DIR);
        const QString mdb = QDir(root).filePath(QStringLiteral("mdb/nwind.mdb"));
        if (!QFileInfo(mdb).isFile())
            QSKIP("The folder of real Access files (testdata/mdb) is absent.");
        // An .mdb cannot be attached as it is: only its cache answers.
        test::CatalogueFixture fixture(false);
        fixture.close();
        gamebase::connectCatalogues();
        QString path = fixture.path();
        QVERIFY(catalogue::OpenCatalogueFile(path));
        QCOMPARE(scalar(*app::gDB,
                        QStringLiteral("Select Count(*) From [;database=%1].Products").arg(mdb))
                     .toInt(),
                 77);
        catalogue::CloseCatalogue();
        catalogue::setCatalogueOpenedHook({});
        QCOMPARE(
            QDir(app::gCachePath).entryList({QStringLiteral("GB-*.sqlite")}, QDir::Files).size(),
            1);
    }

    // The cache is ours to rebuild: deleting it under an open connection costs nothing, the
    // open one keeps answering and the next opening builds it again.
    void aCacheDeletedWhileOpen()
    {
        QString root = qEnvironmentVariable("VD_TESTDATA");
        if (root.isEmpty())
            root = QStringLiteral(VD_TESTDATA_DIR);
        const QString mdb = QDir(root).filePath(QStringLiteral("mdb/nwind.mdb"));
        if (!QFileInfo(mdb).isFile())
            QSKIP("The folder of real Access files (testdata/mdb) is absent.");
        test::CatalogueFixture fixture(false);
        fixture.close();
        gamebase::connectCatalogues();
        QString path = fixture.path();
        const QString count =
            QStringLiteral("Select Count(*) From [;database=%1].Products").arg(mdb);
        QVERIFY(catalogue::OpenCatalogueFile(path));
        QCOMPARE(scalar(*app::gDB, count).toInt(), 77);
        const QDir cache(app::gCachePath);
        const QStringList files = cache.entryList({QStringLiteral("GB-*")}, QDir::Files);
        QVERIFY(!files.isEmpty());
        for (const QString& f : files)
            QVERIFY(QFile::remove(cache.filePath(f)));
        QCOMPARE(scalar(*app::gDB, count).toInt(), 77);
        catalogue::CloseCatalogue();
        QVERIFY(catalogue::OpenCatalogueFile(path));
        QCOMPARE(scalar(*app::gDB, count).toInt(), 77);
        QCOMPARE(cache.entryList({QStringLiteral("GB-*.sqlite")}, QDir::Files).size(), 1);
        catalogue::CloseCatalogue();
        catalogue::setCatalogueOpenedHook({});
    }
};

QTEST_GUILESS_MAIN(TestGameBase)
#include "tst_gamebase.moc"
