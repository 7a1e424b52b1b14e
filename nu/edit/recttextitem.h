#pragma once

#include "nu/edit/boundproperty.h"
#include "nu/edit/propertyfont.h"
#include "nu/edit/itemhandlers.h"
#include "nu/edit/propertygraphicsitem.h"
#include "nu/edit/propertystring.h"
#include "nu/graphics/recttextitem.h"

namespace nu {
namespace edit {

// A straight text (type 6).
class RectTextItem : public PropertyGraphicsItem<graphics::RectTextItem, 6>
{
public:
    // Its knobs.
    using ItemHandler = RectTextItemHandler;

    RectTextItem(graphics::RectTextItem& item, Id id, Id parentId);

    class Text : public BoundProperty<PropertyString, graphics::RectTextItem, &graphics::RectTextItem::getText,
                                      &graphics::RectTextItem::setText>
    {
    public:
        using BoundProperty::BoundProperty;
    };

    class Font : public BoundProperty<PropertyFont, graphics::RectTextItem, &graphics::RectTextItem::getFont,
                                      &graphics::RectTextItem::setFont>
    {
    public:
        using BoundProperty::BoundProperty;
    };
};

} // namespace edit
} // namespace nu
