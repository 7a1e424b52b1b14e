#include "nu/graphics/piechartitem.h"
#include "nu/graphics/pieitem.h"

#include <QtMath>
#include <QtTest>

#include <memory>
#include <vector>

using namespace nu::graphics;

using Nodes = QList<QPair<int, int>>;

namespace {

// A point at a distance from the origin in a direction (degrees, counter-clockwise on screen).
QPointF polar(double distance, double degrees)
{
    const double a = qDegreesToRadians(degrees);
    return QPointF(distance * std::cos(a), -distance * std::sin(a));
}

// A chart given as (parent index, own count) pairs, the first being the root (parent -1),
// attached one slice at a time the way an owner builds it.
struct Chart
{
    std::unique_ptr<PieChartItem> root;
    std::vector<PieChartItem*> items;

    explicit Chart(const QList<QPair<int, int>>& nodes)
    {
        for (const auto& node : nodes) {
            auto item = std::make_unique<PieChartItem>();
            item->setRadiusOffset(30);
            item->setCount(node.second);
            items.push_back(item.get());
            if (node.first < 0)
                root = std::move(item);
            else
                items[static_cast<size_t>(node.first)]->addChild(item.release());
        }
    }

    // Where a slice starts, counter-clockwise from the root's start.
    double start(int i) const
    {
        double rotation = 0;
        for (const QGraphicsItem* item = items[static_cast<size_t>(i)]; item != root.get();
             item = item->parentItem())
            rotation -= item->rotation();
        return rotation;
    }
};

} // namespace

class TestRingItems : public QObject
{
    Q_OBJECT
private slots:
    void ringOutline_data();
    void ringOutline();
    void settersClamp();
    void outerRingsFollowTheInnerRadius();
    void childrenFillTheirParentsSpan_data();
    void childrenFillTheirParentsSpan();
    void setOrderSwapsAndRelaysSiblings();
    void countChangeRelaysTheWholeChart();
    void emptyChartHasNoAngles();
    void labelPlacementFlipsInTheLowerHalf_data();
    void labelPlacementFlipsInTheLowerHalf();
};

void TestRingItems::ringOutline_data()
{
    QTest::addColumn<double>("angle");
    QTest::addColumn<double>("radius");
    QTest::addColumn<double>("width");
    QTest::addColumn<QList<QPointF>>("inside");
    QTest::addColumn<QList<QPointF>>("outside");
    QTest::newRow("full disc") << 360.0 << 0.0 << 30.0
                               << QList<QPointF>{polar(1, 0), polar(29, 200), polar(15, 90)}
                               << QList<QPointF>{polar(31, 0), polar(31, 270)};
    QTest::newRow("annulus") << 360.0 << 30.0 << 30.0 << QList<QPointF>{polar(45, 0), polar(45, 90), polar(59, 300)}
                             << QList<QPointF>{polar(1, 0), polar(29, 180), polar(61, 45)};
    QTest::newRow("wedge to the centre") << 90.0 << 0.0 << 30.0
                                         << QList<QPointF>{polar(2, 45), polar(28, 10), polar(28, 80)}
                                         << QList<QPointF>{polar(10, 100), polar(10, -10), polar(31, 45)};
    QTest::newRow("ring sector") << 90.0 << 30.0 << 30.0 << QList<QPointF>{polar(45, 45), polar(31, 1), polar(59, 89)}
                                 << QList<QPointF>{polar(29, 45), polar(61, 45), polar(45, 91), polar(45, -1)};
    QTest::newRow("thin slice") << 10.0 << 60.0 << 30.0 << QList<QPointF>{polar(75, 5)}
                                << QList<QPointF>{polar(75, 11), polar(75, 359)};
    QTest::newRow("more than half") << 270.0 << 30.0 << 10.0 << QList<QPointF>{polar(35, 180), polar(35, 260)}
                                    << QList<QPointF>{polar(35, 300), polar(20, 180)};
}

