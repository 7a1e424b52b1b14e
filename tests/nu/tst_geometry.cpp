#include "nu/graphics/geometry.h"
#include "nu/maxlevels.h"

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
    void pathToShapeCoversTheStroke_data()
    {
        QTest::addColumn<double>("penWidth");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<bool>("inside");
        QTest::newRow("on a thin line") << 0.0 << QPointF(50, 0) << true;
        QTest::newRow("within a wide stroke") << 6.0 << QPointF(50, -2.5) << true;
        QTest::newRow("beyond a wide stroke") << 6.0 << QPointF(50, -3.5) << false;
        QTest::newRow("the closed area") << 1.0 << QPointF(50, 40) << true;
    }

    void pathToShapeCoversTheStroke()
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

    void polarTransformBendsOntoTheCircle_data()
    {
        QTest::addColumn<QPointF>("flat");
        QTest::addColumn<double>("radius");
        QTest::addColumn<double>("scale");
        QTest::addColumn<QPointF>("bent");
        QTest::newRow("a quarter clockwise") << QPointF(50 * M_PI, 0) << 100.0 << 1.0 << QPointF(0, 100);
        QTest::newRow("y points inwards") << QPointF(0, 10) << 100.0 << 1.0 << QPointF(90, 0);
        QTest::newRow("reversed y points outwards") << QPointF(0, 10) << 100.0 << -1.0 << QPointF(110, 0);
        QTest::newRow("radius 0 leaves it") << QPointF(3, 4) << 0.0 << 1.0 << QPointF(3, 4);
    }

    void polarTransformBendsOntoTheCircle()
    {
        QFETCH(QPointF, flat);
        QFETCH(double, radius);
        QFETCH(double, scale);
        QFETCH(QPointF, bent);
        QPointF point = flat;
        polarTransform(point, radius, scale);
        QVERIFY2(near(point, bent), qPrintable(QStringLiteral("(%1, %2)").arg(point.x()).arg(point.y())));
    }

    void maxLevelsCountsTheDeepestPath()
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
};

QTEST_MAIN(TestGeometry)
#include "tst_geometry.moc"
