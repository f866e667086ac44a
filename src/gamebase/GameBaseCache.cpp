#include "gamebase/GameBaseCache.h"

#include "catalogue/Database.h"
#include "catalogue/DbError.h"
#include "gamebase/MdbReader.h"
#include "platform/Progress.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
// The one place outside the data layer that speaks to SQLite itself. The cache is our own file:
// its rows go in through one prepared INSERT per table (a recordset per row would cost several
// times as much for a whole GameBase), and the play statistics come over with one ATTACH and
// UPDATE in SQLite's own dialect.
#include <sqlite3.h>

namespace vd::gamebase {

namespace {

constexpr int kYieldEveryRows = 1000;
const QString kPartSuffix = QStringLiteral(".part");

QString pathKey(const QString& mdbPath)
{
    const QString absolute = QFileInfo(mdbPath).absoluteFilePath();
    return QString::fromLatin1(
        QCryptographicHash::hash(absolute.toUtf8(), QCryptographicHash::Sha1).toHex().left(16));
}

QString quoted(const QString& name)
{
    return QLatin1Char('"') + QString(name).replace(QLatin1Char('"'), QStringLiteral("\"\"")) +
           QLatin1Char('"');
}

// A cache file with the journal files SQLite keeps beside it while it is open (a reader
// leaves them behind). A journal must never outlive its file: on a new file of the same name
// it would be replayed.
const char* const kCompanions[] = {"", "-wal", "-shm"};

void removeCacheFile(const QString& path)
{
    for (const char* suffix : kCompanions)
        QFile::remove(path + QLatin1String(suffix));
}

void renameCacheFile(const QString& from, const QString& to)
{
    removeCacheFile(to);
    for (const char* suffix : kCompanions)
        QFile::rename(from + QLatin1String(suffix), to + QLatin1String(suffix));
}

// The keys and the foreign keys: every column named "..._Id" gets an index.
QVector<db::IndexDef> keyIndexes(const QVector<db::FieldDef>& fields)
{
    QVector<db::IndexDef> indexes;
    for (const db::FieldDef& f : fields)
        if (f.name.endsWith(QLatin1String("_Id"), Qt::CaseInsensitive))
            indexes.append(db::IndexDef{QStringLiteral("ix") + f.name, {f.name}, false, false});
    return indexes;
}

// One prepared INSERT of all columns of a table.
class Inserter
{
public:
    Inserter(sqlite3* handle, const QString& table, int columnCount) : m_handle(handle)
    {
        QStringList marks;
        for (int i = 0; i < columnCount; ++i)
            marks << QStringLiteral("?");
        const QByteArray sql = QStringLiteral("INSERT INTO %1 VALUES (%2)")
                                   .arg(quoted(table), marks.join(QLatin1Char(',')))
                                   .toUtf8();
        if (sqlite3_prepare_v2(handle, sql.constData(), -1, &m_stmt, nullptr) != SQLITE_OK)
            throw db::DbError(0, QString::fromUtf8(sqlite3_errmsg(handle)), QString::fromUtf8(sql));
    }
    ~Inserter() { sqlite3_finalize(m_stmt); }
    Inserter(const Inserter&) = delete;
    Inserter& operator=(const Inserter&) = delete;

    void insert(const QVector<QVariant>& row)
    {
        sqlite3_reset(m_stmt);
        for (int i = 0; i < row.size(); ++i)
            bind(i + 1, row[i]);
        if (sqlite3_step(m_stmt) != SQLITE_DONE)
            throw db::DbError(0, QString::fromUtf8(sqlite3_errmsg(m_handle)));
    }

private:
    void bind(int pos, const QVariant& v)
    {
        switch (v.typeId()) {
        case QMetaType::UnknownType:
            sqlite3_bind_null(m_stmt, pos);
            break;
        case QMetaType::Int:
        case QMetaType::LongLong:
            sqlite3_bind_int64(m_stmt, pos, v.toLongLong());
            break;
        case QMetaType::Double:
            sqlite3_bind_double(m_stmt, pos, v.toDouble());
            break;
        case QMetaType::QByteArray: {
            const QByteArray b = v.toByteArray();
            sqlite3_bind_blob64(m_stmt, pos, b.constData(), static_cast<sqlite3_uint64>(b.size()),
                                SQLITE_TRANSIENT);
            break;
        }
        default: {
            const QByteArray t = v.toString().toUtf8();
            sqlite3_bind_text64(m_stmt, pos, t.constData(), static_cast<sqlite3_uint64>(t.size()),
                                SQLITE_TRANSIENT, SQLITE_UTF8);
        }
        }
    }

