#include "ontology/buildersource.h"
#include "ontology/inputformat.h"
#include "ontology/ontology.h"
#include "ontology/sourcefrequencies.h"
#include "ontology/sourcekrakenreads.h"
#include "ontology/taxonomycache.h"
#include "ontology/taxonomychanges.h"
#include "tests/support/fixtures.h"
#include "tests/support/foldercase.h"
#include "tests/support/foldercase.h"
#include "tests/support/httpserver.h"
#include "tests/support/taxdump.h"
#include "tests/support/treeliteral.h"
#include "tests/support/treetext.h"
#include "viewer/buildncbipiechartasynctask.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QSignalSpy>
#include <QtTest>

#include <atomic>

using Sorvik::Viewer::BuildNcbiPiechartAsyncTask;
using Zem::Ontology::SourceFrequencies;
using namespace Sorvik::Test;

namespace {

const QString chartOfSmallTaxonomy = QStringLiteral(
    "root:0(\"cellular organisms\":0(Bacteria:0(Escherichia:0(\"Escherichia coli\":2)) \"Homo sapiens\":1) "
    "\"Unknown taxon ids\":1)");

// The same reads in each format placed into the NCBI taxonomy: Escherichia coli twice, id 12
// (merged into it) three times, id 99 (deleted) once, 4242 (never known) once, taxid 0 twice
// and Homo sapiens once; ten reads in all.
QByteArray readsIn(const QString& format)
{
    const QList<QPair<QByteArray, int>> reads{{"562", 2}, {"12", 3}, {"99", 1}, {"4242", 1}, {"0", 2}, {"9606", 1}};
    QByteArray text;
    int line = 0;
    for (const auto& read : reads) {
        const QByteArray n = QByteArray::number(read.second);
        if (format == QLatin1String("taxid-counts"))
            text += read.first + '\t' + n + '\n';
        else if (format == QLatin1String("bracken"))
            text += "Taxon " + read.first + '\t' + read.first + "\tS\t" + n + "\t0\t" + n + "\t0.1\n";
        else if (format == QLatin1String("kaiju"))
            text += "sample.fq\t10.0\t" + n + '\t' + (read.first == "0" ? QByteArray("NA\tunclassified") : read.first + "\tTaxon") + '\n';
        else if (format == QLatin1String("centrifuge"))
            text += "Taxon " + read.first + '\t' + read.first + "\tspecies\t5000\t" + n + '\t' + n + "\t0.1\n";
        // The first sample's reads are counted; the second sample's column differs.
        else if (format == QLatin1String("bracken-combined"))
            text += "Taxon " + read.first + '\t' + read.first + "\tS\t" + n + "\t0.1\t7\t0.1\n";
        for (int i = 0; i < read.second; ++i) {
            const QByteArray id = read.first;
            const QByteArray name = "read" + QByteArray::number(++line);
            if (format == QLatin1String("taxids"))
                text += id + '\n';
            else if (format == QLatin1String("mgtaxa"))
                text += name + "\tx\t" + id + "\t0.9\n";
            else if (format == QLatin1String("kraken-reads"))
                text += QByteArray(id == "0" ? "U\t" : "C\t") + name + '\t' + id + "\t150\t" + id + ":116\n";
        }
    }
    const QHash<QString, QByteArray> headers{
        {QStringLiteral("mgtaxa"), "id\tlabel\ttaxid\tscore\n"},
        {QStringLiteral("bracken"), "name\ttaxonomy_id\ttaxonomy_lvl\tkraken_assigned_reads\tadded_reads\tnew_est_reads\t"
                                    "fraction_total_reads\n"},
        {QStringLiteral("kaiju"), "file\tpercent\treads\ttaxon_id\ttaxon_name\n"},
        {QStringLiteral("bracken-combined"), "name\ttaxonomy_id\ttaxonomy_lvl\tA_num\tA_frac\tB_num\tB_frac\n"},
        {QStringLiteral("centrifuge"), "name\ttaxID\ttaxRank\tgenomeSize\tnumReads\tnumUniqueReads\tabundance\n"}};
    return text.isEmpty() ? QByteArray() : headers.value(format) + text;
}

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

class TestBuildNcbiPiechartAsyncTask : public FolderCase
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(server.isListening());
        catchTemporaryFiles();
        QVERIFY(!serveSmallTaxdump(server, top.path()).isEmpty());
        const auto serveZip = [this](const QString& urlPath, const QList<ZipEntry>& entries) {
            const QString zip = top.filePath(QStringLiteral("served.zip"));
            QVERIFY(writeZip(zip, entries));
            server.serve(urlPath, fileContents(zip));
        };
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

