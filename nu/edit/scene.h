#pragma once

#include <QGraphicsScene>

namespace nu {
namespace edit {

class GraphicsItemManager;

// The editor's scene: holds the chart's graphics items, whose ids and editable wrappers the item
// manager keeps.
class Scene : public QGraphicsScene
{
    Q_OBJECT
public:
    // The manager is not owned; it works on this scene from now on.
    explicit Scene(GraphicsItemManager& manager, QObject* parent = nullptr);

    GraphicsItemManager& getItemManager() const { return manager; }

    // Drops the handle shown on this item, if any; called before the item is deleted.
    virtual void deleteItemHandler(QGraphicsItem* item);

private:
    GraphicsItemManager& manager;
};

} // namespace edit
} // namespace nu
