#include "nu/graphics/angularitem.h"

#include <QtMath>

namespace nu {
namespace graphics {

double AngularItem::getAngleRad() const
{
    return M_PI * getAngle() / 180.0;
}

void AngularItem::setAngleRad(double radians)
{
    setAngle(radians * 180.0 / M_PI);
}

double AngularItem::getPercentage() const
{
    return 100.0 * getAngle() / 360.0;
}

void AngularItem::setPercentage(double percentage)
{
    setAngle(percentage / 100.0 * 360.0);
}

double AngularItem::getMiddleRotation() const
{
    return getRot() + getAngle() / 2;
}

void AngularItem::setMiddleRotation(double m)
{
    setRotation(getAngle() / 2 + m);
}

} // namespace graphics
} // namespace nu
