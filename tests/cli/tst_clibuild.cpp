#include "tests/support/clirunner.h"
#include "ontology/ontology.h"
#include "tests/support/fixtures.h"
#include "tests/support/httpserver.h"
#include "tests/support/taxdump.h"
#include "tests/support/treeliteral.h"
#include "tests/support/treetext.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

using namespace Sorvik::Test;

namespace {

const QString smallChart = QStringLiteral(
    "root:0(\"cellular organisms\":0(Bacteria:0(Escherichia:0(\"Escherichia coli\":2)) \"Homo sapiens\":1))");

QByteArray formatFile(const char* name)
{
    return fileContents(fixturePath(QStringLiteral("formats/") + QLatin1String(name)));
}

// The small taxonomy counted: reads of E. coli and the chart's other taxon, then more of the
// root's children.
QString ncbiChart(int coli, const QString& other, const QString& more = QString())
{
    return QStringLiteral("root:0(\"cellular organisms\":0(Bacteria:0(Escherichia:0(\"Escherichia coli\":%1)) %2)%3)")
        .arg(coli)
        .arg(other, more);
}

} // namespace

class TestCliBuild : public CliCase
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        serve();
        server.serve(QStringLiteral("/html"), "<html>mirror moved</html>");
    }

    void init() { start(); }

    void buildsEveryFormat_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("chart");
        QTest::addColumn<QString>("message");

        QTest::newRow("qiime second column") << "qiime" << QByteArray("Taxon\tS1\tS2\nk__B;p__F\t0.25\t0.5\n")
                                             << QStringList{"--column", "1"} << "root:0(\"k  B\":0(\"p  F\":5000))" << "";
        QTest::newRow("taxids downloaded") << "taxids" << QByteArray("562 562 9606") << QStringList() << smallChart << "";
        QTest::newRow("taxids gzip-compressed") << "taxids" << gzipped("562\r\n562\r\n9606") << QStringList() << smallChart << "";
        QTest::newRow("qiime gzip-compressed") << "qiime" << gzipped("Taxon\tS1\tS2\nk__B;p__F\t0.25\t0.5\n")
                                               << QStringList{"--column", "1"} << "root:0(\"k  B\":0(\"p  F\":5000))" << "";
        const QString people = QStringLiteral("\"Homo sapiens\":%1");
        // Unclassified reads have a slice of the root's; kaiju's reads of no species count for
        // the root itself.
        QTest::newRow("kaiju") << "kaiju" << formatFile("kaiju.tsv") << QStringList()
                               << ncbiChart(50, people.arg(20), " unclassified:20").replace("root:0", "root:10") << "";
        QTest::newRow("kraken reads without unclassified")
            << "kraken-reads" << formatFile("kraken2-names.reads") << QStringList{"--no-unclassified"}
            << ncbiChart(2, people.arg(1)) << "";
        QTest::newRow("told from the file") << "auto" << formatFile("kraken2.reads") << QStringList{"--column", "3"}
                                            << QString(ncbiChart(2, people.arg(1), " unclassified:2")).replace("Escherichia:0", "Escherichia:1")
                                            << "input.txt as Kraken per-read output, one line per read (kraken-reads)\n";
    }

    void buildsEveryFormat()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, input);
        QFETCH(QStringList, options);
        QFETCH(QString, chart);
        QFETCH(QString, message);
        const QString output = path(QStringLiteral("out.piechart"));
        QStringList arguments{"build", format, write(QStringLiteral("input.txt"), input), "-o", output};
        const bool taxonomy = chart.contains(QLatin1String("cellular organisms\":0"));
        if (taxonomy)
            arguments << "--taxonomy" << path(QStringLiteral("ncbi.ontology"));
        const CliResult result = runCli(arguments + options, environment(QStringLiteral("/pub/taxonomy/taxdmp.zip")));
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY2(message.isEmpty() ? result.err.isEmpty() : result.err.endsWith(message), qPrintable(result.err));
        QCOMPARE(describeOntology(output), chart);
        if (taxonomy)
            QVERIFY(!Zem::Ontology::Ontology(path(QStringLiteral("ncbi.ontology"))).isCounted());
    }

    // What the input's reading passed over is said on stderr, one line each; --strict makes it
    // a failure, and the chart stays for a look.
    void reportsWhatItPassesOver_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<bool>("strict");
        QTest::addColumn<QStringList>("said");
        // One odd line in twelve: still Krona text, as the check on the input tells.
        const QByteArray krona = QByteArray("3\tA\nx\tB\n") + QByteArray("4\tC\n").repeated(10);
        const QString skipped = QStringLiteral("skipped 1 of 12 lines (first: line 2: 'x' is not a count)");
        QTest::newRow("strict") << "krona" << krona << true
                                << QStringList{skipped, "sorvik-cli build: %1 was not read in full (--strict)"};
        // Reads of ids the taxonomy lacks are counted, under Unknown taxon ids: no skip.
        QTest::newRow("reads of ids the taxonomy lacks")
            << "kraken-reads" << QByteArray("C\tr1\t562\t9\nC\tr2\t424242\t9\nC\tr3\t424242\t9\n") << true
            << QStringList{"2 reads had 1 unknown taxon ids (first: 424242)"};
        QTest::newRow("a report cut short is no skip")
            << "kreport" << formatFile("cut-short.kreport") << true
            << QStringList{"1 of 4 rows disagree with the rows below them, as in a cut or filtered report; the chart follows "
                           "their clade reads (first: line 5: 'Viruses' has 40 clade reads, but its own and its children's "
                           "add up to 0)"};
    }

    void reportsWhatItPassesOver()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, input);
        QFETCH(bool, strict);
        QFETCH(QStringList, said);
        const QString output = path(QStringLiteral("out.piechart"));
        const QString file = write(QStringLiteral("input.txt"), input);
        QStringList arguments{"build", format, file, "-o", output};
        if (format == QLatin1String("kraken-reads"))
            arguments << "--taxonomy" << path(QStringLiteral("ncbi.ontology"));
        if (strict)
            arguments << "--strict";
        const CliResult result = runCli(arguments, environment(QStringLiteral("/pub/taxonomy/taxdmp.zip")));
        QStringList expected;
        for (const QString& line : said)
            expected << (line.startsWith(QLatin1String("sorvik-cli")) ? line.arg(file)
                                                                      : QStringLiteral("sorvik-cli build: %1: %2").arg(file, line));
        QCOMPARE(result.err.split(QLatin1Char('\n'), Qt::SkipEmptyParts), expected);
        QCOMPARE(result.exitCode, said.last().contains(QLatin1String("--strict")) ? 1 : 0);
        QVERIFY(describeOntology(output).startsWith(QLatin1String("root")));
    }

    void cannotTellTheFormat()
    {
        const QString input = write(QStringLiteral("input.txt"), QByteArray("\x00\x01\x02\x03", 4));
        const CliResult result = runCli({"build", "auto", input, "-o", path(QStringLiteral("out.piechart"))});
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.startsWith(QStringLiteral("sorvik-cli build: cannot tell the format of %1: not combined "
                                                      "Kraken-style reports (line 1: it is no header of combined reports), "
                                                      "not a Kraken-style report (line 1: it has 1 columns), not a MetaPhlAn "
                                                      "profile")
                                           .arg(input)),
                 qPrintable(result.err));
        QVERIFY(result.err.endsWith(QLatin1String("not Krona text (line 1: '?\?\?\?' is not a count)\n")));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("out.piechart"))));
    }

    void refusals_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QString>("urlPath");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("lines");

        const QString ncbi = QStringLiteral("/pub/taxonomy/taxdmp.zip");
        QTest::newRow("report as taxids")
            << QByteArray("95.70\t100\t100\tU\t0\tunclassified\n4.30\t5\t0\tR\t1\troot\n") << ncbi
            << "does not look like a list of NCBI taxon ids" << 1;
        QTest::newRow("download not found") << QByteArray("562\n") << "/nothing.zip"
                                            << "NCBI data couldn't be downloaded: " << 1;
    }

    void refusals()
    {
        QFETCH(QByteArray, input);
        QFETCH(QString, urlPath);
        QFETCH(QString, message);
        QFETCH(int, lines);
        const QString output = path(QStringLiteral("out.piechart"));
        const CliResult result = runCli({"build", "taxids", write(QStringLiteral("input.txt"), input), "-o", output,
                                         "--taxonomy", path(QStringLiteral("ncbi.ontology"))},
                                        environment(urlPath));
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.startsWith(QLatin1String("sorvik-cli build: ")) && result.err.contains(message),
                 qPrintable(result.err));
        QCOMPARE(result.err.count(QLatin1Char('\n')), lines);
        QVERIFY(!QFileInfo::exists(output));
        // Nothing is left in the temporary folder but the input.
        QStringList left = QDir(dir->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden);
        left.removeAll(QStringLiteral("input.txt"));
        left.removeAll(QStringLiteral("out.piechart"));
        left.removeAll(QStringLiteral("ncbi.ontology"));
        QCOMPARE(left, QStringList());
    }

    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        QTest::newRow("no command") << QStringList() << "Commands:";
        QTest::newRow("unknown command") << QStringList{"frobnicate"} << "sorvik-cli: unknown command 'frobnicate'";
        QTest::newRow("unknown option") << QStringList{"info", "--colour", "a"} << "colour";
        QTest::newRow("render zero levels") << QStringList{"render", "a", "-o", "a.png", "--max-levels", "0"}
                                            << "--max-levels needs a whole number of at least 1";
        QTest::newRow("unknown format") << QStringList{"build", "biom", "IN", "-o", "OUT"} << "unknown format 'biom'";
        QTest::newRow("column for krona") << QStringList{"build", "krona", "IN", "-o", "OUT", "--column", "1"}
                                          << "--column applies to qiime, kreport-combined, bracken-combined and metaphlan-merged only";
        QTest::newRow("no unclassified reads in a qiime table")
            << QStringList{"build", "qiime", "IN", "-o", "OUT", "--no-unclassified"}
            << "--no-unclassified applies to kreport, metaphlan, kraken-reads, kaiju, kreport-combined and metaphlan-merged only";
        QTest::newRow("column past the last") << QStringList{"build", "qiime", "IN", "-o", "OUT", "--column", "2"}
                                              << "column 2 is out of range: IN has 2 value columns (S1, S2)";
        QTest::newRow("output is input") << QStringList{"build", "krona", "IN", "-o", "IN"} << "OUT must not be INPUT";
        QTest::newRow("output is the taxonomy") << QStringList{"build", "taxids", "IN", "-o", "T", "--taxonomy", "T"}
                                                << "OUT must not be the taxonomy file";
    }

    void usageErrors()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        const QString input = write(QStringLiteral("IN"), "Taxon\tS1\tS2\nA\t1\t2\n");
        for (QString& argument : arguments) {
            if (argument == QLatin1String("IN") || argument == QLatin1String("OUT") || argument == QLatin1String("T"))
                argument = path(argument);
        }
        message.replace(QLatin1String("IN has"), input + QStringLiteral(" has"));
        const CliResult result = runCli(arguments);
        QCOMPARE(result.exitCode, 2);
        QVERIFY2(result.err.contains(message), qPrintable(result.err));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("OUT"))));
    }

    void importTaxonomy_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        QTest::newRow("taxdmp.zip") << "small" << 0 << "";
        QTest::newRow("orphans left out") << "orphans" << 0 << "note: 2 ids are not linked to the root";
        QTest::newRow("not a zip") << "text" << 1 << "Pie chart couldn't be generated: the taxonomy archive is not a ZIP file";
        QTest::newRow("nothing below the root") << "root only" << 1 << "gives no taxa below the root";
    }

    void importTaxonomy()
    {
        QFETCH(QString, kind);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        const QString archive = path(QStringLiteral("taxdmp.zip"));
        if (kind == QLatin1String("small"))
            QVERIFY(writeSmallTaxdump(archive));
        else if (kind == QLatin1String("orphans"))
            QVERIFY(writeZip(archive, {{QStringLiteral("nodes.dmp"), smallNodes() + dumpRow({"7", "99", "species"})}}));
        else if (kind == QLatin1String("text"))
            write(QStringLiteral("taxdmp.zip"), "1\t|\t1\t|\n");
        else if (kind == QLatin1String("root only"))
            QVERIFY(writeZip(archive, {{QStringLiteral("nodes.dmp"), dumpRow({"1", "1"}) + dumpRow({"5", "4"})}}));
        const QString output = path(QStringLiteral("ncbi.ontology"));
        const CliResult result = runCli({"import-taxonomy", archive, "-o", output, "--quiet"});
        QCOMPARE(result.exitCode, exitCode);
        QVERIFY2(message.isEmpty() ? result.err.isEmpty() : result.err.contains(message), qPrintable(result.err));
        QCOMPARE(QFileInfo::exists(output), exitCode == 0);
        if (exitCode == 0) {
            const Zem::Ontology::Ontology ontology(output);
            QVERIFY(!ontology.isCounted());
            QCOMPARE(ontology.getNodeNumber(), 6);
        }
        QCOMPARE(QDir(dir->path()).entryList(QStringList{QStringLiteral("sorvik-*")}, QDir::AllEntries), QStringList());
    }

    void importedTaxonomyServesLaterBuilds()
    {
        QVERIFY(writeSmallTaxdump(path(QStringLiteral("taxdmp.zip"))));
        const QString taxonomy = path(QStringLiteral("ncbi.ontology"));
        QCOMPARE(runCli({"import-taxonomy", path(QStringLiteral("taxdmp.zip")), "-o", taxonomy}).exitCode, 0);
        const int requests = server.getRequestCount(QStringLiteral("/html"));
        const CliResult result = runCli({"build", "taxids", write(QStringLiteral("in.txt"), "562\n9606\n562\n"), "-o",
                                         path(QStringLiteral("out.piechart")), "--taxonomy", taxonomy},
                                        environment(QStringLiteral("/html")));
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QCOMPARE(server.getRequestCount(QStringLiteral("/html")), requests);
        QCOMPARE(describeOntology(path(QStringLiteral("out.piechart"))), smallChart);

        // A chart is no taxonomy: it is refused, and left as it is.
        const QString counted = path(QStringLiteral("out.piechart"));
        const QByteArray chart = fileContents(counted);
        const CliResult refused = runCli({"build", "taxids", path(QStringLiteral("in.txt")), "-o",
                                          path(QStringLiteral("other.piechart")), "--taxonomy", counted});
        QCOMPARE(refused.exitCode, 1);
        QVERIFY(refused.err.contains(QLatin1String("is a counted chart, not a taxonomy")));
        QVERIFY(fileContents(counted) == chart);
    }

    // Outputs may be shared (a group's data folder, a web server): they get the permissions the
    // user's umask gives any new file.
    void outputsFollowTheUmask()
    {
        const mode_t before = ::umask(002);
        const QString archive = path(QStringLiteral("taxdmp.zip"));
        QVERIFY(writeSmallTaxdump(archive));
        const QString taxonomy = path(QStringLiteral("ncbi.ontology"));
        const QString chart = path(QStringLiteral("ids.piechart"));
        const QStringList outputs{taxonomy, chart, path(QStringLiteral("k.piechart")), path(QStringLiteral("ids.png")),
                                  path(QStringLiteral("ids.svg"))};
        const QList<QStringList> commands{
            {"import-taxonomy", archive, "-o", taxonomy},
            {"build", "taxids", write(QStringLiteral("in.txt"), "562\n"), "-o", chart, "--taxonomy", taxonomy},
            {"build", "krona", write(QStringLiteral("in.krona"), "3\tA\n"), "-o", outputs.at(2)},
            {"render", chart, "-o", outputs.at(3)},
            {"render", chart, "-o", outputs.at(4)}};
        for (const QStringList& command : commands) {
            const CliResult result = runCli(command);
            QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        }
        ::umask(before);
        const QFile::Permissions shared = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser
            | QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther;
        for (const QString& output : outputs)
            QVERIFY2(QFile::permissions(output) == shared, qPrintable(output));
    }

    void interruptDuringDownload()
    {
        const QString output = path(QStringLiteral("out.piechart"));
        const QString taxonomy = path(QStringLiteral("ncbi.ontology"));
        QProcess process;
        process.setProcessEnvironment(environment(QStringLiteral("/stall.zip")));
        bool done = false;
        connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this, [&done] { done = true; });
        const int before = server.getRequestCount(QStringLiteral("/stall.zip"));
        process.start(QStringLiteral(SORVIK_CLI), {"build", "taxids", write(QStringLiteral("in.txt"), "562\n"), "-o", output,
                                                   "--taxonomy", taxonomy});
        QVERIFY(process.waitForStarted());
        QTRY_COMPARE_WITH_TIMEOUT(server.getRequestCount(QStringLiteral("/stall.zip")), before + 1, 60000);
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        QTRY_VERIFY_WITH_TIMEOUT(done, 60000);
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 130);
        QVERIFY(QString::fromUtf8(process.readAllStandardError()).contains(QLatin1String("interrupted")));
        QVERIFY(!QFileInfo::exists(output));
        QVERIFY(!QFileInfo::exists(taxonomy));
        QCOMPARE(QDir(dir->path()).entryList(QStringList{QStringLiteral("sorvik-*")}, QDir::AllEntries), QStringList());
    }

};

QTEST_GUILESS_MAIN(TestCliBuild)
#include "tst_clibuild.moc"
