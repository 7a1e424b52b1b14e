#include "nu/manualtimer.h"

#include <QtTest>

class TestManualTimer : public QObject
{
    Q_OBJECT
private slots:
    void firesAboutTwoHundredTimesAPhase_data()
    {
        QTest::addColumn<int>("total");
        QTest::addColumn<int>("expected");
        // delta = total / 200, at least 1: small totals fire on every step after the first.
        QTest::newRow("tiny") << 5 << 4;
        QTest::newRow("under 400") << 399 << 398;
        QTest::newRow("400") << 400 << 199;
        QTest::newRow("large") << 2700000 << 199;
        QTest::newRow("large, uneven") << 1000003 << 200;
    }

    void firesAboutTwoHundredTimesAPhase()
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

    void elapsedCountsSinceLastFire()
    {
        nu::ManualTimer timer(10);
        QVERIFY(!timer.isTime(4));
        QCOMPARE(timer.elapsed(), 4);
        QVERIFY(timer.isTime(12));
        QCOMPARE(timer.elapsed(), 0);
        QVERIFY(!timer.isTime(21));
        QCOMPARE(timer.elapsed(), 9);
        // After a restart, step 0 of the new phase is never time.
        timer.restart(1);
        QVERIFY(!timer.isTime(0));
        QVERIFY(timer.isTime(1));
        QVERIFY(timer.isTime(2));
    }
};

QTEST_APPLESS_MAIN(TestManualTimer)
#include "tst_manualtimer.moc"
