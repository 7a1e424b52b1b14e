#pragma once

#include <QColor>
#include <QHash>
#include <QString>

#include <memory>

class QCommandLineParser;

namespace Sorvik {
namespace Viewer {
class ChartTree;
class ColourMap;
} // namespace Viewer

namespace Cli {

// What the commands that draw a chart (render, html) share: the options for the levels, the
// minimum share, chain collapsing, the palette, colours taken from another chart and raw names,
// and reading a counted chart's whole tree with its colours.
class ChartOptions
{
public:
    void setUp(QCommandLineParser& parser);
    // Reads the options; an empty result, or the problem to tell the user.
    QString parse(const QCommandLineParser& parser);
    // Reads the chart and colours it (with the other chart's colours when asked); throws what
    // reading throws, and returns the problem in problem for a file that holds no chart.
    bool read(const QString& chartFile, QString& problem);

    int getLevels() const { return levels; }
    double getPercent() const { return percent; }
    bool isCollapsing() const { return collapse; }
    bool isRawNames() const { return rawNames; }
    std::shared_ptr<const Viewer::ChartTree> getTree() const { return tree; }
    std::shared_ptr<const Viewer::ColourMap> getColours() const { return colours; }

    // A counted chart's whole tree, or none with the problem for a file that holds no chart;
    // throws what reading throws.
    static std::shared_ptr<const Viewer::ChartTree> readTree(const QString& fileName, QString& problem);

private:
    int levels = 0;
    double percent = 0;
    bool collapse = true;
    bool rawNames = false;
    QString paletteName;
    QString coloursFrom;
    std::shared_ptr<const Viewer::ChartTree> tree;
    std::shared_ptr<const Viewer::ColourMap> colours;
};

} // namespace Cli
} // namespace Sorvik
