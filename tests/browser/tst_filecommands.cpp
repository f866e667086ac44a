// The file and category commands on a real catalogue of imported disk images: deletes by view
// with the clean-up of empty containers, the chronicle, user categories (quotes included),
// refreshing a changed image, the properties of files and entries, and that no command ever
// deletes a file on disk.

#include "app/Globals.h"
#include "browser/FileCommands.h"
#include "catalogue/Database.h"
#include "catalogue/RowOps.h"
#include "support/C64ImageWriter.h"
#include "support/ImportFixture.h"

#include <memory>
#include <QDir>
#include <QFile>
#include <QtTest>
#include <sqlite3.h>

using namespace vd;
using platform::vbNo;
using platform::vbYes;
using test::DiskWriter;
using test::Slot;

namespace {

Slot prg(const char* name, int blocks = 1)
{
    Slot s;
    s.name = test::padded(name);
    s.blocks = blocks;
    return s;
}

} // namespace

class TestFileCommands : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::ImportFixture> f;
    QString m_a, m_b, m_c; // three disk images on disk

    // A D64 with these entries, imported; its Category id.
    qint64 importDisk(const QString& path, const QVector<Slot>& entrySlots)
    {
        DiskWriter::d64().name(test::padded("DISK")).entries(entrySlots).save(path);
        return f->load(path);
    }
    qint64 entryId(const QString& program) const
    {
        return f->value("Select ID From C64Files where tProgram='" + program + "'").toLongLong();
    }
    QStringList messages() const { return f->dialogs.messages(); }
    void allFilesStillOnDisk() const
    {
        for (const QString& p : {m_a, m_b, m_c})
            QVERIFY2(QFile::exists(p), qPrintable(p));
    }

