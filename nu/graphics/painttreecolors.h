#pragma once

#include "nu/cyclicrange.h"
#include "nu/graphics/color.h"

#include <QColor>

#include <vector>

namespace nu {
namespace graphics {
namespace operation {

// Colours a tree: the root white, each of its children a hue of its own (the hue circle shared
// out equally), and every ring further out lighter by the same step, from full saturation at
// lightness 0.5 towards 0.9; the step is fixed by the depth of the whole tree.
//
// Node is a copyable handle offering children() (a container of Node, in drawing order),
// getLevels() (the depth of its subtree, 1 for a leaf) and setColor(const QColor&).

// Gives node the colour and each ring below it one more step, for levels rings in all.
template <typename Node>
void paintTree(Node node, const Color& colour, const Color& step, int levels)
{
    struct Entry
    {
        Node node;
        Color colour;
        int levels;
    };
    std::vector<Entry> pending{Entry{node, colour, levels}};
    while (!pending.empty()) {
        Entry entry = pending.back();
        pending.pop_back();
        if (entry.levels <= 0)
            continue;
        entry.node.setColor(entry.colour.toQColor());
        for (const Node& child : entry.node.children())
            pending.push_back(Entry{child, entry.colour + step, entry.levels - 1});
    }
}

template <typename Node>
void paintTree(Node node, const QColor& begin, const QColor& end, int levels)
{
    const Color first(begin);
    paintTree(node, first, (Color(end) - first) / levels, levels);
}

template <typename Node>
void paintTreeColors(Node root)
{
    root.setColor(QColor(Qt::white));
    const int levels = root.getLevels();
    const auto children = root.children();
    if (children.empty())
        return;
    CyclicRange range = CyclicRange(0.0, 1.0) / static_cast<int>(children.size());
    for (const Node& child : children) {
        const double hue = range.getCenter();
        QColor begin;
        begin.setHslF(hue, 1.0, 0.5, 1.0);
        QColor end;
        end.setHslF(hue, 1.0, 0.9, 1.0);
        paintTree(child, begin, end, levels);
        ++range;
    }
}

} // namespace operation
} // namespace graphics
} // namespace nu
