#include "setup/WizardFinish.h"

#include "gamebase/GameBase.h"
#include "launch/Profiles.h"
#include "platform/Files.h"

#include <QStandardPaths>

namespace vd::setup {

bool CheckEmulatorPath(const QString& path)
{
    if (path.isEmpty())
        return true;
    // Emulators on Linux are usually installed programs ("x64sc"); the start looks such a
    // name up on PATH, so the wizard accepts what the start will find.
    if (!path.contains(u'/') && !platform::FileExists(path) &&
        !QStandardPaths::findExecutable(path).isEmpty())
        return true;
    return platform::FileExistsMsg(path);
}

QString WizardDefaultProfil(int type)
{
    switch (type) {
    case 2:
        return QStringLiteral("1");
    case 3:
        return QStringLiteral("7");
    case 4:
        return QStringLiteral("10");
    case 5:
        return QStringLiteral("13");
    default:
        return {};
    }
}

void FinishWizard(const WizardChoice& choice)
{
    using namespace launch;
    if (!choice.emulPath.isEmpty() && choice.emulType >= 1 && choice.emulType <= gEmulators.count())
        gEmulators.at(choice.emulType - 1)->Path = choice.emulPath;

    // The set numbers are the profile keys as long as the first-run keys are in force; a set
    // that no longer exists falls back on the default profile.
    const qsizetype profilCount = gProfils.count();
    for (int i = 0; i < kStartExtensionCount; ++i) {
        const int set = DefaultProfilForExtension(choice.emulType, i);
        gStartProfils[size_t(i)] = set > 0 && set <= profilCount ? QString::number(set) : QString();
    }

    const QString defaultKey = WizardDefaultProfil(choice.emulType);
    if (!defaultKey.isEmpty())
        gDefaultProfil = defaultKey;

    if (!choice.gameBasePath.isEmpty()) {
        // A GameBase opened before belongs to another file: the next use opens the new one.
        if (gamebase::gGB && gamebase::gGameBaseDB != choice.gameBasePath)
            gamebase::CloseGameBase();
        gamebase::gGameBaseDB = choice.gameBasePath;
        gamebase::gScreenshots = gamebase::GetGameBasePictures(choice.gameBasePath);
    }
}

} // namespace vd::setup
