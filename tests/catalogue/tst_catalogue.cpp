// The catalogue file: its exact shape when new, the version check, the upgrades of old
// catalogues with their data, compaction, and files that are no catalogue at all.

#include "app/Globals.h"
#include "catalogue/Catalogue.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "platform/ScriptedDialogService.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace vd;
using vd::db::type::Date;
using vd::db::type::Integer;
using vd::db::type::Long;
using vd::db::type::Memo;
using vd::db::type::Text;

namespace {

QByteArray fileHash(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(f.readAll(), QCryptographicHash::Md5);
}

QStringList fieldList(db::Database& d, const QString& table)
{
    QStringList out;
    for (const db::FieldDef& f : d.tableDef(table).fields)
        out << QStringLiteral("%1:%2:%3").arg(f.name).arg(f.type).arg(f.size);
    return out;
}

QStringList indexList(db::Database& d, const QString& table)
{
    QStringList out;
    for (const db::IndexDef& ix : d.tableDef(table).indexes)
        out << ix.name + QLatin1Char('=') + ix.fields.join(QLatin1Char(',')) + (ix.primary ? QStringLiteral("!") : QString());
    out.sort();
    return out;
}

QStringList versions(db::Database& d)
{
    QStringList out;
    auto rs = d.openRecordset(QStringLiteral("Select mConfig From Config where tItem='Version' order by ID"),
                              db::RecordsetType::Snapshot);
    for (; !rs->eof(); rs->moveNext())
        out << rs->value(0).toString();
    return out;
}

// A catalogue as the oldest program wrote it: no tUnpackPath, no GB_ID, no file types, no
// start counts; its Config says `version`.
void writeOldCatalogue(const QString& path, const QString& version, bool withStartFields)
{
    auto d = db::Database::create(path);
    for (db::TableDef t : catalogue::catalogueTables()) {
        QStringList drop;
        if (t.name == QLatin1String("C64Files"))
            drop = withStartFields ? QStringList{"GB_ID"} : QStringList{"GB_ID", "tsLastStarted", "lStartCount"};
        if (t.name == QLatin1String("Category"))
            drop = withStartFields ? QStringList{"tUnpackPath", "GB_ID", "tHash", "tsLastStarted", "lStartCount"}
                                   : QStringList{"tUnpackPath", "GB_ID", "iFileType", "tHash", "tsLastStarted", "lStartCount"};
        for (const QString& f : drop)
            t.fields.removeAt(t.fieldIndex(f));
        for (int i = t.indexes.size() - 1; i >= 0; --i)
            if (t.fieldIndex(t.indexes[i].fields[0]) < 0)
                t.indexes.removeAt(i);
        d->createTable(t);
    }
    d->execute(QStringLiteral("Insert Into Config (tItem, mConfig) Values ('Version', '%1')").arg(version));
}

} // namespace

class TestCatalogue : public QObject
{
    Q_OBJECT

    platform::ScriptedDialogService m_dialogs;
    QTemporaryDir m_dir;

    QString path(const QString& name) const { return m_dir.filePath(name); }

private slots:
    void init()
    {
        m_dialogs.clear();
        platform::setDialogService(&m_dialogs);
        catalogue::CloseCatalogue();
        app::gDatabasePath.clear();
    }
    void cleanup()
    {
        catalogue::CloseCatalogue();
        platform::setDialogService(nullptr);
    }

    void fileNameRule_data()
    {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<QString>("result");
        QTest::newRow("no extension") << "games" << "games.vdb";
        QTest::newRow("other extension") << "games.mdb" << "games.mdb.vdb";
        QTest::newRow("lower case kept") << "games.vdb" << "games.vdb";
        QTest::newRow("upper case kept") << "GAMES.VDB" << "GAMES.VDB";
        QTest::newRow("mixed case kept") << "Games.Vdb" << "Games.Vdb";
    }
    void fileNameRule()
    {
        QFETCH(QString, chosen);
        QFETCH(QString, result);
        QCOMPARE(catalogue::catalogueFileName(chosen), result);
    }

