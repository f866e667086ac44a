// Recordsets at list scale: a join on a unique key is read by the first table's rowids alone,
// and Find runs its criterion in the engine. Both must give exactly what reading every row
// gives, in the same order, whatever the statement's order, filter or join.

#include "catalogue/Database.h"
#include "catalogue/Recordset.h"

#include <functional>
#include <QtTest>

using namespace vd::db;

namespace {

// Items 1..n: Name "item<i>" ("ITEM<i>" for multiples of 7), Kind PRG for odd and SEQ for
// even i, Size 2i (Null for multiples of 10), Added 2024-01-(i%28+1) 12:00, Flag for
// multiples of 3, Partner i+1 (none for multiples of 5, and none past the last item).
std::unique_ptr<Database> itemsDb(int n)
{
    auto db = Database::openMemory();
    TableDef t;
    t.name = QStringLiteral("Items");
    t.fields = {{QStringLiteral("ID"), type::Long},       {QStringLiteral("Name"), type::Text, 20},
                {QStringLiteral("Kind"), type::Text, 10}, {QStringLiteral("Size"), type::Integer},
                {QStringLiteral("Added"), type::Date},    {QStringLiteral("Flag"), type::Boolean},
                {QStringLiteral("Partner"), type::Long}};
    t.indexes = {{QStringLiteral("IDIndex"), {QStringLiteral("ID")}, true, true},
                 {QStringLiteral("NameIndex"), {QStringLiteral("Name")}, false, false}};
    db->createTable(t);
    db->beginTrans();
    for (int i = 1; i <= n; ++i)
        db->execute(
            QStringLiteral("Insert Into Items (ID,Name,Kind,Size,Added,Flag,Partner) Values "
                           "(%1,'%2','%3',%4,#01/%5/2024 12:00:00 pm#,%6,%7)")
                .arg(i)
                .arg((i % 7 ? QStringLiteral("item%1") : QStringLiteral("ITEM%1")).arg(i))
                .arg(i % 2 ? QStringLiteral("PRG") : QStringLiteral("SEQ"))
                .arg(i % 10 ? QString::number(i * 2) : QStringLiteral("Null"))
                .arg(i % 28 + 1, 2, 10, QLatin1Char('0'))
                .arg(i % 3 == 0 ? -1 : 0)
                .arg(i % 5 && i < n ? QString::number(i + 1) : QStringLiteral("Null")));
    db->commitTrans();
    return db;
}

QString nameOf(int i)
{
    return (i % 7 ? QStringLiteral("item%1") : QStringLiteral("ITEM%1")).arg(i);
}

QString rowText(Recordset& rs)
{
    QStringList values;
    for (int c = 0; c < rs.fieldCount(); ++c)
        values << rs.value(c).toString();
    return values.join(QLatin1Char('|'));
}

// Every row as text, through a forward-only read that keeps nothing but the statement.
QStringList plainRows(Database& db, const QString& sql)
{
    QStringList rows;
    auto rs = db.openRecordset(sql, RecordsetType::Snapshot, option::ForwardOnly);
    for (; !rs->eof(); rs->moveNext())
        rows << rowText(*rs);
    return rows;
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

// The list of the finds below: ordered by ID descending, so position p holds item n - p.
const QString kList = QStringLiteral(
    "Select A.ID, A.Name AS [File], A.Kind, A.Size, A.Added, A.Flag, B.Name AS PartnerName, A.Kind "
    "& '-' & "
    "A.Name AS Label From Items AS A Left Join Items AS B on A.Partner=B.ID order by A.ID desc");

struct Criterion
{
    const char* text;
    std::function<bool(int i, int n)> holds;
};

QVector<Criterion> criteria()
{
    return {
        {"ID=17", [](int i, int) { return i == 17; }},
        {"[File] like '*m2*'",
         [](int i, int) { return nameOf(i).toLower().contains(QLatin1String("m2")); }},
        {"File = 'item14'", [](int i, int) { return i == 14; }}, // stored as ITEM14
        {"Kind='seq' And Size > 80", [](int i, int) { return i % 2 == 0 && i % 10 && i * 2 > 80; }},
        {"isNull(Size) and ID > 15", [](int i, int) { return i % 10 == 0 && i > 15; }},
        {"Added = #01/05/2024 12:00:00 pm#", [](int i, int) { return i % 28 + 1 == 5; }},
        {"Flag = True and ID < 100", [](int i, int) { return i % 3 == 0 && i < 100; }},
        {"PartnerName = 'item22'", [](int i, int) { return i == 21; }},
        {"isNull(PartnerName) and Kind = 'PRG'",
         [](int i, int n) { return (i % 5 == 0 || i == n) && i % 2; }},
        {"Label = 'prg-item1'",
         [](int i, int) { return i == 1; }}, // an expression, compared without case
        {"Kind <> 'PRG' Or ID < 3", [](int i, int) { return i % 2 == 0 || i < 3; }},
        {"ID = -5", [](int, int) { return false; }},
    };
}

} // namespace

class TestBigRecordset : public QObject
{
    Q_OBJECT

private slots:
    void joinsOnAUniqueKeyReadBackExactly_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::newRow("order by number")
            << "Select A.ID, A.Name, B.Name as Partner, B.Size From Items as A Left Join "
               "Items as B on A.Partner=B.ID order by 2";
        QTest::newRow("order by alias, desc")
            << "Select A.ID, A.Name as Label, B.Kind From Items as A Left Join Items "
               "as B on A.Partner=B.ID order by Label desc, A.ID";
        QTest::newRow("order and filter on the joined table")
            << "Select A.ID, B.Name From Items as A Left Join Items as B on B.ID=A.Partner where "
               "B.Kind='SEQ' or "
               "A.ID<500 order by B.Name, A.ID";
        QTest::newRow("inner join, expression order")
            << "Select A.ID, A.Kind & B.Kind as Kinds From Items as A Inner Join Items as B on "
               "A.Partner=B.ID order "
               "by A.Kind & B.Kind, A.ID desc";
        QTest::newRow("constant column number: read with all keys")
            << "Select -1, A.ID From Items as A Left Join Items as B on A.Partner=B.ID order by 1, "
               "2";
        QTest::newRow("join on a column that is not unique")
            << "Select A.ID, B.ID From Items as A Left Join Items as B on A.Kind=B.Kind where "
               "A.ID<100 and B.ID<60 "
               "order by A.ID, B.ID";
        // No order: the rows come as the table lies, as reading the whole statement gives them.
        QTest::newRow("no order")
            << "Select A.ID, A.Name, B.Name From Items as A Left Join Items as B on "
               "A.Partner=B.ID where A.Kind='PRG' or A.ID>2000";
        QTest::newRow("top with order")
            << "Select TOP 2500 A.ID, A.Size From Items as A Left Join Items as B on "
               "A.Partner=B.ID order by A.Size desc, A.ID";
    }
    void joinsOnAUniqueKeyReadBackExactly()
    {
        QFETCH(QString, sql);
        auto db = itemsDb(5000);
        const QStringList expected = plainRows(*db, sql);
        QVERIFY(expected.size() > 2048);
        auto rs = db->openRecordset(sql, RecordsetType::Snapshot);
        rs->moveLast();
        QCOMPARE(rs->recordCount(), expected.size());
        QRandomGenerator rng(9);
        for (int i = 0; i < 500; ++i) {
            const int at = int(rng.bounded(int(expected.size())));
            rs->setAbsolutePosition(at);
            QCOMPARE(rowText(*rs), expected[at]);
        }
        QStringList all;
        rs->moveFirst();
        while (!rs->eof()) {
            const RowBlock page = rs->getRows(700);
            for (int r = 0; r < page.rowCount; ++r) {
                QStringList values;
                for (int c = 0; c < page.fieldCount; ++c)
                    values << page.value(c, r).toString();
                all << values.join(QLatin1Char('|'));
            }
        }
        QCOMPARE(all, expected);
    }

