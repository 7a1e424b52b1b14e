#include "nu/edit/graphicsitemmanager.h"

#include "nu/edit/loadjson.h"
#include "nu/edit/scene.h"

#include "nu/graphics/countitem.h"

#include <QGraphicsItem>

#include <vector>

namespace nu {
namespace edit {

GraphicsItemManager::BaseItemType::~BaseItemType() = default;

GraphicsItemManager::GraphicsItemManager() = default;

GraphicsItemManager::~GraphicsItemManager()
{
    QObject::disconnect(sceneDestroyed);
}

void GraphicsItemManager::setScene(Scene& scene)
{
    if (this->scene == &scene)
        return;
    forgetScene();
    this->scene = &scene;
    // The scene deletes its items when it goes; their ids must not outlive them.
    sceneDestroyed = QObject::connect(&scene, &QObject::destroyed, [this] { ids.clear(); });
}

Scene* GraphicsItemManager::getScene() const
{
    return scene;
}

void GraphicsItemManager::forgetScene()
{
    QObject::disconnect(sceneDestroyed);
    ids.clear();
    scene = nullptr;
}

void GraphicsItemManager::reset()
{
    ids.clear();
    idGenerator.reset();
    if (scene)
        scene->clear();
}

std::shared_ptr<PropertyItem> GraphicsItemManager::createItem(int type)
{
    if (!isRegistered(type))
        return nullptr;
    // Undo may have lowered the counter below ids that are still in use.
    long id = idGenerator.newId();
    while (ids.left.count(id))
        id = idGenerator.newId();
    return createItem(id, type);
}

std::shared_ptr<PropertyItem> GraphicsItemManager::createItem(long id, int type)
{
    if (!scene || id <= 0 || ids.left.count(id))
        return nullptr;
    std::unique_ptr<QGraphicsItem> built = buildItem(type);
    if (!built)
        return nullptr;
    QGraphicsItem* item = built.get();
    if (batchDepth > 0) {
        if (auto counted = dynamic_cast<graphics::CountItem*>(item))
            counted->setLayoutDeferred(true);
    }
    scene->addItem(built.release());
    idGenerator.registerId(id);
    ids.insert(IdMap::value_type(id, item));
    return getItem(item, id);
}

std::unique_ptr<QGraphicsItem> GraphicsItemManager::buildItem(int type) const
{
    const auto found = types.find(type);
    return found == types.end() ? nullptr : found->second->buildItem();
}

std::shared_ptr<PropertyItem> GraphicsItemManager::getItem(long id)
{
    QGraphicsItem* item = getGraphicsItem(id);
    return item ? getItem(item, id) : nullptr;
}

std::shared_ptr<PropertyItem> GraphicsItemManager::getItem(QGraphicsItem* item)
{
    const long id = findId(item);
    return id ? getItem(item, id) : nullptr;
}

std::shared_ptr<PropertyItem> GraphicsItemManager::getItem(QGraphicsItem* item, long id)
{
    if (!item)
        return nullptr;
    // A parent without an id (a graphics item the editor does not edit) counts as none.
    const long parentId = findId(item->parentItem());
    for (const auto& type : types) {
        if (auto wrapped = type.second->wrapItem(*item, id, parentId))
            return wrapped;
    }
    return nullptr;
}

QGraphicsItem* GraphicsItemManager::getGraphicsItem(long id) const
{
    const auto found = ids.left.find(id);
    return found == ids.left.end() ? nullptr : found->second;
}

QGraphicsItem* GraphicsItemManager::getGraphicsItem(const std::shared_ptr<PropertyItem>& item) const
{
    return item ? getGraphicsItem(item->getId()) : nullptr;
}

long GraphicsItemManager::getId(QGraphicsItem* item) const
{
    return item ? ids.right.at(item) : 0;
}

long GraphicsItemManager::findId(QGraphicsItem* item) const
{
    if (!item)
        return 0;
    const auto found = ids.right.find(item);
    return found == ids.right.end() ? 0 : found->second;
}

bool GraphicsItemManager::isSelectable(QGraphicsItem* item) const
{
    for (const auto& type : types) {
        if (type.second->isItem(item))
            return true;
    }
    return false;
}

std::unique_ptr<Handler> GraphicsItemManager::getItemHandler(QGraphicsItem* item) const
{
    for (const auto& type : types) {
        if (auto handler = type.second->itemHandler(item))
            return handler;
    }
    return nullptr;
}

void GraphicsItemManager::deleteItem(long id)
{
    QGraphicsItem* item = getGraphicsItem(id);
    if (!item)
        return;
    if (auto wrapper = getItem(item, id))
        wrapper->setParent(nullptr);

    // The child graphics items go with the item: forget their ids and handles first.
    std::vector<QGraphicsItem*> pending = {item};
    while (!pending.empty()) {
        QGraphicsItem* next = pending.back();
        pending.pop_back();
        const auto children = next->childItems();
        pending.insert(pending.end(), children.begin(), children.end());
        if (next == item)
            continue;
        const auto found = ids.right.find(next);
        if (found == ids.right.end())
            continue;
        if (scene)
            scene->deleteItemHandler(next);
        ids.right.erase(found);
    }
    if (scene)
        scene->deleteItemHandler(item);
    ids.left.erase(id);
    delete item;
}

QJsonArray GraphicsItemManager::toJson()
{
    QJsonArray array;
    if (!scene)
        return array;
    for (QGraphicsItem* item : scene->items(Qt::AscendingOrder)) {
        if (const auto wrapped = getItem(item))
            array.append(wrapped->getJsonValue());
    }
    return array;
}

void GraphicsItemManager::beginBatch()
{
    if (batchDepth++ > 0 || !scene)
        return;
    for (QGraphicsItem* item : scene->items()) {
        if (auto counted = dynamic_cast<graphics::CountItem*>(item))
            counted->setLayoutDeferred(true);
    }
}

void GraphicsItemManager::endBatch()
{
    if (batchDepth == 0 || --batchDepth > 0 || !scene)
        return;
    // Only charts whose counts moved are laid out again: a deletion leaves its gap where it was,
    // and undoing a text edit does not lay out every chart.
    std::vector<graphics::CountItem*> roots;
    for (QGraphicsItem* item : scene->items()) {
        if (auto counted = dynamic_cast<graphics::CountItem*>(item)) {
            counted->setLayoutDeferred(false);
            if (!counted->getCountParent() && counted->isLayoutPending())
                roots.push_back(counted);
        }
    }
    for (graphics::CountItem* root : roots)
        root->updateCountFromParent();
}

int GraphicsItemManager::fromJson(const QJsonArray& array)
{
    const Batch batch(*this);
    struct Adapter
    {
        GraphicsItemManager& manager;

        std::shared_ptr<PropertyItem> createItem(int type) { return manager.createItem(type); }
        std::shared_ptr<PropertyItem> getItem(long id) { return manager.getItem(id); }
        void setParent(long childId, long parentId)
        {
            const auto child = manager.getItem(childId);
            const auto parent = manager.getItem(parentId);
            if (child && parent)
                child->setParent(parent.get());
        }
    };
    return loadJson(Adapter{*this}, array);
}

} // namespace edit
} // namespace nu
