#include "controls/ui/DBCombo.h"

#include "app/Translate.h"
#include "catalogue/DbError.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "controls/SqlTree.h"
#include "controls/ui/frmDBCombo.h"
#include "controls/ui/SimpleReport.h"
#include "platform/DialogService.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>

namespace vd::controls {

namespace {

const char* const kColorKeys[] = {"BackColor", "ChangeColor", "EmptyBackColor", "ForeColor"};

// A stored colour: a QColor, or a colour number with red in the low byte.
QColor colorOf(const QVariant& v)
{
    if (v.canConvert<QColor>() && v.typeId() != QMetaType::Int && v.typeId() != QMetaType::LongLong)
        return v.value<QColor>();
    const qint64 n = v.toLongLong();
    return n < 0 ? QColor() : QColor(int(n & 0xFF), int((n >> 8) & 0xFF), int((n >> 16) & 0xFF));
}

int shiftCode(Qt::KeyboardModifiers m)
{
    return (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) |
           (m & Qt::AltModifier ? 4 : 0);
}

} // namespace

DBCombo::DBCombo(QWidget* parent)
    : QWidget(parent), m_edit(new QLineEdit(this)), m_arrow(new QToolButton(this)),
      m_button(new QToolButton(this)), m_dropDown(new frmDBCombo(this))
{
    m_edit->setObjectName(QStringLiteral("txtText"));
    m_arrow->setObjectName(QStringLiteral("cmdDropDown"));
    m_button->setObjectName(QStringLiteral("cmdButton"));
    m_arrow->setArrowType(Qt::DownArrow);
    m_button->setText(QStringLiteral("..."));
    for (QToolButton* b : {m_arrow, m_button})
        b->setFocusPolicy(Qt::NoFocus);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_edit, 1);
    layout->addWidget(m_arrow);
    layout->addWidget(m_button);
    setFocusProxy(m_edit);
    m_edit->installEventFilter(this);
    m_plain = m_edit->palette();

    connect(m_edit, &QLineEdit::textEdited, this, &DBCombo::typed);
    connect(m_arrow, &QToolButton::clicked, this, [this] {
        // The press that closed the list must not open it again.
        if (m_dropDown->closedByPressOn(m_arrow))
            return;
        if (isDroppedDown())
            CloseUp();
        else
            DropDown();
    });
    connect(m_button, &QToolButton::clicked, this, &DBCombo::ButtonClick);
    connect(m_dropDown, &frmDBCombo::rowChosen, this, &DBCombo::takeListRow);
    connect(m_dropDown, &frmDBCombo::closed, this, &DBCombo::HideDropDown);
    // The list opens sorted by the shown text.
    connect(m_dropDown->srpCombo(), &SimpleReport::fetchColumn, this, [this](int& column) {
        const int text = m_engine.fieldIndex(props().TextField);
        if (text >= 0)
            column = text;
    });
    propertiesChanged();
}

DBCombo::~DBCombo() = default;

void DBCombo::propertiesChanged()
{
    const DBComboProperties& p = props();
    m_arrow->setVisible(p.ShowDropDown);
    m_button->setVisible(p.ShowButton);
    m_edit->setReadOnly(p.Locked);
    setEnabled(p.Enabled);
    updateColors();
}

void DBCombo::readProperties(const QVariantMap& bag)
{
    props() = DBComboProperties::read(bag);
    m_engine.setRecordSource(props().RecordSource);
    QColor* colors[] = {&BackColor, &ChangeColor, &EmptyBackColor, &ForeColor};
    for (int i = 0; i < 4; ++i)
        if (bag.contains(QLatin1String(kColorKeys[i])))
            *colors[i] = colorOf(bag.value(QLatin1String(kColorKeys[i])));
    if (bag.contains(QStringLiteral("Font")))
        setFont(bag.value(QStringLiteral("Font")).value<QFont>());
    m_listSql.clear();
    propertiesChanged();
}

QVariantMap DBCombo::writeProperties() const
{
    QVariantMap bag = m_engine.props().write();
    const QColor* colors[] = {&BackColor, &ChangeColor, &EmptyBackColor, &ForeColor};
    for (int i = 0; i < 4; ++i)
        bag.insert(QLatin1String(kColorKeys[i]), *colors[i]);
    bag.insert(QStringLiteral("Font"), font());
    return bag;
}

void DBCombo::setDataBase(db::Database* database)
{
    if (!database)
        return;
    m_engine.setDataBase(database);
    m_dropDown->srpCombo()->setDataBase(database);
    m_listSql.clear();
    if (!m_noInitRecordset && !m_value.isNull())
        setValue(m_value);
}

void DBCombo::setRecordSource(const QString& sql)
{
    m_engine.setRecordSource(sql);
    m_listSql.clear();
}

void DBCombo::reportError(const char* where, const std::exception& e)
{
    const auto* dbe = dynamic_cast<const db::DbError*>(&e);
    platform::dialogs().msgBox(dbe ? dbe->description() : QString::fromLocal8Bit(e.what()),
                               platform::vbCritical,
                               QStringLiteral("DBCombo-Fehler: ") + QLatin1String(where));
}