    void findRunsInTheEngine_data()
    {
        QTest::addColumn<int>("items");
        QTest::newRow("big: the engine evaluates") << 3000;
        QTest::newRow("small: row by row") << 400;
    }
    void findRunsInTheEngine()
    {
        QFETCH(int, items);
        auto db = itemsDb(items);
        auto rs = db->openRecordset(kList, RecordsetType::Snapshot);
        rs->moveLast();
        QCOMPARE(rs->recordCount(), items);
        const int middle = items / 2;
        for (const Criterion& c : criteria()) {
            const QString text = QLatin1String(c.text);
            auto holdsAt = [&](int pos) { return c.holds(items - pos, items); };
            int first = -1, next = -1, last = -1, previous = -1;
            for (int p = 0; p < items && first < 0; ++p)
                if (holdsAt(p))
                    first = p;
            for (int p = middle + 1; p < items && next < 0; ++p)
                if (holdsAt(p))
                    next = p;
            for (int p = items - 1; p >= 0 && last < 0; --p)
                if (holdsAt(p))
                    last = p;
            for (int p = middle - 1; p >= 0 && previous < 0; --p)
                if (holdsAt(p))
                    previous = p;

            QCOMPARE(rs->findFirst(text), first >= 0);
            if (first >= 0)
                QCOMPARE(rs->absolutePosition(), first);
            rs->setAbsolutePosition(middle);
            QCOMPARE(rs->findNext(text), next >= 0);
            QCOMPARE(rs->absolutePosition(), next >= 0 ? next : middle); // no match: the row stays
            QCOMPARE(rs->noMatch(), next < 0);
            QCOMPARE(rs->findLast(text), last >= 0);
            if (last >= 0)
                QCOMPARE(rs->absolutePosition(), last);
            rs->setAbsolutePosition(middle);
            QCOMPARE(rs->findPrevious(text), previous >= 0);
            if (previous >= 0)
                QCOMPARE(rs->absolutePosition(), previous);
        }
        QCOMPARE(errorOf([&] { rs->findFirst(QStringLiteral("Nope=1")); }), 3070);
        QCOMPARE(errorOf([&] { rs->findFirst(QStringLiteral("ID = (")); }), err::SyntaxError);
    }

