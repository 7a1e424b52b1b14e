#pragma once

#include <QMainWindow>

namespace nu {
namespace graphics {
class PieChartTextItem;
}
} // namespace nu

namespace Sorvik {
namespace Edit {

// The chart editor's window.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);

    // Copies a chart (the root slice and everything below it) into the editor; the chart stays
    // its owner's.
    void createPieChart(nu::graphics::PieChartTextItem* root);
};

} // namespace Edit
} // namespace Sorvik