void TestRingItems::ringOutline()
{
    QFETCH(double, angle);
    QFETCH(double, radius);
    QFETCH(double, width);
    QFETCH(QList<QPointF>, inside);
    QFETCH(QList<QPointF>, outside);
    PieItem ring;
    ring.setAngle(angle);
    ring.setRadius(radius);
    ring.setRadiusOffset(width);
    const QPainterPath path = ring.path();
    for (const QPointF& p : inside)
        QVERIFY2(path.contains(p), qPrintable(QStringLiteral("(%1, %2) inside").arg(p.x()).arg(p.y())));
    for (const QPointF& p : outside)
        QVERIFY2(!path.contains(p), qPrintable(QStringLiteral("(%1, %2) outside").arg(p.x()).arg(p.y())));
    QVERIFY(ring.boundingRect().contains(path.boundingRect()));
}

void TestRingItems::settersClamp()
{
    PieItem ring;
    ring.setRadiusOffset(0.2);
    QCOMPARE(ring.getRadiusOffset(), 1.0);
    ring.setRadiusOffset(20);
    ring.setRadiusOffsetFromParent(-3);
    QCOMPARE(ring.getRadiusOffsetFromParent(), 1.0);
    ring.setRadius(-1);
    QCOMPARE(ring.getRadius(), 0.0);
    ring.setOrder(-2);
    QCOMPARE(ring.getOrder(), 0);
    ring.setPercentage(25);
    QCOMPARE(ring.getAngle(), 90.0);
    ring.setAngle(400);
    QCOMPARE(ring.getAngle(), 400.0);
}

void TestRingItems::outerRingsFollowTheInnerRadius()
{
    PieItem root;
    root.setRadiusOffset(30);
    auto owned = std::make_unique<PieItem>();
    PieItem* child = owned.get();
    child->setRadiusOffset(20);
    auto ownedGrandChild = std::make_unique<PieItem>();
    PieItem* grandChild = ownedGrandChild.get();
    grandChild->setRadiusOffset(10);
    child->addChild(ownedGrandChild.release());
    QCOMPARE(grandChild->getRadius(), 20.0);
    root.addChild(owned.release());
    QCOMPARE(child->getRadius(), 30.0);
    QCOMPARE(grandChild->getRadius(), 50.0);
    root.setRadiusOffset(50);
    QCOMPARE(child->getRadius(), 50.0);
    QCOMPARE(grandChild->getRadius(), 70.0);
    QCOMPARE(grandChild->getRadiusOffset(), 10.0);
    root.setRadius(5);
    QCOMPARE(grandChild->getRadiusFull(), 85.0);
    QCOMPARE(grandChild->getLabelRadius(), 80.0);
}

void TestRingItems::childrenFillTheirParentsSpan_data()
{
    QTest::addColumn<Nodes>("nodes");
    QTest::addColumn<QList<double>>("angles");
    QTest::addColumn<QList<double>>("starts");
    QTest::newRow("root alone") << Nodes{{-1, 7}} << QList<double>{360} << QList<double>{0};
    QTest::newRow("two halves") << Nodes{{-1, 0}, {0, 5}, {0, 5}} << QList<double>{360, 180, 180}
                                << QList<double>{0, 0, 180};
    // a holds 1 of its own and c holds 3: c covers 3/4 of a's span, from a's start.
    QTest::newRow("gap for the parent's own count")
        << Nodes{{-1, 0}, {0, 1}, {1, 3}, {0, 4}} << QList<double>{360, 180, 135, 180}
        << QList<double>{0, 0, 0, 180};
    QTest::newRow("root's own count leaves the first ring open")
        << Nodes{{-1, 2}, {0, 1}, {0, 1}} << QList<double>{360, 90, 90} << QList<double>{0, 0, 90};
    QTest::newRow("grandchildren side by side")
        << Nodes{{-1, 0}, {0, 0}, {1, 2}, {1, 1}, {0, 3}} << QList<double>{360, 180, 120, 60, 180}
        << QList<double>{0, 0, 0, 120, 180};
    QTest::newRow("empty slice") << Nodes{{-1, 0}, {0, 0}, {0, 4}} << QList<double>{360, 0, 360}
                                 << QList<double>{0, 0, 0};
}

