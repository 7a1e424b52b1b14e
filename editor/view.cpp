#include "editor/view.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace Sorvik {
namespace Edit {

namespace {
// One wheel notch (120 eighths of a degree) zooms by this factor.
constexpr double notchZoom = 1.2;
} // namespace

View::View(QGraphicsScene* scene, QWidget* parent)
    : QGraphicsView(scene, parent)
{
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    setBackgroundBrush(Qt::white);
    setTransformationAnchor(QGraphicsView::NoAnchor);
    setResizeAnchor(QGraphicsView::AnchorViewCenter);
    setDragMode(QGraphicsView::NoDrag);
    setViewportUpdateMode(QGraphicsView::SmartViewportUpdate);
    if (scene) {
        connect(scene, &QGraphicsScene::sceneRectChanged, this, &View::updateSceneRect);
        updateSceneRect(scene->sceneRect());
    }
}

void View::updateSceneRect(const QRectF& canvas)
{
    const double side = std::max({canvas.width(), canvas.height(), 100.0});
    setSceneRect(canvas.adjusted(-side, -side, side, side));
}

void View::setModeCursor(const QCursor& cursor)
{
    modeCursor = cursor;
    if (!panning)
        viewport()->setCursor(cursor);
}

double View::getScale() const
{
    return transform().m11();
}

void View::fitRect(const QRectF& rect)
{
    fitted = rect;
    const QRect room = viewport()->rect().adjusted(4, 4, -4, -4);
    if (rect.isEmpty() || room.width() < 1 || room.height() < 1)
        return;
    const double fit = std::clamp(std::min(room.width() / rect.width(), room.height() / rect.height()),
                                  minimumScale, maximumFitScale);
    setTransform(QTransform::fromScale(fit, fit));
    centerOn(rect.center());
}

void View::zoomBy(double factor, const QPoint& viewportPoint)
{
    const double current = getScale();
    if (!(factor > 0) || !(current > 0))
        return;
    factor = std::clamp(current * factor, minimumScale, maximumScale) / current;
    if (factor == 1.0)
        return;
    fitted = QRectF();
    // Keeps the scene point under the cursor where it is.
    const QPointF anchor = mapToScene(viewportPoint);
    scale(factor, factor);
    const QPointF moved = mapFromScene(anchor);
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + qRound(moved.x() - viewportPoint.x()));
    verticalScrollBar()->setValue(verticalScrollBar()->value() + qRound(moved.y() - viewportPoint.y()));
}

void View::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (!fitted.isNull())
        fitRect(fitted);
}

void View::wheelEvent(QWheelEvent* event)
{
    const int delta = event->angleDelta().y();
    if (delta == 0) {
        QGraphicsView::wheelEvent(event);
        return;
    }
    zoomBy(std::pow(notchZoom, delta / 120.0), event->position().toPoint());
    event->accept();
}

void View::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::MiddleButton) {
        panning = true;
        fitted = QRectF();
        lastPanPoint = event->pos();
        viewport()->setCursor(Qt::ClosedHandCursor);
        event->accept();
        return;
    }
    QGraphicsView::mousePressEvent(event);
}

void View::mouseMoveEvent(QMouseEvent* event)
{
    if (panning) {
        const QPoint delta = event->pos() - lastPanPoint;
        lastPanPoint = event->pos();
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - delta.x());
        verticalScrollBar()->setValue(verticalScrollBar()->value() - delta.y());
        event->accept();
        return;
    }
    QGraphicsView::mouseMoveEvent(event);
}

void View::mouseReleaseEvent(QMouseEvent* event)
{
    if (panning && event->button() == Qt::MiddleButton) {
        panning = false;
        viewport()->setCursor(modeCursor);
        event->accept();
        return;
    }
    QGraphicsView::mouseReleaseEvent(event);
}

} // namespace Edit
} // namespace Sorvik
