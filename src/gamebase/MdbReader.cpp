#include "gamebase/MdbReader.h"

#include <cmath>
#include <cstdlib>
#include <QDate>
#include <QFileInfo>
#include <QTime>
#include <vector>

extern "C" {
#include <mdbtools.h>
}

namespace vd::gamebase {

namespace {

// Longest text a field may hold when read; longer memos are cut here. libmdb works in buffers
// of this size while it converts values; at 256 KiB the cache was built about a fifth slower.
constexpr size_t kBindSize = 128 * 1024;
// Four-digit years, so that the text sorts in time order as the data layer expects.
constexpr char kDateFormat[] = "%Y-%m-%d %H:%M:%S";
// 1 Jan 100 to 31 Dec 9999, the range Jet keeps dates in.
constexpr double kMaxJetDays = 2958466.0;

QVariant numberValue(const QString& text, int fieldType)
{
    bool ok = false;
    if (fieldType == db::type::Double) {
        const double v = text.toDouble(&ok);
        return ok ? QVariant(v) : QVariant(text);
    }
    const qlonglong v = text.toLongLong(&ok);
    return ok ? QVariant(v) : QVariant(text);
}

} // namespace

int fieldTypeForMdb(int mdbType)
{
    switch (mdbType) {
    case MDB_BOOL:
        return db::type::Boolean;
    case MDB_BYTE:
        return db::type::Byte;
    case MDB_INT:
        return db::type::Integer;
    case MDB_LONGINT:
        return db::type::Long;
    case MDB_MONEY:
    case MDB_FLOAT:
    case MDB_DOUBLE:
    case MDB_NUMERIC:
        return db::type::Double;
    case MDB_DATETIME:
        return db::type::Date;
    case MDB_BINARY:
    case MDB_OLE:
        return db::type::LongBinary;
    case MDB_MEMO:
        return db::type::Memo;
    default: // Text, Replication-ID and whatever a newer file holds
        return db::type::Text;
    }
}

QString jetDateText(double value)
{
    // Whole days count from 30 Dec 1899; the fraction is the time of day, also before 1900
    // (-1.25 is 29 Dec 1899, 06:00).
    if (!std::isfinite(value) || std::fabs(value) > kMaxJetDays)
        return {};
    const double days = std::trunc(value);
    qint64 seconds = std::llround(std::fabs(value - days) * 86400.0);
    QDate date = QDate(1899, 12, 30).addDays(static_cast<qint64>(days));
    if (seconds >= 86400) {
        date = date.addDays(1);
        seconds -= 86400;
    }
    const QTime time = QTime(0, 0).addSecs(static_cast<int>(seconds));
    return QStringLiteral("%1-%2-%3 %4")
        .arg(date.year(), 4, 10, QLatin1Char('0'))
        .arg(date.month(), 2, 10, QLatin1Char('0'))
        .arg(date.day(), 2, 10, QLatin1Char('0'))
        .arg(time.toString(QStringLiteral("HH:mm:ss")));
}

struct MdbReader::Private
{
    MdbHandle* mdb = nullptr;
};

MdbReader::MdbReader() : d(std::make_unique<Private>()) {}

MdbReader::~MdbReader()
{
    close();
}

bool MdbReader::open(const QString& path)
{
    close();
    m_error.clear();
    if (!QFileInfo(path).isFile()) {
        m_error = QStringLiteral("File not found: %1").arg(path);
        return false;
    }
    const QByteArray name = QFile::encodeName(path);
    d->mdb = mdb_open(name.constData(), MDB_NOFLAGS);
    if (!d->mdb) {
        m_error = QStringLiteral("Not an Access database that can be read: %1").arg(path);
        return false;
    }
    mdb_set_date_fmt(d->mdb, kDateFormat);
    mdb_set_shortdate_fmt(d->mdb, kDateFormat);
    mdb_set_boolean_fmt_numbers(d->mdb);
    mdb_set_bind_size(d->mdb, kBindSize);
    if (!mdb_read_catalog(d->mdb, MDB_TABLE)) {
        m_error = QStringLiteral("Not an Access database that can be read: %1").arg(path);
        close();
        return false;
    }
    return true;
}

void MdbReader::close()
{
    if (d->mdb)
        mdb_close(d->mdb);
    d->mdb = nullptr;
}

bool MdbReader::isOpen() const
{
    return d->mdb != nullptr;
}

QStringList MdbReader::tableNames() const
{
    QStringList names;
    if (!d->mdb)
        return names;
    for (unsigned i = 0; i < d->mdb->num_catalog; ++i) {
        auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(d->mdb->catalog, i));
        if (entry->object_type == MDB_TABLE && mdb_is_user_table(entry))
            names.append(QString::fromUtf8(entry->object_name));
    }
    return names;
}

