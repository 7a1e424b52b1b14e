#pragma once

#include <utility>
#include <vector>

namespace nu {

// The depth of a tree: 1 for a node without children, otherwise one more than its deepest child.
// Node is a copyable handle whose children() returns a container of Node. Walked level by level,
// so a deep tree does not exhaust the stack.
template <typename Node>
int maxLevels(const Node& root)
{
    int levels = 0;
    std::vector<Node> level{root};
    std::vector<Node> next;
    while (!level.empty()) {
        ++levels;
        next.clear();
        for (const Node& node : level) {
            for (const Node& child : node.children())
                next.push_back(child);
        }
        std::swap(level, next);
    }
    return levels;
}

} // namespace nu
