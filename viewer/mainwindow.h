#pragma once

#include "nu/appfilehandler.h"
#include "viewer/chartexports.h"
#include "viewer/lingeringtasks.h"
#include "viewer/navigator.h"
#include "viewer/samplecharts.h"
#include "viewer/settings.h"

#include <QColor>
#include <QHash>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>

#include <exception>
#include <memory>
#include <vector>

class QAction;
class QActionGroup;
class QDockWidget;
class QLabel;
class QMenu;

namespace nu {
class Prompter;
}

namespace Zem {
namespace Ontology {
class BuildReport;
class Source;
} // namespace Ontology
} // namespace Zem

namespace Sorvik {
namespace Viewer {

class Browser;
class BuildNcbiPiechartAsyncTask;
class ChartTree;
class ColourMap;
class CompareWindow;
class NewPiechartWizard;
class SampleChooser;
class View;

// The viewer's main window: makes new charts from the wizard's input (Krona and QIIME files
// here, NCBI-based inputs on the build task's thread), opens saved charts, draws the chart from
// the navigator's position with the view settings, and saves a copy of the working chart.
// Every message box, file dialog and modal dialog goes through its prompter.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    class OntologyEmptyException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };
    class OntologyNotCounterException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };

    // The window's actions and their groups; the window owns them.
    class Actions
    {
    public:
        explicit Actions(MainWindow* window);

        // Save as, Close, the navigation and the view actions follow whether a chart is open.
        void setFileOpened();
        void setFileClosed();
        // Going up is possible below the root; entering needs a selected slice.
        void updateNavigation(bool atRoot);

        QActionGroup* file = nullptr;
        QActionGroup* navigation = nullptr;
        QActionGroup* view = nullptr;
        QActionGroup* tools = nullptr;
        QActionGroup* help = nullptr;
        QAction* fileNew = nullptr;
        QAction* fileOpen = nullptr;
        QAction* fileSaveAs = nullptr;
        QAction* fileClose = nullptr;
        QAction* appPreferences = nullptr;
        QAction* exit = nullptr;
        QAction* stepInto = nullptr;
        QAction* goRoot = nullptr;
        QAction* stepOut = nullptr;
        QAction* viewPreferences = nullptr;
        QAction* viewMatchColours = nullptr;
        QAction* toolsEditor = nullptr;
        QAction* helpAbout = nullptr;
    };

    // The working chart in the data folder.
    static const QString workingFileName;

    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    void setPrompter(std::shared_ptr<nu::Prompter> prompter);
    // Opens a saved chart as File > Open does once the file is chosen; the window must be
    // closed. Refusals are shown, and leave it closed.
    void openFile(const QString& fileName);
    // What File > Open, the command line and a dropped file do with a file: a saved chart
    // replaces the open one (after the save question); an input file of a format Sorvik reads
    // is offered as a new chart through the wizard, the open chart kept until it is finished.
    void openChartOrInput(const QString& fileName);

