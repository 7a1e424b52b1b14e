#include "tests/support/charts.h"
#include "viewer/comparegrid.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/view.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using Sorvik::Viewer::CompareGrid;

class TestCompareGrid : public QObject
{
    Q_OBJECT
private slots:
    void columnsFor_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QSize>("area");
        QTest::addColumn<int>("columns");
        QTest::newRow("nothing") << 0 << QSize(800, 600) << 0;
        QTest::newRow("two, wide") << 2 << QSize(800, 400) << 2;
        QTest::newRow("two, tall") << 2 << QSize(400, 800) << 1;
        QTest::newRow("three, wide") << 3 << QSize(1200, 400) << 3;
        QTest::newRow("four, square") << 4 << QSize(800, 800) << 2;
        QTest::newRow("twelve, landscape") << 12 << QSize(1200, 800) << 4;
        QTest::newRow("twelve, portrait") << 12 << QSize(800, 1200) << 3;
        // Titles take height: three rows of two lose more than two rows of three.
        QTest::newRow("six, titles") << 6 << QSize(600, 600) << 3;
    }

    void columnsFor()
    {
        QFETCH(int, count);
        QFETCH(QSize, area);
        QFETCH(int, columns);
        QCOMPARE(CompareGrid::columnsFor(count, area, QTest::currentDataTag() == QByteArray("six, titles") ? 40 : 0),
                 columns);
    }

    void selectionIsSharedAndEnteringNamesTheCell()
    {
        CompareGrid grid;
        grid.resize(900, 600);
        std::vector<CompareGrid::Cell> cells;
        cells.push_back(cell("root(b=Bacteria:10 a=Archaea:5)", "one"));
        cells.push_back(cell("root(b=Bacteria:3)", "two"));
        cells.push_back(CompareGrid::Cell{QStringLiteral("three"), QStringLiteral("nothing here"), nullptr});
        grid.setCells(std::move(cells));
        QCOMPARE(grid.getCount(), 3);
        QCOMPARE(grid.getTitle(1)->text(), QStringLiteral("two"));
        QVERIFY(grid.getNote(0)->isHidden());
        QVERIFY(!grid.getNote(2)->isHidden());
        QVERIFY(!grid.getView(2)->getScene()->getPieChart());

        Sorvik::Viewer::PieChartItem* archaea =
            Sorvik::Test::sliceNamed(grid.getView(0)->getScene()->getPieChart(), QStringLiteral("Archaea"));
        Sorvik::Viewer::PieChartItem* bacteria =
            Sorvik::Test::sliceNamed(grid.getView(0)->getScene()->getPieChart(), QStringLiteral("Bacteria"));
        QVERIFY(archaea && bacteria);
        QSignalSpy selected(&grid, &CompareGrid::signalSelectedItem);
        QSignalSpy entered(&grid, &CompareGrid::signalItemEntered);
        // Picked in the first chart: selected wherever that taxon is drawn.
        emit grid.getView(0)->getScene()->signalSelectedItem(bacteria->getId());
        QCOMPARE(selected.size(), 1);
        QCOMPARE(grid.getSelectedId(), bacteria->getId());
        QVERIFY(grid.getView(1)->getScene()->getSelectedItem());
        // A taxon the second chart lacks clears its selection.
        emit grid.getView(0)->getScene()->signalSelectedItem(archaea->getId());
        QVERIFY(!grid.getView(1)->getScene()->getSelectedItem());
        emit grid.getView(1)->getScene()->signalItemEntered();
        QCOMPARE(entered.size(), 1);
        QCOMPARE(entered.first().first().toInt(), 1);

        // As many charts again: the same views, new charts.
        View* first = grid.getView(0);
        std::vector<CompareGrid::Cell> again;
        for (int i = 0; i < 3; ++i)
            again.push_back(cell("root(b=Bacteria:1)", QString::number(i)));
        grid.setCells(std::move(again));
        QCOMPARE(grid.getView(0), first);
        QVERIFY(grid.getNote(2)->isHidden());
        QVERIFY(grid.getView(2)->getScene()->getPieChart());
        // Fewer: the grid shrinks.
        grid.setCells({});
        QCOMPARE(grid.getCount(), 0);
    }

private:
    using View = Sorvik::Viewer::View;

    CompareGrid::Cell cell(const QString& literal, const QString& title)
    {
        CompareGrid::Cell made;
        made.title = title;
        made.chart = Sorvik::Test::chartOf(dir.filePath(QStringLiteral("c%1.piechart").arg(++files)), literal);
        return made;
    }

    QTemporaryDir dir;
    int files = 0;
};

QTEST_MAIN(TestCompareGrid)
#include "tst_comparegrid.moc"
