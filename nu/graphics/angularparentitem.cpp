#include "nu/graphics/angularparentitem.h"

#include "nu/graphics/angularchilditem.h"

namespace nu {
namespace graphics {

void AngularParentItem::updateChildrenAngle(double oldAngle, double newAngle)
{
    for (QGraphicsItem* child : childItems()) {
        if (auto* c = dynamic_cast<AngularChildItem*>(child))
            c->updateAngleFromParent(oldAngle, newAngle);
    }
}

} // namespace graphics
} // namespace nu
