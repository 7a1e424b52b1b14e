#pragma once

#include "cli/command.h"
#include "ontology/inputformat.h"

#include <memory>
#include <vector>

namespace Zem {
namespace Ontology {
class BuildReport;
class Source;
} // namespace Ontology
} // namespace Zem

namespace Sorvik {
namespace Cli {

class ProgressBar;

// sorvik-cli build FORMAT INPUT... -o OUT: a counted chart file from input files of any format
// of the format table, made by the same steps as the viewer's: the build task for formats placed
// in the NCBI taxonomy (with its cache, downloaded and imported when missing), the synchronous
// builder for the others. Several inputs, or a table's every column (--all-columns), make a
// chart of several samples, named after their files or columns unless --name names them.
class BuildCommand : public Command
{
public:
    using Command::Command;

    // One sample to build: its name and where its counts come from.
    struct SampleInput
    {
        QString name;
        QString file;
        Zem::Ontology::InputFormat::Options options;
    };

    QString getName() const override;
    QString getSummary() const override;

    // "ncbi.ontology" in the data folder ("path", else the application data folder); empty when
    // there is no data folder.
    static QString getDefaultTaxonomyFile();
    // Why there is no default taxonomy, and what to do.
    static QString noDataFolderMessage();

protected:
    void setUp(QCommandLineParser& parser) override;
    int execute(const QCommandLineParser& parser) override;

private:
    // Success, or a refusal when the input does not read as the format or lacks the column.
    int checkInput(const Zem::Ontology::InputFormat& format, const QString& input,
                   const Zem::Ontology::InputFormat::Options& options);
    // A usage error when an option does not apply to the format.
    int checkOptions(const QCommandLineParser& parser, const Zem::Ontology::InputFormat& format);
    // Success with the format the input's first lines show, said on stderr, or a refusal that
    // names what was considered.
    int detectFormat(const QString& input, const Zem::Ontology::InputFormat*& format);
    // The samples the inputs give: one per input, or one per value column of each with
    // allColumns; named by names when given. A usage error when the names do not fit.
    int listSamples(const Zem::Ontology::InputFormat& format, const QStringList& inputs, const QStringList& names,
                    bool allColumns, const Zem::Ontology::InputFormat::Options& options,
                    std::vector<SampleInput>& samples);
    // Both give what the inputs' reading passed over in report.
    int buildWithTask(const Zem::Ontology::InputFormat& format, const std::vector<SampleInput>& samples,
                      const QString& output, const QString& taxonomy, ProgressBar& bar,
                      Zem::Ontology::BuildReport& report);
    int buildPaths(const Zem::Ontology::InputFormat& format, const std::vector<SampleInput>& samples,
                   const QString& input, const QString& output, ProgressBar& bar, Zem::Ontology::BuildReport& report);
    // Says what the input's reading passed over; a failure when the chart counts nothing, or
    // when strict and anything was passed over.
    int finish(const Zem::Ontology::BuildReport& report, const QString& input, const QString& output, bool strict);
    // Success, or a failure when the chart counts nothing.
    int checkCounted(const QString& input, const QString& output);
};

} // namespace Cli
} // namespace Sorvik
