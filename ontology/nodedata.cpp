#include "ontology/nodedata.h"

#include "nu/compactjson.h"

#include <algorithm>

namespace Zem {
namespace Ontology {

NodeData::NodeData(const NodeData& other)
{
    *this = other;
}

NodeData& NodeData::operator=(const NodeData& other)
{
    if (this == &other)
        return *this;
    count = 0;
    spill.reset();
    for (int i = 0; i < inlineCapacity; ++i)
        local[i] = Entry();
    for (const Entry& entry : other)
        insert(entry.first, entry.second);
    return *this;
}

const QString* NodeData::find(const QString& key) const
{
    const Entry* first = entries();
    for (int i = 0; i < count; ++i) {
        if (first[i].first == key)
            return &first[i].second;
    }
    return nullptr;
}

QVariant NodeData::value(const QString& key, const QVariant& defaultValue) const
{
    const QString* found = find(key);
    return found ? QVariant(*found) : defaultValue;
}

void NodeData::insert(const QString& key, const QString& value)
{
    Entry* first = entries();
    Entry* last = first + count;
    Entry* at = std::lower_bound(first, last, key, [](const Entry& entry, const QString& k) { return entry.first < k; });
    if (at != last && at->first == key) {
        at->second = value;
        return;
    }
    const int index = int(at - first);
    if (spill) {
        spill->insert(spill->begin() + index, Entry(key, value));
    } else if (count < inlineCapacity) {
        for (int i = count; i > index; --i)
            local[i] = std::move(local[i - 1]);
        local[index] = Entry(key, value);
    } else {
        spill = std::make_unique<std::vector<Entry>>();
        spill->reserve(inlineCapacity * 2);
        for (int i = 0; i < count; ++i)
            spill->push_back(std::move(local[i]));
        spill->insert(spill->begin() + index, Entry(key, value));
    }
    ++count;
}

bool NodeData::remove(const QString& key)
{
    Entry* first = entries();
    for (int i = 0; i < count; ++i) {
        if (first[i].first != key)
            continue;
        if (spill) {
            spill->erase(spill->begin() + i);
        } else {
            for (int j = i; j + 1 < count; ++j)
                local[j] = std::move(local[j + 1]);
            local[count - 1] = Entry();
        }
        --count;
        return true;
    }
    return false;
}

QVariantMap NodeData::toVariantMap() const
{
    QVariantMap map;
    for (const Entry& entry : *this)
        map.insert(entry.first, entry.second);
    return map;
}

QString NodeData::toJson() const
{
    return nu::toCompactJsonText(entries(), count);
}

} // namespace Ontology
} // namespace Zem
