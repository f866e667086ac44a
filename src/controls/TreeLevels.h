#pragma once
// The level definitions of a tree: one Jet SELECT per level, each with its prepared query, and
// per level the sorted keys that have children one level down (so that a plus sign costs one
// binary search, not a query).

#include <memory>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <vector>

namespace vd::db {
class Database;
class QueryDef;
class Recordset;
} // namespace vd::db

namespace vd::controls {

// Keys read from field 0 of a recordset, kept in ascending order (Nulls first).
class CDistinctBuffer
{
public:
    ~CDistinctBuffer();
    void Create(db::Recordset& rs);
    bool Contains(const QVariant& key) const;
    qint32 count() const { return m_count; }
    const QVariant& item(int i) const { return m_keys[i]; }

    // The order in which keys are searched: Null first, numbers by value before texts, texts
    // by character code. Negative, 0 or positive.
    static int compare(const QVariant& a, const QVariant& b);

private:
    bool bsearch(const QVariant& key) const;
    QVector<QVariant> m_keys;
    qint32 m_count = 0;
};

class CTreeLevels : public QObject
{
    Q_OBJECT

public:
    struct Level
    {
        QVariant id;
        QString sql; // as the caller gave it
        std::unique_ptr<db::QueryDef> query;
        std::unique_ptr<CDistinctBuffer> parentBuffer;
    };

    explicit CTreeLevels(QObject* parent = nullptr);
    ~CTreeLevels() override;

    // Public side.
    void AddNew(const QVariant& id, const QString& sql);
    qint16 Count() const { return qint16(m_levels.size()); }
    void Setup(const QStringList& statements);
    bool ReInit() const { return m_reInit; }
    void setReInit(bool on) { m_reInit = on; }
    QVariant id(int level) const;
    void setId(int level, const QVariant& value);
    QVariant Key() const { return m_key; }
    void setKey(const QVariant& key) { m_key = key; }

    // The engine's side.
    void Create(db::Database* database, int plusMinusMode);
    void Clear();
    std::unique_ptr<db::Recordset> Getnodes(int level, const QString& parentKey);
    db::Database* database() const { return m_db; }
    CDistinctBuffer* parentBuffer(int level) const;
    QString FindParentKey(QString& key, int level);
    int FetchPlusMinusMode() const { return m_plusMinusMode; }
    CDistinctBuffer* CreateParentBuffer(int level);
    void CreateParentBuffers(bool refill);

    QString sql(int level) const;      // the statement as given
    QString querySql(int level) const; // the statement the level's query runs
    bool inSetup() const { return m_inSetup; }

signals:
    void Changed();

private:
    Level* level(int n) const;

    std::vector<std::unique_ptr<Level>> m_levels; // level n is m_levels[n - 1]
    db::Database* m_db = nullptr;
    int m_plusMinusMode = 0;
    bool m_reInit = true;
    QVariant m_key;
    bool m_inSetup = false;
};

} // namespace vd::controls
