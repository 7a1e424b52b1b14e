#include "ontology/ontology.h"
#include "tests/support/treeliteral.h"
#include "viewer/piechartbuilder.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/view.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using Sorvik::Viewer::PieChartBuilder;
using Sorvik::Viewer::PieChartItem;
using Sorvik::Viewer::Scene;
using Sorvik::Viewer::View;

namespace {

// A chart of the tree literal, drawn to the given depth.
std::unique_ptr<PieChartItem> chartOf(const QTemporaryDir& dir, const QString& literal, int levels = 10)
{
    const QString file = dir.filePath(QStringLiteral("chart.piechart"));
    QFile::remove(file);
    Sorvik::Test::writeTree(file, literal);
    PieChartBuilder builder{Zem::Ontology::Ontology(file)};
    builder.setMaxLevels(levels);
    builder.read();
    return builder.takeRootItem();
}

PieChartItem* byName(PieChartItem* root, const QString& name)
{
    if (root->getText().text == name)
        return root;
    for (QGraphicsItem* child : root->childItems()) {
        if (auto* slice = dynamic_cast<PieChartItem*>(child)) {
            if (PieChartItem* found = byName(slice, name))
                return found;
        }
    }
    return nullptr;
}

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
    void clickSelectsAndEmptyCanvasClears_data();
    void clickSelectsAndEmptyCanvasClears();
    void selectingByIdSendsNothingBack();
    void doubleClickEntersTheSlice();
    void dragPansWithoutSelecting();
    void chartIsCentredAndFitted_data();
    void chartIsCentredAndFitted();
    void wheelZoomKeepsThePointUnderTheCursor();
    void toolTipIsLabelWithShare();
    void newChartDropsTheSelection();
    void labelColourReadsOnTheFill_data();
    void labelColourReadsOnTheFill();
};

void TestScene::clickSelectsAndEmptyCanvasClears_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("expected");
    QTest::newRow("outer slice") << "Gamma" << "Gamma";
    QTest::newRow("first ring") << "Beta" << "Beta";
    QTest::newRow("centre") << "root" << "root";
    QTest::newRow("empty canvas") << QString() << QString();
}

void TestScene::clickSelectsAndEmptyCanvasClears()
{
    QFETCH(QString, target);
    QFETCH(QString, expected);
    QTemporaryDir dir;
    View view;
    view.resize(400, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.setPieChart(chartOf(dir, tree));
    Scene* scene = view.getScene();
    PieChartItem* root = scene->getPieChart();
    // Something selected first, so that clearing is seen.
    scene->slotSelectItem(byName(root, QStringLiteral("Alpha"))->getId());
    QSignalSpy selected(scene, &Scene::signalSelectedItem);

    const QPointF scenePoint = target.isEmpty() ? QPointF(200, 200) : middleOf(byName(root, target));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, view.mapFromScene(scenePoint));

    PieChartItem* expectedItem = expected.isEmpty() ? nullptr : byName(root, expected);
    QCOMPARE(scene->getSelectedItem(), expectedItem);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().toString(), expectedItem ? expectedItem->getId() : QString());
}

void TestScene::selectingByIdSendsNothingBack()
{
    QTemporaryDir dir;
    Scene scene;
    scene.setPieChart(chartOf(dir, tree));
    QSignalSpy selected(&scene, &Scene::signalSelectedItem);
    PieChartItem* gamma = byName(scene.getPieChart(), QStringLiteral("Gamma"));
    scene.slotSelectItem(gamma->getId());
    QCOMPARE(scene.getSelectedItem(), gamma);
    QVERIFY(gamma->isSelected());
    scene.slotSelectItem(QStringLiteral("no such id"));
    QCOMPARE(scene.getSelectedItem(), nullptr);
    QCOMPARE(selected.count(), 0);
}

