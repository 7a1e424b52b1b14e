#pragma once

#include <QPointF>

namespace nu {
namespace edit {

// Where drag handles sit and what a drag to a point means, as plain functions of the item's
// values. Points are in the frame of an item's position handle: the item's origin, turned as the
// item's parent is. Angles are degrees, counter-clockwise on screen.
namespace handlergeometry {

// The end of a line from the origin with the given length and direction.
QPointF polarPoint(double length, double direction);
// The direction of p from the origin, in (-180, 180]; 0 for the origin itself.
double directionOf(const QPointF& p);
double lengthOf(const QPointF& p);
// The same direction, in (-180, 180].
double wrapAngle(double angle);
// p turned about the origin.
QPointF rotated(const QPointF& p, double angle);

// The span a knob at the end of an arc starting at rotation gives when dragged to p: the turn
// nearest to the current span, so that a drag runs on smoothly instead of jumping by a full turn,
// and held within [-180, 180], the range the property sheet shows.
double spanTo(const QPointF& p, double rotation, double currentSpan);
// The tip length a tip knob dragged to p gives a bracket of the given radius: how far p lies
// inside the arc, not below 0 (outward tips are not offered by the editor).
double tipLengthAt(const QPointF& p, double radius);

} // namespace handlergeometry
} // namespace edit
} // namespace nu
