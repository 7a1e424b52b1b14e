#include "ontology/buildersource.h"
#include "ontology/ontology.h"
#include "ontology/sourcefrequencies.h"
#include "ontology/sourcemgtaxatext.h"
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

// A taxon-id source that notes whether it was read at all.
class ProbeSource : public Zem::Ontology::SourceFrequencies
{
public:
    ProbeSource(const QString& fileName, std::atomic<bool>* wasRead)
        : SourceFrequencies(fileName)
        , wasRead(wasRead)
    {
    }
    void read(Zem::Ontology::BuilderSource& builder) override
    {
        *wasRead = true;
        SourceFrequencies::read(builder);
    }

private:
    std::atomic<bool>* wasRead;
};

// Every progress signal, recorded on whichever thread it comes from.
struct ProgressLog
{
    struct Event
    {
        int level;
        int value;
        int maximum;
        QString message;
    };

    void attach(BuildNcbiPiechartAsyncTask& task)
    {
        QObject::connect(&task, &nu::AsyncTask::progressChanged, &task,
                         [this](int level, int value, int maximum, const QString& message) {
                             QMutexLocker lock(&mutex);
                             events.push_back({level, value, maximum, message});
                         }, Qt::DirectConnection);
    }
    // The distinct messages of a level, in order.
    QStringList messages(int level) const
    {
        QMutexLocker lock(&mutex);
        QStringList list;
        for (const Event& event : events) {
            if (event.level == level && !event.message.isEmpty() && (list.isEmpty() || list.last() != event.message))
                list << event.message;
        }
        return list;
    }
    int maximum(int level) const
    {
        QMutexLocker lock(&mutex);
        int max = 0;
        for (const Event& event : events) {
            if (event.level == level)
                max = qMax(max, event.maximum);
        }
        return max;
    }
    int highestValue(int level) const
    {
        QMutexLocker lock(&mutex);
        int value = 0;
        for (const Event& event : events) {
            if (event.level == level && event.maximum > 1)
                value = qMax(value, event.value);
        }
        return value;
    }

    mutable QMutex mutex;
    QVector<Event> events;
};

} // namespace

class TestBuildNcbiPiechartAsyncTask : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();

    void downloadsTheTaxonomyThenBuildsTheChart();
    void cachedTaxonomyIsUsedWithoutDownload();
    void damagedCacheIsRebuilt_data();
    void damagedCacheIsRebuilt();
    void mgtaxaInput();
    void inputMatchingNoTaxonGivesOnlyTheRoot();
    void failures_data();
    void failures();
    void cancelDuringDownload();
    void cancelIsObservedInEveryStep_data();
    void cancelIsObservedInEveryStep();
    void destroyingARunningTaskCancelsIt();
    void downloadAddress_data();
    void downloadAddress();

private:
    QString path(const QString& name) const { return dir->filePath(name); }
    QString writeInput(const QByteArray& content);
    std::unique_ptr<BuildNcbiPiechartAsyncTask> makeTask(const QString& urlPath, std::unique_ptr<Zem::Ontology::Source> input);
    bool runToEnd(BuildNcbiPiechartAsyncTask& task);
    static bool waitFor(const QSignalSpy& finished);
    void writeSmallCache();

    QTemporaryDir top;
    std::unique_ptr<QTemporaryDir> dir;
    HttpServer server;
    QByteArray largeIds;
};

