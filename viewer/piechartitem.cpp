#include "viewer/piechartitem.h"

namespace Sorvik {
namespace Viewer {

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
}

QList<PieChartItem::Position> PieChartItem::getParentPositions() const
{
    QList<Position> positions;
    for (auto* parent = dynamic_cast<const PieChartItem*>(parentItem()); parent;
         parent = dynamic_cast<const PieChartItem*>(parent->parentItem()))
        positions.append(parent->position);
    return positions;
}

void PieChartItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    // A cosmetic outline: one pixel at any zoom, so that slices of the same colour stay apart
    // without a zoomed-out chart turning black.
    const bool selected = isSelected();
    const QColor mark = selected ? QColor(Qt::red) : QColor(Qt::black);
    QPen outline(mark);
    outline.setWidth(0);
    paintSlice(painter, option, outline, QBrush(selected ? QColor(Qt::yellow) : color, Qt::SolidPattern),
               QBrush(mark, Qt::SolidPattern));
}

} // namespace Viewer
} // namespace Sorvik
