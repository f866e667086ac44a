#pragma once
// RestoreWindowPos and SaveWindowPos for real windows: the rules of app/WindowPos.h applied to a
// widget, with 15 twips to a logical pixel.

#include "app/WindowPos.h"

#include <QRect>

class QWidget;

namespace vd::app {

TwipRect toTwips(const QRect& pixels);
QRect toPixels(const TwipRect& twips);

// Called from the load of each remembered form: moves and sizes `form` after its entry in
// gWindows, or centres it at its designed size. A maximised entry sets the maximised state,
// which takes effect when the form is shown.
void RestoreWindowPos(QWidget& form, const FormDesign& design);

// Called from the unload: the form's normal geometry and state become its entry, at the end of
// gWindows.
void SaveWindowPos(const QWidget& form, const QString& name);

} // namespace vd::app
