// Times the chart of a generated counted ontology of 50 000 nodes: building and laying it out
// at 10 levels with no cutoff and at the viewer's 5 levels and 0.5 % (first with the reading and
// colouring of the whole tree, then with the tree kept as the viewer keeps it), drawing it to
// PNG, SVG and PDF, and exporting its table and its web page.
// Usage: bench_piechart [NODES] [RUNS] [KEEP_FOLDER]
// With KEEP_FOLDER, the exported files stay there (bench/run-export-benchmarks opens the page in
// a browser).

#include "ontology/builder.h"
#include "ontology/ontology.h"
#include "resources/resources.h"
#include "viewer/charthtml.h"
#include "viewer/chartimage.h"
#include "viewer/charttable.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <cmath>
#include <deque>
#include <random>
#include <vector>

namespace {

// A taxonomy-like tree: mostly small families, now and then a genus with very many species,
// 14 levels deep at most; counts on the leaves and on some inner nodes, spread over orders of
// magnitude.
void generate(const QString& fileName, int nodes)
{
    std::mt19937 random(20240617);
    std::geometric_distribution<int> smallFamily(0.45);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    Zem::Ontology::Builder builder(fileName);
    builder.addRoot(QStringLiteral("1"));
    std::deque<std::pair<int, int>> open{{1, 1}};
    int next = 2;
    const auto countOf = [&] { return QString::number(static_cast<qint64>(std::pow(10.0, unit(random) * 4))); };
    while (next <= nodes && !open.empty()) {
        const auto [id, depth] = open.front();
        open.pop_front();
        int children = 1 + smallFamily(random);
        if (unit(random) < 0.01)
            children += 100 + static_cast<int>(unit(random) * 400);
        if (depth >= 14)
            children = 0;
        for (int i = 0; i < children && next <= nodes; ++i, ++next) {
            builder.addChild(QString::number(id), QString::number(next));
            builder.addData(QString::number(next), QStringLiteral("scientific name"),
                            QStringLiteral("Taxon %1").arg(next));
            open.emplace_back(next, depth + 1);
        }
        if (children == 0 || unit(random) < 0.1)
            builder.addData(QString::number(id), QStringLiteral("count"), countOf());
    }
    for (const auto& leaf : open)
        builder.addData(QString::number(leaf.first), QStringLiteral("count"), countOf());
    builder.count(false);
    builder.build();
}

int countSlices(const QGraphicsItem* item)
{
    int n = 1;
    for (const QGraphicsItem* child : item->childItems())
        n += dynamic_cast<const Sorvik::Viewer::PieChartItem*>(child) ? countSlices(child) : 0;
    return n;
}

struct Timing
{
    double best = 1e300;
    double median = 0;
    int slices = 0;
};

template <typename Run>
Timing time(int runs, Run run)
{
    std::vector<double> times;
    Timing timing;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer clock;
        clock.start();
        timing.slices = run();
        times.push_back(clock.nsecsElapsed() / 1e6);
    }
    std::sort(times.begin(), times.end());
    timing.best = times.front();
    timing.median = times[times.size() / 2];
    return timing;
}

// The whole tree and its colours, as the viewer keeps them while a chart is open.
struct Whole
{
    std::shared_ptr<const Sorvik::Viewer::ChartTree> tree;
    std::shared_ptr<const Sorvik::Viewer::ColourMap> colours;
};

Whole readWhole(const QString& file)
{
    Whole whole;
    whole.tree = std::make_shared<const Sorvik::Viewer::ChartTree>(
        Sorvik::Viewer::ChartTree::read(Zem::Ontology::Ontology(file)));
    whole.colours = std::make_shared<const Sorvik::Viewer::ColourMap>(
        Sorvik::Viewer::ColourMap::assign(*whole.tree, Sorvik::Viewer::Palette()));
    return whole;
}

