#include "tests/support/charts.h"

#include "ontology/ontology.h"
#include "tests/support/treeliteral.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"

#include <QFile>

namespace Sorvik {
namespace Test {

using Viewer::PieChartItem;

std::unique_ptr<PieChartItem> buildChart(const QString& fileName, int levels, double percent,
                                         const Zem::Ontology::Reader::Position& start)
{
    const Zem::Ontology::Ontology ontology(fileName);
    Viewer::PieChartBuilder builder(ontology, start);
    builder.setMaxLevels(levels);
    builder.setMinPercentage(percent);
    builder.read();
    return builder.takeRootItem();
}

std::unique_ptr<PieChartItem> chartOf(const QString& fileName, const QString& literal, int levels, double percent)
{
    QFile::remove(fileName);
    writeTree(fileName, literal, true, false);
    return buildChart(fileName, levels, percent);
}

std::vector<PieChartItem*> slicesOf(const PieChartItem* item)
{
    std::vector<PieChartItem*> slices;
    for (QGraphicsItem* child : item->childItems()) {
        if (auto* slice = dynamic_cast<PieChartItem*>(child))
            slices.push_back(slice);
    }
    return slices;
}

PieChartItem* sliceNamed(PieChartItem* root, const QString& name)
{
    // A slice drawn for a chain stands for every node of it.
    if (!root || root->getText().text == name || root->getChainNames().contains(name))
        return root;
    for (PieChartItem* slice : slicesOf(root)) {
        if (PieChartItem* found = sliceNamed(slice, name))
            return found;
    }
    return nullptr;
}

int ringCount(const PieChartItem* root)
{
    int deepest = 0;
    for (const PieChartItem* slice : slicesOf(root))
        deepest = std::max(deepest, ringCount(slice));
    return deepest + 1;
}

} // namespace Test
} // namespace Sorvik
