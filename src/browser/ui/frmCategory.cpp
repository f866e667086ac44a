#include "browser/ui/frmCategory.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "browser/FileCommands.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "import/clsFileManager.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace vd::browser {

using app::Translate;

frmCategory::frmCategory(import::clsFileManager& fileManager, const QList<qint64>& fileIds,
                         QWidget* parent)
    : RememberedDialog(QStringLiteral("frmCategory"), QSize(360, 0), parent), m_fm(fileManager),
      m_fileIds(fileIds)
{
    setWindowTitle(Translate(QStringLiteral("Kategorie")));
    lblCount = new QLabel(Translate(QStringLiteral("Anzahl Files:")) + QLatin1Char(' ') +
                              QString::number(fileIds.size()),
                          this);
    lblCount->setObjectName(QStringLiteral("lblCount"));
    cboCategory = new QComboBox(this);
    cboCategory->setObjectName(QStringLiteral("cboCategory"));
    cboCategory->setEditable(true);
    cboCategory->addItem(Translate(QStringLiteral("Löschen")));
    const auto rs =
        app::gDB->openRecordset(QStringLiteral("Select ID,tCategory From Category where iType=") +
                                    QString::number(3) + QStringLiteral(" order by tCategory"),
                                db::RecordsetType::Snapshot);
    for (; !rs->eof(); rs->moveNext())
        cboCategory->addItem(catalogue::ValueText(rs->value(1)), rs->value(0));
    rs->close();
    cboCategory->setCurrentText(QString());
    cmdOk = new QPushButton(Translate(QStringLiteral("OK")), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    cmdCancel = new QPushButton(Translate(QStringLiteral("Abbrechen")), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblCount);
    layout->addWidget(cboCategory);
    layout->addLayout(buttons);

    connect(cmdOk, &QPushButton::clicked, this, &frmCategory::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    app::ui::TranslateForm(this, true);
}

void frmCategory::cmdOk_Click()
{
    const QString name = cboCategory->currentText().trimmed();
    // Nothing chosen is no choice: "Löschen" has to be picked to take categories away.
    if (name.isEmpty())
        return;
    AssignCategory(m_fileIds, name, m_fm.lLastCategoryID);
    m_saved = true;
    accept();
}

} // namespace vd::browser
