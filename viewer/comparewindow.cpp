#include "viewer/comparewindow.h"

#include "nu/prompter.h"
#include "viewer/browser.h"
#include "viewer/charttree.h"
#include "viewer/comparedialog.h"
#include "viewer/comparegrid.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/view.h"

#include <QAction>
#include <QDockWidget>
#include <QFileInfo>
#include <QIcon>
#include <QLocale>
#include <QStatusBar>
#include <QToolBar>

#include <vector>

namespace Sorvik {
namespace Viewer {

namespace {

PieChartItem* findSlice(PieChartItem* root, const QString& id)
{
    std::vector<PieChartItem*> open;
    if (root)
        open.push_back(root);
    while (!open.empty()) {
        PieChartItem* item = open.back();
        open.pop_back();
        if (item->getId() == id)
            return item;
        for (PieChartItem* child : item->sortedChildren<PieChartItem>())
            open.push_back(child);
    }
    return nullptr;
}

} // namespace

CompareWindow::CompareWindow(std::shared_ptr<SampleCharts> sampleCharts, const QList<int>& shown,
                             const Navigator& start, const SampleCharts::Options& drawing, QWidget* parent)
    : QMainWindow(parent)
    , charts(std::move(sampleCharts))
    , prompter(std::make_shared<nu::Prompter>())
    , samples(shown)
    , navigator(start)
    , options(drawing)
    , grid(new CompareGrid(this))
    , browser(nullptr)
{
    setWindowFlag(Qt::Window);
    setObjectName(QStringLiteral("compareWindow"));
    setWindowTitle(tr("Compare samples \u2014 %1").arg(QFileInfo(charts->getFileName()).fileName()));
    setCentralWidget(grid);

    auto* dock = new QDockWidget(tr("Navigation"), this);
    dock->setObjectName(QStringLiteral("compareNavigationDock"));
    browser = new Browser(dock);
    dock->setWidget(browser);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    resizeDocks({dock}, {360}, Qt::Horizontal);

    createActions();
    connect(grid, &CompareGrid::signalItemEntered, this, &CompareWindow::slotCellEntered);
    connect(grid, &CompareGrid::signalSelectedItem, this, &CompareWindow::slotSelected);
    connect(grid, &CompareGrid::signalSliceHovered, this, &CompareWindow::slotHovered);
    connect(browser, &Browser::signalSelectedItem, this, &CompareWindow::slotSelected);
    connect(browser, &Browser::signalItemEntered, this, &CompareWindow::slotBrowserEntered);
    connect(browser, &Browser::signalNodeChosen, this, &CompareWindow::slotNodeChosen);
    resize(1200, 800);
    redraw();
}

CompareWindow::~CompareWindow()
{
    // The Navigation panel lists the slices of the chart kept here: it lets go of them first.
    browser->setPieChart(nullptr);
}

void CompareWindow::createActions()
{
    const auto make = [this](const QString& text, const QString& tip, const QString& icon) {
        auto* action = new QAction(QIcon(icon), text, this);
        action->setStatusTip(tip);
        action->setToolTip(tip);
        return action;
    };
    goRoot = make(tr("Go to root taxon"), tr("Draws every sample from the root"), QStringLiteral(":/icons/go-top.svg"));
    goRoot->setShortcut(QKeySequence(Qt::Key_Home));
    stepOut = make(tr("Step out"), tr("Draws every sample from the parent of the centre"),
                   QStringLiteral(":/icons/go-up.svg"));
    stepOut->setShortcuts({QKeySequence(Qt::Key_Backspace), QKeySequence(Qt::ALT | Qt::Key_Up)});
    stepInto = make(tr("Step into"), tr("Draws every sample from the selected taxon"),
                    QStringLiteral(":/icons/go-down.svg"));
    stepInto->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Down));
    chooseSamples = make(tr("Choose samples…"), tr("Chooses the samples compared"),
                         QStringLiteral(":/icons/view-compare.svg"));
    connect(goRoot, &QAction::triggered, this, &CompareWindow::slotGoRoot);
    connect(stepOut, &QAction::triggered, this, &CompareWindow::slotStepOut);
    connect(stepInto, &QAction::triggered, this, &CompareWindow::slotStepInto);
    connect(chooseSamples, &QAction::triggered, this, &CompareWindow::slotChooseSamples);

    QToolBar* bar = addToolBar(tr("Navigation"));
    bar->setObjectName(QStringLiteral("compareToolBar"));
    bar->addActions({stepInto, goRoot, stepOut});
    bar->addSeparator();
    bar->addAction(chooseSamples);
}

void CompareWindow::setPrompter(std::shared_ptr<nu::Prompter> p)
{
    if (p)
        prompter = std::move(p);
}

void CompareWindow::setSamples(const QList<int>& shown)
{
    samples = shown;
    redraw();
}

void CompareWindow::setOptions(const SampleCharts::Options& drawing)
{
    if (drawing == options)
        return;
    options = drawing;
    redraw();
}

void CompareWindow::slotColoursChanged()
{
    redraw();
}

void CompareWindow::slotGoRoot()
{
    grid->slotSelectItem(QString());
    navigator.goToRoot();
    redraw();
}

void CompareWindow::slotStepOut()
{
    grid->slotSelectItem(QString());
    navigator.goToUpperLevel(1);
    redraw();
}

void CompareWindow::slotStepInto()
{
    const QString id = grid->getSelectedId();
    for (int cell = 0; cell < grid->getCount(); ++cell) {
        if (PieChartItem* item = grid->getView(cell)->getScene()->findItem(id)) {
            enter(item);
            return;
        }
    }
    enter(findSlice(listed.get(), id));
}

