#include "ontology/inputformat.h"
#include "ontology/inputsample.h"
#include "tests/support/fixtures.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

using namespace Zem::Ontology;
using namespace Sorvik::Test;

namespace {

// The word of the format detected in a file, or "refused: " and why none was.
QString detected(const QString& file)
{
    QStringList whyNot;
    const InputFormat* format = InputFormat::detect(InputSample(file), &whyNot);
    return format ? format->word : QStringLiteral("refused: ") + whyNot.join(QStringLiteral(", "));
}

} // namespace

// Telling a file's format from its first lines: every format's own files are told as it, and
// near misses are told as what they are or refused with the reasons.
class TestInputFormat : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(dir.isValid()); }

    void detectsEveryFixture_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("word");
        const QList<QPair<QString, QString>> files{
            {"formats/kraken2.kreport", "kreport"},      {"formats/kraken2-minimizers.kreport", "kreport"},
            {"formats/kraken1.kreport", "kreport"},      {"formats/krakenuniq.report", "kreport"},
            {"formats/depth-column.kreport", "kreport"}, {"formats/bracken.kreport", "kreport"},
            {"formats/cut-short.kreport", "kreport"},    {"formats/metaphlan4.txt", "metaphlan"},
            {"formats/metaphlan2.txt", "metaphlan"},     {"formats/bracken.tsv", "bracken"},
            {"formats/kraken2.reads", "kraken-reads"},   {"formats/kraken2-names.reads", "kraken-reads"},
            {"formats/kaiju.tsv", "kaiju"},              {"formats/centrifuge.tsv", "centrifuge"},
            {"viewer/taxids.txt", "taxids"},             {"viewer/taxid-counts.txt", "taxid-counts"},
            {"viewer/mgtaxa.txt", "mgtaxa"},             {"viewer/small.krona.txt", "krona"},
            {"viewer/small.qiime.txt", "qiime"},
            // Its header passes as a single report's odd line: combined reports are told first.
            {"tables/combined.kreport", "kreport-combined"},
            {"tables/merged-metaphlan3.txt", "metaphlan-merged"},
            // Without taxon ids it would pass as a QIIME table.
            {"tables/merged-metaphlan4.txt", "metaphlan-merged"},
            {"tables/combined-bracken.tsv", "bracken-combined"},
        };
        for (const auto& [file, word] : files)
            QTest::newRow(qPrintable(file)) << fixturePath(file) << word;
    }

    // And each passes the check of its own format, which sorvik-cli build asks of an input.
    void detectsEveryFixture()
    {
        QFETCH(QString, file);
        QFETCH(QString, word);
        QCOMPARE(detected(file), word);
        QCOMPARE(InputFormat::find(word)->check(InputSample(file)), QString());
    }

    void nearMisses_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("result");
        QTest::newRow("krona text") << QByteArray("100\tBacteria\tFirmicutes\n20\tBacteria\n") << "krona";
        QTest::newRow("qiime table") << QByteArray("Taxon\tS1\tS2\nk__Bacteria;p__Firmicutes\t0.5\t0.25\n") << "qiime";
        QTest::newRow("metaphlan with its header only") << QByteArray("#SampleID\tMetaphlan2_Analysis\n")
                                                        << "refused: it holds no data lines";
        QTest::newRow("empty file") << QByteArray() << "refused: it is empty";
        QTest::newRow("blank lines") << QByteArray("\n \n\t\n") << "refused: it holds no data lines";
        QTest::newRow("gzip-compressed report")
            << gzipped(fileContents(fixturePath(QStringLiteral("formats/kraken1.kreport")))) << "kreport";
        // A report with a column missing is no report, nor Krona text (its counts are no
        // integers), nor anything else.
        QTest::newRow("5-column kreport-like")
            << QByteArray(" 80.00\t800\t10\tR\troot\n 20.00\t200\t200\tD\t  Bacteria\n")
            << "refused: not combined Kraken-style reports (line 1: it is no header of combined reports), not a "
               "Kraken-style report (line 1: it has 5 columns), not a MetaPhlAn profile (line 1: '80.00' is "
               "not a clade name with a rank prefix)";
        QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\x00\x00\x00\rIHDR\x00\x01\x02\xff\xfe", 22)
                                << "refused: not combined Kraken-style reports (line 1: it is no header of combined reports), "
                                   "not a Kraken-style report (line 1: it has 1 columns)";
        // A QIIME table of one level reads like a merged MetaPhlAn table but for its header.
        QTest::newRow("qiime table of kingdoms") << QByteArray("Taxon\tS1\tS2\nk__Bacteria\t0.5\t0.25\n") << "qiime";
        QTest::newRow("merged metaphlan with a cut row")
            << QByteArray("clade_name\ts1\ts2\nk__A\t1\t2\nk__A|p__B\t1\n") << "metaphlan-merged";
        // A Bracken table of one sample names no _num column.
        QTest::newRow("bracken table of one sample")
            << fileContents(fixturePath(QStringLiteral("formats/bracken.tsv"))) << "bracken";
    }

    void nearMisses()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, result);
        const QString file = dir.filePath(QString::fromLatin1(QTest::currentDataTag()).replace(' ', '-'));
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(content);
        out.close();
        const QString found = detected(file);
        QVERIFY2(found.startsWith(result), qPrintable(found));
        // A refusal names every format it considered.
        if (found.contains(QLatin1String("not a Kraken-style report"))) {
            for (const InputFormat& format : InputFormat::all())
                QVERIFY2(found.contains(QStringLiteral("not %1 (").arg(format.description)), qPrintable(format.word));
        }
    }

    void unreadableFileIsRefused()
    {
        QVERIFY(detected(dir.filePath(QStringLiteral("missing"))).startsWith(QLatin1String("refused: cannot read")));
    }

    // The classifiers' real outputs beside the checkout, each told as the format that wrote it.
    void detectsRealFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("word");
        if (realDataPath().isEmpty())
            QSKIP("no real data beside this checkout");
        const QMap<QString, QString> byFolder{{"kraken2", "kreport"},   {"krakenuniq", "kreport"},
                                              {"centrifuge", "kreport"}, {"bracken", "bracken"},
                                              {"metaphlan", "metaphlan"}, {"kaiju", "kaiju"}};
        QDirIterator classifiers(realDataPath(QStringLiteral("classifiers")), QDir::Files, QDirIterator::Subdirectories);
        while (classifiers.hasNext()) {
            const QFileInfo file(classifiers.next());
            if (file.suffix() != QLatin1String("md"))
                QTest::newRow(qPrintable(file.fileName())) << file.filePath() << byFolder.value(file.dir().dirName());
        }
        // The classifier outputs among the taxon-id sources.
        const QMap<QString, QString> taxids{{"krakenpy_PlusPF-8.kraken_per_read.tsv", "kraken-reads"},
                                            {"krakenpy_Viral_1003835.kraken_per_read.tsv", "kraken-reads"},
                                            {"krakenpy_PlusPF-8.kraken_report_with_header.txt", "kreport"},
                                            {"nao_10170_kraken2_report_zerocounts.txt", "kreport"},
                                            {"taxpasta_2612_pe.kraken2.report.txt", "kreport"},
                                            {"taxpasta_test3.krakenuniq.report.txt", "kreport"},
                                            {"taxpasta_AD_pe.centrifuge.report.txt", "kreport"},
                                            {"taxpasta_barcode41.kaiju2table.txt", "kaiju"}};
        for (auto it = taxids.constBegin(); it != taxids.constEnd(); ++it)
            QTest::newRow(qPrintable(it.key())) << realDataPath(QStringLiteral("taxids/") + it.key()) << it.value();
        for (const QString& folder : {QStringLiteral("krona"), QStringLiteral("qiime")}) {
            for (const QString& name : QDir(realDataPath(folder)).entryList(QDir::Files)) {
                // The transposed table holds samples in rows: no format of ours.
                if (!name.contains(QLatin1String("mapping")))
                    QTest::newRow(qPrintable(name)) << realDataPath(folder + QLatin1Char('/') + name) << folder;
            }
        }
    }

    void detectsRealFiles()
    {
        QFETCH(QString, file);
        QFETCH(QString, word);
        QVERIFY(!file.isEmpty());
        QCOMPARE(detected(file), word);
    }

private:
    QTemporaryDir dir;
};

QTEST_GUILESS_MAIN(TestInputFormat)
#include "tst_inputformat.moc"
