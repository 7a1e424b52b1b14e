#pragma once

#include "cli/command.h"

namespace Zem {
namespace Ontology {
class Ontology;
}
} // namespace Zem

namespace Sorvik {
namespace Cli {

// sorvik-cli info FILE: the header values and root of an ontology file, for a chart the reads it
// holds under "unknown" and "unclassified", and for a chart of several samples their names and
// totals ("samples: N", then "sample: NAME<TAB>TOTAL" each).
class InfoCommand : public Command
{
public:
    using Command::Command;

    QString getName() const override;
    QString getSummary() const override;

protected:
    void setUp(QCommandLineParser& parser) override;
    int execute(const QCommandLineParser& parser) override;

private:
    void printPlacedReads(const Zem::Ontology::Ontology& ontology);
    // Nothing for a chart of one sample; throws for a damaged samples table before printing.
    QStringList listSamples(const Zem::Ontology::Ontology& ontology);
};

} // namespace Cli
} // namespace Sorvik
