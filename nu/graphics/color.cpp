#include "nu/graphics/color.h"

#include <algorithm>

namespace nu {
namespace graphics {

Color::Color(double red, double green, double blue)
    : r(red)
    , g(green)
    , b(blue)
{
}

Color::Color(const QColor& color)
    : r(color.redF())
    , g(color.greenF())
    , b(color.blueF())
{
}

QColor Color::toQColor() const
{
    auto unit = [](double x) { return x > 0.0 ? std::min(x, 1.0) : 0.0; };
    QColor color;
    color.setRgbF(unit(r), unit(g), unit(b), 1.0);
    return color;
}

Color Color::operator+(const Color& other) const
{
    return Color(r + other.r, g + other.g, b + other.b);
}

Color Color::operator-(const Color& other) const
{
    return Color(r - other.r, g - other.g, b - other.b);
}

Color Color::operator/(int n) const
{
    if (n == 0)
        return *this;
    return Color(r / n, g / n, b / n);
}

} // namespace graphics
} // namespace nu