void TestRingItems::childrenFillTheirParentsSpan()
{
    QFETCH(Nodes, nodes);
    QFETCH(QList<double>, angles);
    QFETCH(QList<double>, starts);
    const Chart chart(nodes);
    for (int i = 0; i < nodes.size(); ++i) {
        QCOMPARE(chart.items[static_cast<size_t>(i)]->getAngle(), angles.at(i));
        QCOMPARE(chart.start(i), starts.at(i));
    }
}


void TestRingItems::setOrderSwapsAndRelaysSiblings()
{
    const Chart chart({{-1, 0}, {0, 1}, {0, 2}, {0, 3}});
    QCOMPARE(chart.start(3), 180.0);
    chart.items[3]->setOrder(1);
    QCOMPARE(chart.items[1]->getOrder(), 3);
    QCOMPARE(chart.items[3]->getOrder(), 1);
    // Now c, b, a counter-clockwise.
    QCOMPARE(chart.start(3), 0.0);
    QCOMPARE(chart.start(2), 180.0);
    QCOMPARE(chart.start(1), 300.0);
}

void TestRingItems::countChangeRelaysTheWholeChart()
{
    const Chart chart({{-1, 0}, {0, 1}, {1, 1}, {0, 2}});
    QCOMPARE(chart.items[2]->getAngle(), 90.0);
    chart.items[2]->setCount(5);
    QCOMPARE(chart.root->getTotal(), qint64(8));
    QCOMPARE(chart.items[1]->getAngle(), 270.0);
    QCOMPARE(chart.items[2]->getAngle(), 225.0);
    QCOMPARE(chart.start(3), 270.0);
}

void TestRingItems::emptyChartHasNoAngles()
{
    const Chart chart({{-1, 0}, {0, 0}});
    QCOMPARE(chart.root->getAngle(), 0.0);
    QCOMPARE(chart.items[1]->getAngle(), 0.0);
    QVERIFY(qIsFinite(chart.root->boundingRect().width()));
}

void TestRingItems::labelPlacementFlipsInTheLowerHalf_data()
{
    QTest::addColumn<double>("rotation");
    QTest::addColumn<double>("angle");
    QTest::addColumn<bool>("upper");
    QTest::newRow("first quarter") << 0.0 << 90.0 << true;
    QTest::newRow("second quarter") << 90.0 << 90.0 << true;
    QTest::newRow("third quarter") << 180.0 << 90.0 << false;
    QTest::newRow("fourth quarter") << 270.0 << 90.0 << false;
    QTest::newRow("middle just above") << 170.0 << 18.0 << true;
    QTest::newRow("middle just below") << 175.0 << 18.0 << false;
    QTest::newRow("negative rotation") << -30.0 << 20.0 << false;
}

void TestRingItems::labelPlacementFlipsInTheLowerHalf()
{
    QFETCH(double, rotation);
    QFETCH(double, angle);
    QFETCH(bool, upper);
    PieChartItem root;
    root.setRadiusOffset(30);
    root.setRot(rotation);
    auto owned = std::make_unique<PieChartItem>();
    PieChartItem* slice = owned.get();
    slice->setRadiusOffset(30);
    root.addChild(owned.release());
    slice->setAngle(angle);
    QCOMPARE(slice->getLabelRadius(), 45.0);
    QCOMPARE(slice->getLabelRect(), QRectF(0, 0, 45 * qDegreesToRadians(angle), 30));
    const QPointF c = slice->getLabelCenter();
    QCOMPARE(c.y() < 0, upper);
    // It points to the middle of the slice's span.
    QVERIFY(std::abs(QLineF(QPointF(), c).angle() - std::fmod(rotation + angle / 2 + 360, 360)) < 1e-6);
}

QTEST_MAIN(TestRingItems)
#include "tst_ringitems.moc"
