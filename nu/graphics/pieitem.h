#pragma once

#include "nu/graphics/ringitem.h"

namespace nu {
namespace graphics {

// A free-standing ring slice of a given share, for the editor: a RingItem whose angle is set
// directly (setAngle, setPercentage) rather than derived from counts.
class PieItem : public RingItem
{
public:
    explicit PieItem(QGraphicsItem* parent = nullptr);
};

} // namespace graphics
} // namespace nu
