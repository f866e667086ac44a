// Existence checks and the guarded delete: nothing outside Temp is ever deleted.

#include "app/Globals.h"
#include "platform/DialogService.h"
#include "platform/Files.h"
#include "platform/ScriptedDialogService.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

using namespace vd::platform;

namespace {

void touch(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    file.write("x");
}

bool lexists(const QString& path)
{
    return QFileInfo(path).isSymLink() || QFileInfo::exists(path);
}

} // namespace

class TestFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void existenceChecks();
    void fileExistsMsgWarnsWithPath();

    void deleteRefusesPathsOutsideTemp_data();
    void deleteRefusesPathsOutsideTemp();
    void deleteRefusesWhenTempPathLacksTemp();
    void deleteRemovesLinksNotTargets();
    void deleteEmptiesTempWithWildcard();
    void deleteMatchesNamesByPattern();
    void deleteOfNothingSucceeds();
    void deleteFailureIsReported();

private:
    QString temp(const QString& rel = {}) const
    {
        return rel.isEmpty() ? m_root->filePath(QStringLiteral("app/Temp"))
                             : m_root->filePath(QStringLiteral("app/Temp/") + rel);
    }
    QString root(const QString& rel) const { return m_root->filePath(rel); }
    // Everything of the fixture that lies outside Temp, and what a refused delete must keep.
    QStringList outsideFiles() const
    {
        return {root(QStringLiteral("outside/keep.txt")), root(QStringLiteral("app/TempX/victim")),
                root(QStringLiteral("app/Vellumdock.ini"))};
    }

    std::unique_ptr<QTemporaryDir> m_root;
    ScriptedDialogService m_dialogs;
};

void TestFiles::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(m_root->isValid());
    vd::app::setProgramFolder(root(QStringLiteral("app")));
    QCOMPARE(vd::app::gTempPath, temp());
    touch(temp(QStringLiteral("a.txt")));
    touch(temp(QStringLiteral(".hidden")));
    touch(temp(QStringLiteral("sub/b.d64")));
    for (const QString& path : outsideFiles())
        touch(path);
    // Links inside Temp that point out of it.
    QVERIFY(QFile::link(root(QStringLiteral("outside")), temp(QStringLiteral("dirlink"))));
    QVERIFY(
        QFile::link(root(QStringLiteral("outside/keep.txt")), temp(QStringLiteral("filelink"))));
    QVERIFY(QFile::link(root(QStringLiteral("app/TempX")), temp(QStringLiteral("siblink"))));
    m_dialogs.clear();
    setDialogService(&m_dialogs);
}

void TestFiles::cleanup()
{
    setDialogService(nullptr);
    m_root.reset();
}

