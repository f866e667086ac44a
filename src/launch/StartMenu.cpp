#include "launch/StartMenu.h"

namespace vd::launch {

QList<StartMenuEntry> StartMenuEntries(const Emulators& emulators, const Profils& profils)
{
    QList<StartMenuEntry> entries;
    for (const ProfilPtr& p : profils)
        if (p->Aktiv && !p->Name.isEmpty())
            entries.append(
                {GetProfilCaption(emulators, profils, p->Key), QStringLiteral("Profil") + p->Key});
    return entries;
}

QString ProfilKeyFromTag(const QString& tag)
{
    return tag.mid(6);
}

} // namespace vd::launch
