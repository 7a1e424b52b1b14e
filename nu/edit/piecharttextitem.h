#pragma once

#include "nu/edit/boundproperty.h"
#include "nu/edit/propertybool.h"
#include "nu/edit/propertydrawabletext.h"
#include "nu/edit/itemhandlers.h"
#include "nu/edit/propertygraphicsitem.h"
#include "nu/graphics/piecharttextitem.h"

namespace nu {
namespace edit {

// A chart slice with its label (type 2). A slice at the chart's centre (no radius parent) also
// offers its position and rotation; the others take them from their parent.
class PieChartTextItem : public PropertyGraphicsItem<graphics::PieChartTextItem, 2>
{
public:
    // Its knobs.
    using ItemHandler = PieChartItemHandler;

    PieChartTextItem(graphics::PieChartTextItem& item, Id id, Id parentId);

    // The label: the drawable text's members, then "<name>.show".
    class Text : public BoundProperty<PropertyDrawableText, graphics::PieChartTextItem,
                                      &graphics::PieChartTextItem::getText, &graphics::PieChartTextItem::setText>
    {
    public:
        Text(const PropertyInfo& info, graphics::PieChartTextItem& item);

        class Show : public BoundProperty<PropertyBool, graphics::PieChartTextItem,
                                          &graphics::PieChartTextItem::getTextShow,
                                          &graphics::PieChartTextItem::setTextShow>
        {
        public:
            using BoundProperty::BoundProperty;
        };
    };
};

} // namespace edit
} // namespace nu
