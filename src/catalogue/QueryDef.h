#pragma once
// A prepared statement with parameters, set by name or by position.

#include "catalogue/DaoTypes.h"

#include <QVariant>
#include <memory>

namespace vd::db {

struct Connection;
struct Translation;
class Recordset;

class QueryDef
{
public:
    ~QueryDef();

    QString sql() const { return m_sql; }
    void setSql(const QString& jetSql);

    int parameterCount() const;
    QString parameterName(int index) const;
    void setParameter(int index, const QVariant& value);
    void setParameter(const QString& name, const QVariant& value); // throws err::ItemNotFound
    QVariant parameter(int index) const;

    std::unique_ptr<Recordset> openRecordset(RecordsetType type = RecordsetType::Dynaset,
                                             int options = 0);
    qint64 execute();

private:
    friend class Database;
    QueryDef(std::shared_ptr<Connection> conn, const QString& sql);
    std::shared_ptr<Connection> m_conn;
    QString m_sql;
    std::shared_ptr<const Translation> m_tr;
    QVector<QVariant> m_values;   // the declared parameters
    QVector<QVariant> m_literals; // the values of the text
    QVector<QVariant> bound() const { return m_values + m_literals; }
};

} // namespace vd::db
