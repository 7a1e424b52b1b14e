#pragma once

#include "nu/edit/propertyset.h"

#include <deque>
#include <unordered_map>
#include <vector>

namespace nu {
namespace edit {

class ItemManager;
class PropertyItem;

// Undo and redo of the editor's changes. A caller brackets every user action with changeBegin()
// and changeEnd(), and within it calls changeItem() before changing an item, deleteItem() before
// deleting one and createItem() after creating one; the action becomes one step, holding the
// state before the action of what it changed. Undoing a step restores that state (re-creating
// deleted items under their ids, deleting created ones) after recording the state it replaces,
// which redo restores in the same way.
class UndoManager
{
public:
    // The state of one item: its properties (all, or those a change touched), id, parent and type.
    class Data
    {
    public:
        explicit Data(const PropertyItem& item);

        // Keeps only what differs from the item now; false when nothing does, parent included.
        bool undoDiff(const PropertyItem& item);

        const PropertySet::Data& getSnapshot() const { return snapshot; }
        PropertySet::Data& getSnapshot() { return snapshot; }
        long getId() const { return id; }
        long getParentId() const { return parentId; }
        int getType() const { return type; }

    private:
        PropertySet::Data snapshot;
        long id;
        long parentId;
        int type;
    };

    // One step: the states to restore, at most one per item in the order the items were first
    // touched, and the ids of the items to delete (those the action created), in creation order.
    class DataSet
    {
    public:
        using Items = std::vector<Data>;

        bool isEmpty() const { return items.empty() && created.empty(); }
        Items::iterator find(long id);
        Items::const_iterator find(long id) const;
        Items::const_iterator end() const { return items.end(); }
        // Records the item's state unless the step already has one for it (the oldest is kept).
        void insert(const PropertyItem& item);
        // Records the item's state, replacing any the step has for it.
        void replace(const PropertyItem& item);
        // True when the step has no state of the item, or the item differs from it.
        bool undoDiff(const PropertyItem& item);
        void addCreated(long id) { created.push_back(id); }
        void addState(Data data);

        const Items& getItems() const { return items; }
        const std::vector<long>& getCreated() const { return created; }

    private:
        Items items;
        // Where each id's state is in items: a step deleting a whole chart holds thousands.
        std::unordered_map<long, std::size_t> positions;
        std::vector<long> created;
    };

    explicit UndoManager(ItemManager& manager);
    ItemManager& getItemManager() const { return manager; }

    UndoManager(const UndoManager&) = delete;
    UndoManager& operator=(const UndoManager&) = delete;

    void changeBegin();
    void changeItem(const PropertyItem& item);
    void deleteItem(const PropertyItem& item);
    void createItem(const PropertyItem& item);
    // Keeps the step if it changed anything; a kept step ends what could be redone.
    void changeEnd();

    void undo();
    void redo();
    bool canUndo() const { return !undoSteps.empty(); }
    bool canRedo() const { return !redoSteps.empty(); }
    int getUndoCount() const { return int(undoSteps.size()); }
    int getRedoCount() const { return int(redoSteps.size()); }
    // Marks the present state as the saved one.
    void setClean();
    // Whether the state is the one last marked clean (at first: the empty history). Undo and redo
    // can come back to it; a new step after undoing past it leaves it out of reach.
    bool isClean() const { return cleanDepth == int(undoSteps.size()); }
    // Whether the state differs from the one last marked clean.
    bool hasChanged() const { return !isClean(); }
    // Forgets every step; the state is clean.
    void clear();

private:
    // Restores the step and returns the step that restores what it replaced.
    DataSet apply(const DataSet& step);

    ItemManager& manager;
    std::deque<DataSet> undoSteps;
    std::deque<DataSet> redoSteps;
    DataSet current;
    // How many steps could be undone in the clean state; -1 when it can no longer be reached.
    int cleanDepth = 0;
};

} // namespace edit
} // namespace nu
