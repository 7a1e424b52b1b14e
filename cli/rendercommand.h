#pragma once

#include "cli/chartoptions.h"
#include "cli/command.h"

namespace Sorvik {
namespace Cli {

// sorvik-cli render CHART -o OUT: draws a counted chart as the viewer shows it at its root and
// writes it as a PNG, SVG or PDF image.
class RenderCommand : public Command
{
public:
    using Command::Command;

    QString getName() const override;
    QString getSummary() const override;
    bool needsGui() const override { return true; }

protected:
    void setUp(QCommandLineParser& parser) override;
    int execute(const QCommandLineParser& parser) override;

private:
    ChartOptions chart;
};

} // namespace Cli
} // namespace Sorvik
