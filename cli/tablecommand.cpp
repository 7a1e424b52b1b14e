#include "cli/tablecommand.h"

#include "cli/chartoptions.h"
#include "viewer/charttable.h"
#include "viewer/charttree.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace Sorvik {
namespace Cli {

namespace {

const QString outputOption = QStringLiteral("output");
const QString sampleOption = QStringLiteral("sample");
const QString rawNamesOption = QStringLiteral("raw-names");
const QString allSamples = QStringLiteral("all");

} // namespace

QString TableCommand::getName() const
{
    return QStringLiteral("table");
}

QString TableCommand::getSummary() const
{
    return QStringLiteral("Writes the counts of a chart's taxa as a TSV or CSV table.");
}

void TableCommand::setUp(QCommandLineParser& parser)
{
    parser.addPositionalArgument(QStringLiteral("CHART"), QStringLiteral("A counted chart (ontology) file."));
    parser.addOption({{QStringLiteral("o"), outputOption},
                      QStringLiteral("The table to write; .csv is comma-separated, .tsv (or .txt, .tab) tab-separated. "
                                     "Without it, a TSV table goes to standard output."),
                      QStringLiteral("OUT")});
    parser.addOption({sampleOption,
                      QStringLiteral("The sample whose counts to write, or \"all\" (the default). A chart of one "
                                     "sample names it after its file."),
                      QStringLiteral("NAME")});
    parser.addOption({rawNamesOption, QStringLiteral("Write names as stored, rank prefixes and all.")});
}

int TableCommand::execute(const QCommandLineParser& parser)
{
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1)
        return usage(files.isEmpty() ? QStringLiteral("missing CHART") : QStringLiteral("too many arguments"));
    const QString& chartFile = files.first();
    const QString output = parser.value(outputOption);
    Viewer::ChartTable::Format format = Viewer::ChartTable::Format::Tsv;
    if (!output.isEmpty()) {
        try {
            format = Viewer::ChartTable::formatOf(output);
        } catch (const Viewer::ChartTable::UnknownFormatException&) {
            return usage(QStringLiteral("OUT must end in .tsv, .txt, .tab or .csv: %1").arg(output));
        }
    }

    std::shared_ptr<const Viewer::ChartTree> tree;
    try {
        QString problem;
        tree = ChartOptions::readTree(chartFile, problem);
        if (!tree)
            return fail(chartFile + QLatin1String(": ") + problem);
    } catch (const std::exception& e) {
        return fail(chartFile + QLatin1String(": ") + QString::fromUtf8(e.what()));
    }
    // One sample's counts, or all of them: the chart's own columns then hold every sample added up.
    const QString sample = parser.value(sampleOption);
    std::vector<Viewer::ChartTree::Sample> samples = tree->getSamples();
    bool columns = false;
    if (!sample.isEmpty() && sample != allSamples) {
        const int index = tree->indexOfSample(sample);
        if (index == Viewer::ChartTree::none) {
            QStringList names;
            for (const auto& one : samples)
                names << QLatin1Char('"') + one.name + QLatin1Char('"');
            return fail(QStringLiteral("%1: the chart has no sample \"%2\"; its %3 %4")
                            .arg(chartFile, sample,
                                 names.size() == 1 ? QStringLiteral("sample is") : QStringLiteral("samples are"),
                                 names.join(QStringLiteral(", "))));
        }
        if (index != tree->getSample())
            tree = std::make_shared<const Viewer::ChartTree>(tree->ofSample(index));
    } else if (samples.size() > 1) {
        tree = std::make_shared<const Viewer::ChartTree>(tree->ofSample(Viewer::ChartTree::allSamples));
        columns = true;
    }

    Viewer::ChartTable table(*tree);
    table.setRawNames(parser.isSet(rawNamesOption));
    if (columns)
        table.addSamplesOf(*tree);
    try {
        if (!output.isEmpty()) {
            table.save(output, format);
            return Success;
        }
        out.flush();
        QFile standardOutput;
        if (!standardOutput.open(stdout, QIODevice::WriteOnly))
            throw Viewer::ChartTable::WriteException();
        table.write(standardOutput, format);
        standardOutput.flush();
    } catch (const std::exception& e) {
        return fail((output.isEmpty() ? QStringLiteral("standard output") : output) + QLatin1String(": ")
                    + QString::fromUtf8(e.what()));
    }
    return Success;
}

} // namespace Cli
} // namespace Sorvik
