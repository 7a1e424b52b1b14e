#include "ontology/chartsamples.h"
#include "ontology/ontology.h"
#include "tests/support/clirunner.h"
#include "tests/support/fixtures.h"
#include "tests/support/sqlfile.h"
#include "tests/support/taxdump.h"
#include "viewer/charttree.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

using Sorvik::Viewer::ChartTree;
using namespace Sorvik::Test;

namespace {

// "id count data" for every node row, then "key value" for every info row, in row order.
QStringList chartRows(const QString& file)
{
    QStringList rows;
    for (const QVariantList& row : querySql(file, QStringLiteral("SELECT id, count, data FROM nodes ORDER BY rowid")))
        rows << QStringLiteral("%1\t%2\t%3").arg(row.at(0).toString(), row.at(1).toString(), row.at(2).toString());
    for (const QVariantList& row : querySql(file, QStringLiteral("SELECT key, value FROM info ORDER BY rowid")))
        rows << QStringLiteral("%1\t%2").arg(row.at(0).toString(), row.at(1).toString());
    return rows;
}

// The samples table as it stands: "number name counts(hex)".
QStringList sampleRows(const QString& file)
{
    QStringList rows;
    for (const QVariantList& row :
         querySql(file, QStringLiteral("SELECT sample, name, hex(counts) FROM samples ORDER BY sample")))
        rows << QStringLiteral("%1 %2 %3").arg(row.at(0).toString(), row.at(1).toString(), row.at(2).toString());
    return rows;
}

// Every node's total in one sample, by the key that matches nodes across charts.
QMap<QString, qint64> totalsByKey(const ChartTree& tree)
{
    QMap<QString, qint64> totals;
    for (int i = 0; i < tree.size(); ++i) {
        if (tree.at(i).total > 0)
            totals.insert(tree.getKey(i), tree.at(i).total);
    }
    return totals;
}

// Every node's own count in one sample, by key.
QMap<QString, qint64> countsByKey(const ChartTree& tree)
{
    QMap<QString, qint64> counts;
    for (int i = 0; i < tree.size(); ++i) {
        if (tree.at(i).count > 0)
            counts.insert(tree.getKey(i), tree.at(i).count);
    }
    return counts;
}

QString report(const char* name)
{
    return fixturePath(QStringLiteral("formats/") + QLatin1String(name));
}

} // namespace