    void newCatalogueHasTheDesignedShape()
    {
        const QString p = catalogue::newCatalogue(path(QStringLiteral("shape")));
        QCOMPARE(p, path(QStringLiteral("shape.vdb")));
        auto d = db::Database::open(p);
        QCOMPARE(d->tableNames(), (QStringList{"C64Files", "Config", "Category"}));
        QCOMPARE(fieldList(*d, QStringLiteral("C64Files")),
                 (QStringList{"ID:4:0", "tProgram:10:100", "tRealProgram:10:100", "tExtension:10:10", "lSize:4:0",
                              "lIndex:4:0", "Category_File:4:0", "Category_User:4:0", "tsCreated:8:0", "GB_ID:4:0",
                              "tsLastStarted:8:0", "lStartCount:4:0"}));
        QCOMPARE(fieldList(*d, QStringLiteral("Config")),
                 (QStringList{"ID:4:0", "tItem:10:255", "mConfig:12:0", "tsCreated:8:0"}));
        QCOMPARE(fieldList(*d, QStringLiteral("Category")),
                 (QStringList{"ID:4:0", "iType:3:0", "tCategory:10:255", "tFile:10:255", "tPath:10:255",
                              "tImage:10:50", "tUnpackPath:10:255", "tsCreated:8:0", "GB_ID:4:0", "iFileType:3:0",
                              "tHash:10:100", "tsLastStarted:8:0", "lStartCount:4:0"}));
        QCOMPARE(indexList(*d, QStringLiteral("C64Files")),
                 (QStringList{"C1=Category_File", "C3=tProgram", "C4=GB_ID", "C5=tsLastStarted", "C6=lStartCount",
                              "IDIndex=ID!"}));
        QCOMPARE(indexList(*d, QStringLiteral("Config")), (QStringList{"C1=tItem", "IDIndex=ID!"}));
        QCOMPARE(indexList(*d, QStringLiteral("Category")),
                 (QStringList{"C1=iType", "C2=tPath", "C3=tCategory", "C4=tFile", "C5=GB_ID", "C6=iFileType",
                              "C7=tsLastStarted", "C8=lStartCount", "IDIndex=ID!"}));
        QCOMPARE(d->tableDef(QStringLiteral("Config")).fields[0].attributes, 16);
        QCOMPARE(d->tableDef(QStringLiteral("Category")).fields[0].attributes, 0);
        QCOMPARE(versions(*d), QStringList{"3.4"});
        auto rs = d->openRecordset(QStringLiteral("Select Count(*) From Category"), db::RecordsetType::Snapshot);
        QCOMPARE(rs->value(0).toInt(), 0);
        rs = d->openRecordset(QStringLiteral("Select Count(*) From C64Files"), db::RecordsetType::Snapshot);
        QCOMPARE(rs->value(0).toInt(), 0);
    }

    void creatingTwiceIsRefused()
    {
        QVERIFY(!catalogue::newCatalogue(path(QStringLiteral("twice"))).isEmpty());
        const QByteArray before = fileHash(path(QStringLiteral("twice.vdb")));
        QVERIFY(catalogue::newCatalogue(path(QStringLiteral("twice.vdb"))).isEmpty());
        QCOMPARE(m_dialogs.messages(), QStringList{"Der Datenbankname ist schon vorhanden!"});
        QCOMPARE(m_dialogs.calls[0].style, int(platform::vbExclamation));
        QCOMPARE(m_dialogs.calls[0].title, QStringLiteral("Error"));
        QCOMPARE(fileHash(path(QStringLiteral("twice.vdb"))), before);
        // A folder that cannot be written to gives the engine's reason.
        QVERIFY(catalogue::newCatalogue(path(QStringLiteral("no/such/folder/x"))).isEmpty());
        QVERIFY(m_dialogs.messages().last().startsWith(QLatin1String("Fehler: ")));
        QCOMPARE(m_dialogs.calls.last().style, int(platform::vbCritical));
    }

