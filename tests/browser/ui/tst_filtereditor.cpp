// The filter editor on the known collection, offscreen: names asked until free, the form stored
// in its order and the stored filter narrowing the rows, a filter read back into the inputs,
// the size box refusing letters, the compare buttons' lists, delete and reset; and in the main
// window a second click on the selected filter opening the editor, whose changes reach lvFilter
// and the view.

#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/FilterForm.h"
#include "browser/Filters.h"
#include "browser/ui/frmLegend.h"
#include "browser/ui/frmMain.h"
#include "browser/ui/frmMainFilter.h"
#include "browser/ViewBuilder.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "controls/ui/DBCombo.h"
#include "controls/ui/UserTree.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using browser::FilterCollection;
using browser::frmMainFilter;
using Kind = platform::ScriptedDialogService::Kind;

namespace {

void check(frmMainFilter& form, const QStringList& extensions)
{
    for (const QString& ext : extensions) {
        QTreeWidgetItem* node = form.fileNode(ext);
        QVERIFY2(node, qPrintable(ext));
        node->setCheckState(0, Qt::Checked);
    }
}

QStringList checkedNodes(frmMainFilter& form)
{
    QStringList out;
    for (const browser::FileTypeNode& node : form.formState().checked)
        out << node.text;
    return out;
}

// The values of the first column of a statement's rows, in order.
QStringList firstColumn(db::Database& db, const QString& sql)
{
    QStringList out;
    auto rs = db.openRecordset(sql, db::RecordsetType::Snapshot);
    while (!rs->eof()) {
        out << rs->value(0).toString();
        rs->moveNext();
    }
    return out;
}

QStringList byNumber(QStringList ids)
{
    std::sort(ids.begin(), ids.end(),
              [](const QString& a, const QString& b) { return a.toInt() < b.toInt(); });
    return ids;
}

} // namespace

class TestFilterEditor : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void namesAreAskedUntilFree();
    void applyStoresTheFormInItsOrder();
    void storedFilterNarrowsTheRows();
    void storedFilterReadsBackIntoTheForm();
    void sizeTakesDigitsOnly();
    void compareButtonsWalkTheirLists();
    void deleteResetAndLegend();
    void secondClickOnTheSelectedFilterOpensTheEditor();
    void deletingTheSelectedFilterTurnsTheFilterOff();

private:
    frmMainFilter& editor(qint32 key);
    browser::frmMain& openMain();
    // The rows of a view's statements for `filter`: the files of view 2 and the entries of
    // view 1, by ID.
    QStringList fileIds(const browser::clsFilter& filter);
    QStringList entryIds(const browser::clsFilter& filter);
    int treeRows() { return m_main->tree()->ItemCount(); }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<test::CatalogueFixture> m_cat;
    platform::ScriptedDialogService m_dialogs;
    FilterCollection m_filters;
    std::unique_ptr<frmMainFilter> m_form;
    std::unique_ptr<browser::frmMain> m_main;
};

void TestFilterEditor::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    app::setProgramFolder(m_home->path());
    QVERIFY(QDir().mkpath(app::gTempPath));
    m_dialogs.clear();
    platform::setDialogService(&m_dialogs);
    m_cat = std::make_unique<test::CatalogueFixture>();
    m_filters.clear();
    browser::addDefaultFilters(m_filters, QString());
}

void TestFilterEditor::cleanup()
{
    browser::setFilterEditorRunner(nullptr);
    m_form.reset();
    m_main.reset();
    catalogue::CloseCatalogue();
    app::gDatabasePath.clear();
    platform::setDialogService(nullptr);
    m_cat.reset();
    m_home.reset();
}

frmMainFilter& TestFilterEditor::editor(qint32 key)
{
    m_form = std::make_unique<frmMainFilter>(m_filters, &m_cat->db());
    m_form->InitForm(key);
    m_form->show();
    return *m_form;
}

browser::frmMain& TestFilterEditor::openMain()
{
    m_cat->close();
    QFile ini(app::gIniFile);
    if (ini.open(QIODevice::WriteOnly)) {
        ini.write("[MAIN]\r\nDatabase=" + m_cat->path().toUtf8() + "\r\nViewMode=1\r\n");
        ini.close();
    }
    app::reloadIni();
    m_main = std::make_unique<browser::frmMain>();
    m_main->resize(1000, 700);
    m_main->show();
    m_main->Form_Activate();
    return *m_main;
}

