#include "nu/edit/piecharttextitem.h"

#include "nu/edit/graphicsitemproperties.h"
#include "nu/edit/piechartitem.h"

namespace nu {
namespace edit {

PieChartTextItem::PieChartTextItem(graphics::PieChartTextItem& item, Id id, Id parentId)
    : PropertyGraphicsItem(item, id, parentId)
{
    PieChartItem::declareSliceProperties(*this, item);
    beginProperties().prop<Text>(PropertyInfo(QStringLiteral("text")), item).endProperties();
}

PieChartTextItem::Text::Text(const PropertyInfo& info, graphics::PieChartTextItem& item)
    : PropertyDrawableText(info)
    , item(item)
{
    beginProperties()
        .prop<Show>(PropertyInfo(info.name + QStringLiteral(".show"), QStringLiteral("show"), tr("show")), item)
        .endProperties();
}

graphics::DrawableText PieChartTextItem::Text::getValue() const
{
    return item.getText();
}

void PieChartTextItem::Text::setValue(const graphics::DrawableText& value)
{
    item.setText(value);
}

PieChartTextItem::Text::Show::Show(const PropertyInfo& info, graphics::PieChartTextItem& item)
    : PropertyBool(info)
    , item(item)
{
}

bool PieChartTextItem::Text::Show::getValue() const
{
    return item.getTextShow();
}

void PieChartTextItem::Text::Show::setValue(bool value)
{
    item.setTextShow(value);
}

} // namespace edit
} // namespace nu
