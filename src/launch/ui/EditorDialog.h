#pragma once
// What the three small editors of emulators, profiles and parameters share: a remembered
// window with the buttons "OK" and "Abbrechen" below its fields, and the plain information box
// their checks report in.

#include "app/WindowPos.h"

#include <QDialog>

class QPushButton;
class QVBoxLayout;

namespace vd::launch {

class EditorDialog : public QDialog
{
    Q_OBJECT
public:
    // `design` names the form (its key in the settings' WINDOWS) and gives its designed size.
    EditorDialog(const app::FormDesign& design, QWidget* parent);

protected:
    // The fields go here, above the buttons.
    QVBoxLayout* fields() const { return m_fields; }
    // Puts the form where it was last time; call at the end of the derived form's load.
    void restorePosition();
    // What "OK" does: check, write back and accept(), or report and stay.
    virtual void cmdOk_Click() = 0;
    // A check's message in a plain box with the information icon.
    static void inform(const QString& text);

    void done(int result) override;

private:
    app::FormDesign m_design;
    QVBoxLayout* m_fields = nullptr;
    QPushButton* cmdOk = nullptr;
    QPushButton* cmdCancel = nullptr;
};

} // namespace vd::launch
