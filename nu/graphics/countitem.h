#pragma once

#include "nu/graphics/baseitem.h"

#include <QtGlobal>

namespace nu {
namespace graphics {

// An item that carries a count: its own, and its total (own plus all count descendants). A
// change anywhere moves every ancestor's total by the same difference and the root lays the
// whole tree out again.
//
// The own count is an int (what a user edits); totals are 64-bit, so that no sum of int counts
// can overflow. A caller with larger counts scales them down before handing them over.
class CountItem : public virtual BaseItem
{
public:
    int getCount() const { return count; }
    // Negative counts are stored as 0.
    void setCount(int count);
    qint64 getTotal() const { return total; }

    void updateCount(qint64 oldCount, qint64 newCount);
    // Lays the subtree out against this item's own total.
    void updateCountFromParent();
    virtual void updateCountFromParent(qint64 rootTotal) = 0;

    CountItem* getCountParent() const;
    void updateCountFromParentAddToParent();
    void updateCountFromParentRemoveFromParent();

    // While deferred, a count change that reaches this item as the root only keeps the totals;
    // the owner lays the tree out once when it is complete. Building a large chart piece by piece
    // would otherwise lay it out again on every attachment.
    void setLayoutDeferred(bool deferred) { layoutDeferred = deferred; }
    bool isLayoutDeferred() const { return layoutDeferred; }

private:
    int count = 0;
    qint64 total = 0;
    bool layoutDeferred = false;
};

} // namespace graphics
} // namespace nu
