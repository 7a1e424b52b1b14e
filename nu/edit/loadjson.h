#pragma once

#include "nu/edit/propertyitem.h"

#include <QJsonArray>
#include <QJsonObject>

#include <unordered_map>
#include <utility>
#include <vector>

namespace nu {
namespace edit {

// Parent links deeper than this are not made (the item stays at the top level): the graphics
// scene paints and deletes item trees recursively.
constexpr int MaxItemNesting = 1000;

// For elements given as (file id, file parent id), parent id 0 meaning none and the last element
// of an id being the one a parent id names: which elements lie on a parent cycle, and which
// parent links would nest an element deeper than MaxItemNesting.
struct ParentLinks
{
    std::vector<bool> onCycle;
    std::vector<bool> tooDeep;
};
ParentLinks checkParentLinks(const std::vector<std::pair<long, long>>& elements);

// Loads the items of a chart file's "data" array. The adapter gives createItem(int type) (a new
// item under a fresh id, or empty for a type it cannot make), getItem(long id) and
// setParent(long childId, long parentId). Every item gets a fresh id; the file's ids only link
// children to parents within the file, after all properties are set. Elements that are not
// objects, whose "type" is not a number or whose "data" is not an object, whose type cannot be
// made, or that lie on a parent cycle are skipped; an item whose parent is missing stays at the
// top level. Returns how many elements were skipped.
template <class Adapter>
int loadJson(Adapter&& adapter, const QJsonArray& array)
{
    const QString idKey = QStringLiteral("id");
    const QString parentIdKey = QStringLiteral("parent-id");
    const QString typeKey = QStringLiteral("type");
    const QString dataKey = QStringLiteral("data");

    int skipped = 0;
    std::vector<QJsonObject> elements;
    std::vector<std::pair<long, long>> ids;
    for (const QJsonValue& value : array) {
        const QJsonObject element = value.toObject();
        if (!value.isObject() || !element.value(typeKey).isDouble() || !element.value(dataKey).isObject()) {
            ++skipped;
            continue;
        }
        elements.push_back(element);
        ids.emplace_back(element.value(idKey).toInt(), element.value(parentIdKey).toInt());
    }
    const ParentLinks links = checkParentLinks(ids);

    std::unordered_map<long, long> newIds;
    std::vector<std::pair<long, long>> parents;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (links.onCycle[i]) {
            ++skipped;
            continue;
        }
        const auto item = adapter.createItem(elements[i].value(typeKey).toInt());
        if (!item) {
            ++skipped;
            continue;
        }
        newIds[ids[i].first] = item->getId();
        parents.emplace_back(item->getId(), links.tooDeep[i] ? 0 : ids[i].second);
        item->setJsonValue(elements[i]);
    }

    for (const auto& link : parents) {
        const auto parent = link.second == 0 ? newIds.end() : newIds.find(link.second);
        adapter.setParent(link.first, parent == newIds.end() ? 0 : parent->second);
    }
    return skipped;
}

} // namespace edit
} // namespace nu
