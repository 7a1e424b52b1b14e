#include "nu/graphics/rotationchilditem.h"

#include "nu/graphics/rotationparentitem.h"

namespace nu {
namespace graphics {

double RotationChildItem::getRotationOffsetFromParent() const
{
    if (getIgnoreTransformations())
        return getRot();
    return getRot() - getRotationParent();
}

void RotationChildItem::setRotationOffsetFromParent(double offset)
{
    if (getIgnoreTransformations())
        setRot(offset);
    else
        setRot(getRotationParent() + offset);
}

void RotationChildItem::updateRotationFromParent(double oldRotation, double newRotation)
{
    if (getIgnoreTransformations())
        return;
    setRot(getRot() - oldRotation + newRotation);
}

RotationParentItem* RotationChildItem::getRotationParentItem() const
{
    return dynamic_cast<RotationParentItem*>(parentItem());
}

double RotationChildItem::getRotationParentAlways() const
{
    const RotationParentItem* parent = getRotationParentItem();
    return parent ? parent->getRotationForChild() : 0.0;
}

double RotationChildItem::getRotationParent() const
{
    return getIgnoreTransformations() ? 0.0 : getRotationParentAlways();
}

void RotationChildItem::setIgnoreTransformations(bool on)
{
    if (on == getIgnoreTransformations())
        return;
    const double parentRotation = getRotationParentAlways();
    if (on) {
        // The absolute rotation becomes the offset: the item looks the same on screen.
        updateRotationFromParent(parentRotation, 0.0);
        setFlag(QGraphicsItem::ItemIgnoresTransformations, true);
    } else {
        setFlag(QGraphicsItem::ItemIgnoresTransformations, false);
        updateRotationFromParent(0.0, parentRotation);
    }
}

void RotationChildItem::updateRotationFromParentAddToParent()
{
    updateRotationFromParent(0.0, getRotationParent());
}

void RotationChildItem::updateRotationFromParentRemoveFromParent()
{
    updateRotationFromParent(getRotationParent(), 0.0);
}

} // namespace graphics
} // namespace nu
