#pragma once

#include "cli/command.h"

namespace Sorvik {
namespace Cli {

class ProgressBar;

// sorvik-cli build FORMAT INPUT -o OUT: a counted chart file from an input file, made by the
// same steps as the viewer's: the build task for taxon ids and MG-Taxa files (with the NCBI
// taxonomy cache, downloaded and imported when missing), the synchronous builder for Krona and
// QIIME files.
class BuildCommand : public Command
{
public:
    using Command::Command;

    QString getName() const override;
    QString getSummary() const override;

    // The cache the viewer keeps: "ncbi.ontology" in its data folder.
    static QString getDefaultTaxonomyFile();

protected:
    void setUp(QCommandLineParser& parser) override;
    int execute(const QCommandLineParser& parser) override;

private:
    int buildWithTask(const QString& format, const QString& input, const QString& output, const QString& taxonomy,
                      ProgressBar& bar);
    int buildPaths(const QString& format, const QString& input, const QString& output, int column, ProgressBar& bar);
    // Success, or a failure when the chart counts nothing.
    int checkCounted(const QString& input, const QString& output);
};

} // namespace Cli
} // namespace Sorvik
