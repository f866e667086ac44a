#include "app/Settings.h"

#include "catalogue/JetFunctions.h"

#include "app/Globals.h"
#include "app/IniFile.h"
#include "app/WindowPos.h"
#include "catalogue/Catalogue.h"
#include "catalogue/CatalogueSchema.h"

#include <cmath>
#include <limits>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace vd::app {

const QString kDefaultListLayout = QStringLiteral(
    "ID!Hidden=2;Width=64;Fixed=0;Order=0$Expr1001!Hidden=2;Width=64;Fixed=0;Order=1$"
    "Icon!Hidden=2;Width=64;Fixed=0;Order=2$File!Hidden=0;Width=169;Fixed=0;Order=3$"
    "Typ!Hidden=0;Width=59;Fixed=0;Order=4$Size!Hidden=0;Width=53;Fixed=0;Order=5$"
    "Disk/Tape!Hidden=0;Width=168;Fixed=0;Order=6$Filepath!Hidden=0;Width=254;Fixed=0;Order=7@"
    "ID!Hidden=2;Width=64;Fixed=0;Order=0$ParentKey!Hidden=2;Width=64;Fixed=0;Order=1$"
    "Icon!Hidden=2;Width=64;Fixed=0;Order=2$File!Hidden=0;Width=144;Fixed=0;Order=3$"
    "Typ!Hidden=0;Width=35;Fixed=0;Order=4$Size!Hidden=0;Width=37;Fixed=0;Order=5$"
    "Image!Hidden=0;Width=168;Fixed=0;Order=6$Filepath!Hidden=0;Width=230;Fixed=0;Order=7$"
    "lIndex!Hidden=2;Width=45;Fixed=0;Order=8");

bool gCreateMd5Hash = false;
bool gCheckC64Files = false;
bool gConnectFilesToGB = false;
QStringList gDatabases;
QStringList gDialogs;
QString gFontName;
int gFontSize = 8;
bool gHideTree = false;
QString gLanguageFile;
int gLastFilterRow = 0;
double gListSplitPos = 3000;
double gMenuSplitPos = 2000;
bool gPreview = true;
qint64 gPreviewBackColor = kPreviewBackColor;
qint64 gPreviewForeColor = kPreviewForeColor;
qint64 gPreviewSelectColor = kPreviewSelectColor;
double gPreviewSplitPos = 9000;
bool gPreviewWindow = false;
bool gRefreshC64Files = false;
bool gSerachArchivFiles = false;
bool gShowToolbar = true;
QString gSkipZipSize;
bool gTreeSubItems = false;
int gViewMode = 1;
QStringList gListLayouts;
QString gMainListColumns;
QString gHelpUrl;
QString gHomepageUrl;
QString gImportFiles;
QString gIniVersion;
QStringList gArchiveExtensions;

namespace {

// The parsed gIniFile and what the file looked like when it was parsed.
struct IniCache
{
    QString path;
    bool exists = false;
    qint64 size = -1;
    QDateTime modified;
    QDateTime changed;
    IniDocument doc;
    bool valid = false;
};

IniCache& cache()
{
    static IniCache c;
    return c;
}

IniDocument readDocument(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return IniDocument::parse(file.readAll());
}

const IniDocument& iniDocument()
{
    IniCache& c = cache();
    const QFileInfo info(gIniFile);
    const bool exists = info.isFile();
    const qint64 size = exists ? info.size() : -1;
    const QDateTime modified = exists ? info.lastModified() : QDateTime();
    const QDateTime changed = exists ? info.metadataChangeTime() : QDateTime();
    if (!c.valid || c.path != gIniFile || c.exists != exists || c.size != size ||
        c.modified != modified || c.changed != changed) {
        c.path = gIniFile;
        c.exists = exists;
        c.size = size;
        c.modified = modified;
        c.changed = changed;
        c.doc = exists ? readDocument(gIniFile) : IniDocument();
        c.valid = true;
    }
    return c.doc;
}

QString readFrom(const IniDocument& doc, const QString& section, const QString& key,
                 const QString& defaultValue, int limit)
{
    const std::optional<QString> value = doc.value(section, key);
    return (value ? *value : defaultValue).left(limit);
}

} // namespace

