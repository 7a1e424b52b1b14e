#pragma once

#include "nu/edit/handler.h"

namespace nu {

namespace graphics {
class PieChartItem;
class PieItem;
class RectTextItem;
class SubSpaceItem;
} // namespace graphics

namespace edit {

// The knob sets of the editable item types, one class per type: a position knob with the knobs
// of the item's other geometric values as its children. A value the item takes from its parent
// gets a grey position knob or no knob at all.

// Position (grey on a slice); radius; on free brackets rotation and span; both tips.
class ArcBracketItemHandler : public HandlerPosition
{
public:
    explicit ArcBracketItemHandler(graphics::ArcBracketItem& item);
};

// Position (grey on a bracket or slice); radius and rotation together.
class ArcTextItemHandler : public HandlerPosition
{
public:
    explicit ArcTextItemHandler(graphics::ArcTextItem& item);
};

// A chart slice, labelled or not. The centre slice moves and turns the chart; every slice has
// its ring width.
class PieChartItemHandler : public HandlerPosition
{
public:
    explicit PieChartItemHandler(graphics::PieChartItem& item);
};

// Position (grey on a parent); radius; rotation; span.
class PieItemHandler : public HandlerPosition
{
public:
    explicit PieItemHandler(graphics::PieItem& item);
};

// Position (grey on another line's end); end point.
class LineItemHandler : public HandlerPositionOffset
{
public:
    explicit LineItemHandler(graphics::LineItem& item);
};

// Position, beside the text at its anchor; rotation, past the text's end.
class RectTextItemHandler : public HandlerPositionOffset
{
public:
    explicit RectTextItemHandler(graphics::RectTextItem& item);

protected:
    QPointF placeKnob() const override;

private:
    graphics::RectTextItem& text;
};

// Position; rotation.
class SubSpaceItemHandler : public HandlerPositionOffset
{
public:
    explicit SubSpaceItemHandler(graphics::SubSpaceItem& item);
};

} // namespace edit
} // namespace nu
