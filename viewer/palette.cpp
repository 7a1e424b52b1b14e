#include "viewer/palette.h"

#include "nu/graphics/color.h"

#include <algorithm>
#include <cmath>

namespace Sorvik {
namespace Viewer {

namespace {

struct Named
{
    const char* name;
    const char* title;
    Palette::Kind kind;
};

const Named palettes[] = {
    {"soft", "Soft (default)", Palette::Kind::Soft},
    {"okabe-ito", "Okabe-Ito (colour-blind safe)", Palette::Kind::OkabeIto},
    {"tol-bright", "Paul Tol bright (colour-blind safe)", Palette::Kind::TolBright},
    {"tol-muted", "Paul Tol muted (colour-blind safe)", Palette::Kind::TolMuted},
    {"classic", "Classic hue wheel", Palette::Kind::Classic},
};

// Soft, clearly distinct colours in an order that keeps neighbours apart.
const char* const soft[] = {"#6b9bd1", "#e8a15c", "#7dbf7a", "#d9737a", "#a58cc9", "#c7a77a",
                            "#e49ac4", "#8fc4c4", "#b8b85e", "#9aa8d9", "#d98f6b", "#8fb58a"};
// Okabe and Ito's eight without black, which no label reads on.
const char* const okabeIto[] = {"#e69f00", "#56b4e9", "#009e73", "#f0e442", "#0072b2", "#d55e00", "#cc79a7"};
// Paul Tol's schemes without their grey, which stands for unclassified reads here.
const char* const tolBright[] = {"#4477aa", "#ee6677", "#228833", "#ccbb44", "#66ccee", "#aa3377"};
const char* const tolMuted[] = {"#332288", "#88ccee", "#44aa99", "#117733", "#999933",
                                "#ddcc77", "#cc6677", "#882255", "#aa4499"};

template <size_t N>
std::vector<QColor> listed(const char* const (&names)[N])
{
    std::vector<QColor> colours;
    for (const char* name : names)
        colours.emplace_back(QLatin1String(name));
    return colours;
}

// Beyond a fixed list, further colours: the list's hues turned halfway between their
// neighbours and a little lighter, then again, so that no two are the same.
QColor extended(const std::vector<QColor>& list, int index)
{
    const int n = static_cast<int>(list.size());
    const QColor& base = list[static_cast<size_t>(index % n)];
    const int round = index / n;
    if (round == 0)
        return base;
    const double turn = std::fmod(0.5 / n * round + 1.0, 1.0);
    QColor colour;
    colour.setHslF(std::fmod(std::max(0.0, base.hslHueF()) + turn, 1.0), base.hslSaturationF(),
                   std::min(0.85, base.lightnessF() + 0.06 * ((round + 1) % 3)));
    return colour;
}

} // namespace

const char* Palette::UnknownPaletteException::what() const noexcept
{
    return "unknown palette";
}

QColor Palette::unassignedGrey()
{
    return QColor(0xbb, 0xbb, 0xbb);
}

QColor Palette::othersGrey()
{
    return QColor(0xdd, 0xdd, 0xdd);
}

QColor Palette::contextGrey()
{
    return QColor(0xf2, 0xf2, 0xf2);
}

Palette::Palette(Kind k)
    : kind(k)
{
}

Palette Palette::byName(const QString& name)
{
    for (const Named& p : palettes) {
        if (name.compare(QLatin1String(p.name), Qt::CaseInsensitive) == 0)
            return Palette(p.kind);
    }
    throw UnknownPaletteException();
}

QStringList Palette::names()
{
    QStringList result;
    for (const Named& p : palettes)
        result << QLatin1String(p.name);
    return result;
}

QString Palette::title(const QString& name)
{
    for (const Named& p : palettes) {
        if (name == QLatin1String(p.name))
            return QLatin1String(p.title);
    }
    return name;
}

QString Palette::getName() const
{
    for (const Named& p : palettes) {
        if (p.kind == kind)
            return QLatin1String(p.name);
    }
    return QString();
}

std::vector<QColor> Palette::baseColours(int n) const
{
    std::vector<QColor> colours;
    if (n <= 0)
        return colours;
    if (kind == Kind::Classic) {
        for (int k = 0; k < n; ++k) {
            QColor colour;
            colour.setHslF((k + 0.5) / n, 1.0, 0.5);
            colours.push_back(colour);
        }
        return colours;
    }
    const std::vector<QColor> list = kind == Kind::Soft        ? listed(soft)
                                     : kind == Kind::OkabeIto  ? listed(okabeIto)
                                     : kind == Kind::TolBright ? listed(tolBright)
                                                               : listed(tolMuted);
    for (int k = 0; k < n; ++k)
        colours.push_back(extended(list, k));
    return colours;
}

QColor Palette::shade(const QColor& base, int depth, int sibling, int siblings, double hueRoom) const
{
    if (depth <= 0)
        return base;
    const double hue = std::max(0.0, base.hslHueF());
    // Each ring further out takes a share of the way left towards a pale tint of the hue, so
    // that deep charts never run out of steps.
    const QColor outward = kind == Kind::Classic ? nu::graphics::Color::shadeOutward(base, depth, 0.9, 0.0)
                                                 : nu::graphics::Color::shadeOutward(base, depth);
    const double saturation = outward.hslSaturationF();
    double l = outward.lightnessF();
    // Siblings: alternately a little darker and lighter, and turned a little round the hue
    // either side of their parent's.
    double h = hue;
    if (siblings > 1) {
        const double spread = std::min(0.06, 2 * hueRoom / siblings);
        h = std::fmod(hue + (sibling - (siblings - 1) / 2.0) * spread + 1.0, 1.0);
        l += (sibling % 2 == 0 ? -0.035 : 0.035);
    }
    QColor colour;
    colour.setHslF(h, std::clamp(saturation, 0.0, 1.0), std::clamp(l, 0.15, 0.93));
    return colour;
}

} // namespace Viewer
} // namespace Sorvik
