#pragma once
// The program's main window. For now it is the empty frame the catalogue views will fill.

#include <QMainWindow>

namespace vd::app {

class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
};

} // namespace vd::app
