#pragma once

#include "nu/graphics/zoompanview.h"

namespace Sorvik {
namespace Edit {

// Shows the editor's scene: the wheel zooms about the cursor, the middle button pans, and the
// whole drawing can be fitted to the window. Left presses go to the scene (select, drag knobs,
// place annotations). There is room to pan well beyond the scene's canvas, to place annotations
// beside the chart.
class View : public nu::graphics::ZoomPanView
{
    Q_OBJECT
public:
    // Zoom limits, in pixels per scene unit.
    static constexpr double minimumScale = 0.02;
    static constexpr double maximumScale = 200.0;

    explicit View(QGraphicsScene* scene, QWidget* parent = nullptr);

    // The largest scale a fit chooses, so that a small drawing is not blown up.
    static constexpr double maximumFitScale = 4.0;

    // Shows the rectangle (scene coordinates) as large as the window allows; it stays fitted
    // when the window is resized, until the user zooms or pans.
    void fitRect(const QRectF& rect);
    // The rectangle last fitted while the view still shows it; null after a zoom or pan.
    QRectF getFittedRect() const { return fitted; }
    // The cursor over the drawing, which tells what a click does.
    void setModeCursor(const QCursor& cursor) { setIdleCursor(cursor); }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void viewMovedByUser() override;

private:
    void updateSceneRect(const QRectF& canvas);

    QRectF fitted;
};

} // namespace Edit
} // namespace Sorvik
