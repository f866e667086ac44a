#include "launch/FlipFile.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "launch/CommandLine.h"
#include "launch/Profiles.h"
#include "launch/StartCommand.h"
#include "platform/DialogService.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace vd::launch {

namespace {

constexpr int kVflIndex = 11;
constexpr int kHeaderLength = 28;

} // namespace

bool CreateFlipFile(const QString& fileName, const QStringList& paths)
{
    QString text = kFlipFileHeader;
    for (const QString& path : paths)
        text += u'\n' + path;
    QSaveFile file(fileName);
    const QByteArray bytes = QFile::encodeName(text);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        platform::dialogs().msgBox(QStringLiteral("CreateFlipFile: ") + file.errorString());
        return false;
    }
    return true;
}

QStringList ReadFlipFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString text = QFile::decodeName(file.read(kMaxFlipFileBytes));
    QStringList paths;
    for (const QString& part : text.mid(kHeaderLength).split(u'\n')) {
        const QString trimmed = part.trimmed();
        if (!trimmed.isEmpty())
            paths.append(trimmed);
    }
    return paths;
}

QString StartFlipList(const QStringList& paths, const StartOptions& options)
{
    QDir().mkpath(app::gTempPath);
    const QString listFile = app::gTempPath + u'/' + kTempFlipFileName;
    if (!CreateFlipFile(listFile, paths))
        return {};
    const QString profilKey = gStartProfils[kVflIndex];
    const ProfilPtr profil = gProfils.find(profilKey);
    if (!profil) {
        platform::dialogs().msgBox(app::Translate(QStringLiteral("Start-Error: ")) +
                                   app::Translate(QStringLiteral("Unbekanntes Profil: ")) +
                                   profilKey);
        return {};
    }
    const QString program = EmulatorProgram(*profil);
    if (program.isEmpty())
        return {};
    StartItem item;
    item.flipList = true;
    QString commandLine;
    if (!BuildCommandLine(profil->Options, item, commandLine))
        return {};
    ReplaceWithLiteral(commandLine, kFilePathMarker, listFile);

    LaunchPlan plan;
    plan.program = program;
    plan.arguments = SplitCommandLine(commandLine);
    plan.workingFolder = program.left(program.lastIndexOf(u'/') + 1);
    if (options.plan)
        *options.plan = plan;
    if (!options.dryRun)
        processStarter().start(plan);
    return app::Translate(QStringLiteral("Profil: ")) +
           GetProfilCaption(gEmulators, gProfils, profilKey);
}

} // namespace vd::launch
