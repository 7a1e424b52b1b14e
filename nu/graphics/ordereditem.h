#pragma once

#include "nu/graphics/baseitem.h"

namespace nu {
namespace graphics {

class OrderedParentItem;

// An item with a place among its siblings (ascending order: counter-clockwise for slices).
class OrderedItem : public virtual BaseItem
{
public:
    virtual int getOrder() const = 0;
    // Stores the order and keeps the siblings consistent through the parent (a swap).
    virtual void setOrder(int order) = 0;
    // Only stores the order.
    virtual void changeOrder(int order) = 0;

    OrderedParentItem* getOrderedParentItem() const;
    void updateParentOrder(int oldOrder, int newOrder);
    // A newcomer whose order is taken goes after all its siblings.
    void updateOrderFromParentAddToParent();
};

} // namespace graphics
} // namespace nu
