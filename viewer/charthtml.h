#pragma once

#include <QByteArray>
#include <QString>

#include <exception>
#include <vector>

namespace Sorvik {
namespace Viewer {

class ChartTree;
class ColourMap;

// A chart as one self-contained web page: the page's script and style (resources/html, built
// into the program) with the chart's whole tree as compact data, which the script draws as
// inline SVG in any current browser, with no network. The data holds, for every node in depth-
// first order, its shown name, its number of children and its colour, and for each sample the
// nodes' own and accumulated counts; the page is one sample's chart at a time, with a chooser
// when there are several.
class ChartHtml
{
public:
    class TemplateException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };
    class WriteException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };

    // One sample's counts, per node of the tree in its order.
    struct Sample
    {
        QString name;
        std::vector<qint64> counts;
        std::vector<qint64> totals;
    };

    ChartHtml(const ChartTree& tree, const ColourMap& colours);

    // The page's heading and the browser's title.
    void setTitle(const QString& title) { this->title = title; }
    // What the page first shows: its levels, minimum share and whether chains are drawn as one.
    void setView(int maxLevels, double minPercent, bool collapse);
    // The node the page first has in its centre (the root unless set).
    void setCentre(int node) { centre = node; }
    void setRawNames(bool raw) { rawNames = raw; }
    // The tree's own counts are the first sample, named so; more may be added.
    void setFirstSampleName(const QString& name) { firstSample = name; }
    void addSample(Sample sample);
    // The samples of a chart of several, when the page's tree holds its first: names that one
    // and adds the others. Nothing for a chart of one.
    void addSamplesOf(const ChartTree& chart);

    // The chart's data as compact JSON, safe to stand inside a <script> element.
    QByteArray getData() const;
    // Throws TemplateException when the page's script or style is not built in.
    QByteArray toHtml() const;
    // Writes the file completely or leaves it as it was; throws TemplateException or
    // WriteException.
    void save(const QString& fileName) const;

    // A JSON string of the text with "<" escaped too, so that no "</script>" can end the data.
    static QByteArray jsonString(const QString& text);

private:
    // The nodes in depth-first order, parents before children.
    std::vector<int> depthFirst() const;

    const ChartTree& tree;
    const ColourMap& colours;
    QString title;
    QString firstSample;
    int maxLevels = 5;
    double minPercent = 0.5;
    bool collapse = true;
    bool rawNames = false;
    int centre = 0;
    std::vector<Sample> samples;
};

} // namespace Viewer
} // namespace Sorvik
