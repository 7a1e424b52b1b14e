#include "ontology/buildersource.h"
#include "ontology/ontology.h"
#include "ontology/sourcebcp.h"
#include "ontology/sourcefrequencies.h"
#include "ontology/sourcekronatext.h"
#include "ontology/sourcemgtaxatext.h"
#include "ontology/sourceontology.h"
#include "ontology/sourceqiimetext.h"
#include "nu/linereader.h"
#include "tests/support/fixtures.h"
#include "tests/support/foldercase.h"
#include "tests/support/taxdump.h"
#include "tests/support/treeliteral.h"
#include "tests/support/treetext.h"

#include <QSignalSpy>
#include <QtTest>

using namespace Zem::Ontology;
using namespace Sorvik::Test;

class TestSources : public FolderCase
{
    Q_OBJECT
private slots:
    void init() { start(); }

    // Path formats: a Krona text file (column -1) or a QIIME table's value column.
    void pathFiles_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("tree");

        QTest::newRow("krona: inner node with own count") << QByteArray("18\td__Bacteria\n433\td__Bacteria\tsg__CCD\n")
            << -1 << "root(d__Bacteria:18(sg__CCD:433))";
        QTest::newRow("krona: empty rank under two parents")
            << QByteArray("2\tsk__Archaea\tk__\tp__A\n4\tsk__Bacteria\tk__\tp__B\n")
            << -1 << "root(sk__Archaea(k__(p__A:2)) sk__Bacteria(k__(p__B:4)))";
        QTest::newRow("krona: same name on two paths")
            << QByteArray("2\tX\tY\n3\tZ\tX\n") << -1 << "root(X(Y:2) Z(X:3))";
        QTest::newRow("krona: name root is not the root")
            << QByteArray("7\troot\tViruses\n") << -1 << "root(root(Viruses:7))";
        QTest::newRow("krona: count and empty path")
            << QByteArray("319\t\n20\tBacteria") << -1 << "root:319(Bacteria:20)";
        QTest::newRow("krona: no count") << QByteArray("Bacteria\tFirmicutes\n") << -1 << "root";
        QTest::newRow("krona: crlf") << QByteArray("3\tA\tB\r\n4\tA\r\n") << -1 << "root(A:4(B:3))";
        QTest::newRow("krona: repeated path adds up")
            << QByteArray("3\tA\tB\n4\tA\tB\n2\tA\n1\tA\n") << -1 << "root(A:3(B:7))";
        QTest::newRow("krona: binary") << QByteArray("\x00\x01\xff\xfe\t\x00\n\x80", 8) << -1 << "root";

