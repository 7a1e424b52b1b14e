#include "nu/graphics/piecharttextitem.h"

#include "nu/graphics/geometry.h"
#include "nu/graphics/svgwriter.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace nu {
namespace graphics {

namespace {
// The smallest font, relative to the label's own, that the centre disc shrinks its label to.
constexpr double smallestCentreFont = 0.4;
} // namespace

PieChartTextItem::PieChartTextItem(QGraphicsItem* parent)
    : QGraphicsItem(parent)
    , PieChartItem(parent)
{
}

void PieChartTextItem::setText(const DrawableText& t)
{
    if (t == text)
        return;
    text = t;
    labelSize.reset();
    setToolTip(text.text);
    update();
}

void PieChartTextItem::setTextShow(bool show)
{
    if (show == textShow)
        return;
    textShow = show;
    update();
}

QString PieChartTextItem::getDefaultText() const
{
    return QStringLiteral("%1 [%2%]").arg(text.text, QString::number(getPercentage(), 'f', 2));
}

void PieChartTextItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    // In an SVG, the slice and its label carry the tool tip.
    const SvgWriter::Group group(*painter, toolTip());
    paintSlice(painter, option, getPen(), getBrush(), text.brush);
}

void PieChartTextItem::paintSlice(QPainter* painter, const QStyleOptionGraphicsItem* option, const QPen& pen,
                                  const QBrush& brush, const QBrush& textBrush)
{
    paintPath(painter, option, pen, brush);
    getLabel().draw(*painter, text.pen, textBrush);
}

QPainterPath PieChartTextItem::getLabelPath() const
{
    return getLabel().getPath();
}

PlacedText PieChartTextItem::getLabel() const
{
    if (!textShow)
        return PlacedText();
    if (getRadius() <= 0 && getAngle() >= 360)
        return getCentreLabel();
    const QRectF room = getLabelRect();
    // No text box is narrower or lower than the margin textRect adds on both sides: most slices of
    // a large chart are decided here without laying out any glyphs.
    const double margin = 2 * (text.pen.width() / 2.0 + 1);
    if (room.width() < margin || room.height() < margin)
        return PlacedText();
    if (!labelSize)
        labelSize = textRect(text.text, text.font, text.pen);
    const double w = labelSize->width();
    const double h = labelSize->height();
    if (!room.contains(*labelSize))
        return PlacedText();
    const double width = room.width();
    const double radius = getLabelRadius();
    if (getLabelCenter().y() < 0)
        return PlacedText::bent(text.text, text.font, 1.0, QPointF(-(w + width) / 2, h / 2), radius, 1.0);
    return PlacedText::bent(text.text, text.font, 1.0, QPointF((width - w) / 2, h / 2), radius, -1.0);
}

PlacedText PieChartTextItem::getCentreLabel() const
{
    // Bent round a whole circle, half the label would stand on its head.
    if (text.text.isEmpty())
        return PlacedText();
    const double room = 2 * getRadiusOffset() * 0.9;
    QFont font = text.font;
    const double width = QFontMetricsF(font).horizontalAdvance(text.text);
    const double scale = std::min(1.0, room / std::max(width, 1.0));
    if (scale < smallestCentreFont)
        return PlacedText();
    if (scale < 1.0 && font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * scale);
    else if (scale < 1.0)
        font.setPixelSize(std::max(1, static_cast<int>(font.pixelSize() * scale)));
    const QFontMetricsF metrics(font);
    if (metrics.height() > room)
        return PlacedText();
    return PlacedText::straight(text.text, font,
                                QTransform::fromTranslate(-metrics.horizontalAdvance(text.text) / 2,
                                                          (metrics.ascent() - metrics.descent()) / 2));
}

} // namespace graphics
} // namespace nu
