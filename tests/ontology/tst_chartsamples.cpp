#include "ontology/buildersource.h"
#include "ontology/chartsamples.h"
#include "ontology/inputformat.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "ontology/rootreader.h"
#include "ontology/source.h"
#include "tests/support/fixtures.h"
#include "tests/support/sqlfile.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <limits>

using Zem::Ontology::BuilderSource;
using Zem::Ontology::ChartSamples;
using Zem::Ontology::InputFormat;
using namespace Sorvik::Test;

using Entries = std::vector<ChartSamples::Entry>;
Q_DECLARE_METATYPE(Entries)

namespace {

// "id count data" for every row, then "key value" for every info row, as a fixture lists them.
QStringList chartRows(const QString& file)
{
    QStringList rows;
    for (const QVariantList& row : querySql(file, QStringLiteral("SELECT id, count, data FROM nodes ORDER BY rowid")))
        rows << QStringLiteral("%1\t%2\t%3").arg(row.at(0).toString(), row.at(1).toString(), row.at(2).toString());
    for (const QVariantList& row : querySql(file, QStringLiteral("SELECT key, value FROM info ORDER BY rowid")))
        rows << QStringLiteral("%1\t%2").arg(row.at(0).toString(), row.at(1).toString());
    return rows;
}

// Each node's "count/accumCount" by id.
QMap<QString, QString> countsById(const QString& file)
{
    QMap<QString, QString> counts;
    for (const QVariantList& row : querySql(file, QStringLiteral("SELECT id, data FROM nodes"))) {
        const QJsonObject data = QJsonDocument::fromJson(row.at(1).toString().toUtf8()).object();
        counts.insert(row.at(0).toString(), data.value(QStringLiteral("count")).toString() + QLatin1Char('/')
                                                + data.value(QStringLiteral("accumCount")).toString());
    }
    return counts;
}

QByteArray bytes(std::initializer_list<int> values)
{
    QByteArray result;
    for (int value : values)
        result.append(char(value));
    return result;
}

} // namespace

