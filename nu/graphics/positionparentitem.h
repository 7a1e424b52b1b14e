#pragma once

#include "nu/graphics/baseitem.h"

#include <QPointF>

namespace nu {
namespace graphics {

// An item that offers its position children an anchor point (its own coordinates).
class PositionParentItem : public virtual BaseItem
{
public:
    virtual QPointF getPositionForChild() const = 0;

    void updateChildrenPosition(const QPointF& oldPosition, const QPointF& newPosition);
};

} // namespace graphics
} // namespace nu