void TestBuildNcbiPiechartAsyncTask::initTestCase()
{
    QVERIFY(top.isValid());
    QVERIFY(QDir(top.path()).mkpath(QStringLiteral("tmp")));
    qputenv("TMPDIR", QFile::encodeName(top.filePath(QStringLiteral("tmp"))));
    QVERIFY(server.isListening());

    auto serveFile = [this](const QString& urlPath, const QString& file) {
        QFile zip(file);
        QVERIFY(zip.open(QIODevice::ReadOnly));
        server.serve(urlPath, zip.readAll());
    };
    const QString small = top.filePath(QStringLiteral("small.zip"));
    QVERIFY(writeSmallTaxdump(small));
    serveFile(QStringLiteral("/pub/taxonomy/taxdmp.zip"), small);

    // 20 000 taxa in a binary tree, enough for every cancellation check to come round.
    QByteArray nodes = dumpRow({"1", "1", "no rank"});
    QByteArray names;
    for (int id = 2; id <= 20001; ++id) {
        nodes.append(dumpRow({QByteArray::number(id), QByteArray::number(id / 2), "no rank"}));
        names.append(dumpRow({QByteArray::number(id), "Taxon " + QByteArray::number(id), "", "scientific name"}));
        largeIds.append(QByteArray::number(id)).append('\n');
    }
    const QString large = top.filePath(QStringLiteral("large.zip"));
    QVERIFY(writeZip(large, {{QStringLiteral("nodes.dmp"), nodes}, {QStringLiteral("names.dmp"), names}}));
    serveFile(QStringLiteral("/large.zip"), large);

    const QString noNodes = top.filePath(QStringLiteral("nonodes.zip"));
    QVERIFY(writeZip(noNodes, {{QStringLiteral("names.dmp"), smallNames()}}));
    serveFile(QStringLiteral("/nonodes.zip"), noNodes);
    server.serve(QStringLiteral("/html"), "<html><body>Moved to a new mirror</body></html>");

    HttpServer::Route cut;
    cut.body = nodes;
    cut.behaviour = HttpServer::Behaviour::CloseMidBody;
    server.setRoute(QStringLiteral("/cut.zip"), cut);
    HttpServer::Route stall;
    stall.body = nodes;
    stall.behaviour = HttpServer::Behaviour::Stall;
    stall.stallAfter = 1000;
    server.setRoute(QStringLiteral("/stall.zip"), stall);
}

void TestBuildNcbiPiechartAsyncTask::init()
{
    dir = std::make_unique<QTemporaryDir>(top.filePath(QStringLiteral("case-XXXXXX")));
    QVERIFY(dir->isValid());
}

QString TestBuildNcbiPiechartAsyncTask::writeInput(const QByteArray& content)
{
    const QString name = path(QStringLiteral("input.txt"));
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return QString();
    file.write(content);
    return name;
}

std::unique_ptr<BuildNcbiPiechartAsyncTask> TestBuildNcbiPiechartAsyncTask::makeTask(
    const QString& urlPath, std::unique_ptr<Zem::Ontology::Source> input)
{
    auto task = std::make_unique<BuildNcbiPiechartAsyncTask>();
    task->setNcbiOntologyFile(path(QStringLiteral("ncbi.ontology")));
    task->setTargetFile(path(QStringLiteral("target.piechart")));
    task->setDownloadUrl(server.url(urlPath));
    task->setSource(std::move(input));
    return task;
}

bool TestBuildNcbiPiechartAsyncTask::runToEnd(BuildNcbiPiechartAsyncTask& task)
{
    QSignalSpy finished(&task, &QThread::finished);
    task.start();
    return waitFor(finished);
}

bool TestBuildNcbiPiechartAsyncTask::waitFor(const QSignalSpy& finished)
{
    // Polls while the event loop turns (the loopback server needs it): the thread may end before
    // a wait for its signal would begin.
    QElapsedTimer clock;
    clock.start();
    while (finished.isEmpty() && clock.elapsed() < 60000)
        QTest::qWait(10);
    return !finished.isEmpty();
}

void TestBuildNcbiPiechartAsyncTask::writeSmallCache()
{
    writeTree(path(QStringLiteral("ncbi.ontology")),
              QStringLiteral("1=root(131567=\"cellular organisms\"(2=Bacteria(561=Escherichia(562=\"Escherichia coli\")) "
                             "9606=\"Homo sapiens\"))"),
              false);
}

