#include "support/CatalogueFixture.h"

#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"

#include <QDir>
#include <stdexcept>

namespace vd::test {

namespace {

const QVariant kNull;

struct FileRow
{
    int id;
    const char* name;
    const char* path;
    QVariant unpackPath;
    QVariant image;
    int fileType;
    QVariant gbId;
    QVariant lastStarted;
    QVariant startCount;
};

struct EntryRow
{
    int id;
    const char* program;
    const char* extension;
    int size;
    int index;
    int file;
    QVariant userCategory;
    QVariant gbId;
    QVariant lastStarted;
    QVariant startCount;
};

void writeFiles(db::Database& db)
{
    const QVector<FileRow> files = {
        {1, "Sanxion.d64", "/c64/disks/Sanxion.d64", kNull, "SANXION", 1, 101,
         stamp(2024, 3, 14, 21, 5, 0), 3},
        {2, "Uridium.t64", "/c64/tapes/Uridium.t64", kNull, "URIDIUM TAPE", 3, kNull, kNull, kNull},
        {3, "Paradroid.prg", "/c64/zips/Paradroid.zip", "Paradroid.prg", kNull, 4, 102,
         stamp(2024, 3, 10, 8, 0, 0), 5},
        {4, "Boulder Dash.tap", "/c64/tapes/Boulder Dash.tap", kNull, kNull, 6, kNull, kNull,
         kNull},
        {5, "readme.txt", "/c64/zips/Paradroid.zip", "docs\\readme.txt", kNull, 10, 102, kNull,
         kNull},
        {6, "O'Brien's Disk.d64", "/c64/disks/O'Brien's Disk.d64", kNull, "O'BRIEN", 1, kNull,
         stamp(2023, 12, 31, 23, 59, 59), 1},
        {7, "cover.png", "/c64/pics/cover.png", kNull, kNull, 14, kNull, kNull, kNull},
        {8, "Empty.d81", "/c64/disks/Empty.d81", kNull, "EMPTY", 13, kNull, kNull, kNull},
        {9, "Commando.d64", "/c64/zips/Commando.ZIP", "Commando.d64", "COMMANDO", 1, kNull, kNull,
         kNull},
        {10, "title.gif", "/c64/pics/title.gif", kNull, kNull, 14, kNull, kNull, kNull},
    };
    for (const FileRow& f : files) {
        QVariantMap row{{"ID", f.id},
                        {"iType", 1},
                        {"tCategory", f.name},
                        {"tFile", f.name},
                        {"tPath", f.path},
                        {"tImage", f.image},
                        {"tUnpackPath", f.unpackPath},
                        {"tsCreated", stamp(2024, 1, 5, 10, 0, f.id)},
                        {"GB_ID", f.gbId},
                        {"iFileType", f.fileType},
                        {"tsLastStarted", f.lastStarted},
                        {"lStartCount", f.startCount}};
        if (f.id == 1)
            row.insert("tHash", "9e107d9d372bb6826bd81d3542a419d6");
        appendRow(db, "Category", row);
    }
    const QVector<QPair<int, const char*>> categories = {
        {20, "Action"}, {21, "Shoot'em Up"}, {22, "Puzzle"}};
    for (const auto& [id, name] : categories)
        appendRow(db, "Category",
                  {{"ID", id},
                   {"iType", 3},
                   {"tCategory", name},
                   {"tsCreated", stamp(2024, 1, 6, 9, 0, id)}});
}

void writeEntries(db::Database& db)
{
    const QVector<EntryRow> entries = {
        {1, "SANXION", "PRG", 150, 1, 1, 21, 101, stamp(2024, 3, 14, 21, 5, 0), 2},
        {2, "SANXION HISCORE", "SEQ", 2, 2, 1, kNull, kNull, stamp(2024, 3, 1, 10, 0, 0), 1},
        {3, "MY_GAME", "PRG", 33, 3, 1, kNull, kNull, kNull, kNull},
        {4, "URIDIUM", "PRG", 180, 1, 2, 20, kNull, kNull, kNull},
        {5, "PARADROID", "PRG", 200, 1, 3, 20, 102, stamp(2024, 3, 10, 8, 0, 0), 5},
        {6, "BOULDER DASH", "PRG", 90, 1, 4, kNull, kNull, kNull, kNull},
        {7, "readme.txt", "TXT", 1234, 1, 5, kNull, 102, kNull, kNull},
        {8, "O'BRIEN", "PRG", 10, 1, 6, 21, kNull, stamp(2023, 12, 31, 23, 59, 59), 1},
        {9, "cover.png", "PNG", 4096, 1, 7, kNull, kNull, kNull, kNull},
        {10, "(NO NAME)", "PRG", 0, 2, 6, kNull, kNull, kNull, kNull},
        {11, "COMMANDO", "PRG", 120, 1, 9, kNull, kNull, kNull, kNull},
        {12, "title.gif", "GIF", 2048, 1, 10, kNull, kNull, kNull, kNull},
    };
    for (const EntryRow& e : entries) {
        const bool unnamed = e.id == 10;
        appendRow(db, "C64Files",
                  {{"ID", e.id},
                   {"tProgram", e.program},
                   {"tRealProgram", unnamed ? kNull : QVariant(e.program)},
                   {"tExtension", e.extension},
                   {"lSize", e.size},
                   {"lIndex", e.index},
                   {"Category_File", e.file},
                   {"Category_User", e.userCategory},
                   {"tsCreated", stamp(2024, 1, 5, 10, 1, e.id)},
                   {"GB_ID", e.gbId},
                   {"tsLastStarted", e.lastStarted},
                   {"lStartCount", e.startCount}});
    }
}

} // namespace

QDateTime stamp(int year, int month, int day, int hour, int minute, int second)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

void appendRow(db::Database& db, const QString& table, const QVariantMap& values)
{
    auto rs =
        db.openRecordset(QStringLiteral("Select * From ") + table, db::RecordsetType::Dynaset);
    rs->addNew();
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        rs->setValue(it.key(), it.value());
    rs->update();
    rs->close();
}

CatalogueFixture::CatalogueFixture(bool fill)
{
    if (!m_dir.isValid())
        throw std::runtime_error("no temporary folder for the catalogue");
    m_path = QDir(m_dir.path()).filePath(QStringLiteral("Collection.vdb"));
    catalogue::createCatalogueFile(m_path);
    m_db = db::Database::open(m_path);
    if (fill) {
        writeFiles(*m_db);
        writeEntries(*m_db);
    }
}

CatalogueFixture::~CatalogueFixture() = default;

db::Database& CatalogueFixture::db()
{
    if (!m_db)
        m_db = db::Database::open(m_path);
    return *m_db;
}

void CatalogueFixture::close()
{
    if (m_db)
        m_db->close();
    m_db.reset();
}

} // namespace vd::test