void TestScene::doubleClickEntersTheSlice()
{
    QTemporaryDir dir;
    View view;
    view.resize(400, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.setPieChart(chartOf(dir, tree));
    Scene* scene = view.getScene();
    QSignalSpy entered(scene, &Scene::signalItemEntered);
    PieChartItem* beta = byName(scene->getPieChart(), QStringLiteral("Beta"));
    const QPoint point = view.mapFromScene(middleOf(beta));
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, point);
    QCOMPARE(entered.count(), 1);
    QCOMPARE(scene->getSelectedItem(), beta);

    // A double click on empty canvas enters nothing.
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(2, 2));
    QCOMPARE(entered.count(), 1);
}

void TestScene::dragPansWithoutSelecting()
{
    QTemporaryDir dir;
    View view;
    view.resize(400, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.setPieChart(chartOf(dir, tree));
    Scene* scene = view.getScene();
    PieChartItem* beta = byName(scene->getPieChart(), QStringLiteral("Beta"));
    const QPoint start = view.mapFromScene(middleOf(beta));
    const QPointF before = view.mapToScene(view.viewport()->rect().center());

    QTest::mousePress(view.viewport(), Qt::LeftButton, Qt::NoModifier, start);
    for (int step = 1; step <= 5; ++step) {
        // QTest::mouseMove moves the cursor only, which the offscreen platform does not report.
        const QPoint at = start + QPoint(10 * step, 0);
        QMouseEvent move(QEvent::MouseMove, at, view.viewport()->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &move);
    }
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, Qt::NoModifier, start + QPoint(50, 0));

    QCOMPARE(scene->getSelectedItem(), nullptr);
    const QPointF after = view.mapToScene(view.viewport()->rect().center());
    // Dragged 50 pixels right: the viewport now looks 50 pixels further left.
    QVERIFY2(std::abs((before.x() - after.x()) * view.transform().m11() - 50) < 2,
             qPrintable(QStringLiteral("moved %1").arg((before.x() - after.x()) * view.transform().m11())));
}

void TestScene::chartIsCentredAndFitted_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("literal");
    QTest::newRow("square, three rings") << QSize(500, 500) << tree;
    QTest::newRow("wide window") << QSize(900, 300) << tree;
    QTest::newRow("tall window") << QSize(250, 700) << tree;
    QTest::newRow("centre only") << QSize(400, 400) << QStringLiteral("root:5");
    QTest::newRow("one slice on one side") << QSize(400, 400) << QStringLiteral("root(a:1(b:1(c:1)) d:99)");
}

void TestScene::chartIsCentredAndFitted()
{
    QFETCH(QSize, size);
    QFETCH(QString, literal);
    QTemporaryDir dir;
    View view;
    view.resize(size);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.setPieChart(chartOf(dir, literal));
    // The centre disc in the middle, however lopsided the rings around it.
    const QPointF middle = view.mapFromScene(view.getScene()->getPieChart()->scenePos());
    const QRectF room = view.viewport()->rect();
    QVERIFY2(std::abs(middle.x() - room.center().x()) <= 1 && std::abs(middle.y() - room.center().y()) <= 1,
             "the chart is not centred");
    const QRectF chart = view.mapFromScene(view.getScene()->getChartRect()).boundingRect();
    QVERIFY2(room.contains(chart), "the chart does not fit");
    // Fitted: the chart's reach from its centre fills the narrower side up to the margin.
    const double reach = std::max({middle.x() - chart.left(), chart.right() - middle.x(), middle.y() - chart.top(),
                                   chart.bottom() - middle.y()});
    const double fill = 2 * reach / std::min(room.width(), room.height());
    QVERIFY2(fill > 0.9, qPrintable(QStringLiteral("fills %1").arg(fill)));

    // Resizing fits again, also after zooming.
    view.zoomBy(3, QPoint(5, 5));
    view.resize(size.height() + 60, size.width() + 20);
    QTRY_COMPARE(view.viewport()->size(), view.maximumViewportSize());
    QTRY_COMPARE(view.getZoom(), 1.0);
    const QRectF again = view.mapFromScene(view.getScene()->getChartRect()).boundingRect();
    QVERIFY(QRectF(view.viewport()->rect()).adjusted(-1, -1, 1, 1).contains(again));
}

