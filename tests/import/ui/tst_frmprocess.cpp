// The batch window on the offscreen platform: a folder import with its list, labels and the
// list redrawn every tenth row; Cancel and the window's close button while the work runs; the
// check with its hidden columns, cmdDelete and cmdNewPath; frmNewPath's refusals; the
// compaction that can't be closed; the GameBase connection in mode 7.

#include "app/Globals.h"
#include "catalogue/Catalogue.h"
#include "gamebase/GameBase.h"
#include "import/ui/frmNewPath.h"
#include "import/ui/frmProcess.h"
#include "support/C64ImageWriter.h"
#include "support/GameBaseImport.h"
#include "support/ImportFixture.h"

#include <memory>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

using namespace vd;
using import::frmProcess;

namespace {

QStringList listTexts(const QTableView* list, int column = frmProcess::colName)
{
    QStringList out;
    const QAbstractItemModel* model = list->model();
    for (int i = 0; i < model->rowCount(); ++i)
        out << model->index(i, column).data().toString();
    return out;
}

QVariant cell(const QTableView* list, int row, int column, int role)
{
    return list->model()->index(row, column).data(role);
}

int rowType(const QTableView* list, int row)
{
    return cell(list, row, frmProcess::colFiletyp, Qt::UserRole).toInt();
}

int rowCount(const QTableView* list)
{
    return list->model()->rowCount();
}

} // namespace

class TestFrmProcess : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::ImportFixture> f;
    QString m_root;

    QString put(const QString& relative, const QByteArray& bytes)
    {
        const QString path = m_root + QLatin1Char('/') + relative;
        QDir().mkpath(QFileInfo(path).absolutePath());
        if (!test::writeFile(path, bytes))
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }
    void putPrograms(int count)
    {
        for (int i = 0; i < count; ++i)
            put(QStringLiteral("p%1.prg").arg(i, 2, 10, QLatin1Char('0')), "pp");
    }
    // Runs the window's first activation to its end; the window stays open.
    static void runShown(frmProcess& form)
    {
        form.show();
        QTRY_VERIFY_WITH_TIMEOUT(form.workDone(), 20000);
    }
    // Queues `action` for the work's next yield once `files` files were added.
    void afterFiles(int files, std::function<void()> action)
    {
        auto seen = std::make_shared<int>(0);
        QObject::connect(&f->fm, &import::clsFileManager::ShowMessage, &f->fm,
                         [seen, files, action](const QString&, int type) {
                             if (type > 0 && ++*seen == files)
                                 QMetaObject::invokeMethod(qApp, action, Qt::QueuedConnection);
                         });
    }

private slots:
    void init()
    {
        f = std::make_unique<test::ImportFixture>();
        m_root = f->file(QStringLiteral("c64"));
        QDir().mkpath(m_root);
    }
    void cleanup() { f.reset(); }

    void folderImportShowsRowsAndLabels_data();
    void folderImportShowsRowsAndLabels();
    void listIsRedrawnEveryTenthRow();
    void cancelButtonStopsTheWalk();
    void closingWhileRunningAsks_data();
    void closingWhileRunningAsks();
    void checkWithAllFilesPresent();
    void checkOffersDeleteAndNewPath();
    void newPathDialogRefusesBadFolders();
    void compactionCannotBeClosed();
    void gameBaseConnection();
};

void TestFrmProcess::folderImportShowsRowsAndLabels_data()
{
    QTest::addColumn<qint64>("elapsed");
    QTest::addColumn<QString>("duration");
    QTest::newRow("59 s") << qint64(59999) << QStringLiteral("Dauer: 59s");
    QTest::newRow("60 s") << qint64(60000) << QStringLiteral("Dauer: 01:00");
}

