#include "ontology/buildersource.h"
#include "ontology/ontology.h"
#include "ontology/sourcefrequencies.h"
#include "tests/support/httpserver.h"
#include "tests/support/taxdump.h"
#include "tests/support/treeliteral.h"
#include "tests/support/treetext.h"
#include "viewer/buildncbipiechartasynctask.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>

using Sorvik::Viewer::BuildNcbiPiechartAsyncTask;
using Zem::Ontology::SourceFrequencies;
using namespace Sorvik::Test;

namespace {

const QString chartOfSmallTaxonomy = QStringLiteral(
    "root:0(\"cellular organisms\":0(Bacteria:0(Escherichia:0(\"Escherichia coli\":2)) \"Homo sapiens\":1))");

// Reads until it is cancelled, or gives up after a while and says so.
class EndlessSource : public Zem::Ontology::Source
{
public:
    explicit EndlessSource(std::atomic<bool>* ranOut)
        : ranOut(ranOut)
    {
    }
    QString getDescription() const override { return QStringLiteral("endless"); }
    void read(Zem::Ontology::BuilderSource& builder) override
    {
        QElapsedTimer clock;
        clock.start();
        for (int i = 1; clock.elapsed() < 20000; ++i)
            builder.checkCancelled(i & 0x3fffffff);
        *ranOut = true;
    }

private:
    std::atomic<bool>* ranOut;
};

// The progress a task reports, from whichever thread: the distinct messages of each level in
// order, and the overall step count with the furthest step reached.
struct ProgressLog
{
    explicit ProgressLog(BuildNcbiPiechartAsyncTask& task)
    {
        QObject::connect(&task, &nu::AsyncTask::progressChanged, &task,
                         [this](int level, int value, int maximum, const QString& message) {
                             QMutexLocker lock(&mutex);
                             if (level == 0 && maximum > 1)
                                 steps = qMakePair(qMax(steps.first, maximum), qMax(steps.second, value));
                             QStringList& list = messages[qMin(level, 1)];
                             if (!message.isEmpty() && (list.isEmpty() || list.last() != message))
                                 list << message;
                         }, Qt::DirectConnection);
    }

    QMutex mutex;
    QStringList messages[2];
    QPair<int, int> steps{0, 0};
};

QStringList entries(const QString& folder)
{
    return QDir(folder).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden);
}

// Polls while the event loop turns (the loopback server needs it): the thread may end before a
// wait for its signal would begin.
bool waitFor(const QSignalSpy& finished)
{
    QElapsedTimer clock;
    clock.start();
    while (finished.isEmpty() && clock.elapsed() < 60000)
        QTest::qWait(10);
    return !finished.isEmpty();
}

bool runToEnd(BuildNcbiPiechartAsyncTask& task)
{
    QSignalSpy finished(&task, &QThread::finished);
    task.start();
    return waitFor(finished);
}

} // namespace

