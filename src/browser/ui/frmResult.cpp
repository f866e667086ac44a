#include "browser/ui/frmResult.h"

#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>

namespace vd::browser {

using app::Translate;

frmResult::frmResult(const QString& title, QList<ResultItem>& items, QWidget* parent)
    : RememberedDialog(QStringLiteral("frmResult"), QSize(320, 400), parent), m_items(items)
{
    setWindowTitle(title);
    lvHeaders = new QTreeWidget(this);
    lvHeaders->setObjectName(QStringLiteral("lvHeaders"));
    lvHeaders->setHeaderLabels({Translate(QStringLiteral("Name"))});
    lvHeaders->setRootIsDecorated(false);
    lvHeaders->header()->setStretchLastSection(true);
    for (const ResultItem& item : items) {
        auto* row = new QTreeWidgetItem(lvHeaders, QStringList{item.name});
        row->setFlags(row->flags() | Qt::ItemIsUserCheckable);
        row->setCheckState(0, item.checked ? Qt::Checked : Qt::Unchecked);
    }
    cmdApply = new QPushButton(Translate(QStringLiteral("Übernehmen")), this);
    cmdApply->setObjectName(QStringLiteral("cmdApply"));
    cmdApply->setDefault(true);
    cmdCancel = new QPushButton(Translate(QStringLiteral("Abbrechen")), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdApply);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lvHeaders, 1);
    layout->addLayout(buttons);

    connect(cmdApply, &QPushButton::clicked, this, &frmResult::cmdApply_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    app::ui::TranslateForm(this, true);
}

QList<ResultItem> frmResult::genreItems(db::Database& gameBase, const QStringList& checkedNames)
{
    QList<ResultItem> items;
    const auto rs =
        gameBase.openRecordset(QStringLiteral("Select Distinct Genre From Genres where Genre<>''"),
                               db::RecordsetType::Snapshot);
    for (; !rs->eof(); rs->moveNext()) {
        const QString name = catalogue::ValueText(rs->value(0));
        items.append({name, checkedNames.contains(name)});
    }
    rs->close();
    return items;
}

void frmResult::cmdApply_Click()
{
    for (int i = 0; i < lvHeaders->topLevelItemCount() && i < m_items.size(); ++i)
        m_items[i].checked = lvHeaders->topLevelItem(i)->checkState(0) == Qt::Checked;
    accept();
}

} // namespace vd::browser
