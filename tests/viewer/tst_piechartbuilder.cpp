#include "tests/support/foldercase.h"
#include "tests/support/sqlfile.h"
#include "tests/support/treeliteral.h"
#include "tests/support/charts.h"
#include "ontology/ontology.h"
#include "viewer/navigator.h"
#include "viewer/palette.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"

#include <QtTest>

using Sorvik::Viewer::PieChartBuilder;
using Sorvik::Viewer::PieChartItem;
using namespace Sorvik::Test;

namespace {

// The chart as text: label, angle and start of every slice (degrees, counter-clockwise from
// the root's start), children in brackets.
QString describe(const PieChartItem* item, double start = 0)
{
    const QString text =
        QStringLiteral("%1 %2@%3").arg(item->getText().text).arg(item->getAngle(), 0, 'g', 4).arg(start, 0, 'g', 4);
    QStringList parts;
    for (const PieChartItem* child : slicesOf(item))
        parts << describe(child, start + child->getRot());
    return parts.isEmpty() ? text : text + QStringLiteral(" (") + parts.join(QStringLiteral(", ")) + QLatin1Char(')');
}

// What every chart must hold: rings 30 wide touching each other, each slice's share of the root
// total, and children side by side from their parent's start within its span.
void checkLayout(const PieChartItem* root)
{
    std::vector<std::pair<const PieChartItem*, int>> pending{{root, 1}};
    while (!pending.empty()) {
        const auto [item, depth] = pending.back();
        pending.pop_back();
        QCOMPARE(item->getRadius(), 30.0 * (depth - 1));
        QCOMPARE(item->getRadiusOffset(), 30.0);
        QVERIFY(std::abs(item->getAngle() - 360.0 * item->getTotal() / root->getTotal()) < 1e-9);
        double next = 0;
        for (const PieChartItem* child : slicesOf(item)) {
            QVERIFY(std::abs(child->getRot() - next) < 1e-9);
            next += child->getAngle();
            pending.emplace_back(child, depth + 1);
        }
        QVERIFY(next <= item->getAngle() + 1e-9);
    }
}

} // namespace

class TestPieChartBuilder : public Sorvik::Test::FolderCase
{
    Q_OBJECT
private slots:
    void init()
    {
        start();
        file = path(QStringLiteral("chart.ontology"));
    }