    void init() { start(); }

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
        QCOMPARE(task->getReport().getSummary(),
                 QStringList{QStringLiteral("1 reads had 1 unknown taxon ids (first: 12345)")});
        const Zem::Ontology::Ontology taxonomy(path(QStringLiteral("ncbi.ontology")));
        QVERIFY(!taxonomy.isCounted());
        QCOMPARE(taxonomy.getNodeNumber(), 6);
        // The cache knows where it came from and what NCBI retired.
        QCOMPARE(Zem::Ncbi::TaxonomyCache(path(QStringLiteral("ncbi.ontology"))).getOrigin(),
                 server.url(QStringLiteral("/pub/taxonomy/taxdmp.zip")).toString());
        QCOMPARE(Zem::Ncbi::TaxonomyChanges::read(path(QStringLiteral("ncbi.ontology")), true).getNewId("12"),
                 QStringLiteral("562"));

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

    // Unclassified reads count in a slice of the root's, reads of ids the taxonomy lacks in
    // another; both are reported, and the lines passed over too.
    void unclassifiedReadsBesideTheTaxonomy()
    {
        writeTree(path(QStringLiteral("ncbi.ontology")), QStringLiteral("1(2(562) 9606)"), false);
        const QString input = write(QStringLiteral("reads.txt"), "C\tr1\t562\t9\nU\tr2\t0\t9\nC\tr3\t77\t9\n"
                                                                  "C\tr4\t562\t9\nU\tr5\t0\t9\nC\tr6\t0\t9\nbad\n");
        auto task = makeTask(QStringLiteral("/nonodes.zip"), std::make_unique<Zem::Ontology::SourceKrakenReads>(input));
        QVERIFY(runToEnd(*task));
        QCOMPARE(task->getErrorMessage(), QString());
        QCOMPARE(describeOntology(path(QStringLiteral("target.piechart"))), QStringLiteral("1:0(2:0(562:2) unclassified:3 \"Unknown taxon ids\":1)"));
        const Zem::Ontology::BuildReport report = task->getReport();
        QCOMPARE(report.getSummary(),
                 (QStringList{"skipped 1 of 7 lines (first: line 7: it does not start with C or U and a TAB)",
                              "1 reads had 1 unknown taxon ids (first: 77)"}));
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
        // A damaged cache and an earlier chart are in the way: a failure deletes neither.
        write(QStringLiteral("ncbi.ontology"), "old");
        write(QStringLiteral("target.piechart"), "old chart");
        auto task = makeTask(urlPath, std::make_unique<SourceFrequencies>(write(QStringLiteral("input.txt"), "562\n")));
        ProgressLog log(*task);
        QVERIFY(runToEnd(*task));
        QCOMPARE(task->getState(), int(nu::AsyncTask::Failed));
        QVERIFY2(task->getErrorMessage() == message, qPrintable(task->getErrorDetail()));
        QVERIFY2(task->getErrorDetail().contains(detail, Qt::CaseInsensitive), qPrintable(task->getErrorDetail()));
        QCOMPARE(log.messages[0].last(), message);
        task.reset();
        QCOMPARE(entries(dir->path()), (QStringList{"input.txt", "ncbi.ontology", "target.piechart"}));
        QCOMPARE(fileContents(path(QStringLiteral("ncbi.ontology"))), QByteArray("old"));
        QCOMPARE(fileContents(path(QStringLiteral("target.piechart"))), QByteArray("old chart"));
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
        // Whether the taxonomy was complete by then: a cancel never throws it away.
        QTest::addColumn<bool>("cacheKept");
        QTest::newRow("reading nodes.dmp") << "nodes.dmp" << 1 << false;
        QTest::newRow("inserting the taxonomy") << "Inserting nodes..." << 1 << false;
        QTest::newRow("reading the taxonomy") << "ncbi.ontology" << 1 << true;
        QTest::newRow("reading the input") << "endless" << 1 << true;
        QTest::newRow("counting") << "Counting nodes..." << 1 << true;
        QTest::newRow("inserting the chart") << "Inserting nodes..." << 2 << true;
    }

    void cancelIsObservedInEveryStep()
    {
        QFETCH(QString, trigger);
        QFETCH(int, occurrence);
        QFETCH(bool, cacheKept);
        // The chart of an earlier run, which the cancelled one must not touch.
        write(QStringLiteral("target.piechart"), "earlier chart");
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
        QStringList left{QStringLiteral("target.piechart")};
        if (trigger != QLatin1String("endless"))
            left.prepend(QStringLiteral("input.txt"));
        if (cacheKept)
            left.insert(left.size() - 1, QStringLiteral("ncbi.ontology"));
        QCOMPARE(entries(dir->path()), left);
        QCOMPARE(fileContents(path(QStringLiteral("target.piechart"))), QByteArray("earlier chart"));
        QVERIFY(!cacheKept || Zem::Ncbi::TaxonomyCache(path(QStringLiteral("ncbi.ontology"))).isUsable());
    }

    void everyReadIsCounted_data()
    {
        QTest::addColumn<QString>("format");
        for (const Zem::Ontology::InputFormat& format : Zem::Ontology::InputFormat::all()) {
            if (format.needsTaxonomy)
                QTest::newRow(qPrintable(format.word)) << format.word;
        }
    }

