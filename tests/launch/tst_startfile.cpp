// Starting catalogued items in a fake emulator: a script that writes its working folder and
// its arguments to a file. Counts on both rows, and no count after any failure.

#include "app/Globals.h"
#include "app/Settings.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "import/clsFileManager.h"
#include "launch/Profiles.h"
#include "launch/ProfilSettings.h"
#include "launch/StartFile.h"
#include "platform/ScriptedDialogService.h"
#include "support/C64ImageWriter.h"
#include "support/CatalogueFixture.h"

#include <QFile>
#include <QTest>

using namespace vd;
using namespace vd::launch;

namespace {

constexpr int kDisk = 1, kTape = 2, kCart = 3, kText = 4, kPicture = 5, kMissing = 6, kFlip = 7;

void writeText(const QString& path, const QByteArray& text, bool executable = false)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(text);
    f.close();
    if (executable)
        f.setPermissions(f.permissions() | QFile::ExeOwner);
}

QString readText(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

QVariant valueOf(db::Database& db, const QString& field, const QString& table, int id)
{
    auto rs =
        db.openRecordset("Select " + field + " From " + table + " where ID=" + QString::number(id));
    return rs->value(0);
}

int countOf(db::Database& db, const QString& table, int id)
{
    return valueOf(db, "lStartCount", table, id).toInt();
}

} // namespace

class TestStartFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void defaultProfilesInTheFakeEmulator_data();
    void defaultProfilesInTheFakeEmulator();
    void countsOnBothRows();
    void failuresStartAndCountNothing_data();
    void failuresStartAndCountNothing();
    void statusText();

private:
    QStringList startAndRead(qint32 id, QString profilKey, QString* status = nullptr);
    std::unique_ptr<test::CatalogueFixture> m_cat;
    platform::ScriptedDialogService m_dialogs;
    import::clsFileManager* m_fm = nullptr;
    QString m_out;
    QString m_emulator;
};

void TestStartFile::init()
{
    m_cat = std::make_unique<test::CatalogueFixture>(false);
    const QString home = m_cat->folder() + "/home";
    QDir().mkpath(home + "/emu");
    app::setProgramFolder(home);
    QFile::remove(app::gIniFile);
    app::reloadIni();
    QVERIFY(LoadProfils());
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
    m_fm = new import::clsFileManager();

    m_out = m_cat->folder() + "/args.txt";
    m_emulator = home + "/emu/fake-emu";
    writeText(m_emulator,
              "#!/bin/sh\n{ pwd; for a in \"$@\"; do echo \"[$a]\"; done; } > \"" + m_out.toUtf8() +
                  ".part\"\nmv \"" + m_out.toUtf8() + ".part\" \"" + m_out.toUtf8() + "\"\n",
              true);
    for (const EmulatorPtr& e : gEmulators)
        e->Path = m_emulator;

    const QString disks = m_cat->folder() + "/c64 files/";
    QDir().mkpath(disks);
    QVector<test::Slot> entries;
    for (const char* name : {"INTRO", "LIST$", "A$B_C", "\x01", "MY_GAME"})
        entries.append(test::Slot{0x82, name, 10, 17, 0});
    test::DiskWriter::d64().entries(entries).save(disks + "Games.d64");
    writeText(disks + "Tape.tap", "C64-TAPE-RAW");
    writeText(disks + "Cart.crt", "C64 CARTRIDGE");
    writeText(disks + "readme.txt", "hello");
    writeText(disks + "cover.png", "png");
    writeText(disks + "List.vfl", "# Vice fliplist file\n\nUNIT 8\n/a.d64");

    db::Database& db = m_cat->db();
    const struct
    {
        int id;
        const char* file;
        int type;
    } files[] = {{kDisk, "Games.d64", 1},   {kTape, "Tape.tap", 6},      {kCart, "Cart.crt", 9},
                 {kText, "readme.txt", 10}, {kPicture, "cover.png", 14}, {kMissing, "Gone.d64", 1},
                 {kFlip, "List.vfl", 15}};
    for (const auto& f : files)
        test::appendRow(db, "Category",
                        {{"ID", f.id},
                         {"iType", 1},
                         {"tCategory", f.file},
                         {"tFile", f.file},
                         {"tPath", disks + f.file},
                         {"iFileType", f.type}});
    const char* names[] = {"INTRO", "LIST$", "A$B_C", "", "MY_GAME"};
    for (int i = 1; i <= 5; ++i)
        test::appendRow(db, "C64Files",
                        {{"ID", i},
                         {"tProgram", names[i - 1]},
                         {"tRealProgram", *names[i - 1] ? QVariant(names[i - 1]) : QVariant()},
                         {"lSize", 10},
                         {"lIndex", i},
                         {"Category_File", kDisk}});
    test::appendRow(db, "C64Files",
                    {{"ID", 6},
                     {"tRealProgram", "TAPE"},
                     {"lSize", 5},
                     {"lIndex", 2},
                     {"Category_File", kTape}});
    test::appendRow(db, "C64Files",
                    {{"ID", 7},
                     {"tRealProgram", "X"},
                     {"lSize", 5},
                     {"lIndex", 2},
                     {"Category_File", kMissing}});
}

