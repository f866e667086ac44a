// The text toolkit of the data-bound controls: each rewrite exactly as the tree and the list
// need it, the textual limits included, and the rewritten statements accepted by the catalogue.

#include "catalogue/DaoTypes.h"
#include "catalogue/Database.h"
#include "catalogue/QueryDef.h"
#include "catalogue/Recordset.h"
#include "controls/SqlTree.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"

#include <QtTest>

using namespace vd;
using namespace vd::controls;

namespace {

const QString kDesignLevel = QStringLiteral(
    "SELECT C64Files.ID AS ItemKey,C64Files.Category_File AS ParentKey,F.iFileType as Icon, "
    "tProgram & '.' & tExtension AS File From C64Files as F where iType=1 order by 4");

// The entries of one file as the tree's third level asks for them, with the join the view
// builder writes.
const QString kEntryLevel = QStringLiteral(
    "SELECT C64Files.ID AS ItemKey,Category_File AS ParentKey,F.iFileType as Icon, tProgram & '.' "
    "& "
    "tExtension AS File  From (C64Files Left Join Category as F on C64Files.Category_File=F.ID) "
    "order by lIndex");

} // namespace

class TestSqlTree : public QObject
{
    Q_OBJECT

    platform::ScriptedDialogService m_dialogs;

private slots:
    void init()
    {
        m_dialogs.clear();
        platform::setDialogService(&m_dialogs);
    }
    void cleanup() { platform::setDialogService(nullptr); }