void TestBuildNcbiPiechartAsyncTask::downloadsTheTaxonomyThenBuildsTheChart()
{
    const QString input = writeInput("562\n562\n9606\n12345\n");
    auto task = makeTask(QStringLiteral("/pub/taxonomy/taxdmp.zip"), std::make_unique<Zem::Ontology::SourceFrequencies>(input));
    task->setWriterCommitSize(2);
    ProgressLog log;
    log.attach(*task);
    QVERIFY(runToEnd(*task));

    QCOMPARE(task->getState(), int(nu::AsyncTask::Running));
    QVERIFY(task->getErrorMessage().isEmpty());
    QVERIFY(task->hasDownloaded());
    QCOMPARE(describeOntology(path(QStringLiteral("target.piechart"))), chartOfSmallTaxonomy);
    QVERIFY(Zem::Ontology::Ontology(path(QStringLiteral("target.piechart"))).isCounted());
    const Zem::Ontology::Ontology cache(path(QStringLiteral("ncbi.ontology")));
    QVERIFY(!cache.isCounted());
    QCOMPARE(cache.getNodeNumber(), 6);

    QCOMPARE(log.maximum(0), 8);
    QCOMPARE(log.highestValue(0), 7);
    QCOMPARE(log.messages(0), (QStringList{"Retrieving data from NCBI...", "Building ontology...", "Building piechart...",
                                           "Piechart builded"}));
    const QStringList steps = log.messages(1);
    QCOMPARE(steps.size(), 8);
    QCOMPARE(steps.at(0), QStringLiteral("Downloading database..."));
    QVERIFY(steps.at(1).startsWith(QLatin1String("Reading file ")) && steps.at(1).endsWith(QLatin1String("/nodes.dmp")));
    QVERIFY(steps.at(2).endsWith(QLatin1String("/names.dmp")));
    QCOMPARE(steps.at(3), QStringLiteral("Inserting nodes..."));
    QCOMPARE(steps.at(4), QStringLiteral("Reading file ") + path(QStringLiteral("ncbi.ontology")));
    QCOMPARE(steps.at(5), QStringLiteral("Reading file ") + input);
    QCOMPARE(steps.at(6), QStringLiteral("Counting nodes..."));
    QCOMPARE(steps.at(7), QStringLiteral("Inserting nodes..."));
    const auto overall = task->getProgress(0);
    QCOMPARE(overall.value, 1);
    QCOMPARE(overall.maximum, 1);

    // Neither the download nor the unpacked dump is left behind.
    task.reset();
    QCOMPARE(QDir(top.filePath(QStringLiteral("tmp"))).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
             QStringList());
    QVERIFY(QFileInfo::exists(path(QStringLiteral("target.piechart"))));
    QVERIFY(QFileInfo::exists(path(QStringLiteral("ncbi.ontology"))));
}

void TestBuildNcbiPiechartAsyncTask::cachedTaxonomyIsUsedWithoutDownload()
{
    writeSmallCache();
    const int before = server.getRequestCount(QStringLiteral("/nonodes.zip"));
    auto task = makeTask(QStringLiteral("/nonodes.zip"),
                         std::make_unique<Zem::Ontology::SourceFrequencies>(writeInput("562\t2\n9606\t1\n"), 2));
    ProgressLog log;
    log.attach(*task);
    QVERIFY(runToEnd(*task));
    QCOMPARE(task->getState(), int(nu::AsyncTask::Running));
    QCOMPARE(server.getRequestCount(QStringLiteral("/nonodes.zip")), before);
    QVERIFY(!task->hasDownloaded());
    QCOMPARE(log.maximum(0), 4);
    QCOMPARE(log.highestValue(0), 3);
    QCOMPARE(describeOntology(path(QStringLiteral("target.piechart"))), chartOfSmallTaxonomy);
}

void TestBuildNcbiPiechartAsyncTask::damagedCacheIsRebuilt_data()
{
    QTest::addColumn<QByteArray>("cache");
    QTest::newRow("text") << QByteArray("9606\n562\n");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("half an SQLite file") << QByteArray("SQLite format 3\0", 16) + QByteArray(4000, '\x01');
}

