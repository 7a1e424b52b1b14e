#include "ontology/buildersource.h"
#include "ontology/inputformat.h"
#include "ontology/ontology.h"
#include "tests/support/charts.h"
#include "viewer/chartgrid.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/palette.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Sorvik::Viewer;
using namespace Sorvik::Test;

namespace {

// Three samples over one tree: a and c have no Archaea and no Firmicutes respectively.
const char* const samples[][2] = {
    {"a", "5\tBacteria\tFirmicutes\n3\tBacteria\tProteobacteria\n"},
    {"b", "7\tArchaea\tEuryarchaeota\n1\tBacteria\tFirmicutes\n"},
    {"c", "2\tArchaea\tEuryarchaeota\n2\tBacteria\tProteobacteria\n"},
};

} // namespace

class TestChartTree : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(dir.isValid());
        chart = dir.filePath(QStringLiteral("study.piechart"));
        const Zem::Ontology::InputFormat* krona = Zem::Ontology::InputFormat::find(QStringLiteral("krona"));
        Zem::Ontology::BuilderSource builder(chart);
        for (const auto& sample : samples) {
            const QString input = dir.filePath(QLatin1String(sample[0]) + QStringLiteral(".krona"));
            QFile file(input);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(sample[1]);
            file.close();
            builder.addSample(QLatin1String(sample[0]), krona->makeSource(input, {}));
        }
        builder.load();
        builder.count(false);
        builder.build();
        tree = std::make_shared<const ChartTree>(ChartTree::read(Zem::Ontology::Ontology(chart)));
    }

    void readsTheSamples()
    {
        const auto list = tree->getSamples();
        QCOMPARE(int(list.size()), 3);
        QCOMPARE(list[1].name, QStringLiteral("b"));
        QCOMPARE(list[0].total, 8);
        QCOMPARE(list[1].total, 8);
        QCOMPARE(list[2].total, 4);
        QCOMPARE(tree->indexOfSample(QStringLiteral("c")), 2);
        QCOMPARE(tree->indexOfSample(QStringLiteral("d")), ChartTree::none);
        // The nodes as read hold the first sample.
        QCOMPARE(tree->getSample(), 0);
        QCOMPARE(tree->at(0).total, 8);
    }

    void givesEachSamplesCounts_data()
    {
        QTest::addColumn<int>("sample");
        QTest::addColumn<QString>("key");
        QTest::addColumn<qint64>("count");
        QTest::addColumn<qint64>("total");
        QTest::newRow("absent from the first") << 0 << "path:Archaea" << qint64(0) << qint64(0);
        QTest::newRow("present in the second") << 1 << "path:Archaea\tEuryarchaeota" << qint64(7) << qint64(7);
        QTest::newRow("a parent's total") << 2 << "path:Bacteria" << qint64(0) << qint64(2);
        QTest::newRow("the last sample's root") << 2 << "path:" << qint64(0) << qint64(4);
        QTest::newRow("all samples together") << int(ChartTree::allSamples) << "path:Bacteria" << qint64(0) << qint64(11);
        QTest::newRow("no such sample") << 3 << "path:" << qint64(0) << qint64(0);
    }

    void givesEachSamplesCounts()
    {
        QFETCH(int, sample);
        QFETCH(QString, key);
        QFETCH(qint64, count);
        QFETCH(qint64, total);
        const ChartTree one = tree->ofSample(sample);
        const int node = one.indexOfKey(key);
        QVERIFY(node != ChartTree::none);
        QCOMPARE(one.at(node).count, count);
        QCOMPARE(one.at(node).total, total);
        QCOMPARE(one.size(), tree->size());
    }

    void coloursAreOneForAllSamples()
    {
        const Palette palette;
        const ColourMap first = ColourMap::assign(*tree, palette);
        const ColourMap second = ColourMap::assign(tree->ofSample(1), palette);
        for (int i = 0; i < tree->size(); ++i)
            QCOMPARE(first.colourOf(i), second.colourOf(i));
        // Archaea holds nothing in the first sample, and has its colour there all the same.
        QVERIFY(first.hasColour(tree->indexOfKey(QStringLiteral("path:Archaea"))));
        QCOMPARE(int(first.getHueHolders().size()), 2);
    }

    void switchingSampleKeepsTheCentreAndColours()
    {
        const auto colours = std::make_shared<const ColourMap>(ColourMap::assign(*tree, Palette()));
        const Zem::Ontology::Ontology ontology(chart);
        std::unique_ptr<PieChartItem> whole = draw(ontology, tree, colours, {});
        PieChartItem* bacteria = sliceNamed(whole.get(), QStringLiteral("Bacteria"));
        QVERIFY(bacteria);
        const QColor firmicutes = sliceNamed(whole.get(), QStringLiteral("Firmicutes"))->getColor();

        // The second sample centred on Bacteria: its one read there, in Firmicutes. That is all
        // of Bacteria in this sample, but not in the first: the rings stay those of all samples,
        // so Firmicutes is a ring of its own, in its colour; and no Proteobacteria, which it lacks.
        const auto second = std::make_shared<const ChartTree>(tree->ofSample(1));
        std::unique_ptr<PieChartItem> centred = draw(ontology, second, colours, bacteria->getPosition());
        QVERIFY(centred);
        QCOMPARE(centred->getText().text, QStringLiteral("Bacteria"));
        QCOMPARE(centred->getAccumCount(), 1);
        const PieChartItem* own = sliceNamed(centred.get(), QStringLiteral("Firmicutes"));
        QVERIFY(own && own != centred.get());
        QCOMPARE(own->getAccumCount(), 1);
        QCOMPARE(own->getColor(), firmicutes);
        QVERIFY(!sliceNamed(centred.get(), QStringLiteral("Proteobacteria")));

        // A sample with nothing under the centre has no chart there.
        const auto first = std::make_shared<const ChartTree>(tree->ofSample(0));
        const std::unique_ptr<PieChartItem> secondWhole = draw(ontology, second, colours, {});
        const PieChartItem* archaea = sliceNamed(secondWhole.get(), QStringLiteral("Archaea"));
        QVERIFY(archaea);
        QVERIFY(!draw(ontology, first, colours, archaea->getPosition()));
    }

    void gridHoldsEverySample()
    {
        const auto colours = std::make_shared<const ColourMap>(ColourMap::assign(*tree, Palette()));
        const Zem::Ontology::Ontology ontology(chart);
        ChartGrid grid;
        for (int s = 0; s < tree->getSampleCount(); ++s)
            grid.addChart(draw(ontology, std::make_shared<const ChartTree>(tree->ofSample(s)), colours, {}),
                          tree->getSamples().at(size_t(s)).name);
        grid.addChart(nullptr, QStringLiteral("empty"));
        grid.arrange();
        QCOMPARE(grid.getColumns(), 2);
        // Side by side in rows, none over another.
        QVERIFY(grid.chartAt(0)->pos().x() < grid.chartAt(1)->pos().x());
        QCOMPARE(grid.chartAt(0)->pos().y(), grid.chartAt(1)->pos().y());
        QVERIFY(grid.chartAt(2)->pos().y() > grid.chartAt(0)->pos().y());
        QVERIFY(!grid.chartAt(3));
        const QRectF area = grid.getChartRect();
        for (int i = 0; i < 3; ++i)
            QVERIFY(area.contains(grid.chartAt(i)->getChartRect()));
        QVERIFY(!grid.chartAt(0)->getChartRect().intersects(grid.chartAt(1)->getChartRect()));
    }

private:
    static std::unique_ptr<PieChartItem> draw(const Zem::Ontology::Ontology& ontology,
                                              std::shared_ptr<const ChartTree> sampleTree,
                                              std::shared_ptr<const ColourMap> colours,
                                              const Zem::Ontology::Reader::Position& start)
    {
        PieChartBuilder builder(ontology, start);
        builder.setTree(std::move(sampleTree), std::move(colours));
        builder.read();
        return builder.takeRootItem();
    }

    QTemporaryDir dir;
    QString chart;
    std::shared_ptr<const ChartTree> tree;
};

QTEST_MAIN(TestChartTree)
#include "tst_charttree.moc"
