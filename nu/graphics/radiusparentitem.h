#pragma once

#include "nu/graphics/baseitem.h"

namespace nu {
namespace graphics {

// An item that offers its radius children a radius to keep their offset from.
class RadiusParentItem : public virtual BaseItem
{
public:
    virtual double getRadiusForChild() const = 0;

    void updateChildrenRadius(double oldRadius, double newRadius);
};

} // namespace graphics
} // namespace nu
