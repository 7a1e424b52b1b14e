#pragma once

#include "cli/command.h"

namespace Sorvik {
namespace Cli {

// sorvik-cli merge CHART... -o OUT: one chart of the samples of charts made separately (one build
// per sample on a cluster, say), their trees matched by taxon id or by path (see SourceChart).
// Merging is associative: merging a merge with another chart gives the rows that merging all of
// them at once gives.
class MergeCommand : public Command
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
