#include "launch/ProfilSettings.h"

#include "app/Settings.h"
#include "app/SettingsWriter.h"
#include "catalogue/Catalogue.h"
#include "launch/Profiles.h"

#include <QHash>

namespace vd::launch {

QString gTextProgram = QStringLiteral("Notepad");

namespace {

const QString& emulSection()
{
    return app::kSectionEmulators;
}
const QString& profilSection()
{
    return app::kSectionProfils;
}

QString numbered(const char* stem, qsizetype n)
{
    return QString::fromLatin1(stem) + QString::number(n);
}

// The first key from `key` up that no emulator has.
int freeEmulatorKey(int key)
{
    while (gEmulators.find(QString::number(key)))
        ++key;
    return key;
}

void readEmulators()
{
    for (int n = 1; n <= kMaxSettingsRecords; ++n) {
        const QString name = app::ReadIni(emulSection(), numbered("EmulName", n), QString());
        if (name.isEmpty())
            break;
        const int type = app::ReadIniInt(emulSection(), numbered("EmulType", n), "0");
        AddEmulator(n, (type >= 0 && type < kEmulTypeCount) ? type : 0, name,
                    app::ReadIni(emulSection(), numbered("EmulPath", n), QString()), gEmulators,
                    app::ReadIniFlag(emulSection(), numbered("EmulAktiv", n), "1"));
    }
}

// The upper-cased file name of a path written on Windows or here.
QString upperFileName(const QString& path)
{
    const qsizetype cut = std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
    return path.mid(cut + 1).toUpper();
}

int typeOfProgram(const QString& upperName)
{
    if (upperName.startsWith(u"X64") || upperName.startsWith(u"VICE"))
        return 1;
    if (upperName.startsWith(u"CCS64") || upperName == u"CCS.EXE")
        return 2;
    if (upperName == u"HOXS64.EXE")
        return 3;
    return 0;
}

bool emulatorNameTaken(const QString& name)
{
    for (const EmulatorPtr& e : gEmulators)
        if (e->Name == name)
            return true;
    return false;
}

EmulatorPtr emulatorForOldPath(const QString& path)
{
    if (path.isEmpty()) {
        for (const EmulatorPtr& e : gEmulators)
            if (e->EmulType == 0)
                return e;
        return AddEmulator(freeEmulatorKey(int(gEmulators.count()) + 1), 0, gEmulTypeNames[0],
                           QString(), gEmulators, true);
    }
    for (const EmulatorPtr& e : gEmulators)
        if (e->Path == path)
            return e;
    const QString file = upperFileName(path);
    const int type = typeOfProgram(file);
    const QString base = type >= 1 ? gEmulTypeNames[type] : file;
    QString name = base;
    for (int i = 1; emulatorNameTaken(name); ++i)
        name = base + QStringLiteral(" (%1)").arg(i);
    return AddEmulator(freeEmulatorKey(int(gEmulators.count()) + 1), type, name, path, gEmulators,
                       true);
}

// A profile of the old format: the emulator's path stood in the profile itself.
void upgradeOldProfil(clsProfil& profil, int n, const QString& path)
{
    QString name = profil.Name;
    const QString upper = name.toUpper();
    if (upper.startsWith(u"VICE "))
        name = name.mid(5);
    else if (upper.startsWith(u"CCS64 ") || upper.startsWith(u"CSS64 "))
        name = name.mid(6);
    name = name.trimmed();
    profil.Name = name.isEmpty() ? QStringLiteral("Profil ") + QString::number(n) : name;
    if (const EmulatorPtr e = emulatorForOldPath(path))
        profil.EmulKey = e->Key;
}

void readProfils(int count)
{
    for (int n = 1; n <= count; ++n) {
        const ProfilPtr p =
            AddProfil(gProfils, app::ReadIni(profilSection(), numbered("ProfilEmul", n), "-1"),
                      app::ReadIni(profilSection(), numbered("ProfilName", n), QString()),
                      app::ReadIni(profilSection(), numbered("ProfilOptions", n), QString()),
                      app::ReadIniFlag(profilSection(), numbered("ProfilAktiv", n), "1"), 0);
        if (p && (p->EmulKey == u"-1" || gEmulators.isEmpty()))
            upgradeOldProfil(*p, n,
                             app::ReadIni(profilSection(), numbered("ProfilPath", n), QString()));
    }
    const int def = app::ReadIniInt(profilSection(), "ProfilDefault", "1");
    gDefaultProfil = QString::number((def < 1 || def > count) ? 1 : def);
}

void buildDefaults()
{
    const int keyAndType[6][2] = {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {6, 0}};
    for (const auto& kt : keyAndType)
        AddDefaultEmulator(kt[0], kt[1], gEmulators, gProfils, true);
    gDefaultProfil = QStringLiteral("4");
}

// An extension the file did not know: a new profile set for every VICE emulator, assigned
// when .D64 starts in VICE; otherwise the extension follows .D64.
void upgradeExtension(int index, int set)
{
    ProfilPtr added;
    const Emulators emulators = gEmulators; // the walk must not see the records it adds
    for (const EmulatorPtr& e : emulators)
        if (e->EmulType == 1)
            added = AddDefaultProfile(e->Key, set, gProfils, false);
    const QString d64 = gStartProfils[0];
    const ProfilPtr d64Profil = d64.isEmpty() ? nullptr : gProfils.find(d64);
    const EmulatorPtr d64Emul = d64Profil ? gEmulators.find(d64Profil->EmulKey) : nullptr;
    gStartProfils[index] = (added && d64Emul && d64Emul->EmulType == 1) ? added->Key : d64;
}

void readExtensions(bool firstRun, int profilCount)
{
    const QString& section = app::kSectionExtensions;
    for (int i = 0; i < kStartExtensionCount; ++i) {
        const QString ext = StartExtensions().at(i);
        const QString value = firstRun ? QString::number(DefaultProfilForExtension(1, i))
                                       : app::ReadIni(section, ext, "-1");
        const int number = app::intVal(value);
        gStartProfils[i] = (value == u"-1" || number < 1 || number > profilCount)
                               ? QString()
                               : QString::number(number);
        if (value != u"-1")
            continue;
        if (ext == u".CRT")
            upgradeExtension(i, 9);
        else if (ext == u".VFL")
            upgradeExtension(i, 14);
        else if (ext == u".G64")
            gStartProfils[i] = gStartProfils[0];
        // ".D81" never takes an upgrade: it stays on the default profile.
    }
    gTextProgram = app::ReadIni(section, ".txt", "Notepad");
}

} // namespace

bool LoadProfils()
{
    gEmulators.clear();
    gProfils.clear();
    gProfilKeyCounter = 0;
    gDefaultProfil.clear();
    gStartProfils.fill(QString());

    readEmulators();
    const int count =
        std::min(app::ReadIniInt(profilSection(), "ProfilCount", "-1"), kMaxSettingsRecords);
    const bool firstRun = count < 1;
    if (firstRun)
        buildDefaults();
    else
        readProfils(count);

    const QString version = app::ReadIni(app::kSectionMain, "Version", QString());
    if (!version.isEmpty() && catalogue::compareVersionText(version, "3.2") < 0)
        AddDefaultEmulator(freeEmulatorKey(int(gEmulators.count()) + 1), 0, gEmulators, gProfils,
                           false);

    readExtensions(firstRun, firstRun ? int(gProfils.count()) : count);
    return firstRun;
}

void RenumberProfils()
{
    QHash<QString, QString> emulKeys;
    qsizetype n = 0;
    for (const EmulatorPtr& e : gEmulators) {
        emulKeys.insert(e->Key, QString::number(++n));
        e->Key = QString::number(n);
    }
    QHash<QString, QString> profilKeys;
    n = 0;
    for (const ProfilPtr& p : gProfils) {
        profilKeys.insert(p->Key, QString::number(++n));
        p->Key = QString::number(n);
        p->EmulKey = emulKeys.value(p->EmulKey, QStringLiteral("-1"));
    }
    gDefaultProfil = profilKeys.value(gDefaultProfil, gProfils.isEmpty() ? "" : "1");
    for (QString& assigned : gStartProfils)
        assigned = profilKeys.value(assigned);
}

void WriteEmulators(app::IniText& ini)
{
    RenumberProfils();
    for (const EmulatorPtr& e : gEmulators) {
        ini.add(QStringLiteral("EmulName") + e->Key, e->Name);
        ini.add(QStringLiteral("EmulPath") + e->Key, e->Path);
        ini.add(QStringLiteral("EmulType") + e->Key, QString::number(e->EmulType));
        ini.add(QStringLiteral("EmulAktiv") + e->Key, e->Aktiv);
    }
}

void WriteProfils(app::IniText& ini)
{
    RenumberProfils();
    ini.add(QStringLiteral("ProfilCount"), QString::number(gProfils.count()));
    for (const ProfilPtr& p : gProfils) {
        if (p->Key == gDefaultProfil)
            ini.add(QStringLiteral("ProfilDefault"), p->Key);
        ini.add(QStringLiteral("ProfilEmul") + p->Key, p->EmulKey);
        ini.add(QStringLiteral("ProfilName") + p->Key, p->Name);
        ini.add(QStringLiteral("ProfilAktiv") + p->Key, p->Aktiv);
        ini.add(QStringLiteral("ProfilOptions") + p->Key, p->Options);
    }
}

void WriteExtensionProfils(app::IniText& ini)
{
    RenumberProfils();
    for (int i = 0; i < kStartExtensionCount; ++i)
        ini.add(StartExtensions().at(i), gStartProfils[i]);
    ini.add(QStringLiteral(".txt"), gTextProgram);
}

void InstallProfilWriters()
{
    app::setIniPartWriter(app::IniPart::Emulators, WriteEmulators);
    app::setIniPartWriter(app::IniPart::Profils, WriteProfils);
    app::setIniPartWriter(app::IniPart::ExtensionProfiles, WriteExtensionProfils);
}

} // namespace vd::launch
