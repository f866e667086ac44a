#pragma once
// The database combo box: an edit field with a drop-down list filled from a SELECT. What is
// stored (ValueField) and what is shown (TextField) are separate; typing completes from the
// list when AutoSearch is on, with the added part selected so that the next key replaces it.
//
// Keys in the field: F4 or Alt+Down opens and closes the list; Up and Down move through the
// rows (in the open list, or from value to value); Return takes the list's row; Esc closes the
// list, or else brings back the value the field had before the user changed it.

#include "controls/DBComboEngine.h"

#include <QColor>
#include <QPalette>
#include <QWidget>

class QLineEdit;
class QToolButton;

namespace vd::controls {

class frmDBCombo;

class DBCombo : public QWidget
{
    Q_OBJECT
public:
    // How MoveCursor moves.
    enum MoveMode
    {
        MoveFirst = 0,
        MovePrevious = 1,
        MoveNext = 2,
        MoveLast = 3
    };

    explicit DBCombo(QWidget* parent = nullptr);
    ~DBCombo() override;

    DBComboEngine& engine() { return m_engine; }
    DBComboProperties& props() { return m_engine.props(); }
    // Applies changed properties to the field (buttons, lock, colours).
    void propertiesChanged();
    void readProperties(const QVariantMap& bag);
    QVariantMap writeProperties() const;

    db::Database* DataBase() const { return m_engine.DataBase(); }
    void setDataBase(db::Database* database);
    void setRecordSource(const QString& sql);

    QVariant Value() const { return m_value; }
    void setValue(const QVariant& value);
    QString Text() const;
    void setText(const QString& text);
    bool Changed() const { return m_changed; }
    void setChanged(bool on);
    bool HoldOrgValue() const { return m_holdOrgValue; }
    void setHoldOrgValue(bool on) { m_holdOrgValue = on; }
    bool LockUpdate() const { return m_lockUpdate; }
    void setLockUpdate(bool on) { m_lockUpdate = on; }
    bool NoInitRecordset() const { return m_noInitRecordset; }
    void setNoInitRecordset(bool on) { m_noInitRecordset = on; }
    // A field of the row the value came from; Null without one.
    QVariant FieldValue(const QVariant& field) const { return m_row.value(field); }

    // Takes the first row whose text starts with `text`; whether one was found.
    bool Search(const QString& text);
    // As if the user had typed `text` into the empty field.
    void SendText(const QString& text);
    void MoveCursor(int mode);
    // Whether the field holds a valid entry (a row, or Null where allowed); an invalid one is
    // reported with the DisplayName.
    bool Validate();

    // The drop-down.
    void DropDown();
    void CloseUp();
    bool isDroppedDown() const;
    frmDBCombo* dropDownForm() const { return m_dropDown; }
    QLineEdit* lineEdit() const { return m_edit; }
    QToolButton* arrowButton() const { return m_arrow; }
    QToolButton* extraButton() const { return m_button; }

    // Colours; an invalid colour is the system's.
    QColor BackColor;
    QColor ChangeColor = QColor(255, 0, 0);
    QColor EmptyBackColor;
    QColor ForeColor;
    void updateColors();

signals:
    void Click();
    void DblClick();
    void Change();
    void ButtonClick();
    void KeyPress(int& keyAscii);
    void KeyUp(int keyCode, int shift);
    void HideDropDown();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void typed(const QString& text);
    bool keyPressed(QKeyEvent* event);
    void loadList();
    void takeRow(const DBComboRow& row);
    void takeListRow(qint64 row);
    qint64 rowOfValue();
    void showText(const QString& text);
    void reportError(const char* where, const std::exception& e);

    DBComboEngine m_engine;
    QLineEdit* m_edit;
    QToolButton* m_arrow;
    QToolButton* m_button;
    frmDBCombo* m_dropDown;
    QPalette m_plain;
    QVariant m_value;
    QVariant m_orgValue;
    DBComboRow m_row;
    QString m_typed; // what the user typed, without the completed part
    QString m_listSql;
    bool m_changed = false;
    bool m_holdOrgValue = false;
    bool m_lockUpdate = false;
    bool m_noInitRecordset = false;
    bool m_settingText = false;
};

} // namespace vd::controls
