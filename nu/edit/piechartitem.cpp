#include "nu/edit/piechartitem.h"

#include "nu/edit/graphicsitemproperties.h"

namespace nu {
namespace edit {

PieChartItem::PieChartItem(graphics::PieChartItem& item, Id id, Id parentId)
    : PropertyGraphicsItem(item, id, parentId)
{
    declareSliceProperties(*this, item);
}

void PieChartItem::declareSliceProperties(PropertySet& set, graphics::PieChartItem& item)
{
    if (!item.getRadiusParentItem()) {
        set.beginProperties()
            .prop<PropertyGraphicsItemPosition>(PropertyInfo(QStringLiteral("position")), item)
            .prop<PropertyGraphicsItemRotation>(PropertyInfo(QStringLiteral("rotation")), item)
            .endProperties();
    }
    set.beginProperties()
        .prop<PropertyOrderedItemOrder>(PropertyInfo(QStringLiteral("order")), item,
                                        item.getOrderedParentItem() != nullptr)
        .prop<PropertyCountItemCount>(PropertyInfo(QStringLiteral("count")), item)
        .prop<PropertyRadiusOffsetFromParent>(PropertyInfo(QStringLiteral("radius")), item)
        .prop<PropertyCustomTraceItemPen>(PropertyInfo(QStringLiteral("border")), item)
        .prop<PropertyCustomShapeItemBrush>(PropertyInfo(QStringLiteral("fill")), item)
        .endProperties();
}

} // namespace edit
} // namespace nu
