#pragma once

#include <QColor>
#include <QFont>
#include <QPointF>
#include <QSizeF>
#include <QString>

#include <memory>
#include <vector>

class QGraphicsItem;
class QPainter;

namespace Sorvik {
namespace Viewer {

class ChartTree;
class ColourMap;

// The colour key of a chart: one row per taxon of the first level that branches (the taxa that
// hold the base colours), with its colour, its name and its share of the whole chart, largest
// first. Drawn with a painter, or as a graphics item beside a chart in a scene.
class ChartLegend
{
public:
    struct Row
    {
        QColor colour;
        QString name;
        // Percent of the whole chart's count.
        double share = 0;
    };

    // More rows than this end in one row for the rest.
    static constexpr int maximumRows = 16;

    explicit ChartLegend(std::vector<Row> rows = {}, const QFont& font = QFont());
    static ChartLegend of(const ChartTree& tree, const ColourMap& colours, bool rawNames = false);

    const std::vector<Row>& getRows() const { return rows; }
    bool isEmpty() const { return rows.empty(); }
    // The size the legend takes when drawn, in the font's units.
    QSizeF getSize() const;
    void paint(QPainter& painter, const QPointF& topLeft) const;
    // An item that draws the legend with its top left corner at the item's origin.
    std::unique_ptr<QGraphicsItem> createItem() const;

    // "12.5 %", with fewer decimals for large shares; "< 0.01 %" for the smallest.
    static QString formatShare(double percent);

private:
    double rowHeight() const;

    std::vector<Row> rows;
    QFont font;
};

} // namespace Viewer
} // namespace Sorvik
