// The program's own icons: every number and key the windows ask for draws something at 16 and
// 32 pixels and on a display scaled by two; each drawing is its own; a file inside an archive
// keeps its type's picture under the archive badge; unknown numbers and keys behave as defined;
// and the main window's tree, lists and side lists carry these icons.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/ui/IconSet.h"
#include "browser/ui/frmMain.h"
#include "browser/ViewBuilder.h"
#include "catalogue/Catalogue.h"
#include "controls/ui/SimpleReport.h"
#include "controls/ui/UserTree.h"
#include "platform/ScriptedDialogService.h"

#include <memory>
#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

using namespace vd;
using app::IconSet;

namespace {

QImage draw(const QIcon& icon, int size, QIcon::Mode mode = QIcon::Normal)
{
    return icon.pixmap(QSize(size, size), mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

int paintedPixels(const QImage& image)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            n += qAlpha(image.pixel(x, y)) > 32 ? 1 : 0;
    return n;
}

// The numbers the catalogue and the view statements hand to the tree and the lists.
QList<int> numbersInUse()
{
    QList<int> n;
    for (int i = 1; i <= 21; ++i)
        n << i;
    for (int i = 24; i <= 39; ++i)
        n << i;
    return n;
}

bool sameDrawing(const QIcon& a, const QIcon& b)
{
    return draw(a, 16) == draw(b, 16) && draw(a, 32) == draw(b, 32);
}

} // namespace

class TestIconSet : public QObject
{
    Q_OBJECT

private slots:
    void everyNumberDrawsAtBothSizes_data();
    void everyNumberDrawsAtBothSizes();
    void everyDrawingIsItsOwn();
    void archivedTypeKeepsItsPictureUnderTheBadge();
    void keysNameTheirNumbers_data();
    void keysNameTheirNumbers();
    void unknownNumbersAndKeys();
    void disabledIconsAreGreyAndFaint();
    void rowIconAddsTheArchiveOffsetToFileTypesOnly_data();
    void rowIconAddsTheArchiveOffsetToFileTypesOnly();
    void mainWindowRowsCarryTheIcons();
};

void TestIconSet::everyNumberDrawsAtBothSizes_data()
{
    QTest::addColumn<int>("index");
    for (int n : numbersInUse())
        QTest::addRow("%d", n) << n;
}

void TestIconSet::everyNumberDrawsAtBothSizes()
{
    QFETCH(int, index);
    const QIcon icon = IconSet::icon(index);
    QVERIFY(!icon.isNull());
    // At least a sixth of the square is painted: a missing or empty drawing paints nothing.
    for (int size : {16, 32}) {
        const QImage image = draw(icon, size);
        QCOMPARE(image.size(), QSize(size, size));
        QVERIFY2(paintedPixels(image) > size * size / 6, qPrintable(QString::number(size)));
    }
    // Scaled by two, the 16-pixel icon has 32 device pixels of its own.
    const QPixmap hi = icon.pixmap(QSize(16, 16), 2.0);
    QCOMPARE(hi.size(), QSize(32, 32));
    QCOMPARE(hi.devicePixelRatio(), 2.0);
    QImage hiImage = hi.toImage().convertToFormat(QImage::Format_ARGB32);
    hiImage.setDevicePixelRatio(1.0);
    QCOMPARE(hiImage, draw(icon, 32));
}

void TestIconSet::everyDrawingIsItsOwn()
{
    // Two numbers that share a drawing are a slip in the tables, not a design.
    QList<QPair<QString, QImage>> seen;
    for (int n : numbersInUse())
        seen.append({QString::number(n), draw(IconSet::icon(n), 16)});
    for (const char* key : {"OFF", "FILTER", "START"})
        seen.append(
            {QString::fromLatin1(key), draw(IconSet::keyIcon(QString::fromLatin1(key)), 16)});
    for (qsizetype i = 0; i < seen.size(); ++i)
        for (qsizetype j = i + 1; j < seen.size(); ++j)
            QVERIFY2(seen[i].second != seen[j].second,
                     qPrintable(seen[i].first + QStringLiteral(" = ") + seen[j].first));
}

void TestIconSet::archivedTypeKeepsItsPictureUnderTheBadge()
{
    for (int type = 1; type <= 15; ++type) {
        const QImage plain = draw(IconSet::icon(type), 32);
        const QImage archived = draw(IconSet::icon(type + 24), 32);
        QVERIFY2(plain != archived, qPrintable(QString::number(type)));
        // The badge with its white rim sits in the lower right quarter (from 15 of 32 pixels
        // on); the rest is the type's own picture.
        QCOMPARE(archived.copy(0, 0, 32, 15), plain.copy(0, 0, 32, 15));
        QCOMPARE(archived.copy(0, 15, 15, 17), plain.copy(0, 15, 15, 17));
        QVERIFY(archived.copy(16, 16, 16, 16) != plain.copy(16, 16, 16, 16));
    }
}

void TestIconSet::keysNameTheirNumbers_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("index");
    // The views' keys are their icons 16 to 21 (view + 15), as the tree's root uses them.
    for (int view = 1; view <= 6; ++view)
        QTest::addRow("view %d", view) << browser::ViewImageKey(view) << view + 15;
    QTest::newRow("TXT") << "TXT" << 10;
    QTest::newRow("GFX") << "GFX" << 14;
    QTest::newRow("ZIP") << "ZIP" << 24;
    // A filter on iFileType keeps the number itself as its image.
    QTest::newRow("number") << "13" << 13;
    QTest::newRow("archived number") << "27" << 27;
    // Extensions, with and without their point, in any case.
    QTest::newRow("D64") << "D64" << 1;
    QTest::newRow(".prg") << ".prg" << 4;
    QTest::newRow("G64") << "G64" << 12;
    QTest::newRow("VFL") << "VFL" << 15;
    QTest::newRow("NFO") << "NFO" << 10;
    QTest::newRow("TIFF") << "TIFF" << 14;
    QTest::newRow("7Z") << "7Z" << 24;
}

