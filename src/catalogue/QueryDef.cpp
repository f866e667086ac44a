#include "catalogue/QueryDef.h"

#include "catalogue/DatabasePrivate.h"
#include "catalogue/DbError.h"
#include "catalogue/Recordset.h"

namespace vd::db {

QueryDef::QueryDef(std::shared_ptr<Connection> conn, const QString& sql)
    : m_conn(std::move(conn)), m_sql(sql)
{
}

QueryDef::~QueryDef() = default;

void QueryDef::setSql(const QString& jetSql)
{
    if (!m_conn)
        throw DbError(err::Engine, QStringLiteral("The database is closed."));
    m_tr = m_conn->translation(jetSql, false, m_literals);
    m_sql = jetSql;
    m_values = QVector<QVariant>(m_tr->parameters.size());
}

int QueryDef::parameterCount() const
{
    return m_tr ? int(m_tr->parameters.size()) : 0;
}

QString QueryDef::parameterName(int index) const
{
    return m_tr ? m_tr->parameters.value(index) : QString();
}

void QueryDef::setParameter(int index, const QVariant& value)
{
    if (index < 0 || index >= m_values.size())
        throw DbError(err::ItemNotFound, QStringLiteral("Item not found in this collection."),
                      QString::number(index));
    m_values[index] = value;
}

void QueryDef::setParameter(const QString& name, const QVariant& value)
{
    for (int i = 0; i < parameterCount(); ++i)
        if (m_tr->parameters[i].compare(name, Qt::CaseInsensitive) == 0) {
            m_values[i] = value;
            return;
        }
    throw DbError(err::ItemNotFound, QStringLiteral("Item not found in this collection: %1.").arg(name),
                  m_sql);
}

QVariant QueryDef::parameter(int index) const
{
    return m_values.value(index);
}

std::unique_ptr<Recordset> QueryDef::openRecordset(RecordsetType type, int options)
{
    if (!m_tr)
        throw DbError(err::Engine, QStringLiteral("The query has no statement."));
    if (!m_tr->isSelect)
        throw DbError(err::Engine, QStringLiteral("Invalid operation: not a SELECT statement."), m_sql);
    if (type == RecordsetType::Table)
        type = RecordsetType::Dynaset;
    if (options & option::ForwardOnly)
        type = RecordsetType::ForwardOnly;
    const bool rowid = type != RecordsetType::ForwardOnly;
    QVector<QVariant> literals = m_literals;
    auto tr = rowid ? m_conn->translation(m_sql, true, literals) : m_tr;
    std::unique_ptr<Recordset> rs(new Recordset(m_conn, m_sql, tr, m_values + literals, type, options));
    rs->start();
    return rs;
}

qint64 QueryDef::execute()
{
    if (!m_tr)
        throw DbError(err::Engine, QStringLiteral("The query has no statement."));
    return m_conn->run(*m_tr, bound());
}

} // namespace vd::db
