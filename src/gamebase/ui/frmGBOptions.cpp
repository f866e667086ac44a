// frmGB: what the window does after the options dialog changed the profiles or the GameBase.

#include "app/Globals.h"
#include "catalogue/Database.h"
#include "controls/ui/SimpleReport.h"
#include "gamebase/GameBase.h"
#include "gamebase/ui/frmGB.h"

#include <QComboBox>
#include <QLabel>
#include <QTimer>

namespace vd::gamebase {

void frmGB::BuildStartMenu()
{
    fillProfilMenu();
    UpdateStartButtons();
}

// The lists hold recordsets of the GameBase; they are emptied before it is closed.
void frmGB::releaseGameBase()
{
    if (!gGB)
        return;
    for (controls::SimpleReport* list : {lstGB, lstMyFiles})
        if (list->engine().DataBase() == gGB.get())
            list->setRecordSource(QString());
}

void frmGB::StartOver()
{
    moTimer->stop();
    {
        const QSignalBlocker block(cboSearch);
        cboSearch->setEditText(QString());
    }
    setStatusText(QString());
    // The GameBase that the options set, opened without asking; without one the list stays
    // empty.
    if (OpenGameBase(false) || !m_sql.onGameBase)
        BuildView(m_view);
    else
        releaseGameBase();
    ShowScreenshots();
}

} // namespace vd::gamebase
