// The main window when the catalogue can't be written: a catalogue the file system won't let
// anyone change, and a disk that fills up during an import. The window keeps running, says
// what happened, and keeps what was catalogued.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmMain.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "import/ui/frmProcess.h"
#include "platform/ScriptedDialogService.h"
#include "support/C64ImageWriter.h"

#include <csignal>
#include <memory>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <fcntl.h>
#include <linux/fs.h>
#include <sqlite3.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace vd;
using browser::frmMain;

namespace {

// Closes every batch window once its work is done.
class ProcessCloser : public QObject
{
public:
    ProcessCloser()
    {
        m_timer.setInterval(10);
        connect(&m_timer, &QTimer::timeout, this, [] {
            for (QWidget* w : QApplication::topLevelWidgets())
                if (auto* form = qobject_cast<import::frmProcess*>(w))
                    if (form->isVisible() && form->workDone()) {
                        form->cmdCancel->click();
                    }
        });
        m_timer.start();
    }

private:
    QTimer m_timer;
};

// The immutable flag stops even root from writing a file; false where the file system or the
// user's rights don't allow setting it.
bool setImmutable(const QString& path, bool on)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK);
    if (fd < 0)
        return false;
    int flags = 0;
    bool ok = ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    if (ok) {
        flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
        ok = ::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    }
    ::close(fd);
    return ok;
}

int entryRows()
{
    const auto rs = app::gDB->openRecordset(QStringLiteral("Select Count(*) From C64Files"),
                                            db::RecordsetType::Snapshot);
    return rs->value(0).toInt();
}

// PRAGMA integrity_check through a connection of its own.
QString integrity(const QString& path)
{
    sqlite3* db = nullptr;
    QString result;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READONLY, nullptr) ==
        SQLITE_OK) {
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &st, nullptr) == SQLITE_OK &&
            sqlite3_step(st) == SQLITE_ROW)
            result = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
        sqlite3_finalize(st);
    }
    sqlite3_close(db);
    return result;
}

} // namespace

class TestWindowFaults : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_home;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;
    QString m_cat;

    // A folder of `count` small disks, each with three entries.
    QString diskFolder(const QString& name, int count, int entries = 3)
    {
        const QString folder = m_home->filePath(name);
        QDir().mkpath(folder);
        for (int i = 0; i < count; ++i) {
            QVector<test::Slot> list;
            for (int e = 0; e < entries; ++e)
                list.append(
                    {0x82, (name.left(4) + QStringLiteral(" GAME %1").arg(e)).toLatin1(), 1});
            const QString file = folder + QStringLiteral("/%1-%2.d64").arg(name).arg(i);
            if (!test::DiskWriter::d64().name(test::padded("DISK")).entries(list).save(file))
                return {};
        }
        return folder;
    }

    frmMain& start()
    {
        QFile ini(app::gIniFile);
        if (!ini.open(QIODevice::WriteOnly))
            qFatal("no settings file");
        ini.write("[MAIN]\r\nViewMode=2\r\nDatabase=" + m_cat.toUtf8() + "\r\n");
        ini.close();
        app::reloadIni();
        m_form = std::make_unique<frmMain>();
        m_form->show();
        m_form->Form_Activate();
        return *m_form;
    }

    void importFolder(frmMain& form, const QString& folder)
    {
        m_dialogs.answerText(folder);
        ProcessCloser closer;
        form.menuEntry(QStringLiteral("mnuAddDir"))->trigger();
    }

    void stop()
    {
        m_form.reset();
        catalogue::CloseCatalogue();
        app::gDatabasePath.clear();
    }

    QStringList messages() const
    {
        QStringList texts;
        for (const auto& call : m_dialogs.calls)
            if (call.kind == platform::ScriptedDialogService::Kind::Message)
                texts << call.text;
        return texts;
    }

private slots:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        QVERIFY(m_home->isValid());
        app::setProgramFolder(m_home->path());
        QVERIFY(QDir().mkpath(app::gTempPath));
        app::reloadIni();
        m_dialogs.clear();
        platform::setDialogService(&m_dialogs);
        m_cat = catalogue::newCatalogue(m_home->filePath(QStringLiteral("Sammlung")));
        QVERIFY(!m_cat.isEmpty());
    }
    void cleanup()
    {
        stop();
        setImmutable(m_cat, false);
        platform::setDialogService(nullptr);
        m_home.reset();
    }

    // A catalogue nobody may write opens for reading: the window lists it, an import ends at
    // once with a message, and the window goes on with the rows it had.
    void readOnlyCatalogue()
    {
        const QString first = diskFolder(QStringLiteral("first"), 4);
        const QString second = diskFolder(QStringLiteral("second"), 4);
        QVERIFY(!first.isEmpty() && !second.isEmpty());
        importFolder(start(), first);
        QCOMPARE(entryRows(), 4 * 3);
        stop();
        if (!setImmutable(m_cat, true))
            QSKIP("the file system here can't make a file immutable");

        m_dialogs.clear();
        frmMain& form = start();
        QVERIFY2(app::gDB, qPrintable(messages().join(QLatin1Char('\n'))));
        QVERIFY(app::gDB->isReadOnly());
        QCOMPARE(entryRows(), 12);
        importFolder(form, second);
        QVERIFY(form.isVisible());
        QCOMPARE(entryRows(), 12);
        qInfo("messages: %s", qPrintable(messages().join(QStringLiteral(" | "))));
        QCOMPARE(messages().size(), 1);
        QVERIFY2(messages()[0].contains(QStringLiteral("schreibgeschützt")),
                 qPrintable(messages()[0]));
    }

    // A disk that fills up in the middle of an import (a file-size limit on this process stands
    // in for it): one message, the window goes on, the catalogue is whole and keeps at least
    // what it had; with room again the same import completes the collection.
    void fullDisk()
    {
        const QString first = diskFolder(QStringLiteral("first"), 4);
        const QString big = diskFolder(QStringLiteral("big"), 150, 20);
        QVERIFY(!first.isEmpty() && !big.isEmpty());
        frmMain& form = start();
        importFolder(form, first);
        QCOMPARE(entryRows(), 12);

        const qint64 size =
            QFileInfo(m_cat).size() + QFileInfo(m_cat + QStringLiteral("-wal")).size();
        rlimit old{};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &old), 0);
        const auto oldSignal = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{rlim_t(size + 64 * 1024), old.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
        m_dialogs.clear();
        importFolder(form, big);
        setrlimit(RLIMIT_FSIZE, &old);
        std::signal(SIGXFSZ, oldSignal);

        QVERIFY(form.isVisible());
        QCOMPARE(messages().size(), 1);
        qInfo("the window said: %s", qPrintable(messages()[0]));
        QVERIFY(entryRows() >= 12);
        QVERIFY(entryRows() < 12 + 150 * 20);
        QCOMPARE(integrity(m_cat), QStringLiteral("ok"));

        m_dialogs.clear();
        importFolder(form, big);
        QVERIFY(messages().isEmpty());
        QCOMPARE(entryRows(), 12 + 150 * 20);
    }
};

QTEST_MAIN(TestWindowFaults)
#include "tst_windowfaults.moc"
