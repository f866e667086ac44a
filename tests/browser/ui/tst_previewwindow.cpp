// The preview in the main window and in frmPreview, offscreen on the known collection: a
// selected disk shows its directory in the C64's colours and glyphs, another entry of the same
// disk only moves the selection, missing files and archives name their path, pictures fit the
// pane and scroll in the window, a double click or Enter in the window starts the entry, and a
// flip list opens its own window.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/ui/frmMain.h"
#include "browser/ui/frmPreview.h"
#include "browser/ui/PictureFile.h"
#include "browser/ui/PreviewPane.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "controls/ui/UserTree.h"
#include "formats/PetsciiGlyphs.h"
#include "launch/ui/frmFlipList.h"
#include "platform/ScriptedDialogService.h"
#include "support/C64ImageWriter.h"
#include "support/CatalogueFixture.h"

#include <QAction>
#include <QDir>
#include <QFontDatabase>
#include <QImage>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyledItemDelegate>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using browser::frmMain;
using browser::PreviewPane;

namespace {

constexpr qint64 kFlipListId = 30;

QStringList rows(const PreviewPane* pane, int column)
{
    QStringList out;
    for (int i = 0; i < pane->list()->topLevelItemCount(); ++i)
        out << pane->list()->topLevelItem(i)->text(column);
    return out;
}

} // namespace

class TestPreviewWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void diskSelectionShowsItsDirectory();
    void sameDiskOnlyMovesTheSelection();
    void missingFileAndArchiveNameTheirPath();
    void pictureFitsThePaneAndScrollsInTheWindow();
    void pictureMessages_data();
    void pictureMessages();
    void windowStartsTheEntryOnDoubleClickAndEnter();
    void nothingHappensWithBothPreviewsOff();
    void flipListOpensItsWindow();

private:
    frmMain& open();
    void select(qint64 tag, bool force = false);
    QString file(const QString& name) const { return m_home->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<test::CatalogueFixture> m_cat;
    platform::ScriptedDialogService m_dialogs;
    std::unique_ptr<frmMain> m_form;
};

void TestPreviewWindow::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    app::setProgramFolder(m_home->path());
    QVERIFY(QDir().mkpath(app::gTempPath));
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
    m_cat = std::make_unique<test::CatalogueFixture>();
    // A flip list beside the known collection, its file on disk.
    const QString list = file(QStringLiteral("game.vfl"));
    QVERIFY(
        test::writeFile(list, "# Vice fliplist file\n\nUNIT 8\n/disks/side a.d64\n/disks/b.d64"));
    test::appendRow(m_cat->db(), QStringLiteral("Category"),
                    {{"ID", kFlipListId},
                     {"iType", 1},
                     {"tCategory", "game.vfl"},
                     {"tFile", "game.vfl"},
                     {"tPath", list},
                     {"iFileType", 15}});
    m_cat->close();
    QFile ini(app::gIniFile);
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[MAIN]\r\nDatabase=" + m_cat->path().toUtf8() +
              "\r\nViewMode=1\r\nPreview=1\r\nPreviewWindow=0\r\n");
    ini.close();
    app::reloadIni();
}

void TestPreviewWindow::cleanup()
{
    m_form.reset();
    catalogue::CloseCatalogue();
    app::gDatabasePath.clear();
    platform::setDialogService(nullptr);
    m_cat.reset();
    m_home.reset();
}

frmMain& TestPreviewWindow::open()
{
    m_form = std::make_unique<frmMain>();
    m_form->resize(1000, 700);
    m_form->show();
    m_form->Form_Activate();
    return *m_form;
}

void TestPreviewWindow::select(qint64 tag, bool force)
{
    m_form->statusPanel(QStringLiteral("INFO"))->setProperty("tag", QString::number(tag));
    m_form->ShowPreview(force);
}

