#include "import/ui/ResultListModel.h"

#include "import/ui/frmProcess.h"

namespace vd::import {

ResultListModel::ResultListModel(const BatchProcess& process, std::function<QIcon(int)> icons,
                                 QObject* parent)
    : QAbstractTableModel(parent), m_process(process), m_icons(std::move(icons))
{}

void ResultListModel::setHeaders(const QStringList& headers)
{
    beginResetModel();
    m_headers = headers;
    endResetModel();
}

void ResultListModel::showAll()
{
    const int all = int(m_process.rows().size());
    if (all <= m_shown)
        return;
    beginInsertRows({}, m_shown, all - 1);
    m_shown = all;
    endInsertRows();
}

void ResultListModel::rowChanged(qsizetype index)
{
    showAll();
    if (index < m_shown)
        emit dataChanged(this->index(int(index), 0), this->index(int(index), columnCount() - 1));
}

int ResultListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_shown;
}

int ResultListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_headers.size());
}

QVariant ResultListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_shown)
        return {};
    const ResultRow& row = m_process.rows()[index.row()];
    const bool missingColumns = row.Key != 0;
    switch (index.column()) {
    case frmProcess::colName:
        return role == Qt::DisplayRole || role == Qt::ToolTipRole ? QVariant(row.Name) : QVariant();
    case frmProcess::colFiletyp:
        if (role == Qt::DecorationRole)
            return m_icons(row.Filetyp);
        return role == Qt::UserRole ? QVariant(row.Filetyp) : QVariant();
    default:
        break;
    }
    if (role != Qt::DisplayRole || !missingColumns)
        return {};
    switch (index.column()) {
    case frmProcess::colKey:
        return QString::number(row.Key);
    case frmProcess::colFile:
        return row.File;
    case frmProcess::colPath:
        return row.Path;
    case frmProcess::colOrgType:
        return QString::number(row.OrgType);
    default:
        return {};
    }
}

QVariant ResultListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_headers.value(section);
    return {};
}

Qt::ItemFlags ResultListModel::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}

} // namespace vd::import
