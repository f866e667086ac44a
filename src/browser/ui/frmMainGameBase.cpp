// frmMain: the commands of the menu "Gamebase": the GameBase window, and the two batches that
// link catalogued ZIP files to games.

#include "app/Translate.h"
#include "browser/ui/frmMain.h"
#include "browser/ViewBuilder.h"
#include "gamebase/GameBase.h"
#include "gamebase/ui/frmGB.h"
#include "import/BatchProcess.h"
#include "import/ImportBatch.h"
#include "platform/Progress.h"

#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QTabBar>

namespace vd::browser {

using app::Translate;

namespace {

// Building the cache of a new or changed .mdb takes a while: its steps show in the status line
// and the window keeps painting.
class StatusProgress : public platform::Progress
{
public:
    explicit StatusProgress(std::function<void(const QString&)> show) : m_show(std::move(show)) {}
    void setStatus(const QString& text) override
    {
        m_show(Translate(QStringLiteral("Gamebase wird gelesen: ")) + text);
        yield();
    }
    void yield() override { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }

private:
    std::function<void(const QString&)> m_show;
};

bool openGameBase(const std::function<void(const QString&)>& show)
{
    StatusProgress progress(show);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool open = gamebase::OpenGameBase(true, progress);
    QApplication::restoreOverrideCursor();
    show(QString());
    return open;
}

} // namespace

void frmMain::connectGameBaseCommands()
{
    setCommand(QStringLiteral("mnuGBOpen"), [this] { mnuGBOpen_Click(); });
    setCommand(QStringLiteral("mnuGBConnect"), [this] { mnuGBConnect_Click(); });
    setCommand(QStringLiteral("mnuGBImportCat"), [this] { mnuGBImportCat_Click(); });
}

void frmMain::mnuGBOpen_Click()
{
    if (!openGameBase([this](const QString& text) { ShowStatus(text); }))
        return;
    // Created on the first use and kept for the next.
    auto* form = findChild<gamebase::frmGB*>(QStringLiteral("frmGB"), Qt::FindDirectChildrenOnly);
    if (!form) {
        form = new gamebase::frmGB(gFileManager, this);
        connect(form, &gamebase::frmGB::optionsRequested, this, &frmMain::ShowOptions);
        form->BuildView(gamebase::kGBViewGameBase);
    } else {
        form->BuildView(form->tabViews->currentIndex() + 1);
    }
    form->clearChangedFlags();
    form->exec();
    if (form->addedFiles() > 0 || form->addedEntries() > 0)
        ShowStatus(Translate(QStringLiteral("Hinzugefügte Dateien: ")) +
                   QString::number(form->addedFiles()) + QStringLiteral(", ") +
                   Translate(QStringLiteral("Hinzugefügte C64-Files: ")) +
                   QString::number(form->addedEntries()));
    if (form->changedFlags() & gamebase::frmGB::kCatalogueChanged)
        BuildView(iViewMode, 0, 0);
}

void frmMain::mnuGBConnect_Click()
{
    if (!openGameBase([this](const QString& text) { ShowStatus(text); }))
        return;
    runProcess(import::kModeConnectGameBase, QString());
}

void frmMain::mnuGBImportCat_Click()
{
    if (!openGameBase([this](const QString& text) { ShowStatus(text); }))
        return;
    const QAction* entry = menuEntry(QStringLiteral("mnuGBImportCat"));
    const int result = runProcess(import::kModeConnectGameBase, entry ? entry->text() : QString());
    // The linked games brought their genres as user categories: view 3 shows them.
    if (result == import::kModeChanged && iViewMode != kViewCategories)
        BuildView(kViewCategories, 0, 0);
}

} // namespace vd::browser
