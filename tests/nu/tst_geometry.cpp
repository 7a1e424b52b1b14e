#include "nu/cyclicrange.h"
#include "nu/graphics/color.h"
#include "nu/graphics/geometry.h"
#include "nu/maxlevels.h"

#include <QFont>
#include <QPen>
#include <QtMath>
#include <QtTest>

#include <memory>
#include <vector>

using namespace nu::graphics;

namespace {

// A tree kept as child lists by node index, with a handle that maxLevels can walk.
struct Tree
{
    std::vector<std::vector<int>> kids;
    int add(int parent)
    {
        kids.emplace_back();
        const int id = static_cast<int>(kids.size()) - 1;
        if (parent >= 0)
            kids[parent].push_back(id);
        return id;
    }
    int chain(int parent, int length)
    {
        for (int i = 0; i < length; ++i)
            parent = add(parent);
        return parent;
    }
};

struct TreeNode
{
    const Tree* tree;
    int id;
    std::vector<TreeNode> children() const
    {
        std::vector<TreeNode> result;
        for (int kid : tree->kids[id])
            result.push_back(TreeNode{tree, kid});
        return result;
    }
};

bool near(const QPointF& a, const QPointF& b)
{
    return std::abs(a.x() - b.x()) < 1e-9 && std::abs(a.y() - b.y()) < 1e-9;
}

} // namespace

class TestGeometry : public QObject
{
    Q_OBJECT
private slots:
    void expandedLeavesRoomForThePen_data();
    void expandedLeavesRoomForThePen();
    void textRectIsASizeAtTheOrigin();
    void pathToShapeCoversTheStroke_data();
    void pathToShapeCoversTheStroke();
    void polarTransformBendsOntoTheCircle_data();
    void polarTransformBendsOntoTheCircle();
    void colorArithmeticInterpolates();
    void cyclicRangeNormalisesOnePeriod_data();
    void cyclicRangeNormalisesOnePeriod();
    void cyclicRangeSharesTheCircle();
    void maxLevelsCountsTheDeepestPath();
};

void TestGeometry::expandedLeavesRoomForThePen_data()
{
    QTest::addColumn<int>("penWidth");
    QTest::addColumn<double>("margin");
    QTest::newRow("cosmetic") << 0 << 1.0;
    QTest::newRow("one") << 1 << 1.5;
    QTest::newRow("odd") << 3 << 2.5;
    QTest::newRow("even") << 4 << 3.0;
}

void TestGeometry::expandedLeavesRoomForThePen()
{
    QFETCH(int, penWidth);
    QFETCH(double, margin);
    const QRectF square = centeredRect(QPointF(10, -5), 2);
    QCOMPARE(square, QRectF(8, -7, 4, 4));
    QCOMPARE(expanded(square, penWidth), QRectF(8 - margin, -7 - margin, 4 + 2 * margin, 4 + 2 * margin));
}

void TestGeometry::textRectIsASizeAtTheOrigin()
{
    QFont font;
    font.setPixelSize(20);
    const QRectF thin = textRect(QStringLiteral("Bacteria"), font, QPen(Qt::NoPen));
    const QRectF thick = textRect(QStringLiteral("Bacteria"), font, QPen(Qt::black, 6));
    QCOMPARE(thin.topLeft(), QPointF(0, 0));
    QCOMPARE(thick.topLeft(), QPointF(0, 0));
    QVERIFY(thin.width() > 40 && thin.height() > 10);
    // The pen widens the box on both sides: 6 / 2 + 1 against 1 / 2 + 1 of a pen of width 1.
    QCOMPARE(thick.width() - thin.width(), 5.0);
    QVERIFY(textRect(QStringLiteral("Bacteria and Archaea"), font, QPen()).width() > thin.width());
    QCOMPARE(textRect(QString(), font, QPen(Qt::NoPen)), QRectF(0, 0, 3, 3));
}

void TestGeometry::pathToShapeCoversTheStroke_data()
{
    QTest::addColumn<double>("penWidth");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<bool>("inside");
    QTest::newRow("on a thin line") << 0.0 << QPointF(50, 0) << true;
    QTest::newRow("beside a thin line") << 0.0 << QPointF(50, -1) << false;
    QTest::newRow("within a wide stroke") << 6.0 << QPointF(50, -2.5) << true;
    QTest::newRow("beyond a wide stroke") << 6.0 << QPointF(50, -3.5) << false;
    QTest::newRow("the closed area") << 1.0 << QPointF(50, 40) << true;
}

void TestGeometry::pathToShapeCoversTheStroke()
{
    QFETCH(double, penWidth);
    QFETCH(QPointF, point);
    QFETCH(bool, inside);
    // A triangle whose base runs along the x axis.
    QPainterPath path;
    path.moveTo(0, 0);
    path.lineTo(100, 0);
    path.lineTo(50, 80);
    path.closeSubpath();
    QPen pen(Qt::black);
    pen.setWidthF(penWidth);
    QCOMPARE(pathToShape(path, pen).contains(point), inside);
    QVERIFY(pathToShape(QPainterPath(), pen).isEmpty());
}

