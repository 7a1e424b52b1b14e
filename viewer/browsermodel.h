#pragma once

#include <QAbstractItemModel>
#include <QHash>
#include <QVector>

namespace Sorvik {
namespace Viewer {

class PieChartItem;

// The drawn slices as a tree model for the browser: name, count and percentage of the chart's
// centre, children in the order they are drawn. The slices belong to the scene; the model
// must be given a new chart (or none) before the scene drops the old one.
class BrowserModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    enum Column { NameColumn = 0, CountColumn = 1, PercentageColumn = 2, ColumnCount = 3 };
    // The raw value of a cell, for sorting: the name, the count (qint64) or the share (double).
    static constexpr int SortRole = Qt::UserRole;
    // The slice's id.
    static constexpr int IdRole = Qt::UserRole + 1;

    explicit BrowserModel(QObject* parent = nullptr);
    ~BrowserModel() override;

    void setPieChart(PieChartItem* root);
    PieChartItem* getPieChart() const;

    QModelIndex indexOf(const QString& id) const;
    PieChartItem* itemOf(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    struct Entry
    {
        PieChartItem* item = nullptr;
        int parent = -1;
        int row = 0;
        QVector<int> children;
    };

    int entryOf(const QModelIndex& index) const;

    // Depth first from the centre, which is entry 0.
    QVector<Entry> entries;
    QHash<QString, int> ids;
};

} // namespace Viewer
} // namespace Sorvik
