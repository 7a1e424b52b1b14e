#include "nu/graphics/angularchilditem.h"
#include "nu/graphics/angularparentitem.h"
#include "nu/graphics/countitem.h"
#include "nu/graphics/customshapeitem.h"
#include "nu/graphics/ordereditem.h"
#include "nu/graphics/orderedparentitem.h"
#include "nu/graphics/positionchilditem.h"
#include "nu/graphics/positionparentitem.h"
#include "nu/graphics/radiuschilditem.h"
#include "nu/graphics/radiusparentitem.h"
#include "nu/graphics/rotationchilditem.h"
#include "nu/graphics/rotationparentitem.h"

#include <QtTest>

#include <map>
#include <memory>

using namespace nu::graphics;

namespace {

// A parent of every kind, with values a test sets and pushes by hand.
class Parent : public AngularParentItem,
               public RadiusParentItem,
               public RotationParentItem,
               public PositionParentItem,
               public OrderedParentItem,
               public CountItem
{
public:
    explicit Parent(QGraphicsItem* parent = nullptr)
        : QGraphicsItem(parent)
    {
    }
    QRectF boundingRect() const override { return QRectF(0, 0, 10, 10); }
    void paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) override {}
    QString getDefaultText() const override { return QStringLiteral("parent text"); }

    double getAngleForChild() const override { return angle; }
    double getRadiusForChild() const override { return radius; }
    double getRotationForChild() const override { return rot; }
    QPointF getPositionForChild() const override { return position; }
    using CountItem::updateCountFromParent;
    void updateCountFromParent(qint64 rootTotal) override
    {
        ++layouts;
        laidOutWith = rootTotal;
    }

    void move(double a, double r, double t, const QPointF& p)
    {
        updateChildrenAngle(angle, a);
        updateChildrenRadius(radius, r);
        updateChildrenRotation(rot, t);
        updateChildrenPosition(position, p);
        angle = a;
        radius = r;
        rot = t;
        position = p;
    }

    double angle = 0;
    double radius = 0;
    double rot = 0;
    QPointF position;
    int layouts = 0;
    qint64 laidOutWith = -1;
};

// A child of every kind that keeps absolute values and shifts them as the parent moves.
class Child : public AngularChildItem,
              public RadiusChildItem,
              public RotationChildItem,
              public PositionChildItem,
              public OrderedItem,
              public CountItem
{
public:
    explicit Child(QGraphicsItem* parent = nullptr)
        : QGraphicsItem(parent)
    {
    }
    QRectF boundingRect() const override { return QRectF(-1, -1, 2, 2); }
    void paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) override {}

    void updateAngleFromParent(double o, double n) override { angle += n - o; }
    double getRadiusOffsetFromParent() const override { return radius - getRadiusParent(); }
    void setRadiusOffsetFromParent(double d) override { radius = getRadiusParent() + d; }
    void updateRadiusFromParent(double o, double n) override { radius += n - o; }
    QPointF getPositionOffsetFromParent() const override { return pos() - getPositionParent(); }
    void setPositionOffsetFromParent(const QPointF& d) override { setPos(getPositionParent() + d); }
    void updatePositionFromParent(const QPointF& o, const QPointF& n) override { setPos(pos() - o + n); }
    int getOrder() const override { return order; }
    void setOrder(int o) override
    {
        updateParentOrder(order, o);
        order = o;
    }
    void changeOrder(int o) override { order = o; }
    void updateCountFromParent(qint64) override {}

    double angle = 0;
    double radius = 0;
    int order = 1;
};

// An item of no relevant kind.
class Plain : public BaseItem
{
public:
    QRectF boundingRect() const override { return QRectF(); }
    void paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) override {}
};

class Trace : public CustomShapeItem
{
public:
    explicit Trace(const QRectF& r, QGraphicsItem* parent = nullptr)
        : QGraphicsItem(parent)
        , rect(r)
    {
    }
    QPainterPath path() const override
    {
        QPainterPath p;
        p.addRect(rect);
        return p;
    }
    QRectF rect;
};

std::unique_ptr<Child> makeChild(double angle, double radius, double rot, const QPointF& position)
{
    auto child = std::make_unique<Child>();
    child->angle = angle;
    child->radius = radius;
    child->setRot(rot);
    child->setPos(position);
    return child;
}

} // namespace