void TestFrmProcess::folderImportShowsRowsAndLabels()
{
    QFETCH(qint64, elapsed);
    QFETCH(QString, duration);
    put(QStringLiteral("a.d64"),
        test::DiskWriter::d64().name("A").entries({{0x82, "ONE", 1}, {0x82, "TWO", 2}}).bytes());
    put(QStringLiteral("sub/b.prg"), "bb");
    f->fm.options.ImportFiles = QStringLiteral(".D64;.PRG");
    frmProcess form(f->fm);
    form.setMode(import::kModeAddFolder);
    form.setParam(m_root);
    QList<qint64> ticks{5000, 5000 + elapsed};
    form.setClock([&ticks] { return ticks.takeFirst(); });
    runShown(form);

    QCOMPARE(listTexts(form.lstResult),
             QStringList({"Optionen:", "Dateien: .D64;.PRG", "", "Neue Dateien:", m_root + "/",
                          "a.d64", m_root + "/sub/", "b.prg"}));
    QCOMPARE(rowType(form.lstResult, 0), import::kNoIcon);
    QCOMPARE(rowType(form.lstResult, 4), import::kMessageResult);
    QCOMPARE(rowType(form.lstResult, 5), 1);
    QCOMPARE(rowType(form.lstResult, 7), 4);
    QVERIFY(!cell(form.lstResult, 5, frmProcess::colFiletyp, Qt::DecorationRole)
                 .value<QIcon>()
                 .isNull());
    QVERIFY(cell(form.lstResult, 0, frmProcess::colFiletyp, Qt::DecorationRole)
                .value<QIcon>()
                .isNull());
    QCOMPARE(form.lstResult->model()->columnCount(), 2);
    QCOMPARE(form.lblProcess->text(), QStringLiteral("Hinzugefügte Dateien: 2\nHinzugefügte "
                                                     "C64-Files: 3\nDurchsuchte Dateien: 2"));
    QCOMPARE(form.lblStatus->text(), duration);
    QVERIFY(form.prgProcess->isHidden());
    QVERIFY(form.cmdDelete->isHidden());
    QVERIFY(form.cmdNewPath->isHidden());
    QCOMPARE(form.cmdCancel->text(), QStringLiteral("OK"));

    QTest::mouseClick(form.cmdCancel, Qt::LeftButton);
    QVERIFY(!form.isVisible());
    QCOMPARE(form.iMode(), import::kModeChanged);
    QCOMPARE(form.sResultText(), QStringLiteral("Hinzugefügte Dateien: 2 Hinzugefügte C64-Files: "
                                                "3 Durchsuchte Dateien: 2"));
    QVERIFY(f->dialogs.calls.isEmpty());
}

void TestFrmProcess::listIsRedrawnEveryTenthRow()
{
    putPrograms(25);
    frmProcess form(f->fm);
    form.setMode(import::kModeAddFolder);
    form.setParam(m_root);
    // What the list shows each time a file is added, before its row comes.
    QList<int> shown;
    QObject::connect(&f->fm, &import::clsFileManager::ShowMessage, &f->fm,
                     [&](const QString&, int type) {
                         if (type > 0)
                             shown << rowCount(form.lstResult);
                     });
    runShown(form);
    const int loadRows = 4; // "Optionen:", "Dateien: ...", "", "Neue Dateien:"
    QCOMPARE(shown.size(), 25);
    for (int count : shown)
        QCOMPARE((count - loadRows) % frmProcess::kRedrawRows, 0);
    QCOMPARE(shown.last(), loadRows + 20);
    QCOMPARE(rowCount(form.lstResult), loadRows + 26); // all rows at the end
}

void TestFrmProcess::cancelButtonStopsTheWalk()
{
    putPrograms(20);
    frmProcess form(f->fm);
    form.setMode(import::kModeAddFolder);
    form.setParam(m_root);
    afterFiles(3, [&form] {
        QCOMPARE(form.cmdCancel->text(), QStringLiteral("Abbrechen"));
        QTest::mouseClick(form.cmdCancel, Qt::LeftButton);
    });
    runShown(form);
    QVERIFY(form.bCancel());
    QVERIFY(form.isVisible()); // the button only stops the work
    QCOMPARE(form.iMode(), import::kModeChanged);
    QCOMPARE(form.lblProcess->text(), QStringLiteral("Hinzugefügte Dateien: 3\nHinzugefügte "
                                                     "C64-Files: 3\nDurchsuchte Dateien: 3"));
    QCOMPARE(f->count(QStringLiteral("Category")), qint64(3));
    QCOMPARE(form.cmdCancel->text(), QStringLiteral("OK"));
    QVERIFY(f->dialogs.calls.isEmpty());
}

void TestFrmProcess::closingWhileRunningAsks_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<qint64>("added");
    QTest::addColumn<bool>("visible");
    QTest::newRow("yes") << int(platform::vbYes) << qint64(3) << false;
    QTest::newRow("no") << int(platform::vbNo) << qint64(20) << true;
}

void TestFrmProcess::closingWhileRunningAsks()
{
    QFETCH(int, answer);
    QFETCH(qint64, added);
    QFETCH(bool, visible);
    putPrograms(20);
    frmProcess form(f->fm);
    form.setMode(import::kModeAddFolder);
    form.setParam(m_root);
    f->dialogs.answer(answer);
    afterFiles(3, [&form] { form.close(); });
    runShown(form);
    QCOMPARE(f->dialogs.messages(), QStringList({"Möchten Sie den Vorgang wirklich abbrechen?"}));
    QCOMPARE(f->dialogs.calls[0].style & platform::kButtonMask, int(platform::vbYesNo));
    QCOMPARE(form.isVisible(), visible);
    QCOMPARE(form.bCancel(), !visible);
    QCOMPARE(f->count(QStringLiteral("Category")), added);
    QCOMPARE(form.iMode(), import::kModeChanged);
    // Finished, the window closes without a question.
    form.close();
    QVERIFY(!form.isVisible());
    QCOMPARE(f->dialogs.calls.size(), 1);
}

