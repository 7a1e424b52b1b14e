#include "resources/resources.h"
#include "viewer/samplechooser.h"

#include <QAction>
#include <QComboBox>
#include <QMainWindow>
#include <QSignalSpy>
#include <QToolBar>
#include <QtTest>

using Sorvik::Viewer::SampleChooser;

class TestSampleChooser : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Sorvik::initResources(); }

    void init()
    {
        window = std::make_unique<QMainWindow>();
        chooser = new SampleChooser(window.get());
        bar = window->addToolBar(QStringLiteral("Samples"));
        chooser->addTo(bar);
    }

    void cleanup() { window.reset(); }

    void steps_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("steps");
        // After each step: the current sample, then whether Previous and Next are enabled.
        QTest::addColumn<QStringList>("after");
        QTest::addColumn<int>("chosen");
        QTest::newRow("next to the end and past it") << 3 << "nnn" << QStringList{"1 11", "2 10", "2 10"} << 2;
        QTest::newRow("previous at the first") << 3 << "p" << QStringList{"0 01"} << 0;
        QTest::newRow("there and back") << 2 << "npn" << QStringList{"1 10", "0 01", "1 10"} << 3;
        QTest::newRow("one sample") << 1 << "np" << QStringList{"0 00", "0 00"} << 0;
        QTest::newRow("no chart") << 0 << "n" << QStringList{"0 00"} << 0;
    }

    void steps()
    {
        QFETCH(int, count);
        QFETCH(QString, steps);
        QFETCH(QStringList, after);
        QFETCH(int, chosen);
        QStringList names;
        for (int i = 0; i < count; ++i)
            names << QStringLiteral("S%1").arg(i + 1);
        chooser->setSamples(names);
        QSignalSpy spy(chooser, &SampleChooser::signalSampleChosen);
        for (int i = 0; i < steps.size(); ++i) {
            if (steps.at(i) == QLatin1Char('n'))
                chooser->getNext()->trigger();
            else
                chooser->getPrevious()->trigger();
            QCOMPARE(state(), after.at(i));
        }
        QCOMPARE(spy.size(), chosen);
        // The combo box follows.
        QCOMPARE(chooser->getComboBox()->currentIndex(), count == 0 ? -1 : chooser->getCurrent());
    }

    void hiddenWithFewerThanTwo_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("shown");
        QTest::newRow("none") << 0 << false;
        QTest::newRow("one") << 1 << false;
        QTest::newRow("two") << 2 << true;
        QTest::newRow("two hundred") << 200 << true;
    }

    void hiddenWithFewerThanTwo()
    {
        QFETCH(int, count);
        QFETCH(bool, shown);
        // A chart of several first, so that the change back is seen.
        chooser->setSamples({"A", "B", "C"});
        chooser->setCurrent(2);
        QStringList names;
        for (int i = 0; i < count; ++i)
            names << QString::number(i);
        chooser->setSamples(names);
        QCOMPARE(chooser->isShown(), shown);
        QCOMPARE(bar->isHidden(), !shown);
        QCOMPARE(chooser->getComboBox()->isEnabled(), shown);
        QCOMPARE(chooser->getNext()->isVisible(), shown);
        QCOMPARE(chooser->getPrevious()->isVisible(), shown);
        QCOMPARE(chooser->getComboBox()->count(), count);
        // A new chart starts at its first sample.
        QCOMPARE(chooser->getCurrent(), 0);
    }

    void comboChoiceIsSignalledOnce()
    {
        chooser->setSamples({"A", "B", "C"}, {10, 20, 30});
        QSignalSpy spy(chooser, &SampleChooser::signalSampleChosen);
        chooser->getComboBox()->setCurrentIndex(2);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.first().first().toInt(), 2);
        QVERIFY(chooser->getComboBox()->itemData(2, Qt::ToolTipRole).toString().contains(QLocale().toString(30)));
        // Set by the program: no signal.
        chooser->setCurrent(0);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(chooser->getComboBox()->currentIndex(), 0);
        chooser->setCurrent(7);
        QCOMPARE(chooser->getCurrent(), 0);
    }

    void shortcuts()
    {
        QCOMPARE(chooser->getPrevious()->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_PageUp));
        QCOMPARE(chooser->getNext()->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_PageDown));
    }

private:
    QString state() const
    {
        return QStringLiteral("%1 %2%3")
            .arg(chooser->getCurrent())
            .arg(chooser->getPrevious()->isEnabled() ? 1 : 0)
            .arg(chooser->getNext()->isEnabled() ? 1 : 0);
    }

    std::unique_ptr<QMainWindow> window;
    SampleChooser* chooser = nullptr;
    QToolBar* bar = nullptr;
};

QTEST_MAIN(TestSampleChooser)
#include "tst_samplechooser.moc"
