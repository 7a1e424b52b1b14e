#include "viewer/browsermodel.h"

#include "viewer/charttree.h"
#include "viewer/piechartitem.h"

#include <QLocale>

#include <algorithm>

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
        entries.append(Entry{root, -1, 0, {}, {}});
        // Iterative: a deep chart must not exhaust the stack.
        for (int e = 0; e < entries.size(); ++e) {
            const std::vector<PieChartItem*> children = entries[e].item->sortedChildren<PieChartItem>();
            for (PieChartItem* child : children) {
                entries[e].children.append(entries.size());
                entries.append(Entry{child, e, entries[e].children.size() - 1, {}, {}});
            }
        }
        for (int e = 0; e < entries.size(); ++e)
            ids.insert(entries[e].item->getId(), e);
    }
    countSamples();
    endResetModel();
}

void BrowserModel::setSamples(const QStringList& names, const std::vector<std::shared_ptr<const ChartTree>>& trees)
{
    if (names == sampleNames && trees == sampleTrees)
        return;
    beginResetModel();
    sampleNames = names;
    sampleTrees = trees;
    // A name without its tree counts nothing rather than reading past the end.
    sampleTrees.resize(static_cast<size_t>(names.size()));
    countSamples();
    endResetModel();
}

void BrowserModel::countSamples()
{
    for (Entry& entry : entries)
        entry.sampleCounts.clear();
    // Parents before children: an "others" slice is counted from its siblings.
    for (Entry& entry : entries) {
        for (int s = 0; s < sampleNames.size(); ++s)
            entry.sampleCounts.append(sampleCountOf(entry, s));
    }
}

qint64 BrowserModel::sampleCountOf(const Entry& entry, int sample) const
{
    const ChartTree* tree = sampleTrees[static_cast<size_t>(sample)].get();
    if (!tree)
        return 0;
    const auto totalOf = [tree](const PieChartItem* item) -> qint64 {
        const int node = tree->indexOfRow(item->getPosition().getRow());
        return node == ChartTree::none ? 0 : std::max<qint64>(0, tree->at(node).total);
    };
    if (!entry.item->isOthers())
        return totalOf(entry.item);
    // The taxa that "N others" gathers are this sample's part of the parent that neither the
    // drawn siblings nor the parent's own count account for.
    if (entry.parent < 0)
        return 0;
    const Entry& parent = entries[entry.parent];
    const int node = tree->indexOfRow(parent.item->getPosition().getRow());
    if (node == ChartTree::none)
        return 0;
    qint64 rest = tree->at(node).total - std::max<qint64>(0, tree->at(node).count);
    for (const int sibling : parent.children) {
        if (!entries[sibling].item->isOthers())
            rest -= totalOf(entries[sibling].item);
    }
    return std::max<qint64>(0, rest);
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
    if (column < 0 || column >= columnCount() || row < 0)
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
    return sampleNames.isEmpty() ? int(ColumnCount) : 1 + 2 * sampleNames.size();
}

QVariant BrowserModel::data(const QModelIndex& index, int role) const
{
    const PieChartItem* item = itemOf(index);
    if (!item)
        return QVariant();
    const int column = index.column();
    if (role == IdRole)
        return item->getId();
    if (column != NameColumn && !sampleNames.isEmpty())
        return sampleData(entries[entryOf(index)], column, role);
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

QVariant BrowserModel::sampleData(const Entry& entry, int column, int role) const
{
    const int sample = (column - CountColumn) / 2;
    if (sample >= sampleNames.size() || sample >= entry.sampleCounts.size())
        return QVariant();
    const qint64 count = entry.sampleCounts.at(sample);
    const qint64 centre = entries.first().sampleCounts.value(sample);
    const bool isCount = column == countColumn(sample);
    const double share = centre > 0 ? 100.0 * static_cast<double>(count) / static_cast<double>(centre) : 0.0;
    if (role == SortRole)
        return isCount ? QVariant(count) : QVariant(share);
    if (role == Qt::DisplayRole) {
        if (isCount)
            return QLocale().toString(count);
        // Nothing at the centre in this sample: no share to speak of.
        return centre > 0 ? QString::number(share, 'f', 2) : QString();
    }
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    return QVariant();
}

QVariant BrowserModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return QVariant();
    if (section > NameColumn && !sampleNames.isEmpty()) {
        const int sample = (section - CountColumn) / 2;
        if (sample >= sampleNames.size())
            return QVariant();
        const QString& name = sampleNames.at(sample);
        const bool isCount = section == countColumn(sample);
        // Short headers keep the columns narrow: the tool tip says whose share it is.
        if (role == Qt::DisplayRole)
            return isCount ? name : tr("%");
        if (role == Qt::ToolTipRole)
            return isCount ? tr("Count in %1").arg(name) : tr("Percentage of the chart's centre in %1").arg(name);
        return QVariant();
    }
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