    void createAsksForTheName()
    {
        m_dialogs.answerCancel();
        QCOMPARE(catalogue::CreateCatalogue(), QString());
        m_dialogs.answerText(path(QStringLiteral("asked")));
        QCOMPARE(catalogue::CreateCatalogue(), path(QStringLiteral("asked.vdb")));
        QCOMPARE(app::gDialogPath, m_dir.path());
        QCOMPARE(m_dialogs.calls.last().title, QStringLiteral("Neue Datenbank erstellen"));
    }

    void openingACurrentCatalogueChangesNothing()
    {
        const QString p = catalogue::newCatalogue(path(QStringLiteral("current")));
        const QByteArray before = fileHash(p);
        QString q = p;
        QVERIFY(catalogue::OpenCatalogueFile(q));
        QVERIFY(app::gDB);
        QCOMPARE(versions(*app::gDB), QStringList{"3.4"});
        catalogue::CloseCatalogue();
        QCOMPARE(fileHash(p), before);
        QVERIFY(m_dialogs.calls.isEmpty());
    }

    void versionCheckComparesText()
    {
        QVERIFY(catalogue::compareVersionText(QStringLiteral("3.10"), QStringLiteral("3.4")) < 0);
        QVERIFY(catalogue::compareVersionText(QStringLiteral("3.5"), QStringLiteral("3.5")) == 0);
        QVERIFY(catalogue::compareVersionText(QStringLiteral("3.6"), QStringLiteral("3.5")) > 0);

        // The open catalogue stays when a newer one is refused.
        QString first = catalogue::newCatalogue(path(QStringLiteral("first")));
        QVERIFY(catalogue::OpenCatalogueFile(first));
        db::Database* open = app::gDB.get();

        const QString same = catalogue::newCatalogue(path(QStringLiteral("v35")));
        db::Database::open(same)->execute(QStringLiteral("Update Config Set mConfig='3.5'"));
        const QString newer = catalogue::newCatalogue(path(QStringLiteral("v36")));
        db::Database::open(newer)->execute(
            QStringLiteral("Insert Into Config (tItem, mConfig) Values ('Version', '3.6')"));
        const QByteArray newerHash = fileHash(newer);

        QString p = newer;
        QVERIFY(!catalogue::OpenCatalogueFile(p));
        QCOMPARE(m_dialogs.messages(), QStringList{"Please update the Vellumdock to run this database!"});
        QCOMPARE(m_dialogs.calls[0].style & platform::kIconMask, int(platform::vbCritical));
        QCOMPARE(app::gDB.get(), open);
        QCOMPARE(app::gDB->path(), first);
        QCOMPARE(fileHash(newer), newerHash);

        p = same;
        QVERIFY(catalogue::OpenCatalogueFile(p));
        QCOMPARE(versions(*app::gDB), QStringList{"3.5"});
    }

