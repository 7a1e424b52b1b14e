#pragma once

#include <QColor>
#include <QHash>
#include <QRgb>
#include <QString>

#include <vector>

namespace Sorvik {
namespace Viewer {

class ChartTree;
class Palette;

// The colour of every node of a chart, decided once on its whole tree, so that stepping in and
// out, the levels and the minimum share never change a taxon's colour. The taxa of the first
// level that branches (see ChartTree::getFirstBranchingLevel) each get a base colour of the
// palette (the largest the most distinct);
// a chart of several samples is coloured on all its samples added up, the same for each of them;
// the taxa below them take shades of it, lighter outward. Unclassified reads are grey in every
// palette. The nodes above the first branching have no colour (they are drawn in a faint grey).
// The same tree and palette always give the same colours.
class ColourMap
{
public:
    ColourMap() = default;

    // Colours given by key (see ChartTree::getKey) are taken as they are, for the taxa that this
    // chart shares with another; the remaining taxa get the remaining colours.
    static ColourMap assign(const ChartTree& tree, const Palette& palette,
                            const QHash<QString, QColor>& given = QHash<QString, QColor>());

    // The node's colour; invalid for a node without one.
    QColor colourOf(int node) const;
    bool hasColour(int node) const;
    int size() const { return static_cast<int>(colours.size()); }
    // Every coloured node's colour by its key, to match another chart's colours to this one.
    QHash<QString, QColor> byKey(const ChartTree& tree) const;
    // The nodes that got a base colour of their own, largest first.
    const std::vector<int>& getHueHolders() const { return holders; }

private:
    void paintSubtree(const ChartTree& tree, const Palette& palette, int top, const QColor& base, double hueRoom,
                      const QHash<QString, QColor>& given);

    // 0 (transparent) for a node without colour.
    std::vector<QRgb> colours;
    std::vector<int> holders;
};

} // namespace Viewer
} // namespace Sorvik
