#pragma once
// The find dialog of a list: a search text, the field to search (the visible columns) and a
// direction. It searches from the current row and asks before it starts over at the top.

#include <QDialog>
#include <QPointer>

class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace vd::controls {

class SimpleReport;

class frmSearch : public QDialog
{
    Q_OBJECT
public:
    // `client` is the list searched (frmFind_GetClientCtrl); the dialog fills its field list
    // from the list's visible columns.
    explicit frmSearch(SimpleReport* client, QWidget* parent = nullptr);

    void setSearchText(const QString& text);
    // Chooses the field by the list's column index; a column not offered keeps the first.
    void setField(int column);
    void setSearchUp(bool up);

    // cmdSearch: finds the next row and makes it current. Whether a row was found.
    bool cmdSearch_Click();

private:
    void fillFields();

    QPointer<SimpleReport> m_client;
    QLineEdit* m_text;
    QComboBox* m_fields;
    QRadioButton* m_down;
    QRadioButton* m_up;
    QPushButton* m_search;
};

} // namespace vd::controls
