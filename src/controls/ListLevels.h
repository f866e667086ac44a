#pragma once
// The level statements of the drill-down list: one SELECT per level, used as it stands (the
// list filters a level through its filter column), and the "@"-joined column layouts of the
// levels.

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace vd::db {
class Database;
}

namespace vd::controls {

class cListLevels : public QObject
{
    Q_OBJECT

public:
    explicit cListLevels(QObject* parent = nullptr) : QObject(parent) {}

    // The array form: the statements replace the levels, and Changed fires whatever ReInit
    // says (the list decides by ReInit whether it starts at level 1 again).
    void Setup(const QStringList& statements);
    // The list form: Changed fires only with ReInit on.
    template <typename... More> void Setup(const QString& first, const More&... more)
    {
        setLevels(QStringList{first, QString(more)...}, m_reInit);
    }

    qint16 Count() const { return qint16(m_statements.size()); }
    // Level n's statement (1-based); "" outside 1 to Count.
    QString sql(int level) const;

    bool ReInit() const { return m_reInit; }
    void setReInit(bool on) { m_reInit = on; }
    QVariant id() const { return m_id; }
    void setId(const QVariant& id) { m_id = id; }
    QVariant Key() const { return m_key; }
    void setKey(const QVariant& key) { m_key = key; }

    db::Database* DataBase() const { return m_db; }
    void setDataBase(db::Database* database) { m_db = database; }

signals:
    void Changed();

private:
    void setLevels(const QStringList& statements, bool fire);

    QStringList m_statements;
    db::Database* m_db = nullptr;
    bool m_reInit = true;
    QVariant m_id;
    QVariant m_key; // starts Null
};

// The layouts of the levels from their "@"-joined text, fitted to `count` levels: missing
// pieces are empty (those levels size their columns themselves), surplus ones are dropped.
QStringList splitLevelLayouts(const QString& text, int count);
QString joinLevelLayouts(const QStringList& layouts);

} // namespace vd::controls
