// The small routines every other part builds its SQL with, oddities included.

#include "app/Globals.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "platform/ScriptedDialogService.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace vd;
using namespace vd::catalogue;

class TestRowOps : public QObject
{
    Q_OBJECT

    platform::ScriptedDialogService m_dialogs;
    QTemporaryDir m_dir;
    int m_runs = 0;

    int count(const QString& where)
    {
        return GetDbValue(QStringLiteral("Count(*)"), QStringLiteral("C64Files"), where).toInt();
    }

private slots:
    void init()
    {
        m_dialogs.clear();
        platform::setDialogService(&m_dialogs);
        QString p = newCatalogue(m_dir.filePath(QStringLiteral("rows%1").arg(++m_runs)));
        QVERIFY(OpenCatalogueFile(p));
        // Two user categories and one file with three entries, two of them in category 20.
        app::gDB->execute(QStringLiteral("Insert Into Category (ID, iType, tCategory) Values (20, 3, 'Action')"));
        app::gDB->execute(QStringLiteral("Insert Into Category (ID, iType, tCategory) Values (21, 3, 'Bob''s Best')"));
        app::gDB->execute(QStringLiteral("Insert Into Category (ID, iType, tCategory, tFile, tPath) Values "
                                         "(1, 1, 'game.d64', 'game.d64', '/c64/game.d64')"));
        for (int i = 1; i <= 3; ++i)
            app::gDB->execute(QStringLiteral("Insert Into C64Files (ID, tProgram, Category_File, Category_User) "
                                             "Values (%1, 'P%1', 1, %2)")
                                  .arg(i)
                                  .arg(i < 3 ? QStringLiteral("20") : QStringLiteral("Null")));
    }
    void cleanup()
    {
        CloseCatalogue();
        platform::setDialogService(nullptr);
    }