QString ReadIni(const QString& section, const QString& key, const QString& defaultValue)
{
    return readFrom(iniDocument(), section, key, defaultValue, kIniValueLimit);
}

QString ReadIniFile(const QString& file, const QString& section, const QString& key,
                    const QString& defaultValue)
{
    return readFrom(readDocument(file), section, key, defaultValue, kIniFileValueLimit);
}

bool IniKeyExists(const QString& section, const QString& key)
{
    return iniDocument().hasKey(section, key);
}

void reloadIni()
{
    cache().valid = false;
}

QVector<IniEntry> iniEntries(const QString& section)
{
    return iniDocument().entries(section);
}

double Val(QStringView text)
{
    return db::vbVal(text.toString()).toDouble();
}

bool flag(QStringView text)
{
    return Val(text) != 0;
}

int intVal(QStringView text)
{
    const double v = std::nearbyint(Val(text));
    if (v >= double(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (v <= double(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return int(v);
}

bool ReadIniFlag(const QString& section, const QString& key, const QString& defaultValue)
{
    return flag(ReadIni(section, key, defaultValue));
}

int ReadIniInt(const QString& section, const QString& key, const QString& defaultValue)
{
    return intVal(ReadIni(section, key, defaultValue));
}

QString defaultImportFiles()
{
    using namespace catalogue;
    return kStartExtensions + QLatin1Char(';') + kArchiveExtensions + QLatin1Char(';') +
           kPictureExtensions + QLatin1Char(';') + kTextExtensions + QStringLiteral(";.PDF");
}

QStringList splitListLayout(const QString& value)
{
    QStringList layouts = value.split(QStringLiteral("@@@"));
    while (layouts.size() < 4)
        layouts.append(QString());
    if (layouts[3].size() == 1)
        layouts[3].clear();
    return layouts;
}

QStringList readRecentList(const QString& stem)
{
    QStringList list;
    for (int n = 1; list.size() < kRecentLimit; ++n) {
        const QString key = n == 1 ? stem : stem + QString::number(n);
        const QString path = ReadIni(kSectionMain, key, QString());
        if (path.isEmpty())
            break;
        if (!list.contains(path))
            list.append(path);
    }
    return list;
}

void AddRecent(QStringList& list, const QString& path)
{
    if (path.isEmpty())
        return;
    list.removeAll(path);
    while (list.size() >= kRecentLimit)
        list.removeLast();
    list.prepend(path);
}

qint64 previewColor(qint64 value, qint64 builtIn)
{
    return value == -1 ? builtIn : value;
}

namespace {

int readFontSize()
{
    const int size = ReadIniInt(kSectionMain, QStringLiteral("FontSize"), QStringLiteral("8"));
    return size < 6 || size > 20 ? 6 : size;
}

int readViewMode()
{
    const int view = ReadIniInt(kSectionMain, QStringLiteral("ViewMode"), QStringLiteral("1"));
    return view == 4 || view < 1 || view > 6 ? 1 : view;
}

qint64 readColor(const QString& key, qint64 builtIn)
{
    const double v = Val(ReadIni(kSectionMain, key, QStringLiteral("-1")));
    const qint64 n = std::isfinite(v) && std::abs(v) < 9.0e15 ? qint64(std::nearbyint(v)) : 0;
    return previewColor(n, builtIn);
}

// ImportFiles and the migrations that the version of the file asks for.
QString readImportFiles(const QString& version)
{
    QString files =
        ReadIni(kSectionExtensions, QStringLiteral("ImportFiles"), defaultImportFiles()).toUpper();
    if (catalogue::compareVersionText(version, QStringLiteral("3.3")) < 0)
        files += QStringLiteral(";.G64;.D81;.RAR");
    if (catalogue::compareVersionText(version, QStringLiteral("3.4")) < 0)
        files += QStringLiteral(";.BMP;.GIF;.JPG;.PNG;.TIFF");
    return files;
}

void readFlags()
{
    const QString main = kSectionMain;
    const QString off = QStringLiteral("0");
    gTreeSubItems = ReadIniFlag(main, QStringLiteral("TreeSubItems"), off);
    gCreateMd5Hash = ReadIniFlag(main, QStringLiteral("CreateMd5Hash"), off);
    gCheckC64Files = ReadIniFlag(main, QStringLiteral("CheckC64Files"), off);
    gRefreshC64Files = ReadIniFlag(main, QStringLiteral("RefreshC64Files"), off);
    gSerachArchivFiles = ReadIniFlag(main, QStringLiteral("SerachArchivFiles"), off);
    gConnectFilesToGB = ReadIniFlag(main, QStringLiteral("ConnectFilesToGB"), off);
    gSkipZipSize = ReadIni(main, QStringLiteral("SkipZipSize"), QStringLiteral("5"));
    gPreview = ReadIniFlag(main, QStringLiteral("Preview"), QStringLiteral("1"));
    gPreviewWindow = ReadIniFlag(main, QStringLiteral("PreviewWindow"), off);
    gHideTree = ReadIniFlag(main, QStringLiteral("HideTree"), QString());
    gShowToolbar = ReadIniFlag(main, QStringLiteral("ShowToolbar"), QStringLiteral("1"));
}

} // namespace

void loadSettings()
{
    const QString main = kSectionMain;
    gFontName = ReadIni(main, QStringLiteral("Font"), QStringLiteral("CBM"));
    if (gFontName.isEmpty())
        gFontName = QStringLiteral("CBM");
    gFontSize = readFontSize();
    gPreviewForeColor = readColor(QStringLiteral("PreviewForeColor"), kPreviewForeColor);
    gPreviewBackColor = readColor(QStringLiteral("PreviewBackColor"), kPreviewBackColor);
    gPreviewSelectColor = readColor(QStringLiteral("PreviewSelectColor"), kPreviewSelectColor);
    gIniVersion = ReadIni(main, QStringLiteral("Version"), QString());

    gDatabases = readRecentList(QStringLiteral("Database"));
    gDatabasePath = gDatabases.value(0);
    gDialogs = readRecentList(QStringLiteral("Dialog"));
    gDialogPath = gDialogs.value(0);

    gLanguageFile = ReadIni(main, QStringLiteral("LanguageFile"), QString());
    gLastFilterRow = ReadIniInt(main, QStringLiteral("LastFilterRow"), QStringLiteral("0"));
    gViewMode = readViewMode();
    readFlags();
    gListLayouts = splitListLayout(ReadIni(main, QStringLiteral("ListLayout"), kDefaultListLayout));
    gMainListColumns = ReadIni(main, QStringLiteral("MainListColumns"), QString());
    gHelpUrl = ReadIni(main, QStringLiteral("HelpUrl"), QString());
    gHomepageUrl = ReadIni(main, QStringLiteral("HomepageUrl"), QString());
    gImportFiles = readImportFiles(gIniVersion);
    gArchiveExtensions = catalogue::kArchiveExtensions.split(QLatin1Char(';'));

    gMenuSplitPos = Val(ReadIni(main, QStringLiteral("MenuSplitPos"), QStringLiteral("2000")));
    gPreviewSplitPos =
        Val(ReadIni(main, QStringLiteral("PreviewSplitPos"), QStringLiteral("9000")));
    gListSplitPos = Val(ReadIni(main, QStringLiteral("ListSplitPos"), QStringLiteral("3000")));
    loadWindowPositions();
}

} // namespace vd::app
