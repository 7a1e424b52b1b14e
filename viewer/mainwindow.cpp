#include "viewer/mainwindow.h"

#include "editor/mainwindow.h"
#include "nu/multiprogresswidget.h"
#include "nu/prompter.h"
#include "nu/runinbackground.h"
#include "ontology/buildersource.h"
#include "ontology/inputformat.h"
#include "ontology/ontology.h"
#include "ontology/source.h"
#include "viewer/aboutdialog.h"
#include "viewer/apppreferencesdialog.h"
#include "ontology/buildreport.h"
#include "ontology/taxonomycache.h"
#include "viewer/browser.h"
#include "viewer/buildncbipiechartasynctask.h"
#include "viewer/buildreportdialog.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/comparewindow.h"
#include "viewer/palette.h"
#include "viewer/newpiechartwizard.h"
#include "viewer/openedfile.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/settings.h"
#include "viewer/view.h"
#include "viewer/viewpreferencesdialog.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QSaveFile>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

namespace Sorvik {
namespace Viewer {

namespace {

// Fills a dialog with the progress of a task and a Cancel button that rejects it.
nu::MultiProgressWidget* makeProgressDialog(QDialog& dialog, const QString& title)
{
    dialog.setWindowTitle(title);
    dialog.setModal(true);
    dialog.setMinimumWidth(460);
    auto* progress = new nu::MultiProgressWidget(&dialog);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(progress);
    layout->addStretch();
    layout->addWidget(buttons);
    return progress;
}

// File dialogs for charts open where the last chart was opened or saved.
const QString chartFolder = QStringLiteral("chart");

// Trees of more nodes than this are freed on another thread.
constexpr int largeTree = 100000;

// Shows the wait cursor while the interface thread is busy.
class BusyCursor
{
public:
    BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

} // namespace

const QString MainWindow::workingFileName = QStringLiteral("target.piechart");

const char* MainWindow::OntologyEmptyException::what() const noexcept
{
    return "the chart holds no counted taxa";
}

const char* MainWindow::OntologyNotCounterException::what() const noexcept
{
    return "the file is not counted";
}

MainWindow::Actions::Actions(MainWindow* window)
{
    const auto make = [window](QActionGroup* group, const QString& text, const QString& tip, const QString& icon,
                               const QKeySequence& key = QKeySequence()) {
        auto* action = new QAction(text, group ? static_cast<QObject*>(group) : window);
        action->setStatusTip(tip);
        action->setToolTip(tip);
        if (!icon.isEmpty())
            action->setIcon(QIcon(icon));
        if (!key.isEmpty())
            action->setShortcut(key);
        if (group)
            group->addAction(action);
        return action;
    };
    // Groups only gather actions to enable them together; several may be checked or none.
    const auto group = [window] {
        auto* g = new QActionGroup(window);
        g->setExclusive(false);
        return g;
    };

    file = group();
    fileNew = make(file, tr("New"), tr("Creates a new chart from source files"), QStringLiteral(":/icons/document-new.svg"),
                   QKeySequence::New);
    fileOpen = make(file, tr("Open"), tr("Open previously saved charts"), QStringLiteral(":/icons/document-open.svg"),
                    QKeySequence::Open);
    fileSaveAs = make(file, tr("Save as"), tr("Save current piechart in file"),
                      QStringLiteral(":/icons/document-save-as.svg"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
    fileClose = make(nullptr, tr("Close"), tr("Close current piechart"), QString(), QKeySequence::Close);
    appPreferences = make(nullptr, tr("Preferences"), tr("Application preferences"),
                          QStringLiteral(":/icons/preferences-desktop.svg"));
    exit = make(nullptr, tr("Exit"), tr("Exit Sorvik"), QStringLiteral(":/icons/app-exit.svg"), QKeySequence::Quit);
    exit->setMenuRole(QAction::QuitRole);

    navigation = group();
    stepInto = make(navigation, tr("Step into"),
                    tr("Re-generate the taxonomy pie charts with selected taxon as root."),
                    QStringLiteral(":/icons/go-down.svg"), QKeySequence(Qt::ALT | Qt::Key_Down));
    goRoot = make(navigation, tr("Go to root taxon"), tr("Re-generate the root taxonomy pie charts."),
                  QStringLiteral(":/icons/go-top.svg"), QKeySequence(Qt::Key_Home));
    stepOut = make(navigation, tr("Step out"), tr("Go to the parent of the current taxon."),
                   QStringLiteral(":/icons/go-up.svg"));
    stepOut->setShortcuts({QKeySequence(Qt::Key_Backspace), QKeySequence(Qt::ALT | Qt::Key_Up)});

    view = group();
    viewPreferences = make(view, tr("Preferences"), tr("Fit the current chart in the window."),
                           QStringLiteral(":/icons/preferences-desktop.svg"));
    viewMatchColours = make(view, tr("Match colours to…"),
                            tr("Give the taxa this chart shares with another chart the colours they have there"),
                            QString());
    tools = group();
    toolsEditor = make(tools, tr("Editor"), tr("Open pie chart editor for the current chart."),
                       QStringLiteral(":/icons/launch-editor.svg"));
    help = group();
    helpAbout = make(help, tr("About Sorvik"), tr("About Sorvik"), QStringLiteral(":/icons/sorvik-piechart.svg"));
    helpAbout->setMenuRole(QAction::AboutRole);
}

void MainWindow::Actions::setFileOpened()
{
    fileSaveAs->setEnabled(true);
    fileClose->setEnabled(true);
    navigation->setEnabled(true);
    view->setEnabled(true);
}

void MainWindow::Actions::setFileClosed()
{
    fileSaveAs->setEnabled(false);
    fileClose->setEnabled(false);
    navigation->setEnabled(false);
    view->setEnabled(false);
}

void MainWindow::Actions::updateNavigation(bool atRoot)
{
    goRoot->setEnabled(!atRoot);
    stepOut->setEnabled(!atRoot);
    stepInto->setEnabled(false);
}

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
    , prompter(std::make_shared<nu::Prompter>())
    , actions(std::make_unique<Actions>(this))
    , view(new View(this))
{
    setWindowTitle(tr("Sorvik Piechart Viewer"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/sorvik-piechart.svg")));
    setCentralWidget(view);

    dock = new QDockWidget(tr("Navigation"), this);
    dock->setObjectName(QStringLiteral("navigationDock"));
    browser = new Browser(dock);
    dock->setWidget(browser);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    // Room for a taxon's name beside its count and share.
    resizeDocks({dock}, {360}, Qt::Horizontal);

    exports = new ChartExports(this, [this] { return getExportSource(); });
    // Exports need an open chart, as Save as does.
    connect(actions->fileSaveAs, &QAction::changed, exports,
            [this] { exports->setEnabled(actions->fileSaveAs->isEnabled()); });
    createMenusAndToolBars();
    statusBar()->addPermanentWidget(new QLabel(tr("Taxonomy classification."), statusBar()));
    resize(1100, 760);

    connect(actions->fileNew, &QAction::triggered, this, &MainWindow::slotFileNew);
    connect(actions->fileOpen, &QAction::triggered, this, &MainWindow::slotFileOpen);
    connect(actions->fileSaveAs, &QAction::triggered, this, &MainWindow::slotFileSaveAs);
    connect(actions->fileClose, &QAction::triggered, this, &MainWindow::slotFileClose);
    connect(actions->appPreferences, &QAction::triggered, this, &MainWindow::slotAppPreferences);
    connect(actions->exit, &QAction::triggered, this, &MainWindow::close);
    connect(actions->stepInto, &QAction::triggered, this, &MainWindow::slotNavigationStepInto);
    connect(actions->goRoot, &QAction::triggered, this, &MainWindow::slotNavigationGoRoot);
    connect(actions->stepOut, &QAction::triggered, this, &MainWindow::slotNavigationStepOut);
    connect(actions->viewPreferences, &QAction::triggered, this, &MainWindow::slotViewPreferences);
    connect(actions->viewMatchColours, &QAction::triggered, this, &MainWindow::slotViewMatchColours);
    connect(actions->toolsEditor, &QAction::triggered, this, &MainWindow::slotToolsEditor);
    connect(actions->helpAbout, &QAction::triggered, this, &MainWindow::slotHelpAbout);

    Scene* scene = view->getScene();
    connect(browser, &Browser::signalSelectedItem, scene, &Scene::slotSelectItem);
    connect(browser, &Browser::signalSelectedItem, this, &MainWindow::slotSelectItem);
    connect(scene, &Scene::signalSelectedItem, browser, &Browser::slotSelectItem);
    connect(scene, &Scene::signalSelectedItem, this, &MainWindow::slotSelectItem);
    connect(scene, &Scene::signalItemEntered, this, &MainWindow::slotNavigationStepInto);
    connect(scene, &Scene::signalSliceHovered, this, &MainWindow::slotSliceHovered);
    connect(browser, &Browser::signalItemEntered, this, &MainWindow::slotNavigationStepInto);
    connect(browser, &Browser::signalNodeChosen, this, &MainWindow::showTreeNode);
    setAcceptDrops(true);

    slotFileClose();
}

MainWindow::~MainWindow()
{
    // The browser lists the scene's slices: it lets go of them first.
    clearPieChart();
    if (task) {
        disconnect(task, nullptr, this, nullptr);
        task->slotSetCancelled();
        task = nullptr;
    }
    lingering.finish(task);
}

void MainWindow::createMenusAndToolBars()
{
    QMenu* fileMenu = menuBar()->addMenu(tr("&File"));
    fileMenu->addActions(actions->file->actions());
    fileMenu->addSeparator();
    fileMenu->addActions(exports->getActions());
    fileMenu->addSeparator();
    fileMenu->addAction(actions->fileClose);
    fileMenu->addSeparator();
    fileMenu->addAction(actions->appPreferences);
    fileMenu->addSeparator();
    fileMenu->addAction(actions->exit);
    menuBar()->addMenu(tr("&Navigation"))->addActions(actions->navigation->actions());
    QMenu* viewMenu = menuBar()->addMenu(tr("&View"));
    viewMenu->addActions(actions->view->actions());
    QMenu* toolsMenu = menuBar()->addMenu(tr("&Tools"));
    toolsMenu->addActions(actions->tools->actions());
    // The dock can be closed; this brings it back.
    toolsMenu->addSeparator();
    toolsMenu->addAction(dock->toggleViewAction());
    menuBar()->addMenu(tr("&Help"))->addActions(actions->help->actions());

    const auto bar = [this](const QString& title, const char* name, QActionGroup* group) {
        QToolBar* toolBar = addToolBar(title);
        toolBar->setObjectName(QLatin1String(name));
        toolBar->addActions(group->actions());
    };
    bar(tr("File"), "fileToolBar", actions->file);
    bar(tr("Navigation"), "navigationToolBar", actions->navigation);
    bar(tr("View"), "viewToolBar", actions->view);
    bar(tr("Tools"), "toolsToolBar", actions->tools);
    createSampleControls(viewMenu);
}

void MainWindow::setPrompter(std::shared_ptr<nu::Prompter> p)
{
    if (p)
        prompter = std::move(p);
    exports->setPrompter(prompter);
}

QMessageBox::StandardButton MainWindow::message(QMessageBox::Icon icon, const QString& title, const QString& text)
{
    return prompter->message(this, icon, title, text, QMessageBox::Ok);
}

void MainWindow::slotFileNew()
{
    if (task)
        return;
    NewPiechartWizard wizard(this);
    newChart(wizard);
}

void MainWindow::newChart(NewPiechartWizard& wizard)
{
    if (prompter->exec(wizard) != QDialog::Accepted)
        return;
    const Zem::Ontology::InputFormat* format = wizard.getFormat();
    // The wizard finishes only with a format, chosen or detected; a file changed since would be
    // refused when it is read.
    if (!format)
        return;
    QStringList checked;
    for (const NewPiechartWizard::Sample& sample : wizard.getSamples()) {
        if (checked.contains(sample.fileName))
            continue;
        checked << sample.fileName;
        const QString problem = OpenedFile::getInputProblem(*format, sample.fileName);
        if (!problem.isEmpty()) {
            message(QMessageBox::Warning, tr("Problem reading input"), problem);
            return;
        }
    }
    // The open chart goes only now that the user has chosen what replaces it.
    if (!slotFileClose())
        return;
    // A cancelled build still ending would delete the working file under the new chart.
    lingering.wait(task);
    const App::Settings settings;
    // The data folder may have gone since it was chosen; a failure to make it shows when the
    // chart is written.
    QDir().mkpath(settings.getPathDir().absolutePath());
    fileHandler.setOpened(settings.getPathDir().absoluteFilePath(workingFileName));
    navigator.goToRoot();
    forgetTree();
    auto samples = wizard.makeSampleSources();
    if (format->needsTaxonomy)
        startNcbiBuild(std::move(samples));
    else
        buildOnThisThread(std::move(samples));
}

void MainWindow::startNcbiBuild(SampleSources samples)
{
    auto newTask = std::make_unique<BuildNcbiPiechartAsyncTask>();
    newTask->setNcbiOntologyFile(App::Settings().getTaxonomyFile());
    newTask->setTargetFile(fileHandler.getFileName());
    for (auto& sample : samples)
        newTask->addSample(sample.first, std::move(sample.second));
    // From here on the task owns itself: it deletes itself once its thread has finished (the
    // last connection below, so that the window has read its state before).
    task = newTask.release();

    QDialog dialog(this);
    nu::MultiProgressWidget* progress = makeProgressDialog(dialog, tr("Generating piechart"));

    connect(&dialog, &QDialog::rejected, task, &BuildNcbiPiechartAsyncTask::slotSetCancelled);
    connect(&dialog, &QDialog::rejected, this, &MainWindow::slotBuildNcbiPiechartFinished);
    connect(task, &nu::AsyncTask::progressChanged, progress, &nu::MultiProgressWidget::slotProgressChanged);
    connect(task, &QThread::finished, this, &MainWindow::slotBuildNcbiPiechartFinished);
    connect(task, &QThread::finished, &dialog, &QDialog::accept);
    connect(task, &QThread::finished, task, &QObject::deleteLater);
    // Kept so that it can be waited for if it outlives the dialog.
    lingering.add(task);
    task->start(QThread::InheritPriority);
    prompter->exec(dialog);
    showBuildReport();
}

void MainWindow::slotBuildNcbiPiechartFinished()
{
    if (!task)
        return;
    BuildNcbiPiechartAsyncTask* finished = task;
    task = nullptr;
    disconnect(finished, nullptr, this, nullptr);
    switch (finished->getState()) {
    case nu::AsyncTask::Running:
        // Ended without failing: the working chart is complete. Its report is read first: the
        // drawing turns the event loop, where the finished task may be deleted.
        keepBuildReport(*finished);
        if (!firstTimeGenerate()) {
            builtReport.reset();
            taxonomyHint.clear();
            message(QMessageBox::Critical, tr("Problem creating new pie chart"), tr("Pie chart couldn't be generated"));
            setClosed();
        }
        break;
    case nu::AsyncTask::Failed:
        message(QMessageBox::Critical, tr("Problem creating new pie chart"), finished->getErrorMessage());
        setClosed();
        break;
    default:
        setClosed();
        break;
    }
}

void MainWindow::buildOnThisThread(SampleSources samples)
{
    Zem::Ontology::BuildReport report;
    try {
        const BusyCursor busy;
        Zem::Ontology::BuilderSource builder(fileHandler.getFileName());
        for (auto& sample : samples)
            builder.addSample(sample.first, std::move(sample.second));
        builder.load();
        report = builder.getReport();
        builder.count(false);
        builder.build();
    } catch (...) {
        updateTitle();
        message(QMessageBox::Critical, tr("Problem opening piechart"), tr("Piechart couldn't be generated"));
        return;
    }
    if (!firstTimeGenerate()) {
        // Nothing counted: there is no chart to draw.
        message(QMessageBox::Critical, tr("Problem opening piechart"), tr("Piechart couldn't be generated"));
        setClosed();
        return;
    }
    showReport(report);
}

void MainWindow::showReport(const Zem::Ontology::BuildReport& report)
{
    const QStringList summary = report.getSummary();
    if (summary.isEmpty())
        return;
    // Unknown ids come with their list, for the user to look them up.
    if (!report.unknownIds.empty()) {
        BuildReportDialog dialog(report, this);
        prompter->exec(dialog);
    } else if (report.hasSkips())
        message(QMessageBox::Warning, tr("Input not read in full"), summary.join(QLatin1Char('\n')));
    else
        message(QMessageBox::Information, tr("Input notes"), summary.join(QLatin1Char('\n')));
}

bool MainWindow::firstTimeGenerate()
{
    fileHandler.setModified();
    try {
        generate();
        return true;
    } catch (...) {
        clearPieChart();
        return false;
    }
}

void MainWindow::generate()
{
    clearPieChart();
    std::unique_ptr<PieChartItem> root;
    {
        loadTree();
        const App::Settings settings;
        const Zem::Ontology::Ontology ontology(fileHandler.getFileName());
        PieChartBuilder builder(ontology, navigator.getCurrentPosition());
        builder.setMaxLevels(maxLevels);
        builder.setMinPercentage(minPercentage);
        builder.setCollapse(settings.isCollapsing());
        builder.setRawNames(settings.isShowingRawNames());
        builder.setTree(getDrawnTree(), colours);
        builder.read();
        root = builder.takeRootItem();
    }
    if (!root && showAbsentCentre())
        return;
    if (!root)
        throw OntologyEmptyException();
    PieChartItem* chart = root.get();
    view->setPieChart(std::move(root));
    browser->setPieChart(chart);
    browser->setChartTree(getDrawnTree(), App::Settings().isShowingRawNames());
    showSampleColumns();
    actions->setFileOpened();
    actions->updateNavigation(navigator.isAtRoot());
    updateTitle();
    if (compareWindow)
        compareWindow->setOptions(getDrawingOptions());
}

void MainWindow::slotGenerate()
{
    try {
        generate();
    } catch (...) {
        // The working file changed or went away under the window.
        message(QMessageBox::Critical, tr("Problem opening piechart"), tr("Piechart couldn't be generated"));
        setClosed();
    }
}

void MainWindow::clearPieChart()
{
    absentNote->hide();
    browser->setPieChart(nullptr);
    view->setPieChart(nullptr);
}

void MainWindow::setClosed()
{
    actions->setFileClosed();
    fileHandler.setClosed();
    navigator.goToRoot();
    clearPieChart();
    forgetTree();
    shownFileName.clear();
    updateTitle();
}

void MainWindow::loadTree()
{
    if (tree && colours)
        return;
    Palette palette;
    try {
        palette = Palette::byName(App::Settings().getPalette());
    } catch (const Palette::UnknownPaletteException&) {
        // A setting from another version: the default palette.
    }
    // A chart of the whole NCBI taxonomy takes seconds to read and colour: the window goes on
    // being drawn meanwhile.
    const QString fileName = fileHandler.getFileName();
    const QHash<QString, QColor> matched = matchedColours;
    std::shared_ptr<const ChartTree> whole = tree;
    std::shared_ptr<const ColourMap> map;
    nu::runInBackground([&] {
        if (!whole)
            whole = std::make_shared<const ChartTree>(ChartTree::read(Zem::Ontology::Ontology(fileName)));
        map = std::make_shared<const ColourMap>(ColourMap::assign(*whole, palette, matched));
    });
    tree = std::move(whole);
    colours = std::move(map);
    updateSamples();
}

void MainWindow::forgetTree()
{
    browser->setChartTree(nullptr);
    forgetSamples();
    // Freeing the tree of the whole NCBI taxonomy takes a tenth of a second or more.
    std::shared_ptr<const ChartTree> old = std::move(tree);
    if (old && old.use_count() == 1 && old->size() > largeTree)
        nu::runInBackground([&old] { old.reset(); });
    colours.reset();
    matchedColours.clear();
    statusBar()->clearMessage();
}

void MainWindow::slotFileOpen()
{
    App::Settings settings;
    const QString fileName = prompter->getOpenFileName(this, settings.getLastFolder(chartFolder));
    if (fileName.isEmpty())
        return;
    settings.setLastFolder(chartFolder, fileName);
    openChartOrInput(fileName);
}

void MainWindow::openFile(const QString& fileName)
{
    const auto refuse = [this] {
        setClosed();
        message(QMessageBox::Warning, tr("Problem opening file"),
                tr("The selected file is not a valid Sorvik pie chart. You must choose a file previously saved by "
                   "Sorvik."));
    };
    try {
        const Zem::Ontology::Ontology ontology(fileName);
        if (ontology.getNodeNumber() < 1)
            throw OntologyEmptyException();
        if (!ontology.isCounted())
            throw OntologyNotCounterException();
        forgetTree();
        fileHandler.setOpened(fileName);
        shownFileName = fileName;
        navigator.goToRoot();
        generate();
    } catch (const Zem::Ontology::Ontology::OpenDatabaseException&) {
        refuse();
    } catch (const Zem::Ontology::Ontology::InvalidFormatException&) {
        refuse();
    } catch (const OntologyEmptyException&) {
        refuse();
    } catch (const OntologyNotCounterException&) {
        refuse();
    } catch (...) {
        setClosed();
        message(QMessageBox::Critical, tr("Problem opening file"), tr("Error while creating new pie chart"));
    }
}

void MainWindow::slotFileSaveAs()
{
    App::Settings settings;
    const QString given = prompter->getSaveFileName(this, settings.getLastFolder(chartFolder));
    if (given.isEmpty())
        return;
    const QString target = OpenedFile::withChartSuffix(given);
    // The file dialog asked about the name without the suffix.
    if (target != given && QFileInfo::exists(target)
        && prompter->message(this, QMessageBox::Question, tr("Save piechart"),
                             tr("%1 already exists. Do you want to replace it?").arg(QDir::toNativeSeparators(target)),
                             QMessageBox::Yes | QMessageBox::No)
               != QMessageBox::Yes)
        return;
    settings.setLastFolder(chartFolder, target);
    if (!saveCopy(target)) {
        message(QMessageBox::Critical, tr("Problem saving file"),
                tr("The pie chart couldn't be saved as %1.").arg(QDir::toNativeSeparators(target)));
        return;
    }
    fileHandler.setSaved();
    shownFileName = target;
    updateTitle();
}

bool MainWindow::saveCopy(const QString& target)
{
    const QFileInfo from(fileHandler.getFileName());
    const QFileInfo to(target);
    // Saving the open file over itself: it is already there.
    if (to.exists() && from.canonicalFilePath() == to.canonicalFilePath())
        return true;
    QFile in(from.filePath());
    if (!in.open(QIODevice::ReadOnly))
        return false;
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    // The previous file of that name is replaced only once the copy is complete.
    QByteArray block;
    while (!(block = in.read(1 << 20)).isEmpty()) {
        if (out.write(block) != block.size()) {
            out.cancelWriting();
            return false;
        }
    }
    if (in.error() != QFileDevice::NoError) {
        out.cancelWriting();
        return false;
    }
    return out.commit();
}

bool MainWindow::slotFileClose()
{
    if (fileHandler.shouldSave()) {
        const QMessageBox::StandardButton answer =
            prompter->message(this, QMessageBox::Question, tr("Save piechart"),
                              tr("Do you want to save the current pie chart?"),
                              QMessageBox::Save | QMessageBox::No | QMessageBox::Cancel);
        if (answer == QMessageBox::Cancel)
            return false;
        if (answer == QMessageBox::Save)
            slotFileSaveAs();
    }
    setClosed();
    return true;
}

void MainWindow::slotSelectItem(const QString& id)
{
    actions->stepInto->setEnabled(!id.isEmpty() && fileHandler.isOpened());
}

void MainWindow::slotNavigationGoRoot()
{
    navigator.goToRoot();
    slotGenerate();
}

void MainWindow::slotNavigationStepOut()
{
    navigator.goToUpperLevel(1);
    slotGenerate();
}

void MainWindow::slotNavigationStepInto()
{
    PieChartItem* selected = view->getScene()->getSelectedItem();
    // Entering the centre (any node of its chain) changes nothing; the chart stays as it is
    // drawn and zoomed. "N others" is no taxon to enter.
    if (!selected || selected->isOthers() || selected->getChainPositions().contains(navigator.getCurrentPosition()))
        return;
    navigator.goToLevel(selected);
    slotGenerate();
}

void MainWindow::slotAppPreferences()
{
    App::Settings settings;
    AppPreferencesDialog dialog(settings.getPath(), this);
    connect(&dialog, &AppPreferencesDialog::signalUpdateTaxonomy, this, [this, &dialog] {
        updateTaxonomy(dialog.getTaxonomyFile());
        dialog.slotRefreshTaxonomy();
    });
    if (prompter->exec(dialog) == QDialog::Accepted)
        settings.setPath(dialog.getPath());
}

void MainWindow::updateTaxonomy(const QString& taxonomyFile)
{
    BuildNcbiPiechartAsyncTask update;
    update.setTaxonomyOnly(true);
    update.setNcbiOntologyFile(taxonomyFile);

    QDialog dialog(this);
    nu::MultiProgressWidget* progress = makeProgressDialog(dialog, tr("Updating taxonomy"));
    connect(&dialog, &QDialog::rejected, &update, &BuildNcbiPiechartAsyncTask::slotSetCancelled);
    connect(&update, &nu::AsyncTask::progressChanged, progress, &nu::MultiProgressWidget::slotProgressChanged);
    connect(&update, &QThread::finished, &dialog, &QDialog::accept);
    update.start(QThread::InheritPriority);
    prompter->exec(dialog);
    // A cancelled update ends at its next check; the old cache is then as it was.
    update.wait();
    if (update.getState() == nu::AsyncTask::Failed) {
        const QString detail = update.getErrorDetail();
        message(QMessageBox::Critical, tr("Problem updating taxonomy"),
                update.getErrorMessage() + (detail.isEmpty() ? QString() : QStringLiteral(": ") + detail));
    }
}

void MainWindow::keepBuildReport(const BuildNcbiPiechartAsyncTask& finished)
{
    const Zem::Ontology::BuildReport report = finished.getReport();
    builtReport = report.getSummary().isEmpty() ? nullptr : std::make_unique<Zem::Ontology::BuildReport>(report);
    const Zem::Ncbi::TaxonomyCache cache(finished.getNcbiOntologyFile());
    taxonomyHint = cache.isOld() ? tr("The NCBI taxonomy is %1 days old: File > Preferences > Update taxonomy now "
                                      "fetches the current one.")
                                       .arg(cache.getAgeDays())
                                 : QString();
}

void MainWindow::showBuildReport()
{
    if (!taxonomyHint.isEmpty())
        statusBar()->showMessage(taxonomyHint);
    taxonomyHint.clear();
    if (!builtReport)
        return;
    const std::unique_ptr<Zem::Ontology::BuildReport> report = std::move(builtReport);
    showReport(*report);
}

void MainWindow::slotViewPreferences()
{
    App::Settings settings;
    ViewPreferencesDialog dialog(maxLevels, minPercentage, this);
    dialog.setCollapsing(settings.isCollapsing());
    dialog.setPalette(settings.getPalette());
    dialog.setShowingRawNames(settings.isShowingRawNames());
    if (prompter->exec(dialog) != QDialog::Accepted)
        return;
    maxLevels = dialog.getMaxLevels();
    minPercentage = dialog.getMinPercentage();
    settings.setCollapsing(dialog.isCollapsing());
    settings.setShowingRawNames(dialog.isShowingRawNames());
    if (dialog.getPalette() != settings.getPalette()) {
        settings.setPalette(dialog.getPalette());
        // Coloured anew on the next drawing, the other chart's colours kept.
        colours.reset();
    }
    slotGenerate();
}

void MainWindow::slotViewMatchColours()
{
    App::Settings settings;
    const QString other = prompter->getOpenFileName(this, settings.getLastFolder(chartFolder));
    if (other.isEmpty())
        return;
    QString reason;
    try {
        const Zem::Ontology::Ontology ontology(other);
        if (ontology.getNodeNumber() < 1 || !ontology.isCounted())
            throw OntologyEmptyException();
        const ChartTree otherTree = ChartTree::read(ontology);
        Palette palette;
        try {
            palette = Palette::byName(settings.getPalette());
        } catch (const Palette::UnknownPaletteException&) {
        }
        matchedColours = ColourMap::assign(otherTree, palette).byKey(otherTree);
    } catch (const std::exception& e) {
        message(QMessageBox::Warning, tr("Problem opening file"),
                tr("The colours of %1 couldn't be read: %2.")
                    .arg(QDir::toNativeSeparators(other), QString::fromUtf8(e.what())));
        return;
    }
    settings.setLastFolder(chartFolder, other);
    colours.reset();
    slotGenerate();
}

void MainWindow::slotSliceHovered(const QString& id)
{
    const PieChartItem* slice = view->getScene()->findItem(id);
    if (!slice) {
        statusBar()->clearMessage();
        return;
    }
    const QLocale locale;
    const int node = tree ? tree->indexOfRow(slice->getPosition().getRow()) : ChartTree::none;
    const QString path = node != ChartTree::none
                             ? tree->getPath(node, App::Settings().isShowingRawNames()).join(QStringLiteral(" › "))
                             : slice->getChainText();
    // The share of the whole chart is of the sample drawn.
    const std::shared_ptr<const ChartTree> drawn = tree ? getDrawnTree() : nullptr;
    const double whole = drawn && !drawn->isEmpty() && drawn->at(0).total > 0
                             ? 100.0 * slice->getAccumCount() / drawn->at(0).total
                             : slice->getPercentage();
    // Counts rather than reads: a QIIME chart counts its table's values.
    statusBar()->showMessage(tr("%1: count %2, %3 % of the centre, %4 % of the whole chart")
                                 .arg(slice->isOthers() ? slice->getText().text : path,
                                      locale.toString(slice->getAccumCount()),
                                      locale.toString(slice->getPercentage(), 'f', 2), locale.toString(whole, 'f', 2)));
}

void MainWindow::slotToolsEditor()
{
    auto* editor = new Edit::MainWindow(this);
    editor->setAttribute(Qt::WA_DeleteOnClose);
    if (fileHandler.isOpened()) {
        if (PieChartItem* chart = view->getScene()->getPieChart())
            editor->createPieChart(chart);
    }
    editor->show();
}

void MainWindow::slotHelpAbout()
{
    App::AboutDialog dialog(this);
    prompter->exec(dialog);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    // The editors go with this window: each asks about its unsaved changes first.
    for (Edit::MainWindow* editor : findChildren<Edit::MainWindow*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!editor->close()) {
            event->ignore();
            return;
        }
    }
    if (slotFileClose())
        event->accept();
    else
        event->ignore();
}

void MainWindow::openChartOrInput(const QString& fileName)
{
    if (offerNewChart(fileName) || !slotFileClose())
        return;
    openFile(fileName);
}

bool MainWindow::offerNewChart(const QString& fileName)
{
    const OpenedFile file(fileName);
    if (file.getKind() != OpenedFile::Input)
        return false;
    const QMessageBox::StandardButton answer = prompter->message(
        this, QMessageBox::Question, tr("Open file"),
        tr("%1 is not a Sorvik pie chart, but it reads as %2.\n\nDo you want to make a new pie chart from it?")
            .arg(QDir::toNativeSeparators(fileName), file.getFormat()->description),
        QMessageBox::Yes | QMessageBox::No);
    if (answer != QMessageBox::Yes || task)
        return true;
    NewPiechartWizard wizard(this);
    wizard.setInput(file.getFormat(), fileName);
    newChart(wizard);
    return true;
}

void MainWindow::updateTitle()
{
    const QString program = tr("Sorvik Piechart Viewer");
    if (!fileHandler.isOpened()) {
        setWindowTitle(program);
        setWindowModified(false);
        return;
    }
    const QString name = QFileInfo(shownFileName.isEmpty() ? fileHandler.getFileName() : shownFileName).fileName();
    setWindowTitle(QStringLiteral("%1[*] \u2014 %2").arg(name, program));
    setWindowModified(fileHandler.shouldSave());
}

void MainWindow::showTreeNode(int node)
{
    if (!tree || node < 0 || node >= tree->size())
        return;
    // From its parent the node is drawn beside its siblings; a node too small to be drawn
    // there becomes the centre itself.
    const int parent = tree->at(node).parent;
    for (const int centre : {parent, node}) {
        if (centre == ChartTree::none)
            continue;
        navigator.goToRoot();
        navigator.goToLevel(tree->getPosition(centre), tree->getParentPositions(centre));
        slotGenerate();
        const QString id = browser->getDrawnId(node);
        if (!id.isEmpty()) {
            view->getScene()->slotSelectItem(id);
            browser->slotSelectItem(id);
            slotSelectItem(id);
            return;
        }
        if (!tree)
            return;
    }
}

void MainWindow::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    // A narrowed window keeps most of its width for the chart: the dock gives up width too.
    const int most = width() * 2 / 5;
    if (!dock->isFloating() && dock->width() > most)
        resizeDocks({dock}, {most}, Qt::Horizontal);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() == 1 && urls.first().isLocalFile() && !task)
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() != 1 || !urls.first().isLocalFile() || task)
        return;
    event->acceptProposedAction();
    // The drop ends before any dialog opens, so that the source application is not held.
    const QString fileName = urls.first().toLocalFile();
    QTimer::singleShot(0, this, [this, fileName] { openChartOrInput(fileName); });
}

ChartExports::Source MainWindow::getExportSource()
{
    ChartExports::Source from;
    from.chart = fileHandler.isOpened() ? view->getScene()->getPieChart() : nullptr;
    if (!from.chart)
        return from;
    try {
        loadTree();
        from.tree = getDrawnTree();
    } catch (...) {
        // The working file went away under the window: nothing to export.
        from.chart = nullptr;
        return from;
    }
    const App::Settings settings;
    from.colours = colours;
    from.fileName = fileHandler.getFileName();
    from.centre = std::max(0, tree->indexOfRow(navigator.getCurrentPosition().getRow()));
    from.maxLevels = maxLevels;
    from.minPercent = minPercentage;
    from.collapse = settings.isCollapsing();
    from.rawNames = settings.isShowingRawNames();
    return from;
}

} // namespace Viewer
} // namespace Sorvik
