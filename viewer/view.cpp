#include "viewer/view.h"

#include "viewer/piechartitem.h"
#include "viewer/scene.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace Sorvik {
namespace Viewer {

namespace {
// Room left around the fitted chart, as a fraction of its size.
constexpr double fitMargin = 0.03;
// One wheel notch (120 eighths of a degree) zooms by this factor.
constexpr double notchZoom = 1.2;
} // namespace

View::View(QWidget* parent)
    : QGraphicsView(parent)
    , chartScene(new Scene(this))
{
    setScene(chartScene);
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    setBackgroundBrush(Qt::white);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTransformationAnchor(QGraphicsView::NoAnchor);
    setResizeAnchor(QGraphicsView::NoAnchor);
    setDragMode(QGraphicsView::NoDrag);
    setViewportUpdateMode(QGraphicsView::SmartViewportUpdate);
    setOptimizationFlag(QGraphicsView::DontAdjustForAntialiasing);
    updateSceneRect();
}

View::~View() = default;

void View::setPieChart(std::unique_ptr<PieChartItem> root)
{
    heldPress.reset();
    panning = false;
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

void View::fitChart()
{
    const QRectF chart = chartScene->getCentredChartRect();
    resetTransform();
    zoom = 1.0;
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
    centerOn(target.center());
}

void View::zoomBy(double factor, const QPoint& viewportPoint)
{
    if (!(factor > 0))
        return;
    const double wanted = std::clamp(zoom * factor, minimumZoom, maximumZoom);
    factor = wanted / zoom;
    if (factor == 1.0)
        return;
    // Keeps the scene point under the cursor where it is.
    const QPointF before = mapToScene(viewportPoint);
    scale(factor, factor);
    zoom = wanted;
    const QPointF after = mapToScene(viewportPoint);
    const QPointF shift = (after - before) * transform().m11();
    panBy(QPoint(static_cast<int>(std::lround(shift.x())), static_cast<int>(std::lround(shift.y()))));
}

void View::panBy(const QPoint& delta)
{
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - delta.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - delta.y());
}

void View::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    fitChart();
}

void View::showEvent(QShowEvent* event)
{
    QGraphicsView::showEvent(event);
    fitChart();
}

void View::wheelEvent(QWheelEvent* event)
{
    const int delta = event->angleDelta().y();
    if (delta == 0) {
        event->ignore();
        return;
    }
    zoomBy(std::pow(notchZoom, delta / 120.0), event->position().toPoint());
    event->accept();
}

void View::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::MiddleButton) {
        panning = true;
        lastPanPoint = event->pos();
        viewport()->setCursor(Qt::ClosedHandCursor);
        event->accept();
        return;
    }
    if (event->button() == Qt::LeftButton && !panning) {
        heldPress = std::make_unique<QMouseEvent>(event->type(), event->localPos(), event->windowPos(),
                                                  event->screenPos(), event->button(), event->buttons(),
                                                  event->modifiers());
        lastPanPoint = event->pos();
        event->accept();
        return;
    }
    QGraphicsView::mousePressEvent(event);
}

void View::mouseMoveEvent(QMouseEvent* event)
{
    if (heldPress && (event->pos() - heldPress->pos()).manhattanLength() >= QApplication::startDragDistance()) {
        heldPress.reset();
        panning = true;
        viewport()->setCursor(Qt::ClosedHandCursor);
    }
    if (panning) {
        panBy(event->pos() - lastPanPoint);
        lastPanPoint = event->pos();
        event->accept();
        return;
    }
    if (heldPress) {
        event->accept();
        return;
    }
    QGraphicsView::mouseMoveEvent(event);
}

void View::mouseReleaseEvent(QMouseEvent* event)
{
    if (panning && (event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton)) {
        panning = false;
        viewport()->unsetCursor();
        event->accept();
        return;
    }
    if (heldPress && event->button() == Qt::LeftButton) {
        // A click: the scene gets the press it was held back from, then the release.
        const std::unique_ptr<QMouseEvent> press = std::move(heldPress);
        QGraphicsView::mousePressEvent(press.get());
    }
    QGraphicsView::mouseReleaseEvent(event);
}

} // namespace Viewer
} // namespace Sorvik