void TestStartFile::cleanup()
{
    platform::setDialogService(nullptr);
    delete m_fm;
    m_cat.reset();
    gEditEmulatorHook = nullptr;
}

QStringList TestStartFile::startAndRead(qint32 id, QString profilKey, QString* status)
{
    QFile::remove(m_out);
    const QString result = StartFile(*m_fm, m_cat->db(), id, profilKey);
    if (status)
        *status = result;
    if (result.isEmpty())
        return {};
    if (!QTest::qWaitFor([&] { return QFile::exists(m_out); }, 5000))
        return {"<emulator did not run>"};
    return readText(m_out).split('\n', Qt::SkipEmptyParts);
}

void TestStartFile::defaultProfilesInTheFakeEmulator_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("profil");
    QTest::addColumn<QString>("args"); // "|" between arguments, %D the disk folder, %T Temp
    QTest::addColumn<QString>("status");

    const QString vice = "Profil: VICE - ";
    QTest::newRow("set 3, index 1: name empty, colon kept")
        << 1 << "3"
        << "[-confirmexit]|[-autostart]|[%DGames.d64:]|[-VICIIdsize]"
        << vice + "Autostart (Original File)";
    QTest::newRow("set 3, MY_GAME") << 5 << "3"
                                    << "[-confirmexit]|[-autostart]|[%DGames.d64:my*]|[-VICIIdsize]"
                                    << vice + "Autostart (Original File)";
    QTest::newRow("set 3, LIST$") << 2 << "3"
                                  << "[-confirmexit]|[-autostart]|[%DGames.d64:list*]|[-VICIIdsize]"
                                  << vice + "Autostart (Original File)";
    QTest::newRow("set 3, A$B_C") << 3 << "3"
                                  << "[-confirmexit]|[-autostart]|[%DGames.d64:a$b*]|[-VICIIdsize]"
                                  << vice + "Autostart (Original File)";
    QTest::newRow("set 3, empty name") << 4 << "3"
                                       << "[-confirmexit]|[-autostart]|[%DGames.d64:]|[-VICIIdsize]"
                                       << vice + "Autostart (Original File)";
    QTest::newRow("set 4, index 1: no copy")
        << 1 << "4"
        << "[+confirmexit]|[-autostart]|[%DGames.d64]|[-VICIIdsize]"
        << vice + "Autostart Disc (Temporary File)";
    QTest::newRow("set 4, index 5: the copy")
        << 5 << "4"
        << "[+confirmexit]|[-autostart]|[%T/1.d64]|[-VICIIdsize]"
        << " " + vice + "Autostart Disc (Temporary File)";
    QTest::newRow("set 4, whole file") << -kDisk << "4"
                                       << "[+confirmexit]|[-autostart]|[%DGames.d64]|[-VICIIdsize]"
                                       << vice + "Autostart Disc (Temporary File)";
    QTest::newRow("set 1, index 5") << 5 << "1"
                                    << "[%DGames.d64,4]|[-autorun]|[-fastload]|[-window]"
                                    << "Profil: CCS64 - Autorun";
    QTest::newRow("set 7, index 5: copy") << 5 << "7"
                                          << "[-autoload]|[%T/1.d64]|[0]"
                                          << " Profil: HOXS64 - Autoload (Temporary File)";
    QTest::newRow("set 10, index 5") << 5 << "10"
                                     << "[%DGames.d64]|[4]|[-nokernal]"
                                     << "Profil: EMU64 - Autoload";
    QTest::newRow("automatic: .D64 takes set 4")
        << 5 << ""
        << "[+confirmexit]|[-autostart]|[%T/1.d64]|[-VICIIdsize]"
        << " " + vice + "Autostart Disc (Temporary File)";
    QTest::newRow("automatic: tape takes set 3")
        << 6 << ""
        << "[-confirmexit]|[-autostart]|[%DTape.tap:tape]|[-VICIIdsize]"
        << vice + "Autostart (Original File)";
    QTest::newRow("automatic: cartridge takes set 9")
        << -kCart << ""
        << "[-cartcrt]|[%DCart.crt]|[-VICIIdsize]" << vice + "Cartridge";
    QTest::newRow("automatic: flip list takes set 14")
        << -kFlip << ""
        << "[-flipname]|[%DList.vfl]|[-VICIIdsize]" << vice + "Attach Flip list";
    QTest::newRow("set 11 on a whole tape") << -kTape << "11"
                                            << "[%DTape.tap]|[-diskmount]|[-hreset]"
                                            << "Profil: EMU64 - Mount Disc";
}

