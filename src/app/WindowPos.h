#pragma once
// Remembered window geometry: the section WINDOWS of the settings file and the rules that put a
// window back where it was. Geometry is kept in twips, 15 to a logical pixel. The rules are pure
// functions on rectangles; the windows apply them through ui/WindowGeometry.h.

#include <QString>
#include <QStringList>
#include <QVector>

namespace vd::app {

constexpr double kTwipsPerPixel = 15.0;

// Window states as the settings file numbers them.
constexpr int kWindowNormal = 0;
constexpr int kWindowMinimised = 1;
constexpr int kWindowMaximised = 2;

struct WindowEntry
{
    QString form;  // the form's name, the key in WINDOWS
    QString value; // "Top;Left;Height;Width;WindowState"
};

// The remembered windows in the order they are written: the order of closing.
extern QVector<WindowEntry> gWindows;

// The names of the forms whose geometry is read back, in the order they are read.
QStringList rememberedForms();

// Fills gWindows from WINDOWS, then, when that has no frmMain, from the old key frmMain of MAIN.
void loadWindowPositions();

// The entry of a form, "" when there is none.
QString windowEntry(const QString& form);
void removeWindowEntry(const QString& form);
// Replaces the form's entry by a new one at the end.
void setWindowEntry(const QString& form, const QString& value);

struct TwipRect
{
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;
};

struct FormDesign
{
    QString name;
    double width = 0; // the designed size, twips
    double height = 0;
    bool fixedBorder = false; // border style 1 or 3: the size can't be changed
};

struct WindowPlacement
{
    TwipRect rect;
    bool maximised = false;
    bool centred = false;   // no usable entry: the designed size in the middle of the screen
    bool dropEntry = false; // the entry no longer fits the form and is to be forgotten
};

// Where a form goes, given its entry ("" for none), its design, the available area of the
// screen it opens on, and the whole desktop (all screens). Top or left under 0 become 0; a size
// under the designed one becomes the designed one; a fixed form whose entry has another size is
// centred and its entry dropped; state 2 maximises, a minimised window comes back normal. An
// entry that would lie wholly outside the desktop (a screen that is gone) is centred too.
WindowPlacement placeWindow(const QString& entry, const FormDesign& form, const TwipRect& screen,
                            const TwipRect& desktop);
// The designed size in the middle of the screen.
TwipRect centredRect(const FormDesign& form, const TwipRect& screen);

// The text of an entry: Top;Left;Height;Width;WindowState.
QString windowPosText(const TwipRect& rect, int windowState);
// A twips number as the settings file writes it.
QString twipsText(double value);

} // namespace vd::app
