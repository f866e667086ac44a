// The level definitions of the tree on a real catalogue: the prepared queries, the parent
// buffers and their binary search, the parent-key look-up, and what a failing Setup leaves.

#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "controls/TreeLevels.h"
#include "platform/ScriptedDialogService.h"
#include "support/CatalogueFixture.h"
#include "support/FileViewLevels.h"

#include <QSignalSpy>
#include <QtTest>

using namespace vd;
using namespace vd::controls;

namespace {

const QString& kRoot = test::kRootLevel;
const QString& kFiles = test::kFilesLevel;
const QString& kEntries = test::kEntriesLevel;

QStringList fileView()
{
    return {kRoot, kFiles, kEntries};
}

QList<QVariant> bufferKeys(const CDistinctBuffer& b)
{
    QList<QVariant> keys;
    for (int i = 0; i < b.count(); ++i)
        keys << b.item(i);
    return keys;
}

} // namespace

class TestTreeLevels : public QObject
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

    void setupPreparesLevelsAndBuffers()
    {
        test::CatalogueFixture fx;
        CTreeLevels levels;
        QSignalSpy changed(&levels, &CTreeLevels::Changed);
        levels.Create(&fx.db(), 0);
        levels.Setup(fileView());
        QCOMPARE(levels.Count(), 3);
        QCOMPARE(changed.count(), 1); // once, at the end
        QVERIFY(!levels.inSetup());
        QCOMPARE(levels.sql(3), kEntries);
        QVERIFY(levels.querySql(3).startsWith(QLatin1String("Parameters xxx Value;SELECT")));
        QCOMPARE(levels.querySql(2), kFiles);
        QCOMPARE(levels.id(1), QVariant(QString()));

        // Level 1 has children (the root), level 2 those files that have entries; the last
        // level has no buffer.
        QVERIFY(levels.parentBuffer(1)->Contains(-1));
        QCOMPARE(bufferKeys(*levels.parentBuffer(2)),
                 (QList<QVariant>{1, 2, 3, 4, 5, 6, 7, 9, 10}));
        QVERIFY(!levels.parentBuffer(2)->Contains(8));
        QVERIFY(!levels.parentBuffer(3));
        QVERIFY(!levels.parentBuffer(0));
        QVERIFY(m_dialogs.calls.isEmpty());
    }

    void getnodesOpensOneLevel()
    {
        test::CatalogueFixture fx;
        CTreeLevels levels;
        levels.Create(&fx.db(), 0);
        levels.Setup(fileView());
        auto rs = levels.Getnodes(3, QStringLiteral("1"));
        QVERIFY(rs);
        QCOMPARE(rs->recordCount(), 3);
        rs->setAbsolutePosition(2);
        QCOMPARE(rs->value(3).toString(), QStringLiteral("MY_GAME.PRG"));
        // Levels 1 and 2 are opened as they stand, whatever parent key is given.
        rs = levels.Getnodes(2, QStringLiteral("whatever"));
        QCOMPARE(rs->recordCount(), 10);
        QCOMPARE(rs->value(3).toString(), QStringLiteral("Boulder Dash.tap"));
        QVERIFY(!levels.Getnodes(4, QStringLiteral("1")));
        QCOMPARE(levels.Getnodes(3, QStringLiteral("8"))->recordCount(), 0);
    }

    void findParentKey_data()
    {
        QTest::addColumn<QStringList>("statements");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("keyAfter");
        QTest::addColumn<QString>("parent");
        QTest::newRow("entry to file") << fileView() << "5" << 3 << "5"
                                       << "3";
        QTest::newRow("file to root, WHERE kept") << fileView() << "3" << 2 << "3"
                                                  << "-1";
        QTest::newRow("user category of the file is not it") << fileView() << "20" << 2 << "20"
                                                             << "";
        QTest::newRow("key that no longer exists") << fileView() << "999" << 3 << "999"
                                                   << "";
        QTest::newRow("level past the count") << fileView() << "5" << 4 << "5"
                                              << "";
        // A text key is quoted in the caller's variable; embedded quotes are not doubled.
        QTest::newRow("text key quoted in place")
            << QStringList{kRoot, kFiles,
                           "SELECT tProgram AS ItemKey,Category_File AS ParentKey,1 AS "
                           "Icon,tProgram From "
                           "C64Files GROUP BY tProgram,Category_File"}
            << "PARADROID" << 3 << "'PARADROID'"
            << "3";
        QTest::newRow("union: FindFirst on the opened statement")
            << QStringList{kRoot, kFiles,
                           "SELECT ID AS ItemKey,Category_File AS ParentKey,1 AS Icon,tProgram "
                           "FROM C64Files WHERE "
                           "lSize>100 UNION SELECT ID,Category_File,2,tProgram FROM C64Files WHERE "
                           "lSize<=100 "
                           "ORDER BY 4"}
            << "10" << 3 << "10"
            << "6";
    }
    void findParentKey()
    {
        QFETCH(QStringList, statements);
        QFETCH(QString, key);
        QFETCH(int, level);
        QFETCH(QString, keyAfter);
        QFETCH(QString, parent);
        test::CatalogueFixture fx;
        CTreeLevels levels;
        levels.Create(&fx.db(), 0);
        levels.Setup(statements);
        QCOMPARE(levels.Count(), 3);
        QCOMPARE(levels.FindParentKey(key, level), parent);
        QCOMPARE(key, keyAfter);
        QVERIFY2(m_dialogs.calls.isEmpty(),
                 qPrintable(m_dialogs.messages().join(QLatin1Char('\n'))));
    }

    void textKeyQuotedTwiceWhenReused()
    {
        test::CatalogueFixture fx;
        CTreeLevels levels;
        levels.Create(&fx.db(), 0);
        levels.Setup(
            {kRoot, QStringLiteral("SELECT tFile AS ItemKey,-1 AS ParentKey,1 AS Icon,tFile From "
                                   "Category where iType=1")});
        QString key = QStringLiteral("Uridium.t64");
        QCOMPARE(levels.FindParentKey(key, 2), QStringLiteral("-1"));
        QCOMPARE(key, QStringLiteral("'Uridium.t64'"));
        // The same variable again: quoted twice, which the engine cannot read.
        QCOMPARE(levels.FindParentKey(key, 2), QString());
        QCOMPARE(key, QStringLiteral("''Uridium.t64''"));
        QCOMPARE(m_dialogs.calls.size(), 1);
        QCOMPARE(m_dialogs.calls[0].title, QStringLiteral("Tree: CTreeLevels_FindParentKey"));
    }

    void failingSetupLeavesHalfADefinition()
    {
        test::CatalogueFixture fx;
        CTreeLevels levels;
        QSignalSpy changed(&levels, &CTreeLevels::Changed);
        levels.Create(&fx.db(), 0);
        levels.Setup({kRoot, QStringLiteral("SELECT ID,-1,1,tFile FROM (Category"), kEntries});
        QCOMPARE(levels.Count(), 1); // the rest was not added
        QCOMPARE(changed.count(), 0);
        QVERIFY(levels.inSetup());
        QCOMPARE(m_dialogs.calls.size(), 1);
        QCOMPARE(m_dialogs.calls[0].title, QStringLiteral("Tree: CTreeLevels_Setup"));
        QCOMPARE(m_dialogs.calls[0].style, int(platform::vbCritical));
        QVERIFY(m_dialogs.calls[0].text.startsWith(QLatin1String("3075: ")));

        // The flag stays set: AddNew from outside fires nothing until the next Setup.
        levels.AddNew(QStringLiteral("x"), kFiles);
        QCOMPARE(levels.Count(), 2);
        QCOMPARE(changed.count(), 0);
        levels.Setup(fileView());
        QCOMPARE(changed.count(), 1);
        QVERIFY(!levels.inSetup());
        levels.AddNew(QStringLiteral("x"), kEntries);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(levels.id(4), QVariant(QStringLiteral("x")));
    }

    void reInitAndEmptySetup()
    {
        test::CatalogueFixture fx;
        CTreeLevels levels;
        QSignalSpy changed(&levels, &CTreeLevels::Changed);
        levels.Create(&fx.db(), 0);
        levels.setReInit(false);
        levels.Setup(fileView());
        QCOMPARE(changed.count(), 0);
        QCOMPARE(levels.Count(), 3);
        levels.setReInit(true);
        levels.Setup({});
        QCOMPARE(changed.count(), 1);
        QCOMPARE(levels.Count(), 0);
        // Ids outside the levels read empty and take no writes.
        levels.setId(1, QStringLiteral("gone"));
        QVERIFY(!levels.id(1).isValid());
        QVERIFY(!levels.id(-1).isValid());
    }

    void buffersRefreshOnlyWhenAsked()
    {
        test::CatalogueFixture fx;
        CTreeLevels levels;
        levels.Create(&fx.db(), 0);
        levels.Setup(fileView());
        QVERIFY(!levels.parentBuffer(2)->Contains(8));
        fx.db().execute(
            QStringLiteral("Insert Into C64Files (ID,tProgram,tExtension,Category_File,lIndex) "
                           "Values (50,'NEW','PRG',8,1)"));
        levels.CreateParentBuffers(false);
        QVERIFY(!levels.parentBuffer(2)->Contains(8));
        levels.CreateParentBuffers(true);
        QVERIFY(levels.parentBuffer(2)->Contains(8));
    }

    void plusMinusModeBuildsNoBuffers()
    {
        test::CatalogueFixture fx;
        CTreeLevels levels;
        levels.Create(&fx.db(), 1);
        levels.Setup(fileView());
        QCOMPARE(levels.FetchPlusMinusMode(), 1);
        QVERIFY(!levels.parentBuffer(1));
        QVERIFY(!levels.parentBuffer(2));
    }

    void getnodesFailureIsReported()
    {
        test::CatalogueFixture fx;
        CTreeLevels levels;
        levels.Create(&fx.db(), 1);
        // Without parent buffers a statement on a missing table fails only on opening.
        levels.Setup(
            {kRoot, kFiles, QStringLiteral("SELECT ID,Category_File,1,x FROM NoSuchTable")});
        QCOMPARE(levels.Count(), 3);
        QVERIFY(!levels.Getnodes(3, QStringLiteral("1")));
        QCOMPARE(m_dialogs.calls.size(), 1);
        QCOMPARE(m_dialogs.calls[0].title, QStringLiteral("Tree: CTreeLevels_Getnodes"));
    }

    void distinctBufferSearch_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QVariantList>("present");
        QTest::addColumn<QVariantList>("absent");
        // Nulls come first and are never found.
        QTest::newRow("numbers with Null")
            << "SELECT DISTINCT GB_ID FROM C64Files order by 1" << QVariantList{101, 102}
            << QVariantList{QVariant(), 100, 103, 1};
        // Texts compare by character code, whatever order the engine gave.
        QTest::newRow("texts given descending")
            << "SELECT DISTINCT tExtension FROM C64Files order by 1 desc"
            << QVariantList{"GIF", "PNG", "PRG", "SEQ", "TXT"}
            << QVariantList{"prg", "ABC", "ZZZ", "PR"};
        QTest::newRow("one row") << "SELECT DISTINCT -1 FROM Config" << QVariantList{-1}
                                 << QVariantList{0, -2, "-1x"};
        QTest::newRow("empty") << "SELECT ID FROM C64Files where ID<0" << QVariantList{}
                               << QVariantList{0, QVariant()};
    }
    void distinctBufferSearch()
    {
        QFETCH(QString, sql);
        QFETCH(QVariantList, present);
        QFETCH(QVariantList, absent);
        test::CatalogueFixture fx;
        auto rs = fx.db().openRecordset(sql, db::RecordsetType::Snapshot);
        CDistinctBuffer buffer;
        buffer.Create(*rs);
        for (const QVariant& k : present)
            QVERIFY2(buffer.Contains(k), qPrintable(k.toString()));
        for (const QVariant& k : absent)
            QVERIFY2(!buffer.Contains(k), qPrintable(k.toString()));
        QVERIFY(m_dialogs.calls.isEmpty());
    }

    void keyOrder_data()
    {
        QTest::addColumn<QVariant>("a");
        QTest::addColumn<QVariant>("b");
        QTest::addColumn<int>("order");
        QTest::newRow("numbers") << QVariant(2) << QVariant(10) << -1;
        QTest::newRow("long and double") << QVariant(qlonglong(3)) << QVariant(2.5) << 1;
        QTest::newRow("text by code") << QVariant("a") << QVariant("B") << 1;
        QTest::newRow("Null first") << QVariant() << QVariant(-5) << -1;
        QTest::newRow("number before text") << QVariant(99) << QVariant("1") << -1;
        QTest::newRow("equal") << QVariant("Abc") << QVariant("Abc") << 0;
    }
    void keyOrder()
    {
        QFETCH(QVariant, a);
        QFETCH(QVariant, b);
        QFETCH(int, order);
        QCOMPARE(CDistinctBuffer::compare(a, b), order);
        QCOMPARE(CDistinctBuffer::compare(b, a), -order);
    }
};

QTEST_GUILESS_MAIN(TestTreeLevels)
#include "tst_treelevels.moc"
