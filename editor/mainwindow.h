#pragma once

#include <QMainWindow>

namespace Sorvik {
namespace Edit {

// The chart editor's window.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
};

} // namespace Edit
} // namespace Sorvik
