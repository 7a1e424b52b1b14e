#pragma once

#include "cli/command.h"

namespace Sorvik {
namespace Cli {

// sorvik-cli import-taxonomy ARCHIVE -o OUT: the NCBI dump archive as the uncounted taxonomy
// ontology that NCBI-based charts are counted against (the viewer's "ncbi.ontology").
class ImportTaxonomyCommand : public Command
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
