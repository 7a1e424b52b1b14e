#pragma once

#include "cli/chartoptions.h"
#include "cli/command.h"

namespace Sorvik {
namespace Cli {

// sorvik-cli html CHART -o chart.html: writes a counted chart as one self-contained interactive
// web page.
class HtmlCommand : public Command
{
public:
    using Command::Command;

    QString getName() const override;
    QString getSummary() const override;

protected:
    void setUp(QCommandLineParser& parser) override;
    int execute(const QCommandLineParser& parser) override;

private:
    ChartOptions chart;
};

} // namespace Cli
} // namespace Sorvik
