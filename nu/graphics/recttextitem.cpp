#include "nu/graphics/recttextitem.h"

namespace nu {
namespace graphics {

RectTextItem::RectTextItem(QGraphicsItem* parent)
    : QGraphicsItem(parent)
{
    setZValue(13000);
    setPen(QPen(Qt::NoPen));
    setBrush(QBrush(Qt::black, Qt::SolidPattern));
}

void RectTextItem::setText(const QString& t)
{
    if (t == text)
        return;
    prepareGeometryChange();
    text = t;
}

void RectTextItem::setFont(const QFont& f)
{
    if (f == font)
        return;
    prepareGeometryChange();
    font = f;
}

QPointF RectTextItem::getPositionOffsetFromParent() const
{
    return pos() - getPositionParent();
}

void RectTextItem::setPositionOffsetFromParent(const QPointF& offset)
{
    setPos(getPositionParent() + offset);
}

void RectTextItem::updatePositionFromParent(const QPointF& oldPosition, const QPointF& newPosition)
{
    setPos(pos() - oldPosition + newPosition);
}

QPainterPath RectTextItem::path() const
{
    return getPlacedText().getPath();
}

PlacedText RectTextItem::getPlacedText() const
{
    // The anchor of the glyphs' box on the origin.
    QPainterPath glyphs;
    glyphs.addText(0, 0, font, text);
    return PlacedText::straight(text, font, QTransform::fromTranslate(-getAnchorPoint(glyphs.boundingRect()).x(),
                                                                      -getAnchorPoint(glyphs.boundingRect()).y()));
}

void RectTextItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget)
{
    if (!PlacedText::isVectorDevice(*painter)) {
        CustomShapeItem::paint(painter, option, widget);
        return;
    }
    getPlacedText().draw(*painter, getPen(), getBrush());
}

} // namespace graphics
} // namespace nu
