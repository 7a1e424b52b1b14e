#include "nu/edit/itemhandlers.h"

#include "nu/edit/selectionshape.h"

#include "nu/graphics/arcbracketitem.h"
#include "nu/graphics/arctextitem.h"
#include "nu/graphics/lineitem.h"
#include "nu/graphics/piechartitem.h"
#include "nu/graphics/pieitem.h"
#include "nu/graphics/recttextitem.h"
#include "nu/graphics/subspaceitem.h"

namespace nu {
namespace edit {

ArcBracketItemHandler::ArcBracketItemHandler(graphics::ArcBracketItem& item)
    : HandlerPosition(item)
{
    if (item.getRadiusParentItem())
        notApply();
    addHandler(new HandlerRadiusAngularItemRadiusChildItem<graphics::ArcBracketItem>(this, item));
    // On a slice the bracket takes its direction and span from the slice.
    if (!item.getAngularParentItem()) {
        addHandler(new HandlerRotationRadiusItem(this, item));
        addHandler(new HandlerAngleAngularItemRadiusItem<graphics::ArcBracketItem>(this, item));
    }
    addHandler(new StartTipHandler(this, item));
    addHandler(new EndTipHandler(this, item));
    updateHandler();
}

ArcTextItemHandler::ArcTextItemHandler(graphics::ArcTextItem& item)
    : HandlerPosition(item)
{
    if (item.getRadiusParentItem())
        notApply();
    addHandler(new RadiusRotationHandler(this, item));
    updateHandler();
}

PieChartItemHandler::PieChartItemHandler(graphics::PieChartItem& item)
    : HandlerPosition(item)
{
    if (item.getRadiusParentItem())
        notApply();
    else
        addHandler(new HandlerRotationRadiusItem(this, item));
    addHandler(new HandlerRadiusAngularItemRadiusChildItem<graphics::PieChartItem>(this, item));
    updateHandler();
}

PieItemHandler::PieItemHandler(graphics::PieItem& item)
    : HandlerPosition(item)
{
    if (item.getRadiusParentItem())
        notApply();
    addHandler(new HandlerRadiusAngularItemRadiusChildItem<graphics::PieItem>(this, item));
    addHandler(new HandlerRotationRadiusItem(this, item));
    addHandler(new HandlerAngleAngularItemRadiusItem<graphics::PieItem>(this, item));
    updateHandler();
}

LineItemHandler::LineItemHandler(graphics::LineItem& item)
    : HandlerPositionOffset(item)
{
    if (item.getPositionParentItem())
        notApply();
    addHandler(new LineItemEndHandler(this, item));
    updateHandler();
}

RectTextItemHandler::RectTextItemHandler(graphics::RectTextItem& item)
    : HandlerPositionOffset(item)
    , text(item)
{
    addHandler(new HandlerRotationRotationChildItem(this, item));
    updateHandler();
}

QPointF RectTextItemHandler::placeKnob() const
{
    // The anchor lies on the text's box: the knob goes out of the box on the anchor's side, to
    // the left when the anchor is the box's centre.
    using Anchor = graphics::AnchorItem;
    const QRectF box = text.path().boundingRect();
    QPointF knob(box.left() - knobClearance, 0);
    if (text.getHorizontalAnchor() == Anchor::HorizontalAnchor::Right)
        knob = QPointF(box.right() + knobClearance, 0);
    else if (text.getHorizontalAnchor() == Anchor::HorizontalAnchor::Center
             && text.getVerticalAnchor() == Anchor::VerticalAnchor::Top)
        knob = QPointF(0, box.top() - knobClearance);
    else if (text.getHorizontalAnchor() == Anchor::HorizontalAnchor::Center
             && text.getVerticalAnchor() == Anchor::VerticalAnchor::Bottom)
        knob = QPointF(0, box.bottom() + knobClearance);
    return text.itemTransform(this).map(knob);
}

SubSpaceItemHandler::SubSpaceItemHandler(graphics::SubSpaceItem& item)
    : HandlerPositionOffset(item)
{
    addHandler(new HandlerRotationRotationChildItem(this, item));
    updateHandler();
}

} // namespace edit
} // namespace nu
