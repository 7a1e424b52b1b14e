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
    QPainterPath p;
    p.addText(0, 0, font, text);
    p.translate(-getAnchorPoint(p.boundingRect()));
    return p;
}

} // namespace graphics
} // namespace nu
