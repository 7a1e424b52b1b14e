#pragma once

#include "nu/graphics/baseitem.h"

namespace nu {
namespace graphics {

class AngularParentItem;

// An item that keeps its angle as an offset from its parent's span.
class AngularChildItem : public virtual BaseItem
{
public:
    virtual void updateAngleFromParent(double oldAngle, double newAngle) = 0;

    AngularParentItem* getAngularParentItem() const;
    // The parent's offered angle, 0 without an angular parent.
    double getAngleParent() const;

    void updateAngleFromParentAddToParent();
    void updateAngleFromParentRemoveFromParent();
};

} // namespace graphics
} // namespace nu
