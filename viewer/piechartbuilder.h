#pragma once

#include "ontology/reader.h"

#include <QColor>
#include <QString>
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

class PieChartItem;

// Reads one subtree of a counted ontology into a tree of chart slices: one slice per node down
// to the maximum level, dropping empty nodes and nodes below the minimum share with their whole
// subtrees (their counts stay in the parent as the unfilled part of its span). The finished
// tree is laid out and coloured. A start node with no count gives no chart.
class PieChartBuilder : public Zem::Ontology::Reader
{
public:
    // Deeper charts are unreadable, and the item tree is walked recursively when it is laid out.
    static constexpr int levelLimit = 200;

    // Adapts a slice for nu::graphics::operation::paintTreeColors.
    class ColorNode
    {
    public:
        explicit ColorNode(PieChartItem* item);
        std::vector<ColorNode> children() const;
        int getLevels() const;
        void setColor(const QColor& color);

    private:
        PieChartItem* item;
    };

    explicit PieChartBuilder(const Zem::Ontology::Ontology& ontology, const Position& start = Position());
    ~PieChartBuilder();

    // The start node is level 1. Values below 1 are ignored, values above levelLimit lowered to it.
    void setMaxLevels(int levels);
    int getMaxLevels() const { return maxLevels; }
    // The smallest share of the start node's count a slice must hold, in percent; not clamped.
    void setMinPercentage(double percent);
    double getMinPercentage() const { return minPercentage * 100; }

    // The root slice: while reading, the start node's slice; afterwards the finished chart, or
    // none when the start node had no count.
    PieChartItem* rootItem() const;
    // Hands the finished chart over; the builder keeps none.
    std::unique_ptr<PieChartItem> takeRootItem();
    // The open slice of the node being read; null when that node is dropped.
    PieChartItem* getItem() const;

    // The node's "scientific name", else its "name", else its id.
    static QString getName(const QString& id, const QVariantMap& data);

    void openNode(const QString& id, const QVariantMap& data, const Position& position) override;
    void closeNode(const QString& id, const QVariantMap& data) override;
    void applyColor();

protected:
    // The children of a dropped node, or of one on the last ring, are only walked past.
    bool shouldReadChildData() const override;

private:
    // A slice being read (none for a dropped node), with the number of its children kept so far.
    struct Open
    {
        std::unique_ptr<PieChartItem> item;
        int kept = 0;
    };

    int toSliceCount(qint64 count) const;
    // Whether a node below the start node gets a slice: it holds a count and at least the
    // minimum share.
    bool isKept(qint64 count) const;
    void attach(Open& parent, std::unique_ptr<PieChartItem> child);

    int maxLevels = 10;
    int level = 0;
    double minPercentage = 0.0;
    std::vector<Open> items;
    std::unique_ptr<PieChartItem> root;
    qint64 rootCount = 0;
    // Counts are shifted right by this many bits to fit a slice's int count (see toSliceCount).
    int countShift = 0;
};

} // namespace Viewer
} // namespace Sorvik