QStringList TestFilterEditor::fileIds(const browser::clsFilter& filter)
{
    browser::ViewInput in;
    in.view = browser::kViewMainFiles;
    in.filter = &filter;
    in.captions = browser::ViewCaptions::current();
    return byNumber(firstColumn(m_cat->db(), browser::BuildViewSql(in).recordSource));
}

QStringList TestFilterEditor::entryIds(const browser::clsFilter& filter)
{
    browser::ViewInput in;
    in.view = browser::kViewFiles;
    in.filter = &filter;
    in.captions = browser::ViewCaptions::current();
    return byNumber(firstColumn(m_cat->db(), browser::BuildViewSql(in).listLevels.value(0)));
}

void TestFilterEditor::namesAreAskedUntilFree()
{
    frmMainFilter& form = editor(0);
    QCOMPARE(form.filterBox()->count(), 5);
    QCOMPARE(form.filterBox()->currentIndex(), -1);

    // A name that exists is refused and the question repeats; a free one becomes the new
    // filter's name, which has no key until it is stored.
    m_dialogs.answerText(QStringLiteral("Disketten"));
    m_dialogs.answer(platform::vbOK);
    m_dialogs.answerText(QStringLiteral("Spiele"));
    form.toolButton(QStringLiteral("cmdNew"))->trigger();
    QCOMPARE(m_dialogs.calls.size(), 3);
    QCOMPARE(m_dialogs.calls[0].text,
             QStringLiteral("Bitte geben Sie eine Filter-Bezeichnung an:"));
    QCOMPARE(m_dialogs.calls[0].title, QStringLiteral("Neue Selektion"));
    QCOMPARE(m_dialogs.calls[1].kind, Kind::Message);
    QCOMPARE(m_dialogs.calls[1].text, QStringLiteral("Dieser Name besteht schon!"));
    QCOMPARE(form.currentName(), QStringLiteral("Spiele"));
    QCOMPARE(form.currentKey(), 0);
    QCOMPARE(form.filterBox()->currentText(), QStringLiteral("Spiele"));
    QCOMPARE(m_filters.count(), 5);

    // Renaming a stored filter: its own name is no clash, another's is.
    form.InitForm(4);
    m_dialogs.clear();
    QSignalSpy renamed(&form, &frmMainFilter::filterRenamed);
    m_dialogs.answerText(QStringLiteral("PDF"));
    m_dialogs.answer(platform::vbOK);
    m_dialogs.answerText(QStringLiteral("Programme"));
    form.toolButton(QStringLiteral("cmdEdit"))->trigger();
    QCOMPARE(m_dialogs.calls.size(), 3);
    QCOMPARE(m_dialogs.calls[0].text, QStringLiteral("Selektion ändern:"));
    QCOMPARE(m_dialogs.calls[0].title, QStringLiteral("Filter"));
    QCOMPARE(m_dialogs.calls[0].start, QStringLiteral("PRG + P00"));
    QCOMPARE(m_dialogs.calls[1].text, QStringLiteral("Dieser Name besteht schon!"));
    QCOMPARE(m_dialogs.calls[1].title, QStringLiteral("Selektion ändern"));
    QCOMPARE(m_filters.find(4)->Name, QStringLiteral("Programme"));
    QCOMPARE(renamed.count(), 1);

    // Cancelling leaves everything as it was.
    m_dialogs.answerCancel();
    form.toolButton(QStringLiteral("cmdNew"))->trigger();
    QCOMPARE(form.currentKey(), 4);
    QCOMPARE(form.currentName(), QStringLiteral("Programme"));
    QVERIFY(m_dialogs.scriptErrors.isEmpty());
}

