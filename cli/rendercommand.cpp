#include "cli/rendercommand.h"

#include "nu/graphics/sceneimage.h"
#include "ontology/ontology.h"
#include "viewer/chartimage.h"
#include "viewer/chartlegend.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/palette.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"
#include "viewer/settings.h"

#include <QTextStream>

#include <cmath>

namespace Sorvik {
namespace Cli {

namespace {

const QString outputOption = QStringLiteral("output");
const QString levelsOption = QStringLiteral("max-levels");
const QString percentOption = QStringLiteral("min-percent");
const QString sizeOption = QStringLiteral("size");
const QString noCollapseOption = QStringLiteral("no-collapse");
const QString paletteOption = QStringLiteral("palette");
const QString coloursFromOption = QStringLiteral("colours-from");
const QString legendOption = QStringLiteral("legend");

// The viewer's limits when a chart is first shown.
const int defaultLevels = App::Settings::firstViewMaxLevels;
const QString defaultPercent = QString::number(App::Settings::firstViewMinPercentage);

} // namespace

QString RenderCommand::getName() const
{
    return QStringLiteral("render");
}

QString RenderCommand::getSummary() const
{
    return QStringLiteral("Draws a counted chart file as a PNG or SVG image.");
}

void RenderCommand::setUp(QCommandLineParser& parser)
{
    parser.addPositionalArgument(QStringLiteral("CHART"), QStringLiteral("A counted chart (ontology) file."));
    parser.addOption({{QStringLiteral("o"), outputOption},
                      QStringLiteral("The image to write; its extension (.png or .svg) chooses the format."),
                      QStringLiteral("OUT")});
    parser.addOption({levelsOption,
                      QStringLiteral("The number of rings, the centre included (default %1).").arg(defaultLevels),
                      QStringLiteral("N")});
    parser.addOption({percentOption,
                      QStringLiteral("The smallest share of the total a slice must hold, in percent (default %1).")
                          .arg(defaultPercent),
                      QStringLiteral("P")});
    parser.addOption({sizeOption,
                      QStringLiteral("The longer side of the image in pixels (default %1).")
                          .arg(Viewer::ChartImage::defaultSize),
                      QStringLiteral("PIXELS")});
    parser.addOption({noCollapseOption, QStringLiteral("Draw every node of a single-child chain on a ring of its own.")});
    parser.addOption({paletteOption,
                      QStringLiteral("The colours: %1 (default %2).")
                          .arg(Viewer::Palette::names().join(QStringLiteral(", ")), Viewer::Palette().getName()),
                      QStringLiteral("NAME")});
    parser.addOption({coloursFromOption,
                      QStringLiteral("Give the taxa this chart shares with OTHER the colours they have there."),
                      QStringLiteral("OTHER")});
    parser.addOption({legendOption, QStringLiteral("Draw a legend of the first branching level beside the chart.")});
}

namespace {

// A counted chart's whole tree; throws what reading throws, and a message for a file that
// holds no chart.
std::shared_ptr<const Viewer::ChartTree> readTree(const QString& fileName, QString& problem)
{
    const Zem::Ontology::Ontology ontology(fileName);
    if (ontology.getNodeNumber() < 1) {
        problem = QStringLiteral("the chart has no nodes");
        return nullptr;
    }
    if (!ontology.isCounted()) {
        problem = QStringLiteral("the chart is not counted");
        return nullptr;
    }
    return std::make_shared<const Viewer::ChartTree>(Viewer::ChartTree::read(ontology));
}

} // namespace

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
        return usage(QStringLiteral("OUT must end in .png or .svg: %1").arg(output));
    }

    bool ok = true;
    const int levels = parser.isSet(levelsOption) ? parser.value(levelsOption).toInt(&ok) : defaultLevels;
    if (!ok || levels < 1)
        return usage(QStringLiteral("--max-levels needs a whole number of at least 1"));
    const double percent = (parser.isSet(percentOption) ? parser.value(percentOption) : defaultPercent).toDouble(&ok);
    if (!ok || !std::isfinite(percent) || percent < 0 || percent > 100)
        return usage(QStringLiteral("--min-percent needs a number from 0 to 100"));
    const int size = parser.isSet(sizeOption) ? parser.value(sizeOption).toInt(&ok) : Viewer::ChartImage::defaultSize;
    if (!ok || size < 1 || size > Viewer::ChartImage::maximumSize)
        return usage(QStringLiteral("--size needs a whole number of pixels from 1 to %1")
                         .arg(Viewer::ChartImage::maximumSize));

    Viewer::Palette palette;
    if (parser.isSet(paletteOption)) {
        try {
            palette = Viewer::Palette::byName(parser.value(paletteOption));
        } catch (const Viewer::Palette::UnknownPaletteException&) {
            return usage(QStringLiteral("--palette must be one of %1").arg(Viewer::Palette::names().join(QStringLiteral(", "))));
        }
    }

    // The colours of the taxa shared with the other chart, by their keys.
    QHash<QString, QColor> given;
    if (parser.isSet(coloursFromOption)) {
        const QString other = parser.value(coloursFromOption);
        try {
            QString problem;
            const auto otherTree = readTree(other, problem);
            if (!otherTree)
                return fail(other + QLatin1String(": ") + problem);
            given = Viewer::ColourMap::assign(*otherTree, palette).byKey(*otherTree);
        } catch (const std::exception& e) {
            return fail(other + QLatin1String(": ") + QString::fromUtf8(e.what()));
        }
    }

    std::unique_ptr<Viewer::PieChartItem> root;
    Viewer::ChartLegend legend;
    try {
        QString problem;
        const auto tree = readTree(chartFile, problem);
        if (!tree)
            return fail(chartFile + QLatin1String(": ") + problem);
        const auto colours = std::make_shared<const Viewer::ColourMap>(Viewer::ColourMap::assign(*tree, palette, given));
        const Zem::Ontology::Ontology ontology(chartFile);
        Viewer::PieChartBuilder builder(ontology);
        builder.setMaxLevels(levels);
        builder.setMinPercentage(percent);
        builder.setCollapse(!parser.isSet(noCollapseOption));
        builder.setTree(tree, colours);
        builder.read();
        root = builder.takeRootItem();
        if (parser.isSet(legendOption))
            legend = Viewer::ChartLegend::of(*tree, *colours);
    } catch (const std::exception& e) {
        return fail(chartFile + QLatin1String(": ") + QString::fromUtf8(e.what()));
    }
    if (!root)
        return fail(chartFile + QLatin1String(": the chart's total count is 0"));

    try {
        Viewer::ChartImage image(*root);
        image.setSize(size);
        image.setLegend(legend);
        image.save(output);
    } catch (const std::exception& e) {
        return fail(output + QLatin1String(": ") + QString::fromUtf8(e.what()));
    }
    return Success;
}

} // namespace Cli
} // namespace Sorvik
