#pragma once

#include <QCursor>
#include <QGraphicsView>

namespace nu {
namespace graphics {

// A view on a white canvas that zooms about the cursor with the wheel and pans while the middle
// button is held. Subclasses set the scale limits and decide what other presses do.
class ZoomPanView : public QGraphicsView
{
    Q_OBJECT
public:
    explicit ZoomPanView(QWidget* parent = nullptr);

    // Pixels per scene unit.
    double getScale() const;
    // Scales by factor about a viewport point, within the scale limits.
    void zoomBy(double factor, const QPoint& viewportPoint);
    // The cursor over the drawing while no pan is under way; without one, the default arrow.
    void setIdleCursor(const QCursor& cursor);

protected:
    // Pixels per scene unit that zooming keeps to.
    void setScaleLimits(double minimum, double maximum);
    bool isPanning() const { return panning; }
    // A pan from a viewport point; the view then follows the mouse until endPan().
    void startPan(const QPoint& at);
    void endPan();
    void panBy(const QPoint& delta);
    // The user zoomed or began to pan.
    virtual void viewMovedByUser() {}

    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    double minimumScale = 0.02;
    double maximumScale = 200.0;
    QCursor idleCursor;
    bool hasIdleCursor = false;
    QPoint lastPanPoint;
    bool panning = false;
};

} // namespace graphics
} // namespace nu
