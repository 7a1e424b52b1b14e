#include "nu/edit/propertyanchor.h"

#include "nu/graphics/anchoritem.h"

namespace nu {
namespace edit {

namespace {

int toId(int anchor)
{
    return anchor >= 0 && anchor <= 2 ? anchor : 1;
}

bool isId(int value)
{
    return value >= 0 && value <= 2;
}

} // namespace

PropertyAnchor::PropertyAnchor(const PropertyInfo& info, graphics::AnchorItem& item)
    : PropertySet(info)
    , item(item)
{
    beginProperties()
        .prop<Horizontal>(PropertyInfo(info.name + QStringLiteral(".horizontal"), QStringLiteral("horizontal"),
                                       tr("horizontal anchor")),
                          *this)
        .prop<Vertical>(PropertyInfo(info.name + QStringLiteral(".vertical"), QStringLiteral("vertical"),
                                     tr("vertical anchor")),
                        *this)
        .endProperties();
}

PropertyAnchor::Horizontal::Horizontal(const PropertyInfo& info, PropertyAnchor& anchor)
    : PropertyOption(info)
    , anchor(anchor)
{
    addOption(0, tr("Left"));
    addOption(1, tr("Center"));
    addOption(2, tr("Right"));
}

int PropertyAnchor::Horizontal::getValue() const
{
    return toId(int(anchor.getItem().getHorizontalAnchor()));
}

void PropertyAnchor::Horizontal::setValue(int value)
{
    if (isId(value))
        anchor.getItem().setHorizontalAnchor(graphics::AnchorItem::HorizontalAnchor(value));
}

PropertyAnchor::Vertical::Vertical(const PropertyInfo& info, PropertyAnchor& anchor)
    : PropertyOption(info)
    , anchor(anchor)
{
    addOption(0, tr("Top"));
    addOption(1, tr("Center"));
    addOption(2, tr("Bottom"));
}

int PropertyAnchor::Vertical::getValue() const
{
    return toId(int(anchor.getItem().getVerticalAnchor()));
}

void PropertyAnchor::Vertical::setValue(int value)
{
    if (isId(value))
        anchor.getItem().setVerticalAnchor(graphics::AnchorItem::VerticalAnchor(value));
}

} // namespace edit
} // namespace nu
