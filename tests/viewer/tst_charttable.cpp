#include "ontology/buildersource.h"
#include "ontology/inputformat.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "ontology/reader.h"
#include "ontology/source.h"
#include "tests/support/foldercase.h"
#include "tests/support/fixtures.h"
#include "tests/support/treeliteral.h"
#include "viewer/charttable.h"
#include "viewer/charttree.h"

#include <QDir>
#include <QtTest>

using Sorvik::Viewer::ChartTable;
using Sorvik::Viewer::ChartTree;

namespace {

// Every node's accumulated count as the file stores it, in reading order.
class AccumCounts : public Zem::Ontology::Reader
{
public:
    using Reader::Reader;
    void openNode(const QString&, const QVariantMap& data, const Position&) override
    {
        counts << data.value(Zem::Ontology::NodeKey::accumCount).toString();
    }
    void closeNode(const QString&, const QVariantMap&) override {}
    QStringList counts;
};

// The table's lines split into fields, quotes taken off as R and pandas take them off.
QList<QStringList> parse(const QByteArray& bytes, QChar separator)
{
    QList<QStringList> rows;
    QStringList row;
    QString field;
    bool quoted = false;
    const QString text = QString::fromUtf8(bytes);
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (quoted) {
            if (c == QLatin1Char('"') && i + 1 < text.size() && text[i + 1] == QLatin1Char('"')) {
                field += c;
                ++i;
            } else if (c == QLatin1Char('"')) {
                quoted = false;
            } else {
                field += c;
            }
        } else if (c == QLatin1Char('"') && field.isEmpty()) {
            quoted = true;
        } else if (c == separator) {
            row << field;
            field.clear();
        } else if (c == QLatin1Char('\n')) {
            row << field;
            rows << row;
            row.clear();
            field.clear();
        } else {
            field += c;
        }
    }
    return rows;
}

const QString life = QStringLiteral(
    "root=Life(b=Bacteria:2(p=Proteobacteria:40(g=Gammaproteobacteria:30) f=Firmicutes:35) "
    "u=unclassified:3)");

} // namespace

class TestChartTable : public Sorvik::Test::FolderCase
{
    Q_OBJECT
private slots:
    void init() { start(); }

    void rowsHoldTheChartsNumbers()
    {
        const ChartTree tree = read(life);
        const ChartTable table(tree);
        QCOMPARE(table.getHeader(), QStringList({"id", "taxid", "name", "rank", "lineage", "own_count", "clade_count",
                                                 "percent"}));
        const QList<QStringList> rows = parse(table.toBytes(ChartTable::Format::Tsv), QLatin1Char('\t'));
        QCOMPARE(rows.size(), 7);
        QCOMPARE(rows[0], table.getHeader());
        // Parents first, in the file's order; names of the NCBI taxonomy carry their taxon ids.
        QCOMPARE(rows[1], QStringList({"root", "root", "Life", "", "Life", "0", "110", "100"}));
        QCOMPARE(rows[2], QStringList({"b", "b", "Bacteria", "", "Life; Bacteria", "2", "107", "97.272727"}));
        QCOMPARE(rows[4], QStringList({"g", "g", "Gammaproteobacteria", "", "Life; Bacteria; Proteobacteria; Gammaproteobacteria",
                                       "30", "30", "27.272727"}));
        QCOMPARE(rows[6][4], QStringLiteral("Life; unclassified"));
        // Row 4 of the file is node 3's.
        QCOMPARE(table.getRow(3), rows[4]);
    }

