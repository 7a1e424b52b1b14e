#include "ontology/ontology.h"
#include "ontology/taxonomycache.h"
#include "tests/support/clirunner.h"
#include "tests/support/fixtures.h"
#include "tests/support/httpserver.h"
#include "tests/support/sqlfile.h"
#include "tests/support/taxdump.h"
#include "tests/support/treeliteral.h"
#include "tests/support/treetext.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <unistd.h>

using namespace Sorvik::Test;

// sorvik-cli and the NCBI taxonomy: where its cache lives, how it is updated, what a build says
// of the reads the taxonomy could not place, and that Ctrl-C and failures leave earlier files be.
class TestCliTaxonomy : public CliCase
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        serve();
    }

    void init() { start(); }

    void buildSaysWhereReadsWent_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QStringList>("said");
        QTest::addColumn<QString>("info");
        QTest::newRow("merged, deleted, unknown and zero ids")
            << QByteArray("562\n12\n12\n99\n4242\n0\n9606\n")
            << QStringList{"2 reads had 1 taxon ids that NCBI merged into others (counted under the new ids)",
                           "2 reads had 2 unknown taxon ids (first: 99, 4242)"}
            << "total: 7\nunknown: 2\nunclassified: 1\n";
        QTest::newRow("nothing the taxonomy lacks") << QByteArray("562\n9606\n") << QStringList()
                                                    << "total: 2\nunknown: 0\nunclassified: 0\n";
        QTest::newRow("no id the taxonomy knows") << QByteArray("424242\n")
                                                  << QStringList{"1 reads had 1 unknown taxon ids (first: 424242)"}
                                                  << "total: 1\nunknown: 1\nunclassified: 0\n";
    }

    void buildSaysWhereReadsWent()
    {
        QFETCH(QByteArray, input);
        QFETCH(QStringList, said);
        QFETCH(QString, info);
        const QString output = path(QStringLiteral("out.piechart"));
        const QString file = write(QStringLiteral("in.txt"), input);
        const CliResult result = runCli({"build", "taxids", file, "-o", output, "--taxonomy",
                                         path(QStringLiteral("ncbi.ontology"))},
                                        environment(QStringLiteral("/pub/taxonomy/taxdmp.zip")));
        QCOMPARE(result.exitCode, 0);
        QStringList lines;
        for (const QString& line : said)
            lines << QStringLiteral("sorvik-cli build: %1: %2\n").arg(file, line);
        QCOMPARE(result.err, lines.join(QString()));
        const CliResult shown = runCli({"info", output});
        QVERIFY2(shown.out.endsWith(info), qPrintable(shown.out));
    }

    void oldTaxonomyHint_data()
    {
        QTest::addColumn<int>("days");
        QTest::addColumn<bool>("hint");
        QTest::newRow("a month old") << 30 << false;
        QTest::newRow("a year old") << 365 << true;
    }

    void oldTaxonomyHint()
    {
        QFETCH(int, days);
        QFETCH(bool, hint);
        const QString taxonomy = path(QStringLiteral("ncbi.ontology"));
        writeTree(taxonomy, QStringLiteral("1=root(562=\"Escherichia coli\")"), false);
        setCacheAge(taxonomy, days);
        const CliResult result = runCli({"build", "taxids", write(QStringLiteral("in.txt"), "562\n"), "-o",
                                         path(QStringLiteral("out.piechart")), "--taxonomy", taxonomy});
        QCOMPARE(result.exitCode, 0);
        const QString expected = QStringLiteral("sorvik-cli build: note: the NCBI taxonomy in %1 is %2 days old; "
                                                "'sorvik-cli update-taxonomy' fetches the current one\n")
                                     .arg(taxonomy)
                                     .arg(days);
        QCOMPARE(result.err, hint ? expected : QString());
    }

    void updateTaxonomy_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("existing");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        QTest::newRow("downloaded over an old cache") << "/pub/taxonomy/taxdmp.zip" << "cache" << 0 << "";
        QTest::newRow("from an archive, no cache yet") << "archive" << "" << 0 << "";
        QTest::newRow("over a damaged cache") << "archive" << "damaged" << 0 << "";
        QTest::newRow("dead server") << "refused" << "cache" << 1 << "NCBI data couldn't be downloaded: ";
        QTest::newRow("download cut short") << "/cut.zip" << "cache" << 1 << "not a ZIP file";
        QTest::newRow("truncated archive") << "cut archive" << "cache" << 1 << "not a ZIP file";
        QTest::newRow("a chart is no taxonomy") << "archive" << "chart" << 1 << "is a counted chart, not a taxonomy";
        QTest::newRow("nor is any other file") << "archive" << "text" << 1 << "is not a taxonomy cache; it is left as it is";
        QTest::newRow("archive missing") << "missing" << "cache" << 1 << "cannot read";
    }

    void updateTaxonomy()
    {
        QFETCH(QString, from);
        QFETCH(QString, existing);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        const QString taxonomy = path(QStringLiteral("ncbi.ontology"));
        if (existing == QLatin1String("cache"))
            writeTree(taxonomy, QStringLiteral("1=root(562=\"Old coli\")"), false);
        else if (existing == QLatin1String("chart"))
            writeTree(taxonomy, QStringLiteral("1=root(562=\"Old coli\":3)"), true);
        else if (existing == QLatin1String("damaged"))
            write(QStringLiteral("ncbi.ontology"), QByteArray("SQLite format 3\0", 16) + QByteArray(100, '\1'));
        else if (existing == QLatin1String("text"))
            write(QStringLiteral("ncbi.ontology"), "my notes");
        const QByteArray before = fileContents(taxonomy);
        QStringList arguments{"update-taxonomy", "--taxonomy", taxonomy};
        if (from == QLatin1String("archive"))
            arguments << write(QStringLiteral("taxdmp.zip"), archive);
        else if (from == QLatin1String("cut archive"))
            arguments << write(QStringLiteral("taxdmp.zip"), archive.left(archive.size() / 2));
        else if (from == QLatin1String("missing"))
            arguments << path(QStringLiteral("nowhere.zip"));
        QProcessEnvironment env = environment(from);
        if (from == QLatin1String("refused"))
            env.insert(QStringLiteral("SORVIK_TAXDUMP_URL"), HttpServer::refusingUrl(QStringLiteral("/taxdmp.zip")).toString());
        const CliResult result = runCli(arguments, env);
        QCOMPARE(result.exitCode, exitCode);
        if (exitCode != 0) {
            QVERIFY2(result.err.startsWith(QLatin1String("sorvik-cli update-taxonomy: ")) && result.err.contains(message),
                     qPrintable(result.err));
            QCOMPARE(fileContents(taxonomy), before);
            QCOMPARE(left(), QStringList{existing.isEmpty() ? QString() : QStringLiteral("ncbi.ontology")});
            return;
        }
        QVERIFY2(result.err.isEmpty(), qPrintable(result.err));
        const QString origin = from.startsWith(QLatin1Char('/')) ? server.url(from).toString() : path(QStringLiteral("taxdmp.zip"));
        QVERIFY2(result.out.startsWith(taxonomy + QStringLiteral(": ")), qPrintable(result.out));
        QVERIFY2(result.out.endsWith(QStringLiteral(", from %1, 1 merged and 1 deleted taxon ids\n").arg(origin)),
                 qPrintable(result.out));
        QCOMPARE(describeOntology(taxonomy),
                 QStringLiteral("root(\"cellular organisms\"(Bacteria(Escherichia(\"Escherichia coli\")) \"Homo sapiens\"))"));
        QCOMPARE(Zem::Ncbi::TaxonomyCache(taxonomy).getOrigin(), origin);
    }

    void interruptKeepsEarlierFiles_data()
    {
        QTest::addColumn<QString>("step");
        QTest::newRow("build, while downloading") << "download";
        QTest::newRow("build, while reading the input") << "input";
        QTest::newRow("update, while downloading") << "update";
    }

    void interruptKeepsEarlierFiles()
    {
        QFETCH(QString, step);
        const QString output = path(QStringLiteral("existing.piechart"));
        writeTree(output, QStringLiteral("1=root(562=\"Earlier chart\":4)"));
        const QString taxonomy = path(QStringLiteral("ncbi.ontology"));
        if (step != QLatin1String("download"))
            writeTree(taxonomy, QStringLiteral("1=root(562=\"Escherichia coli\")"), false);
        const QByteArray chart = fileContents(output);
        const QByteArray cache = fileContents(taxonomy);

        QProcess process;
        process.setProcessEnvironment(environment(QStringLiteral("/stall.zip")));
        bool done = false;
        connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this, [&done] { done = true; });
        const int before = server.getRequestCount(QStringLiteral("/stall.zip"));
        if (step == QLatin1String("update"))
            process.start(QStringLiteral(SORVIK_CLI), {"update-taxonomy", "--taxonomy", taxonomy});
        else
            process.start(QStringLiteral(SORVIK_CLI), {"build", "taxids", step == QLatin1String("input") ? "/dev/stdin" : write(QStringLiteral("in.txt"), "562\n"),
                                                       "-o", output, "--taxonomy", taxonomy});
        QVERIFY(process.waitForStarted());
        const QByteArray lines = QByteArray("562\n").repeated(20000);
        if (step == QLatin1String("input")) {
            // The input goes on for as long as it takes: Ctrl-C comes while it is being read.
            process.write(lines);
            QTest::qWait(300);
        } else {
            QTRY_COMPARE_WITH_TIMEOUT(server.getRequestCount(QStringLiteral("/stall.zip")), before + 1, 60000);
        }
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        QElapsedTimer clock;
        clock.start();
        while (!done && clock.elapsed() < 60000) {
            if (step == QLatin1String("input") && process.bytesToWrite() < lines.size())
                process.write(lines);
            QTest::qWait(10);
        }
        QVERIFY(done);
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 130);
        QVERIFY(QString::fromUtf8(process.readAllStandardError()).contains(QLatin1String("interrupted")));
        QCOMPARE(fileContents(output), chart);
        QCOMPARE(fileContents(taxonomy), cache);
        QStringList expected{QStringLiteral("existing.piechart")};
        if (step != QLatin1String("input") && step != QLatin1String("update"))
            expected << QStringLiteral("in.txt");
        if (step != QLatin1String("download"))
            expected << QStringLiteral("ncbi.ontology");
        expected.sort();
        QCOMPARE(left(), expected);
    }

    void failureKeepsEarlierChart_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QString>("message");
        QTest::newRow("taxon ids, no reads") << "taxid-counts" << QByteArray("562\t0\n") << "no counted taxa in";
        QTest::newRow("krona, no reads") << "krona" << QByteArray("0\tBacteria\n") << "no counted taxa in";
        QTest::newRow("download refused") << "taxids" << QByteArray("562\n") << "NCBI data couldn't be downloaded";
    }

    void failureKeepsEarlierChart()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, input);
        QFETCH(QString, message);
        const QString output = path(QStringLiteral("existing.piechart"));
        writeTree(output, QStringLiteral("1=root(562=\"Earlier chart\":4)"));
        const QByteArray chart = fileContents(output);
        QStringList arguments{"build", format, write(QStringLiteral("in.txt"), input), "-o", output};
        if (format != QLatin1String("krona")) {
            arguments << "--taxonomy" << path(QStringLiteral("ncbi.ontology"));
            if (!message.startsWith(QLatin1String("NCBI")))
                writeTree(path(QStringLiteral("ncbi.ontology")), QStringLiteral("1=root(562=\"Escherichia coli\")"), false);
        }
        QProcessEnvironment env = environment(QString());
        env.insert(QStringLiteral("SORVIK_TAXDUMP_URL"), HttpServer::refusingUrl(QStringLiteral("/taxdmp.zip")).toString());
        const CliResult result = runCli(arguments, env);
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.contains(message), qPrintable(result.err));
        QCOMPARE(fileContents(output), chart);
    }

    void dataFolderDefault_data()
    {
        QTest::addColumn<bool>("pathSet");
        QTest::newRow("no data folder chosen: the application data folder") << false;
        QTest::newRow("the data folder chosen in the viewer") << true;
    }

    void dataFolderDefault()
    {
        QFETCH(bool, pathSet);
        QProcessEnvironment env = environment(QStringLiteral("/pub/taxonomy/taxdmp.zip"));
        env.insert(QStringLiteral("HOME"), path(QStringLiteral("home")));
        env.insert(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), path(QStringLiteral("config")));
        QString cache = path(QStringLiteral("data/sorvik/ncbi.ontology"));
        if (pathSet) {
            QVERIFY(QDir().mkpath(path(QStringLiteral("config/zem"))));
            write(QStringLiteral("config/zem/sorvik-piechart.conf"), "[General]\npath=" + path(QStringLiteral("chosen")).toUtf8() + '\n');
            cache = path(QStringLiteral("chosen/ncbi.ontology"));
        }
        const CliResult help = runCli({"update-taxonomy", "--help"}, env);
        // The help wraps long paths anywhere.
        QVERIFY2(QString(help.out).remove(QRegularExpression(QStringLiteral("\\s"))).contains(QStringLiteral("(default:%1)").arg(cache)),
                 qPrintable(help.out));

        // Two runs in two folders download the taxonomy once, into the data folder.
        const int before = server.getRequestCount(QStringLiteral("/pub/taxonomy/taxdmp.zip"));
        const QString input = write(QStringLiteral("in.txt"), "562\n9606\n");
        for (const QString& folder : {QStringLiteral("first"), QStringLiteral("second")}) {
            QVERIFY(QDir().mkpath(path(folder)));
            const CliResult result = runCli({"build", "taxids", input, "-o", path(folder + QStringLiteral("/out.piechart"))},
                                            env, 120000, path(folder));
            QVERIFY2(result.exitCode == 0, qPrintable(result.err));
            QCOMPARE(QDir(path(folder)).entryList(QDir::Files), QStringList{QStringLiteral("out.piechart")});
        }
        QCOMPARE(server.getRequestCount(QStringLiteral("/pub/taxonomy/taxdmp.zip")), before + 1);
        QVERIFY(Zem::Ncbi::TaxonomyCache(cache).isUsable());
    }

private:
    // The files in the case's folder, hidden ones too.
    QStringList left() const
    {
        QStringList files = QDir(dir->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden, QDir::Name);
        files.removeAll(QStringLiteral("taxdmp.zip"));
        return files.isEmpty() ? QStringList{QString()} : files;
    }
};

QTEST_GUILESS_MAIN(TestCliTaxonomy)
#include "tst_clitaxonomy.moc"