    void itemString_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");
        QTest::newRow("worked example, two blanks kept")
            << kDesignLevel
            << "Parameters xxx Value;SELECT C64Files.ID AS ItemKey,C64Files.Category_File AS "
               "ParentKey,"
               "F.iFileType as Icon, tProgram & '.' & tExtension AS File From C64Files as F  where "
               "iType=1 "
               "And C64Files.Category_File=xxx order by 4";
        QTest::newRow("no WHERE: the condition goes before ORDER BY")
            << "SELECT ID AS ItemKey,Category_File AS ParentKey,1 AS Icon,tProgram FROM C64Files "
               "ORDER BY tProgram"
            << "Parameters xxx Value;SELECT ID AS ItemKey,Category_File AS ParentKey,1 AS "
               "Icon,tProgram FROM "
               "C64Files WHERE Category_File=xxx ORDER BY tProgram";
        QTest::newRow("WHERE with OR gets And, no parentheses")
            << "SELECT a,b,c,d FROM T WHERE x=1 OR y=2"
            << "Parameters xxx Value;SELECT a,b,c,d FROM T  WHERE x=1 OR y=2 And b=xxx";
        QTest::newRow("GROUP takes HAVING and ORDER with it")
            << "SELECT a,b,c,d FROM T GROUP BY a,b,c,d ORDER BY 4"
            << "Parameters xxx Value;SELECT a,b,c,d FROM T WHERE b=xxx GROUP BY a,b,c,d ORDER BY 4";
        QTest::newRow("two-part UNION: each part filtered, one parameter line")
            << "SELECT a,p1,c,d FROM T where k=1 UNION SELECT a,p2,c,d FROM U order by 4"
            << "Parameters xxx Value;SELECT a,p1,c,d FROM T  where k=1 And p1=xxx UNION SELECT "
               "a,p2,c,d "
               "FROM U WHERE p2=xxx order by 4";
        QTest::newRow("IIF with commas is one column")
            << "SELECT ID,IIF(a,b,c) AS ParentKey,1,t FROM T"
            << "Parameters xxx Value;SELECT ID,IIF(a,b,c) AS ParentKey,1,t FROM T WHERE "
               "IIF(a,b,c)=xxx";
        QTest::newRow("nothing to rewrite comes back unchanged") << ""
                                                                 << "";
    }
    void itemString()
    {
        QFETCH(QString, sql);
        QFETCH(QString, expected);
        QCOMPARE(MakeSQLItemString(sql), expected);
    }

    void unionParts_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QStringList>("parts");
        QTest::newRow("two parts") << "SELECT a FROM T UNION SELECT b FROM U"
                                   << QStringList{"SELECT a FROM T", "SELECT b FROM U"};
        QTest::newRow("any case") << "SELECT a FROM T union SELECT b FROM U"
                                  << QStringList{"SELECT a FROM T", "SELECT b FROM U"};
        // The search has no word boundaries: a name holding UNION splits too, and the character
        // behind the keyword is dropped with it.
        QTest::newRow("UNION inside a name")
            << "SELECT a FROM REUNION_LIST" << QStringList{"SELECT a FROM RE", "LIST"};
        QTest::newRow("no union") << " SELECT a FROM T " << QStringList{" SELECT a FROM T "};
        QTest::newRow("empty") << "" << QStringList{};
    }
    void unionParts()
    {
        QFETCH(QString, sql);
        QFETCH(QStringList, parts);
        QCOMPARE(SplitUnionParts(sql), parts);
    }

    void parentKeyAndSuffix_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("parent");
        QTest::addColumn<QString>("head");
        QTest::addColumn<QString>("tail");
        QTest::newRow("alias cut, tail from ORDER")
            << kDesignLevel << "C64Files.Category_File"
            << "SELECT C64Files.ID AS ItemKey,C64Files.Category_File AS ParentKey,F.iFileType as "
               "Icon, tProgram & "
               "'.' & tExtension AS File From C64Files as F where iType=1"
            << "order by 4";
        QTest::newRow("paren depth") << "SELECT Nz(a,0),IIF(x,y,z) AS P,c FROM T HAVING c>1"
                                     << "IIF(x,y,z)"
                                     << "SELECT Nz(a,0),IIF(x,y,z) AS P,c FROM T"
                                     << "HAVING c>1";
        QTest::newRow("two columns: no parent") << "SELECT a,b FROM T"
                                                << ""
                                                << "SELECT a,b FROM T"
                                                << "";
        QTest::newRow("lower-case as") << "SELECT a, b as P ,c FROM T"
                                       << "b"
                                       << "SELECT a, b as P ,c FROM T"
                                       << "";
    }
    void parentKeyAndSuffix()
    {
        QFETCH(QString, sql);
        QFETCH(QString, parent);
        QFETCH(QString, head);
        QFETCH(QString, tail);
        QCOMPARE(GetParentKey(sql), parent);
        QString s = sql;
        QCOMPARE(CutSQLSuffix(s), tail);
        QCOMPARE(s, head);
    }

    void parentString_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");
        QTest::newRow("keeps join and WHERE, drops ORDER")
            << kEntryLevel
            << "SELECT DISTINCT Category_File From (C64Files Left Join Category as F on "
               "C64Files.Category_File=F.ID)";
        QTest::newRow("WHERE kept")
            << kDesignLevel
            << "SELECT DISTINCT C64Files.Category_File From C64Files as F where iType=1";
        QTest::newRow("union parts")
            << "SELECT a,p1,c,d FROM T UNION SELECT a,p2,c,d FROM U GROUP BY a"
            << "SELECT DISTINCT p1 FROM T UNION SELECT DISTINCT p2 FROM U";
    }
    void parentString()
    {
        QFETCH(QString, sql);
        QFETCH(QString, expected);
        QCOMPARE(MakeSQLParentString(sql), expected);
        QVERIFY(m_dialogs.calls.isEmpty());
    }

    void parentStringWithoutFromIsReported()
    {
        QCOMPARE(MakeSQLParentString(QStringLiteral("SELECT 1,2,3")), QString());
        QCOMPARE(m_dialogs.calls.size(), 1);
        QCOMPARE(m_dialogs.calls[0].title, QStringLiteral("Tree: CTreeLevels_MakeSQLParentString"));
        QCOMPARE(m_dialogs.calls[0].style, int(platform::vbCritical));
        QVERIFY(m_dialogs.calls[0].text.startsWith(QLatin1String("5: ")));
    }

    void fieldLists_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QStringList>("fieldList");
        QTest::addColumn<QStringList>("selectColumns");
        QTest::newRow("distinct") << " select distinct F.ID AS ItemKey, -1 AS "
                                     "ParentKey,IIF(a,b,c),tCategory From Category as F"
                                  << QStringList{"", "F.ID", "-1", "IIF(a,b,c)",
                                                 "tCategory From Category"}
                                  << QStringList{"F.ID", "-1", "IIF(a,b,c)", "tCategory"};
        QTest::newRow("list level, blanks collapsed")
            << "Select  C64Files.ID,-1 , F.iFileType as Icon,tProgram as [File]  From (C64Files "
               "Left Join "
               "Category as F on C64Files.Category_File=F.ID)"
            << QStringList{"", "C64Files.ID", "-1", "F.iFileType", "tProgram"}
            << QStringList{"C64Files.ID", "-1", "F.iFileType", "tProgram"};
        QTest::newRow("distinctrow")
            << "SELECT DISTINCTROW a AS x, b FROM T" << QStringList{"", "DISTINCTROW a", "b FROM T"}
            << QStringList{"a", "b"};
    }
    void fieldLists()
    {
        QFETCH(QString, sql);
        QFETCH(QStringList, fieldList);
        QFETCH(QStringList, selectColumns);
        QCOMPARE(ParseFieldList(sql), fieldList);
        QCOMPARE(ParseSelectColumns(sql), selectColumns);
    }

    void filterAndSort_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<int>("filterCol");
        QTest::addColumn<int>("sortCol");
        QTest::addColumn<bool>("ascending");
        QTest::addColumn<QString>("expected");
        QTest::newRow("filter and sort")
            << "SELECT ID,Category_File AS ParentKey,tProgram FROM C64Files" << 1 << 2 << true
            << "SELECT ID,Category_File AS ParentKey,tProgram FROM C64Files WHERE "
               "Category_File = XXX ORDER BY 3 ASC";
        QTest::newRow("own WHERE, own order kept")
            << "SELECT a,b FROM T WHERE a>1 ORDER BY b desc" << 0 << -1 << true
            << "SELECT a,b FROM T WHERE a>1 AND a = XXX ORDER BY b desc";
        QTest::newRow("sort replaces own order") << "SELECT a,b FROM T ORDER BY b" << -1 << 0
                                                 << false << "SELECT a,b FROM T ORDER BY 1 DESC";
        QTest::newRow("GROUP BY moves behind the filter")
            << "SELECT a,count(b) FROM T WHERE c=1 GROUP BY a" << 0 << -1 << true
            << "SELECT a,count(b) FROM T WHERE c=1 AND a = XXX GROUP BY a";
        QTest::newRow("filter column past the end: no filter")
            << "SELECT a,b FROM T" << 5 << -1 << true << "SELECT a,b FROM T";
        QTest::newRow("nothing") << "SELECT a FROM T" << -1 << -1 << true << "SELECT a FROM T";
    }
    void filterAndSort()
    {
        QFETCH(QString, sql);
        QFETCH(int, filterCol);
        QFETCH(int, sortCol);
        QFETCH(bool, ascending);
        QFETCH(QString, expected);
        QCOMPARE(ApplyFilterAndSort(sql, filterCol, sortCol, ascending), expected);
    }

    void reportSql_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<int>("filterCol");
        QTest::addColumn<int>("sortCol");
        QTest::addColumn<QString>("expected");
        QTest::newRow("parameter line with its trailing blank")
            << "SELECT a,b FROM T" << 1 << -1
            << "PARAMETERS XXX VALUE; SELECT a,b FROM T WHERE b = XXX";
        QTest::newRow("each union part sorted on its own")
            << "SELECT a,b FROM T union SELECT c,d FROM U" << -1 << 1
            << "SELECT a,b FROM T ORDER BY 2 ASC UNION SELECT c,d FROM U ORDER BY 2 ASC";
        // A filter column the statement does not have still gets the parameter line.
        QTest::newRow("filter past the end keeps the line")
            << "SELECT a,b FROM T" << 7 << -1 << "PARAMETERS XXX VALUE; SELECT a,b FROM T";
        QTest::newRow("empty source") << "" << 1 << 1 << "";
    }
    void reportSql()
    {
        QFETCH(QString, sql);
        QFETCH(int, filterCol);
        QFETCH(int, sortCol);
        QFETCH(QString, expected);
        QCOMPARE(MakeReportSQL(sql, filterCol, sortCol, true), expected);
    }

    void keyLiterals_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("literal");
        QTest::newRow("boolean true") << db::type::Boolean << QVariant(true) << "-1";
        QTest::newRow("boolean false") << db::type::Boolean << QVariant(false) << "0";
        QTest::newRow("date") << db::type::Date << QVariant(test::stamp(2024, 3, 14, 21, 5, 0))
                              << "#03/14/2024 09:05:00 pm#";
        QTest::newRow("midnight") << db::type::Date << QVariant(test::stamp(2024, 1, 2, 0, 7, 9))
                                  << "#01/02/2024 12:07:09 am#";
        QTest::newRow("memo") << db::type::Memo << QVariant("long text") << "";
        QTest::newRow("binary") << db::type::LongBinary << QVariant(QByteArray("xy")) << "";
        QTest::newRow("text, quote not doubled")
            << db::type::Text << QVariant("O'Brien") << "'O'Brien'";
        QTest::newRow("long") << db::type::Long << QVariant(1234567) << "1234567";
        QTest::newRow("double") << db::type::Double << QVariant(2.5) << "2.5";
        QTest::newRow("comma becomes point") << db::type::Single << QVariant("2,75") << "2.75";
    }
    void keyLiterals()
    {
        QFETCH(int, type);
        QFETCH(QVariant, value);
        QFETCH(QString, literal);
        QCOMPARE(MakeKeyLiteral(type, value), literal);
    }

    void fieldConditions_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("exact");
        QTest::addColumn<bool>("caseSensitive");
        QTest::addColumn<bool>("bracket");
        QTest::addColumn<QString>("condition");
        QTest::newRow("long exact")
            << "ID" << db::type::Long << "12" << true << false << false << "ID  = 12";
        QTest::newRow("integer from")
            << "iType" << db::type::Integer << "3" << false << false << true << "[iType]  >= 3";
        QTest::newRow("double") << "Price" << db::type::Double << " 1,5 " << true << false << false
                                << "Price  = VAL('1,5')";
        QTest::newRow("date exact")
            << "tsCreated" << db::type::Date << "2024-03-14 21:05:00" << true << false << false
            << "tsCreated  = #03/14/2024 09:05:00 pm#";
        QTest::newRow("date partial") << "tsCreated" << db::type::Date << "14.03" << false << false
                                      << false << "'' & tsCreated LIKE '14.03*'";
        QTest::newRow("text, upper case") << "Name" << db::type::Text << "ab" << false << false
                                          << false << "UCASE(Name )LIKE 'AB*'";
        QTest::newRow("text exact, case kept")
            << "Name" << db::type::Text << "Ab" << true << true << true << "[Name] = 'Ab'";
        // Only the first of each character is masked: the second apostrophe stays.
        QTest::newRow("apostrophe replaced once") << "Name" << db::type::Text << "O'Brien's" << true
                                                  << true << false << "Name = 'O?Brien's'";
        QTest::newRow("five characters masked")
            << "N" << db::type::Text << "'\"[]*x*" << true << true << false << "N = '?????x*'";
        QTest::newRow("memo gives nothing")
            << "mConfig" << db::type::Memo << "x" << true << false << false << "";
        QTest::newRow("boolean gives nothing")
            << "Flag" << db::type::Boolean << "1" << true << false << false << "";
    }
    void fieldConditions()
    {
        QFETCH(QString, name);
        QFETCH(int, type);
        QFETCH(QString, value);
        QFETCH(bool, exact);
        QFETCH(bool, caseSensitive);
        QFETCH(bool, bracket);
        QFETCH(QString, condition);
        QCOMPARE(MakeFieldCondition(name, type, value, exact, caseSensitive, bracket), condition);
    }

    void dateConditionWithoutDateTakesNow()
    {
        const QString c = MakeFieldCondition(QStringLiteral("tsCreated"), db::type::Date,
                                             QStringLiteral("no date"), true, false, false);
        const QString today = QDate::currentDate().toString(QStringLiteral("MM/dd/yyyy"));
        QVERIFY2(c.startsWith(QStringLiteral("tsCreated  = #") + today), qPrintable(c));
    }

    // The statements the toolkit writes run on a real catalogue.
    void rewrittenStatementsRun()
    {
        test::CatalogueFixture fx;
        auto q = fx.db().createQueryDef(MakeSQLItemString(kEntryLevel));
        QCOMPARE(q->parameterCount(), 1);
        q->setParameter(0, QStringLiteral("1"));
        auto rs = q->openRecordset(db::RecordsetType::Snapshot);
        rs->moveLast();
        QCOMPARE(rs->recordCount(), 3); // Sanxion's three entries
        rs->moveFirst();
        QCOMPARE(rs->value(3).toString(), QStringLiteral("SANXION.PRG"));

        auto parents =
            fx.db().openRecordset(MakeSQLParentString(kEntryLevel) + QStringLiteral(" order by 1"),
                                  db::RecordsetType::Snapshot);
        parents->moveLast();
        QCOMPARE(parents->recordCount(), 9); // every file but the empty one

        const QString list =
            QStringLiteral("Select  C64Files.ID,Category_User AS ParentKey ,F.iFileType as "
                           "Icon,tProgram as [File] From "
                           "(C64Files Left Join Category as F on C64Files.Category_File=F.ID)");
        auto report = fx.db().createQueryDef(MakeReportSQL(list, 1, 3, false));
        report->setParameter(QStringLiteral("XXX"), QStringLiteral("20"));
        rs = report->openRecordset(db::RecordsetType::Snapshot);
        QStringList names;
        for (; !rs->eof(); rs->moveNext())
            names << rs->value(QStringLiteral("File")).toString();
        QCOMPARE(names, (QStringList{"URIDIUM", "PARADROID"}));

        const QString cond = MakeFieldCondition(QStringLiteral("tProgram"), db::type::Text,
                                                QStringLiteral("sanx"), false, false, true);
        rs = fx.db().openRecordset(QStringLiteral("Select ID From C64Files where ") + cond +
                                       " order by ID",
                                   db::RecordsetType::Snapshot);
        rs->moveLast();
        QCOMPARE(rs->recordCount(), 2);
        QVERIFY(m_dialogs.calls.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSqlTree)
#include "tst_sqltree.moc"
