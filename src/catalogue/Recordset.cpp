#include "catalogue/Recordset.h"

#include "catalogue/DatabasePrivate.h"
#include "catalogue/JetEval.h"
#include "catalogue/JetSql.h"

#include <QDateTime>
#include <QHash>
#include <QSet>
#include <QVarLengthArray>
#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace vd::db {

// --- the rows a recordset has read ---------------------------------------------------------
//
// Rows are kept packed, one after another, in chunks of a megabyte: a tag byte per value,
// then the value's bytes. A list of a million short rows costs about as much memory as its
// text, and reaching a row by position costs one index look-up.

class RowStore
{
public:
    explicit RowStore(int columns) : m_columns(columns) {}

    qint64 size() const { return qint64(m_index.size()); }

    void clear()
    {
        m_chunks.clear();
        m_index.clear();
        m_fill = kChunk;
        m_overlay.clear();
    }

    void append(sqlite3_stmt* st)
    {
        // One pass over the engine's values, then one copy into the chunk.
        struct Cell
        {
            int type;
            qint64 i;
            double d;
            const void* data;
            quint32 n;
        };
        thread_local std::vector<Cell> cells;
        cells.resize(size_t(m_columns));
        size_t bytes = 0;
        for (int c = 0; c < m_columns; ++c) {
            Cell& cell = cells[size_t(c)];
            cell.type = sqlite3_column_type(st, c);
            switch (cell.type) {
            case SQLITE_INTEGER:
                cell.i = sqlite3_column_int64(st, c);
                bytes += (cell.i >= INT32_MIN && cell.i <= INT32_MAX) ? 5 : 9;
                break;
            case SQLITE_FLOAT:
                cell.d = sqlite3_column_double(st, c);
                bytes += 9;
                break;
            case SQLITE_NULL:
                bytes += 1;
                break;
            case SQLITE_BLOB:
                cell.data = sqlite3_column_blob(st, c);
                cell.n = quint32(sqlite3_column_bytes(st, c));
                bytes += 5 + cell.n;
                break;
            default:
                cell.data = sqlite3_column_text(st, c);
                cell.n = quint32(sqlite3_column_bytes(st, c));
                bytes += 5 + cell.n;
                break;
            }
        }
        char* p = reserve(bytes);
        for (const Cell& cell : cells) {
            switch (cell.type) {
            case SQLITE_INTEGER:
                if (cell.i >= INT32_MIN && cell.i <= INT32_MAX) {
                    *p++ = kInt32;
                    const qint32 w = qint32(cell.i);
                    std::memcpy(p, &w, 4);
                    p += 4;
                } else {
                    *p++ = kInt64;
                    std::memcpy(p, &cell.i, 8);
                    p += 8;
                }
                break;
            case SQLITE_FLOAT:
                *p++ = kDouble;
                std::memcpy(p, &cell.d, 8);
                p += 8;
                break;
            case SQLITE_NULL:
                *p++ = kNull;
                break;
            default:
                *p++ = cell.type == SQLITE_BLOB ? kBlob : kText;
                std::memcpy(p, &cell.n, 4);
                p += 4;
                if (cell.n)
                    std::memcpy(p, cell.data, cell.n);
                p += cell.n;
                break;
            }
        }
    }

    void appendNulls()
    {
        char* p = reserve(size_t(m_columns));
        std::memset(p, kNull, size_t(m_columns));
    }

    // The value as stored: integers as qlonglong, reals as double, text as QString.
    QVariant value(qint64 row, int column) const
    {
        if (!m_overlay.isEmpty()) {
            auto it = m_overlay.constFind(row);
            if (it != m_overlay.constEnd())
                return it.value().value(column);
        }
        const char* p = rowStart(row);
        for (int c = 0; c < column; ++c)
            p = skip(p);
        return decode(p);
    }

    // Reads the value at `p` and moves `p` behind it.
    static QVariant decode(const char*& p)
    {
        switch (*p++) {
        case kNull:
            return {};
        case kInt32: {
            qint32 w;
            std::memcpy(&w, p, 4);
            p += 4;
            return QVariant(int(w));
        }
        case kInt64: {
            qint64 v;
            std::memcpy(&v, p, 8);
            p += 8;
            return QVariant(qlonglong(v));
        }
        case kDouble: {
            double d;
            std::memcpy(&d, p, 8);
            p += 8;
            return QVariant(d);
        }
        case kText: {
            quint32 n;
            std::memcpy(&n, p, 4);
            p += 4 + n;
            return QVariant(QString::fromUtf8(p - n, qsizetype(n)));
        }
        case kBlob: {
            quint32 n;
            std::memcpy(&n, p, 4);
            p += 4 + n;
            return QVariant(QByteArray(p - n, qsizetype(n)));
        }
        }
        return {};
    }

