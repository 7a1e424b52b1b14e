#pragma once

#include "nu/edit/boundproperty.h"
#include "nu/edit/propertyfont.h"
#include "nu/edit/itemhandlers.h"
#include "nu/edit/propertygraphicsitem.h"
#include "nu/edit/propertyoption.h"
#include "nu/edit/propertystring.h"
#include "nu/graphics/arctextitem.h"

namespace nu {
namespace edit {

// A text bent along an arc (type 1).
class ArcTextItem : public PropertyGraphicsItem<graphics::ArcTextItem, 1>
{
public:
    // Its knobs.
    using ItemHandler = ArcTextItemHandler;

    ArcTextItem(graphics::ArcTextItem& item, Id id, Id parentId);

    class Text : public BoundProperty<PropertyString, graphics::ArcTextItem, &graphics::ArcTextItem::getText,
                                      &graphics::ArcTextItem::setText>
    {
    public:
        using BoundProperty::BoundProperty;
    };

    class Font : public BoundProperty<PropertyFont, graphics::ArcTextItem, &graphics::ArcTextItem::getFont,
                                      &graphics::ArcTextItem::setFont>
    {
    public:
        using BoundProperty::BoundProperty;
    };

    // 0 "Inside", 1 "Outside"; any other value reads and writes as Inside.
    class Orientation : public PropertyOption
    {
    public:
        Orientation(const PropertyInfo& info, graphics::ArcTextItem& item);
        int getValue() const override;
        void setValue(int value) override;

    private:
        graphics::ArcTextItem& item;
    };
};

} // namespace edit
} // namespace nu
