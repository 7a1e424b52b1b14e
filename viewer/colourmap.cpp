#include "viewer/colourmap.h"

#include "viewer/charttree.h"
#include "viewer/palette.h"

#include <algorithm>

namespace Sorvik {
namespace Viewer {

namespace {

QRgb opaque(const QColor& colour)
{
    return colour.rgb() | 0xff000000u;
}

} // namespace

ColourMap ColourMap::assign(const ChartTree& tree, const Palette& palette, const QHash<QString, QColor>& given)
{
    // A chart of several samples is coloured on all of them together: a taxon has one colour in
    // every sample, whichever sample's tree is given.
    if (tree.getSampleCount() > 1 && tree.getSample() != ChartTree::allSamples)
        return assign(tree.ofSample(ChartTree::allSamples), palette, given);
    ColourMap map;
    map.colours.assign(static_cast<size_t>(tree.size()), 0);
    if (tree.isEmpty())
        return map;

    // Unclassified reads and everything below them: grey, taking no colour from the others.
    const QRgb grey = opaque(Palette::unassignedGrey());
    for (int i = 0; i < tree.size(); ++i) {
        const int parent = tree.at(i).parent;
        const bool greyParent = parent != ChartTree::none && map.colours[static_cast<size_t>(parent)] == grey;
        if (greyParent || tree.isUnassigned(i))
            map.colours[static_cast<size_t>(i)] = grey;
    }

    std::vector<int> holders;
    for (int node : tree.getFirstBranchingLevel()) {
        if (map.colours[static_cast<size_t>(node)] == 0)
            holders.push_back(node);
    }
    // The classic wheel goes round in drawing order; the other palettes give their most
    // distinct colours to the largest taxa.
    if (palette.getKind() != Palette::Kind::Classic) {
        std::stable_sort(holders.begin(), holders.end(),
                         [&tree](int a, int b) { return tree.at(a).total > tree.at(b).total; });
    }

    // Taxa shared with another chart keep its colours; the others take the palette's colours
    // that those leave free.
    std::vector<QColor> bases(holders.size());
    std::vector<QRgb> taken;
    for (size_t k = 0; k < holders.size(); ++k) {
        const auto found = given.constFind(tree.getKey(holders[k]));
        if (found != given.constEnd()) {
            bases[k] = *found;
            taken.push_back(opaque(*found));
        }
    }
    const std::vector<QColor> offered = palette.baseColours(static_cast<int>(holders.size() + taken.size()));
    size_t next = 0;
    for (size_t k = 0; k < holders.size(); ++k) {
        if (bases[k].isValid())
            continue;
        while (next + 1 < offered.size()
               && std::find(taken.begin(), taken.end(), opaque(offered[next])) != taken.end())
            ++next;
        bases[k] = offered[std::min(next, offered.size() - 1)];
        ++next;
    }
    // Siblings' shades may turn round the hue by up to half the way to the next base colour.
    const double hueRoom = std::min(0.12, 0.5 / std::max<size_t>(holders.size(), 1));
    for (size_t k = 0; k < holders.size(); ++k)
        map.paintSubtree(tree, palette, holders[k], bases[k], hueRoom, given);
    map.holders = std::move(holders);
    return map;
}

void ColourMap::paintSubtree(const ChartTree& tree, const Palette& palette, int top, const QColor& base,
                             double hueRoom, const QHash<QString, QColor>& given)
{
    struct Entry
    {
        int node;
        int depth;
        int sibling;
        int siblings;
    };
    std::vector<Entry> pending{{top, 0, 0, 1}};
    while (!pending.empty()) {
        const Entry e = pending.back();
        pending.pop_back();
        QRgb& colour = colours[static_cast<size_t>(e.node)];
        if (colour != 0)
            continue;
        const auto found = given.isEmpty() ? given.constEnd() : given.constFind(tree.getKey(e.node));
        colour = opaque(found != given.constEnd() ? *found : palette.shade(base, e.depth, e.sibling, e.siblings, hueRoom));
        const bool chain = tree.isChain(e.node);
        const int siblings = tree.countedChildren(e.node);
        int sibling = 0;
        for (int child : tree.at(e.node).children) {
            if (tree.at(child).total <= 0)
                continue;
            // A chain node is drawn as one with its child: they share a ring and a colour.
            if (chain)
                pending.push_back(Entry{child, e.depth, e.sibling, e.siblings});
            else
                pending.push_back(Entry{child, e.depth + 1, sibling++, siblings});
        }
    }
}

QColor ColourMap::colourOf(int node) const
{
    if (!hasColour(node))
        return QColor();
    return QColor::fromRgb(colours[static_cast<size_t>(node)]);
}

bool ColourMap::hasColour(int node) const
{
    return node >= 0 && static_cast<size_t>(node) < colours.size() && colours[static_cast<size_t>(node)] != 0;
}

QHash<QString, QColor> ColourMap::byKey(const ChartTree& tree) const
{
    QHash<QString, QColor> result;
    for (int i = 0; i < std::min(size(), tree.size()); ++i) {
        if (hasColour(i))
            result.insert(tree.getKey(i), colourOf(i));
    }
    return result;
}

} // namespace Viewer
} // namespace Sorvik
