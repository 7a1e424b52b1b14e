#include "viewer/piechartitem.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace Sorvik {
namespace Viewer {

namespace {

// The smallest font, relative to the label's own, that the centre disc shrinks its label to.
constexpr double smallestCentreFont = 0.4;

double linear(double channel)
{
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

} // namespace

QColor PieChartItem::getLabelColor(const QColor& fill)
{
    const double luminance =
        0.2126 * linear(fill.redF()) + 0.7152 * linear(fill.greenF()) + 0.0722 * linear(fill.blueF());
    // Black reads well on all but the darkest fills (the saturated blues and violets of the
    // first ring); there its contrast falls below 4.5 to 1, and white takes over.
    return (luminance + 0.05) / 0.05 < 4.5 ? QColor(Qt::white) : QColor(Qt::black);
}

PieChartItem::PieChartItem(int count, QGraphicsItem* parent)
    : QGraphicsItem(parent)
    , PieChartTextItem(parent)
{
    setCount(count);
    setFlag(QGraphicsItem::ItemIsSelectable);
    setRadius(0);
    setRadiusOffset(30.0);
    setPen(QPen(Qt::NoPen));
    setBrush(QBrush(color, Qt::SolidPattern));
}

void PieChartItem::addChild(PieChartItem* child)
{
    if (!child || child == this || child->isAncestorOf(this))
        return;
    // Own counts are ints and totals of a subtree never exceed its node's count, so the
    // difference fits an int unless the file's counts contradict each other; then it is 0.
    const qint64 own = getCount() - child->getTotal();
    setCount(own > 0 ? static_cast<int>(own) : 0);
    PieChartTextItem::addChild(child);
}

void PieChartItem::setColor(const QColor& c)
{
    if (c == color)
        return;
    color = c;
    setBrush(QBrush(color, Qt::SolidPattern));
    // Kept in the label too, so that a copy through the base class reads as this one does.
    nu::graphics::DrawableText label = getText();
    label.brush = QBrush(getLabelColor(color), Qt::SolidPattern);
    setText(label);
}

QList<PieChartItem::Position> PieChartItem::getParentPositions() const
{
    QList<Position> positions;
    for (auto* parent = dynamic_cast<const PieChartItem*>(parentItem()); parent;
         parent = dynamic_cast<const PieChartItem*>(parent->parentItem()))
        positions.append(parent->position);
    return positions;
}

bool PieChartItem::isCentreDisc() const
{
    return getRadius() <= 0 && getAngle() >= 360;
}

void PieChartItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    // A cosmetic outline: one pixel at any zoom, so that slices of the same colour stay apart
    // without a zoomed-out chart turning black.
    const bool selected = isSelected();
    const QColor mark = selected ? QColor(Qt::red) : QColor(Qt::black);
    QPen outline(mark);
    outline.setWidth(0);
    const QBrush fill(selected ? QColor(Qt::yellow) : color, Qt::SolidPattern);
    const QColor labelColor = selected ? mark : getLabelColor(color);
    if (!isCentreDisc()) {
        paintSlice(painter, option, outline, fill, QBrush(labelColor, Qt::SolidPattern));
        return;
    }
    // The centre disc: its label reads straight across the middle rather than bent round a
    // circle, where half of it would stand on its head; a long name is set smaller to fit.
    paintPath(painter, option, outline, fill);
    const nu::graphics::DrawableText label = getText();
    if (!getTextShow() || label.text.isEmpty())
        return;
    const double room = 2 * getRadiusOffset() * 0.9;
    QFont font = label.font;
    const QFontMetricsF metrics(font);
    const double width = metrics.horizontalAdvance(label.text);
    const double scale = std::min(1.0, room / std::max(width, 1.0));
    if (scale < smallestCentreFont || metrics.height() * scale > room)
        return;
    if (scale < 1.0 && font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * scale);
    else if (scale < 1.0)
        font.setPixelSize(std::max(1, static_cast<int>(font.pixelSize() * scale)));
    painter->setFont(font);
    painter->setPen(labelColor);
    painter->drawText(QRectF(-room / 2, -room / 2, room, room), Qt::AlignCenter, label.text);
}

} // namespace Viewer
} // namespace Sorvik
