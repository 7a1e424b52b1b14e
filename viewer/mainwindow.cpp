#include "viewer/mainwindow.h"

#include <QIcon>

namespace Sorvik {
namespace Viewer {

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
{
    setWindowTitle(tr("Sorvik Piechart Viewer"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/sorvik-piechart.svg")));
}

} // namespace Viewer
} // namespace Sorvik