void TestPreviewWindow::diskSelectionShowsItsDirectory()
{
    frmMain& form = open();
    // Selecting the file node in the tree reaches the preview through the selection handling.
    QVERIFY(form.tree()->SelectItem(QStringLiteral("1"), 2));
    const PreviewPane* pane = form.previewPane();
    QCOMPARE(pane->container(), 1);
    QCOMPARE(pane->label()->text(), QStringLiteral("Sanxion.d64"));
    QCOMPARE(
        rows(pane, PreviewPane::kColFile),
        (QStringList{"\"SANXION         \"", "\"SANXION\"", "\"SANXION HISCORE\"", "\"MY_GAME\""}));
    QCOMPARE(rows(pane, PreviewPane::kColSize), (QStringList{"0", "150", "2", "33"}));
    QCOMPARE(rows(pane, PreviewPane::kColExtension), (QStringList{"", "PRG", "SEQ", "PRG"}));
    QCOMPARE(rows(pane, PreviewPane::kColKey), (QStringList{"0", "1", "2", "3"}));
    QVERIFY(pane->list()->isVisible());
    QVERIFY(!pane->pictureArea()->isVisible());

    // The colours of the settings (BGR): light blue on C64 blue, white selection.
    const QPalette colours = pane->list()->palette();
    QCOMPARE(colours.color(QPalette::Base), QColor(53, 40, 121));
    QCOMPARE(colours.color(QPalette::Text), QColor(0x80, 0x80, 0xFF));
    QCOMPARE(colours.color(QPalette::Highlight), QColor(255, 255, 255));

    // With the C-64 family the names are drawn through the glyph table; the rows keep them.
    if (!QFontDatabase::hasFamily(formats::kC64GlyphFamily))
        QSKIP("the C-64 font family is not installed");
    QVERIFY(pane->drawsC64Glyphs());
    auto* delegate = qobject_cast<QStyledItemDelegate*>(pane->list()->itemDelegate());
    QVERIFY(delegate);
    const QString stored = QString::fromLatin1("\"\xb0\xc3\xae\"");
    QCOMPARE(delegate->displayText(stored, QLocale()), formats::toC64Glyphs(stored));
    QVERIFY(delegate->displayText(stored, QLocale()) != stored);
}

void TestPreviewWindow::sameDiskOnlyMovesTheSelection()
{
    frmMain& form = open();
    select(-1);
    const PreviewPane* pane = form.previewPane();
    QCOMPARE(pane->list()->topLevelItemCount(), 4);
    // The catalogue changes behind the preview; another entry of the disk on show doesn't read
    // it again, it only selects its row.
    app::gDB->execute(QStringLiteral("Delete From C64Files where ID=3"));
    select(2);
    QCOMPARE(pane->list()->topLevelItemCount(), 4);
    QCOMPARE(pane->selectedKey(), 2);
    select(1);
    QCOMPARE(pane->selectedKey(), 1);
    select(-1); // the disk itself: no row of it
    QCOMPARE(pane->selectedKey(), 0);
    QCOMPARE(pane->list()->topLevelItemCount(), 4);
    // Forced, or another container, it reads anew.
    select(2, true);
    QCOMPARE(pane->list()->topLevelItemCount(), 3);
    QCOMPARE(pane->selectedKey(), 2);
    select(4); // URIDIUM on the tape: no header row
    QCOMPARE(pane->container(), 2);
    QCOMPARE(rows(pane, PreviewPane::kColFile), QStringList{"\"URIDIUM\""});
    QCOMPARE(rows(pane, PreviewPane::kColSize), QStringList{"180 Block(s)"});
}

void TestPreviewWindow::missingFileAndArchiveNameTheirPath()
{
    frmMain& form = open();
    const PreviewPane* pane = form.previewPane();
    select(-7); // cover.png, not on disk
    QCOMPARE(pane->label()->text(), QStringLiteral("Datei nicht gefunden: /c64/pics/cover.png"));
    QVERIFY(!pane->list()->isVisible());
    QVERIFY(!pane->pictureArea()->isVisible());
    select(7); // readme.txt inside a missing archive: the archive is named
    QCOMPARE(pane->label()->text(),
             QStringLiteral("Datei nicht gefunden: /c64/zips/Paradroid.zip"));

    // The text comes when the file is there.
    const QString text = file(QStringLiteral("readme.txt"));
    QVERIFY(test::writeFile(text, "first\r\nsecond\r\n"));
    app::gDB->execute(
        QStringLiteral("Update Category Set tPath='%1', tUnpackPath=Null where ID=5").arg(text));
    select(7, true);
    QCOMPARE(pane->label()->text(), QStringLiteral("readme.txt"));
    QCOMPARE(rows(pane, 0), (QStringList{"first", "second"}));
    QVERIFY(pane->list()->isVisible());
    QVERIFY(!pane->drawsC64Glyphs()); // a text's bytes are its own letters
}

