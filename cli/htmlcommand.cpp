#include "cli/htmlcommand.h"

#include "viewer/charthtml.h"
#include "viewer/charttree.h"

#include <QFileInfo>
#include <QTextStream>

namespace Sorvik {
namespace Cli {

namespace {

const QString outputOption = QStringLiteral("output");
const QString titleOption = QStringLiteral("title");

} // namespace

QString HtmlCommand::getName() const
{
    return QStringLiteral("html");
}

QString HtmlCommand::getSummary() const
{
    return QStringLiteral("Writes a chart as one interactive web page that needs no network.");
}

void HtmlCommand::setUp(QCommandLineParser& parser)
{
    parser.addPositionalArgument(QStringLiteral("CHART"), QStringLiteral("A counted chart (ontology) file."));
    parser.addOption({{QStringLiteral("o"), outputOption}, QStringLiteral("The page to write (.html)."),
                      QStringLiteral("OUT")});
    chart.setUp(parser);
    parser.addOption({titleOption, QStringLiteral("The page's title (default: the chart file's name)."),
                      QStringLiteral("TEXT")});
}

int HtmlCommand::execute(const QCommandLineParser& parser)
{
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1)
        return usage(files.isEmpty() ? QStringLiteral("missing CHART") : QStringLiteral("too many arguments"));
    const QString& chartFile = files.first();
    const QString output = parser.value(outputOption);
    if (output.isEmpty())
        return usage(QStringLiteral("missing -o OUT"));
    const QString problem = chart.parse(parser);
    if (!problem.isEmpty())
        return usage(problem);
    QString failure;
    if (!chart.read(chartFile, failure))
        return fail(failure);
    if (chart.getTree()->at(0).total <= 0)
        return fail(chartFile + QLatin1String(": the chart's total count is 0"));

    const QString name = QFileInfo(chartFile).completeBaseName();
    Viewer::ChartHtml page(*chart.getTree(), *chart.getColours());
    page.setTitle(parser.isSet(titleOption) ? parser.value(titleOption) : name);
    page.setFirstSampleName(name);
    // The tree's counts are the first sample's; the others go along, one page for all.
    page.addSamplesOf(*chart.getTree());
    page.setView(chart.getLevels(), chart.getPercent(), chart.isCollapsing());
    page.setRawNames(chart.isRawNames());
    try {
        page.save(output);
    } catch (const std::exception& e) {
        return fail(output + QLatin1String(": ") + QString::fromUtf8(e.what()));
    }
    return Success;
}

} // namespace Cli
} // namespace Sorvik
