#include "nu/graphics/rotationparentitem.h"

#include "nu/graphics/rotationchilditem.h"

namespace nu {
namespace graphics {

void RotationParentItem::updateChildrenRotation(double oldRotation, double newRotation)
{
    for (QGraphicsItem* child : childItems()) {
        if (auto* c = dynamic_cast<RotationChildItem*>(child))
            c->updateRotationFromParent(oldRotation, newRotation);
    }
}

} // namespace graphics
} // namespace nu
