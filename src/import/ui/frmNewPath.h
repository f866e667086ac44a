#pragma once
// frmNewPath: asks where the missing files of a check might be now. The new folder is required
// and must exist; the old path is optional and, when given, is replaced by the new folder in
// each missing file's path.

#include <QDialog>
#include <QStringList>

class QComboBox;
class QPushButton;

namespace vd::import {

class frmNewPath : public QDialog
{
    Q_OBJECT

public:
    // The answer of a confirmed dialog.
    static constexpr int kModeConfirmed = 11;

    // `oldPaths`: the folders of the missing files, offered as old paths.
    explicit frmNewPath(const QStringList& oldPaths, QWidget* parent = nullptr);

    int iMode = 0; // kModeConfirmed after a valid cmdOk
    QString oldPath() const;
    QString newPath() const;

    QComboBox* cboOldPath = nullptr;
    QComboBox* cboNewPath = nullptr;
    QPushButton* cmdOk = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdBrowse = nullptr;

private:
    void cmdOk_Click();
    void cmdBrowse_Click();
};

} // namespace vd::import
