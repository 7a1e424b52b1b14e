#include "nu/graphics/anchoritem.h"

namespace nu {
namespace graphics {

void AnchorItem::setHorizontalAnchor(HorizontalAnchor anchor)
{
    if (anchor == horizontalAnchor)
        return;
    prepareGeometryChange();
    horizontalAnchor = anchor;
}

void AnchorItem::setVerticalAnchor(VerticalAnchor anchor)
{
    if (anchor == verticalAnchor)
        return;
    prepareGeometryChange();
    verticalAnchor = anchor;
}

QPointF AnchorItem::getAnchorPoint(const QRectF& rect) const
{
    return getAnchorPoint(rect, horizontalAnchor, verticalAnchor);
}

QPointF AnchorItem::getAnchorPoint(const QRectF& rect, HorizontalAnchor h, VerticalAnchor v)
{
    QPointF p;
    switch (h) {
    case HorizontalAnchor::Left:
        p.setX(rect.left());
        break;
    case HorizontalAnchor::Center:
        p.setX(rect.center().x());
        break;
    case HorizontalAnchor::Right:
        p.setX(rect.right());
        break;
    }
    switch (v) {
    case VerticalAnchor::Top:
        p.setY(rect.top());
        break;
    case VerticalAnchor::Center:
        p.setY(rect.center().y());
        break;
    case VerticalAnchor::Bottom:
        p.setY(rect.bottom());
        break;
    }
    return p;
}

} // namespace graphics
} // namespace nu
