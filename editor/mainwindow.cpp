#include "editor/mainwindow.h"

namespace Sorvik {
namespace Edit {

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
{
    setWindowTitle(tr("Sorvik Piechart Editor"));
}

void MainWindow::createPieChart(nu::graphics::PieChartTextItem*)
{
    // The editable copy of a chart comes with the editor's scene.
}

} // namespace Edit
} // namespace Sorvik
