#include "import/ui/frmNewPath.h"

#include "app/Settings.h"
#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "platform/DialogService.h"
#include "platform/Files.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace vd::import {

using app::Translate;

frmNewPath::frmNewPath(const QStringList& oldPaths, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmNewPath"));
    setWindowTitle(Translate(QStringLiteral("Neuer Dateipfad")));
    setModal(true);

    cboOldPath = new QComboBox(this);
    cboOldPath->setObjectName(QStringLiteral("cboOldPath"));
    cboOldPath->setEditable(true);
    cboOldPath->addItem(QString()); // no old path: the files are sought by name
    cboOldPath->addItems(oldPaths);
    cboOldPath->setCurrentIndex(0);

    cboNewPath = new QComboBox(this);
    cboNewPath->setObjectName(QStringLiteral("cboNewPath"));
    cboNewPath->setEditable(true);
    cboNewPath->addItems(app::gDialogs);
    cboNewPath->setCurrentText(QString());

    cmdBrowse = new QPushButton(QStringLiteral("..."), this);
    cmdBrowse->setObjectName(QStringLiteral("cmdBrowse"));
    cmdOk = new QPushButton(Translate(QStringLiteral("OK")), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    cmdCancel = new QPushButton(Translate(QStringLiteral("Abbrechen")), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(Translate(QStringLiteral("Alter Pfad:")), this), 0, 0);
    grid->addWidget(cboOldPath, 0, 1, 1, 2);
    grid->addWidget(new QLabel(Translate(QStringLiteral("Neuer Pfad:")), this), 1, 0);
    grid->addWidget(cboNewPath, 1, 1);
    grid->addWidget(cmdBrowse, 1, 2);
    grid->setColumnStretch(1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);
    resize(520, sizeHint().height());

    connect(cmdOk, &QPushButton::clicked, this, &frmNewPath::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdBrowse, &QPushButton::clicked, this, &frmNewPath::cmdBrowse_Click);
    app::ui::TranslateForm(this, true);
}

QString frmNewPath::oldPath() const
{
    return cboOldPath->currentText().trimmed();
}

QString frmNewPath::newPath() const
{
    return cboNewPath->currentText().trimmed();
}

void frmNewPath::cmdOk_Click()
{
    const QString folder = newPath();
    if (folder.isEmpty()) {
        platform::dialogs().msgBox(Translate(QStringLiteral("Bitte wählen Sie einen Ordner aus")),
                                   platform::vbExclamation);
        return;
    }
    if (!platform::FolderExists(folder)) {
        platform::dialogs().msgBox(Translate(QStringLiteral("Ungültiger Dateipfad: ")) + folder,
                                   platform::vbExclamation);
        return;
    }
    iMode = kModeConfirmed;
    accept();
}

void frmNewPath::cmdBrowse_Click()
{
    const QString folder = platform::dialogs().chooseFolder(
        Translate(QStringLiteral("Bitte wählen Sie einen Ordner aus")), newPath());
    if (!folder.isEmpty())
        cboNewPath->setCurrentText(folder);
}

} // namespace vd::import
