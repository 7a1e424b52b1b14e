#include "nu/graphics/zoompanview.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace nu {
namespace graphics {

namespace {
// One wheel notch (120 eighths of a degree) zooms by this factor.
constexpr double notchZoom = 1.2;
} // namespace

ZoomPanView::ZoomPanView(QWidget* parent)
    : QGraphicsView(parent)
{
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    setBackgroundBrush(Qt::white);
    setTransformationAnchor(QGraphicsView::NoAnchor);
    setDragMode(QGraphicsView::NoDrag);
    setViewportUpdateMode(QGraphicsView::SmartViewportUpdate);
}

double ZoomPanView::getScale() const
{
    return transform().m11();
}

void ZoomPanView::setScaleLimits(double minimum, double maximum)
{
    minimumScale = minimum;
    maximumScale = maximum;
}

void ZoomPanView::zoomBy(double factor, const QPoint& viewportPoint)
{
    const double current = getScale();
    if (!(factor > 0) || !(current > 0))
        return;
    factor = std::clamp(current * factor, minimumScale, maximumScale) / current;
    if (factor == 1.0)
        return;
    viewMovedByUser();
    // Keeps the scene point under the cursor where it is.
    const QPointF anchor = mapToScene(viewportPoint);
    scale(factor, factor);
    const QPointF moved = mapFromScene(anchor);
    panBy(QPoint(qRound(viewportPoint.x() - moved.x()), qRound(viewportPoint.y() - moved.y())));
}

void ZoomPanView::panBy(const QPoint& delta)
{
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - delta.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - delta.y());
}

void ZoomPanView::setIdleCursor(const QCursor& cursor)
{
    idleCursor = cursor;
    hasIdleCursor = true;
    if (!panning)
        viewport()->setCursor(cursor);
}

void ZoomPanView::startPan(const QPoint& at)
{
    panning = true;
    lastPanPoint = at;
    viewport()->setCursor(Qt::ClosedHandCursor);
    viewMovedByUser();
}

void ZoomPanView::endPan()
{
    panning = false;
    if (hasIdleCursor)
        viewport()->setCursor(idleCursor);
    else
        viewport()->unsetCursor();
}

void ZoomPanView::wheelEvent(QWheelEvent* event)
{
    const int delta = event->angleDelta().y();
    if (delta == 0) {
        QGraphicsView::wheelEvent(event);
        return;
    }
    zoomBy(std::pow(notchZoom, delta / 120.0), event->position().toPoint());
    event->accept();
}

void ZoomPanView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::MiddleButton) {
        startPan(event->pos());
        event->accept();
        return;
    }
    QGraphicsView::mousePressEvent(event);
}

void ZoomPanView::mouseMoveEvent(QMouseEvent* event)
{
    if (panning) {
        panBy(event->pos() - lastPanPoint);
        lastPanPoint = event->pos();
        event->accept();
        return;
    }
    QGraphicsView::mouseMoveEvent(event);
}

void ZoomPanView::mouseReleaseEvent(QMouseEvent* event)
{
    if (panning && event->button() == Qt::MiddleButton) {
        endPan();
        event->accept();
        return;
    }
    QGraphicsView::mouseReleaseEvent(event);
}

} // namespace graphics
} // namespace nu
