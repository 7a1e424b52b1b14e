#pragma once

#include "nu/edit/propertyitem.h"

#include <memory>

namespace nu {
namespace edit {

// What the undo manager needs of the editor's items: find, create (with a fresh id or a given
// one) and delete them by id.
class ItemManager
{
public:
    virtual ~ItemManager();

    // Empty when no item has this id.
    virtual std::shared_ptr<PropertyItem> getItem(long id) = 0;
    // A new item of the type under a fresh id; empty for a type that cannot be made.
    virtual std::shared_ptr<PropertyItem> createItem(int type) = 0;
    // A new item of the type under the given id; empty when that cannot be.
    virtual std::shared_ptr<PropertyItem> createItem(long id, int type) = 0;
    virtual void deleteItem(long id) = 0;
    virtual std::shared_ptr<PropertyItem> getItemOrCreate(long id, int type);
};

} // namespace edit
} // namespace nu
