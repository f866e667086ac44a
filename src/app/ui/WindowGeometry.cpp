#include "app/ui/WindowGeometry.h"

#include <cmath>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace vd::app {

namespace {

int pixels(double twips)
{
    return int(std::lround(twips / kTwipsPerPixel));
}

QScreen* screenOf(const QWidget& form)
{
    if (QScreen* s = form.screen())
        return s;
    return QGuiApplication::primaryScreen();
}

} // namespace

TwipRect toTwips(const QRect& r)
{
    return TwipRect{r.x() * kTwipsPerPixel, r.y() * kTwipsPerPixel, r.width() * kTwipsPerPixel,
                    r.height() * kTwipsPerPixel};
}

QRect toPixels(const TwipRect& t)
{
    return QRect(pixels(t.left), pixels(t.top), pixels(t.width), pixels(t.height));
}

void RestoreWindowPos(QWidget& form, const FormDesign& design)
{
    const QScreen* screen = screenOf(form);
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
    const QRect desktop = screen ? screen->virtualGeometry() : available;
    const WindowPlacement placement =
        placeWindow(windowEntry(design.name), design, toTwips(available), toTwips(desktop));
    if (placement.dropEntry)
        removeWindowEntry(design.name);
    const QRect r = toPixels(placement.rect);
    form.move(r.topLeft());
    form.resize(r.size());
    form.setWindowState(placement.maximised ? Qt::WindowMaximized : Qt::WindowNoState);
}

void SaveWindowPos(const QWidget& form, const QString& name)
{
    int state = kWindowNormal;
    if (form.isMaximized())
        state = kWindowMaximised;
    else if (form.isMinimized())
        state = kWindowMinimised;
    const QRect normal =
        state == kWindowNormal || !form.normalGeometry().isValid()
            ? QRect(form.pos(), form.size())
            : QRect(form.normalGeometry().topLeft() - (form.geometry().topLeft() - form.pos()),
                    form.normalGeometry().size());
    setWindowEntry(name, windowPosText(toTwips(normal), state));
}

} // namespace vd::app
