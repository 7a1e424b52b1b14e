#pragma once

#include <QColor>

namespace nu {
namespace graphics {

// A colour as three components in 0..1 (as QColor::setRgbF takes them) that can be added,
// subtracted and divided: the arithmetic of stepping from one colour towards another.
class Color
{
public:
    Color(double r, double g, double b);
    Color(const QColor& color);

    // Components outside 0..1 (the result of rounding in a long interpolation) are clamped.
    QColor toQColor() const;

    Color operator+(const Color& other) const;
    Color operator-(const Color& other) const;
    // Each component divided by n; n = 0 leaves the colour as it is.
    Color operator/(int n) const;

    // The contrast ratio of two colours, 1 to 21, from their relative luminance.
    static double contrast(const QColor& a, const QColor& b);
    // Black or white, whichever reads better on the fill.
    static QColor readableOn(const QColor& fill);
    // The shade of a colour for a ring depth rings further out: each ring takes a share of the
    // way left towards a pale tint (lightness palest) and loses up to desaturation of its
    // saturation, so that deep charts never run out of steps. Depth 0 is the colour itself.
    static QColor shadeOutward(const QColor& base, int depth, double palest = 0.88, double desaturation = 0.25);

    double r;
    double g;
    double b;
};

} // namespace graphics
} // namespace nu
