#include "cli/buildcommand.h"

#include "viewer/settings.h"

#include "cli/interruption.h"
#include "cli/progressbar.h"
#include "cli/taskrunner.h"
#include "ontology/buildersource.h"
#include "ontology/chartsamples.h"
#include "ontology/inputformat.h"
#include "ontology/inputsample.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "ontology/rootreader.h"
#include "ontology/taxonomycache.h"
#include "viewer/buildncbipiechartasynctask.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTextStream>

#include <unistd.h>

namespace Sorvik {
namespace Cli {

using Zem::Ontology::InputFormat;

namespace {
// The FORMAT that asks for the format to be told from the file.
const QString autoWord = QStringLiteral("auto");
const QString allColumnsOption = QStringLiteral("all-columns");
const QString nameOption = QStringLiteral("name");
} // namespace

QString BuildCommand::getName() const
{
    return QStringLiteral("build");
}

QString BuildCommand::getSummary() const
{
    return QStringLiteral("Builds a counted chart file from a classifier's output or a taxon list.");
}

QString BuildCommand::getDefaultTaxonomyFile()
{
    // One cache wherever the command runs, so it is downloaded once.
    const QString folder = App::Settings().getDataFolder();
    return folder.isEmpty() ? QString() : QDir(folder).absoluteFilePath(App::Settings::taxonomyFileName);
}

QString BuildCommand::noDataFolderMessage()
{
    return QStringLiteral("there is no data folder for the NCBI taxonomy (no home folder?): give the taxonomy "
                          "file with --taxonomy FILE");
}

void BuildCommand::setUp(QCommandLineParser& parser)
{
    QStringList formats{QStringLiteral("%1 (told from the file's first lines)").arg(autoWord)};
    for (const InputFormat& format : InputFormat::all())
        formats << QStringLiteral("%1 (%2)").arg(format.word, format.description);
    parser.addPositionalArgument(QStringLiteral("FORMAT"), formats.join(QStringLiteral(", ")) + QLatin1Char('.'));
    parser.addPositionalArgument(QStringLiteral("INPUT"),
                                 QStringLiteral("The input file; several make a chart of several samples, one per "
                                                "file, named after it."),
                                 QStringLiteral("INPUT..."));
    parser.addOption({{QStringLiteral("o"), QStringLiteral("output")}, QStringLiteral("The chart file to write."),
                      QStringLiteral("OUT")});
    parser.addOption({{QStringLiteral("t"), QStringLiteral("taxonomy")},
                      QStringLiteral("The NCBI taxonomy cache for %1; downloaded and imported when missing "
                                     "(default: %2).")
                          .arg(InputFormat::listWords([](const InputFormat& f) { return f.needsTaxonomy; }),
                               getDefaultTaxonomyFile().isEmpty() ? QStringLiteral("none, there is no data folder")
                                                                  : getDefaultTaxonomyFile()),
                      QStringLiteral("FILE")});
    parser.addOption({{QStringLiteral("c"), QStringLiteral("column")},
                      QStringLiteral("The value column of %1, 0 for the first sample column (default 0).")
                          .arg(InputFormat::listWords([](const InputFormat& f) { return bool(f.readColumns); })),
                      QStringLiteral("N"), QStringLiteral("0")});
    parser.addOption({allColumnsOption,
                      QStringLiteral("One sample per value column of %1, named by the header.")
                          .arg(InputFormat::listWords([](const InputFormat& f) { return bool(f.readColumns); }))});
    parser.addOption({nameOption,
                      QStringLiteral("The samples' names, one per sample in their order, separated by commas."),
                      QStringLiteral("A,B,...")});
    parser.addOption({QStringLiteral("no-unclassified"),
                      QStringLiteral("Leaves unclassified reads out of %1 (they have a slice of their own by default).")
                          .arg(InputFormat::listWords([](const InputFormat& f) { return f.hasUnclassified; }))});
    parser.addOption({QStringLiteral("strict"),
                      QStringLiteral("Exits with status 1 when any line or read of the input was passed over (the "
                                     "chart is still written).")});
    parser.addOption({{QStringLiteral("q"), QStringLiteral("quiet")}, QStringLiteral("Shows no progress.")});
}

int BuildCommand::execute(const QCommandLineParser& parser)
{
    QStringList arguments = parser.positionalArguments();
    if (arguments.size() < 2)
        return usage(arguments.isEmpty() ? QStringLiteral("missing FORMAT and INPUT") : QStringLiteral("missing INPUT"));
    const QString word = arguments.takeFirst();
    const QStringList inputs = arguments;
    const bool detect = word == autoWord;
    const InputFormat* format = detect ? nullptr : InputFormat::find(word);
    if (!format && !detect) {
        return usage(QStringLiteral("unknown format '%1' (use %2 or %3)")
                         .arg(word, autoWord, InputFormat::getWords().join(QStringLiteral(", "))));
    }
    const QString output = parser.value(QStringLiteral("output"));
    if (output.isEmpty())
        return usage(QStringLiteral("missing -o OUT"));
    if (format) {
        const int misfit = checkOptions(parser, *format);
        if (misfit != Success)
            return misfit;
    }
    InputFormat::Options options;
    bool columnOk = false;
    options.column = parser.value(QStringLiteral("column")).toInt(&columnOk);
    if (!columnOk || options.column < 0)
        return usage(QStringLiteral("--column needs a number from 0"));
    if (parser.isSet(allColumnsOption) && parser.isSet(QStringLiteral("column")))
        return usage(QStringLiteral("--column and --all-columns exclude each other"));
    options.keepUnclassified = !parser.isSet(QStringLiteral("no-unclassified"));

    for (const QString& input : inputs) {
        // Pipes are welcome too (process substitution, /dev/stdin); folders are not.
        const QFileInfo inputInfo(input);
        if (!inputInfo.exists() || inputInfo.isDir() || !inputInfo.isReadable())
            return fail(QStringLiteral("cannot read %1").arg(input));
        if (QFileInfo(output).absoluteFilePath() == inputInfo.absoluteFilePath())
            return usage(QStringLiteral("OUT must not be INPUT"));
    }
    if (detect) {
        // A pipe can be read only once, and telling its format would use up its first lines.
        if (!QFileInfo(inputs.first()).isFile())
            return usage(QStringLiteral("%1 needs a file, not a pipe: name the format").arg(autoWord));
        // Options that do not apply to the format found are passed over: a script may give
        // them for whatever comes. The first input tells the format of all.
        const int detected = detectFormat(inputs.first(), format);
        if (detected != Success)
            return detected;
    }
    const QString taxonomy = parser.isSet(QStringLiteral("taxonomy")) ? parser.value(QStringLiteral("taxonomy"))
                                                                      : getDefaultTaxonomyFile();
    if (format->needsTaxonomy && taxonomy.isEmpty())
        return fail(noDataFolderMessage());
    if (format->needsTaxonomy && QFileInfo(taxonomy).absoluteFilePath() == QFileInfo(output).absoluteFilePath())
        return usage(QStringLiteral("OUT must not be the taxonomy file"));
    const bool allColumns = parser.isSet(allColumnsOption) && format->readColumns;
    for (const QString& input : inputs) {
        // A pipe goes to the source unchecked.
        if (!QFileInfo(input).isFile())
            continue;
        const int problem = checkInput(*format, input, options);
        if (problem != Success)
            return problem;
    }
    const QStringList names = parser.isSet(nameOption)
                                  ? parser.value(nameOption).split(QLatin1Char(','))
                                  : QStringList();
    std::vector<SampleInput> samples;
    const int listed = listSamples(*format, inputs, names, allColumns, options, samples);
    if (listed != Success)
        return listed;

    ProgressBar bar(err, !parser.isSet(QStringLiteral("quiet")) && ::isatty(STDERR_FILENO));
    const QString label = inputs.size() == 1 ? inputs.first() : QStringLiteral("the inputs");
    Zem::Ontology::BuildReport report;
    const int built = format->needsTaxonomy ? buildWithTask(*format, samples, output, taxonomy, bar, report)
                                            : buildPaths(*format, samples, label, output, bar, report);
    return built == Success ? finish(report, label, output, parser.isSet(QStringLiteral("strict"))) : built;
}

int BuildCommand::listSamples(const InputFormat& format, const QStringList& inputs, const QStringList& names,
                              bool allColumns, const InputFormat::Options& options, std::vector<SampleInput>& samples)
{
    QStringList derived;
    for (const QString& input : inputs) {
        if (!allColumns) {
            samples.push_back({QString(), input, options});
            derived << Zem::Ontology::ChartSamples::nameOfFile(input);
            continue;
        }
        const QStringList columns = format.readColumns(input);
        if (columns.isEmpty())
            return fail(QStringLiteral("%1 has no %2 header with value columns").arg(input, format.name));
        for (int column = 0; column < columns.size(); ++column) {
            InputFormat::Options one = options;
            one.column = column;
            samples.push_back({QString(), input, one});
            derived << columns.at(column).trimmed();
        }
    }
    if (!names.isEmpty()) {
        if (names.size() != int(samples.size()))
            return usage(QStringLiteral("--name gives %1 names for %2 samples").arg(names.size()).arg(samples.size()));
        QSet<QString> seen;
        for (const QString& name : names) {
            if (name.trimmed().isEmpty())
                return usage(QStringLiteral("--name gives an empty name"));
            if (seen.contains(name.trimmed()))
                return usage(QStringLiteral("--name gives '%1' twice: each sample needs a name of its own")
                                 .arg(name.trimmed()));
            seen.insert(name.trimmed());
        }
        derived.clear();
        for (const QString& name : names)
            derived << name.trimmed();
    }
    derived = Zem::Ontology::ChartSamples::makeUnique(derived);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i].name = derived.at(int(i));
    return Success;
}

int BuildCommand::finish(const Zem::Ontology::BuildReport& report, const QString& input, const QString& output,
                         bool strict)
{
    for (const QString& finding : report.getSummary())
        err << "sorvik-cli " << getName() << ": " << input << ": " << finding << '\n';
    err.flush();
    const int counted = checkCounted(input, output);
    if (counted != Success)
        return counted;
    if (strict && report.hasSkips())
        return fail(QStringLiteral("%1 was not read in full (--strict)").arg(input));
    return Success;
}

int BuildCommand::checkOptions(const QCommandLineParser& parser, const InputFormat& format)
{
    if (parser.isSet(QStringLiteral("taxonomy")) && !format.needsTaxonomy) {
        return usage(QStringLiteral("--taxonomy applies to %1 only")
                         .arg(InputFormat::listWords([](const InputFormat& f) { return f.needsTaxonomy; })));
    }
    if (parser.isSet(QStringLiteral("column")) && !format.readColumns) {
        return usage(QStringLiteral("--column applies to %1 only")
                         .arg(InputFormat::listWords([](const InputFormat& f) { return bool(f.readColumns); })));
    }
    if (parser.isSet(allColumnsOption) && !format.readColumns) {
        return usage(QStringLiteral("--all-columns applies to %1 only")
                         .arg(InputFormat::listWords([](const InputFormat& f) { return bool(f.readColumns); })));
    }
    if (parser.isSet(QStringLiteral("no-unclassified")) && !format.hasUnclassified) {
        return usage(QStringLiteral("--no-unclassified applies to %1 only")
                         .arg(InputFormat::listWords([](const InputFormat& f) { return f.hasUnclassified; })));
    }
    return Success;
}

int BuildCommand::detectFormat(const QString& input, const InputFormat*& format)
{
    const Zem::Ontology::InputSample sample(input);
    QStringList whyNot;
    format = InputFormat::detect(sample, &whyNot);
    if (!format)
        return fail(QStringLiteral("cannot tell the format of %1: %2").arg(input, whyNot.join(QStringLiteral(", "))));
    err << "sorvik-cli " << getName() << ": reading " << input << " as " << format->description << " ("
        << format->word << ")\n";
    err.flush();
    return Success;
}

int BuildCommand::checkInput(const InputFormat& format, const QString& input, const InputFormat::Options& options)
{
    if (format.check) {
        const Zem::Ontology::InputSample sample(input);
        if (!sample.isReadable())
            return fail(sample.getError());
        const QString problem = format.check(sample);
        if (!problem.isEmpty())
            return fail(QStringLiteral("%1 does not look like %2: %3").arg(input, format.description, problem));
    }
    if (format.readColumns) {
        const QStringList columns = format.readColumns(input);
        if (columns.isEmpty())
            return fail(QStringLiteral("%1 has no %2 header with value columns").arg(input, format.name));
        if (options.column >= columns.size())
            return usage(QStringLiteral("column %1 is out of range: %2 has %3 value columns (%4)")
                             .arg(options.column)
                             .arg(input)
                             .arg(columns.size())
                             .arg(columns.mid(0, 10).join(QStringLiteral(", "))
                                  + (columns.size() > 10 ? QStringLiteral(", ...") : QString())));
    }
    return Success;
}

int BuildCommand::buildWithTask(const InputFormat& format, const std::vector<SampleInput>& samples,
                                const QString& output, const QString& taxonomy, ProgressBar& bar,
                                Zem::Ontology::BuildReport& report)
{
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

    const bool oldTaxonomy = Zem::Ncbi::TaxonomyCache(taxonomy).isOld();
    auto task = std::make_unique<Viewer::BuildNcbiPiechartAsyncTask>();
    task->setNcbiOntologyFile(taxonomy);
    task->setTargetFile(output);
    for (const SampleInput& sample : samples)
        task->addSample(sample.name, format.makeSource(sample.file, sample.options));
    task->setKeepEmptyChart(false);
    // A cancelled or failed run leaves the earlier chart and the cache as they were.
    const int state = TaskRunner::run(*task, bar);
    if (state == nu::AsyncTask::Cancelled)
        return interrupted();
    if (state == nu::AsyncTask::Failed) {
        const QString detail = task->getErrorDetail();
        return fail(task->getErrorMessage() + (detail.isEmpty() ? QString() : QStringLiteral(": ") + detail));
    }
    report = task->getReport();
    if (oldTaxonomy && !task->hasImported()) {
        err << "sorvik-cli " << getName() << ": note: the NCBI taxonomy in " << taxonomy << " is "
            << Zem::Ncbi::TaxonomyCache(taxonomy).getAgeDays()
            << " days old; 'sorvik-cli update-taxonomy' fetches the current one\n";
        err.flush();
    }
    return Success;
}

int BuildCommand::buildPaths(const InputFormat& format, const std::vector<SampleInput>& samples,
                             const QString& input, const QString& output, ProgressBar& bar,
                             Zem::Ontology::BuildReport& report)
{
    Interruption interruption;
    try {
        Zem::Ontology::BuilderSource builder(output);
        for (const SampleInput& sample : samples)
            builder.addSample(sample.name, format.makeSource(sample.file, sample.options));
        builder.setCancelCheck(&Interruption::isRequested);
        bar.follow(builder, QStringLiteral("Building piechart..."), 3);
        builder.load();
        report = builder.getReport();
        builder.count(false);
        // Refused before OUT is touched, so that an earlier chart there stays.
        if (builder.getTotal() <= 0) {
            bar.finish();
            return fail(QStringLiteral("no counted taxa in %1").arg(input));
        }
        builder.build();
        bar.finish();
    } catch (const Zem::Ontology::Builder::CancelledException&) {
        bar.finish();
        return interrupted();
    } catch (const std::exception& e) {
        bar.finish();
        return fail(QStringLiteral("Piechart couldn't be generated: %1").arg(QString::fromUtf8(e.what())));
    }
    return Success;
}

int BuildCommand::checkCounted(const QString& input, const QString& output)
{
    qint64 total = 0;
    try {
        const Zem::Ontology::Ontology ontology(output);
        total = Zem::Ontology::RootReader::read(ontology).data.value(Zem::Ontology::NodeKey::accumCount).toString().toLongLong();
        // A chart of several samples counts something when any sample does.
        for (const auto& sample : Zem::Ontology::ChartSamples::read(ontology)) {
            if (!sample.counts.isEmpty())
                total = std::max<qint64>(total, 1);
        }
    } catch (const std::exception& e) {
        return fail(QStringLiteral("%1: %2").arg(output, QString::fromUtf8(e.what())));
    }
    if (total <= 0) {
        // An empty chart is no result: a script testing for the file must not take it for one.
        QFile::remove(output);
        return fail(QStringLiteral("no counted taxa in %1").arg(input));
    }
    return Success;
}

} // namespace Cli
} // namespace Sorvik
