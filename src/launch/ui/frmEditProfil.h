#pragma once
// frmEditProfil: the name of a profile and whether it is the default profile. The options
// dialog opens it on its copies of the emulators and profiles.

#include "launch/ProfilRules.h"
#include "launch/ui/EditorDialog.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace vd::launch {

class frmEditProfil : public EditorDialog
{
    Q_OBJECT
public:
    enum class Mode
    {
        Edit, // the profile `profilKey`
        New,  // a new profile of `emulKey`
        Copy, // a copy of the profile `profilKey` (any emulator's) for `emulKey`
    };

    frmEditProfil(ProfilConfig& config, const QString& emulKey, const QString& profilKey, Mode mode,
                  QWidget* parent = nullptr);

    // Creates the new or copied profile, or renames the edited one, under `name`. A name that
    // another profile of the emulator has is refused, with "Dieser Name besteht schon!" unless
    // `silent`. The default moves here when chkDefEmul is checked. Result: `ok`.
    bool SaveProfil(const QString& name, bool silent);

    // The key of the profile written by OK; "" until then.
    QString resultKey() const { return m_resultKey; }

protected:
    void cmdOk_Click() override;

private:
    void Form_Load();

    ProfilConfig& m_config;
    QString m_emulKey;
    QString m_profilKey;
    Mode m_mode;
    QString m_loadedName;
    QString m_resultKey;

    QLineEdit* txtName = nullptr;
    QCheckBox* chkDefEmul = nullptr;
    QLabel* lblEmu = nullptr;
};

// Shows frmEditProfil modally. Result: the profile's Key, or "" when the user cancelled.
QString EditProfil(ProfilConfig& config, const QString& emulKey, const QString& profilKey,
                   frmEditProfil::Mode mode, QWidget* parent = nullptr);

} // namespace vd::launch