    // Every value of a row, in column order, handed to `take(column, value)`.
    template <typename Take>
    void decodeRow(qint64 row, int columns, Take take) const
    {
        if (!m_overlay.isEmpty()) {
            auto it = m_overlay.constFind(row);
            if (it != m_overlay.constEnd()) {
                for (int c = 0; c < columns; ++c)
                    take(c, it.value().value(c));
                return;
            }
        }
        const char* p = rowStart(row);
        for (int c = 0; c < columns; ++c)
            take(c, decode(p));
    }

    void replace(qint64 row, const QVector<QVariant>& values) { m_overlay.insert(row, values); }

private:
    enum : char { kNull, kInt32, kInt64, kDouble, kText, kBlob };
    static constexpr size_t kChunk = 1 << 20;
    static constexpr size_t kFirstChunk = 1 << 14;

    char* reserve(size_t bytes)
    {
        if (m_fill + bytes > m_chunkSize) {
            // Small results stay small: chunks grow from 16 KiB to 1 MiB.
            const size_t next = m_chunks.empty() ? kFirstChunk : std::min(kChunk, m_chunkSize * 2);
            m_chunkSize = std::max(next, bytes);
            m_chunks.emplace_back(new char[m_chunkSize]);
            m_fill = 0;
        }
        char* p = m_chunks.back().get() + m_fill;
        m_index.push_back((quint64(m_chunks.size() - 1) << 32) | quint64(m_fill));
        m_fill += bytes;
        return p;
    }
    const char* rowStart(qint64 row) const
    {
        const quint64 at = m_index[size_t(row)];
        return m_chunks[size_t(at >> 32)].get() + (at & 0xFFFFFFFFu);
    }
    static const char* skip(const char* p)
    {
        switch (*p) {
        case kNull:
            return p + 1;
        case kInt32:
            return p + 5;
        case kInt64:
        case kDouble:
            return p + 9;
        default: {
            quint32 n;
            std::memcpy(&n, p + 1, 4);
            return p + 5 + n;
        }
        }
    }

    int m_columns;
    std::vector<std::unique_ptr<char[]>> m_chunks;
    std::vector<quint64> m_index;
    size_t m_fill = kChunk;
    size_t m_chunkSize = 0;
    QHash<qint64, QVector<QVariant>> m_overlay;
};

// --- the statement behind a recordset ------------------------------------------------------

struct Recordset::Cursor
{
    sqlite3_stmt* stmt = nullptr;
    qint64 base = 0;    // position of the store's first row (forward-only keeps one row)
    qint64 fetched = 0; // rows read from the statement so far
    int columns = 0;    // stored columns, the hidden rowid included
};

namespace {

[[noreturn]] void noCurrent()
{
    throw DbError(err::NoCurrentRecord, QStringLiteral("No current record."));
}

QVariant typed(QVariant&& raw, int type)
{
    const int id = raw.typeId();
    // The common cases pass through untouched.
    if ((id == QMetaType::Int && (type == type::Long || type == type::Integer || type == type::Byte)) ||
        (id == QMetaType::QString && (type == type::Text || type == type::Memo)) ||
        !raw.isValid())
        return std::move(raw);
    switch (type) {
    case type::Date: {
        if (raw.typeId() == QMetaType::QString) {
            const QDateTime dt = dateFromStorage(raw.toString());
            if (dt.isValid())
                return dt;
        }
        return raw;
    }
    case type::Boolean:
        return QVariant(raw.toLongLong() != 0);
    case type::Byte:
    case type::Integer:
    case type::Long:
        if (raw.typeId() == QMetaType::LongLong) {
            const qlonglong v = raw.toLongLong();
            if (v >= INT32_MIN && v <= INT32_MAX)
                return QVariant(int(v));
        }
        return raw;
    case type::Text:
    case type::Memo:
        if (raw.typeId() != QMetaType::QString)
            return raw.toString();
        return raw;
    default:
        return raw;
    }
}

// Converts a value for a column of the given type, as the engine would on writing.
QVariant coerce(const QVariant& v, const FieldDef& f)
{
    if (!v.isValid() || v.isNull())
        return {};
    auto conversionError = [&]() {
        return DbError(3421, QStringLiteral("Data type conversion error (field '%1').").arg(f.name));
    };
    switch (f.type) {
    case type::Boolean:
        if (v.typeId() == QMetaType::Bool)
            return qlonglong(v.toBool() ? -1 : 0);
        {
            bool ok = false;
            const double d = v.toDouble(&ok);
            if (!ok)
                throw conversionError();
            return qlonglong(d != 0 ? -1 : 0);
        }
    case type::Byte:
    case type::Integer:
    case type::Long: {
        if (v.typeId() == QMetaType::Bool)
            return qlonglong(v.toBool() ? -1 : 0);
        bool ok = false;
        const double d = v.typeId() == QMetaType::QString ? v.toString().trimmed().toDouble(&ok)
                                                         : v.toDouble(&ok);
        if (!ok)
            throw conversionError();
        return qlonglong(std::llround(d));
    }
    case type::Currency:
    case type::Single:
    case type::Double: {
        bool ok = false;
        const double d = v.toDouble(&ok);
        if (!ok)
            throw conversionError();
        return d;
    }
    case type::Date:
        if (v.typeId() == QMetaType::QDateTime || v.typeId() == QMetaType::QDate)
            return v;
        if (v.typeId() == QMetaType::QString) {
            QDateTime dt = dateFromStorage(v.toString());
            if (!dt.isValid() && !parseJetDate(v.toString(), dt))
                throw conversionError();
            return dt;
        }
        throw conversionError();
    case type::Binary:
    case type::LongBinary:
        return v.toByteArray();
    case type::Text:
    case type::Memo:
    default: {
        const QString s = v.typeId() == QMetaType::QDateTime ? dateToStorage(v.toDateTime())
                                                             : v.toString();
        if (f.type == type::Text && f.size > 0 && s.size() > f.size)
            throw DbError(3163, QStringLiteral("The field is too small to accept the amount of data "
                                               "you attempted to add (field '%1').")
                                    .arg(f.name));
        return s;
    }
    }
}

QString quoteName(const QString& name)
{
    QString s = name;
    s.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + s + QLatin1Char('"');
}

} // namespace

