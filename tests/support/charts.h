#pragma once

#include "ontology/reader.h"

#include <QString>

#include <memory>
#include <vector>

namespace Sorvik {
namespace Viewer {
class PieChartItem;
}
namespace Test {

// A tree of life with slices large and small, five rings deep: at the viewer's defaults (5 rings,
// 0.5 %) "unclassified" is gathered into a grey "1 other", and 17 slices are drawn.
extern const QString lifeTree;

// The chart the viewer draws from a counted ontology file.
std::unique_ptr<Viewer::PieChartItem> buildChart(const QString& fileName, int levels = 10, double percent = 0,
                                                 const Zem::Ontology::Reader::Position& start = {});
// Writes the tree literal to the file (counted, untrimmed) and builds its chart.
std::unique_ptr<Viewer::PieChartItem> chartOf(const QString& fileName, const QString& literal, int levels = 10,
                                              double percent = 0);

// The slices attached to a slice, in order.
std::vector<Viewer::PieChartItem*> slicesOf(const Viewer::PieChartItem* item);
// The first slice with this label, or drawn for a chain holding this name, searched depth first;
// null when there is none.
Viewer::PieChartItem* sliceNamed(Viewer::PieChartItem* root, const QString& name);
// The number of rings of a chart.
int ringCount(const Viewer::PieChartItem* root);

} // namespace Test
} // namespace Sorvik
