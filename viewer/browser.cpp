#include "viewer/browser.h"

#include "viewer/browsermodel.h"
#include "viewer/charttree.h"
#include "viewer/piechartitem.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace Sorvik {
namespace Viewer {

Browser::Browser(QWidget* parent)
    : QWidget(parent)
    , model(new BrowserModel(this))
    , proxy(new QSortFilterProxyModel(this))
    , filter(new QLineEdit(this))
    , tree(new QTreeView(this))
    , notice(new QLabel(this))
    , undrawnTitle(new QLabel(this))
    , undrawn(new QListWidget(this))
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
    filter->setToolTip(tr("Finds the taxa whose name holds this text, drawn or not; Return selects the first drawn"));

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
    // The dock may be narrowed below the width of the columns: the tree scrolls sideways then.
    tree->setMinimumWidth(80);
    tree->setToolTip(tr("Double-click a taxon to step into it"));

    notice->setObjectName(QStringLiteral("filterNotice"));
    notice->setWordWrap(true);
    notice->setContentsMargins(4, 2, 4, 2);
    notice->hide();
    undrawnTitle->setObjectName(QStringLiteral("undrawnTitle"));
    undrawnTitle->setWordWrap(true);
    undrawnTitle->setContentsMargins(4, 4, 4, 0);
    undrawnTitle->hide();
    undrawn->setObjectName(QStringLiteral("undrawnList"));
    undrawn->setUniformItemSizes(true);
    undrawn->setMinimumWidth(80);
    undrawn->hide();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(filter);
    layout->addWidget(notice);
    layout->addWidget(tree, 3);
    layout->addWidget(undrawnTitle);
    layout->addWidget(undrawn, 2);

    connect(filter, &QLineEdit::textChanged, this, &Browser::slotFilterChanged);
    connect(filter, &QLineEdit::returnPressed, this, &Browser::slotFilterAccepted);
    connect(tree->selectionModel(), &QItemSelectionModel::selectionChanged, this, &Browser::slotCurrentChanged);
    connect(tree, &QTreeView::doubleClicked, this, &Browser::slotRowDoubleClicked);
    connect(undrawn, &QListWidget::itemActivated, this, &Browser::slotUndrawnChosen);
}

Browser::~Browser() = default;

void Browser::setPieChart(PieChartItem* root)
{
    quiet = true;
    model->setPieChart(root);
    selectedId.clear();
    quiet = false;
    drawnRows.clear();
    std::vector<PieChartItem*> open;
    if (root)
        open.push_back(root);
    while (!open.empty()) {
        PieChartItem* item = open.back();
        open.pop_back();
        if (!item->isOthers()) {
            const QList<PieChartItem::Position> chain = item->getChainPositions();
            for (const PieChartItem::Position& position : chain)
                drawnRows.insert(position.getRow(), item->getId());
            drawnRows.insert(item->getPosition().getRow(), item->getId());
        }
        for (PieChartItem* child : item->sortedChildren<PieChartItem>())
            open.push_back(child);
    }
    if (root)
        tree->expandToDepth(filter->text().isEmpty() ? 0 : 99);
    listUndrawn(filter->text());
}

void Browser::setChartTree(std::shared_ptr<const ChartTree> whole, bool raw)
{
    chartTree = std::move(whole);
    rawNames = raw;
    listUndrawn(filter->text());
}

void Browser::setSamples(const QStringList& names, const std::vector<std::shared_ptr<const ChartTree>>& trees)
{
    quiet = true;
    model->setSamples(names, trees);
    quiet = false;
    for (int column = BrowserModel::CountColumn; column < model->columnCount(); ++column)
        tree->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    // Beside the columns of several samples the name would be squeezed to nothing: it keeps a
    // width of its own, and the panel scrolls sideways.
    if (names.size() > 1) {
        tree->header()->setSectionResizeMode(BrowserModel::NameColumn, QHeaderView::Interactive);
        tree->header()->resizeSection(BrowserModel::NameColumn, 200);
    } else {
        tree->header()->setSectionResizeMode(BrowserModel::NameColumn, QHeaderView::Stretch);
    }
    // The reset lost the tree's state: shown as after a new chart.
    if (model->getPieChart())
        tree->expandToDepth(filter->text().isEmpty() ? 0 : 99);
    slotSelectItem(selectedId);
}

QString Browser::getDrawnId(int node) const
{
    if (!chartTree || node < 0 || node >= chartTree->size())
        return QString();
    return drawnRows.value(chartTree->at(node).row);
}

QString Browser::getFilterNotice() const
{
    return notice->isHidden() ? QString() : notice->text();
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
    listUndrawn(text);
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

void Browser::listUndrawn(const QString& text)
{
    undrawn->clear();
    std::vector<int> matches;
    if (chartTree && !text.isEmpty()) {
        for (int node = 0; node < chartTree->size(); ++node) {
            const ChartTree::Node& n = chartTree->at(node);
            // Empty taxa are never drawn: nothing to step to.
            if (n.total > 0 && !drawnRows.contains(n.row)
                && chartTree->getName(node, rawNames).contains(text, Qt::CaseInsensitive))
                matches.push_back(node);
        }
        std::stable_sort(matches.begin(), matches.end(),
                         [this](int a, int b) { return chartTree->at(a).total > chartTree->at(b).total; });
    }
    const QLocale locale;
    const int listed = std::min<int>(static_cast<int>(matches.size()), maximumUndrawn);
    QHash<QString, int> named;
    for (int i = 0; i < listed; ++i)
        ++named[chartTree->getName(matches[static_cast<size_t>(i)], rawNames)];
    for (int i = 0; i < listed; ++i) {
        const int node = matches[static_cast<size_t>(i)];
        QString text = chartTree->getName(node, rawNames);
        // Taxa of one name in several places ("unclassified ...") are told apart by their parent.
        const int parent = chartTree->at(node).parent;
        if (named.value(text) > 1 && parent != ChartTree::none)
            text += tr(" (in %1)").arg(chartTree->getName(parent, rawNames));
        auto* item = new QListWidgetItem(text, undrawn);
        item->setData(Qt::UserRole, node);
        item->setToolTip(tr("%1\ncount %2; choose it to draw it")
                             .arg(chartTree->getPath(node, rawNames).join(QStringLiteral(" \u203a ")),
                                  locale.toString(chartTree->at(node).total)));
    }
    if (listed < static_cast<int>(matches.size()))
        undrawnTitle->setText(tr("%1 matches not drawn, the largest %2 listed; choose one to draw it:")
                                  .arg(locale.toString(qint64(matches.size())), locale.toString(listed)));
    else
        undrawnTitle->setText(tr("Not drawn (%1); choose one to draw it:").arg(listed));
    undrawnTitle->setVisible(listed > 0);
    undrawn->setVisible(listed > 0);

    const bool drawnMatch = proxy->rowCount() > 0;
    notice->setText(tr("No taxon matches \u201c%1\u201d.").arg(text));
    notice->setVisible(!text.isEmpty() && !drawnMatch && matches.empty());
}

void Browser::slotUndrawnChosen(QListWidgetItem* item)
{
    if (item)
        emit signalNodeChosen(item->data(Qt::UserRole).toInt());
}

void Browser::slotRowDoubleClicked()
{
    if (!selectedId.isEmpty())
        emit signalItemEntered();
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
