#include "nu/graphics/radiuschilditem.h"

#include "nu/graphics/radiusparentitem.h"

namespace nu {
namespace graphics {

RadiusParentItem* RadiusChildItem::getRadiusParentItem() const
{
    return dynamic_cast<RadiusParentItem*>(parentItem());
}

double RadiusChildItem::getRadiusParent() const
{
    const RadiusParentItem* parent = getRadiusParentItem();
    return parent ? parent->getRadiusForChild() : 0.0;
}

double RadiusChildItem::getLabelRadius() const
{
    return getRadiusParent() + getRadiusOffsetFromParent() / 2;
}

void RadiusChildItem::updateRadiusFromParentAddToParent()
{
    updateRadiusFromParent(0.0, getRadiusParent());
}

void RadiusChildItem::updateRadiusFromParentRemoveFromParent()
{
    updateRadiusFromParent(getRadiusParent(), 0.0);
}

} // namespace graphics
} // namespace nu
