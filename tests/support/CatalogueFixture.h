#pragma once
// A catalogue in a temporary folder, filled with a small collection whose every row is known.
//
// Files (Category, iType 1); tCategory and tFile hold the same name:
//   ID name                tPath                          tUnpackPath      iFileType GB_ID
//    1 Sanxion.d64         /c64/disks/Sanxion.d64         -                1         101
//    2 Uridium.t64         /c64/tapes/Uridium.t64         -                3         -
//    3 Paradroid.prg       /c64/zips/Paradroid.zip        Paradroid.prg    4         102
//    4 Boulder Dash.tap    /c64/tapes/Boulder Dash.tap    -                6         -
//    5 readme.txt          /c64/zips/Paradroid.zip        docs\readme.txt  10        102
//    6 O'Brien's Disk.d64  /c64/disks/O'Brien's Disk.d64  -                1         -
//    7 cover.png           /c64/pics/cover.png            -                14        -
//    8 Empty.d81           /c64/disks/Empty.d81           -                13        -
//    9 Commando.d64        /c64/zips/Commando.ZIP         Commando.d64     1         -
//   10 title.gif           /c64/pics/title.gif            -                14        -
// File 8 has no entries. Started files: 1 (2024-03-14 21:05:00, 3 starts),
// 3 (2024-03-10 08:00:00, 5), 6 (2023-12-31 23:59:59, 1). tImage: 1 "SANXION",
// 2 "URIDIUM TAPE", 6 "O'BRIEN", 8 "EMPTY", 9 "COMMANDO". tHash only on 1.
// User categories (iType 3): 20 "Action", 21 "Shoot'em Up", 22 "Puzzle" (no entries).
//
// Entries (C64Files); "file" is Category_File, "user" Category_User:
//   ID tProgram         tExtension lSize lIndex file user GB_ID started
//    1 SANXION          PRG        150   1      1    21   101   2024-03-14 21:05:00, 2 times
//    2 SANXION HISCORE  SEQ        2     2      1    -    -     2024-03-01 10:00:00, once
//    3 MY_GAME          PRG        33    3      1    -    -     -
//    4 URIDIUM          PRG        180   1      2    20   -     -
//    5 PARADROID        PRG        200   1      3    20   102   2024-03-10 08:00:00, 5 times
//    6 BOULDER DASH     PRG        90    1      4    -    -     -
//    7 readme.txt       TXT        1234  1      5    -    102   -
//    8 O'BRIEN          PRG        10    1      6    21   -     2023-12-31 23:59:59, once
//    9 cover.png        PNG        4096  1      7    -    -     -
//   10 (NO NAME)        PRG        0     2      6    -    -     -
//   11 COMMANDO         PRG        120   1      9    -    -     -
//   12 title.gif        GIF        2048  1      10   -    -     -
// tRealProgram equals tProgram except on entry 10, where it is Null.
//
// The rows above kStartCategoryID and kStartC64FileID are what the view of new files shows.

#include <memory>
#include <QDateTime>
#include <QString>
#include <QTemporaryDir>
#include <QVariantMap>

namespace vd::db {
class Database;
}

namespace vd::test {

class CatalogueFixture
{
public:
    static constexpr qint64 kStartCategoryID = 8;
    static constexpr qint64 kStartC64FileID = 9;
    static constexpr int kFileCount = 10;
    static constexpr int kUserCategoryCount = 3;
    static constexpr int kEntryCount = 12;

    // Creates the catalogue through the designed creation routine; with `fill` the rows above
    // are written. The catalogue stays open.
    explicit CatalogueFixture(bool fill = true);
    ~CatalogueFixture();
    CatalogueFixture(const CatalogueFixture&) = delete;
    CatalogueFixture& operator=(const CatalogueFixture&) = delete;

    QString path() const { return m_path; }
    QString folder() const { return m_dir.path(); }
    db::Database& db();
    void close();

private:
    QTemporaryDir m_dir;
    QString m_path;
    std::unique_ptr<db::Database> m_db;
};

// Adds one row through a dynaset on `table`: each key of `values` is a field name.
void appendRow(db::Database& db, const QString& table, const QVariantMap& values);

// A local date and time, as the catalogue stores its timestamps.
QDateTime stamp(int year, int month, int day, int hour, int minute, int second);

} // namespace vd::test
