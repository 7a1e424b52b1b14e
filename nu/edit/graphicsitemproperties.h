#pragma once

// The leaf properties bound directly to a graphics item: each reads and writes one value of the
// item given to its constructor, which outlives it.

#include "nu/edit/boundproperty.h"
#include "nu/edit/propertybool.h"
#include "nu/edit/propertybrush.h"
#include "nu/edit/propertydouble.h"
#include "nu/edit/propertyinteger.h"
#include "nu/edit/propertypen.h"
#include "nu/edit/propertypointf.h"

#include "nu/graphics/angularitem.h"
#include "nu/graphics/countitem.h"
#include "nu/graphics/customshapeitem.h"
#include "nu/graphics/ordereditem.h"
#include "nu/graphics/positionchilditem.h"
#include "nu/graphics/radiuschilditem.h"
#include "nu/graphics/radiusoffsetitem.h"
#include "nu/graphics/rotationchilditem.h"

#include <QGraphicsItem>

namespace nu {
namespace edit {

// The item's position in its parent's coordinates.
class PropertyGraphicsItemPosition
    : public BoundProperty<PropertyPointF, QGraphicsItem, &QGraphicsItem::pos,
                           static_cast<void (QGraphicsItem::*)(const QPointF&)>(&QGraphicsItem::setPos)>
{
public:
    using BoundProperty::BoundProperty;
};

// The item's rotation counted counter-clockwise: the negated Qt rotation (30 here is -30 there).
class PropertyGraphicsItemRotation
    : public BoundProperty<PropertyDoubleAngle, graphics::BaseItem, &graphics::BaseItem::getRot,
                           &graphics::BaseItem::setRot>
{
public:
    using BoundProperty::BoundProperty;
};

// Whether the item stays upright and unscaled on screen.
class PropertyIgnoreTransformations
    : public BoundProperty<PropertyBool, graphics::RotationChildItem, &graphics::BaseItem::getIgnoreTransformations,
                           &graphics::RotationChildItem::setIgnoreTransformations>
{
public:
    using BoundProperty::BoundProperty;
};

// The span of the item in degrees.
class PropertyAngularItemAngle
    : public BoundProperty<PropertyDoubleAngle, graphics::AngularItem, &graphics::AngularItem::getAngle,
                           &graphics::AngularItem::setAngle>
{
public:
    using BoundProperty::BoundProperty;
};

// The span of the item as a share of the full circle, 0..100.
class PropertyAngularItemPercentage
    : public BoundProperty<PropertyDouble, graphics::AngularItem, &graphics::AngularItem::getPercentage,
                           &graphics::AngularItem::setPercentage>
{
public:
    using BoundProperty::BoundProperty;
    double min() const override { return 0.0; }
    double max() const override { return 100.0; }
};

// The item's own count.
class PropertyCountItemCount
    : public BoundProperty<PropertyInteger, graphics::CountItem, &graphics::CountItem::getCount,
                           &graphics::CountItem::setCount>
{
public:
    using BoundProperty::BoundProperty;
    int min() const override { return 0; }
};

// The item's place among its siblings; without an ordered parent there is nothing to order, so
// the sheet can be told to leave it out (it still saves and undoes).
class PropertyOrderedItemOrder
    : public BoundProperty<PropertyInteger, graphics::OrderedItem, &graphics::OrderedItem::getOrder,
                           &graphics::OrderedItem::setOrder>
{
public:
    PropertyOrderedItemOrder(const PropertyInfo& info, graphics::OrderedItem& item, bool widgetAccessible)
        : BoundProperty(info, item)
        , widgetAccessible(widgetAccessible)
    {
    }
    int min() const override { return 1; }
    bool isWidgetAccessible() const override { return widgetAccessible; }

private:
    bool widgetAccessible;
};

// The pen the item's outline is drawn with.
class PropertyCustomTraceItemPen
    : public BoundProperty<PropertyPen, graphics::CustomTraceItem, &graphics::CustomTraceItem::getPen,
                           &graphics::CustomTraceItem::setPen>
{
public:
    using BoundProperty::BoundProperty;
};

// The brush the item's shape is filled with.
class PropertyCustomShapeItemBrush
    : public BoundProperty<PropertyBrush, graphics::CustomShapeItem, &graphics::CustomShapeItem::getBrush,
                           &graphics::CustomShapeItem::setBrush>
{
public:
    using BoundProperty::BoundProperty;
};

// The width of a ring-like item.
class PropertyRadiusOffset
    : public BoundProperty<PropertyDoublePositive, graphics::RadiusOffsetItem,
                           &graphics::RadiusOffsetItem::getRadiusOffset, &graphics::RadiusOffsetItem::setRadiusOffset>
{
public:
    using BoundProperty::BoundProperty;
};

// The item's radius as a distance from the radius its parent offers.
class PropertyRadiusOffsetFromParent
    : public BoundProperty<PropertyDoublePositive, graphics::RadiusChildItem,
                           &graphics::RadiusChildItem::getRadiusOffsetFromParent,
                           &graphics::RadiusChildItem::setRadiusOffsetFromParent>
{
public:
    using BoundProperty::BoundProperty;
};

// The item's rotation relative to the direction its parent offers (degrees, any value).
class PropertyRotationOffsetFromParent
    : public BoundProperty<PropertyDouble, graphics::RotationChildItem,
                           &graphics::RotationChildItem::getRotationOffsetFromParent,
                           &graphics::RotationChildItem::setRotationOffsetFromParent>
{
public:
    using BoundProperty::BoundProperty;
};

// The item's position relative to the anchor point its parent offers.
class PropertyPositionOffsetFromParent
    : public BoundProperty<PropertyPointF, graphics::PositionChildItem,
                           &graphics::PositionChildItem::getPositionOffsetFromParent,
                           &graphics::PositionChildItem::setPositionOffsetFromParent>
{
public:
    using BoundProperty::BoundProperty;
};

} // namespace edit
} // namespace nu