    void oldestCatalogueIsUpgraded()
    {
        const QString p = path(QStringLiteral("v1.vdb"));
        writeOldCatalogue(p, QStringLiteral("1"), false);
        {
            auto d = db::Database::open(p);
            const char* files[] = {"a.d64", "b.G64", "c.vfl", "d.zip", "e.T64", "f.prg"};
            int id = 1;
            for (const char* f : files)
                d->execute(QStringLiteral("Insert Into Category (ID, iType, tCategory, tFile, tPath) Values "
                                          "(%1, 1, '%2', '%2', '/c64/%2')")
                               .arg(id++)
                               .arg(QLatin1String(f)));
            d->execute(QStringLiteral("Insert Into Category (ID, iType, tCategory) Values (9, 3, 'Action')"));
            d->execute(QStringLiteral("Insert Into C64Files (ID, tProgram, Category_File) Values (1, 'GAME', 1)"));
        }
        QString q = p;
        QVERIFY2(catalogue::OpenCatalogueFile(q), qPrintable(m_dialogs.messages().join(QLatin1Char('|'))));
        db::Database& d = *app::gDB;
        // Fields added by upgrades stand behind the older ones.
        QCOMPARE(fieldList(d, QStringLiteral("Category")).mid(7),
                 (QStringList{"tUnpackPath:10:255", "GB_ID:4:0", "iFileType:3:0", "tHash:10:100",
                              "tsLastStarted:8:0", "lStartCount:4:0"}));
        QCOMPARE(fieldList(d, QStringLiteral("C64Files")).mid(9),
                 (QStringList{"GB_ID:4:0", "tsLastStarted:8:0", "lStartCount:4:0"}));
        // ... and the indexes are those of a new catalogue.
        const QString fresh = catalogue::newCatalogue(path(QStringLiteral("fresh")));
        auto n = db::Database::open(fresh);
        for (const char* t : {"C64Files", "Config", "Category"})
            QCOMPARE(indexList(d, QLatin1String(t)), indexList(*n, QLatin1String(t)));
        // File types from the old extension list, positions counted from 1.
        auto rs = d.openRecordset(QStringLiteral("Select tFile, iFileType From Category order by ID"),
                                  db::RecordsetType::Snapshot);
        QStringList types;
        for (; !rs->eof(); rs->moveNext())
            types << rs->value(0).toString() + QLatin1Char('=') +
                         (rs->value(1).isNull() ? QStringLiteral("Null") : rs->value(1).toString());
        QCOMPARE(types, (QStringList{"a.d64=1", "b.G64=10", "c.vfl=12", "d.zip=Null", "e.T64=3", "f.prg=4",
                                     "=Null"}));
        QCOMPARE(versions(d), (QStringList{"1", "3.4"}));
        rs = d.openRecordset(QStringLiteral("Select tProgram From C64Files"), db::RecordsetType::Snapshot);
        QCOMPARE(rs->value(0).toString(), QStringLiteral("GAME"));
    }

    void startCountsMoveUpToTheirFile()
    {
        const QString p = path(QStringLiteral("v31.vdb"));
        writeOldCatalogue(p, QStringLiteral("3.1"), true);
        {
            auto d = db::Database::open(p);
            for (int id = 1; id <= 3; ++id)
                d->execute(QStringLiteral("Insert Into Category (ID, iType, tFile, iFileType) Values (%1, 1, 'x%1.d64', 1)")
                               .arg(id));
            const char* rows[] = {
                "1, 1, 2, #03/01/2024 10:00:00 am#", "2, 1, 3, #03/14/2024 09:05:00 pm#",
                "3, 1, Null, Null",                  "4, 2, 1, Null",
                "5, 2, 4, #01/02/2023 01:00:00 pm#",
            };
            for (const char* r : rows)
                d->execute(QStringLiteral("Insert Into C64Files (ID, Category_File, lStartCount, tsLastStarted) Values (%1)")
                               .arg(QLatin1String(r)));
        }
        QString q = p;
        QVERIFY2(catalogue::OpenCatalogueFile(q), qPrintable(m_dialogs.messages().join(QLatin1Char('|'))));
        auto rs = app::gDB->openRecordset(QStringLiteral("Select ID, lStartCount, tsLastStarted From Category order by ID"),
                                          db::RecordsetType::Snapshot);
        QCOMPARE(rs->value(1).toInt(), 5);
        QCOMPARE(rs->value(2).toDateTime(), QDateTime(QDate(2024, 3, 14), QTime(21, 5)));
        rs->moveNext();
        QCOMPARE(rs->value(1).toInt(), 5);
        QCOMPARE(rs->value(2).toDateTime(), QDateTime(QDate(2023, 1, 2), QTime(13, 0)));
        rs->moveNext();
        QVERIFY(rs->value(1).isNull());
        QVERIFY(rs->value(2).isNull());
        QCOMPARE(versions(*app::gDB), (QStringList{"3.1", "3.4"}));
    }

