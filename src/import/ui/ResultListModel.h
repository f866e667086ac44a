#pragma once
// The result list of the batch window as a table model over the rows its BatchProcess keeps.
// The view learns of new rows in steps (the window's redraws), so a long batch does not lay
// out and repaint its list for every row; a table view costs the same at the 20,000th row as
// at the first.

#include "import/BatchProcess.h"

#include <functional>
#include <QAbstractTableModel>
#include <QIcon>
#include <QStringList>

namespace vd::import {

class ResultListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // `icons` gives the icon of a Filetyp (an empty icon for none).
    ResultListModel(const BatchProcess& process, std::function<QIcon(int)> icons,
                    QObject* parent = nullptr);

    void setHeaders(const QStringList& headers);
    // Shows the rows of the process up to its last one.
    void showAll();
    // The process changed a row that is shown (or about to be).
    void rowChanged(qsizetype index);
    qsizetype pendingRows() const { return m_process.rows().size() - m_shown; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    const BatchProcess& m_process;
    std::function<QIcon(int)> m_icons;
    QStringList m_headers;
    int m_shown = 0;
};

} // namespace vd::import
