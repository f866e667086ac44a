// Paths and C64 names holding shell characters (quotes, $, *, backticks, ;, newlines) reach
// the emulator as the arguments they are: nothing on the way is a shell. The fake emulator
// writes its arguments NUL-separated, so a newline inside one is seen as such.

#include "app/Globals.h"
#include "app/Settings.h"
#include "catalogue/Database.h"
#include "import/clsFileManager.h"
#include "launch/Profiles.h"
#include "launch/ProfilSettings.h"
#include "launch/StartFile.h"
#include "platform/ScriptedDialogService.h"
#include "support/C64ImageWriter.h"
#include "support/CatalogueFixture.h"

#include <QDirIterator>
#include <QFile>
#include <QTest>

using namespace vd;
using namespace vd::launch;

class TestLaunchSafety : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::CatalogueFixture> m_cat;
    platform::ScriptedDialogService m_dialogs;
    import::clsFileManager* m_fm = nullptr;
    QString m_out;
    QString m_marker; // created only if some shell ran one of the names

    QStringList startAndRead(qint32 id, const QString& profil)
    {
        QFile::remove(m_out);
        QString key = profil;
        if (StartFile(*m_fm, m_cat->db(), id, key).isEmpty())
            return {QStringLiteral("<no start>")};
        if (!QTest::qWaitFor([&] { return QFile::exists(m_out); }, 5000))
            return {QStringLiteral("<emulator did not run>")};
        QFile f(m_out);
        if (!f.open(QIODevice::ReadOnly))
            return {};
        QStringList args = QString::fromUtf8(f.readAll()).split(QChar(0));
        args.removeLast(); // behind the last NUL
        return args;
    }

    // Registers a D64 at `path` whose second entry is named `entry` (the first entry starts
    // without a name); returns the file's id. The entry's id is 10 * id + 2.
    int addDisk(int id, const QString& path, const QByteArray& entry)
    {
        test::DiskWriter::d64()
            .entries({test::Slot{0x82, "FIRST", 10, 17, 0}, test::Slot{0x82, entry, 10, 17, 1}})
            .save(path);
        test::appendRow(m_cat->db(), "Category",
                        {{"ID", id},
                         {"iType", 1},
                         {"tCategory", QFileInfo(path).fileName()},
                         {"tFile", QFileInfo(path).fileName()},
                         {"tPath", path},
                         {"iFileType", 1}});
        int index = 0;
        for (const QByteArray& name : {QByteArray("FIRST"), entry}) {
            ++index;
            test::appendRow(m_cat->db(), "C64Files",
                            {{"ID", 10 * id + index},
                             {"tProgram", QString::fromLatin1(name)},
                             {"tRealProgram", QString::fromLatin1(name)},
                             {"lSize", 10},
                             {"lIndex", index},
                             {"Category_File", id}});
        }
        return id;
    }