void TestFrmProcess::checkWithAllFilesPresent()
{
    QVERIFY(f->load(put(QStringLiteral("a.prg"), "aa")) > 0);
    frmProcess form(f->fm);
    form.setMode(import::kModeCheck);
    runShown(form);
    QCOMPARE(listTexts(form.lstResult), QStringList({"Nicht gefundene Dateien:"}));
    QCOMPARE(form.lblStatus->text(),
             QStringLiteral("Status: Datenbank wurde überprüft:\nNicht gefundene Dateien: 0"));
    QVERIFY(form.cmdDelete->isHidden());
    QVERIFY(form.cmdNewPath->isHidden());
    QVERIFY(!form.prgProcess->isHidden());
    QCOMPARE(form.cmdCancel->text(), QStringLiteral("OK"));
    QCOMPARE(form.iMode(), import::kModeCheck);
    QTest::keyClick(&form, Qt::Key_Escape);
    QVERIFY(!form.isVisible());
    QVERIFY(f->dialogs.calls.isEmpty());
}

void TestFrmProcess::checkOffersDeleteAndNewPath()
{
    const QString moved = put(QStringLiteral("old/moved.prg"), "m");
    const QString gone = put(QStringLiteral("old/gone.prg"), "g");
    QVERIFY(f->load(moved) > 0);
    QVERIFY(f->load(gone) > 0);
    QVERIFY(f->load(put(QStringLiteral("kept.prg"), "k")) > 0);
    const QString target = m_root + QStringLiteral("/new");
    QDir().mkpath(target);
    QVERIFY(QFile::rename(moved, target + QStringLiteral("/moved.prg")));
    QVERIFY(QFile::remove(gone));

    frmProcess form(f->fm);
    form.setMode(import::kModeCheck);
    QStringList offered;
    form.setNewPathAsker([&](const QStringList& oldPaths, QString& oldPath, QString& newPath) {
        offered = oldPaths;
        oldPath.clear();
        newPath = target;
        return true;
    });
    runShown(form);
    QCOMPARE(listTexts(form.lstResult), QStringList({"Nicht gefundene Dateien:", gone, moved}));
    // The hidden columns of the missing rows.
    QCOMPARE(form.lstResult->model()->columnCount(), 6);
    for (int c = frmProcess::colKey; c <= frmProcess::colOrgType; ++c)
        QVERIFY(form.lstResult->isColumnHidden(c));
    QCOMPARE(listTexts(form.lstResult, frmProcess::colKey), QStringList({"", "2", "1"}));
    QCOMPARE(listTexts(form.lstResult, frmProcess::colFile),
             QStringList({"", "gone.prg", "moved.prg"}));
    QCOMPARE(rowType(form.lstResult, 1), import::kTypeMissing);
    QVERIFY(form.cmdDelete->isVisible());
    QVERIFY(form.cmdNewPath->isVisible());
    QCOMPARE(form.cmdCancel->text(), QStringLiteral("OK"));
    QCOMPARE(form.iMode(), import::kModeCheck);

    QTest::mouseClick(form.cmdNewPath, Qt::LeftButton);
    QCOMPARE(offered, QStringList({m_root + "/old/"}));
    QCOMPARE(cell(form.lstResult, 2, frmProcess::colName, Qt::DisplayRole).toString(),
             "Datei gefunden: " + moved);
    QCOMPARE(rowType(form.lstResult, 2), 4);
    QCOMPARE(form.lblProcess->text(),
             QStringLiteral("Nicht gefundene Dateien: 1\nWiedergefundene Dateien: 1"));
    QVERIFY(form.cmdDelete->isEnabled());

    QTest::mouseClick(form.cmdDelete, Qt::LeftButton);
    QCOMPARE(form.lblProcess->text(),
             QStringLiteral("Nicht gefundene Dateien: 0\nGelöschte Dateien: 1"));
    QCOMPARE(rowType(form.lstResult, 1), import::kTypeDeleted);
    QVERIFY(!form.cmdDelete->isEnabled());
    QVERIFY(!form.cmdNewPath->isEnabled());
    QCOMPARE(form.cmdCancel->text(), QStringLiteral("OK"));
    QCOMPARE(form.iMode(), import::kModeChanged);
    QCOMPARE(f->rows(QStringLiteral("Select tPath From Category order by ID")),
             QStringList({target + "/moved.prg", m_root + "/kept.prg"}));
    QTest::mouseClick(form.cmdCancel, Qt::LeftButton);
    QVERIFY(!form.isVisible());
}

