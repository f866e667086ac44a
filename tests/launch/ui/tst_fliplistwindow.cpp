// frmFlipList on a real catalogue: saving asks for a name once and adds ".vfl" only when the
// name lacks it, writes the list and catalogues it as a flip list; a catalogued list starts
// through its owner without writing any file, any other through the temporary list in Temp;
// the toolbar's editing commands and their enabling.

#include "app/Globals.h"
#include "catalogue/Database.h"
#include "launch/FlipFile.h"
#include "launch/ui/frmFlipList.h"
#include "support/C64ImageWriter.h"
#include "support/ImportFixture.h"

#include <memory>
#include <QAction>
#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using launch::frmFlipList;

namespace {

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

} // namespace

class TestFlipListWindow : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::ImportFixture> f;
    std::unique_ptr<frmFlipList> w;

    bool enabled(const char* key) { return w->command(QString::fromUtf8(key))->isEnabled(); }
    void select(int row) { w->files()->setCurrentItem(w->files()->topLevelItem(row)); }

private slots:
    void init()
    {
        f = std::make_unique<test::ImportFixture>();
        w = std::make_unique<frmFlipList>(&f->fm);
    }
    void cleanup()
    {
        w.reset();
        f.reset();
    }

    void saveAddsVflOnlyWhenMissing_data()
    {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<QString>("saved");
        QTest::newRow("no extension") << "game"
                                      << "game.vfl";
        QTest::newRow("upper-case VFL") << "game.VFL"
                                        << "game.VFL";
        QTest::newRow("lower-case vfl") << "game.vfl"
                                        << "game.vfl";
        QTest::newRow("vfl2") << "game.vfl2"
                              << "game.vfl2.vfl";
    }
    void saveAddsVflOnlyWhenMissing()
    {
        QFETCH(QString, chosen);
        QFETCH(QString, saved);
        w->FillList(0, QStringLiteral("/disks/side a.d64"));
        w->FillList(0, QStringLiteral("/disks/side b.d64"));
        QVERIFY(enabled("cmdSave"));
        f->dialogs.answerText(f->file(chosen));
        w->cmdSave();
        QCOMPARE(f->dialogs.pendingAnswers(), 0);
        QVERIFY(f->dialogs.scriptErrors.isEmpty());
        const QString path = f->file(saved);
        QCOMPARE(
            readAll(path),
            QByteArray("# Vice fliplist file\n\nUNIT 8\n/disks/side a.d64\n/disks/side b.d64"));
        QCOMPARE(w->listFile(), path);
        QCOMPARE(w->fileLabel()->text(), saved);
        QVERIFY(!enabled("cmdSave"));
        // Catalogued as a flip list of its own.
        QCOMPARE(f->rows(QStringLiteral("Select tPath,iFileType From Category")),
                 QStringList{path + QStringLiteral("|15")});

        // Saved again under the same name without a question; the catalogue follows.
        select(1);
        w->cmdUp();
        w->cmdSave();
        QCOMPARE(f->dialogs.calls.size(), 1);
        QCOMPARE(
            readAll(path),
            QByteArray("# Vice fliplist file\n\nUNIT 8\n/disks/side b.d64\n/disks/side a.d64"));
        QCOMPARE(f->count(QStringLiteral("Category")), 1);
    }

    void cancelledOrFailedSaveCataloguesNothing()
    {
        w->FillList(0, QStringLiteral("/disks/a.d64"));
        f->dialogs.answerCancel();
        w->cmdSave();
        QVERIFY(w->listFile().isEmpty());
        QCOMPARE(f->count(QStringLiteral("Category")), 0);

        f->dialogs.answerText(f->file(QStringLiteral("no/such/folder/list")));
        w->cmdSave();
        QCOMPARE(f->dialogs.messages().size(), 1);
        QVERIFY(f->dialogs.messages().first().startsWith(QStringLiteral("CreateFlipFile: ")));
        QVERIFY(w->listFile().isEmpty());
        QVERIFY(w->fileLabel()->text().isEmpty());
        QCOMPARE(f->count(QStringLiteral("Category")), 0);
        QVERIFY(enabled("cmdSave"));
    }

    void cataloguedListStartsThroughItsOwnerWritingNoFile()
    {
        const QString list = f->file(QStringLiteral("two.vfl"));
        QVERIFY(test::writeFile(list, "# Vice fliplist file\n\nUNIT 8\r\n/d/1.d64\r\n/d/2.d64"));
        const qint64 id = f->load(list);
        QVERIFY(id > 0);
        w->FillList(id, QString());
        QVERIFY(w->catalogued());
        QCOMPARE(w->paths(), (QStringList{"/d/1.d64", "/d/2.d64"}));
        QCOMPARE(w->fileLabel()->text(), QStringLiteral("two.vfl"));
        QVERIFY(!enabled("cmdSave")); // unchanged
        const QByteArray before = readAll(list);

        QSignalSpy starts(w.get(), &frmFlipList::PreviewFileStart);
        w->cmdStart();
        QCOMPARE(starts.size(), 1);
        QCOMPARE(starts.first().at(0).toLongLong(), -id);
        QVERIFY(!QFile::exists(app::gTempPath + QLatin1Char('/') + launch::kTempFlipFileName));
        QCOMPARE(readAll(list), before);
        QVERIFY(f->dialogs.calls.isEmpty());
    }

    void otherListStartsThroughTheTemporaryFile()
    {
        w->FillList(0, QStringLiteral("/d/1.d64"));
        w->FillList(0, QStringLiteral("/d/1.d64")); // the same disk twice is kept twice
        QSignalSpy starts(w.get(), &frmFlipList::PreviewFileStart);
        w->cmdStart();
        QCOMPARE(starts.size(), 0);
        QCOMPARE(readAll(app::gTempPath + QLatin1Char('/') + launch::kTempFlipFileName),
                 QByteArray("# Vice fliplist file\n\nUNIT 8\n/d/1.d64\n/d/1.d64"));
        QCOMPARE(f->count(QStringLiteral("Category")), 0); // starting catalogues nothing
    }

    void editingCommandsAndTheirEnabling()
    {
        QVERIFY(!enabled("cmdDelete") && !enabled("cmdUp") && !enabled("cmdDown"));
        QVERIFY(!enabled("cmdSave") && !enabled("cmdStart"));
        for (const char* p : {"/d/a.d64", "/d/b.zip", "/d/c.d81"})
            w->FillList(0, QString::fromUtf8(p));
        QCOMPARE(w->files()->topLevelItem(1)->text(frmFlipList::kColFile), QStringLiteral("b.zip"));
        QCOMPARE(w->files()->topLevelItem(1)->text(frmFlipList::kColIcon), QStringLiteral("ZIP"));
        QCOMPARE(w->files()->topLevelItem(2)->text(frmFlipList::kColIcon), QStringLiteral(".D81"));
        // The last added row is selected: down is off, up is on.
        QVERIFY(enabled("cmdUp") && !enabled("cmdDown") && enabled("cmdDelete"));

        select(0);
        QVERIFY(!enabled("cmdUp") && enabled("cmdDown"));
        w->cmdDown();
        QCOMPARE(w->paths(), (QStringList{"/d/b.zip", "/d/a.d64", "/d/c.d81"}));
        QCOMPARE(w->files()->currentItem()->text(frmFlipList::kColPath),
                 QStringLiteral("/d/a.d64"));
        w->cmdUp();
        w->cmdUp(); // at the top already: nothing moves
        QCOMPARE(w->paths(), (QStringList{"/d/a.d64", "/d/b.zip", "/d/c.d81"}));

        select(1);
        w->cmdDelete();
        QCOMPARE(w->paths(), (QStringList{"/d/a.d64", "/d/c.d81"}));
        QCOMPARE(w->files()->indexOfTopLevelItem(w->files()->currentItem()), 0);

        w->cmdNew();
        QVERIFY(w->paths().isEmpty());
        QVERIFY(w->listFile().isEmpty());
        QVERIFY(!enabled("cmdStart") && !enabled("cmdSave") && !enabled("cmdDelete"));
    }
};

QTEST_MAIN(TestFlipListWindow)
#include "tst_fliplistwindow.moc"
