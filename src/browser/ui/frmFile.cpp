#include "browser/ui/frmFile.h"

#include "app/Translate.h"
#include "app/ui/TranslateForm.h"
#include "import/FileHash.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace vd::browser {

using app::Translate;

namespace {

QLabel* valueLabel(QWidget* parent, const QString& name, const QString& text)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

frmFile::frmFile(import::clsFileManager& fileManager, qint64 id, QWidget* parent)
    : RememberedDialog(QStringLiteral("frmFile"), QSize(560, 0), parent), m_fm(fileManager)
{
    setWindowTitle(Translate(QStringLiteral("Eigenschaften")));
    m_loaded = ReadFileProperties(id, m_row);

    lblCategory = valueLabel(this, QStringLiteral("lblCategory"), m_row.tCategory);
    lblPath = valueLabel(this, QStringLiteral("lblPath"), m_row.tPath);
    lblUnpackPath = valueLabel(this, QStringLiteral("lblUnpackPath"), m_row.tUnpackPath);
    lblFileType = valueLabel(this, QStringLiteral("lblFileType"), QString::number(m_row.iFileType));
    lblCount = valueLabel(this, QStringLiteral("lblCount"), QString::number(m_row.entryCount));
    txtNew = new QLineEdit(m_row.baseName(), this);
    txtNew->setObjectName(QStringLiteral("txtNew"));
    lblExtension = valueLabel(this, QStringLiteral("lblExtension"), m_row.extension());
    chkM5D = new QCheckBox(Translate(QStringLiteral("MD5-Checksumme")), this);
    chkM5D->setObjectName(QStringLiteral("chkM5D"));
    lblmd5 = valueLabel(this, QStringLiteral("lblmd5"), m_row.tHash);
    cmdCopy = new QPushButton(Translate(QStringLiteral("Kopieren")), this);
    cmdCopy->setObjectName(QStringLiteral("cmdCopy"));
    cmdCopy->setEnabled(!m_row.tHash.isEmpty());
    cmdOk = new QPushButton(Translate(QStringLiteral("OK")), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    cmdOk->setEnabled(m_loaded);
    cmdCancel = new QPushButton(Translate(QStringLiteral("Abbrechen")), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* grid = new QGridLayout;
    int r = 0;
    const auto row = [&](const QString& caption, QWidget* value, QWidget* extra = nullptr) {
        grid->addWidget(new QLabel(Translate(caption), this), r, 0);
        grid->addWidget(value, r, 1, 1, extra ? 1 : 2);
        if (extra)
            grid->addWidget(extra, r, 2);
        ++r;
    };
    row(QStringLiteral("Name:"), lblCategory);
    row(QStringLiteral("Dateiname:"), txtNew, lblExtension);
    row(QStringLiteral("Dateipfad:"), lblPath);
    row(QStringLiteral("Archivpfad:"), lblUnpackPath);
    row(QStringLiteral("Dateityp:"), lblFileType);
    row(QStringLiteral("Anzahl Files:"), lblCount);
    grid->addWidget(chkM5D, r, 0);
    grid->addWidget(lblmd5, r, 1);
    grid->addWidget(cmdCopy, r, 2);
    grid->setColumnStretch(1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);

    connect(chkM5D, &QCheckBox::clicked, this, &frmFile::chkM5D_Click);
    connect(cmdCopy, &QPushButton::clicked, this, &frmFile::cmdCopy_Click);
    connect(cmdOk, &QPushButton::clicked, this, &frmFile::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    app::ui::TranslateForm(this, true);
}

void frmFile::chkM5D_Click()
{
    if (!chkM5D->isChecked())
        return;
    // Reading a large image or unpacking an archive takes a moment.
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const QString hash = import::GetFileHash(m_fm, m_row.tFile, m_row.tPath, m_row.tUnpackPath);
    QApplication::restoreOverrideCursor();
    lblmd5->setText(hash);
    cmdCopy->setEnabled(!hash.isEmpty());
    if (hash.isEmpty())
        chkM5D->setChecked(false);
}

void frmFile::cmdCopy_Click()
{
    if (!lblmd5->text().isEmpty())
        QApplication::clipboard()->setText(lblmd5->text());
}

void frmFile::cmdOk_Click()
{
    const QString hash = chkM5D->isChecked() ? lblmd5->text() : QString();
    if (!SaveFileProperties(m_row, txtNew->text().trimmed(), hash))
        return;
    m_saved = true;
    accept();
}

} // namespace vd::browser