private slots:
    void init()
    {
        m_cat = std::make_unique<test::CatalogueFixture>(false);
        const QString home = m_cat->folder() + QStringLiteral("/home");
        QDir().mkpath(home + QStringLiteral("/emu"));
        app::setProgramFolder(home);
        QFile::remove(app::gIniFile);
        app::reloadIni();
        QVERIFY(LoadProfils());
        m_dialogs.clear();
        platform::setDialogService(&m_dialogs);
        m_fm = new import::clsFileManager();
        m_out = m_cat->folder() + QStringLiteral("/args.bin");
        m_marker = m_cat->folder() + QStringLiteral("/PWNED");
        const QString emulator = home + QStringLiteral("/emu/fake-emu");
        QFile script(emulator);
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\nprintf '%s\\0' \"$@\" > \"" + m_out.toUtf8() + ".part\"\nmv \"" +
                     m_out.toUtf8() + ".part\" \"" + m_out.toUtf8() + "\"\n");
        script.close();
        script.setPermissions(script.permissions() | QFile::ExeOwner);
        for (const EmulatorPtr& e : gEmulators)
            e->Path = emulator;
    }
    void cleanup()
    {
        platform::setDialogService(nullptr);
        delete m_fm;
        m_fm = nullptr;
        m_cat.reset();
    }

    void hostilePathsArriveWhole_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("dollar and command substitution") << QStringLiteral("a$(touch PWNED)b.d64");
        QTest::newRow("backticks") << QStringLiteral("`touch PWNED`.d64");
        QTest::newRow("semicolon") << QStringLiteral("x; touch PWNED; y.d64");
        QTest::newRow("star") << QStringLiteral("*.d64");
        QTest::newRow("single quote") << QStringLiteral("it's.d64");
        QTest::newRow("double quote") << QStringLiteral("say \"hi\".d64");
        QTest::newRow("newline") << QStringLiteral("two\nlines.d64");
        QTest::newRow("all of them") << QStringLiteral("'\"$HOME`id`;*\n &.d64");
    }
    void hostilePathsArriveWhole()
    {
        QFETCH(QString, name);
        const QString folder = m_cat->folder() + QStringLiteral("/c64 $files 'x'/");
        QVERIFY(QDir().mkpath(folder));
        const int id = addDisk(1, folder + name, "GAME");
        // Set 4 on the whole file: "+confirmexit -autostart <path> -VICIIdsize".
        const QStringList args = startAndRead(-id, QStringLiteral("4"));
        QCOMPARE(args, QStringList({QStringLiteral("+confirmexit"), QStringLiteral("-autostart"),
                                    folder + name, QStringLiteral("-VICIIdsize")}));
        QVERIFY2(!QFile::exists(m_marker), "a shell interpreted a file name");
        QVERIFY2(!QFile::exists(m_cat->folder() + QStringLiteral("/c64 $files 'x'/PWNED")),
                 "a shell interpreted a file name");
    }

    // C64 names go onto the command line as "path:name" (set 3, cut at "_" or "$" with a
    // star); whatever the name holds stays inside that one argument.
    void hostileEntryNamesStayInTheirArgument_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<QString>("shown"); // what follows the colon
        QTest::newRow("command substitution") << QByteArray("$(TOUCH PWNED)") << "*";
        QTest::newRow("backticks") << QByteArray("`TOUCH PWNED`") << "`touch pwned`";
        QTest::newRow("semicolon") << QByteArray("A;TOUCH PWNED") << "a;touch pwned";
        QTest::newRow("double quotes") << QByteArray("SAY \"HI\" X") << "say \"hi\" x";
        QTest::newRow("backslash before a quote") << QByteArray("A\\\"B") << "a\\\"b";
        QTest::newRow("backslash at the end") << QByteArray("AB\\") << "ab\\";
        QTest::newRow("newline") << QByteArray("A\nB") << "a\nb";
    }
    void hostileEntryNamesStayInTheirArgument()
    {
        QFETCH(QByteArray, entry);
        QFETCH(QString, shown);
        const QString folder = m_cat->folder() + QStringLiteral("/disks/");
        QVERIFY(QDir().mkpath(folder));
        const int id = addDisk(1, folder + QStringLiteral("g.d64"), entry);
        // Set 3: "-confirmexit -autostart "<path>:<name>" -VICIIdsize".
        const QStringList args = startAndRead(10 * id + 2, QStringLiteral("3"));
        QCOMPARE(args, QStringList({QStringLiteral("-confirmexit"), QStringLiteral("-autostart"),
                                    folder + QStringLiteral("g.d64:") + shown,
                                    QStringLiteral("-VICIIdsize")}));
        QVERIFY2(!QFile::exists(m_marker), "a shell interpreted a C64 name");
        QVERIFY2(!QFile::exists(QStringLiteral("PWNED")), "a shell interpreted a C64 name");
    }
};

QTEST_GUILESS_MAIN(TestLaunchSafety)
#include "tst_launchsafety.moc"