    void fieldsAreQuotedOnlyWhenTheyMustBe_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("tsv");
        QTest::addColumn<QString>("csv");
        QTest::newRow("plain") << "Escherichia coli" << "Escherichia coli" << "Escherichia coli";
        QTest::newRow("a comma") << "Bacteria, unclassified" << "Bacteria, unclassified" << "\"Bacteria, unclassified\"";
        QTest::newRow("a tab") << "a\tb" << "\"a\tb\"" << "a\tb";
        QTest::newRow("quotes") << "\"Candidatus\" x" << "\"\"\"Candidatus\"\" x\"" << "\"\"\"Candidatus\"\" x\"";
        QTest::newRow("a line break") << "a\nb" << "\"a\nb\"" << "\"a\nb\"";
        QTest::newRow("an apostrophe") << "Vincent's" << "Vincent's" << "Vincent's";
        QTest::newRow("empty") << "" << "" << "";
    }

    void fieldsAreQuotedOnlyWhenTheyMustBe()
    {
        QFETCH(QString, field);
        QFETCH(QString, tsv);
        QFETCH(QString, csv);
        QCOMPARE(ChartTable::quoted(field, ChartTable::Format::Tsv), tsv);
        QCOMPARE(ChartTable::quoted(field, ChartTable::Format::Csv), csv);
    }

    void awkwardNamesReadBackAsWritten()
    {
        ChartTree tree;
        tree.add(ChartTree::none, QStringLiteral("root"), 0, 3);
        tree.add(0, QStringLiteral("x, \"y\""), 1, 1);
        tree.add(0, QStringLiteral("p__Firmicutes"), 2, 2);
        for (const auto format : {ChartTable::Format::Tsv, ChartTable::Format::Csv}) {
            const QChar separator = format == ChartTable::Format::Csv ? QLatin1Char(',') : QLatin1Char('\t');
            const QList<QStringList> rows = parse(ChartTable(tree).toBytes(format), separator);
            QCOMPARE(rows.size(), 4);
            for (const QStringList& row : rows)
                QCOMPARE(row.size(), 8);
            QCOMPARE(rows[2][2], QStringLiteral("x, \"y\""));
            // Names as the chart shows them, rank prefixes off.
            QCOMPARE(rows[3][2], QStringLiteral("Firmicutes"));
        }
        ChartTable raw(tree);
        raw.setRawNames(true);
        QCOMPARE(raw.getRow(2)[2], QStringLiteral("p__Firmicutes"));
    }

    void samplesAddColumns()
    {
        const ChartTree tree = read(QStringLiteral("r(a:1 b:2)"));
        ChartTable table(tree);
        table.addSample(QStringLiteral("gut"), {3, 1});
        QCOMPARE(table.getHeader().last(), QStringLiteral("clade_count_gut"));
        // Nodes a sample does not reach count 0 there.
        QCOMPARE(table.getRow(2).last(), QStringLiteral("0"));
        QCOMPARE(table.getRow(0).last(), QStringLiteral("3"));
    }

    void formatFollowsTheExtension_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("format");
        QTest::newRow("tsv") << "counts.tsv" << int(ChartTable::Format::Tsv);
        QTest::newRow("txt") << "counts.TXT" << int(ChartTable::Format::Tsv);
        QTest::newRow("tab") << "counts.tab" << int(ChartTable::Format::Tsv);
        QTest::newRow("csv") << "counts.Csv" << int(ChartTable::Format::Csv);
        QTest::newRow("xlsx") << "counts.xlsx" << -1;
        QTest::newRow("none") << "counts" << -1;
    }

    void formatFollowsTheExtension()
    {
        QFETCH(QString, name);
        QFETCH(int, format);
        if (format < 0)
            QVERIFY_EXCEPTION_THROWN(ChartTable::formatOf(name), ChartTable::UnknownFormatException);
        else
            QCOMPARE(int(ChartTable::formatOf(name)), format);
    }

    void saveWritesAllOrNothing()
    {
        const ChartTree tree = read(life);
        const QString good = path(QStringLiteral("t.csv"));
        ChartTable(tree).save(good, ChartTable::Format::Csv);
        QCOMPARE(Sorvik::Test::fileContents(good), ChartTable(tree).toBytes(ChartTable::Format::Csv));
        QVERIFY(Sorvik::Test::fileContents(good).startsWith("id,taxid,name,rank,lineage,own_count,clade_count,percent\n"));
        const QString missing = path(QStringLiteral("gone/t.tsv"));
        QVERIFY_EXCEPTION_THROWN(ChartTable(tree).save(missing, ChartTable::Format::Tsv), ChartTable::WriteException);
        QVERIFY(!QFileInfo::exists(missing));
    }

    void cladeCountsEqualTheRealChartsAccumCounts()
    {
        const QString real = Sorvik::Test::realDataPath();
        if (real.isEmpty())
            QSKIP("no real data beside the checkout");
        const QDir folder(QDir(real).filePath(QStringLiteral("krona")));
        int files = 0;
        for (const QString& name : folder.entryList(QDir::Files, QDir::Name)) {
            const QString chart = path(name + QStringLiteral(".piechart"));
            Zem::Ontology::BuilderSource builder(chart);
            builder.addSource(Zem::Ontology::InputFormat::find(QStringLiteral("krona"))
                                  ->makeSource(folder.filePath(name), Zem::Ontology::InputFormat::Options()));
            builder.load();
            builder.count(false);
            builder.build();
            const Zem::Ontology::Ontology ontology(chart);
            if (ontology.getNodeNumber() < 1)
                continue;
            AccumCounts stored(ontology);
            stored.read();
            const QList<QStringList> rows =
                parse(ChartTable(ChartTree::read(ontology)).toBytes(ChartTable::Format::Tsv), QLatin1Char('\t'));
            QCOMPARE(rows.size(), stored.counts.size() + 1);
            for (int i = 0; i < stored.counts.size(); ++i)
                QCOMPARE(rows[i + 1][6], stored.counts[i]);
            ++files;
        }
        QVERIFY(files > 3);
    }

private:
    ChartTree read(const QString& literal)
    {
        const QString file = path(QStringLiteral("chart.ontology"));
        QFile::remove(file);
        Sorvik::Test::writeTree(file, literal);
        return ChartTree::read(Zem::Ontology::Ontology(file));
    }

};

QTEST_MAIN(TestChartTable)
#include "tst_charttable.moc"
