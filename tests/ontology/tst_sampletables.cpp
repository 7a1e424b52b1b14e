#include "ontology/buildersource.h"
#include "ontology/inputformat.h"
#include "ontology/inputsample.h"
#include "ontology/nodekeys.h"
#include "tests/support/fixtures.h"
#include "tests/support/treetext.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using namespace Zem::Ontology;
using namespace Sorvik::Test;

namespace {

QString tableFile(const QString& name)
{
    return fixturePath(QStringLiteral("tables/") + name);
}

const QByteArray kreportHeader("perc\ttot_all\ttot_lvl\t1_all\t1_lvl\t2_all\t2_lvl\tlvl_type\ttaxid\tname\n");
const QByteArray metaphlanHeader("clade_name\tNCBI_tax_id\ts1\ts2\n");
const QByteArray brackenHeader("name\ttaxonomy_id\ttaxonomy_lvl\ts1_num\ts1_frac\ts2_num\ts2_frac\n");

} // namespace

// The tables that hold many samples side by side: each column read as one sample gives the chart
// that sample's own file would, its totals are its column's, and what is wrong in one sample's
// column is passed over (and said) for that sample alone.
class TestSampleTables : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(dir.isValid()); }

    void columnNames_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("combined reports name their samples in # lines")
            << "kreport-combined" << tableFile("combined.kreport") << QStringList{"gut_A", "gut_B"};
        QTest::newRow("combined reports without them, as the tool numbers them")
            << "kreport-combined" << write("#Number of Samples: 2\n" + kreportHeader) << QStringList{"S1", "S2"};
        QTest::newRow("combined reports, fewer names than samples")
            << "kreport-combined" << write("#only_one\tx.kreport\n" + kreportHeader) << QStringList{"S1", "S2"};
        QTest::newRow("merged metaphlan 3, after the taxon-id column")
            << "metaphlan-merged" << tableFile("merged-metaphlan3.txt") << QStringList{"stool_1", "stool_2", "stool_3"};
        QTest::newRow("merged metaphlan 4, no taxon-id column")
            << "metaphlan-merged" << tableFile("merged-metaphlan4.txt") << QStringList{"A_profile", "B_profile"};
        QTest::newRow("merged metaphlan 2, ID") << "metaphlan-merged" << write("ID\tx\ty\nk__A\t1\t2\n") << QStringList{"x", "y"};
        QTest::newRow("bracken: the _num columns without their suffix")
            << "bracken-combined" << tableFile("combined-bracken.tsv") << QStringList{"gut_A.bracken", "gut_B.bracken"};
        QTest::newRow("no header") << "bracken-combined" << write("Escherichia coli\t562\tS\t150\t0.6\n") << QStringList();
        QTest::newRow("empty file") << "metaphlan-merged" << write("") << QStringList();
        QTest::newRow("missing file") << "kreport-combined" << dir.filePath(QStringLiteral("missing")) << QStringList();
    }

    void columnNames()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        QFETCH(QStringList, names);
        QCOMPARE(InputFormat::find(format)->readColumns(file), names);
    }

    void eachColumnIsOneSample_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("column");
        QTest::addColumn<bool>("keep");
        QTest::addColumn<QString>("tree");
        const QString kreport = tableFile("combined.kreport");
        // Eukaryota and Viruses hold none of gut_A's reads: they are not in its chart.
        QTest::newRow("kreport, first sample")
            << "kreport-combined" << kreport << 0 << true
            << "root:5(unclassified:10 \"cellular organisms\":0(Bacteria:5(\"Escherichia coli\":60 Firmicutes:20)))";
        QTest::newRow("kreport, second sample")
            << "kreport-combined" << kreport << 1 << true
            << "root:0(unclassified:50 \"cellular organisms\":0(Bacteria:10(\"Escherichia coli\":30) Eukaryota:0(\"Homo "
               "sapiens\":60)) Viruses:50)";
        QTest::newRow("kreport without unclassified reads")
            << "kreport-combined" << kreport << 1 << false
            << "root:0(\"cellular organisms\":0(Bacteria:10(\"Escherichia coli\":30) Eukaryota:0(\"Homo sapiens\":60)) "
               "Viruses:50)";
        const QString metaphlan = tableFile("merged-metaphlan3.txt");
        QTest::newRow("metaphlan, first sample")
            << "metaphlan-merged" << metaphlan << 0 << true
            << "root(Bacteria:0(Firmicutes:0(Bacilli:600000) Bacteroidetes:300000) unclassified:100000)";
        // The levels between Bacteroidetes and the species are made from the path.
        QTest::newRow("metaphlan, missing levels made")
            << "metaphlan-merged" << metaphlan << 1 << true
            << "root(Bacteria:0(Firmicutes:250000 Bacteroidetes:0(Bacteroidia:0(Bacteroidales:0(Bacteroidaceae:0("
               "Bacteroides:0(Bacteroides_fragilis:750000)))))))";
        QTest::newRow("metaphlan, a sample of one clade") << "metaphlan-merged" << metaphlan << 2 << true
                                                          << "root(Archaea:1000000)";
        QTest::newRow("metaphlan without unclassified reads")
            << "metaphlan-merged" << metaphlan << 0 << false << "root(Bacteria:0(Firmicutes:0(Bacilli:600000) Bacteroidetes:300000))";
        QTest::newRow("metaphlan 4")
            << "metaphlan-merged" << tableFile("merged-metaphlan4.txt") << 1 << true
            << "root(Bacteria:600000(Proteobacteria:400000))";
    }

    void eachColumnIsOneSample()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        QFETCH(int, column);
        QFETCH(bool, keep);
        QFETCH(QString, tree);
        BuilderSource builder(output());
        builder.addSource(make(format, file, column, keep));
        builder.load();
        QCOMPARE(describeTree(builder), tree);
        QVERIFY(!builder.getReport().hasSkips());
        QVERIFY(builder.getReport().warnings.isEmpty());
    }

    // Count formats attach each sample's reads to its taxon ids; a taxon it lacks gets none.
    void brackenColumnsCountTheirReads_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("counts");
        QTest::newRow("first sample") << 0 << "562=150 9606=100";
        QTest::newRow("second sample") << 1 << "562=30 817=60";
    }

    void brackenColumnsCountTheirReads()
    {
        QFETCH(int, column);
        QFETCH(QString, counts);
        BuilderSource builder(output());
        builder.addSource(make(QStringLiteral("bracken-combined"), tableFile(QStringLiteral("combined-bracken.tsv")), column, true));
        builder.load();
        QCOMPARE(describeCounts(builder), counts);
    }

    // After counting, every taxon's total is its row's clade reads in the chosen column, and
    // the root's adds the sample's unclassified reads.
    void kreportTotalsAreTheColumns()
    {
        const QString file = tableFile(QStringLiteral("combined.kreport"));
        for (int column = 0; column < 2; ++column) {
            BuilderSource builder(output());
            builder.addSource(make(QStringLiteral("kreport-combined"), file, column, true));
            builder.load();
            builder.count(false);
            qint64 unclassified = 0;
            int checked = 0;
            for (const QByteArray& line : fileContents(file).split('\n')) {
                const QList<QByteArray> fields = line.split('\t');
                if (fields.size() != 10 || line.startsWith("perc"))
                    continue;
                const qint64 clade = fields.at(3 + 2 * column).toLongLong();
                const QString taxid = QString::fromLatin1(fields.at(8));
                if (taxid == QLatin1String("0")) {
                    unclassified = clade;
                    continue;
                }
                const Builder::Node* node = builder.findNode(taxid);
                QCOMPARE(node != nullptr, clade > 0);
                if (!node)
                    continue;
                ++checked;
                QCOMPARE(node->data.value(NodeKey::accumCount).toLongLong(),
                         node == builder.getRoot() ? clade + unclassified : clade);
            }
            QCOMPARE(checked, column == 0 ? 5 : 7);
        }
    }

    // Every clade's total is its value in the column, times 10 000.
    void metaphlanTotalsAreTheColumns()
    {
        const QString file = tableFile(QStringLiteral("merged-metaphlan3.txt"));
        for (int column = 0; column < 3; ++column) {
            BuilderSource builder(output());
            builder.addSource(make(QStringLiteral("metaphlan-merged"), file, column, true));
            builder.load();
            builder.count(false);
            QCOMPARE(builder.getRoot()->data.value(NodeKey::accumCount).toLongLong(), 1000000);
            QHash<QString, qint64> byTaxid;
            collectTaxids(builder.getRoot(), byTaxid);
            for (const QByteArray& line : fileContents(file).split('\n')) {
                const QList<QByteArray> fields = line.split('\t');
                if (fields.size() != 5 || !line.startsWith("k__"))
                    continue;
                const double value = fields.at(2 + column).toDouble();
                const QString taxid = QString::fromLatin1(fields.at(1).split('|').last());
                QCOMPARE(byTaxid.value(taxid, 0), std::llround(value * 10000));
            }
        }
    }

    // What is wrong in one sample's value is passed over for it alone; what is wrong with the
    // row is passed over for every sample.
    void awkwardRows_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("tree");
        QTest::addColumn<QString>("firstSkip");
        const QByteArray badCell = kreportHeader + "90\t30\t5\t20\t5\t10\t0\tR\t1\troot\n"
                                                   "9\t25\t25\tx\t15\t10\t10\tS\t562\t  Escherichia coli\n";
        QTest::newRow("kreport: a bad value in another sample") << "kreport-combined" << badCell << 1
                                                                << "root:0(\"Escherichia coli\":10)" << "";
        QTest::newRow("kreport: a bad value in this sample")
            << "kreport-combined" << badCell << 0 << "root:20" << "line 3: 'x' is not a count";
        QTest::newRow("kreport: a row short of a sample")
            << "kreport-combined" << kreportHeader + "90\t30\t5\t20\t5\tR\t1\troot\n" << 0 << "root"
            << "line 2: it has 8 columns, not 10";
        QTest::newRow("kreport: a zero clade whose child has reads stays")
            << "kreport-combined"
            << kreportHeader + "1\t9\t0\t9\t0\t0\t0\tR\t1\troot\n1\t9\t0\t0\t0\t0\t0\tD\t2\t  A\n1\t9\t9\t9\t9\t0\t0\tS\t3\t    B\n"
            << 0 << "root:9(A:0(B:9))" << "";
        QTest::newRow("kreport: a bad value above the sample's reads")
            << "kreport-combined"
            << kreportHeader + "1\t9\t0\t9\t0\t0\t0\tR\t1\troot\n1\t9\t0\tx\t0\t0\t0\tD\t2\t  A\n1\t9\t9\t9\t9\t0\t0\tS\t3\t    B\n"
            << 0 << "root:9(A:0(B:9))" << "line 3: 'x' is not a count";
        QTest::newRow("kreport: no header") << "kreport-combined" << QByteArray("1\t9\t0\tR\t1\troot\n") << 0 << "root"
                                            << "line 1: it is no header of combined reports";
        QTest::newRow("kreport: a sample beyond the table")
            << "kreport-combined" << kreportHeader + "1\t9\t9\t4\t4\t5\t5\tR\t1\troot\n" << 2 << "root"
            << "line 1: there is no sample 3: the table has 2";
        QTest::newRow("metaphlan: a bad value in another sample")
            << "metaphlan-merged" << metaphlanHeader + "k__A\t2\t-5\t100\n" << 1 << "root(A:1000000)" << "";
        QTest::newRow("metaphlan: a bad value in this sample")
            << "metaphlan-merged" << metaphlanHeader + "k__A\t2\t-5\t100\n" << 0 << "root" << "line 2: '-5' is not an abundance";
        QTest::newRow("metaphlan: a clade without a rank")
            << "metaphlan-merged" << metaphlanHeader + "Bacteria\t2\t5\t100\nk__B\t3\t1\t1\n" << 1 << "root(B:10000)"
            << "line 2: 'Bacteria' is not a clade name with a rank prefix";
        QTest::newRow("metaphlan: a clade given twice")
            << "metaphlan-merged" << metaphlanHeader + "k__A\t2\t10\t5\nk__A\t2\t20\t0\n" << 0 << "root(A:100000)"
            << "line 3: the clade was given on line 2 already";
        // Where only one of the two rows holds the sample, nothing is given twice.
        QTest::newRow("metaphlan: a clade given twice, once with 0")
            << "metaphlan-merged" << metaphlanHeader + "k__A\t2\t10\t5\nk__A\t2\t20\t0\n" << 1 << "root(A:50000)" << "";
        QTest::newRow("bracken: a bad count in this sample")
            << "bracken-combined" << brackenHeader + "E\t562\tS\t-3\t0\t4\t1\n" << 0 << "" << "line 2: '-3' is a negative count";
        QTest::newRow("bracken: a bad count in another sample")
            << "bracken-combined" << brackenHeader + "E\t562\tS\t-3\t0\t4\t1\n" << 1 << "562=4" << "";
        QTest::newRow("bracken: no taxon id") << "bracken-combined" << brackenHeader + "E\tx\tS\t3\t0\t4\t1\n" << 1 << ""
                                              << "line 2: 'x' is not a taxon id";
        QTest::newRow("empty file") << "bracken-combined" << QByteArray() << 0 << "" << "";
    }

    void awkwardRows()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, content);
        QFETCH(int, column);
        QFETCH(QString, tree);
        QFETCH(QString, firstSkip);
        BuilderSource builder(output());
        builder.addSource(make(format, write(content), column, true));
        builder.load();
        QCOMPARE(InputFormat::find(format)->needsTaxonomy ? describeCounts(builder) : describeTree(builder), tree);
        QCOMPARE(builder.getReport().firstSkip, firstSkip);
        QCOMPARE(builder.getReport().linesSkipped, qint64(firstSkip.isEmpty() ? 0 : 1));
    }

    // Compressed, and with Windows line ends, every table reads as it does plain.
    void variantsOfEveryTable_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        QTest::newRow("kreport") << "kreport-combined" << "combined.kreport";
        QTest::newRow("metaphlan 3") << "metaphlan-merged" << "merged-metaphlan3.txt";
        QTest::newRow("metaphlan 4") << "metaphlan-merged" << "merged-metaphlan4.txt";
        QTest::newRow("bracken") << "bracken-combined" << "combined-bracken.tsv";
    }

    void variantsOfEveryTable()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        const QByteArray plain = fileContents(tableFile(file));
        const QString expected = describeRead(format, write(plain, QStringLiteral("plain")));
        QVERIFY(expected.contains(QLatin1Char(':')) || expected.contains(QLatin1Char('=')));
        QCOMPARE(describeRead(format, write(QByteArray(plain).replace("\n", "\r\n"), QStringLiteral("crlf"))), expected);
        QCOMPARE(describeRead(format, write(gzipped(plain), QStringLiteral("gzip"))), expected);
    }

    // The sources of one file's columns share one reading of it: once the first has read it,
    // the others need the file no longer.
    void columnsShareOneReading()
    {
        const QString file = write(fileContents(tableFile(QStringLiteral("merged-metaphlan3.txt"))));
        std::vector<std::unique_ptr<Source>> sources;
        for (int column = 0; column < 3; ++column)
            sources.push_back(make(QStringLiteral("metaphlan-merged"), file, column, true));
        QStringList trees;
        for (std::unique_ptr<Source>& source : sources) {
            BuilderSource builder(output());
            builder.addSource(std::move(source));
            builder.load();
            trees << describeTree(builder);
            QFile::remove(file);
        }
        QCOMPARE(trees.value(2), QStringLiteral("root(Archaea:1000000)"));
        QVERIFY(trees.value(1).contains(QLatin1String("Bacteroides_fragilis:750000")));
        // Once no source holds it, the file is read afresh.
        QFile copy(file);
        QVERIFY(copy.open(QIODevice::WriteOnly));
        copy.write(metaphlanHeader + "k__A\t2\t100\t0\n");
        copy.close();
        BuilderSource builder(output());
        builder.addSource(make(QStringLiteral("metaphlan-merged"), file, 0, true));
        builder.load();
        QCOMPARE(describeTree(builder), QStringLiteral("root(A:1000000)"));
    }

    // The samples of one chart share its tree: a clade or taxon is one node, whichever samples
    // hold it, and each sample's total is its own.
    void samplesOfOneChartShareTheTree_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("samples");
        QTest::addColumn<QString>("name");
        QTest::newRow("metaphlan") << "metaphlan-merged" << "merged-metaphlan3.txt" << 3 << "Bacteria";
        QTest::newRow("kreport") << "kreport-combined" << "combined.kreport" << 2 << "Escherichia coli";
    }

    void samplesOfOneChartShareTheTree()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        QFETCH(int, samples);
        QFETCH(QString, name);
        BuilderSource builder(output());
        for (int column = 0; column < samples; ++column)
            builder.addSample(QStringLiteral("S%1").arg(column), make(format, tableFile(file), column, true));
        builder.load();
        builder.count(true);
        QCOMPARE(countNamed(builder.getRoot(), name), 1);
        QVERIFY(!builder.getReport().hasSkips());
    }

    // A cancelled reading leaves nothing behind: the next source reads the table again.
    void cancelledReadingIsReadAgain()
    {
        QByteArray table = kreportHeader + "100\t40000\t0\t20000\t0\t20000\t0\tR\t1\troot\n";
        for (int i = 0; i < 20000; ++i)
            table += "0\t2\t2\t1\t1\t1\t1\tS\t" + QByteArray::number(100 + i) + "\t  t" + QByteArray::number(i) + "\n";
        const QString file = write(table);
        std::unique_ptr<Source> first = make(QStringLiteral("kreport-combined"), file, 0, true);
        std::unique_ptr<Source> second = make(QStringLiteral("kreport-combined"), file, 1, true);
        {
            BuilderSource builder(output());
            builder.addSource(std::move(first));
            int asked = 0;
            builder.setCancelCheck([&asked] { return ++asked >= 2; });
            QVERIFY_EXCEPTION_THROWN(builder.load(), Builder::CancelledException);
        }
        BuilderSource builder(output());
        builder.addSource(std::move(second));
        builder.load();
        builder.count(false);
        QCOMPARE(builder.getRoot()->data.value(NodeKey::accumCount).toLongLong(), 20000);
        QCOMPARE(builder.getReport().linesRead, qint64(20002));
    }

