#include "catalogue/Database.h"

#include "catalogue/DatabasePrivate.h"
#include "catalogue/JetFunctions.h"
#include "catalogue/JetSqlParse.h"
#include "catalogue/QueryDef.h"
#include "catalogue/Recordset.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>
#include <sqlite3.h>

namespace vd::db {

namespace {

QString quoteName(const QString& name)
{
    QString s = name;
    s.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + s + QLatin1Char('"');
}

constexpr int kMaxIdlePerStatement = 4;
constexpr int kMaxIdleStatements = 128;

} // namespace

// --- types ---------------------------------------------------------------------------------

QString declaredTypeFor(const FieldDef& f)
{
    switch (f.type) {
    case type::Boolean:
        return QStringLiteral("BOOLEAN");
    case type::Byte:
        return QStringLiteral("TINYINT");
    case type::Integer:
        return QStringLiteral("SMALLINT");
    case type::Long:
        return QStringLiteral("INTEGER");
    case type::Currency:
        return QStringLiteral("CURRENCY");
    case type::Single:
        return QStringLiteral("FLOAT");
    case type::Double:
        return QStringLiteral("DOUBLE");
    case type::Date:
        return QStringLiteral("DATETIME");
    case type::Binary:
        return QStringLiteral("BINARY(%1)").arg(f.size > 0 ? f.size : 255);
    case type::LongBinary:
        return QStringLiteral("BLOB");
    case type::Memo:
        return QStringLiteral("TEXT");
    case type::Text:
    default:
        return QStringLiteral("VARCHAR(%1)").arg(f.size > 0 ? f.size : 255);
    }
}

static int typeFromDeclaredText(const QString& declared, int* size);

int typeFromDeclared(const QString& declared, int* size)
{
    // Few distinct type names exist; each is read once.
    static thread_local QHash<QString, std::pair<int, int>> known;
    auto it = known.constFind(declared);
    if (it == known.constEnd()) {
        int s = 0;
        const int t = typeFromDeclaredText(declared, &s);
        it = known.insert(declared, {t, s});
    }
    if (size)
        *size = it->second;
    return it->first;
}

static int typeFromDeclaredText(const QString& declared, int* size)
{
    const QString d = declared.trimmed().toUpper();
    static const QRegularExpression sized(QStringLiteral(R"(^\w+\s*\(\s*(\d+)\s*\))"));
    const QRegularExpressionMatch m = sized.match(d);
    const int n = m.hasMatch() ? m.captured(1).toInt() : 0;
    const QString word = d.section(QLatin1Char('('), 0, 0).trimmed();
    int t = type::Text;
    int s = 0;
    if (word == QLatin1String("BOOLEAN") || word == QLatin1String("BIT") ||
        word == QLatin1String("YESNO"))
        t = type::Boolean;
    else if (word == QLatin1String("TINYINT") || word == QLatin1String("BYTE"))
        t = type::Byte;
    else if (word == QLatin1String("SMALLINT") || word == QLatin1String("SHORT"))
        t = type::Integer;
    else if (word == QLatin1String("INTEGER") || word == QLatin1String("INT") ||
             word == QLatin1String("LONG") || word == QLatin1String("BIGINT"))
        t = type::Long;
    else if (word == QLatin1String("CURRENCY") || word == QLatin1String("MONEY"))
        t = type::Currency;
    else if (word == QLatin1String("FLOAT") || word == QLatin1String("SINGLE") ||
             word == QLatin1String("REAL"))
        t = type::Single;
    else if (word == QLatin1String("DOUBLE") || word == QLatin1String("NUMERIC") ||
             word == QLatin1String("DECIMAL"))
        t = type::Double;
    else if (word == QLatin1String("DATETIME") || word == QLatin1String("DATE") ||
             word == QLatin1String("TIMESTAMP"))
        t = type::Date;
    else if (word == QLatin1String("BINARY") || word == QLatin1String("VARBINARY")) {
        t = type::Binary;
        s = n;
    } else if (word == QLatin1String("BLOB") || word == QLatin1String("LONGBINARY") ||
               word == QLatin1String("IMAGE"))
        t = type::LongBinary;
    else if (word == QLatin1String("TEXT") && n == 0)
        t = type::Memo;
    else if (word == QLatin1String("MEMO") || word == QLatin1String("LONGTEXT") ||
             word == QLatin1String("CLOB"))
        t = type::Memo;
    else {
        t = type::Text;
        s = n > 0 ? n : 255;
    }
    if (size)
        *size = s;
    return t;
}

// --- binding -------------------------------------------------------------------------------

void bindValue(sqlite3_stmt* stmt, int index, const QVariant& v)
{
    if (!v.isValid() || v.isNull()) {
        sqlite3_bind_null(stmt, index);
        return;
    }
    switch (v.typeId()) {
    case QMetaType::Bool:
        sqlite3_bind_int(stmt, index, v.toBool() ? -1 : 0);
        break;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Char:
    case QMetaType::UChar:
    case QMetaType::SChar:
        sqlite3_bind_int64(stmt, index, v.toLongLong());
        break;
    case QMetaType::Double:
    case QMetaType::Float:
        sqlite3_bind_double(stmt, index, v.toDouble());
        break;
    case QMetaType::QDateTime: {
        const QByteArray b = dateToStorage(v.toDateTime()).toUtf8();
        sqlite3_bind_text(stmt, index, b.constData(), int(b.size()), SQLITE_TRANSIENT);
        break;
    }
    case QMetaType::QDate: {
        const QByteArray b = dateToStorage(QDateTime(v.toDate(), QTime(0, 0))).toUtf8();
        sqlite3_bind_text(stmt, index, b.constData(), int(b.size()), SQLITE_TRANSIENT);
        break;
    }
    case QMetaType::QByteArray: {
        const QByteArray b = v.toByteArray();
        sqlite3_bind_blob(stmt, index, b.constData(), int(b.size()), SQLITE_TRANSIENT);
        break;
    }
    default: {
        const QByteArray b = v.toString().toUtf8();
        sqlite3_bind_text(stmt, index, b.constData(), int(b.size()), SQLITE_TRANSIENT);
        break;
    }
    }
}

void bindParameters(sqlite3_stmt* stmt, const QVector<QVariant>& params)
{
    const int n = sqlite3_bind_parameter_count(stmt);
    for (int i = 0; i < n && i < params.size(); ++i)
        bindValue(stmt, i + 1, params[i]);
}

// --- the connection ------------------------------------------------------------------------

Connection::~Connection()
{
    for (auto& list : m_idle)
        for (sqlite3_stmt* s : list)
            sqlite3_finalize(s);
    if (db)
        sqlite3_close_v2(db);
}

void Connection::fail(const QString& statement) const
{
    const int code = sqlite3_extended_errcode(db) & 0xFF;
    int number = err::Engine;
    if (code == SQLITE_NOTADB || code == SQLITE_CORRUPT)
        number = err::UnrecognizedFormat;
    else if (code == SQLITE_CANTOPEN)
        number = err::FileNotFound;
    else if (code == SQLITE_READONLY)
        number = err::NotUpdatable;
    throw DbError(number, QString::fromUtf8(sqlite3_errmsg(db)), statement);
}

void Connection::exec(const QString& sql)
{
    char* msg = nullptr;
    if (sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, &msg) != SQLITE_OK) {
        const QString text = QString::fromUtf8(msg ? msg : sqlite3_errmsg(db));
        sqlite3_free(msg);
        const int code = sqlite3_extended_errcode(db) & 0xFF;
        throw DbError(code == SQLITE_NOTADB || code == SQLITE_CORRUPT ? err::UnrecognizedFormat
                                                                      : err::Engine,
                      text, sql);
    }
}

