#pragma once

#include "ontology/reader.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <memory>
#include <vector>

namespace Zem {
namespace Ontology {
class Ontology;
}
} // namespace Zem

namespace Sorvik {
namespace Viewer {

// The outline of a chart's whole tree, held in memory: for every node its name, counts, parent
// and children, and where it lies in the file. What must be decided on the whole tree rather
// than on the part on screen is decided here: the colours, which nodes form single-child chains,
// the full path above the chart's centre, and what names empty ranks take. Node 0 is the root.
//
// Samples: a chart may count several samples over one tree. The nodes' counts are one sample's
// (the first, as read); ofSample() gives the same tree, node for node, with another sample's
// counts, or with all samples added up. To draw sample s, give a PieChartBuilder the tree
// ofSample(s) with the colours of the tree as read (ColourMap::assign colours a chart of several
// samples on all of them together, so a taxon keeps its colour in every sample).
class ChartTree
{
public:
    static constexpr int none = -1;
    // The sample number of a tree whose counts are all samples' added up.
    static constexpr int allSamples = -2;

    struct Sample
    {
        QString name;
        // The root's total in the sample.
        qint64 total = 0;
    };

    struct Node
    {
        // The node's id in its file.
        QString id;
        QString rawName;
        // Whether rawName is a name the file gives; otherwise it is the node's id, shown as it is.
        bool named = true;
        // The NCBI taxon id, for taxa placed in the NCBI taxonomy; empty for path-based charts.
        QString taxid;
        // The rank a classifier or the taxonomy gives, as written; empty when none is known.
        QString rank;
        qint64 count = 0;
        qint64 total = 0;
        int parent = none;
        // The node's row in the file; none for a node not read from one.
        int row = none;
        // The row where the node's children's block begins, for stepping to the node.
        int childrenStart = none;
        std::vector<int> children;
    };

    // Reads the whole file and its samples; throws what the reader throws, and
    // ChartSamples::InvalidFormatException for a damaged samples table.
    static ChartTree read(const Zem::Ontology::Ontology& ontology);

    // The chart's samples in their order; a chart of one sample has one, named after its file
    // (a tree not read from a file: one named "sample").
    std::vector<Sample> getSamples() const;
    int getSampleCount() const;
    // The sample of this name, or none.
    int indexOfSample(const QString& name) const;
    // Whose counts the nodes hold: a sample's number, or allSamples.
    int getSample() const { return sample; }
    // This tree with the counts of the sample (0 for a node it lacks), or of all samples added
    // up (allSamples). Throws ChartSamples::InvalidFormatException for a damaged table.
    ChartTree ofSample(int sample) const;
    // One sample's own and accumulated counts, one per node in the tree's order.
    void getCounts(int sample, std::vector<qint64>& counts, std::vector<qint64>& totals) const;

    // Adds a node below parent (none for the root, which must come first); returns its index.
    int add(int parent, const QString& rawName, qint64 count, qint64 total, const QString& taxid = QString(),
            int row = none, bool named = true);
    // The node's id in its file and its rank, for what is read from one.
    void setIdentity(int node, const QString& id, const QString& rank);

    int size() const { return static_cast<int>(nodes.size()); }
    bool isEmpty() const { return nodes.empty(); }
    const Node& at(int node) const { return nodes[static_cast<size_t>(node)]; }
    // The node read from this row of the file, or none.
    int indexOfRow(int row) const;
    // Where the node lies in the file, for drawing a chart from it.
    Zem::Ontology::Reader::Position getPosition(int node) const;
    // The positions of the node's ancestors, nearest first, up to the root.
    QList<Zem::Ontology::Reader::Position> getParentPositions(int node) const;

    // What identifies the node in any chart: "taxid:N" for NCBI-placed taxa, otherwise
    // "path:" and its names below the root, so that charts of the same input match.
    QString getKey(int node) const;
    // The node whose key this is, or none.
    int indexOfKey(const QString& key) const;

    // A node with no own count and exactly one child that holds a count (all of the node's):
    // drawn as one with it.
    bool isChain(int node) const;
    // A child holding at least this share of its parent's classified reads dominates it: the
    // level does not count as branching, and the hues go on below that child.
    static constexpr double dominantShare = 0.9;
    // The taxa of the first level that branches, which get a hue each: going down from the root
    // through single children and dominant ones (the dominant taxon's small siblings get hues
    // too), then the classified children of the first node that really branches. Unclassified
    // reads take no part. A chart that never branches gives its deepest taxon.
    std::vector<int> getFirstBranchingLevel() const;
    // Reads that no taxon holds ("unclassified"), by the node's name.
    bool isUnassigned(int node) const;

    // The name shown for the node: its own name cleaned of rank prefixes (or as stored when raw
    // is true); an empty rank is "unclassified" and the name of the nearest named ancestor.
    QString getName(int node, bool raw = false) const;
    // The shown names from the root down to the node.
    QStringList getPath(int node, bool raw = false) const;
    // The number of counted children (total above 0).
    int countedChildren(int node) const;

    // The node's name in its file: its "scientific name", else its "name", else its id.
    static QString nameOf(const QString& id, const QVariantMap& data);

private:
    class Loader;
    struct SampleTable;

    void setCounts(const std::vector<qint64>& counts, const std::vector<qint64>& totals);

    QString cleanName(int node) const;

    std::vector<Node> nodes;
    std::vector<int> byRow;
    // The shown names, cleaned once: charts are redrawn from the same tree many times.
    mutable std::vector<QString> shownNames;
    mutable QHash<QString, int> byKey;
    // The samples of the file, kept encoded (shared by every tree of the same chart).
    std::shared_ptr<const SampleTable> samples;
    int sample = 0;
};

} // namespace Viewer
} // namespace Sorvik
