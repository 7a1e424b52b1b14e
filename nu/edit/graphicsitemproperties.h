#pragma once

// The leaf properties bound directly to a graphics item: each reads and writes one value of the
// item given to its constructor, which outlives it.

#include "nu/edit/propertybool.h"
#include "nu/edit/propertybrush.h"
#include "nu/edit/propertydouble.h"
#include "nu/edit/propertyinteger.h"
#include "nu/edit/propertypen.h"
#include "nu/edit/propertypointf.h"

class QGraphicsItem;

namespace nu {

namespace graphics {
class AngularItem;
class BaseItem;
class CountItem;
class CustomShapeItem;
class CustomTraceItem;
class OrderedItem;
class PositionChildItem;
class RadiusChildItem;
class RadiusOffsetItem;
class RotationChildItem;
} // namespace graphics

namespace edit {

// The item's position in its parent's coordinates.
class PropertyGraphicsItemPosition : public PropertyPointF
{
public:
    PropertyGraphicsItemPosition(const PropertyInfo& info, QGraphicsItem& item);
    QPointF getValue() const override;
    void setValue(const QPointF& value) override;

private:
    QGraphicsItem& item;
};

// The item's rotation counted counter-clockwise: the negated Qt rotation (30 here is -30 there).
class PropertyGraphicsItemRotation : public PropertyDoubleAngle
{
public:
    PropertyGraphicsItemRotation(const PropertyInfo& info, graphics::BaseItem& item);
    double getValue() const override;
    void setValue(double value) override;

private:
    graphics::BaseItem& item;
};

// Whether the item stays upright and unscaled on screen.
class PropertyIgnoreTransformations : public PropertyBool
{
public:
    PropertyIgnoreTransformations(const PropertyInfo& info, graphics::RotationChildItem& item);
    bool getValue() const override;
    void setValue(bool value) override;

private:
    graphics::RotationChildItem& item;
};

// The span of the item in degrees.
class PropertyAngularItemAngle : public PropertyDoubleAngle
{
public:
    PropertyAngularItemAngle(const PropertyInfo& info, graphics::AngularItem& item);
    double getValue() const override;
    void setValue(double value) override;

private:
    graphics::AngularItem& item;
};

// The span of the item as a share of the full circle, 0..100.
class PropertyAngularItemPercentage : public PropertyDouble
{
public:
    PropertyAngularItemPercentage(const PropertyInfo& info, graphics::AngularItem& item);
    double getValue() const override;
    void setValue(double value) override;
    double min() const override;
    double max() const override;

private:
    graphics::AngularItem& item;
};

// The item's own count.
class PropertyCountItemCount : public PropertyInteger
{
public:
    PropertyCountItemCount(const PropertyInfo& info, graphics::CountItem& item);
    int getValue() const override;
    void setValue(int value) override;
    int min() const override;

private:
    graphics::CountItem& item;
};

// The item's place among its siblings; without an ordered parent there is nothing to order, so
// the sheet can be told to leave it out (it still saves and undoes).
class PropertyOrderedItemOrder : public PropertyInteger
{
public:
    PropertyOrderedItemOrder(const PropertyInfo& info, graphics::OrderedItem& item, bool widgetAccessible);
    int getValue() const override;
    void setValue(int value) override;
    int min() const override;
    bool isWidgetAccessible() const override;

private:
    graphics::OrderedItem& item;
    bool widgetAccessible;
};

// The pen the item's outline is drawn with.
class PropertyCustomTraceItemPen : public PropertyPen
{
public:
    PropertyCustomTraceItemPen(const PropertyInfo& info, graphics::CustomTraceItem& item);
    QPen getValue() const override;
    void setValue(const QPen& value) override;

private:
    graphics::CustomTraceItem& item;
};

// The brush the item's shape is filled with.
class PropertyCustomShapeItemBrush : public PropertyBrush
{
public:
    PropertyCustomShapeItemBrush(const PropertyInfo& info, graphics::CustomShapeItem& item);
    QBrush getValue() const override;
    void setValue(const QBrush& value) override;

private:
    graphics::CustomShapeItem& item;
};

// The width of a ring-like item.
class PropertyRadiusOffset : public PropertyDoublePositive
{
public:
    PropertyRadiusOffset(const PropertyInfo& info, graphics::RadiusOffsetItem& item);
    double getValue() const override;
    void setValue(double value) override;

private:
    graphics::RadiusOffsetItem& item;
};

// The item's radius as a distance from the radius its parent offers.
class PropertyRadiusOffsetFromParent : public PropertyDoublePositive
{
public:
    PropertyRadiusOffsetFromParent(const PropertyInfo& info, graphics::RadiusChildItem& item);
    double getValue() const override;
    void setValue(double value) override;

private:
    graphics::RadiusChildItem& item;
};

// The item's rotation relative to the direction its parent offers (degrees, any value).
class PropertyRotationOffsetFromParent : public PropertyDouble
{
public:
    PropertyRotationOffsetFromParent(const PropertyInfo& info, graphics::RotationChildItem& item);
    double getValue() const override;
    void setValue(double value) override;

private:
    graphics::RotationChildItem& item;
};

// The item's position relative to the anchor point its parent offers.
class PropertyPositionOffsetFromParent : public PropertyPointF
{
public:
    PropertyPositionOffsetFromParent(const PropertyInfo& info, graphics::PositionChildItem& item);
    QPointF getValue() const override;
    void setValue(const QPointF& value) override;

private:
    graphics::PositionChildItem& item;
};

} // namespace edit
} // namespace nu
