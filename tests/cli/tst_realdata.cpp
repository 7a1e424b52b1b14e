#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "ontology/reader.h"
#include "ontology/sourcekronatext.h"
#include "ontology/sourceqiimetext.h"
#include "tests/support/clirunner.h"
#include "tests/support/fixtures.h"
#include "tests/support/inputtotals.h"
#include "tests/support/taxdump.h"

#include <QDirIterator>
#include <QSet>
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
    const qint64 total = info.out.section(QStringLiteral("total: "), 1).section(QLatin1Char('\n'), 0, 0).toLongLong(&ok);
    return info.exitCode == 0 && ok ? total : -1;
}

// Every node of a chart by its path of names from the root ("Bacteria|Firmicutes"), with its
// id and total.
class ChartTotals : public Zem::Ontology::Reader
{
public:
    struct Total
    {
        QString id;
        qint64 accumCount;
    };

    static QHash<QString, Total> read(const QString& file)
    {
        ChartTotals reader{Zem::Ontology::Ontology(file)};
        reader.Reader::read();
        return reader.totals;
    }

    void openNode(const QString& id, const QVariantMap& data, const Position&) override
    {
        names << (names.isEmpty() ? QString() : data.value(Zem::Ontology::NodeKey::name).toString());
        totals.insert(names.mid(1).join(QLatin1Char('|')),
                      {id, data.value(Zem::Ontology::NodeKey::accumCount).toLongLong()});
    }
    void closeNode(const QString&, const QVariantMap&) override { names.removeLast(); }

private:
    using Reader::Reader;
    QStringList names;
    QHash<QString, Total> totals;
};

