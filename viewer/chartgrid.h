#pragma once

#include <QFont>
#include <QGraphicsItem>
#include <QRectF>
#include <QString>

#include <memory>
#include <vector>

namespace Sorvik {
namespace Viewer {

class PieChartItem;

// Several charts side by side, to compare samples: each chart in a cell of a grid, all at one
// scale, with its caption (a sample's name and total) below it. The grid owns its charts as child
// items; ChartImage draws it as it draws one chart, with one legend for all.
class ChartGrid : public QGraphicsItem
{
public:
    ChartGrid();
    ~ChartGrid() override;

    // A chart and its caption; a null chart (a sample that counts nothing here) leaves its cell
    // empty but for the caption.
    void addChart(std::unique_ptr<PieChartItem> chart, const QString& caption);
    int size() const { return static_cast<int>(cells.size()); }
    // Places the charts in rows of this many (0: as near a square as they fill).
    void arrange(int columns = 0);
    int getColumns() const { return columns; }
    PieChartItem* chartAt(int index) const;

    // What the charts take with their labels and captions, in scene units.
    QRectF getChartRect() const;
    // The same once the labels are laid out for this many pixels per scene unit.
    QRectF getDrawnRect(double pixelsPerUnit) const;
    // Lays the labels out for this many pixels per scene unit and fits the cells to what is then
    // drawn (0: to the room the labels may take).
    void setLabelPixelsPerUnit(double pixelsPerUnit);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    struct Cell
    {
        PieChartItem* chart = nullptr;
        QGraphicsSimpleTextItem* caption = nullptr;
    };

    void place();

    std::vector<Cell> cells;
    int columns = 0;
    double pixelsPerUnit = 0;
    // A cell's side, in scene units.
    double cellSide = 0;
};

} // namespace Viewer
} // namespace Sorvik
