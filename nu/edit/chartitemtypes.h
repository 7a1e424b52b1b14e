#pragma once

namespace nu {
namespace edit {

class GraphicsItemManager;

// Registers the item types a user edits, saves and loads, in this order: arc brackets, arc
// texts, labelled slices, straight texts, lines and subspaces. Bare slices and pies live inside
// labelled slices and are never saved or created on their own.
void registerChartItemTypes(GraphicsItemManager& manager);

} // namespace edit
} // namespace nu
