#pragma once
// The SQLite cache of a GameBase .mdb: every table read once through libmdb into a file in the
// program's Cache folder. The file's name carries the .mdb's path, size and modification time,
// so a changed .mdb gets a new cache; the play statistics of the old cache are carried over.

#include <QPair>
#include <QString>
#include <QVector>

namespace vd::platform {
class Progress;
}

namespace vd::gamebase {

struct CacheResult
{
    bool ok = false;
    bool built = false;                        // false when an existing cache was reused
    QString path;                              // the cache file
    QString error;                             // why it failed
    QVector<QPair<QString, qint64>> tableRows; // rows copied per table, when built
};

// The cache file that belongs to the .mdb as it is now (path, size, modification time).
QString cacheFileName(const QString& mdbPath, const QString& cacheFolder);

// Returns the current cache of `mdbPath`, building it when it is missing or `rebuild` is set.
CacheResult ensureCache(const QString& mdbPath, const QString& cacheFolder,
                        platform::Progress& progress, bool rebuild = false);

// Copies every user table of the .mdb into the new SQLite file `target` (which is replaced).
CacheResult buildCache(const QString& mdbPath, const QString& target, platform::Progress& progress);

// Copies DateLastPlayed and TimesPlayed of each game from `oldCache` into `newCache` where the
// old cache counts more plays. Returns the number of games updated, -1 on failure.
int carryPlayStatistics(const QString& oldCache, const QString& newCache);

} // namespace vd::gamebase