Recordset::Recordset(std::shared_ptr<Connection> conn, const QString& source,
                     std::shared_ptr<const Translation> translation, const QVector<QVariant>& params,
                     RecordsetType type, int options)
    : m_conn(std::move(conn)), m_source(source), m_tr(std::move(translation)), m_params(params),
      m_type(type), m_options(options)
{
}

namespace {
constexpr qint64 kNullKey = std::numeric_limits<qint64>::min();
constexpr qint64 kKeptRows = 2048;    // rows whose values are kept as the statement runs
constexpr qint64 kCachedRows = 16384; // rows kept in a keyed recordset's cache at most
} // namespace

Recordset::~Recordset()
{
    close();
}

void Recordset::start()
{
    m_cursor = std::make_unique<Cursor>();
    m_keyed = !m_tr->pageSql.isEmpty() && m_type != RecordsetType::ForwardOnly;
    // Reading the first rowids alone pays where it spares the joins; a single table is read
    // whole, which keeps small results to one statement.
    m_keysOnly = m_keyed && !m_tr->keySql.isEmpty() && m_tr->sources.size() > 1 && joinsAreUnique();
    m_keyWidth = m_keysOnly ? 1 : (m_keyed ? m_tr->hiddenColumns() : 0);
    m_cursor->stmt = m_conn->prepare(cursorSql(), m_source);
    bindParameters(m_cursor->stmt, m_params);
    // The columns are those of the statement, which is not run when only its keys are read.
    sqlite3_stmt* st = m_keysOnly ? m_conn->prepare(m_tr->sqlite, m_source) : m_cursor->stmt;
    struct Release
    {
        Recordset* rs;
        sqlite3_stmt* st;
        ~Release()
        {
            if (rs->m_keysOnly)
                rs->m_conn->release(st, rs->m_tr->sqlite);
        }
    } release{this, st};
    m_cursor->columns = sqlite3_column_count(st);
    const int visible = m_cursor->columns - m_tr->hiddenColumns();
    m_rows = std::make_unique<RowStore>(m_cursor->columns);
    m_keys.clear();
    m_cached.clear();
    m_deleted.clear();
    m_atEnd = false;
    m_pos = -1;
    const bool first = fetchTo(0);
    m_fields.clear();
    for (int c = 0; c < visible; ++c) {
        FieldInfo f;
        f.name = QString::fromUtf8(sqlite3_column_name(st, c));
        f.ordinalPosition = c;
        const char* decl = sqlite3_column_decltype(st, c);
        const char* table = sqlite3_column_table_name(st, c);
        f.sourceTable = table ? QString::fromUtf8(table) : QString();
        if (decl) {
            f.type = typeFromDeclared(QString::fromUtf8(decl), &f.size);
        } else if (first) {
            const QVariant v = storedValue(0, c);
            switch (v.typeId()) {
            case QMetaType::Int:
            case QMetaType::LongLong:
                f.type = type::Long;
                break;
            case QMetaType::Double:
                f.type = type::Double;
                break;
            case QMetaType::QByteArray:
                f.type = type::LongBinary;
                break;
            default:
                f.type = type::Text;
                f.size = 255;
                break;
            }
        } else {
            f.type = type::Text;
            f.size = 255;
        }
        m_fields.push_back(f);
    }
    m_pos = first ? 0 : -1;
}

