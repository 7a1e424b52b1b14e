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

    double r;
    double g;
    double b;
};

} // namespace graphics
} // namespace nu
