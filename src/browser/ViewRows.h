#pragma once
// The rows the main window's list shows for a view's state, read window-free: the level the
// tree's selection puts on screen, narrowed to the node's children, with the visible columns
// of the layout in display order. The command line prints these; tests compare with them.

#include "browser/ViewBuilder.h"

#include <QVariant>
#include <QVector>

namespace vd::db {
class Database;
}

namespace vd::browser {

struct ViewRows
{
    QStringList captions;            // the headers of the visible columns, in display order
    QVector<QVector<QVariant>> rows; // their values
};

// Views other than 2: with `node` 0 or -1 (the root) level 1 of the list, else level 2 with
// the rows whose parent key is `node`; in the file views a file's entries come in directory
// order. View 2: the flat list of files. `layouts` are the four list layouts (sLayouts).
// A bad statement throws the data layer's error.
ViewRows ReadViewRows(db::Database& db, const ViewSql& sql, qint64 node, const QStringList& layouts,
                      const ViewCaptions& captions);

// The keys of the tree's second level (files, categories or started files) in tree order.
QVector<qint64> ReadTreeKeys(db::Database& db, const ViewSql& sql);

} // namespace vd::browser