bool Recordset::fetchTo(qint64 index)
{
    if (!m_cursor)
        return false;
    Cursor& c = *m_cursor;
    while (c.fetched <= index && !m_atEnd) {
        const int rc = sqlite3_step(c.stmt);
        if (rc == SQLITE_ROW) {
            if (m_keysOnly) {
                m_keys.push_back(sqlite3_column_int64(c.stmt, 0));
            } else if (m_keyed) {
                // Every row leaves its rowids; the first ones their values too.
                const int n = m_tr->hiddenColumns();
                for (int k = c.columns - n; k < c.columns; ++k) {
                    const qint64 key = sqlite3_column_int64(c.stmt, k);
                    m_keys.push_back(key == 0 && sqlite3_column_type(c.stmt, k) == SQLITE_NULL
                                         ? kNullKey
                                         : key);
                }
                if (c.fetched < kKeptRows && m_rows->size() < kCachedRows) {
                    m_cached.insert(c.fetched, m_rows->size());
                    m_rows->append(c.stmt);
                }
            } else {
                if (m_type == RecordsetType::ForwardOnly) {
                    m_rows->clear();
                    c.base = c.fetched;
                }
                m_rows->append(c.stmt);
            }
            ++c.fetched;
        } else if (rc == SQLITE_DONE) {
            m_atEnd = true;
            m_conn->release(c.stmt, cursorSql());
            c.stmt = nullptr;
        } else {
            m_atEnd = true;
            try {
                m_conn->fail(m_source);
            } catch (...) {
                m_conn->release(c.stmt, cursorSql());
                c.stmt = nullptr;
                throw;
            }
        }
    }
    return index < c.fetched;
}

bool Recordset::isOpen() const
{
    return m_cursor != nullptr;
}

void Recordset::close()
{
    if (m_cursor && m_cursor->stmt && m_conn)
        m_conn->release(m_cursor->stmt, cursorSql());
    m_cursor.reset();
    m_rows.reset();
    m_keys.clear();
    m_cached.clear();
    m_pos = -1;
}

void Recordset::requery()
{
    close();
    start();
}

int Recordset::fieldCount() const
{
    return int(m_fields.size());
}

const FieldInfo& Recordset::field(int index) const
{
    if (index < 0 || index >= m_fields.size())
        throw DbError(err::ItemNotFound, QStringLiteral("Item not found in this collection."),
                      QString::number(index));
    return m_fields[index];
}

const QVector<FieldInfo>& Recordset::fields() const
{
    return m_fields;
}

