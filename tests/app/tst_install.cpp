// The installed program: `cmake --install` of this build tree into a temporary prefix, the
// files a desktop expects under it, and the installed command line working in the user's
// folder ~/.local/share/vellumdock/ with the installed language files, even though its bin/
// folder is writable.

#include "platform/ProgramFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtEndian>
#include <QTest>

using namespace vd::platform;

namespace {

constexpr int kTimeoutMs = 120000;

struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};

Run run(const QString& program, const QStringList& arguments, const QProcessEnvironment& env)
{
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(program, arguments);
    Run result;
    if (!process.waitForFinished(kTimeoutMs)) {
        process.kill();
        process.waitForFinished();
        result.err = QStringLiteral("timed out: ") + program;
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    file.write(bytes);
}

void setTime(const QString& path, const QDateTime& time)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
}

// Width and height from a PNG's IHDR chunk, which always comes first.
QSize pngSize(const QString& path)
{
    const QByteArray bytes = readAll(path);
    if (bytes.size() < 24 || !bytes.startsWith("\x89PNG\r\n\x1a\n") || bytes.mid(12, 4) != "IHDR")
        return {};
    return {int(qFromBigEndian<quint32>(bytes.constData() + 16)),
            int(qFromBigEndian<quint32>(bytes.constData() + 20))};
}

QStringList languageFiles(const QString& folder)
{
    return QDir(folder).entryList({QStringLiteral("*.lng")}, QDir::Files, QDir::Name);
}

} // namespace

class TestInstall : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void filesLieWhereDesktopsLookForThem();
    void desktopEntryIsValid();
    void destdirStagesTheInstallation();
    void installedCommandLineWorksInTheUserFolder();
    void homeOptionStillChoosesTheFolder();
    void installedCopyIsToldFromAPortableOne();
    void languageFilesAreBroughtUpToDate();

private:
    Run cli(const QStringList& arguments, const QString& home);

    QTemporaryDir m_tmp;
    QString m_prefix;
    Run m_install;
    QByteArray m_manifest; // the build tree's install_manifest.txt of the user's own install
    bool m_hadManifest = false;
};

void TestInstall::initTestCase()
{
    QVERIFY(m_tmp.isValid());
    // Each install rewrites the manifest, which a user's uninstall reads: it is put back.
    m_hadManifest = QFileInfo::exists(QStringLiteral(VD_BUILD_DIR "/install_manifest.txt"));
    m_manifest = readAll(QStringLiteral(VD_BUILD_DIR "/install_manifest.txt"));
    m_prefix = m_tmp.filePath(QStringLiteral("prefix"));
    m_install = run(QStringLiteral(VD_CMAKE_COMMAND),
                    {QStringLiteral("--install"), QStringLiteral(VD_BUILD_DIR),
                     QStringLiteral("--prefix"), m_prefix},
                    QProcessEnvironment::systemEnvironment());
    QVERIFY2(m_install.exitCode == 0, qPrintable(m_install.out + m_install.err));
    // A language file of the installation, whether or not the sources hold one yet.
    writeFile(m_prefix + QStringLiteral("/share/vellumdock/Lang/Testsprache.lng"),
              "[frmMain]\nDatei=File\n");
}

void TestInstall::cleanupTestCase()
{
    const QString manifest = QStringLiteral(VD_BUILD_DIR "/install_manifest.txt");
    if (m_hadManifest)
        writeFile(manifest, m_manifest);
    else
        QFile::remove(manifest);
}

Run TestInstall::cli(const QStringList& arguments, const QString& home)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home);
    env.remove(QStringLiteral("XDG_DATA_HOME"));
    return run(m_prefix + QStringLiteral("/bin/vellumdock-cli"), arguments, env);
}

