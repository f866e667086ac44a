#include "gamebase/GameStart.h"

#include "app/Settings.h"
#include "app/Translate.h"
#include "catalogue/Database.h"
#include "catalogue/DbError.h"
#include "catalogue/Recordset.h"
#include "gamebase/GameBaseViews.h"
#include "import/clsFileManager.h"
#include "launch/CommandLine.h"
#include "launch/Profiles.h"
#include "launch/StartCommand.h"
#include "platform/DialogService.h"
#include "platform/Files.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <stdexcept>

namespace vd::gamebase {

namespace {

constexpr int kTextFileType = 10;

QString text(const QVariant& v)
{
    return v.isNull() ? QString() : v.toString();
}

// "Select <field> As FldValue From <source> where <where>" on `db`: the first value as text,
// "" for none or any failure.
QString dbValue(db::Database& db, const QString& field, const QString& source, const QString& where)
{
    try {
        auto rs = db.openRecordset(QStringLiteral("Select ") + field +
                                       QStringLiteral(" As FldValue From ") + source +
                                       QStringLiteral(" where ") + where,
                                   db::RecordsetType::Snapshot);
        return rs->eof() ? QString() : text(rs->value(0));
    } catch (const db::DbError&) {
        return {};
    }
}

// Step 10: the profile by the file's extension when none is given, and the file kind, which
// only the tape rule reads. The kind is the extension's position + 1; an extension outside
// the list stays on position 0.
int chooseProfil(const QString& filePath, QString& profilKey)
{
    int index =
        launch::StartExtensionIndex(QLatin1Char('.') + QFileInfo(filePath).suffix().toUpper());
    if (index < 0)
        index = 0;
    if (profilKey.isEmpty()) {
        profilKey = launch::gDefaultProfil;
        if (!launch::gStartProfils[size_t(index)].isEmpty())
            profilKey = launch::gStartProfils[size_t(index)];
    }
    return index + 1;
}

// Steps 10 to 13 up to the start: the plan and the status text, or nothing after a message.
bool planStart(const QString& filePath, QString& profilKey, launch::LaunchPlan& plan,
               QString& status)
{
    const int kind = chooseProfil(filePath, profilKey);
    const launch::ProfilPtr profil = launch::gProfils.find(profilKey);
    if (!profil)
        throw std::runtime_error(
            (app::Translate(QStringLiteral("Unbekanntes Profil: ")) + profilKey).toStdString());
    const QString program = launch::EmulatorProgram(*profil);
    if (program.isEmpty())
        return false;
    // A whole archive member: no C64 file name, index "0", and never a temporary disk copy.
    launch::StartItem item{true, 1, QString(), kind, false};
    QString commandLine;
    if (!launch::BuildCommandLine(profil->Options, item, commandLine))
        return false;
    item.useTemp = false;
    commandLine.replace(launch::kFilePathMarker, filePath, Qt::CaseSensitive);
    plan.program = program;
    plan.arguments = launch::SplitCommandLine(commandLine);
    plan.workingFolder = program.left(program.lastIndexOf(u'/') + 1);
    status = app::Translate(QStringLiteral("Profil: ")) +
             launch::GetProfilCaption(launch::gEmulators, launch::gProfils, profilKey);
    return true;
}

GameStartResult startFromArchive(import::clsFileManager& fm, db::Database& gb, qint64 gameId,
                                 QString& profilKey, const QString& gamesFolder,
                                 const launch::StartOptions& options)
{
    GameStartResult result;
    result.fromArchive = true;
    auto rs =
        gb.openRecordset(QStringLiteral("Select Filename,FileToRun,FileNameIndex,V_Length,"
                                        "DateLastPlayed,TimesPlayed From Games where GA_ID=") +
                             QString::number(gameId),
                         db::RecordsetType::Dynaset);
    if (rs->eof())
        return result;
    const QString filename = text(rs->value(QStringLiteral("Filename")));
    if (filename.isEmpty()) {
        platform::dialogs().msgBox(
            app::Translate(QStringLiteral("Keine Download-Datei vorhanden!")),
            platform::vbInformation);
        return result;
    }
    // Filename keeps "\" between its levels; the folders on disk use "/".
    QString relative = filename;
    relative.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const QString archive = QDir(gamesFolder).filePath(relative);
    if (!platform::FileExistsMsg(archive))
        return result;
    const QString archiveName = QFileInfo(archive).fileName();
    const QString folder = fm.CreateTempPathIfFileArchiv(archiveName, QString(), archive);
    if (folder.isEmpty())
        return result;
    const QString file =
        FileToRunIn(folder, archiveName, text(rs->value(QStringLiteral("FileToRun"))));
    if (file.isEmpty())
        return result;
    const QString filePath = QDir(folder).filePath(file);

    launch::LaunchPlan plan;
    QString status;
    if (!planStart(filePath, profilKey, plan, status))
        return result;
    if (options.plan)
        *options.plan = plan;
    result.status = status;
    if (options.dryRun)
        return result;
    launch::processStarter().start(plan);
    result.started = true;
    rs->edit();
    rs->setValue(QStringLiteral("DateLastPlayed"),
                 QDate::currentDate().toString(QStringLiteral("dd-MM-yyyy")));
    rs->setValue(QStringLiteral("TimesPlayed"),
                 qint64(app::Val(text(rs->value(QStringLiteral("TimesPlayed"))))) + 1);
    rs->update();
    return result;
}

} // namespace

qint64 StartIdFor(db::Database& catalogue, const GameRow& row)
{
    if (!row.selected)
        return 0;
    if (row.inMyFiles)
        return row.id;
    return qint64(
        app::Val(dbValue(catalogue, QStringLiteral("Top 1 ID"), QStringLiteral("Category"),
                         QStringLiteral("GB_ID=") + QString::number(row.gaId) +
                             QStringLiteral(" and iFileType<>") + QString::number(kTextFileType))));
}

GameStartResult StartGame(import::clsFileManager& fm, db::Database& catalogue, db::Database& gb,
                          const GameRow& row, QString profilKey, const QString& gamesFolder,
                          const launch::StartOptions& options)
{
    try {
        const bool usage = row.view == kGBViewLast || row.view == kGBViewTop;
        qint64 gameId = usage && row.inMyFiles && row.id == 0 ? row.gbId : 0;
        if (row.inMyFiles && gameId == 0) {
            GameStartResult result;
            result.status =
                launch::StartFile(fm, catalogue, qint32(row.startId), profilKey, options);
            result.started = !result.status.isEmpty() && !options.dryRun;
            return result;
        }
        QString found;
        if (!row.inMyFiles) {
            gameId = row.gaId;
            found =
                dbValue(catalogue, QStringLiteral("Top 1 C.ID"),
                        QStringLiteral("C64Files as C Left Join Category on "
                                       "C.Category_File=Category.ID "),
                        QStringLiteral("C.GB_ID=") + QString::number(gameId) +
                            QStringLiteral(" and iFileType<>") + QString::number(kTextFileType));
        }
        // A game id is enough: a game row starts from the GameBase's archive even when a
        // catalogued copy exists.
        if (!((row.selected && found.isEmpty()) || gameId >= 1))
            return {};
        return startFromArchive(fm, gb, gameId, profilKey, gamesFolder, options);
    } catch (const std::exception& e) {
        platform::dialogs().msgBox(app::Translate(QStringLiteral("Start-Error: ")) +
                                   QString::fromStdString(e.what()));
        return {};
    }
}

QString FileToRunIn(const QString& folder, const QString& archiveName, const QString& fileToRun)
{
    const QDir dir(folder);
    if (fileToRun.isEmpty()) {
        const qsizetype cut = archiveName.indexOf(QLatin1Char('_'));
        const QString pattern =
            (cut < 0 ? QString() : archiveName.left(cut)) + QStringLiteral(".*");
        const QStringList found =
            dir.entryList({pattern}, QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase);
        return found.isEmpty() ? QString() : found.first();
    }
    if (fileToRun.contains(QLatin1Char('\\')) || fileToRun.contains(QLatin1Char('/')))
        return {};
    const QStringList all = dir.entryList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QString& name : all)
        if (name.compare(fileToRun, Qt::CaseInsensitive) == 0)
            return name;
    return {};
}

} // namespace vd::gamebase
