// The database combo box on a real catalogue: the statement rebuilt for a search (GROUP BY takes
// the condition into HAVING, IgnoreWhere drops the statement's own WHERE, UseDelFlag opens a
// WHERE of its own), value and text, completion while typing, and the drop-down: its size, its
// header menu, and closing on any click outside it.

#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "controls/ui/DBCombo.h"
#include "controls/ui/frmDBCombo.h"
#include "controls/ui/SimpleReport.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>
#include <QtTest>
#include <QVBoxLayout>

using namespace vd;
using namespace vd::controls;

namespace {

const QString kFiles = u"SELECT F.ID, F.tCategory AS Name, F.iFileType FROM Category AS F "
                       "WHERE F.iType=1 ORDER BY F.tCategory"_qs;

QStringList column(db::Database& db, const QString& sql, int field = 0)
{
    QStringList out;
    auto rs = db.openRecordset(sql, db::RecordsetType::Snapshot);
    for (; !rs->eof(); rs->moveNext())
        out << rs->value(field).toString();
    return out;
}

} // namespace

class TestDBCombo : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::CatalogueFixture> m_cat;
    std::unique_ptr<QWidget> m_form;
    DBCombo* m_combo = nullptr;
    QPushButton* m_other = nullptr;
    platform::ScriptedDialogService m_dialogs;

    SimpleReport* list() { return m_combo->dropDownForm()->srpCombo(); }

