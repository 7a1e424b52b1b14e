#include "clirunner.h"
#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "ontology/sourcekronatext.h"
#include "ontology/sourceqiimetext.h"
#include "tests/support/fixtures.h"
#include "tests/support/inputtotals.h"
#include "tests/support/taxdump.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using namespace Sorvik::Test;

namespace {

// The total a chart counts, as sorvik-cli info tells it; -1 when it cannot.
qint64 chartTotal(const QString& file)
{
    const CliResult info = runCli({QStringLiteral("info"), file});
    bool ok = false;
    const qint64 total = info.out.section(QStringLiteral("total: "), 1).trimmed().toLongLong(&ok);
    return info.exitCode == 0 && ok ? total : -1;
}

QStringList filesIn(const QString& folder)
{
    QStringList files;
    QDirIterator it(realDataPath(folder), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << it.next();
    files.sort();
    return files;
}

// The QIIME tables' counts are shares times this, as sorvik-cli build makes them.
constexpr double qiimeMultiplier = 10000.0;

} // namespace

// Every public sample file in the shared data folder through sorvik-cli, each with the outcome
// the file itself implies: the total its counts add up to, or the refusal it deserves.
class TestRealData : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (realDataPath().isEmpty())
            QSKIP("no real data beside this checkout");
        QVERIFY(dir.isValid());
    }

    void kronaFiles_data()
    {
        QTest::addColumn<QString>("file");
        for (const QString& file : filesIn(QStringLiteral("krona")))
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << file;
    }

    // The total is the sum of the file's counts: the lines without a count are exactly those
    // the reader reports as skipped.
    void kronaFiles()
    {
        QFETCH(QString, file);
        const KronaTotals expected = kronaTotals(file);
        QVERIFY(expected.total > 0);

        auto reader = std::make_unique<Zem::Ontology::SourceKronaText>(file);
        const Zem::Ontology::Source& source = *reader;
        Zem::Ontology::BuilderSource builder(dir.filePath(QStringLiteral("in-process.piechart")));
        builder.addSource(std::move(reader));
        builder.load();
        builder.count(false);
        QCOMPARE(source.getLinesSkipped(), expected.malformed);
        QCOMPARE(builder.getRoot()->data.value(Zem::Ontology::NodeKey::accumCount).toLongLong(), expected.total);

        QCOMPARE(build({"build", "krona", file}), QString::number(expected.total));
    }

    void qiimeFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("column");
        for (const QString& file : filesIn(QStringLiteral("qiime"))) {
            const int columns = Zem::Ontology::SourceQiimeText::readColumnNames(file).size();
            const QString name = QFileInfo(file).fileName();
            QTest::newRow(qPrintable(name + QStringLiteral(" first column"))) << file << 0;
            if (columns > 1)
                QTest::newRow(qPrintable(name + QStringLiteral(" last column"))) << file << columns - 1;
        }
    }

    // The total is the column's sum times 10 000, less what each row's count loses to whole
    // numbers; a column without values is refused.
    void qiimeFiles()
    {
        QFETCH(QString, file);
        QFETCH(int, column);
        const QiimeTotals expected = qiimeTotals(file, column);
        const QString outcome = build({"build", "qiime", file, "--column", QString::number(column)});
        if (expected.sum * qiimeMultiplier < 1.0) {
            QVERIFY2(outcome.contains(QLatin1String("no counted taxa")), qPrintable(outcome));
            return;
        }
        bool ok = false;
        const qint64 total = outcome.toLongLong(&ok);
        QVERIFY2(ok, qPrintable(outcome));
        const double exact = expected.sum * qiimeMultiplier;
        QVERIFY2(total <= std::ceil(exact) && total >= std::floor(exact) - expected.rows,
                 qPrintable(QStringLiteral("%1 for a sum of %2 over %3 rows").arg(total).arg(exact).arg(expected.rows)));
    }

    void taxonomyDumps_data()
    {
        QTest::addColumn<QString>("folder");
        // The taxa the file links to its root, counted from its rows: a taxon under two
        // parents (a damaged dump) is written under each.
        QTest::addColumn<QString>("expected");
        const QList<QPair<QString, QString>> dumps{
            {"ncbi/joltax_minimal", "8"},       {"ncbi/kraken2_viral", "39"},       {"ncbi/krakenpy_missing2", "28"},
            {"ncbi/krakenpy_subset", "26"},     {"ncbi/mgnify_cat", "25"},          {"ncbi/onecodex_minimal", "10"},
            {"ncbi/taxpasta_synthetic", "19"},  {"other/greengenes_kraken_dmp", "3094"},
            // Its 1000 rows are the head of a real dump: no taxon in them has a parent in them.
            {"ncbi/onecodex_head1000", "gives no taxa below the root"},
        };
        QStringList folders;
        for (const QString& file : filesIn(QString())) {
            if (QFileInfo(file).fileName() == QLatin1String("nodes.dmp"))
                folders << QDir(realDataPath()).relativeFilePath(QFileInfo(file).absolutePath());
        }
        for (const auto& dump : dumps) {
            QVERIFY2(folders.removeAll(dump.first) == 1, qPrintable(dump.first));
            QTest::newRow(qPrintable(dump.first)) << dump.first << dump.second;
        }
        QVERIFY2(folders.isEmpty(), qPrintable(QStringLiteral("dumps without a row: ") + folders.join(QLatin1Char(' '))));
    }

    void taxonomyDumps()
    {
        QFETCH(QString, folder);
        QFETCH(QString, expected);
        const QDir dumps(realDataPath(folder));
        QList<ZipEntry> entries;
        for (const QString& dump : dumps.entryList({QStringLiteral("*.dmp")}, QDir::Files))
            entries << ZipEntry{dump, fileContents(dumps.filePath(dump))};
        const QString name = QFileInfo(folder).fileName();
        const QString archive = dir.filePath(name + QStringLiteral(".zip"));
        QVERIFY(writeZip(archive, entries));
        const QString out = dir.filePath(name + QStringLiteral(".ontology"));
        const CliResult result = runCli({"import-taxonomy", archive, "-o", out});
        if (result.exitCode != 0) {
            QVERIFY2(result.exitCode == 1 && result.err.contains(expected), qPrintable(result.err));
            return;
        }
        const Zem::Ontology::Ontology ontology(out);
        QVERIFY(!ontology.isCounted());
        QCOMPARE(QString::number(ontology.getNodeNumber()), expected);
        taxonomies.insert(name, out);
    }

    void taxonIdFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("taxonomy");
        // The chart's total, or what the refusal says.
        QTest::addColumn<QString>("expected");

        const QString notIds = QStringLiteral("does not look like a list of NCBI taxon ids");
        const QString notCounts = QStringLiteral("does not look like a list of NCBI taxon ids with counts");
        const QString none = QStringLiteral("no counted taxa");
        QStringList files;
        auto row = [&files](const char* file, const char* format, const char* taxonomy, const QString& expected) {
            files << QString::fromLatin1(file);
            QTest::newRow(qPrintable(QStringLiteral("%1 %2 %3").arg(QFileInfo(file).fileName(), format, taxonomy)))
                << file << format << taxonomy << expected;
        };
        // Ids of marine bacteria, none of them in these partial taxonomies.
        row("taxids/mgtaxa_cyano_roseo_sar11_taxid_list.csv", "taxids", "kraken2_viral", none);
        row("taxids/mgtaxa_cyano_roseo_sar11_taxid_list.csv", "taxids", "mgnify_cat", none);
        // An id, a name and a rank per line: the names are no ids.
        row("taxids/mgtaxa_GOS_taxid_list_crlf.csv", "taxids", "mgnify_cat", notIds);
        // Per-read output with the taxon id third, as MG-Taxa has it: the first line goes as the
        // header, "U" reads have the id 0, and the reads whose id the taxonomy links count.
        row("taxids/krakenpy_PlusPF-8.kraken_per_read.tsv", "mgtaxa", "onecodex_minimal", QStringLiteral("29"));
        row("taxids/krakenpy_PlusPF-8.kraken_per_read.tsv", "mgtaxa", "mgnify_cat", QStringLiteral("10"));
        row("taxids/krakenpy_PlusPF-8.kraken_per_read.tsv", "taxids", "mgnify_cat", notIds);
        row("taxids/krakenpy_Viral_1003835.kraken_per_read.tsv", "mgtaxa", "kraken2_viral", none);
        // Reports of classifiers: a percentage, counts, ranks and names on every line.
        row("taxids/nao_10170_kraken2_report_zerocounts.txt", "taxid-counts", "kraken2_viral", notCounts);
        row("taxids/taxpasta_2612_pe.kraken2.report.txt", "taxids", "kraken2_viral", notIds);
        row("taxids/krakenpy_PlusPF-8.kraken_report_with_header.txt", "taxid-counts", "mgnify_cat", notCounts);
        row("taxids/taxpasta_test3.krakenuniq.report.txt", "taxids", "kraken2_viral", notIds);
        row("taxids/taxpasta_AD_pe.centrifuge.report.txt", "taxid-counts", "kraken2_viral", notCounts);
        row("taxids/taxpasta_barcode41.kaiju2table.txt", "taxids", "kraken2_viral", notIds);
        row("taxids/taxpasta_MOCK_002.ganon.tre", "taxid-counts", "kraken2_viral", notCounts);
        // Genus names and counts.
        row("other/mgtaxa_graph-bar-counts_crlf.txt", "taxid-counts", "kraken2_viral", notCounts);

        // A file added to the folders needs its row.
        for (const QString& file : filesIn(QStringLiteral("taxids")) + filesIn(QStringLiteral("other"))) {
            const QString relative = QDir(realDataPath()).relativeFilePath(file);
            if (!relative.endsWith(QLatin1String(".dmp")))
                QVERIFY2(files.contains(relative), qPrintable(relative + QStringLiteral(" has no row")));
        }
    }

    void taxonIdFiles()
    {
        QFETCH(QString, file);
        QFETCH(QString, format);
        QFETCH(QString, taxonomy);
        QFETCH(QString, expected);
        QVERIFY2(taxonomies.contains(taxonomy), "the taxonomy was not imported");
        const QString outcome = build({"build", format, realDataPath(file), "--taxonomy", taxonomies.value(taxonomy)});
        bool number = false;
        expected.toLongLong(&number);
        if (number)
            QCOMPARE(outcome, expected);
        else
            QVERIFY2(outcome.contains(expected), qPrintable(outcome));
        // The taxonomy is used, never changed.
        QVERIFY(!Zem::Ontology::Ontology(taxonomies.value(taxonomy)).isCounted());
    }

private:
    // The chart's total when the build succeeds, or its message on stderr when it fails (it must
    // then fail with exit code 1, not crash); the chart is checked with sorvik-cli info.
    QString build(QStringList arguments)
    {
        const QString out = dir.filePath(QStringLiteral("out.piechart"));
        QFile::remove(out);
        const CliResult result = runCli(arguments << "-o" << out);
        if (result.exitCode != 0)
            return result.exitCode == 1 ? result.err.trimmed() : QStringLiteral("exit code %1").arg(result.exitCode);
        return QString::number(chartTotal(out));
    }

    QTemporaryDir dir;
    QMap<QString, QString> taxonomies;
};

QTEST_GUILESS_MAIN(TestRealData)
#include "tst_realdata.moc"
