#include "app/ui/IconSet.h"

#include <memory>
#include <QHash>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace vd::app {

namespace {

constexpr auto kBadge = "badge-archive";

// The drawing of each file type, in the order of iFileType.
constexpr const char* kTypeFiles[15] = {"d64", "d71",  "t64", "prg", "p00", "tap",     "vsf", "c64",
                                        "crt", "text", "pdf", "g64", "d81", "picture", "vfl"};
// The views in the order of their numbers 16 to 21.
constexpr const char* kViewFiles[6] = {"view-files",    "view-mainfiles", "view-categories",
                                       "view-newfiles", "view-last",      "view-top"};

// One parsed renderer per drawing for the whole run: icons are made often (each list and
// side row asks), parsing is not free, and the drawings never change.
QSvgRenderer* rendererOf(const QString& name)
{
    static QHash<QString, std::shared_ptr<QSvgRenderer>> renderers;
    auto it = renderers.find(name);
    if (it == renderers.end())
        it = renderers.insert(
            name, std::make_shared<QSvgRenderer>(QStringLiteral(":/icons/%1.svg").arg(name)));
    return it.value()->isValid() ? it.value().get() : nullptr;
}

// Draws its drawings one over the other at any size, so the icons stay sharp at 16 pixels and
// on a display scaled by two alike, without Qt's own SVG icon plugin.
class LayeredSvgEngine final : public QIconEngine
{
public:
    explicit LayeredSvgEngine(QStringList layers) : m_layers(std::move(layers)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal dpr = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        QImage image = rendered(rect.size() * dpr, mode);
        image.setDevicePixelRatio(dpr);
        painter->drawImage(rect, image);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        return QPixmap::fromImage(rendered(size, mode));
    }

    // QIcon hands over the size in device pixels already, the scale only to be recorded.
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override
    {
        QPixmap pixmap = QPixmap::fromImage(rendered(size, mode));
        pixmap.setDevicePixelRatio(scale);
        return pixmap;
    }

    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
    QIconEngine* clone() const override { return new LayeredSvgEngine(m_layers); }
    QString key() const override { return QStringLiteral("vd-layered-svg"); }
    QString iconName() override { return m_layers.join(QLatin1Char('+')); }

    bool isNull() override
    {
        for (const QString& layer : m_layers)
            if (!rendererOf(layer))
                return true;
        return m_layers.isEmpty();
    }

private:
    QImage rendered(const QSize& size, QIcon::Mode mode)
    {
        if (size.isEmpty())
            return {};
        const quint64 key = (quint64(size.width()) << 32) | (quint64(size.height()) << 8) |
                            quint64(mode == QIcon::Disabled);
        if (const auto it = m_cache.constFind(key); it != m_cache.constEnd())
            return it.value();
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        {
            QPainter p(&image);
            p.setRenderHint(QPainter::Antialiasing);
            for (const QString& layer : m_layers)
                if (QSvgRenderer* r = rendererOf(layer))
                    r->render(&p, QRectF(QPointF(0, 0), QSizeF(size)));
        }
        if (mode == QIcon::Disabled)
            greyOut(image);
        if (m_cache.size() > 16) // a few sizes in a run; never let it grow without end
            m_cache.clear();
        m_cache.insert(key, image);
        return image;
    }

    // A disabled icon: grey and faint, as the style does with its own icons.
    static void greyOut(QImage& image)
    {
        for (int y = 0; y < image.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < image.width(); ++x) {
                const QRgb c = line[x];
                const int a = qAlpha(c) * 2 / 5;
                const int g = qGray(c) * 2 / 5; // premultiplied, as the alpha
                line[x] = qRgba(g, g, g, a);
            }
        }
    }

    QStringList m_layers;
    QHash<quint64, QImage> m_cache;
};

QIcon drawing(QStringList layers)
{
    return QIcon(new LayeredSvgEngine(std::move(layers)));
}

struct KeyEntry
{
    const char* key;
    int index;
};

// Keys that stand for a number of the list. "TXT" and "GFX" are the text and picture types.
constexpr KeyEntry kKeys[] = {
    {"FILES", 16},
    {"MAINFILES", 17},
    {"CATEGORIES", 18},
    {"NEWFILES", 19},
    {"LAST", 20},
    {"TOP", 21},
    {"TXT", 10},
    {"GFX", 14},
    {"ZIP", 24},
    // Extensions. The start extensions by their type, then the other catalogued kinds.
    {"D64", 1},
    {"D71", 2},
    {"T64", 3},
    {"PRG", 4},
    {"P00", 5},
    {"TAP", 6},
    {"VSF", 7},
    {"C64", 8},
    {"CRT", 9},
    {"G64", 12},
    {"D81", 13},
    {"VFL", 15},
    {"NFO", 10},
    {"DIZ", 10},
    {"PDF", 11},
    {"BMP", 14},
    {"GIF", 14},
    {"JPG", 14},
    {"PNG", 14},
    {"TIFF", 14},
    {"RAR", 24},
    {"7Z", 24},
    {"CAB", 24}};

} // namespace

QIcon IconSet::icon(int index)
{
    if (index >= 1 && index <= 15)
        return drawing({QString::fromLatin1(kTypeFiles[index - 1])});
    if (index >= kFirstView && index < kFirstView + 6)
        return drawing({QString::fromLatin1(kViewFiles[index - kFirstView])});
    if (index == kArchive)
        return drawing({QStringLiteral("zip")});
    if (index > kArchive && index <= kCount)
        return drawing(
            {QString::fromLatin1(kTypeFiles[index - kArchive - 1]), QString::fromLatin1(kBadge)});
    return {};
}

int IconSet::keyIndex(const QString& key)
{
    QString k = key.trimmed().toUpper();
    if (k.startsWith(QLatin1Char('.')))
        k.remove(0, 1);
    bool number = false;
    const int n = k.toInt(&number);
    if (number)
        return n >= 1 && n <= kCount && !icon(n).isNull() ? n : 0;
    for (const KeyEntry& e : kKeys)
        if (k == QLatin1String(e.key))
            return e.index;
    return 0;
}

QIcon IconSet::keyIcon(const QString& key)
{
    if (const int n = keyIndex(key))
        return icon(n);
    const QString k = key.trimmed().toUpper();
    if (k == QLatin1String("OFF"))
        return drawing({QStringLiteral("off")});
    if (k == QLatin1String("START"))
        return drawing({QStringLiteral("start")});
    return drawing({QStringLiteral("filter")});
}

QVector<QIcon> IconSet::imageList()
{
    QVector<QIcon> list(kCount);
    for (int n = 1; n <= kCount; ++n)
        list[n - 1] = icon(n);
    return list;
}

QStringList IconSet::keys()
{
    return {QStringLiteral("MAINFILES"), QStringLiteral("FILES"),  QStringLiteral("CATEGORIES"),
            QStringLiteral("NEWFILES"),  QStringLiteral("LAST"),   QStringLiteral("TOP"),
            QStringLiteral("OFF"),       QStringLiteral("FILTER"), QStringLiteral("TXT"),
            QStringLiteral("GFX"),       QStringLiteral("ZIP"),    QStringLiteral("START")};
}

int RowIcon(int value, int isArchiv)
{
    if (isArchiv != 0 && value >= 1 && value <= 15)
        return value + IconSet::kArchive;
    return value;
}

} // namespace vd::app
