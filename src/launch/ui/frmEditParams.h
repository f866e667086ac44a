#pragma once
// frmEditParams: the text of one item of a profile's option string, chosen from the items the
// emulator's profiles use and the placeholders, or typed.

#include "launch/clsEmulator.h"
#include "launch/ui/EditorDialog.h"

class QComboBox;
class QLabel;

namespace vd::launch {

class frmEditParams : public EditorDialog
{
    Q_OBJECT
public:
    // `row` is the item's 0-based row in the profile's options; -1 adds a new item, which
    // starts with `text` (a copied item) or empty.
    frmEditParams(const Emulators& emulators, Profils& profils, const QString& profilKey, int row,
                  const QString& text = {}, QWidget* parent = nullptr);

    // Writes `text` into the item (a new item goes last, switched on) unless the profile has
    // an item of that text already: "Dieser Parameter besteht schon!". Result: `ok`.
    bool SaveParam(const QString& text);

    // The item's text as OK left it; "" until then.
    QString resultText() const { return m_resultText; }

protected:
    void cmdOk_Click() override;

private:
    void Form_Load(const QString& text);

    const Emulators& m_emulators;
    Profils& m_profils;
    QString m_profilKey;
    int m_row = -1;
    QString m_loadedText;
    QString m_resultText;

    QComboBox* cboParam = nullptr;
    QLabel* lblProfil = nullptr;
    QLabel* lblExtras = nullptr;
};

// Shows frmEditParams modally. Result: the item's text as stored, or "" when the user
// cancelled.
QString EditParam(const Emulators& emulators, Profils& profils, const QString& profilKey, int row,
                  const QString& text = {}, QWidget* parent = nullptr);

} // namespace vd::launch
