// frmMain: the commands that run in the batch window: importing a file or a folder, checking
// the catalogue. The compaction at exit is in frmMain.cpp.

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Startup.h"
#include "app/Translate.h"
#include "browser/ui/frmMain.h"
#include "import/clsFileManager.h"
#include "import/ImportSettings.h"
#include "import/ui/frmProcess.h"
#include "platform/DialogService.h"

#include <QAction>
#include <QFileInfo>

namespace vd::browser {

using app::Translate;

void frmMain::connectBatchCommands()
{
    setCommand(QStringLiteral("mnuAddFile"), [this] { mnuAddFile_Click(); });
    setCommand(QStringLiteral("mnuAddDir"), [this] { mnuAddDir_Click(); });
    setCommand(QStringLiteral("mnuCheckFiles"), [this] { mnuCheckFiles_Click(); });
}

int frmMain::runProcess(int mode, const QString& param)
{
    if (!app::gDB || !gFileManager)
        return 0;
    // The options dialog may have changed the importer's settings since the last batch.
    gFileManager->options = import::importOptionsInForce();
    const import::frmProcess::Outcome outcome =
        import::frmProcess::Run(*gFileManager, this, mode, param);
    if (outcome.iMode == import::kModeChanged)
        BuildView(iViewMode, 0, 0);
    // After the views, whose building shows its own duration there.
    ShowStatus(outcome.sResultText);
    return outcome.iMode;
}

void frmMain::rememberImportFolder(const QString& folder)
{
    app::gDialogPath = folder;
    app::AddRecent(app::gDialogs, folder);
    ArrangeRecentMenu(app::gDialogs, QStringLiteral("AddDir"));
    ArrangeRecentMenu(app::gDialogs, QStringLiteral("AddFile"));
}

void frmMain::mnuAddFile_Click(const QString& startFolder)
{
    // The filter offers what a folder scan would take.
    QStringList patterns;
    for (const QString& ext : app::gImportFiles.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        patterns << QLatin1Char('*') + ext;
    const QString path = platform::dialogs().openFile(
        Translate(QStringLiteral("Datei importieren")),
        Translate(QStringLiteral("Dateien")) + QLatin1Char('|') + patterns.join(QLatin1Char(';')),
        startFolder.isEmpty() ? app::gDialogPath : startFolder);
    if (path.isEmpty())
        return;
    rememberImportFolder(QFileInfo(path).absolutePath());
    runProcess(import::kModeAddFile, path);
}

void frmMain::mnuAddDir_Click(const QString& folder)
{
    QString chosen = folder;
    if (chosen.isEmpty())
        chosen = platform::dialogs().chooseFolder(Translate(QStringLiteral("Ordner importieren")),
                                                  app::gDialogPath);
    if (chosen.isEmpty())
        return;
    rememberImportFolder(chosen);
    runProcess(import::kModeAddFolder, chosen);
}

void frmMain::mnuCheckFiles_Click()
{
    bool ok = false;
    app::CleanTempFolder(ok);
    if (ok && gFileManager)
        gFileManager->DeleteTempCol();
    runProcess(import::kModeCheck, QString());
}

} // namespace vd::browser
