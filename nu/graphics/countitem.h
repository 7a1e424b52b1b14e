#pragma once

#include "nu/graphics/baseitem.h"

#include <QtGlobal>

namespace nu {
namespace graphics {

// An item that carries a count: its own, and its total (own plus all count descendants). A
// change anywhere moves every ancestor's total by the same difference and the root lays the
// whole tree out again.
//
// A child that leaves keeps its total in its former parent: the parent keeps its span and the
// child leaves a gap. The parent remembers the size of that gap, and a subtree attached to it
// later fills the gap before any total above grows, so that putting a removed child back (undo)
// restores the totals exactly instead of counting the child twice.
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

    // Totals of children that left this item and are still part of its total.

    // The own count changed from oldCount to newCount: every total up to the root follows.
    void updateCount(qint64 oldCount, qint64 newCount);
    // Lays the subtree out against this item's own total.
    void updateCountFromParent();
    virtual void updateCountFromParent(qint64 rootTotal) = 0;

    CountItem* getCountParent() const;
    void updateCountFromParentAddToParent();
    // Called while the parent is still set, just before the item leaves it: the parent keeps
    // this subtree's total as a gap.
    void updateCountFromParentDetach();
    void updateCountFromParentRemoveFromParent();

    // While deferred, a count change that reaches this item as the root only keeps the totals;
    // the owner lays the tree out once when it is complete. Building a large chart piece by piece
    // would otherwise lay it out again on every attachment.
    // Deferring anew forgets a layout asked for earlier.
    void setLayoutDeferred(bool deferred);
    // Whether a count change reached this item as the root while its layout was deferred.
    bool isLayoutPending() const { return layoutPending; }

private:
    // Adds difference to the totals from this item up to the root; an attached subtree's
    // increase first fills the gaps of detached children it passes.
    void addToTotals(qint64 difference, bool attaching);

    int count = 0;
    qint64 total = 0;
    qint64 detachedTotal = 0;
    bool layoutDeferred = false;
    bool layoutPending = false;
};

} // namespace graphics
} // namespace nu
