#pragma once
// The about box of the menu "?": the program, its version, the libraries it runs on and the
// folders it uses, so that a user can tell which copy runs and where its files lie.

#include <QDialog>

class QLabel;

namespace vd::browser {

class frmLogo : public QDialog
{
    Q_OBJECT
public:
    explicit frmLogo(QWidget* parent = nullptr);

    QLabel* lblVersion;
    QLabel* lblInfo;
};

} // namespace vd::browser
