#include "nu/edit/propertygraphicsbaseitem.h"

#include "nu/graphics/baseitem.h"

#include <algorithm>

namespace nu {
namespace edit {

PropertyGraphicsBaseItem::PropertyGraphicsBaseItem(Id id, Id parentId)
    : id(id)
    , parentId(parentId)
{
}

void PropertyGraphicsBaseItem::setParent(PropertyItem* parent)
{
    auto graphicsParent = dynamic_cast<PropertyGraphicsBaseItem*>(parent);
    if (parent && !graphicsParent)
        return;
    QGraphicsItem* self = &getItem();
    QGraphicsItem* newParent = graphicsParent ? &graphicsParent->getItem() : nullptr;
    if (newParent && (newParent == self || self->isAncestorOf(newParent)))
        return;
    if (self->parentItem() == newParent) {
        parentId = parent ? parent->getId() : 0;
        return;
    }
    removeFromParent();
    parentId = parent ? parent->getId() : 0;
    if (graphicsParent)
        graphicsParent->addChild(this);
}

void PropertyGraphicsBaseItem::addChild(PropertyGraphicsBaseItem* child)
{
    if (!child)
        return;
    getItem().addChild(&child->getItem());
    if (child->getItem().parentItem() == &getItem()
        && std::find(children.begin(), children.end(), child->getId()) == children.end())
        children.push_back(child->getId());
}

void PropertyGraphicsBaseItem::removeFromParent()
{
    if (getItem().parentItem())
        getItem().removeFromParent();
}

} // namespace edit
} // namespace nu
