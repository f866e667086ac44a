// The find dialog of a list over a real catalogue: its messages (no search text, an empty list,
// nothing further found, the question to start over), the wildcard it adds, both directions,
// and a number searched as a number.

#include "catalogue/Database.h"
#include "controls/ui/frmSearch.h"
#include "controls/ui/SimpleReport.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace vd;
using namespace vd::controls;

namespace {

const QString kEntries =
    u"Select C64Files.ID,Category_File AS ParentKey,0 as Icon,tProgram as [File],"
    "tExtension as [Filetyp],lSize as [Blocks] From C64Files"_qs;

constexpr int kFile = 3;
constexpr int kBlocks = 5;

const QString kAgain = u"Keine weiteren Einträge gefunden. Am Anfang der Liste weitersuchen?"_qs;
const QString kNoMore = u"Keine weiteren Einträge gefunden!"_qs;

} // namespace

class TestReportSearch : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::CatalogueFixture> m_cat;
    std::unique_ptr<SimpleReport> m_list;
    platform::ScriptedDialogService m_dialogs;

    QString current() { return m_list->cellText(m_list->SelectedIndex(), kFile); }

    // Types into the dialog and presses "Suchen"; whether a row was found.
    bool search(frmSearch& d, const QString& text)
    {
        auto* edit = d.findChild<QLineEdit*>(u"txtSearch"_qs);
        edit->clear();
        QTest::keyClicks(edit, text);
        return d.cmdSearch_Click();
    }

private slots:
    void init()
    {
        platform::setDialogService(&m_dialogs);
        m_dialogs.clear();
        m_cat = std::make_unique<test::CatalogueFixture>();
        m_list = std::make_unique<SimpleReport>();
        m_list->resize(500, 300);
        m_list->setDataBase(&m_cat->db());
        m_list->Setup(kEntries, 3, 1, {}, -2, false, 0, -1);
        m_list->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));
    }
    void cleanup()
    {
        m_list.reset();
        m_cat.reset();
        platform::setDialogService(nullptr);
    }

    void fieldListHoldsTheVisibleColumns()
    {
        m_list->setColumnHidden(4, true);
        frmSearch d(m_list.get());
        auto* fields = d.findChild<QComboBox*>(u"cboFields"_qs);
        QCOMPARE(fields->count(), 2);
        QCOMPARE(fields->itemText(0), u"File"_qs);
        QCOMPARE(fields->itemText(1), u"Blocks"_qs);
    }

    void findsOnwardsAndAsksBeforeStartingOver()
    {
        frmSearch d(m_list.get());
        QVERIFY(search(d, u"sanx"_qs));
        QCOMPARE(current(), u"SANXION"_qs);
        QVERIFY(search(d, u"sanx"_qs));
        QCOMPARE(current(), u"SANXION HISCORE"_qs);

        // Nothing further: asked, and "No" leaves the row where it is.
        m_dialogs.answer(platform::vbNo);
        QVERIFY(!search(d, u"sanx"_qs));
        QCOMPARE(m_dialogs.messages(), QStringList{kAgain});
        QCOMPARE(m_dialogs.calls[0].style, int(platform::vbYesNo | platform::vbQuestion));
        QCOMPARE(current(), u"SANXION HISCORE"_qs);
        // "Yes" starts at the top again.
        m_dialogs.answer(platform::vbYes);
        QVERIFY(search(d, u"sanx"_qs));
        QCOMPARE(current(), u"SANXION"_qs);
        // The user's own wildcard is kept as it is.
        m_list->setSelectedIndex(0);
        QVERIFY(search(d, u"*DASH"_qs));
        QCOMPARE(current(), u"BOULDER DASH"_qs);
    }

    void nothingFoundAnywhere()
    {
        m_list->setSelectedIndex(4);
        frmSearch d(m_list.get());
        m_dialogs.answer(platform::vbYes);
        QVERIFY(!search(d, u"ZAXXON"_qs));
        QCOMPARE(m_dialogs.messages(), (QStringList{kAgain, kNoMore}));
        QCOMPARE(m_list->SelectedIndex(), 4);
    }

    void upwardsFromTheCurrentRow()
    {
        m_list->setSelectedIndex(m_list->ItemCount() - 1);
        frmSearch d(m_list.get());
        d.setSearchUp(true);
        QVERIFY(search(d, u"s"_qs));
        QCOMPARE(current(), u"SANXION HISCORE"_qs);
        QVERIFY(search(d, u"s"_qs));
        QCOMPARE(current(), u"SANXION"_qs);
        m_dialogs.answer(platform::vbYes);
        QVERIFY(search(d, u"s"_qs));
        QCOMPARE(current(), u"SANXION HISCORE"_qs); // from the bottom again
    }

    void aNumberIsComparedAsANumber()
    {
        frmSearch d(m_list.get());
        d.setField(kBlocks);
        QVERIFY(search(d, u"150"_qs));
        QCOMPARE(current(), u"SANXION"_qs);
        QVERIFY(m_dialogs.calls.isEmpty());
    }

    void messagesForNoTextNoRowsAndNoList()
    {
        frmSearch d(m_list.get());
        QVERIFY(!search(d, u"   "_qs));
        QCOMPARE(m_dialogs.messages(),
                 QStringList{u"Es wurde kein gültiger Suchbegriff eingegeben!"_qs});

        m_dialogs.clear();
        m_list->setRecordSource(kEntries + u" Where lSize > 100000"_qs);
        QVERIFY(!search(d, u"a"_qs));
        QCOMPARE(m_dialogs.messages(),
                 QStringList{u"In der aktuellen Listenansicht sind keine Elemente vorhanden!"_qs});

        m_dialogs.clear();
        m_list.reset();
        QVERIFY(!search(d, u"a"_qs));
        QCOMPARE(m_dialogs.messages(),
                 QStringList{u"Interner Fehler: RaiseEvent fehlgeschlagen!"_qs});
    }

    void findDialogStartsWithTheCurrentValue()
    {
        m_list->setSelectedIndex(2);
        const QString value = m_list->cellText(2, kBlocks);
        m_list->FindDialog(false, true, kBlocks);
        auto* d = m_list->findChild<frmSearch*>();
        QVERIFY(d && d->isVisible());
        QCOMPARE(d->findChild<QLineEdit*>(u"txtSearch"_qs)->text(), value);
        QCOMPARE(d->findChild<QComboBox*>(u"cboFields"_qs)->currentText(), u"Blocks"_qs);
        d->close();
    }
};

QTEST_MAIN(TestReportSearch)
#include "tst_reportsearch.moc"
