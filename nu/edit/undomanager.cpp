#include "nu/edit/undomanager.h"

#include "nu/edit/itemmanager.h"
#include "nu/edit/propertyitem.h"


namespace nu {
namespace edit {

UndoManager::Data::Data(const PropertyItem& item)
    : snapshot(item)
    , id(item.getId())
    , parentId(item.getParentId())
    , type(item.getType())
{
}

bool UndoManager::Data::undoDiff(const PropertyItem& item)
{
    const bool propertiesDiffer = snapshot.undoDiff(item);
    return propertiesDiffer || parentId != item.getParentId();
}

UndoManager::DataSet::Items::iterator UndoManager::DataSet::find(long id)
{
    const auto found = positions.find(id);
    return found == positions.end() ? items.end() : items.begin() + found->second;
}

UndoManager::DataSet::Items::const_iterator UndoManager::DataSet::find(long id) const
{
    const auto found = positions.find(id);
    return found == positions.end() ? items.end() : items.begin() + found->second;
}

void UndoManager::DataSet::addState(Data data)
{
    positions[data.getId()] = items.size();
    items.push_back(std::move(data));
}

void UndoManager::DataSet::insert(const PropertyItem& item)
{
    if (find(item.getId()) == items.end())
        addState(Data(item));
}

void UndoManager::DataSet::replace(const PropertyItem& item)
{
    const auto found = find(item.getId());
    if (found == items.end())
        addState(Data(item));
    else
        *found = Data(item);
}

bool UndoManager::DataSet::undoDiff(const PropertyItem& item)
{
    const auto found = find(item.getId());
    return found == items.end() || found->undoDiff(item);
}

UndoManager::UndoManager(ItemManager& manager)
    : manager(manager)
{
}

void UndoManager::changeBegin()
{
    current = DataSet();
}

void UndoManager::changeItem(const PropertyItem& item)
{
    current.insert(item);
}

void UndoManager::deleteItem(const PropertyItem& item)
{
    current.insert(item);
}

void UndoManager::createItem(const PropertyItem& item)
{
    current.addCreated(item.getId());
}

void UndoManager::changeEnd()
{
    DataSet step;
    for (const Data& recorded : current.getItems()) {
        const auto item = manager.getItem(recorded.getId());
        if (!item) {
            // Deleted within the step: kept whole, so that undo can re-create it.
            step.addState(recorded);
            continue;
        }
        Data reduced = recorded;
        if (reduced.undoDiff(*item))
            step.addState(std::move(reduced));
    }
    for (long id : current.getCreated())
        step.addCreated(id);
    current = DataSet();
    if (step.isEmpty())
        return;
    // The clean state was undone and is dropped with the redo steps.
    if (cleanDepth > int(undoSteps.size()))
        cleanDepth = -1;
    undoSteps.push_back(std::move(step));
    redoSteps.clear();
}

void UndoManager::setClean()
{
    cleanDepth = int(undoSteps.size());
}

void UndoManager::undo()
{
    if (undoSteps.empty())
        return;
    const DataSet step = std::move(undoSteps.back());
    undoSteps.pop_back();
    redoSteps.push_back(apply(step));
}

void UndoManager::redo()
{
    if (redoSteps.empty())
        return;
    const DataSet step = std::move(redoSteps.back());
    redoSteps.pop_back();
    undoSteps.push_back(apply(step));
}

void UndoManager::clear()
{
    undoSteps.clear();
    redoSteps.clear();
    current = DataSet();
    cleanDepth = 0;
}

UndoManager::DataSet UndoManager::apply(const DataSet& step)
{
    // What the step is about to replace, before anything changes.
    DataSet inverse;
    for (const Data& recorded : step.getItems()) {
        if (const auto item = manager.getItem(recorded.getId())) {
            Data now(*item);
            now.getSnapshot().keepOnly(recorded.getSnapshot());
            inverse.addState(std::move(now));
        } else {
            // The step re-creates it; going back deletes it again.
            inverse.addCreated(recorded.getId());
        }
    }
    for (long id : step.getCreated()) {
        // The step deletes it; going back re-creates it whole.
        if (const auto item = manager.getItem(id))
            inverse.replace(*item);
    }

    const ItemManager::Batch batch(manager);
    // Every item first, so that parents exist whatever the order of the entries. A re-created
    // item takes its values before it joins its parent: a chart slice then brings its count along
    // as it is attached, which fills the gap its deletion left in the parent's total instead of
    // counting it a second time. Offsets from the parent survive the attachment.
    std::vector<std::shared_ptr<PropertyItem>> items;
    for (const Data& recorded : step.getItems()) {
        auto item = manager.getItem(recorded.getId());
        if (!item) {
            item = manager.createItem(recorded.getId(), recorded.getType());
            if (item)
                item->set(recorded.getSnapshot());
        }
        items.push_back(std::move(item));
    }
    for (std::size_t i = 0; i < items.size(); ++i) {
        const Data& recorded = step.getItems()[i];
        std::shared_ptr<PropertyItem>& item = items[i];
        if (!item)
            continue;
        if (item->getParentId() != recorded.getParentId()) {
            const auto parent = recorded.getParentId() ? manager.getItem(recorded.getParentId()) : nullptr;
            item->setParent(parent.get());
            // A new wrapper: which properties an item has can depend on its parent.
            item = manager.getItem(recorded.getId());
        }
        item->set(recorded.getSnapshot());
    }
    for (long id : step.getCreated())
        manager.deleteItem(id);
    return inverse;
}

} // namespace edit
} // namespace nu
