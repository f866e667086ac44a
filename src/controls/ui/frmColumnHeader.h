#pragma once
// The column editor "Spalten konfigurieren": which columns of a list show, or for the view
// "GB" which optional GameBase columns the settings list. The rules live in ColumnEditor; this
// is its window.

#include "controls/ColumnEditor.h"

#include <QDialog>
#include <QPointer>

class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace vd::controls {

class SimpleReport;

class frmColumnHeader : public QDialog
{
    Q_OBJECT
public:
    // `tView` "GB" with a valid `gb` source edits the setting; anything else the live columns
    // of `report`.
    frmColumnHeader(SimpleReport* report, const QString& tView, const GBColumnSource& gb,
                    QWidget* parent = nullptr);

    const ColumnEditor& editor() const { return m_editor; }
    QTreeWidget* lvHeaders() const { return m_list; }
    // The action buttons by index: 2 "Anzeigen", 3 "Ausblenden", 4 "Standard".
    QPushButton* cmdAction(int index) const;
    QPushButton* cmdApply() const { return m_apply; }
    QPushButton* cmdOk() const { return m_ok; }

    // The caption of the settings' name column: the one column that may always be hidden.
    static QString nameColumnCaption();

private:
    void fill();
    void updateButtons();
    void showRow(int row);
    bool hideRow(int row);
    void restoreDefaults();
    bool apply();
    void itemChanged(QTreeWidgetItem* item);
    int currentRow() const;
    void afterWrite();

    QPointer<SimpleReport> m_report;
    GBColumnSource m_gb;
    ColumnEditor m_editor;
    QTreeWidget* m_list;
    QPushButton* m_show;
    QPushButton* m_hide;
    QPushButton* m_defaults;
    QPushButton* m_apply;
    QPushButton* m_ok;
    bool m_filling = false;
};

} // namespace vd::controls
