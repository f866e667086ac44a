#include "launch/ui/frmEditParams.h"

#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "launch/EditorRules.h"
#include "launch/OptionString.h"
#include "launch/Profiles.h"

#include <QComboBox>
#include <QLabel>
#include <QVBoxLayout>

namespace vd::launch {

using app::Translate;

namespace {

// The explanation of the placeholders and the keyword, one line each.
QString extrasText()
{
    const char* const lines[][2] = {
        {"<$C64FileName$> = ", "C64-Dateiname"},
        {"<$C64FileIndex$> = ", "Nr des C64-File"},
        {"<$filepath$> = ", "Dateipfad"},
        {"<$input$> = ", "Eingabe beim Start"},
        {"UseTempFile = ", "Temporäre Datei anlegen"},
    };
    QStringList text{Translate(QStringLiteral("Folgende Parameter stehen zur Verfügung:"))};
    for (const auto& line : lines)
        text << QString::fromUtf8(line[0]) + Translate(QString::fromUtf8(line[1]));
    return text.join(u'\n');
}

} // namespace

frmEditParams::frmEditParams(const Emulators& emulators, Profils& profils, const QString& profilKey,
                             int row, const QString& text, QWidget* parent)
    : EditorDialog(app::FormDesign{QStringLiteral("frmEditParams"), 6600, 4200, false}, parent),
      m_emulators(emulators), m_profils(profils), m_profilKey(profilKey), m_row(row)
{
    lblProfil = new QLabel(this);
    lblProfil->setObjectName(QStringLiteral("lblProfil"));
    fields()->addWidget(lblProfil);
    cboParam = new QComboBox(this);
    cboParam->setObjectName(QStringLiteral("cboParam"));
    cboParam->setEditable(true);
    cboParam->setInsertPolicy(QComboBox::NoInsert);
    fields()->addWidget(cboParam);
    lblExtras = new QLabel(this);
    lblExtras->setObjectName(QStringLiteral("lblExtras"));
    lblExtras->setTextFormat(Qt::PlainText);
    fields()->addWidget(lblExtras);
    Form_Load(text);
    app::ui::TranslateForm(this, true);
}

void frmEditParams::Form_Load(const QString& text)
{
    const ProfilPtr profil = m_profils.find(m_profilKey);
    lblProfil->setText(GetProfilCaption(m_emulators, m_profils, m_profilKey));
    if (profil)
        cboParam->addItems(ParamSuggestions(m_profils, profil->EmulKey));
    lblExtras->setText(extrasText());

    const OptionTable rows = ParseOptions(profil ? profil->Options : QString());
    if (m_row >= 0 && (HasNoItems(rows) || m_row >= rows.size()))
        m_row = -1; // no such item: the form adds one
    m_loadedText = m_row >= 0 ? rows[m_row].text : text;
    setWindowTitle(m_row >= 0 ? Translate(QStringLiteral("Parameter"))
                              : Translate(QStringLiteral("Neuer Parameter")));
    cboParam->setCurrentIndex(-1);
    cboParam->setEditText(m_loadedText);
    restorePosition();
}

bool frmEditParams::SaveParam(const QString& text)
{
    const ProfilPtr profil = m_profils.find(m_profilKey);
    return profil && launch::SaveParam(*profil, m_row, text);
}

void frmEditParams::cmdOk_Click()
{
    const QString text = cboParam->currentText();
    // An item opened for editing and left as it was needs no check.
    if (!(m_row >= 0 && !text.isEmpty() && text == m_loadedText) && !SaveParam(text)) {
        cboParam->setFocus();
        return;
    }
    m_resultText = text;
    accept();
}

QString EditParam(const Emulators& emulators, Profils& profils, const QString& profilKey, int row,
                  const QString& text, QWidget* parent)
{
    frmEditParams form(emulators, profils, profilKey, row, text, parent);
    if (form.exec() != QDialog::Accepted)
        return {};
    return form.resultText();
}

} // namespace vd::launch
