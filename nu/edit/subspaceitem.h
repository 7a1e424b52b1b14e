#pragma once

#include "nu/edit/itemhandlers.h"
#include "nu/edit/propertygraphicsitem.h"
#include "nu/graphics/subspaceitem.h"

namespace nu {
namespace edit {

// A local frame marker (type 8).
class SubSpaceItem : public PropertyGraphicsItem<graphics::SubSpaceItem, 8>
{
public:
    // Its knobs.
    using ItemHandler = SubSpaceItemHandler;

    SubSpaceItem(graphics::SubSpaceItem& item, Id id, Id parentId);
};

} // namespace edit
} // namespace nu