// Without a whole tree given, the builder reads it first: a chart's first drawing.
std::unique_ptr<Sorvik::Viewer::PieChartItem> buildChart(const QString& file, int levels, double percent,
                                                         const Whole* whole = nullptr)
{
    const Zem::Ontology::Ontology ontology(file);
    Sorvik::Viewer::PieChartBuilder builder(ontology);
    builder.setMaxLevels(levels);
    builder.setMinPercentage(percent);
    if (whole)
        builder.setTree(whole->tree, whole->colours);
    builder.read();
    return builder.takeRootItem();
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    const int nodes = arguments.size() > 1 ? arguments.at(1).toInt() : 50000;
    const int runs = arguments.size() > 2 ? std::max(1, arguments.at(2).toInt()) : 5;
    QTextStream out(stdout);

    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("bench.ontology"));
    QElapsedTimer clock;
    clock.start();
    generate(file, nodes);
    out << "generated a counted ontology of " << nodes << " nodes in " << clock.elapsed() << " ms\n";

    const auto report = [&](const char* what, const Timing& t, const char* target) {
        out << QString::asprintf("%-44s %7d slices  best %8.1f ms  median %8.1f ms  (target %s)\n", what,
                                 t.slices, t.best, t.median, target);
        out.flush();
    };
    report("build and lay out, 10 levels, 0 %", time(runs, [&] { return countSlices(buildChart(file, 10, 0).get()); }),
           "1000 ms");
    report("build and lay out, 5 levels, 0.5 %",
           time(runs, [&] { return countSlices(buildChart(file, 5, 0.5).get()); }), "300 ms");
    // What reading the whole tree and colouring it costs, once per chart; and the redrawing of a
    // chart whose tree is kept (stepping in and out, other limits).
    Whole whole;
    report("whole tree read and coloured", time(runs, [&] {
               whole = readWhole(file);
               return whole.tree->size();
           }),
           "-");
    report("redraw with the tree kept, 10 levels, 0 %",
           time(runs, [&] { return countSlices(buildChart(file, 10, 0, &whole).get()); }), "1000 ms");
    report("redraw with the tree kept, 5 levels, 0.5 %",
           time(runs, [&] { return countSlices(buildChart(file, 5, 0.5, &whole).get()); }), "300 ms");

    const QString keep = arguments.size() > 3 ? arguments.at(3) : dir.path();
    QDir().mkpath(keep);
    for (const auto& limits : {std::make_pair(10, 0.0), std::make_pair(5, 0.5)}) {
        const auto root = buildChart(file, limits.first, limits.second);
        const int slices = countSlices(root.get());
        for (const char* format : {"png", "svg", "pdf"}) {
            const QString image =
                QDir(keep).filePath(QStringLiteral("chart-%1-levels.%2").arg(limits.first).arg(QLatin1String(format)));
            const Timing t = time(std::max(1, runs / 2), [&] {
                Sorvik::Viewer::ChartImage picture(*root);
                picture.save(image);
                return slices;
            });
            const QString what = QStringLiteral("%1 1000 px, %2 levels, %3 % (%4 kB)")
                                     .arg(QString::fromLatin1(format).toUpper())
                                     .arg(limits.first)
                                     .arg(limits.second)
                                     .arg(QFileInfo(image).size() / 1024);
            report(qPrintable(what), t, "2000 ms");
        }
    }

    Sorvik::initResources();
    const Whole tree = readWhole(file);
    const QString table = QDir(keep).filePath(QStringLiteral("chart.tsv"));
    report("table of the whole tree (TSV)", time(runs, [&] {
               Sorvik::Viewer::ChartTable(*tree.tree).save(table, Sorvik::Viewer::ChartTable::Format::Tsv);
               return tree.tree->size();
           }),
           "1000 ms");
    const QString page = QDir(keep).filePath(QStringLiteral("chart.html"));
    report("web page of the whole tree", time(runs, [&] {
               Sorvik::Viewer::ChartHtml html(*tree.tree, *tree.colours);
               html.setTitle(QStringLiteral("bench"));
               html.save(page);
               return tree.tree->size();
           }),
           "-");
    out << QString::asprintf("web page size: %.2f MB (target 5 MB); table size: %.2f MB\n",
                             QFileInfo(page).size() / 1048576.0, QFileInfo(table).size() / 1048576.0);
    return 0;
}
