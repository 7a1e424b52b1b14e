#pragma once

#include "nu/graphics/countitem.h"
#include "nu/graphics/ringitem.h"

namespace nu {
namespace graphics {

// A ring slice whose angle is its share of the chart: 360 times its total over the root's total.
// Its ring children fill the part of its span that their totals account for, from its start;
// the rest (its own count) stays empty outside it. Outer rings are painted under their parent.
class PieChartItem : public RingItem, public CountItem
{
public:
    explicit PieChartItem(QGraphicsItem* parent = nullptr);

    using CountItem::updateCountFromParent;
    // Lays this subtree out against the root's total; a root total of 0 gives every slice angle 0.
    void updateCountFromParent(qint64 rootTotal) override;

    // A strip as long as the middle arc of the ring and as tall as the ring is wide.
    QRectF getLabelRect() const;
    // The scene direction from the item's origin towards its label (only its sign is used, to
    // tell the upper half of the chart from the lower).
    QPointF getLabelCenter() const;
};

} // namespace graphics
} // namespace nu