    const nu::AppFileHandler& getFileHandler() const { return fileHandler; }
    const Actions& getActions() const { return *actions; }
    ChartExports* getExports() const { return exports; }
    const Navigator& getNavigator() const { return navigator; }
    View* getView() const { return view; }
    Browser* getBrowser() const { return browser; }
    int getMaxLevels() const { return maxLevels; }
    double getMinPercentage() const { return minPercentage; }
    bool isBuilding() const { return task != nullptr; }
    // The samples of the open chart: which one is drawn, Previous and Next.
    SampleChooser* getSampleChooser() const { return sampleChooser; }
    QAction* getCompareAction() const { return viewCompare; }
    // The open View > Compare window, or null.
    CompareWindow* getCompareWindow() const;

public slots:
    void slotFileNew();
    void slotFileOpen();
    void slotFileSaveAs();
    // False when the user cancelled.
    bool slotFileClose();
    void slotBuildNcbiPiechartFinished();
    void slotGenerate();
    void slotSelectItem(const QString& id);
    void slotNavigationGoRoot();
    void slotNavigationStepOut();
    void slotNavigationStepInto();
    void slotAppPreferences();
    void slotViewPreferences();
    // Takes the colours of the taxa this chart shares with another saved chart from that chart.
    void slotViewMatchColours();
    // Shows the hovered slice's path, count and shares in the status bar.
    void slotSliceHovered(const QString& id);
    // Draws another sample of the chart with the same centre, levels and colours.
    void slotSampleChosen(int sample);
    // Asks which samples to compare and shows them side by side.
    void slotViewCompare();
    void slotToolsEditor();
    void slotHelpAbout();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // Runs the wizard and, once it is finished and the open chart closed, builds the new chart.
    void newChart(NewPiechartWizard& wizard);
    // Asks whether to make a chart from a file of a format Sorvik reads; false when the file is
    // no such input.
    bool offerNewChart(const QString& fileName);
    // The open file's name in the title, marked while the chart is unsaved.
    void updateTitle();
    // Draws the chart so that this node of the whole tree is drawn (from its parent when it can
    // be) and selects it.
    void showTreeNode(int node);
    void createMenusAndToolBars();
    // The sample chooser on a tool bar of its own, Previous, Next and Compare in the View menu.
    void createSampleControls(QMenu* viewMenu);
    // The open chart's samples, once its tree is read: the chooser filled anew for another chart.
    void updateSamples();
    void forgetSamples();
    void showSampleColumns();
    // The tree of the sample drawn; the tree as read for a chart of one sample.
    std::shared_ptr<const ChartTree> getDrawnTree();
    SampleCharts::Options getDrawingOptions() const;
    // A chart of several samples whose centre holds nothing in the sample drawn: an empty view
    // that says so, the chart kept open to step out of it or choose another sample.
    bool showAbsentCentre();
    // Each sample's name and the source of its counts; one sample makes a plain chart.
    using SampleSources = std::vector<std::pair<QString, std::unique_ptr<Zem::Ontology::Source>>>;
    void startNcbiBuild(SampleSources samples);
    void buildOnThisThread(SampleSources samples);
    // Marks the new chart unsaved and draws it; false when it could not be drawn.
    bool firstTimeGenerate();
    // Says what the reading of a new chart's input passed over, if anything.
    void showReport(const Zem::Ontology::BuildReport& report);
    // Draws the chart from the navigator's position; throws what reading the file throws, and
    // OntologyEmptyException when the chart's centre holds no count.
    void generate();
    void clearPieChart();
    void setClosed();
    // The open chart's whole tree and its colours, read when first needed.
    void loadTree();
    void forgetTree();
    // Copies the working chart to a file the user keeps, completely or not at all.
    bool saveCopy(const QString& target);
    QMessageBox::StandardButton message(QMessageBox::Icon icon, const QString& title, const QString& text);
    // Keeps what a finished build placed outside the taxonomy, and whether its taxonomy is old,
    // to be said once its progress dialog has closed.
    void keepBuildReport(const BuildNcbiPiechartAsyncTask& finished);
    void showBuildReport();
    // Makes the taxonomy cache anew behind a progress dialog; the old one stays until then.
    void updateTaxonomy(const QString& taxonomyFile);
    // What File > Export… writes: the chart as drawn, its whole tree and the view settings.
    ChartExports::Source getExportSource();

    std::shared_ptr<nu::Prompter> prompter;
    nu::AppFileHandler fileHandler;
    Navigator navigator;
    std::unique_ptr<Actions> actions;
    View* view = nullptr;
    Browser* browser = nullptr;
    QDockWidget* dock = nullptr;
    ChartExports* exports = nullptr;
    BuildNcbiPiechartAsyncTask* task = nullptr;
    std::unique_ptr<Zem::Ontology::BuildReport> builtReport;
    QString taxonomyHint;
    LingeringTasks lingering;
    int maxLevels = App::Settings::firstViewMaxLevels;
    double minPercentage = App::Settings::firstViewMinPercentage;
    // The file the open chart was opened from or last saved as, which the title names; empty
    // for a new chart not saved yet.
    QString shownFileName;
    std::shared_ptr<const ChartTree> tree;
    std::shared_ptr<const ColourMap> colours;
    // Colours taken from another chart (View > Match colours to…), by taxon key.
    QHash<QString, QColor> matchedColours;
    SampleChooser* sampleChooser = nullptr;
    QAction* viewCompare = nullptr;
    QLabel* absentNote = nullptr;
    std::shared_ptr<SampleCharts> sampleCharts;
    QPointer<CompareWindow> compareWindow;
    // The samples last compared, chosen again by default.
    QList<int> compared;
};

} // namespace Viewer
} // namespace Sorvik