void TestBuildNcbiPiechartAsyncTask::damagedCacheIsRebuilt()
{
    QFETCH(QByteArray, cache);
    QFile file(path(QStringLiteral("ncbi.ontology")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(cache);
    file.close();
    auto task = makeTask(QStringLiteral("/pub/taxonomy/taxdmp.zip"),
                         std::make_unique<Zem::Ontology::SourceFrequencies>(writeInput("562 562 9606")));
    QVERIFY(runToEnd(*task));
    QCOMPARE(task->getErrorMessage(), QString());
    QVERIFY(task->hasDownloaded());
    QCOMPARE(describeOntology(path(QStringLiteral("target.piechart"))), chartOfSmallTaxonomy);
    QCOMPARE(Zem::Ontology::Ontology(path(QStringLiteral("ncbi.ontology"))).getNodeNumber(), 6);
}

void TestBuildNcbiPiechartAsyncTask::mgtaxaInput()
{
    writeSmallCache();
    const QString input = writeInput("id\tlen\ttaxid\tname\ns1\t90\t562\tE\ns2\t80\t562\tE\ns3\t70\t9606\tH\n");
    auto task = makeTask(QStringLiteral("/nonodes.zip"), std::make_unique<Zem::Ontology::SourceMgtaxaText>(input));
    QVERIFY(runToEnd(*task));
    QCOMPARE(task->getErrorMessage(), QString());
    QCOMPARE(describeOntology(path(QStringLiteral("target.piechart"))), chartOfSmallTaxonomy);
}

void TestBuildNcbiPiechartAsyncTask::inputMatchingNoTaxonGivesOnlyTheRoot()
{
    writeSmallCache();
    auto task = makeTask(QStringLiteral("/nonodes.zip"),
                         std::make_unique<Zem::Ontology::SourceFrequencies>(writeInput("424242\n0\nunclassified\n")));
    QVERIFY(runToEnd(*task));
    QCOMPARE(task->getState(), int(nu::AsyncTask::Running));
    QCOMPARE(describeOntology(path(QStringLiteral("target.piechart"))), QStringLiteral("root:0"));
}

void TestBuildNcbiPiechartAsyncTask::failures_data()
{
    QTest::addColumn<QString>("urlPath");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("detail");
    QTest::newRow("not found") << "/missing.zip" << "NCBI data couldn't be downloaded" << "Not Found";
    QTest::newRow("refused") << "<refused>" << "NCBI data couldn't be downloaded" << "refused";
    QTest::newRow("cut short") << "/cut.zip" << "NCBI data couldn't be downloaded" << "closed";
    QTest::newRow("not a zip") << "/html" << "Pie chart couldn't be generated" << "not a ZIP file";
    QTest::newRow("no nodes.dmp") << "/nonodes.zip" << "Pie chart couldn't be generated" << "no nodes.dmp";
}

void TestBuildNcbiPiechartAsyncTask::failures()
{
    QFETCH(QString, urlPath);
    QFETCH(QString, message);
    QFETCH(QString, detail);
    // A damaged cache and an earlier chart are in the way: neither may survive a failure.
    for (const QString& name : {QStringLiteral("ncbi.ontology"), QStringLiteral("target.piechart")}) {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("old");
    }
    auto task = makeTask(urlPath, std::make_unique<Zem::Ontology::SourceFrequencies>(writeInput("562\n")));
    if (urlPath == QLatin1String("<refused>"))
        task->setDownloadUrl(HttpServer::refusingUrl(QStringLiteral("/taxdmp.zip")));
    ProgressLog log;
    log.attach(*task);
    QVERIFY(runToEnd(*task));
    QCOMPARE(task->getState(), int(nu::AsyncTask::Failed));
    QVERIFY2(task->getErrorMessage() == message, qPrintable(task->getErrorDetail()));
    QVERIFY2(task->getErrorDetail().contains(detail, Qt::CaseInsensitive), qPrintable(task->getErrorDetail()));
    QCOMPARE(log.messages(0).last(), message);
    task.reset();
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("target.piechart"))));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("ncbi.ontology"))));
    QCOMPARE(QDir(top.filePath(QStringLiteral("tmp"))).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
             QStringList());
}

void TestBuildNcbiPiechartAsyncTask::cancelDuringDownload()
{
    auto task = makeTask(QStringLiteral("/stall.zip"), std::make_unique<Zem::Ontology::SourceFrequencies>(writeInput("562\n")));
    ProgressLog log;
    log.attach(*task);
    QSignalSpy finished(task.get(), &QThread::finished);
    const int before = server.getRequestCount(QStringLiteral("/stall.zip"));
    task->start();
    QTRY_COMPARE(server.getRequestCount(QStringLiteral("/stall.zip")), before + 1);
    task->slotSetCancelled();
    QVERIFY(waitFor(finished));
    QCOMPARE(task->getState(), int(nu::AsyncTask::Cancelled));
    QCOMPARE(task->getErrorMessage(), QString());
    QCOMPARE(task->getProgress(0).message, QStringLiteral("Cancelled"));
    QVERIFY(!log.messages(0).contains(QStringLiteral("Building ontology...")));
    task.reset();
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("target.piechart"))));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("ncbi.ontology"))));
}

