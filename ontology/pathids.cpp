#include "ontology/pathids.h"

#include "ontology/nodekeys.h"
#include "ontology/source.h"

#include <QHash>

#include <limits>

namespace Zem {
namespace Ontology {

namespace {

const QString rootId = QStringLiteral("root");

} // namespace

PathIds::PathIds(Builder& target)
    : builder(target)
{
    builder.addRoot(rootId);
    nodes.push_back({builder.getRoot(), QString(), -1, false, 0});
    growTable();
}

uint PathIds::hashOf(int parent, QStringView name)
{
    return qHash(name, uint(parent) * 0x9e3779b9u);
}

void PathIds::growTable()
{
    std::vector<Slot> grown(table.empty() ? 1024 : table.size() * 2, Slot{0, 0});
    const size_t mask = grown.size() - 1;
    for (size_t i = 1; i < nodes.size(); ++i) {
        const uint h = hashOf(nodes[i].parent, nodes[i].name);
        size_t at = h & mask;
        while (grown[at].node != 0)
            at = (at + 1) & mask;
        grown[at] = {h, int(i) + 1};
    }
    table.swap(grown);
}

int PathIds::child(int parent, QStringView name)
{
    const uint h = hashOf(parent, name);
    size_t mask = table.size() - 1;
    size_t at = h & mask;
    for (; table[at].node != 0; at = (at + 1) & mask) {
        if (table[at].hash != h)
            continue;
        const PathNode& candidate = nodes[size_t(table[at].node - 1)];
        if (candidate.parent == parent && QStringView(candidate.name) == name)
            return table[at].node - 1;
    }

    const int index = int(nodes.size());
    // Ids that another source gave (a copied chart of paths) are passed over.
    QString id;
    do {
        id = QLatin1Char('p') + QString::number(++lastNumber);
    } while (builder.findNode(id));
    Builder::Node* made = builder.getNode(id);
    builder.addChild(nodes[size_t(parent)].node, made);
    const QString text = name.toString();
    made->data.insert(NodeKey::name, text);
    nodes.push_back({made, text, parent, false, 0});
    if (nodes.size() * 2 > table.size()) {
        growTable();
    } else {
        table[at] = {h, index + 1};
    }
    return index;
}

QString PathIds::getId(int node) const
{
    return nodes[size_t(node)].node->id;
}

void PathIds::addCount(int node, qint64 count)
{
    PathNode& path = nodes[size_t(node)];
    if (__builtin_add_overflow(path.count, count, &path.count))
        path.count = count > 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
    path.counted = true;
}

void PathIds::writeCounts()
{
    // Added to what the node holds, and then forgotten: the next path source's counts add up
    // with these, and a sample taken apart in between starts from none.
    for (PathNode& path : nodes) {
        if (!path.counted)
            continue;
        qint64 sum = path.count;
        if (const QString* earlier = path.node->data.find(NodeKey::count))
            sum = Source::addCounts(earlier->toLongLong(), sum);
        path.node->data.insert(NodeKey::count, QString::number(sum));
        path.count = 0;
        path.counted = false;
    }
}

} // namespace Ontology
} // namespace Zem