    void addWhere_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("term");
        QTest::addColumn<QString>("joiner");
        QTest::addColumn<QString>("result");
        QTest::newRow("first term") << "" << "a=1" << "" << " where a=1";
        QTest::newRow("second term") << " where a=1" << "b=2" << "" << " where a=1 And b=2";
        QTest::newRow("with Or") << " where a=1" << "b=2" << "Or" << " where a=1 Or b=2";
        QTest::newRow("empty term drops all") << " where a=1" << "" << "Or" << "";
        QTest::newRow("open bracket") << " where a=1" << "(" << "" << " where a=1 And (";
        QTest::newRow("after bracket two blanks") << " where a=1 And (" << "b=2" << "Or" << " where a=1 And (  b=2";
        QTest::newRow("bracket first") << "" << "(" << "" << " where (";
    }
    void addWhere()
    {
        QFETCH(QString, where);
        QFETCH(QString, term);
        QFETCH(QString, joiner);
        QFETCH(QString, result);
        const bool wasEmpty = joiner.isEmpty();
        QCOMPARE(AddWhere(where, term, joiner), result);
        if (wasEmpty)
            QCOMPARE(joiner, QStringLiteral("And")); // the caller's joiner changes too
    }

    void likeClause()
    {
        QCOMPARE(LikeClause(QStringLiteral("F.tFile like"), QStringLiteral("a*")), QStringLiteral("F.tFile like'a*'"));
        QCOMPARE(LikeClause(QStringLiteral("tProgram like"), QStringLiteral("mad")),
                 QStringLiteral("tProgram like'*mad*'"));
        QCOMPARE(LikeClause(QStringLiteral("x like"), QString()), QString());
        // The clause runs as it is built.
        const QString where = AddWhere(QString(), LikeClause(QStringLiteral("tProgram like"), QStringLiteral("2")));
        QCOMPARE(count(where), 1);
    }

    void getDbValue()
    {
        QString where = QStringLiteral("ID=3");
        QCOMPARE(GetDbValue(QStringLiteral("tProgram"), QStringLiteral("C64Files"), where), QStringLiteral("P3"));
        QCOMPARE(where, QStringLiteral("where ID=3")); // the caller's text gains "where "
        QCOMPARE(GetDbValue(QStringLiteral("Max(ID)"), QStringLiteral("Category")), QStringLiteral("21"));
        QCOMPARE(GetDbValue(QStringLiteral("Category_User"), QStringLiteral("C64Files"), QStringLiteral("ID=3")),
                 QString()); // Null
        QCOMPARE(GetDbValue(QStringLiteral("ID"), QStringLiteral("C64Files"), QStringLiteral("ID=99")), QString());
        QCOMPARE(GetDbValue(QStringLiteral("Nonsense("), QStringLiteral("C64Files")), QString()); // errors are swallowed
        QCOMPARE(GetDbValue(QStringLiteral("Top 1 C.tPath"),
                            QStringLiteral("C64Files as F Left Join Category as C on F.Category_File=C.ID"),
                            QStringLiteral("where F.ID=2")),
                 QStringLiteral("/c64/game.d64"));
        QVERIFY(m_dialogs.calls.isEmpty());
    }

    void userCategories()
    {
        QVERIFY(CategoryExists(QStringLiteral("action"), QString(), false));
        QVERIFY(CategoryExists(QStringLiteral("Bob's Best"), QString(), false));
        QVERIFY(!CategoryExists(QStringLiteral("Action"), QStringLiteral(" AND ID<>20"), true)); // renaming itself
        QVERIFY(m_dialogs.calls.isEmpty());
        QVERIFY(CategoryExists(QStringLiteral("Action"), QString(), true));
        QCOMPARE(m_dialogs.messages(), QStringList{"Diese Kategorie besteht schon!"});
        QCOMPARE(m_dialogs.calls[0].style, int(platform::vbExclamation));

        qint64 last = 21;
        QCOMPARE(FindOrAddCategory(QStringLiteral("Bob's Best"), false, last), 21);
        QCOMPARE(last, 21);
        QCOMPARE(FindOrAddCategory(QStringLiteral("Puzzle"), false, last), 22);
        QCOMPARE(last, 22);
        QCOMPARE(FindOrAddCategory(QStringLiteral("Puzzle"), true, last), 23); // always adds
        const QString longName(300, QLatin1Char('n'));
        const qint64 id = FindOrAddCategory(longName, false, last);
        QCOMPARE(GetDbValue(QStringLiteral("tCategory"), QStringLiteral("Category"),
                            QStringLiteral("ID=%1").arg(id)),
                 longName.left(255));
        QCOMPARE(GetDbValue(QStringLiteral("iType"), QStringLiteral("Category"), QStringLiteral("ID=22")),
                 QStringLiteral("3"));
    }

    void deletingRows()
    {
        DeleteEntry(1);
        QCOMPARE(count(QString()), 2);
        // A user category goes, its entries stay without it.
        DeleteCategoryRow(20, 3);
        QCOMPARE(count(QString()), 2);
        QCOMPARE(count(QStringLiteral("not isNull(Category_User)")), 0);
        QCOMPARE(GetDbValue(QStringLiteral("Count(*)"), QStringLiteral("Category"), QStringLiteral("ID=20")),
                 QStringLiteral("0"));
        // A file goes with its entries.
        DeleteCategoryRow(1, 1);
        QCOMPARE(count(QString()), 0);
        QCOMPARE(GetDbValue(QStringLiteral("Count(*)"), QStringLiteral("Category")), QStringLiteral("1"));
    }

    void xorHexText()
    {
        // 'A' (41) ^ 'k' (6B) = 2A, 'B' (42) ^ 'e' (65) = 27, 'C' (43) ^ 'k' = 28: the key repeats.
        QCOMPARE(XorHexText(QStringLiteral("ABC"), QStringLiteral("ke"), true), QStringLiteral("2A2728"));
        QCOMPARE(XorHexText(QStringLiteral("2A2728"), QStringLiteral("ke"), false), QStringLiteral("ABC"));
        const QString secret = QStringLiteral("pässwörd 123");
        const QString key = QStringLiteral("Vellumdock");
        const QString hex = XorHexText(secret, key, true);
        QCOMPARE(hex.size(), secret.size() * 2);
        QVERIFY(QRegularExpression(QStringLiteral("^[0-9A-F]+$")).match(hex).hasMatch());
        QCOMPARE(XorHexText(hex, key, false), secret);
        QCOMPARE(XorHexText(hex + QLatin1Char('F'), key, false), secret); // an odd digit is left over
    }
};

QTEST_GUILESS_MAIN(TestRowOps)
#include "tst_rowops.moc"
