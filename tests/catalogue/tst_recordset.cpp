// Recordsets as the lists and the tree use them: a stable order, positions set freely, an exact
// count after moveLast, pages by getRows, Find with Jet criteria, and rows written back.

#include "catalogue/Database.h"
#include "catalogue/QueryDef.h"
#include "catalogue/Recordset.h"

#include <QtTest>

using namespace vd::db;

namespace {

// Items: ID 1..n, Name "item<ID>" ("ITEM<ID>" for multiples of 7), Kind "PRG"/"SEQ"
// alternating, Added 2024-01-<ID%28+1>, Size Null for multiples of 10.
std::unique_ptr<Database> itemsDb(int n)
{
    auto db = Database::openMemory();
    TableDef t;
    t.name = QStringLiteral("Items");
    t.fields = {{QStringLiteral("ID"), type::Long},        {QStringLiteral("Name"), type::Text, 20},
                {QStringLiteral("Kind"), type::Text, 10},  {QStringLiteral("Size"), type::Integer},
                {QStringLiteral("Added"), type::Date},     {QStringLiteral("Note"), type::Memo},
                {QStringLiteral("Flag"), type::Boolean}};
    t.indexes = {{QStringLiteral("IDIndex"), {QStringLiteral("ID")}, true, true}};
    db->createTable(t);
    db->beginTrans();
    auto rs = db->openRecordset(QStringLiteral("Items"), RecordsetType::Dynaset);
    for (int i = 1; i <= n; ++i) {
        rs->addNew();
        rs->setValue(QStringLiteral("ID"), i);
        rs->setValue(QStringLiteral("Name"), (i % 7 ? QStringLiteral("item%1") : QStringLiteral("ITEM%1")).arg(i));
        rs->setValue(QStringLiteral("Kind"), i % 2 ? QStringLiteral("PRG") : QStringLiteral("SEQ"));
        rs->setValue(QStringLiteral("Size"), i % 10 ? QVariant(i * 2) : QVariant());
        rs->setValue(QStringLiteral("Added"), QDateTime(QDate(2024, 1, i % 28 + 1), QTime(12, 0)));
        rs->setValue(QStringLiteral("Flag"), i % 3 == 0);
        rs->update();
    }
    db->commitTrans();
    return db;
}

int errorOf(const std::function<void()>& f)
{
    try {
        f();
    } catch (const DbError& e) {
        return e.number();
    }
    return 0;
}

} // namespace

class TestRecordset : public QObject
{
    Q_OBJECT

private slots:
    void positionsAndCounts()
    {
        auto db = itemsDb(1000);
        auto rs = db->openRecordset(QStringLiteral("Select ID,Name From Items order by ID desc"),
                                    RecordsetType::Snapshot);
        QVERIFY(!rs->eof() && !rs->bof());
        QVERIFY(rs->recordCount() >= 1);
        rs->moveLast();
        QCOMPARE(rs->recordCount(), 1000);
        QCOMPARE(rs->value(0).toInt(), 1);
        rs->moveFirst();
        QCOMPARE(rs->value(0).toInt(), 1000);
        rs->setAbsolutePosition(500);
        QCOMPARE(rs->absolutePosition(), 500);
        QCOMPARE(rs->value(QStringLiteral("ID")).toInt(), 500);
        rs->setAbsolutePosition(3);
        QCOMPARE(rs->value(0).toInt(), 997);
        QCOMPARE(errorOf([&] { rs->setAbsolutePosition(1000); }), err::InvalidArgument);
        QCOMPARE(rs->value(0).toInt(), 997); // a failed move leaves the row where it was
        rs->moveLast();
        rs->moveNext();
        QVERIFY(rs->eof());
        QCOMPARE(rs->absolutePosition(), -1);
        QCOMPARE(errorOf([&] { rs->value(0); }), err::NoCurrentRecord);
        rs->moveFirst();
        rs->movePrevious();
        QVERIFY(rs->bof());
    }

