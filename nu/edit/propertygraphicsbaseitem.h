#pragma once

#include "nu/edit/propertyitem.h"

namespace nu {

namespace graphics {
class BaseItem;
}

namespace edit {

// An editable item bound to a chart graphics item. The item tree is the graphics items' own
// parent/child tree; the item manager makes a new wrapper on every lookup, so a wrapper holds
// little beyond the two ids and the graphics item.
class PropertyGraphicsBaseItem : public PropertyItem
{
public:
    PropertyGraphicsBaseItem(Id id, Id parentId);

    virtual graphics::BaseItem& getItem() const = 0;

    Id getId() const override { return id; }
    Id getParentId() const override { return parentId; }
    // The children added through this wrapper, in that order (a graphics item does not know the
    // ids of its children: the item manager does).
    std::vector<Id> getChildrenId() const override { return children; }
    // Setting the parent the item already has changes nothing, so that counts and orders are not
    // notified twice.
    void setParent(PropertyItem* parent) override;

    // Makes child's graphics item a child of this one (with the geometry notifications).
    void addChild(PropertyGraphicsBaseItem* child);
    // Makes this graphics item top-level (with the geometry notifications).
    void removeFromParent();

private:
    Id id;
    Id parentId;
    std::vector<Id> children;
};

} // namespace edit
} // namespace nu
