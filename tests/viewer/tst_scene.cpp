#include "tests/support/charts.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/view.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using Sorvik::Test::sliceNamed;
using Sorvik::Viewer::PieChartItem;
using Sorvik::Viewer::Scene;
using Sorvik::Viewer::View;

namespace {

// A point in the middle of a slice's ring, in scene coordinates.
QPointF middleOf(const PieChartItem* slice)
{
    const double radius = slice->getRadius() + slice->getRadiusOffset() / 2;
    if (slice->getAngle() >= 360)
        return slice->mapToScene(QPointF(0, 0)) + QPointF(0, 0.5);
    const double angle = qDegreesToRadians(slice->getAngle() / 2);
    // Angles run counter-clockwise on screen, where y grows downwards.
    return slice->mapToScene(QPointF(radius * std::cos(angle), -radius * std::sin(angle)));
}

const QString tree = QStringLiteral("root(a=Alpha:30(c=Gamma:20) b=Beta:50)");

} // namespace

class TestScene : public QObject
{
    Q_OBJECT
private slots:
    void clickSelectsAndEmptyCanvasClears_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("outer slice") << "Gamma";
        QTest::newRow("centre") << "root";
        QTest::newRow("empty canvas") << QString();
    }

    void clickSelectsAndEmptyCanvasClears()
    {
        QFETCH(QString, target);
        show(QSize(400, 400), tree);
        // Something selected first, so that clearing is seen.
        scene()->slotSelectItem(slice(QStringLiteral("Alpha"))->getId());
        QSignalSpy selected(scene(), &Scene::signalSelectedItem);
        QSignalSpy entered(scene(), &Scene::signalItemEntered);
        PieChartItem* expected = target.isEmpty() ? nullptr : slice(target);
        const QPoint point = view->mapFromScene(expected ? middleOf(expected) : QPointF(200, 200));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, point);
        QCOMPARE(scene()->getSelectedItem(), expected);
        QCOMPARE(selected.count(), 1);
        QCOMPARE(selected.first().first().toString(), expected ? expected->getId() : QString());
        // A double click enters a slice, never the empty canvas.
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, point);
        QCOMPARE(entered.count(), expected ? 1 : 0);
        QCOMPARE(scene()->getSelectedItem(), expected);
    }

    void selectingByIdSendsNothingBackAndANewChartDropsIt()
    {
        show(QSize(400, 400), tree);
        QSignalSpy selected(scene(), &Scene::signalSelectedItem);
        PieChartItem* gamma = slice(QStringLiteral("Gamma"));
        scene()->slotSelectItem(gamma->getId());
        QVERIFY(gamma->isSelected());
        scene()->slotSelectItem(QStringLiteral("no such id"));
        QCOMPARE(scene()->getSelectedItem(), nullptr);

        scene()->slotSelectItem(slice(QStringLiteral("Beta"))->getId());
        view->setPieChart(Sorvik::Test::chartOf(dir.filePath(QStringLiteral("chart.piechart")), tree));
        QCOMPARE(scene()->getSelectedItem(), nullptr);
        // Ids are looked up in the new chart, not the deleted one.
        scene()->slotSelectItem(slice(QStringLiteral("Beta"))->getId());
        QCOMPARE(scene()->getSelectedItem(), slice(QStringLiteral("Beta")));
        view->setPieChart(nullptr);
        QVERIFY(scene()->items().isEmpty());
        QCOMPARE(selected.count(), 0);
    }

    void chartIsCentredAndFitted_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("literal");
        QTest::newRow("wide window") << QSize(900, 300) << tree;
        QTest::newRow("one slice on one side") << QSize(400, 400) << QStringLiteral("root(a:1(b:1(c:1)) d:99)");
    }

    void chartIsCentredAndFitted()
    {
        QFETCH(QSize, size);
        QFETCH(QString, literal);
        show(size, literal);
        // The centre disc in the middle, however lopsided the rings around it.
        const QPointF middle = view->mapFromScene(scene()->getPieChart()->scenePos());
        const QRectF room = view->viewport()->rect();
        QVERIFY2(std::abs(middle.x() - room.center().x()) <= 1 && std::abs(middle.y() - room.center().y()) <= 1,
                 "the chart is not centred");
        const QRectF chart = view->mapFromScene(scene()->getChartRect()).boundingRect();
        QVERIFY2(room.contains(chart), "the chart does not fit");
        // Fitted: the chart's reach from its centre fills the narrower side up to the margin.
        const double reach = std::max({middle.x() - chart.left(), chart.right() - middle.x(), middle.y() - chart.top(),
                                       chart.bottom() - middle.y()});
        QVERIFY2(2 * reach / std::min(room.width(), room.height()) > 0.9, "the chart does not fill the window");

        // Resizing fits again, also after zooming.
        view->zoomBy(3, QPoint(5, 5));
        view->resize(size.height() + 60, size.width() + 20);
        QTRY_COMPARE(view->viewport()->size(), view->maximumViewportSize());
        QTRY_COMPARE(view->getZoom(), 1.0);
        const QRectF again = view->mapFromScene(scene()->getChartRect()).boundingRect();
        QVERIFY(QRectF(view->viewport()->rect()).adjusted(-1, -1, 1, 1).contains(again));
    }

    void dragPansAndTheWheelZoomsAboutTheCursor()
    {
        show(QSize(400, 400), tree);
        const QPoint start = view->mapFromScene(middleOf(slice(QStringLiteral("Beta"))));
        const QPointF before = view->mapToScene(view->viewport()->rect().center());
        QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::NoModifier, start);
        for (int step = 1; step <= 5; ++step) {
            // QTest::mouseMove moves the cursor only, which the offscreen platform does not report.
            const QPoint at = start + QPoint(10 * step, 0);
            QMouseEvent move(QEvent::MouseMove, at, view->viewport()->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                             Qt::NoModifier);
            QApplication::sendEvent(view->viewport(), &move);
        }
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::NoModifier, start + QPoint(50, 0));
        QCOMPARE(scene()->getSelectedItem(), nullptr);
        // Dragged 50 pixels right: the viewport now looks 50 pixels further left.
        const QPointF after = view->mapToScene(view->viewport()->rect().center());
        const double moved = (before.x() - after.x()) * view->transform().m11();
        QVERIFY2(std::abs(moved - 50) < 2, qPrintable(QString::number(moved)));

        const QPoint cursor(300, 120);
        const QPointF under = view->mapToScene(cursor);
        QWheelEvent wheel(QPointF(cursor), view->viewport()->mapToGlobal(cursor), QPoint(), QPoint(0, 240), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view->viewport(), &wheel);
        QVERIFY(view->getZoom() > 1.3);
        QVERIFY2((view->mapToScene(cursor) - under).manhattanLength() * view->transform().m11() < 2,
                 "the point under the cursor moved");
        // Zooming out stops at the limit.
        for (int i = 0; i < 50; ++i)
            view->zoomBy(0.5, cursor);
        QCOMPARE(view->getZoom(), View::minimumZoom);
    }

    void labelColourReadsOnTheFill()
    {
        // Black on the first ring's light hues and on the white centre, white on the darkest
        // hues, black again on the lighter rings further out.
        QCOMPARE(PieChartItem::getLabelColor(QColor::fromHslF(7.0 / 12, 1.0, 0.5)), QColor(Qt::black));
        QCOMPARE(PieChartItem::getLabelColor(QColor::fromHslF(2.0 / 3, 1.0, 0.5)), QColor(Qt::white));
        QCOMPARE(PieChartItem::getLabelColor(QColor::fromHslF(2.0 / 3, 1.0, 0.7)), QColor(Qt::black));
        QCOMPARE(PieChartItem::getLabelColor(QColor(Qt::white)), QColor(Qt::black));
    }

private:
    // A shown view of the chart of a tree literal.
    void show(const QSize& size, const QString& literal)
    {
        view = std::make_unique<View>();
        view->resize(size);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
        view->setPieChart(Sorvik::Test::chartOf(dir.filePath(QStringLiteral("chart.piechart")), literal));
    }
    Scene* scene() const { return view->getScene(); }
    PieChartItem* slice(const QString& name) const { return sliceNamed(scene()->getPieChart(), name); }

    QTemporaryDir dir;
    std::unique_ptr<View> view;
};

QTEST_MAIN(TestScene)
#include "tst_scene.moc"
