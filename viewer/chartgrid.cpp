#include "viewer/chartgrid.h"

#include "viewer/piechartitem.h"

#include <QBrush>
#include <QFontMetricsF>
#include <QGraphicsSimpleTextItem>

#include <algorithm>
#include <cmath>

namespace Sorvik {
namespace Viewer {

namespace {

// Room between charts, in cells, and the caption's height, in cells.
constexpr double cellGap = 0.06;
constexpr double captionHeight = 0.07;

} // namespace

ChartGrid::ChartGrid()
{
    setFlag(ItemHasNoContents);
}

ChartGrid::~ChartGrid() = default;

void ChartGrid::addChart(std::unique_ptr<PieChartItem> chart, const QString& caption)
{
    Cell cell;
    QFont font;
    if (chart) {
        font = chart->getText().font;
        cell.chart = chart.release();
        cell.chart->setParentItem(this);
    }
    cell.caption = new QGraphicsSimpleTextItem(caption, this);
    cell.caption->setFont(font);
    cell.caption->setBrush(QBrush(Qt::black));
    cells.push_back(cell);
}

PieChartItem* ChartGrid::chartAt(int index) const
{
    return index >= 0 && index < size() ? cells[static_cast<size_t>(index)].chart : nullptr;
}

void ChartGrid::arrange(int wanted)
{
    const int n = size();
    columns = wanted > 0 ? wanted : std::max(1, static_cast<int>(std::ceil(std::sqrt(static_cast<double>(n)))));
    place();
}

void ChartGrid::place()
{
    const int n = size();
    // Every chart at one scale, its centre in its cell's: the cell holds the chart that reaches
    // farthest from its centre.
    double side = 0;
    for (Cell& cell : cells) {
        if (!cell.chart)
            continue;
        cell.chart->setPos(0, 0);
        const QRectF area = (pixelsPerUnit > 0 ? cell.chart->getDrawnRect(pixelsPerUnit) : cell.chart->getChartRect())
                                .translated(-scenePos());
        side = std::max({side, 2 * -area.left(), 2 * area.right(), 2 * -area.top(), 2 * area.bottom()});
    }
    if (side <= 0)
        side = 100;
    cellSide = side * (1 + cellGap);
    const double captionRoom = cellSide * captionHeight;
    for (int i = 0; i < n; ++i) {
        Cell& cell = cells[static_cast<size_t>(i)];
        const QPointF corner((i % columns) * cellSide, (i / columns) * (cellSide + captionRoom));
        const QPointF centre = corner + QPointF(cellSide / 2, cellSide / 2);
        if (cell.chart)
            cell.chart->setPos(centre);
        // The caption takes most of its row's height, and never more than the cell's width.
        const QFontMetricsF metrics(cell.caption->font());
        const QRectF natural = cell.caption->boundingRect();
        double scale = captionRoom * 0.8 / std::max(1.0, metrics.height());
        scale = std::min(scale, cellSide * 0.95 / std::max(1.0, natural.width()));
        cell.caption->setScale(scale);
        cell.caption->setPos(corner.x() + (cellSide - natural.width() * scale) / 2, corner.y() + cellSide);
    }
}

QRectF ChartGrid::getChartRect() const
{
    QRectF area;
    for (const Cell& cell : cells) {
        if (cell.chart)
            area |= cell.chart->getChartRect();
        area |= cell.caption->sceneBoundingRect();
    }
    return area;
}

QRectF ChartGrid::getDrawnRect(double pixelsPerUnit) const
{
    QRectF area;
    for (const Cell& cell : cells) {
        if (cell.chart)
            area |= cell.chart->getDrawnRect(pixelsPerUnit);
        area |= cell.caption->sceneBoundingRect();
    }
    return area;
}

void ChartGrid::setLabelPixelsPerUnit(double ppu)
{
    pixelsPerUnit = std::max(0.0, ppu);
    for (const Cell& cell : cells) {
        if (cell.chart)
            cell.chart->setLabelPixelsPerUnit(pixelsPerUnit);
    }
    // The cells fit what is drawn at that scale, not the room the labels might take.
    if (columns > 0)
        place();
}

QRectF ChartGrid::boundingRect() const
{
    return QRectF();
}

void ChartGrid::paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*)
{
}

} // namespace Viewer
} // namespace Sorvik
