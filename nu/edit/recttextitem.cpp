#include "nu/edit/recttextitem.h"

#include "nu/edit/graphicsitemproperties.h"
#include "nu/edit/propertyanchor.h"

namespace nu {
namespace edit {

RectTextItem::RectTextItem(graphics::RectTextItem& item, Id id, Id parentId)
    : PropertyGraphicsItem(item, id, parentId)
{
    beginProperties()
        .prop<PropertyPositionOffsetFromParent>(PropertyInfo(QStringLiteral("position")), item)
        .prop<Text>(PropertyInfo(QStringLiteral("text")), item)
        .prop<Font>(PropertyInfo(QStringLiteral("font")), item)
        .prop<PropertyRotationOffsetFromParent>(PropertyInfo(QStringLiteral("rotation")), item)
        .prop<PropertyCustomTraceItemPen>(PropertyInfo(QStringLiteral("border")), item)
        .prop<PropertyCustomShapeItemBrush>(PropertyInfo(QStringLiteral("fill")), item)
        .prop<PropertyAnchor>(PropertyInfo(QStringLiteral("anchor")), item)
        .endProperties();
}

} // namespace edit
} // namespace nu
