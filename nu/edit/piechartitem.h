#pragma once

#include "nu/edit/itemhandlers.h"
#include "nu/edit/propertygraphicsitem.h"
#include "nu/graphics/piechartitem.h"

namespace nu {
namespace edit {

// A chart slice without a label (type 3). Complete, but not registered by the editor: such slices
// live inside labelled slices and are rebuilt by them.
class PieChartItem : public PropertyGraphicsItem<graphics::PieChartItem, 3>
{
public:
    // Its knobs.
    using ItemHandler = PieChartItemHandler;

    PieChartItem(graphics::PieChartItem& item, Id id, Id parentId);

    // Declares what every slice offers, labelled or not, into set: position and rotation at the
    // chart's centre only, then order, count, radius, border and fill.
    static void declareSliceProperties(PropertySet& set, graphics::PieChartItem& item);
};

} // namespace edit
} // namespace nu
