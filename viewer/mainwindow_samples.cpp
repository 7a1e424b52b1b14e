// The main window's handling of charts of several samples: the sample chooser, and View > Compare.
#include "viewer/mainwindow.h"

#include "nu/prompter.h"
#include "viewer/browser.h"
#include "viewer/charttree.h"
#include "viewer/comparedialog.h"
#include "viewer/comparewindow.h"
#include "viewer/piechartitem.h"
#include "viewer/samplechooser.h"
#include "viewer/scene.h"
#include "viewer/settings.h"
#include "viewer/view.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QToolBar>
#include <QVBoxLayout>

namespace Sorvik {
namespace Viewer {

CompareWindow* MainWindow::getCompareWindow() const
{
    return compareWindow;
}

void MainWindow::createSampleControls(QMenu* viewMenu)
{
    sampleChooser = new SampleChooser(this);
    viewCompare = new QAction(QIcon(QStringLiteral(":/icons/view-compare.svg")), tr("Compare…"), this);
    viewCompare->setObjectName(QStringLiteral("viewCompare"));
    viewCompare->setStatusTip(tr("Draws chosen samples of the chart side by side, with one centre and one colour key"));
    viewCompare->setToolTip(viewCompare->statusTip());
    viewCompare->setEnabled(false);

    viewMenu->addSeparator();
    viewMenu->addAction(sampleChooser->getPrevious());
    viewMenu->addAction(sampleChooser->getNext());
    viewMenu->addAction(viewCompare);
    QToolBar* bar = addToolBar(tr("Samples"));
    bar->setObjectName(QStringLiteral("samplesToolBar"));
    sampleChooser->addTo(bar);
    bar->addAction(viewCompare);

    // Said in place of the chart when its centre holds nothing in the sample drawn.
    absentNote = new QLabel(view->viewport());
    absentNote->setObjectName(QStringLiteral("absentNote"));
    absentNote->setAlignment(Qt::AlignCenter);
    absentNote->setWordWrap(true);
    absentNote->hide();
    auto* layout = new QVBoxLayout(view->viewport());
    layout->addWidget(absentNote, 0, Qt::AlignCenter);

    connect(sampleChooser, &SampleChooser::signalSampleChosen, this, &MainWindow::slotSampleChosen);
    connect(viewCompare, &QAction::triggered, this, &MainWindow::slotViewCompare);
}

void MainWindow::updateSamples()
{
    if (!sampleCharts || sampleCharts->getWholeTree() != tree) {
        sampleCharts = std::make_shared<SampleCharts>(fileHandler.getFileName(), tree, colours);
        sampleChooser->setSamples(sampleCharts->getNames(), sampleCharts->getTotals());
        compared.clear();
    } else if (sampleCharts->getColours() != colours) {
        // Another palette, or colours matched to another chart: the grid takes them too.
        sampleCharts->setColours(colours);
        if (compareWindow)
            compareWindow->slotColoursChanged();
    }
    viewCompare->setEnabled(sampleCharts->getCount() >= CompareDialog::minimumChosen);
    showSampleColumns();
}

void MainWindow::showSampleColumns()
{
    // The Navigation panel's columns name the sample drawn, when there is a choice.
    if (!sampleCharts || sampleCharts->getCount() < 2) {
        browser->setSamples({}, {});
        return;
    }
    const int current = sampleChooser->getCurrent();
    browser->setSamples({sampleCharts->getNames().value(current)}, {sampleCharts->getTree(current)});
}

void MainWindow::forgetSamples()
{
    sampleCharts.reset();
    sampleChooser->clear();
    browser->setSamples({}, {});
    viewCompare->setEnabled(false);
    compared.clear();
    absentNote->hide();
    // Its charts are of the chart that goes.
    if (compareWindow)
        compareWindow->close();
}

std::shared_ptr<const ChartTree> MainWindow::getDrawnTree()
{
    return sampleCharts ? sampleCharts->getTree(sampleChooser->getCurrent()) : tree;
}

SampleCharts::Options MainWindow::getDrawingOptions() const
{
    const App::Settings settings;
    SampleCharts::Options options;
    options.maxLevels = maxLevels;
    options.minPercentage = minPercentage;
    options.collapse = settings.isCollapsing();
    options.rawNames = settings.isShowingRawNames();
    return options;
}

bool MainWindow::showAbsentCentre()
{
    absentNote->hide();
    if (!sampleCharts || sampleCharts->getCount() < 2 || !tree || tree->isEmpty())
        return false;
    const int centre = std::max(0, tree->indexOfRow(navigator.getCurrentPosition().getRow()));
    const QString sample = sampleCharts->getNames().value(sampleChooser->getCurrent());
    absentNote->setText(tr("%1 holds nothing of %2.\nStep out, or choose another sample.")
                            .arg(sample, tree->getName(centre, App::Settings().isShowingRawNames())));
    absentNote->show();
    browser->setChartTree(getDrawnTree(), App::Settings().isShowingRawNames());
    showSampleColumns();
    actions->setFileOpened();
    actions->updateNavigation(navigator.isAtRoot());
    updateTitle();
    return true;
}

void MainWindow::slotSampleChosen(int)
{
    // The same taxon stays selected where the new sample has it.
    const QString selected = browser->getSelectedId();
    slotGenerate();
    if (!fileHandler.isOpened() || selected.isEmpty() || !view->getScene()->findItem(selected))
        return;
    view->getScene()->slotSelectItem(selected);
    browser->slotSelectItem(selected);
    slotSelectItem(selected);
}

void MainWindow::slotViewCompare()
{
    if (!sampleCharts || sampleCharts->getCount() < CompareDialog::minimumChosen)
        return;
    CompareDialog dialog(sampleCharts->getNames(), sampleCharts->getTotals(), this);
    dialog.setChosen(compared.isEmpty() ? CompareDialog::defaultChoice(sampleChooser->getCurrent(), sampleCharts->getCount())
                                        : compared);
    if (prompter->exec(dialog) != QDialog::Accepted || !dialog.isAcceptable())
        return;
    compared = dialog.getChosen();
    if (!compareWindow) {
        compareWindow = new CompareWindow(sampleCharts, compared, navigator, getDrawingOptions(), this);
        compareWindow->setAttribute(Qt::WA_DeleteOnClose);
        compareWindow->setPrompter(prompter);
    } else {
        compareWindow->setSamples(compared);
    }
    compareWindow->show();
    compareWindow->raise();
    compareWindow->activateWindow();
}

} // namespace Viewer
} // namespace Sorvik
