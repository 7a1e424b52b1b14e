#pragma once

#include "cli/command.h"

namespace Sorvik {
namespace Cli {

// sorvik-cli table CHART [-o OUT.tsv|OUT.csv] [--sample NAME|all]: writes the numbers behind a
// counted chart, one row per taxon, to a file or to standard output.
class TableCommand : public Command
{
public:
    using Command::Command;

    QString getName() const override;
    QString getSummary() const override;

protected:
    void setUp(QCommandLineParser& parser) override;
    int execute(const QCommandLineParser& parser) override;
};

} // namespace Cli
} // namespace Sorvik
