#include "nu/edit/arctextitem.h"

#include "nu/edit/graphicsitemproperties.h"

namespace nu {
namespace edit {

ArcTextItem::ArcTextItem(graphics::ArcTextItem& item, Id id, Id parentId)
    : PropertyGraphicsItem(item, id, parentId)
{
    beginProperties()
        .prop<PropertyGraphicsItemPosition>(PropertyInfo(QStringLiteral("position")), item)
        .prop<Text>(PropertyInfo(QStringLiteral("text")), item)
        .prop<Font>(PropertyInfo(QStringLiteral("font")), item)
        .prop<PropertyRadiusOffsetFromParent>(PropertyInfo(QStringLiteral("radius")), item)
        .prop<PropertyRotationOffsetFromParent>(PropertyInfo(QStringLiteral("rotation")), item)
        .prop<PropertyCustomTraceItemPen>(PropertyInfo(QStringLiteral("border")), item)
        .prop<PropertyCustomShapeItemBrush>(PropertyInfo(QStringLiteral("fill")), item)
        .prop<Orientation>(PropertyInfo(QStringLiteral("orientation")), item)
        .endProperties();
}

ArcTextItem::Orientation::Orientation(const PropertyInfo& info, graphics::ArcTextItem& item)
    : PropertyOption(info)
    , item(item)
{
    addOption(0, tr("Inside"));
    addOption(1, tr("Outside"));
}

int ArcTextItem::Orientation::getValue() const
{
    return item.getOrientation() == graphics::ArcTextItem::Orientation::Outside ? 1 : 0;
}

void ArcTextItem::Orientation::setValue(int value)
{
    item.setOrientation(value == 1 ? graphics::ArcTextItem::Orientation::Outside
                                   : graphics::ArcTextItem::Orientation::Inside);
}

} // namespace edit
} // namespace nu
