#pragma once
// The program-wide state that the windows and the core share: folders, the open catalogue.

#include <QString>
#include <memory>

namespace vd::db {
class Database;
}

namespace vd::app {

extern bool gPortable;        // always true: the only effect is " Portable" in gVersion
extern QString gAppPath;      // program folder, with a trailing "/"
extern QString gIniFile;      // gAppPath + "Vellumdock.ini"
extern QString gVersion;      // "3.5 Portable"
extern QString gLangPath;     // gAppPath + "Lang/"
extern QString gToolsPath;    // gAppPath + "Tools/"
extern QString gTempPath;     // gAppPath + "Temp", without a trailing separator
extern QString gCachePath;    // gAppPath + "Cache/"
extern QString gDatabasePath; // the open catalogue, "" when none
extern QString gDialogPath;   // the folder the file dialogs start in

extern std::unique_ptr<db::Database> gDB; // the open catalogue, or null

// Major and minor version joined by a point, without " Portable": "3.5".
QString programVersion();

// Sets gAppPath and the folders that hang on it. `folder` is the program folder (any trailing
// separator is normalised).
void setProgramFolder(const QString& folder);

} // namespace vd::app
