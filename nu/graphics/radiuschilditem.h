#pragma once

#include "nu/graphics/baseitem.h"

namespace nu {
namespace graphics {

class RadiusParentItem;

// An item whose radius is kept as an offset from the radius its parent offers.
class RadiusChildItem : public virtual BaseItem
{
public:
    virtual double getRadiusOffsetFromParent() const = 0;
    virtual void setRadiusOffsetFromParent(double offset) = 0;
    virtual void updateRadiusFromParent(double oldRadius, double newRadius) = 0;

    RadiusParentItem* getRadiusParentItem() const;
    // The parent's offered radius, 0 without a radius parent.
    double getRadiusParent() const;
    // The middle of a ring whose inner edge is the parent's radius and whose width is the offset.
    double getLabelRadius() const;

    void updateRadiusFromParentAddToParent();
    void updateRadiusFromParentRemoveFromParent();
};

} // namespace graphics
} // namespace nu
