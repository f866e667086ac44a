#include "launch/ui/EditorDialog.h"

#include "app/Translate.h"
#include "app/ui/WindowGeometry.h"
#include "platform/DialogService.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace vd::launch {

EditorDialog::EditorDialog(const app::FormDesign& design, QWidget* parent)
    : QDialog(parent), m_design(design)
{
    setObjectName(design.name);
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    m_fields = new QVBoxLayout;
    layout->addLayout(m_fields);
    layout->addStretch(1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdOk = new QPushButton(app::Translate(QStringLiteral("OK")), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    cmdCancel = new QPushButton(app::Translate(QStringLiteral("Abbrechen")), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    layout->addLayout(buttons);
    connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void EditorDialog::restorePosition()
{
    app::RestoreWindowPos(*this, m_design);
}

void EditorDialog::inform(const QString& text)
{
    platform::dialogs().msgBox(text, platform::vbInformation);
}

void EditorDialog::done(int result)
{
    app::SaveWindowPos(*this, m_design.name);
    QDialog::done(result);
}

} // namespace vd::launch
