#include "nu/graphics/piecharttextitem.h"

#include "nu/graphics/geometry.h"

#include <QPainter>

namespace nu {
namespace graphics {

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
    paintSlice(painter, option, getPen(), getBrush(), text.brush);
}

void PieChartTextItem::paintSlice(QPainter* painter, const QStyleOptionGraphicsItem* option, const QPen& pen,
                                  const QBrush& brush, const QBrush& textBrush)
{
    paintPath(painter, option, pen, brush);
    const QPainterPath label = getLabelPath();
    if (label.isEmpty())
        return;
    painter->setPen(text.pen);
    painter->setBrush(textBrush);
    painter->drawPath(label);
}

QPainterPath PieChartTextItem::getLabelPath() const
{
    if (!textShow)
        return QPainterPath();
    const QRectF room = getLabelRect();
    // No text box is narrower or lower than the margin textRect adds on both sides: most slices of
    // a large chart are decided here without laying out any glyphs.
    const double margin = 2 * (text.pen.width() / 2.0 + 1);
    if (room.width() < margin || room.height() < margin)
        return QPainterPath();
    if (!labelSize)
        labelSize = textRect(text.text, text.font, text.pen);
    const double w = labelSize->width();
    const double h = labelSize->height();
    if (!room.contains(*labelSize))
        return QPainterPath();
    const double width = room.width();
    const double radius = getLabelRadius();
    QPainterPath label;
    if (getLabelCenter().y() < 0) {
        label.addText(-(w + width) / 2, h / 2, text.font, text.text);
        polarTransform(label, radius, 1.0);
    } else {
        label.addText((width - w) / 2, h / 2, text.font, text.text);
        polarTransform(label, radius, -1.0);
    }
    return label;
}

} // namespace graphics
} // namespace nu