class TestItemMixins : public QObject
{
    Q_OBJECT
private slots:
    void addChildHandsDownTheParentsValues_data();
    void addChildHandsDownTheParentsValues();
    void childrenKeepTheirOffsetsWhenTheParentMoves();
    void removeFromParentTurnsOffsetsIntoValues();
    void addChildRefusesLoops();
    void insertionOrder_data();
    void insertionOrder();
    void countsFlowToTheRoot();
    void setCountClampsAndSkipsEqualValues_data();
    void setCountClampsAndSkipsEqualValues();
    void deferredLayoutKeepsTotalsOnly();
    void removedCountStaysInTheParentsTotal();
    void removedChildLeavesAGapThatAttachingFills_data();
    void removedChildLeavesAGapThatAttachingFills();
    void ignoringTransformationsRoundTrip_data();
    void ignoringTransformationsRoundTrip();
    void defaultTextAndAreaFollowTheTree();
    void traceBoundsFollowThePen();
};

void TestItemMixins::addChildHandsDownTheParentsValues_data()
{
    QTest::addColumn<bool>("matchingParent");
    QTest::addColumn<double>("angle");
    QTest::addColumn<double>("radius");
    QTest::addColumn<double>("rotation");
    QTest::addColumn<QPointF>("position");
    QTest::newRow("parent of every kind") << true << 50.0 << 105.0 << 32.0 << QPointF(6, 8);
    QTest::newRow("parent of no kind") << false << 10.0 << 5.0 << 2.0 << QPointF(1, 1);
}

void TestItemMixins::addChildHandsDownTheParentsValues()
{
    QFETCH(bool, matchingParent);
    QFETCH(double, angle);
    QFETCH(double, radius);
    QFETCH(double, rotation);
    QFETCH(QPointF, position);
    Parent parent;
    parent.move(40, 100, 30, QPointF(5, 7));
    Plain plain;
    BaseItem& target = matchingParent ? static_cast<BaseItem&>(parent) : plain;
    auto owned = makeChild(10, 5, 2, QPointF(1, 1));
    Child* child = owned.get();
    target.addChild(owned.release());
    QCOMPARE(child->parentItem(), static_cast<QGraphicsItem*>(&target));
    QCOMPARE(child->angle, angle);
    QCOMPARE(child->radius, radius);
    QCOMPARE(child->getRot(), rotation);
    QCOMPARE(child->pos(), position);
    QCOMPARE(child->getRadiusOffsetFromParent(), 5.0);
    QCOMPARE(child->getRotationOffsetFromParent(), 2.0);
    QCOMPARE(child->getPositionOffsetFromParent(), QPointF(1, 1));
}

void TestItemMixins::childrenKeepTheirOffsetsWhenTheParentMoves()
{
    Parent parent;
    parent.move(40, 100, 30, QPointF(5, 7));
    auto owned = makeChild(10, 5, 2, QPointF(1, 1));
    Child* child = owned.get();
    parent.addChild(owned.release());
    parent.move(90, 60, -45, QPointF(-20, 3));
    QCOMPARE(child->angle, 100.0);
    QCOMPARE(child->radius, 65.0);
    QCOMPARE(child->getRot(), -43.0);
    QCOMPARE(child->pos(), QPointF(-19, 4));
    QCOMPARE(child->getLabelRadius(), 62.5);
}

void TestItemMixins::removeFromParentTurnsOffsetsIntoValues()
{
    Parent parent;
    parent.move(40, 100, 30, QPointF(5, 7));
    auto owned = makeChild(10, 5, 2, QPointF(1, 1));
    Child* child = owned.get();
    parent.addChild(owned.release());
    child->removeFromParent();
    owned.reset(child);
    QVERIFY(!child->parentItem());
    QCOMPARE(child->angle, 10.0);
    QCOMPARE(child->radius, 5.0);
    QCOMPARE(child->getRot(), 2.0);
    QCOMPARE(child->pos(), QPointF(1, 1));
}

void TestItemMixins::addChildRefusesLoops()
{
    Parent top;
    auto middle = std::make_unique<Parent>();
    Parent* m = middle.get();
    top.addChild(middle.release());
    top.addChild(&top);
    m->addChild(&top);
    top.addChild(nullptr);
    QVERIFY(!top.parentItem());
    QCOMPARE(m->parentItem(), static_cast<QGraphicsItem*>(&top));
}

void TestItemMixins::insertionOrder_data()
{
    QTest::addColumn<QList<int>>("siblings");
    QTest::addColumn<int>("order");
    QTest::addColumn<int>("expected");
    QTest::newRow("first child keeps its order") << QList<int>{} << 1 << 1;
    QTest::newRow("taken order goes last") << QList<int>{1} << 1 << 2;
    QTest::newRow("taken order after a gap") << QList<int>{1, 7, 3} << 3 << 8;
    QTest::newRow("free order kept") << QList<int>{1, 2} << 5 << 5;
    QTest::newRow("free order below others kept") << QList<int>{4, 6} << 2 << 2;
    QTest::newRow("order 0 taken") << QList<int>{0} << 0 << 1;
}

