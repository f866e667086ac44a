// frmMain: the rows of lvFilter after the filter editor changed them, and the editor's opening
// from mnuFilter, the toolbar and a second click on the selected filter.

#include "app/Globals.h"
#include "app/ui/IconSet.h"
#include "browser/Filters.h"
#include "browser/ui/frmMain.h"
#include "browser/ui/frmMainFilter.h"
#include "catalogue/Database.h"

#include <QAction>
#include <QTreeWidget>

namespace vd::browser {

namespace {

// The columns of lvFilter: Name, Typ (the image key), Key.
constexpr int kFilterTyp = 1;
constexpr int kFilterKey = 2;

QTreeWidgetItem* rowOfKey(QTreeWidget* list, qint32 key)
{
    const QString text = QString::number(key);
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = list->topLevelItem(i);
        if (item->text(kFilterKey) == text)
            return item;
    }
    return nullptr;
}

} // namespace

void frmMain::connectFilterCommands()
{
    setCommand(QStringLiteral("mnuFilter"), [this] { mnuFilter_Click(); });
}

void frmMain::CreateFilter(const clsFilter& row, bool flag)
{
    // The first condition decides the image; several different types make it a filter's.
    const QString image = FilterIconKey(row);
    QTreeWidgetItem* item = rowOfKey(lvFilter, row.Key);
    if (!item) {
        item = new QTreeWidgetItem;
        lvFilter->addTopLevelItem(item);
    }
    item->setText(0, row.Name);
    item->setText(kFilterTyp, image);
    item->setText(kFilterKey, QString::number(row.Key));
    item->setIcon(0, app::IconSet::keyIcon(image));
    if (flag && row.Key == iFilterKey)
        BuildView(0, 0, 0);
}

void frmMain::mnuFilter_Click()
{
    if (!app::gDB)
        return;
    frmMainFilter form(gFilters, app::gDB.get(), this);
    // Changes reach lvFilter while the editor is open; the view waits until it closes.
    bool selectedChanged = false;
    connect(&form, &frmMainFilter::filterStored, this, [&](qint32 key) {
        if (const clsFilter* filter = gFilters.find(key))
            CreateFilter(*filter, false);
        selectedChanged = selectedChanged || key == iFilterKey;
    });
    connect(&form, &frmMainFilter::filterRenamed, this, [this](qint32 key) {
        if (const clsFilter* filter = gFilters.find(key))
            CreateFilter(*filter, false);
    });
    connect(&form, &frmMainFilter::filterRemoved, this, [&](qint32 key) {
        delete rowOfKey(lvFilter, key);
        if (key == iFilterKey && key != 0) {
            iFilterKey = 0;
            lvFilter->setCurrentItem(lvFilter->topLevelItem(0));
            selectedChanged = true;
        }
    });
    form.InitForm(iFilterKey);
    form.showModal();
    if (selectedChanged)
        BuildView(0, 0, 0);
}

} // namespace vd::browser
