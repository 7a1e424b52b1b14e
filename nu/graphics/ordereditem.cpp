#include "nu/graphics/ordereditem.h"

#include "nu/graphics/orderedparentitem.h"

namespace nu {
namespace graphics {

OrderedParentItem* OrderedItem::getOrderedParentItem() const
{
    return dynamic_cast<OrderedParentItem*>(parentItem());
}

void OrderedItem::updateParentOrder(int oldOrder, int newOrder)
{
    if (OrderedParentItem* parent = getOrderedParentItem())
        parent->updateChildOrder(oldOrder, newOrder);
}

void OrderedItem::updateOrderFromParentAddToParent()
{
    if (OrderedParentItem* parent = getOrderedParentItem())
        changeOrder(parent->getInsertionOrder(this));
}

} // namespace graphics
} // namespace nu
