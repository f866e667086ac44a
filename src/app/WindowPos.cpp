#include "app/WindowPos.h"

#include "app/Settings.h"

#include <cmath>

namespace vd::app {

QVector<WindowEntry> gWindows;

namespace {

// Two literals joined at run time, as the list has always been held.
const QString kFormsA = QStringLiteral(
    "frmC64File,frmCategory,frmColumnHeader,frmEditEmu,frmEditParams,frmEditProfil,frmLegend,"
    "frmResult,");
const QString kFormsB = QStringLiteral("frmFile,frmGB,frmGBFilter,frmMain,frmMainFilter,"
                                       "frmNewPath,frmOptions,frmProcess,frmSearch,frmPreview,"
                                       "frmFlipList");

qsizetype indexOf(const QString& form)
{
    for (qsizetype i = 0; i < gWindows.size(); ++i) {
        if (gWindows[i].form.compare(form, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

bool intersects(const TwipRect& a, const TwipRect& b)
{
    return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
           b.top < a.top + a.height;
}

bool isUsable(double v)
{
    return std::isfinite(v) && std::abs(v) < 1.0e9;
}

} // namespace

QStringList rememberedForms()
{
    return (kFormsA + kFormsB).split(QLatin1Char(','));
}

void loadWindowPositions()
{
    gWindows.clear();
    for (const QString& form : rememberedForms()) {
        const QString value = ReadIni(kSectionWindows, form, QString());
        if (!value.isEmpty())
            gWindows.append(WindowEntry{form, value});
    }
    if (indexOf(QStringLiteral("frmMain")) < 0) {
        const QString old = ReadIni(kSectionMain, QStringLiteral("frmMain"), QString());
        if (!old.isEmpty())
            gWindows.append(WindowEntry{QStringLiteral("frmMain"), old});
    }
}

QString windowEntry(const QString& form)
{
    const qsizetype i = indexOf(form);
    return i < 0 ? QString() : gWindows[i].value;
}

void removeWindowEntry(const QString& form)
{
    const qsizetype i = indexOf(form);
    if (i >= 0)
        gWindows.removeAt(i);
}

void setWindowEntry(const QString& form, const QString& value)
{
    removeWindowEntry(form);
    gWindows.append(WindowEntry{form, value});
}

TwipRect centredRect(const FormDesign& form, const TwipRect& screen)
{
    return TwipRect{screen.left + (screen.width - form.width) / 2,
                    screen.top + (screen.height - form.height) / 2, form.width, form.height};
}

WindowPlacement placeWindow(const QString& entry, const FormDesign& form, const TwipRect& screen,
                            const TwipRect& desktop)
{
    WindowPlacement centred;
    centred.rect = centredRect(form, screen);
    centred.centred = true;
    const QStringList fields = entry.split(QLatin1Char(';'));
    if (entry.isEmpty() || fields.size() < 4)
        return centred;
    TwipRect r{Val(fields[1]), Val(fields[0]), Val(fields[3]), Val(fields[2])};
    if (!isUsable(r.left) || !isUsable(r.top) || !isUsable(r.width) || !isUsable(r.height))
        return centred;
    r.top = std::max(r.top, 0.0);
    r.left = std::max(r.left, 0.0);
    r.height = std::max(r.height, form.height);
    r.width = std::max(r.width, form.width);
    if (form.fixedBorder && (r.height != form.height || r.width != form.width)) {
        centred.dropEntry = true;
        return centred;
    }
    if (!intersects(r, desktop))
        return centred;
    WindowPlacement placed;
    placed.rect = r;
    placed.maximised = fields.size() > 4 && intVal(fields[4]) == kWindowMaximised;
    return placed;
}

QString twipsText(double value)
{
    const float single = float(value);
    if (std::nearbyint(single) == single && std::abs(single) < 1.0e7f)
        return QString::number(qint64(single));
    return QString::number(double(single), 'g', 7);
}

QString windowPosText(const TwipRect& rect, int windowState)
{
    return QStringList{twipsText(rect.top), twipsText(rect.left), twipsText(rect.height),
                       twipsText(rect.width), QString::number(windowState)}
        .join(QLatin1Char(';'));
}

} // namespace vd::app
