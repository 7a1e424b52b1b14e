#pragma once

#include "nu/graphics/baseitem.h"

#include <algorithm>
#include <vector>

namespace nu {
namespace graphics {

class OrderedItem;

// An item whose children are placed by their order.
class OrderedParentItem : public virtual BaseItem
{
public:
    // Swaps two orders: the child holding a gets b, otherwise the one holding b gets a.
    virtual void updateChildOrder(int a, int b);

    // The item's own order when no other child holds it, else one more than the largest.
    int getInsertionOrder(const OrderedItem* item) const;

    // The children of type T, ascending by order (ties in no defined order).
    template <typename T>
    std::vector<T*> sortedChildren() const
    {
        std::vector<T*> children;
        for (QGraphicsItem* child : childItems()) {
            if (T* c = dynamic_cast<T*>(child))
                children.push_back(c);
        }
        std::sort(children.begin(), children.end(),
                  [](const T* a, const T* b) { return a->getOrder() < b->getOrder(); });
        return children;
    }
};

} // namespace graphics
} // namespace nu