void TestBuildNcbiPiechartAsyncTask::cancelIsObservedInEveryStep_data()
{
    QTest::addColumn<QString>("trigger");
    QTest::addColumn<int>("occurrence");
    QTest::newRow("reading nodes.dmp") << "nodes.dmp" << 1;
    QTest::newRow("reading names.dmp") << "names.dmp" << 1;
    QTest::newRow("inserting the taxonomy") << "Inserting nodes..." << 1;
    QTest::newRow("reading the taxonomy") << "ncbi.ontology" << 1;
    QTest::newRow("reading the input") << "endless" << 1;
    QTest::newRow("counting") << "Counting nodes..." << 1;
    QTest::newRow("inserting the chart") << "Inserting nodes..." << 2;
}

void TestBuildNcbiPiechartAsyncTask::cancelIsObservedInEveryStep()
{
    QFETCH(QString, trigger);
    QFETCH(int, occurrence);
    std::atomic<bool> ranOut{false};
    std::atomic<bool> inputRead{false};
    std::unique_ptr<Zem::Ontology::Source> input;
    if (trigger == QLatin1String("endless"))
        input = std::make_unique<EndlessSource>(&ranOut);
    else
        input = std::make_unique<ProbeSource>(writeInput(largeIds), &inputRead);
    auto task = makeTask(QStringLiteral("/large.zip"), std::move(input));
    // Cancels on the task's own thread the moment the step announces itself, so the step itself
    // has to notice.
    int seen = 0;
    BuildNcbiPiechartAsyncTask* raw = task.get();
    connect(raw, &nu::AsyncTask::progressChanged, raw,
            [&, raw](int level, int, int, const QString& message) {
                if (level == 1 && message.endsWith(trigger) && ++seen == occurrence)
                    raw->slotSetCancelled();
            }, Qt::DirectConnection);
    QVERIFY(runToEnd(*task));
    QCOMPARE(seen, occurrence);
    QCOMPARE(task->getState(), int(nu::AsyncTask::Cancelled));
    QCOMPARE(task->getErrorMessage(), QString());
    QVERIFY2(!ranOut, "reading the input went on after the cancellation");
    // The taxonomy (20 000 nodes) is read in one load with the input after it: a reader that
    // ignored the cancellation would go on to the input.
    if (trigger == QLatin1String("ncbi.ontology"))
        QVERIFY(!inputRead);
    task.reset();
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("target.piechart"))));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("ncbi.ontology"))));
    QCOMPARE(QDir(dir->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
             QStringList{QStringLiteral("input.txt")}.mid(trigger == QLatin1String("endless") ? 1 : 0));
}

void TestBuildNcbiPiechartAsyncTask::destroyingARunningTaskCancelsIt()
{
    writeSmallCache();
    std::atomic<bool> ranOut{false};
    auto task = makeTask(QStringLiteral("/nonodes.zip"), std::make_unique<EndlessSource>(&ranOut));
    QSignalSpy started(task.get(), &QThread::started);
    task->start();
    QTRY_COMPARE_WITH_TIMEOUT(started.count(), 1, 10000);
    task.reset();
    QVERIFY(!ranOut);
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("target.piechart"))));
    // The cache was not made by this task and stays.
    QVERIFY(QFileInfo::exists(path(QStringLiteral("ncbi.ontology"))));
}

void TestBuildNcbiPiechartAsyncTask::downloadAddress_data()
{
    QTest::addColumn<QByteArray>("environment");
    QTest::addColumn<QString>("url");
    QTest::newRow("NCBI by default") << QByteArray() << "https://ftp.ncbi.nlm.nih.gov/pub/taxonomy/taxdmp.zip";
    QTest::newRow("mirror") << QByteArray("https://mirror.example.org/taxdmp.zip") << "https://mirror.example.org/taxdmp.zip";
}

void TestBuildNcbiPiechartAsyncTask::downloadAddress()
{
    QFETCH(QByteArray, environment);
    QFETCH(QString, url);
    if (environment.isEmpty())
        qunsetenv("SORVIK_TAXDUMP_URL");
    else
        qputenv("SORVIK_TAXDUMP_URL", environment);
    QCOMPARE(BuildNcbiPiechartAsyncTask::getDefaultDownloadUrl(), QUrl(url));
    QCOMPARE(BuildNcbiPiechartAsyncTask().getDownloadUrl(), QUrl(url));
    qunsetenv("SORVIK_TAXDUMP_URL");
}

QTEST_GUILESS_MAIN(TestBuildNcbiPiechartAsyncTask)
#include "tst_buildncbipiechartasynctask.moc"
