#include "app/Startup.h"

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "platform/DialogService.h"
#include "platform/Files.h"

#include <QDir>

namespace vd::app {

namespace {

// A user who keeps answering Retry is asked again; this only bounds the loop.
constexpr int kMaxCleanAttempts = 1000;

} // namespace

void CleanTempFolder(bool& ok)
{
    ok = false;
    for (int attempt = 0; attempt < kMaxCleanAttempts; ++attempt) {
        if (platform::DeleteFiles(gTempPath + QStringLiteral("/*.*"))) {
            ok = true;
            return;
        }
        const int answer = platform::dialogs().msgBox(
            Translate(QStringLiteral("Temp-Verzeichnis kann nicht gelöscht werden: ")) + gTempPath,
            platform::vbRetryCancel | platform::vbCritical);
        if (answer != platform::vbRetry)
            return;
    }
}

bool isFirstRun()
{
    return !IniKeyExists(kSectionEmulators, QStringLiteral("EmulName1")) &&
           !IniKeyExists(kSectionProfils, QStringLiteral("ProfilCount"));
}

QString mainCaption(const QString& databasePath)
{
    if (databasePath.isEmpty())
        return QStringLiteral("Vellumdock");
    return QStringLiteral("Vellumdock ") + gVersion + QStringLiteral(" - ") + databasePath;
}

bool deleteTempFiles()
{
    bool all = true;
    const QStringList files = QDir(gTempPath).entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& name : files)
        all = platform::DeleteFiles(gTempPath + QLatin1Char('/') + name) && all;
    return all;
}

} // namespace vd::app
