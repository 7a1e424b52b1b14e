#include "tests/support/charts.h"

#include "ontology/ontology.h"
#include "tests/support/treeliteral.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"

#include <QFile>

namespace Sorvik {
namespace Test {

using Viewer::PieChartItem;

const QString lifeTree = QStringLiteral(
    "root=Life(b=Bacteria(p=Proteobacteria:40(g=Gammaproteobacteria:30 al=Alphaproteobacteria:20) "
    "f=Firmicutes:35(bc=Bacilli:20 cl=Clostridia:12) ac=Actinobacteria:10) ar=Archaea:8(eu=Euryarchaeota:7) "
    "ek=Eukaryota:30(m=Metazoa:12(h=\"Homo sapiens\":9) fu=Fungi:6) v=Viruses:4 u=unclassified:1)");

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
