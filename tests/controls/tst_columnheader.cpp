// The column editor "Spalten konfigurieren" by its buttons: on the live columns of a list over a
// real catalogue, and in "GB" mode on the GameBase column list of the settings. Its rules: the
// column that cannot be hidden (unless it is the name column), the enabled states, Apply, OK,
// and the defaults after asking.

#include "catalogue/Database.h"
#include "controls/ui/frmColumnHeader.h"
#include "controls/ui/SimpleReport.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"

#include <QApplication>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using namespace vd::controls;

namespace {

// The first visible column is the one that cannot be hidden; its name decides whether it is
// the settings' name column ("File") after all.
QString entries(const QString& firstName)
{
    return u"Select C64Files.ID,Category_File AS ParentKey,0 as Icon,tProgram as ["_qs + firstName +
           u"],tExtension as [Filetyp],lSize as [Blocks] From C64Files"_qs;
}

constexpr int kFirst = 3;
constexpr int kFiletyp = 4;
constexpr int kBlocks = 5;

int rowOf(const frmColumnHeader& d, const QString& key)
{
    for (int i = 0; i < d.editor().count(); ++i)
        if (d.editor().row(i).Key == key)
            return i;
    return -1;
}

void select(frmColumnHeader& d, const QString& key)
{
    d.lvHeaders()->setCurrentItem(d.lvHeaders()->topLevelItem(rowOf(d, key)));
}

} // namespace

class TestColumnHeader : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::CatalogueFixture> m_cat;
    std::unique_ptr<SimpleReport> m_list;
    platform::ScriptedDialogService m_dialogs;
    QString m_gbColumns;
    int m_gbChanges = 0;

    GBColumnSource gbSource()
    {
        GBColumnSource s;
        s.fields = {{u"FILE"_qs, u"Name"_qs},
                    {u"COMMENT"_qs, u"Kommentar"_qs},
                    {u"YEAR"_qs, u"Jahr"_qs},
                    {u"PUBLISHER"_qs, u"Herausgeber"_qs}};
        s.read = [this] { return m_gbColumns; };
        s.write = [this](const QString& v) { m_gbColumns = v; };
        s.changed = [this] { ++m_gbChanges; };
        return s;
    }

