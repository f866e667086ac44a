#include "launch/StartFile.h"

#include "app/Translate.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "import/clsFileManager.h"
#include "launch/CommandLine.h"
#include "launch/MakeTempDisk.h"
#include "launch/Profiles.h"
#include "launch/ProfilSettings.h"
#include "launch/StartCommand.h"
#include "platform/DialogService.h"
#include "platform/Files.h"

#include <QDateTime>
#include <QFileInfo>
#include <QStandardPaths>
#include <stdexcept>

namespace vd::launch {

std::function<void(const QString& emulKey)> gEditEmulatorHook;

namespace {

constexpr int kTextFile = 10;
constexpr int kDocumentA = 11;
constexpr int kDocumentB = 14;

// The row of one start, with Null read as 0 or "".
struct StartRow
{
    bool isEntry = false;
    qint64 containerId = 0;
    int iFileType = 0;
    int lIndex = 0;
    int lSize = 0;
    QString realProgram;
    QString tPath;
    QString tFile;
    QVariant tUnpackPath;
};

int intOf(const QVariant& value)
{
    return value.isNull() ? 0 : int(value.toString().toDouble());
}

QString textOf(const QVariant& value)
{
    return value.isNull() ? QString() : value.toString();
}

std::unique_ptr<db::Recordset> openRow(db::Database& db, qint32 id, StartRow& row)
{
    std::unique_ptr<db::Recordset> rs;
    row.isEntry = id > 0;
    if (row.isEntry) {
        rs = db.openRecordset(QStringLiteral("Select F.*,C.* From C64Files as F Left Join Category "
                                             "as C on F.Category_File=C.ID where F.ID=") +
                                  QString::number(id),
                              db::RecordsetType::Dynaset);
        row.lIndex = intOf(rs->value(QStringLiteral("lIndex")));
        row.lSize = intOf(rs->value(QStringLiteral("lSize")));
        row.realProgram = textOf(rs->value(QStringLiteral("tRealProgram")));
        row.containerId = intOf(rs->value(QStringLiteral("C.ID")));
    } else {
        rs = db.openRecordset(QStringLiteral("Select * From Category where ID=") +
                                  QString::number(-qint64(id)),
                              db::RecordsetType::Snapshot);
        row.containerId = intOf(rs->value(QStringLiteral("ID")));
    }
    row.iFileType = intOf(rs->value(QStringLiteral("iFileType")));
    row.tPath = textOf(rs->value(QStringLiteral("tPath")));
    row.tFile = textOf(rs->value(QStringLiteral("tFile")));
    row.tUnpackPath = rs->value(QStringLiteral("tUnpackPath"));
    return rs;
}

// The extension whose profile starts a file of `iFileType`.
int extensionIndex(int iFileType)
{
    if (iFileType == 12 || iFileType == 13)
        return iFileType - 3;
    if (iFileType == 15)
        return 11;
    return iFileType - 1;
}

QString chooseProfil(int iFileType)
{
    const int index = extensionIndex(iFileType);
    if (index >= 0 && index < kStartExtensionCount && !gStartProfils[size_t(index)].isEmpty())
        return gStartProfils[size_t(index)];
    return gDefaultProfil;
}

// A bare program name is looked up on PATH.
QString programPath(const QString& path)
{
    if (path.isEmpty() || path.contains(u'/'))
        return path;
    const QString found = QStandardPaths::findExecutable(path);
    return found.isEmpty() ? path : found;
}

struct Outcome
{
    bool failed = false;
    QString status;
};

Outcome profilPath(const StartRow& row, QString filePath, QString& profilKey, LaunchPlan& plan)
{
    if (profilKey.isEmpty())
        profilKey = chooseProfil(row.iFileType);
    const ProfilPtr profil = gProfils.find(profilKey);
    if (!profil)
        throw std::runtime_error(
            app::Translate(QStringLiteral("Unbekanntes Profil: ")).toStdString() +
            profilKey.toStdString());
    const QString program = EmulatorProgram(*profil);
    if (program.isEmpty())
        return {true, {}};
    StartItem item{row.isEntry, row.lIndex, row.realProgram, row.iFileType, false};
    QString commandLine;
    if (!BuildCommandLine(profil->Options, item, commandLine))
        return {true, {}};
    const bool disk = row.iFileType == 1 || row.iFileType == 2 || row.iFileType == 13;
    if (disk && item.useTemp && row.lIndex > 1) {
        const QString copy = MakeTempDisk(filePath, row.containerId, row.iFileType, row.realProgram,
                                          row.lSize, row.lIndex);
        if (!copy.isEmpty())
            filePath = copy;
    } else {
        item.useTemp = false;
    }
    ReplaceWithLiteral(commandLine, kFilePathMarker, filePath);
    plan.program = program;
    plan.arguments = SplitCommandLine(commandLine);
    plan.workingFolder = program.left(program.lastIndexOf(u'/') + 1);
    const QString status = (item.useTemp ? QStringLiteral(" ") : QString()) +
                           app::Translate(QStringLiteral("Profil: ")) +
                           GetProfilCaption(gEmulators, gProfils, profilKey);
    return {false, status};
}

// Texts go to the configured program; the default "Notepad" means the desktop's default.
Outcome textPath(const QString& filePath, LaunchPlan& plan)
{
    const QString editor = gTextProgram.trimmed();
    const QString upper = editor.toUpper();
    if (upper.isEmpty() || upper == u"NOTEPAD") {
        plan.program = filePath;
        plan.document = true;
        return {false, QStringLiteral("NOTEPAD: ") + QFileInfo(filePath).fileName()};
    }
    const QString program = programPath(editor);
    if (!platform::FileExistsMsg(program))
        return {true, {}};
    plan.program = program;
    plan.arguments = QStringList{filePath};
    return {false, QFileInfo(program).completeBaseName().toUpper() + QStringLiteral(": ") +
                       QFileInfo(filePath).fileName()};
}

void countStart(db::Database& db, db::Recordset& rs, const StartRow& row)
{
    const QDateTime now = QDateTime::currentDateTime();
    if (row.isEntry) {
        rs.edit();
        const int old = intOf(rs.value(QStringLiteral("F.lStartCount")));
        rs.setValue(QStringLiteral("F.tsLastStarted"), now);
        rs.setValue(QStringLiteral("F.lStartCount"), old + 1);
        rs.update();
    }
    rs.close();
    db.execute(QStringLiteral("Update Category Set tsLastStarted=") +
               catalogue::FormatDateLiteral(now) +
               QStringLiteral(",lStartCount=val('' & lStartCount) + 1 Where ID=") +
               QString::number(row.containerId));
}

QString startRow(import::clsFileManager& fm, db::Database& db, qint32 id, QString& profilKey,
                 const StartOptions& options)
{
    StartRow row;
    const std::unique_ptr<db::Recordset> rs = openRow(db, id, row);
    QString filePath = row.tPath;
    if (!row.tUnpackPath.isNull()) {
        if (!platform::FileExistsMsg(row.tPath))
            return {};
        filePath = fm.ExtractFileFromArchiv(row.tFile, row.tUnpackPath.toString(), row.tPath);
        if (filePath.isEmpty())
            return {};
    }
    if (!platform::FileExistsMsg(filePath))
        return {};

    LaunchPlan plan;
    Outcome outcome;
    if (row.iFileType == kTextFile) {
        outcome = textPath(filePath, plan);
    } else if (row.iFileType == kDocumentA || row.iFileType == kDocumentB) {
        plan.program = filePath;
        plan.document = true;
        outcome.status = QFileInfo(filePath).fileName();
    } else {
        outcome = profilPath(row, filePath, profilKey, plan);
    }
    if (outcome.failed)
        return {};
    if (options.plan)
        *options.plan = plan;
    if (options.dryRun)
        return outcome.status;
    processStarter().start(plan); // a failed start is not looked at, as the shell's isn't
    countStart(db, *rs, row);
    return outcome.status;
}

} // namespace

QString StartFile(import::clsFileManager& fm, db::Database& db, qint32 id, QString& profilKey,
                  const StartOptions& options)
{
    if (id == 0)
        return {};
    try {
        return startRow(fm, db, id, profilKey, options);
    } catch (const std::exception& e) {
        platform::dialogs().msgBox(app::Translate(QStringLiteral("Start-Error: ")) +
                                   QString::fromStdString(e.what()));
        return {};
    }
}

QString EmulatorProgram(const clsProfil& profil)
{
    const EmulatorPtr emulator = gEmulators.find(profil.EmulKey);
    const QString program = programPath(emulator ? emulator->Path : QString());
    if (!program.isEmpty() && platform::FileExists(program))
        return program;
    platform::dialogs().msgBox(app::Translate(QStringLiteral("Datei nicht gefunden: ")) + program,
                               platform::vbExclamation,
                               app::Translate(QStringLiteral("Profil: ")) + profil.Name);
    if (emulator && gEditEmulatorHook)
        gEditEmulatorHook(emulator->Key);
    return {};
}

QString StartStatusText(const QString& result)
{
    if (result.startsWith(u' '))
        return app::Translate(QStringLiteral("Temporäre Datei")) + u'!' + result;
    return result;
}

} // namespace vd::launch