private:
    static std::unique_ptr<Source> make(const QString& word, const QString& file, int column, bool keep)
    {
        InputFormat::Options options;
        options.column = column;
        options.keepUnclassified = keep;
        return InputFormat::find(word)->makeSource(file, options);
    }

    static int countNamed(const Builder::Node* node, const QString& name)
    {
        int found = node->data.value(NodeKey::name).toString() == name ? 1 : 0;
        for (const Builder::Node* child : node->children)
            found += countNamed(child, name);
        return found;
    }

    static void collectTaxids(const Builder::Node* node, QHash<QString, qint64>& byTaxid)
    {
        const QString taxid = node->data.value(NodeKey::taxid).toString();
        if (!taxid.isEmpty())
            byTaxid.insert(taxid, node->data.value(NodeKey::accumCount).toLongLong());
        for (const Builder::Node* child : node->children)
            collectTaxids(child, byTaxid);
    }

    QString output() { return dir.filePath(QStringLiteral("out%1.ontology").arg(++outputs)); }

    // Each input a file of its own: the data tables write theirs before the test reads them.
    QString write(const QByteArray& content, const QString& name = QString())
    {
        QFile file(dir.filePath(name.isEmpty() ? QStringLiteral("input%1.txt").arg(++inputs) : name + QString::number(++inputs)));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return QString();
        return file.fileName();
    }

    // The counts of the ids the tables here use, in that order.
    static QString describeCounts(const BuilderSource& builder)
    {
        QStringList counts;
        for (const QString& id : {QStringLiteral("562"), QStringLiteral("817"), QStringLiteral("9606"), QStringLiteral("unclassified")}) {
            if (const Builder::Node* node = builder.findNode(id))
                counts << id + QLatin1Char('=') + node->data.value(NodeKey::count).toString();
        }
        return counts.join(QLatin1Char(' '));
    }

    QString describeRead(const QString& format, const QString& file)
    {
        BuilderSource builder(output());
        builder.addSource(make(format, file, 0, true));
        builder.load();
        return InputFormat::find(format)->needsTaxonomy ? describeCounts(builder) : describeTree(builder);
    }

    QTemporaryDir dir;
    int outputs = 0;
    int inputs = 0;
};

QTEST_GUILESS_MAIN(TestSampleTables)
#include "tst_sampletables.moc"
