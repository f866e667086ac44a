// The cells of the list: the item model over the engine's page, cell texts in their column's
// format, row styles from the host, cell tips, the picture of a dragged row and the clipboard.

#include "app/Translate.h"
#include "catalogue/JetFunctions.h"
#include "controls/ui/SimpleReport.h"
#include "platform/DialogService.h"

#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QToolTip>

namespace vd::controls {

namespace {

Qt::Alignment alignmentOf(ColumnAlign a)
{
    switch (a) {
    case ColumnAlign::Right:
        return Qt::AlignRight | Qt::AlignVCenter;
    case ColumnAlign::Center:
        return Qt::AlignHCenter | Qt::AlignVCenter;
    default:
        return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

QString oneLine(QString text)
{
    for (QChar c : {QChar(u'\r'), QChar(u'\n'), QChar(u'\t')})
        text.replace(c, QLatin1Char(' '));
    return text;
}

} // namespace

// --- the model -----------------------------------------------------------------------------

ReportModel::ReportModel(SimpleReport* report) : QAbstractTableModel(report), m_report(report) {}

int ReportModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int ReportModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_cols;
}

bool ReportModel::inStep() const
{
    const ReportEngine& engine = m_report->engine();
    return m_cols == engine.Columns().count() &&
           m_rows == int(std::min<qint64>(engine.ItemCount(), INT_MAX));
}

QVariant ReportModel::data(const QModelIndex& index, int role) const
{
    // While AutoRefresh is off the engine may hold another statement's rows already.
    if (!index.isValid() || index.row() >= m_rows || index.column() >= m_cols || !inStep())
        return {};
    const auto& col = m_report->engine().Columns()[index.column()];
    switch (role) {
    case Qt::DisplayRole:
        return m_report->cellText(index.row(), index.column());
    case Qt::DecorationRole:
        return col.imageField.isEmpty() ? QVariant()
                                        : QVariant(m_report->cellIcon(index.row(), index.column()));
    case Qt::TextAlignmentRole: {
        Qt::Alignment a = alignmentOf(col.alignment);
        if (const cStyle* s = m_report->rowStyle(index.row())) {
            if (s->Alignment & Qt::AlignHorizontal_Mask)
                a = (a & ~Qt::AlignHorizontal_Mask) | (s->Alignment & Qt::AlignHorizontal_Mask);
            if (s->VerticalAlignment & Qt::AlignVertical_Mask)
                a = (a & ~Qt::AlignVertical_Mask) | (s->VerticalAlignment & Qt::AlignVertical_Mask);
        }
        return QVariant::fromValue(a);
    }
    case Qt::BackgroundRole:
        if (const cStyle* s = m_report->rowStyle(index.row()); s && s->BackColor.isValid())
            return QBrush(s->BackColor);
        return {};
    case Qt::ForegroundRole:
        if (const cStyle* s = m_report->rowStyle(index.row()); s && s->TextColor.isValid())
            return QBrush(s->TextColor);
        return {};
    case Qt::FontRole:
        if (const cStyle* s = m_report->rowStyle(index.row()); s && s->FontStyle != 0) {
            QFont f = m_report->font();
            f.setBold(s->FontStyle & 1);
            f.setItalic(s->FontStyle & 2);
            f.setUnderline(s->FontStyle & 4);
            f.setStrikeOut(s->FontStyle & 8);
            return f;
        }
        return {};
    default:
        return {};
    }
}

QVariant ReportModel::headerData(int section, Qt::Orientation o, int role) const
{
    if (o != Qt::Horizontal || section < 0 || section >= m_cols || !inStep())
        return {};
    const auto& col = m_report->engine().Columns()[section];
    if (role == Qt::DisplayRole)
        return col.caption;
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(alignmentOf(col.headerAlignment));
    return {};
}

bool ReportModel::refresh()
{
    auto& engine = m_report->engine();
    const int rows = int(std::min<qint64>(engine.ItemCount(), INT_MAX));
    const int cols = engine.Columns().count();
    if (rows != m_rows || cols != m_cols) {
        beginResetModel();
        m_rows = rows;
        m_cols = cols;
        endResetModel();
        return true;
    }
    if (rows > 0 && cols > 0)
        emit dataChanged(index(0, 0), index(rows - 1, cols - 1));
    emit headerDataChanged(Qt::Horizontal, 0, std::max(0, cols - 1));
    return false;
}

// --- cells ---------------------------------------------------------------------------------

QString SimpleReport::formatValue(const QVariant& v, const ReportColumn& c) const
{
    if (v.isNull())
        return {};
    if (c.format == QLatin1String("Yes/No"))
        return v.toBool() ? QStringLiteral("Yes") : QStringLiteral("No");
    if (c.format.isEmpty() || c.format == QLatin1String("RPL") || v.typeId() == QMetaType::QString)
        return oneLine(v.toString());
    return db::vbFormat(v, c.format);
}

QString SimpleReport::cellText(qint64 row, int column)
{
    const ReportColumn& c = m_engine.Columns()[column];
    QVariant value = m_engine.cellValue(row, column);
    if (c.fetchMode) {
        QVariant image;
        m_engine.cellContents(row, column, value, image);
        if (value.typeId() == QMetaType::QString)
            return oneLine(value.toString());
    }
    return formatValue(value, c);
}

const cStyle* SimpleReport::rowStyle(int row)
{
    if (!props().FetchRowStyle)
        return nullptr;
    auto it = m_styles.find(row);
    if (it == m_styles.end()) {
        // Asked once per row until the next refresh; a long list keeps only what is near.
        if (m_styles.size() > 4096)
            m_styles.clear();
        cStyle style;
        emit fetchStyle(row, style);
        it = m_styles.insert(row, style);
    }
    return &it.value();
}

QIcon SimpleReport::cellIcon(qint64 row, int column)
{
    const ReportColumn& c = m_engine.Columns()[column];
    const int field = m_engine.Columns().indexOf(c.imageField);
    if (field < 0)
        return {};
    QVariant image = m_engine.cellValue(row, field);
    if (c.fetchMode && !image.isNull()) {
        QVariant value;
        m_engine.cellContents(row, column, value, image);
    }
    const int n = image.toInt();
    return n >= 1 && n <= m_icons.size() ? m_icons[n - 1] : QIcon();
}

// --- tips and dragging ---------------------------------------------------------------------

bool SimpleReport::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && showCellTip(static_cast<QHelpEvent*>(event), this))
        return true;
    return QTableView::viewportEvent(event);
}

