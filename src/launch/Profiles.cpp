#include "launch/Profiles.h"

#include "app/Translate.h"
#include "catalogue/CatalogueSchema.h"

namespace vd::launch {

Emulators gEmulators;
Profils gProfils;
QString gDefaultProfil;
int gProfilKeyCounter = 0;
std::array<QString, kStartExtensionCount> gStartProfils;
std::array<QString, kEmulTypeCount> gEmulTypeNames = {
    QStringLiteral("Sonstige"), QStringLiteral("VICE"),  QStringLiteral("CCS64"),
    QStringLiteral("HOXS64"),   QStringLiteral("EMU64"), QStringLiteral("MICRO64")};

namespace {

struct ProfilSet
{
    const char* name;
    const char* options;
};

// The built-in profile sets 1..14, exactly as stored in the settings.
constexpr std::array<ProfilSet, kProfilSetCount> kProfilSets = {{
    {"Autorun", "\"<$filepath$>,<$c64fileindex$>\"=@=1@@@-autorun=@=1@@@-fastload=@=1@@@"
                "-manualrun=@=0@@@-normalload=@=0@@@-window=@=1"},
    {"Attach", "\"<$filepath$>,<$c64fileindex$>\"=@=1@@@-fastload=@=0@@@-manualrun=@=1@@@"
               "-normalload=@=0@@@-window=@=1"},
    {"Autostart (Original File)", "-confirmexit=@=1@@@-autostart "
                                  "\"<$filepath$>:<$c64filename$>\"=@=1@@@-fullscreen=@=0@@@"
                                  "-VICIIdsize=@=1"},
    {"Autostart Disc (Temporary File)", "+confirmexit=@=1@@@-autostart \"<$filepath$>\"=@=1@@@"
                                        "-fullscreen=@=0@@@UseTempFile=@=1@@@-VICIIdsize=@=1"},
    {"Attach Disc",
     "+confirmexit=@=1@@@-8 \"<$filepath$>\"=@=1@@@-fullscreen=@=0@@@-VICIIdsize=@=1"},
    {"Attach Tape",
     "+confirmexit=@=1@@@-1 \"<$filepath$>\"=@=1@@@-fullscreen=@=0@@@-VICIIdsize=@=1"},
    {"Autoload (Temporary File)",
     "-autoload \"<$filepath$>\" 0=@=1@@@-quickload=@=0@@@UseTempFile=@=1"},
    {"Attach", "-autoload \"<$filepath$>\" 999=@=1@@@-quickload=@=0"},
    {"Cartridge", "-cartcrt \"<$filepath$>\"=@=1@@@-fullscreen=@=0@@@-VICIIdsize=@=1"},
    {"Autoload", "\"<$filepath$>\" <$c64fileindex$>=@=1@@@-nokernal=@=1"},
    {"Mount Disc", "\"<$filepath$>\"=@=1@@@-diskmount=@=1@@@-hreset=@=1"},
    {"Open", "\"<$filepath$>\"=@=1"},
    {"Attach", "+link \"<$filepath$>\"=@=1"},
    {"Attach Flip list", "-flipname \"<$filepath$>\"=@=1@@@-fullscreen=@=0@@@-VICIIdsize=@=1"},
}};

// Default name and path of a built-in emulator of each type (the path is a placeholder that
// fails the existence test until the user sets the real one).
constexpr std::array<const char*, kEmulTypeCount> kDefaultEmulNames = {
    "File-Tool", "VICE", "CCS64", "HOXS64", "EMU64", "MICRO64"};
constexpr std::array<const char*, kEmulTypeCount> kDefaultEmulPaths = {
    "xxxTool.exe", "VICE", "CCS64", "HOXS64", "EMU64", "MICRO64"};

// Profile set per start extension (.D64 .. .VFL) for the types 1..5.
constexpr int kExtensionSets[5][kStartExtensionCount] = {
    {4, 4, 3, 3, 3, 3, 3, 1, 9, 3, 3, 14},        // VICE
    {1, 4, 1, 1, 1, 1, 3, 1, 1, 1, 3, 14},        // CCS64
    {7, 4, 7, 7, 7, 7, 3, 1, 7, 7, 3, 14},        // HOXS64
    {10, 4, 10, 10, 10, 10, 3, 1, 10, 10, 3, 14}, // EMU64
    {13, 4, 13, 13, 13, 13, 3, 1, 13, 13, 3, 14}, // MICRO64
};

bool validSet(int set)
{
    return set >= 1 && set <= kProfilSetCount;
}

} // namespace

const QStringList& StartExtensions()
{
    static const QStringList list = catalogue::kStartExtensions.split(QLatin1Char(';'));
    return list;
}

int StartExtensionIndex(const QString& extension)
{
    return int(StartExtensions().indexOf(extension.toUpper()));
}

void SetEmulTypeNames()
{
    gEmulTypeNames[0] = app::Translate(QStringLiteral("Sonstige"));
}

QString EmulTypeCaption(int type)
{
    if (type < 0 || type >= kEmulTypeCount)
        return {};
    return type == 0 ? gEmulTypeNames[0] + QStringLiteral("\\File-Tool") : gEmulTypeNames[type];
}

QString DefaultProfilName(int set)
{
    return validSet(set) ? QString::fromUtf8(kProfilSets[set - 1].name) : QString();
}

QString DefaultProfilOptions(int set)
{
    return validSet(set) ? QString::fromUtf8(kProfilSets[set - 1].options) : QString();
}

QList<int> DefaultProfilSets(int type)
{
    switch (type) {
    case 0:
        return {12};
    case 1:
        return {3, 4, 5, 6, 9, 14};
    case 2:
        return {1, 2};
    case 3:
        return {7, 8};
    case 4:
        return {10, 11};
    case 5:
        return {13};
    default:
        return {};
    }
}

EmulatorPtr AddEmulator(int key, int type, const QString& name, const QString& path,
                        Emulators& emulators, bool aktiv)
{
    auto emulator = std::make_shared<clsEmulator>();
    emulator->Aktiv = aktiv;
    emulator->EmulType = type;
    emulator->Key = QString::number(key);
    emulator->Name = name;
    emulator->Path = path;
    return emulators.add(emulator->Key, emulator);
}

ProfilPtr AddProfil(Profils& profils, const QString& emulKey, const QString& name,
                    const QString& options, bool aktiv, int key)
{
    ++gProfilKeyCounter;
    auto profil = std::make_shared<clsProfil>();
    profil->Aktiv = aktiv;
    profil->EmulKey = emulKey;
    profil->Key = QString::number(key != 0 ? key : gProfilKeyCounter);
    profil->Name = name;
    profil->Options = options;
    return profils.add(profil->Key, profil);
}

EmulatorPtr AddDefaultEmulator(int key, int type, Emulators& emulators, Profils& profils,
                               bool useSetNumbers)
{
    if (type < 0 || type >= kEmulTypeCount)
        return nullptr;
    EmulatorPtr emulator = AddEmulator(key, type, QString::fromUtf8(kDefaultEmulNames[type]),
                                       QString::fromUtf8(kDefaultEmulPaths[type]), emulators, true);
    if (!emulator)
        return nullptr;
    for (int set : DefaultProfilSets(type))
        AddDefaultProfile(emulator->Key, set, profils, useSetNumbers);
    return emulator;
}

ProfilPtr AddDefaultProfile(const QString& emulKey, int set, Profils& profils, bool useSetNumbers)
{
    if (!validSet(set))
        return nullptr;
    return AddProfil(profils, emulKey, DefaultProfilName(set), DefaultProfilOptions(set), true,
                     useSetNumbers ? set : 0);
}

int DefaultProfilForExtension(int type, int index)
{
    if (type < 1 || type > 5 || index < 0 || index >= kStartExtensionCount)
        return 0;
    return kExtensionSets[type - 1][index];
}

QString GetProfilCaption(const Emulators& emulators, const Profils& profils,
                         const QString& profilKey)
{
    const ProfilPtr profil = profils.find(profilKey);
    if (!profil)
        return {};
    const EmulatorPtr emulator = emulators.find(profil->EmulKey);
    return (emulator ? emulator->Name : QString()) + QStringLiteral(" - ") + profil->Name;
}

} // namespace vd::launch
