// The window front end: finds the program folder, installs the Qt dialogs and shows the main
// window.

#include "app/ui/MainWindow.h"
#include "platform/DialogService.h"
#include "platform/ProgramFolder.h"
#include "platform/ui/QtDialogService.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vellumdock"));

    vd::platform::QtDialogService dialogService;
    vd::platform::setDialogService(&dialogService);

    const vd::platform::HomeOption home = vd::platform::takeHomeOption(app.arguments());
    QString error = QStringLiteral("--home needs a folder.");
    if (home.missingValue ||
        !vd::platform::initProgramFolder(home.home, QApplication::applicationDirPath(), &error)) {
        vd::platform::dialogs().msgBox(error, vd::platform::vbCritical);
        vd::platform::setDialogService(nullptr);
        return 1;
    }

    vd::app::MainWindow window;
    window.show();
    const int result = QApplication::exec();
    vd::platform::setDialogService(nullptr);
    return result;
}