bool SimpleReport::showCellTip(QHelpEvent* event, QAbstractItemView* view)
{
    if (!props().ShowCellTips && !props().FetchToolTips)
        return false;
    const QModelIndex i = view->indexAt(event->pos());
    QString text;
    if (i.isValid() && m_model->inStep()) {
        text = cellText(i.row(), i.column());
        if (props().FetchToolTips) {
            emit cellTip(i.row(), i.column(), text);
        } else {
            // The plain tip shows only what the cell cannot.
            const int room = view->visualRect(i).width() -
                             2 * style()->pixelMetric(QStyle::PM_FocusFrameHMargin);
            if (view->fontMetrics().horizontalAdvance(text) <= room)
                text.clear();
        }
    }
    if (text.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(event->globalPos(), text, view->viewport(), view->visualRect(i));
    return true;
}

QPixmap SimpleReport::CreateDragImage()
{
    const qint64 row = SelectedIndex();
    if (row < 0 || row >= m_model->rowCount())
        return {};
    const int top = rowViewportPosition(int(row));
    if (top < -rowHeight(int(row)) || top > viewport()->height())
        return {};
    return viewport()->grab(QRect(0, top, viewport()->width(), rowHeight(int(row))));
}

void SimpleReport::startDrag(Qt::DropActions supportedActions)
{
    // The host starts the drag it wants (with CreateDragImage as its picture).
    (void)supportedActions;
    emit dragItem();
}

// --- clipboard -----------------------------------------------------------------------------

QString SimpleReport::ClipboardText(bool useSelection)
{
    QList<int> cols;
    for (int c : m_engine.Columns().displayOrder())
        if (m_engine.Columns()[c].hidden == 0)
            cols << c;
    QStringList line;
    for (int c : cols)
        line << oneLine(m_engine.Columns()[c].caption);
    QString out = line.join(QLatin1Char('\t')) + QStringLiteral("\r\n");

    QList<qint64> rows;
    if (useSelection) {
        for (const cListItem& item : SelectedItems())
            rows << item.Row;
    }
    const qint64 n = useSelection ? rows.size() : m_engine.ItemCount();
    m_copyStop = false;
    for (qint64 i = 0; i < n; ++i) {
        if (i > 0 && i % m_copyCheck == 0) {
            QCoreApplication::processEvents();
            if (m_copyStop) {
                m_copyStop = false;
                if (platform::dialogs().msgBox(
                        app::Translate(QStringLiteral("Kopiervorgang abbrechen?")),
                        platform::vbYesNo | platform::vbQuestion,
                        QStringLiteral("Vellumdock-Report")) == platform::vbYes)
                    return {};
            }
        }
        const qint64 row = useSelection ? rows[int(i)] : i;
        line.clear();
        for (int c : cols)
            line << oneLine(cellText(row, c));
        out += line.join(QLatin1Char('\t')) + QStringLiteral("\r\n");
    }
    return out;
}

void SimpleReport::CopyToClipboard(bool useSelection)
{
    const QString text = ClipboardText(useSelection);
    if (!text.isNull())
        QApplication::clipboard()->setText(text);
}

} // namespace vd::controls
