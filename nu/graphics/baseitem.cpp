#include "nu/graphics/baseitem.h"

#include "nu/graphics/angularchilditem.h"
#include "nu/graphics/countitem.h"
#include "nu/graphics/ordereditem.h"
#include "nu/graphics/positionchilditem.h"
#include "nu/graphics/radiuschilditem.h"
#include "nu/graphics/rotationchilditem.h"

namespace nu {
namespace graphics {

BaseItem::BaseItem() = default;

BaseItem::~BaseItem() = default;

void BaseItem::addChild(QGraphicsItem* child)
{
    if (!child || child == this || child->isAncestorOf(this))
        return;
    child->setParentItem(this);
    if (auto* c = dynamic_cast<RadiusChildItem*>(child))
        c->updateRadiusFromParentAddToParent();
    if (auto* c = dynamic_cast<AngularChildItem*>(child))
        c->updateAngleFromParentAddToParent();
    if (auto* c = dynamic_cast<RotationChildItem*>(child))
        c->updateRotationFromParentAddToParent();
    if (auto* c = dynamic_cast<OrderedItem*>(child))
        c->updateOrderFromParentAddToParent();
    if (auto* c = dynamic_cast<CountItem*>(child))
        c->updateCountFromParentAddToParent();
    if (auto* c = dynamic_cast<PositionChildItem*>(child))
        c->updatePositionFromParentAddToParent();
}

void BaseItem::removeFromParent()
{
    if (auto* c = dynamic_cast<RadiusChildItem*>(this))
        c->updateRadiusFromParentRemoveFromParent();
    if (auto* c = dynamic_cast<AngularChildItem*>(this))
        c->updateAngleFromParentRemoveFromParent();
    if (auto* c = dynamic_cast<RotationChildItem*>(this))
        c->updateRotationFromParentRemoveFromParent();
    if (auto* c = dynamic_cast<PositionChildItem*>(this))
        c->updatePositionFromParentRemoveFromParent();
    auto* counted = dynamic_cast<CountItem*>(this);
    if (counted)
        counted->updateCountFromParentDetach();
    setParentItem(nullptr);
    // After the parent is gone this finds no count parent: the former parent's totals keep the
    // removed subtree's count on purpose.
    if (counted)
        counted->updateCountFromParentRemoveFromParent();
}

QString BaseItem::getDefaultText() const
{
    if (const auto* parent = dynamic_cast<const BaseItem*>(parentItem()))
        return parent->getDefaultText();
    return QStringLiteral("new text");
}

bool BaseItem::getIgnoreTransformations() const
{
    return flags() & QGraphicsItem::ItemIgnoresTransformations;
}

QRectF BaseItem::getAreaRect() const
{
    QRectF area = boundingRect();
    for (QGraphicsItem* child : childItems()) {
        if (!child->isVisible())
            continue;
        if (const auto* c = dynamic_cast<const BaseItem*>(child))
            area |= child->mapRectToParent(c->getAreaRect());
    }
    return area;
}

} // namespace graphics
} // namespace nu
