#include "nu/edit/arcbracketitem.h"

#include "nu/edit/graphicsitemproperties.h"

namespace nu {
namespace edit {

ArcBracketItem::ArcBracketItem(graphics::ArcBracketItem& item, Id id, Id parentId)
    : PropertyGraphicsItem(item, id, parentId)
{
    beginProperties()
        .prop<PropertyGraphicsItemPosition>(PropertyInfo(QStringLiteral("position")), item)
        .endProperties();
    if (!item.getAngularParentItem()) {
        beginProperties()
            .openSet(PropertyInfo(QStringLiteral("angles")))
            .prop<PropertyGraphicsItemRotation>(PropertyInfo(QStringLiteral("rotation")), item)
            .prop<PropertyAngularItemAngle>(PropertyInfo(QStringLiteral("angle")), item)
            .closeSet()
            .endProperties();
    }
    const QString tipLength = tr("tip length");
    beginProperties()
        .prop<PropertyRadiusOffsetFromParent>(PropertyInfo(QStringLiteral("radius")), item)
        .prop<TipLength>(PropertyInfo(QStringLiteral("tip-length"), tipLength, tipLength), item)
        .prop<PropertyCustomTraceItemPen>(PropertyInfo(QStringLiteral("line")), item)
        .endProperties();
}

} // namespace edit
} // namespace nu
