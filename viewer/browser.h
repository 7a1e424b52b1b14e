#pragma once

#include <QWidget>

class QLineEdit;
class QSortFilterProxyModel;
class QTreeView;

namespace Sorvik {
namespace Viewer {

class BrowserModel;
class PieChartItem;

// The drawn slices as a tree (name, count, share of the chart's centre) with a filter box that
// finds taxa by name. Its selection follows the scene's and tells the scene of the user's
// choice by the slice's id (empty when nothing is selected).
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

    // Shows only the slices whose name holds the text (any case), with their ancestors.
    void setFilterText(const QString& text);
    QTreeView* getTreeView() const { return tree; }

public slots:
    // Selects the slice with this id; empty, unknown or filtered out clears the selection. Sends
    // no signal back.
    void slotSelectItem(const QString& id);

signals:
    void signalSelectedItem(const QString& id);

private:
    void slotFilterChanged(const QString& text);
    void slotFilterAccepted();
    void slotCurrentChanged();

    BrowserModel* model = nullptr;
    QSortFilterProxyModel* proxy = nullptr;
    QLineEdit* filter = nullptr;
    QTreeView* tree = nullptr;
    QString selectedId;
    bool quiet = false;
};

} // namespace Viewer
} // namespace Sorvik
