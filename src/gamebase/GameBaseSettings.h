#pragma once
// The section GAMEBASE of the settings file: read in the main window's load into the globals
// below and those of GameBase.h, written whole at the end through the settings writer. The
// keys that only the GameBase window reads are kept as the file held them.

#include <QString>
#include <QStringList>
#include <QVector>

namespace vd::app {
class IniText;
}

namespace vd::gamebase {

// One GameBase filter as stored: FilterName<n> and FilterDef<n>.
struct StoredFilter
{
    QString name;
    QString definition;
    bool operator==(const StoredFilter& o) const
    {
        return name == o.name && definition == o.definition;
    }
};

extern bool gAskForPath;           // AskForPath: the download asks for each file's folder
extern bool gArchivFile;           // ArchivFile: a downloaded file is catalogued
extern QString gDownloadPath;      // DownloadPath: the games (download) folder
extern QString gGBListColumns;     // GBListColumns: extra columns of lstGB, "@@@" between
extern QStringList gGBListLayouts; // GBListLayout split at "@@@", at least four elements
extern QString gGBSplitPos;        // GBSplitPos, kept as text
extern QString gGBSplitStyle;      // GBSplitStyle, kept as text
extern QString gGBDownloadUrl;     // GBDownloadUrl: set by the user in the file, "" for none
// GBHomepageUrl: the web page of GameBase downloads that the options' button "Download" opens
// in the browser; "" turns the button off.
extern QString gGBHomepageUrl;
inline const QString kDefaultGBHomepageUrl = QStringLiteral("https://www.gb64.com/");
extern QVector<StoredFilter> gGBFilters; // the GameBase filters, in their order

inline const QString kDefaultGBListColumns = QStringLiteral("COMMENT@@@YEAR");
extern const QString kDefaultGBListLayout;
// A file with more filters than this is read up to the limit.
inline constexpr int kMaxGBFilters = 10000;

// GBListLayout as the program keeps it: split at "@@@" and extended to four elements.
QStringList splitGBListLayout(const QString& value);

// The keys of GAMEBASE in their order of writing, then the filters numbered from 1.
void WriteGameBaseSettings(app::IniText& ini);
// Installs WriteGameBaseSettings with the settings writer.
void InstallGameBaseWriter();

} // namespace vd::gamebase
