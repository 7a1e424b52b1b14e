#include "ontology/buildersource.h"
#include "ontology/inputformat.h"
#include "ontology/nodekeys.h"
#include "ontology/sourcekrakenreads.h"
#include "tests/support/fixtures.h"
#include "tests/support/foldercase.h"
#include "tests/support/treetext.h"

#include <QtTest>

using namespace Zem::Ontology;
using namespace Sorvik::Test;

namespace {

const QString unclassified = QStringLiteral("unclassified");

QString formatFile(const QString& name)
{
    return fixturePath(QStringLiteral("formats/") + name);
}

} // namespace

// The readers of today's classifiers, on fixtures of each format and variant: the tree they
// make, the counts they give, and what they pass over.
class TestClassifierSources : public FolderCase
{
    Q_OBJECT
private slots:
    void init() { start(); }

    void pathFormats_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("keep");
        QTest::addColumn<QString>("tree");

        // Escherichia coli is 7 levels deep; Firmicutes, after it, steps back to level 3.
        const QString kraken2 = QStringLiteral(
            "root:10(unclassified:200 \"cellular organisms\":5(Bacteria:20(Proteobacteria:0(Gammaproteobacteria:30("
            "Enterobacteriaceae:70(Escherichia:100(\"Escherichia coli\":200)))) Firmicutes:180) Eukaryota:175) "
            "Viruses:10)");
        QTest::newRow("kraken 2, indentation stepping back") << "kreport" << "kraken2.kreport" << true << kraken2;
        QTest::newRow("kraken 2 without unclassified reads")
            << "kreport" << "kraken2.kreport" << false << QString(kraken2).remove(QStringLiteral("unclassified:200 "));
        QTest::newRow("kraken 1, ranks as dashes") << "kreport" << "kraken1.kreport" << true
                                                   << "root:3(unclassified:25 \"cellular organisms\":2(Bacteria:0("
                                                      "\"Escherichia coli\":70)))";
        QTest::newRow("minimizer columns") << "kreport" << "kraken2-minimizers.kreport" << true
                                           << "root:5(unclassified:10 Viruses:85)";
        QTest::newRow("krakenuniq header and comments")
            << "kreport" << "krakenuniq.report" << true
            << "root:15(unclassified:25 Viruses:0(\"Severe acute respiratory syndrome coronavirus 2\":160))";
        // The names are not indented: the depth column gives the tree.
        QTest::newRow("depth column") << "kreport" << "depth-column.kreport" << true
                                      << "root:1(unclassified:5 \"cellular organisms\":0(Eukaryota:4(\"Homo sapiens\":90)))";
        QTest::newRow("bracken's report") << "kreport" << "bracken.kreport" << true
                                          << "root:0(\"cellular organisms\":0(Bacteria:0(Escherichia:0(\"Escherichia "
                                             "coli\":150)) Eukaryota:0(\"Homo sapiens\":100)))";
        // Viruses' children were cut off: its clade reads become its own; no unclassified reads,
        // no slice.
        QTest::newRow("cut short") << "kreport" << "cut-short.kreport" << true
                                   << "root:0(Bacteria:10(\"Escherichia coli\":50) Viruses:40)";
        // Rows out of order; order, family and genus of E. coli are missing and made from the path.
        QTest::newRow("metaphlan 4") << "metaphlan" << "metaphlan4.txt" << true
                                     << "root(Bacteria:0(Proteobacteria:50000(Gammaproteobacteria:0(Enterobacterales:0("
                                        "Enterobacteriaceae:0(Escherichia:0(Escherichia_coli:0(SGB10068:300000)))))) "
                                        "Firmicutes:50000(Bacilli:400000)) unclassified:200000)";
        QTest::newRow("metaphlan 2, two columns")
            << "metaphlan" << "metaphlan2.txt" << true
            << "root(Bacteria:0(Bacteroidetes:600000 Firmicutes:0(Clostridia:150000(Clostridiales:0(Ruminococcaceae:0("
               "Faecalibacterium:0(Faecalibacterium_prausnitzii:0(GCF_000162015:250000))))))))";
    }

    void pathFormats()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        QFETCH(bool, keep);
        QFETCH(QString, tree);
        BuilderSource builder(output());
        builder.addSource(make(format, formatFile(file), keep));
        builder.load();
        QCOMPARE(describeTree(builder), tree);
    }

    // Compressed, and with Windows line ends, every fixture reads as it does plain.
    void variantsOfEveryFixture_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        const QDir formats(fixturePath(QStringLiteral("formats")));
        QCOMPARE(formats.entryList(QDir::Files).size(), fixtures().size());
        for (auto it = fixtures().constBegin(); it != fixtures().constEnd(); ++it)
            QTest::newRow(qPrintable(it.key())) << it.value() << it.key();
    }

    void variantsOfEveryFixture()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        QVERIFY(InputFormat::find(format));
        const QByteArray plain = fileContents(formatFile(file));
        QVERIFY(!plain.isEmpty());
        const QString expected = describeRead(format, write(plain));
        QVERIFY(expected.contains(QLatin1Char(':')) || expected.contains(QLatin1Char('=')));
        QCOMPARE(describeRead(format, write(QByteArray(plain).replace("\n", "\r\n"))), expected);
        QCOMPARE(describeRead(format, write(gzipped(plain))), expected);
    }

    // After counting, every taxon's total is its row's clade reads, and the root's adds the
    // unclassified reads; a report whose rows disagree says so once, naming the first.
    void kreportTotalsFollowTheCladeColumn_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("warning");
        QTest::newRow("whole report") << "kraken2.kreport" << "";
        QTest::newRow("cut short")
            << "cut-short.kreport"
            << "1 of 4 rows disagree with the rows below them, as in a cut or filtered report; the chart follows their "
               "clade reads (first: line 5: 'Viruses' has 40 clade reads, but its own and its children's add up to 0)";
    }

    void kreportTotalsFollowTheCladeColumn()
    {
        QFETCH(QString, file);
        QFETCH(QString, warning);
        BuilderSource builder(output());
        builder.addSource(make(QStringLiteral("kreport"), formatFile(file), true));
        builder.load();
        builder.count(false);
        qint64 unclassifiedReads = 0;
        qint64 rootClade = -1;
        for (const QByteArray& line : fileContents(formatFile(file)).split('\n')) {
            const QList<QByteArray> fields = line.split('\t');
            if (fields.size() < 6)
                continue;
            const QString taxid = QString::fromLatin1(fields.at(fields.size() - 2));
            const qint64 clade = fields.at(1).toLongLong();
            if (taxid == QLatin1String("0")) {
                unclassifiedReads = clade;
                continue;
            }
            const Builder::Node* node = builder.findNode(taxid);
            QVERIFY2(node, qPrintable(taxid));
            QCOMPARE(node->data.value(NodeKey::accumCount).toLongLong(), node == builder.getRoot() ? clade + unclassifiedReads : clade);
            if (node == builder.getRoot())
                rootClade = clade;
        }
        QVERIFY(rootClade > 0);
        const BuildReport report = builder.getReport();
        QCOMPARE(report.warnings, warning.isEmpty() ? QStringList() : QStringList{warning});
        QVERIFY(!report.hasSkips());
    }

    void pathFormatsAwkwardRows_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("tree");
        QTest::addColumn<QString>("firstSkip");

        // A parent with fewer clade reads than its children keeps none of its own, never fewer.
        QTest::newRow("kreport: children above their parent")
            << "kreport" << QByteArray("1\t10\t0\tR\t1\troot\n1\t10\t2\tD\t2\t  A\n1\t12\t12\tS\t3\t    B\n")
            << "root:0(A:0(B:12))" << "";
        QTest::newRow("kreport: several top rows share a root made for them")
            << "kreport" << QByteArray("1\t5\t5\tD\t2\tBacteria\n1\t3\t3\tD\t2157\tArchaea\n")
            << "root(Bacteria:5 Archaea:3)" << "";
        QTest::newRow("kreport: a repeated taxon id is not linked twice")
            << "kreport" << QByteArray("1\t9\t1\tR\t1\troot\n1\t4\t4\tS\t7\t  A\n1\t4\t4\tS\t7\t  A again\n")
            << "root:1(A:4 \"A again\":4)" << "";
        QTest::newRow("kreport: five columns") << "kreport" << QByteArray("1\t9\t9\tR\t1\troot\n1\t4\t4\t7\t  A\n")
                                               << "root:9" << "line 2: it has 5 columns, not 6 or more";
        QTest::newRow("kreport: negative count") << "kreport" << QByteArray("1\t-9\t0\tR\t1\troot\n") << "root"
                                                 << "line 1: '-9' is a negative count";
        QTest::newRow("kreport: count beyond any run")
            << "kreport" << QByteArray("1\t9223372036854775807\t0\tR\t1\troot\n") << "root"
            << "line 1: '9223372036854775807' is too large a count";
        QTest::newRow("kreport: empty file") << "kreport" << QByteArray() << "root" << "";
        QTest::newRow("metaphlan: children above their parent")
            << "metaphlan" << QByteArray("k__A\t10\nk__A|p__B\t10.5\n") << "root(A:0(B:105000))" << "";
        QTest::newRow("metaphlan: clade given twice") << "metaphlan" << QByteArray("k__A\t10\nk__A\t20\n") << "root(A:100000)"
                                                      << "line 2: the clade was given on line 1 already";
        QTest::newRow("metaphlan: no rank prefix") << "metaphlan" << QByteArray("Bacteria\t10\n") << "root"
                                                   << "line 1: 'Bacteria' is not a clade name with a rank prefix";
        QTest::newRow("metaphlan: negative share") << "metaphlan" << QByteArray("k__A\t-1\n") << "root"
                                                   << "line 1: '-1' is not an abundance";
    }

    void pathFormatsAwkwardRows()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, content);
        QFETCH(QString, tree);
        QFETCH(QString, firstSkip);
        BuilderSource builder(output());
        builder.addSource(make(format, write(content), true));
        builder.load();
        QCOMPARE(describeTree(builder), tree);
        QCOMPARE(builder.getReport().firstSkip, firstSkip);
        if (tree.contains(QLatin1Char(':'))) {
            builder.count(false);
            for (const QString& id : {QStringLiteral("2"), QStringLiteral("3")}) {
                if (const Builder::Node* node = builder.findNode(id))
                    QVERIFY(node->data.value(NodeKey::count).toLongLong() >= 0);
            }
        }
    }

    // Every clade's total is its own value, and the whole is 100 % (1 000 000); names lose their
    // rank prefix, ranks and taxon ids are kept.
    void metaphlanKeepsWhatTheProfileSays()
    {
        BuilderSource builder(output());
        builder.addSource(make(QStringLiteral("metaphlan"), formatFile(QStringLiteral("metaphlan4.txt")), true));
        builder.load();
        builder.count(false);
        QCOMPARE(builder.getRoot()->data.value(NodeKey::accumCount).toLongLong(), 1000000);
        QMap<QString, QString> found;
        for (const Builder::Node* node : builder.getRoot()->children) {
            for (const Builder::Node* level = node; level;
                 level = level->children.empty() ? nullptr : level->children.front()) {
                found.insert(level->data.value(NodeKey::name).toString(),
                             QStringList{level->data.value(NodeKey::accumCount).toString(),
                                         level->data.value(NodeKey::rank).toString(),
                                         level->data.value(NodeKey::taxid).toString()}
                                 .join(QLatin1Char(' ')));
            }
        }
        QCOMPARE(found.value(QStringLiteral("Bacteria")), QStringLiteral("800000 kingdom 2"));
        QCOMPARE(found.value(QStringLiteral("Proteobacteria")), QStringLiteral("350000 phylum 1224"));
        QCOMPARE(found.value(QStringLiteral("Escherichia")), QStringLiteral("300000 genus "));
        QCOMPARE(found.value(QStringLiteral("Escherichia_coli")), QStringLiteral("300000 species 562"));
        QCOMPARE(found.value(QStringLiteral("SGB10068")), QStringLiteral("300000 SGB 562"));
        QCOMPARE(found.value(unclassified), QStringLiteral("200000  "));
    }

    // Count formats only attach reads to taxon ids; unclassified reads to "unclassified", and
    // reads a table places above its rank to the root (1).
    void countFormats_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("keep");
        QTest::addColumn<QString>("counts");
        QTest::newRow("bracken") << "bracken" << "bracken.tsv" << true << "562=150 9606=100";
        QTest::newRow("kraken reads") << "kraken-reads" << "kraken2.reads" << true << "561=1 562=2 9606=1 unclassified=2";
        QTest::newRow("kraken reads without unclassified") << "kraken-reads" << "kraken2.reads" << false << "561=1 562=2 9606=1";
        QTest::newRow("kraken reads with names") << "kraken-reads" << "kraken2-names.reads" << true << "562=2 9606=1 unclassified=1";
        QTest::newRow("kaiju") << "kaiju" << "kaiju.tsv" << true << "1=10 562=50 9606=20 unclassified=20";
        QTest::newRow("centrifuge") << "centrifuge" << "centrifuge.tsv" << true << "562=70 9606=30";
    }

    void countFormats()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        QFETCH(bool, keep);
        QFETCH(QString, counts);
        QCOMPARE(describeCounts(format, formatFile(file), keep), counts);
    }

    void countFormatsPassOverMalformedLines_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("counts");
        QTest::addColumn<qint64>("skipped");
        QTest::addColumn<QString>("firstSkip");
        QTest::newRow("kraken reads")
            << "kraken-reads" << QByteArray("C\tr1\t562\t9\nX\tr2\t562\t9\n\nC\tr3\nC\tr4\tabc\t9\nC\tr5\tE. coli (taxid 562)\n")
            << "562=2" << qint64(3) << "line 2: it does not start with C or U and a TAB";
        QTest::newRow("kraken reads: a name in parentheses")
            << "kraken-reads" << QByteArray("C\tr1\tA (B) (taxid 9606)\t9\nC\tr2\tA (taxid x)\t9\n") << "9606=1" << qint64(1)
            << "line 2: 'A (taxid x)' is not a taxon id";
        QTest::newRow("bracken: negative and missing counts")
            << "bracken" << fileContents(formatFile(QStringLiteral("bracken.tsv"))) + "X\t561\tS\t1\t1\t-4\t0\nY\t561\n"
            << "562=150 9606=100" << qint64(2) << "line 4: '-4' is a negative count";
        QTest::newRow("kaiju: an id that is no number")
            << "kaiju" << QByteArray("file\tpercent\treads\ttaxon_id\ttaxon_name\nf\t1\t5\tx12\tA\nf\t1\t6\t0\tU\n") << "unclassified=6"
            << qint64(1) << "line 2: 'x12' is not a taxon id";
        QTest::newRow("centrifuge without its header")
            << "centrifuge" << QByteArray("Escherichia coli\t562\tspecies\t4641652\t70\t60\t0.7\n") << "" << qint64(1)
            << "line 1: it is no header with the columns taxID and numReads";
    }

    void countFormatsPassOverMalformedLines()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, content);
        QFETCH(QString, counts);
        QFETCH(qint64, skipped);
        QFETCH(QString, firstSkip);
        BuildReport report;
        QCOMPARE(describeCounts(format, write(content), true, &report), counts);
        QCOMPARE(report.linesSkipped, skipped);
        QCOMPARE(report.firstSkip, firstSkip);
    }

    void cancelStopsPerReadInput()
    {
        QByteArray lines;
        for (int i = 0; i < 20000; ++i)
            lines += "C\tread" + QByteArray::number(i) + "\t562\t150\t562:116\n";
        BuilderSource builder(output());
        builder.addSource(make(QStringLiteral("kraken-reads"), write(lines), true));
        int asked = 0;
        builder.setCancelCheck([&asked] { return ++asked >= 2; });
        QVERIFY_EXCEPTION_THROWN(builder.load(), Builder::CancelledException);
        QVERIFY(!builder.findNode(QStringLiteral("562")));
    }

