#pragma once

#include <QMainWindow>

namespace Sorvik {
namespace Viewer {

// The viewer's main window.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
};

} // namespace Viewer
} // namespace Sorvik
