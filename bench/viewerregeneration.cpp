// Times what the viewer does when the user steps into a taxon, steps out or changes the view
// settings on a counted chart of many nodes: the regeneration (header check, chart builder
// read, scene and browser set-up) and the first paint of the window after it.
//   bench_viewer_regeneration [NODES] [REPEATS]
// Runs on the offscreen platform unless another one is asked for.
#include "ontology/builder.h"
#include "ontology/ontology.h"
#include "resources/resources.h"
#include "viewer/browser.h"
#include "viewer/mainwindow.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/view.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTreeView>

#include <algorithm>
#include <ctime>
#include <functional>
#include <random>
#include <vector>

namespace {

// A counted chart of about NCBI's shape at a smaller size: every new taxon walks down from the
// root, mostly along the first children, and stops at a random depth (at most 12); every taxon
// carries a count, so nothing is trimmed.
void writeChart(const QString& fileName, int total)
{
    Zem::Ontology::Builder builder(fileName);
    std::mt19937_64 random(50000);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    std::geometric_distribution<int> reads(0.01);
    std::vector<std::vector<int>> children(1);
    std::vector<int> depth{0};
    const auto idOf = [](int index) { return QString::number(index + 1); };
    builder.addRoot(idOf(0));
    builder.addData(idOf(0), QStringLiteral("scientific name"), QStringLiteral("root"));
    for (int i = 1; i < total; ++i) {
        int at = 0;
        while (depth[at] < 11 && !children[at].empty() && uniform(random) < 0.9) {
            const double u = uniform(random);
            at = children[at][static_cast<size_t>(u * u * u * children[at].size())];
        }
        children[at].push_back(i);
        children.emplace_back();
        depth.push_back(depth[at] + 1);
        builder.addChild(idOf(at), idOf(i));
        builder.addData(idOf(i), QStringLiteral("scientific name"), QStringLiteral("Taxon %1").arg(i));
        builder.addData(idOf(i), QStringLiteral("count"), QString::number(reads(random) + 1));
    }
    builder.count(false);
    builder.build();
}

struct Figures
{
    std::vector<double> regenerate;
    std::vector<double> paint;
    // Processor time of the whole action, which other programs on the machine do not inflate.
    std::vector<double> cpu;
};

double cpuMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return now.tv_sec * 1e3 + now.tv_nsec / 1e6;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

double maximum(const std::vector<double>& values)
{
    return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
}

int sliceCount(const Sorvik::Viewer::PieChartItem* item)
{
    int n = 1;
    for (QGraphicsItem* child : item->childItems()) {
        if (auto* slice = dynamic_cast<const Sorvik::Viewer::PieChartItem*>(child))
            n += sliceCount(slice);
    }
    return n;
}

// The largest slice of the first ring, to step into.
Sorvik::Viewer::PieChartItem* largestChild(Sorvik::Viewer::PieChartItem* root)
{
    Sorvik::Viewer::PieChartItem* best = nullptr;
    for (QGraphicsItem* child : root->childItems()) {
        auto* slice = dynamic_cast<Sorvik::Viewer::PieChartItem*>(child);
        // "N others" is no taxon to step into.
        if (slice && !slice->isOthers() && (!best || slice->getTotal() > best->getTotal()))
            best = slice;
    }
    return best;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    Sorvik::initResources();
    const QStringList args = QCoreApplication::arguments();
    const int nodes = args.size() > 1 ? args.at(1).toInt() : 50000;
    const int repeats = args.size() > 2 ? args.at(2).toInt() : 15;
    QTextStream out(stdout);

    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("bench.piechart"));
    QElapsedTimer timer;
    timer.start();
    writeChart(file, nodes);
    out << QStringLiteral("chart of %1 nodes written in %2 s\n").arg(nodes).arg(timer.elapsed() / 1000.0, 0, 'f', 2);

