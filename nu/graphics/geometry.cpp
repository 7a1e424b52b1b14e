#include "nu/graphics/geometry.h"

#include <QFont>
#include <QPainterPathStroker>
#include <QPen>
#include <QString>

#include <cmath>

namespace nu {
namespace graphics {

QRectF centeredRect(const QPointF& c, double r)
{
    return QRectF(c.x() - r, c.y() - r, 2 * r, 2 * r);
}

QRectF expanded(const QRectF& rect, int penWidth)
{
    const double m = penWidth / 2.0 + 1;
    return rect.adjusted(-m, -m, m, m);
}

QRectF textRect(const QString& text, const QFont& font, const QPen& pen)
{
    QPainterPath path;
    path.addText(0, 0, font, text);
    QRectF rect = expanded(path.boundingRect(), pen.width());
    rect.moveTopLeft(QPointF(0, 0));
    return rect;
}

QPainterPath pathToShape(const QPainterPath& path, const QPen& pen)
{
    if (path.isEmpty())
        return path;
    QPainterPathStroker stroker;
    stroker.setCapStyle(pen.capStyle());
    stroker.setJoinStyle(pen.joinStyle());
    stroker.setMiterLimit(pen.miterLimit());
    stroker.setWidth(pen.widthF() > 0 ? pen.widthF() : 1e-8);
    QPainterPath shape = stroker.createStroke(path);
    shape.addPath(path);
    return shape;
}

namespace {

QPointF bent(double x, double y, double radius, double scale)
{
    const double a = x * scale / radius;
    const double r = radius - y * scale;
    return QPointF(r * std::cos(a), r * std::sin(a));
}

} // namespace

void polarTransform(QPainterPath& path, double radius, double scale)
{
    if (radius == 0.0)
        return;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        const QPointF p = bent(e.x, e.y, radius, scale);
        path.setElementPositionAt(i, p.x(), p.y());
    }
}

void polarTransform(QPointF& point, double radius, double scale)
{
    if (radius == 0.0)
        return;
    point = bent(point.x(), point.y(), radius, scale);
}

} // namespace graphics
} // namespace nu
