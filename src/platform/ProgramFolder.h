#pragma once
// The program folder (gAppPath): where the settings file, Temp/, Tools/, Lang/ and Cache/ lie.
// It is the executable's own folder when that is writable, as in a portable installation;
// otherwise, and always for an installed copy, the user's data folder. "--home DIR" on either
// front end chooses it freely.

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

// The shared data of an installed copy: "../share/vellumdock" beside the executable's folder
// (as `cmake --install` lays it out), or "" for a portable copy or a build tree.
QString installedDataFolder(const QString& executableFolder);

// The program folder without --home: "vellumdock" in the user's data folder ($XDG_DATA_HOME,
// normally ~/.local/share) for an installed copy, whose bin/ folder may well be writable (root
// installing to /usr/local); otherwise `executableFolder` when it is a writable folder, else
// the same user folder.
QString defaultProgramFolder(const QString& executableFolder);

// Copies each language file (*.lng) of `from` into `to` when it is missing there or older, with
// the time of the original, so that a later installation of a newer file replaces it again
// while a file the user changed there stays. Files the user added are left alone. Creates `to`
// when there is something to copy. Returns the number of files copied; a file that cannot be
// copied is skipped.
int syncLanguageFiles(const QString& from, const QString& to);

// Makes `home`, or the default when it is empty, the program folder: creates it when missing,
// sets gAppPath and the folders that hang on it (vd::app::setProgramFolder), and creates Temp
// when missing. Tools is never created, nor Lang in a portable copy; an installed copy brings
// its language files into Lang (syncLanguageFiles), so the language menu finds them. On failure
// returns false and, when `error` is given, a sentence for the user.
bool initProgramFolder(const QString& home, const QString& executableFolder,
                       QString* error = nullptr);

} // namespace vd::platform
