#include "viewer/piechartbuilder.h"

#include "nu/graphics/painttreecolors.h"
#include "nu/maxlevels.h"
#include "ontology/nodekeys.h"
#include "viewer/piechartitem.h"

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

PieChartBuilder::ColorNode::ColorNode(PieChartItem* i)
    : item(i)
{
}

std::vector<PieChartBuilder::ColorNode> PieChartBuilder::ColorNode::children() const
{
    std::vector<ColorNode> result;
    for (QGraphicsItem* child : item->childItems()) {
        if (auto* slice = dynamic_cast<PieChartItem*>(child))
            result.emplace_back(slice);
    }
    return result;
}

int PieChartBuilder::ColorNode::getLevels() const
{
    return nu::maxLevels(*this);
}

void PieChartBuilder::ColorNode::setColor(const QColor& color)
{
    item->setColor(color);
}

PieChartBuilder::PieChartBuilder(const Zem::Ontology::Ontology& ontology, const Position& start)
    : Reader(ontology, start)
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

PieChartItem* PieChartBuilder::rootItem() const
{
    if (root)
        return root.get();
    return items.empty() ? nullptr : items.front().item.get();
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
    QString name = data.value(Zem::Ontology::NodeKey::scientificName).toString();
    if (name.isEmpty())
        name = data.value(Zem::Ontology::NodeKey::name).toString();
    return name.isEmpty() ? id : name;
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

void PieChartBuilder::openNode(const QString&, const QVariantMap& data, const Position& position)
{
    ++level;
    if (level > maxLevels)
        return;
    const qint64 count = accumCount(data);
    if (items.empty()) {
        rootCount = count;
        // A slice's count is an int while accumulated counts of huge inputs are 64-bit. All counts
        // of the chart are divided by the same power of two, just enough for the start node's to
        // fit: shares keep their proportions and, as the shift rounds down, children never add
        // up to more than their parent.
        countShift = 0;
        while ((rootCount >> countShift) > std::numeric_limits<int>::max())
            ++countShift;
    } else if (!items.back().item || !isKept(count)) {
        // Dropped with its whole subtree: known now from its count, so no slice is made for it
        // or below it (most nodes of a large chart end here).
        items.push_back(Open{nullptr, 0});
        return;
    }
    auto item = std::make_unique<PieChartItem>(toSliceCount(count));
    // Laid out once when the tree is complete, not again on every attachment.
    item->setLayoutDeferred(true);
    item->setPosition(position);
    // The inner radius the slice gets from its ancestors' rings once attached (see attach()).
    item->setRadius(item->getRadiusOffset() * (level - 1));
    items.push_back(Open{std::move(item), 0});
}

bool PieChartBuilder::shouldReadChildData() const
{
    return level < maxLevels && !items.empty() && items.back().item;
}

void PieChartBuilder::closeNode(const QString& id, const QVariantMap& data)
{
    --level;
    if (level >= maxLevels || items.empty())
        return;
    std::unique_ptr<PieChartItem> item = std::move(items.back().item);
    items.pop_back();
    if (!item)
        return;
    const auto label = [&] {
        nu::graphics::DrawableText text = item->getText();
        text.text = getName(id, data);
        item->setText(text);
    };

    if (items.empty()) {
        if (rootCount < 1)
            return;
        label();
        root = std::move(item);
        root->setLayoutDeferred(false);
        root->updateCountFromParent();
        applyColor();
        return;
    }
    label();
    item->setLayoutDeferred(false);
    attach(items.back(), std::move(item));
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

void PieChartBuilder::applyColor()
{
    if (PieChartItem* top = rootItem())
        nu::graphics::operation::paintTreeColors(ColorNode(top));
}

} // namespace Viewer
} // namespace Sorvik
