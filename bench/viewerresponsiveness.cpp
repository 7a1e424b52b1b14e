// Measures the viewer's responsiveness while it builds an NCBI-based chart from the full-size
// benchmark data (bench/run-benchmarks makes it): the largest gap between two turns of the
// interface thread's event loop, step by step, and how long a cancellation takes to end the
// build in every step.
//   bench_viewer_responsiveness DATA_DIR
// DATA_DIR holds taxdmp.zip and reads.taxids. Runs on the offscreen platform unless another one
// is asked for; the settings go to a test store and the charts to a temporary folder.
#include "nu/prompter.h"
#include "ontology/ontology.h"
#include "ontology/sourcefrequencies.h"
#include "resources/resources.h"
#include "viewer/buildncbipiechartasynctask.h"
#include "viewer/buildreportdialog.h"
#include "viewer/mainwindow.h"
#include "viewer/newpiechartwizard.h"
#include "viewer/settings.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace {

// Milliseconds between the meter's ticks; a tick late by more than this is a gap.
constexpr int tickInterval = 5;

// Records the largest delay of a short repeating timer, by the step shown at the time.
class GapMeter : public QObject
{
public:
    GapMeter()
    {
        timer.setTimerType(Qt::PreciseTimer);
        timer.setInterval(tickInterval);
        connect(&timer, &QTimer::timeout, this, &GapMeter::tick);
        clock.start();
        last = clock.nsecsElapsed();
        timer.start();
    }

    QString step = QStringLiteral("(before the build)");
    std::vector<QString> order;
    std::map<QString, double> largest;

private:
    void tick()
    {
        const qint64 now = clock.nsecsElapsed();
        const double gap = (now - last) / 1e6 - tickInterval;
        last = now;
        if (!largest.count(step))
            order.push_back(step);
        largest[step] = std::max(largest[step], gap);
    }

    QTimer timer;
    QElapsedTimer clock;
    qint64 last = 0;
};

// The step a progress dialog shows: the message of its first and second bars, numbers aside.
QString shownStep(QDialog& dialog)
{
    QStringList texts;
    for (QLabel* label : dialog.findChildren<QLabel*>())
        texts << label->text().section(QLatin1Char('/'), -1);
    return texts.join(QStringLiteral(" / "));
}

// Answers the wizard with the reads file and follows the progress dialog; optionally cancels it
// after a given time in a given step.
class BenchPrompter : public nu::Prompter
{
public:
    BenchPrompter(GapMeter& meter, QString reads, bool following)
        : meter(meter)
        , reads(std::move(reads))
        , following(following)
    {
    }

    QMessageBox::StandardButton message(QWidget*, QMessageBox::Icon, const QString& title, const QString& text,
                                        QMessageBox::StandardButtons) override
    {
        QTextStream(stdout) << "message: " << title << ": " << text << '\n';
        return QMessageBox::No;
    }

    int exec(QDialog& dialog) override
    {
        if (auto* wizard = dynamic_cast<Sorvik::Viewer::NewPiechartWizard*>(&dialog)) {
            wizard->setField(QStringLiteral("input-type-taxids"), true);
            wizard->setField(QStringLiteral("taxids-source-format-id"), true);
            wizard->setField(QStringLiteral("taxids-source-filename"), reads);
            return QDialog::Accepted;
        }
        // The list of ids placed outside the taxonomy, shown once the chart is drawn.
        if (dynamic_cast<Sorvik::Viewer::BuildReportDialog*>(&dialog)) {
            QTextStream(stdout) << "report: " << dialog.windowTitle() << '\n';
            return QDialog::Accepted;
        }
        QTimer follow;
        follow.setInterval(20);
        QObject::connect(&follow, &QTimer::timeout, &dialog, [this, &dialog] { meter.step = shownStep(dialog); });
        if (following)
            follow.start();
        return dialog.exec();
    }

private:
    GapMeter& meter;
    QString reads;
    bool following;
};

