#include "app/ui/TranslateForm.h"

#include "app/Translate.h"
#include "controls/ui/SimpleReport.h"

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QStatusBar>
#include <QTabBar>
#include <QTableWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace vd::app::ui {

namespace {

// Where a control keeps {German, shown} of its last translation. The way back restores the
// German only while the control still shows what the translation put there; a text the program
// set since then goes back through the language file's reverse lookup instead.
const char* const kTextSlot = "vdLangText";
const char* const kTipSlot = "vdLangTip";
const char* const kTitleSlot = "vdLangTitle";
const char* const kTabsSlot = "vdLangTabs";
const char* const kTabTipsSlot = "vdLangTabTips";
const char* const kColumnsSlot = "vdLangColumns";
constexpr int kItemRole = Qt::UserRole + 0x4C47;

const QString kMainForm = QStringLiteral("frmMain");
const QString kNameColumn = QStringLiteral("Name");

QString convert(const QString& current, QVariant& stored, bool reverse)
{
    if (current.isEmpty() || !IsProgramText(current)) {
        stored = QVariant();
        return current;
    }
    const QStringList pair = stored.toStringList();
    const bool ours = pair.size() == 2 && pair[1] == current;
    if (reverse) {
        stored = QVariant();
        return ours ? pair[0] : TranslateText(current, true);
    }
    if (ours)
        return current; // translated already
    // Set by the program through Translate while this language was loaded: in it already.
    const QString german = TranslateText(current, true);
    if (german != current && TranslateText(german, false) == current) {
        stored = QStringList{german, current};
        return current;
    }
    const QString result = TranslateText(current, false);
    stored = result != current ? QVariant(QStringList{current, result}) : QVariant();
    return result;
}

template <class Setter>
void convertProperty(QObject* holder, const char* slot, const QString& current, bool reverse,
                     Setter set)
{
    QVariant stored = holder->property(slot);
    const QString next = convert(current, stored, reverse);
    holder->setProperty(slot, stored);
    if (next != current)
        set(next);
}

// The German of a text: what it was translated from, or what the file turns it back into.
QString germanOf(const QString& current, const QVariant& stored)
{
    const QStringList pair = stored.toStringList();
    return pair.size() == 2 && pair[1] == current ? pair[0] : TranslateText(current, true);
}

bool isNameHeader(const QString& text, const QVariant& stored, const QVariant& key)
{
    if (key.toString() == kNameColumn)
        return true;
    QString german = germanOf(text, stored);
    if (german.startsWith(QLatin1Char('&')))
        german.remove(0, 1);
    return german.compare(kNameColumn, Qt::CaseInsensitive) == 0;
}

// Qt's own tool tip of an action without one: the text without "&" and "...".
QString plainActionText(QString text)
{
    text.remove(QStringLiteral("..."));
    for (qsizetype i = 0; i < text.size(); ++i)
        if (text.at(i) == QLatin1Char('&'))
            text.remove(i, 1);
    return text.trimmed();
}

class Walk
{
public:
    Walk(bool reverse, bool mainForm) : m_reverse(reverse), m_mainForm(mainForm) {}

    void visit(QObject* object)
    {
        if (!object || m_seen.contains(object))
            return;
        m_seen.insert(object);
        if (object->property(kNoTranslate).toBool())
            return;
        if (auto* widget = qobject_cast<QWidget*>(object)) {
            // Another window translates itself; a status bar shows live texts.
            if ((widget->isWindow() && !qobject_cast<QMenu*>(widget)) ||
                qobject_cast<QStatusBar*>(widget))
                return;
            if (!widget->toolTip().isEmpty() && !followsAction(widget))
                convertProperty(widget, kTipSlot, widget->toolTip(), m_reverse,
                                [widget](const QString& t) { widget->setToolTip(t); });
            translateWidget(widget);
        } else if (auto* action = qobject_cast<QAction*>(object)) {
            translateAction(action);
        }
        children(object);
    }

    void children(QObject* object)
    {
        const QObjectList list = object->children(); // a copy: nothing is added meanwhile
        for (QObject* child : list)
            visit(child);
    }

    void actions(const QWidget* widget)
    {
        for (QAction* action : widget->actions())
            visit(action);
    }

private:
    static bool followsAction(const QWidget* widget)
    {
        const auto* tool = qobject_cast<const QToolButton*>(widget);
        return tool && tool->defaultAction();
    }

    void translateWidget(QWidget* widget)
    {
        if (auto* label = qobject_cast<QLabel*>(widget)) {
            convertProperty(label, kTextSlot, label->text(), m_reverse,
                            [label](const QString& t) { label->setText(t); });
        } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
            if (followsAction(button)) // the button shows its action's text and tip
                visit(qobject_cast<QToolButton*>(button)->defaultAction());
            else
                convertProperty(button, kTextSlot, button->text(), m_reverse,
                                [button](const QString& t) { button->setText(t); });
        } else if (auto* group = qobject_cast<QGroupBox*>(widget)) {
            convertProperty(group, kTextSlot, group->title(), m_reverse,
                            [group](const QString& t) { group->setTitle(t); });
        } else if (qobject_cast<QMenu*>(widget) || qobject_cast<QMenuBar*>(widget) ||
                   qobject_cast<QToolBar*>(widget)) {
            if (auto* menu = qobject_cast<QMenu*>(widget))
                visit(menu->menuAction());
            actions(widget);
        } else if (auto* tabs = qobject_cast<QTabBar*>(widget)) {
            translateTabs(tabs);
        } else if (auto* tree = qobject_cast<QTreeWidget*>(widget)) {
            translateTree(tree);
        } else if (auto* table = qobject_cast<QTableWidget*>(widget)) {
            translateTable(table);
        } else if (auto* report = qobject_cast<controls::SimpleReport*>(widget)) {
            translateReport(report);
        }
    }