void TestInstall::filesLieWhereDesktopsLookForThem()
{
    for (const char* program : {"vellumdock", "vellumdock-cli"}) {
        const QFileInfo exe(m_prefix + QStringLiteral("/bin/") + QLatin1String(program));
        QVERIFY2(exe.isFile() && exe.isExecutable(), qPrintable(exe.filePath()));
    }
    const QByteArray entry =
        readAll(m_prefix + QStringLiteral("/share/applications/vellumdock.desktop"));
    for (const char* line : {"Name=Vellumdock\n", "Exec=vellumdock", "Icon=vellumdock\n",
                             "Type=Application\n", "GenericName[de]=", "Comment[de]="})
        QVERIFY2(entry.contains(line), line);

    const QString hicolor = m_prefix + QStringLiteral("/share/icons/hicolor/");
    const QByteArray svg = readAll(hicolor + QStringLiteral("scalable/apps/vellumdock.svg"));
    QVERIFY(svg.contains("<svg"));
    for (int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        const QString png = hicolor + QStringLiteral("%1x%1/apps/vellumdock.png").arg(size);
        QCOMPARE(pngSize(png), QSize(size, size));
    }

    // Every language file of the sources is installed, the marker folder even without one.
    const QString installedLang = m_prefix + QStringLiteral("/share/vellumdock/Lang");
    QVERIFY(QFileInfo(installedLang).isDir());
    const QStringList sources = languageFiles(QStringLiteral(VD_SOURCE_DIR "/src/app/Lang"));
    for (const QString& name : sources)
        QCOMPARE(readAll(installedLang + QLatin1Char('/') + name),
                 readAll(QStringLiteral(VD_SOURCE_DIR "/src/app/Lang/") + name));
    QVERIFY(QFileInfo::exists(m_prefix + QStringLiteral("/share/doc/vellumdock/README.md")));
}

void TestInstall::desktopEntryIsValid()
{
    const QString validator =
        QStandardPaths::findExecutable(QStringLiteral("desktop-file-validate"));
    if (validator.isEmpty())
        QSKIP("desktop-file-validate is not installed (package desktop-file-utils)");
    const Run check =
        run(validator, {m_prefix + QStringLiteral("/share/applications/vellumdock.desktop")},
            QProcessEnvironment::systemEnvironment());
    QVERIFY2(check.exitCode == 0, qPrintable(check.out + check.err));
    // Hints and warnings are printed too, with a zero exit code.
    QVERIFY2(check.out.isEmpty() && check.err.isEmpty(), qPrintable(check.out + check.err));
}

void TestInstall::destdirStagesTheInstallation()
{
    const QString stage = m_tmp.filePath(QStringLiteral("stage"));
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DESTDIR"), stage);
    const QString prefix = QStringLiteral("/opt/vellumdock-test-prefix");
    const Run staged = run(QStringLiteral(VD_CMAKE_COMMAND),
                           {QStringLiteral("--install"), QStringLiteral(VD_BUILD_DIR),
                            QStringLiteral("--prefix"), prefix},
                           env);
    QVERIFY2(staged.exitCode == 0, qPrintable(staged.out + staged.err));
    QVERIFY(QFileInfo(stage + prefix + QStringLiteral("/bin/vellumdock-cli")).isExecutable());
    QVERIFY(QFileInfo(stage + prefix + QStringLiteral("/share/vellumdock/Lang")).isDir());
    QVERIFY(QFileInfo::exists(stage + prefix +
                              QStringLiteral("/share/applications/vellumdock.desktop")));
    QVERIFY(!QFileInfo::exists(prefix));
}

void TestInstall::installedCommandLineWorksInTheUserFolder()
{
    const QString home = m_tmp.filePath(QStringLiteral("home"));
    QVERIFY(QDir().mkpath(home));
    const Run set = cli({QStringLiteral("settings"), QStringLiteral("set"), QStringLiteral("MAIN"),
                         QStringLiteral("ViewMode"), QStringLiteral("3")},
                        home);
    QVERIFY2(set.exitCode == 0, qPrintable(set.err));
    const Run get = cli({QStringLiteral("settings"), QStringLiteral("get"), QStringLiteral("MAIN"),
                         QStringLiteral("ViewMode")},
                        home);
    QVERIFY2(get.exitCode == 0, qPrintable(get.err));
    QCOMPARE(get.out.trimmed(), QStringLiteral("3"));

    const QString user = home + QStringLiteral("/.local/share/vellumdock/");
    QVERIFY(readAll(user + QStringLiteral("Vellumdock.ini")).contains("ViewMode=3"));
    QVERIFY(QFileInfo(user + QStringLiteral("Temp")).isDir());
    // The writable bin/ folder is not taken for a portable one.
    QVERIFY(!QFileInfo::exists(m_prefix + QStringLiteral("/bin/Vellumdock.ini")));
    QVERIFY(!QFileInfo::exists(m_prefix + QStringLiteral("/bin/Temp")));
    // The installed language files reached the folder the language menu reads.
    const QString installedLang = m_prefix + QStringLiteral("/share/vellumdock/Lang/");
    const QStringList installed = languageFiles(installedLang);
    QVERIFY(installed.contains(QStringLiteral("Testsprache.lng")));
    QCOMPARE(languageFiles(user + QStringLiteral("Lang")), installed);
    for (const QString& name : installed)
        QCOMPARE(readAll(user + QStringLiteral("Lang/") + name), readAll(installedLang + name));
}