        const QByteArray header("Taxon\tS1\tS2\n");
        QTest::newRow("qiime: path to Other") << header + "k__Bacteria;p__Firmicutes;Other\t0.5\t0.25\n" << 0
            << "root(\"k  Bacteria\"(\"p  Firmicutes\":500))";
        QTest::newRow("qiime: second column") << header + "k__Bacteria;p__Firmicutes\t0.5\t0.25\n" << 1
            << "root(\"k  Bacteria\"(\"p  Firmicutes\":250))";
        QTest::newRow("qiime: short line skipped") << header + "k__Bacteria\t0.5\nk__Archaea\t0.1\t0.2\n" << 1
            << "root(\"k  Archaea\":200)";
        QTest::newRow("qiime: value not a number keeps the path") << header + "k__Bacteria;p__X\tNA\t1\n" << 0
            << "root(\"k  Bacteria\"(\"p  X\"))";
        QTest::newRow("qiime: Other at the top counts for the root")
            << header + "Other;Other\t0.3\t0\n" << 0 << "root:300";
        QTest::newRow("qiime: newer header after comments")
            << QByteArray("# Constructed from biom file\n#OTU ID\tS1\nk__Bacteria\t7.5e-01\n") << 0
            << "root(\"k  Bacteria\":750)";
        QTest::newRow("qiime: truncated toward zero") << header + "A\t0.0129\t0\n" << 0 << "root(A:12)";
        QTest::newRow("qiime: repeated path adds up")
            << header + "A;B\t0.25\t0\nA;B\t0.5\t0\n" << 0 << "root(A(B:750))";
    }

    void pathFiles()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, column);
        QFETCH(QString, tree);
        const QString file = write(content);
        if (column < 0)
            QCOMPARE(describeRead(std::make_unique<SourceKronaText>(file)), tree);
        else
            QCOMPARE(describeRead(std::make_unique<SourceQiimeText>(file, column)), tree);
    }

    void qiimePercentages_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("second");
        QTest::addColumn<QString>("percentage");
        const QByteArray header("Taxon\tS1\n");
        QTest::newRow("as written") << header + "A\t7.5e-01\n" << QByteArray() << "7.5e-01";
        QTest::newRow("repeated path adds up") << header + "A\t0.25\nA\t0.5\nB\t0.125\n" << QByteArray() << "0.75";
        QTest::newRow("a second table adds up") << header + "A\t0.25\n" << header + "A\t0.5\n" << "0.75";
    }

    // The value a path keeps beside its count, summed as its count is.
    void qiimePercentages()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, second);
        QFETCH(QString, percentage);
        BuilderSource builder(path(QStringLiteral("out.ontology")));
        builder.addSource(std::make_unique<SourceQiimeText>(write(content, QStringLiteral("first.txt")), 0));
        if (!second.isEmpty())
            builder.addSource(std::make_unique<SourceQiimeText>(write(second, QStringLiteral("second.txt")), 0));
        builder.load();
        const Builder::Node* a = builder.getRoot()->children.at(0);
        QCOMPARE(a->data.value(QStringLiteral("name")).toString(), QStringLiteral("A"));
        QCOMPARE(a->data.value(QStringLiteral("percentage")).toString(), percentage);
    }

    void qiimeColumnNames_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("classic header") << QByteArray("Taxon\tS1\tS2\nA\t1\t2\n") << QStringList{"S1", "S2"};
        QTest::newRow("after comments") << QByteArray("# Constructed from biom file\n#OTU ID\tPC.354\tPC.355")
                                        << QStringList{"PC.354", "PC.355"};
        QTest::newRow("binary") << QByteArray(3000, '\0') << QStringList();
    }

    void qiimeColumnNames()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, names);
        QCOMPARE(SourceQiimeText::readColumnNames(write(content)), names);
    }

    void countsById_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("counts");
        const QByteArray header("id\tlen\ttaxid\tname\n");
        QTest::newRow("id and count")
            << "counts" << QByteArray("9606\t12\n562\t3\n9606\t1\n") << QStringList{"562=3", "9606=13"};
        QTest::newRow("mgtaxa rows") << "mgtaxa" << header + "s1\t100\t562\tE\ns2\t80\t562\tE\ns3\t90\t9606\tH\n"
                                     << QStringList{"562=2", "9606=1"};
        QTest::newRow("mgtaxa short row adds the empty id") << "mgtaxa" << header + "s1\t100\n" << QStringList{"=1"};
        QTest::newRow("mgtaxa crlf") << "mgtaxa" << QByteArray("id\tlen\ttaxid\r\ns1\t1\t562\r\n") << QStringList{"562=1"};
    }

    void countsById()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, content);
        QFETCH(QStringList, counts);
        BuilderSource builder(path(QStringLiteral("out.ontology")));
        if (format == QLatin1String("mgtaxa"))
            builder.addSource(std::make_unique<SourceMgtaxaText>(write(content)));
        else
            builder.addSource(std::make_unique<SourceFrequencies>(write(content), 2));
        builder.load();
        // Counts only: the taxonomy gives the tree.
        QVERIFY(!builder.getRoot());
        QStringList found;
        for (const QString& id : {QStringLiteral("562"), QStringLiteral("9606"), QString()}) {
            if (Builder::Node* node = builder.findNode(id))
                found << id + QLatin1Char('=') + node->data.value(QStringLiteral("count")).toString();
        }
        QCOMPARE(found, counts);
    }

    void twoPathFilesInOneBuilder_data()
    {
        QTest::addColumn<QString>("firstFormat");
        QTest::addColumn<QByteArray>("first");
        QTest::addColumn<QString>("secondFormat");
        QTest::addColumn<QByteArray>("second");
        QTest::addColumn<QString>("tree");
        QTest::addColumn<int>("nodes");

        QTest::newRow("two krona files: a shared path adds up, the others stay apart")
            << "krona" << QByteArray("5\tBacteria\tFirmicutes\n1\tBacteria\tProteobacteria\n") << "krona"
            << QByteArray("3\tArchaea\n2\tBacteria\tFirmicutes\n")
            << "root(Bacteria(Firmicutes:7 Proteobacteria:1) Archaea:3)" << 5;
        QTest::newRow("the second file's first node is not the first file's")
            << "krona" << QByteArray("1\tX\n") << "krona" << QByteArray("4\tY\tZ\n") << "root(X:1 Y(Z:4))" << 4;
        QTest::newRow("krona then qiime")
            << "krona" << QByteArray("2\tA\tB\n") << "qiime" << QByteArray("Taxon\tS1\nC;D\t0.001\n")
            << "root(A(B:2) C(D:1))" << 5;
    }

    // Several samples in one chart rely on this: no id stands for two paths.
    void twoPathFilesInOneBuilder()
    {
        QFETCH(QString, firstFormat);
        QFETCH(QByteArray, first);
        QFETCH(QString, secondFormat);
        QFETCH(QByteArray, second);
        QFETCH(QString, tree);
        QFETCH(int, nodes);
        BuilderSource builder(path(QStringLiteral("out.ontology")));
        builder.addSource(makeSource(firstFormat, write(first, QStringLiteral("first.txt"))));
        builder.addSource(makeSource(secondFormat, write(second, QStringLiteral("second.txt"))));
        builder.load();
        QCOMPARE(describeTree(builder), tree);
        QCOMPARE(builder.getNodeNumber(), nodes);
    }

    void pathFileAfterACopiedChart()
    {
        const QString chart = path(QStringLiteral("first.ontology"));
        {
            BuilderSource first(chart);
            first.addSource(makeSource(QStringLiteral("krona"), write("5\tBacteria\tFirmicutes\n")));
            first.load();
            first.count(false);
            first.build();
        }
        BuilderSource builder(path(QStringLiteral("out.ontology")));
        builder.addSource(std::make_unique<SourceOntology>(chart));
        builder.addSource(makeSource(QStringLiteral("krona"), write("3\tArchaea\tHalobacteria\n")));
        builder.load();
        builder.count(false);
        QCOMPARE(describeTree(builder), QStringLiteral("root:0(Bacteria:0(Firmicutes:5) Archaea:0(Halobacteria:3))"));
        QCOMPARE(builder.getNodeNumber(), 5);
    }

    void skippedLines_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("tree");
        QTest::addColumn<qint64>("read");
        QTest::addColumn<qint64>("skipped");
        QTest::addColumn<QString>("first");

        QTest::newRow("krona: no count, negative count; blank and comment lines are no skip")
            << "krona" << QByteArray("abc\tA\n\n# Krona comment\n-4\tB\n3\tC\n") << "root(C:3)" << qint64(5) << qint64(2)
            << "line 1: 'abc' is not a count";
        QTest::newRow("krona: a line too long to keep, and the lines after it")
            << "krona" << QByteArray("2\tA\n5\t") + QByteArray(1100000, 'x') + "\n3\tB" << "root(A:2 B:3)" << qint64(3)
            << qint64(1) << "line 2: the line is too long";
        QTest::newRow("qiime: value not a share keeps its path; short line")
            << "qiime" << QByteArray("Taxon\tS1\nk__A\tNA\n\nk__B\t0.5\nk__C\n") << "root(\"k  A\" \"k  B\":500)"
            << qint64(4) << qint64(2) << "line 2: 'NA' is not a share";
        QTest::newRow("taxid-counts: a count that is no number, an id without a count")
            << "counts" << QByteArray("9606\t5\n562\tabc\n\n562") << "" << qint64(4) << qint64(2)
            << "line 2: 'abc' is not a count";
        QTest::newRow("mgtaxa: row without a third column")
            << "mgtaxa" << QByteArray("id\tlen\ttaxid\ns1\t1\t562\ns2\t1\n") << "" << qint64(2) << qint64(1)
            << "line 3: it has no third column";
    }

    // Every line passed over is counted, with the first one's number and reason.
    void skippedLines()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, content);
        QFETCH(QString, tree);
        QFETCH(qint64, read);
        QFETCH(qint64, skipped);
        QFETCH(QString, first);
        std::unique_ptr<Source> made = makeSource(format, write(content));
        Source* source = made.get();
        BuilderSource builder(path(QStringLiteral("out.ontology")));
        builder.addSource(std::move(made));
        builder.load();
        if (!tree.isEmpty())
            QCOMPARE(describeTree(builder), tree);
        QCOMPARE(source->getLinesRead(), read);
        QCOMPARE(source->getLinesSkipped(), skipped);
        QCOMPARE(source->getFirstSkip(), first);
    }

    void gzipInput_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("krona") << "krona" << QByteArray("3\tA\tB\r\n4\tA\n");
        QTest::newRow("qiime") << "qiime" << QByteArray("Taxon\tS1\nk__A;p__B\t0.25\n");
        QTest::newRow("mgtaxa") << "mgtaxa" << QByteArray("id\tlen\ttaxid\ns1\t1\t562\n");
        QTest::newRow("taxids") << "taxids" << QByteArray("562\n562\n9606");
        QTest::newRow("dump") << "dump" << dumpRow({"2", "1"}) + dumpRow({"1", "1"});
    }

    // A compressed input gives exactly what it gives uncompressed; cut short, it is an error.
    void gzipInput()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, content);
        const QString plain = describeRead(makeSource(format, write(content)));
        QVERIFY(plain.contains(QLatin1String("562")) || plain.contains(QLatin1Char('B')) || plain.contains(QLatin1Char('2')));
        QCOMPARE(describeRead(makeSource(format, write(gzipped(content)))), plain);

        BuilderSource builder(path(QStringLiteral("out.ontology")));
        builder.addSource(makeSource(format, write(gzipped(content).chopped(4))));
        QVERIFY_EXCEPTION_THROWN(builder.load(), nu::LineReader::ReadException);
    }

    void unreadableFilesAddNothing()
    {
        const QString missing = path(QStringLiteral("missing.txt"));
        BuilderSource builder(path(QStringLiteral("out.ontology")));
        builder.addSource(std::make_unique<SourceFrequencies>(missing));
        builder.addSource(std::make_unique<SourceMgtaxaText>(missing));
        builder.addSource(std::make_unique<SourceQiimeText>(dir->path(), 0));
        builder.load();
        QCOMPARE(describeTree(builder), QStringLiteral("root"));
        QCOMPARE(builder.getNodeNumber(), 1);
    }

    void progressBeyondIntRange()
    {
        BuilderSource builder(path(QStringLiteral("out.ontology")));
        QSignalSpy positions(&builder, &BuilderSource::signalSourceCurrentPos);
        const qint64 total = qint64(6) * 1024 * 1024 * 1024;
        builder.notifySourceTotalSize(total);
        for (qint64 position = 0; position <= total; position += total / 1000)
            builder.notifySourceCurrentPos(position);
        QVERIFY2(positions.count() >= 150 && positions.count() <= 201, qPrintable(QString::number(positions.count())));
        QVERIFY(positions.last().at(0).toLongLong() >= total - total / 100);
    }

    void cancelStopsEverySource_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char* kind : {"krona", "qiime", "mgtaxa", "dump"})
            QTest::newRow(kind) << QString::fromLatin1(kind);
    }

    void cancelStopsEverySource()
    {
        QFETCH(QString, kind);
        const bool qiime = kind == QLatin1String("qiime");
        QByteArray lines = qiime ? "Taxon\tS1\n" : "header\tx\tid\n";
        const QByteArray row = kind == QLatin1String("krona") ? "1\tA\t%1\n" : qiime ? "A;%1\t0.5\n" : "s\t1\t%1\n";
        for (int i = 0; i < 20000; ++i)
            lines += QByteArray(row).replace("%1", QByteArray::number(i));
        std::unique_ptr<Source> source;
        if (kind == QLatin1String("krona"))
            source = std::make_unique<SourceKronaText>(write(lines));
        else if (qiime)
            source = std::make_unique<SourceQiimeText>(write(lines), 0);
        else if (kind == QLatin1String("mgtaxa"))
            source = std::make_unique<SourceMgtaxaText>(write(lines));
        else {
            auto dump = std::make_unique<SourceBcp>(write(lines));
            dump->columns.insert(2, SourceBcp::parentKey);
            source = std::move(dump);
        }

        BuilderSource builder(path(QStringLiteral("out.ontology")));
        builder.addSource(std::move(source));
        int asked = 0;
        builder.setCancelCheck([&asked] { return ++asked >= 2; });
        QVERIFY_EXCEPTION_THROWN(builder.load(), Builder::CancelledException);
        QCOMPARE(asked, 2);
        QVERIFY(builder.getNodeNumber() < 20000);
    }

