#include "nu/edit/subspaceitem.h"

#include "nu/edit/graphicsitemproperties.h"

namespace nu {
namespace edit {

SubSpaceItem::SubSpaceItem(graphics::SubSpaceItem& item, Id id, Id parentId)
    : PropertyGraphicsItem(item, id, parentId)
{
    const QString ignore = tr("ignore transformations");
    const PropertyInfo ignoreTransformations(QStringLiteral("ignoretransformations"), ignore, ignore);
    beginProperties()
        .prop<PropertyPositionOffsetFromParent>(PropertyInfo(QStringLiteral("position")), item)
        .prop<PropertyRotationOffsetFromParent>(PropertyInfo(QStringLiteral("rotation")), item)
        .prop<PropertyIgnoreTransformations>(ignoreTransformations, item)
        .endProperties();
}

} // namespace edit
} // namespace nu