    void positionsReachedBeforeTheEnd()
    {
        // Setting a position far ahead reads up to it; the count then grows to the end.
        auto db = itemsDb(300);
        auto rs = db->openRecordset(QStringLiteral("Select ID From Items"), RecordsetType::Snapshot);
        rs->setAbsolutePosition(250);
        QCOMPARE(rs->value(0).toInt(), 251);
        QVERIFY(rs->recordCount() <= 300);
        rs->moveLast();
        QCOMPARE(rs->recordCount(), 300);
    }

    void emptyRecordset()
    {
        auto db = itemsDb(5);
        auto rs = db->openRecordset(QStringLiteral("Select * From Items where ID>100"), RecordsetType::Snapshot);
        QVERIFY(rs->eof() && rs->bof());
        QCOMPARE(rs->recordCount(), 0);
        QCOMPARE(rs->fieldCount(), 7);
        QCOMPARE(errorOf([&] { rs->moveFirst(); }), err::NoCurrentRecord);
        QCOMPARE(errorOf([&] { rs->moveLast(); }), err::NoCurrentRecord);
        QCOMPARE(rs->getRows(10).rowCount, 0);
        QVERIFY(!rs->findFirst(QStringLiteral("ID=1")));
        QVERIFY(rs->noMatch());
    }

    void fieldsKnowNameTypeAndValue()
    {
        auto db = itemsDb(10);
        auto rs = db->openRecordset(QStringLiteral("Select * From Items where ID=10"), RecordsetType::Snapshot);
        const QList<int> types{type::Long, type::Text, type::Text, type::Integer, type::Date, type::Memo, type::Boolean};
        for (int i = 0; i < rs->fieldCount(); ++i)
            QCOMPARE(rs->field(i).type, types[i]);
        QCOMPARE(rs->field(1).size, 20);
        QCOMPARE(rs->field(2).name, QStringLiteral("Kind"));
        QVERIFY(rs->value(QStringLiteral("Size")).isNull());
        QVERIFY(rs->value(QStringLiteral("Note")).isNull());
        QCOMPARE(rs->value(QStringLiteral("Added")).toDateTime(), QDateTime(QDate(2024, 1, 11), QTime(12, 0)));
        QCOMPARE(rs->value(QStringLiteral("flag")).toBool(), false);
        QCOMPARE(rs->fieldIndex(QStringLiteral("NAME")), 1);
        QCOMPARE(rs->fieldIndex(QStringLiteral("Missing")), -1);
        QCOMPARE(errorOf([&] { rs->value(QStringLiteral("Missing")); }), err::ItemNotFound);
    }

    void getRowsPagesThrough()
    {
        auto db = itemsDb(100);
        auto rs = db->openRecordset(QStringLiteral("Select ID,Name From Items"), RecordsetType::Snapshot);
        rs->setAbsolutePosition(95);
        RowBlock page = rs->getRows(10);
        QCOMPARE(page.rowCount, 5);
        QCOMPARE(page.fieldCount, 2);
        QCOMPARE(page.value(0, 0).toInt(), 96);
        QCOMPARE(page.value(1, 4).toString(), QStringLiteral("item100"));
        QVERIFY(rs->eof());
        rs->setAbsolutePosition(10);
        page = rs->getRows(3);
        QCOMPARE(page.rowCount, 3);
        QCOMPARE(rs->absolutePosition(), 13);
    }

