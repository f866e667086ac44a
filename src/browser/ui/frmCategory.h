#pragma once
// frmCategory: gives every entry of the marked files one user category, a new one by its new
// name, or takes it away with "Löschen".

#include "browser/ui/RememberedDialog.h"

#include <QList>

class QComboBox;
class QLabel;
class QPushButton;

namespace vd::import {
class clsFileManager;
}

namespace vd::browser {

class frmCategory : public RememberedDialog
{
    Q_OBJECT

public:
    frmCategory(import::clsFileManager& fileManager, const QList<qint64>& fileIds,
                QWidget* parent = nullptr);

    bool saved() const { return m_saved; }

    QLabel* lblCount = nullptr;
    QComboBox* cboCategory = nullptr;
    QPushButton* cmdOk = nullptr;
    QPushButton* cmdCancel = nullptr;

private:
    void cmdOk_Click();

    import::clsFileManager& m_fm;
    QList<qint64> m_fileIds;
    bool m_saved = false;
};

} // namespace vd::browser