private slots:
    void init()
    {
        platform::setDialogService(&m_dialogs);
        m_dialogs.clear();
        m_gbColumns = u"Comment@@@Year"_qs;
        m_gbChanges = 0;
        m_cat = std::make_unique<test::CatalogueFixture>();
        m_list = std::make_unique<SimpleReport>();
        m_list->resize(500, 300);
        m_list->setDataBase(&m_cat->db());
        m_list->Setup(entries(u"Name"_qs), 3, 1, {}, -2, false, 0, -1);
        m_list->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));
    }
    void cleanup()
    {
        m_list.reset();
        m_cat.reset();
        platform::setDialogService(nullptr);
    }

    void liveColumnsHideShowAndApply()
    {
        frmColumnHeader d(m_list.get(), {}, {});
        // The columns hidden for good are not offered.
        QCOMPARE(d.lvHeaders()->topLevelItemCount(), 3);
        QVERIFY(!d.cmdApply()->isEnabled());
        QVERIFY(!d.cmdOk()->isEnabled());

        select(d, u"Blocks"_qs);
        QVERIFY(!d.cmdAction(2)->isEnabled());
        QVERIFY(d.cmdAction(3)->isEnabled());
        d.cmdAction(3)->click();
        QVERIFY(d.cmdAction(2)->isEnabled());
        QVERIFY(!d.cmdAction(3)->isEnabled());
        QVERIFY(d.cmdApply()->isEnabled());
        QCOMPARE(d.lvHeaders()->currentItem()->checkState(0), Qt::Unchecked);
        QVERIFY(!m_list->isColumnHidden(kBlocks)); // nothing written yet

        d.cmdApply()->click();
        QVERIFY(m_list->isColumnHidden(kBlocks));
        QVERIFY(m_list->Layout().contains(u"Blocks!Hidden=1;"_qs));
        QVERIFY(!d.cmdApply()->isEnabled());

        // Showing it again and OK: applied and closed.
        d.cmdAction(2)->click();
        QVERIFY(d.cmdOk()->isEnabled());
        d.cmdOk()->click();
        QCOMPARE(d.result(), int(QDialog::Accepted));
        QVERIFY(!m_list->isColumnHidden(kBlocks));
        // Taking a mark back to what the list has leaves nothing to apply.
        frmColumnHeader again(m_list.get(), {}, {});
        select(again, u"Filetyp"_qs);
        again.cmdAction(3)->click();
        again.cmdAction(2)->click();
        QVERIFY(!again.cmdApply()->isEnabled());
    }

    void theFirstColumnStaysUnlessItIsTheNameColumn_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<bool>("mayHide");
        QTest::newRow("another name") << u"Name"_qs << false;
        QTest::newRow("the name column") << u"File"_qs << true;
    }
    void theFirstColumnStaysUnlessItIsTheNameColumn()
    {
        QFETCH(QString, first);
        QFETCH(bool, mayHide);
        m_list->Setup(entries(first), 3, 1, {}, -2, false, 0, -1);
        frmColumnHeader d(m_list.get(), {}, {});
        select(d, first);
        // The check box follows the same rule as the button.
        d.lvHeaders()->currentItem()->setCheckState(0, Qt::Unchecked);
        QCOMPARE(d.editor().row(rowOf(d, first)).Hidden, mayHide ? 0 : 1);
        QCOMPARE(d.lvHeaders()->currentItem()->checkState(0),
                 mayHide ? Qt::Unchecked : Qt::Checked);
        if (mayHide) {
            QVERIFY(m_dialogs.calls.isEmpty());
        } else {
            QCOMPARE(m_dialogs.messages(),
                     QStringList{u"Diese Spalte kann nicht ausgeblendet werden!"_qs});
            QCOMPARE(m_dialogs.calls[0].title, u"Spalte ausblenden"_qs);
            QCOMPARE(m_dialogs.calls[0].style, int(platform::vbInformation));
        }
    }

    void defaultsShowEveryColumnAfterAsking()
    {
        m_list->setColumnHidden(kFiletyp, true);
        frmColumnHeader d(m_list.get(), {}, {});
        QCOMPARE(d.editor().row(rowOf(d, u"Filetyp"_qs)).Hidden, 0);
        m_dialogs.answer(platform::vbNo);
        d.cmdAction(4)->click();
        QVERIFY(m_list->isColumnHidden(kFiletyp));
        m_dialogs.answer(platform::vbYes);
        d.cmdAction(4)->click();
        QCOMPARE(m_dialogs.messages().size(), 2);
        QCOMPARE(m_dialogs.messages()[0],
                 u"Wollen Sie das Spalten-Layout auf die Standardwerte zurücksetzen?"_qs);
        QCOMPARE(m_dialogs.calls[0].title, u"Spalten-Layout"_qs);
        QCOMPARE(m_dialogs.calls[0].style, int(platform::vbYesNo | platform::vbQuestion));
        QVERIFY(!m_list->isColumnHidden(kFiletyp));
        QVERIFY(m_list->isColumnHidden(0)); // hidden for good stays hidden
        QCOMPARE(d.editor().row(rowOf(d, u"Filetyp"_qs)).Hidden, 1);
    }

    void gameBaseColumnsOfTheSettings()
    {
        frmColumnHeader d(m_list.get(), u"GB"_qs, gbSource());
        QCOMPARE(d.lvHeaders()->topLevelItemCount(), 4);
        QCOMPARE(d.editor().row(rowOf(d, u"FILE"_qs)).Hidden, 1);
        QCOMPARE(d.editor().row(rowOf(d, u"PUBLISHER"_qs)).Hidden, 0);
        QCOMPARE(d.lvHeaders()->topLevelItem(rowOf(d, u"YEAR"_qs))->text(0), u"Jahr"_qs);

        // The name column is always shown.
        select(d, u"FILE"_qs);
        d.cmdAction(3)->click();
        QCOMPARE(m_dialogs.messages(),
                 QStringList{u"Diese Spalte kann nicht ausgeblendet werden!"_qs});

        select(d, u"PUBLISHER"_qs);
        d.cmdAction(2)->click();
        select(d, u"COMMENT"_qs);
        d.cmdAction(3)->click();
        d.cmdApply()->click();
        QCOMPARE(m_gbColumns, u"YEAR@@@PUBLISHER"_qs);
        QCOMPARE(m_gbChanges, 1);
        QVERIFY(!m_list->isColumnHidden(kFirst)); // the live columns are not touched

        m_dialogs.answer(platform::vbYes);
        d.cmdAction(4)->click();
        QCOMPARE(m_gbColumns, u"COMMENT@@@YEAR"_qs);
        QCOMPARE(m_gbChanges, 2);
        QCOMPARE(d.editor().row(rowOf(d, u"COMMENT"_qs)).Hidden, 1);
        QCOMPARE(d.editor().row(rowOf(d, u"PUBLISHER"_qs)).Hidden, 0);
    }

    void editHeadersOpensTheDialogInEitherMode()
    {
        int rows = -1;
        auto closeSoon = [&rows] {
            QTimer::singleShot(0, [&rows] {
                if (auto* d = qobject_cast<frmColumnHeader*>(QApplication::activeModalWidget())) {
                    rows = d->lvHeaders()->topLevelItemCount();
                    d->reject();
                }
            });
        };
        closeSoon();
        m_list->EditHeaders();
        QCOMPARE(rows, 3);
        m_list->setGBColumnSource(gbSource());
        closeSoon();
        m_list->EditHeaders(u"GB"_qs);
        QCOMPARE(rows, 4);
    }
};

QTEST_MAIN(TestColumnHeader)
#include "tst_columnheader.moc"
