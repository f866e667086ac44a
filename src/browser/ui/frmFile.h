#pragma once
// frmFile: the properties of one catalogued file. It shows the row and the number of its
// entries, renames the file (on disk too), and computes its MD5 sum on request.

#include "browser/FileCommands.h"

#include "browser/ui/RememberedDialog.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace vd::import {
class clsFileManager;
}

namespace vd::browser {

class frmFile : public RememberedDialog
{
    Q_OBJECT

public:
    // Reads the Category row `id`; loaded() is false when it is gone.
    frmFile(import::clsFileManager& fileManager, qint64 id, QWidget* parent = nullptr);

    bool loaded() const { return m_loaded; }
    // Whether OK stored anything, so the views are read anew.
    bool saved() const { return m_saved; }

    QLabel* lblCategory = nullptr;
    QLabel* lblPath = nullptr;
    QLabel* lblUnpackPath = nullptr;
    QLabel* lblFileType = nullptr;
    QLabel* lblCount = nullptr;
    QLineEdit* txtNew = nullptr;
    QLabel* lblExtension = nullptr;
    QCheckBox* chkM5D = nullptr;
    QLabel* lblmd5 = nullptr;
    QPushButton* cmdCopy = nullptr;
    QPushButton* cmdOk = nullptr;
    QPushButton* cmdCancel = nullptr;

private:
    void chkM5D_Click();
    void cmdCopy_Click();
    void cmdOk_Click();

    import::clsFileManager& m_fm;
    FileProperties m_row;
    bool m_loaded = false;
    bool m_saved = false;
};

} // namespace vd::browser
