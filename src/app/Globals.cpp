#include "app/Globals.h"

#include "catalogue/Database.h"

#include <QDir>

namespace vd::app {

bool gPortable = true;
QString gAppPath;
QString gIniFile;
QString gVersion = programVersion() + QStringLiteral(" Portable");
QString gLangPath;
QString gToolsPath;
QString gTempPath;
QString gCachePath;
QString gDatabasePath;
QString gDialogPath;
std::unique_ptr<db::Database> gDB;

QString programVersion()
{
    return QStringLiteral("%1.%2").arg(VD_VERSION_MAJOR).arg(VD_VERSION_MINOR);
}

void setProgramFolder(const QString& folder)
{
    QString path = QDir::cleanPath(QDir(folder).absolutePath());
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    gAppPath = path;
    gIniFile = gAppPath + QStringLiteral("Vellumdock.ini");
    gLangPath = gAppPath + QStringLiteral("Lang/");
    gToolsPath = gAppPath + QStringLiteral("Tools/");
    gTempPath = gAppPath + QStringLiteral("Temp");
    gCachePath = gAppPath + QStringLiteral("Cache/");
}

} // namespace vd::app
