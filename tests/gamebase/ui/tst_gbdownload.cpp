// Downloading the archives of selected games from a small HTTP server that the test runs on
// 127.0.0.1, over a folder tree that mirrors the GameBase's Filename values, into a download
// folder, catalogued at once.

#include "catalogue/Database.h"
#include "catalogue/RowOps.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameDownload.h"
#include "gamebase/ui/NetDownload.h"
#include "support/CatalogueFixture.h"
#include "support/GameBaseImport.h"

#include <QDir>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

using namespace vd;

namespace {

// Serves GET /games/<path> from a folder; "\" in the decoded path counts as "/". Anything else
// is 404.
class TinyHttpServer : public QTcpServer
{
public:
    explicit TinyHttpServer(const QString& root) : m_root(root)
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = nextPendingConnection())
                connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { serve(socket); });
        });
        listen(QHostAddress::LocalHost);
    }
    QString base(const QString& folder) const
    {
        return QStringLiteral("http://127.0.0.1:%1/%2/").arg(serverPort()).arg(folder);
    }
    QStringList requests;

private:
    void serve(QTcpSocket* socket)
    {
        QByteArray& buffer = m_buffers[socket];
        buffer += socket->readAll();
        if (!buffer.contains("\r\n\r\n"))
            return;
        const QList<QByteArray> line = buffer.left(buffer.indexOf("\r\n")).split(' ');
        m_buffers.remove(socket);
        QString path = line.size() > 1 ? QUrl::fromPercentEncoding(line[1]) : QString();
        requests << path;
        QByteArray body;
        bool found = false;
        if (path.startsWith(QStringLiteral("/games/"))) {
            path = path.mid(7).replace(QLatin1Char('\\'), QLatin1Char('/'));
            QFile f(QDir(m_root).filePath(path));
            found = !path.contains(QStringLiteral("..")) && f.open(QIODevice::ReadOnly);
            if (found)
                body = f.readAll();
        }
        const QByteArray head = found ? "HTTP/1.1 200 OK\r\n" : "HTTP/1.1 404 Not Found\r\n";
        socket->write(head + "Content-Length: " + QByteArray::number(body.size()) +
                      "\r\nConnection: close\r\n\r\n" + body);
        socket->disconnectFromHost();
    }
    QString m_root;
    QHash<QTcpSocket*, QByteArray> m_buffers;
};

class RecordingHost : public gamebase::DownloadHost
{
public:
    QStringList statuses;
    int escapeAfter = -1; // Esc is "held" once this many files were looked at
    int looked = 0;
    int starts = 0;

    bool DownloadFile(const QString& url, const QString& target) override
    {
        return gamebase::FetchToFile(url, target, 5000);
    }
    bool escapePressed() override { return escapeAfter >= 0 && looked++ >= escapeAfter; }
    void setStatus(const QString& text) override { statuses << text; }
    void startGame() override { ++starts; }
};

} // namespace

class TestGBDownload : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::GameBaseImport> m_env;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<TinyHttpServer> m_server;
    QString m_downloads;
    gamebase::DownloadState m_state;
    RecordingHost m_host;

    gamebase::DownloadResult run(const QVector<qint64>& ids, bool importNow = false)
    {
        gamebase::DownloadRequest request;
        request.gameIds = ids;
        request.importNow = importNow;
        request.downloadFolder = m_downloads;
        m_env->f.fm.InitCount();
        return gamebase::DownloadGames(*gamebase::gGB, m_env->f.fm, request, m_state, m_host);
    }
    QString downloaded(const QString& relative) const
    {
        return QDir(m_downloads).filePath(relative);
    }

