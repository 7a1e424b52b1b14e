#pragma once

#include "nu/edit/boundproperty.h"
#include "nu/edit/propertydouble.h"
#include "nu/edit/itemhandlers.h"
#include "nu/edit/propertygraphicsitem.h"
#include "nu/graphics/arcbracketitem.h"

namespace nu {
namespace edit {

// An arc bracket (type 5). A bracket on a slice takes its span and direction from the slice, so
// only a free bracket offers the group "angles" (rotation, angle).
class ArcBracketItem : public PropertyGraphicsItem<graphics::ArcBracketItem, 5>
{
public:
    // Its knobs.
    using ItemHandler = ArcBracketItemHandler;

    ArcBracketItem(graphics::ArcBracketItem& item, Id id, Id parentId);

    // The editor keeps it positive; the bracket itself takes negative lengths (outward tips).
    class TipLength : public BoundProperty<PropertyDoublePositive, graphics::ArcBracketItem,
                                           &graphics::ArcBracketItem::getTipLength,
                                           &graphics::ArcBracketItem::setTipLength>
    {
    public:
        using BoundProperty::BoundProperty;
    };
};

} // namespace edit
} // namespace nu
