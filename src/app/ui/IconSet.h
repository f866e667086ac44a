#pragma once
// The program's own icons, drawn as SVG and compiled into the program: the main window's image
// list by number and by key.
//
// Numbers, as the catalogue and the view statements use them:
//   1 to 15   the file types (iFileType),
//   16 to 21  the views (view + 15: files, flat list, categories, new files, last, top),
//   24        an archive (the IsArchiv column holds 24 for a file inside one),
//   25 to 39  a file type inside an archive (type + 24): the type's image with an archive badge.
// 0, 22, 23 and anything past 39 name no image.

#include <QIcon>
#include <QString>
#include <QVector>

namespace vd::app {

class IconSet
{
public:
    static constexpr int kCount = 39;
    static constexpr int kArchive = 24;
    static constexpr int kFirstView = 16;

    // Icon number n; a null icon for a number that names no image.
    static QIcon icon(int index);

    // By key: "MAINFILES", "FILES", "CATEGORIES", "NEWFILES", "LAST", "TOP", "OFF", "FILTER",
    // "TXT", "GFX", "ZIP", "START" (a row of lvStart), a number as text ("4"), or an extension
    // with or without its point ("D64", ".prg"). Any other key, the empty one too, gives the
    // "FILTER" image: a filter whose conditions name no single type shows as a filter.
    static QIcon keyIcon(const QString& key);

    // The number behind a key, 0 for keys without one ("OFF", "FILTER", unknown keys).
    static int keyIndex(const QString& key);

    // The list the tree and the lists take: entry n - 1 is icon number n.
    static QVector<QIcon> imageList();

    // Every key the program asks for, for the side lists and the filters.
    static QStringList keys();
};

// The image number of a row: a file type (1 to 15) whose row lies inside an archive (isArchiv
// non-zero, as the IsArchiv column's 24) takes its archived image; any other value stays.
int RowIcon(int value, int isArchiv);

} // namespace vd::app
