#pragma once

#include "nu/edit/handler.h"
#include "nu/edit/idgenerator.h"
#include "nu/edit/itemmanager.h"

#include <QJsonArray>
#include <QMetaObject>
#include <QPointer>

#include <boost/bimap.hpp>
#include <boost/bimap/unordered_set_of.hpp>

#include <map>
#include <memory>

class QGraphicsItem;

namespace nu {
namespace edit {

class Scene;

// Gives every editable graphics item of a scene an id, knows the editable item types by their
// type number, creates items by type, wraps a graphics item in its editable item on demand (a new
// wrapper on every lookup), deletes items, and turns the scene into a chart file's "data" array
// and back.
class GraphicsItemManager : public ItemManager
{
public:
    // One editable item type: makes its graphics items, recognises them, wraps them and makes
    // their handles.
    class BaseItemType
    {
    public:
        virtual ~BaseItemType();
        // A new graphics item with default geometry and no parent.
        virtual std::unique_ptr<QGraphicsItem> buildItem() = 0;
        // Empty when the graphics item is of another type.
        virtual std::shared_ptr<PropertyItem> wrapItem(QGraphicsItem& item, long id, long parentId) = 0;
        // The item's knobs, placed in the item's scene; null when the item is of another type.
        virtual std::unique_ptr<Handler> itemHandler(QGraphicsItem* item) = 0;
        virtual bool isItem(QGraphicsItem* item) = 0;
    };

    // The registry entry of an editable item type T (a PropertyGraphicsItem).
    template <class T>
    class ItemType : public BaseItemType
    {
        using Graphics = typename T::GraphicsItem;

    public:
        std::unique_ptr<QGraphicsItem> buildItem() override { return std::make_unique<Graphics>(); }
        std::shared_ptr<PropertyItem> wrapItem(QGraphicsItem& item, long id, long parentId) override
        {
            auto graphics = dynamic_cast<Graphics*>(&item);
            return graphics ? std::make_shared<T>(*graphics, id, parentId) : nullptr;
        }
        std::unique_ptr<Handler> itemHandler(QGraphicsItem* item) override
        {
            auto graphics = dynamic_cast<Graphics*>(item);
            return graphics ? std::make_unique<typename T::ItemHandler>(*graphics) : nullptr;
        }
        bool isItem(QGraphicsItem* item) override { return dynamic_cast<Graphics*>(item) != nullptr; }
    };

    GraphicsItemManager();
    ~GraphicsItemManager() override;

    GraphicsItemManager(const GraphicsItemManager&) = delete;
    GraphicsItemManager& operator=(const GraphicsItemManager&) = delete;

    template <class T>
    void registerType()
    {
        types[T::TypeId] = std::make_shared<ItemType<T>>();
    }
    bool isRegistered(int type) const { return types.count(type) > 0; }

    // Items are created in this scene. Forgets the items of a former scene.
    void setScene(Scene& scene);
    Scene* getScene() const;
    // Forgets every item, restarts the ids at 1 and empties the scene.
    void reset();

    std::shared_ptr<PropertyItem> createItem(int type) override;
    // Empty, and nothing built, for an unknown type, an id not above 0, an id in use or no scene.
    std::shared_ptr<PropertyItem> createItem(long id, int type) override;
    // Null for an unknown type.
    std::unique_ptr<QGraphicsItem> buildItem(int type) const;

    std::shared_ptr<PropertyItem> getItem(long id) override;
    // Empty for null and for graphics items without an id.
    std::shared_ptr<PropertyItem> getItem(QGraphicsItem* item);
    std::shared_ptr<PropertyItem> getItem(QGraphicsItem* item, long id);
    QGraphicsItem* getGraphicsItem(long id) const;
    QGraphicsItem* getGraphicsItem(const std::shared_ptr<PropertyItem>& item) const;
    // 0 for null; throws std::out_of_range for a graphics item that has no id.
    long getId(QGraphicsItem* item) const;
    // 0 for null and for a graphics item that has no id.
    long findId(QGraphicsItem* item) const;
    bool isSelectable(QGraphicsItem* item) const;
    // The knobs of the first registered type the item is of; null for none.
    std::unique_ptr<Handler> getItemHandler(QGraphicsItem* item) const;
    // Detaches the item from its parent, drops its handle and deletes it with its child graphics
    // items; the ids of those children are forgotten too.
    void deleteItem(long id) override;

    // Every item of the scene that has an id and a registered type, in ascending stacking order.
    QJsonArray toJson();
    // Adds the items of a chart file under fresh ids; returns how many elements were skipped.
    int fromJson(const QJsonArray& array);

protected:
    // Chart slices are laid out once at the end of the outermost batch instead of on every count
    // change: building or restoring a chart slice by slice would lay it out again each time.
    void beginBatch() override;
    void endBatch() override;

private:
    using IdMap = boost::bimap<boost::bimaps::unordered_set_of<long>, boost::bimaps::unordered_set_of<QGraphicsItem*>>;

    void forgetScene();

    IdMap ids;
    QPointer<Scene> scene;
    QMetaObject::Connection sceneDestroyed;
    IdGenerator idGenerator;
    std::map<int, std::shared_ptr<BaseItemType>> types;
    int batchDepth = 0;
};

} // namespace edit
} // namespace nu
