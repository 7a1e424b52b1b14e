#include "ontology/pathids.h"

#include "ontology/builder.h"

#include <limits>

namespace Zem {
namespace Ontology {

namespace {

const QString rootId = QStringLiteral("root");
const QString nameKey = QStringLiteral("name");
const QString countKey = QStringLiteral("count");

} // namespace

PathIds::PathIds(Builder& target)
    : builder(target)
    , counts(1, 0)
    , counted(1, false)
{
    builder.addRoot(rootId);
    nodes.push_back(builder.getRoot());
}

int PathIds::child(int parent, const QString& name)
{
    const QPair<int, QString> key(parent, name);
    auto it = children.constFind(key);
    if (it != children.constEnd())
        return it.value();
    const int node = static_cast<int>(counts.size());
    children.insert(key, node);
    counts.push_back(0);
    counted.push_back(false);
    Builder::Node* made = builder.getNode(getId(node));
    builder.addChild(nodes[static_cast<size_t>(parent)], made);
    made->data.insert(nameKey, name);
    nodes.push_back(made);
    return node;
}

QString PathIds::getId(int node) const
{
    return node == root ? rootId : QLatin1Char('p') + QString::number(node);
}

void PathIds::addCount(int node, qint64 count)
{
    qint64& sum = counts[static_cast<size_t>(node)];
    if (__builtin_add_overflow(sum, count, &sum))
        sum = count > 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
    counted[static_cast<size_t>(node)] = true;
}

bool PathIds::hasCount(int node) const
{
    return counted[static_cast<size_t>(node)];
}

void PathIds::writeCounts()
{
    for (size_t node = 0; node < counts.size(); ++node) {
        if (counted[node])
            nodes[node]->data.insert(countKey, QString::number(counts[node]));
    }
}

} // namespace Ontology
} // namespace Zem
