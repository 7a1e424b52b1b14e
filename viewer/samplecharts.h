#pragma once

#include "ontology/reader.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <list>
#include <memory>
#include <utility>
#include <vector>

namespace Sorvik {
namespace Viewer {

class ChartTree;
class ColourMap;
class PieChartItem;

// The charts of the samples of one chart file: each sample's tree (ChartTree::ofSample), made
// when first asked for and kept for the next drawings, and each sample's chart drawn from a
// centre with the colours of the whole tree, so that a taxon has one colour in every sample. A
// chart of one sample has one sample, the tree as read. Only the trees last used are kept: a
// study of hundreds of samples would not fit in memory otherwise.
class SampleCharts
{
public:
    using Position = Zem::Ontology::Reader::Position;

    // How a chart is drawn, as the View preferences say.
    struct Options
    {
        int maxLevels = 5;
        double minPercentage = 0.5;
        bool collapse = true;
        bool rawNames = false;

        bool operator==(const Options& other) const;
        bool operator!=(const Options& other) const { return !(*this == other); }
    };

    // How many samples' trees are kept: a grid's worth and a few more.
    static constexpr int keptTrees = 16;

    SampleCharts(const QString& fileName, std::shared_ptr<const ChartTree> tree,
                 std::shared_ptr<const ColourMap> colours);
    ~SampleCharts();

    QString getFileName() const { return fileName; }
    // The tree as read from the file; its counts are the first sample's.
    std::shared_ptr<const ChartTree> getWholeTree() const { return whole; }
    std::shared_ptr<const ColourMap> getColours() const { return colours; }
    // Colours made anew for the same tree (another palette, matched to another chart).
    void setColours(std::shared_ptr<const ColourMap> colours);

    int getCount() const;
    QStringList getNames() const;
    // Each sample's total: its root's count.
    QList<qint64> getTotals() const;

    // The tree with the counts of a sample, or of all samples added up (ChartTree::allSamples).
    // Throws what ChartTree::ofSample throws for a damaged samples table.
    std::shared_ptr<const ChartTree> getTree(int sample);

    // The sample's chart from this centre; null when the centre holds nothing in that sample.
    // Throws what reading the file throws.
    std::unique_ptr<PieChartItem> draw(int sample, const Position& centre, const Options& options);
    // Several samples' charts, the file opened once.
    std::vector<std::unique_ptr<PieChartItem>> draw(const QList<int>& samples, const Position& centre,
                                                    const Options& options);

private:
    QString fileName;
    std::shared_ptr<const ChartTree> whole;
    std::shared_ptr<const ColourMap> colours;
    // The trees made, the last used first.
    std::list<std::pair<int, std::shared_ptr<const ChartTree>>> trees;
};

} // namespace Viewer
} // namespace Sorvik
