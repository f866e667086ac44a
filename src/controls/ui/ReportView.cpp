#include "controls/ui/ReportView.h"

#include "controls/TreeItem.h"

#include <QApplication>
#include <QVBoxLayout>

namespace vd::controls {

namespace {

// The keys of the list's stored properties that the drill-down list hands on one to one.
const char* const kForwarded[] = {
    "Enabled",        "BorderStyle",      "TranslateIcons",  "AutoSizeMode", "MaxColWidth",
    "MultiSelect",    "DblClickOnReturn", "SearchMode",      "SortMode",     "CurrencyFormat",
    "CurrencyFaktor", "ShowCellTips",     "ShowContextMenu", "GridLines",    "ShowThousands"};

// A tree is never deeper than this; a broken parent chain must not loop.
constexpr int kMaxTreeDepth = 256;

} // namespace

ReportView::ReportView(QWidget* parent)
    : QWidget(parent), m_list(new SimpleReport(this)), m_levels(new cListLevels(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    setFocusProxy(m_list);

    connect(m_levels, &cListLevels::Changed, this, &ReportView::levelsChanged);
    connect(m_list, &SimpleReport::itemDblClick, this, &ReportView::doubleClicked);
    connect(m_list, &SimpleReport::translateIcon, this, &ReportView::translateIcon);
    connect(m_list, &SimpleReport::itemClick, this, &ReportView::itemClick);
    connect(m_list, &SimpleReport::selectionChange, this, &ReportView::selectionChange);
    connect(m_list, &SimpleReport::columnClick, this, &ReportView::columnClick);
    connect(m_list, &SimpleReport::keydown, this, &ReportView::keydown);
    connect(m_list, &SimpleReport::fetchColumn, this, &ReportView::fetchColumn);
    connect(m_list, &SimpleReport::fetchStyle, this, &ReportView::fetchStyle);
    connect(m_list, &SimpleReport::fetchContents, this, &ReportView::fetchContents);
}

ReportView::~ReportView() = default;

void ReportView::setDataBase(db::Database* database)
{
    if (!database)
        return;
    m_levels->setDataBase(database);
    m_list->setDataBase(database);
}

QString ReportView::levelFilterValue(int level) const
{
    return level >= 1 && level <= m_filterValues.size() ? m_filterValues[level - 1] : QString();
}

void ReportView::levelsChanged()
{
    const int count = m_levels->Count();
    if (count == 0)
        return;
    const int remembered = m_curLevel;
    // The columns the user arranged on the level showing stay its layout.
    if (remembered > 0 && remembered <= m_layouts.size() && m_storeUserColWidth) {
        const QString layout = m_list->Layout();
        if (!layout.isEmpty())
            m_layouts[remembered - 1] = layout;
    }
    m_curLevel = 0;
    if (count != m_filterValues.size() || m_levels->ReInit()) {
        m_filterValues = QStringList(count, QString());
        m_layouts = QStringList(count, QString());
        QString layout;
        emit fetchColumnLayout(layout);
        if (!layout.isEmpty())
            m_layouts = splitLevelLayouts(layout, count);
        ChangeLevel(1, QString());
    } else {
        const int level = std::clamp(remembered, 1, count);
        ChangeLevel(level, m_filterValues[level - 1]);
    }
}

void ReportView::ChangeLevel(int level, const QString& filterValue)
{
    const int count = m_levels->Count();
    if (level < 1 || m_filterValues.size() < count)
        return;
    if (level == m_curLevel || level > count) {
        if (level == m_curLevel)
            m_filterValues[level - 1] = filterValue;
        if (m_list->FilterValue().toString() != filterValue)
            m_list->setFilterValue(filterValue);
        return;
    }
    if (m_curLevel != 0 && m_storeUserColWidth) {
        const QString layout = m_list->Layout();
        if (!layout.isEmpty())
            m_layouts[m_curLevel - 1] = layout;
    }
    m_curLevel = level;
    m_filterValues[level - 1] = filterValue;

    const bool refresh = m_list->AutoRefresh();
    m_list->setAutoRefresh(false);
    m_list->setRecordSource(QString());
    m_list->setFilterValue(filterValue);
    m_list->setLayout(m_layouts[level - 1]);
    m_list->setRecordSource(m_levels->sql(level));
    emit activeLevelChange(m_curLevel);
    m_list->setAutoRefresh(refresh);
}

void ReportView::NextLevel()
{
    if (m_curLevel < 1 || m_curLevel >= m_levels->Count())
        return;
    const qint64 row = m_list->SelectedIndex();
    if (row < 0)
        return;
    const QVariant key = m_list->engine().FieldValue(0, row);
    if (key.isNull())
        return;
    ChangeLevel(m_curLevel + 1, key.toString());
}

void ReportView::PrevLevel()
{
    if (m_curLevel > 1)
        ChangeLevel(m_curLevel - 1, m_filterValues[m_curLevel - 2]);
}

void ReportView::Synchronize(const std::shared_ptr<CTreeItem>& item)
{
    if (!item)
        return;
    const int count = m_levels->Count();
    if (count == 0 || m_filterValues.size() < count)
        return;
    try {
        // Each node on the way up is the filter of its level.
        std::shared_ptr<CTreeItem> node = item;
        for (int depth = 0; node && depth < kMaxTreeDepth; ++depth) {
            if (node->Level >= 1 && node->Level <= count)
                m_filterValues[node->Level - 1] = node->Key;
            if (node->Level <= 1)
                break;
            node = node->ParentItem();
        }
        if (item->Level == 1) {
            ChangeLevel(1, QString());
        } else if (item->Level > count) {
            if (const auto parent = item->ParentItem())
                ChangeLevel(parent->Level, parent->Key);
        } else {
            ChangeLevel(item->Level, item->Key);
        }
    } catch (const std::exception&) {
        // A node that cannot be read leaves the list as it is.
    }
}

QString ReportView::Layout()
{
    if (m_curLevel > 0 && m_curLevel <= m_layouts.size())
        m_layouts[m_curLevel - 1] = m_list->Layout();
    return joinLevelLayouts(m_layouts);
}

void ReportView::setLayout(const QString& layout)
{
    const int pieces = int(layout.count(QLatin1Char('@'))) + 1;
    m_layouts = splitLevelLayouts(layout, std::max<int>(m_levels->Count(), pieces));
    if (m_curLevel > 0 && m_curLevel <= m_layouts.size())
        m_list->setLayout(m_layouts[m_curLevel - 1]);
}

QString ReportView::SelectedItemKey()
{
    const int key = m_list->props().KeyColumn;
    if (key < 0 || m_list->SelectedIndex() < 0)
        return {};
    return m_list->engine().FieldValue(key).toString();
}

cListItem ReportView::SelectedItem()
{
    cListItem item;
    const qint64 row = m_list->SelectedIndex();
    if (row < 0)
        return item;
    item.Row = row;
    item.Level = m_curLevel;
    item.Key = SelectedItemKey();
    item.ParentKey = levelFilterValue(m_curLevel);
    // The level statement's text column, else the first one the user sees.
    const int caption =
        m_list->engine().Columns().count() > 3 ? 3 : m_list->engine().firstVisibleColumn();
    item.Caption = m_list->cellText(row, caption);
    return item;
}

QList<cListItem> ReportView::SelectedItems()
{
    QList<cListItem> items = m_list->SelectedItems();
    for (cListItem& item : items) {
        item.Level = m_curLevel;
        item.ParentKey = levelFilterValue(m_curLevel);
    }
    return items;
}

void ReportView::Resort(int colIndex, bool ascending)
{
    m_list->engine().Resort(colIndex, ascending);
}

void ReportView::doubleClicked(qint64 row, int button, int keyState)
{
    if (m_dblClickMode != 0) {
        emit itemDblClick(row, button, keyState);
        return;
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    NextLevel();
    QApplication::restoreOverrideCursor();
}

void ReportView::readProperties(const QVariantMap& bag)
{
    QVariantMap merged = m_list->props().write();
    for (const char* key : kForwarded) {
        const auto it = bag.constFind(QLatin1String(key));
        if (it != bag.constEnd())
            merged.insert(QLatin1String(key), it.value());
    }
    const QString source = m_list->props().RecordSource;
    m_list->props() = ReportProperties::read(merged);
    m_list->props().RecordSource = source;
    if (bag.contains(QStringLiteral("BackColor"))) {
        QPalette p = m_list->palette();
        p.setColor(QPalette::Base, bag.value(QStringLiteral("BackColor")).value<QColor>());
        m_list->setPalette(p);
    }
    if (bag.contains(QStringLiteral("Font")))
        m_list->setFont(bag.value(QStringLiteral("Font")).value<QFont>());
    m_dblClickMode = bag.value(QStringLiteral("DblClickMode"), 0).toInt();
    m_storeUserColWidth = bag.value(QStringLiteral("StoreUserColWidth"), true).toBool();
}

QVariantMap ReportView::writeProperties() const
{
    const QVariantMap all = m_list->props().write();
    QVariantMap bag;
    for (const char* key : kForwarded)
        bag.insert(QLatin1String(key), all.value(QLatin1String(key)));
    bag.insert(QStringLiteral("BackColor"), m_list->palette().color(QPalette::Base));
    bag.insert(QStringLiteral("Font"), m_list->font());
    bag.insert(QStringLiteral("DblClickMode"), m_dblClickMode);
    bag.insert(QStringLiteral("StoreUserColWidth"), m_storeUserColWidth);
    return bag;
}

} // namespace vd::controls
