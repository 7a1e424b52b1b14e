#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <memory>
#include <utility>
#include <vector>

namespace Zem {
namespace Ontology {

// The values of a builder node: a few texts under text keys, kept sorted by key. Up to four
// live inside the node itself (a counted taxon has "scientific name", "rank", "count" and
// "accumCount"), so millions of nodes cost no allocation for their value maps.
class NodeData
{
public:
    using Entry = std::pair<QString, QString>;

    NodeData() = default;
    NodeData(const NodeData& other);
    NodeData& operator=(const NodeData& other);

    // The value as a variant holding text, or defaultValue when there is none.
    QVariant value(const QString& key, const QVariant& defaultValue = QVariant()) const;
    // The value, or nullptr when there is none.
    const QString* find(const QString& key) const;
    bool contains(const QString& key) const { return find(key) != nullptr; }
    // Sets the value of key, replacing an earlier one.
    void insert(const QString& key, const QString& value);
    // Takes the value of key away; false when there was none.
    bool remove(const QString& key);

    int size() const { return count; }
    bool isEmpty() const { return count == 0; }
    const Entry* begin() const { return entries(); }
    const Entry* end() const { return entries() + count; }

    QVariantMap toVariantMap() const;
    // Compact JSON with keys in order, as QJsonDocument writes it.
    QString toJson() const;

private:
    static constexpr int inlineCapacity = 4;

    const Entry* entries() const { return spill ? spill->data() : local; }
    Entry* entries() { return spill ? spill->data() : local; }

    Entry local[inlineCapacity];
    std::unique_ptr<std::vector<Entry>> spill;
    int count = 0;
};

} // namespace Ontology
} // namespace Zem
