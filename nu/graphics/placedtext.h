#pragma once

#include <QBrush>
#include <QFont>
#include <QPainterPath>
#include <QPen>
#include <QPointF>
#include <QString>
#include <QTransform>

#include <memory>

class QPainter;
class QPaintDevice;

namespace nu {
namespace graphics {

// One line of text placed in an item's coordinates (scene units): either straight, its baseline
// starting at the origin of a transform, or bent onto a circle about the origin as
// polarTransform bends it. On screens and raster images it is drawn as its glyph outlines; on
// vector devices (PDF, SVG) as text, so that it can be selected, searched and edited there: an
// SVG written by SvgWriter gets <text>, with <textPath> for bent text.
class PlacedText
{
public:
    enum class Kind { None, Straight, Bent };

    PlacedText() = default;
    // The baseline runs from (0, 0) along +x, then the transform places it.
    static PlacedText straight(const QString& text, const QFont& font, const QTransform& transform);
    // The text is laid out straight at scale times the font's size with its baseline starting at
    // start (x along the arc, y inwards, in the straight frame), then bent onto the circle of the
    // radius: direction +1 runs clockwise on screen with the glyphs' tops outwards, -1
    // counter-clockwise with the tops inwards.
    static PlacedText bent(const QString& text, const QFont& font, double scale, const QPointF& start, double radius,
                           double direction);

    Kind getKind() const { return kind; }
    bool isEmpty() const { return kind == Kind::None || text.isEmpty(); }
    const QString& getText() const { return text; }
    const QFont& getFont() const { return font; }
    const QTransform& getTransform() const { return transform; }
    double getScale() const { return scale; }
    QPointF getStart() const { return start; }
    double getRadius() const { return radius; }
    double getDirection() const { return direction; }
    // The width of the straight text at its scale, in scene units.
    double getWidth() const;

    // The glyph outlines, in the item's coordinates; laid out once, shared by copies.
    QPainterPath getPath() const;
    // The font at its scale, for a device of this many dots per inch: the size the outlines have.
    QFont getDeviceFont(double dotsPerInch) const;
    // The dots per inch at which a font's outlines are laid out (what the screen says).
    static double layoutDotsPerInch();

    // Outlines on raster devices; text on vector ones, in the brush's colour (the pen outlines
    // glyphs only where they are drawn as outlines).
    void draw(QPainter& painter, const QPen& pen, const QBrush& brush) const;
    // Whether the device keeps text as text.
    static bool isVectorDevice(const QPainter& painter);

private:
    void drawAsText(QPainter& painter, const QBrush& brush) const;

    Kind kind = Kind::None;
    QString text;
    QFont font;
    QTransform transform;
    double scale = 1.0;
    QPointF start;
    double radius = 0;
    double direction = 1;
    mutable std::shared_ptr<const QPainterPath> outlines;
};

} // namespace graphics
} // namespace nu
