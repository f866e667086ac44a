// Broken and hostile files in a folder scan: each gets its designed message, rows already
// written stay, and the batch goes on with the next file.

#include "import/ImportBatch.h"
#include "support/C64ImageWriter.h"
#include "support/ImportFixture.h"

#include <memory>
#include <QDir>
#include <QtTest>
#include <sys/stat.h>

using namespace vd;
using vd::test::DiskWriter;

class TestImportReliability : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::ImportFixture> f;
    QString m_root;

    QString put(const QString& name, const QByteArray& bytes)
    {
        const QString path = m_root + QLatin1Char('/') + name;
        test::writeFile(path, bytes);
        return path;
    }
    QStringList scan()
    {
        QStringList lines;
        import::ImportBatch batch(f->fm);
        // Every line but the folders'.
        connect(&batch, &import::ImportBatch::resultLine, &batch,
                [&lines](const QString& text, int) {
                    if (!text.endsWith(QLatin1Char('/')))
                        lines << text;
                });
        batch.run(import::kModeAddFolder, m_root);
        return lines;
    }

private slots:
    void init()
    {
        f = std::make_unique<test::ImportFixture>();
        m_root = f->file(QStringLiteral("bad"));
        QDir().mkpath(m_root);
    }
    void cleanup() { f.reset(); }

    void zeroLengthFiles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message"); // "" for a row of size 0
        QTest::newRow("D64") << "e.d64"
                             << "Kein korrektes 'D64'-File: %1";
        QTest::newRow("D71") << "e.d71"
                             << "Kein korrektes 'D71'-File: %1";
        QTest::newRow("D81") << "e.d81"
                             << "Kein korrektes 'D81'-File: %1";
        QTest::newRow("G64") << "e.g64"
                             << "Fehlerhaftes C64-File: %1\nKein korrektes 'G64'-File: %1";
        QTest::newRow("T64") << "e.t64"
                             << "Fehlerhaftes C64-File: %1";
        QTest::newRow("P00") << "e.p00"
                             << "Fehlerhaftes C64-File: %1";
        QTest::newRow("TAP") << "e.tap"
                             << "Fehlerhaftes C64-File: %1";
        QTest::newRow("VSF") << "e.vsf"
                             << "Fehlerhaftes C64-File: %1";
        QTest::newRow("C64") << "e.c64"
                             << "Fehlerhaftes C64-File: %1";
        QTest::newRow("CRT") << "e.crt"
                             << "Fehlerhaftes C64-File: %1";
        QTest::newRow("VFL") << "e.vfl"
                             << "Fehlerhaftes C64-File: %1";
        QTest::newRow("PRG") << "e.prg"
                             << "";
        QTest::newRow("TXT") << "e.txt"
                             << "";
        QTest::newRow("PNG") << "e.png"
                             << "";
    }
    void zeroLengthFiles()
    {
        QFETCH(QString, name);
        QFETCH(QString, message);
        const QString path = put(name, {});
        put(QStringLiteral("z-good.prg"), "ok"); // the batch goes on behind it
        const QStringList lines = scan();
        if (message.isEmpty()) {
            QCOMPARE(lines, QStringList({name, "z-good.prg"}));
            QCOMPARE(f->value(QStringLiteral("Select lSize From C64Files where ID=1")),
                     QStringLiteral("0"));
        } else {
            QCOMPARE(lines, message.arg(path).split(QLatin1Char('\n')) + QStringList{"z-good.prg"});
        }
    }

    void hostileFiles()
    {
        // A directory chain that loops, a T64 whose count is 65535 but which ends at once, a
        // T64 cut inside its header, garbage behind a G64 signature, a pipe named as an image.
        DiskWriter loop = DiskWriter::d64();
        loop.name("LOOP").slot(1, 0, {0x82, "AGAIN", 1}).link(1, 18, 1);
        put(QStringLiteral("a-loop.d64"), loop.bytes());
        const QString big = put(QStringLiteral("b-count.t64"),
                                test::t64("C64S tape image file", 65535, "BIG", {}, 64));
        const QString cut = put(QStringLiteral("c-cut.t64"), QByteArray("C64S tape image file"));
        QByteArray garbage("GCR-1541\0\x54\xF8\x1E", 12);
        for (int i = 0; i < 84 * 4; ++i)
            garbage.append(char(i * 37));
        garbage.append(QByteArray(70000, char(0xAA)));
        const QString gcr = put(QStringLiteral("d-garbage.g64"), garbage);
        const QString pipe = m_root + QStringLiteral("/e-pipe.d64");
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        put(QStringLiteral("f-good.prg"), "ok");

        const QStringList lines = scan();
        // The loop: 18 sectors of one entry; the big count: 400 nameless rows; the cut tape:
        // a count of 0, so no row; the garbage: the conversion's message; the pipe is no file
        // the scan takes.
        QCOMPARE(lines, QStringList({"a-loop.d64", "b-count.t64",
                                     "Kein korrektes 'G64'-File: " + gcr, "f-good.prg"}));
        QCOMPARE(f->count(QStringLiteral("C64Files"), QStringLiteral("Category_File=1")),
                 qint64(18));
        QCOMPARE(f->count(QStringLiteral("C64Files"), QStringLiteral("Category_File=2")),
                 qint64(400));
        Q_UNUSED(big);
        Q_UNUSED(cut);
    }

    void pipeNamedDirectly()
    {
        const QString pipe = m_root + QStringLiteral("/p.t64");
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QCOMPARE(f->load(pipe), qint64(0)); // must not hang
        QCOMPARE(f->resultLines(), QStringList({"Fehler in der Datei: 'p.t64'"}));
    }

    void vanishedFiles()
    {
        // Readers with their own handler report; the others pass the failure on, and the
        // batch reports it and goes on.
        const QString gone = m_root + QStringLiteral("/gone.d64");
        QCOMPARE(f->load(gone), qint64(0));
        QCOMPARE(f->resultLines(), QStringList({"Fehler in der Datei: 'gone.d64'"}));
        QVERIFY_THROWS_EXCEPTION(import::LoadFailure,
                                 f->load(m_root + QStringLiteral("/gone.prg")));
        import::ImportBatch batch(f->fm);
        f->messages.clear();
        const import::BatchResult r =
            batch.run(import::kModeAddFile, m_root + QStringLiteral("/gone.prg"));
        QVERIFY(r.failure.isEmpty());
        QCOMPARE(f->resultLines().size(), 1);
        QVERIFY(f->resultLines().first().startsWith(
            QStringLiteral("Fehler in der Datei: 'gone.prg' (")));
    }

    void pathTooLongForTheCatalogue()
    {
        // tPath holds 255 characters: a longer path cannot be stored. The reader with a handler
        // reports it as its own fault; the PRG reader's failure is reported by the batch.
        QString deep = m_root;
        while (deep.size() < 260)
            deep += QStringLiteral("/folder-with-a-long-name");
        QVERIFY(QDir().mkpath(deep));
        QVERIFY(
            test::writeFile(deep + QStringLiteral("/x.t64"),
                            test::t64("C64S tape image file", 1, "T", {{true, 100, "X"}}, 300)));
        QVERIFY(test::writeFile(deep + QStringLiteral("/y.prg"), "y"));
        put(QStringLiteral("z.prg"), "z");
        const QStringList lines = scan();
        QVERIFY(lines.contains(QStringLiteral("Fehler in der Datei: 'x.t64'")));
        bool prgReported = false;
        for (const QString& l : lines)
            prgReported =
                prgReported || l.startsWith(QStringLiteral("Fehler in der Datei: 'y.prg' ("));
        QVERIFY(prgReported);
        QCOMPARE(lines.last(), QStringLiteral("z.prg"));
        QCOMPARE(f->count(QStringLiteral("Category")), qint64(1));
    }
};

QTEST_GUILESS_MAIN(TestImportReliability)
#include "tst_importreliability.moc"
