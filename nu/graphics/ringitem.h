#pragma once

#include "nu/graphics/angularitem.h"
#include "nu/graphics/angularparentitem.h"
#include "nu/graphics/customshapeitem.h"
#include "nu/graphics/ordereditem.h"
#include "nu/graphics/orderedparentitem.h"
#include "nu/graphics/positionparentitem.h"
#include "nu/graphics/radiuschilditem.h"
#include "nu/graphics/radiusitem.h"
#include "nu/graphics/radiusoffsetitem.h"
#include "nu/graphics/radiusparentitem.h"
#include "nu/graphics/rotationparentitem.h"

namespace nu {
namespace graphics {

// One slice of a ring chart: an annular sector from its own rotation over its angle
// (counter-clockwise, degrees), between its inner radius and inner radius plus its width.
// Its ring children lie directly outside it, side by side in ascending order; annotation
// children follow its span, the middle of its outer arc and its outer radius.
class RingItem : public CustomShapeItem,
                 public AngularItem,
                 public AngularParentItem,
                 public RadiusItem,
                 public RadiusParentItem,
                 public RadiusChildItem,
                 public RotationParentItem,
                 public OrderedItem,
                 public OrderedParentItem,
                 public PositionParentItem,
                 public RadiusOffsetItem
{
public:
    explicit RingItem(QGraphicsItem* parent = nullptr);

    // A bracket added to a slice spans the whole slice.
    void addChild(QGraphicsItem* child) override;
    QPainterPath path() const override;

    double getAngle() const override { return angle; }
    double getRadius() const override { return radius; }
    double getRadiusForChild() const override { return radius + radiusOffset; }
    double getRadiusOffsetFromParent() const override { return radiusOffset; }
    double getRadiusFull() const override { return radius + radiusOffset; }
    double getAngleForChild() const override { return angle; }
    // Annotations turn relative to the middle of the slice.
    double getRotationForChild() const override { return angle / 2; }
    // The middle of the outer arc.
    QPointF getPositionForChild() const override;
    int getOrder() const override { return order; }

    // No clamping: angles beyond 360 or below 0 are stored as given.
    void setAngle(double angle) override;
    // Negative radii become 0.
    void setRadius(double radius) override;
    // The ring width; a negative offset becomes 0, then the width is raised to at least 1.
    void setRadiusOffsetFromParent(double offset) override;
    void setOrder(int order) override;
    void updateRadiusFromParent(double oldRadius, double newRadius) override;
    // The swap of OrderedParentItem, then the ring children are laid side by side again.
    void updateChildOrder(int a, int b) override;
    void changeOrder(int order) override { this->order = order; }

    double getRadiusOffset() const override { return radiusOffset; }
    // Widths below 1.0 are raised to 1.0.
    void setRadiusOffset(double offset) override;
    double getRadiusOffsetMinimum() const override { return 1.0; }

private:
    double angle = 0;
    double radius = 0;
    double radiusOffset = 0;
    int order = 1;
};

} // namespace graphics
} // namespace nu
