#include "viewer/browser.h"

#include "viewer/browsermodel.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>

namespace Sorvik {
namespace Viewer {

Browser::Browser(QWidget* parent)
    : QWidget(parent)
    , model(new BrowserModel(this))
    , proxy(new QSortFilterProxyModel(this))
    , filter(new QLineEdit(this))
    , tree(new QTreeView(this))
{
    proxy->setSourceModel(model);
    proxy->setSortRole(BrowserModel::SortRole);
    proxy->setFilterKeyColumn(BrowserModel::NameColumn);
    proxy->setFilterCaseSensitivity(Qt::CaseInsensitive);
    // A match deep down keeps its ancestors, so that it is shown where it lies.
    proxy->setRecursiveFilteringEnabled(true);

    filter->setObjectName(QStringLiteral("filterEdit"));
    filter->setPlaceholderText(tr("Find a taxon"));
    filter->setClearButtonEnabled(true);
    filter->setToolTip(tr("Shows the drawn taxa whose name holds this text; Return selects the first"));

    tree->setObjectName(QStringLiteral("browserTree"));
    tree->setModel(proxy);
    tree->setUniformRowHeights(true);
    tree->setSelectionMode(QAbstractItemView::SingleSelection);
    tree->setSelectionBehavior(QAbstractItemView::SelectRows);
    tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tree->setAllColumnsShowFocus(true);
    tree->setSortingEnabled(true);
    tree->sortByColumn(BrowserModel::CountColumn, Qt::DescendingOrder);
    tree->header()->setStretchLastSection(false);
    tree->header()->setSectionResizeMode(BrowserModel::NameColumn, QHeaderView::Stretch);
    tree->header()->setSectionResizeMode(BrowserModel::CountColumn, QHeaderView::ResizeToContents);
    tree->header()->setSectionResizeMode(BrowserModel::PercentageColumn, QHeaderView::ResizeToContents);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(filter);
    layout->addWidget(tree, 1);

    connect(filter, &QLineEdit::textChanged, this, &Browser::slotFilterChanged);
    connect(filter, &QLineEdit::returnPressed, this, &Browser::slotFilterAccepted);
    connect(tree->selectionModel(), &QItemSelectionModel::selectionChanged, this, &Browser::slotCurrentChanged);
}

Browser::~Browser() = default;

void Browser::setPieChart(PieChartItem* root)
{
    quiet = true;
    model->setPieChart(root);
    selectedId.clear();
    quiet = false;
    if (root)
        tree->expandToDepth(filter->text().isEmpty() ? 0 : 99);
}

PieChartItem* Browser::getPieChart() const
{
    return model->getPieChart();
}

QString Browser::getSelectedId() const
{
    return selectedId;
}

void Browser::setFilterText(const QString& text)
{
    filter->setText(text);
}

void Browser::slotFilterChanged(const QString& text)
{
    quiet = true;
    proxy->setFilterFixedString(text);
    quiet = false;
    if (text.isEmpty()) {
        tree->collapseAll();
        tree->expandToDepth(0);
    } else {
        tree->expandAll();
    }
    // The scene's selection stays while the filter hides it, and shows again when it is back.
    const QModelIndex selected = proxy->mapFromSource(model->indexOf(selectedId));
    if (selected.isValid()) {
        quiet = true;
        tree->selectionModel()->setCurrentIndex(selected, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        quiet = false;
        tree->scrollTo(selected);
    }
}

void Browser::slotFilterAccepted()
{
    const QString text = filter->text();
    if (text.isEmpty())
        return;
    // The first match in the order shown, depth first.
    QList<QModelIndex> open{proxy->index(0, 0)};
    while (!open.isEmpty()) {
        const QModelIndex index = open.takeFirst();
        if (!index.isValid())
            continue;
        if (index.data().toString().contains(text, Qt::CaseInsensitive)) {
            tree->setCurrentIndex(index);
            tree->scrollTo(index);
            return;
        }
        QList<QModelIndex> children;
        for (int row = 0; row < proxy->rowCount(index); ++row)
            children.append(proxy->index(row, 0, index));
        open = children + open;
    }
}

void Browser::slotSelectItem(const QString& id)
{
    const QModelIndex index = proxy->mapFromSource(model->indexOf(id));
    quiet = true;
    if (index.isValid()) {
        tree->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        tree->scrollTo(index);
    } else {
        tree->selectionModel()->clearSelection();
    }
    quiet = false;
    selectedId = model->indexOf(id).isValid() ? id : QString();
}

void Browser::slotCurrentChanged()
{
    const QModelIndexList rows = tree->selectionModel()->selectedRows(BrowserModel::NameColumn);
    const QString id = rows.isEmpty() ? QString() : rows.first().data(BrowserModel::IdRole).toString();
    if (quiet || id == selectedId)
        return;
    selectedId = id;
    emit signalSelectedItem(id);
}

} // namespace Viewer
} // namespace Sorvik
