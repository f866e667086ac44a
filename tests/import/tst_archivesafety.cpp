// Hostile and broken archives: member paths that climb out or are absolute, links that lead
// out, bombs, too many members, too deep nesting, corrupt and password-protected archives.
// Nothing is written outside the extraction folder, the designed message is in the result
// list, the catalogue stays usable, and a batch goes on with the next file.

#include "app/Globals.h"
#include "import/ImportBatch.h"
#include "support/ArchiveWriter.h"
#include "support/C64ImageWriter.h"
#include "support/ImportFixture.h"

#include <memory>
#include <QDir>
#include <QFile>
#include <QtTest>

using namespace vd;
using vd::test::RawZipMember;

namespace {

constexpr qint64 kMiB = 1024 * 1024;
const QByteArray kText = "safe text\r\n";

} // namespace

class TestArchiveSafety : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::ImportFixture> f;

    // Every file below `folder`, relative to it.
    static QStringList filesBelow(const QString& folder)
    {
        QStringList files;
        QDirIterator it(folder, QDir::Files | QDir::System | QDir::Hidden,
                        QDirIterator::Subdirectories);
        while (it.hasNext())
            files << QDir(folder).relativeFilePath(it.next());
        files.sort();
        return files;
    }

private slots:
    void init()
    {
        f = std::make_unique<test::ImportFixture>();
        f->fm.options.SkipZipSize = QStringLiteral("0");
    }
    void cleanup() { f.reset(); }

    void hostileMembers_data()
    {
        QTest::addColumn<QVector<RawZipMember>>("members");
        QTest::addColumn<QString>("message"); // after "Fehler beim Entpacken: <archive>: "
        QTest::addColumn<int>("rows");        // Category rows: the safe text survives or not
        const RawZipMember safe{"safe.txt", kText};
        QTest::newRow("climbs out") << QVector<RawZipMember>{{"../../x.txt", "evil"}, safe}
                                    << "Unsicherer Pfad übersprungen: ../../x.txt" << 1;
        QTest::newRow("climbs out with backslashes")
            << QVector<RawZipMember>{{"a\\..\\..\\x.txt", "evil"}, safe}
            << "Unsicherer Pfad übersprungen: a/../../x.txt" << 1; // as the reader names it
        QTest::newRow("absolute") << QVector<RawZipMember>{{"/tmp/vd_abs_x.txt", "evil"}, safe}
                                  << "Unsicherer Pfad übersprungen: /tmp/vd_abs_x.txt" << 1;
        QTest::newRow("drive letter") << QVector<RawZipMember>{{"C:/x.txt", "evil"}, safe}
                                      << "Unsicherer Pfad übersprungen: C:/x.txt" << 1;
        // A link out, then a member written "through" it.
        QTest::newRow("link out") << QVector<RawZipMember>{{"out", "../../..", false, 0120777},
                                                           {"out/x.txt", "evil"},
                                                           safe}
                                  << "Verknüpfung übersprungen: out" << 2;
        QTest::newRow("bomb") << QVector<RawZipMember>{safe,
                                                       {"zeros.txt", QByteArray(3 * kMiB, '\0'),
                                                        true}}
                              << "Das Archiv entpackt mehr als 1 MiB" << 0;
    }
    void hostileMembers()
    {
        QFETCH(QVector<RawZipMember>, members);
        QFETCH(QString, message);
        QFETCH(int, rows);
        f->fm.archiveLimits.maxBytes = kMiB;
        const QString archive = f->file("hostile.zip");
        const QByteArray zip = test::rawZip(members);
        QVERIFY(test::writeFile(archive, zip));
        QVERIFY(zip.size() < 64 * 1024); // the bomb is small on disk
        const QString home = QFileInfo(app::gTempPath).absolutePath();
        const QStringList homeBefore = filesBelow(QFileInfo(home).absolutePath());

        f->load(archive);
        QVERIFY2(f->resultLines().contains("Fehler beim Entpacken: " + archive + ": " + message),
                 qPrintable(f->resultLines().join(QLatin1Char('\n'))));
        QCOMPARE(f->count("Category"), rows);
        // Only the extraction folder got files, and only the safe ones.
        QStringList written = filesBelow(QFileInfo(home).absolutePath());
        for (const QString& before : homeBefore)
            written.removeOne(before);
        for (const QString& file : written)
            QVERIFY2(file.contains("home/Temp/A1/"), qPrintable(file));
        QVERIFY(!QFile::exists("/tmp/vd_abs_x.txt"));
        for (const QString& file : written)
            QVERIFY2(!file.endsWith("x.txt") || file.endsWith("/out/x.txt"), qPrintable(file));

        // The catalogue is intact: the next file goes in as usual.
        const QString prg = f->file("next.prg");
        QVERIFY(test::writeFile(prg, QByteArray("\x01\x08", 2) + QByteArray(100, 'p')));
        QVERIFY(f->load(prg) > 0);
        QCOMPARE(f->count("Category"), rows + 1);
    }

    void limitsStopTheArchive_data()
    {
        QTest::addColumn<int>("maxMembers");
        QTest::addColumn<int>("maxDepth");
        QTest::addColumn<int>("levels");
        QTest::addColumn<QString>("message");
        QTest::newRow("members") << 2 << 16 << 1 << "Mehr als 2 Dateien im Archiv";
        QTest::newRow("depth") << 100 << 2 << 3 << "Mehr als 2 Archive ineinander verschachtelt";
    }
    void limitsStopTheArchive()
    {
        QFETCH(int, maxMembers);
        QFETCH(int, maxDepth);
        QFETCH(int, levels);
        QFETCH(QString, message);
        f->fm.archiveLimits.maxMembers = maxMembers;
        f->fm.archiveLimits.maxDepth = maxDepth;
        // Three texts in the innermost archive, each level holding the one below.
        QByteArray bytes = test::rawZip({{"a.txt", kText}, {"b.txt", kText}, {"c.txt", kText}});
        QString member = QStringLiteral("c.txt");
        for (int level = levels; level > 1; --level) {
            const QByteArray name = "l" + QByteArray::number(level) + ".zip";
            bytes = test::rawZip({{name, bytes}});
            member = QString::fromLatin1(name) + "\\" + member;
        }
        const QString archive = f->file("limited.zip");
        QVERIFY(test::writeFile(archive, bytes));
        f->load(archive);
        const QString shown = levels == 1 ? archive : archive + "\\l2.zip\\l3.zip";
        QVERIFY2(f->resultLines().contains("Fehler beim Entpacken: " + shown + ": " + message),
                 qPrintable(f->resultLines().join('\n')));
        QCOMPARE(f->count("Category"), 0);
        // Reaching a member runs into the same limit.
        QVERIFY(f->fm.ExtractFileFromArchiv("c.txt", member, archive).isEmpty() || levels == 1);
    }

    void brokenArchivesAndTheBatchGoesOn_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("reason"); // part of the message after the archive's path
        QTest::newRow("garbage") << "garbage"
                                 << "Unrecognized archive format";
        QTest::newRow("truncated") << "truncated"
                                   << "";
        QTest::newRow("password zip") << "password zip"
                                      << "Passwort";
        QTest::newRow("password 7z") << "password 7z"
                                     << "";
    }
    void brokenArchivesAndTheBatchGoesOn()
    {
        QFETCH(QString, kind);
        QFETCH(QString, reason);
        const QString folder = f->file("batch");
        QDir().mkpath(folder + "/src");
        const QString bad = folder + (kind == "password 7z" ? "/a.7z" : "/a.zip");
        const QByteArray good = test::rawZip({{"good.txt", kText}});
        if (kind == "garbage") {
            QVERIFY(test::writeFile(bad, QByteArray(4000, 'g')));
        } else if (kind == "truncated") {
            // Cut inside the member's data, so no reading can recover it.
            QByteArray noise(5000, '\0');
            for (int i = 0; i < noise.size(); ++i)
                noise[i] = char((i * 7919) % 251);
            const QByteArray whole = test::rawZip({{"t.txt", noise}});
            QVERIFY(test::writeFile(bad, whole.left(2000)));
        } else {
            if (!test::haveTool("7z"))
                QSKIP("7z is not installed (scripts/deps.sh)");
            QVERIFY(test::writeFile(folder + "/src/secret.txt", kText));
            const QStringList options = kind == "password 7z" ? QStringList{"-psecret", "-mhe=on"}
                                                              : QStringList{"-psecret"};
            QVERIFY(test::packArchive(kind.section(' ', 1), bad, folder + "/src", {"secret.txt"},
                                      options));
            QFile::remove(folder + "/src/secret.txt");
        }
        QVERIFY(test::writeFile(folder + "/b.zip", good));

        import::ImportBatch batch(f->fm);
        QStringList lines;
        connect(&batch, &import::ImportBatch::resultLine, this,
                [&](const QString& text, int) { lines << text; });
        const import::BatchResult result = batch.run(import::kModeAddFolder, folder);
        QVERIFY(result.failure.isEmpty());
        const QString prefix = "Fehler beim Entpacken: " + bad + ": ";
        const auto failure = std::find_if(lines.begin(), lines.end(), [&](const QString& line) {
            return line.startsWith(prefix);
        });
        QVERIFY2(failure != lines.end(), qPrintable(lines.join('\n')));
        QVERIFY2(failure->size() > prefix.size() && failure->contains(reason),
                 qPrintable(*failure));
        QCOMPARE(f->rows("Select tPath,tUnpackPath From Category"),
                 QStringList{folder + "/b.zip|good.txt"});
    }

    void safeMemberPaths_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("safe");
        QTest::newRow("plain") << "a/b.d64"
                               << "a/b.d64";
        QTest::newRow("backslashes") << "a\\b.d64"
                                     << "a/b.d64";
        QTest::newRow("dots and doubles") << "./a//./b.d64"
                                          << "a/b.d64";
        QTest::newRow("parent") << "a/../b.d64"
                                << "";
        QTest::newRow("absolute") << "/etc/passwd"
                                  << "";
        QTest::newRow("drive") << "c:\\x"
                               << "";
        QTest::newRow("nothing") << "./"
                                 << "";
    }
    void safeMemberPaths()
    {
        QFETCH(QString, name);
        QFETCH(QString, safe);
        QCOMPARE(import::safeMemberPath(name), safe);
    }
};

QTEST_GUILESS_MAIN(TestArchiveSafety)
#include "tst_archivesafety.moc"
