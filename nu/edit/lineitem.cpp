#include "nu/edit/lineitem.h"

#include "nu/edit/graphicsitemproperties.h"

namespace nu {
namespace edit {

LineItem::LineItem(graphics::LineItem& item, Id id, Id parentId)
    : PropertyGraphicsItem(item, id, parentId)
{
    if (!item.getPositionParentItem()) {
        beginProperties()
            .prop<PropertyPositionOffsetFromParent>(PropertyInfo(QStringLiteral("position")), item)
            .endProperties();
    }
    const QString ignore = tr("ignore transformations");
    const PropertyInfo ignoreTransformations(QStringLiteral("ignoretransformations"), ignore, ignore);
    beginProperties()
        .prop<End>(PropertyInfo(QStringLiteral("end")), item)
        .prop<PropertyCustomTraceItemPen>(PropertyInfo(QStringLiteral("line")), item)
        .prop<PropertyIgnoreTransformations>(ignoreTransformations, item)
        .endProperties();
}

} // namespace edit
} // namespace nu
