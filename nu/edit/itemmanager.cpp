#include "nu/edit/itemmanager.h"

namespace nu {
namespace edit {

ItemManager::~ItemManager() = default;

std::shared_ptr<PropertyItem> ItemManager::getItemOrCreate(long id, int type)
{
    if (auto item = getItem(id))
        return item;
    return createItem(id, type);
}

} // namespace edit
} // namespace nu
