#pragma once

#include <QGraphicsItem>
#include <QRectF>
#include <QString>

namespace nu {
namespace graphics {

// The root of the chart item mixins. Every mixin derives from it virtually, so an item that
// combines many of them is still one QGraphicsItem; the concrete item constructs that
// QGraphicsItem with its parent.
//
// A child keeps its geometry relative to its parent: addChild() makes the Qt parent and then
// tells the child, mixin by mixin, what its new parent offers, and removeFromParent() tells it
// the parent is gone. Setting a Qt parent directly (setParentItem, a constructor's parent)
// sends none of these notifications.
//
// Angles and rotations are degrees, counter-clockwise on screen: getRot() and setRot() are the
// negated Qt rotation, and every rotation of the model goes through them.
class BaseItem : public virtual QGraphicsItem
{
public:
    BaseItem();
    ~BaseItem() override;

    // Ignored for a null child, this item itself, or an ancestor of this item.
    virtual void addChild(QGraphicsItem* child);
    virtual void removeFromParent();
    virtual QString getDefaultText() const;

    double getRot() const { return -rotation(); }
    void setRot(double r) { setRotation(-r); }
    bool getIgnoreTransformations() const;

    // The area of this item and its visible descendants, in this item's coordinates.
    QRectF getAreaRect() const;
};

} // namespace graphics
} // namespace nu
