#pragma once
// Field type codes and recordset kinds, numbered as the designed data-access objects number them.

#include <QString>
#include <QStringList>
#include <QVector>

namespace vd::db {

namespace type {
constexpr int Boolean = 1;
constexpr int Byte = 2;
constexpr int Integer = 3; // 16 bit
constexpr int Long = 4;    // 32 bit
constexpr int Currency = 5;
constexpr int Single = 6;
constexpr int Double = 7;
constexpr int Date = 8;
constexpr int Binary = 9;
constexpr int Text = 10;
constexpr int LongBinary = 11;
constexpr int Memo = 12;
constexpr int BigInt = 16;
constexpr int Numeric = 19;
constexpr int Decimal = 20;
constexpr int Float = 21;

// True for every type that holds a number (compared as a number, written without quotes).
constexpr bool isNumeric(int t)
{
    switch (t) {
    case Byte:
    case Integer:
    case Long:
    case Currency:
    case Single:
    case Double:
    case BigInt:
    case Numeric:
    case Decimal:
    case Float:
        return true;
    default:
        return false;
    }
}
} // namespace type

enum class RecordsetType : int
{
    Table = 1,
    Dynaset = 2,
    Snapshot = 4,
    ForwardOnly = 8,
};

namespace option {
constexpr int ReadOnly = 4;
constexpr int ForwardOnly = 256;
constexpr int SeeChanges = 512;
} // namespace option

// One field of a table: what CreateField takes and what a table's definition gives back.
struct FieldDef
{
    QString name;
    int type = type::Text;
    int size = 0;       // characters, for Text
    int attributes = 0; // 16: auto-number
};

struct IndexDef
{
    QString name; // the designed name, unique within its table ("C1", "IDIndex")
    QStringList fields;
    bool primary = false;
    bool unique = false;
};

struct TableDef
{
    QString name;
    QVector<FieldDef> fields;
    QVector<IndexDef> indexes;

    int fieldIndex(const QString& fieldName) const
    {
        for (int i = 0; i < fields.size(); ++i)
            if (fields[i].name.compare(fieldName, Qt::CaseInsensitive) == 0)
                return i;
        return -1;
    }
    bool hasIndex(const QString& indexName) const
    {
        for (const IndexDef& ix : indexes)
            if (ix.name.compare(indexName, Qt::CaseInsensitive) == 0)
                return true;
        return false;
    }
};

// What a recordset says of one of its columns.
struct FieldInfo
{
    QString name;
    int type = type::Text;
    int size = 0;
    int ordinalPosition = 0;
    QString sourceTable; // the table the column comes from, "" for an expression
};

// Column names and the engine's stored type names, one mapping both ways.
QString declaredTypeFor(const FieldDef& field);
// DAO type and size from a declared column type; unknown names give Text.
int typeFromDeclared(const QString& declared, int* size = nullptr);

} // namespace vd::db
