#pragma once
// frmWizard: the modal window of a first run. Six steps lead through a new catalogue, the
// default emulator and its path, the first import, an optional GameBase, and the finish that
// sets the emulators and profiles up for the chosen emulator. Each step works at once on the
// main window and the globals: what a step did stays when the wizard is cancelled later.

#include <array>
#include <QDialog>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;

namespace vd::browser {
class frmMain;
}

namespace vd::setup {

class frmWizard : public QDialog
{
    Q_OBJECT
public:
    // The designed size, in twips, and the left position of the step on show.
    static constexpr double kDesignWidthTwips = 7200;
    static constexpr double kDesignHeightTwips = 4500;
    static constexpr double kStepLeftTwips = 800;

    // `owner` creates the catalogue and runs the imports; it is also the parent.
    explicit frmWizard(browser::frmMain& owner);

    // Shows step `step` (1..iStepCount): its frame, "Schritt: n / 6", and the buttons' states.
    void ShowStep(int step);
    int step() const { return iStep; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

public slots:
    void done(int result) override;

private:
    void buildSteps();
    QGroupBox* addStep(const QString& heading);
    void Form_Load();
    void cmdBack_Click();
    void cmdNext_Click();
    void cmdPfad_Click();
    void cmdAddFile_Click();
    void cmdAddFolder_Click();
    void cmdGB_Click();
    bool checkGameBase();
    void finish();

    browser::frmMain& m_owner;
    int iStep = 0;
    int iStepCount = 0;

    QLabel* lblStart = nullptr;
    QLabel* lblStep = nullptr;
    QStackedWidget* m_steps = nullptr;
    std::array<QGroupBox*, 7> fraStep{}; // 1..6; element 0 is unused
    QComboBox* cboEmulators = nullptr;
    QLineEdit* txtEmulPath = nullptr;
    QPushButton* cmdPfad = nullptr;
    QPushButton* cmdAddFile = nullptr;
    QPushButton* cmdAddFolder = nullptr;
    QLineEdit* txtGB = nullptr;
    QPushButton* cmdGB = nullptr;
    QPushButton* cmdBack = nullptr;
    QPushButton* cmdNext = nullptr;
    QPushButton* cmdCancel = nullptr;
};

} // namespace vd::setup
