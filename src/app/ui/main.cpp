// The window front end, Main: the program folder, the Qt dialogs, then the main window.

#include "app/Globals.h"
#include "app/ui/ShowOnStart.h"
#include "browser/ui/frmMain.h"
#include "platform/DialogService.h"
#include "platform/ProgramFolder.h"
#include "platform/ui/QtDialogService.h"

#include <QApplication>
#include <QIcon>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vellumdock"));
    // Every window shows the program's icon; the desktop entry has the same name.
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/vellumdock.svg")));
    QGuiApplication::setDesktopFileName(QStringLiteral("vellumdock"));

    vd::platform::QtDialogService dialogService;
    vd::platform::setDialogService(&dialogService);

    // Main, in its designed order: portable, the hourglass until the first activation has run,
    // the program folder and the settings file's path, the version, then the window.
    vd::app::gPortable = true;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    vd::platform::HomeOption home = vd::platform::takeHomeOption(app.arguments());
    const QStringList showOnStart = vd::app::ui::takeShowOption(home.arguments);
    QString error = QStringLiteral("--home needs a folder.");
    if (home.missingValue ||
        !vd::platform::initProgramFolder(home.home, QApplication::applicationDirPath(), &error)) {
        QApplication::restoreOverrideCursor();
        vd::platform::dialogs().msgBox(error, vd::platform::vbCritical);
        vd::platform::setDialogService(nullptr);
        return 1;
    }
    vd::app::gVersion =
        vd::app::programVersion() + (vd::app::gPortable ? QStringLiteral(" Portable") : QString());

    int result = 0;
    {
        vd::browser::frmMain window;
        window.show();
        vd::app::ui::showOnStart(&window, showOnStart, [](QWidget* w) {
            return !static_cast<vd::browser::frmMain*>(w)->firstActivationPending();
        });
        result = QApplication::exec();
        // A session that ends without the window being closed still closes it properly.
        if (!window.unloaded())
            window.close();
    }
    vd::platform::setDialogService(nullptr);
    return result;
}
