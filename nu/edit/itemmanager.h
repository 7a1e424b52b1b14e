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
    // Marks many changes made at once (a load, an undo step): while one lives, the manager may put
    // off work that every single change would repeat, such as laying a chart out again. Nests.
    class Batch
    {
    public:
        explicit Batch(ItemManager& manager);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

    private:
        ItemManager& manager;
    };

    virtual ~ItemManager();

    // Empty when no item has this id.
    virtual std::shared_ptr<PropertyItem> getItem(long id) = 0;
    // A new item of the type under a fresh id; empty for a type that cannot be made.
    virtual std::shared_ptr<PropertyItem> createItem(int type) = 0;
    // A new item of the type under the given id; empty when that cannot be.
    virtual std::shared_ptr<PropertyItem> createItem(long id, int type) = 0;
    virtual void deleteItem(long id) = 0;
    virtual std::shared_ptr<PropertyItem> getItemOrCreate(long id, int type);

protected:
    // Called by Batch; nothing by default.
    virtual void beginBatch();
    virtual void endBatch();
};

} // namespace edit
} // namespace nu
