#include "browser/ui/frmC64File.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "browser/FileCommands.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "import/clsFileManager.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace vd::browser {

using app::Translate;
using catalogue::ValueText;

frmC64File::frmC64File(import::clsFileManager& fileManager, const QList<qint64>& ids,
                       QWidget* parent)
    : RememberedDialog(QStringLiteral("frmC64File"), QSize(520, 0), parent), m_fm(fileManager),
      m_ids(ids)
{
    setWindowTitle(Translate(QStringLiteral("Eigenschaften")));
    const bool one = ids.size() == 1;
    lblName = new QLabel(one ? Translate(QStringLiteral("Name des C64File:"))
                             : Translate(QStringLiteral("Anzahl Files:")) + QLatin1Char(' ') +
                                   QString::number(ids.size()),
                         this);
    lblName->setObjectName(QStringLiteral("lblName"));
    txtFile = new QLineEdit(this);
    txtFile->setObjectName(QStringLiteral("txtFile"));
    txtFile->setVisible(one);
    const auto value = [this](const char* name) {
        auto* label = new QLabel(this);
        label->setObjectName(QString::fromLatin1(name));
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        return label;
    };
    lblSize = value("lblSize");
    lblFileType = value("lblFileType");
    lblPath = value("lblPath");
    lblMember = value("lblMember");
    cboCategory = new QComboBox(this);
    cboCategory->setObjectName(QStringLiteral("cboCategory"));
    cboCategory->setEditable(true);
    cboGB = new QComboBox(this);
    cboGB->setObjectName(QStringLiteral("cboGB"));
    cboGB->setEditable(true);
    cmdOk = new QPushButton(Translate(QStringLiteral("OK")), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    cmdCancel = new QPushButton(Translate(QStringLiteral("Abbrechen")), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* grid = new QGridLayout;
    int r = 0;
    grid->addWidget(lblName, r, 0);
    grid->addWidget(txtFile, r++, 1);
    const auto row = [&](const QString& caption, QWidget* w) {
        auto* label = new QLabel(Translate(caption), this);
        grid->addWidget(label, r, 0);
        grid->addWidget(w, r++, 1);
        label->setVisible(m_ids.size() == 1 || w == cboCategory || w == cboGB);
        w->setVisible(label->isVisible());
    };
    row(QStringLiteral("Größe:"), lblSize);
    row(QStringLiteral("Dateityp:"), lblFileType);
    row(QStringLiteral("Dateipfad:"), lblPath);
    row(QStringLiteral("Archivpfad:"), lblMember);
    row(QStringLiteral("Kategorie:"), cboCategory);
    row(QStringLiteral("Gamebase:"), cboGB);
    grid->setColumnStretch(1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);

    load();
    cmdOk->setEnabled(m_loaded);
    connect(cmdOk, &QPushButton::clicked, this, &frmC64File::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    app::ui::TranslateForm(this, true);
}

void frmC64File::load()
{
    cboCategory->addItem(QString());
    const auto cats = app::gDB->openRecordset(
        QStringLiteral("Select ID,tCategory From Category where iType=") + QString::number(3),
        db::RecordsetType::Snapshot);
    for (; !cats->eof(); cats->moveNext())
        cboCategory->addItem(ValueText(cats->value(1)), cats->value(0));
    cats->close();
    if (m_ids.isEmpty())
        return;
    const auto rs = app::gDB->openRecordset(
        QStringLiteral("Select F.tProgram,F.lSize,F.tExtension,C.tPath,C.tUnpackPath,"
                       "F.Category_User,F.GB_ID From C64Files as F Left Join Category as C on "
                       "F.Category_File=C.ID where F.ID=") +
            QString::number(m_ids.first()),
        db::RecordsetType::Snapshot);
    if (rs->eof())
        return;
    m_loaded = true;
    txtFile->setText(ValueText(rs->value(0)));
    lblSize->setText(ValueText(rs->value(1)));
    lblFileType->setText(ValueText(rs->value(2)));
    lblPath->setText(ValueText(rs->value(3)));
    lblMember->setText(ValueText(rs->value(4)));
    const QVariant user = rs->value(5);
    cboCategory->setCurrentIndex(user.isNull() ? 0 : std::max(0, cboCategory->findData(user)));
    m_gbAtStart = ValueText(rs->value(6));
    if (!m_gbAtStart.isEmpty())
        cboGB->addItem(m_gbAtStart);
    cboGB->setCurrentText(m_gbAtStart);
}

void frmC64File::cmdOk_Click()
{
    EntryChange change;
    change.name = txtFile->text();
    change.category = cboCategory->currentText().trimmed();
    const QString gb = cboGB->currentText().trimmed();
    change.gbId = gb.toLongLong();
    change.gbChanged = gb != m_gbAtStart;
    if (!SaveEntries(m_ids, change, m_fm.lLastCategoryID))
        return;
    m_saved = true;
    accept();
}

} // namespace vd::browser
