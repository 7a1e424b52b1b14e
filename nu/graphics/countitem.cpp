#include "nu/graphics/countitem.h"

namespace nu {
namespace graphics {

void CountItem::setCount(int c)
{
    if (c < 0)
        c = 0;
    if (c == count)
        return;
    const int old = count;
    count = c;
    updateCount(old, c);
}

void CountItem::updateCount(qint64 oldCount, qint64 newCount)
{
    // Walks up instead of recursing, so a deep tree costs no stack.
    CountItem* item = this;
    for (;;) {
        item->total += newCount - oldCount;
        CountItem* parent = item->getCountParent();
        if (!parent)
            break;
        item = parent;
    }
    if (!item->layoutDeferred)
        item->updateCountFromParent();
}

void CountItem::updateCountFromParent()
{
    updateCountFromParent(total);
}

CountItem* CountItem::getCountParent() const
{
    return dynamic_cast<CountItem*>(parentItem());
}

void CountItem::updateCountFromParentAddToParent()
{
    if (CountItem* parent = getCountParent())
        parent->updateCount(0, total);
}

void CountItem::updateCountFromParentRemoveFromParent()
{
    CountItem* parent = getCountParent();
    if (!parent)
        return;
    if (!layoutDeferred)
        updateCountFromParent();
    parent->updateCount(total, 0);
}

} // namespace graphics
} // namespace nu
