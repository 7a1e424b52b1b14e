#include "ontology/samplecounts.h"

#include "ontology/nodekeys.h"

#include <limits>

namespace Zem {
namespace Ontology {

namespace {

qint64 saturatingAdd(qint64 a, qint64 b)
{
    qint64 sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? std::numeric_limits<qint64>::max() : sum;
}

} // namespace

int SampleCounts::add(const QString& name)
{
    names << name;
    owns.emplace_back();
    return size() - 1;
}

void SampleCounts::makeNamesUnique()
{
    names = ChartSamples::makeUnique(names);
}

void SampleCounts::addCount(int sample, Builder::Node* node, qint64 count)
{
    if (count > 0)
        owns[static_cast<size_t>(sample)].push_back({node, count});
}

void SampleCounts::take(int sample, Builder& builder)
{
    std::vector<Own>& own = owns[static_cast<size_t>(sample)];
    builder.visitNodes([&own](Builder::Node& node) {
        const QString* text = node.data.find(NodeKey::count);
        if (!text)
            return;
        const qint64 count = text->toLongLong();
        if (count > 0)
            own.push_back({&node, count});
        node.data.remove(NodeKey::count);
    });
}

void SampleCounts::restore(int sample, Builder& builder) const
{
    QHash<Builder::Node*, qint64> sums;
    for (const Own& own : owns[static_cast<size_t>(sample)])
        sums[own.node] = saturatingAdd(sums.value(own.node), own.count);
    builder.visitNodes([](Builder::Node& node) { node.data.remove(NodeKey::count); });
    for (auto it = sums.constBegin(); it != sums.constEnd(); ++it)
        it.key()->data.insert(NodeKey::count, QString::number(it.value()));
}

void SampleCounts::putSums(Builder& builder) const
{
    QHash<Builder::Node*, qint64> sums;
    for (const auto& sample : owns) {
        for (const Own& own : sample)
            sums[own.node] = saturatingAdd(sums.value(own.node), own.count);
    }
    builder.visitNodes([](Builder::Node& node) { node.data.remove(NodeKey::count); });
    for (auto it = sums.constBegin(); it != sums.constEnd(); ++it)
        it.key()->data.insert(NodeKey::count, QString::number(it.value()));
}

void SampleCounts::makeTree(Builder& builder)
{
    tree = Tree();
    treeMade = true;
    Builder::Node* root = builder.getRoot();
    if (!root)
        return;
    // Depth first with an explicit stack; a node reached again through a second parent is
    // listed once. Counting has refused cycles already.
    struct Frame
    {
        Builder::Node* node;
        size_t next;
    };
    QHash<const Builder::Node*, bool> seen;
    std::vector<Frame> stack{{root, 0}};
    seen.insert(root, true);
    while (!stack.empty()) {
        Frame& frame = stack.back();
        if (frame.next < frame.node->children.size()) {
            Builder::Node* child = frame.node->children[frame.next++];
            if (!seen.contains(child)) {
                seen.insert(child, true);
                stack.push_back({child, 0});
            }
            continue;
        }
        tree.index.insert(frame.node, static_cast<int>(tree.order.size()));
        tree.order.push_back(frame.node);
        stack.pop_back();
    }
    tree.childStart.reserve(tree.order.size() + 1);
    for (Builder::Node* node : tree.order) {
        tree.childStart.push_back(static_cast<int>(tree.childIndex.size()));
        for (Builder::Node* child : node->children)
            tree.childIndex.push_back(tree.index.value(child));
    }
    tree.childStart.push_back(static_cast<int>(tree.childIndex.size()));
}

void SampleCounts::totals(int sample, std::vector<qint64>& own, std::vector<qint64>& total) const
{
    const size_t n = tree.order.size();
    own.assign(n, 0);
    for (const Own& entry : owns[static_cast<size_t>(sample)]) {
        // Nodes that the tree does not hold (trimmed, or never placed) count nowhere.
        const auto found = tree.index.constFind(entry.node);
        if (found != tree.index.constEnd())
            own[static_cast<size_t>(*found)] = saturatingAdd(own[static_cast<size_t>(*found)], entry.count);
    }
    total = own;
    for (size_t i = 0; i < n; ++i) {
        for (int k = tree.childStart[i]; k < tree.childStart[i + 1]; ++k)
            total[i] = saturatingAdd(total[i], total[static_cast<size_t>(tree.childIndex[static_cast<size_t>(k)])]);
    }
}

void SampleCounts::putFirst(Builder& builder)
{
    makeTree(builder);
    std::vector<qint64> own;
    std::vector<qint64> total;
    if (size() > 0)
        totals(0, own, total);
    for (size_t i = 0; i < tree.order.size(); ++i) {
        Builder::Node* node = tree.order[i];
        node->data.insert(NodeKey::count, QString::number(own.empty() ? 0 : own[i]));
        node->data.insert(NodeKey::accumCount, QString::number(total.empty() ? 0 : total[i]));
    }
}

void SampleCounts::noteRow(const Builder::Node& node, int row)
{
    if (static_cast<size_t>(row) >= rows.size())
        rows.resize(static_cast<size_t>(row) + 1, nullptr);
    rows[static_cast<size_t>(row)] = &node;
}

std::vector<ChartSamples::Stored> SampleCounts::encode(Builder& builder)
{
    if (!treeMade)
        makeTree(builder);
    std::vector<int> rowIndex(rows.size(), -1);
    for (size_t r = 0; r < rows.size(); ++r)
        rowIndex[r] = rows[r] ? tree.index.value(rows[r], -1) : -1;

    std::vector<ChartSamples::Stored> stored;
    std::vector<qint64> own;
    std::vector<qint64> total;
    std::vector<ChartSamples::Entry> entries;
    for (int s = 0; s < size(); ++s) {
        totals(s, own, total);
        entries.clear();
        for (size_t r = 0; r < rowIndex.size(); ++r) {
            const int i = rowIndex[r];
            if (i >= 0 && total[static_cast<size_t>(i)] > 0)
                entries.push_back({static_cast<int>(r), own[static_cast<size_t>(i)], total[static_cast<size_t>(i)]});
        }
        stored.push_back({names.at(s), ChartSamples::encode(entries)});
        builder.checkCancelled(0);
    }
    return stored;
}

} // namespace Ontology
} // namespace Zem