class TestChartSamples : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        dir = std::make_unique<QTemporaryDir>();
        QVERIFY(dir->isValid());
    }

    void encodeRoundTrips_data()
    {
        QTest::addColumn<Entries>("entries");
        QTest::addColumn<int>("rows");
        QTest::newRow("nothing") << Entries{} << 5;
        QTest::newRow("the root alone") << Entries{{0, 3, 3}} << 1;
        QTest::newRow("rows far apart") << Entries{{0, 0, 9}, {1, 4, 4}, {700, 5, 5}} << 701;
        QTest::newRow("the last row only") << Entries{{99999, 1, 1}} << 100000;
        const qint64 big = std::numeric_limits<qint64>::max();
        QTest::newRow("counts at the end of 64 bits") << Entries{{0, big, big}, {2, 0, big}} << 3;
    }

    void encodeRoundTrips()
    {
        QFETCH(Entries, entries);
        QFETCH(int, rows);
        const Entries decoded = ChartSamples::decode(ChartSamples::encode(entries), rows);
        QCOMPARE(decoded.size(), entries.size());
        for (size_t i = 0; i < entries.size(); ++i) {
            QCOMPARE(decoded[i].row, entries[i].row);
            QCOMPARE(decoded[i].count, entries[i].count);
            QCOMPARE(decoded[i].total, entries[i].total);
        }
    }

    void decodeRefusesDamage_data()
    {
        QTest::addColumn<QByteArray>("counts");
        QTest::addColumn<int>("rows");
        QTest::newRow("cut inside a number") << bytes({1, 0x85}) << 3;
        QTest::newRow("cut inside an entry") << bytes({1, 2}) << 3;
        QTest::newRow("a row twice") << bytes({1, 1, 0, 0, 1, 0}) << 3;
        QTest::newRow("a row past the last") << bytes({4, 1, 0}) << 3;
        QTest::newRow("no rows at all") << bytes({1, 1, 0}) << 0;
        QTest::newRow("more than 63 bits")
            << bytes({1, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x7f, 0}) << 3;
        // count and the rest each fit, but the total does not.
        QTest::newRow("a total past 64 bits")
            << bytes({1, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x7f, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff,
                      0xff, 0xff, 0x7f})
            << 3;
    }

    void decodeRefusesDamage()
    {
        QFETCH(QByteArray, counts);
        QFETCH(int, rows);
        QVERIFY_EXCEPTION_THROWN(ChartSamples::decode(counts, rows), ChartSamples::InvalidFormatException);
    }

    void nameOfFile_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("name");
        QTest::newRow("report") << "/data/run 1/S1.kreport" << "S1";
        QTest::newRow("several extensions") << "S1.kreport.txt.gz" << "S1";
        QTest::newRow("any case") << "S2.TSV" << "S2";
        QTest::newRow("an unknown extension stays") << "S3.v2.tsv" << "S3.v2";
        QTest::newRow("nothing but an extension") << ".kreport" << ".kreport";
        QTest::newRow("no extension") << "S4" << "S4";
    }

    void nameOfFile()
    {
        QFETCH(QString, file);
        QFETCH(QString, name);
        QCOMPARE(ChartSamples::nameOfFile(file), name);
    }

    void makeUnique_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("unique");
        QTest::newRow("all different") << QStringList{"A", "B"} << QStringList{"A", "B"};
        QTest::newRow("three alike") << QStringList{"A", "A", "A"} << QStringList{"A", "A (2)", "A (3)"};
        QTest::newRow("a number given already")
            << QStringList{"A", "A (2)", "A"} << QStringList{"A", "A (2)", "A (3)"};
        QTest::newRow("a number given later") << QStringList{"A", "A", "A (2)"} << QStringList{"A", "A (3)", "A (2)"};
        QTest::newRow("no names") << QStringList{"", ""} << QStringList{"sample", "sample (2)"};
    }

    void makeUnique()
    {
        QFETCH(QStringList, names);
        QFETCH(QStringList, unique);
        QCOMPARE(ChartSamples::makeUnique(names), unique);
        // Unique names stay as they are, so merging a merge again changes nothing.
        QCOMPARE(ChartSamples::makeUnique(unique), unique);
    }

    void oneSampleIsTodaysChart()
    {
        // The rows that the build of one report wrote before charts had samples.
        const QString chart = dir->filePath(QStringLiteral("one.piechart"));
        build(chart, "kreport", {fixturePath(QStringLiteral("formats/kraken2.kreport"))});
        const QString expected = QString::fromUtf8(fileContents(fixturePath(QStringLiteral("samples/kraken2.kreport.rows"))));
        QCOMPARE(chartRows(chart), expected.split(QLatin1Char('\n'), Qt::SkipEmptyParts));
        QVERIFY(querySql(chart, QStringLiteral("SELECT name FROM sqlite_master WHERE name = 'samples'")).isEmpty());
        QVERIFY(ChartSamples::read(Zem::Ontology::Ontology(chart)).empty());
    }

    void readersSeeTheFirstSample()
    {
        const QString a = write("a.krona", "5\tBacteria\tFirmicutes\n3\tBacteria\tProteobacteria\n");
        const QString b = write("b.krona", "7\tArchaea\n1\tBacteria\tFirmicutes\n");
        const QString chart = dir->filePath(QStringLiteral("ab.piechart"));
        const QString first = dir->filePath(QStringLiteral("a.piechart"));
        build(chart, "krona", {a, b});
        build(first, "krona", {a});

        const Zem::Ontology::Ontology ontology(chart);
        QCOMPARE(Zem::Ontology::RootReader::read(ontology).data.value(QStringLiteral("accumCount")).toString(),
                 QStringLiteral("8"));
        // Each node of the first sample's own chart has its counts; the other sample's taxa are 0.
        const QMap<QString, QString> both = countsById(chart);
        const QMap<QString, QString> alone = countsById(first);
        QCOMPARE(both.size(), alone.size() + 1);
        for (auto it = alone.constBegin(); it != alone.constEnd(); ++it)
            QCOMPARE(both.value(it.key()), it.value());
        QCOMPARE(both.value(QStringLiteral("p4")), QStringLiteral("0/0"));

        const auto samples = ChartSamples::read(ontology);
        QCOMPARE(int(samples.size()), 2);
        QCOMPARE(samples[0].name, QStringLiteral("a"));
        QCOMPARE(samples[1].name, QStringLiteral("b"));
        // b: root 8 = Bacteria 1 (Firmicutes 1) + Archaea 7; absent taxa have no entry.
        const auto entries = ChartSamples::decode(samples[1].counts, ontology.getNodeNumber());
        QCOMPARE(int(entries.size()), 4);
        QCOMPARE(entries.front().row, 0);
        QCOMPARE(entries.front().total, 8);
    }

    void damagedTableIsRefused_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::newRow("a name twice") << "UPDATE samples SET name = 'a'";
        QTest::newRow("an empty name") << "UPDATE samples SET name = '' WHERE sample = 1";
        QTest::newRow("numbers with a gap") << "UPDATE samples SET sample = 5 WHERE sample = 1";
        QTest::newRow("one sample left") << "DELETE FROM samples WHERE sample = 1";
        QTest::newRow("counts as text") << "UPDATE samples SET counts = 'abc' WHERE sample = 1";
        QTest::newRow("counts past the rows") << "UPDATE samples SET counts = x'ff01' WHERE sample = 1";
        QTest::newRow("no such columns") << "DROP TABLE samples; CREATE TABLE samples( x INTEGER)";
    }

    void damagedTableIsRefused()
    {
        QFETCH(QString, sql);
        const QString chart = dir->filePath(QStringLiteral("ab.piechart"));
        build(chart, "krona",
              {write("a.krona", "5\tBacteria\n"), write("b.krona", "7\tArchaea\n")});
        execSql(chart, sql.split(QStringLiteral("; ")));
        const Zem::Ontology::Ontology ontology(chart);
        QVERIFY_EXCEPTION_THROWN(
            {
                for (const auto& sample : ChartSamples::read(ontology))
                    ChartSamples::decode(sample.counts, ontology.getNodeNumber());
            },
            ChartSamples::InvalidFormatException);
    }

private:
    QString write(const char* name, const QByteArray& content)
    {
        const QString path = dir->filePath(QLatin1String(name));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    static void build(const QString& chart, const char* word, const QStringList& inputs)
    {
        const InputFormat* format = InputFormat::find(QLatin1String(word));
        BuilderSource builder(chart);
        for (const QString& input : inputs)
            builder.addSample(ChartSamples::nameOfFile(input), format->makeSource(input, InputFormat::Options()));
        builder.load();
        builder.count(format->needsTaxonomy);
        builder.build();
    }

    std::unique_ptr<QTemporaryDir> dir;
};

QTEST_GUILESS_MAIN(TestChartSamples)
#include "tst_chartsamples.moc"
