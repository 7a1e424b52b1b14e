#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class QAction;
class QWidget;

namespace nu {
class Prompter;
}

namespace Sorvik {
namespace Viewer {

class ChartTree;
class ColourMap;
class PieChartItem;

// The viewer's File menu entries that share its chart: Export image… (the chart as shown, as
// PNG, SVG or PDF, with a legend and a title if wished), Export table… (the numbers of the whole
// tree as TSV or CSV) and Export interactive HTML… (one self-contained web page). The actions
// are enabled while a chart is drawn; each tells the user, naming the file, why a file could not
// be written, and leaves no half-written file.
class ChartExports : public QObject
{
    Q_OBJECT
public:
    // What an export takes from the window, asked for when the user exports.
    struct Source
    {
        // The chart as drawn; none when no chart is open.
        PieChartItem* chart = nullptr;
        std::shared_ptr<const ChartTree> tree;
        std::shared_ptr<const ColourMap> colours;
        // The chart's file, whose name is the default title; empty for an unsaved chart.
        QString fileName;
        // The node in the chart's centre.
        int centre = 0;
        int maxLevels = 5;
        double minPercent = 0.5;
        bool collapse = true;
        bool rawNames = false;
    };

    ChartExports(QWidget* window, std::function<Source()> source);

    void setPrompter(std::shared_ptr<nu::Prompter> prompter);
    QList<QAction*> getActions() const;
    // Follows whether a chart is drawn.
    void setEnabled(bool enabled);

    // Each writes the file, or tells the user why not; true when it was written.
    bool exportImage(const QString& fileName, int size, int dotsPerInch, bool legend, const QString& title);
    bool exportTable(const QString& fileName);
    bool exportHtml(const QString& fileName);

public slots:
    void slotExportImage();
    void slotExportTable();
    void slotExportHtml();

private:
    // Asks for the file to write; the extension is added when none is typed. Empty: cancelled.
    QString askSaveName(const QString& filter, const QString& extension);
    // Runs the export; a failure is shown with the file and the reason.
    bool run(const QString& fileName, const std::function<void(const Source&)>& write);
    QString defaultTitle(const Source& source) const;

    QWidget* window;
    std::function<Source()> source;
    std::shared_ptr<nu::Prompter> prompter;
    QAction* image = nullptr;
    QAction* table = nullptr;
    QAction* html = nullptr;
    // What the image dialog was given last, for the next export in this run.
    int imageFormat = 0;
    int imageSize = 0;
    int imageDotsPerInch = 300;
    bool imageLegend = false;
};

} // namespace Viewer
} // namespace Sorvik
