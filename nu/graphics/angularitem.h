#pragma once

#include "nu/graphics/baseitem.h"

namespace nu {
namespace graphics {

// An item that spans an angle (degrees, counter-clockwise from its own rotation).
class AngularItem : public virtual BaseItem
{
public:
    virtual double getAngle() const = 0;
    virtual void setAngle(double angle) = 0;

    double getAngleRad() const;
    void setAngleRad(double radians);
    // The angle as a share of the full circle, 0..100.
    double getPercentage() const;
    void setPercentage(double percentage);
    // The direction of the middle of the span.
    double getMiddleRotation() const;
    // Sets the Qt rotation itself (not the negated one) to angle / 2 + m; the asymmetry with
    // getMiddleRotation is long-standing and kept.
    void setMiddleRotation(double m);
};

} // namespace graphics
} // namespace nu
