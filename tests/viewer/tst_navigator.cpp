#include "viewer/navigator.h"

#include <QtTest>

using Sorvik::Viewer::Navigator;
using Position = Navigator::Position;

class TestNavigator : public QObject
{
    Q_OBJECT
private slots:
    void startsAtRoot();
    void enteringAnOuterSliceStepsOutThroughItsParents();
    void enteringTheCentreDoesNothing();
    void stepOutNeverLeavesTheRoot();
    void goToRootForgetsThePath();
};

void TestNavigator::startsAtRoot()
{
    Navigator navigator;
    QVERIFY(navigator.isAtRoot());
    QCOMPARE(navigator.getCurrentPosition(), Position(0, 1));
}

void TestNavigator::enteringAnOuterSliceStepsOutThroughItsParents()
{
    Navigator navigator;
    // a grandchild of the root entered directly: its parent lies between
    const Position child(2, 5), grandchild(7, 12);
    navigator.goToLevel(grandchild, {child, Position(0, 1)});
    QCOMPARE(navigator.getCurrentPosition(), grandchild);
    QCOMPARE(navigator.getDepth(), 2);
    navigator.goToUpperLevel(1);
    QCOMPARE(navigator.getCurrentPosition(), child);
    QVERIFY(!navigator.isAtRoot());
    navigator.goToUpperLevel(1);
    QVERIFY(navigator.isAtRoot());
}

void TestNavigator::enteringTheCentreDoesNothing()
{
    Navigator navigator;
    navigator.goToLevel(Position(3, 9), {Position(0, 1)});
    navigator.goToLevel(Position(3, 9), {Position(0, 1)});
    QCOMPARE(navigator.getDepth(), 1);
    navigator.goToLevel(Position(9, 20), {Position(3, 9), Position(0, 1)});
    QCOMPARE(navigator.getDepth(), 2);
}

void TestNavigator::stepOutNeverLeavesTheRoot()
{
    Navigator navigator;
    navigator.goToLevel(Position(1, 4), {Position(0, 1)});
    navigator.goToUpperLevel(5);
    QVERIFY(navigator.isAtRoot());
    QCOMPARE(navigator.getCurrentPosition(), Position(0, 1));
}

void TestNavigator::goToRootForgetsThePath()
{
    Navigator navigator;
    navigator.goToLevel(Position(1, 4), {Position(0, 1)});
    navigator.goToLevel(Position(4, 6), {Position(1, 4), Position(0, 1)});
    navigator.goToRoot();
    QVERIFY(navigator.isAtRoot());
    QCOMPARE(navigator.getDepth(), 0);
}

QTEST_APPLESS_MAIN(TestNavigator)
#include "tst_navigator.moc"
