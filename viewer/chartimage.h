#pragma once

#include "viewer/chartlegend.h"

#include <QByteArray>
#include <QImage>
#include <QRectF>
#include <QString>

#include <functional>

class QGraphicsItem;

namespace nu {
namespace graphics {
class SceneImage;
}
} // namespace nu

namespace Sorvik {
namespace Viewer {

// Draws a chart into an image: the chart's root item with everything below it, optionally a
// legend beside it and a title above it, fitted with even margins into an image whose longer
// side is a given number of pixels, on a white background, as PNG, SVG or PDF (which keep texts
// as texts). A chart that is shown in a scene is drawn from that scene (with whatever lies on
// it); otherwise it is lent to a scene of its own for the drawing and given back.
class ChartImage
{
public:
    static constexpr int defaultSize = 1000;
    static constexpr int maximumSize = 10000;

    explicit ChartImage(QGraphicsItem& chart);

    // The longer side of the image; clamped to 1..maximumSize.
    void setSize(int pixels);
    int getSize() const { return size; }
    // Drawn to the right of the chart; an empty legend draws none.
    void setLegend(const ChartLegend& legend) { this->legend = legend; }
    // Drawn above the chart, and the document's title; an empty one draws none.
    void setTitle(const QString& title) { this->title = title.simplified(); }
    QString getTitle() const { return title; }
    // The resolution a PNG says it has (none when not above 0); the pixels stay as they are.
    void setDotsPerInch(double dpi) { dotsPerInch = dpi; }

    QImage toImage() const;
    QByteArray toSvg() const;
    QByteArray toPdf() const;
    // Writes the file, in the format its extension asks for, completely or leaves it as it was;
    // throws nu::graphics::SceneImage::UnknownFormatException or WriteException.
    void save(const QString& fileName) const;

private:
    // Lends the chart a scene if it has none and hands use the drawing of it.
    void draw(const std::function<void(const nu::graphics::SceneImage&)>& use) const;
    QRectF getChartRect() const;

    QGraphicsItem& chart;
    int size = defaultSize;
    ChartLegend legend;
    QString title;
    double dotsPerInch = 0;
};

} // namespace Viewer
} // namespace Sorvik
