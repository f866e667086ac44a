#include "browser/ui/frmPreview.h"

#include "app/ui/TranslateForm.h"
#include "app/ui/WindowGeometry.h"
#include "browser/ui/PreviewPane.h"

#include <QHideEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace vd::browser {

frmPreview::frmPreview(QWidget* parent) : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("frmPreview"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_pane = new PreviewPane(true, this); // picContainer with HScroll1, VScroll1
    m_pane->setObjectName(QStringLiteral("picContainer"));
    m_pane->setAutoFillBackground(true);
    layout->addWidget(m_pane);
    connect(m_pane, &PreviewPane::rowActivated, this,
            [this](qint64 key) { emit PreviewFileStart(qint32(key)); });
    app::RestoreWindowPos(
        *this, app::FormDesign{objectName(), kDesignWidthTwips, kDesignHeightTwips, false});
    // The label and the caption show the name of what is previewed, not a text of the program.
    m_pane->label()->setProperty(app::ui::kNoTranslate, true);
    app::ui::TranslateForm(this, false);
}

frmPreview::~frmPreview() = default;

void frmPreview::updateCaption()
{
    setWindowTitle(m_pane->label()->text());
}

void frmPreview::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous())
        return; // minimised: still open
    app::SaveWindowPos(*this, objectName());
    emit FormIsHiding();
}

} // namespace vd::browser
