#include "cli/rendercommand.h"

#include "nu/graphics/sceneimage.h"
#include "ontology/ontology.h"
#include "ontology/buildreport.h"
#include "viewer/chartgrid.h"
#include "viewer/chartimage.h"
#include "viewer/chartlegend.h"
#include "viewer/piechartbuilder.h"
#include "viewer/charttree.h"
#include "viewer/piechartitem.h"

#include <QTextStream>

namespace Sorvik {
namespace Cli {

namespace {

const QString outputOption = QStringLiteral("output");
const QString sizeOption = QStringLiteral("size");
const QString dpiOption = QStringLiteral("dpi");
const QString legendOption = QStringLiteral("legend");
const QString titleOption = QStringLiteral("title");
const QString sampleOption = QStringLiteral("sample");
const QString allSamples = QStringLiteral("all");

} // namespace

QString RenderCommand::getName() const
{
    return QStringLiteral("render");
}

QString RenderCommand::getSummary() const
{
    return QStringLiteral("Draws a counted chart file as a PNG, SVG or PDF image.");
}

void RenderCommand::setUp(QCommandLineParser& parser)
{
    parser.addPositionalArgument(QStringLiteral("CHART"), QStringLiteral("A counted chart (ontology) file."));
    parser.addOption({{QStringLiteral("o"), outputOption},
                      QStringLiteral("The image to write; its extension (.png, .svg or .pdf) chooses the format."),
                      QStringLiteral("OUT")});
    chart.setUp(parser);
    parser.addOption({sizeOption,
                      QStringLiteral("The longer side of the image in pixels (default %1).")
                          .arg(Viewer::ChartImage::defaultSize),
                      QStringLiteral("PIXELS")});
    parser.addOption({dpiOption, QStringLiteral("The resolution a PNG says it has, in pixels per inch."),
                      QStringLiteral("DPI")});
    parser.addOption({legendOption, QStringLiteral("Draw a legend of the first branching level beside the chart.")});
    parser.addOption({titleOption, QStringLiteral("Draw this title above the chart."), QStringLiteral("TEXT")});
    parser.addOption({sampleOption,
                      QStringLiteral("The sample to draw (default: the first), or \"all\" for every sample side by "
                                     "side with one legend."),
                      QStringLiteral("NAME")});
}

std::unique_ptr<Viewer::PieChartItem> RenderCommand::drawSample(const QString& chartFile, int sample) const
{
    const Zem::Ontology::Ontology ontology(chartFile);
    Viewer::PieChartBuilder builder(ontology);
    builder.setMaxLevels(chart.getLevels());
    builder.setMinPercentage(chart.getPercent());
    builder.setCollapse(chart.isCollapsing());
    builder.setRawNames(chart.isRawNames());
    // Every sample with the colours of the whole chart.
    auto tree = chart.getTree();
    if (sample != tree->getSample())
        tree = std::make_shared<const Viewer::ChartTree>(tree->ofSample(sample));
    builder.setTree(tree, chart.getColours());
    builder.read();
    return builder.takeRootItem();
}

std::unique_ptr<QGraphicsItem> RenderCommand::drawGrid(const QString& chartFile) const
{
    auto grid = std::make_unique<Viewer::ChartGrid>();
    const auto samples = chart.getTree()->getSamples();
    for (size_t i = 0; i < samples.size(); ++i) {
        grid->addChart(drawSample(chartFile, static_cast<int>(i)),
                       QStringLiteral("%1 (%2)").arg(samples[i].name,
                                                     Zem::Ontology::BuildReport::formatCount(samples[i].total)));
    }
    grid->arrange();
    return grid;
}

int RenderCommand::execute(const QCommandLineParser& parser)
{
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1)
        return usage(files.isEmpty() ? QStringLiteral("missing CHART") : QStringLiteral("too many arguments"));
    const QString& chartFile = files.first();
    const QString output = parser.value(outputOption);
    if (output.isEmpty())
        return usage(QStringLiteral("missing -o OUT"));
    try {
        nu::graphics::SceneImage::formatOf(output);
    } catch (const nu::graphics::SceneImage::UnknownFormatException&) {
        return usage(QStringLiteral("OUT must end in .png, .svg or .pdf: %1").arg(output));
    }
    const QString problem = chart.parse(parser);
    if (!problem.isEmpty())
        return usage(problem);
    bool ok = true;
    const int size = parser.isSet(sizeOption) ? parser.value(sizeOption).toInt(&ok) : Viewer::ChartImage::defaultSize;
    if (!ok || size < 1 || size > Viewer::ChartImage::maximumSize)
        return usage(QStringLiteral("--size needs a whole number of pixels from 1 to %1")
                         .arg(Viewer::ChartImage::maximumSize));
    const double dpi = parser.isSet(dpiOption) ? parser.value(dpiOption).toDouble(&ok) : 0;
    if (!ok || !(dpi >= 0) || dpi > 100000)
        return usage(QStringLiteral("--dpi needs a number of pixels per inch"));

    std::unique_ptr<QGraphicsItem> root;
    Viewer::ChartLegend legend;
    QString failure;
    if (!chart.read(chartFile, failure))
        return fail(failure);
    const QString sampleName = parser.value(sampleOption);
    const bool grid = sampleName == allSamples;
    int sample = 0;
    if (!sampleName.isEmpty() && !grid) {
        sample = chart.getTree()->indexOfSample(sampleName);
        if (sample == Viewer::ChartTree::none) {
            QStringList names;
            for (const auto& one : chart.getTree()->getSamples())
                names << QLatin1Char('"') + one.name + QLatin1Char('"');
            return fail(QStringLiteral("%1: the chart has no sample \"%2\"; its samples are %3")
                            .arg(chartFile, sampleName, names.join(QStringLiteral(", "))));
        }
    }
    try {
        if (grid)
            root = drawGrid(chartFile);
        else
            root = drawSample(chartFile, sample);
        // The grid's legend is one for all its charts, its shares those of all samples together.
        if (grid || parser.isSet(legendOption)) {
            const auto tree = grid ? std::make_shared<const Viewer::ChartTree>(
                                         chart.getTree()->ofSample(Viewer::ChartTree::allSamples))
                                   : chart.getTree()->getSample() == sample
                                         ? chart.getTree()
                                         : std::make_shared<const Viewer::ChartTree>(chart.getTree()->ofSample(sample));
            legend = Viewer::ChartLegend::of(*tree, *chart.getColours(), chart.isRawNames());
        }
    } catch (const std::exception& e) {
        return fail(chartFile + QLatin1String(": ") + QString::fromUtf8(e.what()));
    }
    if (!root)
        return fail(chartFile + QLatin1String(": the chart's total count is 0"));

    try {
        Viewer::ChartImage image(*root);
        image.setSize(size);
        image.setDotsPerInch(dpi);
        image.setLegend(legend);
        image.setTitle(parser.value(titleOption));
        image.save(output);
    } catch (const std::exception& e) {
        return fail(output + QLatin1String(": ") + QString::fromUtf8(e.what()));
    }
    return Success;
}

} // namespace Cli
} // namespace Sorvik