private:
    // Every fixture of tests/data/formats and the format it is written in.
    static const QMap<QString, QString>& fixtures()
    {
        static const QMap<QString, QString> files{
            {"kraken2.kreport", "kreport"},      {"kraken2-minimizers.kreport", "kreport"},
            {"kraken1.kreport", "kreport"},      {"krakenuniq.report", "kreport"},
            {"depth-column.kreport", "kreport"}, {"bracken.kreport", "kreport"},
            {"cut-short.kreport", "kreport"},    {"metaphlan4.txt", "metaphlan"},
            {"metaphlan2.txt", "metaphlan"},     {"bracken.tsv", "bracken"},
            {"kraken2.reads", "kraken-reads"},   {"kraken2-names.reads", "kraken-reads"},
            {"kaiju.tsv", "kaiju"},              {"centrifuge.tsv", "centrifuge"},
        };
        return files;
    }

    static std::unique_ptr<Source> make(const QString& word, const QString& file, bool keep)
    {
        InputFormat::Options options;
        options.keepUnclassified = keep;
        return InputFormat::find(word)->makeSource(file, options);
    }

    QString output() const { return path(QStringLiteral("out.ontology")); }

    QString write(const QByteArray& content, const QString& name = QStringLiteral("input.txt")) const
    {
        return FolderCase::write(name, content);
    }

    // The counts a source gives the ids it knows of, in the order of the ids.
    QString describeCounts(const QString& format, const QString& file, bool keep, BuildReport* report = nullptr)
    {
        BuilderSource builder(output());
        builder.addSource(make(format, file, keep));
        builder.load();
        if (report)
            *report = builder.getReport();
        QStringList counts;
        for (const QString& id : {QStringLiteral("1"), QStringLiteral("561"), QStringLiteral("562"), QStringLiteral("9606"), unclassified}) {
            if (const Builder::Node* node = builder.findNode(id))
                counts << id + QLatin1Char('=') + node->data.value(NodeKey::count).toString();
        }
        return counts.join(QLatin1Char(' '));
    }

    // The tree of a path format, or the counts of a count format.
    QString describeRead(const QString& format, const QString& file)
    {
        if (InputFormat::find(format)->needsTaxonomy)
            return describeCounts(format, file, true);
        BuilderSource builder(output());
        builder.addSource(make(format, file, true));
        builder.load();
        return describeTree(builder);
    }
};

QTEST_GUILESS_MAIN(TestClassifierSources)
#include "tst_classifiersources.moc"