void CompareWindow::slotCellEntered(int cell)
{
    if (View* view = grid->getView(cell))
        enter(view->getScene()->getSelectedItem());
}

void CompareWindow::slotBrowserEntered()
{
    enter(findSlice(listed.get(), browser->getSelectedId()));
}

void CompareWindow::enter(PieChartItem* item)
{
    // "N others" is no taxon; the centre is where the charts already are.
    if (!item || item->isOthers() || item->getChainPositions().contains(navigator.getCurrentPosition()))
        return;
    navigator.goToLevel(item);
    // The entered taxon is the centre now: nothing is selected, as in the main window.
    grid->slotSelectItem(QString());
    redraw();
}

void CompareWindow::slotNodeChosen(int node)
{
    const std::shared_ptr<const ChartTree> tree = charts->getWholeTree();
    if (!tree || node < 0 || node >= tree->size())
        return;
    // Drawn beside its siblings, from its parent, where it can be.
    const int parent = tree->at(node).parent;
    for (const int centre : {parent, node}) {
        if (centre == ChartTree::none)
            continue;
        navigator.goToRoot();
        navigator.goToLevel(tree->getPosition(centre), tree->getParentPositions(centre));
        redraw();
        const QString id = browser->getDrawnId(node);
        if (!id.isEmpty()) {
            grid->slotSelectItem(id);
            browser->slotSelectItem(id);
            updateActions();
            return;
        }
    }
}

void CompareWindow::slotSelected(const QString& id)
{
    grid->slotSelectItem(id);
    browser->slotSelectItem(id);
    updateActions();
}

void CompareWindow::slotHovered(int cell, const QString& id)
{
    const View* view = grid->getView(cell);
    const PieChartItem* slice = view ? view->getScene()->findItem(id) : nullptr;
    if (!slice || cell >= samples.size()) {
        statusBar()->clearMessage();
        return;
    }
    const QLocale locale;
    statusBar()->showMessage(tr("%1: %2: count %3, %4 % of the centre")
                                 .arg(charts->getNames().value(samples.at(cell)),
                                      slice->isOthers() ? slice->getText().text : slice->getChainText(),
                                      locale.toString(slice->getAccumCount()),
                                      locale.toString(slice->getPercentage(), 'f', 2)));
}

void CompareWindow::slotChooseSamples()
{
    CompareDialog dialog(charts->getNames(), charts->getTotals(), this);
    dialog.setChosen(samples);
    if (prompter->exec(dialog) != QDialog::Accepted || !dialog.isAcceptable())
        return;
    setSamples(dialog.getChosen());
}

QString CompareWindow::titleOf(int sample, const PieChartItem* chart, const QString& centreName) const
{
    const QLocale locale;
    const QString name = charts->getNames().value(sample);
    const qint64 total = charts->getTotals().value(sample);
    const QString title = tr("%1 \u2014 total %2").arg(name, locale.toString(total));
    if (navigator.isAtRoot())
        return title;
    const qint64 here = chart ? chart->getAccumCount() : 0;
    const double share = total > 0 ? 100.0 * static_cast<double>(here) / static_cast<double>(total) : 0.0;
    return tr("%1\n%2: %3 (%4 %)").arg(title, centreName, locale.toString(here), locale.toString(share, 'f', 2));
}

void CompareWindow::redraw()
{
    const std::shared_ptr<const ChartTree> whole = charts->getWholeTree();
    const Navigator::Position centre = navigator.getCurrentPosition();
    std::vector<CompareGrid::Cell> cells;
    QStringList names;
    std::vector<std::shared_ptr<const ChartTree>> trees;
    try {
        std::vector<std::unique_ptr<PieChartItem>> drawn = charts->draw(samples, centre, options);
        const int centreNode = whole ? std::max(0, whole->indexOfRow(centre.getRow())) : 0;
        const QString centreName = whole && !whole->isEmpty() ? whole->getName(centreNode, options.rawNames) : QString();
        for (int i = 0; i < samples.size(); ++i) {
            CompareGrid::Cell cell;
            cell.title = titleOf(samples.at(i), drawn[static_cast<size_t>(i)].get(), centreName);
            cell.note = tr("No %1 in this sample.").arg(centreName);
            cell.chart = std::move(drawn[static_cast<size_t>(i)]);
            cells.push_back(std::move(cell));
            names.append(charts->getNames().value(samples.at(i)));
            trees.push_back(charts->getTree(samples.at(i)));
        }
        browser->setPieChart(nullptr);
        listed = charts->draw(ChartTree::allSamples, centre, options);
    } catch (...) {
        // The chart file changed or went away under the window.
        browser->setPieChart(nullptr);
        listed.reset();
        grid->setCells({});
        statusBar()->showMessage(tr("The samples couldn't be drawn: the chart file can no longer be read."));
        updateActions();
        return;
    }
    grid->setCells(std::move(cells));
    browser->setPieChart(listed.get());
    browser->setChartTree(charts->getTree(ChartTree::allSamples), options.rawNames);
    browser->setSamples(names, trees);
    browser->slotSelectItem(grid->getSelectedId());
    updateActions();
}

void CompareWindow::updateActions()
{
    goRoot->setEnabled(!navigator.isAtRoot());
    stepOut->setEnabled(!navigator.isAtRoot());
    const QString id = grid->getSelectedId();
    stepInto->setEnabled(!id.isEmpty() && !id.startsWith(QLatin1Char('-')));
}

} // namespace Viewer
} // namespace Sorvik
