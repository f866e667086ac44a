#pragma once
// The font of the C64 names. The program asks for "CBM" by name. When the system has no font of
// that name, a Tools/CBM.ttf that the user supplies is added for the run and wins; otherwise
// "CBM" is drawn with the family "C-64" (fonts-sixtyfour). Whatever name the system gives back
// for the requested font is the one kept.

#include <QString>

class QFont;

namespace vd::app {

struct CbmFontSetup
{
    QString name;    // gFontName after the resolution
    int fontId = -1; // the application font added for this run, -1 for none (sFontFile)
};

// The family a font name is drawn with: "CBM" without such a font on the system is "C-64".
QString fontFamilyFor(const QString& name);
// The family the system gives for a requested name (a missing family gives its substitute).
QString familyReadBack(const QString& name);

// Step 1 of the main window's load: `keyFont` is the key Font ("" reads as "CBM"), `fontFile`
// the path of Tools/CBM.ttf.
CbmFontSetup resolveCbmFont(const QString& keyFont, const QString& fontFile);

// Takes the font of this run back out of the application (the unload).
void releaseCbmFont(CbmFontSetup& setup);

// The font of the C64 names at a size.
QFont cbmFont(const QString& name, int pointSize);

} // namespace vd::app