int Recordset::fieldIndex(const QString& name) const
{
    for (int i = 0; i < m_fields.size(); ++i)
        if (m_fields[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

qint64 Recordset::recordCount() const
{
    return m_cursor ? m_cursor->fetched : 0;
}

bool Recordset::eof() const
{
    return !m_cursor || m_cursor->fetched == 0 || m_pos >= m_cursor->fetched;
}

bool Recordset::bof() const
{
    return !m_cursor || m_cursor->fetched == 0 || m_pos < 0;
}

void Recordset::checkCurrent() const
{
    if (eof() || bof())
        noCurrent();
    if (m_deleted.contains(m_pos))
        throw DbError(3167, QStringLiteral("Record is deleted."));
}

QVariant Recordset::storedValue(qint64 row, int column) const
{
    return m_rows->value(storeIndex(row), column);
}

qint64 Recordset::storeIndex(qint64 row) const
{
    if (!m_keyed)
        return row - m_cursor->base;
    auto it = m_cached.constFind(row);
    if (it != m_cached.constEnd())
        return it.value();
    fetchBlock(row);
    return m_cached.value(row);
}

const QString& Recordset::cursorSql() const
{
    return m_keysOnly ? m_tr->keySql : m_tr->sqlite;
}

QVariant Recordset::rowid(qint64 row, int source) const
{
    if (m_keyed && source < m_keyWidth) {
        const qint64 k = m_keys[size_t(row * m_keyWidth + source)];
        return k == kNullKey ? QVariant() : QVariant(k);
    }
    return storedValue(row, m_cursor->columns - m_tr->hiddenColumns() + source);
}

void Recordset::fetchBlock(qint64 row) const
{
    // The rows from `row` on, as far as one statement reaches, read by the rowids of their
    // first table and told apart by the rowids of all their tables.
    const int n = m_tr->hiddenColumns();
    if (m_rows->size() + Translation::kPageKeys > kCachedRows) {
        m_rows->clear();
        m_cached.clear();
    }
    QHash<qint64, QVarLengthArray<qint64, 2>> wanted; // first rowid -> rows
    QVarLengthArray<qint64, Translation::kPageKeys> firstKeys;
    QVarLengthArray<qint64, Translation::kPageKeys * 2> block;
    for (qint64 r = row; r < m_cursor->fetched; ++r) {
        if (m_cached.contains(r))
            continue;
        const qint64 first = m_keys[size_t(r * m_keyWidth)];
        auto it = wanted.find(first);
        if (it == wanted.end()) {
            if (firstKeys.size() == Translation::kPageKeys)
                break;
            firstKeys.append(first);
            it = wanted.insert(first, {});
        }
        it->append(r);
        block.append(r);
    }
    sqlite3_stmt* st = m_conn->prepare(m_tr->pageSql, m_source);
    const int base = int(m_tr->parameters.size()) + m_tr->literalCount;
    for (int i = 0; i < base && i < m_params.size(); ++i)
        bindValue(st, i + 1, m_params[i]);
    for (int k = 0; k < Translation::kPageKeys; ++k) {
        if (k < firstKeys.size())
            sqlite3_bind_int64(st, base + k + 1, firstKeys[k]);
        else
            sqlite3_bind_null(st, base + k + 1);
    }
    const int columns = m_cursor->columns;
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
        auto it = wanted.constFind(sqlite3_column_int64(st, columns - n));
        if (it == wanted.constEnd())
            continue;
        qint64 index = -1;
        for (qint64 r : *it) {
            // The other tables' rowids tell which of the rows with this first rowid it is.
            bool same = true;
            for (int k = 1; k < m_keyWidth && same; ++k) {
                const qint64 key = sqlite3_column_type(st, columns - n + k) == SQLITE_NULL
                                       ? kNullKey
                                       : sqlite3_column_int64(st, columns - n + k);
                same = key == m_keys[size_t(r * m_keyWidth + k)];
            }
            if (!same || m_cached.contains(r))
                continue;
            if (index < 0) {
                index = m_rows->size();
                m_rows->append(st);
            }
            m_cached.insert(r, index);
        }
    }
    m_conn->release(st, m_tr->pageSql);
    if (rc != SQLITE_DONE)
        m_conn->fail(m_source);
    // Rows that are gone since the statement ran read as empty.
    for (qint64 r : block)
        if (!m_cached.contains(r)) {
            m_cached.insert(r, m_rows->size());
            m_rows->appendNulls();
        }
}

QVariant Recordset::value(int index) const
{
    if (index < 0 || index >= m_fields.size())
        throw DbError(err::ItemNotFound, QStringLiteral("Item not found in this collection."),
                      QString::number(index));
    checkCurrent();
    return typed(storedValue(m_pos, index), m_fields[index].type);
}

QVariant Recordset::value(const QString& name) const
{
    const int i = fieldIndex(name);
    if (i < 0)
        throw DbError(err::ItemNotFound,
                      QStringLiteral("Item not found in this collection: %1.").arg(name), m_source);
    return value(i);
}

void Recordset::moveFirst()
{
    if (!m_cursor || m_cursor->fetched == 0)
        noCurrent();
    if (m_type == RecordsetType::ForwardOnly && m_pos > 0)
        throw DbError(3219, QStringLiteral("Invalid operation."));
    m_pos = 0;
}

void Recordset::moveLast()
{
    if (!m_cursor)
        noCurrent();
    fetchTo(std::numeric_limits<qint64>::max() - 1);
    if (m_cursor->fetched == 0)
        noCurrent();
    m_pos = m_cursor->fetched - 1;
}

void Recordset::moveNext()
{
    if (eof())
        noCurrent();
    if (fetchTo(m_pos + 1))
        ++m_pos;
    else
        m_pos = m_cursor->fetched;
}

void Recordset::movePrevious()
{
    if (m_type == RecordsetType::ForwardOnly)
        throw DbError(3219, QStringLiteral("Invalid operation."));
    if (bof())
        noCurrent();
    --m_pos;
}

qint64 Recordset::absolutePosition() const
{
    if (eof() || bof())
        return -1;
    return m_pos;
}

void Recordset::setAbsolutePosition(qint64 position)
{
    if (position < 0 || !fetchTo(position) ||
        (m_type == RecordsetType::ForwardOnly && position < m_cursor->base))
        throw DbError(err::InvalidArgument, QStringLiteral("Invalid argument."));
    m_pos = position;
}

RowBlock Recordset::getRows(qint64 count)
{
    RowBlock block;
    block.fieldCount = int(m_fields.size());
    if (eof() || bof() || count <= 0)
        return block;
    // Text, memo and whole-number fields come out of the store as they are wanted.
    QVector<bool> convert(block.fieldCount);
    for (int c = 0; c < block.fieldCount; ++c) {
        const int t = m_fields[c].type;
        convert[c] = !(t == type::Text || t == type::Memo || t == type::Long ||
                       t == type::Integer || t == type::Byte || t == type::Double);
    }
    auto take = [&](qint64 r) {
        m_rows->decodeRow(storeIndex(r), block.fieldCount, [&](int c, QVariant&& v) {
            block.values.push_back(convert[c] ? typed(std::move(v), m_fields[c].type) : std::move(v));
        });
        ++block.rowCount;
    };
    if (m_type == RecordsetType::ForwardOnly) {
        while (block.rowCount < count && !eof()) {
            take(m_pos);
            moveNext();
        }
        return block;
    }
    fetchTo(m_pos + count - 1);
    const qint64 last = std::min(m_cursor->fetched, m_pos + count);
    block.values.reserve(int((last - m_pos) * block.fieldCount));
    for (qint64 r = m_pos; r < last; ++r)
        take(r);
    m_pos = last;
    if (!fetchTo(m_pos))
        m_pos = m_cursor->fetched;
    return block;
}

qint64 Recordset::find(const QString& criteria, qint64 from, int step)
{
    if (!m_cursor)
        noCurrent();
    if (m_keyed && !m_tr->scanSql.isEmpty()) {
        // A big keyed list holds few values: the engine evaluates the criterion instead.
        fetchTo(std::numeric_limits<qint64>::max() - 1);
        if (m_cursor->fetched > kKeptRows)
            return findByStatement(criteria, from, step);
    }
    static thread_local QHash<QString, JetNodeP> parsed;
    JetNodeP expr = parsed.value(criteria);
    if (!expr) {
        expr = parseJetExpression(criteria);
        if (parsed.size() > 256)
            parsed.clear();
        parsed.insert(criteria, expr);
    }
    qint64 row = from;
    const FieldLookup lookup = [&](const QStringList& parts) -> QVariant {
        const int i = criteriaField(parts, criteria);
        const QVariant raw = storedValue(row, i);
        return m_fields[i].type == type::Boolean ? typed(QVariant(raw), type::Boolean) : raw;
    };
    for (; row >= 0 && fetchTo(row); row += step) {
        if (m_deleted.contains(row))
            continue;
        if (jetTruth(evalJet(*expr, lookup)))
            return row;
    }
    return -1;
}

int Recordset::criteriaField(const QStringList& parts, const QString& criteria) const
{
    int i = fieldIndex(parts.join(QLatin1Char('.')));
    if (i < 0)
        i = fieldIndex(parts.back());
    if (i < 0)
        throw DbError(3070, QStringLiteral("The field '%1' is not known in this recordset.")
                                .arg(parts.join(QLatin1Char('.'))),
                      criteria);
    return i;
}

bool Recordset::joinsAreUnique() const
{
    const QVector<Translation::Source>& sources = m_tr->sources;
    if (m_tr->joinColumns.size() != sources.size() - 1)
        return false;
    try {
        for (int i = 1; i < sources.size(); ++i) {
            const QString& column = m_tr->joinColumns[i - 1];
            if (column.isEmpty())
                return false;
            bool unique = false;
            for (const IndexDef& ix : m_conn->tableDef(sources[i].schema, sources[i].table).indexes)
                if ((ix.primary || ix.unique) && ix.fields.size() == 1 &&
                    ix.fields[0].compare(column, Qt::CaseInsensitive) == 0)
                    unique = true;
            if (!unique)
                return false;
        }
    } catch (const DbError&) {
        return false;
    }
    return true;
}

qint64 Recordset::findByStatement(const QString& criteria, qint64 from, int step)
{
    // The rowids of the matching rows, from the rows of the statement filtered by the engine;
    // then the first position in the keyset, in the direction asked, that holds one of them.
    const int n = m_keyWidth;
    QStringList keys;
    for (int k = 0; k < n; ++k)
        keys << QStringLiteral("\"__rowid%1\"").arg(k + 1);
    const QString where = translateCriteria(criteria, *m_conn, [&](const QStringList& parts) {
        return m_fields[criteriaField(parts, criteria)].name;
    });
    const QString sql = QStringLiteral("SELECT ") + keys.join(QLatin1Char(',')) +
                        QStringLiteral(" FROM (") + m_tr->scanSql + QStringLiteral(") WHERE ") +
                        where;
    sqlite3_stmt* st = m_conn->prepare(sql, criteria);
    bindParameters(st, m_params);
    std::vector<qint64> hits;
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW)
        for (int k = 0; k < n; ++k)
            hits.push_back(sqlite3_column_type(st, k) == SQLITE_NULL ? kNullKey
                                                                     : sqlite3_column_int64(st, k));
    sqlite3_finalize(st); // criteria differ each time: not worth keeping
    if (rc != SQLITE_DONE)
        m_conn->fail(criteria);
    if (hits.empty())
        return -1;
    // Matches as tuples of n rowids, sorted for binary search.
    std::vector<size_t> order(hits.size() / size_t(n));
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = i * size_t(n);
    auto less = [&](const qint64* a, const qint64* b) {
        return std::lexicographical_compare(a, a + n, b, b + n);
    };
    std::sort(order.begin(), order.end(),
              [&](size_t a, size_t b) { return less(&hits[a], &hits[b]); });
    auto matches = [&](qint64 row) {
        const qint64* key = &m_keys[size_t(row * n)];
        auto it = std::lower_bound(order.begin(), order.end(), key,
                                   [&](size_t h, const qint64* k) { return less(&hits[h], k); });
        return it != order.end() && !less(key, &hits[*it]);
    };
    for (qint64 row = from; row >= 0 && row < m_cursor->fetched; row += step)
        if (!m_deleted.contains(row) && matches(row))
            return row;
    return -1;
}

bool Recordset::findFirst(const QString& criteria)
{
    const qint64 r = find(criteria, 0, 1);
    m_noMatch = r < 0;
    if (!m_noMatch)
        m_pos = r;
    return !m_noMatch;
}

bool Recordset::findNext(const QString& criteria)
{
    const qint64 r = find(criteria, std::max<qint64>(0, m_pos + 1), 1);
    m_noMatch = r < 0;
    if (!m_noMatch)
        m_pos = r;
    return !m_noMatch;
}

bool Recordset::findLast(const QString& criteria)
{
    if (m_cursor)
        fetchTo(std::numeric_limits<qint64>::max() - 1);
    const qint64 r = m_cursor ? find(criteria, m_cursor->fetched - 1, -1) : -1;
    m_noMatch = r < 0;
    if (!m_noMatch)
        m_pos = r;
    return !m_noMatch;
}

bool Recordset::findPrevious(const QString& criteria)
{
    const qint64 r = m_pos > 0 ? find(criteria, m_pos - 1, -1) : -1;
    m_noMatch = r < 0;
    if (!m_noMatch)
        m_pos = r;
    return !m_noMatch;
}

// --- writing -------------------------------------------------------------------------------

bool Recordset::updatable() const
{
    return m_type == RecordsetType::Dynaset && !(m_options & option::ReadOnly) &&
           !m_tr->sources.isEmpty() && m_cursor;
}

namespace {

[[noreturn]] void readOnly(const QString& source)
{
    throw DbError(err::NotUpdatable, QStringLiteral("Cannot update. Database or object is read-only."),
                  source);
}

QString tableName(const Translation::Source& s)
{
    return quoteName(s.schema) + QLatin1Char('.') + quoteName(s.table);
}

// The form in which the engine keeps a value written through a recordset.
QVariant storageForm(const QVariant& v)
{
    if (v.typeId() == QMetaType::QDateTime)
        return dateToStorage(v.toDateTime());
    if (v.typeId() == QMetaType::QDate)
        return dateToStorage(QDateTime(v.toDate(), QTime(0, 0)));
    return v;
}

} // namespace

void Recordset::addNew()
{
    if (!updatable() || m_tr->sources.size() != 1)
        readOnly(m_source);
    m_editMode = 2;
    m_edits.clear();
}

void Recordset::edit()
{
    if (!updatable())
        readOnly(m_source);
    checkCurrent();
    m_editMode = 1;
    m_edits.clear();
}

int Recordset::resolveEdit(const QString& name, QString& column) const
{
    // A field of the recordset that reads a table's column...
    const int field = fieldIndex(name);
    if (field >= 0 && field < m_tr->originSource.size() && m_tr->originSource[field] >= 0) {
        column = m_tr->originColumn[field];
        return m_tr->originSource[field];
    }
    // ... or a column of a table named with or without its qualifier ("F.lStartCount").
    QString q;
    column = name;
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot > 0) {
        q = name.left(dot);
        column = name.mid(dot + 1);
    }
    for (int i = 0; i < m_tr->sources.size(); ++i) {
        const Translation::Source& s = m_tr->sources[i];
        if (!q.isEmpty() && s.qualifier.compare(q, Qt::CaseInsensitive) != 0 &&
            s.table.compare(q, Qt::CaseInsensitive) != 0)
            continue;
        if (q.isEmpty() && m_tr->sources.size() > 1)
            continue;
        if (sourceDef(i).fieldIndex(column) >= 0)
            return i;
    }
    return -1;
}

