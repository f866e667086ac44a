#include "app/ui/MainWindow.h"

#include <QAction>
#include <QKeySequence>
#include <QStatusBar>

namespace vd::app {

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent)
{
    setWindowTitle(QStringLiteral("Vellumdock"));
    resize(900, 600);
    auto* quit = new QAction(this);
    quit->setShortcut(QKeySequence::Quit);
    connect(quit, &QAction::triggered, this, &QWidget::close);
    addAction(quit);
    statusBar();
}

} // namespace vd::app
