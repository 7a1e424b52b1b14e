#pragma once

#include "nu/graphics/baseitem.h"

#include <QPointF>

namespace nu {
namespace graphics {

class PositionParentItem;

// An item whose position is kept as an offset from the anchor point its parent offers.
class PositionChildItem : public virtual BaseItem
{
public:
    virtual QPointF getPositionOffsetFromParent() const = 0;
    virtual void setPositionOffsetFromParent(const QPointF& offset) = 0;
    virtual void updatePositionFromParent(const QPointF& oldPosition, const QPointF& newPosition) = 0;

    PositionParentItem* getPositionParentItem() const;
    // The parent's anchor point, (0, 0) without a position parent.
    QPointF getPositionParent() const;

    void updatePositionFromParentAddToParent();
    void updatePositionFromParentRemoveFromParent();
};

} // namespace graphics
} // namespace nu