// The time from a cancellation in each step of a task's build to the end of its thread: one run
// per step, cancelled well into it (steps too short for that are reported as such).
void measureCancellation(const QString& data, const QString& folder, bool cached, QTextStream& out)
{
    const QString taxonomy = folder + QStringLiteral("/ncbi.ontology");
    std::vector<QString> done;
    const auto isDone = [&done](const QString& name) { return std::find(done.begin(), done.end(), name) != done.end(); };
    for (int round = 0; round < 20; ++round) {
        if (!cached)
            QFile::remove(taxonomy);
        auto task = std::make_unique<Sorvik::Viewer::BuildNcbiPiechartAsyncTask>();
        task->setNcbiOntologyFile(taxonomy);
        task->setTargetFile(folder + QStringLiteral("/cancelled.piechart"));
        task->setDownloadUrl(QUrl::fromLocalFile(data + QStringLiteral("/taxdmp.zip")));
        task->setSource(std::make_unique<Zem::Ontology::SourceFrequencies>(data + QStringLiteral("/reads.taxids"), 1));
        QString step;
        QString target;
        QElapsedTimer inStep;
        QElapsedTimer sinceCancel;
        const auto enter = [&](const QString& name) {
            if (name == step)
                return;
            if (!target.isEmpty() && step == target) {
                out << QStringLiteral("  cancel in %1: the step ended within %2 ms\n").arg(target, -40).arg(inStep.elapsed());
                done.push_back(target);
                target.clear();
            }
            step = name;
            inStep.start();
            if (target.isEmpty() && !isDone(name))
                target = name;
        };
        QObject::connect(task.get(), &nu::AsyncTask::progressChanged, task.get(),
                         [&](int level, int value, int maximum, const QString& message) {
                             if (level != 1 || sinceCancel.isValid() || message.isEmpty())
                                 return;
                             // The archive is unpacked once its download is complete, with no
                             // message of its own.
                             if (message.startsWith(QLatin1String("Downloading")) && maximum > 0 && value >= maximum)
                                 enter(QStringLiteral("(unpacking the archive)"));
                             else
                                 enter(message.section(QLatin1Char('/'), -1));
                         });
        QTimer poll;
        poll.setInterval(10);
        QObject::connect(&poll, &QTimer::timeout, task.get(), [&] {
            // Well into the step; the unpacking shows no progress, so it is caught early.
            const int into = target.startsWith(QLatin1Char('(')) ? 100 : 500;
            if (!sinceCancel.isValid() && !target.isEmpty() && step == target && inStep.elapsed() >= into) {
                sinceCancel.start();
                task->slotSetCancelled();
            }
        });
        QEventLoop loop;
        QObject::connect(task.get(), &QThread::finished, &loop, &QEventLoop::quit);
        poll.start();
        task->start();
        loop.exec();
        task->wait();
        if (!sinceCancel.isValid())
            break; // every step has had its turn: this run went through to the end
        out << QStringLiteral("  cancel in %1: %2 ms\n").arg(target, -40).arg(sinceCancel.elapsed());
        out.flush();
        done.push_back(target);
    }
}

