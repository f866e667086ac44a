// Build-time tool: renders the program's SVG icon into the PNG sizes of the hicolor theme, so
// desktops that don't scale SVG icons (and small panel sizes) get sharp pictures.
//
//   vellumdock-render-icon ICON.svg OUTDIR SIZE...
//
// writes OUTDIR/<SIZE>x<SIZE>/apps/<name of ICON>.png for each SIZE.

#include <cstdio>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <QSvgRenderer>

int main(int argc, char* argv[])
{
    if (argc < 4) {
        std::fprintf(stderr, "Usage: %s ICON.svg OUTDIR SIZE...\n", argv[0]);
        return 2;
    }
    const QString svg = QString::fromLocal8Bit(argv[1]);
    const QString outDir = QString::fromLocal8Bit(argv[2]);
    QSvgRenderer renderer(svg);
    if (!renderer.isValid()) {
        std::fprintf(stderr, "Not a readable SVG file: %s\n", argv[1]);
        return 1;
    }
    const QString name = QFileInfo(svg).completeBaseName() + QStringLiteral(".png");
    for (int i = 3; i < argc; ++i) {
        bool ok = false;
        const int size = QString::fromLocal8Bit(argv[i]).toInt(&ok);
        if (!ok || size < 1 || size > 1024) {
            std::fprintf(stderr, "Not an icon size: %s\n", argv[i]);
            return 2;
        }
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
        painter.end();
        const QString folder = QStringLiteral("%1/%2x%2/apps").arg(outDir).arg(size);
        if (!QDir().mkpath(folder) || !image.save(folder + QLatin1Char('/') + name)) {
            std::fprintf(stderr, "Cannot write %s/%s\n", qPrintable(folder), qPrintable(name));
            return 1;
        }
    }
    return 0;
}
