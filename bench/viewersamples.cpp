// Times the viewer on a study of many samples: switching the sample drawn in the main window
// (Next sample), and drawing View > Compare's grid of 12 samples and stepping in it, on a
// generated chart of SAMPLES samples over TAXA taxa, or on a chart file given.
//   bench_viewer_samples [SAMPLES] [TAXA] [--chart FILE] [--grab FOLDER]
// --grab saves the main window and the Compare window as PNG images, to look at.
// Runs on the offscreen platform unless another one is asked for.
#include "nu/prompter.h"
#include "ontology/buildersource.h"
#include "ontology/inputformat.h"
#include "resources/resources.h"
#include "viewer/comparedialog.h"
#include "viewer/comparegrid.h"
#include "viewer/comparewindow.h"
#include "viewer/mainwindow.h"
#include "viewer/piechartitem.h"
#include "viewer/samplechooser.h"
#include "viewer/scene.h"
#include "viewer/view.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <ctime>
#include <functional>
#include <random>
#include <vector>

namespace {

// A study over one tree of about taxa taxa (10 phyla, 10 classes each, 10 orders each, genera
// below): every sample holds a random third of the genera, with counts spread over three
// orders of magnitude, as real samples are sparse and uneven. Built as sorvik-cli build does
// from one Krona text per sample.
void writeStudy(const QString& fileName, int samples, int taxa, const QDir& folder)
{
    const int genera = std::max(1, (taxa - 1110) / 1000);
    std::mt19937_64 random(18);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    const auto* krona = Zem::Ontology::InputFormat::find(QStringLiteral("krona"));
    Zem::Ontology::BuilderSource builder(fileName);
    for (int s = 0; s < samples; ++s) {
        const QString input = folder.filePath(QStringLiteral("sample%1.krona.txt").arg(s + 1, 3, 10, QLatin1Char('0')));
        QFile file(input);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot write %s", qPrintable(input));
        QTextStream text(&file);
        for (int p = 0; p < 10; ++p)
            for (int c = 0; c < 10; ++c)
                for (int o = 0; o < 10; ++o)
                    for (int g = 0; g < genera; ++g) {
                        if (uniform(random) > 1.0 / 3)
                            continue;
                        const auto count = static_cast<qint64>(std::pow(10.0, 3 * uniform(random))) * (10 - p);
                        text << count << "\tBacteria\tPhylum " << p << "\tClass " << p << '.' << c << "\tOrder " << p
                             << '.' << c << '.' << o << "\tGenus " << p << '.' << c << '.' << o << '.' << g << '\n';
                    }
        text.flush();
        file.close();
        builder.addSample(QStringLiteral("sample %1").arg(s + 1), krona->makeSource(input, {}));
    }
    builder.load();
    builder.count(false);
    builder.build();
}

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

// Chooses the samples asked for in the Compare dialog.
class Chooser : public nu::Prompter
{
public:
    QList<int> samples;
    int exec(QDialog& dialog) override
    {
        auto* compare = qobject_cast<Sorvik::Viewer::CompareDialog*>(&dialog);
        if (!compare)
            return QDialog::Rejected;
        compare->setChosen(samples);
        return QDialog::Accepted;
    }
};

// The largest slice of the first ring, to step into.
Sorvik::Viewer::PieChartItem* largestChild(Sorvik::Viewer::PieChartItem* root)
{
    Sorvik::Viewer::PieChartItem* best = nullptr;
    for (QGraphicsItem* child : root ? root->childItems() : QList<QGraphicsItem*>()) {
        auto* slice = dynamic_cast<Sorvik::Viewer::PieChartItem*>(child);
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
    // The window's settings go to a store of their own, never to the user's.
    QStandardPaths::setTestModeEnabled(true);
    QStringList args = QCoreApplication::arguments();
    args.removeFirst();
    QString chartFile;
    QString grabFolder;
    QList<int> numbers;
    for (int i = 0; i < args.size(); ++i) {
        if (args.at(i) == QLatin1String("--chart") && i + 1 < args.size())
            chartFile = args.at(++i);
        else if (args.at(i) == QLatin1String("--grab") && i + 1 < args.size())
            grabFolder = args.at(++i);
        else
            numbers.append(args.at(i).toInt());
    }
    const int samples = numbers.value(0, 200);
    const int taxa = numbers.value(1, 20000);
    QTextStream out(stdout);

    QTemporaryDir dir;
    QElapsedTimer timer;
    if (chartFile.isEmpty()) {
        chartFile = dir.filePath(QStringLiteral("study.piechart"));
        timer.start();
        writeStudy(chartFile, samples, taxa, QDir(dir.path()));
        out << QStringLiteral("study of %1 samples over about %2 taxa built in %3 s, %4 MB\n")
                   .arg(samples)
                   .arg(taxa)
                   .arg(timer.elapsed() / 1000.0, 0, 'f', 2)
                   .arg(QFileInfo(chartFile).size() / 1e6, 0, 'f', 1);
        out.flush();
    }

    auto chooser = std::make_shared<Chooser>();
    Sorvik::Viewer::MainWindow window;
    window.setPrompter(chooser);
    window.resize(1400, 900);
    window.show();
    QCoreApplication::processEvents();
    timer.restart();
    window.openFile(chartFile);
    window.grab();
    out << QStringLiteral("opened and drawn in %1 ms\n").arg(timer.nsecsElapsed() / 1e6, 0, 'f', 1);
    Sorvik::Viewer::SampleChooser* sampleChooser = window.getSampleChooser();
    const int count = sampleChooser->getCount();
    if (count < 2) {
        out << "the chart has one sample: nothing to switch or compare\n";
        return 0;
    }

    // Next sample, from the root and from the largest taxon of the first ring.
    const auto switching = [&](const QString& where) {
        std::vector<double> wall, paint, cpu;
        const int switches = std::min(count - 1, 20);
        sampleChooser->setCurrent(0);
        for (int i = 0; i < switches; ++i) {
            const double startCpu = cpuMilliseconds();
            QElapsedTimer clock;
            clock.start();
            sampleChooser->getNext()->trigger();
            wall.push_back(clock.nsecsElapsed() / 1e6);
            clock.restart();
            QCoreApplication::processEvents();
            window.grab();
            paint.push_back(clock.nsecsElapsed() / 1e6);
            cpu.push_back(cpuMilliseconds() - startCpu);
        }
        out << QStringLiteral("switch sample (%1): %2 ms redraw (max %3), %4 ms paint, %5 ms processor in all\n")
                   .arg(where)
                   .arg(median(wall), 0, 'f', 1)
                   .arg(maximum(wall), 0, 'f', 1)
                   .arg(median(paint), 0, 'f', 1)
                   .arg(median(cpu), 0, 'f', 1);
        out.flush();
    };
    switching(QStringLiteral("root"));
    if (Sorvik::Viewer::PieChartItem* into = largestChild(window.getView()->getScene()->getPieChart())) {
        window.getView()->getScene()->slotSelectItem(into->getId());
        window.slotNavigationStepInto();
        switching(QStringLiteral("stepped in"));
        window.slotNavigationGoRoot();
    }
    sampleChooser->setCurrent(0);
    window.slotGenerate();
    if (!grabFolder.isEmpty())
        window.grab().save(QDir(grabFolder).filePath(QStringLiteral("samples-window.png")));

    // The grid of 12 (or all, when fewer): the dialog accepted, then the window drawn.
    for (int i = 0; i < std::min(count, Sorvik::Viewer::CompareDialog::maximumChosen); ++i)
        chooser->samples.append(i * std::max(1, count / 12));
    double startCpu = cpuMilliseconds();
    timer.restart();
    window.slotViewCompare();
    Sorvik::Viewer::CompareWindow* compare = window.getCompareWindow();
    compare->resize(1600, 1000);
    const double drawn = timer.nsecsElapsed() / 1e6;
    QCoreApplication::processEvents();
        compare->grab();
    out << QStringLiteral("compare %1 samples: %2 ms to draw, %3 ms with the first paint, %4 ms processor\n")
               .arg(chooser->samples.size())
               .arg(drawn, 0, 'f', 1)
               .arg(timer.nsecsElapsed() / 1e6, 0, 'f', 1)
               .arg(cpuMilliseconds() - startCpu, 0, 'f', 1);
    if (!grabFolder.isEmpty())
        compare->grab().save(QDir(grabFolder).filePath(QStringLiteral("compare-root.png")));

    // Stepping into the largest taxon of the first chart, in all of them, and out again.
    std::vector<double> into, outOf;
    for (int i = 0; i < 5; ++i) {
        Sorvik::Viewer::Scene* scene = compare->getGrid()->getView(0)->getScene();
        Sorvik::Viewer::PieChartItem* target = largestChild(scene->getPieChart());
        if (!target)
            break;
        compare->getGrid()->slotSelectItem(target->getId());
        timer.restart();
        compare->slotStepInto();
        QCoreApplication::processEvents();
        compare->grab();
        into.push_back(timer.nsecsElapsed() / 1e6);
        if (i == 0 && !grabFolder.isEmpty())
            compare->grab().save(QDir(grabFolder).filePath(QStringLiteral("compare-stepped-in.png")));
        timer.restart();
        compare->slotStepOut();
        QCoreApplication::processEvents();
        compare->grab();
        outOf.push_back(timer.nsecsElapsed() / 1e6);
    }
    out << QStringLiteral("compare: step into %1 ms (max %2), step out %3 ms, painted\n")
               .arg(median(into), 0, 'f', 1)
               .arg(maximum(into), 0, 'f', 1)
               .arg(median(outOf), 0, 'f', 1);
    return 0;
}