    void findWithJetCriteria()
    {
        auto db = itemsDb(50);
        auto rs = db->openRecordset(QStringLiteral("Select ID, Name AS [File], Kind, Size, Added From Items"),
                                    RecordsetType::Snapshot);
        QVERIFY(rs->findFirst(QStringLiteral("ID=17")));
        QCOMPARE(rs->absolutePosition(), 16);
        QVERIFY(rs->findFirst(QStringLiteral("[File] like '*m2*'")));
        QCOMPARE(rs->value(0).toInt(), 2);
        QVERIFY(rs->findNext(QStringLiteral("[File] like '*m2*'")));
        QCOMPARE(rs->value(0).toInt(), 20);
        QVERIFY(rs->findFirst(QStringLiteral("File = 'item14'"))); // stored as ITEM14: no case
        QCOMPARE(rs->value(0).toInt(), 14);
        QVERIFY(rs->findLast(QStringLiteral("Kind='SEQ'")));
        QCOMPARE(rs->value(0).toInt(), 50);
        QVERIFY(rs->findPrevious(QStringLiteral("Kind='SEQ' And Size > 80")));
        QCOMPARE(rs->value(0).toInt(), 48);
        QVERIFY(rs->findFirst(QStringLiteral("isNull(Size) and ID > 15")));
        QCOMPARE(rs->value(0).toInt(), 20);
        QVERIFY(rs->findFirst(QStringLiteral("Added = #01/05/2024 12:00:00 pm#")));
        QCOMPARE(rs->value(0).toInt(), 4);
        // No match: NoMatch is set and the row stays.
        QVERIFY(!rs->findNext(QStringLiteral("ID=1")));
        QVERIFY(rs->noMatch());
        QCOMPARE(rs->value(0).toInt(), 4);
        QCOMPARE(errorOf([&] { rs->findFirst(QStringLiteral("Nope=1")); }), 3070);
    }

    void dynasetWritesOneRow()
    {
        auto db = itemsDb(20);
        auto rs = db->openRecordset(QStringLiteral("Select * From Items where Kind='PRG' order by ID"),
                                    RecordsetType::Dynaset);
        rs->setAbsolutePosition(2); // ID 5
        rs->edit();
        rs->setValue(QStringLiteral("Name"), QStringLiteral("renamed"));
        rs->setValue(QStringLiteral("Size"), QStringLiteral("77"));
        rs->update();
        QCOMPARE(rs->value(QStringLiteral("Name")).toString(), QStringLiteral("renamed"));
        QCOMPARE(rs->value(QStringLiteral("Size")).toInt(), 77);
        auto check = db->openRecordset(QStringLiteral("Select Count(*) From Items where Name='renamed'"),
                                       RecordsetType::Snapshot);
        QCOMPARE(check->value(0).toInt(), 1);
        check = db->openRecordset(QStringLiteral("Select Name,Size From Items where ID=5"), RecordsetType::Snapshot);
        QCOMPARE(check->value(1).toInt(), 77);
        check = db->openRecordset(QStringLiteral("Select Name From Items where ID=7"), RecordsetType::Snapshot);
        QCOMPARE(check->value(0).toString(), QStringLiteral("ITEM7"));

        // Writing refuses what the field cannot hold, and writes nothing then.
        rs->edit();
        QCOMPARE(errorOf([&] { rs->setValue(QStringLiteral("Name"), QString(21, QLatin1Char('x'))); }), 3163);
        QCOMPARE(errorOf([&] { rs->setValue(QStringLiteral("Size"), QStringLiteral("lots")); }), 3421);
        rs->cancelUpdate();
        QCOMPARE(errorOf([&] { rs->setValue(QStringLiteral("Name"), QStringLiteral("x")); }), err::UpdateWithoutEdit);
        QCOMPARE(errorOf([&] { rs->update(); }), err::UpdateWithoutEdit);

        rs->deleteRow();
        QCOMPARE(errorOf([&] { rs->value(0); }), 3167);
        check = db->openRecordset(QStringLiteral("Select Count(*) From Items"), RecordsetType::Snapshot);
        QCOMPARE(check->value(0).toInt(), 19);
    }

