#include "nu/graphics/countitem.h"

#include <algorithm>

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
    addToTotals(newCount - oldCount, false);
}

void CountItem::addToTotals(qint64 difference, bool attaching)
{
    // Walks up instead of recursing, so a deep tree costs no stack.
    CountItem* item = this;
    for (;;) {
        if (attaching && difference > 0 && item->detachedTotal > 0) {
            const qint64 filled = std::min(difference, item->detachedTotal);
            item->detachedTotal -= filled;
            difference -= filled;
        }
        item->total += difference;
        CountItem* parent = item->getCountParent();
        if (!parent)
            break;
        item = parent;
    }
    // Laid out even when the totals did not move: an attached subtree needs its place.
    if (item->layoutDeferred)
        item->layoutPending = true;
    else
        item->updateCountFromParent();
}

void CountItem::setLayoutDeferred(bool deferred)
{
    if (deferred && !layoutDeferred)
        layoutPending = false;
    layoutDeferred = deferred;
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
        parent->addToTotals(total, true);
}

void CountItem::updateCountFromParentDetach()
{
    if (CountItem* parent = getCountParent())
        parent->detachedTotal += total;
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