void TestInstall::homeOptionStillChoosesTheFolder()
{
    const QString home = m_tmp.filePath(QStringLiteral("home2"));
    const QString chosen = m_tmp.filePath(QStringLiteral("chosen"));
    QVERIFY(QDir().mkpath(home));
    const Run set =
        cli({QStringLiteral("--home"), chosen, QStringLiteral("settings"), QStringLiteral("set"),
             QStringLiteral("MAIN"), QStringLiteral("Font"), QStringLiteral("CBM")},
            home);
    QVERIFY2(set.exitCode == 0, qPrintable(set.err));
    QVERIFY(readAll(chosen + QStringLiteral("/Vellumdock.ini")).contains("Font=CBM"));
    QVERIFY(QFileInfo::exists(chosen + QStringLiteral("/Lang/Testsprache.lng")));
    QVERIFY(!QFileInfo::exists(home + QStringLiteral("/.local/share/vellumdock")));
}

void TestInstall::installedCopyIsToldFromAPortableOne()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QByteArray saved = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", QFile::encodeName(tmp.filePath(QStringLiteral("data"))));
    const QString user = tmp.filePath(QStringLiteral("data/vellumdock"));

    // A writable folder alone is a portable copy; with ../share/vellumdock it is installed.
    const QString bin = tmp.filePath(QStringLiteral("usr/bin"));
    QVERIFY(QDir().mkpath(bin));
    QCOMPARE(installedDataFolder(bin), QString());
    QCOMPARE(defaultProgramFolder(bin), bin);
    QVERIFY(QDir().mkpath(tmp.filePath(QStringLiteral("usr/share/vellumdock"))));
    QCOMPARE(installedDataFolder(bin), tmp.filePath(QStringLiteral("usr/share/vellumdock")));
    QCOMPARE(defaultProgramFolder(bin), user);
    QCOMPARE(installedDataFolder(QString()), QString());

    // Without language files in the installation the user's folder gets no Lang.
    const bool ok = initProgramFolder({}, bin);
    if (saved.isNull())
        qunsetenv("XDG_DATA_HOME");
    else
        qputenv("XDG_DATA_HOME", saved);
    QVERIFY(ok);
    QVERIFY(QFileInfo(user + QStringLiteral("/Temp")).isDir());
    QVERIFY(!QFileInfo::exists(user + QStringLiteral("/Lang")));
    QVERIFY(!QFileInfo::exists(bin + QStringLiteral("/Temp")));
}

void TestInstall::languageFilesAreBroughtUpToDate()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString from = tmp.filePath(QStringLiteral("share/Lang/"));
    const QString to = tmp.filePath(QStringLiteral("user/Lang/"));
    const QDateTime installedAt = QDateTime::currentDateTime().addDays(-10);
    writeFile(from + QStringLiteral("English.lng"), "v1");
    writeFile(from + QStringLiteral("French.lng"), "fr");
    writeFile(from + QStringLiteral("notes.txt"), "not a language");
    setTime(from + QStringLiteral("English.lng"), installedAt);
    setTime(from + QStringLiteral("French.lng"), installedAt);

    QCOMPARE(syncLanguageFiles(from, to), 2);
    QCOMPARE(languageFiles(to), (QStringList{"English.lng", "French.lng"}));
    QCOMPARE(QFileInfo(to + QStringLiteral("English.lng")).lastModified(), installedAt);
    QCOMPARE(syncLanguageFiles(from, to), 0); // up to date: nothing is copied again

    // The user's own file and a file the user changed later stay; a newer installed one wins.
    writeFile(to + QStringLiteral("NEW.lng"), "mine");
    writeFile(to + QStringLiteral("French.lng"), "edited");
    writeFile(from + QStringLiteral("English.lng"), "v2");
    QCOMPARE(syncLanguageFiles(from, to), 1);
    QCOMPARE(readAll(to + QStringLiteral("English.lng")), QByteArray("v2"));
    QCOMPARE(readAll(to + QStringLiteral("French.lng")), QByteArray("edited"));
    QCOMPARE(readAll(to + QStringLiteral("NEW.lng")), QByteArray("mine"));
    QCOMPARE(QDir(to).entryList(QDir::Files).size(), 3); // no ".part" left behind

    // A missing installation folder copies nothing and creates nothing.
    QCOMPARE(
        syncLanguageFiles(tmp.filePath(QStringLiteral("none")), tmp.filePath(QStringLiteral("x"))),
        0);
    QVERIFY(!QFileInfo::exists(tmp.filePath(QStringLiteral("x"))));
}

QTEST_GUILESS_MAIN(TestInstall)
#include "tst_install.moc"
