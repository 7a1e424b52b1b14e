#include "nu/graphics/arcbracketitem.h"

#include "nu/graphics/geometry.h"

#include <cmath>

namespace nu {
namespace graphics {

ArcBracketItem::ArcBracketItem(QGraphicsItem* parent)
    : QGraphicsItem(parent)
{
    setZValue(8000);
}

void ArcBracketItem::setRadius(double r)
{
    if (r < 0)
        r = 0;
    if (r == radius)
        return;
    prepareGeometryChange();
    const QPointF oldPosition = getPositionForChild();
    updateChildrenRadius(radius, r);
    radius = r;
    updateChildrenPosition(oldPosition, getPositionForChild());
}

void ArcBracketItem::setAngle(double a)
{
    if (a == angle)
        return;
    prepareGeometryChange();
    const double oldRotation = getRotationForChild();
    const QPointF oldPosition = getPositionForChild();
    angle = a;
    updateChildrenRotation(oldRotation, getRotationForChild());
    updateChildrenPosition(oldPosition, getPositionForChild());
}

void ArcBracketItem::setTipLength(double length)
{
    if (length == tipLength)
        return;
    prepareGeometryChange();
    tipLength = length;
}

QPointF ArcBracketItem::getPositionForChild() const
{
    const double half = getAngleRad() / 2;
    return QPointF(radius * std::cos(half), -radius * std::sin(half));
}

double ArcBracketItem::getRadiusOffsetFromParent() const
{
    return radius - getRadiusParent();
}

void ArcBracketItem::setRadiusOffsetFromParent(double offset)
{
    setRadius(getRadiusParent() + (offset < 0 ? 0.0 : offset));
}

void ArcBracketItem::updateAngleFromParent(double oldAngle, double newAngle)
{
    setAngle(angle - oldAngle + newAngle);
}

void ArcBracketItem::updateRadiusFromParent(double oldRadius, double newRadius)
{
    setRadius(radius - oldRadius + newRadius);
}

QPainterPath ArcBracketItem::path() const
{
    const QRectF circle = centeredRect(QPointF(), radius);
    QPainterPath p;
    p.moveTo(radius - tipLength, 0);
    // The line Qt draws to the start of the arc is the start tip.
    p.arcTo(circle, 0, angle);
    const double a = getAngleRad();
    const double inner = radius - tipLength;
    p.lineTo(inner * std::cos(a), -inner * std::sin(a));
    // Back out to the arc and along it to the start: one closed outline.
    p.arcTo(circle, angle, -angle);
    return p;
}

} // namespace graphics
} // namespace nu
