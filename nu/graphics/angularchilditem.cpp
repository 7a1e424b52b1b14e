#include "nu/graphics/angularchilditem.h"

#include "nu/graphics/angularparentitem.h"

namespace nu {
namespace graphics {

AngularParentItem* AngularChildItem::getAngularParentItem() const
{
    return dynamic_cast<AngularParentItem*>(parentItem());
}

double AngularChildItem::getAngleParent() const
{
    const AngularParentItem* parent = getAngularParentItem();
    return parent ? parent->getAngleForChild() : 0.0;
}

void AngularChildItem::updateAngleFromParentAddToParent()
{
    updateAngleFromParent(0.0, getAngleParent());
}

void AngularChildItem::updateAngleFromParentRemoveFromParent()
{
    updateAngleFromParent(getAngleParent(), 0.0);
}

} // namespace graphics
} // namespace nu