void TestStartFile::defaultProfilesInTheFakeEmulator()
{
    QFETCH(int, id);
    QFETCH(QString, profil);
    QFETCH(QString, args);
    QFETCH(QString, status);

    QString result;
    const QStringList lines = startAndRead(id, profil, &result);
    QCOMPARE(result, status);
    QVERIFY(!lines.isEmpty());
    QCOMPARE(lines.first(), QFileInfo(m_emulator).absolutePath());
    const QString expected =
        QString(args).replace("%D", m_cat->folder() + "/c64 files/").replace("%T", app::gTempPath);
    QCOMPARE(lines.mid(1).join('|'), expected);
    QVERIFY2(m_dialogs.calls.isEmpty(), qPrintable(m_dialogs.messages().join('\n')));
}

void TestStartFile::countsOnBothRows()
{
    db::Database& db = m_cat->db();
    QString key = "5";
    QVERIFY(!StartFile(*m_fm, db, 5, key).isEmpty());
    key = "5";
    QVERIFY(!StartFile(*m_fm, db, 5, key).isEmpty());
    QCOMPARE(countOf(db, "C64Files", 5), 2);
    QCOMPARE(countOf(db, "Category", kDisk), 2);
    QVERIFY(!valueOf(db, "tsLastStarted", "C64Files", 5).isNull());
    QCOMPARE(countOf(db, "C64Files", 1), 0);

    key.clear();
    QVERIFY(!StartFile(*m_fm, db, -kCart, key).isEmpty());
    QCOMPARE(key, QString("9")); // the profile used comes back
    QCOMPARE(countOf(db, "Category", kCart), 1);
}

void TestStartFile::failuresStartAndCountNothing_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("profil");
    QTest::addColumn<QString>("mangle"); // what is broken before the start
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("title");

    QTest::newRow("file missing") << 7 << "4"
                                  << ""
                                  << "Datei nicht gefunden: %DGone.d64"
                                  << "";
    QTest::newRow("emulator missing") << 5 << "4"
                                      << "emulator gone"
                                      << "Datei nicht gefunden: /nowhere/x64sc"
                                      << "Profil: Autostart Disc (Temporary File)";
    QTest::newRow("emulator path is a folder") << 5 << "4"
                                               << "emulator folder"
                                               << "Datei nicht gefunden: %E"
                                               << "Profil: Autostart Disc (Temporary File)";
    QTest::newRow("incomplete placeholder") << 5 << "4"
                                            << "options:-x <$filepath=@=1"
                                            << "Unvollständiger Parameter: <$filepath"
                                            << "";
    QTest::newRow("unknown placeholder") << 5 << "4"
                                         << "options:<$disk$>=@=1"
                                         << "Unbekannter Parameter: <$disk$>"
                                         << "";
    QTest::newRow("100 KB option string") << 5 << "4"
                                          << "options:" + QString(100 * 1024, 'x') + "<$=@=1"
                                          << "Unvollständiger Parameter: <$"
                                          << "";
    QTest::newRow("unknown profile") << 5 << "99"
                                     << ""
                                     << "Start-Error: Unbekanntes Profil: 99"
                                     << "";
}

void TestStartFile::failuresStartAndCountNothing()
{
    QFETCH(int, id);
    QFETCH(QString, profil);
    QFETCH(QString, mangle);
    QFETCH(QString, message);
    QFETCH(QString, title);

    QString editedEmulator;
    gEditEmulatorHook = [&](const QString& key) { editedEmulator = key; };
    const EmulatorPtr vice = gEmulators.find("1");
    if (mangle == "emulator gone")
        vice->Path = "/nowhere/x64sc";
    else if (mangle == "emulator folder")
        vice->Path = app::gTempPath;
    else if (mangle.startsWith("options:"))
        gProfils.find(profil)->Options = mangle.mid(8);
    QDir().mkpath(app::gTempPath);

    QString status;
    const QStringList lines = startAndRead(id, profil, &status);
    QCOMPARE(status, QString());
    QVERIFY(lines.isEmpty());
    QTest::qWait(50);
    QVERIFY(!QFile::exists(m_out));
    QCOMPARE(m_dialogs.calls.size(), 1);
    QCOMPARE(m_dialogs.calls.first().text, QString(message)
                                               .replace("%D", m_cat->folder() + "/c64 files/")
                                               .replace("%E", app::gTempPath));
    QCOMPARE(m_dialogs.calls.first().title, title);
    QCOMPARE(editedEmulator, QString(mangle.startsWith("emulator") ? "1" : ""));
    for (int i = 1; i <= 7; ++i)
        QCOMPARE(countOf(m_cat->db(), "C64Files", i), 0);
    for (int i = 1; i <= 7; ++i)
        QCOMPARE(countOf(m_cat->db(), "Category", i), 0);
}

void TestStartFile::statusText()
{
    QCOMPARE(StartStatusText(" Profil: VICE - A"), QString("Temporäre Datei! Profil: VICE - A"));
    QCOMPARE(StartStatusText("Profil: VICE - A"), QString("Profil: VICE - A"));
}

QTEST_GUILESS_MAIN(TestStartFile)
#include "tst_startfile.moc"
