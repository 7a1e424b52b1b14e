#include "nu/graphics/lineitem.h"

namespace nu {
namespace graphics {

LineItem::LineItem(QGraphicsItem* parent)
    : QGraphicsItem(parent)
{
    setZValue(7000);
}

void LineItem::setEndPoint(const QPointF& point)
{
    if (point == endPoint)
        return;
    prepareGeometryChange();
    const QPointF oldEnd = endPoint;
    endPoint = point;
    updateChildrenPosition(oldEnd, getPositionForChild());
}

QPointF LineItem::getPositionOffsetFromParent() const
{
    return pos() - getPositionParent();
}

void LineItem::setPositionOffsetFromParent(const QPointF& offset)
{
    setPos(getPositionParent() + offset);
}

void LineItem::updatePositionFromParent(const QPointF& oldPosition, const QPointF& newPosition)
{
    setPos(pos() - oldPosition + newPosition);
}

QPainterPath LineItem::path() const
{
    QPainterPath p;
    p.lineTo(endPoint);
    return p;
}

} // namespace graphics
} // namespace nu