private:
    static std::unique_ptr<Source> makeSource(const QString& format, const QString& file)
    {
        if (format == QLatin1String("krona"))
            return std::make_unique<SourceKronaText>(file);
        if (format == QLatin1String("qiime"))
            return std::make_unique<SourceQiimeText>(file, 0);
        if (format == QLatin1String("mgtaxa"))
            return std::make_unique<SourceMgtaxaText>(file);
        if (format == QLatin1String("taxids"))
            return std::make_unique<SourceFrequencies>(file);
        if (format == QLatin1String("counts"))
            return std::make_unique<SourceFrequencies>(file, 2);
        auto dump = std::make_unique<SourceBcp>(file);
        dump->fieldSeparator = QStringLiteral("\t|\t");
        dump->rowTerminator = QStringLiteral("\t|\n");
        dump->finalTerminator = QStringLiteral("\t|");
        dump->columns.insert(1, SourceBcp::parentKey);
        return dump;
    }

    QString write(const QByteArray& content, const QString& name = QStringLiteral("input.txt")) const
    {
        return FolderCase::write(name, content);
    }

    // The tree, and the counts given to the ids of count sources.
    QString describeRead(std::unique_ptr<Source> source)
    {
        BuilderSource builder(path(QStringLiteral("out.ontology")));
        builder.addSource(std::move(source));
        builder.load();
        QString text = builder.getRoot() ? describeTree(builder) : QString();
        for (const QString& id : {QStringLiteral("562"), QStringLiteral("9606")}) {
            if (const Builder::Node* node = builder.findNode(id))
                text += QLatin1Char(' ') + id + QLatin1Char('=') + node->data.value(QStringLiteral("count")).toString();
        }
        return text;
    }
};

QTEST_GUILESS_MAIN(TestSources)
#include "tst_sources.moc"
