#pragma once

#include "ontology/builder.h"
#include "ontology/chartsamples.h"

#include <QHash>
#include <QStringList>

#include <vector>

namespace Zem {
namespace Ontology {

// The samples of a chart of several while it is built: each sample's own counts of the builder's
// nodes, kept apart from the nodes' values, then what every node holds in every sample once the
// tree is final, for the samples table (see ChartSamples). The builder counts the tree on all
// samples added up, so that trimming takes only what every sample lacks, and then gives the
// nodes the first sample's counts, as every reader that knows nothing of samples expects.
class SampleCounts
{
public:
    // A new sample; its number.
    int add(const QString& name);
    int size() const { return static_cast<int>(names.size()); }
    const QStringList& getNames() const { return names; }
    // Names made unique within the chart ("S1", "S1 (2)").
    void makeNamesUnique();

    // Adds count to the node's own count in the sample.
    void addCount(int sample, Builder::Node* node, qint64 count);
    // Moves the "count" values the builder's nodes hold into the sample, leaving them none.
    void take(int sample, Builder& builder);
    // Gives the sample's own counts back to the nodes as their "count" (a chart of one sample).
    void restore(int sample, Builder& builder) const;
    // Gives each node with a count in some sample the sum over all samples as its "count".
    void putSums(Builder& builder) const;
    // Once counted: the first sample's own and accumulated counts as the nodes' values.
    void putFirst(Builder& builder);

    // The row each node is written to, as the file is written.
    void noteRow(const Builder::Node& node, int row);
    // The samples as the file keeps them; the rows must all have been noted.
    std::vector<ChartSamples::Stored> encode(Builder& builder);

private:
    struct Own
    {
        Builder::Node* node;
        qint64 count;
    };
    // The counted tree, each node once, children before parents.
    struct Tree
    {
        std::vector<Builder::Node*> order;
        QHash<const Builder::Node*, int> index;
        // The children of order[i] are childIndex[childStart[i]] up to childStart[i + 1].
        std::vector<int> childStart;
        std::vector<int> childIndex;
    };

    void makeTree(Builder& builder);
    // One sample's own counts and totals over the tree's order.
    void totals(int sample, std::vector<qint64>& own, std::vector<qint64>& total) const;

    QStringList names;
    std::vector<std::vector<Own>> owns;
    std::vector<const Builder::Node*> rows;
    Tree tree;
    bool treeMade = false;
};

} // namespace Ontology
} // namespace Zem