void TestScene::wheelZoomKeepsThePointUnderTheCursor()
{
    QTemporaryDir dir;
    View view;
    view.resize(400, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.setPieChart(chartOf(dir, tree));
    const QPoint cursor(300, 120);
    const QPointF under = view.mapToScene(cursor);
    QWheelEvent wheel(QPointF(cursor), view.viewport()->mapToGlobal(cursor), QPoint(), QPoint(0, 240), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.viewport(), &wheel);
    QVERIFY(view.getZoom() > 1.3);
    const QPointF still = view.mapToScene(cursor);
    QVERIFY2((still - under).manhattanLength() * view.transform().m11() < 2, "the point under the cursor moved");

    // Zooming out stops at the limit.
    for (int i = 0; i < 50; ++i)
        view.zoomBy(0.5, cursor);
    QCOMPARE(view.getZoom(), View::minimumZoom);
}

void TestScene::toolTipIsLabelWithShare()
{
    QTemporaryDir dir;
    Scene scene;
    scene.setPieChart(chartOf(dir, tree));
    PieChartItem* gamma = byName(scene.getPieChart(), QStringLiteral("Gamma"));
    QCOMPARE(scene.sliceAt(middleOf(gamma)), gamma);
    QCOMPARE(gamma->getDefaultText(), QStringLiteral("Gamma [20.00%]"));
    QCOMPARE(scene.sliceAt(QPointF(5000, 5000)), nullptr);
}

void TestScene::newChartDropsTheSelection()
{
    QTemporaryDir dir;
    Scene scene;
    scene.setPieChart(chartOf(dir, tree));
    scene.slotSelectItem(byName(scene.getPieChart(), QStringLiteral("Beta"))->getId());
    QSignalSpy selected(&scene, &Scene::signalSelectedItem);
    scene.setPieChart(chartOf(dir, tree));
    QCOMPARE(scene.getSelectedItem(), nullptr);
    QCOMPARE(scene.items().size(), 4);
    scene.setPieChart(nullptr);
    QVERIFY(scene.items().isEmpty());
    QCOMPARE(selected.count(), 0);
}

void TestScene::labelColourReadsOnTheFill_data()
{
    QTest::addColumn<double>("hue");
    QTest::addColumn<double>("lightness");
    QTest::addColumn<QColor>("label");
    // The first ring's fully saturated hues, and lighter rings further out.
    QTest::newRow("red") << 0.0 << 0.5 << QColor(Qt::black);
    QTest::newRow("yellow") << 1.0 / 6 << 0.5 << QColor(Qt::black);
    QTest::newRow("green") << 1.0 / 3 << 0.5 << QColor(Qt::black);
    QTest::newRow("azure") << 7.0 / 12 << 0.5 << QColor(Qt::black);
    QTest::newRow("blue") << 2.0 / 3 << 0.5 << QColor(Qt::white);
    QTest::newRow("violet") << 0.75 << 0.5 << QColor(Qt::white);
    QTest::newRow("magenta") << 5.0 / 6 << 0.5 << QColor(Qt::black);
    QTest::newRow("blue, two rings out") << 2.0 / 3 << 0.7 << QColor(Qt::black);
    QTest::newRow("centre") << 0.0 << 1.0 << QColor(Qt::black);
}

void TestScene::labelColourReadsOnTheFill()
{
    QFETCH(double, hue);
    QFETCH(double, lightness);
    QFETCH(QColor, label);
    QCOMPARE(PieChartItem::getLabelColor(QColor::fromHslF(hue, 1.0, lightness)), label);
}

QTEST_MAIN(TestScene)
#include "tst_scene.moc"
