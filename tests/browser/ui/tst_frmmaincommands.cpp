// The file and category commands from the main window's menus on the known collection,
// offscreen: deleting in the files view, categories created, renamed and deleted in view 3, the
// chronicle of a started file, the commands that need marked files, copying the list, and the
// properties dialog of a file renaming it on disk and computing its MD5 sum.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmC64File.h"
#include "browser/ui/frmCategory.h"
#include "browser/ui/frmFile.h"
#include "browser/ui/frmMain.h"
#include "browser/ui/frmResult.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/RowOps.h"
#include "controls/TreeItem.h"
#include "controls/ui/SimpleReport.h"
#include "controls/ui/UserTree.h"
#include "platform/ScriptedDialogService.h"
#include "support/C64ImageWriter.h"
#include "support/GameBaseFixture.h"
#include "support/WindowHome.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QCryptographicHash>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using browser::frmMain;

class TestFrmMainCommands : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::WindowHome> m_home;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;

    frmMain& open(int view)
    {
        m_form = std::make_unique<frmMain>();
        m_form->resize(1000, 700);
        m_form->show();
        m_form->Form_Activate();
        m_form->BuildView(view, 0, 0);
        return *m_form;
    }
    QAction* entry(const char* name) const { return m_form->menuEntry(QString::fromUtf8(name)); }
    QString info() const { return m_form->statusPanel(QStringLiteral("INFO"))->text(); }
    qint64 count(const QString& table, const QString& where) const
    {
        return catalogue::GetDbValue(QStringLiteral("Count(ID)"), table, where).toLongLong();
    }

