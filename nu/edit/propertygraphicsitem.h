#pragma once

#include "nu/edit/propertygraphicsbaseitem.h"

namespace nu {
namespace edit {

// The editable wrapper of one kind of graphics item; TypeNumber is the item's type in the chart
// file and in GraphicsItemManager::createItem.
template <class Item, int TypeNumber>
class PropertyGraphicsItem : public PropertyGraphicsBaseItem
{
public:
    using GraphicsItem = Item;
    static constexpr int TypeId = TypeNumber;

    PropertyGraphicsItem(Item& item, Id id, Id parentId)
        : PropertyGraphicsBaseItem(id, parentId)
        , item(item)
    {
    }

    int getType() const override { return TypeNumber; }
    Item& getItem() const override { return item; }

private:
    Item& item;
};

} // namespace edit
} // namespace nu
