#pragma once

#include "cli/command.h"

namespace Sorvik {
namespace Cli {

// sorvik-cli update-taxonomy [--taxonomy FILE] [ARCHIVE]: the NCBI taxonomy cache made anew,
// from NCBI's download address or from a taxdmp.zip the user has, and swapped in for the old
// one only once complete; a failure or Ctrl-C leaves the old cache as it was.
class UpdateTaxonomyCommand : public Command
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
