#include "nu/graphics/arctextitem.h"

#include "nu/graphics/geometry.h"

namespace nu {
namespace graphics {

ArcTextItem::ArcTextItem(QGraphicsItem* parent)
    : QGraphicsItem(parent)
{
    setZValue(12000);
    setPen(QPen(Qt::NoPen));
    setBrush(QBrush(Qt::black, Qt::SolidPattern));
}

void ArcTextItem::setText(const QString& t)
{
    if (t == text)
        return;
    prepareGeometryChange();
    text = t;
}

void ArcTextItem::setFont(const QFont& f)
{
    if (f == font)
        return;
    prepareGeometryChange();
    font = f;
}

void ArcTextItem::setOrientation(Orientation o)
{
    if (o == orientation)
        return;
    prepareGeometryChange();
    orientation = o;
}

void ArcTextItem::setRadius(double r)
{
    if (r < 0)
        r = 0;
    if (r == radius)
        return;
    prepareGeometryChange();
    updateChildrenRadius(radius, r);
    radius = r;
}

double ArcTextItem::getRadiusOffsetFromParent() const
{
    return radius - getRadiusParent();
}

void ArcTextItem::setRadiusOffsetFromParent(double offset)
{
    setRadius(getRadiusParent() + (offset < 0 ? 0.0 : offset));
}

void ArcTextItem::updateRadiusFromParent(double oldRadius, double newRadius)
{
    setRadius(radius - oldRadius + newRadius);
}

QPainterPath ArcTextItem::path() const
{
    QPainterPath p;
    p.addText(0, 0, font, text);
    p.translate(-p.boundingRect().center());
    polarTransform(p, radius, orientation == Orientation::Outside ? -1.0 : 1.0);
    return p;
}

} // namespace graphics
} // namespace nu
