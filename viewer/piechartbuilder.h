#pragma once

#include "ontology/reader.h"
#include "viewer/palette.h"

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

class ChartTree;
class ColourMap;
class PieChartItem;

// Reads one subtree of a counted ontology into a tree of chart slices: one ring per level down
// to the maximum level. A node with no own count and a single counted child is drawn as one
// slice with that child (unless collapsing is off), and rings are counted after that. Children
// below the minimum share are dropped with their subtrees; a slice's kept children lie side by
// side from its start, then one grey slice "N others" holds the dropped ones, and the rest of
// its span (its own count) stays empty. Colours come from the colour map of the whole tree, so
// they do not depend on the part read. A start node with no count gives no chart.
class PieChartBuilder : public Zem::Ontology::Reader
{
public:
    // Deeper charts are unreadable, and the item tree is walked recursively when it is laid out.
    static constexpr int levelLimit = 200;
    // How far beyond the outermost ring the labels of its slices may reach, in rings.
    static constexpr double labelBand = 1.5;

    explicit PieChartBuilder(const Zem::Ontology::Ontology& ontology, const Position& start = Position());
    ~PieChartBuilder();

    // The start node is level 1. Values below 1 are ignored, values above levelLimit lowered to it.
    void setMaxLevels(int levels);
    int getMaxLevels() const { return maxLevels; }
    // The smallest share of the start node's count a slice must hold, in percent; not clamped.
    void setMinPercentage(double percent);
    double getMinPercentage() const { return minPercentage * 100; }
    // Whether single-child chains are drawn as one slice (the default).
    void setCollapse(bool on) { collapse = on; }
    // Names as stored, rank prefixes and all, instead of cleaned ones.
    void setRawNames(bool on) { rawNames = on; }
    // The whole tree and its colours, when the caller keeps them between charts; without them
    // the builder reads the tree itself and colours it with the palette. The slices take the
    // tree's counts, so the tree of one sample (ChartTree::ofSample) draws that sample: give
    // every sample's tree the same colours for one colour per taxon.
    void setTree(std::shared_ptr<const ChartTree> tree, std::shared_ptr<const ColourMap> colours);
    void setPalette(const Palette& palette) { this->palette = palette; }

    // Reads the chart (the tree first, when none was given).
    void read();

    // The root slice: while reading, the start node's slice; afterwards the finished chart, or
    // none when the start node had no count.
    PieChartItem* rootItem() const;
    // Hands the finished chart over; the builder keeps none.
    std::unique_ptr<PieChartItem> takeRootItem();
    // The open slice of the node being read; null when that node has none.
    PieChartItem* getItem() const;

    // The node's "scientific name", else its "name", else its id.
    static QString getName(const QString& id, const QVariantMap& data);

    void openNode(const QString& id, const QVariantMap& data, const Position& position) override;
    void closeNode(const QString& id, const QVariantMap& data) override;
    // Colours the finished chart from the colour map.
    void applyColor();

protected:
    // The children of a dropped node, or of one on the last ring, are only walked past.
    bool shouldReadChildData() const override;

private:
    // Reads from the tree in memory instead of the file, from the tree's node top.
    void walk(int top);

    enum class Kind { Slice, Chain, Dropped, Beyond };
    // A node being read: a slice, a link of a chain drawn with its child, or none.
    struct Open
    {
        Kind kind = Kind::Dropped;
        std::unique_ptr<PieChartItem> item;
        int ring = 0;
        int kept = 0;
        // Children below the minimum share: how many and their total.
        int dropped = 0;
        qint64 droppedCount = 0;
        // For a chain link: how long the pending chain was before it.
        int chainMark = 0;
    };

    int toSliceCount(qint64 count) const;
    // Whether a node below the start node gets a slice: it holds a count and at least the
    // minimum share.
    bool isKept(qint64 count) const;
    Open* slicedParent();
    void finishSlice(Open& open);
    void attach(Open& parent, std::unique_ptr<PieChartItem> child);
    void addOthers(Open& open);
    void setLabelReaches();
    int nodeOf(const Position& position) const;

    QString fileName;
    int startRow = 0;
    int maxLevels = 10;
    int deepestRing = 0;
    double minPercentage = 0.0;
    bool collapse = true;
    bool rawNames = false;
    Palette palette;
    std::shared_ptr<const ChartTree> tree;
    std::shared_ptr<const ColourMap> colours;
    std::vector<Open> items;
    // The chain nodes above the next slice: drawn as one with it.
    QList<Position> chainPositions;
    QStringList chainNames;
    std::unique_ptr<PieChartItem> root;
    qint64 rootCount = 0;
    int othersMade = 0;
    // Counts are shifted right by this many bits to fit a slice's int count (see toSliceCount).
    int countShift = 0;
};

} // namespace Viewer
} // namespace Sorvik
