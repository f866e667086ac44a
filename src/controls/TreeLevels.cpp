#include "controls/TreeLevels.h"

#include "catalogue/Database.h"
#include "catalogue/QueryDef.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "controls/ControlErrors.h"
#include "controls/SqlTree.h"

#include <algorithm>
#include <QDateTime>

namespace vd::controls {

// --- CDistinctBuffer -----------------------------------------------------------------------

namespace {

bool isNumber(const QVariant& v)
{
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Bool:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::QDateTime:
    case QMetaType::QDate:
        return true;
    default:
        return false;
    }
}

double numberOf(const QVariant& v)
{
    if (v.typeId() == QMetaType::QDateTime)
        return double(v.toDateTime().toMSecsSinceEpoch());
    if (v.typeId() == QMetaType::QDate)
        return double(v.toDate().startOfDay().toMSecsSinceEpoch());
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? -1 : 0;
    return v.toDouble();
}

} // namespace

CDistinctBuffer::~CDistinctBuffer() = default;

int CDistinctBuffer::compare(const QVariant& a, const QVariant& b)
{
    const bool an = a.isNull(), bn = b.isNull();
    if (an || bn)
        return an == bn ? 0 : (an ? -1 : 1);
    const bool anum = isNumber(a), bnum = isNumber(b);
    if (anum && bnum) {
        const double x = numberOf(a), y = numberOf(b);
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    if (anum != bnum)
        return anum ? -1 : 1; // a number is less than a text
    const int c = QString::compare(a.toString(), b.toString(), Qt::CaseSensitive);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

void CDistinctBuffer::Create(db::Recordset& rs)
{
    treeGuard("CDistinctbuffer_Create", [&] {
        m_keys.clear();
        m_count = 0;
        if (rs.recordCount() < 1)
            return;
        rs.moveLast();
        const qint64 count = rs.recordCount();
        rs.moveFirst();
        const db::RowBlock rows = rs.getRows(count + 1);
        m_keys.reserve(rows.rowCount);
        for (int r = 0; r < rows.rowCount; ++r)
            m_keys << rows.value(0, r);
        m_count = qint32(m_keys.size());
        // The engine need not give DISTINCT keys in order (nor in the order the search
        // compares them); the search needs them ascending.
        auto less = [](const QVariant& a, const QVariant& b) { return compare(a, b) < 0; };
        if (!std::is_sorted(m_keys.begin(), m_keys.end(), less))
            std::stable_sort(m_keys.begin(), m_keys.end(), less);
    });
}

bool CDistinctBuffer::Contains(const QVariant& key) const
{
    if (m_count < 1)
        return false;
    return treeGuard("CDistinctBuffer_Contains", false, [&] { return bsearch(key); });
}

bool CDistinctBuffer::bsearch(const QVariant& key) const
{
    if (key.isNull())
        return false; // a Null key compares with nothing
    qint32 low = 0;
    qint32 high = m_count - 1;
    qint32 middle = 0;
    do {
        middle = (low + high) / 2;
        const QVariant& element = m_keys[middle];
        if (element.isNull() || compare(key, element) > 0)
            low = middle + 1;
        else
            high = middle - 1;
    } while (low <= high && !(!m_keys[middle].isNull() && compare(key, m_keys[middle]) == 0));
    return !m_keys[middle].isNull() && compare(key, m_keys[middle]) == 0;
}

// --- CTreeLevels ---------------------------------------------------------------------------

CTreeLevels::CTreeLevels(QObject* parent) : QObject(parent) {}

CTreeLevels::~CTreeLevels() = default;

CTreeLevels::Level* CTreeLevels::level(int n) const
{
    if (n < 1 || n > int(m_levels.size()))
        return nullptr;
    return m_levels[size_t(n - 1)].get();
}

void CTreeLevels::Create(db::Database* database, int plusMinusMode)
{
    m_db = database;
    m_plusMinusMode = plusMinusMode;
}

void CTreeLevels::Clear()
{
    m_levels.clear();
}

void CTreeLevels::AddNew(const QVariant& id, const QString& sql)
{
    if (!m_db)
        throw db::DbError(
            rterr::ObjectMissing,
            QStringLiteral("Objektvariable oder With-Blockvariable nicht festgelegt"));
    auto lv = std::make_unique<Level>();
    lv->id = id;
    lv->sql = sql;
    const int number = int(m_levels.size()) + 1;
    // Levels from 3 on are opened per parent, with its key as the parameter.
    lv->query = m_db->createQueryDef(number >= 3 ? MakeSQLItemString(sql) : sql);
    m_levels.push_back(std::move(lv));
    CreateParentBuffers(false);
    if (!m_inSetup)
        emit Changed();
}

void CTreeLevels::Setup(const QStringList& statements)
{
    treeGuard("CTreeLevels_Setup", [&] {
        m_inSetup = true;
        Clear();
        for (const QString& sql : statements)
            AddNew(QString(), sql);
        // A failure above leaves the flag set until the next Setup, and fires nothing.
        m_inSetup = false;
        if (m_reInit)
            emit Changed();
    });
}

QVariant CTreeLevels::id(int n) const
{
    const Level* lv = level(n);
    return lv ? lv->id : QVariant();
}

void CTreeLevels::setId(int n, const QVariant& value)
{
    if (Level* lv = level(n))
        lv->id = value;
}

QString CTreeLevels::sql(int n) const
{
    const Level* lv = level(n);
    return lv ? lv->sql : QString();
}

QString CTreeLevels::querySql(int n) const
{
    const Level* lv = level(n);
    return lv && lv->query ? lv->query->sql() : QString();
}

CDistinctBuffer* CTreeLevels::parentBuffer(int n) const
{
    const Level* lv = level(n);
    return lv ? lv->parentBuffer.get() : nullptr;
}

std::unique_ptr<db::Recordset> CTreeLevels::Getnodes(int n, const QString& parentKey)
{
    return treeGuard("CTreeLevels_Getnodes", std::unique_ptr<db::Recordset>(), [&] {
        Level* lv = level(n);
        if (!lv)
            return std::unique_ptr<db::Recordset>();
        if (n >= 3)
            lv->query->setParameter(0, parentKey);
        auto rs = lv->query->openRecordset(db::RecordsetType::Snapshot);
        if (rs->recordCount() > 0) {
            rs->moveLast();
            rs->moveFirst();
        }
        return rs;
    });
}

QString CTreeLevels::FindParentKey(QString& key, int n)
{
    if (!IsNumericText(key))
        key = QLatin1Char('\'') + key + QLatin1Char('\''); // in the caller's variable
    return treeGuard("CTreeLevels_FindParentKey", QString(), [&] {
        const Level* lv = level(n);
        if (!lv)
            return QString();
        QString sql = lv->sql;
        bool unionMode = false;
        if (FindNoCase(sql, QStringLiteral(" UNION ")) > 0) {
            const int order = FindNoCase(sql, QStringLiteral(" ORDER BY "));
            if (order >= 0)
                sql.truncate(order);
            unionMode = true;
        } else {
            const int order = FindNoCase(sql, QStringLiteral(" ORDER BY "));
            if (order >= 0)
                sql.truncate(order);
            QString groupTail;
            const int group = FindNoCase(sql, QStringLiteral(" GROUP BY "));
            if (group >= 0) {
                groupTail = QStringLiteral(" GROUP BY ") + sql.mid(group + 10);
                sql.truncate(group);
            }
            QString cond;
            const int where = FindNoCase(sql, QStringLiteral(" WHERE "));
            if (where >= 0) {
                cond = QStringLiteral(" AND (") + sql.mid(where + 7) + QLatin1Char(')');
                sql.truncate(where);
            }
            const QStringList columns = ParseFieldList(sql);
            cond += QStringLiteral(" AND (") + columns.value(1) + QStringLiteral(" = ") + key +
                    QLatin1Char(')');
            sql += QStringLiteral(" WHERE ") + cond.mid(4) + QLatin1Char(' ') + groupTail;
        }
        auto rs = m_db->openRecordset(sql, db::RecordsetType::Dynaset);
        if (rs->recordCount() <= 0)
            return QString();
        if (unionMode && !rs->findFirst(rs->field(0).name + QLatin1Char('=') + key))
            return QString();
        return catalogue::ValueText(rs->value(1));
    });
}

CDistinctBuffer* CTreeLevels::CreateParentBuffer(int n)
{
    Level* lv = level(n);
    if (!lv || n >= Count())
        return nullptr;
    QString sql = MakeSQLParentString(level(n + 1)->sql);
    if (n > 2)
        sql += QStringLiteral(" order by 1");
    auto rs = m_db->openRecordset(sql, db::RecordsetType::Snapshot);
    auto buffer = std::make_unique<CDistinctBuffer>();
    buffer->Create(*rs);
    rs->close();
    lv->parentBuffer = std::move(buffer);
    return lv->parentBuffer.get();
}

void CTreeLevels::CreateParentBuffers(bool refill)
{
    if (m_plusMinusMode != 0 || Count() < 2)
        return;
    for (int n = 1; n < Count(); ++n) {
        Level* lv = level(n);
        if (refill)
            lv->parentBuffer.reset();
        if (!lv->parentBuffer)
            CreateParentBuffer(n);
    }
}

} // namespace vd::controls
