#include "nu/edit/loadjson.h"

namespace nu {
namespace edit {

ParentLinks checkParentLinks(const std::vector<std::pair<long, long>>& elements)
{
    const std::size_t count = elements.size();
    std::unordered_map<long, std::size_t> byId;
    for (std::size_t i = 0; i < count; ++i)
        byId[elements[i].first] = i;
    const std::size_t none = count;
    std::vector<std::size_t> parent(count, none);
    for (std::size_t i = 0; i < count; ++i) {
        if (elements[i].second == 0)
            continue;
        const auto found = byId.find(elements[i].second);
        if (found != byId.end())
            parent[i] = found->second;
    }

    ParentLinks result{std::vector<bool>(count, false), std::vector<bool>(count, false)};
    // Walks up from every element not yet seen; no recursion, however long the chains.
    enum State { Unseen, OnPath, Done };
    std::vector<State> state(count, Unseen);
    std::vector<int> depth(count, 0);
    std::vector<std::size_t> path;
    for (std::size_t start = 0; start < count; ++start) {
        if (state[start] != Unseen)
            continue;
        path.clear();
        std::size_t at = start;
        while (at != none && state[at] == Unseen) {
            state[at] = OnPath;
            path.push_back(at);
            at = parent[at];
        }
        if (at != none && state[at] == OnPath) {
            // The path ran into itself: from 'at' on, it is a cycle.
            bool inCycle = false;
            for (std::size_t node : path) {
                inCycle = inCycle || node == at;
                if (inCycle)
                    result.onCycle[node] = true;
            }
        }
        // Depths from the top down; an element on a cycle has no parent, its children start anew.
        for (auto node = path.rbegin(); node != path.rend(); ++node) {
            const std::size_t p = parent[*node];
            if (result.onCycle[*node] || p == none || result.onCycle[p]) {
                depth[*node] = 0;
            } else {
                depth[*node] = depth[p] + 1;
                if (depth[*node] > MaxItemNesting) {
                    result.tooDeep[*node] = true;
                    depth[*node] = 0;
                }
            }
            state[*node] = Done;
        }
    }
    return result;
}

} // namespace edit
} // namespace nu
