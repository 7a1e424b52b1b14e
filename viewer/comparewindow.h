#pragma once

#include "viewer/navigator.h"
#include "viewer/samplecharts.h"

#include <QList>
#include <QMainWindow>

#include <memory>

class QAction;

namespace nu {
class Prompter;
}

namespace Sorvik {
namespace Viewer {

class Browser;
class CompareGrid;
class PieChartItem;

// View > Compare: chosen samples of one chart side by side, a small chart each under its name and
// total, all with one centre and the colours of the whole chart. Stepping into a slice of any of
// them, stepping out or going to the root redraws them all there; a taxon absent from a sample
// is absent from its chart. The Navigation panel lists the taxa of all the chart's samples added
// up, with a count and a percentage column for each sample shown.
class CompareWindow : public QMainWindow
{
    Q_OBJECT
public:
    // charts: shared with the main window, which draws single samples from the same trees.
    CompareWindow(std::shared_ptr<SampleCharts> charts, const QList<int>& samples, const Navigator& start,
                  const SampleCharts::Options& options, QWidget* parent = nullptr);
    ~CompareWindow() override;

    void setPrompter(std::shared_ptr<nu::Prompter> prompter);
    // The samples shown, by index, in this order; redraws.
    void setSamples(const QList<int>& samples);
    QList<int> getSamples() const { return samples; }
    // Redraws when the options differ from those drawn.
    void setOptions(const SampleCharts::Options& options);
    // New colours for the same chart; redraws.
    void slotColoursChanged();

    CompareGrid* getGrid() const { return grid; }
    Browser* getBrowser() const { return browser; }
    const Navigator& getNavigator() const { return navigator; }
    QAction* getStepInto() const { return stepInto; }
    QAction* getStepOut() const { return stepOut; }
    QAction* getGoRoot() const { return goRoot; }
    QAction* getChooseSamples() const { return chooseSamples; }

public slots:
    void slotGoRoot();
    void slotStepOut();
    // Steps into the selected slice in every chart.
    void slotStepInto();
    // Asks which samples to show.
    void slotChooseSamples();

private:
    void createActions();
    // Draws every chart from the navigator's centre, and the Navigation panel's rows.
    void redraw();
    void slotCellEntered(int cell);
    void slotBrowserEntered();
    void slotNodeChosen(int node);
    void slotSelected(const QString& id);
    void slotHovered(int cell, const QString& id);
    void enter(PieChartItem* item);
    void updateActions();
    // The title of a cell: the sample's name and total, and the centre's count and share when
    // stepped in.
    QString titleOf(int sample, const PieChartItem* chart, const QString& centreName) const;

    std::shared_ptr<SampleCharts> charts;
    std::shared_ptr<nu::Prompter> prompter;
    QList<int> samples;
    Navigator navigator;
    SampleCharts::Options options;
    CompareGrid* grid = nullptr;
    Browser* browser = nullptr;
    // The chart of all samples added up, whose slices the Navigation panel lists; no scene
    // shows it.
    std::unique_ptr<PieChartItem> listed;
    QAction* stepInto = nullptr;
    QAction* stepOut = nullptr;
    QAction* goRoot = nullptr;
    QAction* chooseSamples = nullptr;
};

} // namespace Viewer
} // namespace Sorvik