class TestCliSamples : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        dir = std::make_unique<QTemporaryDir>();
        QVERIFY(dir->isValid());
    }

    void oneInputIsTodaysChart_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("rows");
        QTest::newRow("report") << QStringList{"kreport", report("kraken2.kreport")} << "samples/kraken2.kreport.rows";
        QTest::newRow("qiime column")
            << QStringList{"qiime", fixturePath(QStringLiteral("samples/study.qiime.tsv")), "--column", "1"}
            << "samples/study-column1.qiime.rows";
    }

    void oneInputIsTodaysChart()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, rows);
        const QString chart = path("one.piechart");
        QCOMPARE(runCli(QStringList{"build"} + arguments + QStringList{"-o", chart, "-q"}).exitCode, 0);
        QCOMPARE(chartRows(chart), QString::fromUtf8(fileContents(fixturePath(rows))).split(QLatin1Char('\n'), Qt::SkipEmptyParts));
        QCOMPARE(querySql(chart, QStringLiteral("SELECT name FROM sqlite_master WHERE name = 'samples'")).size(), 0);
    }

    void namesSamples_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("after their files") << QStringList() << QStringList{"kraken2", "bracken", "kraken1"};
        QTest::newRow("as given") << QStringList{"--name", "gut,skin,soil"} << QStringList{"gut", "skin", "soil"};
    }

    void namesSamples()
    {
        QFETCH(QStringList, options);
        QFETCH(QStringList, names);
        const QString chart = path("study.piechart");
        const CliResult built = runCli(QStringList{"build", "kreport", report("kraken2.kreport"), report("bracken.kreport"),
                                                   report("kraken1.kreport"), "-o", chart, "-q"}
                                       + options);
        QVERIFY2(built.exitCode == 0, qPrintable(built.err));
        const CliResult info = runCli({"info", chart});
        QCOMPARE(info.exitCode, 0);
        // The chart's own total is the first sample's; every sample's is listed.
        QVERIFY2(info.out.contains(QStringLiteral("total: 1000\n")), qPrintable(info.out));
        QVERIFY2(info.out.endsWith(QStringLiteral("samples: 3\nsample: %1\t1000\nsample: %2\t250\nsample: %3\t100\n")
                                       .arg(names.at(0), names.at(1), names.at(2))),
                 qPrintable(info.out));
    }

    void refusesNamesThatDoNotFit_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("message");
        QTest::newRow("too few") << QStringList{"--name", "a"} << "--name gives 1 names for 2 samples";
        QTest::newRow("twice") << QStringList{"--name", "a,a"} << "--name gives 'a' twice";
        QTest::newRow("empty") << QStringList{"--name", "a,"} << "--name gives an empty name";
        QTest::newRow("all columns of a report") << QStringList{"--all-columns"} << "--all-columns applies to qiime, kreport-combined, bracken-combined and metaphlan-merged only";
    }

    void refusesNamesThatDoNotFit()
    {
        QFETCH(QStringList, options);
        QFETCH(QString, message);
        const QString chart = path("study.piechart");
        const CliResult result = runCli(
            QStringList{"build", "kreport", report("kraken2.kreport"), report("bracken.kreport"), "-o", chart} + options);
        QCOMPARE(result.exitCode, 2);
        QVERIFY2(result.err.contains(message), qPrintable(result.err));
        QVERIFY(!QFileInfo::exists(chart));
    }

    void allColumnsMatchTheColumnsBuiltAlone()
    {
        const QString table = fixturePath(QStringLiteral("samples/study.qiime.tsv"));
        const QString chart = path("all.piechart");
        QCOMPARE(runCli({"build", "qiime", table, "--all-columns", "-o", chart, "-q"}).exitCode, 0);
        const ChartTree tree = ChartTree::read(Zem::Ontology::Ontology(chart));
        QCOMPARE(tree.getSampleCount(), 3);
        QCOMPARE(tree.getSamples().at(2).name, QStringLiteral("Soil"));
        for (int column = 0; column < 3; ++column) {
            const QString alone = path(qPrintable(QStringLiteral("column%1.piechart").arg(column)));
            QCOMPARE(runCli({"build", "qiime", table, "--column", QString::number(column), "-o", alone, "-q"}).exitCode, 0);
            const ChartTree single = ChartTree::read(Zem::Ontology::Ontology(alone));
            QCOMPARE(tree.getSamples().at(size_t(column)).total, single.at(0).total);
            QCOMPARE(totalsByKey(tree.ofSample(column)), totalsByKey(single));
        }
    }

    void mergeIsAssociativeAndBuildsAsOne()
    {
        const QStringList names{"kraken2", "bracken", "kraken1"};
        QStringList charts;
        for (const QString& name : names) {
            charts << path(qPrintable(name + QStringLiteral(".piechart")));
            QCOMPARE(runCli({"build", "kreport", report(qPrintable(name + QStringLiteral(".kreport"))), "-o", charts.last(),
                             "-q"})
                         .exitCode,
                     0);
        }
        const QString together = path("together.piechart");
        QCOMPARE(runCli({"build", "kreport", report("kraken2.kreport"), report("bracken.kreport"),
                         report("kraken1.kreport"), "-o", together, "-q"})
                     .exitCode,
                 0);
        const QString all = path("all.piechart");
        const QString left = path("left.piechart");
        const QString leftThen = path("left-then.piechart");
        const QString right = path("right.piechart");
        const QString thenRight = path("then-right.piechart");
        QCOMPARE(runCli({"merge", charts.at(0), charts.at(1), charts.at(2), "-o", all, "-q"}).exitCode, 0);
        QCOMPARE(runCli({"merge", charts.at(0), charts.at(1), "-o", left, "-q"}).exitCode, 0);
        QCOMPARE(runCli({"merge", left, charts.at(2), "-o", leftThen, "-q"}).exitCode, 0);
        QCOMPARE(runCli({"merge", charts.at(1), charts.at(2), "-o", right, "-q"}).exitCode, 0);
        QCOMPARE(runCli({"merge", charts.at(0), right, "-o", thenRight, "-q"}).exitCode, 0);

        QCOMPARE(sampleRows(all).size(), 3);
        for (const QString& other : {leftThen, thenRight, together}) {
            QCOMPARE(chartRows(other), chartRows(all));
            QCOMPARE(sampleRows(other), sampleRows(all));
        }
        // Each sample keeps its chart's own counts and total, though a taxon that one report
        // places elsewhere stays where the first placed it.
        const ChartTree merged = ChartTree::read(Zem::Ontology::Ontology(all));
        for (int i = 0; i < 3; ++i) {
            const ChartTree alone = ChartTree::read(Zem::Ontology::Ontology(charts.at(i)));
            QCOMPARE(countsByKey(merged.ofSample(i)), countsByKey(alone));
            QCOMPARE(merged.getSamples().at(size_t(i)).total, alone.at(0).total);
        }
    }

    void mergeOfOneChartIsThatChart()
    {
        const QString one = path("one.piechart");
        const QString merged = path("merged.piechart");
        QCOMPARE(runCli({"build", "kreport", report("kraken2.kreport"), "-o", one, "-q"}).exitCode, 0);
        QCOMPARE(runCli({"merge", one, "-o", merged, "-q"}).exitCode, 0);
        QCOMPARE(chartRows(merged), chartRows(one));
    }

    void damagedSamplesAreRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("info") << QStringList{"info", "CHART"};
        QTest::newRow("render") << QStringList{"render", "CHART", "-o", "OUT.png"};
        QTest::newRow("table") << QStringList{"table", "CHART", "-o", "OUT.tsv"};
        QTest::newRow("merge") << QStringList{"merge", "CHART", "CHART", "-o", "OUT.piechart"};
    }

    void damagedSamplesAreRefused()
    {
        QFETCH(QStringList, arguments);
        const QString chart = path("study.piechart");
        QCOMPARE(runCli({"build", "kreport", report("kraken2.kreport"), report("bracken.kreport"), "-o", chart, "-q"})
                     .exitCode,
                 0);
        execSql(chart, {QStringLiteral("UPDATE samples SET counts = x'7f0102' WHERE sample = 1")});
        for (QString& argument : arguments) {
            if (argument == QLatin1String("CHART"))
                argument = chart;
            else if (argument.startsWith(QLatin1String("OUT")))
                argument = path(qPrintable(argument));
        }
        const CliResult result = runCli(arguments);
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.contains(chart + QStringLiteral(": the chart's samples table is damaged")),
                 qPrintable(result.err));
        QCOMPARE(QDir(dir->path()).entryList(QDir::Files), QStringList{"study.piechart"});
    }

    void mergeRefusesWhatIsNoChart()
    {
        const QString archive = path("taxdmp.zip");
        QVERIFY(writeSmallTaxdump(archive));
        const QString taxonomy = path("ncbi.ontology");
        QCOMPARE(runCli({"import-taxonomy", archive, "-o", taxonomy, "-q"}).exitCode, 0);
        const QString text = write("notes.txt", "not a chart\n");
        const QString out = path("out.piechart");
        const CliResult uncounted = runCli({"merge", taxonomy, "-o", out});
        QCOMPARE(uncounted.exitCode, 1);
        QVERIFY2(uncounted.err.contains(taxonomy + QStringLiteral(": the file is not a counted chart")),
                 qPrintable(uncounted.err));
        const CliResult notOntology = runCli({"merge", text, "-o", out});
        QCOMPARE(notOntology.exitCode, 1);
        QVERIFY2(notOntology.err.contains(text + QStringLiteral(": ")), qPrintable(notOntology.err));
        QVERIFY(!QFileInfo::exists(out));
    }

    void rendersOneSampleOrAll()
    {
        const QString chart = path("study.piechart");
        QCOMPARE(runCli({"build", "kreport", report("kraken2.kreport"), report("bracken.kreport"), "-o", chart, "-q"})
                     .exitCode,
                 0);
        const QString one = path("bracken.png");
        const QString grid = path("grid.png");
        QCOMPARE(runCli({"render", chart, "--sample", "bracken", "-o", one, "--size", "300"}).exitCode, 0);
        QCOMPARE(runCli({"render", chart, "--sample", "all", "-o", grid, "--size", "300"}).exitCode, 0);
        QVERIFY(!QImage(one).isNull());
        // Two charts side by side, and the legend beside them: wider than high.
        const QImage image(grid);
        QVERIFY(image.width() > image.height());

        const CliResult unknown = runCli({"render", chart, "--sample", "soil", "-o", path("x.png")});
        QCOMPARE(unknown.exitCode, 1);
        QVERIFY2(unknown.err.contains(QStringLiteral("no sample \"soil\"; its samples are \"kraken2\", \"bracken\"")),
                 qPrintable(unknown.err));
    }

    void tableAndPageHoldEverySample()
    {
        const QString chart = path("study.piechart");
        QCOMPARE(runCli({"build", "kreport", report("kraken2.kreport"), report("bracken.kreport"), "-o", chart, "-q"})
                     .exitCode,
                 0);
        // All samples added up, then a column per sample.
        const CliResult all = runCli({"table", chart});
        QCOMPARE(all.exitCode, 0);
        const QStringList lines = all.out.split(QLatin1Char('\n'));
        QVERIFY2(lines.at(0).endsWith(QStringLiteral("\tclade_count\tpercent\tclade_count_kraken2\tclade_count_bracken")),
                 qPrintable(lines.at(0)));
        QVERIFY2(lines.at(1).endsWith(QStringLiteral("\t1250\t100\t1000\t250")), qPrintable(lines.at(1)));
        const CliResult one = runCli({"table", chart, "--sample", "bracken"});
        QCOMPARE(one.exitCode, 0);
        QVERIFY2(one.out.split(QLatin1Char('\n')).at(1).endsWith(QStringLiteral("\t250\t100")), qPrintable(one.out));

        const QString page = path("study.html");
        QCOMPARE(runCli({"html", chart, "-o", page}).exitCode, 0);
        const QByteArray html = fileContents(page);
        QVERIFY(html.contains("\"name\":\"kraken2\"") && html.contains("\"name\":\"bracken\""));
    }

    void placesEachSampleInTheTaxonomy()
    {
        const QString archive = path("taxdmp.zip");
        QVERIFY(writeSmallTaxdump(archive, true));
        const QString taxonomy = path("ncbi.ontology");
        QCOMPARE(runCli({"import-taxonomy", archive, "-o", taxonomy, "-q"}).exitCode, 0);
        // A merged id counts under its new id, and a deleted one under "unknown", in its own sample.
        const QString a = write("a.txt", "562\t5\n12\t1\n");
        const QString b = write("b.txt", "9606\t2\n99\t1\n");
        const QString chart = path("study.piechart");
        const CliResult built = runCli({"build", "taxid-counts", a, b, "--taxonomy", taxonomy, "-o", chart, "-q"});
        QVERIFY2(built.exitCode == 0, qPrintable(built.err));
        const CliResult info = runCli({"info", chart});
        QVERIFY2(info.out.endsWith(QStringLiteral("total: 6\nunknown: 0\nunclassified: 0\nsamples: 2\nsample: a\t6\nsample: b\t3\n")),
                 qPrintable(info.out));
        const ChartTree tree = ChartTree::read(Zem::Ontology::Ontology(chart));
        const ChartTree second = tree.ofSample(1);
        QCOMPARE(second.at(second.indexOfKey(QStringLiteral("taxid:9606"))).total, 2);
        QCOMPARE(second.at(second.indexOfKey(QStringLiteral("taxid:562"))).total, 0);
        QCOMPARE(tree.at(tree.indexOfKey(QStringLiteral("taxid:562"))).total, 6);
        // What no sample holds is trimmed away: root, cellular organisms, Bacteria, Escherichia,
        // E. coli, Homo sapiens and unknown remain.
        QCOMPARE(tree.size(), 7);
    }

    void realQiimeTablesBuildEveryColumn()
    {
        const QString folder = realDataPath(QStringLiteral("qiime"));
        if (folder.isEmpty())
            QSKIP("no real data beside the checkout");
        int compared = 0;
        for (const QString& name : QDir(folder).entryList(QDir::Files)) {
            const QString table = QDir(folder).filePath(name);
            const QString chart = path("real.piechart");
            const CliResult built = runCli({"build", "qiime", table, "--all-columns", "-o", chart, "-q"});
            // A table whose columns count nothing is refused as a single column is.
            if (built.exitCode != 0) {
                QVERIFY2(built.err.contains(QStringLiteral("no counted taxa")), qPrintable(name + built.err));
                continue;
            }
            const ChartTree tree = ChartTree::read(Zem::Ontology::Ontology(chart));
            // The first columns, built alone where they count anything, give the same samples.
            for (int column = 0; column < std::min(3, tree.getSampleCount()); ++column) {
                const QString alone = path("alone.piechart");
                QFile::remove(alone);
                if (runCli({"build", "qiime", table, "--column", QString::number(column), "-o", alone, "-q"}).exitCode != 0) {
                    QCOMPARE(tree.getSamples().at(size_t(column)).total, 0);
                    continue;
                }
                const ChartTree single = ChartTree::read(Zem::Ontology::Ontology(alone));
                QCOMPARE(tree.getSamples().at(size_t(column)).total, single.at(0).total);
                QCOMPARE(totalsByKey(tree.ofSample(column)), totalsByKey(single));
                ++compared;
            }
        }
        QVERIFY(compared > 0);
    }

private:
    QString path(const char* name) const { return dir->filePath(QLatin1String(name)); }

    QString write(const char* name, const QByteArray& content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", name);
        return file.fileName();
    }

    std::unique_ptr<QTemporaryDir> dir;
};

QTEST_MAIN(TestCliSamples)
#include "tst_clisamples.moc"
