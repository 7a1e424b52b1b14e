#include "nu/graphics/piechartitem.h"

#include "nu/graphics/geometry.h"

namespace nu {
namespace graphics {

PieChartItem::PieChartItem(QGraphicsItem* parent)
    : QGraphicsItem(parent)
    , RingItem(parent)
{
    setFlag(QGraphicsItem::ItemStacksBehindParent);
}

void PieChartItem::updateCountFromParent(qint64 rootTotal)
{
    // An empty chart has no shares: every slice gets angle 0 rather than a division by zero.
    setPercentage(rootTotal > 0 ? getTotal() * 100.0 / rootTotal : 0.0);
    double rotation = 0;
    for (PieChartItem* child : sortedChildren<PieChartItem>()) {
        child->setRot(rotation);
        child->updateCountFromParent(rootTotal);
        rotation += child->getAngle();
    }
}

QRectF PieChartItem::getLabelRect() const
{
    return QRectF(0, 0, getLabelRadius() * getAngleRad(), getRadiusOffset());
}

QPointF PieChartItem::getLabelCenter() const
{
    const double l = getLabelRadius();
    QPointF p(-getAngleRad() * l / 2, -getRadiusOffset() / 2);
    polarTransform(p, l, 1.0);
    return mapToScene(p) - mapToScene(QPointF());
}

} // namespace graphics
} // namespace nu
