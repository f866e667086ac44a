#include "app/SettingsWriter.h"

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/WindowPos.h"

#include <array>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSet>

namespace vd::app {

namespace {

constexpr int kPartCount = 5;

std::array<IniPartWriter, kPartCount>& partWriters()
{
    static std::array<IniPartWriter, kPartCount> writers;
    return writers;
}

const QString kCrLf = QStringLiteral("\r\n");

// Writes the entries of a section that the file holds, each key once, those `take` accepts.
void passOn(IniText& ini, const QString& section, const std::function<bool(const QString&)>& take)
{
    QSet<QString> seen;
    for (const IniEntry& e : iniEntries(section)) {
        const QString folded = e.key.toUpper();
        if (!take(e.key) || seen.contains(folded))
            continue;
        seen.insert(folded);
        ini.add(e.key, e.value);
    }
}

void writePart(IniText& ini, IniPart part)
{
    if (const IniPartWriter& writer = partWriters()[size_t(part)]) {
        writer(ini);
        return;
    }
    static const QRegularExpression filterKey(QStringLiteral("^Filter(Name|Def)\\d+$"),
                                              QRegularExpression::CaseInsensitiveOption);
    switch (part) {
    case IniPart::MainFilters:
        passOn(ini, kSectionMain, [](const QString& k) { return filterKey.match(k).hasMatch(); });
        break;
    case IniPart::Emulators:
        passOn(ini, kSectionEmulators, [](const QString&) { return true; });
        break;
    case IniPart::Profils:
        passOn(ini, kSectionProfils, [](const QString&) { return true; });
        break;
    case IniPart::ExtensionProfiles:
        passOn(ini, kSectionExtensions, [](const QString& k) {
            return k.compare(QStringLiteral("ImportFiles"), Qt::CaseInsensitive) != 0;
        });
        break;
    case IniPart::GameBase:
        passOn(ini, kSectionGameBase, [](const QString&) { return true; });
        break;
    }
}

// Database = the current entry, then the others of the list from 2 on.
void addRecentList(IniText& ini, const QString& stem, const QString& current,
                   const QStringList& list)
{
    ini.add(stem, current);
    int n = 2;
    for (const QString& path : list) {
        if (path != current)
            ini.add(stem + QString::number(n++), path);
    }
}

void writeMain(IniText& ini)
{
    ini.section(kSectionMain);
    ini.add(QStringLiteral("CreateMd5Hash"), gCreateMd5Hash);
    ini.add(QStringLiteral("CheckC64Files"), gCheckC64Files);
    ini.add(QStringLiteral("ConnectFilesToGB"), gConnectFilesToGB);
    addRecentList(ini, QStringLiteral("Database"), gDatabasePath, gDatabases);
    addRecentList(ini, QStringLiteral("Dialog"), gDialogPath, gDialogs);
    ini.add(QStringLiteral("Font"), gFontName);
    ini.add(QStringLiteral("FontSize"), QString::number(gFontSize));
    ini.add(QStringLiteral("HideTree"), gHideTree);
    ini.add(QStringLiteral("LanguageFile"), gLanguageFile);
    ini.add(QStringLiteral("LastFilterRow"), QString::number(gLastFilterRow));
    ini.add(QStringLiteral("ListSplitPos"), twipsText(gListSplitPos));
    ini.add(QStringLiteral("MenuSplitPos"), twipsText(gMenuSplitPos));
    ini.add(QStringLiteral("Preview"), gPreview);
    ini.add(QStringLiteral("PreviewBackColor"), QString::number(gPreviewBackColor));
    ini.add(QStringLiteral("PreviewForeColor"), QString::number(gPreviewForeColor));
    ini.add(QStringLiteral("PreviewSelectColor"), QString::number(gPreviewSelectColor));
    ini.add(QStringLiteral("PreviewSplitPos"), twipsText(gPreviewSplitPos));
    ini.add(QStringLiteral("PreviewWindow"), gPreviewWindow);
    ini.add(QStringLiteral("RefreshC64Files"), gRefreshC64Files);
    ini.add(QStringLiteral("SerachArchivFiles"), gSerachArchivFiles);
    ini.add(QStringLiteral("ShowToolbar"), gShowToolbar);
    ini.add(QStringLiteral("SkipZipSize"), gSkipZipSize);
    ini.add(QStringLiteral("TreeSubItems"), gTreeSubItems);
    ini.add(QStringLiteral("ViewMode"), QString::number(gViewMode));
    ini.add(QStringLiteral("Version"), gVersion);
    ini.add(QStringLiteral("ListLayout"), gListLayouts.join(QStringLiteral("@@@")));
    ini.add(QStringLiteral("MainListColumns"), gMainListColumns);
    // Written only when set, so that a file without them reads the same after a run.
    if (!gHelpUrl.isEmpty())
        ini.add(QStringLiteral("HelpUrl"), gHelpUrl);
    if (!gHomepageUrl.isEmpty())
        ini.add(QStringLiteral("HomepageUrl"), gHomepageUrl);
    writePart(ini, IniPart::MainFilters);
}

} // namespace

void AppendIniLine(QString& text, const QString& line)
{
    if (!text.isEmpty())
        text += kCrLf;
    text += line;
}

void IniText::section(const QString& name)
{
    if (!m_text.isEmpty())
        AppendIniLine(m_text, QString());
    AppendIniLine(m_text, QLatin1Char('[') + name + QLatin1Char(']'));
}

void IniText::add(const QString& key, const QString& value)
{
    QString clean = value;
    clean.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    AppendIniLine(m_text, key + QLatin1Char('=') + clean);
}

QString IniText::text() const
{
    return m_text + kCrLf;
}

void setIniPartWriter(IniPart part, IniPartWriter writer)
{
    partWriters()[size_t(part)] = std::move(writer);
}

QString settingsText()
{
    IniText ini;
    writeMain(ini);
    ini.section(kSectionEmulators);
    writePart(ini, IniPart::Emulators);
    ini.section(kSectionProfils);
    writePart(ini, IniPart::Profils);
    ini.section(kSectionExtensions);
    ini.add(QStringLiteral("ImportFiles"), gImportFiles);
    writePart(ini, IniPart::ExtensionProfiles);
    ini.section(kSectionGameBase);
    writePart(ini, IniPart::GameBase);
    ini.section(kSectionWindows);
    for (const WindowEntry& w : gWindows)
        ini.add(w.form, w.value);
    return ini.text();
}

bool writeSettings()
{
    // Build the text first: the parts that pass keys on read the file that is replaced.
    const QByteArray bytes = settingsText().toUtf8();
    QSaveFile file(gIniFile);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(bytes);
    const bool written = file.commit();
    reloadIni();
    return written;
}

} // namespace vd::app
