#include "viewer/view.h"

#include "viewer/piechartitem.h"
#include "viewer/scene.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>

namespace Sorvik {
namespace Viewer {

namespace {
// Room left around the fitted chart, as a fraction of its size.
constexpr double fitMargin = 0.03;
} // namespace

View::View(QWidget* parent)
    : ZoomPanView(parent)
    , chartScene(new Scene(this))
{
    setScene(chartScene);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setResizeAnchor(QGraphicsView::NoAnchor);
    setOptimizationFlag(QGraphicsView::DontAdjustForAntialiasing);
    setFitScale(1.0);
    updateSceneRect();
}

View::~View() = default;

void View::setPieChart(std::unique_ptr<PieChartItem> root)
{
    heldPress.reset();
    if (isPanning())
        endPan();
    chartScene->setPieChart(std::move(root));
    updateSceneRect();
    fitChart();
}

void View::updateSceneRect()
{
    // Room to pan the chart well past the window's edges at any zoom.
    QRectF chart = chartScene->getCentredChartRect();
    if (chart.isEmpty())
        chart = QRectF(-100, -100, 200, 200);
    const double side = std::max(chart.width(), chart.height());
    setSceneRect(chart.adjusted(-2 * side, -2 * side, 2 * side, 2 * side));
}

void View::setFitScale(double scale)
{
    fitScale = scale;
    setScaleLimits(scale * minimumZoom, scale * maximumZoom);
}

void View::fitChart()
{
    const QRectF chart = chartScene->getCentredChartRect();
    resetTransform();
    setFitScale(1.0);
    if (chart.isEmpty()) {
        centerOn(sceneRect().center());
        return;
    }
    const QRectF target = chart.adjusted(-chart.width() * fitMargin, -chart.height() * fitMargin,
                                         chart.width() * fitMargin, chart.height() * fitMargin);
    const QRect room = viewport()->rect();
    if (room.width() < 1 || room.height() < 1)
        return;
    const double scale = std::min(room.width() / target.width(), room.height() / target.height());
    setTransform(QTransform::fromScale(scale, scale));
    setFitScale(scale);
    centerOn(target.center());
}

void View::resizeEvent(QResizeEvent* event)
{
    ZoomPanView::resizeEvent(event);
    fitChart();
}

void View::showEvent(QShowEvent* event)
{
    ZoomPanView::showEvent(event);
    fitChart();
}

void View::wheelEvent(QWheelEvent* event)
{
    // A sideways wheel does not scroll the chart.
    if (event->angleDelta().y() == 0) {
        event->ignore();
        return;
    }
    ZoomPanView::wheelEvent(event);
}

void View::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && !isPanning()) {
        heldPress = std::make_unique<QMouseEvent>(event->type(), event->localPos(), event->windowPos(),
                                                  event->screenPos(), event->button(), event->buttons(),
                                                  event->modifiers());
        event->accept();
        return;
    }
    ZoomPanView::mousePressEvent(event);
}

void View::mouseMoveEvent(QMouseEvent* event)
{
    if (heldPress && (event->pos() - heldPress->pos()).manhattanLength() >= QApplication::startDragDistance()) {
        // The press began a drag: a pan from where the button went down.
        const QPoint from = heldPress->pos();
        heldPress.reset();
        startPan(from);
    }
    if (heldPress && !isPanning()) {
        event->accept();
        return;
    }
    ZoomPanView::mouseMoveEvent(event);
}

void View::mouseReleaseEvent(QMouseEvent* event)
{
    if (isPanning() && event->button() == Qt::LeftButton) {
        endPan();
        event->accept();
        return;
    }
    if (heldPress && event->button() == Qt::LeftButton) {
        // A click: the scene gets the press it was held back from, then the release.
        const std::unique_ptr<QMouseEvent> press = std::move(heldPress);
        ZoomPanView::mousePressEvent(press.get());
    }
    ZoomPanView::mouseReleaseEvent(event);
}

} // namespace Viewer
} // namespace Sorvik
