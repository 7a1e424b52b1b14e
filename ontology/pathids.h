#pragma once

#include "ontology/builder.h"

#include <QString>
#include <QStringView>

#include <vector>

namespace Zem {
namespace Ontology {

// Gives the nodes of path formats (Krona, QIIME) their ids. A node is its path of names from the
// root: two lines reach the same node only when their names agree from the root down, however
// often a name recurs elsewhere ("unclassified", empty ranks). The root is "root" and has no name;
// every other node gets a short id that no other node of the builder has ("p" and a number) and
// its name as the value "name", so memory grows with the number of nodes, not with the length of
// their paths. Counts given for a path add up, with what the node held before.
class PathIds
{
public:
    static constexpr int root = 0;

    // Makes "root" the builder's root.
    explicit PathIds(Builder& builder);

    // The node called name below parent; created and linked the first time.
    int child(int parent, QStringView name);
    QString getId(int node) const;
    int size() const { return static_cast<int>(nodes.size()); }

    void addCount(int node, qint64 count);
    // Gives every node that received a count its sum as the value "count".
    void writeCounts();

private:
    struct PathNode
    {
        Builder::Node* node;
        QString name;
        int parent;
        bool counted;
        qint64 count;
    };
    // Open addressing on (hash of parent and name, path node + 1).
    struct Slot
    {
        uint hash;
        int node;
    };

    static uint hashOf(int parent, QStringView name);
    void growTable();

    Builder& builder;
    std::vector<PathNode> nodes;
    std::vector<Slot> table;
    // The number of the last id given.
    qint64 lastNumber = 0;
};

} // namespace Ontology
} // namespace Zem