    void joinedDynasetWritesEitherSide()
    {
        // As the start of an entry counts it: the entry's side of a join is written by the
        // qualified names the join gives its fields.
        auto db = itemsDb(5);
        db->execute(QStringLiteral("Update Items Set Size=1 where ID=3"));
        auto rs = db->openRecordset(
            QStringLiteral("Select A.*,B.* From Items as A Left Join Items as B on A.Size=B.ID where A.ID in (3,5)"),
            RecordsetType::Dynaset);
        QVERIFY(rs->updatable());
        QVERIFY(rs->findFirst(QStringLiteral("[A.ID]=3")));
        rs->edit();
        rs->setValue(QStringLiteral("A.Note"), QStringLiteral("started"));
        rs->setValue(QStringLiteral("B.Kind"), QStringLiteral("USR"));
        rs->update();
        QCOMPARE(rs->value(QStringLiteral("A.Note")).toString(), QStringLiteral("started"));
        QCOMPARE(rs->value(QStringLiteral("B.Kind")).toString(), QStringLiteral("USR"));
        auto check = db->openRecordset(QStringLiteral("Select ID, Kind, Note From Items where Kind='USR' or not isNull(Note)"),
                                       RecordsetType::Snapshot);
        QCOMPARE(check->value(0).toInt(), 1);
        QCOMPARE(check->value(1).toString(), QStringLiteral("USR"));
        check->moveNext();
        QCOMPARE(check->value(0).toInt(), 3);
        QCOMPARE(check->value(2).toString(), QStringLiteral("started"));
        check->moveNext();
        QVERIFY(check->eof());
        // Row 5 (Size 10) has no partner: its other side cannot be written.
        QVERIFY(rs->findFirst(QStringLiteral("[A.ID]=5")));
        rs->edit();
        rs->setValue(QStringLiteral("B.Kind"), QStringLiteral("X"));
        QCOMPARE(errorOf([&] { rs->update(); }), err::NotUpdatable);
        QCOMPARE(errorOf([&] { rs->addNew(); }), err::NotUpdatable); // a new row needs one table
    }

    void readOnlyRecordsetsRefuseWrites()
    {
        auto db = itemsDb(5);
        auto snap = db->openRecordset(QStringLiteral("Select * From Items"), RecordsetType::Snapshot);
        QCOMPARE(errorOf([&] { snap->addNew(); }), err::NotUpdatable);
        auto grouped = db->openRecordset(QStringLiteral("Select Kind, Count(*) From Items group by Kind"),
                                         RecordsetType::Dynaset);
        QVERIFY(!grouped->updatable());
        QCOMPARE(errorOf([&] { grouped->edit(); }), err::NotUpdatable);
        auto distinct = db->openRecordset(QStringLiteral("Select Distinct Kind From Items"), RecordsetType::Dynaset);
        QVERIFY(!distinct->updatable());
    }

    void forwardOnlyReadsOnce()
    {
        auto db = itemsDb(10);
        auto rs = db->openRecordset(QStringLiteral("Select ID From Items"), RecordsetType::Snapshot,
                                    option::ForwardOnly);
        int n = 0;
        while (!rs->eof()) {
            ++n;
            QCOMPARE(rs->value(0).toInt(), n);
            rs->moveNext();
        }
        QCOMPARE(n, 10);
        QCOMPARE(errorOf([&] { rs->moveFirst(); }), 3219);
        // Pages of a forward-only recordset follow each other.
        rs = db->openRecordset(QStringLiteral("Select ID From Items"), RecordsetType::Snapshot, option::ForwardOnly);
        const RowBlock first = rs->getRows(4);
        const RowBlock second = rs->getRows(4);
        QCOMPARE(first.rowCount, 4);
        QCOMPARE(first.value(0, 3).toInt(), 4);
        QCOMPARE(second.value(0, 0).toInt(), 5);
        QCOMPARE(rs->getRows(10).rowCount, 2);
        QVERIFY(rs->eof());
    }