    sqlite3* m_handle;
    sqlite3_stmt* m_stmt = nullptr;
};

// Copies one table; returns its row count, or -1 when cancelled.
qint64 copyTable(MdbReader& reader, db::Database& cache, const QString& table,
                 platform::Progress& progress)
{
    const QVector<db::FieldDef> fields = reader.columns(table);
    if (fields.isEmpty())
        throw db::DbError(0, QStringLiteral("Table %1 cannot be read").arg(table));
    cache.createTable(db::TableDef{table, fields, keyIndexes(fields)});
    Inserter inserter(cache.handle(), table, static_cast<int>(fields.size()));
    qint64 seen = 0;
    const qint64 rows = reader.readRows(table, [&](const QVector<QVariant>& row) {
        inserter.insert(row);
        if (++seen % kYieldEveryRows != 0)
            return true;
        progress.yield();
        return !progress.cancelled();
    });
    if (rows < 0)
        throw db::DbError(0, reader.errorText());
    progress.yield();
    return progress.cancelled() ? -1 : rows;
}

} // namespace

QString cacheFileName(const QString& mdbPath, const QString& cacheFolder)
{
    const QFileInfo info(mdbPath);
    const qint64 mtime = info.lastModified().toMSecsSinceEpoch();
    QString folder = cacheFolder;
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    return folder +
           QStringLiteral("GB-%1-%2-%3.sqlite").arg(pathKey(mdbPath)).arg(info.size()).arg(mtime);
}

CacheResult buildCache(const QString& mdbPath, const QString& target, platform::Progress& progress)
{
    CacheResult result;
    result.path = target;
    MdbReader reader;
    if (!reader.open(mdbPath)) {
        result.error = reader.errorText();
        return result;
    }
    const QString part = target + kPartSuffix;
    QFile::remove(part);
    const QStringList tables = reader.tableNames();
    progress.setRange(tables.size());
    try {
        auto cache = db::Database::create(part);
        cache->beginTrans();
        for (int i = 0; i < tables.size(); ++i) {
            progress.setStatus(tables[i]);
            progress.setValue(i);
            const qint64 rows = copyTable(reader, *cache, tables[i], progress);
            if (rows < 0) {
                cache->rollback();
                cache->close();
                QFile::remove(part);
                result.error = QStringLiteral("Cancelled");
                return result;
            }
            result.tableRows.append({tables[i], rows});
        }
        cache->commitTrans();
        progress.setValue(tables.size());
        cache->close();
    } catch (const db::DbError& e) {
        QFile::remove(part);
        result.error = e.description();
        result.tableRows.clear();
        return result;
    }
    removeCacheFile(target);
    if (!QFile::rename(part, target)) {
        QFile::remove(part);
        result.error = QStringLiteral("The cache %1 cannot be written").arg(target);
        return result;
    }
    result.ok = result.built = true;
    return result;
}

int carryPlayStatistics(const QString& oldCache, const QString& newCache)
{
    try {
        auto cache = db::Database::open(newCache);
        if (!cache->tableExists(QStringLiteral("Games")))
            return 0;
        sqlite3* h = cache->handle();
        const QByteArray attach =
            "ATTACH DATABASE " +
            quoted(oldCache).replace(QLatin1Char('"'), QLatin1Char('\'')).toUtf8() + " AS old";
        if (sqlite3_exec(h, attach.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
            return -1;
        const char* sql =
            "UPDATE Games SET "
            "DateLastPlayed = (SELECT o.DateLastPlayed FROM old.Games o WHERE o.GA_Id = "
            "Games.GA_Id), "
            "TimesPlayed = (SELECT o.TimesPlayed FROM old.Games o WHERE o.GA_Id = Games.GA_Id) "
            "WHERE EXISTS (SELECT 1 FROM old.Games o WHERE o.GA_Id = Games.GA_Id "
            "AND IFNULL(o.TimesPlayed, 0) > IFNULL(Games.TimesPlayed, 0))";
        const int rc = sqlite3_exec(h, sql, nullptr, nullptr, nullptr);
        const int changed = rc == SQLITE_OK ? sqlite3_changes(h) : -1;
        sqlite3_exec(h, "DETACH DATABASE old", nullptr, nullptr, nullptr);
        return changed;
    } catch (const db::DbError&) {
        return -1;
    }
}

CacheResult ensureCache(const QString& mdbPath, const QString& cacheFolder,
                        platform::Progress& progress, bool rebuild)
{
    const QString target = cacheFileName(mdbPath, cacheFolder);
    if (!rebuild && QFileInfo(target).isFile()) {
        CacheResult reused;
        reused.ok = true;
        reused.path = target;
        return reused;
    }
    QDir().mkpath(cacheFolder);
    // The caches of earlier states of the same .mdb hold the play statistics to keep.
    const QFileInfo targetInfo(target);
    const QStringList older = targetInfo.dir().entryList(
        {QStringLiteral("GB-%1-*.sqlite").arg(pathKey(mdbPath))}, QDir::Files, QDir::Time);
    const QString previous =
        rebuild && targetInfo.isFile() ? target + QStringLiteral(".old") : QString();
    if (!previous.isEmpty())
        renameCacheFile(target, previous);
    CacheResult result = buildCache(mdbPath, target, progress);
    if (!result.ok) {
        if (!previous.isEmpty())
            renameCacheFile(previous, target);
        return result;
    }
    QString source = previous;
    for (const QString& name : older) {
        const QString path = targetInfo.dir().filePath(name);
        if (path == target)
            continue;
        if (source.isEmpty())
            source = path;
    }
    if (!source.isEmpty())
        carryPlayStatistics(source, target);
    if (!previous.isEmpty())
        removeCacheFile(previous);
    for (const QString& name : older) {
        const QString path = targetInfo.dir().filePath(name);
        if (path != target)
            removeCacheFile(path);
    }
    return result;
}

} // namespace vd::gamebase
