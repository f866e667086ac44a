#include "platform/ProgramFolder.h"

#include "app/Globals.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace vd::platform {

namespace {

const QString kHomeOption = QStringLiteral("--home");

bool makeFolder(const QString& path, QString* error)
{
    if (QFileInfo(path).isDir() || QDir().mkpath(path))
        return true;
    if (error)
        *error = QStringLiteral("Cannot create the folder %1").arg(QDir::toNativeSeparators(path));
    return false;
}

} // namespace

HomeOption takeHomeOption(const QStringList& arguments)
{
    HomeOption result;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& arg = arguments[i];
        if (arg == QLatin1String("--")) {
            result.arguments << arguments.mid(i + 1);
            break;
        }
        if (arg == kHomeOption) {
            if (i + 1 < arguments.size()) {
                result.home = arguments[++i];
                result.missingValue = result.home.isEmpty();
            } else {
                result.missingValue = true;
            }
        } else if (arg.startsWith(kHomeOption + QLatin1Char('='))) {
            result.home = arg.mid(kHomeOption.size() + 1);
            result.missingValue = result.home.isEmpty();
        } else {
            result.arguments << arg;
        }
    }
    return result;
}

QString defaultProgramFolder(const QString& executableFolder)
{
    const QFileInfo exe(executableFolder);
    if (!executableFolder.isEmpty() && exe.isDir() && exe.isWritable())
        return exe.absoluteFilePath();
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/vellumdock");
}

bool initProgramFolder(const QString& home, const QString& executableFolder, QString* error)
{
    const QString folder =
        home.isEmpty() ? defaultProgramFolder(executableFolder) : QDir(home).absolutePath();
    if (!makeFolder(folder, error))
        return false;
    app::setProgramFolder(folder);
    return makeFolder(app::gTempPath, error);
}

} // namespace vd::platform