    void everyReadIsCounted()
    {
        QFETCH(QString, format);
        const QByteArray reads = readsIn(format);
        QVERIFY2(!reads.isEmpty(), qPrintable("no reads written for " + format + " yet: add them to readsIn()"));
        const QString input = write(QStringLiteral("input.txt"), reads);
        auto source = Zem::Ontology::InputFormat::find(format)->makeSource(input, {});
        auto task = makeTask(QStringLiteral("/pub/taxonomy/taxdmp.zip"), std::move(source));
        QVERIFY(runToEnd(*task));
        QCOMPARE(task->getErrorMessage(), QString());
        QCOMPARE(describeOntology(path(QStringLiteral("target.piechart"))),
                 QStringLiteral("root:0(\"cellular organisms\":0(Bacteria:0(Escherichia:0(\"Escherichia coli\":5)) "
                                "\"Homo sapiens\":1) unclassified:2 \"Unknown taxon ids\":2)"));
        const Zem::Ontology::BuildReport report = task->getReport();
        QCOMPARE(report.getPlacementSummary(),
                 (QStringList{"3 reads had 1 taxon ids that NCBI merged into others (counted under the new ids)",
                              "2 reads had 2 unknown taxon ids (first: 99, 4242)"}));
        QVERIFY(report.unknownIds.at(0).deleted);
        QVERIFY(!report.unknownIds.at(1).deleted);
    }

    void taxonomyUpdate_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("cancelAt");
        QTest::addColumn<QString>("message");
        QTest::newRow("downloaded") << "/pub/taxonomy/taxdmp.zip" << "" << "";
        QTest::newRow("from an archive the user has") << "small.zip" << "" << "";
        QTest::newRow("dead server") << "refused" << "" << "NCBI data couldn't be downloaded";
        QTest::newRow("truncated archive") << "/cut.zip" << "" << "Pie chart couldn't be generated";
        QTest::newRow("not found") << "/missing.zip" << "" << "NCBI data couldn't be downloaded";
        QTest::newRow("cancelled while downloading") << "/stall.zip" << "Downloading database..." << "";
        QTest::newRow("cancelled while importing") << "/large.zip" << "Inserting nodes..." << "";
    }

    void taxonomyUpdate()
    {
        QFETCH(QString, from);
        QFETCH(QString, cancelAt);
        QFETCH(QString, message);
        const QString cache = path(QStringLiteral("ncbi.ontology"));
        writeTree(cache, QStringLiteral("1=root(562=\"Old coli\")"), false);
        const QByteArray old = fileContents(cache);
        auto task = makeTask(from, nullptr);
        task->setTaxonomyOnly(true);
        if (from == QLatin1String("refused"))
            task->setDownloadUrl(HttpServer::refusingUrl(QStringLiteral("/taxdmp.zip")));
        if (!from.startsWith(QLatin1Char('/')) && from != QLatin1String("refused"))
            task->setTaxonomyArchive(top.filePath(from));
        ProgressLog log(*task);
        BuildNcbiPiechartAsyncTask* raw = task.get();
        // The old cache stays as it is, in use, until the new one is complete.
        bool oldKept = true;
        connect(raw, &nu::AsyncTask::progressChanged, raw, [&, raw](int level, int, int, const QString& text) {
            if (level == 1 && fileContents(cache) != old)
                oldKept = false;
            if (level == 1 && !cancelAt.isEmpty() && text == cancelAt)
                raw->slotSetCancelled();
        }, Qt::DirectConnection);
        QVERIFY(runToEnd(*task));
        QVERIFY(oldKept);
        task.reset();
        QCOMPARE(entries(dir->path()), QStringList{QStringLiteral("ncbi.ontology")});
        QCOMPARE(entries(top.filePath(QStringLiteral("tmp"))), QStringList());
        if (!message.isEmpty() || !cancelAt.isEmpty()) {
            QCOMPARE(log.messages[0].last(), message.isEmpty() ? QStringLiteral("Cancelled") : message);
            QCOMPARE(fileContents(cache), old);
            return;
        }
        QCOMPARE(log.messages[0].last(), QStringLiteral("Taxonomy updated"));
        QCOMPARE(log.steps.first, from.startsWith(QLatin1Char('/')) ? 4 : 3);
        QCOMPARE(describeOntology(cache),
                 QStringLiteral("root(\"cellular organisms\"(Bacteria(Escherichia(\"Escherichia coli\")) \"Homo sapiens\"))"));
        const Zem::Ncbi::TaxonomyCache made(cache);
        QCOMPARE(made.getOrigin(), from.startsWith(QLatin1Char('/')) ? server.url(from).toString() : top.filePath(from));
        QCOMPARE(made.getAgeDays(), 0);
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

    HttpServer server;
    QByteArray largeIds;
};

QTEST_GUILESS_MAIN(TestBuildNcbiPiechartAsyncTask)
#include "tst_buildncbipiechartasynctask.moc"
