#pragma once

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
    class Text : public PropertyDrawableText
    {
    public:
        Text(const PropertyInfo& info, graphics::PieChartTextItem& item);
        graphics::DrawableText getValue() const override;
        void setValue(const graphics::DrawableText& value) override;

        class Show : public PropertyBool
        {
        public:
            Show(const PropertyInfo& info, graphics::PieChartTextItem& item);
            bool getValue() const override;
            void setValue(bool value) override;

        private:
            graphics::PieChartTextItem& item;
        };

    private:
        graphics::PieChartTextItem& item;
    };
};

} // namespace edit
} // namespace nu
