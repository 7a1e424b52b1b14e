#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QRectF>

class QFont;
class QPen;
class QString;

namespace nu {
namespace graphics {

// The square of side 2r centred on c.
QRectF centeredRect(const QPointF& c, double r);

// The rectangle grown by penWidth / 2 + 1 on every side: room for a pen drawn on its outline.
QRectF expanded(const QRectF& rect, int penWidth);

// How much room a text needs when drawn as a path with the pen: its size, at (0, 0).
QRectF textRect(const QString& text, const QFont& font, const QPen& pen);

// The hit shape of a path drawn with a pen: the stroke plus the area it encloses.
QPainterPath pathToShape(const QPainterPath& path, const QPen& pen);

// Bends straight geometry onto the circle of the given radius about the origin: x runs along the
// arc from the +x axis, y points inwards; scale +1 runs clockwise on screen, -1 counter-clockwise.
// A radius of 0 has no circle to bend onto and leaves the geometry as it is.
void polarTransform(QPainterPath& path, double radius, double scale);
void polarTransform(QPointF& point, double radius, double scale);

} // namespace graphics
} // namespace nu
