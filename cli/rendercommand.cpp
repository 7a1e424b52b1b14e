#include "cli/rendercommand.h"

#include "nu/graphics/sceneimage.h"
#include "ontology/ontology.h"
#include "viewer/chartimage.h"
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
                      QStringLiteral("The side of the square image in pixels (default %1).")
                          .arg(Viewer::ChartImage::defaultSize),
                      QStringLiteral("PIXELS")});
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

    std::unique_ptr<Viewer::PieChartItem> root;
    try {
        const Zem::Ontology::Ontology ontology(chartFile);
        if (ontology.getNodeNumber() < 1)
            return fail(chartFile + QLatin1String(": the chart has no nodes"));
        if (!ontology.isCounted())
            return fail(chartFile + QLatin1String(": the chart is not counted"));
        Viewer::PieChartBuilder builder(ontology);
        builder.setMaxLevels(levels);
        builder.setMinPercentage(percent);
        builder.read();
        root = builder.takeRootItem();
    } catch (const std::exception& e) {
        return fail(chartFile + QLatin1String(": ") + QString::fromUtf8(e.what()));
    }
    if (!root)
        return fail(chartFile + QLatin1String(": the chart's total count is 0"));

    try {
        Viewer::ChartImage image(*root);
        image.setSize(size);
        image.save(output);
    } catch (const std::exception& e) {
        return fail(output + QLatin1String(": ") + QString::fromUtf8(e.what()));
    }
    return Success;
}

} // namespace Cli
} // namespace Sorvik
