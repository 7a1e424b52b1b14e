#include "nu/graphics/placedtext.h"

#include "nu/graphics/geometry.h"
#include "nu/graphics/svgwriter.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPaintEngine>
#include <QPainter>
#include <QScreen>
#include <QTextBoundaryFinder>

#include <cmath>

namespace nu {
namespace graphics {

PlacedText PlacedText::straight(const QString& text, const QFont& font, const QTransform& transform)
{
    PlacedText placed;
    placed.kind = Kind::Straight;
    placed.text = text;
    placed.font = font;
    placed.transform = transform;
    return placed;
}

PlacedText PlacedText::bent(const QString& text, const QFont& font, double scale, const QPointF& start, double radius,
                            double direction)
{
    // A circle of no size bends nothing: the text stays straight where it starts.
    if (radius == 0.0) {
        QTransform transform;
        transform.translate(start.x(), start.y());
        transform.scale(scale, scale);
        return straight(text, font, transform);
    }
    PlacedText placed;
    placed.kind = Kind::Bent;
    placed.text = text;
    placed.font = font;
    placed.scale = scale;
    placed.start = start;
    placed.radius = radius;
    placed.direction = direction < 0 ? -1.0 : 1.0;
    return placed;
}

double PlacedText::getWidth() const
{
    const double width = QFontMetricsF(font).horizontalAdvance(text);
    return kind == Kind::Bent ? width * scale : width;
}

QPainterPath PlacedText::getPath() const
{
    if (outlines)
        return *outlines;
    QPainterPath path;
    if (isEmpty())
        return path;
    path.addText(0, 0, font, text);
    if (kind == Kind::Straight) {
        path = transform.map(path);
    } else {
        path = QTransform(scale, 0, 0, scale, start.x(), start.y()).map(path);
        polarTransform(path, radius, direction);
    }
    outlines = std::make_shared<const QPainterPath>(path);
    return path;
}

double PlacedText::layoutDotsPerInch()
{
    // As the fonts' own outlines are laid out: the screen's logical resolution.
    if (QCoreApplication::testAttribute(Qt::AA_Use96Dpi))
        return 96;
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        return std::round(screen->logicalDotsPerInchY());
    return 100;
}

QFont PlacedText::getDeviceFont(double dotsPerInch) const
{
    QFont sized = font;
    const double layout = layoutDotsPerInch();
    const double points = font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize() * 72.0 / layout;
    const double factor = (kind == Kind::Bent ? scale : 1.0) * layout / (dotsPerInch > 0 ? dotsPerInch : layout);
    sized.setPointSizeF(std::max(points * factor, 0.01));
    return sized;
}

bool PlacedText::isVectorDevice(const QPainter& painter)
{
    const QPaintEngine* engine = painter.paintEngine();
    return engine && (engine->type() == QPaintEngine::Pdf || engine->type() == QPaintEngine::SVG);
}

void PlacedText::draw(QPainter& painter, const QPen& pen, const QBrush& brush) const
{
    if (isEmpty())
        return;
    if (SvgWriter::drawText(painter, *this, brush))
        return;
    if (isVectorDevice(painter)) {
        drawAsText(painter, brush);
        return;
    }
    painter.setPen(pen);
    painter.setBrush(brush);
    painter.drawPath(getPath());
}

void PlacedText::drawAsText(QPainter& painter, const QBrush& brush) const
{
    painter.save();
    painter.setPen(QPen(brush.color()));
    painter.setBrush(Qt::NoBrush);
    painter.setFont(getDeviceFont(painter.device()->logicalDpiY()));
    if (kind == Kind::Straight) {
        painter.setTransform(transform, true);
        painter.drawText(QPointF(0, 0), text);
        painter.restore();
        return;
    }
    // A device without text on a path: each character stands on the circle by itself, turned
    // to the tangent at its middle.
    const QFontMetricsF metrics(font);
    const QTransform base = painter.transform();
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    int from = 0;
    for (int to = characters.toNextBoundary(); to != -1 && from < text.size(); to = characters.toNextBoundary()) {
        const QString character = text.mid(from, to - from);
        const double before = metrics.horizontalAdvance(text.left(from)) * scale;
        const double width = metrics.horizontalAdvance(character) * scale;
        from = to;
        if (character.trimmed().isEmpty())
            continue;
        const double along = start.x() + before + width / 2;
        const double angle = along * direction / radius;
        const double r = radius - start.y() * direction;
        QTransform glyph = base;
        glyph.translate(r * std::cos(angle), r * std::sin(angle));
        glyph.rotate(angle * 180.0 / M_PI + direction * 90.0);
        painter.setTransform(glyph);
        painter.drawText(QPointF(-width / 2, 0), character);
    }
    painter.restore();
}

} // namespace graphics
} // namespace nu
