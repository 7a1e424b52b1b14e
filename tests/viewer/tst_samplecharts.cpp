#include "ontology/ontology.h"
#include "tests/support/charts.h"
#include "tests/support/samplechart.h"
#include "viewer/browsermodel.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/palette.h"
#include "viewer/piechartitem.h"
#include "viewer/samplecharts.h"

#include <QTemporaryDir>
#include <QtTest>

using Sorvik::Test::sliceNamed;
using Sorvik::Viewer::BrowserModel;
using Sorvik::Viewer::ChartTree;
using Sorvik::Viewer::PieChartItem;
using Sorvik::Viewer::SampleCharts;

namespace {

// S2 lacks Archaea; S3 is Proteobacteria and Archaea only. Small taxa fall below 5 %.
const QList<QPair<QString, QString>> study{
    {"S1", "120\tBacteria\tFirmicutes\tBacilli\n60\tBacteria\tFirmicutes\tClostridia\n"
           "80\tBacteria\tProteobacteria\n30\tArchaea\n4\tBacteria\tTenericutes\n3\tBacteria\tChloroflexi\n"},
    {"S2", "10\tBacteria\tFirmicutes\tBacilli\n200\tBacteria\tProteobacteria\n40\tBacteria\tBacteroidetes\n"
           "2\tBacteria\tTenericutes\n"},
    {"S3", "50\tBacteria\tProteobacteria\n50\tArchaea\n"},
};

} // namespace