const TableDef& Recordset::sourceDef(int source) const
{
    if (m_sourceDefs.isEmpty())
        for (const Translation::Source& s : m_tr->sources)
            m_sourceDefs.push_back(m_conn->tableDef(s.schema, s.table));
    return m_sourceDefs[source];
}

void Recordset::setValue(const QString& name, const QVariant& value)
{
    if (m_editMode == 0)
        throw DbError(err::UpdateWithoutEdit,
                      QStringLiteral("Update or CancelUpdate without AddNew or Edit."), m_source);
    auto target = m_editTargets.constFind(name);
    if (target == m_editTargets.constEnd()) {
        QString column;
        const int source = resolveEdit(name, column);
        if (source < 0)
            throw DbError(err::ItemNotFound,
                          QStringLiteral("Item not found in this collection: %1.").arg(name),
                          m_source);
        target = m_editTargets.insert(name, {source, sourceDef(source).fieldIndex(column)});
    }
    const int source = target->first;
    const FieldDef& f = sourceDef(source).fields[target->second];
    const QVariant stored = storageForm(coerce(value, f));
    for (PendingEdit& e : m_edits)
        if (e.source == source && e.column.compare(f.name, Qt::CaseInsensitive) == 0) {
            e.value = stored;
            return;
        }
    m_edits.push_back({source, f.name, stored});
}

