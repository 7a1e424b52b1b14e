#pragma once

#include <QAbstractItemModel>
#include <QHash>
#include <QStringList>
#include <QVector>

#include <memory>
#include <vector>

namespace Sorvik {
namespace Viewer {

class ChartTree;
class PieChartItem;

// The drawn slices as a tree model for the browser: name, count and percentage of the chart's
// centre, children in the order they are drawn. The slices belong to the scene; the model
// must be given a new chart (or none) before the scene drops the old one. Given samples, it
// shows a count and a percentage column for each of them instead: the taxon's count in that
// sample and its share of the centre's count there.
class BrowserModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    // The count and percentage columns of the first sample; sample s has countColumn(s) and
    // percentageColumn(s).
    enum Column { NameColumn = 0, CountColumn = 1, PercentageColumn = 2, ColumnCount = 3 };
    static int countColumn(int sample) { return CountColumn + 2 * sample; }
    static int percentageColumn(int sample) { return PercentageColumn + 2 * sample; }
    // The raw value of a cell, for sorting: the name, the count (qint64) or the share (double).
    static constexpr int SortRole = Qt::UserRole;
    // The slice's id.
    static constexpr int IdRole = Qt::UserRole + 1;

    explicit BrowserModel(QObject* parent = nullptr);
    ~BrowserModel() override;

    void setPieChart(PieChartItem* root);
    PieChartItem* getPieChart() const;
    // The samples shown: their names and trees (ChartTree::ofSample), the slices' nodes looked
    // up in them by row. None: the slices' own counts, in one count and one percentage column.
    void setSamples(const QStringList& names, const std::vector<std::shared_ptr<const ChartTree>>& trees);
    int getSampleCount() const { return sampleNames.size(); }

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
        // The count in each sample shown.
        QVector<qint64> sampleCounts;
    };

    int entryOf(const QModelIndex& index) const;
    void countSamples();
    qint64 sampleCountOf(const Entry& entry, int sample) const;
    QVariant sampleData(const Entry& entry, int column, int role) const;

    // Depth first from the centre, which is entry 0.
    QVector<Entry> entries;
    QHash<QString, int> ids;
    QStringList sampleNames;
    std::vector<std::shared_ptr<const ChartTree>> sampleTrees;
};

} // namespace Viewer
} // namespace Sorvik
