#include "launch/ui/frmEditProfil.h"

#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "launch/EditorRules.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

namespace vd::launch {

using app::Translate;

frmEditProfil::frmEditProfil(ProfilConfig& config, const QString& emulKey, const QString& profilKey,
                             Mode mode, QWidget* parent)
    : EditorDialog(app::FormDesign{QStringLiteral("frmEditProfil"), 5400, 2100, false}, parent),
      m_config(config), m_emulKey(emulKey), m_profilKey(profilKey), m_mode(mode)
{
    auto* form = new QFormLayout;
    lblEmu = new QLabel(this);
    lblEmu->setObjectName(QStringLiteral("lblEmu"));
    form->addRow(Translate(QStringLiteral("Emulator:")), lblEmu);
    txtName = new QLineEdit(this);
    txtName->setObjectName(QStringLiteral("txtName"));
    form->addRow(Translate(QStringLiteral("Name:")), txtName);
    chkDefEmul = new QCheckBox(Translate(QStringLiteral("Standardprofil")), this);
    chkDefEmul->setObjectName(QStringLiteral("chkDefEmul"));
    form->addRow(QString(), chkDefEmul);
    fields()->addLayout(form);
    Form_Load();
    app::ui::TranslateForm(this, true);
}

void frmEditProfil::Form_Load()
{
    const ProfilPtr profil = m_config.profils.find(m_profilKey);
    if (m_mode == Mode::Edit && !profil)
        m_mode = Mode::New; // nothing to edit: the form makes a new one
    if (m_mode == Mode::Edit)
        m_emulKey = profil->EmulKey;
    if (profil && m_mode != Mode::New)
        txtName->setText(profil->Name);
    m_loadedName = txtName->text();
    const EmulatorPtr emulator = m_config.emulators.find(m_emulKey);
    lblEmu->setText(emulator ? emulator->Name : QString());

    // The default can be moved to another profile, never taken away from this one.
    const bool isDefault = m_mode == Mode::Edit && profil->Key == m_config.defaultProfil;
    chkDefEmul->setChecked(isDefault);
    chkDefEmul->setEnabled(!isDefault);
    setWindowTitle(m_mode == Mode::Edit ? Translate(QStringLiteral("Profil"))
                                        : Translate(QStringLiteral("Neues Profil")));
    restorePosition();
}

bool frmEditProfil::SaveProfil(const QString& name, bool silent)
{
    const QString key =
        launch::SaveProfil(m_config, m_emulKey, m_mode == Mode::Edit ? m_profilKey : QString(),
                           name, silent, chkDefEmul->isChecked());
    if (key.isEmpty())
        return false;
    if (m_mode == Mode::Copy) {
        const ProfilPtr source = m_config.profils.find(m_profilKey);
        const ProfilPtr copy = m_config.profils.find(key);
        if (source && copy)
            copy->Options = source->Options;
    }
    m_resultKey = key;
    return true;
}

void frmEditProfil::cmdOk_Click()
{
    const QString name = txtName->text();
    if (name.isEmpty()) {
        inform(Translate(QStringLiteral("Bitte geben Sie einen Profilnamen an!")));
        txtName->setFocus();
        return;
    }
    if (m_mode != Mode::Edit || name != m_loadedName) {
        if (!SaveProfil(name, false)) {
            txtName->setFocus();
            return;
        }
    } else {
        if (chkDefEmul->isChecked())
            m_config.defaultProfil = m_profilKey;
        m_resultKey = m_profilKey;
    }
    accept();
}

QString EditProfil(ProfilConfig& config, const QString& emulKey, const QString& profilKey,
                   frmEditProfil::Mode mode, QWidget* parent)
{
    frmEditProfil form(config, emulKey, profilKey, mode, parent);
    if (form.exec() != QDialog::Accepted)
        return {};
    return form.resultKey();
}

} // namespace vd::launch