void TestFrmProcess::newPathDialogRefusesBadFolders()
{
    import::frmNewPath form(QStringList{"/old/games/"});
    QCOMPARE(form.cboOldPath->count(), 2); // none, then the folder offered
    QCOMPARE(form.cboOldPath->itemText(1), QStringLiteral("/old/games/"));
    form.show();
    QTest::mouseClick(form.cmdOk, Qt::LeftButton);
    form.cboNewPath->setCurrentText(m_root + QStringLiteral("/nowhere"));
    QTest::mouseClick(form.cmdOk, Qt::LeftButton);
    QCOMPARE(f->dialogs.messages(), QStringList({"Bitte wählen Sie einen Ordner aus",
                                                 "Ungültiger Dateipfad: " + m_root + "/nowhere"}));
    QVERIFY(form.isVisible());
    QCOMPARE(form.iMode, 0);
    form.cboOldPath->setCurrentIndex(1);
    form.cboNewPath->setCurrentText(m_root);
    QTest::mouseClick(form.cmdOk, Qt::LeftButton);
    QCOMPARE(form.iMode, import::frmNewPath::kModeConfirmed);
    QCOMPARE(form.result(), int(QDialog::Accepted));
    QCOMPARE(form.oldPath(), QStringLiteral("/old/games/"));
    QCOMPARE(form.newPath(), m_root);
}

void TestFrmProcess::compactionCannotBeClosed()
{
    catalogue::CloseCatalogue();
    app::gDatabasePath = f->catalogue();
    frmProcess form(f->fm);
    form.setMode(import::kModeCompact);
    form.show();
    QCOMPARE(form.lblProcess->text(), QStringLiteral("Datenbank wird komprimiert..."));
    QVERIFY(form.lstResult->isHidden());
    QVERIFY(form.cmdCancel->isHidden());
    // Neither the close button nor Esc closes it, and nothing is asked.
    QVERIFY(!form.close());
    QTest::keyClick(&form, Qt::Key_Escape);
    QVERIFY(form.isVisible());
    // When the work is done, it closes itself.
    QTRY_VERIFY(!form.isVisible());
    QVERIFY(form.workDone());
    QCOMPARE(form.sResultText(), QStringLiteral("Datenbank wurde erfolgreich komprimiert!"));
    QVERIFY(QFile::exists(f->catalogue().left(f->catalogue().size() - 3) + QStringLiteral("OLD")));
    QVERIFY(f->dialogs.calls.isEmpty());
    app::gDatabasePath.clear();
}

void TestFrmProcess::gameBaseConnection()
{
    f.reset(); // the GameBase fixture brings its own catalogue
    test::GameBaseImport g;
    g.changeGameBase("Update Games Set FileToRun='SANXION.D64' where GA_Id=101");
    g.zip("games/Sanxion.zip", {{"SANXION.D64", {"SANXION", "HISCORE"}}});
    g.zip("games/Other.zip", {{"X.PRG", {}}});
    g.f.fm.options.ConnectFilesToGB = false;
    {
        import::ImportBatch batch(g.f.fm);
        batch.run(import::kModeAddFolder, g.f.file("games"));
    }
    g.f.fm.options.ConnectFilesToGB = true;
    frmProcess form(g.f.fm);
    form.setMode(import::kModeConnectGameBase);
    runShown(form);
    const QStringList rows = listTexts(form.lstResult);
    // The options without the GameBase search, which this mode is.
    QCOMPARE(rows.mid(0, 2), QStringList({"Optionen:", "Dateien: " + g.f.fm.options.ImportFiles}));
    QVERIFY2(rows.contains(QStringLiteral("Gamebase: Sanxion")),
             qPrintable(rows.join("|") + form.lblStatus->text() + form.process().failure));
    QCOMPARE(form.lblStatus->text(), QStringLiteral("Status: Datenbank wurde überprüft:\n"
                                                    "Hinzugefügte C64-Files: 0/0"));
    QCOMPARE(g.f.rows("Select tProgram,GB_ID From C64Files where not isNull(GB_ID)"),
             QStringList({"Sanxion|101"}));
    QCOMPARE(form.cmdCancel->text(), QStringLiteral("OK"));
    gamebase::CloseGameBase();
}

QTEST_MAIN(TestFrmProcess)
#include "tst_frmprocess.moc"