std::shared_ptr<const Translation> Connection::translation(const QString& jet, bool withRowid,
                                                           QVector<QVariant>& literals)
{
    const int slot = withRowid ? 1 : 0;
    auto known = m_exact[slot].constFind(jet);
    if (known != m_exact[slot].constEnd()) {
        literals = known->literals;
        return known->translation;
    }
    const QString shape = extractLiterals(jet, literals);
    auto& cache = m_translations[slot];
    std::shared_ptr<const Translation> tr = cache.value(shape);
    if (!tr) {
        tr = translateJet(jet, shape, int(literals.size()), *this, withRowid);
        if (cache.size() > 1024)
            cache.clear();
        cache.insert(shape, tr);
    }
    if (m_exact[slot].size() > 1024)
        m_exact[slot].clear();
    m_exact[slot].insert(jet, Known{tr, literals});
    return tr;
}

sqlite3_stmt* Connection::prepare(const QString& sqliteText, const QString& jetForErrors)
{
    auto it = m_idle.find(sqliteText);
    if (it != m_idle.end() && !it->isEmpty()) {
        sqlite3_stmt* s = it->takeLast();
        --m_idleCount;
        return s;
    }
    sqlite3_stmt* stmt = nullptr;
    const QByteArray utf8 = sqliteText.toUtf8();
    if (sqlite3_prepare_v3(db, utf8.constData(), int(utf8.size()), SQLITE_PREPARE_PERSISTENT, &stmt,
                           nullptr) != SQLITE_OK) {
        sqlite3_finalize(stmt);
        fail(jetForErrors);
    }
    if (!stmt) // an empty statement
        throw DbError(err::SyntaxError, QStringLiteral("The statement is empty."), jetForErrors);
    return stmt;
}