void TestItemMixins::insertionOrder()
{
    QFETCH(QList<int>, siblings);
    QFETCH(int, order);
    QFETCH(int, expected);
    Parent parent;
    for (int o : siblings) {
        auto sibling = std::make_unique<Child>(&parent);
        sibling->changeOrder(o);
        sibling.release();
    }
    // An item of another kind among the children does not count.
    auto plain = std::make_unique<Plain>();
    plain->setParentItem(&parent);
    plain.release();
    auto child = std::make_unique<Child>();
    child->changeOrder(order);
    Child* c = child.get();
    parent.addChild(child.release());
    QCOMPARE(c->getOrder(), expected);
}



void TestItemMixins::countsFlowToTheRoot()
{
    Parent root;
    root.setCount(2);
    auto middle = std::make_unique<Parent>();
    Parent* m = middle.get();
    m->setCount(3);
    root.addChild(middle.release());
    QCOMPARE(root.getTotal(), qint64(5));
    auto leaf = std::make_unique<Child>();
    Child* l = leaf.get();
    leaf->setCount(10);
    m->addChild(leaf.release());
    QCOMPARE(m->getTotal(), qint64(13));
    QCOMPARE(root.getTotal(), qint64(15));
    const int before = root.layouts;
    const int middleBefore = m->layouts;
    l->setCount(4);
    QCOMPARE(root.getTotal(), qint64(9));
    QCOMPARE(root.layouts, before + 1);
    QCOMPARE(root.laidOutWith, qint64(9));
    // The inner item is not the root: only the root lays out.
    QCOMPARE(m->layouts, middleBefore);
    // Totals are 64-bit: many counts at the int limit do not overflow.
    for (int i = 0; i < 3; ++i) {
        auto big = std::make_unique<Child>();
        big->setCount(std::numeric_limits<int>::max());
        root.addChild(big.release());
    }
    QCOMPARE(root.getTotal(), 9 + 3 * qint64(std::numeric_limits<int>::max()));
}

void TestItemMixins::setCountClampsAndSkipsEqualValues_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("layouts");
    QTest::newRow("negative stored as 0") << -5 << -5 << 0 << 0;
    QTest::newRow("same value twice") << 7 << 7 << 7 << 1;
    QTest::newRow("negative after a count") << 7 << -1 << 0 << 2;
    QTest::newRow("two values") << 7 << 8 << 8 << 2;
}

void TestItemMixins::setCountClampsAndSkipsEqualValues()
{
    QFETCH(int, first);
    QFETCH(int, second);
    QFETCH(int, stored);
    QFETCH(int, layouts);
    Parent item;
    item.setCount(first);
    item.setCount(second);
    QCOMPARE(item.getCount(), stored);
    QCOMPARE(item.getTotal(), qint64(stored));
    QCOMPARE(item.layouts, layouts);
}

void TestItemMixins::deferredLayoutKeepsTotalsOnly()
{
    Parent root;
    root.setLayoutDeferred(true);
    root.setCount(4);
    auto child = std::make_unique<Child>();
    child->setCount(6);
    root.addChild(child.release());
    QCOMPARE(root.getTotal(), qint64(10));
    QCOMPARE(root.layouts, 0);
    root.setLayoutDeferred(false);
    root.setCount(5);
    QCOMPARE(root.layouts, 1);
    QCOMPARE(root.laidOutWith, qint64(11));
}

void TestItemMixins::removedCountStaysInTheParentsTotal()
{
    Parent root;
    root.setCount(1);
    auto owned = std::make_unique<Parent>();
    Parent* child = owned.get();
    child->setCount(4);
    root.addChild(owned.release());
    QCOMPARE(root.getTotal(), qint64(5));
    child->removeFromParent();
    owned.reset(child);
    QCOMPARE(root.getTotal(), qint64(5));
    QCOMPARE(child->getTotal(), qint64(4));
}

void TestItemMixins::removedChildLeavesAGapThatAttachingFills_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<qint64>("rootTotal");
    QTest::addColumn<qint64>("rootGap");

    // root 1 holds a 4 (holding g 2) and b 3. "-x" takes x from its parent, "+x>y" attaches x to
    // y, "x=n" sets x's own count.
    QTest::newRow("as built") << "" << qint64(10) << qint64(0);
    QTest::newRow("removed") << "-a" << qint64(10) << qint64(6);
    QTest::newRow("put back") << "-a +a>root" << qint64(10) << qint64(0);
    QTest::newRow("put back in pieces") << "-g -a +a>root +g>a" << qint64(10) << qint64(0);
    QTest::newRow("moved to a sibling") << "-a +a>b" << qint64(10) << qint64(0);
    QTest::newRow("a sibling's count is no attachment") << "-a b=5" << qint64(12) << qint64(6);
    QTest::newRow("a larger subtree overflows the gap") << "-g -a a=9 +a>root" << qint64(15) << qint64(0);
    QTest::newRow("a smaller one leaves the rest") << "-g -a +g>root" << qint64(10) << qint64(4);
    QTest::newRow("counts of an attached child change totals") << "-a +a>root a=1" << qint64(7) << qint64(0);
}