    void bigJoinsReadBackExactly()
    {
        // A large recordset keeps only the rowids of its rows and reads the rows again in
        // blocks. Each item here meets several partners, some filtered out; every position,
        // visited out of order and past the cache's size, must show what a plain read showed.
        auto db = itemsDb(6000);
        const QString sql = QStringLiteral(
            "Select A.ID, B.ID as Partner, A.Name & '/' & B.Kind as Label From Items as A "
            "Inner Join Items as B on B.ID in (A.ID+1, A.ID+2, A.ID+3) where B.Kind<>'SEQ' or A.ID<10 "
            "order by A.Name desc, B.ID");
        QStringList expected;
        auto plain = db->openRecordset(sql, RecordsetType::Snapshot, option::ForwardOnly);
        for (; !plain->eof(); plain->moveNext())
            expected << QStringLiteral("%1|%2|%3").arg(plain->value(0).toInt()).arg(plain->value(1).toInt())
                            .arg(plain->value(2).toString());
        QVERIFY(expected.size() > 9000);

        auto rs = db->openRecordset(sql, RecordsetType::Snapshot);
        rs->moveLast();
        QCOMPARE(rs->recordCount(), expected.size());
        QRandomGenerator rng(7);
        for (int i = 0; i < 3000; ++i) {
            const qint64 at = rng.bounded(int(expected.size()));
            rs->setAbsolutePosition(at);
            const QString got = QStringLiteral("%1|%2|%3").arg(rs->value(0).toInt()).arg(rs->value(1).toInt())
                                    .arg(rs->value(2).toString());
            QCOMPARE(got, expected[int(at)]);
        }
        QStringList all;
        rs->moveFirst();
        while (!rs->eof()) {
            const RowBlock page = rs->getRows(500);
            for (int r = 0; r < page.rowCount; ++r)
                all << QStringLiteral("%1|%2|%3").arg(page.value(0, r).toInt()).arg(page.value(1, r).toInt())
                           .arg(page.value(2, r).toString());
        }
        QCOMPARE(all, expected);

        // A row deleted after the statement ran, and not read before, reads as empty rather
        // than as another row.
        auto later = db->openRecordset(sql, RecordsetType::Snapshot);
        later->moveLast();
        const int gone = expected[4000].section(QLatin1Char('|'), 0, 0).toInt();
        db->execute(QStringLiteral("Delete From Items where ID=%1").arg(gone));
        later->setAbsolutePosition(4000);
        QVERIFY(later->value(0).isNull());
        later->setAbsolutePosition(3990);
        if (expected[3990].section(QLatin1Char('|'), 0, 0).toInt() != gone)
            QCOMPARE(later->value(0).toInt(), expected[3990].section(QLatin1Char('|'), 0, 0).toInt());
    }

    void queryDefRunsAgainWithNewValues()
    {
        auto db = itemsDb(40);
        auto q = db->createQueryDef(QStringLiteral("Parameters xxx Value;SELECT ID From Items where Kind=xxx"));
        for (const char* kind : {"PRG", "SEQ", "USR"}) {
            q->setParameter(0, QString::fromLatin1(kind));
            auto rs = q->openRecordset(RecordsetType::Snapshot);
            int n = 0;
            if (!rs->eof()) {
                rs->moveLast();
                n = int(rs->recordCount());
            }
            QCOMPARE(n, QByteArray(kind) == "USR" ? 0 : 20);
        }
        auto upd = db->createQueryDef(QStringLiteral("PARAMETERS XXX VALUE; Update Items Set Size=0 where ID<XXX"));
        upd->setParameter(QStringLiteral("XXX"), 4);
        QCOMPARE(upd->execute(), 3);
    }

    void requeryShowsNewRows()
    {
        auto db = itemsDb(3);
        auto rs = db->openRecordset(QStringLiteral("Select ID From Items"), RecordsetType::Dynaset);
        db->execute(QStringLiteral("Insert Into Items (ID) Values (99)"));
        rs->requery();
        rs->moveLast();
        QCOMPARE(rs->recordCount(), 4);
        QCOMPARE(rs->value(0).toInt(), 99);
    }
};

QTEST_GUILESS_MAIN(TestRecordset)
#include "tst_recordset.moc"
