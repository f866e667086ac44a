#pragma once
// The settings file Vellumdock.ini (gIniFile): the one reader, the typed helpers, and the
// settings of the section MAIN (with the import list of EXTENSIONS) as globals. The file is
// parsed once and parsed again when it changes on disk. Reading is window-free, so both front
// ends call loadSettings(); the file is written whole, once, by writeSettings()
// (SettingsWriter.h).

#include "app/IniFile.h"

#include <QString>
#include <QStringList>

namespace vd::app {

// The longest value ReadIni gives back; a longer one is cut without warning.
constexpr int kIniValueLimit = 3199;
// The longest value ReadIniFile gives back (another program's file, such as "Paths.ini").
constexpr int kIniFileValueLimit = 2047;
// Recent catalogues and recent folders each hold at most this many entries.
constexpr int kRecentLimit = 20;

// The value of `key` in `section` of gIniFile, or `defaultValue` when the key is missing.
// A key with an empty value gives "". At most kIniValueLimit characters.
QString ReadIni(const QString& section, const QString& key, const QString& defaultValue);
// The same for another settings file, at most kIniFileValueLimit characters.
QString ReadIniFile(const QString& file, const QString& section, const QString& key,
                    const QString& defaultValue);
// Whether gIniFile holds the key at all (the first-run test asks this).
bool IniKeyExists(const QString& section, const QString& key);
// Forgets the parsed file, so that the next read parses it again.
void reloadIni();
// Every entry of a section of gIniFile, in file order (the writer passes unowned keys on).
QVector<IniEntry> iniEntries(const QString& section);

// The numeric value of the leading number of a text, 0 when there is none: blanks are
// skipped, a sign, digits, a decimal point and an exponent are taken, "&H" and "&O" prefixes
// read hexadecimal and octal. "12abc" is 12, "True" is 0.
double Val(QStringView text);
// A flag of the settings file: true for any value whose Val is not 0.
bool flag(QStringView text);
// Val rounded to the nearest integer, halves to even, and held to the int range.
int intVal(QStringView text);
// ReadIni through flag and intVal.
bool ReadIniFlag(const QString& section, const QString& key, const QString& defaultValue);
int ReadIniInt(const QString& section, const QString& key, const QString& defaultValue);

// Section and key names.
inline const QString kSectionMain = QStringLiteral("MAIN");
inline const QString kSectionEmulators = QStringLiteral("EMULATORS");
inline const QString kSectionProfils = QStringLiteral("PROFILS");
inline const QString kSectionExtensions = QStringLiteral("EXTENSIONS");
inline const QString kSectionGameBase = QStringLiteral("GAMEBASE");
inline const QString kSectionWindows = QStringLiteral("WINDOWS");

// The default of ListLayout: layout 0, two levels.
extern const QString kDefaultListLayout;
// The default of ImportFiles, before the migrations of a new file run.
QString defaultImportFiles();

// The preview colours that -1 stands for, as colour numbers (red in the low byte).
constexpr qint64 kPreviewForeColor = 0xFF8080;
constexpr qint64 kPreviewBackColor = 53 + 40 * 256 + 121 * 65536;
constexpr qint64 kPreviewSelectColor = 255 + 255 * 256 + 255 * 65536;

// Settings of the section MAIN, in the order they are written, and ImportFiles.
extern bool gCreateMd5Hash;      // CreateMd5Hash: the importer stores MD5 sums
extern bool gCheckC64Files;      // CheckC64Files: the check rereads known files
extern bool gConnectFilesToGB;   // ConnectFilesToGB: the importer matches archives with GameBase
extern QStringList gDatabases;   // Database, Database2, ...: recent catalogues (colDatabases)
extern QStringList gDialogs;     // Dialog, Dialog2, ...: recent import folders (colDialogs)
extern QString gFontName;        // Font: the font of the C64 names
extern int gFontSize;            // FontSize, 6 to 20
extern bool gHideTree;           // HideTree: mnuHideTree
extern QString gLanguageFile;    // LanguageFile: a file name inside Lang/, "" for German
extern int gLastFilterRow;       // LastFilterRow: selected row of lvFilter
extern double gListSplitPos;     // ListSplitPos, twips
extern double gMenuSplitPos;     // MenuSplitPos, twips
extern bool gPreview;            // Preview: mnuPreview
extern qint64 gPreviewBackColor; // PreviewBackColor, -1 already replaced by its colour
extern qint64 gPreviewForeColor;
extern qint64 gPreviewSelectColor;
extern double gPreviewSplitPos;  // PreviewSplitPos, twips
extern bool gPreviewWindow;      // PreviewWindow: mnuOpenPreview
extern bool gRefreshC64Files;    // RefreshC64Files: import flag 4
extern bool gSerachArchivFiles;  // SerachArchivFiles: import flag 8
extern bool gShowToolbar;        // ShowToolbar: mnuToggleToolbar
extern QString gSkipZipSize;     // SkipZipSize: megabytes, kept as the text of the number
extern bool gTreeSubItems;       // TreeSubItems: mnuTreeOhnePlusMinus
extern int gViewMode;            // ViewMode, 1 to 6 (iViewMode)
extern QStringList gListLayouts; // ListLayout split at "@@@": at least four layouts (sLayouts)
extern QString gMainListColumns; // MainListColumns (sMainListColumns)
// HelpUrl, HomepageUrl: the pages of mnuHelp and mnuHomepage, the German one or the German and
// the English one joined by "|". Empty (the default): the entry is off and nothing is contacted.
extern QString gHelpUrl;
extern QString gHomepageUrl;
extern QString gImportFiles; // ImportFiles of EXTENSIONS, upper case, after the migrations
// ArchiveExtensions split at ";" (".ZIP", ...).
extern QStringList gArchiveExtensions;
// The key Version as read at the start; "" for a new file. Migrations compare it as text.
extern QString gIniVersion;

// Sets every global above to its default, then reads the settings file: the keys of MAIN,
// the recent lists, ImportFiles with the version migrations, and the section WINDOWS
// (WindowPos.h). Callable any number of times; never shows anything.
void loadSettings();

// ListLayout as the program keeps it: split at "@@@", extended to four elements, element 3
// emptied when it is exactly one character.
QStringList splitListLayout(const QString& value);
// Database, Database2, ... (or Dialog, ...): read until the first empty value, each path once,
// at most kRecentLimit.
QStringList readRecentList(const QString& stem);
// A path goes to the front of a recent list; if it stood in the list already it moves there,
// and the list keeps at most kRecentLimit entries.
void AddRecent(QStringList& list, const QString& path);
// The preview colour a settings value stands for: -1 gives the built-in colour.
qint64 previewColor(qint64 value, qint64 builtIn);

} // namespace vd::app
