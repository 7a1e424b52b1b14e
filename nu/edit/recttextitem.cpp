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

RectTextItem::Text::Text(const PropertyInfo& info, graphics::RectTextItem& item)
    : PropertyString(info)
    , item(item)
{
}

QString RectTextItem::Text::getValue() const
{
    return item.getText();
}

void RectTextItem::Text::setValue(const QString& value)
{
    item.setText(value);
}

RectTextItem::Font::Font(const PropertyInfo& info, graphics::RectTextItem& item)
    : PropertyFont(info)
    , item(item)
{
}

QFont RectTextItem::Font::getValue() const
{
    return item.getFont();
}

void RectTextItem::Font::setValue(const QFont& value)
{
    item.setFont(value);
}

} // namespace edit
} // namespace nu
