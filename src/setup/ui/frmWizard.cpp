#include "setup/ui/frmWizard.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "app/ui/WindowGeometry.h"
#include "browser/ui/frmMain.h"
#include "gamebase/GameBase.h"
#include "launch/Profiles.h"
#include "platform/DialogService.h"
#include "platform/Progress.h"
#include "setup/WizardFinish.h"

#include <cmath>
#include <QApplication>
#include <QComboBox>
#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace vd::setup {

using app::Translate;

namespace {

const QString kFormName = QStringLiteral("frmWizard");

// Reading a new .mdb into its cache takes a while: the steps show in the wizard's step line
// and the window keeps painting.
class StepLineProgress : public platform::Progress
{
public:
    explicit StepLineProgress(QLabel* line) : m_line(line) {}
    void setStatus(const QString& text) override
    {
        m_line->setText(Translate(QStringLiteral("Gamebase wird gelesen: ")) + text);
        yield();
    }
    void yield() override { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }

private:
    QLabel* m_line;
};

int pixels(double twips)
{
    return int(std::lround(twips / app::kTwipsPerPixel));
}

// A path field with its "..." button beside it.
QHBoxLayout* pathRow(QLineEdit* text, QPushButton* button)
{
    auto* row = new QHBoxLayout;
    row->addWidget(text, 1);
    button->setMaximumWidth(button->fontMetrics().horizontalAdvance(QStringLiteral("...")) * 3);
    row->addWidget(button);
    return row;
}

} // namespace

