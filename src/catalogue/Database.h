#pragma once
// The data layer: a catalogue file (SQLite underneath) that callers drive with Jet SQL text
// and data-access objects. Nothing above this layer writes SQLite dialect.

#include "catalogue/DaoTypes.h"
#include "catalogue/DbError.h"

#include <functional>
#include <memory>
#include <QString>
#include <QVariant>

struct sqlite3;

namespace vd::db {

class Recordset;
class QueryDef;
struct Connection;

class Database
{
public:
    // A new, empty file. Throws DbError(err::DatabaseExists) when a file of that name exists.
    static std::unique_ptr<Database> create(const QString& path);
    // Opens an existing file read-write. Throws DbError when it is missing or not a database.
    static std::unique_ptr<Database> open(const QString& path, bool readOnly = false);
    // A database that lives in memory only (tests, scratch work).
    static std::unique_ptr<Database> openMemory();

    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    QString path() const;
    // True when the file could only be opened for reading (asked so, or not writable).
    bool isReadOnly() const;
    bool isOpen() const;
    void close();

    // Runs one action statement (Update, Delete, Insert). Returns the number of rows affected.
    qint64 execute(const QString& jetSql);
    qint64 recordsAffected() const;

    // `source` is a SELECT statement or a table name.
    std::unique_ptr<Recordset> openRecordset(const QString& source,
                                             RecordsetType type = RecordsetType::Dynaset,
                                             int options = 0);
    std::unique_ptr<QueryDef> createQueryDef(const QString& jetSql = {});

    // Schema.
    void createTable(const TableDef& table);
    void appendField(const QString& table, const FieldDef& field);
    void createIndex(const QString& table, const IndexDef& index);
    TableDef tableDef(const QString& table) const; // throws err::ItemNotFound
    QStringList tableNames() const;
    bool tableExists(const QString& table) const;

    // Transactions. A long batch groups its writes; nested calls are counted.
    void beginTrans();
    void commitTrans();
    void rollback();
    bool inTransaction() const;

    // "[;database=PATH].Table" in a statement reaches another database file. The resolver maps
    // the path written in the statement to the file actually attached (a cache, say).
    void setAttachResolver(std::function<QString(const QString&)> resolver);

    // The SQLite text a Jet statement becomes; for reports and tests.
    QString translate(const QString& jetSql) const;

    sqlite3* handle() const;
    std::shared_ptr<Connection> connection() const { return m_conn; }

private:
    explicit Database(std::shared_ptr<Connection> conn);
    std::shared_ptr<Connection> m_conn;
};

// Copies a closed database file into a compacted new file (which must not exist yet).
void compactDatabase(const QString& source, const QString& target);

} // namespace vd::db