void TestFilterEditor::applyStoresTheFormInItsOrder()
{
    frmMainFilter& form = editor(0);
    QSignalSpy stored(&form, &frmMainFilter::filterStored);
    // Filled bottom to top: the stored order is the designed one, not the order of typing.
    check(form, {"PRG", "D64", "RAR", "NFO"});
    QTest::keyClicks(form.sizeBox(), QStringLiteral("150"));
    QTest::keyClicks(form.pathBox(), QStringLiteral("zips"));
    // The first category of the list, chosen by the keyboard.
    QTest::keyClick(form.categoryBox()->lineEdit(), Qt::Key_Down);
    QCOMPARE(form.categoryBox()->Text(), QStringLiteral("Action"));
    QTest::keyClicks(form.extensionBox()->lineEdit(), QStringLiteral("PRG"));
    QTest::keyClicks(form.imageBox()->lineEdit(), QStringLiteral("SANX"));
    QTest::keyClicks(form.fileBox()->lineEdit(), QStringLiteral("Sanxion"));
    form.compressedBox()->setChecked(true);
    // Typing turned each condition on with the first word of its list.
    QCOMPARE(form.compareButton(browser::kComparePath)->text(), QStringLiteral("( )"));
    QCOMPARE(form.compareButton(browser::kCompareSize)->text(), QStringLiteral("="));
    QCOMPARE(form.compareButton(browser::kCompareCategory)->text(), QStringLiteral("="));
    form.compareButton(browser::kCompareSize)->click(); // "=" -> "<"

    m_dialogs.answerText(QStringLiteral("Alles"));
    form.applyButton()->click();
    QCOMPARE(m_dialogs.calls.size(), 1); // the name of the new filter
    // One above the highest key.
    QCOMPARE(form.currentKey(), 6);
    const browser::clsFilter* filter = m_filters.find(6);
    QVERIFY(filter);
    QCOMPARE(filter->Name, QStringLiteral("Alles"));
    QCOMPARE(stored.count(), 1);
    QCOMPARE(stored.at(0).at(0).toInt(), 6);
    // Typed names stay as typed; the category chosen from its list is stored by its key.
    const QString expected = QStringList{"tUnpackPath!@!<>!@!!@!",    "tFile!@!( )!@!Sanxion!@!",
                                         "tImage!@!( )!@!SANX!@!",    "tExtension!@!=!@!PRG!@!",
                                         "Category_User!@!=!@!20!@!", "tPath!@!( )!@!zips!@!",
                                         "lSize!@!<!@!150!@!",        "iFileType!@!=!@!1!@!",
                                         "iFileType!@!=!@!4!@!Or",    "Type!@!=!@!RAR!@!Or",
                                         "Type!@!=!@!NFO!@!Or"}
                                 .join("@@@");
    QCOMPARE(browser::joinFilterDefs(*filter), expected);
    QCOMPARE(form.filterBox()->currentText(), QStringLiteral("Alles"));

    // Stored again, the definitions are replaced, not added to.
    form.compareButton(browser::kCompareFile)->click(); // "( )" -> "="
    form.applyButton()->click();
    QCOMPARE(m_filters.count(), 6);
    QCOMPARE(m_filters.find(6)->Defs.size(), 11);
    QCOMPARE(m_filters.find(6)->Defs[1].Compare, QStringLiteral("="));
    QVERIFY(m_dialogs.scriptErrors.isEmpty());
}

