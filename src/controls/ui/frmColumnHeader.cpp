#include "controls/ui/frmColumnHeader.h"

#include "app/Translate.h"
#include "controls/ui/SimpleReport.h"
#include "platform/DialogService.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace vd::controls {

namespace {

QString tr_(const char* text)
{
    return app::Translate(QString::fromUtf8(text));
}

QPushButton* button(QWidget* parent, const char* name, const char* caption)
{
    auto* b = new QPushButton(tr_(caption), parent);
    b->setObjectName(QLatin1String(name));
    return b;
}

} // namespace

QString frmColumnHeader::nameColumnCaption()
{
    const QString caption = app::Translate(QStringLiteral("File"));
    return caption.isEmpty() ? QStringLiteral("File") : caption;
}

frmColumnHeader::frmColumnHeader(SimpleReport* report, const QString& tView,
                                 const GBColumnSource& gb, QWidget* parent)
    : QDialog(parent), m_report(report), m_gb(gb), m_list(new QTreeWidget(this)),
      m_show(button(this, "cmdAction2", "Anzeigen")),
      m_hide(button(this, "cmdAction3", "Ausblenden")),
      m_defaults(button(this, "cmdAction4", "Standard")),
      m_apply(button(this, "cmdApply", "Übernehmen")), m_ok(button(this, "cmdOk", "OK"))
{
    setObjectName(QStringLiteral("frmColumnHeader"));
    setWindowTitle(tr_("Spalten konfigurieren"));
    if (tView != ColumnEditor::kGBView || !m_gb.isValid())
        m_gb = {};

    // The mark is the check box; the key stays out of sight.
    m_list->setObjectName(QStringLiteral("lvHeaders"));
    m_list->setColumnCount(3);
    m_list->setHeaderLabels({tr_("Spalte"), QString(), QString()});
    m_list->setColumnHidden(1, true);
    m_list->setColumnHidden(2, true);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->header()->setStretchLastSection(true);

    QPushButton* exit = button(this, "cmdExit", "Beenden");
    m_ok->setDefault(true);
    auto* side = new QVBoxLayout;
    for (QPushButton* b : {m_show, m_hide, m_defaults})
        side->addWidget(b);
    side->addStretch();
    auto* top = new QHBoxLayout;
    top->addWidget(m_list, 1);
    top->addLayout(side);
    auto* bottom = new QHBoxLayout;
    bottom->addStretch();
    for (QPushButton* b : {m_ok, m_apply, exit})
        bottom->addWidget(b);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(bottom);

    connect(m_show, &QPushButton::clicked, this, [this] { showRow(currentRow()); });
    connect(m_hide, &QPushButton::clicked, this, [this] { hideRow(currentRow()); });
    connect(m_defaults, &QPushButton::clicked, this, &frmColumnHeader::restoreDefaults);
    connect(m_apply, &QPushButton::clicked, this, &frmColumnHeader::apply);
    connect(m_ok, &QPushButton::clicked, this, [this] {
        apply();
        accept();
    });
    connect(exit, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &frmColumnHeader::updateButtons);
    connect(m_list, &QTreeWidget::itemChanged, this, &frmColumnHeader::itemChanged);

    if (m_gb.isValid())
        m_editor.loadGB(m_gb);
    else if (m_report)
        m_editor.loadColumns(m_report->Columns(), nameColumnCaption());
    fill();
}

QPushButton* frmColumnHeader::cmdAction(int index) const
{
    switch (index) {
    case 2:
        return m_show;
    case 3:
        return m_hide;
    case 4:
        return m_defaults;
    default:
        return nullptr;
    }
}

void frmColumnHeader::fill()
{
    m_filling = true;
    const int keep = std::max(0, currentRow());
    m_list->clear();
    for (int i = 0; i < m_editor.count(); ++i) {
        const ColumnEditor::Row& r = m_editor.row(i);
        auto* item = new QTreeWidgetItem(m_list, {r.Name, QString::number(r.Hidden), r.Key});
        item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        item->setCheckState(0, r.Hidden == 1 ? Qt::Checked : Qt::Unchecked);
    }
    if (m_list->topLevelItemCount() > 0)
        m_list->setCurrentItem(m_list->topLevelItem(std::min(keep, m_editor.count() - 1)));
    m_filling = false;
    updateButtons();
}

int frmColumnHeader::currentRow() const
{
    return m_list->currentItem() ? m_list->indexOfTopLevelItem(m_list->currentItem()) : -1;
}

void frmColumnHeader::updateButtons()
{
    const int row = currentRow();
    const int mark = row >= 0 ? m_editor.row(row).Hidden : -1;
    m_show->setEnabled(row >= 0 && mark != 1);
    m_hide->setEnabled(row >= 0 && mark == 1);
    const bool changed = m_editor.differs();
    m_apply->setEnabled(changed);
    m_ok->setEnabled(changed);
}

void frmColumnHeader::showRow(int row)
{
    if (row < 0)
        return;
    m_editor.setMark(row, 1);
    m_filling = true;
    m_list->topLevelItem(row)->setCheckState(0, Qt::Checked);
    m_list->topLevelItem(row)->setText(1, QStringLiteral("1"));
    m_filling = false;
    updateButtons();
}

bool frmColumnHeader::hideRow(int row)
{
    if (row < 0)
        return false;
    const bool allowed = m_editor.mayHide(row);
    if (allowed) {
        m_editor.setMark(row, 0);
    } else {
        platform::dialogs().msgBox(tr_("Diese Spalte kann nicht ausgeblendet werden!"),
                                   platform::vbInformation, tr_("Spalte ausblenden"));
    }
    m_filling = true;
    m_list->topLevelItem(row)->setCheckState(0, allowed ? Qt::Unchecked : Qt::Checked);
    m_list->topLevelItem(row)->setText(1, QString::number(m_editor.row(row).Hidden));
    m_filling = false;
    updateButtons();
    return allowed;
}

void frmColumnHeader::itemChanged(QTreeWidgetItem* item)
{
    if (m_filling)
        return;
    const int row = m_list->indexOfTopLevelItem(item);
    m_list->setCurrentItem(item);
    if (item->checkState(0) == Qt::Checked)
        showRow(row);
    else
        hideRow(row);
}

void frmColumnHeader::restoreDefaults()
{
    if (platform::dialogs().msgBox(
            tr_("Wollen Sie das Spalten-Layout auf die Standardwerte zurücksetzen?"),
            platform::vbYesNo | platform::vbQuestion, tr_("Spalten-Layout")) != platform::vbYes)
        return;
    if (m_gb.isValid()) {
        m_editor.restoreGBDefaults(m_gb);
    } else if (m_report) {
        m_editor.restoreDefaults(m_report->Columns(), nameColumnCaption());
        afterWrite();
    }
    fill();
}

bool frmColumnHeader::apply()
{
    if (m_gb.isValid()) {
        m_editor.applyGB(m_gb);
    } else if (m_report) {
        m_editor.apply(m_report->Columns());
        afterWrite();
    }
    updateButtons();
    return true;
}

void frmColumnHeader::afterWrite()
{
    if (m_report)
        m_report->columnsChanged();
}

} // namespace vd::controls
