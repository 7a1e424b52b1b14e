#include "nu/graphics/ringitem.h"

#include "nu/graphics/arcbracketitem.h"
#include "nu/graphics/geometry.h"

#include <cmath>

namespace nu {
namespace graphics {

RingItem::RingItem(QGraphicsItem* parent)
    : QGraphicsItem(parent)
{
    setZValue(-3000);
}

void RingItem::addChild(QGraphicsItem* child)
{
    BaseItem::addChild(child);
    if (auto* bracket = dynamic_cast<ArcBracketItem*>(child); bracket && bracket->parentItem() == this)
        bracket->setAngle(angle);
}

QPainterPath RingItem::path() const
{
    const double outer = radius + radiusOffset;
    QPainterPath p;
    if (angle < 360 || radius > 0) {
        p.moveTo(outer, 0);
        p.arcTo(centeredRect(QPointF(), outer), 0, angle);
        // Qt draws nothing for an arc on a circle of radius 0: go to the centre for a wedge.
        if (radius > 0)
            p.arcTo(centeredRect(QPointF(), radius), angle, -angle);
        else
            p.lineTo(0, 0);
        p.closeSubpath();
    } else {
        p.addEllipse(QPointF(), outer, outer);
    }
    return p;
}

QPointF RingItem::getPositionForChild() const
{
    const double r = getRadiusFull();
    const double half = getAngleRad() / 2;
    return QPointF(r * std::cos(half), -r * std::sin(half));
}

void RingItem::setAngle(double a)
{
    if (a == angle)
        return;
    prepareGeometryChange();
    updateChildrenAngle(angle, a);
    const double oldRotation = getRotationForChild();
    const QPointF oldPosition = getPositionForChild();
    angle = a;
    updateChildrenRotation(oldRotation, getRotationForChild());
    updateChildrenPosition(oldPosition, getPositionForChild());
}

void RingItem::setRadius(double r)
{
    if (r < 0)
        r = 0;
    if (r == radius)
        return;
    prepareGeometryChange();
    const QPointF oldPosition = getPositionForChild();
    const double oldRadius = getRadiusForChild();
    radius = r;
    updateChildrenRadius(oldRadius, getRadiusForChild());
    updateChildrenPosition(oldPosition, getPositionForChild());
}

void RingItem::setRadiusOffset(double w)
{
    if (w < 1.0)
        w = 1.0;
    if (w == radiusOffset)
        return;
    prepareGeometryChange();
    const QPointF oldPosition = getPositionForChild();
    const double oldRadius = getRadiusForChild();
    radiusOffset = w;
    updateChildrenRadius(oldRadius, getRadiusForChild());
    updateChildrenPosition(oldPosition, getPositionForChild());
}

void RingItem::setRadiusOffsetFromParent(double w)
{
    setRadiusOffset(w < 0 ? 0.0 : w);
}

void RingItem::updateRadiusFromParent(double oldRadius, double newRadius)
{
    setRadius(radius - oldRadius + newRadius);
}

void RingItem::setOrder(int o)
{
    if (o < 0)
        o = 0;
    if (o == order)
        return;
    updateParentOrder(order, o);
    order = o;
}

void RingItem::updateChildOrder(int a, int b)
{
    OrderedParentItem::updateChildOrder(a, b);
    double rotation = 0;
    for (RingItem* child : sortedChildren<RingItem>()) {
        child->setRot(rotation);
        rotation += child->getAngle();
    }
}

} // namespace graphics
} // namespace nu
