#pragma once
// A GameBase-shaped database (the tables and field types of a GameBase64 file) in a temporary
// folder whose name holds a blank, with a handful of games.
//
// Games (Filename and FileToRun; year, genre, DateLastPlayed, TimesPlayed, Adult):
//   101 Sanxion         S\Sanxion.zip        SANXION    1986 Shoot'em Up 14-03-2024 4 no
//   102 Paradroid       P\Paradroid.zip      PARADROID  1985 Action      ""         0 no
//   103 Uridium         U\Uridium.zip        ""         9991 Shoot'em Up 01-02-2024 2 no
//   104 O'Neil's Quest  O\O'Neils_Quest.zip  QUEST      1987 Adventure   05-01-2024 1 yes
//   105 ABC             X\ABC.ZIP            ABC        9994 Action      Null       0 no
//   106 No File         ""                   ""         1985 Adventure   ""         0 no
// ScrnshotFilename is the Filename with ".png" for all but 103 and 106, which have "".
// Comment: 101 "Horizontal shoot'em up", 102 "Robot puzzle shooter", 104 "Text adventure".
// V_Length / V_LengthType: 101 150/0, 102 200/0, 103 1/1, 104 2/3, 105 10/0, 106 0/19.
// Genres: 1 "Shoot'em Up", 2 "Action", 3 "Adventure" (games use these), 4 "" and 5 "Action"
// again under another parent genre. Config: MajorVersion 2, MinorVersion 5.

#include <memory>
#include <QString>
#include <QTemporaryDir>

namespace vd::db {
class Database;
}

namespace vd::test {

class GameBaseFixture
{
public:
    static constexpr int kGameCount = 6;
    static constexpr int kAdultGameCount = 1;

    GameBaseFixture();
    ~GameBaseFixture();
    GameBaseFixture(const GameBaseFixture&) = delete;
    GameBaseFixture& operator=(const GameBaseFixture&) = delete;

    QString path() const { return m_path; }
    db::Database& db(); // opens the file again after close()
    void close();

private:
    QTemporaryDir m_dir;
    QString m_path;
    std::unique_ptr<db::Database> m_db;
};

} // namespace vd::test
