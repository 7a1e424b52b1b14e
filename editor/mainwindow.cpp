#include "editor/mainwindow.h"

namespace Sorvik {
namespace Edit {

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
{
    setWindowTitle(tr("Sorvik Piechart Editor"));
}

} // namespace Edit
} // namespace Sorvik
