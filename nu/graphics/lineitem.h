#pragma once

#include "nu/graphics/customtraceitem.h"
#include "nu/graphics/positionchilditem.h"
#include "nu/graphics/positionparentitem.h"
#include "nu/graphics/rotationchilditem.h"

namespace nu {
namespace graphics {

// A straight line from the item's origin to its end point (item coordinates); children hang on
// the end point, so lines chain into a bent line.
class LineItem : public CustomTraceItem, public RotationChildItem, public PositionChildItem, public PositionParentItem
{
public:
    explicit LineItem(QGraphicsItem* parent = nullptr);

    QPointF getEndPoint() const { return endPoint; }
    void setEndPoint(const QPointF& point);

    QPointF getPositionOffsetFromParent() const override;
    void setPositionOffsetFromParent(const QPointF& offset) override;
    void updatePositionFromParent(const QPointF& oldPosition, const QPointF& newPosition) override;
    QPointF getPositionForChild() const override { return endPoint; }

    QPainterPath path() const override;

private:
    QPointF endPoint{20, 20};
};

} // namespace graphics
} // namespace nu
