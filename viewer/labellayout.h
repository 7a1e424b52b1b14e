#pragma once

#include "nu/graphics/placedtext.h"

#include <QFont>
#include <QPainterPath>
#include <QRectF>
#include <QString>

namespace Sorvik {
namespace Viewer {

// Where a slice's label goes. Every label stays inside the room its own slice owns (its ring
// sector, or for a slice with nothing drawn outside it the whole wedge out to the reach), so
// labels of different slices never overlap. In that room the label is tried along the arc, then
// radially (in the ring, or wholly beyond it where the wedge is free), shrunk down to a smallest
// readable size, then elided with "…"; a slice too small for that gets none. Text on the lower
// half runs so that it is never upside down.
//
// Geometry is in the slice's own coordinates (scene units): the slice starts on the +x axis and
// spans counter-clockwise on screen (y down), between its inner radius and the inner radius
// plus its width.
class LabelLayout
{
public:
    struct Slice
    {
        double innerRadius = 0;
        double width = 0;
        // Degrees, counter-clockwise.
        double span = 0;
        // How far out the label may reach; at least the outer radius.
        double reach = 0;
        // Where the middle of the slice points on screen: the upper half takes arc text clockwise,
        // the right half radial text outward.
        bool upper = true;
        bool right = true;
    };

    enum class Kind { None, Arc, Radial, Straight };

    struct Label
    {
        Kind kind = Kind::None;
        // The text drawn, elided when it had to be.
        QString text;
        // The size drawn, relative to the font's.
        double scale = 1.0;
        // The text as placed, and its glyphs, in the slice's coordinates.
        nu::graphics::PlacedText placed;
        QPainterPath path;
        // Drawn beyond the slice's ring, on the background rather than on the slice.
        bool outside = false;
    };

    // Room kept free between a label and its slice's edges, in scene units.
    static constexpr double padding = 1.5;

    // minimumScale: the smallest size a label may be shrunk to, relative to the font's.
    LabelLayout(const QFont& font, double minimumScale);

    Label place(const Slice& slice, const QString& text) const;
    // The label of the chart's centre disc: straight across it.
    Label placeCentre(double radius, const QString& text) const;

    // The bounds of an annular sector about the origin from startAngle over span (degrees,
    // counter-clockwise on screen), between the radii.
    static QRectF sectorBounds(double innerRadius, double outerRadius, double startAngle, double span);

private:
    struct Fit
    {
        Kind kind = Kind::None;
        double scale = 0;
        double length = 0;
        double height = 0;
        // For radial text: where it starts, and whether that is beyond the ring.
        double start = 0;
        bool outside = false;
    };

    // The largest scale (up to 1) at which the text fits a box of the given length and height.
    double fitScale(double textWidth, double length, double height) const;
    Label finish(const Fit& fit, const Slice& slice, const QString& text) const;
    // Places the text's baseline so that the text at scale is centred on the origin.
    QTransform centred(const QString& text, double scale) const;

    QFont font;
    double minimumScale;
    double textHeight;
};

} // namespace Viewer
} // namespace Sorvik
