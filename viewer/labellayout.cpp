#include "viewer/labellayout.h"

#include "nu/graphics/geometry.h"

#include <QFontMetricsF>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace Sorvik {
namespace Viewer {

namespace {

constexpr double degree = M_PI / 180.0;
// Radial labels are for narrow slices; a wide one reads better along its arc.
constexpr double widestRadial = 90.0;
// An arc label is kept over a somewhat larger radial one: it reads more easily.
constexpr double arcPreference = 0.85;

QPointF onCircle(double radius, double angle)
{
    return QPointF(radius * std::cos(angle * degree), -radius * std::sin(angle * degree));
}

} // namespace

LabelLayout::LabelLayout(const QFont& f, double minimum)
    : font(f)
    , minimumScale(std::max(minimum, 1e-3))
{
    const QFontMetricsF metrics(font);
    textHeight = metrics.ascent() + metrics.descent();
}

double LabelLayout::fitScale(double textWidth, double length, double height) const
{
    if (length <= 0 || height <= 0 || textWidth <= 0)
        return 0;
    // Zoomed far out, the smallest readable size may be above the font's own: labels grow to it.
    const double largest = std::max(1.0, minimumScale);
    return std::min({largest, length / textWidth, height / textHeight});
}

LabelLayout::Label LabelLayout::place(const Slice& slice, const QString& text) const
{
    if (text.isEmpty() || slice.span <= 0 || slice.width <= 0)
        return Label();
    const QFontMetricsF metrics(font);
    const double textWidth = metrics.horizontalAdvance(text);
    const double middle = slice.innerRadius + slice.width / 2;
    const double span = std::min(slice.span, 360.0);

    Fit arc{Kind::Arc, 0, middle * span * degree - 2 * padding, slice.width - 2 * padding};
    arc.scale = fitScale(textWidth, arc.length, arc.height);
    Fit radial{Kind::Radial, 0, 0, 0};
    if (span < widestRadial && slice.innerRadius > 0) {
        const auto radialFrom = [&](double start, double end, bool outside) {
            Fit fit{Kind::Radial, 0, end - padding - start, 2 * start * std::sin(span * degree / 2) - 2 * padding};
            fit.start = start;
            fit.outside = outside;
            fit.scale = fitScale(textWidth, fit.length, fit.height);
            return fit;
        };
        const double outer = slice.innerRadius + slice.width;
        radial = radialFrom(slice.innerRadius + padding, outer, false);
        // Beyond the ring, where nothing else is drawn, a label that does not fit in it.
        if (slice.reach > outer + 2 * padding) {
            const Fit beyond = radialFrom(outer + padding, slice.reach, true);
            if (beyond.scale > radial.scale)
                radial = beyond;
        }
    }
    const Fit& best = arc.scale >= 1.0 || arc.scale >= arcPreference * radial.scale ? arc : radial;
    if (best.scale >= minimumScale)
        return finish(best, slice, text);

    // Too long even at the smallest size: elided, in whichever direction keeps more of it.
    Label chosen;
    for (const Fit* fit : {&arc, &radial}) {
        if (fit->height < textHeight * minimumScale || fit->length <= 0)
            continue;
        const QString elided = metrics.elidedText(text, Qt::ElideRight, fit->length / minimumScale);
        // One letter and the ellipsis say nothing the tool tip would not say better.
        if (elided.size() < 3 || elided.size() <= chosen.text.size())
            continue;
        Fit shrunk = *fit;
        shrunk.scale = minimumScale;
        chosen = finish(shrunk, slice, elided);
    }
    return chosen;
}

LabelLayout::Label LabelLayout::placeCentre(double radius, const QString& text) const
{
    if (text.isEmpty() || radius <= 0)
        return Label();
    const QFontMetricsF metrics(font);
    const double length = 1.8 * radius - 2 * padding;
    const double height = 1.2 * radius;
    Label label;
    label.kind = Kind::Straight;
    label.scale = fitScale(metrics.horizontalAdvance(text), length, height);
    label.text = text;
    if (label.scale < minimumScale) {
        if (height < textHeight * minimumScale)
            return Label();
        label.text = metrics.elidedText(text, Qt::ElideRight, length / minimumScale);
        if (label.text.size() < 3)
            return Label();
        label.scale = minimumScale;
    }
    label.placed = nu::graphics::PlacedText::straight(label.text, font, centred(label.text, label.scale));
    label.path = label.placed.getPath();
    return label;
}

LabelLayout::Label LabelLayout::finish(const Fit& fit, const Slice& slice, const QString& text) const
{
    Label label;
    label.kind = fit.kind;
    label.text = text;
    label.scale = fit.scale;
    const QTransform centre = centred(text, fit.scale);
    const double span = std::min(slice.span, 360.0);
    if (fit.kind == Kind::Arc) {
        const double middle = slice.innerRadius + slice.width / 2;
        const double along = middle * span * degree / 2;
        // Bent round the middle of the ring: clockwise on the upper half, counter-clockwise on
        // the lower, so that the letters stand upright.
        const QPointF start(centre.dx() + (slice.upper ? -along : along), centre.dy());
        label.placed = nu::graphics::PlacedText::bent(text, font, fit.scale, start, middle, slice.upper ? 1.0 : -1.0);
    } else {
        const QFontMetricsF metrics(font);
        const double length = metrics.horizontalAdvance(text) * fit.scale;
        // Centred in the ring, or beyond it from its outer edge outward.
        const double distance = fit.outside ? fit.start + length / 2 : slice.innerRadius + slice.width / 2;
        label.outside = fit.outside;
        const double angle = span / 2;
        QTransform place;
        place.translate(onCircle(distance, angle).x(), onCircle(distance, angle).y());
        place.rotate(slice.right ? -angle : 180.0 - angle);
        label.placed = nu::graphics::PlacedText::straight(text, font, centre * place);
    }
    label.path = label.placed.getPath();
    return label;
}

QTransform LabelLayout::centred(const QString& text, double scale) const
{
    const QFontMetricsF metrics(font);
    QTransform centre;
    centre.scale(scale, scale);
    centre.translate(-metrics.horizontalAdvance(text) / 2, (metrics.ascent() - metrics.descent()) / 2);
    return centre;
}

QRectF LabelLayout::sectorBounds(double innerRadius, double outerRadius, double startAngle, double span)
{
    if (span >= 360)
        return nu::graphics::centeredRect(QPointF(), outerRadius);
    QRectF bounds(onCircle(outerRadius, startAngle), QSizeF(0, 0));
    const auto include = [&bounds](const QPointF& p) {
        bounds.setLeft(std::min(bounds.left(), p.x()));
        bounds.setRight(std::max(bounds.right(), p.x()));
        bounds.setTop(std::min(bounds.top(), p.y()));
        bounds.setBottom(std::max(bounds.bottom(), p.y()));
    };
    const double end = startAngle + std::max(span, 0.0);
    include(onCircle(outerRadius, end));
    include(onCircle(innerRadius, startAngle));
    include(onCircle(innerRadius, end));
    // The outer arc bulges furthest where it crosses an axis.
    for (double axis = std::ceil(startAngle / 90.0) * 90.0; axis <= end; axis += 90.0)
        include(onCircle(outerRadius, axis));
    return bounds;
}

} // namespace Viewer
} // namespace Sorvik
