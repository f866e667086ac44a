#include "gamebase/GameBaseSettings.h"

#include "app/Settings.h"
#include "app/SettingsWriter.h"
#include "gamebase/GameBase.h"

namespace vd::gamebase {

const QString kDefaultGBListLayout = QStringLiteral(
    "GA_ID!Hidden=2;Width=64;Fixed=0;Order=0$Icon!Hidden=2;Width=64;Fixed=0;Order=1$"
    "Scr!Hidden=2;Width=64;Fixed=0;Order=2$V_LengthType!Hidden=2;Width=64;Fixed=0;Order=3$"
    "File!Hidden=0;Width=209;Fixed=2;Order=0$Comment!Hidden=0;Width=334;Fixed=0;Order=4$"
    "Year!Hidden=0;Width=41;Fixed=0;Order=5");

bool gAskForPath = false;
bool gArchivFile = true;
QString gDownloadPath;
QString gGBListColumns = kDefaultGBListColumns;
QStringList gGBListLayouts = splitGBListLayout(kDefaultGBListLayout);
QString gGBSplitPos = QStringLiteral("6000");
QString gGBSplitStyle = QStringLiteral("0");
QString gGBDownloadUrl;
QString gGBHomepageUrl = kDefaultGBHomepageUrl;
QVector<StoredFilter> gGBFilters;

namespace {

const QString& section()
{
    return app::kSectionGameBase;
}

QString read(const char* key, const QString& defaultValue)
{
    return app::ReadIni(section(), QString::fromLatin1(key), defaultValue);
}

bool readFlag(const char* key, const char* defaultValue)
{
    return app::ReadIniFlag(section(), QString::fromLatin1(key), QString::fromLatin1(defaultValue));
}

// FilterName1, FilterDef1, ... up to the first empty name; the numbers are given anew on
// writing.
QVector<StoredFilter> readFilters()
{
    QVector<StoredFilter> filters;
    for (int n = 1; n <= kMaxGBFilters; ++n) {
        const QString name = app::ReadIni(section(), QStringLiteral("FilterName%1").arg(n), {});
        if (name.isEmpty())
            break;
        filters.append({name, app::ReadIni(section(), QStringLiteral("FilterDef%1").arg(n), {})});
    }
    return filters;
}

} // namespace

QStringList splitGBListLayout(const QString& value)
{
    QStringList layouts = value.split(QStringLiteral("@@@"));
    while (layouts.size() < 4)
        layouts.append(QString());
    return layouts;
}

void loadGameBaseSettings()
{
    gGameBaseDB = read("GameBaseDB", kGameBaseHint);
    gAdultContent = readFlag("AdultContent", "0");
    gAskForPath = readFlag("AskForPath", "0");
    gArchivFile = readFlag("ArchivFile", "1");
    gArchivOnlyGame = readFlag("ArchivOnlyGame", "1");
    gDownloadPath = read("DownloadPath", {});
    gScreenshots = read("Screenshots", {});
    gGBListColumns = read("GBListColumns", kDefaultGBListColumns);
    gGBListLayouts = splitGBListLayout(read("GBListLayout", kDefaultGBListLayout));
    gGBSplitPos = read("GBSplitPos", QStringLiteral("6000"));
    gGBSplitStyle = read("GBSplitStyle", QStringLiteral("0"));
    gGBDownloadUrl = read("GBDownloadUrl", {});
    gGBHomepageUrl = read("GBHomepageUrl", kDefaultGBHomepageUrl);
    gGBFilters = readFilters();
}

void WriteGameBaseSettings(app::IniText& ini)
{
    ini.add(QStringLiteral("GameBaseDB"), gGameBaseDB);
    ini.add(QStringLiteral("AdultContent"), gAdultContent);
    ini.add(QStringLiteral("AskForPath"), gAskForPath);
    ini.add(QStringLiteral("ArchivFile"), gArchivFile);
    ini.add(QStringLiteral("ArchivOnlyGame"), gArchivOnlyGame);
    ini.add(QStringLiteral("DownloadPath"), gDownloadPath);
    ini.add(QStringLiteral("Screenshots"), gScreenshots);
    ini.add(QStringLiteral("GBListColumns"), gGBListColumns);
    ini.add(QStringLiteral("GBListLayout"), gGBListLayouts.join(QStringLiteral("@@@")));
    ini.add(QStringLiteral("GBSplitPos"), gGBSplitPos);
    ini.add(QStringLiteral("GBSplitStyle"), gGBSplitStyle);
    // Not a key of the options dialog: the user sets it in the file, so it is written only
    // when it holds something.
    if (!gGBDownloadUrl.isEmpty())
        ini.add(QStringLiteral("GBDownloadUrl"), gGBDownloadUrl);
    // Likewise set in the file only; written when it is not the default.
    if (gGBHomepageUrl != kDefaultGBHomepageUrl)
        ini.add(QStringLiteral("GBHomepageUrl"), gGBHomepageUrl);
    for (qsizetype i = 0; i < gGBFilters.size(); ++i) {
        ini.add(QStringLiteral("FilterName%1").arg(i + 1), gGBFilters[i].name);
        ini.add(QStringLiteral("FilterDef%1").arg(i + 1), gGBFilters[i].definition);
    }
}

void InstallGameBaseWriter()
{
    app::setIniPartWriter(app::IniPart::GameBase, WriteGameBaseSettings);
}

} // namespace vd::gamebase