    void notACatalogue_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("text file") << QByteArray("Hello, this is not a database.\r\n");
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("database without Config")
            << QByteArray(); // filled in the test: a real SQLite file of another program
        QTest::newRow("truncated catalogue") << QByteArray(); // filled in the test
    }
    void notACatalogue()
    {
        QFETCH(QByteArray, content);
        const QString tag = QString::fromLatin1(QTest::currentDataTag());
        QString open = catalogue::newCatalogue(path(QStringLiteral("open-%1").arg(tag)));
        QVERIFY(catalogue::OpenCatalogueFile(open));
        db::Database* before = app::gDB.get();

        const QString bad = path(QStringLiteral("bad-%1.vdb").arg(tag));
        if (tag == QLatin1String("database without Config")) {
            auto d = db::Database::create(bad);
            d->createTable(db::TableDef{QStringLiteral("Other"), {{QStringLiteral("X"), Long}}, {}});
        } else if (tag == QLatin1String("truncated catalogue")) {
            const QString full = catalogue::newCatalogue(path(QStringLiteral("full")));
            QFile f(full);
            QVERIFY(f.open(QIODevice::ReadOnly));
            const QByteArray bytes = f.readAll();
            QFile out(bad);
            QVERIFY(out.open(QIODevice::WriteOnly));
            out.write(bytes.left(bytes.size() / 3));
        } else {
            QFile out(bad);
            QVERIFY(out.open(QIODevice::WriteOnly));
            out.write(content);
        }
        const QByteArray hash = fileHash(bad);
        QString q = bad;
        QVERIFY(!catalogue::OpenCatalogueFile(q));
        QCOMPARE(m_dialogs.messages().size(), 1);
        const QString msg = m_dialogs.messages().first();
        QVERIFY2(msg.startsWith(QStringLiteral("Dies ist keine Vellumdock-Datenbank: ") + bad + QLatin1Char('\n')),
                 qPrintable(msg));
        QVERIFY(msg.size() > QStringLiteral("Dies ist keine Vellumdock-Datenbank: \n").size() + bad.size());
        QCOMPARE(m_dialogs.calls[0].style & platform::kIconMask, int(platform::vbCritical));
        QCOMPARE(app::gDB.get(), before);
        QCOMPARE(versions(*app::gDB), QStringList{"3.4"});
        QCOMPARE(fileHash(bad), hash);
    }

    void compactionKeepsEveryRowAndTheOldFile()
    {
        const QString p = catalogue::newCatalogue(path(QStringLiteral("compact")));
        {
            auto d = db::Database::open(p);
            d->beginTrans();
            for (int i = 1; i <= 500; ++i)
                d->execute(QStringLiteral("Insert Into C64Files (ID, tProgram) Values (%1, 'P%1')").arg(i));
            d->commitTrans();
            d->execute(QStringLiteral("Delete From C64Files where ID > 300"));
        }
        app::gDatabasePath = p;
        const QByteArray original = fileHash(p);
        QVERIFY(catalogue::CompactCatalogue());
        QVERIFY(m_dialogs.calls.isEmpty());
        QCOMPARE(fileHash(path(QStringLiteral("compact.OLD"))), original);
        QVERIFY(!QFile::exists(path(QStringLiteral("compact.MDR"))));
        auto count = [](const QString& file) {
            auto d = db::Database::open(file, true);
            return d->openRecordset(QStringLiteral("Select Count(*) From C64Files"), db::RecordsetType::Snapshot)
                ->value(0)
                .toInt();
        };
        QCOMPARE(count(p), 300);
        QCOMPARE(count(path(QStringLiteral("compact.OLD"))), 300);
        // A second compaction replaces the backup with the file compacted the first time.
        const QByteArray firstCompacted = fileHash(p);
        QVERIFY(catalogue::CompactCatalogue());
        QCOMPARE(fileHash(path(QStringLiteral("compact.OLD"))), firstCompacted);
        QCOMPARE(count(p), 300);
    }

    void compactionOfAMissingFileReports()
    {
        app::gDatabasePath = path(QStringLiteral("gone.vdb"));
        QVERIFY(!catalogue::CompactCatalogue());
        QCOMPARE(m_dialogs.messages().size(), 1);
        QVERIFY(m_dialogs.messages().first().startsWith(QLatin1String("CompactDB-Error: ")));
        QCOMPARE(m_dialogs.calls[0].style, 0);
        QCOMPARE(m_dialogs.calls[0].title, QString());
    }
};

QTEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