void Recordset::cancelUpdate()
{
    m_editMode = 0;
    m_edits.clear();
}

void Recordset::update()
{
    if (m_editMode == 0)
        throw DbError(err::UpdateWithoutEdit,
                      QStringLiteral("Update or CancelUpdate without AddNew or Edit."), m_source);
    const int mode = m_editMode;
    const QVector<PendingEdit> edits = m_edits;
    cancelUpdate();
    Translation tr;
    tr.jet = m_source;
    if (mode == 2) {
        QStringList names;
        QVector<QVariant> values;
        for (const PendingEdit& e : edits) {
            names << quoteName(e.column);
            values << e.value;
        }
        const QString columns = names.join(QLatin1Char(','));
        if (m_insertSql.isEmpty() || columns != m_insertColumns) {
            const QString table = tableName(m_tr->sources[0]);
            m_insertColumns = columns;
            m_insertSql = names.isEmpty()
                              ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(table)
                              : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                    .arg(table, columns,
                                         QStringList(names.size(), QStringLiteral("?"))
                                             .join(QLatin1Char(',')));
        }
        tr.sqlite = m_insertSql;
        m_conn->run(tr, values);
        return;
    }
    for (int source = 0; source < m_tr->sources.size(); ++source) {
        QStringList sets;
        QVector<QVariant> values;
        for (const PendingEdit& e : edits)
            if (e.source == source) {
                sets << quoteName(e.column) + QStringLiteral("=?");
                values << e.value;
            }
        if (sets.isEmpty())
            continue;
        const QVariant id = rowid(m_pos, source);
        if (id.isNull())
            throw DbError(err::NotUpdatable,
                          QStringLiteral("Cannot update: the row of '%1' does not exist.")
                              .arg(m_tr->sources[source].qualifier),
                          m_source);
        values << id;
        tr.sqlite = QStringLiteral("UPDATE %1 SET %2 WHERE rowid=?")
                        .arg(tableName(m_tr->sources[source]), sets.join(QLatin1Char(',')));
        m_conn->run(tr, values);
    }
    // The recordset shows what was written: a keyed one reads the row again.
    if (m_keyed) {
        m_cached.remove(m_pos);
        return;
    }
    QVector<QVariant> row;
    for (int c = 0; c < m_cursor->columns; ++c) {
        QVariant v = storedValue(m_pos, c);
        if (c < m_tr->originSource.size())
            for (const PendingEdit& e : edits)
                if (m_tr->originSource[c] == e.source &&
                    m_tr->originColumn[c].compare(e.column, Qt::CaseInsensitive) == 0)
                    v = e.value;
        row << v;
    }
    m_rows->replace(m_pos - m_cursor->base, row);
}

void Recordset::deleteRow()
{
    if (!updatable())
        readOnly(m_source);
    checkCurrent();
    Translation tr;
    tr.jet = m_source;
    tr.sqlite = QStringLiteral("DELETE FROM %1 WHERE rowid=?").arg(tableName(m_tr->sources[0]));
    m_conn->run(tr, {rowid(m_pos, 0)});
    m_deleted.insert(m_pos);
}

} // namespace vd::db
