#include "cli/buildcommand.h"

#include "viewer/settings.h"

#include "cli/inputcheck.h"
#include "cli/interruption.h"
#include "cli/progressbar.h"
#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "ontology/rootreader.h"
#include "ontology/sourcefrequencies.h"
#include "ontology/sourcekronatext.h"
#include "ontology/sourcemgtaxatext.h"
#include "ontology/sourceqiimetext.h"
#include "viewer/buildncbipiechartasynctask.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <QTimer>

#include <unistd.h>

namespace Sorvik {
namespace Cli {

namespace {

const QStringList formats{QStringLiteral("taxids"), QStringLiteral("taxid-counts"), QStringLiteral("mgtaxa"),
                          QStringLiteral("krona"), QStringLiteral("qiime")};

constexpr double qiimeMultiplier = 10000.0;
// The download gives up when no data arrives for this long.
constexpr int downloadStallTimeout = 120000;

bool needsTaxonomy(const QString& format)
{
    return format == QLatin1String("taxids") || format == QLatin1String("taxid-counts")
        || format == QLatin1String("mgtaxa");
}

} // namespace

QString BuildCommand::getName() const
{
    return QStringLiteral("build");
}

QString BuildCommand::getSummary() const
{
    return QStringLiteral("Builds a counted chart file from taxon ids, MG-Taxa, Krona or QIIME input.");
}

QString BuildCommand::getDefaultTaxonomyFile()
{
    // The viewer's own cache in its data folder, so both share one download.
    return App::Settings().getPathDir().absoluteFilePath(QStringLiteral("ncbi.ontology"));
}

void BuildCommand::setUp(QCommandLineParser& parser)
{
    parser.addPositionalArgument(QStringLiteral("FORMAT"),
                                 QStringLiteral("taxids (one id per line), taxid-counts (id and count per line), "
                                                "mgtaxa, krona or qiime."));
    parser.addPositionalArgument(QStringLiteral("INPUT"), QStringLiteral("The input file."));
    parser.addOption({{QStringLiteral("o"), QStringLiteral("output")}, QStringLiteral("The chart file to write."),
                      QStringLiteral("OUT")});
    parser.addOption({{QStringLiteral("t"), QStringLiteral("taxonomy")},
                      QStringLiteral("The NCBI taxonomy cache for taxids, taxid-counts and mgtaxa; downloaded and "
                                     "imported when missing (default: the viewer's, %1).")
                          .arg(getDefaultTaxonomyFile()),
                      QStringLiteral("FILE")});
    parser.addOption({{QStringLiteral("c"), QStringLiteral("column")},
                      QStringLiteral("The QIIME value column, 0 for the first sample column (default 0)."),
                      QStringLiteral("N"), QStringLiteral("0")});
    parser.addOption({{QStringLiteral("q"), QStringLiteral("quiet")}, QStringLiteral("Shows no progress.")});
}

int BuildCommand::execute(const QCommandLineParser& parser)
{
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() < 2)
        return usage(arguments.isEmpty() ? QStringLiteral("missing FORMAT and INPUT") : QStringLiteral("missing INPUT"));
    if (arguments.size() > 2)
        return usage(QStringLiteral("too many arguments"));
    const QString format = arguments.at(0);
    const QString input = arguments.at(1);
    if (!formats.contains(format))
        return usage(QStringLiteral("unknown format '%1' (use %2)").arg(format, formats.join(QStringLiteral(", "))));
    const QString output = parser.value(QStringLiteral("output"));
    if (output.isEmpty())
        return usage(QStringLiteral("missing -o OUT"));
    if (parser.isSet(QStringLiteral("taxonomy")) && !needsTaxonomy(format))
        return usage(QStringLiteral("--taxonomy applies to taxids, taxid-counts and mgtaxa only"));
    if (parser.isSet(QStringLiteral("column")) && format != QLatin1String("qiime"))
        return usage(QStringLiteral("--column applies to qiime only"));
    bool columnOk = false;
    const int column = parser.value(QStringLiteral("column")).toInt(&columnOk);
    if (!columnOk || column < 0)
        return usage(QStringLiteral("--column needs a number from 0"));

    // Pipes are welcome too (process substitution, /dev/stdin); folders are not.
    const QFileInfo inputInfo(input);
    if (!inputInfo.exists() || inputInfo.isDir() || !inputInfo.isReadable())
        return fail(QStringLiteral("cannot read %1").arg(input));
    if (QFileInfo(output).absoluteFilePath() == inputInfo.absoluteFilePath())
        return usage(QStringLiteral("OUT must not be INPUT"));

