#include "support/GameBaseFixture.h"

#include "catalogue/Database.h"
#include "support/CatalogueFixture.h"

#include <QDir>
#include <stdexcept>

namespace vd::test {

namespace {

namespace type = db::type;
const QVariant kNull;

db::FieldDef field(const char* name, int fieldType, int size = 0)
{
    if (fieldType == type::Text && size == 0)
        size = 255;
    return db::FieldDef{QString::fromLatin1(name), fieldType, size, 0};
}

db::TableDef table(const char* name, QVector<db::FieldDef> fields)
{
    db::TableDef def{QString::fromLatin1(name), std::move(fields), {}};
    def.indexes.append(db::IndexDef{"PrimaryKey", {def.fields.first().name}, true, true});
    return def;
}

// A lookup table: a Long key and one value, a text unless told otherwise.
db::TableDef lookup(const char* name, const char* key, const char* value,
                    int valueType = type::Text)
{
    return table(name, {field(key, type::Long), field(value, valueType)});
}

QVector<db::TableDef> schema()
{
    QVector<db::TableDef> tables = {
        db::TableDef{"Config",
                     {field("MajorVersion", type::Long), field("MinorVersion", type::Long),
                      field("OfficialUpdate", type::Long), field("FirstLoadMessage", type::Memo),
                      field("FirstLoadGemusAsk", type::Boolean), field("DatabaseName", type::Text),
                      field("GameBaseWindowTitle", type::Text)},
                     {}},
        lookup("Years", "YE_Id", "Year", type::Long),
        lookup("Publishers", "PU_Id", "Publisher"),
        lookup("Programmers", "PR_Id", "Programmer"),
        lookup("Crackers", "CR_Id", "Cracker"),
        lookup("Languages", "LA_Id", "Language"),
        table("Musicians",
              {field("MU_Id", type::Long), field("Musician", type::Text),
               field("Photo", type::Text), field("Grp", type::Text), field("Nick", type::Text)}),
        table("Genres",
              {field("GE_Id", type::Long), field("PG_Id", type::Long), field("Genre", type::Text)}),
        lookup("PGenres", "PG_Id", "ParentGenre"),
        lookup("Difficulty", "DI_Id", "Difficulty"),
        lookup("Artists", "AR_Id", "Artist"),
        lookup("Developers", "DE_Id", "Developer"),
        lookup("Licenses", "LI_Id", "License"),
        lookup("Rarities", "RA_Id", "Rarity"),
        table("Extras", {field("EX_Id", type::Long), field("GA_Id", type::Long),
                         field("Name", type::Text), field("Path", type::Memo)}),
        table("Music", {field("SO_Id", type::Long), field("GA_Id", type::Long),
                        field("Name", type::Text), field("Filename", type::Memo)}),
        lookup("ViewData", "VD_Id", "Title"),
        lookup("ViewFilters", "VF_Id", "FieldName"),
    };
    tables.append(
        table("Games", {field("GA_Id", type::Long),           field("Name", type::Text),
                        field("Filename", type::Memo),        field("FileToRun", type::Memo),
                        field("FilenameIndex", type::Long),   field("ScrnshotFilename", type::Memo),
                        field("SidFilename", type::Memo),     field("YE_Id", type::Integer),
                        field("DI_Id", type::Byte),           field("PU_Id", type::Long),
                        field("PR_Id", type::Long),           field("CR_Id", type::Long),
                        field("LA_Id", type::Long),           field("MU_Id", type::Long),
                        field("GE_Id", type::Long),           field("DateLastPlayed", type::Text),
                        field("TimesPlayed", type::Long),     field("Classic", type::Boolean),
                        field("Adult", type::Boolean),        field("PlayersSim", type::Boolean),
                        field("CRC", type::Text, 8),          field("Comment", type::Text),
                        field("MemoText", type::Memo),        field("HighScore", type::Text),
                        field("Rating", type::Long),          field("Extras", type::Long),
                        field("Control", type::Long),         field("Version", type::Long),
                        field("PlayersFrom", type::Long),     field("PlayersTo", type::Long),
                        field("V_Length", type::Long),        field("V_LengthType", type::Long),
                        field("V_LoadingScreen", type::Long), field("V_HighScoreSaver", type::Long),
                        field("V_IncludedDocs", type::Long),  field("V_TrueDriveEmu", type::Long),
                        field("V_PalNTSC", type::Long),       field("V_Trainers", type::Long),
                        field("V_Comment", type::Text),       field("Prequel", type::Long),
                        field("Sequel", type::Long),          field("Related", type::Long),
                        field("CloneOf", type::Long)}));
    return tables;
}

void fillLookups(db::Database& db)
{
    appendRow(db, "Config",
              {{"MajorVersion", 2},
               {"MinorVersion", 5},
               {"OfficialUpdate", 18},
               {"FirstLoadMessage", "Welcome"},
               {"FirstLoadGemusAsk", false},
               {"DatabaseName", "GameBase64"},
               {"GameBaseWindowTitle", "GameBase64 v18"}});
    const QVector<QPair<int, int>> years = {{1, 1986}, {2, 1985}, {3, 9991}, {4, 1987}, {5, 9994}};
    for (const auto& [id, year] : years)
        appendRow(db, "Years", {{"YE_Id", id}, {"Year", year}});
    const struct
    {
        const char* table;
        const char* key;
        const char* text;
        QStringList values;
    } lists[] = {
        {"Publishers", "PU_Id", "Publisher", {"Nova Soft", "Crystal Games"}},
        {"Programmers", "PR_Id", "Programmer", {"A. Coder", "B. Hacker", "C. Writer"}},
        {"Crackers", "CR_Id", "Cracker", {"Triad Crew", "Zeta Cracks"}},
        {"Languages", "LA_Id", "Language", {"English", "German"}},
        {"PGenres", "PG_Id", "ParentGenre", {"Action", "Adventure"}},
        {"Difficulty", "DI_Id", "Difficulty", {"Easy", "Average", "Hard"}},
        {"Artists", "AR_Id", "Artist", {"P. Pixel"}},
    };
    for (const auto& list : lists)
        for (int i = 0; i < list.values.size(); ++i)
            appendRow(db, list.table, {{list.key, i + 1}, {list.text, list.values[i]}});
    appendRow(db, "Musicians",
              {{"MU_Id", 1}, {"Musician", "M. Synth"}, {"Grp", "Sound Lab"}, {"Nick", "Synth"}});
    appendRow(db, "Musicians", {{"MU_Id", 2}, {"Musician", "R. Tune"}});
    const struct
    {
        int id;
        int parent;
        const char* genre;
    } genres[] = {
        {1, 1, "Shoot'em Up"}, {2, 1, "Action"}, {3, 2, "Adventure"}, {4, 1, ""}, {5, 2, "Action"}};
    for (const auto& g : genres)
        appendRow(db, "Genres", {{"GE_Id", g.id}, {"PG_Id", g.parent}, {"Genre", g.genre}});
}

struct GameRow
{
    int id;
    const char* name;
    const char* filename;
    const char* fileToRun;
    int fileIndex;
    bool screenshot;
    int year, publisher, programmer, cracker, language, musician, genre;
    QVariant lastPlayed;
    int timesPlayed;
    bool adult, classic;
    int rating, control, length, lengthType, palNtsc;
    const char* comment;
};

void fillGames(db::Database& db)
{
    const QVector<GameRow> games = {
        {101,
         "Sanxion",
         "S\\Sanxion.zip",
         "SANXION",
         0,
         true,
         1,
         1,
         1,
         1,
         1,
         1,
         1,
         "14-03-2024",
         4,
         false,
         true,
         5,
         0,
         150,
         0,
         0,
         "Horizontal shoot'em up"},
        {102,
         "Paradroid",
         "P\\Paradroid.zip",
         "PARADROID",
         0,
         true,
         2,
         2,
         2,
         1,
         1,
         2,
         2,
         "",
         0,
         false,
         true,
         5,
         0,
         200,
         0,
         0,
         "Robot puzzle shooter"},
        {103, "Uridium", "U\\Uridium.zip", "", 0,     false, 3, 2, 2, 1, 1,
         1,   1,         "01-02-2024",     2,  false, false, 4, 0, 1, 1, 2,
         ""},
        {104,
         "O'Neil's Quest",
         "O\\O'Neils_Quest.zip",
         "QUEST",
         1,
         true,
         4,
         1,
         3,
         2,
         2,
         2,
         3,
         "05-01-2024",
         1,
         true,
         false,
         3,
         2,
         2,
         3,
         1,
         "Text adventure"},
        {105,   "ABC", "X\\ABC.ZIP", "ABC", 0, true, 5,  1, 1, 1, 1, 1, 2,
         kNull, 0,     false,        false, 0, 5,    10, 0, 3, ""},
        {106, "No File", "", "",    0,     false, 2, 2, 2,  2, 1, 1,
         3,   "",        0,  false, false, 1,     0, 0, 19, 0, ""},
    };
    for (const GameRow& g : games) {
        QString screenshot;
        if (g.screenshot)
            screenshot = QString::fromLatin1(g.filename).chopped(4) + QStringLiteral(".png");
        appendRow(db, "Games",
                  {{"GA_Id", g.id},
                   {"Name", g.name},
                   {"Filename", g.filename},
                   {"FileToRun", g.fileToRun},
                   {"FilenameIndex", g.fileIndex},
                   {"ScrnshotFilename", screenshot},
                   {"SidFilename", ""},
                   {"YE_Id", g.year},
                   {"DI_Id", 2},
                   {"PU_Id", g.publisher},
                   {"PR_Id", g.programmer},
                   {"CR_Id", g.cracker},
                   {"LA_Id", g.language},
                   {"MU_Id", g.musician},
                   {"GE_Id", g.genre},
                   {"DateLastPlayed", g.lastPlayed},
                   {"TimesPlayed", g.timesPlayed},
                   {"Classic", g.classic},
                   {"Adult", g.adult},
                   {"PlayersSim", false},
                   {"Comment", g.comment},
                   {"Rating", g.rating},
                   {"Control", g.control},
                   {"PlayersFrom", 1},
                   {"PlayersTo", -1},
                   {"V_Length", g.length},
                   {"V_LengthType", g.lengthType},
                   {"V_PalNTSC", g.palNtsc},
                   {"V_Trainers", -1},
                   {"Prequel", 0},
                   {"Sequel", 0},
                   {"Related", 0},
                   {"CloneOf", 0}});
    }
}

} // namespace

GameBaseFixture::GameBaseFixture()
{
    if (!m_dir.isValid())
        throw std::runtime_error("no temporary folder for the GameBase");
    QDir folder(m_dir.path());
    folder.mkdir(QStringLiteral("Game Base"));
    m_path = folder.filePath(QStringLiteral("Game Base/GBC_v18.db"));
    m_db = db::Database::create(m_path);
    for (const db::TableDef& def : schema())
        m_db->createTable(def);
    fillLookups(*m_db);
    fillGames(*m_db);
}

GameBaseFixture::~GameBaseFixture() = default;

db::Database& GameBaseFixture::db()
{
    if (!m_db)
        m_db = db::Database::open(m_path);
    return *m_db;
}

void GameBaseFixture::close()
{
    if (m_db)
        m_db->close();
    m_db.reset();
}

} // namespace vd::test
