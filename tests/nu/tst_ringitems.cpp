#include "nu/graphics/piechartitem.h"
#include "nu/graphics/pieitem.h"
#include "nu/graphics/recttextitem.h"

#include <QtMath>
#include <QtTest>

#include <memory>
#include <vector>

using namespace nu::graphics;

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
    void ringOutline_data()
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
        QTest::newRow("ring sector") << 90.0 << 30.0 << 30.0 << QList<QPointF>{polar(45, 45), polar(31, 1), polar(59, 89)}
                                     << QList<QPointF>{polar(29, 45), polar(61, 45), polar(45, 91), polar(45, -1)};
        QTest::newRow("more than half") << 270.0 << 30.0 << 10.0 << QList<QPointF>{polar(35, 180), polar(35, 260)}
                                        << QList<QPointF>{polar(35, 300), polar(20, 180)};
    }

    void ringOutline()
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
        // The bounds leave room for a wide pen.
        ring.setPen(QPen(Qt::black, 6));
        QVERIFY(ring.boundingRect().contains(path.boundingRect().adjusted(-3, -3, 3, 3)));
    }

    void setOrderSwapsAndRelaysSiblings()
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

    void countChangeRelaysTheWholeChart()
    {
        const Chart chart({{-1, 0}, {0, 1}, {1, 1}, {0, 2}});
        QCOMPARE(chart.items[2]->getAngle(), 90.0);
        chart.items[2]->setCount(5);
        QCOMPARE(chart.root->getTotal(), qint64(8));
        QCOMPARE(chart.items[1]->getAngle(), 270.0);
        QCOMPARE(chart.items[2]->getAngle(), 225.0);
        QCOMPARE(chart.start(3), 270.0);
    }

    void emptyChartHasNoAngles()
    {
        const Chart chart({{-1, 0}, {0, 0}});
        QCOMPARE(chart.root->getAngle(), 0.0);
        QCOMPARE(chart.items[1]->getAngle(), 0.0);
        QVERIFY(qIsFinite(chart.root->boundingRect().width()));
    }

    void labelPlacementFlipsInTheLowerHalf_data()
    {
        QTest::addColumn<double>("rotation");
        QTest::addColumn<double>("angle");
        QTest::addColumn<bool>("upper");
        QTest::newRow("middle just above") << 170.0 << 18.0 << true;
        QTest::newRow("middle just below") << 175.0 << 18.0 << false;
        QTest::newRow("negative rotation") << -30.0 << 20.0 << false;
    }

    void labelPlacementFlipsInTheLowerHalf()
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

    void insertionOrder_data()
    {
        QTest::addColumn<QList<int>>("siblings");
        QTest::addColumn<int>("order");
        QTest::addColumn<int>("expected");
        QTest::newRow("taken order after a gap") << QList<int>{1, 7, 3} << 3 << 8;
        QTest::newRow("free order below others kept") << QList<int>{4, 6} << 2 << 2;
        QTest::newRow("order 0 taken") << QList<int>{0} << 0 << 1;
    }

    void insertionOrder()
    {
        QFETCH(QList<int>, siblings);
        QFETCH(int, order);
        QFETCH(int, expected);
        PieItem parent;
        for (int o : siblings)
            (new PieItem(&parent))->changeOrder(o); // owned by the parent
        // An item of another kind among the children does not count.
        new RectTextItem(&parent); // owned by the parent
        auto child = std::make_unique<PieItem>();
        child->changeOrder(order);
        PieItem* c = child.get();
        parent.addChild(child.release());
        QCOMPARE(c->getOrder(), expected);
    }

    void addChildRefusesLoops()
    {
        PieItem top;
        auto middle = std::make_unique<PieItem>();
        PieItem* m = middle.get();
        top.addChild(middle.release());
        top.addChild(&top);
        m->addChild(&top);
        top.addChild(nullptr);
        QVERIFY(!top.parentItem());
        QCOMPARE(m->parentItem(), static_cast<QGraphicsItem*>(&top));
    }

    void totalsAre64BitAndOutliveRemoval()
    {
        const Chart chart({{-1, 2}, {0, 3}, {1, 10}});
        QCOMPARE(chart.root->getTotal(), qint64(15));
        chart.items[2]->setCount(-4);
        QCOMPARE(chart.items[2]->getCount(), 0);
        QCOMPARE(chart.root->getTotal(), qint64(5));
        // Many counts at the int limit do not overflow.
        for (int i = 0; i < 3; ++i) {
            auto big = std::make_unique<PieChartItem>();
            big->setCount(std::numeric_limits<int>::max());
            chart.root->addChild(big.release());
        }
        QCOMPARE(chart.root->getTotal(), 5 + 3 * qint64(std::numeric_limits<int>::max()));
        // A removed slice's count stays in the total it was part of, and goes with the slice.
        chart.items[1]->removeFromParent();
        const std::unique_ptr<PieChartItem> removed(chart.items[1]);
        QCOMPARE(chart.root->getTotal(), 5 + 3 * qint64(std::numeric_limits<int>::max()));
        QCOMPARE(removed->getTotal(), qint64(3));
    }

    void textIgnoringTransformationsKeepsItsTurn()
    {
        const double parentRotation = 30;
        const double offset = 15;
        // A slice turns its annotations to the middle of its span.
        PieItem slice;
        slice.setAngle(2 * parentRotation);
        auto owned = std::make_unique<RectTextItem>();
        RectTextItem* text = owned.get();
        slice.addChild(owned.release());
        text->setRotationOffsetFromParent(offset);
        QCOMPARE(text->getRot(), parentRotation + offset);
        text->setIgnoreTransformations(true);
        QCOMPARE(text->getRot(), offset);
        // A parent that turns meanwhile does not turn it.
        slice.setAngle(2 * parentRotation + 20);
        QCOMPARE(text->getRot(), offset);
        slice.setAngle(2 * parentRotation);
        text->setIgnoreTransformations(false);
        QCOMPARE(text->rotation(), -(parentRotation + offset));
    }
};

QTEST_MAIN(TestRingItems)
#include "tst_ringitems.moc"