private slots:
    void init()
    {
        m_home = std::make_unique<test::WindowHome>(m_dialogs);
        QVERIFY(m_home->isValid());
    }
    void cleanup()
    {
        m_form.reset();
        m_home.reset();
    }

    void filesViewDeletesMarkedFilesAndEmptyContainers()
    {
        frmMain& form = open(2);
        controls::SimpleReport* list = form.filesList();
        QCOMPARE(list->ItemCount(), qint64(test::CatalogueFixture::kFileCount));
        const qint64 uridium =
            list->Find(QStringLiteral("Disc_File"), QStringLiteral("Uridium.t64"), 0);
        QVERIFY(uridium >= 0);
        list->setSelectedIndex(uridium);
        QTRY_COMPARE(form.infoTag(), QStringLiteral("-2"));
        QVERIFY(entry("mnuDel")->isEnabled());
        QVERIFY(form.toolbarButton(QStringLiteral("Del"))->isEnabled());

        m_dialogs.answer(platform::vbYes);
        entry("mnuDel")->trigger();
        QCOMPARE(m_dialogs.messages(),
                 QStringList{"Anzahl der zu löschenden Dateien aus der Datenbank: 1"});
        // Uridium and its entry, and Empty.d81, which had no entry to begin with.
        QCOMPARE(count("Category", "iType=1"), qint64(8));
        QCOMPARE(count("Category", "ID in (2,8)"), qint64(0));
        QCOMPARE(count("C64Files", "Category_File=2"), qint64(0));
        QCOMPARE(info(), QStringLiteral("Gelöschte Dateien: 2"));
        QCOMPARE(list->ItemCount(), qint64(8));
    }

    void batchCommandsNeedMarkedFiles()
    {
        frmMain& form = open(2);
        form.filesList()->ClearSelection();
        QVERIFY(entry("mnuCreateMD5")->isEnabled());
        entry("mnuCreateMD5")->trigger();
        entry("mnuDirFilepath")->trigger();
        QCOMPARE(m_dialogs.messages(),
                 QStringList({"Bitte Dateien markieren...", "Bitte Dateien markieren..."}));
        QCOMPARE(m_dialogs.calls[0].style & platform::kIconMask, int(platform::vbInformation));
        // Outside the files view they are off.
        form.BuildView(1, 0, 0);
        QVERIFY(!entry("mnuCreateMD5")->isEnabled());
    }

    void copyAllPutsTheListOnTheClipboard()
    {
        frmMain& form = open(2);
        entry("mnuCopyAll")->trigger();
        const QStringList lines =
            QApplication::clipboard()->text().split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 1 + test::CatalogueFixture::kFileCount);
        QVERIFY2(lines[0].contains(QLatin1Char('\t')), qPrintable(lines[0]));
        QVERIFY(lines.filter(QStringLiteral("O'Brien's Disk.d64")).size() == 1);
        QCOMPARE(info(), QStringLiteral("Gesamte Liste kopieren -> Zwischenablage"));
        QVERIFY(form.filesList()->ItemCount() > 0);
    }

    void categoriesAreCreatedRenamedAndDeletedInViewThree()
    {
        frmMain& form = open(3);
        QVERIFY(entry("mnuNewCat")->isVisible());
        m_dialogs.answerText(QStringLiteral("Rock'n Roll"));
        entry("mnuNewCat")->trigger();
        const qint64 id =
            catalogue::GetDbValue("ID", "Category", "tCategory='Rock''n Roll'").toLongLong();
        QVERIFY(id > 10);
        controls::TreeItemP item = form.tree()->SelectedItem();
        QVERIFY(item);
        QCOMPARE(item->Caption, QStringLiteral("Rock'n Roll"));

        // Renaming to a taken name is refused; the node keeps its name.
        form.tree()->setFocus();
        m_dialogs.answerText(QStringLiteral("Action"));
        entry("mnuDetails")->trigger();
        QCOMPARE(m_dialogs.messages(), QStringList{"Diese Kategorie besteht schon!"});
        QCOMPARE(m_dialogs.calls[1].start, QStringLiteral("Rock'n Roll"));
        // Return on the node acts as its double click: the edit command.
        m_dialogs.answerText(QStringLiteral("Rock'n Roll Classics"));
        QTest::keyClick(form.tree(), Qt::Key_Return);
        QCOMPARE(m_dialogs.calls.size(), 4);
        QCOMPARE(form.tree()->SelectedItem()->Caption, QStringLiteral("Rock'n Roll Classics"));

        // Deleting "Shoot'em Up" keeps its two entries.
        form.tree()->setFocus();
        QVERIFY(form.tree()->SelectItem(QStringLiteral("21"), 2));
        QCOMPARE(form.tree()->SelectedItem()->Caption, QStringLiteral("Shoot'em Up"));
        QVERIFY(entry("mnuDel")->isEnabled());
        m_dialogs.answer(platform::vbYes);
        entry("mnuDel")->trigger();
        QCOMPARE(m_dialogs.messages().last(),
                 QStringLiteral("Möchten Sie die Kategorie 'Shoot'em Up' löschen?"));
        QCOMPARE(count("Category", "ID=21"), qint64(0));
        QCOMPARE(count("C64Files", "ID in (1,8)"), qint64(2));
        QCOMPARE(count("C64Files", "Category_User=21"), qint64(0));
    }

    void showingAMissingFileWarns()
    {
        frmMain& form = open(1);
        form.tree()->setFocus();
        QVERIFY(form.tree()->SelectItem(QStringLiteral("2"), 2));
        QVERIFY(entry("mnuFilepath")->isEnabled());
        entry("mnuFilepath")->trigger();
        QCOMPARE(m_dialogs.messages(), QStringList{"Datei nicht gefunden: /c64/tapes/Uridium.t64"});
        entry("mnuRefreshFile")->trigger();
        QCOMPARE(m_dialogs.messages().size(), 2);
        QCOMPARE(count("C64Files", "Category_File=2"), qint64(1));
    }

    void chronicleOfAStartedFileIsDeletedInViewFive()
    {
        frmMain& form = open(5);
        form.tree()->setFocus();
        QVERIFY(form.tree()->SelectItem(QStringLiteral("1"), 2));
        m_dialogs.answer(platform::vbYes);
        entry("mnuDel")->trigger();
        QCOMPARE(m_dialogs.messages().value(0).left(35),
                 QStringLiteral("Möchten Sie die Chronik der Datei '"));
        QCOMPARE(count("Category", "ID=1 and isNull(lStartCount)"), qint64(1));
        QCOMPARE(count("C64Files", "Category_File=1 and not isNull(tsLastStarted)"), qint64(0));
        QCOMPARE(count("C64Files", "Category_File=1"), qint64(3));
        QCOMPARE(count("C64Files", "ID=5 and lStartCount=5"), qint64(1)); // another file's
    }

    void filePropertiesRenameOnDiskAndComputeTheSum()
    {
        frmMain& form = open(2);
        const QString disk = m_home->filePath(QStringLiteral("Uridium.t64"));
        QVERIFY(test::writeFile(disk, "C64 tape image"));
        app::gDB->execute("Update Category Set tPath='" + disk + "' where ID=2");

        browser::frmFile dialog(*form.fileManager(), 2);
        QVERIFY(dialog.loaded());
        QCOMPARE(dialog.txtNew->text(), QStringLiteral("Uridium"));
        QCOMPARE(dialog.lblExtension->text(), QStringLiteral(".t64"));
        QCOMPARE(dialog.lblCount->text(), QStringLiteral("1"));
        QVERIFY(!dialog.cmdCopy->isEnabled());
        dialog.chkM5D->click();
        const QString md5 = QString::fromLatin1(
            QCryptographicHash::hash("C64 tape image", QCryptographicHash::Md5).toHex());
        QCOMPARE(dialog.lblmd5->text(), md5);
        dialog.cmdCopy->click();
        QCOMPARE(QApplication::clipboard()->text(), md5);

        dialog.txtNew->setText(QStringLiteral("Uridium II"));
        dialog.cmdOk->click();
        QVERIFY(dialog.saved());
        const QString renamed = m_home->filePath(QStringLiteral("Uridium II.t64"));
        QVERIFY(QFile::exists(renamed));
        QVERIFY(!QFile::exists(disk));
        QCOMPARE(catalogue::GetDbValue("tPath", "Category", "ID=2"), renamed);
        QCOMPARE(catalogue::GetDbValue("tHash", "Category", "ID=2"), md5);
        QVERIFY(m_dialogs.messages().isEmpty());
    }

    void entryAndCategoryDialogsStoreTheirChoice()
    {
        frmMain& form = open(1);
        // One entry: name, a new user category, a GameBase link that reaches its file.
        browser::frmC64File one(*form.fileManager(), {4});
        QVERIFY(one.loaded());
        QCOMPARE(one.txtFile->text(), QStringLiteral("URIDIUM"));
        QCOMPARE(one.cboCategory->currentText(), QStringLiteral("Action"));
        QCOMPARE(one.lblPath->text(), QStringLiteral("/c64/tapes/Uridium.t64"));
        one.txtFile->setText(QStringLiteral("URIDIUM+"));
        one.cboCategory->setCurrentText(QStringLiteral("Shooter's"));
        one.cboGB->setCurrentText(QStringLiteral("303"));
        one.cmdOk->click();
        QVERIFY(one.saved());
        const qint64 cat =
            catalogue::GetDbValue("ID", "Category", "tCategory='Shooter''s'").toLongLong();
        QVERIFY(cat > 22);
        QCOMPARE(catalogue::GetDbValue("tProgram & '|' & Category_User & '|' & GB_ID", "C64Files",
                                       "ID=4"),
                 "URIDIUM+|" + QString::number(cat) + "|303");
        QCOMPARE(catalogue::GetDbValue("GB_ID", "Category", "ID=2"), QStringLiteral("303"));

        // Several entries: the name field is hidden and the names stay.
        browser::frmC64File several(*form.fileManager(), {1, 2});
        QVERIFY(several.txtFile->isHidden());
        QCOMPARE(several.lblName->text(), QStringLiteral("Anzahl Files: 2"));
        several.cboCategory->setCurrentText(QStringLiteral("Puzzle"));
        several.cmdOk->click();
        QCOMPARE(count("C64Files", "ID in (1,2) and Category_User=22"), qint64(2));
        QCOMPARE(catalogue::GetDbValue("tProgram", "C64Files", "ID=2"),
                 QStringLiteral("SANXION HISCORE"));

        // Whole files: "Löschen" takes the category from every entry of the files.
        browser::frmCategory files(*form.fileManager(), {1, 6});
        QCOMPARE(files.lblCount->text(), QStringLiteral("Anzahl Files: 2"));
        QCOMPARE(files.cboCategory->itemText(0), QStringLiteral("Löschen"));
        files.cboCategory->setCurrentIndex(0);
        files.cmdOk->click();
        QVERIFY(files.saved());
        QCOMPARE(count("C64Files", "Category_File in (1,6) and not isNull(Category_User)"),
                 qint64(0));
        QCOMPARE(count("C64Files", "ID=4 and Category_User=" + QString::number(cat)), qint64(1));
    }

    void resultChoiceIsWrittenBackOnlyByApply()
    {
        test::GameBaseFixture gb;
        QList<browser::ResultItem> genres =
            browser::frmResult::genreItems(gb.db(), {QStringLiteral("Action")});
        std::sort(genres.begin(), genres.end(),
                  [](const auto& a, const auto& b) { return a.name < b.name; });
        QCOMPARE(genres.size(), 3); // "Action" once, the empty genre left out
        QCOMPARE(genres[0].name, QStringLiteral("Action"));
        QVERIFY(genres[0].checked);
        QCOMPARE(genres[2].name, QStringLiteral("Shoot'em Up"));
        QVERIFY(!genres[2].checked);

        browser::frmResult cancelled(QStringLiteral("Genres"), genres);
        cancelled.lvHeaders->topLevelItem(2)->setCheckState(0, Qt::Checked);
        cancelled.cmdCancel->click();
        QVERIFY(!genres[2].checked);

        browser::frmResult applied(QStringLiteral("Genres"), genres);
        QCOMPARE(applied.lvHeaders->topLevelItem(0)->checkState(0), Qt::Checked);
        applied.lvHeaders->topLevelItem(0)->setCheckState(0, Qt::Unchecked);
        applied.lvHeaders->topLevelItem(2)->setCheckState(0, Qt::Checked);
        applied.cmdApply->click();
        QCOMPARE(applied.result(), int(QDialog::Accepted));
        QVERIFY(!genres[0].checked);
        QVERIFY(!genres[1].checked);
        QVERIFY(genres[2].checked);
    }
};

QTEST_MAIN(TestFrmMainCommands)
#include "tst_frmmaincommands.moc"
