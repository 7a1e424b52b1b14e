#include "editor/view.h"

#include <algorithm>

namespace Sorvik {
namespace Edit {

View::View(QGraphicsScene* scene, QWidget* parent)
    : ZoomPanView(parent)
{
    setScaleLimits(minimumScale, maximumScale);
    setResizeAnchor(QGraphicsView::AnchorViewCenter);
    setScene(scene);
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

void View::viewMovedByUser()
{
    fitted = QRectF();
}

void View::resizeEvent(QResizeEvent* event)
{
    ZoomPanView::resizeEvent(event);
    if (!fitted.isNull())
        fitRect(fitted);
}

} // namespace Edit
} // namespace Sorvik
