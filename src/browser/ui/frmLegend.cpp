#include "browser/ui/frmLegend.h"

#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "browser/FilterForm.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace vd::browser {

using app::Translate;

frmLegend::frmLegend(QWidget* parent) : QDialog(parent), lstLegend(new QTreeWidget(this))
{
    setObjectName(QStringLiteral("frmLegend"));
    setWindowTitle(Translate(QStringLiteral("Legende")));
    lstLegend->setObjectName(QStringLiteral("lstLegend"));
    lstLegend->setColumnCount(2);
    lstLegend->setHeaderHidden(true);
    lstLegend->setRootIsDecorated(false);
    lstLegend->setSelectionMode(QAbstractItemView::NoSelection);
    lstLegend->setFocusPolicy(Qt::NoFocus);
    for (const QString& caption : CompareCaptions()) {
        auto* row = new QTreeWidgetItem(lstLegend, {caption, Translate(CompareTip(caption))});
        row->setTextAlignment(0, Qt::AlignCenter);
    }
    lstLegend->header()->setSectionResizeMode(QHeaderView::ResizeToContents);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lstLegend);
    layout->addWidget(buttons);
    resize(300, 200);
    app::ui::TranslateForm(this, true);
}

} // namespace vd::browser
