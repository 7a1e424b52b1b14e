#pragma once

#include "cli/chartoptions.h"
#include "cli/command.h"

#include <memory>

class QGraphicsItem;

namespace Sorvik {
namespace Viewer {
class PieChartItem;
}
} // namespace Sorvik

namespace Sorvik {
namespace Cli {

// sorvik-cli render CHART -o OUT: draws a counted chart as the viewer shows it at its root and
// writes it as a PNG, SVG or PDF image: its first sample, the sample --sample names, or with
// --sample all every sample side by side with one legend.
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
    // The chart of one sample (ChartTree::allSamples for none given), or null when it counts nothing.
    std::unique_ptr<Viewer::PieChartItem> drawSample(const QString& chartFile, int sample) const;
    std::unique_ptr<QGraphicsItem> drawGrid(const QString& chartFile) const;

    ChartOptions chart;
};

} // namespace Cli
} // namespace Sorvik