private slots:
    void init()
    {
        platform::setDialogService(&m_dialogs);
        m_dialogs.clear();
        m_cat = std::make_unique<test::CatalogueFixture>();
        m_form = std::make_unique<QWidget>();
        auto* layout = new QVBoxLayout(m_form.get());
        m_combo = new DBCombo(m_form.get());
        m_other = new QPushButton(u"Other"_qs, m_form.get());
        layout->addWidget(m_combo);
        layout->addWidget(m_other);
        layout->addStretch();
        m_form->resize(300, 400);
        m_combo->props().ValueField = u"ID"_qs;
        m_combo->props().TextField = u"Name"_qs;
        m_combo->setRecordSource(kFiles);
        m_combo->setDataBase(&m_cat->db());
        m_form->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_form.get()));
    }
    void cleanup()
    {
        m_form.reset();
        m_cat.reset();
        platform::setDialogService(nullptr);
    }

    void statementParts()
    {
        const QVector<clsDBField> f = ParseDBFields(
            u"SELECT DISTINCT F.ID, IIF(a,b,c) AS [Flag], tCategory FROM Category AS F"_qs);
        QCOMPARE(f.size(), 3);
        QCOMPARE(f[0].Def, u"F.ID"_qs);
        QCOMPARE(f[0].Name, u"ID"_qs);
        QCOMPARE(f[1].Def, u"IIF(a,b,c)"_qs);
        QCOMPARE(f[1].Name, u"Flag"_qs);
        QCOMPARE(f[2].Tablename, u"Category"_qs);
    }

    void buildSql_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("sortField");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("useDelFlag");
        QTest::addColumn<bool>("ignoreWhere");
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QStringList>("rows");
        // GROUP BY: the search condition goes into HAVING; the WHERE is wrapped and kept.
        QTest::newRow("group by")
            << u"SELECT tExtension, Count(ID) AS Anzahl FROM C64Files WHERE lSize > 0 GROUP BY "
               "tExtension"_qs
            << u"tExtension"_qs << u"pr"_qs << false << false
            << u"SELECT tExtension, Count(ID) AS Anzahl FROM C64Files WHERE (lSize > 0) GROUP BY "
               "tExtension HAVING UCASE(tExtension )LIKE 'PR*' ORDER BY 1"_qs
            << QStringList{u"PRG"_qs};
        // IgnoreWhere: the search alone; without it both conditions.
        QTest::newRow("ignore where")
            << u"SELECT ID, tProgram FROM C64Files WHERE lSize > 100 ORDER BY tProgram"_qs
            << u"tProgram"_qs << u"s"_qs << false << true
            << u"SELECT ID, tProgram FROM C64Files WHERE UCASE(tProgram )LIKE 'S*' ORDER BY "
               "tProgram"_qs
            << QStringList{u"1"_qs, u"2"_qs};
        QTest::newRow("keep where")
            << u"SELECT ID, tProgram FROM C64Files WHERE lSize > 100 ORDER BY tProgram"_qs
            << u"tProgram"_qs << u"s"_qs << false << false
            << u"SELECT ID, tProgram FROM C64Files WHERE (lSize > 100) AND UCASE(tProgram )LIKE "
               "'S*' ORDER BY tProgram"_qs
            << QStringList{u"1"_qs};
        // UseDelFlag on a statement without WHERE opens one.
        QTest::newRow("deleted flag")
            << u"SELECT P.PU_ID, P.Publisher FROM Publishers AS P"_qs << QString() << QString()
            << true << false
            << u"SELECT P.PU_ID, P.Publisher FROM Publishers AS P WHERE P.fDeleted = 0"_qs
            << QStringList{u"1"_qs, u"3"_qs};
    }
    void buildSql()
    {
        QFETCH(QString, source);
        QFETCH(QString, sortField);
        QFETCH(QString, value);
        QFETCH(bool, useDelFlag);
        QFETCH(bool, ignoreWhere);
        QFETCH(QString, statement);
        QFETCH(QStringList, rows);
        db::Database& db = m_cat->db();
        db.createTable(db::TableDef{u"Publishers"_qs,
                                    {{u"PU_ID"_qs, db::type::Long, 0, 0},
                                     {u"Publisher"_qs, db::type::Text, 50, 0},
                                     {u"fDeleted"_qs, db::type::Integer, 0, 0}},
                                    {}});
        test::appendRow(db, u"Publishers"_qs,
                        {{u"PU_ID"_qs, 1}, {u"Publisher"_qs, u"Hewson"_qs}, {u"fDeleted"_qs, 0}});
        test::appendRow(db, u"Publishers"_qs,
                        {{u"PU_ID"_qs, 2}, {u"Publisher"_qs, u"Gone"_qs}, {u"fDeleted"_qs, 1}});
        test::appendRow(db, u"Publishers"_qs,
                        {{u"PU_ID"_qs, 3}, {u"Publisher"_qs, u"Thalamus"_qs}, {u"fDeleted"_qs, 0}});

        DBComboEngine engine;
        engine.setDataBase(&db);
        engine.props().BibKey = u"P"_qs;
        engine.setRecordSource(source);
        const QString sql = engine.BuildSQL(sortField, value.isEmpty() ? QVariant() : value, false,
                                            false, useDelFlag, ignoreWhere);
        QCOMPARE(sql, statement);
        QCOMPARE(column(db, sql), rows);
    }

    void fixedFilterNarrowsTheList()
    {
        m_combo->props().FilterField = u"iFileType"_qs;
        m_combo->props().FilterValue = 1; // D64 files
        QCOMPARE(m_combo->engine().BuildSQL({}, {}, false, false, false, false),
                 u"SELECT F.ID, F.tCategory AS Name, F.iFileType FROM Category AS F WHERE "
                 "(F.iType=1) AND F.iFileType  = 1 ORDER BY F.tCategory"_qs);
        m_combo->DropDown();
        QCOMPARE(list()->ItemCount(), 3);
    }

    void valueShowsItsText()
    {
        m_combo->setValue(3);
        QCOMPARE(m_combo->Text(), u"Paradroid.prg"_qs);
        QCOMPARE(m_combo->FieldValue(u"iFileType"_qs).toInt(), 4);
        QVERIFY(!m_combo->Changed());
        // A value the list does not hold is kept and shown as it is.
        m_combo->setValue(999);
        QCOMPARE(m_combo->Text(), u"999"_qs);
        QCOMPARE(m_combo->Value().toInt(), 999);
        // Null shows the NullText where Null is allowed.
        m_combo->props().NullAllowed = true;
        m_combo->props().NullText = u"(keine)"_qs;
        m_combo->setValue(QVariant());
        QCOMPARE(m_combo->Text(), u"(keine)"_qs);
        QVERIFY(m_combo->Validate());
        QVERIFY(m_dialogs.messages().isEmpty());
    }

    void typingCompletesWithTheAddedPartSelected()
    {
        m_combo->props().AutoSearch = 1;
        QSignalSpy changes(m_combo, &DBCombo::Change);
        QLineEdit* edit = m_combo->lineEdit();
        QTest::keyClicks(edit, u"s"_qs);
        QCOMPARE(edit->text(), u"Sanxion.d64"_qs);
        QCOMPARE(edit->selectedText(), u"anxion.d64"_qs);
        QCOMPARE(edit->cursorPosition(), 1);
        QCOMPARE(m_combo->Value().toInt(), 1);
        QVERIFY(m_combo->Changed());
        QCOMPARE(changes.count(), 1);

        // The next key replaces the added part; "o" leads elsewhere.
        QTest::keyClicks(edit, u"a"_qs);
        QCOMPARE(edit->text(), u"Sanxion.d64"_qs);
        QCOMPARE(edit->selectedText(), u"nxion.d64"_qs);
        QTest::keyClick(edit, Qt::Key_Backspace);
        QCOMPARE(edit->text(), u"Sa"_qs);
        QVERIFY(m_combo->Value().isNull());
        edit->clear();
        QTest::keyClicks(edit, u"o'"_qs);
        QCOMPARE(edit->text(), u"O'Brien's Disk.d64"_qs);
        QCOMPARE(m_combo->Value().toInt(), 6);
        // Nothing starts with "x": the text stays as typed, with no value.
        edit->clear();
        QTest::keyClicks(edit, u"x"_qs);
        QCOMPARE(edit->text(), u"x"_qs);
        QVERIFY(m_combo->Value().isNull());
        QVERIFY(!m_combo->Validate());
        QCOMPARE(m_dialogs.messages().size(), 1);
    }

    void dropDownIsSizedForRowsAndTakesAClickedRow()
    {
        m_combo->props().Rows = 3;
        m_combo->setValue(9);
        QTest::keyClick(m_combo->lineEdit(), Qt::Key_F4);
        frmDBCombo* drop = m_combo->dropDownForm();
        QVERIFY(drop->isVisible());
        QCOMPARE(list()->ItemCount(), test::CatalogueFixture::kFileCount);
        const int rowHeight = list()->verticalHeader()->defaultSectionSize();
        QVERIFY(list()->viewport()->height() >= 3 * rowHeight);
        QVERIFY(list()->viewport()->height() < 4 * rowHeight);
        QVERIFY(drop->width() >= m_combo->width());
        // Under the field, and the current value is the list's row.
        QCOMPARE(drop->geometry().top(), m_combo->mapToGlobal(QPoint(0, m_combo->height())).y());
        QCOMPARE(list()->cellText(list()->SelectedIndex(), 1), u"Commando.d64"_qs);

        QSignalSpy clicks(m_combo, &DBCombo::Click);
        QSignalSpy hidden(m_combo, &DBCombo::HideDropDown);
        list()->scrollTo(list()->model()->index(0, 1));
        const QRect first = list()->visualRect(list()->model()->index(0, 1));
        const QString firstText = list()->cellText(0, 1);
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, first.center());
        QVERIFY(!drop->isVisible());
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(hidden.count(), 1);
        QCOMPARE(m_combo->Text(), firstText);
        QVERIFY(m_combo->Changed());
    }

    void aClickOutsideClosesAndFiresHideDropDown()
    {
        QSignalSpy hidden(m_combo, &DBCombo::HideDropDown);
        QSignalSpy otherClicked(m_other, &QPushButton::clicked);
        QTest::mouseClick(m_combo->arrowButton(), Qt::LeftButton);
        QVERIFY(m_combo->isDroppedDown());
        QTest::mouseClick(m_other, Qt::LeftButton);
        QVERIFY(!m_combo->isDroppedDown());
        QCOMPARE(hidden.count(), 1);
        QCOMPARE(otherClicked.count(), 1); // the click went through

        // The arrow closes what it opened and does not open it again with the same click.
        QTest::mouseClick(m_combo->arrowButton(), Qt::LeftButton);
        QVERIFY(m_combo->isDroppedDown());
        QTest::mouseClick(m_combo->arrowButton(), Qt::LeftButton);
        QVERIFY(!m_combo->isDroppedDown());
        QCOMPARE(hidden.count(), 2);
        // A click in the field itself is outside the drop-down as well.
        QTest::keyClick(m_combo->lineEdit(), Qt::Key_F4);
        QTest::mouseClick(m_combo->lineEdit(), Qt::LeftButton);
        QVERIFY(!m_combo->isDroppedDown());
        QCOMPARE(hidden.count(), 3);
    }

    void keysMoveThroughTheRows()
    {
        m_combo->setValue(1); // Sanxion.d64
        QTest::keyClick(m_combo->lineEdit(), Qt::Key_Down);
        QCOMPARE(m_combo->Text(), u"title.gif"_qs);
        QTest::keyClick(m_combo->lineEdit(), Qt::Key_Up);
        QTest::keyClick(m_combo->lineEdit(), Qt::Key_Up);
        QCOMPARE(m_combo->Text(), u"readme.txt"_qs);
        QVERIFY(m_combo->Changed());
        // Esc brings back the value the field had.
        QTest::keyClick(m_combo->lineEdit(), Qt::Key_Escape);
        QCOMPARE(m_combo->Text(), u"Sanxion.d64"_qs);
        QVERIFY(!m_combo->Changed());
        // In the open list the keys move the mark; Return takes it.
        QTest::keyClick(m_combo->lineEdit(), Qt::Key_F4);
        QTest::keyClick(m_combo->lineEdit(), Qt::Key_Down);
        QCOMPARE(m_combo->Text(), u"Sanxion.d64"_qs);
        QTest::keyClick(m_combo->lineEdit(), Qt::Key_Return);
        QVERIFY(!m_combo->isDroppedDown());
        QCOMPARE(m_combo->Text(), u"title.gif"_qs);
    }

    void headerMenuSortsByNeighbouringColumns()
    {
        m_combo->DropDown();
        QStringList offered;
        QString choose = u"mnuPopupSortNextCol"_qs;
        m_combo->dropDownForm()->setMenuRunner([&](QMenu& menu) -> QAction* {
            QAction* chosen = nullptr;
            for (QAction* a : menu.actions()) {
                if (!a->objectName().isEmpty())
                    offered << a->objectName() + (a->isEnabled() ? u""_qs : u"(off)"_qs);
                if (a->objectName() == choose)
                    chosen = a;
            }
            return chosen;
        });
        QHeaderView* header = list()->horizontalHeader();
        const auto rightClick = [&](int section) {
            const QPoint at(header->sectionViewportPosition(section) + 5, header->height() / 2);
            QTest::mouseClick(header->viewport(), Qt::RightButton, {}, at);
        };
        rightClick(1);
        QCOMPARE(offered, (QStringList{u"mnuPopupColSize"_qs, u"mnuPopupSortThisCol"_qs,
                                       u"mnuPopupSortNextCol"_qs, u"mnuPopupSortPrevCol"_qs}));
        QCOMPARE(list()->engine().SortColumn(), 2);
        QCOMPARE(list()->cellText(0, 2), u"1"_qs);
        // On the last column there is no next one.
        offered.clear();
        choose = u"mnuPopupSortPrevCol"_qs;
        rightClick(2);
        QVERIFY(offered.contains(u"mnuPopupSortNextCol(off)"_qs));
        QCOMPARE(list()->engine().SortColumn(), 1);
        QVERIFY(m_combo->isDroppedDown());
    }

    void colours()
    {
        const QColor empty(255, 255, 200);
        m_combo->EmptyBackColor = empty;
        m_combo->props().ShowChanges = true;
        m_combo->updateColors();
        QPalette p = m_combo->lineEdit()->palette();
        QCOMPARE(p.color(QPalette::Base), empty);
        m_combo->setValue(2);
        p = m_combo->lineEdit()->palette();
        QVERIFY(p.color(QPalette::Base) != empty);
        QVERIFY(p.color(QPalette::Text) != QColor(255, 0, 0));
        // A change by the user shows in the change colour (red by default).
        QTest::keyClick(m_combo->lineEdit(), Qt::Key_Down);
        QCOMPARE(m_combo->lineEdit()->palette().color(QPalette::Text), QColor(255, 0, 0));
        m_combo->setChanged(false);
        QVERIFY(m_combo->lineEdit()->palette().color(QPalette::Text) != QColor(255, 0, 0));
    }
};

QTEST_MAIN(TestDBCombo)
#include "tst_dbcombo.moc"
