#pragma once

#include "nu/graphics/baseitem.h"

namespace nu {
namespace graphics {

// An item whose span its angular children follow.
class AngularParentItem : public virtual BaseItem
{
public:
    virtual double getAngleForChild() const = 0;

    // Tells every angular child that the offered angle went from oldAngle to newAngle.
    void updateChildrenAngle(double oldAngle, double newAngle);
};

} // namespace graphics
} // namespace nu
