#include "nu/edit/graphicsitemproperties.h"

#include "nu/graphics/angularitem.h"
#include "nu/graphics/countitem.h"
#include "nu/graphics/customshapeitem.h"
#include "nu/graphics/ordereditem.h"
#include "nu/graphics/positionchilditem.h"
#include "nu/graphics/radiuschilditem.h"
#include "nu/graphics/radiusoffsetitem.h"
#include "nu/graphics/rotationchilditem.h"

namespace nu {
namespace edit {

PropertyGraphicsItemPosition::PropertyGraphicsItemPosition(const PropertyInfo& info, QGraphicsItem& item)
    : PropertyPointF(info)
    , item(item)
{
}

QPointF PropertyGraphicsItemPosition::getValue() const
{
    return item.pos();
}

void PropertyGraphicsItemPosition::setValue(const QPointF& value)
{
    item.setPos(value);
}

PropertyGraphicsItemRotation::PropertyGraphicsItemRotation(const PropertyInfo& info, graphics::BaseItem& item)
    : PropertyDoubleAngle(info)
    , item(item)
{
}

double PropertyGraphicsItemRotation::getValue() const
{
    return item.getRot();
}

void PropertyGraphicsItemRotation::setValue(double value)
{
    item.setRot(value);
}

PropertyIgnoreTransformations::PropertyIgnoreTransformations(const PropertyInfo& info,
                                                             graphics::RotationChildItem& item)
    : PropertyBool(info)
    , item(item)
{
}

bool PropertyIgnoreTransformations::getValue() const
{
    return item.getIgnoreTransformations();
}

void PropertyIgnoreTransformations::setValue(bool value)
{
    item.setIgnoreTransformations(value);
}

PropertyAngularItemAngle::PropertyAngularItemAngle(const PropertyInfo& info, graphics::AngularItem& item)
    : PropertyDoubleAngle(info)
    , item(item)
{
}

double PropertyAngularItemAngle::getValue() const
{
    return item.getAngle();
}

void PropertyAngularItemAngle::setValue(double value)
{
    item.setAngle(value);
}

PropertyAngularItemPercentage::PropertyAngularItemPercentage(const PropertyInfo& info, graphics::AngularItem& item)
    : PropertyDouble(info)
    , item(item)
{
}

double PropertyAngularItemPercentage::getValue() const
{
    return item.getPercentage();
}

void PropertyAngularItemPercentage::setValue(double value)
{
    item.setPercentage(value);
}

double PropertyAngularItemPercentage::min() const
{
    return 0.0;
}

double PropertyAngularItemPercentage::max() const
{
    return 100.0;
}

PropertyCountItemCount::PropertyCountItemCount(const PropertyInfo& info, graphics::CountItem& item)
    : PropertyInteger(info)
    , item(item)
{
}

int PropertyCountItemCount::getValue() const
{
    return item.getCount();
}

void PropertyCountItemCount::setValue(int value)
{
    item.setCount(value);
}

int PropertyCountItemCount::min() const
{
    return 0;
}

PropertyOrderedItemOrder::PropertyOrderedItemOrder(const PropertyInfo& info, graphics::OrderedItem& item,
                                                   bool widgetAccessible)
    : PropertyInteger(info)
    , item(item)
    , widgetAccessible(widgetAccessible)
{
}

int PropertyOrderedItemOrder::getValue() const
{
    return item.getOrder();
}

void PropertyOrderedItemOrder::setValue(int value)
{
    item.setOrder(value);
}

int PropertyOrderedItemOrder::min() const
{
    return 1;
}

bool PropertyOrderedItemOrder::isWidgetAccessible() const
{
    return widgetAccessible;
}

PropertyCustomTraceItemPen::PropertyCustomTraceItemPen(const PropertyInfo& info, graphics::CustomTraceItem& item)
    : PropertyPen(info)
    , item(item)
{
}

QPen PropertyCustomTraceItemPen::getValue() const
{
    return item.getPen();
}

void PropertyCustomTraceItemPen::setValue(const QPen& value)
{
    item.setPen(value);
}

PropertyCustomShapeItemBrush::PropertyCustomShapeItemBrush(const PropertyInfo& info, graphics::CustomShapeItem& item)
    : PropertyBrush(info)
    , item(item)
{
}

QBrush PropertyCustomShapeItemBrush::getValue() const
{
    return item.getBrush();
}

void PropertyCustomShapeItemBrush::setValue(const QBrush& value)
{
    item.setBrush(value);
}

PropertyRadiusOffset::PropertyRadiusOffset(const PropertyInfo& info, graphics::RadiusOffsetItem& item)
    : PropertyDoublePositive(info)
    , item(item)
{
}

double PropertyRadiusOffset::getValue() const
{
    return item.getRadiusOffset();
}

void PropertyRadiusOffset::setValue(double value)
{
    item.setRadiusOffset(value);
}

PropertyRadiusOffsetFromParent::PropertyRadiusOffsetFromParent(const PropertyInfo& info,
                                                               graphics::RadiusChildItem& item)
    : PropertyDoublePositive(info)
    , item(item)
{
}

double PropertyRadiusOffsetFromParent::getValue() const
{
    return item.getRadiusOffsetFromParent();
}

void PropertyRadiusOffsetFromParent::setValue(double value)
{
    item.setRadiusOffsetFromParent(value);
}

PropertyRotationOffsetFromParent::PropertyRotationOffsetFromParent(const PropertyInfo& info,
                                                                   graphics::RotationChildItem& item)
    : PropertyDouble(info)
    , item(item)
{
}

double PropertyRotationOffsetFromParent::getValue() const
{
    return item.getRotationOffsetFromParent();
}

void PropertyRotationOffsetFromParent::setValue(double value)
{
    item.setRotationOffsetFromParent(value);
}

PropertyPositionOffsetFromParent::PropertyPositionOffsetFromParent(const PropertyInfo& info,
                                                                   graphics::PositionChildItem& item)
    : PropertyPointF(info)
    , item(item)
{
}

QPointF PropertyPositionOffsetFromParent::getValue() const
{
    return item.getPositionOffsetFromParent();
}

void PropertyPositionOffsetFromParent::setValue(const QPointF& value)
{
    item.setPositionOffsetFromParent(value);
}

} // namespace edit
} // namespace nu
