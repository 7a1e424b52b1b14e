#pragma once

#include "nu/graphics/zoompanview.h"

#include <memory>

namespace Sorvik {
namespace Viewer {

class PieChartItem;
class Scene;

// Shows the viewer's scene: the chart centred and fitted to the window whenever it changes and
// whenever the window is resized. The wheel zooms about the cursor; dragging with the left or
// middle button pans. A left click that does not turn into a drag reaches the scene (selecting
// a slice or clearing the selection) when the button is released.
class View : public nu::graphics::ZoomPanView
{
    Q_OBJECT
public:
    // Zoom limits, relative to the fitted chart.
    static constexpr double minimumZoom = 0.25;
    static constexpr double maximumZoom = 200.0;

    explicit View(QWidget* parent = nullptr);
    ~View() override;

    Scene* getScene() const { return chartScene; }
    // Shows the chart (the scene takes it; null clears) and fits it to the window.
    void setPieChart(std::unique_ptr<PieChartItem> root);

    // Puts the chart's centre in the middle of the viewport and scales the chart to fit it with
    // a small margin.
    void fitChart();
    // The scale relative to the fitted chart: 1 right after fitting.
    double getZoom() const { return getScale() / fitScale; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void updateSceneRect();
    // The zoom limits are relative to the scale of the fitted chart.
    void setFitScale(double scale);

    Scene* chartScene = nullptr;
    double fitScale = 1.0;
    // A left press held back until it is known whether it is a click or the start of a drag.
    std::unique_ptr<QMouseEvent> heldPress;
};

} // namespace Viewer
} // namespace Sorvik
