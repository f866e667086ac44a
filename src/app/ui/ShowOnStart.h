#pragma once
// "--show NAME": a switch for making the README's pictures, not listed in any help. After the
// main window's first activation (the catalogue is open) it runs the menu command whose object
// name is NAME, as a click on it would, e.g. "mnuOpenPreview", "mnuGBOpen" or "mnuOption".

#include <QString>
#include <QStringList>

class QWidget;

namespace vd::app::ui {

// Takes "--show NAME" out of `arguments` (each one given is kept, in order) and returns the
// names.
QStringList takeShowOption(QStringList& arguments);

// Runs the commands `names` of `window`, one after the other, once `ready()` says the first
// activation is over. A name with no command, or one that is disabled, is reported on stderr.
void showOnStart(QWidget* window, const QStringList& names, bool (*ready)(QWidget*));

} // namespace vd::app::ui
