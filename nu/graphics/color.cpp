#include "nu/graphics/color.h"

#include <algorithm>
#include <cmath>

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

namespace {

double linear(double channel)
{
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& c)
{
    return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
}

} // namespace

double Color::contrast(const QColor& a, const QColor& b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

QColor Color::readableOn(const QColor& fill)
{
    return contrast(fill, Qt::black) >= contrast(fill, Qt::white) ? QColor(Qt::black) : QColor(Qt::white);
}

QColor Color::shadeOutward(const QColor& base, int depth, double palest, double desaturation)
{
    if (depth <= 0)
        return base;
    const double towards = 1.0 - std::pow(0.72, depth);
    const double lightness = base.lightnessF();
    const double saturation = std::clamp(base.hslSaturationF() * (1.0 - desaturation * towards), 0.0, 1.0);
    const double light = std::clamp(lightness + (palest - lightness) * towards, 0.0, 1.0);
    QColor shade;
    shade.setHslF(std::max(0.0, base.hslHueF()), saturation, light, base.alphaF());
    return shade;
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