// Rejects the progress dialog once it has been shown for the given time.
void cancelWhenShown(QWidget& window, int milliseconds)
{
    auto* poll = new QTimer(&window);
    auto shown = std::make_shared<QElapsedTimer>();
    QObject::connect(poll, &QTimer::timeout, &window, [poll, shown, &window, milliseconds] {
        for (QDialog* dialog : window.findChildren<QDialog*>()) {
            if (!dialog->isVisible() || dynamic_cast<Sorvik::Viewer::NewPiechartWizard*>(dialog))
                continue;
            if (!shown->isValid())
                shown->start();
            if (shown->elapsed() >= milliseconds) {
                dialog->reject();
                poll->deleteLater();
            }
            return;
        }
    });
    poll->start(10);
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    Sorvik::initResources();
    QStandardPaths::setTestModeEnabled(true);
    QTextStream out(stdout);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 2 || !QFile::exists(args.at(1) + QStringLiteral("/taxdmp.zip"))) {
        out << "usage: bench_viewer_responsiveness DATA_DIR [--cancel-only] (with taxdmp.zip and reads.taxids)\n";
        return 2;
    }
    const QString data = args.at(1);
    QTemporaryDir folder;
    Sorvik::App::Settings().setPath(folder.path());
    qputenv("SORVIK_TAXDUMP_URL", QUrl::fromLocalFile(data + QStringLiteral("/taxdmp.zip")).toEncoded());

    GapMeter meter;
    // The cancellation figures alone, for work on them: the whole run takes minutes.
    if (!args.contains(QStringLiteral("--cancel-only"))) {
        Sorvik::Viewer::MainWindow window;
        window.setPrompter(std::make_shared<BenchPrompter>(meter, data + QStringLiteral("/reads.taxids"), true));
        window.resize(1100, 760);
        window.show();
        QElapsedTimer whole;
        whole.start();
        window.slotFileNew();
        QThread::msleep(tickInterval);
        QCoreApplication::processEvents();
        out << QStringLiteral("viewer build from download to chart: %1 s\n").arg(whole.elapsed() / 1000.0, 0, 'f', 1);
        out << QStringLiteral("largest gap between event loop turns, by step (target <= 100 ms):\n");
        for (const QString& step : meter.order)
            out << QStringLiteral("  %1 %2 ms\n").arg(step, -60).arg(meter.largest[step], 7, 'f', 1);
        out.flush();

        // What follows the build on the interface thread, timed on its own.
        const auto timed = [&out, &meter](const QString& what, const std::function<void()>& action) {
            meter.step = what;
            QElapsedTimer clock;
            clock.start();
            action();
            const qint64 took = clock.elapsed();
            // The tick that measures the last stretch.
            QThread::msleep(tickInterval);
            QCoreApplication::processEvents();
            out << QStringLiteral("%1: %2 ms, largest gap %3 ms\n").arg(what, -56).arg(took).arg(meter.largest[what], 0, 'f', 1);
            out.flush();
        };
        out << QStringLiteral("the chart has %1 nodes\n")
                   .arg(Zem::Ontology::Ontology(window.getFileHandler().getFileName()).getNodeNumber());
        timed(QStringLiteral("drawing it again (as a change of view settings does)"), [&window] { window.slotGenerate(); });
        const QString chart = window.getFileHandler().getFileName();
        timed(QStringLiteral("closing it"), [&window] { window.slotFileClose(); });
        timed(QStringLiteral("opening it (reading the whole tree, as after a build)"), [&window, &chart] { window.openFile(chart); });
        timed(QStringLiteral("closing it again"), [&window] { window.slotFileClose(); });

        // A build cancelled during the import, which is still ending, then a new chart at once.
        window.setPrompter(std::make_shared<BenchPrompter>(meter, data + QStringLiteral("/reads.taxids"), false));
        meter.step = QStringLiteral("(the bench's own preparation)");
        QFile::remove(folder.path() + QStringLiteral("/ncbi.ontology"));
        QThread::msleep(tickInterval);
        QCoreApplication::processEvents();
        meter.step = QStringLiteral("(a build, cancelled 8 s in)");
        cancelWhenShown(window, 8000);
        window.slotFileNew();
        meter.step = QStringLiteral("(a new build at once, cancelled when shown)");
        QElapsedTimer again;
        again.start();
        cancelWhenShown(window, 0);
        window.slotFileNew();
        const qint64 took = again.elapsed();
        QCoreApplication::processEvents();
        for (const QString& step : {QStringLiteral("(a build, cancelled 8 s in)"), meter.step})
            out << QStringLiteral("  %1 %2 ms\n").arg(step, -60).arg(meter.largest[step], 7, 'f', 1);
        out << QStringLiteral("  the new build's dialog was up %1 ms after New\n").arg(took);
        out.flush();
    }

    out << "cancellation, from the request to the end of the build's thread (target <= 500 ms):\n";
    measureCancellation(data, folder.path(), false, out);
    measureCancellation(data, folder.path(), true, out);
    return 0;
}
