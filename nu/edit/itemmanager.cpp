#include "nu/edit/itemmanager.h"

namespace nu {
namespace edit {

ItemManager::Batch::Batch(ItemManager& manager)
    : manager(manager)
{
    manager.beginBatch();
}

ItemManager::Batch::~Batch()
{
    manager.endBatch();
}

ItemManager::~ItemManager() = default;

void ItemManager::beginBatch() {}

void ItemManager::endBatch() {}

std::shared_ptr<PropertyItem> ItemManager::getItemOrCreate(long id, int type)
{
    if (auto item = getItem(id))
        return item;
    return createItem(id, type);
}

} // namespace edit
} // namespace nu