void TestFilterEditor::storedFilterNarrowsTheRows()
{
    frmMainFilter& form = editor(0);
    m_dialogs.answerText(QStringLiteral("Test"));
    form.toolButton(QStringLiteral("cmdNew"))->trigger();
    const auto apply = [&] {
        form.applyButton()->click();
        return m_filters.find(form.currentKey());
    };

    // Files under a "zips" folder (the archive's path) that are disks or programs:
    // Paradroid.prg and Commando.d64; of their entries only COMMANDO is below 150 blocks.
    QTest::keyClicks(form.pathBox(), QStringLiteral("zips"));
    check(form, {"D64", "PRG"});
    QTest::keyClicks(form.sizeBox(), QStringLiteral("150"));
    form.compareButton(browser::kCompareSize)->click(); // "=" -> "<"
    const browser::clsFilter* filter = apply();
    QVERIFY(filter);
    QCOMPARE(fileIds(*filter), (QStringList{"3", "9"}));
    QCOMPARE(entryIds(*filter), (QStringList{"11"}));

    // Texts and pictures are looked for by the file's name: readme.txt (inside a ZIP), and
    // title.gif beside cover.png.
    form.toolButton(QStringLiteral("cmdReset"))->trigger();
    check(form, {"TXT"});
    QCOMPARE(fileIds(*apply()), (QStringList{"5"}));
    form.toolButton(QStringLiteral("cmdReset"))->trigger();
    check(form, {"GIF", "PNG"});
    QCOMPARE(fileIds(*apply()), (QStringList{"7", "10"}));

    // A user category chosen from the list: "=" and "<>" by its key (entries without one are
    // neither), "begins with" by its name, whose quote must reach the SQL doubled.
    form.toolButton(QStringLiteral("cmdReset"))->trigger();
    for (int i = 0; i < 3; ++i) // Action, Puzzle, Shoot'em Up
        QTest::keyClick(form.categoryBox()->lineEdit(), Qt::Key_Down);
    QCOMPARE(form.categoryBox()->Text(), QStringLiteral("Shoot'em Up"));
    QCOMPARE(form.compareButton(browser::kCompareCategory)->text(), QStringLiteral("="));
    filter = apply();
    QCOMPARE(filter->Defs.value(0).Field, QStringLiteral("Category_User"));
    QCOMPARE(entryIds(*filter), (QStringList{"1", "8"}));
    form.compareButton(browser::kCompareCategory)->click(); // ">"
    filter = apply();
    QCOMPARE(filter->Defs.value(0).Field, QStringLiteral("C.tCategory"));
    QCOMPARE(entryIds(*filter), (QStringList{"1", "8"}));
    form.compareButton(browser::kCompareCategory)->click(); // "<"
    form.compareButton(browser::kCompareCategory)->click(); // "<>"
    QCOMPARE(entryIds(*apply()), (QStringList{"4", "5"}));
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestFilterEditor::storedFilterReadsBackIntoTheForm()
{
    browser::clsFilter& filter = browser::AddFilter(m_filters, QStringLiteral("Mix"), 9);
    filter.Defs = browser::splitFilterDefs(
        QStringList{"tUnpackPath!@!<>!@!!@!", "tFile!@!=!@!Uridium.t64!@!", "tImage!@!>!@!URI!@!",
                    "C.tCategory!@!( )!@!Shoot!@!", "tPath!@!<>!@!tapes!@!", "lSize!@!<!@!100!@!",
                    "iFileType!@!=!@!6!@!", "Type!@!=!@!CAB!@!Or", "Type!@!=!@!png!@!Or"}
            .join("@@@"));
    const QString stored = browser::joinFilterDefs(filter);
    frmMainFilter& form = editor(9);
    QCOMPARE(form.filterBox()->currentText(), QStringLiteral("Mix"));
    QVERIFY(form.compressedBox()->isChecked());
    // A file name the list holds shows as chosen from it; a beginning stays as typed.
    QCOMPARE(form.fileBox()->Text(), QStringLiteral("Uridium.t64"));
    QCOMPARE(form.fileBox()->Value().toString(), QStringLiteral("Uridium.t64"));
    QCOMPARE(form.imageBox()->Text(), QStringLiteral("URI"));
    QVERIFY(form.imageBox()->Value().isNull());
    QCOMPARE(form.categoryBox()->Text(), QStringLiteral("Shoot"));
    QCOMPARE(form.pathBox()->text(), QStringLiteral("tapes"));
    QCOMPARE(form.sizeBox()->text(), QStringLiteral("100"));
    QCOMPARE(form.extensionBox()->currentText(), QString());
    const QString captions[browser::kCompareCount] = {">", "X", "<>", "<", "=", "( )"};
    for (int i = 0; i < browser::kCompareCount; ++i)
        QCOMPARE(form.compareButton(i)->text(), captions[i]);
    QCOMPARE(checkedNodes(form), (QStringList{"TAP", "CAB", "PNG"}));

    // Stored again unchanged, it is the same filter.
    form.applyButton()->click();
    QCOMPARE(browser::joinFilterDefs(*m_filters.find(9)), QString(stored).replace("png", "PNG"));

    // A category stored by its key shows its name; another filter replaces every input.
    browser::clsFilter& byKey = browser::AddFilter(m_filters, QStringLiteral("Action"), 10);
    byKey.Add("Category_User", "=", "20", "");
    byKey.Add("tExtension", "<>", "SEQ", "");
    form.InitForm(10);
    QCOMPARE(form.categoryBox()->Text(), QStringLiteral("Action"));
    QCOMPARE(form.extensionBox()->currentText(), QStringLiteral("SEQ"));
    QCOMPARE(form.compareButton(browser::kCompareExtension)->text(), QStringLiteral("<>"));
    QVERIFY(!form.compressedBox()->isChecked());
    QCOMPARE(form.fileBox()->Text(), QString());
    QCOMPARE(form.compareButton(browser::kCompareFile)->text(), QStringLiteral("X"));
    QVERIFY(checkedNodes(form).isEmpty());

    // Choosing in cboFilter reads that filter.
    const int disks = form.filterBox()->findText(QStringLiteral("Disketten"));
    form.filterBox()->setCurrentIndex(disks);
    emit form.filterBox()->activated(disks);
    QCOMPARE(form.currentKey(), 1);
    QCOMPARE(checkedNodes(form), QStringList{"D64"});
    QVERIFY(m_dialogs.messages().isEmpty());
}

void TestFilterEditor::sizeTakesDigitsOnly()
{
    frmMainFilter& form = editor(0);
    QLineEdit* size = form.sizeBox();
    QTest::keyClicks(size, QStringLiteral("1a2-3 "));
    QCOMPARE(size->text(), QStringLiteral("123"));
    size->insert(QStringLiteral("4k"));
    QCOMPARE(size->text(), QStringLiteral("123"));
    size->insert(QStringLiteral("45"));
    QCOMPARE(size->text(), QStringLiteral("12345"));
}

void TestFilterEditor::compareButtonsWalkTheirLists()
{
    frmMainFilter& form = editor(0);
    const QStringList lists[browser::kCompareCount] = {
        {"( )", "=", ">", "<", "<>"}, // tImage
        {"=", "<>"},                  // tExtension
        {"( )", "=", ">", "<", "<>"}, // tPath
        {"=", "<", ">", "<>"},        // lSize
        {"( )", "=", ">", "<", "<>"}, // tFile
        {"=", ">", "<", "<>", "( )"}, // Category_User
    };
    for (int i = 0; i < browser::kCompareCount; ++i) {
        QToolButton* button = form.compareButton(i);
        QStringList walked;
        for (qsizetype n = 0; n <= lists[i].size(); ++n) {
            QTest::mouseClick(button, Qt::LeftButton);
            walked << button->text();
        }
        QCOMPARE(walked, lists[i] + QStringList{"X"});
        QCOMPARE(button->toolTip(), QStringLiteral("keine Bedingung"));
        // Only "X" has the plain face.
        QVERIFY(button->styleSheet().isEmpty());
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(button->text(), lists[i].first());
        QVERIFY(!button->styleSheet().isEmpty());
    }
    QCOMPARE(form.compareButton(browser::kCompareFile)->toolTip(), QStringLiteral("enthält"));
    QCOMPARE(form.compareButton(browser::kCompareSize)->toolTip(),
             QStringLiteral("ist genau gleich"));
}

void TestFilterEditor::deleteResetAndLegend()
{
    frmMainFilter& form = editor(4);
    QSignalSpy removed(&form, &frmMainFilter::filterRemoved);
    QCOMPARE(checkedNodes(form), (QStringList{"PRG", "P00"}));

    // Reset clears the inputs; the filter stays as stored until it is applied.
    QTest::keyClicks(form.pathBox(), QStringLiteral("x"));
    form.compressedBox()->setChecked(true);
    form.toolButton(QStringLiteral("cmdReset"))->trigger();
    QVERIFY(checkedNodes(form).isEmpty());
    QVERIFY(form.pathBox()->text().isEmpty());
    QVERIFY(!form.compressedBox()->isChecked());
    QCOMPARE(form.compareButton(browser::kComparePath)->text(), QStringLiteral("X"));
    QCOMPARE(form.currentKey(), 4);
    QCOMPARE(m_filters.find(4)->Defs.size(), 2);

    // Delete takes the filter out and shows the first that is left.
    form.toolButton(QStringLiteral("cmdDelete"))->trigger();
    QVERIFY(!m_filters.find(4));
    QCOMPARE(m_filters.count(), 4);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(removed.at(0).at(0).toInt(), 4);
    QCOMPARE(form.currentKey(), 1);
    QCOMPARE(form.filterBox()->findText(QStringLiteral("PRG + P00")), -1);

    // The legend lists every compare word with its meaning.
    form.toolButton(QStringLiteral("cmdInfo"))->trigger();
    auto* legend = form.findChild<browser::frmLegend*>();
    QVERIFY(legend && legend->isVisible());
    QTreeWidget* rows = legend->list();
    QCOMPARE(rows->topLevelItemCount(), 6);
    QCOMPARE(rows->topLevelItem(0)->text(0), QStringLiteral("X"));
    QCOMPARE(rows->topLevelItem(0)->text(1), QStringLiteral("keine Bedingung"));
    QCOMPARE(rows->topLevelItem(5)->text(0), QStringLiteral("( )"));
    QCOMPARE(rows->topLevelItem(5)->text(1), QStringLiteral("enthält"));
}

void TestFilterEditor::secondClickOnTheSelectedFilterOpensTheEditor()
{
    browser::frmMain& main = openMain();
    QTreeWidget* filters = main.filterList();
    QSignalSpy built(&main, &browser::frmMain::viewBuilt);
    const QRect disks = filters->visualItemRect(filters->topLevelItem(1));
    QTest::mouseClick(filters->viewport(), Qt::LeftButton, {}, disks.center());
    QCOMPARE(main.filterKey(), 1);
    QCOMPARE(treeRows(), 1 + 3);
    QCOMPARE(built.count(), 1);

    // The second click opens the editor on that filter; PRG files join the D64s.
    QList<qint32> shown;
    browser::setFilterEditorRunner([&](frmMainFilter& form) {
        shown << form.currentKey();
        check(form, {"PRG"});
        form.okButton()->click();
    });
    QTest::mouseClick(filters->viewport(), Qt::LeftButton, {}, disks.center());
    QCOMPARE(shown, QList<qint32>{1});
    QCOMPARE(built.count(), 2);
    QCOMPARE(treeRows(), 1 + 4);
    QCOMPARE(filters->topLevelItem(1)->text(1), QStringLiteral("FILTER"));
    QCOMPARE(browser::joinFilterDefs(*browser::gFilters.find(1)),
             QStringLiteral("iFileType!@!=!@!1!@!@@@iFileType!@!=!@!4!@!Or"));

    // mnuFilter: a new filter gets its row; the view keeps its filter and is not rebuilt.
    m_dialogs.answerText(QStringLiteral("Bänder"));
    browser::setFilterEditorRunner([&](frmMainFilter& form) {
        shown << form.currentKey();
        form.toolButton(QStringLiteral("cmdNew"))->trigger();
        check(form, {"TAP"});
        form.okButton()->click();
    });
    main.menuEntry(QStringLiteral("mnuFilter"))->trigger();
    QCOMPARE(shown, (QList<qint32>{1, 1}));
    QCOMPARE(filters->topLevelItemCount(), 7);
    QTreeWidgetItem* tapes = filters->topLevelItem(6);
    QCOMPARE(tapes->text(0), QStringLiteral("Bänder"));
    QCOMPARE(tapes->text(1), QStringLiteral("6"));
    QCOMPARE(tapes->text(2), QStringLiteral("6"));
    QCOMPARE(built.count(), 2);

    // Leaving with "Beenden" after a rename: the row follows, the view stays.
    m_dialogs.answerText(QStringLiteral("Kassetten alt"));
    browser::setFilterEditorRunner([&](frmMainFilter& form) {
        form.InitForm(2);
        form.toolButton(QStringLiteral("cmdEdit"))->trigger();
        form.exitButton()->click();
    });
    main.menuEntry(QStringLiteral("mnuFilter"))->trigger();
    QCOMPARE(filters->topLevelItem(2)->text(0), QStringLiteral("Kassetten alt"));
    QCOMPARE(built.count(), 2);
    QVERIFY(m_dialogs.messages().isEmpty());
    QVERIFY(m_dialogs.scriptErrors.isEmpty());
}

void TestFilterEditor::deletingTheSelectedFilterTurnsTheFilterOff()
{
    browser::frmMain& main = openMain();
    QTreeWidget* filters = main.filterList();
    const QRect tapes = filters->visualItemRect(filters->topLevelItem(2));
    QTest::mouseClick(filters->viewport(), Qt::LeftButton, {}, tapes.center());
    QCOMPARE(main.filterKey(), 2);
    QCOMPARE(treeRows(), 1 + 1);
    QSignalSpy built(&main, &browser::frmMain::viewBuilt);
    browser::setFilterEditorRunner([](frmMainFilter& form) {
        form.toolButton(QStringLiteral("cmdDelete"))->trigger();
        form.exitButton()->click();
    });
    QTest::mouseClick(filters->viewport(), Qt::LeftButton, {}, tapes.center());
    QCOMPARE(main.filterKey(), 0);
    QCOMPARE(filters->topLevelItemCount(), 5);
    QCOMPARE(filters->currentItem(), filters->topLevelItem(0));
    QCOMPARE(filters->topLevelItem(2)->text(0), QStringLiteral("PDF"));
    QVERIFY(!browser::gFilters.find(2));
    QCOMPARE(built.count(), 1);
    QCOMPARE(treeRows(), 1 + test::CatalogueFixture::kFileCount);
}

QTEST_MAIN(TestFilterEditor)
#include "tst_filtereditor.moc"
