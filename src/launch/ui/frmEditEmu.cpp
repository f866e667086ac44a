#include "launch/ui/frmEditEmu.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "launch/EditorRules.h"
#include "launch/Profiles.h"
#include "platform/DialogService.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

namespace vd::launch {

using app::Translate;

namespace {

constexpr int kNewEmulatorType = 1;

} // namespace

frmEditEmu::frmEditEmu(Emulators& emulators, Profils& profils, const QString& key, bool copyFlag,
                       QWidget* parent)
    : EditorDialog(app::FormDesign{QStringLiteral("frmEditEmu"), 6000, 2700, false}, parent),
      m_emulators(emulators), m_profils(profils), m_key(key), m_copy(copyFlag && !key.isEmpty())
{
    auto* form = new QFormLayout;
    txtName = new QLineEdit(this);
    txtName->setObjectName(QStringLiteral("txtName"));
    form->addRow(Translate(QStringLiteral("Name:")), txtName);

    auto* pathRow = new QHBoxLayout;
    cboPath = new QComboBox(this);
    cboPath->setObjectName(QStringLiteral("cboPath"));
    cboPath->setEditable(true);
    cboPath->setInsertPolicy(QComboBox::NoInsert);
    cboPath->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    cmdPfad = new QPushButton(QStringLiteral("..."), this);
    cmdPfad->setObjectName(QStringLiteral("cmdPfad"));
    cmdPfad->setMaximumWidth(cmdPfad->fontMetrics().horizontalAdvance(QStringLiteral("...")) * 3);
    pathRow->addWidget(cboPath, 1);
    pathRow->addWidget(cmdPfad);
    form->addRow(Translate(QStringLiteral("Pfad:")), pathRow);

    cboTyp = new QComboBox(this);
    cboTyp->setObjectName(QStringLiteral("cboTyp"));
    form->addRow(Translate(QStringLiteral("Typ:")), cboTyp);

    chkDefault = new QCheckBox(Translate(QStringLiteral("Standard-Profile erstellen")), this);
    chkDefault->setObjectName(QStringLiteral("chkDefault"));
    form->addRow(QString(), chkDefault);
    fields()->addLayout(form);

    connect(cmdPfad, &QPushButton::clicked, this, &frmEditEmu::cmdPfad_Click);
    Form_Load();
    app::ui::TranslateForm(this, true);
}

void frmEditEmu::Form_Load()
{
    for (int type = 0; type < kEmulTypeCount; ++type)
        cboTyp->addItem(EmulTypeCaption(type));
    for (const EmulatorPtr& e : m_emulators)
        if (!e->Path.isEmpty() &&
            cboPath->findText(e->Path, Qt::MatchFixedString | Qt::MatchCaseSensitive) < 0)
            cboPath->addItem(e->Path);

    QString caption = Translate(QStringLiteral("Emulator"));
    const EmulatorPtr emulator = m_emulators.find(m_key);
    if (emulator) {
        txtName->setText(emulator->Name);
        selectPath(emulator->Path);
        cboTyp->setCurrentIndex(emulator->EmulType >= 0 && emulator->EmulType < kEmulTypeCount
                                    ? emulator->EmulType
                                    : -1);
    } else {
        m_key.clear();
        m_copy = false;
        selectPath(QString());
        cboTyp->setCurrentIndex(kNewEmulatorType);
    }
    if (isNewRecord())
        caption = Translate(QStringLiteral("Neuer Emulator"));
    // The same form edits emulators and the file tools of type 0.
    setWindowTitle(caption + QStringLiteral("\\File-Tool"));
    chkDefault->setChecked(isNewRecord() && !m_copy);
    chkDefault->setEnabled(isNewRecord() && !m_copy);
    restorePosition();
}

void frmEditEmu::selectPath(const QString& path)
{
    const auto exact = Qt::MatchFixedString | Qt::MatchCaseSensitive;
    int index = path.isEmpty() ? -1 : cboPath->findText(path, exact);
    if (index < 0 && !path.isEmpty()) {
        cboPath->addItem(path);
        index = cboPath->count() - 1;
    }
    cboPath->setCurrentIndex(index);
    cboPath->setEditText(path);
}

void frmEditEmu::cmdPfad_Click()
{
    // Emulators here are programs without an extension, or wrappers of Windows programs: every
    // file is offered first, "*.exe" second.
    const QString current = cboPath->currentText();
    const QString start =
        current.contains(u'/') ? QFileInfo(current).absolutePath() : app::gDialogPath;
    const QString chosen = platform::dialogs().openFile(
        Translate(QStringLiteral("C64-Emulator auswählen")),
        Translate(QStringLiteral("C64-Emulator")) + QStringLiteral("|*|") +
            Translate(QStringLiteral("C64-Emulator (*.exe)")) + QStringLiteral("|*.exe"),
        start);
    if (!chosen.isEmpty())
        selectPath(chosen);
}

void frmEditEmu::cmdOk_Click()
{
    const QString name = txtName->text();
    const QString path = cboPath->currentText();
    const QString problem = CheckEmulatorInput(m_emulators, m_copy ? QString() : m_key, name, path);
    if (!problem.isEmpty()) {
        inform(problem);
        const bool badPath =
            problem.startsWith(Translate(QStringLiteral("Ungültiger Emulator-Pfad: ")));
        if (badPath)
            cboPath->setFocus();
        else
            txtName->setFocus();
        return;
    }
    const int type = cboTyp->currentIndex();
    EmulatorPtr emulator;
    if (isNewRecord()) {
        const int key = NextEmulatorKey(m_emulators);
        const int newType = type >= 0 ? type : kNewEmulatorType;
        if (chkDefault->isChecked() && chkDefault->isEnabled())
            emulator = AddDefaultEmulator(key, newType, m_emulators, m_profils, false);
        else
            emulator = AddEmulator(key, newType, name, path, m_emulators, true);
    } else {
        emulator = m_emulators.find(m_key);
    }
    if (!emulator)
        return;
    emulator->Name = name;
    emulator->Path = path;
    if (type >= 0 && type != emulator->EmulType)
        emulator->EmulType = type;
    m_resultKey = emulator->Key;
    accept();
}

QString EditEmulator(Emulators& emulators, Profils& profils, const QString& key, bool copyFlag,
                     QWidget* parent)
{
    frmEditEmu form(emulators, profils, key, copyFlag, parent);
    if (form.exec() != QDialog::Accepted)
        return {};
    return form.resultKey();
}

} // namespace vd::launch
