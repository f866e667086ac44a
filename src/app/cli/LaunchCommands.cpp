#include "app/cli/LaunchCommands.h"

#include "app/cli/ImportCommands.h"
#include "app/Globals.h"
#include "app/Settings.h"
#include "app/SettingsWriter.h"
#include "app/Translate.h"
#include "catalogue/Catalogue.h"
#include "import/clsFileManager.h"
#include "import/ImportOptions.h"
#include "launch/ProfilSettings.h"
#include "launch/StartFile.h"

#include <QFile>
#include <QTextStream>

namespace vd::cli {

namespace {

struct CatalogueCloser
{
    ~CatalogueCloser() { catalogue::CloseCatalogue(); }
};

void loadAll()
{
    app::reloadIni();
    app::loadSettings();
    launch::LoadProfils();
    launch::InstallProfilWriters();
}

int usage(Output& io, const QString& problem)
{
    io.err << problem << "\n\n" << usageText();
    return kExitUsage;
}

// "key=value" set in the [section] of an ini text; the key is added at the section's end, the
// section at the text's end.
QString withKey(const QString& text, const QString& section, const QString& key,
                const QString& value)
{
    QStringList lines = text.split(QStringLiteral("\r\n"));
    const QString line = key + u'=' + value;
    qsizetype i = 0;
    while (i < lines.size() && lines[i].compare(u'[' + section + u']', Qt::CaseInsensitive) != 0)
        ++i;
    if (i == lines.size()) {
        if (!lines.isEmpty() && lines.last().isEmpty())
            lines.removeLast();
        lines << QString() << u'[' + section + u']' << line << QString();
        return lines.join(QStringLiteral("\r\n"));
    }
    qsizetype end = i + 1;
    for (; end < lines.size() && !lines[end].startsWith(u'['); ++end) {
        if (lines[end].section(u'=', 0, 0).compare(key, Qt::CaseInsensitive) == 0) {
            lines[end] = line;
            return lines.join(QStringLiteral("\r\n"));
        }
    }
    while (end > i + 1 && lines[end - 1].isEmpty())
        --end;
    lines.insert(end, line);
    return lines.join(QStringLiteral("\r\n"));
}

// The change goes into a copy of the file as the exit would write it; the copy is read back by
// the reader (which applies its corrections) and written by the writer, then replaces the file.
int setKey(const QString& section, const QString& key, const QString& value, Output& io)
{
    loadAll();
    const QString realFile = app::gIniFile;
    const QString work = realFile + QStringLiteral(".set");
    {
        QFile file(work);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            io.err << file.errorString() << '\n';
            return kExitFailure;
        }
        file.write(withKey(app::settingsText(), section, key, value).toUtf8());
    }
    app::gIniFile = work;
    loadAll();
    const bool written = app::writeSettings();
    app::gIniFile = realFile;
    app::reloadIni();
    if (!written || (QFile::exists(realFile) && !QFile::remove(realFile)) ||
        !QFile::rename(work, realFile)) {
        QFile::remove(work);
        io.err << app::Translate(QStringLiteral("Die Einstellungen konnten nicht gespeichert "
                                                "werden: "))
               << realFile << '\n';
        return kExitFailure;
    }
    return kExitOk;
}

} // namespace

int settingsCommand(const QStringList& arguments, Output& io)
{
    const QString sub = arguments.value(0);
    if (sub == u"init" && arguments.size() == 1) {
        loadAll();
        return app::writeSettings() ? kExitOk : kExitFailure;
    }
    if (sub == u"get" && arguments.size() == 3) {
        loadAll();
        if (!app::IniKeyExists(arguments[1], arguments[2])) {
            io.err << "No key " << arguments[2] << " in [" << arguments[1] << "]\n";
            return kExitFailure;
        }
        io.out << app::ReadIni(arguments[1], arguments[2], QString()) << '\n';
        return kExitOk;
    }
    if (sub == u"set" && arguments.size() == 4) {
        if (arguments[1].isEmpty() || arguments[2].isEmpty() || arguments[2].contains(u'=') ||
            arguments[1].contains(u']'))
            return usage(io, QStringLiteral("settings set needs a section and a key."));
        return setKey(arguments[1], arguments[2], arguments[3], io);
    }
    return usage(io,
                 QStringLiteral("settings needs init, get SECTION KEY or set SECTION KEY VALUE."));
}

int startCommand(const QStringList& arguments, Output& io)
{
    QString profilKey;
    bool dryRun = false;
    QStringList positional;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == u"--dry-run")
            dryRun = true;
        else if (arguments[i] == u"--profile" && i + 1 < arguments.size())
            profilKey = arguments[++i];
        else
            positional << arguments[i];
    }
    bool isNumber = false;
    const qint64 id = positional.value(1).toLongLong(&isNumber);
    if (positional.size() != 2 || !isNumber || id == 0 || id < INT32_MIN || id > INT32_MAX)
        return usage(io, QStringLiteral("start needs a catalogue and an id: a C64Files id, or "
                                        "minus a Category id."));
    loadAll();
    QString path = positional[0];
    if (!catalogue::OpenCatalogueFile(path))
        return kExitFailure;
    CatalogueCloser closer;
    import::clsFileManager fm;
    fm.options = importOptionsFromSettings();
    launch::LaunchPlan plan;
    const QString status = launch::StartFile(fm, *app::gDB, qint32(id), profilKey, {dryRun, &plan});
    if (status.isEmpty() && plan.program.isEmpty())
        return kExitFailure;
    io.out << launch::StartStatusText(status) << '\n';
    if (dryRun) {
        io.out << plan.program << '\n' << plan.workingFolder << '\n';
        for (const QString& argument : plan.arguments)
            io.out << argument << '\n';
    }
    return kExitOk;
}

} // namespace vd::cli