// --- value and text ------------------------------------------------------------------------

void DBCombo::showText(const QString& text)
{
    m_settingText = true;
    m_edit->setText(text);
    m_settingText = false;
}

void DBCombo::setValue(const QVariant& value)
{
    m_value = value.isValid() ? value : QVariant();
    if (!m_holdOrgValue)
        m_orgValue = m_value;
    m_changed = m_holdOrgValue && m_value != m_orgValue;
    m_row = {};
    if (!m_lockUpdate) {
        QString text;
        if (m_value.isNull()) {
            text = props().NullAllowed ? props().NullText : QString();
        } else {
            try {
                m_row = m_engine.lookupValue(m_value);
            } catch (const std::exception& e) {
                reportError("Value", e);
            }
            // A value the list does not hold stays, shown as it is.
            text = catalogue::ValueText(m_row.isEmpty() ? m_value : m_row.value(props().TextField));
        }
        showText(text);
        m_typed = text;
    }
    updateColors();
}

QString DBCombo::Text() const
{
    return m_edit->text();
}

void DBCombo::setText(const QString& text)
{
    DBComboRow row;
    try {
        row = m_engine.search(text);
    } catch (const std::exception& e) {
        reportError("Text", e);
    }
    if (!row.isEmpty() &&
        catalogue::ValueText(row.value(props().TextField)).compare(text, Qt::CaseInsensitive) ==
            0) {
        takeRow(row);
    } else {
        m_row = {};
        m_value = QVariant();
        showText(text);
    }
    m_typed = m_edit->text();
    updateColors();
}

void DBCombo::setChanged(bool on)
{
    m_changed = on;
    updateColors();
}

void DBCombo::takeRow(const DBComboRow& row)
{
    m_row = row;
    m_value = row.value(props().ValueField);
    showText(catalogue::ValueText(row.value(props().TextField)));
}

bool DBCombo::Search(const QString& text)
{
    DBComboRow row;
    try {
        row = m_engine.search(text);
    } catch (const std::exception& e) {
        reportError("Search", e);
        return false;
    }
    if (row.isEmpty())
        return false;
    takeRow(row);
    updateColors();
    return true;
}

void DBCombo::typed(const QString& text)
{
    if (m_settingText)
        return;
    m_changed = true;
    const bool atEnd = m_edit->cursorPosition() == text.size() && !m_edit->hasSelectedText();
    // Backspace over a completion shortens what was typed: nothing is completed then.
    const bool grew = text.size() > m_typed.size();
    m_typed = text;
    bool found = false;
    if (props().AutoSearch != 0 && atEnd && grew) {
        found = Search(text);
        if (found) {
            const QString full = m_edit->text();
            if (full.size() > text.size() && full.startsWith(text, Qt::CaseInsensitive))
                m_edit->setSelection(int(full.size()), int(text.size() - full.size()));
            else
                m_edit->setCursorPosition(int(full.size()));
        }
    }
    if (!found) {
        m_value = QVariant();
        m_row = {};
    }
    updateColors();
    emit Change();
}

void DBCombo::SendText(const QString& text)
{
    m_edit->clear();
    m_typed.clear();
    for (QChar c : text) {
        m_edit->insert(QString(c));
        typed(m_edit->text());
    }
}

bool DBCombo::Validate()
{
    const QString text = m_edit->text();
    const DBComboProperties& p = props();
    bool valid = false;
    if (text.isEmpty() || (p.NullAllowed && text == p.NullText)) {
        valid = p.NullAllowed;
        if (valid) {
            m_value = QVariant();
            m_row = {};
        }
    } else if (!m_value.isNull() && !m_row.isEmpty()) {
        valid = true;
    } else {
        setText(text);
        valid = !m_value.isNull();
    }
    if (!valid)
        platform::dialogs().msgBox(
            app::Translate(QStringLiteral("Ungültiger Eintrag im Feld @1!"),
                           p.DisplayName.isEmpty() ? objectName() : p.DisplayName),
            platform::vbExclamation);
    updateColors();
    return valid;
}

void DBCombo::updateColors()
{
    QPalette p = m_plain;
    if (BackColor.isValid())
        p.setColor(QPalette::Base, BackColor);
    if (m_value.isNull() && !props().NullAllowed)
        p.setColor(QPalette::Base, EmptyBackColor.isValid() ? EmptyBackColor
                                                            : m_plain.color(QPalette::ToolTipBase));
    if (ForeColor.isValid())
        p.setColor(QPalette::Text, ForeColor);
    if (props().ShowChanges && m_changed)
        p.setColor(QPalette::Text, ChangeColor);
    m_edit->setPalette(p);
}

// --- the list ------------------------------------------------------------------------------