void Connection::release(sqlite3_stmt* stmt, const QString& sqliteText)
{
    if (!stmt)
        return;
    sqlite3_reset(stmt);
    sqlite3_clear_bindings(stmt);
    auto& list = m_idle[sqliteText];
    if (list.size() >= kMaxIdlePerStatement || m_idleCount >= kMaxIdleStatements) {
        sqlite3_finalize(stmt);
        return;
    }
    list.push_back(stmt);
    ++m_idleCount;
}

qint64 Connection::run(const Translation& tr, const QVector<QVariant>& params)
{
    if (tr.isSelect)
        throw DbError(err::Engine, QStringLiteral("Cannot execute a select query."), tr.jet);
    sqlite3_stmt* stmt = prepare(tr.sqlite, tr.jet);
    bindParameters(stmt, params);
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
    }
    if (rc != SQLITE_DONE) {
        // Report first, then give the statement back.
        try {
            fail(tr.jet);
        } catch (...) {
            release(stmt, tr.sqlite);
            throw;
        }
    }
    lastChanges = sqlite3_changes64(db);
    release(stmt, tr.sqlite);
    return lastChanges;
}

void Connection::schemaChanged()
{
    m_translations[0].clear();
    m_translations[1].clear();
    m_exact[0].clear();
    m_exact[1].clear();
    m_columns.clear();
    m_tableDefs.clear();
}

QString Connection::attachAlias(const QString& written)
{
    QString file = resolver ? resolver(written) : written;
    file = QFileInfo(file).absoluteFilePath();
    auto it = m_attached.constFind(file);
    if (it != m_attached.constEnd())
        return it.value();
    if (!QFileInfo::exists(file))
        throw DbError(err::FileNotFound, QStringLiteral("Could not find file '%1'.").arg(written));
    const QString alias = QStringLiteral("vdx%1").arg(m_attached.size() + 1);
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(db, "ATTACH DATABASE ?1 AS ?2", -1, &stmt, nullptr);
    const QByteArray f = file.toUtf8(), a = alias.toUtf8();
    sqlite3_bind_text(stmt, 1, f.constData(), int(f.size()), SQLITE_TRANSIENT);
    sqlite3_bind_text(stmt, 2, a.constData(), int(a.size()), SQLITE_TRANSIENT);
    const int rc = sqlite3_step(stmt);
    sqlite3_finalize(stmt);
    if (rc != SQLITE_DONE)
        fail(QStringLiteral("[;database=%1]").arg(written));
    m_attached.insert(file, alias);
    return alias;
}

QStringList Connection::tableColumns(const QString& schema, const QString& table)
{
    const QString key = schema.toLower() + QLatin1Char('.') + table.toLower();
    auto it = m_columns.constFind(key);
    if (it != m_columns.constEnd())
        return it.value();
    QStringList cols;
    const QString sql =
        QStringLiteral("PRAGMA %1.table_info(%2)").arg(quoteName(schema), quoteName(table));
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &stmt, nullptr) == SQLITE_OK) {
        while (sqlite3_step(stmt) == SQLITE_ROW)
            cols << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1)));
    }
    sqlite3_finalize(stmt);
    m_columns.insert(key, cols);
    return cols;
}

