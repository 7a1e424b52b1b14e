#include "nu/edit/handlergeometry.h"

#include <QtTest>

#include <cmath>
#include <limits>

using namespace nu::edit::handlergeometry;

namespace {

bool near(const QPointF& a, const QPointF& b)
{
    return std::abs(a.x() - b.x()) < 1e-9 && std::abs(a.y() - b.y()) < 1e-9;
}

} // namespace

class TestHandlerGeometry : public QObject
{
    Q_OBJECT
private slots:
    void directions_data();
    void directions();
    void spanFollowsTheDrag_data();
    void spanFollowsTheDrag();
    void tipLength_data();
    void tipLength();
};

void TestHandlerGeometry::directions_data()
{
    QTest::addColumn<double>("length");
    QTest::addColumn<double>("direction");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<double>("wrapped");

    // Counter-clockwise on a screen whose y axis points down.
    QTest::newRow("east") << 10.0 << 0.0 << QPointF(10, 0) << 0.0;
    QTest::newRow("west is +180, not -180") << 10.0 << 180.0 << QPointF(-10, 0) << 180.0;
    QTest::newRow("down as 270") << 2.0 << 270.0 << QPointF(0, 2) << -90.0;
    QTest::newRow("more than a turn") << 1.0 << 765.0 << QPointF(std::sqrt(0.5), -std::sqrt(0.5)) << 45.0;
    QTest::newRow("below -180") << 1.0 << -225.0 << QPointF(-std::sqrt(0.5), -std::sqrt(0.5)) << 135.0;
}

void TestHandlerGeometry::directions()
{
    QFETCH(double, length);
    QFETCH(double, direction);
    QFETCH(QPointF, point);
    QFETCH(double, wrapped);

    const QPointF p = polarPoint(length, direction);
    QVERIFY2(near(p, point), qPrintable(QStringLiteral("%1 %2").arg(p.x()).arg(p.y())));
    QCOMPARE(directionOf(p) + 1000, wrapped + 1000);
    QCOMPARE(lengthOf(p), length);
    QCOMPARE(wrapAngle(direction) + 1000, wrapped + 1000);
    // Turning a point by an angle is adding the angle to its direction.
    QVERIFY(near(rotated(QPointF(length, 0), direction), point));
    QVERIFY(near(rotated(point, -direction), QPointF(length, 0)));
}

void TestHandlerGeometry::spanFollowsTheDrag_data()
{
    QTest::addColumn<double>("direction");
    QTest::addColumn<double>("rotation");
    QTest::addColumn<double>("current");
    QTest::addColumn<double>("span");

    QTest::newRow("ahead of the start") << 100.0 << 30.0 << 60.0 << 70.0;
    QTest::newRow("behind the start: clockwise") << 10.0 << 30.0 << 5.0 << -20.0;
    QTest::newRow("across the x axis") << -20.0 << 300.0 << 60.0 << 40.0;
    QTest::newRow("past a half turn stops at it") << 190.0 << 0.0 << 170.0 << 180.0;
    QTest::newRow("past it clockwise") << 170.0 << 0.0 << -170.0 << -180.0;
    QTest::newRow("round to the start again") << 0.5 << 0.0 << 180.0 << 0.5;
}

void TestHandlerGeometry::spanFollowsTheDrag()
{
    QFETCH(double, direction);
    QFETCH(double, rotation);
    QFETCH(double, current);
    QFETCH(double, span);
    QCOMPARE(spanTo(polarPoint(50, direction), rotation, current) + 1000, span + 1000);
}

void TestHandlerGeometry::tipLength_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<double>("radius");
    QTest::addColumn<double>("tip");

    QTest::newRow("inside the arc") << QPointF(0, -70) << 100.0 << 30.0;
    QTest::newRow("outside: no outward tip") << QPointF(120, 0) << 100.0 << 0.0;
    QTest::newRow("at the centre") << QPointF() << 100.0 << 100.0;
    QTest::newRow("a bracket of radius 0") << QPointF(3, 4) << 0.0 << 0.0;
}

void TestHandlerGeometry::tipLength()
{
    QFETCH(QPointF, point);
    QFETCH(double, radius);
    QFETCH(double, tip);
    QCOMPARE(tipLengthAt(point, radius), tip);
}

QTEST_MAIN(TestHandlerGeometry)
#include "tst_handlergeometry.moc"
