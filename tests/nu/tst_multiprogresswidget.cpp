#include "nu/multiprogresswidget.h"

#include <QtTest>

class TestMultiProgressWidget : public QObject
{
    Q_OBJECT
private slots:
    void upperBarAdvancesInsideItsStep_data()
    {
        QTest::addColumn<int>("stepValue");
        QTest::addColumn<int>("stepMax");
        QTest::addColumn<int>("subValue");
        QTest::addColumn<int>("subMax");
        QTest::addColumn<int>("expectedTop");
        QTest::addColumn<int>("expectedSub");
        QTest::newRow("quarter steps, half done") << 1 << 4 << 50 << 100 << 3750 << 5000;
        QTest::newRow("sub done") << 0 << 3 << 9 << 9 << 3333 << 10000;
        QTest::newRow("truncated, not rounded") << 0 << 3 << 1 << 3 << 1111 << 3333;
    }

    void upperBarAdvancesInsideItsStep()
    {
        QFETCH(int, stepValue);
        QFETCH(int, stepMax);
        QFETCH(int, subValue);
        QFETCH(int, subMax);
        QFETCH(int, expectedTop);
        QFETCH(int, expectedSub);
        nu::MultiProgressWidget widget;
        widget.slotProgressChanged(0, stepValue, stepMax, QStringLiteral("Building piechart..."));
        widget.slotProgressChanged(1, subValue, subMax, QStringLiteral("Inserting nodes..."));
        QCOMPARE(widget.getLevelCount(), 2);
        QCOMPARE(widget.getBlock(1)->getBarValue(), expectedSub);
        QCOMPARE(widget.getBlock(0)->getBarValue(), expectedTop);
        QCOMPARE(widget.getBlock(0)->getMessage(), QStringLiteral("Building piechart..."));
    }

    void levelsComeAndGo()
    {
        nu::MultiProgressWidget widget;
        // Skipped levels are made empty.
        widget.slotProgressChanged(2, 1, 2, QStringLiteral("deep"));
        QCOMPARE(widget.getLevelCount(), 3);
        QVERIFY(widget.getBlock(1)->getMessage().isEmpty());
        // An update of the overall level removes the deeper blocks.
        widget.slotProgressChanged(0, 1, 2, QStringLiteral("overall"));
        QCOMPARE(widget.getLevelCount(), 1);
        QVERIFY(widget.getBlock(1) == nullptr);
        widget.slotProgressChanged(1, 0, 5, QStringLiteral("next step"));
        QCOMPARE(widget.getBlock(1)->getMessage(), QStringLiteral("next step"));
        // A maximum of 0 (a cancellation) keeps the bar where it was.
        QCOMPARE(widget.getBlock(0)->getBarValue(), 5000);
        widget.slotProgressChanged(0, 0, 0, QStringLiteral("Cancelled"));
        QCOMPARE(widget.getBlock(0)->getBarValue(), 5000);
        QCOMPARE(widget.getBlock(0)->getMessage(), QStringLiteral("Cancelled"));
    }
};

QTEST_MAIN(TestMultiProgressWidget)
#include "tst_multiprogresswidget.moc"
