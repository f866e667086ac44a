#include "launch/EditorRules.h"

#include "app/Translate.h"
#include "launch/OptionString.h"
#include "platform/DialogService.h"
#include "platform/Files.h"

#include <QStandardPaths>

namespace vd::launch {

namespace {

// A bare program name counts as a path when the start would find it on PATH.
bool emulatorPathExists(const QString& path)
{
    if (platform::FileExists(path))
        return true;
    return !path.contains(u'/') && !QStandardPaths::findExecutable(path).isEmpty();
}

void inform(const QString& text)
{
    platform::dialogs().msgBox(app::Translate(text), platform::vbInformation);
}

} // namespace

QStringList ParamSuggestions(const Profils& profils, const QString& emulKey)
{
    QStringList texts;
    for (const ProfilPtr& p : profils) {
        if (p->EmulKey != emulKey || p->Name.isEmpty())
            continue;
        const OptionTable rows = ParseOptions(p->Options);
        if (HasNoItems(rows))
            continue;
        for (const OptionRow& row : rows)
            if (!row.text.isEmpty() && !texts.contains(row.text))
                texts << row.text;
    }
    for (const char* suggestion :
         {"<$C64FileName$>", "<$C64FileIndex$>", "\"<$filepath$>\"", "<$input$>", "UseTempFile"})
        if (!texts.contains(QLatin1String(suggestion)))
            texts << QLatin1String(suggestion);
    return texts;
}

bool SaveParam(clsProfil& profil, int row, const QString& text)
{
    if (text.isEmpty()) {
        inform(QStringLiteral("Bitte geben Sie einen Parameter an!"));
        return false;
    }
    OptionTable rows = ParseOptions(profil.Options);
    const bool noItems = HasNoItems(rows);
    if (!noItems) {
        for (const OptionRow& r : rows) {
            if (r.text == text) {
                inform(QStringLiteral("Dieser Parameter besteht schon!"));
                return false;
            }
        }
    }
    if (row < 0) {
        if (!noItems)
            rows.append(OptionRow{});
        row = int(rows.size()) - 1;
        rows[row].flag = QStringLiteral("1");
    } else if (noItems || row >= rows.size()) {
        return false;
    }
    rows[row].text = text;
    profil.Options = JoinOptions(rows);
    return true;
}

QString SaveProfil(ProfilConfig& config, const QString& emulKey, const QString& profilKey,
                   const QString& name, bool silent, bool makeDefault)
{
    if (name.isEmpty()) {
        if (!silent)
            inform(QStringLiteral("Bitte geben Sie einen Profilnamen an!"));
        return {};
    }
    for (const ProfilPtr& p : config.profils) {
        if (p->EmulKey == emulKey && p->Name == name) {
            if (!silent)
                inform(QStringLiteral("Dieser Name besteht schon!"));
            return {};
        }
    }
    ProfilPtr profil = config.profils.find(profilKey);
    if (profilKey.isEmpty() || !profil)
        profil = AddProfil(config.profils, emulKey, name, QString(), true, 0);
    if (!profil)
        return {};
    profil->Name = name;
    if (makeDefault)
        config.defaultProfil = profil->Key;
    return profil->Key;
}

QString CheckEmulatorInput(const Emulators& emulators, const QString& emulKey, const QString& name,
                           const QString& path)
{
    if (name.isEmpty())
        return app::Translate(QStringLiteral("Bitte geben Sie einen Emulator an!"));
    const EmulatorPtr current = emulators.find(emulKey);
    if (!current || current->Name != name)
        for (const EmulatorPtr& e : emulators)
            if (e != current && e->Name == name)
                return app::Translate(QStringLiteral("Dieser Name besteht schon!"));
    const bool pathChanged = !current || current->Path != path;
    if (path.isEmpty() || (pathChanged && !emulatorPathExists(path)))
        return app::Translate(QStringLiteral("Ungültiger Emulator-Pfad: ")) + path;
    return {};
}

int NextEmulatorKey(const Emulators& emulators)
{
    int highest = 0;
    for (const EmulatorPtr& e : emulators)
        highest = std::max(highest, e->Key.toInt());
    return highest + 1;
}

} // namespace vd::launch
