#include "viewer/browsermodel.h"

#include "viewer/piechartitem.h"

#include <QLocale>

namespace Sorvik {
namespace Viewer {

BrowserModel::BrowserModel(QObject* parent)
    : QAbstractItemModel(parent)
{
}

BrowserModel::~BrowserModel() = default;

void BrowserModel::setPieChart(PieChartItem* root)
{
    beginResetModel();
    entries.clear();
    ids.clear();
    if (root) {
        entries.append(Entry{root, -1, 0, {}});
        // Iterative: a deep chart must not exhaust the stack.
        for (int e = 0; e < entries.size(); ++e) {
            const std::vector<PieChartItem*> children = entries[e].item->sortedChildren<PieChartItem>();
            for (PieChartItem* child : children) {
                entries[e].children.append(entries.size());
                entries.append(Entry{child, e, entries[e].children.size() - 1, {}});
            }
        }
        for (int e = 0; e < entries.size(); ++e)
            ids.insert(entries[e].item->getId(), e);
    }
    endResetModel();
}

PieChartItem* BrowserModel::getPieChart() const
{
    return entries.isEmpty() ? nullptr : entries.first().item;
}

int BrowserModel::entryOf(const QModelIndex& index) const
{
    if (!index.isValid() || index.model() != this)
        return -1;
    const int e = static_cast<int>(index.internalId());
    return e >= 0 && e < entries.size() ? e : -1;
}

QModelIndex BrowserModel::indexOf(const QString& id) const
{
    const auto found = ids.constFind(id);
    if (found == ids.constEnd())
        return QModelIndex();
    return createIndex(entries[*found].row, NameColumn, quintptr(*found));
}

PieChartItem* BrowserModel::itemOf(const QModelIndex& index) const
{
    const int e = entryOf(index);
    return e < 0 ? nullptr : entries[e].item;
}

QModelIndex BrowserModel::index(int row, int column, const QModelIndex& parent) const
{
    if (column < 0 || column >= ColumnCount || row < 0)
        return QModelIndex();
    if (!parent.isValid()) {
        if (row > 0 || entries.isEmpty())
            return QModelIndex();
        return createIndex(0, column, quintptr(0));
    }
    const int p = entryOf(parent);
    if (p < 0 || row >= entries[p].children.size())
        return QModelIndex();
    return createIndex(row, column, quintptr(entries[p].children[row]));
}

QModelIndex BrowserModel::parent(const QModelIndex& child) const
{
    const int e = entryOf(child);
    if (e < 0)
        return QModelIndex();
    const int p = entries[e].parent;
    if (p < 0)
        return QModelIndex();
    return createIndex(entries[p].row, NameColumn, quintptr(p));
}

int BrowserModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return entries.isEmpty() ? 0 : 1;
    if (parent.column() != NameColumn)
        return 0;
    const int p = entryOf(parent);
    return p < 0 ? 0 : entries[p].children.size();
}

int BrowserModel::columnCount(const QModelIndex&) const
{
    return ColumnCount;
}

QVariant BrowserModel::data(const QModelIndex& index, int role) const
{
    const PieChartItem* item = itemOf(index);
    if (!item)
        return QVariant();
    const int column = index.column();
    if (role == IdRole)
        return item->getId();
    if (role == SortRole) {
        if (column == NameColumn)
            return item->getChainText();
        if (column == CountColumn)
            return item->getAccumCount();
        return item->getPercentage();
    }
    if (role == Qt::DisplayRole) {
        // A slice drawn for a chain lists the whole chain.
        if (column == NameColumn)
            return item->getChainText();
        if (column == CountColumn)
            return QLocale().toString(item->getAccumCount());
        return QString::number(item->getPercentage(), 'f', 2);
    }
    if (role == Qt::TextAlignmentRole && column != NameColumn)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole && column == NameColumn)
        return item->getDefaultText();
    if (role == Qt::DecorationRole && column == NameColumn)
        return item->getColor();
    return QVariant();
}

QVariant BrowserModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return QVariant();
    if (role == Qt::ToolTipRole && section == PercentageColumn)
        return tr("Percentage of the chart's centre");
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case NameColumn:
        return tr("Name");
    case CountColumn:
        return tr("Count");
    case PercentageColumn:
        return tr("%");
    default:
        return QVariant();
    }
}

} // namespace Viewer
} // namespace Sorvik
