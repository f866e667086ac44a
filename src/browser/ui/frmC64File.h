#pragma once
// frmC64File: the properties of one or several catalogued entries. One entry shows its name,
// size, type, file and member, and the name can be changed; with several only the user
// category and the GameBase link apply to all of them.

#include "browser/ui/RememberedDialog.h"

#include <QList>
#include <QVariant>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace vd::import {
class clsFileManager;
}

namespace vd::browser {

class frmC64File : public RememberedDialog
{
    Q_OBJECT

public:
    // `ids`: the C64Files rows; the first one's values are shown. loaded() is false when it
    // is gone.
    frmC64File(import::clsFileManager& fileManager, const QList<qint64>& ids,
               QWidget* parent = nullptr);

    bool loaded() const { return m_loaded; }
    bool saved() const { return m_saved; }

    QLabel* lblName = nullptr;
    QLineEdit* txtFile = nullptr;
    QLabel* lblSize = nullptr;
    QLabel* lblFileType = nullptr;
    QLabel* lblPath = nullptr;
    QLabel* lblMember = nullptr;
    QComboBox* cboCategory = nullptr;
    // The GameBase link: the game's number, empty for none.
    QComboBox* cboGB = nullptr;
    QPushButton* cmdOk = nullptr;
    QPushButton* cmdCancel = nullptr;

private:
    void load();
    void cmdOk_Click();

    import::clsFileManager& m_fm;
    QList<qint64> m_ids;
    QString m_gbAtStart;
    bool m_loaded = false;
    bool m_saved = false;
};

} // namespace vd::browser
