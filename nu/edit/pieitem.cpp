#include "nu/edit/pieitem.h"

#include "nu/edit/graphicsitemproperties.h"

namespace nu {
namespace edit {

PieItem::PieItem(graphics::PieItem& item, Id id, Id parentId)
    : PropertyGraphicsItem(item, id, parentId)
{
    if (!item.getRadiusParentItem()) {
        beginProperties()
            .prop<PropertyGraphicsItemPosition>(PropertyInfo(QStringLiteral("position")), item)
            .endProperties();
    }
    beginProperties()
        .prop<PropertyOrderedItemOrder>(PropertyInfo(QStringLiteral("order")), item,
                                        item.getOrderedParentItem() != nullptr)
        .prop<PropertyAngularItemPercentage>(PropertyInfo(QStringLiteral("percentage")), item)
        .prop<PropertyRadiusOffsetFromParent>(PropertyInfo(QStringLiteral("radius")), item)
        .prop<PropertyGraphicsItemRotation>(PropertyInfo(QStringLiteral("rotation")), item)
        .prop<PropertyCustomTraceItemPen>(PropertyInfo(QStringLiteral("border")), item)
        .prop<PropertyCustomShapeItemBrush>(PropertyInfo(QStringLiteral("fill")), item)
        .endProperties();
}

} // namespace edit
} // namespace nu
