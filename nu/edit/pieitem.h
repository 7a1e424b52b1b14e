#pragma once

#include "nu/edit/itemhandlers.h"
#include "nu/edit/propertygraphicsitem.h"
#include "nu/graphics/pieitem.h"

namespace nu {
namespace edit {

// A free-standing ring slice of a given share (type 4). Complete, but not registered by the
// editor.
class PieItem : public PropertyGraphicsItem<graphics::PieItem, 4>
{
public:
    // Its knobs.
    using ItemHandler = PieItemHandler;

    PieItem(graphics::PieItem& item, Id id, Id parentId);
};

} // namespace edit
} // namespace nu
