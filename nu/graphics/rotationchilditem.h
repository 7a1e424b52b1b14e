#pragma once

#include "nu/graphics/baseitem.h"

namespace nu {
namespace graphics {

class RotationParentItem;

// An item whose rotation is kept as an offset from the direction its parent offers. An item that
// ignores transformations (stays upright and unscaled on screen) takes no direction from its
// parent: its rotation is its offset.
class RotationChildItem : public virtual BaseItem
{
public:
    virtual double getRotationOffsetFromParent() const;
    virtual void setRotationOffsetFromParent(double offset);
    virtual void updateRotationFromParent(double oldRotation, double newRotation);

    RotationParentItem* getRotationParentItem() const;
    // The parent's offered direction; 0 without a rotation parent or while ignoring
    // transformations.
    double getRotationParent() const;

    void setIgnoreTransformations(bool on);

    void updateRotationFromParentAddToParent();
    void updateRotationFromParentRemoveFromParent();

private:
    double getRotationParentAlways() const;
};

} // namespace graphics
} // namespace nu
