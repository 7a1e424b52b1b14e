#include "nu/edit/scene.h"

#include "nu/edit/graphicsitemmanager.h"

namespace nu {
namespace edit {

Scene::Scene(GraphicsItemManager& manager, QObject* parent)
    : QGraphicsScene(parent)
    , manager(manager)
{
    setSceneRect(-500, -500, 1000, 1000);
    manager.setScene(*this);
}

void Scene::deleteItemHandler(QGraphicsItem*)
{
    // No handles are shown yet.
}

} // namespace edit
} // namespace nu
