#include "nu/edit/handlergeometry.h"

#include <QLineF>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace nu {
namespace edit {
namespace handlergeometry {

QPointF polarPoint(double length, double direction)
{
    QLineF line(QPointF(), QPointF(length, 0));
    line.setAngle(direction);
    return line.p2();
}

double directionOf(const QPointF& p)
{
    return wrapAngle(QLineF(QPointF(), p).angle());
}

double lengthOf(const QPointF& p)
{
    return std::hypot(p.x(), p.y());
}

double wrapAngle(double angle)
{
    if (!std::isfinite(angle))
        return 0;
    double wrapped = std::fmod(angle, 360.0);
    if (wrapped <= -180)
        wrapped += 360;
    else if (wrapped > 180)
        wrapped -= 360;
    return wrapped;
}

QPointF rotated(const QPointF& p, double angle)
{
    // The screen's y axis points down: a counter-clockwise turn is a negative Qt rotation.
    return QTransform().rotate(-angle).map(p);
}

double spanTo(const QPointF& p, double rotation, double currentSpan)
{
    const double direction = wrapAngle(directionOf(p) - rotation);
    double nearest = direction;
    for (double candidate : {direction - 360, direction + 360}) {
        if (std::abs(candidate - currentSpan) < std::abs(nearest - currentSpan))
            nearest = candidate;
    }
    return std::clamp(nearest, -180.0, 180.0);
}

double tipLengthAt(const QPointF& p, double radius)
{
    return std::max(0.0, radius - lengthOf(p));
}

} // namespace handlergeometry
} // namespace edit
} // namespace nu