const TableDef& Connection::tableDef(const QString& schema, const QString& table)
{
    const QString key = schema.toLower() + QLatin1Char('.') + table.toLower();
    auto it = m_tableDefs.constFind(key);
    if (it != m_tableDefs.constEnd())
        return it.value();

    TableDef def;
    auto query = [&](const QString& sql, const std::function<void(sqlite3_stmt*)>& row) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &stmt, nullptr) != SQLITE_OK) {
            sqlite3_finalize(stmt);
            fail(sql);
        }
        while (sqlite3_step(stmt) == SQLITE_ROW)
            row(stmt);
        sqlite3_finalize(stmt);
    };
    auto text = [](sqlite3_stmt* s, int c) {
        return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(s, c)));
    };

    QString createSql;
    query(QStringLiteral(
              "SELECT name, sql FROM %1.sqlite_master WHERE type='table' AND lower(name)=lower(%2)")
              .arg(quoteName(schema),
                   QLatin1Char('\'') +
                       QString(table).replace(QLatin1Char('\''), QStringLiteral("''")) +
                       QLatin1Char('\'')),
          [&](sqlite3_stmt* s) {
              def.name = text(s, 0);
              createSql = text(s, 1);
          });
    if (def.name.isEmpty())
        throw DbError(err::ItemNotFound, QStringLiteral("Item not found in this collection."),
                      table);

    query(QStringLiteral("PRAGMA %1.table_info(%2)").arg(quoteName(schema), quoteName(def.name)),
          [&](sqlite3_stmt* s) {
              FieldDef f;
              f.name = text(s, 1);
              f.type = typeFromDeclared(text(s, 2), &f.size);
              def.fields.push_back(f);
          });

    // The primary key of a Long field is the row's own key; its name stands in the table text.
    static const QRegularExpression pk(
        QStringLiteral(
            R"re("((?:[^"]|"")+)"\s+\w+\s+CONSTRAINT\s+"((?:[^"]|"")+)"\s+PRIMARY\s+KEY(\s+AUTOINCREMENT)?)re"),
        QRegularExpression::CaseInsensitiveOption);
    const QString prefix = def.name + QLatin1Char('_');
    auto designName = [&](const QString& physical) {
        return physical.startsWith(prefix, Qt::CaseInsensitive) ? physical.mid(prefix.size())
                                                                : physical;
    };
    for (auto m = pk.globalMatch(createSql); m.hasNext();) {
        const QRegularExpressionMatch hit = m.next();
        IndexDef ix;
        ix.name = designName(hit.captured(2).replace(QStringLiteral("\"\""), QStringLiteral("\"")));
        ix.fields << hit.captured(1).replace(QStringLiteral("\"\""), QStringLiteral("\""));
        ix.primary = true;
        ix.unique = true;
        def.indexes.push_back(ix);
        if (!hit.captured(3).isEmpty()) {
            const int fi = def.fieldIndex(ix.fields[0]);
            if (fi >= 0)
                def.fields[fi].attributes = 16;
        }
    }
    query(QStringLiteral("PRAGMA %1.index_list(%2)").arg(quoteName(schema), quoteName(def.name)),
          [&](sqlite3_stmt* s) {
              IndexDef ix;
              const QString physical = text(s, 1);
              ix.unique = sqlite3_column_int(s, 2) != 0;
              ix.primary = text(s, 3) == QLatin1String("pk");
              ix.name = designName(physical);
              if (ix.primary) {
                  static const QRegularExpression tablePk(
                      QStringLiteral(R"re(CONSTRAINT\s+"((?:[^"]|"")+)"\s+PRIMARY\s+KEY\s*\()re"),
                      QRegularExpression::CaseInsensitiveOption);
                  const QRegularExpressionMatch m = tablePk.match(createSql);
                  ix.name = m.hasMatch() ? designName(m.captured(1)) : QStringLiteral("PrimaryKey");
              }
              def.indexes.push_back(ix);
              def.indexes.back().fields = QStringList{physical}; // filled below
          });
    for (IndexDef& ix : def.indexes) {
        if (ix.primary && !ix.fields.isEmpty() && def.fieldIndex(ix.fields[0]) >= 0)
            continue;
        const QString physical = ix.fields.value(0);
        ix.fields.clear();
        query(
            QStringLiteral("PRAGMA %1.index_info(%2)").arg(quoteName(schema), quoteName(physical)),
            [&](sqlite3_stmt* s) { ix.fields << text(s, 2); });
    }
    return *m_tableDefs.insert(key, def);
}

// --- Database ------------------------------------------------------------------------------

namespace {

std::shared_ptr<Connection> openFile(const QString& path, const QByteArray& name, int flags)
{
    auto conn = std::make_shared<Connection>();
    conn->path = path;
    conn->readOnly = (flags & SQLITE_OPEN_READONLY) != 0;
    const int rc =
        sqlite3_open_v2(name.constData(), &conn->db, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (rc != SQLITE_OK) {
        const QString msg = conn->db ? QString::fromUtf8(sqlite3_errmsg(conn->db))
                                     : QStringLiteral("out of memory");
        throw DbError(rc == SQLITE_CANTOPEN ? err::FileNotFound : err::Engine, msg, path);
    }
    // A file the user may not write opens for reading only, whatever was asked.
    if (sqlite3_db_readonly(conn->db, "main") == 1)
        conn->readOnly = true;
    sqlite3_extended_result_codes(conn->db, 1);
    sqlite3_db_config(conn->db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(conn->db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_busy_timeout(conn->db, 3000);
    registerJetFunctions(conn->db);
    return conn;
}

std::shared_ptr<Connection> connect(const QString& path, int flags)
{
    auto conn = openFile(path, path.toUtf8(), flags);
    // Reading the schema proves the file is a database at all.
    try {
        conn->exec(QStringLiteral("SELECT count(*) FROM sqlite_master"));
    } catch (const DbError&) {
        // A catalogue in a folder the user may not write can't get the shared-memory file
        // that its journal needs for reading. Nobody writes it then, so it is read as a file
        // that does not change.
        if ((sqlite3_extended_errcode(conn->db) & 0xff) != SQLITE_READONLY ||
            path == QLatin1String(":memory:"))
            throw;
        conn.reset();
        const QByteArray uri =
            QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toEncoded() + "?immutable=1";
        conn = openFile(path, uri, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
        conn->exec(QStringLiteral("SELECT count(*) FROM sqlite_master"));
    }
    if (!conn->readOnly && path != QLatin1String(":memory:"))
        conn->exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    conn->exec(QStringLiteral("PRAGMA synchronous=NORMAL; PRAGMA foreign_keys=OFF;"));
    return conn;
}

void checkHeader(const QString& path)
{
    QFile f(path);
    if (!f.exists())
        throw DbError(err::FileNotFound, QStringLiteral("Could not find file '%1'.").arg(path),
                      path);
    if (!f.open(QIODevice::ReadOnly))
        throw DbError(err::FileNotFound,
                      QStringLiteral("Could not open file '%1': %2").arg(path, f.errorString()),
                      path);
    const QByteArray head = f.read(100);
    if (head.size() < 100 || !head.startsWith(QByteArrayLiteral("SQLite format 3\0")))
        throw DbError(err::UnrecognizedFormat,
                      QStringLiteral("Unrecognized database format '%1'.").arg(path), path);
}

} // namespace

Database::Database(std::shared_ptr<Connection> conn) : m_conn(std::move(conn)) {}

Database::~Database() = default;

std::unique_ptr<Database> Database::create(const QString& path)
{
    if (QFileInfo::exists(path))
        throw DbError(err::DatabaseExists, QStringLiteral("Database already exists."), path);
    auto conn = connect(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    return std::unique_ptr<Database>(new Database(conn));
}

std::unique_ptr<Database> Database::open(const QString& path, bool readOnly)
{
    checkHeader(path);
    auto conn = connect(path, readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
    return std::unique_ptr<Database>(new Database(conn));
}

std::unique_ptr<Database> Database::openMemory()
{
    auto conn = connect(QStringLiteral(":memory:"), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    return std::unique_ptr<Database>(new Database(conn));
}

QString Database::path() const
{
    return m_conn ? m_conn->path : QString();
}

bool Database::isReadOnly() const
{
    return m_conn && m_conn->readOnly;
}

bool Database::isOpen() const
{
    return m_conn != nullptr;
}

void Database::close()
{
    // Recordsets still open keep the connection alive until they go.
    m_conn.reset();
}

static Connection& live(const std::shared_ptr<Connection>& c)
{
    if (!c)
        throw DbError(err::Engine, QStringLiteral("The database is closed."));
    return *c;
}

qint64 Database::execute(const QString& jetSql)
{
    Connection& c = live(m_conn);
    QVector<QVariant> literals;
    auto tr = c.translation(jetSql, false, literals);
    if (!tr->parameters.isEmpty())
        throw DbError(err::TooFewParameters,
                      QStringLiteral("Too few parameters. Expected %1.").arg(tr->parameters.size()),
                      jetSql);
    return c.run(*tr, literals);
}

qint64 Database::recordsAffected() const
{
    return m_conn ? m_conn->lastChanges : 0;
}

std::unique_ptr<Recordset> Database::openRecordset(const QString& source, RecordsetType type,
                                                   int options)
{
    Connection& c = live(m_conn);
    QString jet = source.trimmed();
    static const QRegularExpression bareName(QStringLiteral(R"(^(\w+|\[[^\]]+\])$)"));
    if (bareName.match(jet).hasMatch())
        jet = QStringLiteral("SELECT * FROM ") +
              (jet.startsWith(QLatin1Char('[')) ? jet : QLatin1Char('[') + jet + QLatin1Char(']'));
    if (type == RecordsetType::Table)
        type = RecordsetType::Dynaset;
    if (options & option::ForwardOnly)
        type = RecordsetType::ForwardOnly;
    const bool rowid = type != RecordsetType::ForwardOnly;
    QVector<QVariant> literals;
    auto tr = c.translation(jet, rowid, literals);
    if (!tr->isSelect)
        throw DbError(err::Engine, QStringLiteral("Invalid operation: not a SELECT statement."),
                      source);
    if (!tr->parameters.isEmpty())
        throw DbError(err::TooFewParameters,
                      QStringLiteral("Too few parameters. Expected %1.").arg(tr->parameters.size()),
                      source);
    std::unique_ptr<Recordset> rs(new Recordset(m_conn, source, tr, literals, type, options));
    rs->start();
    return rs;
}

std::unique_ptr<QueryDef> Database::createQueryDef(const QString& jetSql)
{
    live(m_conn);
    std::unique_ptr<QueryDef> q(new QueryDef(m_conn, QString()));
    if (!jetSql.isEmpty())
        q->setSql(jetSql);
    return q;
}

void Database::createTable(const TableDef& table)
{
    Connection& c = live(m_conn);
    QStringList cols;
    QString primaryField;
    QString primaryName;
    for (const IndexDef& ix : table.indexes)
        if (ix.primary && ix.fields.size() == 1) {
            const int fi = table.fieldIndex(ix.fields[0]);
            if (fi >= 0 && table.fields[fi].type == type::Long) {
                primaryField = ix.fields[0];
                primaryName = table.name + QLatin1Char('_') + ix.name;
            }
        }
    for (const FieldDef& f : table.fields) {
        QString col = quoteName(f.name) + QLatin1Char(' ') + declaredTypeFor(f);
        if (f.type == type::Text || f.type == type::Memo)
            col += QStringLiteral(" COLLATE NOCASE");
        if (f.name.compare(primaryField, Qt::CaseInsensitive) == 0) {
            col += QStringLiteral(" CONSTRAINT ") + quoteName(primaryName) +
                   QStringLiteral(" PRIMARY KEY");
            if (f.attributes & 16)
                col += QStringLiteral(" AUTOINCREMENT");
        }
        cols << col;
    }
    for (const IndexDef& ix : table.indexes)
        if (ix.primary && primaryName.isEmpty()) {
            QStringList f;
            for (const QString& n : ix.fields)
                f << quoteName(n);
            cols << QStringLiteral("CONSTRAINT %1 PRIMARY KEY (%2)")
                        .arg(quoteName(table.name + QLatin1Char('_') + ix.name),
                             f.join(QLatin1Char(',')));
        }
    c.exec(QStringLiteral("CREATE TABLE %1 (%2)")
               .arg(quoteName(table.name), cols.join(QStringLiteral(", "))));
    c.schemaChanged();
    for (const IndexDef& ix : table.indexes)
        if (!ix.primary)
            createIndex(table.name, ix);
}

void Database::appendField(const QString& table, const FieldDef& field)
{
    Connection& c = live(m_conn);
    QString col = quoteName(field.name) + QLatin1Char(' ') + declaredTypeFor(field);
    if (field.type == type::Text || field.type == type::Memo)
        col += QStringLiteral(" COLLATE NOCASE");
    c.exec(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2").arg(quoteName(table), col));
    c.schemaChanged();
}

void Database::createIndex(const QString& table, const IndexDef& index)
{
    Connection& c = live(m_conn);
    QStringList f;
    for (const QString& n : index.fields)
        f << quoteName(n);
    c.exec(QStringLiteral("CREATE %1INDEX %2 ON %3 (%4)")
               .arg(index.unique || index.primary ? QStringLiteral("UNIQUE ") : QString(),
                    quoteName(table + QLatin1Char('_') + index.name), quoteName(table),
                    f.join(QLatin1Char(','))));
    c.schemaChanged();
}

TableDef Database::tableDef(const QString& table) const
{
    return live(m_conn).tableDef(QStringLiteral("main"), table);
}

QStringList Database::tableNames() const
{
    Connection& c = live(m_conn);
    QStringList names;
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(c.db,
                       "SELECT name FROM sqlite_master WHERE type='table' AND "
                       "substr(name,1,7)<>'sqlite_' ORDER BY rowid",
                       -1, &stmt, nullptr);
    while (sqlite3_step(stmt) == SQLITE_ROW)
        names << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
    sqlite3_finalize(stmt);
    return names;
}

bool Database::tableExists(const QString& table) const
{
    for (const QString& t : tableNames())
        if (t.compare(table, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

void Database::beginTrans()
{
    Connection& c = live(m_conn);
    if (c.transDepth++ == 0)
        c.exec(QStringLiteral("BEGIN"));
}

void Database::commitTrans()
{
    Connection& c = live(m_conn);
    if (c.transDepth == 0)
        return;
    if (--c.transDepth == 0)
        c.exec(QStringLiteral("COMMIT"));
}

void Database::rollback()
{
    Connection& c = live(m_conn);
    if (c.transDepth == 0)
        return;
    c.transDepth = 0;
    c.exec(QStringLiteral("ROLLBACK"));
}

bool Database::inTransaction() const
{
    return m_conn && m_conn->transDepth > 0;
}

void Database::setAttachResolver(std::function<QString(const QString&)> resolver)
{
    live(m_conn).resolver = std::move(resolver);
}

QString Database::translate(const QString& jetSql) const
{
    QVector<QVariant> literals;
    return live(m_conn).translation(jetSql, false, literals)->sqlite;
}

sqlite3* Database::handle() const
{
    return m_conn ? m_conn->db : nullptr;
}

void compactDatabase(const QString& source, const QString& target)
{
    if (QFileInfo::exists(target))
        throw DbError(err::DatabaseExists, QStringLiteral("Database already exists."), target);
    checkHeader(source);
    auto conn = connect(source, SQLITE_OPEN_READWRITE);
    conn->exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(conn->db, "VACUUM INTO ?1", -1, &stmt, nullptr) != SQLITE_OK) {
        sqlite3_finalize(stmt);
        conn->fail(QStringLiteral("VACUUM INTO"));
    }
    const QByteArray t = target.toUtf8();
    sqlite3_bind_text(stmt, 1, t.constData(), int(t.size()), SQLITE_TRANSIENT);
    const int rc = sqlite3_step(stmt);
    sqlite3_finalize(stmt);
    if (rc != SQLITE_DONE)
        conn->fail(QStringLiteral("VACUUM INTO"));
    // The copy keeps the journal of every catalogue, so that opening it changes nothing.
    connect(target, SQLITE_OPEN_READWRITE);
}

} // namespace vd::db
