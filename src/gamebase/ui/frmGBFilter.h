#pragma once
// The GameBase filter editor: one row per GameBase field with its compare button and its value
// (the lookup fields from their tables, the comment and the size as text), the named filters
// in cboFilter, and the commands new, rename, delete, reset and the legend.

#include "browser/Filters.h"

#include <optional>
#include <QDialog>
#include <QVector>

class QComboBox;
class QLineEdit;
class QPushButton;
class QToolBar;

namespace vd::controls {
class DBCombo;
}

namespace vd::gamebase {

class frmGBFilter : public QDialog
{
    Q_OBJECT
public:
    // One input row: the field it stores, the operators its button walks, its value control.
    struct FieldRow
    {
        QString field;    // as stored: PU_ID, ..., YE_ID, Comment, V_Length
        QString compares; // the button's list, "X" follows the last
        QPushButton* cmdCompare = nullptr;
        controls::DBCombo* combo = nullptr; // lookup fields
        QLineEdit* text = nullptr;          // txtComment, txtSize
    };

    frmGBFilter(browser::FilterCollection& filters, QWidget* parent = nullptr);

    // Shows the filter of `key` (0 or unknown: the first, or a new one when there is none).
    void InitForm(qint32 key);

    QComboBox* cboFilter = nullptr;
    QToolBar* tbFilter = nullptr;
    QPushButton* cmdApply = nullptr;
    QPushButton* cmdOk = nullptr;
    QPushButton* cmdExit = nullptr;
    QLineEdit* txtComment = nullptr;
    QLineEdit* txtSize = nullptr;
    QVector<FieldRow> rows;

    qint32 currentKey() const { return m_key; }
    // The row of a stored field name (any case; "Y.YEAR" is the year's row), or -1.
    int rowOf(const QString& field) const;
    // Steps a row's button to its next operator.
    void cmdCompare_Click(int row);

    void cmdNew_Click();
    void cmdEdit_Click();
    void cmdDelete_Click();
    void cmdReset_Click();
    void cmdInfo_Click();
    void cmdApply_Click();

signals:
    // The filter was written; the window applies it.
    void applied(qint32 key);

private:
    void addRow(const QString& caption, const QString& field, const QString& compares,
                const QString& lookup);
    void fillFilterBox();
    void showFilter(qint32 key);
    void setCompare(int row, const QString& compare);
    std::optional<QString> askName(const QString& prompt, const QString& title,
                                   const QString& start, qint32 ownKey);

    browser::FilterCollection& m_filters;
    qint32 m_key = 0;
};

} // namespace vd::gamebase
