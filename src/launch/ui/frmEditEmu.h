#pragma once
// frmEditEmu: the name, program path and type of one emulator, for a new one, a copy or an
// existing one. EditEmulator shows it modally.

#include "launch/clsEmulator.h"
#include "launch/ui/EditorDialog.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

namespace vd::launch {

class frmEditEmu : public EditorDialog
{
    Q_OBJECT
public:
    // `key` "" edits a new emulator. With `copyFlag` the fields start from the emulator `key`
    // and OK adds a new one; its profiles are the caller's to copy.
    frmEditEmu(Emulators& emulators, Profils& profils, const QString& key, bool copyFlag,
               QWidget* parent = nullptr);

    // The key of the emulator written by OK; "" until then.
    QString resultKey() const { return m_resultKey; }

protected:
    void cmdOk_Click() override;

private:
    void Form_Load();
    void cmdPfad_Click();
    void selectPath(const QString& path);
    bool isNewRecord() const { return m_key.isEmpty() || m_copy; }

    Emulators& m_emulators;
    Profils& m_profils;
    QString m_key;
    bool m_copy = false;
    QString m_resultKey;

    QLineEdit* txtName = nullptr;
    QComboBox* cboPath = nullptr;
    QPushButton* cmdPfad = nullptr;
    QComboBox* cboTyp = nullptr;
    QCheckBox* chkDefault = nullptr;
};

// Shows frmEditEmu modally. Result: the emulator's Key, or "" when the user cancelled.
QString EditEmulator(Emulators& emulators, Profils& profils, const QString& key, bool copyFlag,
                     QWidget* parent = nullptr);

} // namespace vd::launch
