#include "nu/graphics/pieitem.h"

namespace nu {
namespace graphics {

PieItem::PieItem(QGraphicsItem* parent)
    : QGraphicsItem(parent)
    , RingItem(parent)
{
}

} // namespace graphics
} // namespace nu