void DBCombo::loadList()
{
    SimpleReport* list = m_dropDown->srpCombo();
    const DBComboProperties& p = props();
    const QString sql = m_engine.BuildSQL({}, {}, false, p.CaseSensitive, p.UseDelFlag, false);
    if (sql == m_listSql && list->engine().RecordSet()) {
        list->Requery();
        return;
    }
    m_listSql = sql;
    list->setDataBase(m_engine.DataBase());
    list->Setup(sql, p.InvisibleCols, p.InvisibleColMode, QString(), -1, false,
                m_engine.fieldIndex(p.ValueField), -1);
}

qint64 DBCombo::rowOfValue()
{
    db::Recordset* rs = m_dropDown->srpCombo()->engine().RecordSet();
    const int f = m_engine.fieldIndex(props().ValueField);
    if (!rs || m_value.isNull() || f < 0 || f >= rs->fieldCount())
        return -1;
    const QString literal = MakeKeyLiteral(rs->field(f).type, m_value);
    if (literal.isEmpty())
        return -1;
    const QString criteria = QLatin1Char('[') + rs->field(f).name + QStringLiteral("]=") + literal;
    return rs->findFirst(criteria) ? rs->absolutePosition() : -1;
}

void DBCombo::DropDown()
{
    const DBComboProperties& p = props();
    if (!p.ShowDropDown || p.Locked || !m_engine.DataBase() || p.RecordSource.isEmpty())
        return;
    SimpleReport* list = m_dropDown->srpCombo();
    try {
        loadList();
        const qint64 row = rowOfValue();
        if (row >= 0)
            list->setSelectedIndex(row);
    } catch (const std::exception& e) {
        reportError("DropDown", e);
        return;
    }
    m_dropDown->showAt(QRect(mapToGlobal(QPoint(0, 0)), size()), p.Rows);
    m_edit->setFocus();
}

void DBCombo::CloseUp()
{
    m_dropDown->closeDropDown();
}

bool DBCombo::isDroppedDown() const
{
    return m_dropDown->isVisible();
}

void DBCombo::takeListRow(qint64 row)
{
    SimpleReport* list = m_dropDown->srpCombo();
    if (row < 0 || row >= list->ItemCount())
        return;
    DBComboRow r;
    const ReportColumns& cols = list->engine().Columns();
    for (int c = 0; c < cols.count(); ++c) {
        r.names << cols[c].key;
        r.values << list->engine().FieldValue(c, row);
    }
    takeRow(r);
    m_typed = m_edit->text();
    m_changed = true;
    updateColors();
    CloseUp();
    emit Change();
    emit Click();
}

void DBCombo::MoveCursor(int mode)
{
    SimpleReport* list = m_dropDown->srpCombo();
    try {
        if (!isDroppedDown())
            loadList();
        const qint64 count = list->ItemCount();
        if (count == 0)
            return;
        qint64 row = isDroppedDown() ? list->SelectedIndex() : rowOfValue();
        switch (mode) {
        case MoveFirst:
            row = 0;
            break;
        case MovePrevious:
            row = row < 0 ? 0 : std::max<qint64>(0, row - 1);
            break;
        case MoveNext:
            row = row < 0 ? 0 : std::min(count - 1, row + 1);
            break;
        default:
            row = count - 1;
            break;
        }
        list->setSelectedIndex(row);
        // In the open list the keys only move the mark; Return takes it.
        if (!isDroppedDown())
            takeListRow(row);
    } catch (const std::exception& e) {
        reportError("MoveCursor", e);
    }
}

// --- keys ----------------------------------------------------------------------------------

bool DBCombo::keyPressed(QKeyEvent* event)
{
    const int key = event->key();
    const auto mods = event->modifiers();
    if (key == Qt::Key_F4 || (key == Qt::Key_Down && (mods & Qt::AltModifier))) {
        if (isDroppedDown())
            CloseUp();
        else
            DropDown();
        return true;
    }
    if (key == Qt::Key_Up || key == Qt::Key_Down) {
        if (!props().Locked)
            MoveCursor(key == Qt::Key_Up ? MovePrevious : MoveNext);
        return true;
    }
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && isDroppedDown()) {
        const qint64 row = m_dropDown->srpCombo()->SelectedIndex();
        if (row >= 0)
            takeListRow(row);
        else
            CloseUp();
        return true;
    }
    if (key == Qt::Key_Escape) {
        if (isDroppedDown()) {
            CloseUp();
            return true;
        }
        if (m_changed && !props().Locked) {
            setValue(m_orgValue);
            emit Change();
            return true;
        }
        return false;
    }
    const QString text = event->text();
    if (text.size() == 1 && text[0].isPrint()) {
        int ascii = text[0].unicode();
        emit KeyPress(ascii);
        return ascii == 0; // the host swallowed the key
    }
    return false;
}

bool DBCombo::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_edit) {
        switch (event->type()) {
        case QEvent::KeyPress:
            if (keyPressed(static_cast<QKeyEvent*>(event)))
                return true;
            break;
        case QEvent::KeyRelease: {
            const auto* ke = static_cast<QKeyEvent*>(event);
            emit KeyUp(ke->key(), shiftCode(ke->modifiers()));
            break;
        }
        case QEvent::MouseButtonDblClick:
            emit DblClick();
            break;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace vd::controls
