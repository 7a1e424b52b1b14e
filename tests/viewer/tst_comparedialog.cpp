#include "viewer/comparedialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

using Sorvik::Viewer::CompareDialog;

class TestCompareDialog : public QObject
{
    Q_OBJECT
private slots:
    void acceptsTwoToTwelve_data()
    {
        QTest::addColumn<int>("chosen");
        QTest::addColumn<bool>("acceptable");
        QTest::newRow("none") << 0 << false;
        QTest::newRow("one") << 1 << false;
        QTest::newRow("two") << 2 << true;
        QTest::newRow("twelve") << 12 << true;
        QTest::newRow("thirteen") << 13 << false;
    }

    void acceptsTwoToTwelve()
    {
        QFETCH(int, chosen);
        QFETCH(bool, acceptable);
        CompareDialog dialog(names(20), {});
        QList<int> samples;
        for (int i = 0; i < chosen; ++i)
            samples << 19 - i;
        dialog.setChosen(samples);
        QCOMPARE(dialog.isAcceptable(), acceptable);
        QCOMPARE(okButton(dialog)->isEnabled(), acceptable);
        // In the chart's order, whatever order they were ticked in.
        std::sort(samples.begin(), samples.end());
        QCOMPARE(dialog.getChosen(), samples);
    }

    void tickingByHand()
    {
        CompareDialog dialog(names(3), {100, 200, 300});
        QVERIFY(!okButton(dialog)->isEnabled());
        dialog.getList()->item(0)->setCheckState(Qt::Checked);
        QVERIFY(!okButton(dialog)->isEnabled());
        dialog.getList()->item(2)->setCheckState(Qt::Checked);
        QVERIFY(okButton(dialog)->isEnabled());
        QCOMPARE(dialog.getChosen(), (QList<int>{0, 2}));
        QVERIFY(dialog.getList()->item(1)->text().contains(QLocale().toString(200)));
    }

    void filterKeepsTicks()
    {
        CompareDialog dialog({"gut-1", "gut-2", "soil-1"}, {});
        dialog.setChosen({0, 2});
        dialog.getFilter()->setText(QStringLiteral("GUT"));
        QVERIFY(!dialog.getList()->item(0)->isHidden());
        QVERIFY(dialog.getList()->item(2)->isHidden());
        QCOMPARE(dialog.getChosen(), (QList<int>{0, 2}));
    }

    void defaultChoice_data()
    {
        QTest::addColumn<int>("current");
        QTest::addColumn<int>("count");
        QTest::addColumn<QList<int>>("chosen");
        QTest::newRow("fewer than a grid") << 1 << 3 << QList<int>{0, 1, 2};
        QTest::newRow("from the current") << 5 << 40 << QList<int>{5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
        QTest::newRow("near the end") << 38 << 40 << QList<int>{28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39};
        QTest::newRow("exactly a grid") << 11 << 12 << QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
        QTest::newRow("one sample") << 0 << 1 << QList<int>{0};
    }

    void defaultChoice()
    {
        QFETCH(int, current);
        QFETCH(int, count);
        QFETCH(QList<int>, chosen);
        QCOMPARE(CompareDialog::defaultChoice(current, count), chosen);
    }

private:
    static QStringList names(int count)
    {
        QStringList list;
        for (int i = 0; i < count; ++i)
            list << QStringLiteral("S%1").arg(i);
        return list;
    }

    static QPushButton* okButton(CompareDialog& dialog)
    {
        return dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    }
};

QTEST_MAIN(TestCompareDialog)
#include "tst_comparedialog.moc"
