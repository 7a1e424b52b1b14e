// Times charts of many samples: a build from one Kraken-style report per sample, the size of the
// chart, merging one-sample charts made separately, switching the drawn chart from one sample to
// another in the chart core, and drawing a grid of 12 samples.
//   bench_samples [SAMPLES] [TAXA] [FOLDER]
// The reports are generated (default 200 samples over 20 000 taxa, each sample holding about half
// of them) into FOLDER, or a temporary folder. Wall and CPU time are printed for each step.
#include "ontology/buildersource.h"
#include "ontology/chartsamples.h"
#include "ontology/inputformat.h"
#include "ontology/ontology.h"
#include "ontology/sourcechart.h"
#include "viewer/chartgrid.h"
#include "viewer/chartimage.h"
#include "viewer/chartlegend.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/palette.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"
#include "viewer/settings.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

#include <random>
#include <sys/resource.h>
#include <vector>

using namespace Zem::Ontology;
using namespace Sorvik::Viewer;

namespace {

QTextStream out(stdout);

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

long peakMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

// Wall and CPU time of a step, printed when it ends.
class Step
{
public:
    explicit Step(const QString& name)
        : name(name)
        , cpu(cpuSeconds())
    {
        wall.start();
    }
    double finish()
    {
        const double seconds = wall.nsecsElapsed() / 1e9;
        out << QStringLiteral("%1: %2 s wall, %3 s CPU, peak %4 MB\n")
                   .arg(name, -40)
                   .arg(seconds, 0, 'f', 3)
                   .arg(cpuSeconds() - cpu, 0, 'f', 3)
                   .arg(peakMegabytes());
        out.flush();
        return seconds;
    }

private:
    QString name;
    double cpu;
    QElapsedTimer wall;
};

// A taxonomy of ranks down to species: every taxon below a random earlier one of a higher rank.
struct Taxonomy
{
    std::vector<int> parent;
    std::vector<int> rank;
    std::vector<std::vector<int>> children;
};

const char* const rankCodes[] = {"R", "D", "P", "C", "O", "F", "G", "S"};

Taxonomy makeTaxonomy(int taxa, std::mt19937_64& random)
{
    Taxonomy t;
    t.parent = {-1};
    t.rank = {0};
    t.children.resize(1);
    for (int i = 1; i < taxa; ++i) {
        int p = 0;
        // Mostly below the deeper taxa, so that most taxa are species and genera.
        for (int tries = 0; tries < 8; ++tries) {
            const int candidate = std::uniform_int_distribution<int>(0, i - 1)(random);
            if (t.rank[size_t(candidate)] < 7 && t.rank[size_t(candidate)] >= t.rank[size_t(p)])
                p = candidate;
        }
        t.parent.push_back(p);
        t.rank.push_back(t.rank[size_t(p)] + 1);
        t.children.emplace_back();
        t.children[size_t(p)].push_back(i);
    }
    return t;
}

// One sample's report: about half the taxa hold reads of their own.
void writeReport(const QString& fileName, const Taxonomy& t, std::mt19937_64& random)
{
    const size_t n = t.parent.size();
    std::vector<qint64> own(n, 0);
    std::vector<qint64> clade(n, 0);
    std::bernoulli_distribution present(0.5);
    std::geometric_distribution<int> reads(0.002);
    for (size_t i = 1; i < n; ++i)
        own[i] = present(random) ? reads(random) + 1 : 0;
    for (size_t i = n; i-- > 0;) {
        clade[i] += own[i];
        if (t.parent[i] >= 0)
            clade[size_t(t.parent[i])] += clade[i];
    }
    const qint64 unclassified = reads(random) * 10;
    const double all = double(clade[0] + unclassified);
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(fileName));
    QTextStream text(&file);
    text << QStringLiteral("%1\t%2\t%2\tU\t0\tunclassified\n").arg(100.0 * unclassified / all, 0, 'f', 2).arg(unclassified);
    std::vector<std::pair<int, int>> stack{{0, 0}};
    while (!stack.empty()) {
        const auto [node, depth] = stack.back();
        stack.pop_back();
        if (clade[size_t(node)] == 0)
            continue;
        text << QStringLiteral("%1\t%2\t%3\t%4\t%5\t%6%7\n")
                    .arg(100.0 * clade[size_t(node)] / all, 0, 'f', 2)
                    .arg(clade[size_t(node)])
                    .arg(own[size_t(node)])
                    .arg(QLatin1String(rankCodes[t.rank[size_t(node)]]))
                    .arg(node + 1)
                    .arg(QString(depth * 2, QLatin1Char(' ')),
                         node == 0 ? QStringLiteral("root") : QStringLiteral("Taxon %1").arg(node + 1));
        const auto& kids = t.children[size_t(node)];
        for (auto it = kids.rbegin(); it != kids.rend(); ++it)
            stack.push_back({*it, depth + 1});
    }
}

