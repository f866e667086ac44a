#pragma once
// A recordset over one statement. Rows come in a stable order; a snapshot or dynaset keeps the
// rows it has read, so positions can be set freely once reached. RecordCount counts the rows
// reached so far, and is exact after moveLast().

#include "catalogue/DaoTypes.h"

#include <utility>
#include "catalogue/DbError.h"

#include <QHash>
#include <QSet>
#include <QVariant>
#include <QVector>
#include <vector>
#include <memory>

namespace vd::db {

struct Connection;
struct Translation;
class RowStore;

// A block of rows as GetRows gives it: value(field, row).
struct RowBlock
{
    int fieldCount = 0;
    int rowCount = 0;
    QVector<QVariant> values; // row-major
    const QVariant& value(int field, int row) const { return values[row * fieldCount + field]; }
};

class Recordset
{
public:
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    RecordsetType type() const { return m_type; }
    QString name() const { return m_source; } // the statement as given

    int fieldCount() const;
    const FieldInfo& field(int index) const;
    int fieldIndex(const QString& name) const; // -1 when absent
    const QVector<FieldInfo>& fields() const;

    // Values of the current row. A missing name throws err::ItemNotFound, no current row
    // throws err::NoCurrentRecord. Null is a null QVariant; dates come as QDateTime.
    QVariant value(int index) const;
    QVariant value(const QString& name) const;

    bool eof() const;
    bool bof() const;
    qint64 recordCount() const;

    void moveFirst();
    void moveLast();
    void moveNext();
    void movePrevious();

    qint64 absolutePosition() const; // -1 without a current row
    void setAbsolutePosition(qint64 position);

    // Up to `count` rows from the current one; the current row moves behind the last row read.
    RowBlock getRows(qint64 count);

    // Jet criteria over the recordset's fields: "tFile='x'", "[File] like '*x*'", "ID=5 And ...".
    bool findFirst(const QString& criteria);
    bool findNext(const QString& criteria);
    bool findLast(const QString& criteria);
    bool findPrevious(const QString& criteria);
    bool noMatch() const { return m_noMatch; }

    // Writing rows of a single-table dynaset.
    bool updatable() const;
    void addNew();
    void edit();
    void setValue(const QString& name, const QVariant& value); // "Collect(name) = value"
    void update();
    void cancelUpdate();
    void deleteRow();

    void requery();
    void close();
    bool isOpen() const;

private:
    friend class Database;
    friend class QueryDef;
    Recordset(std::shared_ptr<Connection> conn, const QString& source,
              std::shared_ptr<const Translation> translation, const QVector<QVariant>& params,
              RecordsetType type, int options);
    void start();
    bool fetchTo(qint64 index); // reads rows until `index` exists; false when past the end
    void checkCurrent() const;
    qint64 find(const QString& criteria, qint64 from, int step);
    qint64 findByStatement(const QString& criteria, qint64 from, int step);
    int criteriaField(const QStringList& parts, const QString& criteria) const; // throws 3070
    bool joinsAreUnique() const;
    QVariant storedValue(qint64 row, int column) const;
    qint64 storeIndex(qint64 row) const; // where a row's values lie, read when needed
    void fetchBlock(qint64 row) const;
    const QString& cursorSql() const;
    QVariant rowid(qint64 row, int source) const;
    struct PendingEdit
    {
        int source = 0; // which table of the statement
        QString column;
        QVariant value; // as stored
    };
    int resolveEdit(const QString& name, QString& column) const;

    std::shared_ptr<Connection> m_conn;
    QString m_source;
    std::shared_ptr<const Translation> m_tr;
    QVector<QVariant> m_params;
    RecordsetType m_type;
    int m_options = 0;
    // Keyed: the statement was read once for the rowids of its tables; rows are read again
    // in blocks as they are wanted and kept while the cache holds them.
    bool m_keyed = false;
    // Only the first table's rowids were read: every other table is joined on a unique column,
    // so they tell the rows apart alone.
    bool m_keysOnly = false;
    int m_keyWidth = 0;                     // rowids kept per row
    mutable std::vector<qint64> m_keys;     // rows x m_keyWidth, kNullKey for a missing row
    mutable QHash<qint64, qint64> m_cached; // row -> index in m_rows
    QSet<qint64> m_deleted;
    struct Cursor;
    std::unique_ptr<Cursor> m_cursor;
    std::unique_ptr<RowStore> m_rows;
    QVector<FieldInfo> m_fields;
    qint64 m_pos = -1; // current row, -1 before the first; == count behind the last
    bool m_atEnd = false;
    bool m_noMatch = true;
    int m_editMode = 0; // 0 none, 1 edit, 2 add
    QVector<PendingEdit> m_edits;
    // What writing needs again and again: the written tables' definitions, where each name
    // given to setValue leads (source, field of its table), the last INSERT text.
    const TableDef& sourceDef(int source) const;
    mutable QVector<TableDef> m_sourceDefs;
    QHash<QString, std::pair<int, int>> m_editTargets;
    QString m_insertColumns;
    QString m_insertSql;
};

} // namespace vd::db