void TestItemMixins::removedChildLeavesAGapThatAttachingFills()
{
    QFETCH(QString, steps);
    QFETCH(qint64, rootTotal);
    QFETCH(qint64, rootGap);

    Parent root;
    root.setCount(1);
    std::map<QString, Parent*> items{{QStringLiteral("root"), &root}};
    std::vector<std::unique_ptr<Parent>> detached;
    const auto add = [&](const QString& name, Parent& parent, int count) {
        auto item = std::make_unique<Parent>();
        item->setCount(count);
        items[name] = item.get();
        parent.addChild(item.release());
    };
    add(QStringLiteral("a"), root, 4);
    add(QStringLiteral("g"), *items[QStringLiteral("a")], 2);
    add(QStringLiteral("b"), root, 3);

    for (const QString& step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (step.startsWith(QLatin1Char('-'))) {
            Parent* item = items[step.mid(1)];
            item->removeFromParent();
            detached.emplace_back(item);
        } else if (step.startsWith(QLatin1Char('+'))) {
            const QStringList names = step.mid(1).split(QLatin1Char('>'));
            Parent* item = items[names[0]];
            for (auto& owned : detached) {
                if (owned.get() == item)
                    owned.release();
            }
            items[names[1]]->addChild(item);
        } else {
            const QStringList parts = step.split(QLatin1Char('='));
            items[parts[0]]->setCount(parts[1].toInt());
        }
    }
    QCOMPARE(root.getTotal(), rootTotal);
    QCOMPARE(root.getDetachedTotal(), rootGap);
    QCOMPARE(root.laidOutWith, rootTotal);
}

void TestItemMixins::ignoringTransformationsRoundTrip_data()
{
    QTest::addColumn<double>("parentRotation");
    QTest::addColumn<double>("offset");
    QTest::newRow("turned parent") << 30.0 << 15.0;
    QTest::newRow("unturned parent") << 0.0 << -20.0;
    QTest::newRow("negative parent") << -90.0 << 45.0;
}

void TestItemMixins::ignoringTransformationsRoundTrip()
{
    QFETCH(double, parentRotation);
    QFETCH(double, offset);
    Parent parent;
    parent.rot = parentRotation;
    auto owned = std::make_unique<Child>();
    Child* child = owned.get();
    parent.addChild(owned.release());
    child->setRotationOffsetFromParent(offset);
    QCOMPARE(child->getRot(), parentRotation + offset);
    child->setIgnoreTransformations(true);
    QVERIFY(child->getIgnoreTransformations());
    QCOMPARE(child->getRot(), offset);
    child->setIgnoreTransformations(true);
    QCOMPARE(child->getRot(), offset);
    // A parent that turns meanwhile does not turn an item that ignores transformations.
    parent.move(0, 0, parentRotation + 10, QPointF());
    QCOMPARE(child->getRot(), offset);
    parent.move(0, 0, parentRotation, QPointF());
    child->setIgnoreTransformations(false);
    QCOMPARE(child->getRot(), parentRotation + offset);
    QCOMPARE(child->rotation(), -(parentRotation + offset));
}



void TestItemMixins::defaultTextAndAreaFollowTheTree()
{
    Parent parent;
    auto owned = makeChild(0, 0, 0, QPointF(100, 0));
    Child* child = owned.get();
    parent.addChild(owned.release());
    QCOMPARE(child->getDefaultText(), QStringLiteral("parent text"));
    Plain alone;
    QCOMPARE(alone.getDefaultText(), QStringLiteral("new text"));
    QCOMPARE(parent.getAreaRect(), QRectF(0, -1, 101, 11));
    child->setVisible(false);
    QCOMPARE(parent.getAreaRect(), QRectF(0, 0, 10, 10));
}

void TestItemMixins::traceBoundsFollowThePen()
{
    Trace trace(QRectF(0, 0, 10, 10));
    QCOMPARE(trace.boundingRect(), QRectF(-1.5, -1.5, 13, 13));
    trace.setPen(QPen(Qt::black, 6));
    QCOMPARE(trace.boundingRect(), QRectF(-4, -4, 18, 18));
    QVERIFY(trace.shape().contains(QPointF(-2.9, 5)));
    QVERIFY(!trace.shape().contains(QPointF(-3.1, 5)));
    QCOMPARE(trace.getBrush(), QBrush(Qt::red, Qt::SolidPattern));
}

QTEST_MAIN(TestItemMixins)
#include "tst_itemmixins.moc"