void TestFiles::existenceChecks()
{
    QVERIFY(FileExists(temp(QStringLiteral("a.txt"))));
    QVERIFY(!FileExists(temp(QStringLiteral("sub"))));
    QVERIFY(!FileExists(temp(QStringLiteral("missing"))));
    QVERIFY(!FileExists(QString()));
    QVERIFY(FileExists(temp(QStringLiteral("filelink"))));
    QVERIFY(QFile::link(temp(QStringLiteral("gone")), temp(QStringLiteral("dangling"))));
    QVERIFY(!FileExists(temp(QStringLiteral("dangling"))));

    QVERIFY(FolderExists(temp(QStringLiteral("sub"))));
    QVERIFY(FolderExists(temp(QStringLiteral("dirlink"))));
    QVERIFY(!FolderExists(temp(QStringLiteral("a.txt"))));
    QVERIFY(!FolderExists(QString()));
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestFiles::fileExistsMsgWarnsWithPath()
{
    QVERIFY(FileExistsMsg(temp(QStringLiteral("a.txt"))));
    QVERIFY(m_dialogs.calls.isEmpty());

    const QString missing = temp(QStringLiteral("sub/lost.d64"));
    QVERIFY(!FileExistsMsg(missing));
    QVERIFY(!FileExistsMsg(temp(QStringLiteral("sub")))); // a folder is no file
    QCOMPARE(m_dialogs.messages(),
             QStringList({QStringLiteral("Datei nicht gefunden: ") + missing,
                          QStringLiteral("Datei nicht gefunden: ") + temp(QStringLiteral("sub"))}));
    QCOMPARE(m_dialogs.calls[0].style & kIconMask, int(vbExclamation));
    QCOMPARE(m_dialogs.calls[0].style & kButtonMask, int(vbOKOnly));
}

void TestFiles::deleteRefusesPathsOutsideTemp_data()
{
    // Paths relative to the temporary root; "<T>" stands for gTempPath.
    QTest::addColumn<QStringList>("paths");
    QTest::newRow("outside") << QStringList{QStringLiteral("outside/keep.txt")};
    QTest::newRow("dot-dot escape") << QStringList{QStringLiteral("<T>/../../outside/keep.txt")};
    QTest::newRow("dot-dot to the program folder") << QStringList{QStringLiteral("<T>/../*.*")};
    QTest::newRow("sibling sharing the prefix") << QStringList{QStringLiteral("app/TempX/victim")};
    QTest::newRow("Temp itself") << QStringList{QStringLiteral("<T>")};
    QTest::newRow("Temp itself, slash") << QStringList{QStringLiteral("<T>/")};
    QTest::newRow("Temp itself, dot") << QStringList{QStringLiteral("<T>/sub/..")};
    QTest::newRow("through a link") << QStringList{QStringLiteral("<T>/dirlink/keep.txt")};
    QTest::newRow("through a link, wildcard") << QStringList{QStringLiteral("<T>/dirlink/*.*")};
    QTest::newRow("through a link to the sibling")
        << QStringList{QStringLiteral("<T>/siblink/victim")};
    QTest::newRow("relative") << QStringList{QStringLiteral("relative:app/Temp/a.txt")};
    QTest::newRow("root") << QStringList{QStringLiteral("absolute:/")};
    QTest::newRow("one bad path stops all")
        << QStringList{QStringLiteral("<T>/a.txt"), QStringLiteral("outside/keep.txt")};
}

void TestFiles::deleteRefusesPathsOutsideTemp()
{
    QFETCH(QStringList, paths);
    QStringList resolved;
    for (const QString& p : paths) {
        if (p.startsWith(QLatin1String("relative:")))
            resolved << p.mid(9);
        else if (p.startsWith(QLatin1String("absolute:")))
            resolved << p.mid(9);
        else if (p.startsWith(QLatin1String("<T>")))
            resolved << vd::app::gTempPath + p.mid(3);
        else
            resolved << root(p);
    }
    const QString previous = QDir::currentPath();
    QDir::setCurrent(m_root->path());
    const bool deleted = DeleteFiles(resolved);
    QDir::setCurrent(previous);

    QVERIFY(!deleted);
    for (const QString& path : outsideFiles())
        QVERIFY2(QFileInfo::exists(path), qPrintable(path));
    for (const char* rel : {"a.txt", ".hidden", "sub/b.d64", "dirlink", "filelink", "siblink"})
        QVERIFY2(lexists(temp(QLatin1String(rel))), rel);
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestFiles::deleteRefusesWhenTempPathLacksTemp()
{
    const QString scratch = root(QStringLiteral("app/Scratch"));
    touch(scratch + QStringLiteral("/x"));
    vd::app::gTempPath = scratch;
    QVERIFY(!DeleteFiles(scratch + QStringLiteral("/x")));
    QVERIFY(QFileInfo::exists(scratch + QStringLiteral("/x")));
    vd::app::gTempPath.clear();
    QVERIFY(!DeleteFiles(temp(QStringLiteral("a.txt"))));
    QVERIFY(QFileInfo::exists(temp(QStringLiteral("a.txt"))));
}

void TestFiles::deleteRemovesLinksNotTargets()
{
    QVERIFY(DeleteFiles(
        QStringList{temp(QStringLiteral("dirlink")), temp(QStringLiteral("filelink/"))}));
    QVERIFY(!lexists(temp(QStringLiteral("dirlink"))));
    QVERIFY(!lexists(temp(QStringLiteral("filelink"))));
    QVERIFY(QFileInfo::exists(root(QStringLiteral("outside/keep.txt"))));
    QVERIFY(QFileInfo::exists(temp(QStringLiteral("a.txt"))));
}

void TestFiles::deleteEmptiesTempWithWildcard()
{
    QVERIFY(QFile::link(temp(QStringLiteral("gone")), temp(QStringLiteral("dangling"))));
    touch(temp(QStringLiteral("noext")));
    QVERIFY(DeleteFiles(vd::app::gTempPath + QStringLiteral("/*.*")));
    QVERIFY(QFileInfo(temp()).isDir());
    QCOMPARE(QDir(temp()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                    QDir::NoDotAndDotDot),
             QStringList());
    for (const QString& path : outsideFiles())
        QVERIFY2(QFileInfo::exists(path), qPrintable(path));
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestFiles::deleteMatchesNamesByPattern()
{
    // The start copies of entry 12 are "<Temp>/12.*"; other entries' copies stay.
    for (const char* name : {"12.d64", "12.PRG", "120.d64", "13.d64"})
        touch(temp(QLatin1String(name)));
    QVERIFY(DeleteFiles(temp(QStringLiteral("12.*"))));
    QVERIFY(!QFileInfo::exists(temp(QStringLiteral("12.d64"))));
    QVERIFY(!QFileInfo::exists(temp(QStringLiteral("12.PRG"))));
    QVERIFY(QFileInfo::exists(temp(QStringLiteral("120.d64"))));
    QVERIFY(QFileInfo::exists(temp(QStringLiteral("13.d64"))));

    // Case is ignored, and a pattern may reach into a subfolder.
    QVERIFY(DeleteFiles(temp(QStringLiteral("SUB/../sub/*.D64"))));
    QVERIFY(!QFileInfo::exists(temp(QStringLiteral("sub/b.d64"))));
    QVERIFY(QFileInfo(temp(QStringLiteral("sub"))).isDir());
    QVERIFY(QFileInfo::exists(temp(QStringLiteral("13.d64"))));
}

void TestFiles::deleteOfNothingSucceeds()
{
    QVERIFY(DeleteFiles(temp(QStringLiteral("missing"))));
    QVERIFY(DeleteFiles(temp(QStringLiteral("nofolder/*.*"))));
    QVERIFY(DeleteFiles(temp(QStringLiteral("*.xyz"))));
    QVERIFY(DeleteFiles(QStringList{}));
    QVERIFY(m_dialogs.calls.isEmpty());
}

void TestFiles::deleteFailureIsReported()
{
    if (::geteuid() == 0)
        QSKIP("permissions do not hold for root");
    const QString locked = temp(QStringLiteral("locked"));
    touch(locked + QStringLiteral("/inner"));
    QVERIFY(QFile::setPermissions(locked, QFile::ReadOwner | QFile::ExeOwner));
    const bool deleted = DeleteFiles(locked);
    QFile::setPermissions(locked, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QVERIFY(!deleted);
    QCOMPARE(m_dialogs.messages().size(), 1);
    QVERIFY2(m_dialogs.messages()[0].startsWith(QStringLiteral("Delete-Error: ")),
             qPrintable(m_dialogs.messages()[0]));
}

QTEST_GUILESS_MAIN(TestFiles)
#include "tst_files.moc"
