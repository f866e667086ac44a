#pragma once
// Reads the tables of an Access file (Jet 3 and Jet 4) through libmdb: the user tables, their
// columns with the field type codes of the data layer, and their rows as values.

#include "catalogue/DaoTypes.h"

#include <functional>
#include <memory>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

namespace vd::gamebase {

class MdbReader
{
public:
    // A row as read: one value per column, a null QVariant for a null field.
    using RowSink = std::function<bool(const QVector<QVariant>& row)>;

    MdbReader();
    ~MdbReader();
    MdbReader(const MdbReader&) = delete;
    MdbReader& operator=(const MdbReader&) = delete;

    // Opens the file read-only. On failure returns false and errorText() says why.
    bool open(const QString& path);
    void close();
    bool isOpen() const;
    QString errorText() const { return m_error; }

    QStringList tableNames() const;
    // The columns of a table with their data-layer types; empty when the table is unreadable.
    QVector<db::FieldDef> columns(const QString& table);
    // Calls `sink` for every row of `table` until it returns false. Returns the rows read, or -1
    // when the table cannot be read (errorText() then says why).
    qint64 readRows(const QString& table, const RowSink& sink);

private:
    struct Private;
    std::unique_ptr<Private> d;
    QString m_error;
};

// The data-layer field type for a libmdb column type (Money, Float and Numeric become Double,
// Replication-IDs and Binary stay text or bytes).
int fieldTypeForMdb(int mdbType);
// A Jet date number as the text the data layer stores ("YYYY-MM-DD HH:MM:SS"); empty when
// it lies outside the years 100 to 9999.
QString jetDateText(double value);

} // namespace vd::gamebase