    void findSkipsDeletedRowsAndSeesEdits()
    {
        auto db = itemsDb(3000);
        auto rs = db->openRecordset(QStringLiteral("Select ID, Name, Kind From Items order by ID"),
                                    RecordsetType::Dynaset);
        rs->moveLast();
        QVERIFY(rs->findFirst(QStringLiteral("Name like 'item251*'")));
        QCOMPARE(rs->value(0).toInt(), 251);
        rs->deleteRow();
        QVERIFY(rs->findFirst(QStringLiteral("Name like 'item251*'")));
        QCOMPARE(rs->value(0).toInt(), 2510);
        rs->setAbsolutePosition(2998);
        rs->edit();
        rs->setValue(QStringLiteral("Kind"), QStringLiteral("USR"));
        rs->update();
        QVERIFY(rs->findFirst(QStringLiteral("Kind = 'usr'")));
        QCOMPARE(rs->absolutePosition(), 2998);
        QCOMPARE(rs->value(2).toString(), QStringLiteral("USR"));
    }

    void joinedSideIsWrittenByItsRowid()
    {
        // Only the first table's rowids are kept; the partner's comes with the row when written.
        auto db = itemsDb(3000);
        auto rs = db->openRecordset(
            QStringLiteral("Select A.ID, A.Name, B.Kind as PartnerKind From Items as A "
                           "Left Join Items as B on A.Partner=B.ID order by A.ID desc"),
            RecordsetType::Dynaset);
        rs->moveLast();
        rs->setAbsolutePosition(3000 - 2611); // item 2611, partner 2612
        QCOMPARE(rs->value(0).toInt(), 2611);
        rs->edit();
        rs->setValue(QStringLiteral("PartnerKind"), QStringLiteral("NEW"));
        rs->update();
        QCOMPARE(rs->value(2).toString(), QStringLiteral("NEW"));
        auto check = db->openRecordset(QStringLiteral("Select ID From Items where Kind='NEW'"),
                                       RecordsetType::Snapshot);
        QCOMPARE(check->value(0).toInt(), 2612);
        check->moveNext();
        QVERIFY(check->eof());
        rs->setAbsolutePosition(3000 - 2610); // no partner
        rs->edit();
        rs->setValue(QStringLiteral("PartnerKind"), QStringLiteral("X"));
        QCOMPARE(errorOf([&] { rs->update(); }), err::NotUpdatable);
    }
};

QTEST_GUILESS_MAIN(TestBigRecordset)
#include "tst_bigrecordset.moc"
