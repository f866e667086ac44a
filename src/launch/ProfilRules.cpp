#include "launch/ProfilRules.h"

#include "app/Translate.h"
#include "launch/OptionString.h"
#include "platform/DialogService.h"

namespace vd::launch {

namespace {

constexpr int kTypeVice = 1;
constexpr int kTypeCcs64 = 2;

// Keywords of the base profile per type: first lookup, then the fall-back.
constexpr std::array<const char*, kEmulTypeCount> kBaseKeywords = {
    "AUTOSTART", "AUTOSTART;USETEMPFILE", "AUTORUN", "AUTOLOAD;USETEMPFILE", "<$C64FILEINDEX$>",
    "LINK"};
constexpr std::array<const char*, kEmulTypeCount> kFallbackKeywords = {
    "AUTORUN", "AUTOSTART", "AUTORUN", "AUTOLOAD", "NOKERNAL", "LINK"};

void inform(const char* text)
{
    platform::dialogs().msgBox(app::Translate(QString::fromUtf8(text)), platform::vbInformation);
}

qsizetype activeProfils(const Profils& profils)
{
    qsizetype n = 0;
    for (const ProfilPtr& p : profils)
        n += (!p->Name.isEmpty() && p->Aktiv) ? 1 : 0;
    return n;
}

qsizetype activeEmulators(const Emulators& emulators)
{
    qsizetype n = 0;
    for (const EmulatorPtr& e : emulators)
        n += (!e->Name.isEmpty() && e->Aktiv) ? 1 : 0;
    return n;
}

// The candidate for extension `ext` when emulator `emulKey` of `type` becomes the standard.
// A special rule's lookup replaces the base candidate when it finds a profile.
ProfilPtr ruleFor(const ProfilConfig& config, const QString& ext, const QString& emulKey, int type,
                  const ProfilPtr& base)
{
    const bool vice = type == kTypeVice;
    auto ownOrVice = [&](const char* keywords) {
        return vice ? FindProfil(config.profils, emulKey, keywords)
                    : FindProfilOfType(config, kTypeVice, keywords);
    };
    if (ext == u".D64" || ext == u".D71" || ext == u".D81") {
        if (vice || type == 0 || ext == u".D64") {
            ProfilPtr p =
                FindProfil(config.profils, emulKey, vice ? "AUTOSTART;USETEMPFILE" : "AUTOSTART");
            if (!p && vice)
                p = FindProfil(config.profils, emulKey, "AUTOSTART");
            return p;
        }
        ProfilPtr p = FindProfilOfType(config, kTypeVice, "AUTOSTART;USETEMPFILE");
        return p ? p : FindProfilOfType(config, kTypeVice, "AUTOSTART");
    }
    if (ext == u".CRT")
        return vice ? FindProfil(config.profils, emulKey, "CARTCRT") : base;
    if (ext == u".VSF")
        return ownOrVice("AUTOSTART");
    if (ext == u".VFL")
        return ownOrVice("FLIPNAME");
    if (ext == u".C64")
        return type == kTypeCcs64 ? FindProfil(config.profils, emulKey, "AUTORUN")
                                  : FindProfilOfType(config, kTypeCcs64, "AUTORUN");
    return base;
}

ProfilPtr candidateFor(const ProfilConfig& config, const QString& ext, const QString& emulKey,
                       int type, const ProfilPtr& base)
{
    const ProfilPtr found = ruleFor(config, ext, emulKey, type, base);
    return found ? found : base;
}

} // namespace

ProfilConfig ProfilConfig::fromGlobals()
{
    return {gEmulators.clone(), gProfils.clone(), gDefaultProfil, gStartProfils};
}

void ProfilConfig::toGlobals() const
{
    gEmulators = emulators.clone();
    gProfils = profils.clone();
    gDefaultProfil = defaultProfil;
    gStartProfils = startProfils;
}

bool ProfilMatches(const clsProfil& profil, const QString& keywords)
{
    const OptionTable rows = ParseOptions(profil.Options);
    if (HasNoItems(rows))
        return false;
    for (const QString& keyword : keywords.split(u';', Qt::SkipEmptyParts)) {
        bool found = false;
        for (const OptionRow& row : rows)
            found = found || row.text.toUpper().contains(keyword);
        if (!found)
            return false;
    }
    return true;
}

ProfilPtr FindProfil(const Profils& profils, const QString& emulKey, const QString& keywords)
{
    for (const ProfilPtr& p : profils)
        if (!p->Name.isEmpty() && p->EmulKey == emulKey && ProfilMatches(*p, keywords))
            return p;
    return nullptr;
}

ProfilPtr FindProfilOfType(const ProfilConfig& config, int type, const QString& keywords)
{
    for (const EmulatorPtr& e : config.emulators) {
        if (e->Name.isEmpty() || e->EmulType != type)
            continue;
        if (ProfilPtr p = FindProfil(config.profils, e->Key, keywords))
            return p;
    }
    return nullptr;
}

bool AdaptExtensionsToEmulator(ProfilConfig& config, const QString& emulKey)
{
    const EmulatorPtr emulator = config.emulators.find(emulKey);
    if (!emulator || emulator->EmulType < 0 || emulator->EmulType >= kEmulTypeCount)
        return false;
    const int type = emulator->EmulType;
    ProfilPtr base = FindProfil(config.profils, emulKey, kBaseKeywords[size_t(type)]);
    if (!base)
        base = FindProfil(config.profils, emulKey, kFallbackKeywords[size_t(type)]);
    for (int i = 0; i < kStartExtensionCount; ++i) {
        const ProfilPtr candidate =
            candidateFor(config, StartExtensions().at(i), emulKey, type, base);
        if (candidate)
            config.startProfils[size_t(i)] = candidate->Key;
    }
    inform("Die Profilzuordnung wurde für den Emulator angepasst!");
    return true;
}

bool SetEmulatorChecked(ProfilConfig& config, const QString& emulKey, bool checked)
{
    const EmulatorPtr emulator = config.emulators.find(emulKey);
    if (!emulator)
        return false;
    if (checked) {
        emulator->Aktiv = true;
        for (const ProfilPtr& p : config.profils)
            if (p->EmulKey == emulKey)
                p->Aktiv = true;
        return true;
    }
    if (emulator->Aktiv && activeEmulators(config.emulators) == 1) {
        inform("Ein Emulator muss aktiv sein!");
        return false;
    }
    emulator->Aktiv = false;
    for (const ProfilPtr& p : config.profils)
        if (p->EmulKey == emulKey && p->Aktiv)
            SetProfilChecked(config, p->Key, false);
    return true;
}

bool SetProfilChecked(ProfilConfig& config, const QString& profilKey, bool checked)
{
    const ProfilPtr profil = config.profils.find(profilKey);
    if (!profil)
        return false;
    if (checked) {
        profil->Aktiv = true;
        if (const EmulatorPtr e = config.emulators.find(profil->EmulKey))
            e->Aktiv = true;
        return true;
    }
    if (profil->Aktiv && activeProfils(config.profils) == 1) {
        inform("Ein Profil muss aktiv sein!");
        return false;
    }
    profil->Aktiv = false;
    return true;
}

bool SetItemChecked(ProfilConfig& config, const QString& profilKey, int row, bool checked)
{
    const ProfilPtr profil = config.profils.find(profilKey);
    if (!profil)
        return false;
    OptionTable rows = ParseOptions(profil->Options);
    if (HasNoItems(rows) || row < 0 || row >= rows.size())
        return false;
    rows[row].flag = checked ? QStringLiteral("1") : QStringLiteral("0");
    profil->Options = JoinOptions(rows);
    if (checked)
        profil->Aktiv = true;
    return true;
}

bool DeleteProfil(ProfilConfig& config, const QString& profilKey)
{
    const ProfilPtr profil = config.profils.find(profilKey);
    if (!profil)
        return false;
    if (profil->Aktiv && activeProfils(config.profils) == 1) {
        inform("Ein Profil muss aktiv sein!");
        return false;
    }
    profil->Name.clear();
    profil->EmulKey.clear();
    if (config.defaultProfil == profilKey) {
        config.defaultProfil.clear();
        for (const ProfilPtr& p : config.profils) {
            if (!p->Name.isEmpty() && p->Aktiv) {
                config.defaultProfil = p->Key;
                break;
            }
        }
    }
    for (QString& assigned : config.startProfils)
        if (assigned == profilKey)
            assigned.clear();
    return true;
}

bool DeleteEmulator(ProfilConfig& config, const QString& emulKey)
{
    const EmulatorPtr emulator = config.emulators.find(emulKey);
    if (!emulator)
        return false;
    if (emulator->Aktiv && activeEmulators(config.emulators) == 1) {
        inform("Ein Emulator muss aktiv sein!");
        return false;
    }
    for (const ProfilPtr& p : config.profils)
        if (p->EmulKey == emulKey && !p->Name.isEmpty() && !DeleteProfil(config, p->Key))
            return false;
    emulator->Name.clear();
    return true;
}

void RemoveDeleted(ProfilConfig& config)
{
    for (qsizetype i = config.emulators.count() - 1; i >= 0; --i)
        if (config.emulators.at(i)->Name.isEmpty())
            config.emulators.removeAt(i);
    for (qsizetype i = config.profils.count() - 1; i >= 0; --i)
        if (config.profils.at(i)->Name.isEmpty())
            config.profils.removeAt(i);
}

} // namespace vd::launch
