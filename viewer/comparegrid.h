#pragma once

#include <QString>
#include <QWidget>

#include <memory>
#include <vector>

class QGridLayout;
class QLabel;

namespace Sorvik {
namespace Viewer {

class PieChartItem;
class View;

// Several charts side by side, each in a small view of its own under a title: the samples that
// View > Compare draws. The columns are chosen so that the charts are as large as the widget
// allows. Selecting a slice in one chart selects the same taxon (the slice of the same id) in
// all of them; a double click on a slice asks to step into it; what to draw is the owner's
// business.
class CompareGrid : public QWidget
{
    Q_OBJECT
public:
    struct Cell
    {
        // What the chart is: the sample's name and total, worded by the owner.
        QString title;
        // Said in place of the chart when there is none (the taxon at the centre is absent).
        QString note;
        // Null: nothing to draw.
        std::unique_ptr<PieChartItem> chart;
    };

    explicit CompareGrid(QWidget* parent = nullptr);
    ~CompareGrid() override;

    // Shows these charts in place of the earlier ones; views are kept when their number stays.
    void setCells(std::vector<Cell> cells);
    int getCount() const { return static_cast<int>(parts.size()); }
    View* getView(int cell) const;
    QLabel* getTitle(int cell) const;
    QLabel* getNote(int cell) const;
    int getColumns() const { return columns; }
    // The selected slice's id (the same in every chart), or empty.
    QString getSelectedId() const { return selectedId; }

    // The number of columns that gives the largest square charts for count cells in an area,
    // each cell losing titleHeight to its title.
    static int columnsFor(int count, const QSize& area, int titleHeight = 0);

public slots:
    // Selects the slice of this id in every chart that has one; sends no signal back.
    void slotSelectItem(const QString& id);

signals:
    void signalSelectedItem(const QString& id);
    // A double click on a slice of this cell's chart, which is selected.
    void signalItemEntered(int cell);
    // The slice under the mouse in a cell: its id, or empty when it left the chart.
    void signalSliceHovered(int cell, const QString& id);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Part
    {
        QWidget* frame = nullptr;
        QLabel* title = nullptr;
        QLabel* note = nullptr;
        View* view = nullptr;
    };

    void makeParts(int count);
    void arrange();
    void selectedInCell(const QString& id);

    QGridLayout* grid = nullptr;
    std::vector<Part> parts;
    int columns = 0;
    QString selectedId;
};

} // namespace Viewer
} // namespace Sorvik