    void chartOfATree_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::addColumn<int>("levels");
        QTest::addColumn<double>("percent");
        QTest::addColumn<QString>("chart");
        QTest::newRow("gap for a parent's own count")
            << "r(a:1(c:3) b:4)" << 10 << 0.0 << "r 360@0 (a 180@0 (c 135@0), b 180@180)";
        // Children below the minimum lie after the kept ones, gathered in one grey slice.
        QTest::newRow("below the minimum dropped with its subtree")
            << "r(a:499(x:499) b:99501)" << 10 << 1.0 << "r 360@0 (b 356.4@0, 1 other 3.575@356.4)";
        QTest::newRow("dropped children gathered after the kept ones")
            << "r(a:1 b:1 c:98)" << 10 << 2.0 << "r 360@0 (c 352.8@0, 2 others 7.2@352.8)";
        QTest::newRow("others before the parent's own share")
            << "r:50(a:1 c:49)" << 10 << 2.0 << "r 360@0 (c 176.4@0, 1 other 3.6@176.4)";
        QTest::newRow("decimal minimum met exactly") << "r(a:7 b:993)" << 10 << 0.7 << "r 360@0 (a 2.52@0, b 357.5@2.52)";
        // 0.5 % and 1 of 200 are the same binary fraction: no rounding hides a ">" for ">=".
        QTest::newRow("exact minimum met exactly") << "r(a:1 b:199)" << 10 << 0.5 << "r 360@0 (a 1.8@0, b 358.2@1.8)";
        // r, a and b hold nothing of their own and one child each: one centre, named b.
        QTest::newRow("deep slice below the minimum")
            << "r(a(b(c:1 d:99)))" << 10 << 2.0 << "b 360@0 (d 356.4@0, 1 other 3.6@356.4)";
        QTest::newRow("reader order, not count order") << "r(s:1 l:9)" << 10 << 0.0 << "r 360@0 (s 36@0, l 324@36)";
        // Totals far beyond a 32-bit int: every count is scaled by the same factor, and a count
        // that scales to nothing keeps its slice with no angle.
        QTest::newRow("huge counts") << "r(a:2500000000(x:2500000000) b:3000000000 c:1)" << 10 << 0.0
                                     << "r 360@0 (a 225@0 (x 112.5@0), b 135@225, c 0@360)";
        // A start node without a count is never laid out.
        QTest::newRow("all counts zero") << "r(a:0 b:0)" << 10 << 0.0 << QString();
    }

    void chartOfATree()
    {
        QFETCH(QString, tree);
        QFETCH(int, levels);
        QFETCH(double, percent);
        QFETCH(QString, chart);
        const auto root = chartOf(file, tree, levels, percent);
        QCOMPARE(root != nullptr, !chart.isEmpty());
        if (root) {
            QCOMPARE(describe(root.get()), chart);
            checkLayout(root.get());
        }
    }

    void singleChildChains_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::addColumn<int>("levels");
        QTest::addColumn<bool>("collapse");
        QTest::addColumn<QString>("chart");
        QTest::addColumn<QString>("chain");
        QTest::newRow("chain at the root")
            << "r(a(b:1 c:1))" << 10 << true << "a 360@0 (b 180@0, c 180@180)" << "r a";
        QTest::newRow("chain in the middle")
            << "r(x:1 a(b(c:1 d:1)))" << 10 << true << "r 360@0 (x 120@0, b 240@120 (c 120@120, d 120@240))" << "a b";
        QTest::newRow("chain ending in a leaf") << "r(x:1 a(b(c:2)))" << 10 << true << "r 360@0 (x 120@0, c 240@120)"
                                                << "a b c";
        QTest::newRow("a node with its own count stays")
            << "r(x:1 a:1(b:2))" << 10 << true << "r 360@0 (x 90@0, a 270@90 (b 180@90))" << "a";
        // The chain takes no ring: two rings hold the centre and d, e.
        QTest::newRow("levels count drawn rings")
            << "r(a(b(c(d:1 e:1))))" << 2 << true << "c 360@0 (d 180@0, e 180@180)" << "r a b c";
        QTest::newRow("collapsing off") << "r(a(b:1 c:1))" << 2 << false << "r 360@0 (a 360@0)" << "a";
    }

    void singleChildChains()
    {
        QFETCH(QString, tree);
        QFETCH(int, levels);
        QFETCH(bool, collapse);
        QFETCH(QString, chart);
        QFETCH(QString, chain);
        writeTree(file, tree);
        const Zem::Ontology::Ontology ontology(file);
        PieChartBuilder builder(ontology);
        builder.setMaxLevels(levels);
        builder.setCollapse(collapse);
        builder.read();
        const auto root = builder.takeRootItem();
        QVERIFY(root);
        QCOMPARE(describe(root.get()), chart);
        checkLayout(root.get());
        // The slice named last in the chain stands for the whole chain.
        const QStringList names = chain.split(QLatin1Char(' '));
        const PieChartItem* merged = sliceNamed(root.get(), names.last());
        QVERIFY(merged);
        QCOMPARE(merged->getChainNames(), names);
        QCOMPARE(merged->getChainPositions().size(), names.size());
        QCOMPARE(merged->getPosition(), merged->getChainPositions().last());
    }

    void steppingIntoAChainGoesToItsDeepestNode()
    {
        const auto whole = chartOf(file, QStringLiteral("r(x:1 a(b(c:1 d:1)))"));
        const PieChartItem* merged = sliceNamed(whole.get(), QStringLiteral("b"));
        QVERIFY(merged);
        Sorvik::Viewer::Navigator navigator;
        navigator.goToLevel(const_cast<PieChartItem*>(merged));
        QCOMPARE(navigator.getCurrentPosition(), merged->getPosition());
        const auto inner = buildChart(file, 10, 0, navigator.getCurrentPosition());
        QCOMPARE(describe(inner.get()), QStringLiteral("b 360@0 (c 180@0, d 180@180)"));
        // One step out goes back to the root, not to the chain's upper node drawn the same way.
        navigator.goToUpperLevel(1);
        QVERIFY(navigator.isAtRoot());
    }

    void deepChainIsCutAtTheLevelLimit()
    {
        // Every node holds a count, so none is merged with its child.
        QString tree = QStringLiteral("n0:1");
        for (int i = 1; i < 300; ++i)
            tree += QStringLiteral("(n%1:1").arg(i);
        tree += QString(299, QLatin1Char(')'));
        const auto root = chartOf(file, tree, 1000000);
        QVERIFY(root);
        QCOMPARE(ringCount(root.get()), PieChartBuilder::levelLimit);
        checkLayout(root.get());
    }

    void startingInsideTheTree()
    {
        const auto whole = chartOf(file, QStringLiteral("r(a:1(c:2(e:1) d:1) b:4)"));
        const PieChartItem* a = slicesOf(whole.get()).front();
        const PieChartItem* c = slicesOf(a).front();
        const PieChartItem* e = slicesOf(c).front();
        QCOMPARE(e->getParentPositions(), (QList<PieChartItem::Position>{c->getPosition(), a->getPosition(), {}}));

        const auto inner = buildChart(file, 10, 0, a->getPosition());
        QCOMPARE(describe(inner.get()), QStringLiteral("a 360@0 (c 216@0 (e 72@0), d 72@216)"));
        QCOMPARE(inner->getPosition(), a->getPosition());
    }

    void unreadableCountsDropTheirSlice()
    {
        writeTree(file, QStringLiteral("r(a:1 b:1 c:2)"));
        execSql(file, {QStringLiteral("UPDATE nodes SET data = '{\"accumCount\":\"lots\"}' WHERE id = 'a'"),
                       QStringLiteral("UPDATE nodes SET data = 'not json' WHERE id = 'b'")});
        QCOMPARE(describe(buildChart(file).get()), QStringLiteral("r 360@0 (c 180@0)"));
    }

    void coloursStayAcrossSteppingAndLimits()
    {
        const QString tree = QStringLiteral("r(a:1(a1:3(a2:1 a3:2) a4:1) b:2(b1:1) c:9 d:1(d1:1))");
        const auto whole = chartOf(file, tree);
        QMap<QString, QRgb> colours;
        for (const QString& name : {"a", "a1", "a2", "a3", "a4", "b", "b1", "c", "d", "d1"})
            colours.insert(name, sliceNamed(whole.get(), name)->getColor().rgb());
        // The first level's taxa all differ; the centre holds no hue.
        QCOMPARE(whole->getColor(), Sorvik::Viewer::Palette::contextGrey());
        const QSet<QRgb> first{colours["a"], colours["b"], colours["c"], colours["d"]};
        QCOMPARE(first.size(), 4);
        // Stepped in, with other limits, and built again: each taxon keeps its colour.
        const PieChartItem* a = sliceNamed(whole.get(), QStringLiteral("a"));
        for (const auto& chart : {buildChart(file, 10, 0, a->getPosition()), buildChart(file, 2, 30), buildChart(file)}) {
            for (auto it = colours.cbegin(); it != colours.cend(); ++it) {
                const PieChartItem* slice = sliceNamed(chart.get(), it.key());
                if (slice && slice != chart.get())
                    QCOMPARE(slice->getColor().rgb(), it.value());
            }
        }
        // Stepped into a, its centre keeps a's colour.
        QCOMPARE(buildChart(file, 10, 0, a->getPosition())->getColor().rgb(), colours["a"]);
    }

private:
    QString file;
};

QTEST_MAIN(TestPieChartBuilder)
#include "tst_piechartbuilder.moc"