    void translateAction(QAction* action)
    {
        if (action->isSeparator())
            return;
        convertProperty(action, kTextSlot, action->text(), m_reverse,
                        [action](const QString& t) { action->setText(t); });
        // A tip of its own differs from the text; Qt's derived tip followed the text already.
        if (action->toolTip() != plainActionText(action->text()))
            convertProperty(action, kTipSlot, action->toolTip(), m_reverse,
                            [action](const QString& t) { action->setToolTip(t); });
        if (action->menu())
            visit(action->menu());
    }

    void translateTabs(QTabBar* tabs)
    {
        QVariantList texts = tabs->property(kTabsSlot).toList();
        QVariantList tips = tabs->property(kTabTipsSlot).toList();
        while (texts.size() < tabs->count())
            texts << QVariant();
        while (tips.size() < tabs->count())
            tips << QVariant();
        for (int i = 0; i < tabs->count(); ++i) {
            const QString text = convert(tabs->tabText(i), texts[i], m_reverse);
            if (text != tabs->tabText(i))
                tabs->setTabText(i, text);
            const QString tip = convert(tabs->tabToolTip(i), tips[i], m_reverse);
            if (tip != tabs->tabToolTip(i))
                tabs->setTabToolTip(i, tip);
        }
        tabs->setProperty(kTabsSlot, texts);
        tabs->setProperty(kTabTipsSlot, tips);
    }

    template <class Item> void convertItem(Item* item, int column)
    {
        QVariant stored = item->data(column, kItemRole);
        const QVariant before = stored;
        const QString current = item->text(column);
        const QString next = convert(current, stored, m_reverse);
        if (stored != before)
            item->setData(column, kItemRole, stored);
        if (next != current)
            item->setText(column, next);
    }

    void translateTree(QTreeWidget* tree)
    {
        QTreeWidgetItem* header = tree->headerItem();
        int nameColumn = -1;
        for (int c = 0; c < tree->columnCount(); ++c) {
            if (nameColumn < 0 && isNameHeader(header->text(c), header->data(c, kItemRole),
                                               header->data(c, Qt::UserRole)))
                nameColumn = c;
            convertItem(header, c);
        }
        if (m_mainForm || nameColumn < 0)
            return;
        for (QTreeWidgetItemIterator it(tree); *it; ++it)
            convertItem(*it, nameColumn);
    }

    void translateTable(QTableWidget* table)
    {
        int nameColumn = -1;
        for (int c = 0; c < table->columnCount(); ++c) {
            QTableWidgetItem* header = table->horizontalHeaderItem(c);
            if (!header)
                continue;
            if (nameColumn < 0 &&
                isNameHeader(header->text(), header->data(kItemRole), header->data(Qt::UserRole)))
                nameColumn = c;
            QVariant stored = header->data(kItemRole);
            const QString next = convert(header->text(), stored, m_reverse);
            header->setData(kItemRole, stored);
            if (next != header->text())
                header->setText(next);
        }
        if (m_mainForm || nameColumn < 0)
            return;
        for (int r = 0; r < table->rowCount(); ++r) {
            QTableWidgetItem* item = table->item(r, nameColumn);
            if (!item)
                continue;
            QVariant stored = item->data(kItemRole);
            const QString next = convert(item->text(), stored, m_reverse);
            if (stored != item->data(kItemRole))
                item->setData(kItemRole, stored);
            if (next != item->text())
                item->setText(next);
        }
    }

    // The program's own list: the captions of its columns, kept by the column's field name.
    void translateReport(controls::SimpleReport* report)
    {
        controls::ReportColumns& columns = report->Columns();
        QVariantMap stored = report->property(kColumnsSlot).toMap();
        bool changed = false;
        for (int i = 0; i < columns.count(); ++i) {
            controls::ReportColumn& column = columns[i];
            QVariant slot = stored.value(column.key);
            const QString next = convert(column.caption, slot, m_reverse);
            if (slot.isValid())
                stored.insert(column.key, slot);
            else
                stored.remove(column.key);
            if (next != column.caption) {
                column.caption = next;
                changed = true;
            }
        }
        report->setProperty(kColumnsSlot, stored);
        if (!changed)
            return;
        report->columnsChanged();
        QAbstractItemModel* model = report->model();
        if (model && model->columnCount() > 0)
            emit model->headerDataChanged(Qt::Horizontal, 0, model->columnCount() - 1);
    }

    bool m_reverse;
    bool m_mainForm;
    QSet<QObject*> m_seen;
};

} // namespace

void TranslateForm(QWidget* form, bool caption, bool reverse)
{
    if (!form || CurrentLanguage().isEmpty())
        return;
    // The window's lookups go through its own cache while it is translated.
    if (!reverse)
        EnterForm(form->objectName());
    if (caption)
        convertProperty(form, kTitleSlot, form->windowTitle(), reverse,
                        [form](const QString& t) { form->setWindowTitle(t); });
    Walk walk(reverse, form->objectName() == kMainForm);
    walk.actions(form);
    walk.children(form);
    if (!reverse)
        LeaveForm();
}

} // namespace vd::app::ui
