#pragma once
// The program folder (gAppPath): where the settings file, Temp/, Tools/, Lang/ and Cache/ lie.
// It is the executable's own folder when that is writable, as in a portable installation;
// otherwise the user's data folder. "--home DIR" on either front end chooses it freely.

#include <QString>
#include <QStringList>

namespace vd::platform {

struct HomeOption
{
    QStringList arguments;     // what is left without the option
    QString home;              // DIR, "" when the option was not given
    bool missingValue = false; // "--home" without a folder
};

// Takes "--home DIR" and "--home=DIR" out of the arguments (the last one wins). Arguments after
// "--" are left alone; the "--" itself is dropped.
HomeOption takeHomeOption(const QStringList& arguments);

// The program folder without --home: `executableFolder` when it is a writable folder, else
// "vellumdock" in the user's data folder ($XDG_DATA_HOME, normally ~/.local/share).
QString defaultProgramFolder(const QString& executableFolder);

// Makes `home`, or the default when it is empty, the program folder: creates it when missing,
// sets gAppPath and the folders that hang on it (vd::app::setProgramFolder), and creates Temp
// when missing. Lang and Tools are never created. On failure returns false and, when `error`
// is given, a sentence for the user.
bool initProgramFolder(const QString& home, const QString& executableFolder,
                       QString* error = nullptr);

} // namespace vd::platform
