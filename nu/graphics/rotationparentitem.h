#pragma once

#include "nu/graphics/baseitem.h"

namespace nu {
namespace graphics {

// An item that offers its rotation children a direction (degrees) to keep their offset from.
class RotationParentItem : public virtual BaseItem
{
public:
    virtual double getRotationForChild() const = 0;

    void updateChildrenRotation(double oldRotation, double newRotation);
};

} // namespace graphics
} // namespace nu
