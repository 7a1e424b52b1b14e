#include "nu/graphics/positionparentitem.h"

#include "nu/graphics/positionchilditem.h"

namespace nu {
namespace graphics {

void PositionParentItem::updateChildrenPosition(const QPointF& oldPosition, const QPointF& newPosition)
{
    for (QGraphicsItem* child : childItems()) {
        if (auto* c = dynamic_cast<PositionChildItem*>(child))
            c->updatePositionFromParent(oldPosition, newPosition);
    }
}

} // namespace graphics
} // namespace nu