private slots:
    void init()
    {
        m_env = std::make_unique<test::GameBaseImport>();
        m_env->f.fm.options.ConnectFilesToGB = false; // the download links the games itself
        m_dir = std::make_unique<QTemporaryDir>();
        const QString served = m_dir->filePath(QStringLiteral("served"));
        m_downloads = m_dir->filePath(QStringLiteral("downloads"));
        QVERIFY(QDir().mkpath(m_downloads));
        // Each game's archive: a D64 whose first entry is the game.
        const struct
        {
            const char* relative;
            const char* disk;
            const char* entry;
        } games[] = {{"S/Sanxion.zip", "Sanxion.d64", "SANXION"},
                     {"P/Paradroid.zip", "Paradroid.d64", "PARADROID"},
                     {"U/Uridium.zip", "Uridium.d64", "URIDIUM"}};
        for (const auto& g : games) {
            const QString zip = m_env->zip(QString::fromLatin1(g.relative),
                                           {{QString::fromLatin1(g.disk), {g.entry, "HISCORE"}}});
            const QString target = QDir(served).filePath(QString::fromLatin1(g.relative));
            QVERIFY(QDir().mkpath(QFileInfo(target).absolutePath()));
            QVERIFY(QFile::rename(zip, target));
        }
        // FileToRun names the archive's member that holds the game.
        m_env->changeGameBase(
            QStringLiteral("Update Games Set FileToRun='Sanxion.d64' where GA_Id=101"));
        m_env->changeGameBase(
            QStringLiteral("Update Games Set FileToRun='Paradroid.d64' where GA_Id=102"));
        m_server = std::make_unique<TinyHttpServer>(served);
        QVERIFY(m_server->isListening());
        m_state = {m_server->base(QStringLiteral("games")), QString()};
        m_host = RecordingHost();
        gamebase::gDownloadFallbackFirst.clear();
        gamebase::gDownloadFallbackSecond.clear();
    }
    void cleanup()
    {
        m_server.reset();
        m_env.reset();
        m_dir.reset();
    }

    void threeRowsOneWithoutFilename()
    {
        const auto result = run({101, 106, 102});
        QVERIFY(m_env->f.dialogs.calls.isEmpty());
        QCOMPARE(m_host.statuses.last(), QStringLiteral("Neue Dateien: 2/3"));
        QCOMPARE(result.saved, 2);
        QCOMPARE(result.done, 3);
        QVERIFY(QFileInfo(downloaded(QStringLiteral("S/Sanxion.zip"))).size() > 0);
        QVERIFY(QFileInfo(downloaded(QStringLiteral("P/Paradroid.zip"))).isFile());
        // The name went into the address as it stands, "\" and all.
        QCOMPARE(m_server->requests,
                 (QStringList{"/games/S\\Sanxion.zip", "/games/P\\Paradroid.zip"}));
        QVERIFY(m_host.statuses.contains(
            QStringLiteral("Starte Download... (ESC-Taste zum Abbrechen 1/3) -> Sanxion.zip")));
        QVERIFY(m_host.statuses.contains(downloaded(QStringLiteral("P/Paradroid.zip")) +
                                         QStringLiteral(": Datei gespeichert")));
        // Catalogued at once and linked to their games.
        QVERIFY(result.catalogueChanged);
        QCOMPARE(m_env->f.rows(QStringLiteral("Select tProgram,GB_ID From C64Files where not "
                                              "isnull(GB_ID) order by GB_ID")),
                 (QStringList{"Sanxion|101", "Paradroid|102"}));
    }

    void anExistingTargetIsNotFetchedAgain()
    {
        QVERIFY(QDir().mkpath(downloaded(QStringLiteral("S"))));
        QVERIFY(QFile::copy(m_dir->filePath(QStringLiteral("served/S/Sanxion.zip")),
                            downloaded(QStringLiteral("S/Sanxion.zip"))));
        const auto result = run({101, 102});
        QCOMPARE(m_server->requests, QStringList{"/games/P\\Paradroid.zip"});
        QCOMPARE(m_host.statuses.last(), QStringLiteral("Neue Dateien: 1/2"));
        // Several rows, nothing catalogued yet, ArchivFile on: the existing file is imported.
        QCOMPARE(m_env->f.count(QStringLiteral("Category"), QStringLiteral("iType=1")), 2);
        QVERIFY(result.catalogueChanged);
    }

    void aSingleExistingRowStartsTheGame()
    {
        QVERIFY(QDir().mkpath(downloaded(QStringLiteral("S"))));
        QFile f(downloaded(QStringLiteral("S/Sanxion.zip")));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.close();
        const auto result = run({101});
        QCOMPARE(m_host.starts, 1);
        QVERIFY(result.ended);
        QVERIFY(m_server->requests.isEmpty());
    }

    void firstAddressFailsSecondServes()
    {
        m_state.baseUrl = m_server->base(QStringLiteral("missing"));
        gamebase::gDownloadFallbackSecond = catalogue::XorHexText(
            m_server->base(QStringLiteral("games")), gamebase::kDownloadUrlKey, true);
        const auto result = run({102, 101});
        QCOMPARE(result.saved, 2);
        QCOMPARE(m_server->requests,
                 (QStringList{"/missing/P\\Paradroid.zip", "/games/P\\Paradroid.zip",
                              "/games/S\\Sanxion.zip"})); // the second address stays for the run
        QVERIFY(m_host.statuses.contains(QStringLiteral(
            "2. Starte Download... (ESC-Taste zum Abbrechen 1/2) -> Paradroid.zip")));
        QCOMPARE(m_state.baseUrl, m_server->base(QStringLiteral("games")));
    }

    void bothAddressesFailAndTheNextRowGoesOn()
    {
        m_state.baseUrl = m_server->base(QStringLiteral("missing"));
        const auto result = run({102, 103}); // the second address is empty
        QCOMPARE(result.saved, 0);
        QCOMPARE(m_host.statuses.count(QStringLiteral("Fehler beim Download")), 2);
        QCOMPARE(m_host.statuses.last(), QStringLiteral("Neue Dateien: 0/2"));
        QVERIFY(!QFileInfo::exists(downloaded(QStringLiteral("P/Paradroid.zip"))));
    }

    void twoMissingFolderLevelsEndTheCommand()
    {
        test::appendRow(*gamebase::gGB, QStringLiteral("Games"),
                        {{"GA_Id", 107}, {"Name", "Deep"}, {"Filename", "A\\B\\Deep.zip"}});
        const auto result = run({107, 101});
        QVERIFY(result.ended);
        const QStringList messages = m_env->f.dialogs.messages();
        QCOMPARE(messages.size(), 1);
        QVERIFY2(messages[0].startsWith(QStringLiteral("Download-Error: ")),
                 qPrintable(messages[0]));
        QVERIFY(!QFileInfo::exists(downloaded(QStringLiteral("A"))));
        QVERIFY(m_server->requests.isEmpty()); // the next row isn't reached
    }

    void messagesThatEndTheCommand_data()
    {
        QTest::addColumn<QVector<qint64>>("ids");
        QTest::addColumn<bool>("folderMissing");
        QTest::addColumn<QString>("message");
        QTest::addRow("single row without Filename")
            << QVector<qint64>{106} << false << "Keine Download-Datei vorhanden!";
        QTest::addRow("download folder missing")
            << QVector<qint64>{101} << true << "Download-Pfad nicht gefunden: %D";
    }
    void messagesThatEndTheCommand()
    {
        QFETCH(QVector<qint64>, ids);
        QFETCH(bool, folderMissing);
        QFETCH(QString, message);
        if (folderMissing)
            QVERIFY(QDir(m_downloads).removeRecursively());
        const auto result = run(ids);
        QVERIFY(result.ended);
        QCOMPARE(m_env->f.dialogs.messages(), QStringList{message.replace("%D", m_downloads)});
        QVERIFY(m_server->requests.isEmpty());
    }

    void escapeIsSeenBeforeTheNextFile()
    {
        m_host.escapeAfter = 1;
        const auto result = run({101, 102, 103});
        QCOMPARE(result.done, 1);
        QCOMPARE(m_server->requests.size(), 1);
        QCOMPARE(m_host.statuses.last(), QStringLiteral("Neue Dateien: 1/1"));
    }

    void askedPathGetsZipAndIsRemembered()
    {
        const QString chosen = m_dir->filePath(QStringLiteral("mine/Sanx"));
        QVERIFY(QDir().mkpath(QFileInfo(chosen).absolutePath()));
        m_env->f.dialogs.answerText(chosen);
        gamebase::DownloadRequest request;
        request.gameIds = {101};
        request.askPath = true;
        request.archivFile = false;
        request.startFolder = m_dir->path();
        const auto result =
            gamebase::DownloadGames(*gamebase::gGB, m_env->f.fm, request, m_state, m_host);
        QCOMPARE(result.saved, 1);
        QVERIFY(QFileInfo(chosen + QStringLiteral(".zip")).isFile());
        QCOMPARE(m_state.lastFolder, QFileInfo(chosen).absolutePath());
        const auto& call = m_env->f.dialogs.calls.first();
        QCOMPARE(call.title, QStringLiteral("Download-Pfad"));
        QCOMPARE(call.text, QStringLiteral("Sanxion|*.zip"));
        QVERIFY(!result.catalogueChanged); // ArchivFile off

        m_env->f.dialogs.answerCancel();
        QVERIFY(
            gamebase::DownloadGames(*gamebase::gGB, m_env->f.fm, request, m_state, m_host).ended);
        QCOMPARE(m_server->requests.size(), 1);
    }
};

QTEST_MAIN(TestGBDownload)
#include "tst_gbdownload.moc"
