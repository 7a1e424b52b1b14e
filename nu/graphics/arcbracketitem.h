#pragma once

#include "nu/graphics/angularchilditem.h"
#include "nu/graphics/angularitem.h"
#include "nu/graphics/customtraceitem.h"
#include "nu/graphics/positionparentitem.h"
#include "nu/graphics/radiuschilditem.h"
#include "nu/graphics/radiusitem.h"
#include "nu/graphics/radiusparentitem.h"
#include "nu/graphics/rotationparentitem.h"

namespace nu {
namespace graphics {

// An arc over an angle at a radius, with a short radial tip at each end pointing to the centre
// (outwards for a negative tip length). On a slice it follows the slice's span and keeps its
// distance from the slice's outer radius; its own children (a text) sit on the middle of the arc.
class ArcBracketItem : public CustomTraceItem,
                       public RadiusItem,
                       public RadiusParentItem,
                       public RadiusChildItem,
                       public AngularItem,
                       public AngularChildItem,
                       public RotationParentItem,
                       public PositionParentItem
{
public:
    explicit ArcBracketItem(QGraphicsItem* parent = nullptr);

    double getRadius() const override { return radius; }
    // Negative radii become 0.
    void setRadius(double radius) override;
    double getAngle() const override { return angle; }
    void setAngle(double angle) override;
    double getTipLength() const { return tipLength; }
    void setTipLength(double length);

    double getRotationForChild() const override { return angle / 2; }
    double getRadiusForChild() const override { return radius; }
    QPointF getPositionForChild() const override;
    double getRadiusOffsetFromParent() const override;
    // Negative offsets become 0.
    void setRadiusOffsetFromParent(double offset) override;
    void updateAngleFromParent(double oldAngle, double newAngle) override;
    void updateRadiusFromParent(double oldRadius, double newRadius) override;

    QPainterPath path() const override;

private:
    double angle = 0;
    double tipLength = 10.0;
    double radius = 0;
};

} // namespace graphics
} // namespace nu
