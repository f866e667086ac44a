#pragma once
// What the start menus, the toolbar button "Start" and the list lvStart offer: one entry per
// active profile, in collection order.

#include "launch/Profiles.h"

#include <QList>

namespace vd::launch {

struct StartMenuEntry
{
    QString caption; // GetProfilCaption
    QString tag;     // "Profil" and the profile's Key
};

// The entries of BuildStartMenu; only the profile's own Aktiv counts.
QList<StartMenuEntry> StartMenuEntries(const Emulators& emulators, const Profils& profils);
// The profile key of a menu or list tag: the tag without its first six characters.
QString ProfilKeyFromTag(const QString& tag);

} // namespace vd::launch
