#include "nu/graphics/customtraceitem.h"

#include "nu/graphics/geometry.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>

namespace nu {
namespace graphics {

QRectF CustomTraceItem::boundingRect() const
{
    return expanded(path().boundingRect(), pen.width());
}

QPainterPath CustomTraceItem::shape() const
{
    return pathToShape(path(), pen);
}

void CustomTraceItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    paintPath(painter, option, pen, QBrush());
}

void CustomTraceItem::setPen(const QPen& p)
{
    if (p == pen)
        return;
    prepareGeometryChange();
    pen = p;
}

void CustomTraceItem::paintPath(QPainter* painter, const QStyleOptionGraphicsItem* option,
                                const QPen& p, const QBrush& brush)
{
    const QPainterPath outline = path();
    // A clip that holds the whole item changes nothing and costs a lot on rotated items.
    if (option && !option->exposedRect.contains(expanded(outline.boundingRect(), p.width())))
        painter->setClipRect(option->exposedRect, Qt::IntersectClip);
    painter->setPen(p);
    painter->setBrush(brush);
    painter->drawPath(outline);
}

} // namespace graphics
} // namespace nu
