#pragma once
// The legend of the filter editor: each compare word of the buttons with what it means.

#include <QDialog>

class QTreeWidget;

namespace vd::browser {

class frmLegend : public QDialog
{
    Q_OBJECT
public:
    explicit frmLegend(QWidget* parent = nullptr);

    QTreeWidget* list() const { return lstLegend; }

private:
    QTreeWidget* lstLegend;
};

} // namespace vd::browser
