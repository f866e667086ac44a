#pragma once
// A dialog whose place and size are remembered in WINDOWS under its object name: put back
// (or centred at its designed size) when it is first shown, stored when it is hidden.

#include "app/ui/WindowGeometry.h"

#include <QDialog>
#include <QHideEvent>
#include <QShowEvent>

namespace vd::browser {

class RememberedDialog : public QDialog
{
    Q_OBJECT

public:
    // The designed size in pixels; the settings keep twips.
    RememberedDialog(const QString& name, QSize design, QWidget* parent)
        : QDialog(parent), m_design(design)
    {
        setObjectName(name);
        setModal(true);
    }

protected:
    void showEvent(QShowEvent* event) override
    {
        // Placed at the first show, when the layout knows its least size.
        if (!m_placed) {
            m_placed = true;
            const QSize size = m_design.expandedTo(minimumSizeHint());
            app::RestoreWindowPos(*this,
                                  app::FormDesign{objectName(), size.width() * app::kTwipsPerPixel,
                                                  size.height() * app::kTwipsPerPixel, false});
        }
        QDialog::showEvent(event);
    }
    void hideEvent(QHideEvent* event) override
    {
        QDialog::hideEvent(event);
        if (!event->spontaneous())
            app::SaveWindowPos(*this, objectName());
    }

private:
    QSize m_design;
    bool m_placed = false;
};

} // namespace vd::browser