private slots:
    void init()
    {
        f = std::make_unique<test::ImportFixture>();
        m_a = f->file(QStringLiteral("Alpha.d64"));
        m_b = f->file(QStringLiteral("Beta.d64"));
        m_c = f->file(QStringLiteral("Gamma.d64"));
        QCOMPARE(importDisk(m_a, {prg("A1"), prg("A2")}), qint64(1));
        QCOMPARE(importDisk(m_b, {prg("B1")}), qint64(2));
        QCOMPARE(importDisk(m_c, {prg("C1"), prg("C2"), prg("C3")}), qint64(3));
        f->dialogs.clear();
    }
    void cleanup() { f.reset(); }

    void filesViewDeleteClearsContainersThatLostTheirEntries()
    {
        // The other views delete entries: all of Alpha's go, the file row stays for now.
        f->dialogs.answer(vbYes);
        QVERIFY(browser::DeleteEntries({entryId("A1"), entryId("A2")}));
        QCOMPARE(messages(), QStringList{"Anzahl der zu löschenden Dateien: 2"});
        QCOMPARE(f->count("Category", "iType=1"), qint64(3));

        // A No in the files view deletes nothing.
        QString status;
        f->dialogs.answer(vbNo);
        QVERIFY(!browser::DeleteMainFiles(f->fm, {2}, status));
        QCOMPARE(f->count("Category", "iType=1"), qint64(3));

        // Deleting Beta takes its entries, and the clean-up takes the empty Alpha.
        f->dialogs.answer(vbYes);
        QVERIFY(browser::DeleteMainFiles(f->fm, {2}, status));
        QCOMPARE(messages().last(), QStringLiteral("Anzahl der zu löschenden Dateien aus der "
                                                   "Datenbank: 1"));
        QCOMPARE(f->rows("Select ID From Category order by ID"), QStringList{"3"});
        QCOMPARE(f->rows("Select tProgram From C64Files order by ID"),
                 QStringList({"C1", "C2", "C3"}));
        QCOMPARE(status, QStringLiteral("Gelöschte Dateien: 2"));
        QCOMPARE(f->fm.lC64FileCount, qint64(3));
        allFilesStillOnDisk();
    }

    void userCategoryDeleteKeepsItsEntries()
    {
        qint64 last = f->fm.lLastCategoryID;
        const QString name = QStringLiteral("Shoot'em Up");
        browser::AssignCategory({1, 3}, name, last);
        const qint64 cat = f->value("Select ID From Category where iType=3").toLongLong();
        QCOMPARE(f->count("C64Files", "Category_User=" + QString::number(cat)), qint64(5));

        f->dialogs.answer(vbNo);
        QVERIFY(!browser::DeleteUserCategory(cat, name));
        QCOMPARE(f->count("Category", "iType=3"), qint64(1));
        f->dialogs.answer(vbYes);
        QVERIFY(browser::DeleteUserCategory(cat, name));
        QCOMPARE(messages().last(),
                 QStringLiteral("Möchten Sie die Kategorie 'Shoot'em Up' löschen?"));
        QCOMPARE(f->count("Category", "iType=3"), qint64(0));
        QCOMPARE(f->count("C64Files"), qint64(6));
        QCOMPARE(f->count("C64Files", "isNull(Category_User)"), qint64(6));
        QCOMPARE(f->count("Category", "iType=1"), qint64(3));
    }

    void chronicleDeleteClearsCountsOfFileAndEntries()
    {
        app::gDB->execute("Update Category Set lStartCount=4,tsLastStarted=#03/14/2024 09:05:00 "
                          "pm# where ID in (1,3)");
        app::gDB->execute("Update C64Files Set lStartCount=2,tsLastStarted=#03/14/2024 09:05:00 "
                          "pm# where Category_File in (1,3)");
        f->dialogs.answer(vbYes);
        QVERIFY(browser::DeleteChronicle(1, QStringLiteral("Alpha.d64")));
        QCOMPARE(messages(), QStringList{"Möchten Sie die Chronik der Datei 'Alpha.d64' löschen?"});
        QCOMPARE(f->rows("Select ID,lStartCount,tsLastStarted From Category order by ID"),
                 QStringList({"1|-|-", "2|-|-", "3|4|2024-03-14T21:05:00.000"}));
        QCOMPARE(f->rows("Select Category_File,lStartCount From C64Files order by ID"),
                 QStringList({"1|-", "1|-", "2|-", "3|2", "3|2", "3|2"}));
    }

    void singleDeleteFollowsTheSignOfTheTag()
    {
        f->dialogs.answer(vbYes);
        QVERIFY(browser::DeleteSelected(entryId("C2"), QStringLiteral("C2")));
        QCOMPARE(messages().last(),
                 QStringLiteral("Möchten Sie die Datei 'C2' aus der Datenbank löschen?"));
        QCOMPARE(f->count("C64Files", "Category_File=3"), qint64(2));
        f->dialogs.answer(vbYes);
        QVERIFY(browser::DeleteSelected(-3, QStringLiteral("Gamma.d64")));
        QCOMPARE(f->count("Category", "ID=3"), qint64(0));
        QCOMPARE(f->count("C64Files", "Category_File=3"), qint64(0));
        QCOMPARE(f->count("C64Files"), qint64(3));
        QVERIFY(!browser::DeleteSelected(0, QString())); // nothing selected: no question
        QCOMPARE(messages().size(), 2);
        allFilesStillOnDisk();
    }

    void deleteFailureIsReported()
    {
        // A table the delete needs is gone: the engine's error reaches the user.
        QCOMPARE(sqlite3_exec(app::gDB->handle(), "DROP TABLE C64Files", nullptr, nullptr, nullptr),
                 SQLITE_OK);
        f->dialogs.answer(vbYes);
        QVERIFY(!browser::DeleteSelected(-1, QStringLiteral("Alpha.d64")));
        QCOMPARE(messages().size(), 2);
        QVERIFY2(messages()[1].startsWith(QStringLiteral("Del-Error: ")),
                 qPrintable(messages()[1]));
        QVERIFY(messages()[1].size() > QStringLiteral("Del-Error: ").size());
        QCOMPARE(f->count("Category", "ID=1"), qint64(1));
    }

    void categoriesWithQuotesAreCreatedAndRenamed()
    {
        qint64& last = f->fm.lLastCategoryID;
        f->dialogs.answerText(QStringLiteral("O'Brien's"));
        const qint64 id = browser::NewCategory(last);
        QCOMPARE(id, qint64(4));
        QCOMPARE(f->value("Select tCategory From Category where ID=4"),
                 QStringLiteral("O'Brien's"));
        QCOMPARE(f->dialogs.calls[0].text, QStringLiteral("Neue Kategorie:"));

        // The same name again is refused; Cancel adds nothing either.
        f->dialogs.answerText(QStringLiteral("O'Brien's"));
        QCOMPARE(browser::NewCategory(last), qint64(0));
        QCOMPARE(messages(), QStringList{"Diese Kategorie besteht schon!"});
        f->dialogs.answerCancel();
        QCOMPARE(browser::NewCategory(last), qint64(0));
        QCOMPARE(f->count("Category", "iType=3"), qint64(1));

        f->dialogs.answerText(QStringLiteral("Puzzle"));
        const qint64 other = browser::NewCategory(last);
        QCOMPARE(other, qint64(5));

        // Its own name is no conflict; another's is.
        f->dialogs.answerText(QStringLiteral("O'Brien's"));
        QCOMPARE(browser::RenameCategory(id, QStringLiteral("O'Brien's")),
                 QStringLiteral("O'Brien's"));
        QCOMPARE(f->dialogs.calls.last().start, QStringLiteral("O'Brien's"));
        QCOMPARE(f->dialogs.calls.last().text, QStringLiteral("Umbenennung der Kategorie: "));
        f->dialogs.answerText(QStringLiteral("Puzzle"));
        QCOMPARE(browser::RenameCategory(id, QStringLiteral("O'Brien's")), QString());
        QCOMPARE(messages().last(), QStringLiteral("Diese Kategorie besteht schon!"));
        QCOMPARE(f->value("Select tCategory From Category where ID=4"),
                 QStringLiteral("O'Brien's"));
        f->dialogs.answerText(QStringLiteral("Bob's 'Best'"));
        QCOMPARE(browser::RenameCategory(id, QStringLiteral("O'Brien's")),
                 QStringLiteral("Bob's 'Best'"));
        QCOMPARE(f->rows("Select ID,tCategory From Category where iType=3 order by ID"),
                 QStringList({"4|Bob's 'Best'", "5|Puzzle"}));

        // Assigned and deleted with the quote in its name.
        browser::AssignCategory({2}, QStringLiteral("Bob's 'Best'"), last);
        QCOMPARE(f->count("C64Files", "Category_User=4"), qint64(1));
        f->dialogs.answer(vbYes);
        QVERIFY(browser::DeleteUserCategory(4, QStringLiteral("Bob's 'Best'")));
        QCOMPARE(f->count("C64Files", "Category_User=4"), qint64(0));
        QCOMPARE(f->count("C64Files"), qint64(6));
    }

    void refreshReportsUnchangedAddedAndDeleted()
    {
        bool changed = true;
        QCOMPARE(browser::RefreshFile(f->fm, 3, changed), QStringLiteral("Datei ist unverändert"));
        QVERIFY(!changed);

        // A start copy of the old disk lies in Temp; a changed disk makes it go.
        const QString copy = app::gTempPath + QStringLiteral("/3.d64");
        QVERIFY(test::writeFile(copy, "old"));
        DiskWriter::d64()
            .name(test::padded("DISK"))
            .entries({prg("C1"), prg("C2"), prg("C3"), prg("C4")})
            .save(m_c);
        QCOMPARE(browser::RefreshFile(f->fm, 3, changed),
                 QStringLiteral("Hinzugefügte C64-Files: 1"));
        QVERIFY(changed);
        QVERIFY(!QFile::exists(copy));
        QCOMPARE(f->count("C64Files", "Category_File=3"), qint64(4));

        DiskWriter::d64().name(test::padded("DISK")).entries({prg("C1")}).save(m_c);
        QCOMPARE(browser::RefreshFile(f->fm, 3, changed), QStringLiteral("Gelöschte Dateien: 3"));
        QCOMPARE(f->rows("Select tProgram From C64Files where Category_File=3"), QStringList{"C1"});
        QVERIFY(messages().isEmpty());

        // A vanished file ends the command with the warning.
        QVERIFY(QFile::remove(m_b));
        QCOMPARE(browser::RefreshFile(f->fm, 2, changed), QString());
        QCOMPARE(messages(), QStringList{"Datei nicht gefunden: " + m_b});
        QCOMPARE(f->count("C64Files", "Category_File=2"), qint64(1));
        QCOMPARE(browser::RefreshFile(f->fm, 99, changed), QString());
    }

    void filePathOfTagFindsTheFileOfAnEntry()
    {
        QCOMPARE(browser::FilePathOfTag(-2), m_b);
        QCOMPARE(browser::FilePathOfTag(entryId("C3")), m_c);
        QCOMPARE(browser::FilePathOfTag(99), QString());
        QCOMPARE(browser::FilePathOfTag(0), QString());
    }

    void filePropertiesRenameTheFileOnDisk()
    {
        browser::FileProperties row;
        QVERIFY(browser::ReadFileProperties(3, row));
        QCOMPARE(row.tFile, QStringLiteral("Gamma.d64"));
        QCOMPARE(row.baseName(), QStringLiteral("Gamma"));
        QCOMPARE(row.extension(), QStringLiteral(".d64"));
        QCOMPARE(row.entryCount, qint64(3));
        QCOMPARE(row.iFileType, 1);

        QVERIFY(!browser::SaveFileProperties(row, QString(), QString()));
        QCOMPARE(messages(), QStringList{"Bitte geben Sie einen Dateinamen an!"});

        // A name that another file has already: the rename fails, nothing is stored.
        QVERIFY(!browser::SaveFileProperties(row, QStringLiteral("Beta"), QString()));
        QCOMPARE(messages().last(), QStringLiteral("Datei konnte nicht umbenannt werden!"));
        QCOMPARE(f->value("Select tPath From Category where ID=3"), m_c);
        allFilesStillOnDisk();

        QVERIFY(browser::SaveFileProperties(row, QStringLiteral("Gamma's Best"),
                                            QStringLiteral("abc")));
        const QString renamed = f->file(QStringLiteral("Gamma's Best.d64"));
        QVERIFY(QFile::exists(renamed));
        QVERIFY(!QFile::exists(m_c));
        QCOMPARE(f->rows("Select tFile,tCategory,tPath,tHash From Category where ID=3"),
                 QStringList{"Gamma's Best.d64|Gamma's Best.d64|" + renamed + "|abc"});
        QCOMPARE(f->count("C64Files", "Category_File=3"), qint64(3));
    }

    void filePropertiesFailCleanlyInAReadOnlyFolder()
    {
        const QString folder = QFileInfo(m_a).absolutePath();
        QVERIFY(QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        QFile probe(folder + QStringLiteral("/probe"));
        const bool writable = probe.open(QIODevice::WriteOnly);
        if (writable) {
            probe.close();
            probe.remove();
        }
        const auto restore = qScopeGuard([&folder] {
            QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                              QFileDevice::ExeOwner);
        });
        if (writable)
            QSKIP("a read-only folder is writable here (running as root)");
        browser::FileProperties row;
        QVERIFY(browser::ReadFileProperties(1, row));
        QVERIFY(!browser::SaveFileProperties(row, QStringLiteral("Renamed"), QStringLiteral("h")));
        QCOMPARE(messages(), QStringList{"Datei konnte nicht umbenannt werden!"});
        QCOMPARE(f->rows("Select tFile,tPath,tHash From Category where ID=1"),
                 QStringList{"Alpha.d64|" + m_a + "|-"});
        QVERIFY(QFile::exists(m_a));
    }

    void entryPropertiesStoreNameCategoryAndLink()
    {
        qint64& last = f->fm.lLastCategoryID;
        const qint64 c1 = entryId("C1"), c2 = entryId("C2");
        browser::EntryChange change;
        QVERIFY(!browser::SaveEntries({c1}, change, last));
        QCOMPARE(messages(), QStringList{"Bitte geben Sie einen Filenamen an!"});

        change.name = QStringLiteral("Rock'n Roll");
        change.category = QStringLiteral("Action");
        change.gbId = 77;
        change.gbChanged = true;
        QVERIFY(browser::SaveEntries({c1}, change, last));
        QCOMPARE(f->rows("Select tProgram,Category_User,GB_ID From C64Files where ID=" +
                         QString::number(c1)),
                 QStringList{"Rock'n Roll|4|77"});
        QCOMPARE(f->value("Select GB_ID From Category where ID=3"), QStringLiteral("77"));

        // Several rows: the name stays, the existing category is found, the link goes.
        change.name.clear();
        change.gbId = 0;
        QVERIFY(browser::SaveEntries({c1, c2}, change, last));
        QCOMPARE(f->rows("Select tProgram,Category_User,GB_ID From C64Files where Category_File=3 "
                         "order by ID"),
                 QStringList({"Rock'n Roll|4|-", "C2|4|-", "C3|-|-"}));
        QCOMPARE(f->count("Category", "iType=3"), qint64(1));
        QCOMPARE(f->value("Select GB_ID From Category where ID=3"), QStringLiteral("-"));

        // "Löschen" takes the category away from whole files.
        browser::AssignCategory({3}, QStringLiteral("Löschen"), last);
        QCOMPARE(f->count("C64Files", "not isNull(Category_User)"), qint64(0));
        QCOMPARE(f->count("Category", "iType=3"), qint64(1));
    }
};

QTEST_GUILESS_MAIN(TestFileCommands)
#include "tst_filecommands.moc"
