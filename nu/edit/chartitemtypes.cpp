#include "nu/edit/chartitemtypes.h"

#include "nu/edit/arcbracketitem.h"
#include "nu/edit/arctextitem.h"
#include "nu/edit/graphicsitemmanager.h"
#include "nu/edit/lineitem.h"
#include "nu/edit/piecharttextitem.h"
#include "nu/edit/recttextitem.h"
#include "nu/edit/subspaceitem.h"

namespace nu {
namespace edit {

void registerChartItemTypes(GraphicsItemManager& manager)
{
    manager.registerType<ArcBracketItem>();
    manager.registerType<ArcTextItem>();
    manager.registerType<PieChartTextItem>();
    manager.registerType<RectTextItem>();
    manager.registerType<LineItem>();
    manager.registerType<SubSpaceItem>();
}

} // namespace edit
} // namespace nu
