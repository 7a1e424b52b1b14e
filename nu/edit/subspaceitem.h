#pragma once

#include "nu/edit/propertygraphicsitem.h"
#include "nu/graphics/subspaceitem.h"

namespace nu {
namespace edit {

// A local frame marker (type 8).
class SubSpaceItem : public PropertyGraphicsItem<graphics::SubSpaceItem, 8>
{
public:
    SubSpaceItem(graphics::SubSpaceItem& item, Id id, Id parentId);
};

} // namespace edit
} // namespace nu
