#include "nu/edit/selectionshape.h"

#include "nu/graphics/arctextitem.h"
#include "nu/graphics/geometry.h"
#include "nu/graphics/recttextitem.h"

#include <QPainterPathStroker>
#include <QtMath>

#include <algorithm>

namespace nu {
namespace edit {

namespace {

// How far from a thin stroke a press still hits it, in scene units.
constexpr double strokeSlack = 3.0;

// The band a bent text covers: its box bent round its circle, about the +x axis.
QPainterPath arcTextBand(const graphics::ArcTextItem& text)
{
    const QRectF box = graphics::textRect(text.getText(), text.getFont(), text.getPen());
    const double radius = text.getRadius();
    const double outer = radius + box.height() / 2;
    const double inner = std::max(0.0, radius - box.height() / 2);
    QPainterPath band;
    if (radius <= 0 || outer <= 0)
        return band;
    const double span = qRadiansToDegrees(box.width() / radius);
    if (span >= 360) {
        band.addEllipse(QPointF(), outer, outer);
        band.addEllipse(QPointF(), inner, inner);
        return band;
    }
    band.arcMoveTo(graphics::centeredRect(QPointF(), outer), -span / 2);
    band.arcTo(graphics::centeredRect(QPointF(), outer), -span / 2, span);
    band.arcTo(graphics::centeredRect(QPointF(), inner), span / 2, -span);
    band.closeSubpath();
    return band;
}

} // namespace

QPainterPath selectionShape(const QGraphicsItem& item)
{
    if (auto text = dynamic_cast<const graphics::ArcTextItem*>(&item))
        return arcTextBand(*text);
    QPainterPath shape;
    if (auto text = dynamic_cast<const graphics::RectTextItem*>(&item)) {
        shape.addRect(text->path().boundingRect());
        return shape;
    }
    // Lines and brackets: a stroke too thin to hit is widened; a filled shape is its own.
    auto trace = dynamic_cast<const graphics::CustomTraceItem*>(&item);
    if (trace && !dynamic_cast<const graphics::CustomShapeItem*>(&item)) {
        QPainterPathStroker stroker;
        stroker.setWidth(std::max(trace->getPen().widthF(), 1.0) + 2 * strokeSlack);
        stroker.setCapStyle(Qt::RoundCap);
        stroker.setJoinStyle(Qt::RoundJoin);
        return stroker.createStroke(trace->path());
    }
    return item.shape();
}

} // namespace edit
} // namespace nu