    Sorvik::Viewer::MainWindow window;
    window.resize(1200, 800);
    window.show();
    QCoreApplication::processEvents();
    window.openFile(file);
    QCoreApplication::processEvents();
    Sorvik::Viewer::Scene* scene = window.getView()->getScene();

    // One user action: the regeneration it triggers, then the paint of the window.
    const auto measure = [&](Figures& figures, const std::function<void()>& action) {
        const double cpu = cpuMilliseconds();
        QElapsedTimer clock;
        clock.start();
        action();
        figures.regenerate.push_back(clock.nsecsElapsed() / 1e6);
        clock.restart();
        window.grab();
        figures.paint.push_back(clock.nsecsElapsed() / 1e6);
        figures.cpu.push_back(cpuMilliseconds() - cpu);
    };
    const auto print = [&](const QString& name, const Figures& figures) {
        const double total = median(figures.regenerate) + median(figures.paint);
        out << QStringLiteral("%1 %2 ms regenerate (max %3), %4 ms paint (max %5), %6 ms in all (%8 ms processor), "
                              "%7 slices\n")
                   .arg(name, -34)
                   .arg(median(figures.regenerate), 7, 'f', 1)
                   .arg(maximum(figures.regenerate), 6, 'f', 1)
                   .arg(median(figures.paint), 6, 'f', 1)
                   .arg(maximum(figures.paint), 6, 'f', 1)
                   .arg(total, 6, 'f', 1)
                   .arg(scene->getPieChart() ? sliceCount(scene->getPieChart()) : 0)
                   .arg(median(figures.cpu), 0, 'f', 1);
        out.flush();
    };

    Figures into, outOf, settings;
    for (int i = 0; i < repeats; ++i) {
        Sorvik::Viewer::PieChartItem* target = largestChild(scene->getPieChart());
        scene->slotSelectItem(target->getId());
        measure(into, [&] { window.slotNavigationStepInto(); });
        measure(outOf, [&] { window.slotNavigationStepOut(); });
        measure(settings, [&] { window.slotGenerate(); });
    }
    print(QStringLiteral("step into (5 levels, 0.5 %)"), into);
    print(QStringLiteral("step out (5 levels, 0.5 %)"), outOf);
    print(QStringLiteral("view settings (5 levels, 0.5 %)"), settings);

    // The builder alone, from the root, when it reads and colours the whole tree itself (as the
    // first drawing of a chart does; the window keeps the tree for the drawings after).
    {
        std::vector<double> reads;
        for (int i = 0; i < repeats; ++i) {
            QElapsedTimer clock;
            clock.start();
            const Zem::Ontology::Ontology ontology(file);
            Sorvik::Viewer::PieChartBuilder builder(ontology);
            builder.setMaxLevels(5);
            builder.setMinPercentage(0.5);
            builder.read();
            reads.push_back(clock.nsecsElapsed() / 1e6);
        }
        out << QStringLiteral("%1 %2 ms (max %3)\n").arg(QStringLiteral("first drawing's builder, whole tree"), -34)
                   .arg(median(reads), 7, 'f', 1).arg(maximum(reads), 6, 'f', 1);
    }

    // The heaviest settings a user can choose: every level, no cutoff.
    Figures everything;
    for (int i = 0; i < std::max(3, repeats / 5); ++i) {
        measure(everything, [&] {
            // What the view preferences dialog's acceptance does, without the dialog.
            Sorvik::Viewer::PieChartBuilder builder{Zem::Ontology::Ontology(file)};
            builder.setMaxLevels(20);
            builder.setMinPercentage(0);
            builder.read();
            auto root = builder.takeRootItem();
            Sorvik::Viewer::PieChartItem* chart = root.get();
            window.getBrowser()->setPieChart(nullptr);
            window.getView()->setPieChart(std::move(root));
            window.getBrowser()->setPieChart(chart);
        });
    }
    print(QStringLiteral("view settings (20 levels, 0 %)"), everything);
    window.getBrowser()->setPieChart(nullptr);
    window.getView()->setPieChart(nullptr);
    return 0;
}