void TestIconSet::keysNameTheirNumbers()
{
    QFETCH(QString, key);
    QFETCH(int, index);
    QCOMPARE(IconSet::keyIndex(key), index);
    QVERIFY(sameDrawing(IconSet::keyIcon(key), IconSet::icon(index)));
}

void TestIconSet::unknownNumbersAndKeys()
{
    // 0 is the IsArchiv of a file on disk: its column shows nothing.
    for (int n : {-1, 0, 22, 23, 40})
        QVERIFY2(IconSet::icon(n).isNull(), qPrintable(QString::number(n)));
    for (const QString& key : IconSet::keys()) {
        const QIcon icon = IconSet::keyIcon(key);
        QVERIFY2(!icon.isNull() && paintedPixels(draw(icon, 16)) > 16 * 16 / 6, qPrintable(key));
    }
    const QIcon filter = IconSet::keyIcon(QStringLiteral("FILTER"));
    QCOMPARE(IconSet::keyIndex(QStringLiteral("FILTER")), 0);
    QCOMPARE(IconSet::keyIndex(QStringLiteral("OFF")), 0);
    QVERIFY(!sameDrawing(IconSet::keyIcon(QStringLiteral("OFF")), filter));
    // Whatever names no image shows as a filter, never as nothing.
    for (const char* key : {"", "UNKNOWN", "22", "0", "40", "D65"}) {
        QCOMPARE(IconSet::keyIndex(QString::fromLatin1(key)), 0);
        QVERIFY2(sameDrawing(IconSet::keyIcon(QString::fromLatin1(key)), filter), key);
    }
}

void TestIconSet::disabledIconsAreGreyAndFaint()
{
    const QIcon icon = IconSet::icon(1);
    const QImage normal = draw(icon, 16);
    const QImage disabled = draw(icon, 16, QIcon::Disabled);
    QCOMPARE(disabled.size(), normal.size());
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) {
            const QColor c = disabled.pixelColor(x, y);
            QVERIFY(c.alpha() <= qAlpha(normal.pixel(x, y)));
            // Within rounding, every pixel is a grey.
            QVERIFY(qAbs(c.red() - c.green()) <= 2 && qAbs(c.green() - c.blue()) <= 2);
        }
    QVERIFY(paintedPixels(disabled) > 0);
}

void TestIconSet::rowIconAddsTheArchiveOffsetToFileTypesOnly_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("isArchiv");
    QTest::addColumn<int>("icon");
    QTest::newRow("disk in an archive") << 1 << 24 << 25;
    QTest::newRow("flip list in an archive") << 15 << 24 << 39;
    QTest::newRow("text on disk") << 10 << 0 << 10;
    QTest::newRow("view stays") << 16 << 24 << 16;
    QTest::newRow("no type") << 0 << 24 << 0;
    QTest::newRow("already archived") << 25 << 24 << 25;
}

void TestIconSet::rowIconAddsTheArchiveOffsetToFileTypesOnly()
{
    QFETCH(int, value);
    QFETCH(int, isArchiv);
    QFETCH(int, icon);
    QCOMPARE(app::RowIcon(value, isArchiv), icon);
}

void TestIconSet::mainWindowRowsCarryTheIcons()
{
    QTemporaryDir home;
    QVERIFY(home.isValid());
    app::setProgramFolder(home.path());
    QVERIFY(QDir().mkpath(app::gTempPath));
    app::reloadIni();
    platform::ScriptedDialogService dialogs;
    platform::setDialogService(&dialogs);
    {
        browser::frmMain form;
        // The tree and both lists draw from the whole set, numbers 1 to 39.
        QCOMPARE(form.tree()->StandardIcons().size(), IconSet::kCount);
        for (int n : numbersInUse())
            QVERIFY2(sameDrawing(form.tree()->StandardIcons()[n - 1], IconSet::icon(n)),
                     qPrintable(QString::number(n)));

        // lvViews: each view's row shows the image of its key.
        QTreeWidget* views = form.viewsList();
        QCOMPARE(views->topLevelItemCount(), 6);
        for (int row = 0; row < 6; ++row) {
            const QTreeWidgetItem* item = views->topLevelItem(row);
            const int view = browser::ViewOfRow(row);
            QVERIFY(sameDrawing(item->icon(0), IconSet::icon(view + 15)));
        }
        // lvFilter: "Filter aus" with OFF, then each default filter by the key it stores.
        QTreeWidget* filters = form.filterList();
        QVERIFY(filters->topLevelItemCount() > 1);
        QVERIFY(sameDrawing(filters->topLevelItem(0)->icon(0),
                            IconSet::keyIcon(QStringLiteral("OFF"))));
        for (int row = 1; row < filters->topLevelItemCount(); ++row) {
            const QTreeWidgetItem* item = filters->topLevelItem(row);
            QVERIFY2(sameDrawing(item->icon(0), IconSet::keyIcon(item->text(1))),
                     qPrintable(item->text(0)));
            QVERIFY(paintedPixels(draw(item->icon(0), 16)) > 0);
        }
    }
    platform::setDialogService(nullptr);
}

QTEST_MAIN(TestIconSet)
#include "tst_iconset.moc"
