#include "nu/graphics/subspaceitem.h"

#include "nu/graphics/geometry.h"

#include <QPainter>
#include <QPolygonF>
#include <QStyleOptionGraphicsItem>

namespace nu {
namespace graphics {

SubSpaceItem::SubSpaceItem(QGraphicsItem* parent)
    : QGraphicsItem(parent)
{
    setZValue(-8000);
}

void SubSpaceItem::setSubSpaceVisible(bool visible)
{
    prepareGeometryChange();
    subSpaceVisible = visible;
}

QPointF SubSpaceItem::getPositionOffsetFromParent() const
{
    return pos() - getPositionParent();
}

void SubSpaceItem::setPositionOffsetFromParent(const QPointF& offset)
{
    setPos(getPositionParent() + offset);
}

void SubSpaceItem::updatePositionFromParent(const QPointF& oldPosition, const QPointF& newPosition)
{
    setPos(pos() - oldPosition + newPosition);
}

QRectF SubSpaceItem::boundingRect() const
{
    return path().boundingRect().adjusted(-1, -1, 1, 1);
}

QPainterPath SubSpaceItem::shape() const
{
    return pathToShape(path(), QPen(Qt::black));
}

void SubSpaceItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    if (option)
        painter->setClipRect(option->exposedRect, Qt::IntersectClip);
    painter->setPen(QPen(Qt::black));
    painter->setBrush(QBrush(Qt::green, Qt::SolidPattern));
    painter->drawPath(path());
}

QPainterPath SubSpaceItem::path() const
{
    QPainterPath p;
    if (!subSpaceVisible)
        return p;
    QPolygonF axes;
    axes << QPointF(0, 0) << QPointF(30, 0) << QPointF(30, 2.5) << QPointF(32.5, 0) << QPointF(30, -2.5)
         << QPointF(30, 0) << QPointF(15, 0) << QPointF(15, -15) << QPointF(0, -15) << QPointF(0, -30)
         << QPointF(2.5, -30) << QPointF(0, -32.5) << QPointF(-2.5, -30) << QPointF(0, -30);
    p.addPolygon(axes);
    p.closeSubpath();
    return p;
}

} // namespace graphics
} // namespace nu
