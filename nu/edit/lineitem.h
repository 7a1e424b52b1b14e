#pragma once

#include "nu/edit/boundproperty.h"
#include "nu/edit/itemhandlers.h"
#include "nu/edit/propertygraphicsitem.h"
#include "nu/edit/propertypointf.h"
#include "nu/graphics/lineitem.h"

namespace nu {
namespace edit {

// A straight line (type 7). A line that hangs on another line's end has no position of its own.
class LineItem : public PropertyGraphicsItem<graphics::LineItem, 7>
{
public:
    // Its knobs.
    using ItemHandler = LineItemHandler;

    LineItem(graphics::LineItem& item, Id id, Id parentId);

    // The far end of the line, in the line's own coordinates.
    class End : public BoundProperty<PropertyPointF, graphics::LineItem, &graphics::LineItem::getEndPoint,
                                     &graphics::LineItem::setEndPoint>
    {
    public:
        using BoundProperty::BoundProperty;
    };
};

} // namespace edit
} // namespace nu
