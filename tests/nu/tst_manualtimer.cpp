#include "nu/manualtimer.h"

#include <QtTest>

class TestManualTimer : public QObject
{
    Q_OBJECT
private slots:
    void firesAboutTwoHundredTimesAPhase_data();
    void firesAboutTwoHundredTimesAPhase();
    void zeroIsNeverTimeAfterRestart();
    void deltaBelowOneBecomesOne();
    void elapsedCountsSinceLastFire();
};

void TestManualTimer::firesAboutTwoHundredTimesAPhase_data()
{
    QTest::addColumn<int>("total");
    QTest::addColumn<int>("expected");
    // delta = total / 200; small totals fire on every step after the first
    QTest::newRow("tiny") << 5 << 4;
    QTest::newRow("under 400") << 399 << 398;
    QTest::newRow("400") << 400 << 199;
    QTest::newRow("large") << 2700000 << 199;
    QTest::newRow("large, uneven") << 1000003 << 200;
}

void TestManualTimer::firesAboutTwoHundredTimesAPhase()
{
    QFETCH(int, total);
    QFETCH(int, expected);
    nu::ManualTimer timer(1000);
    timer.restart(total / 200);
    int fired = 0;
    for (int n = 0; n < total; ++n)
        fired += timer.isTime(n) ? 1 : 0;
    QCOMPARE(fired, expected);
}

void TestManualTimer::zeroIsNeverTimeAfterRestart()
{
    nu::ManualTimer timer(1);
    timer.isTime(10);
    timer.restart(1);
    QVERIFY(!timer.isTime(0));
    QVERIFY(timer.isTime(1));
    QVERIFY(timer.isTime(2));
}

void TestManualTimer::deltaBelowOneBecomesOne()
{
    nu::ManualTimer timer(-5);
    QCOMPARE(timer.getDelta(), 1);
    timer.setDelta(0);
    QCOMPARE(timer.getDelta(), 1);
    timer.setDelta(7);
    QCOMPARE(timer.getDelta(), 7);
}

void TestManualTimer::elapsedCountsSinceLastFire()
{
    nu::ManualTimer timer(10);
    QVERIFY(!timer.isTime(4));
    QCOMPARE(timer.elapsed(), 4);
    QVERIFY(timer.isTime(12));
    QCOMPARE(timer.elapsed(), 0);
    QVERIFY(!timer.isTime(21));
    QCOMPARE(timer.elapsed(), 9);
}

QTEST_APPLESS_MAIN(TestManualTimer)
#include "tst_manualtimer.moc"
