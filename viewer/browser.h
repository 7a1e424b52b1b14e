#pragma once

#include <QHash>
#include <QStringList>
#include <QWidget>

#include <memory>
#include <vector>

class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QSortFilterProxyModel;
class QTreeView;

namespace Sorvik {
namespace Viewer {

class BrowserModel;
class ChartTree;
class PieChartItem;

// The drawn slices as a tree (name, count, share of the chart's centre) with a filter box that
// finds taxa by name, in the drawn slices and in the whole chart: the matches that are not drawn
// are listed below the tree, and choosing one asks for it to be drawn. Its selection follows the
// scene's and tells the scene of the user's choice by the slice's id (empty when nothing is
// selected).
class Browser : public QWidget
{
    Q_OBJECT
public:
    explicit Browser(QWidget* parent = nullptr);
    ~Browser() override;

    // The slices stay the scene's; null empties the tree.
    void setPieChart(PieChartItem* root);
    PieChartItem* getPieChart() const;
    // The id of the selected slice, or empty.
    QString getSelectedId() const;

    // The whole chart the drawn slices come from, searched by the filter; null searches only
    // what is drawn. raw: the names as stored.
    void setChartTree(std::shared_ptr<const ChartTree> chartTree, bool raw = false);
    // The samples shown: a count and a percentage column for each (see BrowserModel::setSamples);
    // none for the slices' own counts.
    void setSamples(const QStringList& names, const std::vector<std::shared_ptr<const ChartTree>>& trees);
    // The id of the slice drawn for the tree's node (alone or in a chain), or empty.
    QString getDrawnId(int node) const;

    // Shows only the slices whose name holds the text (any case), with their ancestors, and
    // lists the chart's other matches.
    void setFilterText(const QString& text);
    QTreeView* getTreeView() const { return tree; }
    // The matches not drawn, largest first; each item's data is its node in the chart tree.
    QListWidget* getUndrawnList() const { return undrawn; }
    // What the filter found, in words ("No taxon matches 'x'."); empty without a filter.
    QString getFilterNotice() const;

    // How many undrawn matches are listed at most.
    static constexpr int maximumUndrawn = 200;

public slots:
    // Selects the slice with this id; empty, unknown or filtered out clears the selection. Sends
    // no signal back.
    void slotSelectItem(const QString& id);

signals:
    void signalSelectedItem(const QString& id);
    // A row was double-clicked: the user wants to step into its slice, which is selected.
    void signalItemEntered();
    // The user chose a match that is not drawn: its node in the chart tree.
    void signalNodeChosen(int node);

private:
    void slotFilterChanged(const QString& text);
    void slotFilterAccepted();
    void slotCurrentChanged();
    void slotUndrawnChosen(QListWidgetItem* item);
    void slotRowDoubleClicked();
    // Lists the whole chart's matches that are not drawn, and says when nothing matches.
    void listUndrawn(const QString& text);

    BrowserModel* model = nullptr;
    QSortFilterProxyModel* proxy = nullptr;
    QLineEdit* filter = nullptr;
    QTreeView* tree = nullptr;
    QLabel* notice = nullptr;
    QLabel* undrawnTitle = nullptr;
    QListWidget* undrawn = nullptr;
    std::shared_ptr<const ChartTree> chartTree;
    bool rawNames = false;
    // The drawn slices' ids by the file rows they stand for, every node of a chain included.
    QHash<int, QString> drawnRows;
    QString selectedId;
    bool quiet = false;
};

} // namespace Viewer
} // namespace Sorvik
