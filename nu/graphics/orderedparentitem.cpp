#include "nu/graphics/orderedparentitem.h"

#include "nu/graphics/ordereditem.h"

#include <algorithm>

namespace nu {
namespace graphics {

void OrderedParentItem::updateChildOrder(int a, int b)
{
    for (QGraphicsItem* child : childItems()) {
        auto* c = dynamic_cast<OrderedItem*>(child);
        if (!c)
            continue;
        if (c->getOrder() == a)
            c->changeOrder(b);
        else if (c->getOrder() == b)
            c->changeOrder(a);
    }
}

int OrderedParentItem::getInsertionOrder(const OrderedItem* item) const
{
    const int order = item->getOrder();
    int largest = 0;
    bool taken = false;
    for (QGraphicsItem* child : childItems()) {
        const auto* c = dynamic_cast<const OrderedItem*>(child);
        if (!c || c == item)
            continue;
        largest = std::max(largest, c->getOrder());
        taken = taken || c->getOrder() == order;
    }
    return taken ? largest + 1 : order;
}

} // namespace graphics
} // namespace nu
