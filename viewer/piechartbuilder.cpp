#include "viewer/piechartbuilder.h"

#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/piechartitem.h"
#include "viewer/taxonname.h"

#include <algorithm>
#include <limits>

namespace Sorvik {
namespace Viewer {

namespace {

qint64 accumCount(const QVariantMap& data)
{
    bool ok = false;
    const qint64 count = data.value(Zem::Ontology::NodeKey::accumCount).toString().toLongLong(&ok);
    return ok && count > 0 ? count : 0;
}


} // namespace

PieChartBuilder::PieChartBuilder(const Zem::Ontology::Ontology& ontology, const Position& start)
    : Reader(ontology, start)
    , fileName(ontology.getFileName())
    , startRow(start.getRow())
{
}

PieChartBuilder::~PieChartBuilder() = default;

void PieChartBuilder::setMaxLevels(int levels)
{
    if (levels <= 0)
        return;
    maxLevels = std::min(levels, levelLimit);
}

void PieChartBuilder::setMinPercentage(double percent)
{
    minPercentage = percent / 100;
}

void PieChartBuilder::setTree(std::shared_ptr<const ChartTree> t, std::shared_ptr<const ColourMap> c)
{
    tree = std::move(t);
    colours = std::move(c);
}

void PieChartBuilder::read()
{
    if (!tree || !colours) {
        auto whole = std::make_shared<ChartTree>(ChartTree::read(Zem::Ontology::Ontology(fileName)));
        colours = std::make_shared<ColourMap>(ColourMap::assign(*whole, palette));
        tree = std::move(whole);
    }
    const int start = tree->indexOfRow(startRow);
    if (start == ChartTree::none)
        Reader::read();
    else
        walk(start);
}

void PieChartBuilder::walk(int top)
{
    // The whole tree is in memory: walked there, the subtrees of dropped and too deep nodes are
    // passed over at once, where the file would give every one of their rows (most of a large
    // chart's).
    struct Frame
    {
        int node;
        size_t next;
    };
    std::vector<Frame> stack;
    const QVariantMap none;
    const auto open = [&](int node) {
        openNode(QString(), none, tree->getPosition(node));
        stack.push_back({node, shouldReadChildData() ? 0 : tree->at(node).children.size()});
    };
    open(top);
    while (!stack.empty()) {
        const int node = stack.back().node;
        const std::vector<int>& children = tree->at(node).children;
        if (stack.back().next < children.size()) {
            open(children[stack.back().next++]);
        } else {
            stack.pop_back();
            closeNode(QString(), none);
        }
    }
}

PieChartItem* PieChartBuilder::rootItem() const
{
    if (root)
        return root.get();
    for (const Open& open : items) {
        if (open.item)
            return open.item.get();
    }
    return nullptr;
}

std::unique_ptr<PieChartItem> PieChartBuilder::takeRootItem()
{
    return std::move(root);
}

PieChartItem* PieChartBuilder::getItem() const
{
    return items.empty() ? nullptr : items.back().item.get();
}

QString PieChartBuilder::getName(const QString& id, const QVariantMap& data)
{
    return ChartTree::nameOf(id, data);
}

int PieChartBuilder::toSliceCount(qint64 count) const
{
    return static_cast<int>(std::min<qint64>(count >> countShift, std::numeric_limits<int>::max()));
}

bool PieChartBuilder::isKept(qint64 count) const
{
    if (count < 1)
        return false;
    // A share equal to the minimum is kept even when the percentage, a decimal, is not exact
    // in binary.
    const double share = static_cast<double>(count) / static_cast<double>(rootCount);
    return share >= minPercentage * (1 - 1e-12);
}

int PieChartBuilder::nodeOf(const Position& position) const
{
    return tree ? tree->indexOfRow(position.getRow()) : ChartTree::none;
}

PieChartBuilder::Open* PieChartBuilder::slicedParent()
{
    for (auto it = items.rbegin(); it != items.rend(); ++it) {
        if (it->kind == Kind::Slice)
            return &*it;
    }
    return nullptr;
}

void PieChartBuilder::openNode(const QString& id, const QVariantMap& data, const Position& position)
{
    Open open;
    open.ring = items.empty() ? 0 : items.back().ring;
    open.chainMark = chainPositions.size();
    if (!items.empty() && items.back().kind != Kind::Slice && items.back().kind != Kind::Chain) {
        // Below a dropped node: only walked past.
        items.push_back(std::move(open));
        return;
    }
    if (!items.empty() && open.ring >= maxLevels) {
        open.kind = Kind::Beyond;
        items.push_back(std::move(open));
        return;
    }
    // The tree's counts when it has the node: they may be another sample's than the file's.
    const int node = nodeOf(position);
    const qint64 count = node != ChartTree::none ? std::max<qint64>(0, tree->at(node).total) : accumCount(data);
    if (items.empty()) {
        rootCount = count;
        // A slice's count is an int while accumulated counts of huge inputs are 64-bit. All counts
        // of the chart are divided by the same power of two, just enough for the start node's to
        // fit: shares keep their proportions and, as the shift rounds down, children never add
        // up to more than their parent.
        countShift = 0;
        while ((rootCount >> countShift) > std::numeric_limits<int>::max())
            ++countShift;
    } else if (!isKept(count)) {
        // Dropped with its whole subtree: known now from its count, so no slice is made for it
        // or below it (most nodes of a large chart end here). Its count joins "N others".
        if (Open* parent = slicedParent(); parent && count > 0) {
            ++parent->dropped;
            parent->droppedCount += count;
        }
        items.push_back(std::move(open));
        return;
    }

    const QString name = node != ChartTree::none ? tree->getName(node, rawNames)
                                                 : (rawNames ? getName(id, data) : TaxonName::clean(getName(id, data)));
    if (collapse && node != ChartTree::none && tree->isChain(node)) {
        open.kind = Kind::Chain;
        chainPositions.append(position);
        chainNames.append(name);
        items.push_back(std::move(open));
        return;
    }

    open.kind = Kind::Slice;
    open.ring += 1;
    deepestRing = std::max(deepestRing, open.ring);
    auto item = std::make_unique<PieChartItem>(toSliceCount(count));
    // Laid out once when the tree is complete, not again on every attachment.
    item->setLayoutDeferred(true);
    item->setPosition(position);
    item->setAccumCount(count);
    if (!chainPositions.isEmpty()) {
        chainPositions.append(position);
        chainNames.append(name);
        item->setChain(chainPositions, chainNames);
        chainPositions.clear();
        chainNames.clear();
    }
    nu::graphics::DrawableText text = item->getText();
    text.text = name;
    item->setText(text);
    // The inner radius the slice gets from its ancestors' rings once attached (see attach()).
    item->setRadius(item->getRadiusOffset() * (open.ring - 1));
    open.item = std::move(item);
    items.push_back(std::move(open));
}

bool PieChartBuilder::shouldReadChildData() const
{
    if (items.empty())
        return false;
    const Open& top = items.back();
    return (top.kind == Kind::Slice || top.kind == Kind::Chain) && top.ring < maxLevels;
}

void PieChartBuilder::closeNode(const QString&, const QVariantMap&)
{
    if (items.empty())
        return;
    Open open = std::move(items.back());
    items.pop_back();
    if (open.kind == Kind::Chain) {
        // A chain whose child was not drawn leaves no names for the next slice.
        while (chainPositions.size() > open.chainMark) {
            chainPositions.removeLast();
            chainNames.removeLast();
        }
        return;
    }
    if (open.kind != Kind::Slice)
        return;
    if (open.dropped > 0)
        addOthers(open);
    std::unique_ptr<PieChartItem> item = std::move(open.item);
    item->setLayoutDeferred(false);
    if (Open* parent = slicedParent()) {
        attach(*parent, std::move(item));
        return;
    }
    if (rootCount < 1)
        return;
    root = std::move(item);
    root->updateCountFromParent();
    setLabelReaches();
    applyColor();
}

void PieChartBuilder::addOthers(Open& open)
{
    auto others = std::make_unique<PieChartItem>(toSliceCount(open.droppedCount));
    others->setOthers(open.dropped);
    others->setAccumCount(open.droppedCount);
    // Not a node of the file: a row no node has, so an id no taxon has.
    others->setPosition(Position(-1 - othersMade++, -1));
    nu::graphics::DrawableText text = others->getText();
    text.text = open.dropped == 1 ? QStringLiteral("1 other") : QStringLiteral("%1 others").arg(open.dropped);
    others->setText(text);
    others->setRadius(others->getRadiusOffset() * open.ring);
    deepestRing = std::max(deepestRing, open.ring + 1);
    attach(open, std::move(others));
}

void PieChartBuilder::attach(Open& parent, std::unique_ptr<PieChartItem> child)
{
    // The outcome of parent->addChild(child) for a slice that has just been read, reached
    // directly: addChild would ask every sibling for its order (quadratic in the number of
    // siblings) and push the parent's radius through the child's whole subtree on every
    // attachment. Here the radius was set when the slice was made, the k-th child kept gets
    // order k as addChild would give it, and the counts move exactly as addChild moves them.
    PieChartItem* p = parent.item.get();
    const qint64 own = p->getCount() - child->getTotal();
    p->setCount(own > 0 ? static_cast<int>(own) : 0);
    child->changeOrder(++parent.kept);
    const qint64 total = child->getTotal();
    child.release()->setParentItem(p);
    p->updateCount(0, total);
}

void PieChartBuilder::setLabelReaches()
{
    // A slice with nothing drawn outside it owns the wedge beyond it: its label may run out
    // there, up to a band beyond the outermost ring.
    const double reach = root->getRadiusOffset() * (deepestRing + labelBand);
    std::vector<PieChartItem*> pending{root.get()};
    while (!pending.empty()) {
        PieChartItem* item = pending.back();
        pending.pop_back();
        bool leaf = true;
        for (QGraphicsItem* child : item->childItems()) {
            if (auto* slice = dynamic_cast<PieChartItem*>(child)) {
                pending.push_back(slice);
                leaf = false;
            }
        }
        if (leaf && item != root.get())
            item->setLabelReach(reach);
    }
}

void PieChartBuilder::applyColor()
{
    PieChartItem* top = rootItem();
    if (!top)
        return;
    std::vector<PieChartItem*> pending{top};
    while (!pending.empty()) {
        PieChartItem* item = pending.back();
        pending.pop_back();
        const int node = nodeOf(item->getPosition());
        if (item->isOthers())
            item->setColor(Palette::othersGrey());
        else if (colours && colours->hasColour(node))
            item->setColor(colours->colourOf(node));
        else
            item->setColor(Palette::contextGrey());
        for (QGraphicsItem* child : item->childItems()) {
            if (auto* slice = dynamic_cast<PieChartItem*>(child))
                pending.push_back(slice);
        }
    }
}

} // namespace Viewer
} // namespace Sorvik
