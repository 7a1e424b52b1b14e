#include "nu/graphics/radiusparentitem.h"

#include "nu/graphics/radiuschilditem.h"

namespace nu {
namespace graphics {

void RadiusParentItem::updateChildrenRadius(double oldRadius, double newRadius)
{
    for (QGraphicsItem* child : childItems()) {
        if (auto* c = dynamic_cast<RadiusChildItem*>(child))
            c->updateRadiusFromParent(oldRadius, newRadius);
    }
}

} // namespace graphics
} // namespace nu
