#include "nu/graphics/positionchilditem.h"

#include "nu/graphics/positionparentitem.h"

namespace nu {
namespace graphics {

PositionParentItem* PositionChildItem::getPositionParentItem() const
{
    return dynamic_cast<PositionParentItem*>(parentItem());
}

QPointF PositionChildItem::getPositionParent() const
{
    const PositionParentItem* parent = getPositionParentItem();
    return parent ? parent->getPositionForChild() : QPointF();
}

void PositionChildItem::updatePositionFromParentAddToParent()
{
    updatePositionFromParent(QPointF(), getPositionParent());
}

void PositionChildItem::updatePositionFromParentRemoveFromParent()
{
    updatePositionFromParent(getPositionParent(), QPointF());
}

} // namespace graphics
} // namespace nu
