#pragma once

#include "cli/command.h"

namespace Sorvik {
namespace Cli {

// sorvik-cli info FILE: the header values and root of an ontology file.
class InfoCommand : public Command
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
