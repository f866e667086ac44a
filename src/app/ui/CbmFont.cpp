#include "app/ui/CbmFont.h"

#include "platform/Files.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>

namespace vd::app {

namespace {

const QString kCbm = QStringLiteral("CBM");
const QString kSixtyfour = QStringLiteral("C-64");

bool sameName(const QString& a, const QString& b)
{
    return a.toUpper() == b.toUpper();
}

} // namespace

QString fontFamilyFor(const QString& name)
{
    if (sameName(name, kCbm) && !QFontDatabase::hasFamily(kCbm) &&
        QFontDatabase::hasFamily(kSixtyfour))
        return kSixtyfour;
    return name;
}

QString familyReadBack(const QString& name)
{
    QFont font(name);
    return QFontInfo(font).family();
}

CbmFontSetup resolveCbmFont(const QString& keyFont, const QString& fontFile)
{
    CbmFontSetup setup;
    setup.name = keyFont.isEmpty() ? kCbm : keyFont;
    if (!sameName(familyReadBack(kCbm), kCbm) && platform::FileExists(fontFile)) {
        const int id = QFontDatabase::addApplicationFont(fontFile);
        const QStringList families = QFontDatabase::applicationFontFamilies(id);
        if (id >= 0 && !families.isEmpty()) {
            setup.fontId = id;
            setup.name = families.first();
        } else if (id >= 0) {
            QFontDatabase::removeApplicationFont(id);
        }
    }
    // The name as drawn: "CBM" means the C-64 family when the system has no CBM font.
    const QString family = fontFamilyFor(setup.name);
    const QString back = familyReadBack(family);
    if (!back.isEmpty() && !sameName(back, setup.name))
        setup.name = back;
    return setup;
}

void releaseCbmFont(CbmFontSetup& setup)
{
    if (setup.fontId >= 0)
        QFontDatabase::removeApplicationFont(setup.fontId);
    setup.fontId = -1;
}

QFont cbmFont(const QString& name, int pointSize)
{
    QFont font(fontFamilyFor(name));
    font.setPointSize(pointSize);
    return font;
}

} // namespace vd::app
