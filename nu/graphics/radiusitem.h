#pragma once

#include "nu/graphics/baseitem.h"

namespace nu {
namespace graphics {

// An item drawn at a radius about its origin (scene units).
class RadiusItem : public virtual BaseItem
{
public:
    virtual double getRadius() const = 0;
    // The outermost radius the item reaches; the radius itself unless the item has a width.
    virtual double getRadiusFull() const;
    virtual void setRadius(double radius) = 0;
};

} // namespace graphics
} // namespace nu