void TestPreviewWindow::pictureFitsThePaneAndScrollsInTheWindow()
{
    QImage image(1600, 1200, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QString png = file(QStringLiteral("big.png"));
    QVERIFY(image.save(png));
    frmMain& form = open();
    app::gDB->execute(QStringLiteral("Update Category Set tPath='%1' where ID=7").arg(png));
    form.menuEntry(QStringLiteral("mnuOpenPreview"))->trigger();
    browser::frmPreview* window = form.previewWindow();
    QVERIFY(window && window->isVisible());
    window->resize(400, 300);
    select(-7);
    const PreviewPane* pane = form.previewPane();
    QCOMPARE(pane->label()->text(), QStringLiteral("cover.png"));
    QVERIFY(pane->pictureArea()->isVisible());
    QVERIFY(!pane->list()->isVisible());
    const QPixmap fitted = pane->picture()->pixmap();
    QVERIFY(!fitted.isNull());
    QVERIFY(fitted.width() <= pane->pictureArea()->width());
    QVERIFY(fitted.height() <= pane->pictureArea()->height());
    QCOMPARE(fitted.width() * 3, fitted.height() * 4); // proportions kept

    QCOMPARE(window->windowTitle(), QStringLiteral("cover.png"));
    const QScrollArea* area = window->pane()->pictureArea();
    QCOMPARE(window->pane()->picture()->pixmap().size(), QSize(1600, 1200));
    QTRY_VERIFY(area->horizontalScrollBar()->maximum() > 0);
    QVERIFY(area->verticalScrollBar()->maximum() > 0);
}

void TestPreviewWindow::pictureMessages_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    QImage tiny(4, 4, QImage::Format_RGB32);
    tiny.fill(Qt::blue);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    tiny.save(&buffer, "PNG");
    QTest::newRow("empty") << "a.png" << QByteArray() << "Leere Datei";
    QTest::newRow("unknown extension") << "a.xyz" << png << "Bildformat wird nicht unterstützt";
    QTest::newRow("broken") << "a.png" << QByteArray("\x89PNG broken")
                            << "Bitmap kann nicht aus Bild-Datei erstellt werden";
    QTest::newRow("upper-case extension") << "a.PNG" << png << "";
    QTest::newRow("content decides") << "a.gif" << png << "";
}

void TestPreviewWindow::pictureMessages()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    const QString path = file(name);
    QVERIFY(test::writeFile(path, bytes));
    QString shown = QStringLiteral("unset");
    const QImage image = browser::LoadPictureFile(path, shown);
    QCOMPARE(shown, message);
    QCOMPARE(image.isNull(), !message.isEmpty());
}

void TestPreviewWindow::windowStartsTheEntryOnDoubleClickAndEnter()
{
    frmMain& form = open();
    form.menuEntry(QStringLiteral("mnuOpenPreview"))->trigger();
    browser::frmPreview* window = form.previewWindow();
    QVERIFY(window);
    select(2);
    QTreeWidget* list = window->pane()->list();
    QCOMPARE(window->windowTitle(), QStringLiteral("Sanxion.d64"));
    QCOMPARE(rows(window->pane(), PreviewPane::kColKey), (QStringList{"0", "1", "2", "3"}));
    QCOMPARE(window->pane()->selectedKey(), 2);

    QSignalSpy starts(window, &browser::frmPreview::PreviewFileStart);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(starts.size(), 1);
    QCOMPARE(starts.takeFirst().at(0).toInt(), 2);

    QTreeWidgetItem* third = list->topLevelItem(3);
    const QPoint at = list->visualItemRect(third).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
    QCOMPARE(starts.size(), 1);
    QCOMPARE(starts.takeFirst().at(0).toInt(), 3);

    // The header row starts nothing.
    list->setCurrentItem(list->topLevelItem(0));
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(starts.size(), 0);

    // Closing the window unchecks its menu entry.
    window->close();
    QVERIFY(!form.menuEntry(QStringLiteral("mnuOpenPreview"))->isChecked());
}

void TestPreviewWindow::nothingHappensWithBothPreviewsOff()
{
    frmMain& form = open();
    select(-1);
    form.menuEntry(QStringLiteral("mnuPreview"))->trigger(); // off
    QVERIFY(!form.menuEntry(QStringLiteral("mnuPreview"))->isChecked());
    select(-2, true);
    QCOMPARE(form.previewPane()->container(), 1);
    form.menuEntry(QStringLiteral("mnuPreview"))->trigger(); // on again: refreshed at once
    QCOMPARE(form.previewPane()->container(), 2);
}

void TestPreviewWindow::flipListOpensItsWindow()
{
    frmMain& form = open();
    select(-kFlipListId);
    launch::frmFlipList* window = form.flipListWindow();
    QVERIFY(window && window->isVisible());
    QVERIFY(window->catalogued());
    QCOMPARE(window->paths(), (QStringList{"/disks/side a.d64", "/disks/b.d64"}));
    QCOMPARE(form.previewPane()->container(), 0); // the pane keeps what it had

    // The file gone: the window opens with no list.
    QVERIFY(QFile::remove(file(QStringLiteral("game.vfl"))));
    select(-kFlipListId, true);
    QVERIFY(window->paths().isEmpty());
    QVERIFY(!window->catalogued());

    // mnuAddToFlipList adds the selected disk's file.
    QVERIFY(form.tree()->SelectItem(QStringLiteral("1"), 2));
    QVERIFY(form.menuEntry(QStringLiteral("mnuAddToFlipList"))->isEnabled());
    form.menuEntry(QStringLiteral("mnuAddToFlipList"))->trigger();
    QCOMPARE(window->paths(), QStringList{"/c64/disks/Sanxion.d64"});
}

QTEST_MAIN(TestPreviewWindow)
#include "tst_previewwindow.moc"
