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
    return getPlacedText().getPath();
}

PlacedText ArcTextItem::getPlacedText() const
{
    // Centred on the +x axis by the glyphs' box.
    QPainterPath glyphs;
    glyphs.addText(0, 0, font, text);
    return PlacedText::bent(text, font, 1.0, -glyphs.boundingRect().center(), radius,
                            orientation == Orientation::Outside ? -1.0 : 1.0);
}

void ArcTextItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget)
{
    if (!PlacedText::isVectorDevice(*painter)) {
        CustomShapeItem::paint(painter, option, widget);
        return;
    }
    getPlacedText().draw(*painter, getPen(), getBrush());
}

} // namespace graphics
} // namespace nu