frmWizard::frmWizard(browser::frmMain& owner) : QDialog(&owner), m_owner(owner)
{
    setObjectName(kFormName);
    setWindowTitle(QStringLiteral("Vellumdock"));
    setModal(true);

    auto* layout = new QVBoxLayout(this);
    lblStart = new QLabel(QStringLiteral("Willkommen beim Vellumdock!"), this);
    lblStart->setObjectName(QStringLiteral("lblStart"));
    QFont big = lblStart->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.4);
    lblStart->setFont(big);
    layout->addWidget(lblStart);
    lblStep = new QLabel(this);
    lblStep->setObjectName(QStringLiteral("lblStep"));
    layout->addWidget(lblStep);

    m_steps = new QStackedWidget(this);
    m_steps->setObjectName(QStringLiteral("fraSteps"));
    auto* stepRow = new QHBoxLayout;
    stepRow->addSpacing(pixels(kStepLeftTwips) - layout->contentsMargins().left());
    stepRow->addWidget(m_steps, 1);
    layout->addLayout(stepRow, 1);
    buildSteps();

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdBack = new QPushButton(QStringLiteral("Zurück"), this);
    cmdBack->setObjectName(QStringLiteral("cmdBack"));
    cmdNext = new QPushButton(QStringLiteral("Weiter"), this);
    cmdNext->setObjectName(QStringLiteral("cmdNext"));
    cmdNext->setDefault(true); // Enter
    cmdCancel = new QPushButton(QStringLiteral("Abbrechen"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    buttons->addWidget(cmdBack);
    buttons->addWidget(cmdNext);
    buttons->addWidget(cmdCancel);
    layout->addLayout(buttons);

    connect(cmdBack, &QPushButton::clicked, this, &frmWizard::cmdBack_Click);
    connect(cmdNext, &QPushButton::clicked, this, &frmWizard::cmdNext_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdPfad, &QPushButton::clicked, this, &frmWizard::cmdPfad_Click);
    connect(cmdAddFile, &QPushButton::clicked, this, &frmWizard::cmdAddFile_Click);
    connect(cmdAddFolder, &QPushButton::clicked, this, &frmWizard::cmdAddFolder_Click);
    connect(cmdGB, &QPushButton::clicked, this, &frmWizard::cmdGB_Click);
    Form_Load();
}

QGroupBox* frmWizard::addStep(const QString& heading)
{
    const int step = m_steps->count() + 1;
    auto* frame = new QGroupBox(heading, m_steps);
    frame->setObjectName(QStringLiteral("fraStep%1").arg(step));
    m_steps->addWidget(frame);
    fraStep[size_t(step)] = frame;
    return frame;
}

void frmWizard::buildSteps()
{
    new QVBoxLayout(addStep(QStringLiteral("Neue Datenbank erstellen")));

    auto* emulator = new QVBoxLayout(addStep(QStringLiteral("Standard-Emulator auswählen")));
    cboEmulators = new QComboBox(fraStep[2]);
    cboEmulators->setObjectName(QStringLiteral("cboEmulators"));
    emulator->addWidget(cboEmulators);
    emulator->addStretch(1);

    auto* path = new QVBoxLayout(addStep(QStringLiteral("Emulatorpfad festlegen")));
    txtEmulPath = new QLineEdit(fraStep[3]);
    txtEmulPath->setObjectName(QStringLiteral("txtEmulPath"));
    cmdPfad = new QPushButton(QStringLiteral("..."), fraStep[3]);
    cmdPfad->setObjectName(QStringLiteral("cmdPfad"));
    path->addLayout(pathRow(txtEmulPath, cmdPfad));
    path->addStretch(1);

    // Step 4 has no heading: two buttons with "oder" between them.
    auto* import = new QVBoxLayout(addStep(QString()));
    cmdAddFile = new QPushButton(QStringLiteral("Datei importieren"), fraStep[4]);
    cmdAddFile->setObjectName(QStringLiteral("cmdAddFile"));
    auto* orLabel = new QLabel(QStringLiteral("oder"), fraStep[4]);
    orLabel->setObjectName(QStringLiteral("lblOr"));
    orLabel->setAlignment(Qt::AlignCenter);
    cmdAddFolder = new QPushButton(QStringLiteral("Ordner importieren"), fraStep[4]);
    cmdAddFolder->setObjectName(QStringLiteral("cmdAddFolder"));
    import->addStretch(1);
    import->addWidget(cmdAddFile);
    import->addWidget(orLabel);
    import->addWidget(cmdAddFolder);
    import->addStretch(1);

    auto* gameBase = new QVBoxLayout(addStep(QStringLiteral("Optional: GameBase64-Datenbank")));
    txtGB = new QLineEdit(fraStep[5]);
    txtGB->setObjectName(QStringLiteral("txtGB"));
    cmdGB = new QPushButton(QStringLiteral("..."), fraStep[5]);
    cmdGB->setObjectName(QStringLiteral("cmdGB"));
    gameBase->addLayout(pathRow(txtGB, cmdGB));
    gameBase->addStretch(1);

    new QVBoxLayout(addStep(QStringLiteral("Fertig! Viel Spaß!")));
}

void frmWizard::Form_Load()
{
    iStepCount = kWizardStepCount;
    app::RestoreWindowPos(*this,
                          app::FormDesign{kFormName, kDesignWidthTwips, kDesignHeightTwips, false});
    // Every emulator type but "Sonstige" (0), the file tools; each row's data is its type.
    for (int type = kWizardFirstType; type < launch::kEmulTypeCount; ++type)
        cboEmulators->addItem(launch::EmulTypeCaption(type), type);
    cboEmulators->setCurrentIndex(0);
    ShowStep(1);
    app::ui::TranslateForm(this, true);
}

void frmWizard::ShowStep(int step)
{
    iStep = step;
    lblStep->setText(Translate(QStringLiteral("Schritt: ")) + QString::number(step) +
                     QStringLiteral(" / ") + QString::number(iStepCount));
    // Only the frame of the current step shows.
    if (step >= 1 && step <= iStepCount)
        m_steps->setCurrentWidget(fraStep[size_t(step)]);
    cmdBack->setEnabled(step >= 2);
    cmdNext->setText(step < iStepCount ? Translate(QStringLiteral("Weiter"))
                                       : Translate(QStringLiteral("Starten")));
    cmdCancel->setEnabled(step != iStepCount);
}

void frmWizard::cmdBack_Click()
{
    if (iStep > 1)
        ShowStep(iStep - 1);
}

void frmWizard::cmdNext_Click()
{
    bool ok = true;
    switch (iStep) {
    case 1:
        m_owner.NewDB(ok); // a failed or cancelled creation stays on step 1
        break;
    case 3:
        ok = CheckEmulatorPath(txtEmulPath->text());
        break;
    case 5:
        ok = txtGB->text().isEmpty() || checkGameBase();
        break;
    default:
        break;
    }
    if (!ok)
        return;
    if (iStep >= iStepCount)
        finish();
    else
        ShowStep(iStep + 1);
}

bool frmWizard::checkGameBase()
{
    StepLineProgress progress(lblStep);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool accepted = gamebase::CheckGameBaseFile(txtGB->text(), progress);
    QApplication::restoreOverrideCursor();
    ShowStep(iStep); // the step line again
    return accepted;
}

void frmWizard::cmdPfad_Click()
{
    // Emulators here are programs without an extension: the filter offers every file.
    const QString current = txtEmulPath->text();
    const QString chosen = platform::dialogs().openFile(
        Translate(QStringLiteral("C64-Emulator auswählen")),
        Translate(QStringLiteral("Programme")) + QStringLiteral("|*"),
        current.contains(u'/') ? QFileInfo(current).absolutePath() : QString());
    if (!chosen.isEmpty())
        txtEmulPath->setText(chosen);
}

void frmWizard::cmdAddFile_Click()
{
    if (app::gDialogPath.isEmpty() && !app::gDatabasePath.isEmpty())
        app::gDialogPath = QFileInfo(app::gDatabasePath).absolutePath();
    m_owner.mnuAddFile_Click();
}

void frmWizard::cmdAddFolder_Click()
{
    m_owner.mnuAddDir_Click();
}

void frmWizard::cmdGB_Click()
{
    const QString chosen = gamebase::SelectGameBaseFile(QString());
    if (!chosen.isEmpty())
        txtGB->setText(chosen);
}

void frmWizard::finish()
{
    WizardChoice choice;
    choice.emulType = cboEmulators->currentData().toInt();
    choice.emulPath = txtEmulPath->text();
    choice.gameBasePath = txtGB->text();
    FinishWizard(choice);
    accept();
}

void frmWizard::keyPressEvent(QKeyEvent* event)
{
    // Escape is "Abbrechen", which the last step does not offer.
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        if (cmdCancel->isEnabled())
            cmdCancel->click();
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

void frmWizard::done(int result)
{
    app::SaveWindowPos(*this, kFormName);
    QDialog::done(result);
}

} // namespace vd::setup