namespace {

struct TableHandle
{
    MdbTableDef* table = nullptr;
    ~TableHandle()
    {
        if (table)
            mdb_free_tabledef(table);
    }
};

MdbTableDef* openTable(MdbHandle* mdb, const QString& name)
{
    QByteArray utf8 = name.toUtf8();
    MdbTableDef* table = mdb_read_table_by_name(mdb, utf8.data(), MDB_TABLE);
    if (table && !mdb_read_columns(table)) {
        mdb_free_tabledef(table);
        return nullptr;
    }
    return table;
}

MdbColumn* columnAt(MdbTableDef* table, unsigned i)
{
    return static_cast<MdbColumn*>(g_ptr_array_index(table->columns, i));
}

} // namespace

QVector<db::FieldDef> MdbReader::columns(const QString& tableName)
{
    QVector<db::FieldDef> defs;
    if (!d->mdb)
        return defs;
    TableHandle h{openTable(d->mdb, tableName)};
    if (!h.table)
        return defs;
    for (unsigned i = 0; i < h.table->num_cols; ++i) {
        const MdbColumn* col = columnAt(h.table, i);
        db::FieldDef def{QString::fromUtf8(col->name), fieldTypeForMdb(col->col_type), 0, 0};
        if (def.type == db::type::Text)
            def.size = col->col_type == MDB_TEXT && col->col_size > 0 ? col->col_size : 255;
        if (col->col_type == MDB_TEXT && d->mdb->f->jet_version != MDB_VER_JET3)
            def.size = std::max(1, col->col_size / 2); // Jet 4 counts bytes of UCS-2
        defs.append(def);
    }
    return defs;
}

namespace {

QVariant fieldValue(MdbHandle* mdb, MdbColumn* col, const char* bound, int len, int fieldType)
{
    if (col->col_type == MDB_OLE) {
        if (len == 0)
            return {};
        size_t size = 0;
        void* data = mdb_ole_read_full(mdb, col, &size);
        if (!data)
            return {};
        QByteArray bytes(static_cast<const char*>(data), static_cast<qsizetype>(size));
        free(data);
        return bytes;
    }
    // libmdb prints dates through struct tm, which loses the years before 1900 and after
    // 9998: the stored number is converted here instead.
    if (col->col_type == MDB_DATETIME) {
        if (col->cur_value_len != 8)
            return {};
        const QString text = jetDateText(mdb_get_double(mdb->pg_buf, col->cur_value_start));
        return text.isEmpty() ? QVariant() : QVariant(text);
    }
    // libmdb cannot tell a null field from an empty text: both come back as nothing.
    if (len == 0)
        return {};
    const QString text = QString::fromUtf8(bound, len);
    switch (fieldType) {
    case db::type::Boolean:
        return text == QLatin1String("0") ? 0 : -1;
    case db::type::Byte:
    case db::type::Integer:
    case db::type::Long:
    case db::type::Double:
        return numberValue(text, fieldType);
    case db::type::LongBinary:
        return QByteArray(bound, len);
    default:
        return text;
    }
}

} // namespace

qint64 MdbReader::readRows(const QString& tableName, const RowSink& sink)
{
    if (!d->mdb)
        return -1;
    TableHandle h{openTable(d->mdb, tableName)};
    if (!h.table) {
        m_error = QStringLiteral("Table %1 cannot be read").arg(tableName);
        return -1;
    }
    const unsigned count = h.table->num_cols;
    std::vector<std::vector<char>> buffers(count, std::vector<char>(kBindSize + 1));
    std::vector<int> lengths(count, 0);
    QVector<int> types(static_cast<qsizetype>(count));
    for (unsigned i = 0; i < count; ++i) {
        mdb_bind_column(h.table, static_cast<int>(i + 1), buffers[i].data(), &lengths[i]);
        types[i] = fieldTypeForMdb(columnAt(h.table, i)->col_type);
    }
    mdb_rewind_table(h.table);
    qint64 rows = 0;
    QVector<QVariant> row(static_cast<qsizetype>(count));
    while (mdb_fetch_row(h.table)) {
        for (unsigned i = 0; i < count; ++i)
            row[i] =
                fieldValue(d->mdb, columnAt(h.table, i), buffers[i].data(), lengths[i], types[i]);
        ++rows;
        if (!sink(row))
            break;
    }
    return rows;
}

} // namespace vd::gamebase