void TestGeometry::polarTransformBendsOntoTheCircle_data()
{
    QTest::addColumn<QPointF>("flat");
    QTest::addColumn<double>("radius");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QPointF>("bent");
    QTest::newRow("origin onto the +x axis") << QPointF(0, 0) << 100.0 << 1.0 << QPointF(100, 0);
    QTest::newRow("a quarter clockwise") << QPointF(50 * M_PI, 0) << 100.0 << 1.0 << QPointF(0, 100);
    QTest::newRow("a quarter counter-clockwise") << QPointF(50 * M_PI, 0) << 100.0 << -1.0 << QPointF(0, -100);
    QTest::newRow("y points inwards") << QPointF(0, 10) << 100.0 << 1.0 << QPointF(90, 0);
    QTest::newRow("reversed y points outwards") << QPointF(0, 10) << 100.0 << -1.0 << QPointF(110, 0);
    QTest::newRow("half way round") << QPointF(30 * M_PI, -5) << 30.0 << 1.0 << QPointF(-35, 0);
    QTest::newRow("radius 0 leaves it") << QPointF(3, 4) << 0.0 << 1.0 << QPointF(3, 4);
}

void TestGeometry::polarTransformBendsOntoTheCircle()
{
    QFETCH(QPointF, flat);
    QFETCH(double, radius);
    QFETCH(double, scale);
    QFETCH(QPointF, bent);
    QPointF point = flat;
    polarTransform(point, radius, scale);
    QVERIFY2(near(point, bent), qPrintable(QStringLiteral("(%1, %2)").arg(point.x()).arg(point.y())));
}


void TestGeometry::colorArithmeticInterpolates()
{
    QColor begin;
    begin.setHslF(0.25, 1.0, 0.5);
    QColor end;
    end.setHslF(0.25, 1.0, 0.9);
    const Color step = (Color(end) - Color(begin)) / 4;
    Color c = begin;
    for (int i = 0; i < 4; ++i)
        c = c + step;
    QVERIFY(std::abs(c.toQColor().lightnessF() - 0.9) < 1e-3);
    QCOMPARE(c.toQColor().alphaF(), 1.0);
    // Rounding past the unit range is clamped, not an invalid colour.
    const QColor over = (Color(1.0, 0.5, 0.0) + Color(1e-9, 0, -1e-9)).toQColor();
    QVERIFY(over.isValid());
    QCOMPARE(over.redF(), 1.0);
    QCOMPARE(over.blueF(), 0.0);
    QCOMPARE((Color(0.2, 0.4, 0.6) / 0).g, 0.4);
}

void TestGeometry::cyclicRangeNormalisesOnePeriod_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("normalised");
    QTest::newRow("inside") << 0.3 << 0.3;
    QTest::newRow("exactly one") << 1.0 << 1.0;
    QTest::newRow("one period over") << 1.7 << 0.7;
    QTest::newRow("only one period removed") << 2.5 << 1.5;
    QTest::newRow("negative kept") << -0.3 << -0.3;
}

void TestGeometry::cyclicRangeNormalisesOnePeriod()
{
    QFETCH(double, start);
    QFETCH(double, normalised);
    const nu::CyclicRange range(start, 0.2);
    QVERIFY(std::abs(range.getStart() - normalised) < 1e-12);
    QCOMPARE(range.getLength(), 0.2);
    // A copy goes through the same normalisation once more.
    const nu::CyclicRange copy(range);
    QVERIFY(std::abs(copy.getStart() - nu::CyclicRange::normalize(normalised)) < 1e-12);
}

void TestGeometry::cyclicRangeSharesTheCircle()
{
    nu::CyclicRange range = nu::CyclicRange() / 4;
    QCOMPARE(range.getStart(), 0.0);
    QCOMPARE(range.getLength(), 0.25);
    std::vector<double> centers;
    for (int i = 0; i < 4; ++i) {
        centers.push_back(range.getCenter());
        ++range;
    }
    QCOMPARE(centers, (std::vector<double>{0.125, 0.375, 0.625, 0.875}));
    // Past the end it wraps round.
    QVERIFY(std::abs(range.getStart()) < 1e-12 || std::abs(range.getStart() - 1.0) < 1e-12);
    ++range;
    QVERIFY(std::abs(range.getStart() - 0.25) < 1e-12);
    QCOMPARE((nu::CyclicRange(0.5, 0.3) / 0).getLength(), 0.3);
}

void TestGeometry::maxLevelsCountsTheDeepestPath()
{
    Tree tree;
    const int root = tree.add(-1);
    QCOMPARE(nu::maxLevels(TreeNode{&tree, root}), 1);
    tree.add(root);
    tree.chain(root, 4);
    tree.chain(root, 2);
    QCOMPARE(nu::maxLevels(TreeNode{&tree, root}), 5);
    // Deep enough that a recursive walk would be at risk under the sanitizers.
    Tree deep;
    deep.chain(-1, 100000);
    QCOMPARE(nu::maxLevels(TreeNode{&deep, 0}), 100000);
}

QTEST_MAIN(TestGeometry)
#include "tst_geometry.moc"