    ProgressBar bar(err, !parser.isSet(QStringLiteral("quiet")) && ::isatty(STDERR_FILENO));
    if (needsTaxonomy(format)) {
        const QString taxonomy = parser.isSet(QStringLiteral("taxonomy")) ? parser.value(QStringLiteral("taxonomy"))
                                                                          : getDefaultTaxonomyFile();
        if (QFileInfo(taxonomy).absoluteFilePath() == QFileInfo(output).absoluteFilePath())
            return usage(QStringLiteral("OUT must not be the taxonomy file"));
        return buildWithTask(format, input, output, taxonomy, bar);
    }
    return buildPaths(format, input, output, column, bar);
}

int BuildCommand::buildWithTask(const QString& format, const QString& input, const QString& output,
                                const QString& taxonomy, ProgressBar& bar)
{
    // A pipe can be read only once: it goes to the task unchecked.
    if (QFileInfo(input).isFile()) {
        const QString problem = checkTaxonIdInput(input, format);
        if (!problem.isEmpty())
            return fail(problem);
    }
    // A chart given as the taxonomy would add its counts to the input's, and a rebuild would
    // overwrite it.
    if (QFileInfo(taxonomy).isFile()) {
        try {
            if (Zem::Ontology::Ontology(taxonomy).isCounted())
                return fail(QStringLiteral("%1 is a counted chart, not a taxonomy").arg(taxonomy));
        } catch (const Zem::Ontology::Ontology::Exception&) {
            // Damaged: the task rebuilds it.
        }
    }

    Interruption interruption;
    auto task = std::make_unique<Viewer::BuildNcbiPiechartAsyncTask>();
    task->setNcbiOntologyFile(taxonomy);
    task->setTargetFile(output);
    task->setDownloadStallTimeout(downloadStallTimeout);
    if (format == QLatin1String("mgtaxa"))
        task->setSource(std::make_unique<Zem::Ontology::SourceMgtaxaText>(input));
    else
        task->setSource(std::make_unique<Zem::Ontology::SourceFrequencies>(input, format == QLatin1String("taxids") ? 1 : 2));
    bar.follow(*task);

    QEventLoop loop;
    QObject::connect(task.get(), &QThread::finished, &loop, &QEventLoop::quit);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, task.get(), [&task] {
        if (Interruption::isRequested() && task->getState() == nu::AsyncTask::Running)
            task->slotSetCancelled();
    });
    poll.start(50);
    task->start();
    loop.exec();
    task->wait();
    bar.finish();

    const int state = task->getState();
    if (state == nu::AsyncTask::Cancelled) {
        task.reset(); // removes what the run left half-made
        err << "sorvik-cli " << getName() << ": interrupted\n";
        err.flush();
        return Interrupted;
    }
    if (state == nu::AsyncTask::Failed) {
        const QString detail = task->getErrorDetail();
        const QString message = task->getErrorMessage() + (detail.isEmpty() ? QString() : QStringLiteral(": ") + detail);
        task.reset();
        return fail(message);
    }
    task.reset();
    return checkCounted(input, output);
}

int BuildCommand::buildPaths(const QString& format, const QString& input, const QString& output, int column,
                             ProgressBar& bar)
{
    if (format == QLatin1String("qiime") && QFileInfo(input).isFile()) {
        const QStringList columns = Zem::Ontology::SourceQiimeText::readColumnNames(input);
        if (columns.isEmpty())
            return fail(QStringLiteral("%1 has no QIIME header with value columns").arg(input));
        if (column >= columns.size())
            return usage(QStringLiteral("column %1 is out of range: %2 has %3 value columns (%4)")
                             .arg(column)
                             .arg(input)
                             .arg(columns.size())
                             .arg(columns.mid(0, 10).join(QStringLiteral(", "))
                                  + (columns.size() > 10 ? QStringLiteral(", ...") : QString())));
    }

    Interruption interruption;
    try {
        Zem::Ontology::BuilderSource builder(output);
        if (format == QLatin1String("krona"))
            builder.addSource(std::make_unique<Zem::Ontology::SourceKronaText>(input));
        else
            builder.addSource(std::make_unique<Zem::Ontology::SourceQiimeText>(input, column, qiimeMultiplier));
        builder.setCancelCheck(&Interruption::isRequested);
        bar.follow(builder, QStringLiteral("Building piechart..."), 3);
        builder.load();
        builder.count(false);
        builder.build();
        bar.finish();
    } catch (const Zem::Ontology::Builder::CancelledException&) {
        bar.finish();
        err << "sorvik-cli " << getName() << ": interrupted\n";
        err.flush();
        return Interrupted;
    } catch (const std::exception& e) {
        bar.finish();
        return fail(QStringLiteral("Piechart couldn't be generated: %1").arg(QString::fromUtf8(e.what())));
    }
    return checkCounted(input, output);
}

int BuildCommand::checkCounted(const QString& input, const QString& output)
{
    QString total;
    try {
        const Zem::Ontology::Ontology ontology(output);
        total = Zem::Ontology::RootReader::read(ontology).data.value(Zem::Ontology::NodeKey::accumCount).toString();
    } catch (const std::exception& e) {
        return fail(QStringLiteral("%1: %2").arg(output, QString::fromUtf8(e.what())));
    }
    if (total.toLongLong() <= 0) {
        // An empty chart is no result: a script testing for the file must not take it for one.
        QFile::remove(output);
        return fail(QStringLiteral("no counted taxa in %1").arg(input));
    }
    return Success;
}

} // namespace Cli
} // namespace Sorvik