class TestBuildNcbiPiechartAsyncTask : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(top.isValid());
        QVERIFY(QDir(top.path()).mkpath(QStringLiteral("tmp")));
        qputenv("TMPDIR", QFile::encodeName(top.filePath(QStringLiteral("tmp"))));
        QVERIFY(server.isListening());
        const auto serveZip = [this](const QString& urlPath, const QList<ZipEntry>& entries) {
            const QString zip = top.filePath(QStringLiteral("served.zip"));
            QVERIFY(writeZip(zip, entries));
            QFile file(zip);
            QVERIFY(file.open(QIODevice::ReadOnly));
            server.serve(urlPath, file.readAll());
        };
        serveZip(QStringLiteral("/pub/taxonomy/taxdmp.zip"),
                 {{QStringLiteral("nodes.dmp"), smallNodes()}, {QStringLiteral("names.dmp"), smallNames()}});
        // 20 000 taxa in a binary tree, enough for every cancellation check to come round.
        QByteArray nodes = dumpRow({"1", "1", "no rank"});
        QByteArray names;
        for (int id = 2; id <= 20001; ++id) {
            nodes.append(dumpRow({QByteArray::number(id), QByteArray::number(id / 2), "no rank"}));
            names.append(dumpRow({QByteArray::number(id), "Taxon " + QByteArray::number(id), "", "scientific name"}));
            largeIds.append(QByteArray::number(id)).append('\n');
        }
        serveZip(QStringLiteral("/large.zip"), {{QStringLiteral("nodes.dmp"), nodes}, {QStringLiteral("names.dmp"), names}});
        serveZip(QStringLiteral("/nonodes.zip"), {{QStringLiteral("names.dmp"), smallNames()}});
        server.serve(QStringLiteral("/html"), "<html><body>Moved to a new mirror</body></html>");
        HttpServer::Route route;
        route.body = nodes;
        route.behaviour = HttpServer::Behaviour::Stall;
        route.stallAfter = 1000;
        server.setRoute(QStringLiteral("/stall.zip"), route);
    }

    void init()
    {
        dir = std::make_unique<QTemporaryDir>(top.filePath(QStringLiteral("case-XXXXXX")));
        QVERIFY(dir->isValid());
    }

    void downloadsTheTaxonomyThenBuildsTheChart_data()
    {
        QTest::addColumn<QByteArray>("cache");
        QTest::newRow("no cache") << QByteArray("<none>");
        // A cache damaged by a crash is rebuilt as if missing.
        QTest::newRow("half an SQLite file") << QByteArray("SQLite format 3\0", 16) + QByteArray(4000, '\x01');
    }

    void downloadsTheTaxonomyThenBuildsTheChart()
    {
        QFETCH(QByteArray, cache);
        if (cache != "<none>")
            write(QStringLiteral("ncbi.ontology"), cache);
        const QString input = write(QStringLiteral("input.txt"), "562\n562\n9606\n12345\n");
        auto task = makeTask(QStringLiteral("/pub/taxonomy/taxdmp.zip"), std::make_unique<SourceFrequencies>(input));
        task->setWriterCommitSize(2);
        ProgressLog log(*task);
        QVERIFY(runToEnd(*task));

        QCOMPARE(task->getErrorMessage(), QString());
        QVERIFY(task->hasDownloaded());
        QCOMPARE(describeOntology(path(QStringLiteral("target.piechart"))), chartOfSmallTaxonomy);
        QVERIFY(Zem::Ontology::Ontology(path(QStringLiteral("target.piechart"))).isCounted());
        const Zem::Ontology::Ontology taxonomy(path(QStringLiteral("ncbi.ontology")));
        QVERIFY(!taxonomy.isCounted());
        QCOMPARE(taxonomy.getNodeNumber(), 6);

        QCOMPARE(log.steps, qMakePair(8, 7));
        QCOMPARE(log.messages[0], (QStringList{"Retrieving data from NCBI...", "Building ontology...",
                                               "Building piechart...", "Pie chart built"}));
        const QStringList steps = log.messages[1];
        QCOMPARE(steps.size(), 8);
        QCOMPARE(steps.at(0), QStringLiteral("Downloading database..."));
        QVERIFY(steps.at(1).startsWith(QLatin1String("Reading file ")) && steps.at(1).endsWith(QLatin1String("/nodes.dmp")));
        QVERIFY(steps.at(2).endsWith(QLatin1String("/names.dmp")));
        QCOMPARE(steps.mid(3), (QStringList{"Inserting nodes...", "Reading file " + path(QStringLiteral("ncbi.ontology")),
                                            "Reading file " + input, "Counting nodes...", "Inserting nodes..."}));

        // Neither the download nor the unpacked dump is left behind.
        task.reset();
        QCOMPARE(entries(top.filePath(QStringLiteral("tmp"))), QStringList());
        QCOMPARE(entries(dir->path()), (QStringList{"input.txt", "ncbi.ontology", "target.piechart"}));
    }

    void failures_data()
    {
        QTest::addColumn<QString>("urlPath");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("detail");
        QTest::newRow("not found") << "/missing.zip" << "NCBI data couldn't be downloaded" << "Not Found";
        QTest::newRow("not a zip") << "/html" << "Pie chart couldn't be generated" << "not a ZIP file";
        QTest::newRow("no nodes.dmp") << "/nonodes.zip" << "Pie chart couldn't be generated" << "no nodes.dmp";
    }

    void failures()
    {
        QFETCH(QString, urlPath);
        QFETCH(QString, message);
        QFETCH(QString, detail);
        // A damaged cache and an earlier chart are in the way: neither may survive a failure.
        write(QStringLiteral("ncbi.ontology"), "old");
        write(QStringLiteral("target.piechart"), "old");
        auto task = makeTask(urlPath, std::make_unique<SourceFrequencies>(write(QStringLiteral("input.txt"), "562\n")));
        ProgressLog log(*task);
        QVERIFY(runToEnd(*task));
        QCOMPARE(task->getState(), int(nu::AsyncTask::Failed));
        QVERIFY2(task->getErrorMessage() == message, qPrintable(task->getErrorDetail()));
        QVERIFY2(task->getErrorDetail().contains(detail, Qt::CaseInsensitive), qPrintable(task->getErrorDetail()));
        QCOMPARE(log.messages[0].last(), message);
        task.reset();
        QCOMPARE(entries(dir->path()), QStringList{QStringLiteral("input.txt")});
        QCOMPARE(entries(top.filePath(QStringLiteral("tmp"))), QStringList());
    }

    void cancelDuringDownload()
    {
        auto task = makeTask(QStringLiteral("/stall.zip"),
                             std::make_unique<SourceFrequencies>(write(QStringLiteral("input.txt"), "562\n")));
        ProgressLog log(*task);
        QSignalSpy finished(task.get(), &QThread::finished);
        const int before = server.getRequestCount(QStringLiteral("/stall.zip"));
        task->start();
        QTRY_COMPARE(server.getRequestCount(QStringLiteral("/stall.zip")), before + 1);
        task->slotSetCancelled();
        QVERIFY(waitFor(finished));
        QCOMPARE(task->getState(), int(nu::AsyncTask::Cancelled));
        QCOMPARE(task->getErrorMessage(), QString());
        QCOMPARE(task->getProgress(0).message, QStringLiteral("Cancelled"));
        QVERIFY(!log.messages[0].contains(QStringLiteral("Building ontology...")));
        task.reset();
        QCOMPARE(entries(dir->path()), QStringList{QStringLiteral("input.txt")});
    }

    void cancelIsObservedInEveryStep_data()
    {
        QTest::addColumn<QString>("trigger");
        QTest::addColumn<int>("occurrence");
        QTest::newRow("reading nodes.dmp") << "nodes.dmp" << 1;
        QTest::newRow("inserting the taxonomy") << "Inserting nodes..." << 1;
        QTest::newRow("reading the taxonomy") << "ncbi.ontology" << 1;
        QTest::newRow("reading the input") << "endless" << 1;
        QTest::newRow("counting") << "Counting nodes..." << 1;
        QTest::newRow("inserting the chart") << "Inserting nodes..." << 2;
    }

    void cancelIsObservedInEveryStep()
    {
        QFETCH(QString, trigger);
        QFETCH(int, occurrence);
        std::atomic<bool> ranOut{false};
        std::unique_ptr<Zem::Ontology::Source> input;
        if (trigger == QLatin1String("endless"))
            input = std::make_unique<EndlessSource>(&ranOut);
        else
            input = std::make_unique<SourceFrequencies>(write(QStringLiteral("input.txt"), largeIds));
        auto task = makeTask(QStringLiteral("/large.zip"), std::move(input));
        ProgressLog log(*task);
        // Cancels on the task's own thread the moment the step announces itself, so the step
        // itself has to notice.
        int seen = 0;
        QString step;
        BuildNcbiPiechartAsyncTask* raw = task.get();
        connect(raw, &nu::AsyncTask::progressChanged, raw, [&, raw](int level, int, int, const QString& message) {
            if (level == 1 && message != step && message.endsWith(trigger) && ++seen == occurrence)
                raw->slotSetCancelled();
            step = level == 1 ? message : step;
        }, Qt::DirectConnection);
        QVERIFY(runToEnd(*task));
        QCOMPARE(seen, occurrence);
        QCOMPARE(task->getState(), int(nu::AsyncTask::Cancelled));
        QCOMPARE(task->getErrorMessage(), QString());
        QVERIFY2(!ranOut, "reading the input went on after the cancellation");
        // No later step began: the taxonomy (20 000 nodes) is read in one load with the input
        // after it, so a reader that ignored the cancellation would go on to the input.
        QVERIFY2(log.messages[1].last().endsWith(trigger), qPrintable(log.messages[1].last()));
        task.reset();
        const bool inputFile = trigger != QLatin1String("endless");
        QCOMPARE(entries(dir->path()), inputFile ? QStringList{QStringLiteral("input.txt")} : QStringList());
    }

    void destroyingARunningTaskCancelsIt()
    {
        writeTree(path(QStringLiteral("ncbi.ontology")), QStringLiteral("1=root(562)"), false);
        std::atomic<bool> ranOut{false};
        auto task = makeTask(QStringLiteral("/nonodes.zip"), std::make_unique<EndlessSource>(&ranOut));
        QSignalSpy started(task.get(), &QThread::started);
        task->start();
        QTRY_COMPARE_WITH_TIMEOUT(started.count(), 1, 10000);
        task.reset();
        QVERIFY(!ranOut);
        // The cache was not made by this task and stays.
        QCOMPARE(entries(dir->path()), QStringList{QStringLiteral("ncbi.ontology")});
    }

private:
    QString path(const QString& name) const { return dir->filePath(name); }
    QString write(const QString& name, const QByteArray& content)
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly))
            return QString();
        file.write(content);
        return file.fileName();
    }
    std::unique_ptr<BuildNcbiPiechartAsyncTask> makeTask(const QString& urlPath,
                                                         std::unique_ptr<Zem::Ontology::Source> input)
    {
        auto task = std::make_unique<BuildNcbiPiechartAsyncTask>();
        task->setNcbiOntologyFile(path(QStringLiteral("ncbi.ontology")));
        task->setTargetFile(path(QStringLiteral("target.piechart")));
        task->setDownloadUrl(server.url(urlPath));
        task->setSource(std::move(input));
        return task;
    }

    QTemporaryDir top;
    std::unique_ptr<QTemporaryDir> dir;
    HttpServer server;
    QByteArray largeIds;
};

QTEST_GUILESS_MAIN(TestBuildNcbiPiechartAsyncTask)
#include "tst_buildncbipiechartasynctask.moc"