class TestSampleCharts : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        file = dir.filePath(QStringLiteral("study.piechart"));
        Sorvik::Test::writeSampleChart(file, study);
        auto whole = std::make_shared<const ChartTree>(ChartTree::read(Zem::Ontology::Ontology(file)));
        auto colours = std::make_shared<const Sorvik::Viewer::ColourMap>(
            Sorvik::Viewer::ColourMap::assign(*whole, Sorvik::Viewer::Palette()));
        charts = std::make_unique<SampleCharts>(file, whole, colours);
    }

    void namesAndTotals()
    {
        QCOMPARE(charts->getCount(), 3);
        QCOMPARE(charts->getNames(), (QStringList{"S1", "S2", "S3"}));
        QCOMPARE(charts->getTotals(), (QList<qint64>{297, 252, 100}));
    }

    void treesAreMadeOnceAndForgottenLastUsedLast()
    {
        // The first sample is the tree as read.
        QCOMPARE(charts->getTree(0), charts->getWholeTree());
        const auto second = charts->getTree(1);
        QCOMPARE(charts->getTree(1), second);
        QCOMPARE(second->at(0).total, qint64(252));
        // Other trees asked for in between: the second, used again meanwhile, stays.
        for (int round = 0; round < SampleCharts::keptTrees; ++round) {
            charts->getTree(2);
            charts->getTree(ChartTree::allSamples);
            charts->getTree(1);
        }
        QCOMPARE(charts->getTree(1), second);
    }

    void drawsEachSampleFromOneCentre_data()
    {
        QTest::addColumn<int>("sample");
        QTest::addColumn<QString>("centre");
        QTest::addColumn<qint64>("count");
        QTest::addColumn<qint64>("bacilli");
        QTest::newRow("first sample at the root") << 0 << "" << qint64(297) << qint64(120);
        QTest::newRow("second sample at the root") << 1 << "" << qint64(252) << qint64(10);
        QTest::newRow("second sample at Firmicutes") << 1 << "Firmicutes" << qint64(10) << qint64(10);
        QTest::newRow("all samples at Firmicutes") << int(ChartTree::allSamples) << "Firmicutes" << qint64(190)
                                                   << qint64(130);
        // Nothing of Firmicutes in S3: no chart.
        QTest::newRow("absent centre") << 2 << "Firmicutes" << qint64(-1) << qint64(-1);
    }

    void drawsEachSampleFromOneCentre()
    {
        QFETCH(int, sample);
        QFETCH(QString, centre);
        QFETCH(qint64, count);
        QFETCH(qint64, bacilli);
        const auto whole = charts->getWholeTree();
        SampleCharts::Position position;
        if (!centre.isEmpty())
            position = whole->getPosition(nodeNamed(centre));
        SampleCharts::Options options;
        options.maxLevels = 10;
        options.minPercentage = 0;
        const std::unique_ptr<PieChartItem> chart = charts->draw(sample, position, options);
        QCOMPARE(chart ? chart->getAccumCount() : qint64(-1), count);
        PieChartItem* slice = chart ? sliceNamed(chart.get(), QStringLiteral("Bacilli")) : nullptr;
        QCOMPARE(slice ? slice->getAccumCount() : qint64(-1), bacilli);
    }

    void oneColourPerTaxonInEverySample()
    {
        SampleCharts::Options options;
        options.minPercentage = 0;
        const auto drawn = charts->draw({0, 1, 2}, SampleCharts::Position(), options);
        QCOMPARE(drawn.size(), size_t(3));
        for (const QString& name : {QStringLiteral("Proteobacteria"), QStringLiteral("Bacilli")}) {
            QColor first;
            for (const auto& chart : drawn) {
                const PieChartItem* slice = sliceNamed(chart.get(), name);
                if (!slice)
                    continue;
                if (!first.isValid())
                    first = slice->getColor();
                QCOMPARE(slice->getColor(), first);
            }
            QVERIFY(first.isValid());
        }
    }

    void sampleColumnsOfTheListedChart()
    {
        // The chart of all samples at 5 %: Tenericutes (6 of 649) and Chloroflexi (3) are
        // "2 others" under Bacteria.
        SampleCharts::Options options;
        options.minPercentage = 5;
        std::unique_ptr<PieChartItem> listed = charts->draw(ChartTree::allSamples, SampleCharts::Position(), options);
        QVERIFY(listed);
        BrowserModel model;
        model.setPieChart(listed.get());
        model.setSamples({"S1", "S2", "S3"}, {charts->getTree(0), charts->getTree(1), charts->getTree(2)});
        QCOMPARE(model.columnCount(), 7);
        const QModelIndex root = model.index(0, 0);
        const QModelIndex bacteria = child(model, root, QStringLiteral("Bacteria"));
        QVERIFY(bacteria.isValid());
        const QModelIndex others = child(model, bacteria, QStringLiteral("2 others"));
        QVERIFY(others.isValid());
        // Each sample's own share of the taxa gathered: S1 has both, S2 one, S3 none.
        QCOMPARE(value(model, others, BrowserModel::countColumn(0)), qint64(7));
        QCOMPARE(value(model, others, BrowserModel::countColumn(1)), qint64(2));
        QCOMPARE(value(model, others, BrowserModel::countColumn(2)), qint64(0));
        // A taxon a sample lacks counts 0 there, and its share is of that sample's centre.
        const QModelIndex archaea = child(model, root, QStringLiteral("Archaea"));
        QCOMPARE(value(model, archaea, BrowserModel::countColumn(1)), qint64(0));
        QCOMPARE(model.index(archaea.row(), BrowserModel::percentageColumn(2), root).data().toString(),
                 QStringLiteral("50.00"));
        QCOMPARE(model.headerData(BrowserModel::countColumn(1), Qt::Horizontal).toString(), QStringLiteral("S2"));
        QVERIFY(model.headerData(BrowserModel::percentageColumn(1), Qt::Horizontal, Qt::ToolTipRole)
                    .toString()
                    .endsWith(QLatin1String("in S2")));
        // No samples: the slices' own figures again.
        model.setSamples({}, {});
        QCOMPARE(model.columnCount(), int(BrowserModel::ColumnCount));
        QCOMPARE(model.index(archaea.row(), BrowserModel::CountColumn, root).data(BrowserModel::SortRole).toLongLong(),
                 qint64(80));
    }

private:
    int nodeNamed(const QString& name) const
    {
        const auto whole = charts->getWholeTree();
        for (int node = 0; node < whole->size(); ++node) {
            if (whole->getName(node) == name)
                return node;
        }
        return ChartTree::none;
    }

    static QModelIndex child(const BrowserModel& model, const QModelIndex& parent, const QString& name)
    {
        for (int row = 0; row < model.rowCount(parent); ++row) {
            const QModelIndex index = model.index(row, 0, parent);
            if (index.data().toString().endsWith(name))
                return index;
        }
        return QModelIndex();
    }

    static qint64 value(const BrowserModel& model, const QModelIndex& index, int column)
    {
        return model.index(index.row(), column, index.parent()).data(BrowserModel::SortRole).toLongLong();
    }

    QTemporaryDir dir;
    QString file;
    std::unique_ptr<SampleCharts> charts;
};

QTEST_MAIN(TestSampleCharts)
#include "tst_samplecharts.moc"
