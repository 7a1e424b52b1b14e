#include "nu/graphics/radiusitem.h"

namespace nu {
namespace graphics {

double RadiusItem::getRadiusFull() const
{
    return getRadius();
}

} // namespace graphics
} // namespace nu
