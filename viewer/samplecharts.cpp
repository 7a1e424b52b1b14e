#include "viewer/samplecharts.h"

#include "ontology/ontology.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"

namespace Sorvik {
namespace Viewer {

namespace {

std::unique_ptr<PieChartItem> drawOne(const Zem::Ontology::Ontology& ontology, std::shared_ptr<const ChartTree> tree,
                                      std::shared_ptr<const ColourMap> colours,
                                      const SampleCharts::Position& centre, const SampleCharts::Options& options)
{
    PieChartBuilder builder(ontology, centre);
    builder.setMaxLevels(options.maxLevels);
    builder.setMinPercentage(options.minPercentage);
    builder.setCollapse(options.collapse);
    builder.setRawNames(options.rawNames);
    builder.setTree(std::move(tree), std::move(colours));
    builder.read();
    return builder.takeRootItem();
}

} // namespace

bool SampleCharts::Options::operator==(const Options& other) const
{
    return maxLevels == other.maxLevels && minPercentage == other.minPercentage && collapse == other.collapse
           && rawNames == other.rawNames;
}

SampleCharts::SampleCharts(const QString& file, std::shared_ptr<const ChartTree> tree,
                           std::shared_ptr<const ColourMap> map)
    : fileName(file)
    , whole(std::move(tree))
    , colours(std::move(map))
{
}

SampleCharts::~SampleCharts() = default;

void SampleCharts::setColours(std::shared_ptr<const ColourMap> map)
{
    colours = std::move(map);
}

int SampleCharts::getCount() const
{
    return whole ? whole->getSampleCount() : 0;
}

QStringList SampleCharts::getNames() const
{
    QStringList names;
    if (whole) {
        for (const ChartTree::Sample& sample : whole->getSamples())
            names.append(sample.name);
    }
    return names;
}

QList<qint64> SampleCharts::getTotals() const
{
    QList<qint64> totals;
    if (whole) {
        for (const ChartTree::Sample& sample : whole->getSamples())
            totals.append(sample.total);
    }
    return totals;
}

std::shared_ptr<const ChartTree> SampleCharts::getTree(int sample)
{
    if (!whole || sample == whole->getSample())
        return whole;
    for (auto it = trees.begin(); it != trees.end(); ++it) {
        if (it->first == sample) {
            trees.splice(trees.begin(), trees, it);
            return trees.front().second;
        }
    }
    auto made = std::make_shared<const ChartTree>(whole->ofSample(sample));
    trees.emplace_front(sample, made);
    if (trees.size() > static_cast<size_t>(keptTrees))
        trees.pop_back();
    return made;
}

std::unique_ptr<PieChartItem> SampleCharts::draw(int sample, const Position& centre, const Options& options)
{
    std::vector<std::unique_ptr<PieChartItem>> charts = draw(QList<int>{sample}, centre, options);
    return std::move(charts.front());
}

std::vector<std::unique_ptr<PieChartItem>> SampleCharts::draw(const QList<int>& samples, const Position& centre,
                                                              const Options& options)
{
    const Zem::Ontology::Ontology ontology(fileName);
    std::vector<std::unique_ptr<PieChartItem>> charts;
    for (const int sample : samples)
        charts.push_back(drawOne(ontology, getTree(sample), colours, centre, options));
    return charts;
}

} // namespace Viewer
} // namespace Sorvik
