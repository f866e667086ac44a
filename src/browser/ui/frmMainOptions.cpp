// frmMain: the options dialog, shown from mnuOption and the toolbar buttons "Options" of this
// window and of the GameBase window, and what follows it.

#include "browser/ui/frmMain.h"
#include "gamebase/GameBase.h"
#include "gamebase/ui/frmGB.h"
#include "setup/ui/frmOptions.h"

#include <QAction>
#include <QPointer>

namespace vd::browser {

void frmMain::connectOptionCommands()
{
    setCommand(QStringLiteral("mnuOption"), [this] { ShowOptions(); });
}

void frmMain::ShowOptions()
{
    // The GameBase window is kept after its first use, shown or not; its lists may hold the
    // GameBase's recordsets either way.
    QPointer<gamebase::frmGB> gb =
        findChild<gamebase::frmGB*>(QStringLiteral("frmGB"), Qt::FindDirectChildrenOnly);
    const bool gbOpen = gb && gb->isVisible();
    setup::frmOptions form(gbOpen ? static_cast<QWidget*>(gb.data()) : this);
    form.setCloseGameBase([gb] {
        if (gb)
            gb->releaseGameBase();
        gamebase::CloseGameBase();
    });
    form.exec();
    // Steps of a refused "OK" took effect too, so the flags count after "Abbrechen" as well.
    if (form.startMenusChanged() || form.previewChanged()) {
        BuildStartMenu();
        if (gbOpen)
            gb->BuildStartMenu();
    }
    if (form.previewChanged()) {
        applyPreviewLook();
        ShowPreview(true);
    }
    if (gbOpen && form.gameBaseClosed())
        gb->StartOver();
    else if (gbOpen && form.screenshotsChanged())
        gb->ShowScreenshots();
}

} // namespace vd::browser
