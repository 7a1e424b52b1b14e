#pragma once

#include "nu/graphics/baseitem.h"

#include <QPointF>
#include <QRectF>

namespace nu {
namespace graphics {

// The point of a text's box that lies on the item's origin.
class AnchorItem : public virtual BaseItem
{
public:
    enum class HorizontalAnchor { Left = 0, Center = 1, Right = 2 };
    enum class VerticalAnchor { Top = 0, Center = 1, Bottom = 2 };

    HorizontalAnchor getHorizontalAnchor() const { return horizontalAnchor; }
    void setHorizontalAnchor(HorizontalAnchor anchor);
    VerticalAnchor getVerticalAnchor() const { return verticalAnchor; }
    void setVerticalAnchor(VerticalAnchor anchor);

    QPointF getAnchorPoint(const QRectF& rect) const;
    // A value outside the enumerations leaves that coordinate at 0.
    static QPointF getAnchorPoint(const QRectF& rect, HorizontalAnchor h, VerticalAnchor v);

private:
    HorizontalAnchor horizontalAnchor = HorizontalAnchor::Left;
    VerticalAnchor verticalAnchor = VerticalAnchor::Center;
};

} // namespace graphics
} // namespace nu
