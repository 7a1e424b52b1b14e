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
    : BoundProperty(info, item)
{
    beginProperties()
        .prop<Show>(PropertyInfo(info.name + QStringLiteral(".show"), QStringLiteral("show"), tr("show")), item)
        .endProperties();
}


} // namespace edit
} // namespace nu