// The tab-separated fields of a file's lines that are neither blank nor comments.
QList<QStringList> rowsOf(const QString& file)
{
    QList<QStringList> rows;
    for (const QString& line : QString::fromUtf8(fileContents(file)).split(QLatin1Char('\n'))) {
        if (!line.trimmed().isEmpty() && !line.startsWith(QLatin1Char('#')))
            rows << line.trimmed().split(QLatin1Char('\t'));
    }
    return rows;
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
        const QString notMgtaxa = QStringLiteral("does not look like an MG-Taxa prediction table");
        QStringList files;
        auto row = [&files](const char* file, const char* format, const char* taxonomy, const QString& expected) {
            files << QString::fromLatin1(file);
            QTest::newRow(qPrintable(QStringLiteral("%1 %2 %3").arg(QFileInfo(file).fileName(), format, taxonomy)))
                << file << format << taxonomy << expected;
        };
        // Ids of marine bacteria, none of them in these partial taxonomies: every one counts,
        // under Unknown taxon ids.
        row("taxids/mgtaxa_cyano_roseo_sar11_taxid_list.csv", "taxids", "kraken2_viral", QStringLiteral("65"));
        row("taxids/mgtaxa_cyano_roseo_sar11_taxid_list.csv", "taxids", "mgnify_cat", QStringLiteral("65"));
        // An id, a name and a rank per line: the names are no ids.
        row("taxids/mgtaxa_GOS_taxid_list_crlf.csv", "taxids", "mgnify_cat", notIds);
        // Per-read output has the taxon id third, as MG-Taxa has it, but no MG-Taxa header.
        row("taxids/krakenpy_PlusPF-8.kraken_per_read.tsv", "mgtaxa", "onecodex_minimal", notMgtaxa);
        row("taxids/krakenpy_PlusPF-8.kraken_per_read.tsv", "taxids", "mgnify_cat", notIds);
        row("taxids/krakenpy_Viral_1003835.kraken_per_read.tsv", "mgtaxa", "kraken2_viral", notMgtaxa);
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

    // Kraken-style reports: every row's clade reads are its taxon's total, the root's with the
    // unclassified reads beside it.
    void kreports_data()
    {
        QTest::addColumn<QString>("file");
        const QStringList files = filesIn(QStringLiteral("classifiers/kraken2")) + filesIn(QStringLiteral("classifiers/krakenuniq"))
            + filesIn(QStringLiteral("classifiers/centrifuge")) + filesIn(QStringLiteral("taxids")).filter(QStringLiteral("report"));
        for (const QString& file : files)
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << file;
    }

    void kreports()
    {
        QFETCH(QString, file);
        const QString out = builtChart({"build", "kreport", file});
        if (file.endsWith(QLatin1String(".gz")))
            return;
        const QHash<QString, ChartTotals::Total> chart = ChartTotals::read(out);
        QHash<QString, qint64> byId;
        for (const ChartTotals::Total& total : chart)
            byId.insert(total.id, total.accumCount);
        QList<QStringList> rows = rowsOf(file);
        int taxidColumn = -1;
        bool isCount = false;
        rows.first().value(1).toLongLong(&isCount);
        if (!isCount) {
            const QStringList header = rows.takeFirst();
            for (int i = 0; i < header.size(); ++i) {
                if (QStringList{"taxid", "taxonid", "taxonomy id"}.contains(header.at(i).trimmed().toLower()))
                    taxidColumn = i;
            }
        }
        qint64 unclassified = 0;
        QSet<QString> seen;
        for (const QStringList& row : qAsConst(rows)) {
            const QString taxid = row.value(taxidColumn >= 0 ? taxidColumn : row.size() - 2).trimmed();
            const qint64 clade = row.value(1).toLongLong();
            if (taxid == QLatin1String("0"))
                unclassified = clade;
            else if (!seen.contains(taxid))
                QVERIFY2(byId.value(taxid, -1) == clade + (taxid == chart.value(QString()).id ? unclassified : 0),
                         qPrintable(taxid));
            seen.insert(taxid);
        }
        QCOMPARE(chart.value(QString()).accumCount, chartTotal(out));
    }

    // MetaPhlAn profiles: the whole is 100 % (1 000 000) give or take rounding, and every
    // clade's total is its value.
    void metaphlanProfiles_data()
    {
        QTest::addColumn<QString>("file");
        for (const QString& file : filesIn(QStringLiteral("classifiers/metaphlan")))
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << file;
    }

    void metaphlanProfiles()
    {
        QFETCH(QString, file);
        const QHash<QString, ChartTotals::Total> chart = ChartTotals::read(builtChart({"build", "metaphlan", file}));
        QVERIFY(std::abs(chart.value(QString()).accumCount - 1000000) <= 100);
        for (const QStringList& row : rowsOf(file)) {
            QStringList names;
            for (const QString& piece : row.first().split(QLatin1Char('|')))
                names << piece.mid(3);
            const QString path = row.first() == QLatin1String("UNCLASSIFIED") ? QStringLiteral("unclassified")
                                                                              : names.join(QLatin1Char('|'));
            const double value = row.value(row.size() >= 3 ? 2 : 1).toDouble();
            QVERIFY2(chart.contains(path), qPrintable(path));
            QVERIFY2(std::abs(double(chart.value(path).accumCount) / 10000.0 - value) <= 0.01, qPrintable(path));
        }
    }

    // Tables and reads placed in a taxonomy: the chart counts every read of the input, those
    // the taxonomy does not know under Unknown taxon ids.
    void countsPlacedInTheTaxonomy_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("countColumn");
        for (const QString& file : filesIn(QStringLiteral("classifiers/bracken")))
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << "bracken" << file << 5;
        for (const QString& file : filesIn(QStringLiteral("classifiers/kaiju")))
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << "kaiju" << file << 2;
        for (const QString& file : filesIn(QStringLiteral("taxids")).filter(QStringLiteral("per_read")))
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << "kraken-reads" << file << -1;
    }

    void countsPlacedInTheTaxonomy()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        QFETCH(int, countColumn);
        QVERIFY2(!taxonomies.isEmpty(), "no taxonomy was imported");
        QList<QStringList> rows = rowsOf(file);
        if (countColumn >= 0)
            rows.removeFirst();
        qint64 reads = 0;
        for (const QStringList& row : qAsConst(rows))
            reads += countColumn >= 0 ? row.value(countColumn).toLongLong() : 1;
        for (const QString& taxonomy : qAsConst(taxonomies))
            QCOMPARE(build({"build", format, file, "--taxonomy", taxonomy}), QString::number(reads));
    }

    // Each classifier's output is charted as the format it is told to be.
    void detectedAndCharted()
    {
        for (const QString& file : filesIn(QStringLiteral("classifiers"))) {
            if (!file.endsWith(QLatin1String(".md")))
                builtChart({"build", "auto", file, "--taxonomy", taxonomies.first()});
        }
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

    // The chart's file; the build must succeed.
    QString builtChart(QStringList arguments)
    {
        const QString out = dir.filePath(QStringLiteral("out.piechart"));
        QFile::remove(out);
        const CliResult result = runCli(arguments << "-o" << out);
        [&] { QVERIFY2(result.exitCode == 0, qPrintable(arguments.join(QLatin1Char(' ')) + QStringLiteral(": ") + result.err)); }();
        return out;
    }

    QTemporaryDir dir;
    QMap<QString, QString> taxonomies;
};

QTEST_GUILESS_MAIN(TestRealData)
#include "tst_realdata.moc"
