#include "tests/ontology/sqlfile.h"
#include "tests/support/treeliteral.h"
#include "tests/viewer/charts.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"

#include <QTemporaryDir>
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

class TestPieChartBuilder : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        dir = std::make_unique<QTemporaryDir>();
        file = dir->filePath(QStringLiteral("chart.ontology"));
    }

    void chartOfATree_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::addColumn<int>("levels");
        QTest::addColumn<double>("percent");
        QTest::addColumn<QString>("chart");
        QTest::newRow("gap for a parent's own count")
            << "r(a:1(c:3) b:4)" << 10 << 0.0 << "r 360@0 (a 180@0 (c 135@0), b 180@180)";
        QTest::newRow("below the minimum dropped with its subtree")
            << "r(a:499(x:499) b:99501)" << 10 << 1.0 << "r 360@0 (b 356.4@0)";
        QTest::newRow("decimal minimum met exactly") << "r(a:7 b:993)" << 10 << 0.7 << "r 360@0 (a 2.52@0, b 357.5@2.52)";
        // 0.5 % and 1 of 200 are the same binary fraction: no rounding hides a ">" for ">=".
        QTest::newRow("exact minimum met exactly") << "r(a:1 b:199)" << 10 << 0.5 << "r 360@0 (a 1.8@0, b 358.2@1.8)";
        QTest::newRow("deep slice below the minimum")
            << "r(a(b(c:1 d:99)))" << 10 << 2.0 << "r 360@0 (a 360@0 (b 360@0 (d 356.4@0)))";
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

    void deepChainIsCutAtTheLevelLimit()
    {
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

    void coloursPerFirstLevelSubtree()
    {
        const auto root = chartOf(file, QStringLiteral("r(a:1(a1:1(a2:1)) b:1(b1:1) c:1 d:1(d1:1))"));
        QCOMPARE(root->getBrush().color(), QColor(Qt::white));
        const auto first = slicesOf(root.get());
        for (size_t k = 0; k < first.size(); ++k) {
            const QColor colour = first[k]->getColor();
            // Each first-level subtree has its own hue, evenly spread: (k + 0.5) / n.
            QVERIFY2(std::abs(colour.hslHueF() - (k + 0.5) / 4) < 0.01, qPrintable(colour.name()));
            QVERIFY(std::abs(colour.lightnessF() - 0.5) < 0.01);
            // Further out the same hue, lighter by one step of (0.9 - 0.5) / 4 levels per ring.
            double lightness = colour.lightnessF();
            for (auto slices = slicesOf(first[k]); !slices.empty(); slices = slicesOf(slices.front())) {
                const QColor outer = slices.front()->getColor();
                QVERIFY(std::abs(outer.hslHueF() - colour.hslHueF()) < 0.01);
                QVERIFY2(std::abs(outer.lightnessF() - lightness - 0.1) < 0.01, qPrintable(outer.name()));
                lightness = outer.lightnessF();
                QCOMPARE(slices.front()->getBrush().color(), outer);
            }
        }
    }

private:
    std::unique_ptr<QTemporaryDir> dir;
    QString file;
};

QTEST_MAIN(TestPieChartBuilder)
#include "tst_piechartbuilder.moc"
