#pragma once
// frmResult: which columns, or which GameBase genres, a result list shows. Each row of
// lvHeaders is one item with its check box; cmdApply writes the check marks back into the
// caller's list, Cancel leaves it as it was.

#include "browser/ui/RememberedDialog.h"

#include <QList>
#include <QString>

class QPushButton;
class QTreeWidget;

namespace vd::db {
class Database;
}

namespace vd::browser {

struct ResultItem
{
    QString name;
    bool checked = false;
};

class frmResult : public RememberedDialog
{
    Q_OBJECT

public:
    // `items` stays the caller's and changes only through cmdApply.
    frmResult(const QString& title, QList<ResultItem>& items, QWidget* parent = nullptr);

    // The genres of a GameBase as items, each checked when its name is in `checkedNames`.
    static QList<ResultItem> genreItems(db::Database& gameBase, const QStringList& checkedNames);

    QTreeWidget* lvHeaders = nullptr;
    QPushButton* cmdApply = nullptr;
    QPushButton* cmdCancel = nullptr;

private:
    void cmdApply_Click();

    QList<ResultItem>& m_items;
};

} // namespace vd::browser
