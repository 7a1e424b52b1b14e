#include "cli/mergecommand.h"

#include "cli/interruption.h"
#include "cli/progressbar.h"
#include "ontology/buildersource.h"
#include "ontology/sourcechart.h"

#include <QFileInfo>
#include <QTextStream>

#include <unistd.h>

namespace Sorvik {
namespace Cli {

QString MergeCommand::getName() const
{
    return QStringLiteral("merge");
}

QString MergeCommand::getSummary() const
{
    return QStringLiteral("Joins the samples of several chart files into one chart.");
}

void MergeCommand::setUp(QCommandLineParser& parser)
{
    parser.addPositionalArgument(QStringLiteral("CHART"),
                                 QStringLiteral("The counted chart files, each of one sample or several."),
                                 QStringLiteral("CHART..."));
    parser.addOption({{QStringLiteral("o"), QStringLiteral("output")}, QStringLiteral("The chart file to write."),
                      QStringLiteral("OUT")});
    parser.addOption({{QStringLiteral("q"), QStringLiteral("quiet")}, QStringLiteral("Shows no progress.")});
}

int MergeCommand::execute(const QCommandLineParser& parser)
{
    const QStringList charts = parser.positionalArguments();
    if (charts.isEmpty())
        return usage(QStringLiteral("missing CHART"));
    const QString output = parser.value(QStringLiteral("output"));
    if (output.isEmpty())
        return usage(QStringLiteral("missing -o OUT"));
    for (const QString& chart : charts) {
        const QFileInfo info(chart);
        if (!info.isFile() || !info.isReadable())
            return fail(QStringLiteral("cannot read %1").arg(chart));
        if (info.absoluteFilePath() == QFileInfo(output).absoluteFilePath())
            return usage(QStringLiteral("OUT must not be one of the charts"));
    }

    Interruption interruption;
    ProgressBar bar(err, !parser.isSet(QStringLiteral("quiet")) && ::isatty(STDERR_FILENO));
    QString reading;
    try {
        Zem::Ontology::BuilderSource builder(output);
        auto keys = std::make_shared<Zem::Ontology::SourceChart::Keys>();
        builder.setCancelCheck(&Interruption::isRequested);
        bar.follow(builder, QStringLiteral("Merging charts..."), 3);
        // Read one by one, so that a failure names its chart; nothing is written before all are read.
        for (const QString& chart : charts) {
            reading = chart;
            Zem::Ontology::SourceChart source(chart, keys);
            source.read(builder);
        }
        reading.clear();
        builder.count(false);
        builder.build();
        bar.finish();
    } catch (const Zem::Ontology::Builder::CancelledException&) {
        bar.finish();
        return interrupted();
    } catch (const std::exception& e) {
        bar.finish();
        return fail((reading.isEmpty() ? output : reading) + QLatin1String(": ") + QString::fromUtf8(e.what()));
    }
    return Success;
}

} // namespace Cli
} // namespace Sorvik
