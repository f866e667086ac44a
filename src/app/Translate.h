#pragma once
// Every user text of the program goes through Translate. The texts are the German originals;
// until a language file is loaded, a text comes back as it is, with "@1" replaced by the
// parameter.

#include <QString>

namespace vd::app {

QString Translate(const QString& text, const QString& param = {});

} // namespace vd::app