void build(const QString& output, const QStringList& reports)
{
    const InputFormat* format = InputFormat::find(QStringLiteral("kreport"));
    BuilderSource builder(output);
    for (const QString& report : reports)
        builder.addSample(ChartSamples::nameOfFile(report), format->makeSource(report, InputFormat::Options()));
    builder.load();
    builder.count(false);
    builder.build();
}

std::unique_ptr<PieChartItem> drawSample(const Ontology& ontology, const std::shared_ptr<const ChartTree>& tree,
                                         const std::shared_ptr<const ColourMap>& colours, int sample)
{
    PieChartBuilder builder(ontology);
    builder.setMaxLevels(Sorvik::App::Settings::firstViewMaxLevels);
    builder.setMinPercentage(Sorvik::App::Settings::firstViewMinPercentage);
    builder.setTree(std::make_shared<const ChartTree>(tree->ofSample(sample)), colours);
    builder.read();
    return builder.takeRootItem();
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    const int samples = arguments.size() > 1 ? arguments.at(1).toInt() : 200;
    const int taxa = arguments.size() > 2 ? arguments.at(2).toInt() : 20000;
    QTemporaryDir temporary;
    const QDir folder(arguments.size() > 3 ? arguments.at(3) : temporary.path());
    folder.mkpath(QStringLiteral("."));
    out << "samples: " << samples << ", taxa: " << taxa << ", folder: " << folder.path() << '\n';

    std::mt19937_64 random(18);
    const Taxonomy taxonomy = makeTaxonomy(taxa, random);
    QStringList reports;
    {
        Step step(QStringLiteral("generate the reports"));
        for (int i = 0; i < samples; ++i) {
            reports << folder.filePath(QStringLiteral("S%1.kreport").arg(i + 1, 3, 10, QLatin1Char('0')));
            writeReport(reports.last(), taxonomy, random);
        }
        step.finish();
    }

    const QString study = folder.filePath(QStringLiteral("study.piechart"));
    {
        Step step(QStringLiteral("build from the reports (target 10 s)"));
        build(study, reports);
        step.finish();
    }
    out << QStringLiteral("chart file: %1 MB (target 100 MB), %2 nodes\n")
               .arg(QFileInfo(study).size() / 1e6, 0, 'f', 1)
               .arg(Ontology(study).getNodeNumber());

    QStringList charts;
    {
        Step step(QStringLiteral("build one chart per report"));
        for (const QString& report : reports) {
            charts << folder.filePath(ChartSamples::nameOfFile(report) + QStringLiteral(".piechart"));
            build(charts.last(), {report});
        }
        step.finish();
    }
    const QString merged = folder.filePath(QStringLiteral("merged.piechart"));
    {
        Step step(QStringLiteral("merge the one-sample charts (target 15 s)"));
        BuilderSource builder(merged);
        auto keys = std::make_shared<SourceChart::Keys>();
        for (const QString& chart : charts)
            SourceChart(chart, keys).read(builder);
        builder.count(false);
        builder.build();
        step.finish();
    }

    const Ontology ontology(study);
    std::shared_ptr<const ChartTree> tree;
    std::shared_ptr<const ColourMap> colours;
    {
        Step step(QStringLiteral("open the chart: tree and colours"));
        tree = std::make_shared<const ChartTree>(ChartTree::read(ontology));
        colours = std::make_shared<const ColourMap>(ColourMap::assign(*tree, Palette()));
        step.finish();
    }
    {
        // The tree of the sample and its chart drawn again, as the viewer does on a switch.
        double slowest = 0;
        double sum = 0;
        const int switches = std::min(samples, 20);
        const double cpu = cpuSeconds();
        for (int i = 0; i < switches; ++i) {
            QElapsedTimer timer;
            timer.start();
            const auto chart = drawSample(ontology, tree, colours, (i * 7) % samples);
            const double seconds = timer.nsecsElapsed() / 1e9;
            slowest = std::max(slowest, seconds);
            sum += seconds;
        }
        out << QStringLiteral("switch sample (target 150 ms): %1 ms mean, %2 ms slowest, %3 ms CPU mean\n")
                   .arg(sum / switches * 1000, 0, 'f', 1)
                   .arg(slowest * 1000, 0, 'f', 1)
                   .arg((cpuSeconds() - cpu) / switches * 1000, 0, 'f', 1);
    }
    {
        Step step(QStringLiteral("grid of 12 samples drawn (target 1 s)"));
        ChartGrid grid;
        for (int i = 0; i < std::min(samples, 12); ++i)
            grid.addChart(drawSample(ontology, tree, colours, i), tree->getSamples().at(size_t(i)).name);
        grid.arrange();
        ChartImage image(grid);
        image.setLegend(ChartLegend::of(tree->ofSample(ChartTree::allSamples), *colours));
        const QImage drawn = image.toImage();
        step.finish();
        drawn.save(folder.filePath(QStringLiteral("grid.png")));
    }
    out << "peak memory: " << peakMegabytes() << " MB\n";
    return 0;
}
