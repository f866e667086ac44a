#pragma once
// What the data layer's classes share of one open connection.

#include "catalogue/DaoTypes.h"
#include "catalogue/JetSql.h"

#include <QHash>
#include <QVariant>
#include <functional>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace vd::db {

struct Connection : TranslationContext
{
    ~Connection() override;

    sqlite3* db = nullptr;
    QString path;
    bool readOnly = false;
    int transDepth = 0;
    qint64 lastChanges = 0;
    std::function<QString(const QString&)> resolver;

    // Translations are cached by their text; a change of schema empties the cache, since
    // star expansion depends on the tables' columns.
    // `literals` receives the values taken out of the text, to be bound behind the
    // declared parameters.
    std::shared_ptr<const Translation> translation(const QString& jet, bool withRowid,
                                                   QVector<QVariant>& literals);

    // Prepared statements are kept for reuse once their recordset is done with them.
    sqlite3_stmt* prepare(const QString& sqliteText, const QString& jetForErrors);
    void release(sqlite3_stmt* stmt, const QString& sqliteText);

    // Runs an action statement with its parameters; the number of rows changed.
    qint64 run(const Translation& tr, const QVector<QVariant>& params);

    [[noreturn]] void fail(const QString& statement) const;
    void exec(const QString& sql);
    void schemaChanged();

    const TableDef& tableDef(const QString& schema, const QString& table);

    QString attachAlias(const QString& path) override;
    QStringList tableColumns(const QString& schema, const QString& table) override;

private:
    struct Known
    {
        std::shared_ptr<const Translation> translation;
        QVector<QVariant> literals;
    };
    QHash<QString, Known> m_exact[2];                                     // by the text as given
    QHash<QString, std::shared_ptr<const Translation>> m_translations[2]; // by its shape
    QHash<QString, QString> m_attached; // file -> alias
    QHash<QString, QStringList> m_columns;
    QHash<QString, TableDef> m_tableDefs;
    QHash<QString, QVector<sqlite3_stmt*>> m_idle;
    int m_idleCount = 0;
};

void bindValue(sqlite3_stmt* stmt, int index, const QVariant& value);
void bindParameters(sqlite3_stmt* stmt, const QVector<QVariant>& params);

} // namespace vd::db
