#include "GameBaseGenerator.h"

#include "catalogue/Database.h"

#include <QRandomGenerator>
#include <QVector>
#include <sqlite3.h>

namespace vd::bench {

namespace {

vd::db::FieldDef field(const char* name, int type, int size = 0)
{
    if (type == vd::db::type::Text && size == 0)
        size = 255;
    return vd::db::FieldDef{QString::fromLatin1(name), type, size, 0};
}

} // namespace

void writeGameBase(const QString& path, int games)
{
    using namespace vd::db;
    namespace type = vd::db::type;
    {
        auto db = Database::create(path);
        db->createTable(TableDef{QStringLiteral("Years"),
                                 {field("YE_Id", type::Long), field("Year", type::Long)},
                                 {IndexDef{"PrimaryKey", {"YE_Id"}, true, true}}});
        const char* longs[] = {"FilenameIndex",  "PU_Id",           "PR_Id",
                               "CR_Id",          "LA_Id",           "MU_Id",
                               "GE_Id",          "TimesPlayed",     "Rating",
                               "Extras",         "Control",         "Version",
                               "PlayersFrom",    "PlayersTo",       "V_Length",
                               "V_LengthType",   "V_LoadingScreen", "V_HighScoreSaver",
                               "V_IncludedDocs", "V_TrueDriveEmu",  "V_PalNTSC",
                               "V_Trainers",     "Prequel",         "Sequel",
                               "Related",        "CloneOf"};
        QVector<FieldDef> fields = {field("GA_Id", type::Long),
                                    field("Name", type::Text),
                                    field("Filename", type::Memo),
                                    field("FileToRun", type::Memo),
                                    field("ScrnshotFilename", type::Memo),
                                    field("SidFilename", type::Memo),
                                    field("YE_Id", type::Integer),
                                    field("DI_Id", type::Byte),
                                    field("DateLastPlayed", type::Text),
                                    field("Classic", type::Boolean),
                                    field("Adult", type::Boolean),
                                    field("PlayersSim", type::Boolean),
                                    field("CRC", type::Text, 8),
                                    field("Comment", type::Text),
                                    field("MemoText", type::Memo),
                                    field("HighScore", type::Text),
                                    field("V_Comment", type::Text)};
        for (const char* name : longs)
            fields.append(field(name, type::Long));
        db->createTable(TableDef{QStringLiteral("Games"),
                                 fields,
                                 {IndexDef{"PrimaryKey", {"GA_Id"}, true, true},
                                  IndexDef{"ixYE_Id", {"YE_Id"}, false, false}}});
    }
    sqlite3* h = nullptr;
    sqlite3_open(path.toUtf8().constData(), &h);
    sqlite3_exec(h, "BEGIN", nullptr, nullptr, nullptr);
    for (int y = 1; y <= 60; ++y)
        sqlite3_exec(h,
                     QStringLiteral("INSERT INTO Years VALUES (%1,%2)")
                         .arg(y)
                         .arg(1981 + y)
                         .toUtf8()
                         .constData(),
                     nullptr, nullptr, nullptr);
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(h,
                       "INSERT INTO Games (GA_Id,Name,Filename,FileToRun,ScrnshotFilename,"
                       "SidFilename,YE_Id,DI_Id,DateLastPlayed,Classic,Adult,PlayersSim,CRC,"
                       "Comment,MemoText,HighScore,V_Comment,FilenameIndex,GE_Id,V_Length,"
                       "V_LengthType,TimesPlayed) VALUES (?1,?2,?3,?4,?5,'',?6,2,'',0,?7,0,"
                       "'1A2B3C4D',?8,'',?9,'',0,?10,?11,?12,0)",
                       -1, &st, nullptr);
    QRandomGenerator rng(30000);
    for (int i = 1; i <= games; ++i) {
        const QString name = QStringLiteral("Game Number %1").arg(i, 5, 10, QLatin1Char('0'));
        const QChar letter(u'A' + i % 26);
        const QByteArray file =
            QStringLiteral("%1\\Game_Number_%2.zip").arg(letter).arg(i).toUtf8();
        const QByteArray shot =
            i % 10 ? QStringLiteral("%1\\Game_Number_%2.png").arg(letter).arg(i).toUtf8()
                   : QByteArray();
        const QByteArray comment =
            QStringLiteral("A comment of some length for game %1").arg(i).toUtf8();
        const QByteArray n = name.toUtf8();
        const QByteArray run = QStringLiteral("GAME%1.D64").arg(i).toUtf8();
        sqlite3_bind_int(st, 1, i);
        sqlite3_bind_text(st, 2, n.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(st, 3, file.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(st, 4, run.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(st, 5, shot.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(st, 6, 1 + int(rng.bounded(60u)));
        sqlite3_bind_int(st, 7, i % 50 == 0 ? 1 : 0);
        sqlite3_bind_text(st, 8, comment.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(st, 9, i % 7 ? "" : "12345", -1, SQLITE_STATIC);
        sqlite3_bind_int(st, 10, 1 + int(rng.bounded(40u)));
        sqlite3_bind_int(st, 11, int(rng.bounded(300u)));
        sqlite3_bind_int(st, 12, int(rng.bounded(4u)));
        sqlite3_step(st);
        sqlite3_reset(st);
    }
    sqlite3_finalize(st);
    sqlite3_exec(h, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(h);
}

} // namespace vd::bench
